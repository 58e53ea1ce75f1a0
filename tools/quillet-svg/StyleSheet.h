#pragma once

#include "Style.h"
#include "XmlTree.h"

#include <QtCore/QHash>
#include <QtCore/QSet>
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

    /// The classes that it names.
    QStringList classes() const;

    /// What an element has to have for the selector to select it.
    struct Key
    {
        enum Kind { Id, Class, Element, Anything };

        Kind kind;
        QString name;
    };
    Key key() const;

    /// Whether it selects the element \a i. Of the \a classes of the elements, those that it names are
    /// enough.
    bool matches(const QVector<XmlElement>& elements, const QVector<QSet<QString>>& classes, int i) const;

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
        QStringList classes;
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
    Answer matchesFrom(const QVector<XmlElement>& elements,
                       const QVector<QSet<QString>>& classes,
                       int i,
                       int part) const;
    static bool matchesPart(const QVector<XmlElement>& elements,
                            const QVector<QSet<QString>>& classes,
                            int i,
                            const Part& part);

    QVector<Part> m_parts; ///< in their order; empty if it could not be read
    int m_specificity = 0;
};

/// The rules of style sheets.
class StyleSheet
{
public:
    /// Something that is not followed.
    struct Unread
    {
        QString what; ///< a selector, or the name of a rule such as "@media"
        int offset;   ///< in the sheet
    };

    /// Takes the rules out of the sheet \a text.
    QVector<Unread> add(const QString& text);

    /// Takes apart the classes of the elements, each once. Has to be called behind the last add().
    void readClasses(const QVector<XmlElement>& elements);

    /// Whether the rules that may select elements are too many to be compared with them.
    bool isTooMuchFor(const QVector<XmlElement>& elements) const;

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

    void addRules(const QString& sheet, const Stretch& stretch, QVector<Unread>& unread);
    void addBlock(const QString& sheet, int prelude, const Stretch& body, QVector<Unread>& unread);

    void addRule(const Rule& rule);
    QVector<int> candidates(const XmlElement& element, const QSet<QString>& classes) const;

    using Indexes = QHash<QString, QVector<int>>;

    QVector<Rule> m_rules; ///< in their order
    Indexes m_rulesOfIds;
    Indexes m_rulesOfClasses;
    Indexes m_rulesOfElements;
    QVector<int> m_otherRules;
    QSet<QString> m_classNames;       ///< in the rules
    QVector<QSet<QString>> m_classes; ///< of the elements, as far as rules name them
};
