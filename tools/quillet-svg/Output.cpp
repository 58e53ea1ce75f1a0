#include "Output.h"

#include "Document.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

#include <cstdio>

#ifdef Q_OS_UNIX
#    include <csignal>
#endif

namespace {

/// Has the signals wait by which a user ends a program: a file that is half written would stay otherwise.
class SignalsHeld
{
public:
#ifdef Q_OS_UNIX
    SignalsHeld()
    {
        sigset_t held;
        sigemptyset(&held);
        for (const int signal : {SIGHUP, SIGINT, SIGTERM})
            sigaddset(&held, signal);
        pthread_sigmask(SIG_BLOCK, &held, &m_before);
    }
    ~SignalsHeld()
    {
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }

    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

private:
    sigset_t m_before = {};
#else
    SignalsHeld() {}
#endif
};

bool write(QFileDevice& file, const QByteArray& bytes)
{
    return file.write(bytes) == bytes.size();
}

} // namespace

QString replaceFile(const QString& fileName, const QByteArray& bytes)
{
    // With a buffer, a disk that is full would show only when that is flushed, which is too late.
    constexpr QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Unbuffered;
    const QString failure = QStringLiteral("cannot be written: ");
    const QFileInfo info(fileName);
    if (isStandardStream(fileName) || (info.exists() && !info.isFile())) {
        if (info.isDir())
            return failure + QStringLiteral("this is a directory");
        QFile file(fileName);
        const bool isOpen = isStandardStream(fileName) ? file.open(stdout, mode) : file.open(mode);
        return isOpen && write(file, bytes) && file.flush() ? QString() : failure + file.errorString();
    }
    const SignalsHeld held;
    QSaveFile file(fileName);
    if (!file.open(mode) || !write(file, bytes) || !file.commit())
        return failure + file.errorString();
    return {};
}
