#include <Quillet/SvgNesting.h>

#include <QtXml/QXmlDefaultHandler>
#include <QtXml/QXmlInputSource>
#include <QtXml/QXmlSimpleReader>

namespace {

enum class Nesting {
    Shallow,
    Deep,
    Unclear, ///< a document type with entities that may hold markup, or no XML
};

// The functions below answer with an index into the text. What is never closed ends with the text.

/// In place of an index: what stands there may hold markup that cannot be seen.
constexpr int unclear = -1;

QChar unitAt(const QString& text, int index)
{
    return index < text.size() ? text.at(index) : QChar();
}

bool isQuote(QChar unit)
{
    return unit == QLatin1Char('"') || unit == QLatin1Char('\'');
}

int endOr(int found, const QString& text)
{
    return found < 0 ? text.size() : found;
}

/// The index of the quote that closes the one at \a quote.
int closingQuote(const QString& text, int quote)
{
    return endOr(text.indexOf(text.at(quote), quote + 1), text);
}

/// The index of the ">" of the start tag that has begun before \a index.
int endOfStartTag(const QString& text, int index)
{
    const QChar* const units = text.constData();
    const int size = text.size();
    for (; index < size && units[index] != QLatin1Char('>'); ++index) {
        if (isQuote(units[index]))
            index = closingQuote(text, index);
    }
    return qMin(index, size);
}

/// The index of the "]" of an internal subset, provided that none of its entities can hold markup: that they
/// have no "<" in them, no character reference that may stand for one, and no parameter entity is in play.
/// There must be no content model either, which is nested by parentheses.
int endOfPlainSubset(const QString& text, int index)
{
    const auto isRisky = [](QChar unit) {
        return unit == QLatin1Char('&') || unit == QLatin1Char('%') || unit == QLatin1Char('(');
    };

    for (; index < text.size(); ++index) {
        const QChar unit = text.at(index);
        if (unit == QLatin1Char(']'))
            return index;
        if (isRisky(unit))
            return unclear;
        if (unit == QLatin1Char('<') && unitAt(text, index + 1) == QLatin1Char('?'))
            return unclear;
        if (unit == QLatin1Char('-') && unitAt(text, index + 1) == QLatin1Char('-'))
            return unclear; // a comment may hold any quotes
        if (isQuote(unit)) {
            const int end = closingQuote(text, index);
            for (++index; index < end; ++index) {
                if (isRisky(text.at(index)) || text.at(index) == QLatin1Char('<'))
                    return unclear;
            }
        }
    }
    return text.size();
}

/// The index of the ">" of the document type declaration that begins at \a index.
int endOfDocumentType(const QString& text, int index)
{
    for (; index < text.size(); ++index) {
        const QChar unit = text.at(index);
        if (unit == QLatin1Char('>'))
            return index;
        if (isQuote(unit))
            index = closingQuote(text, index);
        if (unit == QLatin1Char('[')) {
            index = endOfPlainSubset(text, index + 1);
            if (index == unclear)
                return unclear;
        }
    }
    return text.size();
}

/// The end of the markup at \a index that opens and closes no element: "<?" or "<!".
int endOfOtherMarkup(const QString& text, int index)
{
    const auto startsWith = [&](const char* token) {
        const QLatin1String expected(token);
        return text.midRef(index, expected.size()) == expected;
    };
    const auto endOf = [&](const char* opening, const char* closing) {
        return endOr(text.indexOf(QLatin1String(closing), index + QLatin1String(opening).size()), text);
    };

    if (startsWith("<?"))
        return endOf("<?", "?>");
    if (startsWith("<!--"))
        return endOf("<!--", "-->");
    if (startsWith("<![CDATA["))
        return endOf("<![CDATA[", "]]>");
    if (startsWith("<!DOCTYPE"))
        return endOfDocumentType(text, index);
    return unclear;
}

/// The index of the first start tag. All entities are declared before it.
int beginOfRoot(const QString& text)
{
    int index = text.indexOf(QLatin1Char('<'));
    while (unitAt(text, index + 1) == QLatin1Char('!') || unitAt(text, index + 1) == QLatin1Char('?')) {
        index = endOfOtherMarkup(text, index);
        if (index == unclear)
            return unclear;
        index = endOr(text.indexOf(QLatin1Char('<'), index), text);
    }
    return endOr(index, text);
}

/// Goes from "<" to "<". Where the text is no XML, Qt's reader stops; what is counted behind that point does
/// no harm. In particular, it stops at a "<" in an attribute.
Nesting nestingByTags(int limit, const QString& text)
{
    constexpr int shortest_tag = 3; // "<g>"

    int index = beginOfRoot(text);
    if (index == unclear)
        return Nesting::Unclear;
    if (text.size() - index <= shortest_tag * limit)
        return Nesting::Shallow;

    int depth = 0;
    index = text.indexOf(QLatin1Char('<'), index);
    while (index >= 0) {
        const QChar kind = unitAt(text, index + 1);
        if (kind == QLatin1Char('/')) {
            --depth;
            ++index;
        } else if (kind == QLatin1Char('!') || kind == QLatin1Char('?')) {
            index = endOfOtherMarkup(text, index);
            if (index == unclear)
                return Nesting::Unclear;
        } else {
            if (++depth > limit)
                return Nesting::Deep;
            index = endOfStartTag(text, index + 1);
            if (text.at(index - 1) == QLatin1Char('/'))
                --depth;
        }
        index = text.indexOf(QLatin1Char('<'), index);
    }
    return Nesting::Shallow;
}

/// Qt's reader calls itself for each parenthesis of a content model, too. Models are looked for everywhere,
/// because a parameter entity may hold one.
bool isContentModelDeeperThan(int limit, const QString& text)
{
    const QLatin1String declaration("<!ELEMENT");
    for (int index = text.indexOf(declaration); index >= 0; index = text.indexOf(declaration, index)) {
        int depth = 0;
        for (index += declaration.size(); index < text.size(); ++index) {
            const QChar unit = text.at(index);
            if (unit == QLatin1Char('<') || unit == QLatin1Char('>'))
                break;
            if (unit == QLatin1Char(')'))
                --depth;
            if (unit == QLatin1Char('(') && ++depth > limit)
                return true;
        }
    }
    return false;
}

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // no other reader would do: QDomDocument reads with this one

/// Counts the elements that are open, and stops the reader at the first that is too deep.
class DepthLimit : public QXmlDefaultHandler
{
public:
    explicit DepthLimit(int limit) : m_limit(limit) {}

