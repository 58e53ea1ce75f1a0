#include "Cascade.h"

#include "Names.h"

#include <QtCore/QHash>
#include <QtCore/QRegularExpression>

#include <algorithm>

namespace {

/// More than drawings need: Qt compares each attribute of an element with each other.
constexpr int most_properties = 1000;

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

/// The value \a text of a style as an attribute has it, where capitals matter (CSS 2, 4.1.3).
QString withoutCapitals(const QString& text)
{
    static const QRegularExpression words(QStringLiteral("^[a-zA-Z\\s-]+$"));
    if (text.startsWith(QLatin1String("url("), Qt::CaseInsensitive)) {
        const int end = text.indexOf(QLatin1Char(')'));
        const QString target = text.mid(3, end < 0 ? -1 : end - 3);
        return QStringLiteral("url") + target + text.mid(3 + target.size()).toLower();
    }
    if (!words.match(text).hasMatch())
        return text;
    QString value = text.toLower();
    for (const char* const each : {"currentColor", "sRGB", "linearRGB"}) {
        if (value == QString::fromLatin1(each).toLower())
            return QString::fromLatin1(each);
    }
    return value;
}

/// Puts values in place of the words that stand for them.
void resolveWords(QVector<Declaration>& properties, const QVector<Declaration>& around)
{
    QHash<QString, QString> valuesAround; // read when it is needed
    const auto isUnset = [&](Declaration& each) {
        const QString word = each.value.toLower();
        if (!isOneOf(word, {"inherit", "initial", "unset", "revert"}))
            return false;
        const QString initial = initialValue(each.property);
        if (word == QLatin1String("initial") && !initial.isEmpty()) {
            each.value = initial;
            return false;
        }
        if (word != QLatin1String("inherit") || !initial.isEmpty())
            return true;
        if (valuesAround.isEmpty()) {
            for (const Declaration& other : around)
                valuesAround.insert(other.property, other.value);
        }
        const auto value = valuesAround.constFind(each.property);
        if (value == valuesAround.constEnd())
            return true;
        each.value = *value;
        return false;
    };
    properties.erase(std::remove_if(properties.begin(), properties.end(), isUnset), properties.end());
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
    if (m_styleSheet.isTooMuchFor(m_elements)) {
        m_styleSheet = StyleSheet();
        m_styleSheet.readClasses(m_elements);
        say(m_elements.first().position,
            "style-sheet",
            QStringLiteral("the style sheets have too many rules for so many elements; none is followed"),
            QStringLiteral("write what they say as attributes"));
    }
    for (int i = 0; i < m_elements.size(); ++i) {
        if (std::max(m_elements[i].attributes.size(), stylesOf(i).size()) < most_properties)
            continue;
        say(m_elements[i].position,
            "unknown-property",
            QStringLiteral("<%1> has 1,000 properties or more; no more than these are read")
                .arg(m_elements[i].name),
            QStringLiteral("take out what is not SVG's"));
    }
}

QVector<Declaration> Cascade::propertiesOf(int i, const QVector<Declaration>& around) const
{
    const XmlElement& now = m_elements[i];
    QVector<Declaration> properties;
    for (const XmlAttribute& each : now.attributes) {
        if (properties.size() < most_properties && !each.name.contains(QLatin1Char(':'))
            && !isOneOf(each.name, {"style", "transform", "xmlns", "href", "id", "class"}))
            properties.append({each.name, each.value.trimmed()});
    }
    const QVector<Declaration> styles = stylesOf(i);
    for (const Declaration& each : styles) {
        if (!isGeometry(each.property) && each.property.at(0).isLetter())
            properties.append(each);
    }
    properties = eachOnce(properties);
    resolveWords(properties, around);
    return properties;
}

QVector<Declaration> Cascade::geometryOf(int i) const
{
    QVector<Declaration> geometry;
    const QVector<Declaration> styles = stylesOf(i);
    for (const Declaration& each : styles) {
        if (isGeometry(each.property))
            geometry.append(each);
    }
    return eachOnce(geometry);
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
    styles = eachOnce(styles).mid(0, most_properties);
    for (Declaration& each : styles)
        each.value = withoutCapitals(each.value);
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
    PlacesInValue places(style.rawText, style.textPosition);
    const QVector<StyleSheet::Unread> unread = m_styleSheet.add(style.text);
    for (const StyleSheet::Unread& each : unread) {
        const bool isRule = each.what.startsWith(QLatin1Char('@'));
        say(places.at(each.offset),
            isRule ? "style-sheet" : "selector",
            (isRule ? QStringLiteral("the rule %1 of a style sheet is not followed")
                    : QStringLiteral("the selector “%1” is not followed"))
                .arg(each.what),
            isRule ? QStringLiteral("write what it says as attributes")
                   : QStringLiteral("give the elements a class, and name that"));
    }
}

void Cascade::say(const Position& position, const char* rule, const QString& message, const QString& advice)
{
    m_findings.append({Finding::Lost, position, QLatin1String(rule), message, advice});
}
