#pragma once

#include "Frame.h"

#include <Quillet/PainterPathContainer.h>

#include <QtGui/QImage>
#include <QtGui/QTransform>

QT_BEGIN_NAMESPACE
class QPainter;
class QSvgRenderer;
QT_END_NAMESPACE

/// Paints what Qt's renderer makes of a document, in the coordinates of its frame.
void paintWithQt(QPainter& painter, QSvgRenderer& renderer, const Frame& frame);

/// A picture of nothing whose longer side is as long as \a size, and the other the nearest number of pixels;
/// \a scaling becomes what leads from the drawing to it.
QImage emptyPicture(const QSizeF& drawing, int size, QTransform& scaling);

/// What Qt's renderer draws, its longer side as long as \a size, on nothing.
QImage drawWithQt(QSvgRenderer& renderer, const Frame& frame, int size);

/// What the library draws in \a area of \a picture, its longer side as long as \a size, on nothing.
QImage drawWithLibrary(const Quillet::PainterPathContainer& picture, const QRectF& area, int size);

/// What the library draws of \a picture, whose coordinates are those of a drawing of \a frameSize.
QImage drawWithLibrary(const Quillet::PainterPathContainer& picture, const QSizeF& frameSize, int size);

/// How two pictures of the same size differ.
struct Difference
{
    int worst = 0;    ///< the greatest difference of a channel, of 255
    double share = 0; ///< of the pixels that differ more than a line that is drawn a trifle elsewhere
    bool isSmall() const;
};

/// A channel of a pixel may differ that much, of 255.
constexpr int channel_tolerance = 32;

/// That share of the pixels may differ more.
constexpr double share_tolerance = 0.001;

Difference compare(const QImage& one, const QImage& other);

/// Where two pictures differ: black, brighter the more they do.
QImage differencePicture(const QImage& one, const QImage& other);
