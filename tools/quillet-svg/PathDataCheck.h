#pragma once

#include "Finding.h"

#include <QtCore/QVector>

/// Compares what the reader makes of the path data in \a attribute with what the grammar of SVG 1.1 says.
QVector<Finding> checkPathData(const XmlAttribute& attribute);

/// What is wrong with the path data of a line that has round or square caps.
QVector<Finding> checkCaps(const XmlAttribute& attribute);
