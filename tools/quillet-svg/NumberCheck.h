#pragma once

#include "Finding.h"

#include <QtCore/QVector>

/// What is wrong with a number that the grammar of SVG 1.1 accepts: "the number 1e999 is ..."; empty if
/// nothing is.
QString faultOfNumber(const QString& number);

/// Where the reader takes the value of \a attribute for another number than SVG does. For the attributes that
/// are numbers, with values that it does not refuse.
QVector<Finding> checkNumber(const XmlAttribute& attribute);
