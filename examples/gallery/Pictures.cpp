#include "Pictures.h"

#include "GalleryPage.h"
#include "GalleryWindow.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QTextStream>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>

#include <cstdio>

namespace {

constexpr int sheet_margin = 16;

QVector<Picture> allPictures(GalleryWindow& window)
{
    QVector<Picture> result;
    for (GalleryPage* page : window.pages()) {
        window.showPage(page);
        page->prepareForPicture();
        result.append({QStringLiteral("page-") + page->name(), picture(window)});
        result += page->pictures();
    }
    return result;
}

} // namespace

QImage picture(QWidget& widget)
{
    widget.setAttribute(Qt::WA_DontShowOnScreen);
    widget.show();
    // The first pass lays out, the layout posts resizes.
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QImage image = widget.grab().toImage();
    widget.hide();
    return image;
}

QImage sheet(const QVector<QImage>& images, int columns)
{
    QSize cell;
    for (const QImage& image : images)
        cell = cell.expandedTo(image.size());
    cell += QSize(sheet_margin, sheet_margin);

    const int rows = (images.size() + columns - 1) / columns;
    QImage result(
        columns * cell.width() + sheet_margin, rows * cell.height() + sheet_margin, QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter painter(&result);
    for (int i = 0; i < images.size(); ++i) {
        const QPoint corner(i % columns * cell.width() + sheet_margin,
                            i / columns * cell.height() + sheet_margin);
        painter.drawImage(corner, images[i]);
    }
    return result;
}

bool writePictures(GalleryWindow& window, const QString& directory)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    const QDir target(directory);
    if (!target.mkpath(QStringLiteral("."))) {
        err << "quillet-gallery: cannot make the directory " << directory << '\n';
        return false;
    }

    const QVector<Picture> pictures = allPictures(window);
    for (const Picture& each : pictures) {
        const QString fileName = target.filePath(each.name + QStringLiteral(".png"));
        if (!each.image.save(fileName)) {
            err << "quillet-gallery: cannot write " << fileName << '\n';
            return false;
        }
        out << fileName << '\n';
    }
    return true;
}
