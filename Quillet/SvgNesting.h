#pragma once

#include <QtCore/QString>

namespace Quillet {

/// Whether Qt's XML reader would open more than \a limit elements inside each other while it reads \a text.
///
/// Qt's reader calls itself for each level, so a document that is nested deep enough ends the process. This
/// looks first, in time linear in the text and without recursion. The answer is exact for every well-formed
/// document; of a malformed one it may be true too soon, but never false too late.
///
/// For use inside the library; not exported.
bool isNestedDeeperThan(int limit, const QString& text);

} // namespace Quillet
