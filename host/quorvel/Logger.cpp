#include <quorvel/Logger.h>

namespace {

std::int32_t logger_level = 0;

} // namespace

namespace quorvel {

std::int32_t GetLoggerLevel()
{
    return logger_level;
}

void SetLoggerLevel(std::int32_t level)
{
    logger_level = level;
}

LoggerDelegate& GetLoggerDelegate()
{
    // Made on first use: static initialisers of other libraries may already log.
    static LoggerDelegate delegate;
    return delegate;
}

} // namespace quorvel
