#pragma once

#include "Style.h"
#include "XmlTree.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

/// A selector (CSS 2, 5): elements, identifiers, classes, attributes, and what they stand in or behind.
class Selector
{
public:
    /// Reads \a text, if it is not too long. isKnown() tells whether that went well.
    explicit Selector(const QString& text);

    bool isKnown() const { return !m_parts.isEmpty(); }
    int specificity() const { return m_specificity; }

    /// Whether it selects the element \a i.
    bool matches(const QVector<XmlElement>& elements, int i) const;

private:
    struct Attribute
    {
        QString name;
        QString relation; ///< "=" and the like; empty: there has to be such an attribute
        QString value;
    };

    /// What it asks of one element.
    struct Part
    {
        QChar combinator; ///< before it: ' ', '>' or '+'
        QString element;  ///< empty: any
        QVector<Attribute> attributes;
        bool isFirstChild = false;
        bool isRoot = false;
    };

    bool readPart(const QString& text, int& position, Part& part);
    enum Answer {
        Yes,
        No,    ///< not this element; perhaps one around it
        Never, ///< nor any around it
    };
    Answer matchesFrom(const QVector<XmlElement>& elements, int i, int part) const;
    static bool matchesPart(const QVector<XmlElement>& elements, int i, const Part& part);

    QVector<Part> m_parts; ///< in their order; empty if it could not be read
    int m_specificity = 0;
};

/// The rules of style sheets.
class StyleSheet
{
public:
    /// Takes the rules out of the sheet \a text.
    /// \return what of it is not followed: selectors, and rules such as "@media".
    QStringList add(const QString& text);

    /// What the rules say about the element \a i, the strongest last.
    QVector<Declaration> declarations(const QVector<XmlElement>& elements, int i) const;

private:
    struct Rule
    {
        Selector selector;
        QVector<Declaration> declarations;
    };

    /// A stretch of a sheet.
    struct Stretch
    {
        int begin;
        int end;
        int depth; ///< blocks around it
    };

    void addRules(const QString& sheet, const Stretch& stretch, QStringList& unread);
    void addBlock(const QString& sheet, const QString& prelude, const Stretch& body, QStringList& unread);

    QVector<Rule> m_rules; ///< the strongest last
};
