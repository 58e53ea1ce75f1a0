#pragma once

#include <QtCore/QString>

#include <initializer_list>

bool isOneOf(const QString& name, std::initializer_list<const char*> names);

// What the elements of SVG are, by their names without prefixes.

/// Whether the element draws something by itself.
bool isShape(const QString& name);

/// Whether the attribute places a shape or says how large it is.
bool isGeometry(const QString& attribute);

/// Whether it draws what is in it.
bool isContainer(const QString& name);

bool isAnimation(const QString& name);

/// Whether SVG 1.1 has such an element, or a later edition one that draws nothing by itself.
bool isElementOfSvg(const QString& name);

/// Whether it draws what is no path.
bool isPicture(const QString& name);
