#include "LoggerTap.h"

#include <utility>

LoggerTap::LoggerTap(quorvel::LoggerDelegate sink)
    : m_formerSink(std::exchange(quorvel::GetLoggerDelegate(), std::move(sink))),
      m_formerLevel(quorvel::GetLoggerLevel())
{
}

LoggerTap::~LoggerTap()
{
    quorvel::SetLoggerLevel(m_formerLevel);
    quorvel::GetLoggerDelegate() = std::move(m_formerSink);
}
