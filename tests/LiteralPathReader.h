#pragma once

#include <QtCore/QString>
#include <QtGui/QPainterPath>

/// A second reader of SVG path data: slow, literal, and with nothing in common with the library's. It takes
/// one code unit after the other with plain loops and leaves every token to QString::toDouble().
///
/// Same contract as Quillet::parseSvgPathData(), which is tested and measured against it.
bool readPathDataLiterally(const QString& data, QPainterPath& path);
