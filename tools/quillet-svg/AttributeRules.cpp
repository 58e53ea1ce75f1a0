#include "AttributeRules.h"

#include "Conditions.h"
#include "Frame.h"
#include "Names.h"

#include <QtCore/QRegularExpression>

#include <algorithm>

namespace {

constexpr const char* convert = "run “quillet-svg convert”";
constexpr const char* nothing = "nothing needs to be done";
constexpr const char* draw = "draw what it does with paths";
constexpr const char* as_attribute = "write it as an attribute “transform”";

struct Rule
{
    const char* name = nullptr;
    Finding::Weight weight = Finding::Note; ///< where the reader ignores it
    const char* rule = nullptr;
    const char* advice = nullptr;
    const char* adviceAfterConversion = nullptr; ///< null where a conversion loses nothing
};

constexpr Rule drawnOtherwise(const char* name, const char* rule)
{
    return {name, Finding::Lost, rule, draw, draw};
}

constexpr Rule properties[] = {
    {"transform", Finding::Lost, "transform", convert, as_attribute}, // an attribute is converted
    {"transform-origin", Finding::Note, "transform", nothing, as_attribute},
    {"transform-box", Finding::Note, "transform", nothing, as_attribute},
    {"translate", Finding::Lost, "transform", as_attribute, as_attribute},
    {"rotate", Finding::Lost, "transform", as_attribute, as_attribute},
    {"scale", Finding::Lost, "transform", as_attribute, as_attribute},
    {"offset-path", Finding::Lost, "transform", as_attribute, as_attribute},
    {"style", Finding::Lost, "style", "write the properties as attributes, or run “quillet-svg convert”"},
    {"fill", Finding::Lost, "style", "write it as an attribute, or run “quillet-svg convert”"},
    drawnOtherwise("clip", "clip-path"),
    drawnOtherwise("clip-path", "clip-path"),
    drawnOtherwise("mask", "mask"),
    drawnOtherwise("mask-image", "mask"),
    drawnOtherwise("-webkit-mask", "mask"),
    drawnOtherwise("-webkit-mask-image", "mask"),
    drawnOtherwise("filter", "filter"),
    drawnOtherwise("backdrop-filter", "filter"),
    drawnOtherwise("marker", "marker"),
    drawnOtherwise("marker-start", "marker"),
    drawnOtherwise("marker-mid", "marker"),
    drawnOtherwise("marker-end", "marker"),
    drawnOtherwise("paint-order", "unknown-property"),
    drawnOtherwise("mix-blend-mode", "unknown-property"),
    drawnOtherwise("color-interpolation", "unknown-property"),
    {"display", Finding::Lost, "hidden", "take out what is hidden, or run “quillet-svg convert”"},
    {"visibility", Finding::Lost, "hidden", "take out what is hidden, or run “quillet-svg convert”"},
    {"requiredFeatures", Finding::Lost, "condition", convert},
    {"requiredExtensions", Finding::Lost, "condition", convert},
    {"systemLanguage", Finding::Lost, "condition", convert},
    {"stroke-dasharray", Finding::Lost, "dashes", convert},
    {"stroke-dashoffset", Finding::Note, "dashes", convert},
    {"vector-effect", Finding::Lost, "unknown-property", convert, draw},
};

constexpr Rule elements[] = {
    {"rect", Finding::Lost, "shape", convert},
    {"circle", Finding::Lost, "shape", convert},
    {"ellipse", Finding::Lost, "shape", convert},
    {"line", Finding::Lost, "shape", convert},
    {"polyline", Finding::Lost, "shape", convert},
    {"polygon", Finding::Lost, "shape", convert},
    {"use", Finding::Lost, "use", convert},
    {"a", Finding::Lost, "container", convert},
    {"switch", Finding::Lost, "container", convert},
    {"svg", Finding::Lost, "container", convert},
    {"style",
     Finding::Lost,
     "style-sheet",
     "write the properties as attributes, or run “quillet-svg convert”"},
    {"text", Finding::Lost, "text", "have the drawing program make paths of it"},
    {"image", Finding::Lost, "image", "draw it with paths"},
    {"foreignObject", Finding::Lost, "image", "draw it with paths"},
    {"video", Finding::Lost, "image", "draw it with paths"},
    {"audio", Finding::Lost, "image", "draw it with paths"},
    {"iframe", Finding::Lost, "image", "draw it with paths"},
    {"canvas", Finding::Lost, "image", "draw it with paths"},
    {"animate", Finding::Note, "animation", nothing},
    {"animateTransform", Finding::Note, "animation", nothing},
    {"animateMotion", Finding::Note, "animation", nothing},
    {"set", Finding::Note, "animation", nothing},
    {"script", Finding::Note, "script", nothing},
};

template <std::size_t Size>
const Rule* find(const Rule (&rules)[Size], const QString& name)
{
    const auto* found = std::find_if(std::begin(rules), std::end(rules), [&](const Rule& rule) {
        return name == QLatin1String(rule.name);
    });
    return found == std::end(rules) ? nullptr : found;
}

Ignored ignoredBy(const Rule* rule, const char* otherwise)
{
    if (!rule)
        return {Finding::Note, QLatin1String(otherwise), QString::fromUtf8(nothing)};
    return {rule->weight, QLatin1String(rule->rule), QString::fromUtf8(rule->advice)};
}

/// Whether \a text is a list of transforms that move nothing.
bool isIdentity(const QString& text)
{
    static const QRegularExpression function(QStringLiteral("\\s*,?\\s*([a-zA-Z]+)\\s*\\(([^()]*)\\)\\s*"));
    static const QRegularExpression separators(QStringLiteral("[\\s,]+"));
    int end = 0;
    QRegularExpressionMatchIterator each = function.globalMatch(text);
    while (each.hasNext()) {
        const QRegularExpressionMatch match = each.next();
        const QString name = match.captured(1);
        const QStringList numbers = match.captured(2).split(separators, Qt::SkipEmptyParts);
        const auto is = [&](int i, double value) {
            bool ok = false;
            return numbers[i].toDouble(&ok) == value && ok;
        };
        const auto are = [&](double value) {
            for (int i = 0; i < numbers.size(); ++i) {
                if (!is(i, value))
                    return false;
            }
            return !numbers.isEmpty();
        };
        const bool isNothing =
            (name == QLatin1String("translate") && numbers.size() <= 2 && are(0))
            || (name == QLatin1String("scale") && numbers.size() <= 2 && are(1))
            || (name == QLatin1String("rotate") && (numbers.size() == 1 || numbers.size() == 3) && is(0, 0))
            || (name.startsWith(QLatin1String("skew")) && numbers.size() == 1 && are(0))
            || (name == QLatin1String("matrix") && numbers.size() == 6 && is(0, 1) && is(1, 0) && is(2, 0)
                && is(3, 1) && is(4, 0) && is(5, 0));
        if (match.capturedStart() != end || !isNothing)
            return false;
        end = match.capturedEnd();
    }
    return end == text.size();
}

/// Whether the dashes have no length, which makes a whole line of them (SVG 1.1, 11.4).
bool isUndashed(const QString& dashes)
{
    static const QRegularExpression separators(QStringLiteral("[\\s,]+"));
    const QStringList lengths = dashes.split(separators, Qt::SkipEmptyParts);
    return std::all_of(lengths.begin(), lengths.end(), isZeroLength);
}

/// Whether a property, none that the reader reads, is as if it were not there.
bool saysNothing(const QString& name, const QString& value)
{
    const QString word = value.trimmed().toLower();
    if (name.startsWith(QLatin1String("required")) || name == QLatin1String("systemLanguage"))
        return !isFailedTest(name, value); // an empty one fails, too
    if (word.isEmpty() || word == QLatin1String("normal"))
        return true;
    if (name == QLatin1String("display"))
        return word != QLatin1String("none");
    if (name == QLatin1String("visibility"))
        return word == QLatin1String("visible");
    if (name == QLatin1String("transform"))
        return word == QLatin1String("none") || isIdentity(value);
    if (name == QLatin1String("stroke-dasharray"))
        return word == QLatin1String("none") || isUndashed(word);
    if (name == QLatin1String("clip"))
        return word == QLatin1String("auto");
    if (name == QLatin1String("paint-order"))
        return word.startsWith(QLatin1String("fill"))
               && word.indexOf(QLatin1String("markers")) != word.indexOf(QLatin1Char(' ')) + 1;
    if (name == QLatin1String("color-interpolation"))
        return word != QLatin1String("linearrgb");
    return word == QLatin1String("none");
}

} // namespace

