#pragma once

#include "Console.h"

/// The longest side of a picture.
constexpr int largest_size = 8192;

/// Writes what the library draws of \a input, its longer side as long as \a size. \return the exit status.
int runRender(const QString& input, const QString& output, int size, Console& console);

/// Writes what Qt's renderer draws of \a original, what the library draws of \a input, and where they differ.
/// \return the exit status.
int runCompare(
    const QString& input, const QString& original, const QString& output, int size, Console& console);
