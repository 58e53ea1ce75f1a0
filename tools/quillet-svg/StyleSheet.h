#pragma once

#include "Style.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

/// The rules of style sheets whose selectors name an element, an identifier or classes and nothing around it.
class StyleSheet
{
public:
    /// Takes the simple rules out of the sheet \a text.
    void add(const QString& text);

    /// The rules with other selectors, and those that begin with "@", as text.
    const QString& rest() const { return m_rest; }

    bool isEmpty() const { return m_rules.isEmpty() && m_rest.isEmpty(); }

    /// What the simple rules say about an element, the strongest last.
    QVector<Declaration>
    declarations(const QString& element, const QString& id, const QString& classes) const;

private:
    struct Rule
    {
        QString element; ///< empty: any
        QString id;      ///< empty: any
        QStringList classes;
        int specificity = 0;
        QVector<Declaration> declarations;
    };

    bool addRule(const QString& selector, const QVector<Declaration>& declarations);

    QVector<Rule> m_rules; ///< the strongest last
    QString m_rest;
};
