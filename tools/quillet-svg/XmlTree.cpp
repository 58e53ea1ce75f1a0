#include "XmlTree.h"

#include "Names.h"

#include <QtCore/QSet>
#include <QtCore/QXmlStreamReader>

#include <algorithm>
#include <utility>

namespace {

/// Moves \a position behind the unit at \a offset of \a text.
void advance(Position& position, const QString& text, int offset)
{
    const QChar unit = text[offset];
    const bool isBeforeLineFeed =
        offset + 1 < text.size() && text[offset + 1] == QLatin1Char('\n'); // which ends the line then
    if (unit == QLatin1Char('\n') || (unit == QLatin1Char('\r') && !isBeforeLineFeed))
        position = {position.line + 1, 1};
    else if (!unit.isLowSurrogate())
        ++position.column;
}

/// Finds lines and columns of growing offsets in a text.
class PositionFinder
{
public:
    explicit PositionFinder(const QString& text) : m_text(text) {}

    Position at(int offset)
    {
        for (; m_offset < offset && m_offset < m_text.size(); ++m_offset)
            advance(m_position, m_text, m_offset);
        return m_position;
    }

private:
    const QString& m_text;
    int m_offset = 0;
    Position m_position;
};

/// Finds the names and values of a start tag's attributes in its text.
class TagScanner
{
public:
    TagScanner(const QString& text, int begin, int end) : m_text(text), m_next(begin), m_end(end) {}

    struct Place
    {
        int name;
        int nameEnd;
        int value;
        int valueEnd;
    };

    /// \return false behind the last attribute.
    bool next(Place& place)
    {
        skipTo([](QChar c) { return !c.isSpace(); });
        place.name = m_next;
        skipTo([](QChar c) { return c.isSpace() || c == QLatin1Char('='); });
        place.nameEnd = m_next;
        skipTo([](QChar c) { return c == QLatin1Char('"') || c == QLatin1Char('\''); });
        if (m_next >= m_end)
            return false;
        const QChar quote = m_text[m_next];
        place.value = ++m_next;
        skipTo([quote](QChar c) { return c == quote; });
        place.valueEnd = m_next++;
        return m_next <= m_end;
    }

private:
    template <typename Condition>
    void skipTo(Condition condition)
    {
        while (m_next < m_end && !condition(m_text[m_next]))
            ++m_next;
    }

    const QString& m_text;
    int m_next;
    int m_end;
};

/// How a value goes on: \a units of it are written with \a length units of the document.
struct Written
{
    int length;
    int units; ///< 0: of an entity, so this is not known
};

Written writtenAt(const QString& raw, int at)
{
    if (raw.midRef(at, 2) == QLatin1String("\r\n"))
        return {2, 1};
    const int end = raw[at] == QLatin1Char('&') ? raw.indexOf(QLatin1Char(';'), at) : -1;
    if (end < 0)
        return {1, 1};
    const QString name = raw.mid(at + 1, end - at - 1);
    const int length = end + 1 - at;
    if (name.startsWith(QLatin1String("#x")))
        return {length, QChar::requiresSurrogates(name.midRef(2).toUInt(nullptr, 16)) ? 2 : 1};
    if (name.startsWith(QLatin1Char('#')))
        return {length, QChar::requiresSurrogates(name.midRef(1).toUInt()) ? 2 : 1};
    return {length, isOneOf(name, {"lt", "gt", "amp", "apos", "quot"}) ? 1 : 0};
}

} // namespace

QString XmlElement::attribute(const QString& attributeName) const
{
    const XmlAttribute* found = find(attributeName);
    return found ? found->value : QString();
}

const XmlAttribute* XmlElement::find(const QString& attributeName) const
{
    for (const XmlAttribute& each : attributes) {
        if (each.name == attributeName)
            return &each;
    }
    return nullptr;
}

