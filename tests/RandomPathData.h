#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

#include <random>

/// What random path data is made of. Each list is drawn from evenly.
struct PathDataStyle
{
    const char* name;
    QVector<QString> numbers; ///< texts, or "%d" for a small integer, "%f" for a decimal, "%g" for 17 digits
    QVector<QString> separators; ///< between numbers
    QVector<QString> noise;      ///< put in now and then, anywhere
    bool mostlyComplete;         ///< most commands get as many numbers as they need
};

/// All styles: valid, minified and broken in every way known to matter.
const QVector<PathDataStyle>& pathDataStyles();

/// A text of up to about 20 commands.
QString randomPathData(const PathDataStyle& style, std::mt19937& random);
