#pragma once

#include <cstdint>
#include <functional>
#include <string>

#if defined(_WIN32)
#    if defined(QUORVEL_LIBRARY)
#        define QUORVEL_EXPORT __declspec(dllexport)
#    else
#        define QUORVEL_EXPORT __declspec(dllimport)
#    endif
#else
#    define QUORVEL_EXPORT __attribute__((visibility("default")))
#endif

/// \file
/// Stand-in for a host application's logger: one threshold and one sink in the whole process.
///
/// Nothing here takes a lock; set the threshold and the sink up before other threads log. A host that brings
/// a logger of its own defines these functions in a shared library: in a static one, or inline, they would
/// give each library a sink of its own.

/// A host application's logger.
namespace quorvel {

/// Receives a finished line: its level and its text, without a line feed. May be empty: no sink.
using LoggerDelegate = std::function<void(std::int32_t level, const std::wstring& message)>;

/// The threshold. A line is wanted when its level is not below it; 0 until SetLoggerLevel() is called.
QUORVEL_EXPORT std::int32_t GetLoggerLevel();

/// Replaces the threshold.
QUORVEL_EXPORT void SetLoggerLevel(std::int32_t level);

/// The process's one sink, empty until the embedding program assigns to it.
///
/// \return a live reference, valid until the library leaves the process.
QUORVEL_EXPORT LoggerDelegate& GetLoggerDelegate();

} // namespace quorvel
