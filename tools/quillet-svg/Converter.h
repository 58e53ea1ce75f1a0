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

/// How long cutting and parting may take, in nanoseconds.
constexpr qint64 most_effort = 5'000'000'000;

/// Rewrites the document \a text so that the library draws of it what Qt's SVG renderer draws of the
/// original. What would take more than about \a effort nanoseconds to cut or to part stays whole.
Conversion convertSvg(const QString& text, qint64 effort = most_effort);
