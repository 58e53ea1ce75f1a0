#pragma once

#include <quorvel/Logger.h>

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <cstdint>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>

/// \file
/// The log in tests. The whole of it is in this header, to be compiled against the logger that the program
/// has: the stand-in, or one with the same three functions.

namespace Quillet::Testing {

/// A line as the logger's sink got it.
struct LogLine
{
    /// 2 for what the library did, 3 for a call that it refused.
    std::int32_t level = 0;

    /// The line, without a line feed.
    QString text;

    /// Whether both have the same level and text.
    friend bool operator==(const LogLine& a, const LogLine& b)
    {
        return a.level == b.level && a.text == b.text;
    }

    /// Whether level or text differ.
    friend bool operator!=(const LogLine& a, const LogLine& b) { return !(a == b); }
};

/// How QtTest shows a line where a comparison fails.
inline char* toString(const LogLine& line)
{
    return qstrdup(qUtf8Printable(QStringLiteral("level %1: %2").arg(line.level).arg(line.text)));
}

/// How GoogleTest does.
inline void PrintTo(const LogLine& line, std::ostream* out)
{
    *out << "level " << line.level << ": " << line.text.toStdString();
}

/// Collects what is logged while it lives, in place of the logger's own sink and threshold, which it puts
/// back at its end. Of several the last one made collects; they end in the opposite order.
///
/// \snippet tst_DialogDriverSnippets.cpp log
class LogCapture
{
public:
    /// Collects lines from the level \a threshold on.
    explicit LogCapture(std::int32_t threshold = 0)
        : m_threshold(quorvel::GetLoggerLevel()), m_sink(quorvel::GetLoggerDelegate())
    {
        quorvel::SetLoggerLevel(threshold);
        quorvel::GetLoggerDelegate() = [this](std::int32_t level, const std::wstring& text) {
            m_lines.append({level, QString::fromStdWString(text)});
        };
    }

    ~LogCapture()
    {
        quorvel::SetLoggerLevel(m_threshold);
        quorvel::GetLoggerDelegate() = std::move(m_sink);
    }

    Q_DISABLE_COPY(LogCapture)

    /// The lines since the beginning or the last clear().
    const QVector<LogLine>& lines() const { return m_lines; }

    /// Their texts alone.
    QStringList texts() const
    {
        QStringList result;
        for (const LogLine& line : m_lines)
            result.append(line.text);
        return result;
    }

    /// Forgets the lines so far.
    void clear() { m_lines.clear(); }

private:
    std::int32_t m_threshold;
    std::decay_t<decltype(quorvel::GetLoggerDelegate())> m_sink;
    QVector<LogLine> m_lines;
};

} // namespace Quillet::Testing
