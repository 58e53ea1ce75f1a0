#include "QtForms.h"

#include "Frame.h"
#include "Names.h"
#include "PathGrammar.h"

#include <QtCore/QRegularExpression>

#include <algorithm>

namespace {

/// The paint \a value as a colour or a gradient that there is.
QString resolvedPaint(QString value, const References& references)
{
    if (value.startsWith(QLatin1String("url("))) {
        if (references.isGradient(referenceIn(value)))
            return value;
        // The colour behind it is for the case that there is no such paint.
        value = value.mid(value.indexOf(QLatin1Char(')')) + 1).trimmed();
        return value.isEmpty() ? QStringLiteral("none") : value;
    }
    const int profile = value.indexOf(QLatin1String(" icc-color"));
    return profile > 0 ? value.left(profile) : value;
}

/// The property that holds the opacity of a colour; empty for one that has none.
QString opacityOf(const QString& property)
{
    if (property == QLatin1String("stop-color"))
        return QStringLiteral("stop-opacity");
    return property == QLatin1String("color") ? QString() : property + QLatin1String("-opacity");
}

void multiply(QVector<Declaration>& properties, const QString& name, double factor)
{
    const auto found = std::find_if(
        properties.begin(), properties.end(), [&](const Declaration& each) { return each.property == name; });
    if (found == properties.end())
        properties.append({name, QString::number(factor, 'g', 8)});
    else
        found->value = QString::number(found->value.toDouble() * factor, 'g', 8);
}

void rewriteColors(QVector<Declaration>& properties, const References& references)
{
    for (int i = 0; i < properties.size(); ++i) {
        const QString property = properties[i].property;
        if (!isOneOf(property, {"fill", "stroke", "stop-color", "color"}))
            continue;
        const QString value = resolvedPaint(properties[i].value, references);
        const QColor color = readColor(value);
        properties[i].value = color.isValid() ? color.name() : value;
        if (color.isValid() && color.alpha() < 255 && !opacityOf(property).isEmpty())
            multiply(properties, opacityOf(property), color.alphaF());
    }
}

/// Dashes as numbers without units, which are what Qt takes.
QString dashesInPixels(const QString& dashes)
{
    static const QRegularExpression separators(QStringLiteral("[\\s,]+"));
    static const QRegularExpression unit(QStringLiteral("(px|mm|cm|in|pt|pc)$"));
    QStringList lengths = dashes.split(separators, Qt::SkipEmptyParts);
    for (QString& length : lengths) {
        if (unit.match(length).hasMatch())
            length = QString::number(absoluteLength(length), 'g', 12);
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
    // A line without length has caps, but Qt leaves it out. Made this long, it is still not seen.
    for (int i = segments.size() - 2; i >= 0; --i) {
        if (segments[i].command.toUpper() == QLatin1Char('M') && isPoint(segments[i], segments[i + 1])) {
            const PathSegment line{QLatin1Char('h'), {QStringLiteral("0.01")}, 0, false};
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

void writeInQtsForms(QVector<Declaration>& properties, const References& references)
{
    static const QRegularExpression absolute(QStringLiteral("^[-+.0-9eE]+(mm|cm|in|pt|pc)$"));
    for (Declaration& each : properties) {
        if (each.property == QLatin1String("d"))
            each.value = rewrittenPath(each.value);
        else if (each.property.endsWith(QLatin1String("opacity")) && each.value.endsWith(QLatin1Char('%')))
            each.value = QString::number(each.value.chopped(1).toDouble() / 100);
        else if (each.property == QLatin1String("stroke-dasharray"))
            each.value = dashesInPixels(each.value);
        else if (absolute.match(each.value).hasMatch())
            each.value = QString::number(absoluteLength(each.value), 'g', 12);
    }
    rewriteColors(properties, references);
}
