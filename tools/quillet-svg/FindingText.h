#pragma once

#include "Checker.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTextStream>

/// \a text without what would leave its line on a terminal.
QString printable(const QString& text);

/// "FILE:LINE:COLUMN: lost: what was found [rule]; what to do", as compilers write it.
QString lineFor(const QString& fileName, const Finding& finding);

/// A line for each finding that is to be shown. Of those in one piece of path data that are of one kind, the
/// first ten have a line, and the others one together.
QStringList linesFor(const QString& fileName, const QVector<Finding>& findings, bool withNotes);

/// Writes an object about a file, on one line.
void writeJson(QTextStream& out, const QString& fileName, const Check& check);

/// Likewise for a file that cannot be read.
void writeJson(QTextStream& out, const QString& fileName, const QString& error);

/// "clean", "lossy" or "refused".
QString nameOf(Finding::Weight verdict);
