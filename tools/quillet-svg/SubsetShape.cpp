#include "SubsetShape.h"

#include <QtGui/QGradient>
#include <QtGui/QPainterPathStroker>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

constexpr double outline_size = 2000;      ///< of a path while its stroke is made an outline
constexpr double outline_threshold = 0.02; ///< likewise; with Qt's own, circles have corners

/// The colour that a brush has on average.
QColor meanColor(const QBrush& brush)
{
    const QGradient* const gradient = brush.gradient();
    if (!gradient || gradient->stops().isEmpty())
        return brush.style() == Qt::TexturePattern ? QColor() : brush.color();

    // Each stretch between two stops counts by its length, what lies outside of the stops not at all.
    const QGradientStops stops = gradient->stops();
    double sum[4] = {};
    double length = 0;
    for (int i = 0; i < stops.size(); ++i) {
        const double before = i > 0 ? stops[i].first - stops[i - 1].first : 0;
        const double after = i + 1 < stops.size() ? stops[i + 1].first - stops[i].first : 0;
        const double weight = (before + after) / 2 + 1e-6;
        const QColor color = stops[i].second;
        const double alpha = color.alphaF();
        sum[0] += weight * alpha * color.redF();
        sum[1] += weight * alpha * color.greenF();
        sum[2] += weight * alpha * color.blueF();
        sum[3] += weight * alpha;
        length += weight;
    }
    const auto channel = [](double value) { return std::clamp(value, 0.0, 1.0); };
    if (sum[3] <= 0)
        return QColor::fromRgbF(0, 0, 0, 0);
    return QColor::fromRgbF(channel(sum[0] / sum[3]),
                            channel(sum[1] / sum[3]),
                            channel(sum[2] / sum[3]),
                            channel(sum[3] / length));
}

/// The colour of \a brush under the opacity of the painter; invalid where nothing would be seen.
QColor visibleColor(const QBrush& brush, double opacity)
{
    if (brush.style() == Qt::NoBrush)
        return {};
    QColor color = meanColor(brush);
    if (!color.isValid())
        return {};
    color.setAlphaF(std::clamp(color.alphaF() * opacity, 0.0, 1.0));
    return color.alpha() > 0 ? color : QColor();
}

/// The factor by which \a transform scales all lengths, or 0 if it does not scale all alike.
double commonScale(const QTransform& transform)
{
    const double across = std::hypot(transform.m11(), transform.m12());
    const double down = std::hypot(transform.m21(), transform.m22());
    const double skew = transform.m11() * transform.m21() + transform.m12() * transform.m22();
    const double most = std::max(across, down);
    const bool same = std::abs(across - down) <= 1e-6 * most && std::abs(skew) <= 1e-6 * most * most;
    return same ? across : 0;
}

QPainterPath outline(const QPainterPath& path, const QPen& pen, Qt::PenJoinStyle join, double miterLimit)
{
    // Qt makes curves of dashes straight, and outlines of curves only nearly parallel, as exact as need be
    // for pixels. So the path is made as large as it will be seen.
    const QRectF box = path.controlPointRect();
    const double scale = outline_size / std::max({box.width(), box.height(), pen.widthF(), 1e-6});

    QPainterPathStroker stroker;
    stroker.setWidth(pen.widthF() * scale);
    stroker.setCapStyle(pen.capStyle());
    stroker.setJoinStyle(join);
    stroker.setMiterLimit(miterLimit);
    stroker.setCurveThreshold(outline_threshold);
    if (pen.style() != Qt::SolidLine) {
        stroker.setDashPattern(pen.dashPattern());
        // Qt goes from one dash to the next up to there.
        const QVector<double> dashes = pen.dashPattern();
        const double period = std::accumulate(dashes.begin(), dashes.end(), 0.0);
        const double offset = std::fmod(pen.dashOffset(), period);
        stroker.setDashOffset(std::isfinite(offset) ? offset : 0);
    }
    const QPainterPath large = stroker.createStroke(QTransform::fromScale(scale, scale).map(path));
    return QTransform::fromScale(1 / scale, 1 / scale).map(large);
}

