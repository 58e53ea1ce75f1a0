#include "Pictures.h"

#include <Quillet/PainterPathContainer.h>

#include <QtCore/QStringList>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <algorithm>
#include <cstdlib>

namespace {

QRectF squareOf(const QRectF& area)
{
    const double side = std::max(area.width(), area.height());
    return {area.topLeft(), QSizeF(side, side)};
}

QImage emptyPicture()
{
    QImage image(picture_size, picture_size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QStringList* heard = nullptr;

void hear(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text)
{
    heard->append(text);
}

int largestOf(QRgb one, QRgb other)
{
    return std::max({std::abs(qRed(one) - qRed(other)),
                     std::abs(qGreen(one) - qGreen(other)),
                     std::abs(qBlue(one) - qBlue(other)),
                     std::abs(qAlpha(one) - qAlpha(other))});
}

} // namespace

QImage pictureByQuillet(const Quillet::PainterPathContainer& shapes, const QRectF& area)
{
    QImage image = emptyPicture();
    const QRectF square = squareOf(area);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    // By the painter and not by the shapes' transform, which would leave the widths of strokes as they are.
    painter.scale(picture_size / square.width(), picture_size / square.height());
    painter.translate(-square.topLeft());
    shapes.draw(painter);
    return image;
}

QImage pictureByQt(const QString& document, const QRectF& area, QStringList& messages)
{
    heard = &messages;
    const QtMessageHandler handler = qInstallMessageHandler(hear);
    QImage image;
    QSvgRenderer renderer;
    if (renderer.load(document.toUtf8())) {
        image = emptyPicture();
        renderer.setViewBox(squareOf(area));
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter, QRectF(0, 0, picture_size, picture_size));
    }
    qInstallMessageHandler(handler);
    return image;
}

Difference differenceOf(const QImage& one, const QImage& other)
{
    Difference result;
    for (int y = 0; y < one.height(); ++y) {
        const auto* const a = reinterpret_cast<const QRgb*>(one.constScanLine(y));
        const auto* const b = reinterpret_cast<const QRgb*>(other.constScanLine(y));
        for (int x = 0; x < one.width(); ++x) {
            const int difference = largestOf(a[x], b[x]);
            result.largest = std::max(result.largest, difference);
            result.pixels += difference > 0 ? 1 : 0;
        }
    }
    return result;
}

bool isBlank(const QImage& picture)
{
    return picture.isNull() || picture == emptyPicture();
}
