#include "AttributeRules.h"

#include "Names.h"

#include <algorithm>

namespace {

struct Rule
{
    const char* name;
    Finding::Weight weight;
    const char* rule;
    const char* advice;
};

constexpr const char* convert = "run “quillet-svg convert”";
constexpr const char* nothing = "nothing needs be done";
constexpr const char* draw = "draw what it does with paths";

constexpr Rule properties[] = {
    {"transform", Finding::Lost, "transform", convert},
    {"style", Finding::Lost, "style", "write the properties as attributes, or run “quillet-svg convert”"},
    {"fill", Finding::Lost, "style", "write it as an attribute, or run “quillet-svg convert”"},
    {"clip-path", Finding::Lost, "clip-path", draw},
    {"mask", Finding::Lost, "mask", draw},
    {"filter", Finding::Lost, "filter", draw},
    {"marker", Finding::Lost, "marker", draw},
    {"marker-start", Finding::Lost, "marker", draw},
    {"marker-mid", Finding::Lost, "marker", draw},
    {"marker-end", Finding::Lost, "marker", draw},
    {"display", Finding::Lost, "hidden", "take out what is hidden, or run “quillet-svg convert”"},
    {"visibility", Finding::Lost, "hidden", "take out what is hidden, or run “quillet-svg convert”"},
    {"stroke-dasharray", Finding::Lost, "dashes", convert},
    {"stroke-dashoffset", Finding::Note, "dashes", convert},
    {"vector-effect", Finding::Lost, "unknown-property", convert},
    {"paint-order", Finding::Lost, "unknown-property", draw},
    {"mix-blend-mode", Finding::Lost, "unknown-property", draw},
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
    {"animate", Finding::Note, "animation", nothing},
    {"animateTransform", Finding::Note, "animation", nothing},
    {"animateMotion", Finding::Note, "animation", nothing},
    {"set", Finding::Note, "animation", nothing},
    {"script", Finding::Note, "script", nothing},
};

template <std::size_t Size>
Ignored find(const Rule (&rules)[Size], const QString& name, const char* otherwise)
{
    const auto* found = std::find_if(std::begin(rules), std::end(rules), [&](const Rule& rule) {
        return name == QLatin1String(rule.name);
    });
    if (found == std::end(rules))
        return {Finding::Note, QLatin1String(otherwise), QString::fromUtf8(nothing)};
    return {found->weight, QLatin1String(found->rule), QString::fromUtf8(found->advice)};
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
    const auto isOneOf = [&word](std::initializer_list<const char*> words) {
        return std::any_of(
            words.begin(), words.end(), [&](const char* each) { return word == QLatin1String(each); });
    };
    if (name == QLatin1String("fill-rule"))
        return !isOneOf({"nonzero", "evenodd"});
    if (name == QLatin1String("stroke-linecap"))
        return !isOneOf({"butt", "round", "square"});
    if (name == QLatin1String("stroke-linejoin"))
        return !isOneOf({"miter", "round", "bevel"});

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
    const QString word = value.trimmed().toLower();
    Ignored result = find(properties, name, "ignored-attribute");
    if (readAttributes().contains(name))
        result = find(properties, QStringLiteral("fill"), "style");
    // What says nothing loses nothing.
    if (word.isEmpty() || word == QLatin1String("normal")
        || (word == QLatin1String("none") && name != QLatin1String("display")
            && !readAttributes().contains(name))
        || (name == QLatin1String("display") && word != QLatin1String("none"))
        || (name == QLatin1String("visibility") && word == QLatin1String("visible")))
        result.weight = Finding::Note;
    return result;
}

Ignored ignoredElement(const QString& name)
{
    if (!isElementOfSvg(name))
        return {Finding::Lost, QStringLiteral("unknown-element"), QString::fromUtf8(draw)};
    return find(elements, name, "ignored-element");
}
