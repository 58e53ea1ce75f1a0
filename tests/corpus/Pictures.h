#pragma once

#include "PictureDifference.h"

#include <QtCore/QRectF>
#include <QtCore/QStringList>
#include <QtGui/QImage>

namespace Quillet {
class PainterPathContainer;
} // namespace Quillet

constexpr int picture_size = 128;

/// \a area of user space, made a square, fills the picture. Transparent where nothing is drawn.
QImage pictureByQuillet(const Quillet::PainterPathContainer& shapes, const QRectF& area);

/// The same by QSvgRenderer; null where that cannot load the document. What Qt says about it comes in
/// \a messages.
QImage pictureByQt(const QString& document, const QRectF& area, QStringList& messages);

bool isBlank(const QImage& picture);
