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
    bool clipsToFrame = true;  ///< nothing outside of the document's frame is seen
    QVector<Finding> findings; ///< what will not be drawn as SVG says
};

/// Rewrites what Qt's renderer reads otherwise than SVG says, where that can be done by rewriting: "use" is
/// carried out, symbols and inner documents become groups, each property stands once and as an attribute, in
/// the form that Qt knows. What can be done only with what was painted is marked. What cannot be drawn is
/// left out and named.
///
/// Nothing that is left refers to another file.
Preparation prepareForQt(const XmlTree& tree);
