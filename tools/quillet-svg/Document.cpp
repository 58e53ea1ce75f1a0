#include "Document.h"

#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

#include <algorithm>

namespace {

bool isCompressed(const QByteArray& bytes)
{
    return bytes.startsWith("\x1f\x8b");
}

bool isUtf16(const QByteArray& bytes)
{
    return bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff");
}

} // namespace

Document readDocument(const QString& fileName)
{
    const QFileInfo info(fileName);
    if (!info.exists())
        return {{}, QStringLiteral("there is no such file")};
    if (!info.isFile())
        return {{}, QStringLiteral("this is no regular file")};
    if (info.size() > largest_file)
        return {{}, QStringLiteral("this file is larger than 64 MiB")};
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {{}, QStringLiteral("cannot be read: ") + file.errorString()};

    const QByteArray bytes = file.read(largest_file);
    if (file.error() != QFileDevice::NoError)
        return {{}, QStringLiteral("cannot be read: ") + file.errorString()};
    if (isCompressed(bytes))
        return {{}, QStringLiteral("this file is compressed; unpack it first, with gunzip")};
    if (isUtf16(bytes))
        return {{}, QStringLiteral("this file is in UTF-16; write it as UTF-8 first, with iconv")};
    return {QString::fromUtf8(bytes.constData(), int(qstrnlen(bytes.constData(), uint(bytes.size())))), {}};
}

QString replaceFile(const QString& fileName, const QByteArray& bytes)
{
    QSaveFile file(fileName);
    // With a buffer, a disk that is full would show only when that is flushed, which commit() does not
    // notice.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write(bytes) != bytes.size()
        || !file.commit())
        return QStringLiteral("cannot be written: ") + file.errorString();
    return {};
}

QStringList svgFiles(const QStringList& names)
{
    QStringList result;
    for (const QString& name : names) {
        if (!QFileInfo(name).isDir()) {
            result.append(name);
            continue;
        }
        QStringList found;
        QDirIterator each(name, {QStringLiteral("*.svg")}, QDir::Files, QDirIterator::Subdirectories);
        while (each.hasNext())
            found.append(each.next());
        std::sort(found.begin(), found.end());
        result += found;
    }
    return result;
}
