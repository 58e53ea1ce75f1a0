#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// Writes \a bytes to the file, which is replaced as a whole or left as it is, also where the process is
/// interrupted. Into what is no regular file, and for "-" into standard output, they are written as they
/// come. \return why that failed, in one line; empty if it did not.
QString replaceFile(const QString& fileName, const QByteArray& bytes);
