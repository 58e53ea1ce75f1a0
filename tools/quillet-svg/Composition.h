#pragma once

#include "Recorder.h"
#include "SubsetShape.h"

#include <QtCore/QVector>

/// Shapes that draw what was painted, where the marks in it hold.
struct Composition
{
    QVector<SubsetShape> shapes;
    QVector<int> mergedLayers;   ///< elements with an opacity whose shapes overlap and could not be parted
    bool hasWholeShapes = false; ///< of which not all lies in their clip, which could not be cut
    bool hasFineDashes = false;  ///< so many dashes that the line became solid
    bool hasManyDashes = false;  ///< likewise in all lines together
};

/// Shapes are cut where a clip cuts them. In a layer nothing shows through what is painted over it: areas
/// that overlap are parted. Nothing is seen outside of \a frame, unless it is null. Cutting and parting may
/// take about \a effort nanoseconds in all.
Composition compose(const QVector<Painted>& painted, const QRectF& frame, qint64 effort);
