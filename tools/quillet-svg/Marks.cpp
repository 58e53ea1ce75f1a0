#include "Marks.h"

#include <QtCore/QBuffer>
#include <QtCore/QXmlStreamWriter>
#include <QtGui/QImage>

namespace {

/// The kind is the width in pixels.
QString imageOf(Mark::Kind kind)
{
    QImage image(kind, 1, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return QStringLiteral("data:image/png;base64,") + QString::fromLatin1(bytes.toBase64());
}

} // namespace

void writeMark(QXmlStreamWriter& writer, const Mark& mark)
{
    static const QString images[] = {
        imageOf(Mark::Clip), imageOf(Mark::Layer), imageOf(Mark::Dashes), imageOf(Mark::End)};
    const auto write = [&](const char* name, double number) {
        writer.writeAttribute(QLatin1String(name), QString::number(number, 'g', 12));
    };
    writer.writeEmptyElement(QStringLiteral("image"));
    write("x", mark.area.x());
    write("y", mark.area.y());
    write("width", mark.area.width());
    write("height", mark.area.height());
    writer.writeAttribute(QStringLiteral("xlink:href"), images[mark.kind - Mark::Clip]);
}
