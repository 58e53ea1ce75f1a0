#pragma once

#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtCore/QString>

/// The size of a drawing, and where its view box lies in it.
struct Frame
{
    QSizeF size;    ///< of the drawing; empty where the document names none
    QRectF viewBox; ///< null where the document has none
    QRectF target;  ///< where the view box lies in the drawing

    /// Whether coordinates in the document are coordinates of the drawing.
    bool isIdentity() const;
};

/// Reads the frame from the root's attributes. Lengths that depend on what is around the drawing, such as
/// "100%" or "1em", count as none; the view box then gives the size (SVG 1.1, 7.2 to 7.8).
Frame readFrame(const QString& width,
                const QString& height,
                const QString& viewBox,
                const QString& preserveAspectRatio);
