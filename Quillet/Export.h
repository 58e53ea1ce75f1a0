#pragma once

#include <QtCore/qglobal.h>

/// \namespace Quillet
/// All that the library offers.

/// \file
/// The mark of what the library offers to its users; everything else stays inside.

#if defined(QUILLET_LIBRARY)
#    define QUILLET_EXPORT Q_DECL_EXPORT
#else
#    define QUILLET_EXPORT Q_DECL_IMPORT
#endif
