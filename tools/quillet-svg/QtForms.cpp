#include "QtForms.h"

#include "Frame.h"
#include "Names.h"
#include "PathGrammar.h"

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <cmath>

namespace {

/// Of the width of a stroke: so long a line is still not seen.
constexpr double hardly_a_line = 0.0005;

QString text(double number)
{
    return QString::number(number, 'g', 17);
}

/// The paint \a value as a colour or a gradient that there is.
QString resolvedPaint(QString value, const References& references)
{
    if (value.startsWith(QLatin1String("url("))) {
        const QString id = referenceIn(value);
        if (references.isGradient(id))
            return QStringLiteral("url(#%1)").arg(id); // Qt knows no quotes
        // The colour behind it is for the case that there is no such paint.
        value = value.mid(value.indexOf(QLatin1Char(')')) + 1).trimmed();
        return value.isEmpty() ? QStringLiteral("none") : value;
    }
    const int profile = value.indexOf(QLatin1String(" icc-color"));
    return profile > 0 ? value.left(profile) : value;
}

/// Rewrites the paint \a name, which has an opacity besides.
void rewritePaint(QVector<Declaration>& properties,
                  const QString& name,
                  const QString& opacityName,
                  const References& references,
                  const QString& currentColor,
                  InheritedPaint::Opacity& opacity)
{
    const Declaration* const paint = find(properties, name);
    const double before = opacity.product();
    if (paint) {
        QString value = resolvedPaint(paint->value, references);
        if (value.compare(QLatin1String("currentColor"), Qt::CaseInsensitive) == 0)
            value = currentColor;
        const QColor color = readColor(value);
        set(properties, name, color.isValid() ? color.name() : value);
        opacity.ofColor = color.isValid() ? color.alphaF() : 1;
    }
    bool isNumber = true;
    if (const Declaration* const own = find(properties, opacityName)) {
        const double value = own->value.toDouble(&isNumber);
        opacity.own = isNumber ? std::clamp(value, 0.0, 1.0) : opacity.own;
    }
    if (isNumber && (opacity.product() != before || find(properties, opacityName)))
        set(properties, opacityName, QString::number(opacity.product(), 'g', 8));
}

void rewriteColors(QVector<Declaration>& properties, const References& references, InheritedPaint& paint)
{
    const Declaration* const color = find(properties, QStringLiteral("color"));
    if (color && readColor(color->value).isValid())
        paint.color = color->value;
    const auto rewrite = [&](const char* name, const char* opacityName, InheritedPaint::Opacity& opacity) {
        rewritePaint(
            properties, QLatin1String(name), QLatin1String(opacityName), references, paint.color, opacity);
    };
    rewrite("fill", "fill-opacity", paint.fill);
    rewrite("stroke", "stroke-opacity", paint.stroke);
    InheritedPaint::Opacity stop; // is not inherited
    rewrite("stop-color", "stop-opacity", stop);
}

/// The number of pixels in \a length, as text; \a length itself if that is not known. A percentage is of
/// \a whole.
QString inPixels(const QString& length, double whole)
{
    static const QRegularExpression absolute(QStringLiteral("^[-+.0-9eE]+(px|mm|cm|in|pt|pc)$"),
                                             QRegularExpression::CaseInsensitiveOption);
    if (absolute.match(length).hasMatch())
        return QString::number(absoluteLength(length), 'g', 12);
    bool ok = false;
    const double percent = length.endsWith(QLatin1Char('%')) ? length.chopped(1).toDouble(&ok) : 0;
    return ok && whole > 0 ? QString::number(percent / 100 * whole, 'g', 12) : length;
}

/// What percentages of a property are of (SVG 1.1, 7.10). Qt's renderer takes them all of the document's
/// width.
double wholeOf(const QString& property, const QSizeF& viewport)
{
    if (isOneOf(property, {"x", "cx", "rx", "x1", "x2", "width"}))
        return viewport.width();
    if (isOneOf(property, {"y", "cy", "ry", "y1", "y2", "height"}))
        return viewport.height();
    return std::hypot(viewport.width(), viewport.height()) / std::sqrt(2);
}

/// Dashes as numbers without units, which are what Qt takes.
QString rewrittenDashes(const QString& dashes, double whole, double strokeWidth)
{
    static const QRegularExpression separators(QStringLiteral("[\\s,]+"));
    QStringList lengths = dashes.split(separators, Qt::SkipEmptyParts);
    if (lengths.isEmpty() || lengths.first() == QLatin1String("none"))
        return dashes;
    for (QString& length : lengths)
        length = inPixels(length, whole);
    const auto isZero = [](const QString& length) {
        bool ok = false;
        return length.toDouble(&ok) == 0 && ok;
    };
    if (std::all_of(lengths.begin(), lengths.end(), isZero))
        return QStringLiteral("none");
    // A dash without length has caps, but Qt leaves it out.
    if (lengths.size() % 2 != 0)
        lengths += lengths;
    for (int i = 0; i < lengths.size(); i += 2) {
        if (isZero(lengths[i]))
            lengths[i] = text(hardly_a_line * strokeWidth);
    }
    return lengths.join(QLatin1Char(' '));
}

/// The points in front of an error, up to which they are drawn (SVG 1.1, F.2).
QString rewrittenPoints(const QString& points)
{
    const PointsReading reading = readPoints(points);
    return reading.errorOffset < 0 ? points : reading.numbers.join(QLatin1Char(' '));
}

} // namespace

