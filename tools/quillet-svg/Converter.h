#pragma once

#include "Finding.h"
#include "Frame.h"
#include "XmlTree.h"

#include <QtCore/QString>
#include <QtCore/QVector>

/// What became of a document that was converted.
struct Conversion
{
    QString error; ///< why nothing could be converted; empty if something was
    Position errorPosition;
    QString text; ///< the document that the reader reads
    Frame frame;  ///< of the original
    int shapes = 0;
    QVector<Finding> losses; ///< what of the drawing could not be kept
};

/// Rewrites the document \a text so that the library draws of it what Qt's SVG renderer draws of the
/// original.
Conversion convertSvg(const QString& text);
