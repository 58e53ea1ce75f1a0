#include "Drawing.h"

#include "PictureDifference.h"

#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <algorithm>
#include <cmath>

QImage emptyPicture(const QSizeF& drawing, int size, double& scale)
{
    const double longer = std::max(drawing.width(), drawing.height());
    scale = longer > 0 && std::isfinite(longer) ? size / longer : 1;
    const auto whole = [&](double length) { return int(qBound(1.0, length * scale + 1e-6, double(size))); };
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

QImage drawWithLibrary(const Quillet::PainterPathContainer& picture, const QRectF& area, int size)
{
    double scale = 1;
    QImage image = emptyPicture(area.size(), size, scale);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    // By the painter and not by the shapes' transform, which would leave the widths of strokes as they are.
    painter.scale(scale, scale);
    painter.translate(-area.topLeft());
    picture.draw(painter);
    return image;
}

QImage drawWithLibrary(const Quillet::PainterPathContainer& picture, const QSizeF& frameSize, int size)
{
    return drawWithLibrary(picture, QRectF(QPointF(), frameSize), size);
}

bool Difference::isSmall() const
{
    return share <= share_tolerance;
}

Difference compare(const QImage& one, const QImage& other)
{
    const PictureDifference difference = differenceOf(one, other, channel_tolerance);
    const QSize size = one.size().expandedTo(other.size());
    const double all = double(size.width()) * size.height();
    return {difference.worst, all > 0 ? difference.beyond / all : 0};
}

QImage differencePicture(const QImage& one, const QImage& other)
{
    return differenceMap(one, other, [](int difference) { return qRgb(difference, difference, difference); });
}
