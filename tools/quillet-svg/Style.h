#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtGui/QColor>

/// A property of a style attribute.
struct Declaration
{
    QString property; ///< in lower case
    QString value;
    bool isImportant = false; ///< wins over styles that are stronger otherwise
};

/// The declaration of \a property, or null.
const Declaration* find(const QVector<Declaration>& properties, const QString& property);

/// Sets a property that is there, or adds it.
void set(QVector<Declaration>& properties, const QString& property, const QString& value);

/// Each property of \a declarations once, where it stands first, with its last value.
QVector<Declaration> eachOnce(const QVector<Declaration>& declarations);

/// The declarations of the style attribute \a text, without comments and "!important".
QVector<Declaration> readStyle(const QString& text);

/// The colour that \a text names (SVG 1.1, 4.2, and what CSS has besides: "rgba()", "hsl()", "hsla()",
/// "#rrggbbaa", "#rgba"); invalid if it names none.
QColor readColor(const QString& text);

/// The identifier in "url(#identifier)", with or without something behind it; empty if it is none.
QString referenceIn(const QString& value);
