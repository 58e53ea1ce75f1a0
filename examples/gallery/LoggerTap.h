#pragma once

#include <quorvel/Logger.h>

#include <QtCore/QtGlobal>

/// Takes the place of the process's log sink for as long as it lives; then sink and threshold are again
/// what they were.
class LoggerTap
{
public:
    Q_DISABLE_COPY(LoggerTap)

    explicit LoggerTap(quorvel::LoggerDelegate sink);
    ~LoggerTap();

private:
    quorvel::LoggerDelegate m_formerSink;
    std::int32_t m_formerLevel;
};
