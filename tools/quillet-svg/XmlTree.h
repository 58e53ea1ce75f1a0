#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

/// A place in a text; both numbers count from 1, columns in characters.
struct Position
{
    int line = 1;
    int column = 1;
};

struct XmlAttribute
{
    QString name; ///< as written, with its prefix
    QString value;
    Position namePosition;
    Position valuePosition; ///< of the value's first character
    QString rawValue;       ///< as written, with references; empty where the place is not known
};

struct XmlElement
{
    QString name; ///< as written, with its prefix
    Position position;
    int parent = -1; ///< index of the element around it
    int before = -1; ///< index of the element in front of it in the same element
    int end = -1;    ///< index behind the last element in it
    QVector<XmlAttribute> attributes;
    QString text;          ///< the characters directly in it
    QString rawText;       ///< as written, in CDATA without “&”; empty where they stand in pieces
    Position textPosition; ///< of the first of them; of the element where they do not stand in one piece

    /// The value, or an empty text.
    QString attribute(const QString& attributeName) const;
    const XmlAttribute* find(const QString& attributeName) const;
};

/// A reference to an entity whose text is not in the document.
struct EntityReference
{
    QString name;
    Position position;
    int element = -1; ///< index of the element that it stands in
};

/// The elements of a document in their order, with the places where they and their attributes stand.
class XmlTree
{
public:
    /// Reads \a text. error() tells whether that went well.
    explicit XmlTree(const QString& text);

    const QVector<XmlElement>& elements() const { return m_elements; }

    /// The instructions "xml-stylesheet".
    const QVector<Position>& styleSheetLinks() const { return m_styleSheetLinks; }

    const QVector<EntityReference>& unknownEntities() const { return m_unknownEntities; }

    /// What is wrong with the XML; empty if nothing is.
    const QString& error() const { return m_error; }
    Position errorPosition() const { return m_errorPosition; }

private:
    QVector<XmlElement> m_elements;
    QVector<Position> m_styleSheetLinks;
    QVector<EntityReference> m_unknownEntities;
    QString m_error;
    Position m_errorPosition;
};

/// The place of the unit at \a offset of \a text.
Position positionIn(const QString& text, int offset);

/// Finds the places of growing offsets in a value. What an entity stands for has the place of the reference.
class PlacesInValue
{
public:
    /// The value is written as \a raw, which has to stay; it begins at \a position.
    PlacesInValue(const QString& raw, const Position& position) : m_raw(raw), m_position(position) {}

    /// The attribute has to stay.
    explicit PlacesInValue(const XmlAttribute& attribute)
        : PlacesInValue(attribute.rawValue, attribute.valuePosition)
    {
    }

    Position at(int offset);

private:
    const QString& m_raw;
    Position m_position;
    int m_at = 0;    ///< where the position is in the value as it is written
    int m_units = 0; ///< and in the value
};

/// Whether the namespace of the element \a i is another one than SVG's. No namespace at all counts as SVG's.
bool isForeign(const QVector<XmlElement>& elements, int i);

/// Whether nothing of the text in the element \a i, or in those in it, would be seen.
bool isEmptyText(const XmlTree& tree, int i);

/// How deep the library's reader goes.
constexpr int deepest_nesting = 2000;

/// The first element that stands deeper, or -1.
int firstTooDeep(const QVector<XmlElement>& elements);

/// What stands behind the colon of a qualified name, or all of it.
QString localName(const QString& name);
