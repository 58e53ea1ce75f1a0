#include "StyleSheet.h"

#include "Names.h"

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <iterator>

namespace {

constexpr int deepest_block = 20; ///< "@media" in each other
constexpr int longest_selector = 500;
constexpr qint64 most_comparisons = 5'000'000; ///< of rules with elements

/// \a selector without what stands in parentheses, which may be what is excluded.
QString withoutArguments(const QString& selector)
{
    QString result;
    int depth = 0;
    for (const QChar each : selector) {
        if (each == QLatin1Char('('))
            ++depth;
        else if (each == QLatin1Char(')'))
            depth = std::max(depth - 1, 0);
        else if (depth == 0)
            result += each;
    }
    return result;
}

/// Whether a selector waits for somebody to do something, or for a part that no drawing has.
bool isForNoDrawing(const QString& selector)
{
    static const QRegularExpression never(QStringLiteral(
        ":(hover|active|focus|focus-within|focus-visible|visited|target|:?before|:?after|:selection)\\b"));
    return never.match(withoutArguments(selector)).hasMatch();
}

/// \a selector as findings quote it.
QString named(const QString& selector)
{
    return selector.size() > longest_selector ? selector.left(40) + QStringLiteral("…") : selector;
}

/// Whether \a word stands in \a text between blanks.
bool hasWord(const QString& text, const QString& word)
{
    const auto isEdge = [&](int i) { return i < 0 || i >= text.size() || text[i].isSpace(); };
    for (int at = text.indexOf(word); at >= 0 && !word.isEmpty(); at = text.indexOf(word, at + 1)) {
        if (isEdge(at - 1) && isEdge(at + word.size()))
            return true;
    }
    return false;
}

bool isRelated(const QString& actual, const QString& relation, const QString& value)
{
    if (relation.isEmpty() || (relation == QLatin1String("=") && actual == value))
        return true;
    if (relation == QLatin1String("~="))
        return hasWord(actual, value);
    if (relation == QLatin1String("|="))
        return actual == value || actual.startsWith(value + QLatin1Char('-'));
    if (value.isEmpty())
        return false;
    return (relation == QLatin1String("^=") && actual.startsWith(value))
           || (relation == QLatin1String("$=") && actual.endsWith(value))
           || (relation == QLatin1String("*=") && actual.contains(value));
}

int firstThatIsNoSpace(const QString& text, int begin, int end)
{
    while (begin < end && text[begin].isSpace())
        ++begin;
    return begin;
}

/// A style sheet without its comments.
class WithoutComments
{
public:
    explicit WithoutComments(const QString& sheet)
    {
        static const QRegularExpression comments(QStringLiteral("/\\*.*?\\*/|<!--|-->"),
                                                 QRegularExpression::DotMatchesEverythingOption);
        int begin = 0;
        for (auto matches = comments.globalMatch(sheet); matches.hasNext();) {
            const QRegularExpressionMatch match = matches.next();
            m_text += sheet.midRef(begin, match.capturedStart() - begin);
            begin = match.capturedEnd();
            m_comments.append({m_text.size(), begin});
        }
        m_text += sheet.midRef(begin);
    }

    const QString& text() const { return m_text; }

    /// Where what stands at \a offset of the text stands in the sheet.
    int offsetWithComments(int offset) const
    {
        const auto behind =
            std::upper_bound(m_comments.begin(), m_comments.end(), offset, [](int at, const Comment& each) {
                return at < each.at;
            });
        if (behind == m_comments.begin())
            return offset;
        const Comment& before = *std::prev(behind);
        return before.end + offset - before.at;
    }

private:
    struct Comment
    {
        int at;  ///< in the text without comments
        int end; ///< in the sheet
    };

    QString m_text;
    QVector<Comment> m_comments;
};

/// The position of the brace that closes the one at \a open; \a end if there is none (CSS 2, 4.2).
int endOfBlock(const QString& text, int open, int end)
{
    int depth = 0;
    for (int i = open; i < end; ++i) {
        if (text[i] == QLatin1Char('{'))
            ++depth;
        else if (text[i] == QLatin1Char('}') && --depth == 0)
            return i;
    }
    return end;
}

} // namespace

Selector::Selector(const QString& text)
{
    if (text.size() > longest_selector)
        return;
    int position = 0;
    while (position < text.size()) {
        Part part;
        if (!readPart(text, position, part)) {
            m_parts.clear();
            return;
        }
        m_parts.append(part);
    }
}

