#pragma once

#include "XmlTree.h"

#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtCore/QString>

/// Where an inner "svg" or a symbol is drawn (SVG 1.1, 5.1.2 and 5.6).
struct Viewport
{
    QString transform;    ///< from coordinates in it to those around it
    QRectF area;          ///< in its coordinates; null where its size is not known
    QSizeF size;          ///< that percentages in it are of; empty where that is not known
    bool isEmpty = false; ///< nothing in it is drawn
};

/// The viewport of \a content, in one of the size \a around. \a use repeats it, or is null.
Viewport viewportOf(const XmlElement& content, const XmlElement* use, const QSizeF& around);

/// A transform that moves.
QString translation(double x, double y);
