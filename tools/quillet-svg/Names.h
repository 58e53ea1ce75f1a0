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

/// Whether it draws what is no path.
bool isPicture(const QString& name);
