#pragma once

#include "Recorder.h"
#include "SubsetShape.h"

#include <QtCore/QVector>

/// Shapes that draw what was painted, where the marks in it hold.
struct Composition
{
    QVector<SubsetShape> shapes;
    QVector<int> coarseLayers;  ///< elements with an opacity whose shapes overlap in too many places
    bool hasFineDashes = false; ///< so many dashes that the line became solid
};

/// Shapes are cut where a clip cuts them. In a layer nothing shows through what is painted over it: areas
/// that overlap are parted.
Composition compose(const QVector<Painted>& painted);

/// What of \a shapes lies in \a rect, which \a transform places. What lies wholly in it stays as it is.
QVector<SubsetShape>
clipped(const QVector<SubsetShape>& shapes, const QRectF& rect, const QTransform& transform);
