#pragma once

#include "Frame.h"

#include <QtGui/QImage>

/// What Qt's renderer paints of the document \a prepared, drawn as the marks in it say, with layers and masks
/// of pixels where a conversion has to cut paths. Its longer side is as long as \a size. No
/// picture where that would take a GiB for layers in layers, or too long for their number.
QImage drawPrepared(const QString& prepared, const Frame& frame, int size);
