#pragma once

#include "References.h"
#include "Style.h"

#include <QtCore/QVector>

/// Writes the values of an element's properties in the forms that Qt's SVG renderer knows: colours as
/// "#rrggbb" with an opacity beside them, lengths in pixels, path data without what it draws otherwise.
void writeInQtsForms(QVector<Declaration>& properties, const References& references);
