#include "Pictures.h"

#include "Drawing.h"

#include <QtSvg/QSvgRenderer>

#include <algorithm>

namespace {

QRectF squareOf(const QRectF& area)
{
    const double side = std::max(area.width(), area.height());
    return {area.topLeft(), QSizeF(side, side)};
}

QStringList* heard = nullptr;

void hear(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text)
{
    heard->append(text);
}

} // namespace

QImage pictureByQuillet(const Quillet::PainterPathContainer& shapes, const QRectF& area)
{
    return drawWithLibrary(shapes, squareOf(area), picture_size);
}

QImage pictureByQt(const QString& document, const QRectF& area, QStringList& messages)
{
    heard = &messages;
    const QtMessageHandler handler = qInstallMessageHandler(hear);
    QImage image;
    QSvgRenderer renderer;
    if (renderer.load(document.toUtf8())) {
        Frame frame;
        frame.size = QSizeF(picture_size, picture_size);
        frame.viewBox = squareOf(area);
        frame.target = QRectF(QPointF(), frame.size);
        renderer.setViewBox(frame.viewBox);
        image = drawWithQt(renderer, frame, picture_size);
    }
    qInstallMessageHandler(handler);
    return image;
}

bool isBlank(const QImage& picture)
{
    QImage empty = picture;
    empty.fill(Qt::transparent);
    return picture == empty;
}
