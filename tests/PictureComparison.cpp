#include "PictureComparison.h"

#include "PictureDifference.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtGui/QPainter>

#include <algorithm>
#include <array>

namespace {

constexpr int gap = 8; // pixels between the parts of a picture of differences

const QString how_to_store = QStringLiteral("scripts/gallery --screenshots docs/pictures");

QRgb colorFor(int difference)
{
    const QColor color(difference == 0 ? Qt::white : difference > channel_tolerance ? Qt::red : Qt::gray);
    return color.rgb();
}

bool write(const QString& fileName, const std::array<QImage, 3>& parts)
{
    QSize size(-gap, 0);
    for (const QImage& part : parts)
        size = QSize(size.width() + gap + part.width(), qMax(size.height(), part.height()));
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::darkGray);

    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    int left = 0;
    for (const QImage& part : parts) {
        painter.drawImage(left, 0, part);
        left += part.width() + gap;
    }
    painter.end();
    return QFileInfo(fileName).dir().mkpath(QStringLiteral(".")) && image.save(fileName);
}

QString describe(const QSize& size)
{
    return QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
}

} // namespace

QString pictureDifference(const QImage& actual, const QString& storedFile, const QString& differenceFile)
{
    const QImage stored(storedFile);
    if (stored.isNull()) {
        return QStringLiteral("there is no picture %1; \"%2\" writes it")
            .arg(QDir::toNativeSeparators(storedFile), how_to_store);
    }

    QString what;
    QImage map;
    if (actual.size() != stored.size()) {
        what = QStringLiteral("the picture is %1 pixels large, the stored one %2")
                   .arg(describe(actual.size()), describe(stored.size()));
        map = QImage(stored.size(), QImage::Format_RGB32);
        map.fill(Qt::red);
    } else {
        const PictureDifference difference = differenceOf(actual, stored, channel_tolerance);
        const int pixels = stored.width() * stored.height();
        if (difference.beyond <= std::min(pixels * pixels_tolerance, double(most_pixels)))
            return {};
        what = QStringLiteral("%1 of %2 pixels differ by more than %3, the first at (%4, %5), by up to %6")
                   .arg(difference.beyond)
                   .arg(pixels)
                   .arg(channel_tolerance)
                   .arg(difference.first.x())
                   .arg(difference.first.y())
                   .arg(difference.worst);
        map = differenceMap(actual, stored, colorFor);
    }

    if (!write(differenceFile, {stored, actual, map}))
        return QStringLiteral("%1; cannot write %2").arg(what, QDir::toNativeSeparators(differenceFile));
    return QStringLiteral("%1\n   Stored, actual and where they differ: %2\n   To store the actual one: %3")
        .arg(what, QDir::toNativeSeparators(differenceFile), how_to_store);
}
