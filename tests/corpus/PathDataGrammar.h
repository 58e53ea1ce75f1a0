#pragma once

#include <QtCore/QString>

/// What the grammar of path data (SVG 1.1, 8.3.9) says of a text.
struct PathDataTraits
{
    bool isValid = false;         ///< the grammar derives it
    bool hasCompactFlags = false; ///< an arc's flag is followed by a digit or a point
    bool hasFlatArcs = false;     ///< an arc has a radius of 0, which makes it a line (SVG 1.1, F.6.2)
};

/// Reads by the grammar and nothing else; what is found behind the first error does not count.
PathDataTraits traitsOfPathData(const QString& data);
