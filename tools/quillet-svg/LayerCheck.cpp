#include "LayerCheck.h"

#include "PictureDifference.h"

#include <QtGui/QImage>
#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int picture_size = 128;
constexpr double visible_share = 0.001; ///< of the pixels

bool isFilled(const LayeredShape& each)
{
    return each.shape->getBrush().color().isValid() && each.fillOpacity > 0;
}

bool isStroked(const LayeredShape& each)
{
    return each.shape->getPen().color().isValid() && each.strokeOpacity > 0;
}

QRectF boxOf(const QVector<LayeredShape>& shapes)
{
    QRectF box;
    for (const LayeredShape& each : shapes) {
        const double reach = isStroked(each) ? each.shape->getPen().widthF() : 0;
        box |= each.shape->getPath().boundingRect().adjusted(-reach, -reach, reach, reach);
    }
    return box;
}

QColor withOpacity(QColor color, double opacity)
{
    color.setAlphaF(std::clamp(opacity, 0.0, 1.0));
    return color;
}

/// The shapes with their opacities divided by \a common.
QImage draw(const QVector<LayeredShape>& shapes, const QRectF& box, double common)
{
    QImage picture(picture_size, picture_size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const double scale = picture_size / std::max(box.width(), box.height());
    painter.scale(scale, scale);
    painter.translate(-box.topLeft());
    for (const LayeredShape& each : shapes) {
        const QPainterPath& path = each.shape->getPath();
        if (isFilled(each))
            painter.fillPath(path, withOpacity(each.shape->getBrush().color(), each.fillOpacity / common));
        if (isStroked(each)) {
            QPen pen = each.shape->getPen();
            pen.setColor(withOpacity(pen.color(), each.strokeOpacity / common));
            painter.strokePath(path, pen);
        }
    }
    return picture;
}

QImage faded(const QImage& picture, double opacity)
{
    QImage result(picture.size(), picture.format());
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.setOpacity(opacity);
    painter.drawImage(0, 0, picture);
    return result;
}

} // namespace

bool showsThrough(const QVector<LayeredShape>& shapes, double opacity)
{
    int parts = 0;
    for (const LayeredShape& each : shapes)
        parts += (isFilled(each) ? 1 : 0) + (isStroked(each) ? 1 : 0);
    const QRectF box = boxOf(shapes);
    const double longer = std::max(box.width(), box.height());
    if (parts < 2 || !(opacity > 0 && opacity < 1) || !(longer > 0) || !std::isfinite(longer))
        return false;
    // Where one lies over the other, the opacities differ by that much, and by a quarter of it along an edge
    // that two shapes have in common.
    const double over = opacity * (1 - opacity);
    const int tolerance = std::max(1, int(255 * over / 2));
    const PictureDifference difference =
        differenceOf(draw(shapes, box, 1), faded(draw(shapes, box, opacity), opacity), tolerance);
    return difference.beyond > visible_share * picture_size * picture_size;
}
