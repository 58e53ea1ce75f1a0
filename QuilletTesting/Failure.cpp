#include <QuilletTesting/Failure.h>

#include <QtTest/QtTest>

#include <utility>

namespace {

Quillet::Testing::FailureHandler& currentHandler()
{
    static Quillet::Testing::FailureHandler handler;
    return handler;
}

} // namespace

namespace Quillet::Testing {

FailureHandler setFailureHandler(const FailureHandler& handler)
{
    FailureHandler before = std::move(currentHandler());
    currentHandler() = handler;
    return before;
}

void reportFailure(const QString& message, const SourceLocation& where)
{
    if (const FailureHandler handler = currentHandler()) // a copy: it may replace itself
        handler(message, where);
    else if (QTest::currentTestFunction()) // GCOVR_EXCL_BR_LINE the other way ends what counts, too
        QTest::qFail(message.toUtf8().constData(), where.file, where.line);
    else
        qFatal( // GCOVR_EXCL_LINE
            "%s\n(No test function of QtTest runs, and no failure handler is set. GoogleTest needs "
            "reportFailuresToGoogleTest(), any other framework setFailureHandler().)",
            qUtf8Printable(message));
}

} // namespace Quillet::Testing