/// Finds a limit with which the reader's miters are those of \a pen, whose limit is measured in another way;
/// 0 if there is none.
double readersMiterLimit(const QPainterPath& path, const QPen& pen)
{
    const double limit = pen.miterLimit();
    if (pen.joinStyle() == Qt::MiterJoin)
        return limit;
    const QPainterPath wanted = outline(path, pen, Qt::SvgMiterJoin, limit);
    for (const double candidate : {4.0, limit, 2 * limit}) {
        // The second comparison is for readers that measure as SVG does.
        if (outline(path, pen, Qt::MiterJoin, candidate) == wanted
            && outline(path, pen, Qt::SvgMiterJoin, candidate) == wanted)
            return candidate;
    }
    return 0;
}

/// A pen in units of the drawing. Its width is 0 if the reader has none that draws the same.
SubsetShape strokedShape(const QPainterPath& path, const QPen& pen, double scale)
{
    SubsetShape shape;
    shape.width = 0;
    if (pen.style() != Qt::SolidLine || scale <= 0)
        return shape;
    shape.cap = pen.capStyle();
    shape.join = pen.joinStyle();
    if (shape.join == Qt::SvgMiterJoin || shape.join == Qt::MiterJoin) {
        shape.join = Qt::MiterJoin;
        shape.miterLimit = readersMiterLimit(path, pen);
        if (shape.miterLimit <= 0)
            return shape;
    }
    const double width = pen.widthF() * scale;
    shape.width = width < unpaintable_width ? width : 0;
    return shape;
}

const char* capName(Qt::PenCapStyle cap)
{
    return cap == Qt::RoundCap ? "round" : cap == Qt::SquareCap ? "square" : "butt";
}

const char* joinName(Qt::PenJoinStyle join)
{
    return join == Qt::RoundJoin ? "round" : join == Qt::BevelJoin ? "bevel" : "miter";
}

QString attribute(const char* name, const QString& value)
{
    return QStringLiteral(" %1=\"%2\"").arg(QLatin1String(name), value);
}

} // namespace

QPainterPath strokeArea(const SubsetShape& shape)
{
    QPen pen(shape.stroke, shape.width);
    pen.setCapStyle(shape.cap);
    QPainterPath area = outline(shape.path, pen, shape.join, shape.miterLimit);
    area.setFillRule(Qt::WindingFill);
    return area;
}

bool hasSameMiters(const QPainterPath& path, const QPen& pen)
{
    return pen.joinStyle() != Qt::MiterJoin
           || outline(path, pen, Qt::MiterJoin, pen.miterLimit())
                  == outline(path, pen, Qt::SvgMiterJoin, pen.miterLimit());
}

QVector<SubsetShape> subsetShapes(const Painted& painted)
{
    QVector<SubsetShape> shapes;
    const QPainterPath path = painted.transform.map(painted.path);
    SubsetShape filled;
    filled.path = path;
    filled.fill = visibleColor(painted.brush, painted.opacity);

    QColor strokeColor;
    if (painted.pen.style() != Qt::NoPen)
        strokeColor = visibleColor(painted.pen.brush(), painted.opacity);
    if (!strokeColor.isValid()) {
        if (filled.fill.isValid())
            shapes.append(filled);
        return shapes;
    }

    // The width of a cosmetic pen is not transformed, so neither may its outline be.
    const bool isCosmetic = painted.pen.isCosmetic();
    const QPainterPath& line = isCosmetic ? path : painted.path;
    QPen pen = painted.pen;
    if (pen.widthF() <= 0)
        pen.setWidthF(1);
    SubsetShape stroked = strokedShape(line, pen, isCosmetic ? 1 : commonScale(painted.transform));
    if (stroked.width > 0) {
        stroked.path = path;
        stroked.fill = filled.fill;
        stroked.stroke = strokeColor;
        shapes.append(stroked);
    } else {
        if (filled.fill.isValid())
            shapes.append(filled);
        const QPainterPath area = outline(line, pen, pen.joinStyle(), pen.miterLimit());
        SubsetShape outlined;
        outlined.path = isCosmetic ? area : painted.transform.map(area);
        outlined.path.setFillRule(Qt::WindingFill);
        outlined.fill = strokeColor;
        shapes.append(outlined);
    }
    return shapes;
}

