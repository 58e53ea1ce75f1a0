#pragma once

#include "Finding.h"

#include <QtCore/QString>
#include <QtCore/QVector>

/// The attributes that the library's reader applies, in the order in which it does.
const QVector<QString>& readAttributes();

/// Whether the reader refuses \a value for the attribute \a name, one of readAttributes().
bool isRefused(const QString& name, const QString& value);

/// What to write instead.
QString refusalOf(const QString& name);

/// How grave it is that an attribute, a property or an element is not followed.
struct Ignored
{
    Finding::Weight weight = Finding::Note;
    QString rule;
    QString advice;
};

/// An attribute, or a property of a style, that the reader does not know.
Ignored ignoredProperty(const QString& name, const QString& value);

/// Likewise a property that stands in a style.
Ignored ignoredInStyle(const QString& name, const QString& value);

/// A property that a conversion cannot keep; a note for one that it can.
Ignored lostProperty(const QString& name, const QString& value);

/// An element with everything in it that the reader does not know.
Ignored ignoredElement(const QString& name);
