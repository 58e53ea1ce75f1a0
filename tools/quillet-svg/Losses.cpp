#include "Losses.h"

#include "AttributeRules.h"
#include "Frame.h"
#include "Names.h"
#include "PathGrammar.h"
#include "SubsetShape.h"

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <limits>

namespace {

Finding lost(const Position& position, const char* rule, const QString& message, const QString& advice)
{
    return {Finding::Lost, position, QLatin1String(rule), message, advice};
}

QVector<Finding>
lossesOfPaint(const Position& position, const Declaration& paint, const References& references)
{
    const QString id = referenceIn(paint.value);
    const QString advice = QStringLiteral("choose a plain %1").arg(paint.property);
    if (id.isEmpty()) {
        const QString word = paint.value.toLower();
        if (readColor(word).isValid() || word.startsWith(QLatin1String("url("))
            || word.contains(QLatin1String("icc-color"))
            || isOneOf(word, {"none", "currentcolor", "inherit"}))
            return {};
        return {lost(position,
                     "color",
                     QStringLiteral("“%1” is no colour that is known here").arg(paint.value),
                     QStringLiteral("write #rrggbb"))};
    }
    if (references.isGradient(id)) {
        return {lost(position,
                     "gradient",
                     QStringLiteral("the gradient “%1” becomes its mean colour").arg(id),
                     advice)};
    }
    if (references.find(id) >= 0)
        return {lost(position, "pattern", QStringLiteral("the pattern “%1” is left out").arg(id), advice)};
    return {{Finding::Note,
             position,
             QStringLiteral("missing-paint"),
             QStringLiteral("there is no “%1” to paint with").arg(id),
             advice}};
}

/// Where a property of \a element stands.
Position positionOf(const XmlElement& element, const QString& property)
{
    const XmlAttribute* attribute = element.find(property);
    return attribute ? attribute->namePosition : element.position;
}

bool isTransformed(const XmlElement& element, const QVector<Declaration>& properties)
{
    return element.find(QStringLiteral("transform")) || find(properties, QStringLiteral("transform"));
}

/// Whether \a text is a list of transforms (SVG 1.1, 7.6), or nothing.
bool isTransformList(const QString& text)
{
    // One by one: a list may be longer than one expression can match.
    static const QRegularExpression transform(
        QStringLiteral("\\G[\\s,]*(matrix|translate|scale|rotate|skewX|skewY)\\s*\\([-+.0-9eE,\\s]*\\)"));
    static const QRegularExpression notSeparator(QStringLiteral("[^\\s,]"));
    if (text.trimmed() == QLatin1String("none"))
        return true;
    int end = 0;
    for (auto matches = transform.globalMatch(text); matches.hasNext();)
        end = matches.next().capturedEnd();
    return text.indexOf(notSeparator, end) < 0;
}

/// Whether the property of \a element has to be a number, or numbers.
bool isNumeric(const QString& property, const XmlElement& element)
{
    if (isGeometry(property))
        return isShape(localName(element.name)) && !isOneOf(property, {"d", "points"});
    return isOneOf(property,
                   {"opacity",
                    "fill-opacity",
                    "stroke-opacity",
                    "stroke-width",
                    "stroke-miterlimit",
                    "stroke-dashoffset",
                    "stroke-dasharray"});
}

/// The first of the \a texts that is no number, or less than \a least; empty if there is none.
QString firstThatIsNone(const QStringList& texts, double least)
{
    for (const QString& text : texts) {
        bool ok = false;
        const double number = text.toDouble(&ok);
        if (!ok || number < least)
            return text;
    }
    return {};
}

/// What becomes of the property \a each.
QVector<Finding> lossesOf(const XmlElement& element,
                          const Declaration& each,
                          const QVector<Declaration>& properties,
                          const References& references)
{
    const Position position = positionOf(element, each.property);
    if (isOneOf(each.property, {"fill", "stroke"}))
        return lossesOfPaint(position, each, references);
    if (each.property == QLatin1String("vector-effect")
        && each.value == QLatin1String("non-scaling-stroke")) {
        return {{Finding::Note,
                 position,
                 QStringLiteral("vector-effect"),
                 QStringLiteral("the stroke has its width where the drawing is not scaled"),
                 QStringLiteral("nothing needs to be done")}};
    }
    if (each.property == QLatin1String("stroke-linejoin") && isOneOf(each.value, {"arcs", "miter-clip"})) {
        return {lost(position,
                     "value",
                     QStringLiteral("corners are drawn as “miter”, not as “%1”").arg(each.value),
                     QStringLiteral("choose another line join"))};
    }
    if (each.property == QLatin1String("color") && each.value.contains(QLatin1Char('(')))
        return lossesOfPaint(position, each, references);
    const Ignored ignored = lostProperty(each.property, each.value);
    const bool isOrigin = isOneOf(each.property, {"transform-origin", "transform-box"});
    if (ignored.weight != Finding::Lost || (isOrigin && !isTransformed(element, properties)))
        return {};
    return {{Finding::Lost,
             position,
             ignored.rule,
             QStringLiteral("“%1” is left out").arg(each.property),
             ignored.advice}};
}

/// An error in the data of a path or of a polygon, which is drawn up to there (SVG 1.1, F.2).
Finding errorIn(const XmlAttribute& data, int offset, const QString& message)
{
    return {Finding::Note,
            PlacesInValue(data).at(offset),
            QStringLiteral("path-error"),
            message + QStringLiteral("; what stands before it is drawn"),
            QStringLiteral("correct it, or have the program that wrote the file write it anew")};
}

QVector<Finding> errorsInPath(const XmlElement& element)
{
    const XmlAttribute* const data = element.find(QStringLiteral("d"));
    if (!data || localName(element.name) != QLatin1String("path"))
        return {};
    const PathReading reading = readPathData(data->value);
    if (reading.errorOffset < 0)
        return {};
    return {errorIn(*data,
                    reading.errorOffset,
                    QStringLiteral("path data is wrong: ")
                        + (reading.error.isEmpty() ? QStringLiteral("it cannot be read") : reading.error))};
}

QVector<Finding> errorsInPoints(const XmlElement& element)
{
    const XmlAttribute* const points = element.find(QStringLiteral("points"));
    if (!points || !isOneOf(localName(element.name), {"polygon", "polyline"}))
        return {};
    const PointsReading reading = readPoints(points->value);
    if (reading.errorOffset >= 0)
        return {errorIn(*points, reading.errorOffset, reading.error)};
    return {};
}

/// A view box that is none, and is ignored.
QVector<Finding> errorsInViewBox(const XmlElement& element)
{
    const XmlAttribute* const viewBox = element.find(QStringLiteral("viewBox"));
    if (!viewBox || !isOneOf(localName(element.name), {"svg", "symbol"}) || readViewBox(viewBox->value))
        return {};
    return {{Finding::Note,
             viewBox->valuePosition,
             QStringLiteral("view-box"),
             QStringLiteral("“%1” is no view box and is ignored").arg(viewBox->value),
             QStringLiteral("write four numbers, with a width and a height that are not negative")}};
}

} // namespace

