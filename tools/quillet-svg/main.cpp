#include "Commands.h"

#include <QtCore/QTextStream>
#include <QtGui/QGuiApplication>

#include <cstdio>

#ifdef Q_OS_UNIX
#    include <csignal>
#endif

int main(int argc, char** argv)
{
    // It draws into files and never opens a window, wherever it is run.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // What Qt's renderer has to say about a file is said here, with the place.
    qputenv("QT_LOGGING_RULES", "*=false");
#ifdef SIGXFSZ
    // A file that may not grow is an error like a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    const QGuiApplication application(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    out.setCodec("UTF-8");
    err.setCodec("UTF-8");
    return runQuilletSvg(QGuiApplication::arguments(), out, err);
}