    bool isExceeded() const { return m_depth > m_limit; }

    bool startElement(const QString& /*namespaceURI*/,
                      const QString& /*localName*/,
                      const QString& /*qName*/,
                      const QXmlAttributes& /*attributes*/) override
    {
        ++m_depth;
        return !isExceeded();
    }

    bool endElement(const QString& /*namespaceURI*/,
                    const QString& /*localName*/,
                    const QString& /*qName*/) override
    {
        --m_depth;
        return true;
    }

private:
    int m_limit;
    int m_depth = 0;
};

/// Asks the very reader that is to be protected. It costs a good part of reading the document, so it is for
/// documents whose entities may open elements.
bool isNestedDeeperByReading(int limit, const QString& text)
{
    QXmlInputSource source;
    source.setData(text);
    DepthLimit handler(limit);
    QXmlSimpleReader reader;
    reader.setContentHandler(&handler);
    reader.setErrorHandler(&handler);
    reader.setLexicalHandler(&handler);
    reader.setDeclHandler(&handler);
    reader.setDTDHandler(&handler);
    reader.parse(source);
    return handler.isExceeded();
}

QT_WARNING_POP

} // namespace

namespace Quillet {

bool isNestedDeeperThan(int limit, const QString& text)
{
    const Nesting nesting = nestingByTags(limit, text);
    if (nesting == Nesting::Unclear)
        return isContentModelDeeperThan(limit, text) || isNestedDeeperByReading(limit, text);
    return nesting == Nesting::Deep;
}

} // namespace Quillet
