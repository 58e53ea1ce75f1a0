#include "Composition.h"

#include "Area.h"
#include "PictureDifference.h"

#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

// A clip cuts what sticks out farther, as a share of the longer side of what is seen of it. What is cut has
// no curves any more, and a stroke is a stroke no more.
constexpr double fill_hair = 1.0 / 1000;
constexpr double stroke_hair = 1.0 / 200;

/// What is parted and cut in a document at most.
struct Budget
{
    qint64 effort;             ///< of what is computed with areas
    qint64 pairs = 50'000'000; ///< of shapes

    bool isSpent() const { return pairs < 0 || effort < 0; }

    /// Takes what a proof by pictures costs. \return whether it was there.
    bool takeProof()
    {
        constexpr qint64 effort_of_proof = 300'000;
        effort -= effort_of_proof;
        return effort >= 0;
    }
};

constexpr double most_dashes = 100'000; ///< of one path
constexpr double most_dashes_in_all = 500'000;

// Pictures tell whether what was parted is drawn like what it was made of. They differ where areas meet,
// which are lines; a blot is a pixel that differs like all around it.
constexpr int proof_size = 128;
constexpr int most_difference = 40;
constexpr double most_blots = 1.0 / 1000; ///< of the pixels

/// How long \a path is. It is measured in one size, for Qt finds no end where coordinates are large.
double lengthOf(const QPainterPath& path)
{
    constexpr double measured_size = 1000;
    const QRectF box = path.controlPointRect();
    const double size = std::max({box.width(), box.height(), 1e-9});
    if (!std::isfinite(size))
        return size;
    const double scale = measured_size / size;
    const QTransform toSize =
        QTransform::fromTranslate(-box.left(), -box.top()) * QTransform::fromScale(scale, scale);
    return toSize.map(path).length() / scale;
}

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

/// What the shapes draw, in a picture whose longer side is as long as that of \a box.
QImage
picture(const QVector<SubsetShape>& shapes, const QRectF& box, const QPainterPath& clip = QPainterPath())
{
    const double scale = proof_size / std::max({box.width(), box.height(), 1e-9});
    QImage image((box.size() * scale).toSize().expandedTo(QSize(1, 1)), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.translate(-box.topLeft());
    if (!clip.isEmpty())
        painter.setClipPath(clip);
    for (const SubsetShape& shape : shapes) {
        if (shape.fill.isValid())
            painter.fillPath(shape.path, shape.fill);
        if (shape.stroke.isValid()) {
            QPen pen(shape.stroke, shape.width, Qt::SolidLine, shape.cap, shape.join);
            pen.setMiterLimit(shape.miterLimit);
            painter.strokePath(shape.path, pen);
        }
    }
    return image;
}

/// Whether two pictures differ at most along lines, where areas meet.
bool areAlike(const QImage& one, const QImage& other)
{
    const QImage map = differenceMap(
        one, other, [](int difference) -> QRgb { return difference > most_difference ? 1 : 0; });
    const auto differs = [&](int x, int y) {
        return (reinterpret_cast<const QRgb*>(map.constScanLine(y))[x] & 1) != 0;
    };
    int blots = 0;
    for (int y = 1; y + 1 < map.height(); ++y) {
        for (int x = 1; x + 1 < map.width(); ++x) {
            bool isBlot = differs(x, y);
            for (int i = 0; i < 9 && isBlot; ++i)
                isBlot = differs(x + i % 3 - 1, y + i / 3 - 1);
            blots += isBlot ? 1 : 0;
        }
    }
    return blots <= most_blots * map.width() * map.height();
}

/// Shapes with an opacity in common, parted so that none overlaps another.
class Layer
{
public:
    Layer(const QVector<SubsetShape>& shapes, Budget& budget) : m_budget(budget)
    {
        QVector<Part> parts;
        for (const SubsetShape& shape : shapes) {
            const QVector<SubsetShape> fillAndStroke = ::fillAndStroke(shape);
            for (const SubsetShape& each : fillAndStroke) {
                Part part;
                part.shape = each;
                part.color = each.fill.isValid() ? each.fill : each.stroke;
                part.outline = each.fill.isValid() ? each.path : strokeArea(each);
                part.box = part.outline.controlPointRect();
                m_bounds |= part.box;
                parts.append(part);
            }
        }
        for (Part& part : parts) {
            if (m_isExact)
                add(part);
        }
        if (m_isExact && m_hasOverlaps)
            m_isExact = m_budget.takeProof()
                        && areAlike(picture(shapes, m_bounds), picture(this->shapes(), m_bounds));
    }

    /// Whether all could be parted.
    bool isExact() const { return m_isExact; }

    QVector<SubsetShape> shapes() const
    {
        QVector<SubsetShape> result;
        for (const Part& part : m_parts) {
            if (!part.isParted)
                result.append(part.shape);
            else if (!part.area.isEmpty())
                result.append(::area(part.area.path(m_bounds), part.color));
        }
        return result;
    }

private:
    struct Part
    {
        SubsetShape shape;
        QColor color;
        QPainterPath outline;
        QRectF box; ///< in which the area lies
        Area area;
        bool hasArea = false;
        bool isParted = false; ///< the area counts, not the shape
    };

    void needArea(Part& part)
    {
        if (!part.hasArea)
            part.area = Area(part.outline, m_bounds, m_budget.effort);
        part.hasArea = true;
        m_isExact = m_isExact && part.area.isValid();
    }

    void setArea(Part& part, const Area& area)
    {
        part.area = area;
        part.hasArea = true;
        part.isParted = true;
        m_isExact = m_isExact && area.isValid();
    }

    void add(Part part)
    {
        m_budget.pairs -= m_parts.size();
        if (m_budget.isSpent() && !m_parts.isEmpty())
            m_isExact = false;
        QVector<Part> blends;
        for (int i = 0; i < m_parts.size() && m_isExact; ++i) {
            Part& below = m_parts[i];
            if (!below.box.intersects(part.box))
                continue;
            needArea(below);
            needArea(part);
            if (!m_isExact || !below.area.box().intersects(part.area.box()))
                continue;
            const Area beneath = below.area;
            const Area above = part.area;
            const Area common = beneath.intersected(above, m_budget.effort);
            m_isExact = common.isValid();
            if (common.isHair())
                continue;
            m_hasOverlaps = true;
            if (part.color.alpha() < 255) {
                blends.append(Part());
                blends.last().color = blended(below.color, part.color);
                blends.last().box = below.box & part.box;
                setArea(blends.last(), common);
                setArea(part, above.subtracted(beneath, m_budget.effort));
                setArea(below, beneath.subtracted(above, m_budget.effort));
            } else if (below.color == part.color) {
                part.box |= below.box;
                setArea(part, above.united(beneath, m_budget.effort));
                setArea(below, Area());
            } else {
                setArea(below, beneath.subtracted(above, m_budget.effort));
                // Painters draw the strokes of curves not so exactly as they are cut out here.
                if (part.shape.stroke.isValid())
                    setArea(part, above);
            }
        }
        m_parts.append(part);
        m_parts += blends;
    }

    QRectF m_bounds;
    Budget& m_budget;
    bool m_isExact = true;
    bool m_hasOverlaps = false;
    QVector<Part> m_parts;
};

/// Follows the marks.
class Composer
{
public:
    Composer(const QRectF& frame, qint64 effort) : m_frame(frame), m_budget{effort}
    {
        m_scopes.append(Scope());
    }

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
        m_result.shapes = clippedToFrame(m_scopes.first().shapes);
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
        const double length = lengthOf(painted.path);
        const double factor = mark.kind == Mark::Dashes ? length / mark.pathLength() : 1;
        QVector<double> dashes = painted.pen.dashPattern();
        for (double& dash : dashes)
            dash *= factor;
        Painted result = painted;
        const double width = painted.pen.widthF() > 0 ? painted.pen.widthF() : 1;
        const double period = std::accumulate(dashes.begin(), dashes.end(), 0.0) * width;
        const double count = length > 0 ? length * dashes.size() / period : 0;
        const bool areMany = count <= most_dashes && !(m_dashes + count <= most_dashes_in_all);
        if (areMany || !(count <= most_dashes)) {
            (areMany ? m_result.hasManyDashes : m_result.hasFineDashes) = true;
            result.pen.setStyle(Qt::SolidLine);
            return result;
        }
        m_dashes += count;
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
        const QVector<SubsetShape> shapes = clippedToFrame(scope.shapes);
        const Layer layer(shapes, m_budget);
        if (layer.isExact())
            return faded(layer.shapes(), scope.mark.opacity());
        if (!m_result.mergedLayers.contains(scope.mark.element()))
            m_result.mergedLayers.append(scope.mark.element());
        return faded(shapes, scope.mark.opacity());
    }

    QVector<SubsetShape> clippedToFrame(const QVector<SubsetShape>& shapes)
    {
        return m_frame.isNull() ? shapes : clipped(shapes, m_frame, QTransform());
    }

    /// What of \a shapes lies in \a rect, which \a transform places. What lies wholly in it stays as it is.
    QVector<SubsetShape>
    clipped(const QVector<SubsetShape>& shapes, const QRectF& rect, const QTransform& transform);

    QRectF m_frame;
    QVector<Scope> m_scopes;
    Budget m_budget;
    double m_dashes = 0;
    Composition m_result;
};

