#include "TestCase.h"

#include <quorvel/Logger.h>

class TestLogger : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theSinkIsEmptyUntilOneIsInstalled() { QVERIFY(!quorvel::GetLoggerDelegate()); }

    void theThresholdLetsEverythingThroughUntilItIsSet() { QCOMPARE(quorvel::GetLoggerLevel(), 0); }

    void theThresholdIsWhatWasSet()
    {
        quorvel::SetLoggerLevel(-3);
        QCOMPARE(quorvel::GetLoggerLevel(), -3);
        quorvel::SetLoggerLevel(0);
    }

    void thereIsOneSinkInTheProcess()
    {
        QCOMPARE(&quorvel::GetLoggerDelegate(), &quorvel::GetLoggerDelegate());

        std::int32_t level = 0;
        std::wstring message;
        quorvel::GetLoggerDelegate() = [&](std::int32_t l, const std::wstring& m) {
            level = l;
            message = m;
        };
        quorvel::GetLoggerDelegate()(2, L"line");
        quorvel::GetLoggerDelegate() = nullptr;

        QCOMPARE(level, 2);
        QVERIFY(message == L"line");
    }
};

QUILLET_TEST_MAIN(TestLogger)
#include "tst_Logger.moc"
