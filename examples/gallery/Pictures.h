#pragma once

#include <QtCore/QVector>
#include <QtGui/QImage>

class GalleryWindow;
class QWidget;

/// Lays \a widget out as if it were shown and paints it into an image. The widget does not appear on the
/// screen and is hidden afterwards.
QImage picture(QWidget& widget);

/// Arranges \a images in \a columns columns on a white sheet.
QImage sheet(const QVector<QImage>& images, int columns);

/// Writes every page of \a window and all that the pages show as PNG files into \a directory, which is
/// made if need be, and prints the name of each file.
///
/// \return false when a file could not be written; which one has been said on the standard error stream.
bool writePictures(GalleryWindow& window, const QString& directory);
