#pragma once

#include <QtWidgets/QApplication>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// An input of a fuzz target, read as a list of small choices. A script that has ended chooses 0 for ever.
class Script
{
public:
    Script(const std::uint8_t* data, std::size_t size) : m_next(data), m_end(data + size) {}

    bool hasEnded() const { return m_next == m_end; }

    /// A number from 0 up to but not including \a count.
    int choose(int count) { return hasEnded() ? 0 : *m_next++ % count; }

    bool flip() { return choose(2) == 1; }

private:
    const std::uint8_t* m_next;
    const std::uint8_t* m_end;
};

/// Ends the process with a message, which the fuzzing engine takes for a finding, unless \a holds.
inline void check(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

/// Makes the application on the first call, with neither windows on a screen nor messages.
inline void makeApplication()
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    static const bool prepared = qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QApplication application(argc, argv);
    static_cast<void>(prepared);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
}