QVector<SubsetShape>
Composer::clipped(const QVector<SubsetShape>& shapes, const QRectF& rect, const QTransform& transform)
{
    QVector<SubsetShape> result;
    bool canBeInverted = false;
    const QTransform inverse = transform.inverted(&canBeInverted);
    if (!canBeInverted)
        return result;
    // Nobody sees how exactly it is cut outside of the frame of the drawing, which may be far smaller.
    const QRectF seen = m_frame.isNull() ? rect : rect & inverse.mapRect(m_frame);
    QPainterPath frame;
    frame.addRect(seen);
    frame = transform.map(frame);
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
            const QRectF localBox = local.boundingRect();
            const double hair = std::max(seen.width(), seen.height()) * (isFill ? fill_hair : stroke_hair);
            const bool isOutside = !seen.intersects(localBox);
            if (!isOutside && seen.adjusted(-hair, -hair, hair, hair).contains(localBox)) {
                result.append(part);
                continue;
            }
            isWhole = false;
            if (isOutside)
                continue;
            const Area inside(local, seen, m_budget.effort);
            const SubsetShape cut = area(transform.map(inside.path(seen)), isFill ? part.fill : part.stroke);
            const bool isCut = inside.isValid() && m_budget.takeProof()
                               && areAlike(picture({part}, frame.boundingRect(), frame),
                                           picture({cut}, frame.boundingRect()));
            if (!isCut)
                m_result.hasWholeShapes = true;
            if (!isCut || !inside.isEmpty())
                result.append(isCut ? cut : part);
        }
        if (isWhole) {
            result.resize(before);
            result.append(shape);
        }
    }
    return result;
}

} // namespace

Composition compose(const QVector<Painted>& painted, const QRectF& frame, qint64 effort)
{
    Composer composer(frame, effort);
    for (const Painted& each : painted)
        composer.add(each);
    return composer.result();
}
