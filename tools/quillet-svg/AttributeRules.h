#pragma once

#include "Finding.h"

#include <QtCore/QString>
#include <QtCore/QVector>

/// The attributes that the library's reader applies, in the order in which it does.
const QVector<QString>& readAttributes();

/// Whether the reader refuses \a value for the attribute \a name, one of readAttributes().
bool isRefused(const QString& name, const QString& value);

/// Why it does, and what to write instead.
QString refusalOf(const QString& name);

/// How grave it is that the reader ignores an attribute, or a property of a style.
struct Ignored
{
    Finding::Weight weight = Finding::Note;
    QString rule;
    QString advice;
};

Ignored ignoredProperty(const QString& name, const QString& value);

/// Likewise for an element with everything in it.
Ignored ignoredElement(const QString& name);