const QVector<QString>& readAttributes()
{
    static const QVector<QString> names = {QStringLiteral("opacity"),
                                           QStringLiteral("fill-opacity"),
                                           QStringLiteral("fill"),
                                           QStringLiteral("fill-rule"),
                                           QStringLiteral("stroke-opacity"),
                                           QStringLiteral("stroke"),
                                           QStringLiteral("stroke-width"),
                                           QStringLiteral("stroke-linecap"),
                                           QStringLiteral("stroke-linejoin"),
                                           QStringLiteral("stroke-miterlimit")};
    return names;
}

bool isRefused(const QString& name, const QString& value)
{
    if (value.isEmpty() || name == QLatin1String("fill") || name == QLatin1String("stroke"))
        return false;
    const QString word = value.toLower();
    if (name == QLatin1String("fill-rule"))
        return !isOneOf(word, {"nonzero", "evenodd"});
    if (name == QLatin1String("stroke-linecap"))
        return !isOneOf(word, {"butt", "round", "square"});
    if (name == QLatin1String("stroke-linejoin"))
        return !isOneOf(word, {"miter", "round", "bevel"});

    QString number = value;
    if (name == QLatin1String("stroke-width"))
        number.remove(QStringLiteral("px"));
    bool ok = false;
    number.toDouble(&ok);
    return !ok;
}

