#pragma once

#include "XmlTree.h"

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QVector>

/// What the elements of a document refer to.
class References
{
public:
    explicit References(const QVector<XmlElement>& elements);

    /// The element with the identifier, or -1.
    int find(const QString& id) const { return m_ids.value(id, -1); }

    /// The element that a "use" repeats, or -1.
    int targetOf(const XmlElement& use) const;

    /// Whether the identifier is a gradient's.
    bool isGradient(const QString& id) const;

    /// Why drawing the document would not come to an end, or go too deep; empty if it is well.
    const QString& error() const { return m_error; }
    Position errorPosition() const { return m_errorPosition; }
    const QString& advice() const { return m_advice; }

private:
    /// What is drawn for one element.
    struct Content
    {
        enum State { Unknown, Open, Known };

        State state = Unknown;
        int elements = 0;
        int depth = 0;
    };

    /// What stands in one element, or is repeated by it.
    struct Parts
    {
        QVector<int> drawn;
        int others = 0; ///< children that are only passed
    };

    void measure();
    Parts drawnBy(int element) const;
    Content sumOf(const Parts& parts) const;
    void fail(int element, const QString& why, const QString& advice);

    const QVector<XmlElement>& m_elements;
    QHash<QString, int> m_ids;
    QVector<Content> m_contents;
    QString m_error;
    QString m_advice;
    Position m_errorPosition;
};
