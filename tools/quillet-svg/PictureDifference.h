#pragma once

#include <QtCore/QPoint>
#include <QtGui/QImage>

/// How two pictures differ. The channels of a pixel are alpha, and red, green and blue multiplied by it; what
/// only one of the pictures has differs by 255.
struct PictureDifference
{
    int worst = 0;  ///< the greatest difference of a channel, of 255
    int pixels = 0; ///< how many differ at all
    int beyond = 0; ///< how many differ by more than the tolerance
    QPoint first;   ///< of these
};

PictureDifference differenceOf(const QImage& one, const QImage& other, int tolerance = 0);

/// A picture of where two differ: each pixel has the colour that \a color gives its difference.
QImage differenceMap(const QImage& one, const QImage& other, QRgb (*color)(int difference));
