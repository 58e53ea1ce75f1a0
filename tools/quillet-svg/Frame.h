#pragma once

#include "XmlTree.h"

#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtCore/QString>

#include <optional>

/// The size of a drawing, and where its view box lies in it.
struct Frame
{
    QSizeF size;          ///< of the drawing; empty where the document names none
    QRectF viewBox;       ///< null where the document has none
    QRectF target;        ///< where the view box lies in the drawing
    bool isEmpty = false; ///< nothing is drawn: a length of nothing was asked for

    /// Whether coordinates in the document are coordinates of the drawing.
    bool isIdentity() const;
};

/// The length in pixels, or 0 if \a text is no absolute length: "100%" and "1em" are none.
double absoluteLength(const QString& text);

/// Likewise of a length that may be a percentage of \a whole.
double lengthOf(const QString& text, double whole);

/// Whether \a text is a length of nothing, such as "0px" or "0%".
bool isZeroLength(const QString& text);

/// The rectangle that \a text names as a view box; without an area where SVG has nothing drawn
/// (SVG 1.1, 7.7), nothing where it names none.
std::optional<QRectF> readViewBox(const QString& text);

/// Reads the frame from the root's attributes. Where no absolute length is given, the view box gives the size
/// (SVG 1.1, 7.2 to 7.8).
Frame readFrame(const QString& width,
                const QString& height,
                const QString& viewBox,
                const QString& preserveAspectRatio);
Frame readFrame(const XmlElement& root);
