#pragma once

// The embedding host's own logger.

#include <cstdint>
#include <functional>
#include <string>

namespace quorvel {

using LoggerDelegate = std::function<void(std::int32_t, const std::wstring&)>;

inline std::int32_t GetLoggerLevel()
{
    return 2;
}

inline LoggerDelegate& GetLoggerDelegate()
{
    static LoggerDelegate delegate;
    return delegate;
}

} // namespace quorvel
