#include <Quillet/MessageDialogTemplate.h>
#include <quorvel/Logger.h>

#include <QtCore/QtGlobal>

// The program and the library share one logger, so lines of the library come out at the program's sink.
int main()
{
    int lines = 0;
    quorvel::GetLoggerDelegate() = [&lines](std::int32_t, const std::wstring&) { ++lines; };
    Quillet::MessageDialogTemplate::unregisterTemplate(QString());
    quorvel::GetLoggerDelegate() = nullptr;
    if (lines != 1)
        qFatal("%d lines came out at the sink", lines);
    return 0;
}
