#include "Composition.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr double layer_size = 2000; ///< of a layer while areas in it are parted
constexpr double sliver = 0.02;     ///< likewise; what is narrower is not seen
// A clip cuts what sticks out farther, as a share of its longer side. Coordinates are written no finer than
// the first; a stroke that is cut is a stroke no more.
constexpr double fill_hair = 1.0 / 100'000;
constexpr double stroke_hair = 1.0 / 200;

/// What is parted in the layers of a document at most.
struct Budget
{
    qint64 pairs = 50'000'000;     ///< of shapes
    qint64 crossings = 40'000'000; ///< pairs of elements of paths, which may cross

    bool isSpent() const { return pairs < 0 || crossings < 0; }
};

constexpr double most_dashes = 100'000; ///< of one path

SubsetShape area(const QPainterPath& path, const QColor& color)
{
    SubsetShape shape;
    shape.path = path;
    shape.fill = color;
    return shape;
}

/// The fill and the stroke of a shape, each as a shape.
QVector<SubsetShape> fillAndStroke(const SubsetShape& shape)
{
    QVector<SubsetShape> parts;
    if (shape.fill.isValid()) {
        parts.append(shape);
        parts.last().stroke = QColor();
    }
    if (shape.stroke.isValid()) {
        parts.append(shape);
        parts.last().fill = QColor();
    }
    return parts;
}

QVector<SubsetShape> faded(QVector<SubsetShape> shapes, double opacity)
{
    const auto fade = [opacity](QColor& color) {
        if (color.isValid())
            color.setAlphaF(std::clamp(color.alphaF() * opacity, 0.0, 1.0));
        if (color.alpha() == 0)
            color = QColor();
    };
    for (SubsetShape& shape : shapes) {
        fade(shape.fill);
        fade(shape.stroke);
    }
    const auto isUnseen = [](const SubsetShape& shape) {
        return !shape.fill.isValid() && !shape.stroke.isValid();
    };
    shapes.erase(std::remove_if(shapes.begin(), shapes.end(), isUnseen), shapes.end());
    return shapes;
}

/// \a above over \a below.
QColor blended(const QColor& below, const QColor& above)
{
    const double through = below.alphaF() * (1 - above.alphaF());
    const double alpha = above.alphaF() + through;
    const auto mixed = [&](double one, double other) {
        return std::clamp((one * above.alphaF() + other * through) / alpha, 0.0, 1.0);
    };
    return QColor::fromRgbF(mixed(above.redF(), below.redF()),
                            mixed(above.greenF(), below.greenF()),
                            mixed(above.blueF(), below.blueF()),
                            std::min(alpha, 1.0));
}

/// Shapes with an opacity in common, parted so that none overlaps another.
class Layer
{
public:
    Layer(const QVector<SubsetShape>& shapes, Budget& budget) : m_budget(budget)
    {
        QRectF box;
        for (const SubsetShape& shape : shapes)
            box |= shape.path.controlPointRect();
        m_scale = layer_size / std::max({box.width(), box.height(), 1e-6});
        for (const SubsetShape& shape : shapes) {
            const QVector<SubsetShape> parts = fillAndStroke(shape);
            for (const SubsetShape& part : parts)
                add(part);
        }
    }

    /// Whether all could be parted.
    bool isExact() const { return m_isExact; }

    QVector<SubsetShape> shapes(double opacity) const
    {
        QVector<SubsetShape> result;
        for (const Part& part : m_parts) {
            SubsetShape shape = part.shape;
            if (part.isParted) {
                if (part.area.isEmpty())
                    continue;
                shape = ::area(QTransform::fromScale(1 / m_scale, 1 / m_scale).map(part.area), part.color);
            }
            result.append(shape);
        }
        return faded(result, opacity);
    }

private:
    struct Part
    {
        SubsetShape shape;
        QColor color;
        QPainterPath area; ///< scaled
        QRectF box;        ///< of the area
        bool isParted = false;
    };

    static void setArea(Part& part, const QPainterPath& area)
    {
        part.area = area;
        part.box = area.controlPointRect();
        part.isParted = true;
    }

    void add(const SubsetShape& shape)
    {
        Part part;
        part.shape = shape;
        part.color = shape.fill.isValid() ? shape.fill : shape.stroke;
        const QPainterPath path = shape.fill.isValid() ? shape.path : strokeArea(shape);
        part.area = QTransform::fromScale(m_scale, m_scale).map(path);
        part.box = part.area.controlPointRect();

        m_budget.pairs -= m_parts.size();
        if (m_budget.isSpent() && !m_parts.isEmpty())
            m_isExact = false;
        if (!m_isExact)
            return;
        QVector<Part> blends;
        for (Part& below : m_parts) {
            if (!below.box.intersects(part.box))
                continue;
            const qint64 elements = below.area.elementCount() + part.area.elementCount();
            m_budget.crossings -= elements * elements;
            if (m_budget.isSpent()) {
                m_isExact = false;
                return;
            }
            const QPainterPath common = below.area.intersected(part.area);
            const QRectF box = common.boundingRect();
            if (box.width() <= sliver || box.height() <= sliver)
                continue;
            if (part.color.alpha() < 255) {
                blends.append(Part());
                blends.last().color = blended(below.color, part.color);
                setArea(blends.last(), common);
                setArea(part, part.area.subtracted(common));
                setArea(below, below.area.subtracted(common));
            } else if (below.color == part.color) {
                setArea(part, part.area.united(below.area));
                setArea(below, QPainterPath());
            } else {
                setArea(below, below.area.subtracted(part.area));
            }
        }
        m_parts.append(part);
        m_parts += blends;
    }

