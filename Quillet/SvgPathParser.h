#pragma once

#include <QtCore/QString>
#include <QtGui/QPainterPath>

namespace Quillet {

/// Reads SVG path data (SVG 1.1, 8.3), the text of a path's attribute "d", and appends it to \a path.
///
/// All commands are read, elliptical arcs included. Coordinates are the document's user units. The reader
/// is lenient: it skips a character that is no command and has no number after it, and drops the numbers
/// of a group that is too short for its command. The flags of an arc are ordinary numbers and must stand
/// apart from what follows them.
///
/// \a path is only appended to and never asked; the current point starts at (0, 0) whatever it holds.
///
/// \return false when a character that is no command is followed by a number. What was read before it stays
///         in \a path, and nothing after it is read.
///
/// For use inside the library; not exported.
bool parseSvgPathData(const QString& data, QPainterPath& path);

} // namespace Quillet
