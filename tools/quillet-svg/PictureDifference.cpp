#include "PictureDifference.h"

#include <algorithm>
#include <cstdlib>

namespace {

int difference(QRgb one, QRgb other)
{
    return std::max({std::abs(qRed(one) - qRed(other)),
                     std::abs(qGreen(one) - qGreen(other)),
                     std::abs(qBlue(one) - qBlue(other)),
                     std::abs(qAlpha(one) - qAlpha(other))});
}

/// Calls \a take(x, y, difference) for each pixel, line by line.
template <typename Take>
void forEachPixel(const QImage& one, const QImage& other, Take take)
{
    // Where hardly anything is drawn, colours that are not multiplied are noise.
    const QImage first = one.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage second = other.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QSize common = one.size().boundedTo(other.size());
    const QSize all = one.size().expandedTo(other.size());
    for (int y = 0; y < all.height(); ++y) {
        const bool hasLine = y < common.height();
        const auto* const a = hasLine ? reinterpret_cast<const QRgb*>(first.constScanLine(y)) : nullptr;
        const auto* const b = hasLine ? reinterpret_cast<const QRgb*>(second.constScanLine(y)) : nullptr;
        for (int x = 0; x < all.width(); ++x)
            take(x, y, hasLine && x < common.width() ? difference(a[x], b[x]) : 255);
    }
}

} // namespace

PictureDifference differenceOf(const QImage& one, const QImage& other, int tolerance)
{
    if (one == other) // as most are that are compared
        return {};
    PictureDifference result;
    forEachPixel(one, other, [&](int x, int y, int by) {
        result.worst = std::max(result.worst, by);
        result.pixels += by > 0 ? 1 : 0;
        if (by > tolerance && result.beyond++ == 0)
            result.first = {x, y};
    });
    return result;
}

QImage differenceMap(const QImage& one, const QImage& other, QRgb (*color)(int difference))
{
    QImage map(one.size().expandedTo(other.size()), QImage::Format_RGB32);
    forEachPixel(one, other, [&](int x, int y, int by) { map.setPixel(x, y, color(by)); });
    return map;
}