QString refusalOf(const QString& name)
{
    if (name == QLatin1String("fill-rule"))
        return QStringLiteral("write “nonzero” or “evenodd”");
    if (name == QLatin1String("stroke-linecap"))
        return QStringLiteral("write “butt”, “round” or “square”");
    if (name == QLatin1String("stroke-linejoin"))
        return QStringLiteral("write “miter”, “round” or “bevel”");
    return QStringLiteral("write a number without a unit");
}

Ignored ignoredProperty(const QString& name, const QString& value)
{
    const bool isRead = readAttributes().contains(name);
    Ignored result = ignoredBy(find(properties, isRead ? QStringLiteral("fill") : name), "ignored-attribute");
    if (isRead ? value.trimmed().isEmpty() : saysNothing(name, value))
        result.weight = Finding::Note;
    return result;
}

Ignored ignoredInStyle(const QString& name, const QString& value)
{
    Ignored result = ignoredProperty(name, value);
    // As attributes they are converted, in a style they are not.
    if (result.weight == Finding::Lost && result.rule == QLatin1String("transform"))
        result.advice = lostProperty(name, value).advice;
    return result;
}

Ignored lostProperty(const QString& name, const QString& value)
{
    const Rule* const rule = find(properties, name);
    if (!rule || !rule->adviceAfterConversion || saysNothing(name, value))
        return {};
    return {Finding::Lost, QLatin1String(rule->rule), QString::fromUtf8(rule->adviceAfterConversion)};
}

Ignored ignoredElement(const QString& name)
{
    if (!isElementOfSvg(name))
        return {Finding::Lost, QStringLiteral("unknown-element"), QString::fromUtf8(draw)};
    return ignoredBy(find(elements, name), "ignored-element");
}
