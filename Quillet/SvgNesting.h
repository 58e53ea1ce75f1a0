#pragma once

#include <QtCore/QString>

namespace Quillet {

/// Whether Qt's XML reader would open more than \a limit elements inside each other while it reads \a text,
/// or as many parentheses of a content model in its document type.
///
/// Qt's reader calls itself for each level, so a document that is nested deep enough ends the process. This
/// looks first, without going that deep itself. For elements the answer is exact for every well-formed
/// document. A malformed one may be found deeper than it is, but never less deep.
///
/// The time is linear in the text. Only a document whose entities may hold markup is read with Qt's reader up
/// to the limit; that takes as long as it takes Qt, whose time grows with the square of the number of
/// entities.
///
/// For use inside the library; not exported.
bool isNestedDeeperThan(int limit, const QString& text);

} // namespace Quillet
