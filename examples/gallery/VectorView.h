#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRectF>

#include <lumo/AffineTransform.h>

/// How a picture lies on a canvas: moved, scaled alike in both directions, and rotated.
class VectorView
{
public:
    /// Moves and scales the picture so that \a bounds, turned by the rotation, fill \a target without being
    /// distorted. The scale can then be changed by a factor of 200 either way.
    void fit(const QRectF& bounds, const QRectF& target);

    void pan(const QPointF& distance);

    /// Scales by \a factor; what lies under the point \a fixed of the canvas stays there.
    void zoom(double factor, const QPointF& fixed);

    /// Turns the picture to an angle in degrees, clockwise, around the point \a fixed of the canvas.
    void setRotation(double degrees, const QPointF& fixed);

    /// Canvas pixels for each unit of the picture.
    double scale() const { return m_scale; }

    /// From the picture's coordinates to those of the canvas.
    lumo::AffineTransform<double> transform() const;

private:
    double m_scale = 1;
    double m_fittedScale = 1;
    double m_degrees = 0;
    QPointF m_origin; // where the canvas shows the picture's point (0, 0)
};
