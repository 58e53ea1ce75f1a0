#pragma once

#include "Finding.h"

#include <QtCore/QString>
#include <QtCore/QVector>

/// A document as Qt's SVG renderer reads it best.
struct Preparation
{
    QString error; ///< why it cannot be drawn at all; empty if it can
    Position errorPosition;
    QString text;
    QVector<Finding> findings; ///< what will not be drawn as SVG says
};

/// Rewrites what Qt's renderer reads otherwise than SVG says, where that can be done by rewriting: symbols
/// and inner documents become groups, a style wins over an attribute, style sheets come first, colours and
/// lengths are written in the forms that it knows. What it cannot draw is left out and named.
///
/// Nothing that is left refers to another file.
Preparation prepareForQt(const XmlTree& tree);