void writeInQtsForms(QVector<Declaration>& properties,
                     const QSizeF& viewport,
                     const References& references,
                     InheritedPaint& paint)
{
    for (int i = properties.size() - 1; i >= 0; --i) {
        Declaration& each = properties[i];
        const double whole = wholeOf(each.property, viewport);
        if (each.property.endsWith(QLatin1String("opacity")))
            each.value = inPixels(each.value, 1);
        else if (isGeometry(each.property) || isOneOf(each.property, {"stroke-width", "stroke-dashoffset"}))
            each.value = inPixels(each.value, whole);
        const bool isAuto = isOneOf(each.property, {"rx", "ry"}) && each.value == QLatin1String("auto");
        const double value = each.value.toDouble();
        const bool isWrong = (each.property == QLatin1String("stroke-miterlimit") && value < 1)
                             || (each.property == QLatin1String("stroke-width") && value < 0);
        if (isAuto || isWrong)
            properties.removeAt(i);
    }
    const Declaration* const width = find(properties, QStringLiteral("stroke-width"));
    if (width && width->value.toDouble() > 0)
        paint.strokeWidth = width->value.toDouble();
    for (Declaration& each : properties) {
        if (each.property == QLatin1String("d"))
            each.value = pathForQt(each.value, paint.strokeWidth);
        else if (each.property == QLatin1String("points"))
            each.value = rewrittenPoints(each.value);
        else if (each.property == QLatin1String("stroke-dasharray"))
            each.value = rewrittenDashes(each.value, wholeOf(each.property, viewport), paint.strokeWidth);
    }
    if (const Declaration* const dashes = find(properties, QStringLiteral("stroke-dasharray")))
        paint.isDashed = dashes->value != QLatin1String("none");
    rewriteColors(properties, references, paint);
}

QString pathForQt(const QString& data, double strokeWidth)
{
    PathReading reading = readPathData(data);
    const QVector<PathSegment> segments = reading.segments;
    bool changes = reading.errorOffset >= 0 // an error ends the path where it stands (SVG 1.1, F.2)
                   || std::any_of(segments.begin(), segments.end(), isFlatArc);
    const QVector<Subpath> subpaths = subpathsOf(reading);
    reading.segments.clear();
    for (const Subpath& each : subpaths) {
        if (each.isDot) {
            // Qt leaves it out with its caps. It is not closed, or it would have corners in their place.
            const PathSegment move{QLatin1Char('M'), {text(each.start.x()), text(each.start.y())}, 0, false};
            reading.segments +=
                {move, {QLatin1Char('h'), {text(hardly_a_line * strokeWidth)}, 0, false}, move};
            changes = true;
        } else {
            reading.segments += segments.mid(each.begin, each.end - each.begin);
        }
    }
    return changes ? spelledOut(reading, reading.segments.size()) : data;
}
