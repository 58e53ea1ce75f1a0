#include "TestCase.h"

#include <QtCore/QProcess>

// Each case of this class must fail; it is run by the class below, in a process of its own.
class FailingCases : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void leavesATopLevelWidget() { m_leftBehind.reset(new QWidget); }
    void writesAWarning() { qWarning("not announced"); }
    void announcesAWarningInVain() { expectMessage(QStringLiteral("announced")); }

private:
    QScopedPointer<QWidget> m_leftBehind;
};

class TestTestCase : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void anAnnouncedWarningPasses()
    {
        expectMessage(QStringLiteral("announced"));
        qWarning("announced");
    }

    void roundsAreDividedWhereTheEnvironmentSaysSo()
    {
        const char* const variable = "QUILLET_TEST_ROUNDS_DIVISOR";
        const QByteArray outer = qgetenv(variable);
        const auto restore =
            qScopeGuard([&] { outer.isNull() ? qunsetenv(variable) : qputenv(variable, outer); });
        qunsetenv(variable);
        QCOMPARE(rounds(1000), 1000);
        qputenv(variable, "50");
        QCOMPARE(rounds(1000), 20);
        QCOMPARE(rounds(10), 1);
    }

    void carelessCasesFail_data()
    {
        QTest::addColumn<QString>("testCase");
        QTest::addColumn<QByteArray>("reason");
        QTest::newRow("top-level widget") << QStringLiteral("leavesATopLevelWidget")
                                          << QByteArray("describe(QApplication::topLevelWidgets())");
        QTest::newRow("stray warning")
            << QStringLiteral("writesAWarning") << QByteArray("messages().unexpected");
        QTest::newRow("missing warning")
            << QStringLiteral("announcesAWarningInVain") << QByteArray("messages().expected");
    }

    void carelessCasesFail()
    {
        QFETCH(QString, testCase);
        QFETCH(QByteArray, reason);
        QProcess process;
        process.setProcessEnvironment([] {
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(QStringLiteral("RUN_FAILING_CASES"), QStringLiteral("1"));
            return environment;
        }());
        process.start(QCoreApplication::applicationFilePath(), {testCase});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 1);
        const QByteArray output = process.readAllStandardOutput();
        QVERIFY2(output.contains("FAIL!") && output.contains(reason), output.constData());
    }
};

int main(int argc, char** argv)
{
    prepareTestEnvironment();
    QApplication application(argc, argv);
    if (qEnvironmentVariableIsSet("RUN_FAILING_CASES")) {
        FailingCases cases;
        return QTest::qExec(&cases, argc, argv);
    }
    TestTestCase test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_TestCase.moc"
