#include "Cascade.h"

#include "Names.h"

#include <algorithm>

namespace {

/// The value that a property has where nothing sets it; empty for one that is not inherited.
QString initialValue(const QString& property)
{
    struct Initial
    {
        const char* property;
        const char* value;
    };
    static constexpr Initial inherited[] = {{"fill", "black"},
                                            {"fill-rule", "nonzero"},
                                            {"fill-opacity", "1"},
                                            {"stroke", "none"},
                                            {"stroke-width", "1"},
                                            {"stroke-opacity", "1"},
                                            {"stroke-linecap", "butt"},
                                            {"stroke-linejoin", "miter"},
                                            {"stroke-miterlimit", "4"},
                                            {"stroke-dasharray", "none"},
                                            {"stroke-dashoffset", "0"},
                                            {"color", "black"},
                                            {"visibility", "visible"},
                                            {"color-interpolation", "sRGB"},
                                            {"paint-order", "normal"},
                                            {"marker", "none"},
                                            {"marker-start", "none"},
                                            {"marker-mid", "none"},
                                            {"marker-end", "none"}};
    const auto* found = std::find_if(std::begin(inherited), std::end(inherited), [&](const Initial& each) {
        return property == QLatin1String(each.property);
    });
    return found == std::end(inherited) ? QString() : QString::fromLatin1(found->value);
}

/// Puts values in place of the words that stand for them.
void resolveWords(QVector<Declaration>& properties, const QVector<Declaration>& around)
{
    for (int i = properties.size() - 1; i >= 0; --i) {
        Declaration& each = properties[i];
        const QString word = each.value.toLower();
        const QString initial = initialValue(each.property);
        if (word == QLatin1String("initial") && !initial.isEmpty())
            each.value = initial;
        else if (word == QLatin1String("inherit") && initial.isEmpty() && find(around, each.property))
            each.value = find(around, each.property)->value;
        else if (isOneOf(word, {"inherit", "initial", "unset", "revert"}))
            properties.removeAt(i);
    }
}

} // namespace

Cascade::Cascade(const XmlTree& tree) : m_elements(tree.elements())
{
    for (const Position& link : tree.styleSheetLinks()) {
        say(link,
            "style-sheet",
            QStringLiteral("the style sheet in another file is not read"),
            QStringLiteral("put it into the file, as <style>"));
    }
    for (const XmlElement& each : m_elements) {
        const QString name = localName(each.name);
        if (name == QLatin1String("style"))
            read(each);
        else if (name == QLatin1String("link")
                 && each.attribute(QStringLiteral("rel")).contains(QLatin1String("stylesheet")))
            say(each.position,
                "style-sheet",
                QStringLiteral("the style sheet in another file is not read"),
                QStringLiteral("put it into the file, as <style>"));
    }
    m_styleSheet.readClasses(m_elements);
}

QVector<Declaration> Cascade::propertiesOf(int i, const QVector<Declaration>& around) const
{
    const XmlElement& now = m_elements[i];
    QVector<Declaration> properties;
    for (const XmlAttribute& each : now.attributes) {
        if (!each.name.contains(QLatin1Char(':'))
            && !isOneOf(each.name, {"style", "transform", "xmlns", "href", "id", "class"}))
            set(properties, each.name, each.value.trimmed());
    }
    const QVector<Declaration> styles = stylesOf(i);
    for (const Declaration& each : styles) {
        if (!isGeometry(each.property) && each.property.at(0).isLetter())
            set(properties, each.property, each.value);
    }
    resolveWords(properties, around);
    return properties;
}

QVector<Declaration> Cascade::geometryOf(int i) const
{
    QVector<Declaration> geometry;
    const QVector<Declaration> styles = stylesOf(i);
    for (const Declaration& each : styles) {
        if (isGeometry(each.property))
            set(geometry, each.property, each.value);
    }
    return geometry;
}

/// What style sheets and the style of \a i say, the strongest last.
QVector<Declaration> Cascade::stylesOf(int i) const
{
    if (const QVector<Declaration>* const known = m_styles.object(i))
        return *known;
    QVector<Declaration> styles = m_styleSheet.declarations(m_elements, i)
                                  + readStyle(m_elements[i].attribute(QStringLiteral("style")));
    std::stable_partition(
        styles.begin(), styles.end(), [](const Declaration& each) { return !each.isImportant; });
    m_styles.insert(i, new QVector<Declaration>(styles), styles.size() + 1);
    return styles;
}

void Cascade::read(const XmlElement& style)
{
    const QString type = style.attribute(QStringLiteral("type")).trimmed().toLower();
    if (!isOneOf(type, {"", "text/css"})) {
        return say(style.position,
                   "style-sheet",
                   QStringLiteral("the style sheet is of the type “%1” and not read").arg(type),
                   QStringLiteral("write it as text/css"));
    }
    const QString media = style.attribute(QStringLiteral("media")).trimmed().toLower();
    if (!isOneOf(media, {"", "all", "screen"})) {
        return say(style.position,
                   "style-sheet",
                   QStringLiteral("the style sheet is for “%1” and not read").arg(media),
                   QStringLiteral("write what it says as attributes"));
    }
    const QStringList unread = m_styleSheet.add(style.text);
    for (const QString& each : unread) {
        const bool isRule = each.startsWith(QLatin1Char('@'));
        say(style.position,
            isRule ? "style-sheet" : "selector",
            (isRule ? QStringLiteral("the rule %1 of a style sheet is not followed")
                    : QStringLiteral("the selector “%1” is not followed"))
                .arg(each),
            isRule ? QStringLiteral("write what it says as attributes")
                   : QStringLiteral("give the elements a class, and name that"));
    }
}

void Cascade::say(const Position& position, const char* rule, const QString& message, const QString& advice)
{
    m_findings.append({Finding::Lost, position, QLatin1String(rule), message, advice});
}
