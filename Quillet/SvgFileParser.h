#pragma once

#include <Quillet/Export.h>

#include <QtCore/QString>

/// \file
/// The reader of SVG documents.

namespace Quillet {

class PainterPathContainer;

/// Reads the paths of an SVG file and appends them to \a container. See parseSvg().
///
/// The file is read as UTF-8, whatever its XML declaration says, and only up to the first null byte. A pipe
/// or a device is read until it ends.
///
/// \return false when the file cannot be read, and where parseSvg() returns false.
QUILLET_EXPORT bool parseSvgFile(const QString& fileName, PainterPathContainer& container);

/// Reads the paths of an SVG document and appends a shape for each to \a container.
///
/// Read are the root "svg", nested groups "g" and the elements "path" in them: of a path the data "d", and
/// of all three the presentation attributes "opacity", "fill-opacity", "fill", "fill-rule", "stroke-opacity",
/// "stroke", "stroke-width", "stroke-linecap", "stroke-linejoin" and "stroke-miterlimit". A value set on a
/// group holds for what is in it, with these exceptions. The fill rule is read from the path alone; the
/// opacities of fill and stroke act on the colours of their own element alone; an opacity acts on the colours
/// that its element and those in it set. A value that a group must not have is no error, but the group's
/// later attributes, in the order above, are then not read. Everything else is left out: other elements with
/// all that is in them, transforms, view boxes, styles and style sheets.
///
/// Shapes are filled black without a stroke where nothing else is said, by the odd-even rule. Each has the
/// identity for its transform; place the picture with PainterPathContainer::setTransform().
///
/// Nothing is fetched from a file or a network. A document whose elements, or the parentheses of whose
/// content models, are nested more than 2000 deep is refused before it is read, because reading such a
/// document would use up the stack. Up to that depth reading takes up to 700 KiB of stack. Nothing else
/// limits what is read: entities may make very many shapes of a short text. Check documents that are not
/// trusted.
///
/// \return false when the text is not well-formed, has no root "svg" or is nested too deep: then \a container
///         is untouched. Also false when the data or an attribute of a path is rejected: the shapes before
///         that path have been appended and stay, and nothing after it is read.
QUILLET_EXPORT bool parseSvg(const QString& text, PainterPathContainer& container);

} // namespace Quillet
