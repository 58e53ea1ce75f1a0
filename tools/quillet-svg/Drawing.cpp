#include "Drawing.h"

#include "PictureDifference.h"

#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <algorithm>
#include <cmath>

QImage emptyPicture(const QSizeF& drawing, int size, QTransform& scaling)
{
    const double longer = std::max(drawing.width(), drawing.height());
    const double scale = longer > 0 && std::isfinite(longer) ? size / longer : 1;
    const auto whole = [&](double length) { return qRound(qBound(1.0, length * scale, double(size))); };
    QImage picture(whole(drawing.width()), whole(drawing.height()), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    // The frame ends where pixels do, so that what is clipped to it has the same edge as what is not.
    const auto fitted = [&](double length, int pixels) {
        return std::abs(length * scale - pixels) <= 0.5 ? pixels / length : scale;
    };
    scaling = QTransform::fromScale(fitted(drawing.width(), picture.width()),
                                    fitted(drawing.height(), picture.height()));
    return picture;
}

void paintWithQt(QPainter& painter, QSvgRenderer& renderer, const Frame& frame)
{
    renderer.render(&painter, frame.viewBox.isNull() ? renderer.viewBoxF() : frame.target);
}

QImage drawWithQt(QSvgRenderer& renderer, const Frame& frame, int size)
{
    QTransform scaling;
    QImage picture = emptyPicture(frame.size, size, scaling);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(scaling);
    paintWithQt(painter, renderer, frame);
    return picture;
}

QImage drawWithLibrary(const Quillet::PainterPathContainer& picture, const QRectF& area, int size)
{
    QTransform scaling;
    QImage image = emptyPicture(area.size(), size, scaling);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    // By the painter and not by the shapes' transform, which would leave the widths of strokes as they are.
    painter.setTransform(scaling);
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