XmlTree::XmlTree(const QString& text)
{
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    PositionFinder positions(text);
    QVector<int> open;
    int closed = -1; // the last element that was, in the one that is open
    QSet<QString> external;
    int before = 0; // the offset of the token

    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        const int offset = int(reader.characterOffset()); // behind the token
        const int begins = std::exchange(before, offset);

        // The reader passes over them without a word.
        const bool isMarkup = token == QXmlStreamReader::Comment || reader.isCDATA()
                              || token == QXmlStreamReader::ProcessingInstruction;
        if (!external.isEmpty() && !open.isEmpty() && !isMarkup) {
            const QStringRef written = text.midRef(begins, offset - begins);
            for (int at = written.indexOf(QLatin1Char('&')); at >= 0;
                 at = written.indexOf(QLatin1Char('&'), at + 1)) {
                const int end = written.indexOf(QLatin1Char(';'), at);
                const QString name = written.mid(at + 1, end - at - 1).toString();
                if (end > at && external.contains(name))
                    m_unknownEntities.append({name, positions.at(begins + at), open.last()});
            }
        }

        if (token == QXmlStreamReader::StartElement) {
            XmlElement element;
            element.name = reader.qualifiedName().toString();
            element.parent = open.isEmpty() ? -1 : open.last();
            element.before = std::exchange(closed, -1);
            const QXmlStreamAttributes attributes = reader.attributes();
            for (const QXmlStreamAttribute& each : attributes) {
                XmlAttribute attribute;
                attribute.name = each.qualifiedName().toString();
                attribute.value = each.value().toString();
                element.attributes.append(attribute);
            }

            // No "<" stands in a tag. Where there is another one, the tag comes out of an entity's text.
            const QString start = QLatin1Char('<') + element.name;
            const int begin = text.lastIndexOf(QLatin1Char('<'), offset - 1);
            const bool found = text.midRef(begin, start.size()) == start;
            element.position = positions.at(found ? begin : offset);
            TagScanner scanner(text, begin + start.size(), found ? offset : 0);
            TagScanner::Place place{};
            int index = 0;
            while (index < element.attributes.size() && scanner.next(place)) {
                XmlAttribute& attribute = element.attributes[index++];
                if (text.midRef(place.name, place.nameEnd - place.name) != attribute.name)
                    break;
                attribute.namePosition = positions.at(place.name);
                attribute.valuePosition = positions.at(place.value);
                attribute.rawValue = text.mid(place.value, place.valueEnd - place.value);
            }
            for (XmlAttribute& attribute : element.attributes) {
                if (attribute.rawValue.isNull())
                    attribute.namePosition = attribute.valuePosition = element.position;
            }
            open.append(m_elements.size());
            m_elements.append(element);
        } else if (token == QXmlStreamReader::ProcessingInstruction
                   && reader.processingInstructionTarget() == QLatin1String("xml-stylesheet")) {
            m_styleSheetLinks.append(positions.at(text.lastIndexOf(QLatin1String("<?"), offset - 1)));
        } else if (token == QXmlStreamReader::DTD) {
            const QXmlStreamEntityDeclarations declarations = reader.entityDeclarations();
            for (const QXmlStreamEntityDeclaration& each : declarations) {
                if (!each.systemId().isEmpty())
                    external.insert(each.name().toString());
            }
        } else if (token == QXmlStreamReader::EntityReference && !open.isEmpty()) {
            m_unknownEntities.append({reader.name().toString(),
                                      positions.at(text.lastIndexOf(QLatin1Char('&'), offset - 1)),
                                      open.last()});
        } else if (token == QXmlStreamReader::EndElement) {
            closed = open.takeLast();
            m_elements[closed].end = m_elements.size();
        } else if (token == QXmlStreamReader::Characters && !open.isEmpty() && !reader.isWhitespace()) {
            XmlElement& around = m_elements[open.last()];
            const bool isFirst = around.text.isEmpty();
            around.text += reader.text();
            const QLatin1String cdata("<![CDATA[");
            const int begin = reader.isCDATA() ? text.lastIndexOf(cdata, offset - 1) + cdata.size() : begins;
            around.rawText = isFirst ? text.mid(begin, offset - begin) : QString();
            if (reader.isCDATA())
                around.rawText.replace(QLatin1Char('&'), QLatin1Char(' ')); // which begins no reference there
            around.textPosition = isFirst ? positions.at(begin) : around.position;
        }
    }
    for (const int index : open)
        m_elements[index].end = m_elements.size();
    if (reader.hasError()) {
        m_error = reader.errorString();
        while (m_error.endsWith(QLatin1Char('.')))
            m_error.chop(1);
        m_errorPosition = positions.at(int(reader.characterOffset()) - 1);
    }
}

Position positionIn(const QString& text, int offset)
{
    return PositionFinder(text).at(offset);
}

Position PlacesInValue::at(int offset)
{
    while (m_at < m_raw.size() && m_units < offset) {
        const Written written = writtenAt(m_raw, m_at);
        if (written.units == 0 || m_units + written.units > offset)
            break;
        m_units += written.units;
        for (const int end = m_at + written.length; m_at < end; ++m_at)
            advance(m_position, m_raw, m_at);
    }
    return m_position;
}

bool isForeign(const QVector<XmlElement>& elements, int i)
{
    const QString& name = elements[i].name;
    const int colon = name.indexOf(QLatin1Char(':'));
    const QString declaration =
        colon < 0 ? QStringLiteral("xmlns") : QStringLiteral("xmlns:") + name.left(colon);
    for (int at = i; at >= 0; at = elements[at].parent) {
        if (const XmlAttribute* found = elements[at].find(declaration))
            return found->value != QLatin1String("http://www.w3.org/2000/svg");
    }
    return colon >= 0;
}

bool isEmptyText(const XmlTree& tree, int i)
{
    const QVector<XmlElement>& elements = tree.elements();
    const QVector<EntityReference>& entities = tree.unknownEntities();
    const int end = elements[i].end;
    const auto isEmpty = [](const XmlElement& each) {
        return each.text.isEmpty() && localName(each.name) != QLatin1String("tref");
    };
    const auto standsIn = [=](const EntityReference& each) {
        return each.element >= i && each.element < end;
    };
    return std::all_of(elements.begin() + i, elements.begin() + end, isEmpty)
           && std::none_of(entities.begin(), entities.end(), standsIn);
}

int firstTooDeep(const QVector<XmlElement>& elements)
{
    QVector<int> depth(elements.size(), 1);
    for (int i = 1; i < elements.size(); ++i) {
        depth[i] = depth[elements[i].parent] + 1;
        if (depth[i] > deepest_nesting)
            return i;
    }
    return -1;
}

QString localName(const QString& name)
{
    return name.mid(name.lastIndexOf(QLatin1Char(':')) + 1);
}
