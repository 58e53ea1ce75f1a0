#pragma once

#include <Quillet/PainterPath.h>

#include <QtCore/QVector>

/// A shape of the reader's, and the opacities that SVG gives to its fill and its stroke.
struct LayeredShape
{
    const Quillet::PainterPath* shape;
    double fillOpacity;
    double strokeOpacity;
};

/// Whether shapes with an \a opacity in common look otherwise when each is drawn with it alone, as the reader
/// draws them: then one shows through the other, or a fill through its stroke. SVG draws them together first
/// (SVG 1.1, 14.5).
bool showsThrough(const QVector<LayeredShape>& shapes, double opacity);