bool Selector::readPart(const QString& text, int& position, Part& part)
{
    static const QRegularExpression combinator(QStringLiteral("\\G\\s*([>+]|\\s|^)\\s*"));
    static const QRegularExpression element(QStringLiteral("\\G(\\*|[A-Za-z][\\w-]*)"));
    static const QRegularExpression simple(QStringLiteral(
        "\\G(?:([.#])([\\w-]+)|:(first-child|root)\\b(?!\\()|"
        "\\[\\s*([\\w:-]+)\\s*(?:([~|^$*]?=)\\s*(?:\"([^\"]*)\"|'([^']*)'|([\\w-]+))\\s*)?\\])"));
    const auto read = [&](const QRegularExpression& expression) {
        const QRegularExpressionMatch match = expression.match(text, position);
        position += match.capturedLength(0);
        return match;
    };
    if (position > 0) {
        const QString sign = read(combinator).captured(1).trimmed();
        part.combinator = sign.isEmpty() ? QLatin1Char(' ') : sign[0];
    }
    const int start = position;
    part.element = read(element).captured(1);
    if (part.element == QLatin1String("*"))
        part.element.clear();
    m_specificity += part.element.isEmpty() ? 0 : 1;
    for (QRegularExpressionMatch match = read(simple); match.hasMatch(); match = read(simple)) {
        const bool isId = match.captured(1) == QLatin1String("#");
        m_specificity += isId ? 100 : 10;
        if (isId)
            part.attributes.append({QStringLiteral("id"), QStringLiteral("="), match.captured(2)});
        else if (!match.captured(1).isEmpty())
            part.classes.append(match.captured(2));
        else if (match.captured(3) == QLatin1String("root"))
            part.isRoot = true;
        else if (!match.captured(3).isEmpty())
            part.isFirstChild = true;
        else
            part.attributes.append({match.captured(4),
                                    match.captured(5),
                                    match.captured(6) + match.captured(7) + match.captured(8)});
    }
    return position > start;
}

QStringList Selector::classes() const
{
    QStringList classes;
    for (const Part& each : m_parts)
        classes += each.classes;
    return classes;
}

Selector::Key Selector::key() const
{
    const Part& last = m_parts.last();
    for (const Attribute& each : last.attributes) {
        if (each.name == QLatin1String("id") && each.relation == QLatin1String("="))
            return {Key::Id, each.value};
    }
    if (!last.classes.isEmpty())
        return {Key::Class, last.classes.first()};
    return {last.element.isEmpty() ? Key::Anything : Key::Element, last.element};
}

bool Selector::matches(const QVector<XmlElement>& elements,
                       const QVector<QSet<QString>>& classes,
                       int i) const
{
    return isKnown() && matchesFrom(elements, classes, i, m_parts.size() - 1) == Yes;
}

/// Whether \a i is what the selector up to \a part selects.
Selector::Answer Selector::matchesFrom(const QVector<XmlElement>& elements,
                                       const QVector<QSet<QString>>& classes,
                                       int i,
                                       int part) const
{
    if (!matchesPart(elements, classes, i, m_parts[part]))
        return No;
    if (part == 0)
        return Yes;
    if (m_parts[part].combinator != QLatin1Char(' ')) {
        const bool isParent = m_parts[part].combinator == QLatin1Char('>');
        const int next = isParent ? elements[i].parent : elements[i].before;
        return next >= 0 ? matchesFrom(elements, classes, next, part - 1) : No;
    }
    for (int at = elements[i].parent; at >= 0; at = elements[at].parent) {
        const Answer answer = matchesFrom(elements, classes, at, part - 1);
        if (answer != No)
            return answer;
    }
    return Never;
}

bool Selector::matchesPart(const QVector<XmlElement>& elements,
                           const QVector<QSet<QString>>& classes,
                           int i,
                           const Part& part)
{
    const XmlElement& element = elements[i];
    return (part.element.isEmpty() || part.element == localName(element.name))
           && (!part.isRoot || element.parent < 0)
           && (!part.isFirstChild || (element.parent >= 0 && element.before < 0))
           && std::all_of(part.classes.begin(),
                          part.classes.end(),
                          [&](const QString& each) { return classes[i].contains(each); })
           && std::all_of(part.attributes.begin(), part.attributes.end(), [&](const Attribute& each) {
                  const XmlAttribute* found = element.find(each.name);
                  return found && isRelated(found->value, each.relation, each.value);
              });
}

QVector<StyleSheet::Unread> StyleSheet::add(const QString& text)
{
    const WithoutComments sheet(text);
    QVector<Unread> unread;
    addRules(sheet.text(), {0, sheet.text().size(), 0}, unread);
    for (Unread& each : unread)
        each.offset = sheet.offsetWithComments(each.offset);
    return unread;
}