SubsetWriter::SubsetWriter(const QSizeF& size) : m_size(size)
{
    const double longer = std::max(size.width(), size.height());
    m_decimals = std::clamp(5 - int(std::floor(std::log10(std::max(longer, 1e-6)))), 0, 9);
}

bool SubsetWriter::add(const SubsetShape& shape)
{
    const QString width = number(shape.width, m_decimals + 1);
    const bool isStroked = shape.stroke.isValid() && width != QLatin1String("0"); // which the reader draws
    const QString data = pathData(shape);
    if (data.isEmpty() || !(isStroked || shape.fill.isValid()))
        return false;

    QString attributes = attribute("d", data);
    const auto addColor = [&](const char* name, const char* opacityName, const QColor& color) {
        attributes += attribute(name, color.isValid() ? color.name() : QStringLiteral("none"));
        if (color.isValid() && color.alpha() < 255)
            attributes += attribute(opacityName, number(color.alphaF(), 4));
    };
    addColor("fill", "fill-opacity", shape.fill);
    if (shape.fill.isValid()) {
        const bool winding = shape.path.fillRule() == Qt::WindingFill;
        attributes += attribute("fill-rule", winding ? QStringLiteral("nonzero") : QStringLiteral("evenodd"));
    }
    if (isStroked) {
        addColor("stroke", "stroke-opacity", shape.stroke);
        attributes += attribute("stroke-width", width);
        if (shape.cap != Qt::FlatCap)
            attributes += attribute("stroke-linecap", QLatin1String(capName(shape.cap)));
        if (shape.join != Qt::MiterJoin)
            attributes += attribute("stroke-linejoin", QLatin1String(joinName(shape.join)));
        else if (shape.miterLimit != 4)
            attributes += attribute("stroke-miterlimit", number(shape.miterLimit, 4));
    }
    m_paths += QStringLiteral("  <path%1/>\n").arg(attributes);
    return true;
}

QString SubsetWriter::document() const
{
    const QString width = number(m_size.width(), m_decimals);
    const QString height = number(m_size.height(), m_decimals);
    return QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%1\" height=\"%2\" "
                          "viewBox=\"0 0 %1 %2\">\n")
               .arg(width, height)
           + m_paths + QStringLiteral("</svg>\n");
}

QString SubsetWriter::number(double value, int decimals) const
{
    QString text = QString::number(value, 'f', decimals);
    if (text.contains(QLatin1Char('.'))) {
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
    }
    return text == QLatin1String("-0") ? QStringLiteral("0") : text;
}

QString SubsetWriter::pathData(const SubsetShape& shape) const
{
    const QPainterPath& path = shape.path;
    QString data;
    QString start;
    QString last;
    bool isOpen = false; // something has been drawn since the last move
    const auto point = [this](const QPainterPath::Element& element) {
        return number(element.x, m_decimals) + QLatin1Char(' ') + number(element.y, m_decimals);
    };
    const auto close = [&] {
        if (isOpen && last == start)
            data += QLatin1Char('Z');
        isOpen = false;
    };

    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        if (element.isMoveTo()) {
            close();
            if (i + 1 < path.elementCount() && !path.elementAt(i + 1).isMoveTo()) {
                start = last = point(element);
                data += QLatin1Char('M') + start;
            }
        } else if (element.isLineTo()) {
            QString end = point(element);
            const bool isWhole =
                !isOpen && (i + 1 == path.elementCount() || path.elementAt(i + 1).isMoveTo());
            if (isWhole && end == start && shape.stroke.isValid()) {
                // A line without length would lose its caps.
                const double step = std::pow(10, -m_decimals);
                end = point({element.x + step, element.y, element.type});
            }
            last = end;
            data += QLatin1Char('L') + last;
            isOpen = true;
        } else {
            data += QLatin1Char('C') + point(element);
            for (int more = 0; more < 2 && i + 1 < path.elementCount(); ++more) {
                last = point(path.elementAt(++i));
                data += QLatin1Char(' ') + last;
            }
            isOpen = true;
        }
    }
    close();
    return data;
}
