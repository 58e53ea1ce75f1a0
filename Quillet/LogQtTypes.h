#pragma once

#include <QtCore/QString>

#include <ostream>

/// \file
/// Qt's types in log lines. Not for users of the library: neither installed nor exported.

/// Writes \a text as one string, so that the stream's width and fill apply to the whole of it.
///
/// Where wchar_t has 32 bits, each code point becomes one character; a surrogate without its other half
/// becomes U+FFFD. Running out of memory for the converted text ends the process.
// NOLINTNEXTLINE(bugprone-exception-escape) nobody who logs is prepared for a failure
inline std::wostream& operator<<(std::wostream& stream, const QString& text) noexcept
{
    return stream << text.toStdWString();
}
