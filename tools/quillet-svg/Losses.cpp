#include "Losses.h"

#include "Names.h"

#include <QtCore/QRegularExpression>

namespace {

struct Rule
{
    const char* property;
    const char* rule;
    const char* advice;
};

constexpr const char* draw = "draw what it does with paths";
constexpr const char* as_attribute = "write it as an attribute “transform”";

constexpr Rule ignored[] = {
    {"filter", "filter", draw},
    {"mask", "mask", draw},
    {"clip-path", "clip-path", draw},
    {"marker", "marker", draw},
    {"marker-start", "marker", draw},
    {"marker-mid", "marker", draw},
    {"marker-end", "marker", draw},
    {"mix-blend-mode", "unknown-property", draw},
    {"paint-order", "unknown-property", draw},
    {"transform", "style-transform", as_attribute},
    {"transform-origin", "style-transform", as_attribute},
    {"transform-box", "style-transform", as_attribute},
};

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

/// Whether dashes are measured by the drawing's size or by a font.
bool hasRelativeDashes(const Declaration& property)
{
    static const QRegularExpression relative(QStringLiteral("%|em|ex|ch|v[whm]|\\("));
    return property.property == QLatin1String("stroke-dasharray")
           && relative.match(property.value).hasMatch();
}

bool isMeasuredByAFont(const Declaration& property)
{
    return isOneOf(property.property,
                   {"x", "y", "width", "height", "cx", "cy", "r", "rx", "ry", "stroke-width"})
           && (property.value.endsWith(QLatin1String("em")) || property.value.endsWith(QLatin1String("ex")));
}

/// How many shapes the element itself draws, without those in it; 2 stands for what may be more than one.
int shapesOf(const QVector<XmlElement>& elements, int element, const References& references)
{
    const QString name = localName(elements[element].name);
    const int target = name == QLatin1String("use") ? references.targetOf(elements[element]) : -1;
    if (target < 0)
        return isShape(name) ? 1 : 0;
    const QString repeated = localName(elements[target].name);
    return isShape(repeated) && repeated != QLatin1String("use") ? 1 : 2;
}

} // namespace

QVector<Finding>
lossesIn(const XmlElement& element, const QVector<Declaration>& properties, const References& references)
{
    QVector<Finding> losses;
    for (const Declaration& each : properties) {
        if (each.value.isEmpty() || each.value == QLatin1String("none")
            || each.value == QLatin1String("normal"))
            continue;
        const XmlAttribute* attribute = element.find(each.property);
        const Position position = attribute ? attribute->namePosition : element.position;
        if (each.property == QLatin1String("fill") || each.property == QLatin1String("stroke"))
            losses += lossesOfPaint(position, each, references);
        // The root's own lengths give the size only.
        if (isMeasuredByAFont(each) && element.parent >= 0) {
            losses.append(lost(position,
                               "font-unit",
                               QStringLiteral("“%1” is measured by a font").arg(each.value),
                               QStringLiteral("write it as a number")));
        }
        if (hasRelativeDashes(each)) {
            losses.append(lost(position,
                               "dashes",
                               QStringLiteral("dashes of “%1” are drawn otherwise").arg(each.value),
                               QStringLiteral("write them as numbers")));
        }
        for (const Rule& rule : ignored) {
            if (each.property == QLatin1String(rule.property)) {
                losses.append(lost(position,
                                   rule.rule,
                                   QStringLiteral("“%1” is left out").arg(each.property),
                                   QString::fromUtf8(rule.advice)));
            }
        }
    }
    return losses;
}

QVector<Finding> lossesByOpacity(const QVector<XmlElement>& elements,
                                 const XmlElement& element,
                                 double opacity,
                                 const References& references)
{
    if (opacity >= 1 || opacity <= 0)
        return {};
    int shapes = 0;
    const int self = int(&element - elements.constData());
    for (int i = self; i < element.end; ++i)
        shapes += shapesOf(elements, i, references);
    if (shapes < 2)
        return {};
    return {
        {Finding::Note,
         element.position,
         QStringLiteral("group-opacity"),
         QStringLiteral("the opacity of a group goes to each of its shapes; where they overlap, one shows "
                        "through the other"),
         QStringLiteral("choose colours that need no opacity, if they overlap")}};
}
