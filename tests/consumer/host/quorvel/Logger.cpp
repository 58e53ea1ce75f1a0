#include <quorvel/Logger.h>

namespace quorvel {

std::int32_t GetLoggerLevel()
{
    return 2;
}

LoggerDelegate& GetLoggerDelegate()
{
    static LoggerDelegate delegate;
    return delegate;
}

} // namespace quorvel
