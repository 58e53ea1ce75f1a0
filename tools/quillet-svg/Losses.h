#pragma once

#include "Finding.h"
#include "References.h"
#include "Style.h"

#include <QtCore/QVector>

/// Which of the \a properties of \a element, its attributes and its style, will not be drawn as SVG says.
QVector<Finding>
lossesIn(const XmlElement& element, const QVector<Declaration>& properties, const References& references);

/// What an opacity of \a element, one of \a elements, does otherwise than SVG says.
QVector<Finding> lossesByOpacity(const QVector<XmlElement>& elements,
                                 const XmlElement& element,
                                 double opacity,
                                 const References& references);
