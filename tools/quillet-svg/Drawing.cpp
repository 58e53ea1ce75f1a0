#include "Drawing.h"

#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <algorithm>
#include <cmath>

namespace {

int difference(QRgb one, QRgb other)
{
    return std::max({std::abs(qRed(one) - qRed(other)),
                     std::abs(qGreen(one) - qGreen(other)),
                     std::abs(qBlue(one) - qBlue(other)),
                     std::abs(qAlpha(one) - qAlpha(other))});
}

/// Calls \a take with the difference of each pixel. What only one of the pictures has differs by 255.
template <typename Take>
void forEachPixel(const QImage& one, const QImage& other, Take take)
{
    const QSize size = one.size().expandedTo(other.size());
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const bool inBoth = one.valid(x, y) && other.valid(x, y);
            take(x, y, inBoth ? difference(one.pixel(x, y), other.pixel(x, y)) : 255);
        }
    }
}

} // namespace

QImage emptyPicture(const QSizeF& drawing, int size, double& scale)
{
    const double longer = std::max(drawing.width(), drawing.height());
    scale = longer > 0 ? size / longer : 1;
    const auto whole = [&](double length) { return std::max(1, int(length * scale + 1e-6)); };
    QImage picture(whole(drawing.width()), whole(drawing.height()), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
}

void paintWithQt(QPainter& painter, QSvgRenderer& renderer, const Frame& frame)
{
    renderer.render(&painter, frame.viewBox.isNull() ? renderer.viewBoxF() : frame.target);
}

QImage drawWithQt(QSvgRenderer& renderer, const Frame& frame, int size)
{
    double scale = 1;
    QImage picture = emptyPicture(frame.size, size, scale);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    paintWithQt(painter, renderer, frame);
    return picture;
}

QImage drawWithLibrary(const Quillet::PainterPathContainer& picture, const QSizeF& frameSize, int size)
{
    double scale = 1;
    QImage image = emptyPicture(frameSize, size, scale);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    picture.draw(painter);
    return image;
}

bool Difference::isSmall() const
{
    return share <= share_tolerance;
}

Difference compare(const QImage& one, const QImage& other)
{
    Difference result;
    int many = 0;
    forEachPixel(one, other, [&](int, int, int by) {
        result.worst = std::max(result.worst, by);
        many += by > channel_tolerance ? 1 : 0;
    });
    const QSize size = one.size().expandedTo(other.size());
    const double all = double(size.width()) * size.height();
    result.share = all > 0 ? many / all : 0;
    return result;
}

QImage differencePicture(const QImage& one, const QImage& other)
{
    QImage picture(one.size().expandedTo(other.size()), QImage::Format_RGB32);
    forEachPixel(one, other, [&](int x, int y, int by) { picture.setPixel(x, y, qRgb(by, by, by)); });
    return picture;
}
