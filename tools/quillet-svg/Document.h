#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

/// The text of a file, or why it cannot be had.
struct Document
{
    QString text;
    QString error; ///< one line; empty if the file was read
};

/// Files that are larger are not read.
constexpr qint64 largest_file = 64 * 1024 * 1024;

/// Reads the file as the library's reader does: as UTF-8, up to the first null byte.
Document readDocument(const QString& fileName);

/// Writes \a bytes to the file, which is replaced as a whole or left as it is.
/// \return why that failed, in one line; empty if it did not.
QString replaceFile(const QString& fileName, const QByteArray& bytes);

/// The SVG files that \a names stand for: directories give all files "*.svg" below them, in the order of
/// their names. What is no directory stands for itself.
QStringList svgFiles(const QStringList& names);
