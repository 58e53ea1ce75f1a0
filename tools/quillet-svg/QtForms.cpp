#include "QtForms.h"

#include "Frame.h"
#include "Names.h"
#include "PathGrammar.h"

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <cmath>

namespace {

constexpr const char* hardly_a_line = "0.01"; ///< so long a line is still not seen

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
QString rewrittenDashes(const QString& dashes, double whole)
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
            lengths[i] = QLatin1String(hardly_a_line);
    }
    return lengths.join(QLatin1Char(' '));
}

/// Whether \a segment, which stands behind the move \a move, leads nowhere.
bool isPoint(const PathSegment& move, const PathSegment& segment)
{
    const auto isZero = [](const QString& number) { return number.toDouble() == 0; };
    const QChar command = segment.command;
    if (command == QLatin1Char('l') || command == QLatin1Char('h') || command == QLatin1Char('v'))
        return std::all_of(segment.numbers.begin(), segment.numbers.end(), isZero);
    if (command == QLatin1Char('L'))
        return move.command == QLatin1Char('M') && move.numbers == segment.numbers;
    return command.toUpper() == QLatin1Char('Z');
}

QString rewrittenPath(const QString& data)
{
    PathReading reading = readPathData(data);
    QVector<PathSegment>& segments = reading.segments;
    bool changes = reading.errorOffset >= 0 // an error ends the path where it stands (SVG 1.1, F.2)
                   || std::any_of(segments.begin(), segments.end(), isFlatArc);
    // A line without length has caps, but Qt leaves it out.
    for (int i = segments.size() - 2; i >= 0; --i) {
        if (segments[i].command.toUpper() == QLatin1Char('M') && isPoint(segments[i], segments[i + 1])) {
            const PathSegment line{QLatin1Char('h'), {QLatin1String(hardly_a_line)}, 0, false};
            if (segments[i + 1].command.toUpper() == QLatin1Char('Z'))
                segments[i + 1] = line; // closed, it would have corners in place of caps
            else
                segments.insert(i + 1, line);
            changes = true;
        }
    }
    return changes ? spelledOut(reading, segments.size()) : data;
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
        if (each.property == QLatin1String("d"))
            each.value = rewrittenPath(each.value);
        else if (each.property.endsWith(QLatin1String("opacity")))
            each.value = inPixels(each.value, 1);
        else if (each.property == QLatin1String("stroke-dasharray"))
            each.value = rewrittenDashes(each.value, whole);
        else if (isGeometry(each.property) || isOneOf(each.property, {"stroke-width", "stroke-dashoffset"}))
            each.value = inPixels(each.value, whole);
        const bool isAuto = isOneOf(each.property, {"rx", "ry"}) && each.value == QLatin1String("auto");
        const bool isWrong = each.property == QLatin1String("stroke-miterlimit") && each.value.toDouble() < 1;
        if (isAuto || isWrong)
            properties.removeAt(i);
    }
    rewriteColors(properties, references, paint);
}
