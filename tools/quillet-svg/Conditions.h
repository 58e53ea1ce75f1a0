#pragma once

#include "XmlTree.h"

/// Whether the tests of \a element let it be drawn (SVG 1.1, 5.8). Features are those that a path can draw,
/// there are no extensions, and the language is English.
bool passesTests(const XmlElement& element);

/// Whether the attribute \a name with \a value is such a test and fails.
bool isFailedTest(const QString& name, const QString& value);
