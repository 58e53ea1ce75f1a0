#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

/// The text of a file, or why it cannot be had.
struct Document
{
    QString text;
    QString error;                ///< one line; empty if the file was read
    int bytesBehindNull = 0;      ///< that are not in the text
    bool hasInvalidBytes = false; ///< there are bytes that are no UTF-8
};

/// Files that are larger are not read.
constexpr qint64 largest_file = 64 * 1024 * 1024;

/// Whether \a fileName stands for standard input, or output.
bool isStandardStream(const QString& fileName);

/// Reads the file, or standard input for "-", as the library's reader does: as UTF-8, up to the first null
/// byte.
Document readDocument(const QString& fileName);

/// A file that is to be read, or why there is none.
struct Input
{
    QString fileName;
    QString error; ///< one line; empty if the file is to be read
};

/// The SVG files that \a names stand for: directories give all files "*.svg" below them, in the order of
/// their names, or an error if there is none. What is no directory stands for itself.
QVector<Input> svgFiles(const QStringList& names);
