#pragma once

#include <QtCore/QString>

#include <initializer_list>

bool isOneOf(const QString& name, std::initializer_list<const char*> names);

// What the elements of SVG are, by their names without prefixes.

/// Whether the element draws something by itself.
bool isShape(const QString& name);

/// Whether its content is drawn only where something refers to it.
bool isDefinition(const QString& name);

bool isAnimation(const QString& name);

/// Whether SVG 1.1 has such an element, or a later edition one that draws nothing by itself.
bool isElementOfSvg(const QString& name);

/// Whether it draws what is no path.
bool isPicture(const QString& name);
