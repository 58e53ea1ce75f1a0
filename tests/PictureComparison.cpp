#include "PictureComparison.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtGui/QPainter>

#include <algorithm>
#include <array>

namespace {

constexpr int gap = 8; // pixels between the parts of a picture of differences

const QString how_to_store = QStringLiteral("scripts/gallery --screenshots docs/pictures");

/// The largest difference of a channel.
int distance(QRgb one, QRgb other)
{
    return std::max({qAbs(qRed(one) - qRed(other)),
                     qAbs(qGreen(one) - qGreen(other)),
                     qAbs(qBlue(one) - qBlue(other)),
                     qAbs(qAlpha(one) - qAlpha(other))});
}

struct Differences
{
    QImage map;
    int count = 0;
    int largest = 0;
    QPoint first;
};

// Of two pictures of one size.
Differences findDifferences(const QImage& actual, const QImage& stored)
{
    Differences result;
    result.map = QImage(stored.size(), QImage::Format_RGB32);
    result.map.fill(Qt::white);
    for (int y = 0; y < stored.height(); ++y) {
        for (int x = 0; x < stored.width(); ++x) {
            const int far = distance(actual.pixel(x, y), stored.pixel(x, y));
            if (far == 0)
                continue;
            result.largest = qMax(result.largest, far);
            result.map.setPixelColor(x, y, far > channel_tolerance ? Qt::red : Qt::gray);
            if (far > channel_tolerance && result.count++ == 0)
                result.first = {x, y};
        }
    }
    return result;
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
        const Differences differences = findDifferences(actual, stored);
        const int pixels = stored.width() * stored.height();
        if (differences.count <= std::min(pixels * pixels_tolerance, double(most_pixels)))
            return {};
        what = QStringLiteral("%1 of %2 pixels differ by more than %3, the first at (%4, %5), by up to %6")
                   .arg(differences.count)
                   .arg(pixels)
                   .arg(channel_tolerance)
                   .arg(differences.first.x())
                   .arg(differences.first.y())
                   .arg(differences.largest);
        map = differences.map;
    }

    if (!write(differenceFile, {stored, actual, map}))
        return QStringLiteral("%1; cannot write %2").arg(what, QDir::toNativeSeparators(differenceFile));
    return QStringLiteral("%1\n   Stored, actual and where they differ: %2\n   To store the actual one: %3")
        .arg(what, QDir::toNativeSeparators(differenceFile), how_to_store);
}
