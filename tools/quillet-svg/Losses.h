#pragma once

#include "Finding.h"
#include "References.h"
#include "Style.h"

#include <QtCore/QVector>

/// Which of the \a properties of \a element, its attributes and its style, will not be drawn as SVG says.
QVector<Finding>
lossesIn(const XmlElement& element, const QVector<Declaration>& properties, const References& references);

/// Which of the \a properties, written in the forms that Qt knows, should be numbers and are none. They are
/// taken out, as if they were not there.
QVector<Finding> takeLossesInNumbers(const XmlElement& element, QVector<Declaration>& properties);

/// Which of the properties in styles that place \a element do not say what its attributes say.
QVector<Finding> lossesInGeometry(const XmlElement& element, const QVector<Declaration>& geometry);