void StyleSheet::addRules(const QString& sheet, const Stretch& stretch, QVector<Unread>& unread)
{
    int begin = stretch.begin;
    for (int i = begin; i < stretch.end; ++i) {
        if (sheet[i] == QLatin1Char(';')) {
            begin = firstThatIsNoSpace(sheet, begin, i);
            if (sheet.midRef(begin, i - begin).startsWith(QLatin1String("@import")))
                unread.append({QStringLiteral("@import"), begin});
            begin = i + 1;
        } else if (sheet[i] == QLatin1Char('{')) {
            const int end = endOfBlock(sheet, i, stretch.end);
            addBlock(sheet, firstThatIsNoSpace(sheet, begin, i), {i + 1, end, stretch.depth + 1}, unread);
            begin = end + 1;
            i = end;
        }
    }
}

void StyleSheet::addRule(const Rule& rule)
{
    const int index = m_rules.size();
    m_rules.append(rule);
    const QStringList classes = rule.selector.classes();
    for (const QString& each : classes)
        m_classNames.insert(each);
    const Selector::Key key = rule.selector.key();
    switch (key.kind) {
    case Selector::Key::Id:
        m_rulesOfIds[key.name].append(index);
        break;
    case Selector::Key::Class:
        m_rulesOfClasses[key.name].append(index);
        break;
    case Selector::Key::Element:
        m_rulesOfElements[key.name].append(index);
        break;
    case Selector::Key::Anything:
        m_otherRules.append(index);
    }
}

void StyleSheet::readClasses(const QVector<XmlElement>& elements)
{
    m_classes.resize(elements.size());
    for (int i = 0; i < elements.size() && !m_classNames.isEmpty(); ++i) {
        const QStringList classes =
            elements[i].attribute(QStringLiteral("class")).simplified().split(QLatin1Char(' '));
        for (const QString& each : classes) {
            if (m_classNames.contains(each))
                m_classes[i].insert(each);
        }
    }
}

QVector<int> StyleSheet::candidates(const XmlElement& element, const QSet<QString>& classes) const
{
    QVector<int> rules = m_otherRules + m_rulesOfElements.value(localName(element.name))
                         + m_rulesOfIds.value(element.attribute(QStringLiteral("id")));
    for (const QString& each : classes)
        rules += m_rulesOfClasses.value(each);
    return rules;
}

bool StyleSheet::isTooMuchFor(const QVector<XmlElement>& elements) const
{
    qint64 comparisons = 0;
    for (int i = 0; i < elements.size() && comparisons <= most_comparisons; ++i)
        comparisons += candidates(elements[i], m_classes[i]).size();
    return comparisons > most_comparisons;
}

QVector<Declaration> StyleSheet::declarations(const QVector<XmlElement>& elements, int i) const
{
    QVector<int> rules = candidates(elements[i], m_classes[i]);
    const auto isOfOthers = [&](int rule) { return !m_rules[rule].selector.matches(elements, m_classes, i); };
    rules.erase(std::remove_if(rules.begin(), rules.end(), isOfOthers), rules.end());
    std::sort(rules.begin(), rules.end(), [this](int one, int other) {
        const int order = m_rules[one].selector.specificity() - m_rules[other].selector.specificity();
        return order != 0 ? order < 0 : one < other;
    });
    QVector<Declaration> result;
    for (const int rule : qAsConst(rules))
        result += m_rules[rule].declarations;
    return result;
}

/// The block \a body, whose prelude begins at \a prelude.
void StyleSheet::addBlock(const QString& sheet, int prelude, const Stretch& body, QVector<Unread>& unread)
{
    static const QRegularExpression screen(
        QStringLiteral("^@media( (only )?screen| all)?(, (screen|all))?$"));
    const QString text = sheet.mid(prelude, body.begin - 1 - prelude);
    if (text.startsWith(QLatin1Char('@'))) {
        const QString name = text.section(QRegularExpression(QStringLiteral("[^@\\w-]")), 0, 0);
        if (screen.match(text.simplified()).hasMatch() && body.depth <= deepest_block)
            addRules(sheet, body, unread);
        else if (!isOneOf(name, {"@font-face", "@page"})) // nothing that is drawn depends on these
            unread.append({name, prelude});
        return;
    }
    const QVector<Declaration> declarations = readStyle(sheet.mid(body.begin, body.end - body.begin));
    int begin = prelude;
    const QStringList selectors = text.split(QLatin1Char(','));
    for (const QString& each : selectors) {
        const QString simple = each.simplified();
        const Selector selector(simple);
        if (selector.isKnown())
            addRule({selector, declarations});
        else if (!simple.isEmpty() && !isForNoDrawing(simple))
            unread.append({named(simple), firstThatIsNoSpace(sheet, begin, body.begin)});
        begin += each.size() + 1;
    }
}