QVector<Finding>
lossesIn(const XmlElement& element, const QVector<Declaration>& properties, const References& references)
{
    QVector<Finding> losses = errorsInPath(element) + errorsInPoints(element) + errorsInViewBox(element);
    for (const Declaration& each : properties)
        losses += lossesOf(element, each, properties, references);
    const XmlAttribute* const transform = element.find(QStringLiteral("transform"));
    if (transform && (!isTransformList(transform->value) || element.parent < 0)) {
        losses.append(
            lost(transform->namePosition,
                 "transform",
                 element.parent < 0
                     ? QStringLiteral("the transform of the root is left out")
                     : QStringLiteral("“%1” is no list of transforms of SVG 1.1").arg(transform->value),
                 element.parent < 0 ? QStringLiteral("put a group into it, and transform that")
                                    : QStringLiteral("write numbers without units")));
    }
    const XmlAttribute* const base = element.find(QStringLiteral("xml:base"));
    if (base && !base->value.isEmpty()) {
        losses.append(lost(base->namePosition,
                           "use",
                           QStringLiteral("“xml:base” is not followed"),
                           QStringLiteral("put what the file refers to into it")));
    }
    return losses;
}

QVector<Finding> takeLossesInNumbers(const XmlElement& element, QVector<Declaration>& properties)
{
    static const QRegularExpression fontUnit(QStringLiteral("[\\d.](em|ex|ch|rem|lh|rlh|ic|cap)$"),
                                             QRegularExpression::CaseInsensitiveOption);
    QVector<Finding> losses;
    const auto isLost = [&](const Declaration& each) {
        if (!isNumeric(each.property, element))
            return false;
        if (each.property == QLatin1String("stroke-width") && each.value.toDouble() >= unpaintable_width) {
            losses.append(lost(positionOf(element, each.property),
                               "stroke-width",
                               QStringLiteral("the width %1 is more than Qt draws").arg(each.value),
                               QStringLiteral("scale the drawing down")));
            return true;
        }
        const bool isDashes = each.property == QLatin1String("stroke-dasharray");
        const QString number = isDashes
                                   ? firstThatIsNone(each.value.split(QLatin1Char(' ')), 0)
                                   : firstThatIsNone({each.value}, -std::numeric_limits<double>::infinity());
        if (number.isEmpty() || (isDashes && number == QLatin1String("none")))
            return false;
        const bool isOfFont = fontUnit.match(number).hasMatch();
        losses.append(lost(
            positionOf(element, each.property),
            isDashes   ? "dashes"
            : isOfFont ? "font-unit"
                       : "value",
            isOfFont
                ? QStringLiteral("“%1” is measured by a font").arg(number)
                : QStringLiteral("“%1” is no value that is known here for “%2”").arg(number, each.property),
            QStringLiteral("write it as a number")));
        return true;
    };
    properties.erase(std::remove_if(properties.begin(), properties.end(), isLost), properties.end());
    return losses;
}

QVector<Finding> lossesInGeometry(const XmlElement& element, const QVector<Declaration>& geometry)
{
    QVector<Finding> losses;
    for (const Declaration& each : geometry) {
        if (!isShape(localName(element.name)) || each.value == element.attribute(each.property))
            continue;
        losses.append(lost(element.position,
                           "unknown-property",
                           QStringLiteral("“%1” in a style is left out").arg(each.property),
                           QStringLiteral("write it as an attribute")));
    }
    return losses;
}
