#pragma once

#include "Finding.h"

#include <QtCore/QVector>

/// Compares what the reader makes of the path data in \a attribute with what the grammar of SVG 1.1 says.
QVector<Finding> checkPathData(const XmlAttribute& attribute);
