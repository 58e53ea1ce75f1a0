#include "Document.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTextCodec>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int utf_8 = 106; // the number of the encoding by IANA, by which Qt always finds it

bool isCompressed(const QByteArray& bytes)
{
    return bytes.startsWith("\x1f\x8b");
}

bool isUtf16(const QByteArray& bytes)
{
    return bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff");
}

Document failed(const QString& error)
{
    Document document;
    document.error = error;
    return document;
}

Document documentFrom(const QByteArray& bytes)
{
    if (bytes.size() > largest_file)
        return failed(QStringLiteral("this file is larger than 64 MiB"));
    if (isCompressed(bytes))
        return failed(QStringLiteral("this file is compressed; unpack it first, with gunzip"));
    if (isUtf16(bytes))
        return failed(QStringLiteral("this file is in UTF-16; write it as UTF-8 first, with iconv"));

    Document document;
    const int size = int(qstrnlen(bytes.constData(), uint(bytes.size())));
    document.text = QString::fromUtf8(bytes.constData(), size);
    document.bytesBehindNull = std::max(0, bytes.size() - size - 1);
    QTextCodec::ConverterState state;
    QTextCodec::codecForMib(utf_8)->toUnicode(bytes.constData(), size, &state);
    document.hasInvalidBytes = state.invalidChars > 0 || state.remainingChars > 0;
    return document;
}

Document readFrom(QFile& file)
{
    const QByteArray bytes = file.read(largest_file + 1);
    if (file.error() != QFileDevice::NoError)
        return failed(QStringLiteral("cannot be read: ") + file.errorString());
    return documentFrom(bytes);
}

/// The SVG files in the directory and below it, but for hidden ones. What a link to a directory leads to is
/// not entered.
QVector<Input> filesBelow(const QString& directory)
{
    QVector<Input> result;
    QStringList directories{directory};
    while (!directories.isEmpty()) {
        const QFileInfo info(directories.takeLast());
        if (!info.isReadable() || !info.isExecutable()) {
            result.append({info.filePath(), QStringLiteral("this directory cannot be read")});
            continue;
        }
        const QFileInfoList entries =
            QDir(info.filePath())
                .entryInfoList({QStringLiteral("*.svg")}, QDir::Files | QDir::AllDirs | QDir::NoDotAndDotDot);
        for (const QFileInfo& each : entries) {
            if (!each.isDir())
                result.append({each.filePath(), QString()});
            else if (!each.isSymLink())
                directories.append(each.filePath());
        }
    }
    if (result.isEmpty())
        return {{directory, QStringLiteral("there is no SVG file in this directory")}};
    std::sort(result.begin(), result.end(), [](const Input& one, const Input& other) {
        return one.fileName < other.fileName;
    });
    return result;
}

} // namespace

bool isStandardStream(const QString& fileName)
{
    return fileName == QLatin1String("-");
}

Document readDocument(const QString& fileName)
{
    QFile file(fileName);
    if (isStandardStream(fileName)) {
        if (!file.open(stdin, QIODevice::ReadOnly))
            return failed(QStringLiteral("cannot be read: ") + file.errorString());
        return readFrom(file);
    }
    const QFileInfo info(fileName);
    if (!info.exists())
        return failed(QStringLiteral("there is no such file"));
    if (info.isDir())
        return failed(QStringLiteral("this is a directory"));
    if (!info.isFile())
        return failed(QStringLiteral("this is no regular file"));
    if (info.size() > largest_file)
        return failed(QStringLiteral("this file is larger than 64 MiB"));
    if (!file.open(QIODevice::ReadOnly))
        return failed(QStringLiteral("cannot be read: ") + file.errorString());
    return readFrom(file);
}

QVector<Input> svgFiles(const QStringList& names)
{
    QVector<Input> result;
    for (const QString& name : names) {
        if (!isStandardStream(name) && QFileInfo(name).isDir())
            result += filesBelow(name);
        else
            result.append({name, QString()});
    }
    return result;
}
