#pragma once

// The host's own logger. Its functions are defined in one library, so that the host and Quillet
// have the same sink.

#include <cstdint>
#include <functional>
#include <string>

namespace quorvel {

using LoggerDelegate = std::function<void(std::int32_t, const std::wstring&)>;

std::int32_t GetLoggerLevel();
LoggerDelegate& GetLoggerDelegate();

} // namespace quorvel