    double m_scale = 1;
    Budget& m_budget;
    bool m_isExact = true;
    QVector<Part> m_parts;
};

/// Follows the marks.
class Composer
{
public:
    Composer() { m_scopes.append(Scope()); }

    void add(const Painted& painted)
    {
        if (!painted.isMark) {
            m_scopes.last().shapes += subsetShapes(withDashes(painted));
        } else if (painted.mark.kind != Mark::End) {
            m_scopes.append({painted.mark, painted.transform, {}});
        } else if (m_scopes.size() > 1) {
            const Scope scope = m_scopes.takeLast();
            m_scopes.last().shapes += closed(scope);
        }
    }

    Composition result()
    {
        m_result.shapes = m_scopes.first().shapes;
        return m_result;
    }

private:
    struct Scope
    {
        Mark mark;
        QTransform transform;
        QVector<SubsetShape> shapes;
    };

    /// \a painted with dashes as long as they are meant, if they are not too many.
    Painted withDashes(const Painted& painted)
    {
        if (painted.pen.style() != Qt::CustomDashLine)
            return painted;
        const Mark& mark = m_scopes.last().mark;
        const double length = painted.path.length();
        const double factor = mark.kind == Mark::Dashes ? length / mark.pathLength() : 1;
        QVector<double> dashes = painted.pen.dashPattern();
        for (double& dash : dashes)
            dash *= factor;
        Painted result = painted;
        const double width = painted.pen.widthF() > 0 ? painted.pen.widthF() : 1;
        const double period = std::accumulate(dashes.begin(), dashes.end(), 0.0) * width;
        if (length * dashes.size() > most_dashes * period) {
            m_result.hasFineDashes = true;
            result.pen.setStyle(Qt::SolidLine);
            return result;
        }
        result.pen.setDashPattern(dashes);
        result.pen.setDashOffset(painted.pen.dashOffset() * factor);
        return result;
    }

    QVector<SubsetShape> closed(const Scope& scope)
    {
        if (scope.mark.kind == Mark::Clip)
            return clipped(scope.shapes, scope.mark.area, scope.transform);
        if (scope.mark.kind != Mark::Layer)
            return scope.shapes;
        const Layer layer(scope.shapes, m_budget);
        if (layer.isExact())
            return layer.shapes(scope.mark.opacity());
        if (!m_result.coarseLayers.contains(scope.mark.element()))
            m_result.coarseLayers.append(scope.mark.element());
        return faded(scope.shapes, scope.mark.opacity());
    }

    QVector<Scope> m_scopes;
    Budget m_budget;
    Composition m_result;
};

} // namespace

Composition compose(const QVector<Painted>& painted)
{
    Composer composer;
    for (const Painted& each : painted)
        composer.add(each);
    return composer.result();
}

QVector<SubsetShape>
clipped(const QVector<SubsetShape>& shapes, const QRectF& rect, const QTransform& transform)
{
    QVector<SubsetShape> result;
    bool canBeInverted = false;
    const QTransform inverse = transform.inverted(&canBeInverted);
    if (!canBeInverted)
        return result;
    QPainterPath frame;
    frame.addRect(rect);
    for (const SubsetShape& shape : shapes) {
        const double reach = shape.stroke.isValid() ? shape.width * std::max(shape.miterLimit, 2.0) : 0;
        const QRectF box = shape.path.controlPointRect().adjusted(-reach, -reach, reach, reach);
        if (rect.contains(inverse.mapRect(box))) {
            result.append(shape);
            continue;
        }
        const int before = result.size();
        bool isWhole = true;
        const QVector<SubsetShape> parts = fillAndStroke(shape);
        for (const SubsetShape& part : parts) {
            const bool isFill = part.fill.isValid();
            const QPainterPath covered = isFill ? part.path : strokeArea(part);
            const QPainterPath local = inverse.map(covered);
            const double hair = std::max(rect.width(), rect.height()) * (isFill ? fill_hair : stroke_hair);
            if (rect.adjusted(-hair, -hair, hair, hair).contains(local.boundingRect())) {
                result.append(part);
                continue;
            }
            isWhole = false;
            QPainterPath seen = local.intersected(frame);
            seen.setFillRule(covered.fillRule());
            if (!seen.isEmpty())
                result.append(area(transform.map(seen), isFill ? part.fill : part.stroke));
        }
        if (isWhole) {
            result.resize(before);
            result.append(shape);
        }
    }
    return result;
}
