#pragma once

#include "Finding.h"

#include <Quillet/PainterPath.h>

#include <QtCore/QString>
#include <QtCore/QVector>

/// What SVG says about the presentation of an element, by its attributes and those around it.
struct Presentation
{
    double opacity = 1; ///< the product of the element's and of those around it
    double fillOpacity = 1;
    double strokeOpacity = 1;
    Qt::FillRule fillRule = Qt::WindingFill;
    QString fill = QStringLiteral("black"); ///< as written
    QString stroke = QStringLiteral("none");
    bool fills = true;
    bool strokes = false;
    bool isDisplayed = true;
};

/// What an element says in its style or in attributes; empty if nothing.
struct Stated
{
    QString fill;
    QString stroke;
    QString display;
};

Stated statedIn(const XmlElement& element);

/// The presentation of \a element, which says \a stated, and stands in one that has \a around.
Presentation inherit(const Presentation& around, const XmlElement& element, const Stated& stated);

/// What is wrong with the colour in \a attribute, a fill or a stroke of an element that stands in one that
/// has \a around.
QVector<Finding> checkColor(const XmlAttribute& attribute, const Presentation& around);

/// Where the reader's \a shape looks otherwise than \a path should.
QVector<Finding> checkPresentation(const XmlElement& path,
                                   const Presentation& presentation,
                                   const Quillet::PainterPath& shape);
