#include "TestCase.h"

#include <QuilletTesting/LogCapture.h>
#include <QuilletTesting/StateGuard.h>

#include <Quillet/MessageDialogTemplate.h>
#include <Quillet/MessageDialogTemplatePreprocessors.h>

#include <quorvel/Logger.h>

#include <memory>
#include <sstream>

using Quillet::MessageDialogTemplate;
using Quillet::MessageDialogTemplatePreprocessors;
using Quillet::Testing::LogCapture;
using Quillet::Testing::LogLine;
using Quillet::Testing::StateGuard;

Q_DECLARE_METATYPE(QVector<LogLine>)

namespace {

MessageDialogTemplate templateCalled(const char* id, const char* title)
{
    MessageDialogTemplate t;
    t.id = QString::fromLatin1(id);
    t.title = QString::fromLatin1(title);
    return t;
}

// The registry as "id=title" in its order.
QStringList registry()
{
    QStringList result;
    for (const auto& [id, t] : MessageDialogTemplate::getRegisteredTemplates())
        result.append(id + QLatin1Char('=') + t.title);
    return result;
}

QString titleAfterPreprocessing()
{
    MessageDialogTemplate t;
    MessageDialogTemplatePreprocessors::apply(t);
    return t.title;
}

Quillet::TemplatePreprocessor append(const char* text)
{
    return [=](MessageDialogTemplate& t) { t.title.append(QLatin1String(text)); };
}

} // namespace

/// StateGuard where nothing fails, and LogCapture; tst_DialogDriverFailures is for the rest.
class TestStateGuard : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        quorvel::GetLoggerDelegate() = nullptr;
        quorvel::SetLoggerLevel(0);
        MessageDialogTemplate::unregisterTemplate(QStringLiteral("a"));
        MessageDialogTemplate::unregisterTemplate(QStringLiteral("b"));
        QCOMPARE(registry(), QStringList());
        QVERIFY(MessageDialogTemplatePreprocessors::isEmpty());
        TestCase::cleanup();
    }

    // Templates

    void whatATestRegistersIsUnregistered()
    {
        MessageDialogTemplate::registerTemplate(templateCalled("b", "before"));
        {
            const StateGuard guard;
            MessageDialogTemplate::registerTemplate(templateCalled("a", "test"));
            MessageDialogTemplate::registerTemplate(templateCalled("c", "test"));
        }
        QCOMPARE(registry(), QStringList(QStringLiteral("b=before")));
    }

    void whatATestUnregistersAndReplacesComesBack()
    {
        MessageDialogTemplate::registerTemplate(templateCalled("a", "before"));
        MessageDialogTemplate::registerTemplate(templateCalled("b", "before"));
        const auto& b = MessageDialogTemplate::getRegisteredTemplates().at(QStringLiteral("b"));
        {
            const StateGuard guard;
            MessageDialogTemplate::unregisterTemplate(QStringLiteral("a"));
            MessageDialogTemplate::registerTemplate(templateCalled("b", "test"));
        }
        QCOMPARE(registry(), QStringList({QStringLiteral("a=before"), QStringLiteral("b=before")}));
        QCOMPARE(b.title, QStringLiteral("before")); // a reference into the registry is still good
    }

    void theStateOfCallablesComesBack()
    {
        int shown = 0;
        MessageDialogTemplate t = templateCalled("a", "");
        t.buttons[0].action = [&shown, calls = 0]() mutable { shown = ++calls; };
        MessageDialogTemplate::registerTemplate(t);
        const auto& entry = MessageDialogTemplate::getRegisteredTemplates().at(QStringLiteral("a"));
        {
            const StateGuard guard;
            entry.buttons[0].action();
            entry.buttons[0].action();
            QCOMPARE(shown, 2);
        }
        entry.buttons[0].action();
        QCOMPARE(shown, 1);
    }

    // The log

    void thresholdAndSinkComeBack()
    {
        QStringList lines;
        quorvel::SetLoggerLevel(2);
        quorvel::GetLoggerDelegate() = [&](std::int32_t, const std::wstring& text) {
            lines.append(QString::fromStdWString(text));
        };
        {
            const StateGuard guard;
            quorvel::SetLoggerLevel(4);
            quorvel::GetLoggerDelegate() = nullptr;
            MessageDialogTemplate::registerTemplate(templateCalled("a", "test"));
        }
        QCOMPARE(quorvel::GetLoggerLevel(), 2);
        QCOMPARE(lines, QStringList()); // the guard's own work is not logged
        MessageDialogTemplate::unregisterTemplate(QStringLiteral("nobody"));
        QCOMPARE(lines.size(), 1);
    }

    void aTestCanStartWithNothing()
    {
        QStringList lines;
        quorvel::SetLoggerLevel(2);
        quorvel::GetLoggerDelegate() = [&](std::int32_t, const std::wstring& text) {
            lines.append(QString::fromStdWString(text));
        };
        MessageDialogTemplate::registerTemplate(templateCalled("a", "before"));
        lines.clear();
        {
            StateGuard guard;
            guard.startEmpty();
            QCOMPARE(registry(), QStringList());
            QCOMPARE(quorvel::GetLoggerLevel(), 0);
            QVERIFY(!quorvel::GetLoggerDelegate());
        }
        QCOMPARE(registry(), QStringList(QStringLiteral("a=before")));
        QCOMPARE(lines, QStringList());
    }

    // Preprocessors

    void anAddedPreprocessorIsRemoved()
    {
        {
            StateGuard guard;
            QVERIFY(guard.addPreprocessor(QStringLiteral("mine"), append("x")));
            QCOMPARE(titleAfterPreprocessing(), QStringLiteral("x"));
        }
        QVERIFY(MessageDialogTemplatePreprocessors::isEmpty());
    }

    void aPreprocessorThatTheCodeAddsIsRemovedByItsName()
    {
        {
            StateGuard guard({QStringLiteral("first")});
            guard.watchPreprocessor(QStringLiteral("second"));
            MessageDialogTemplatePreprocessors::add(QStringLiteral("first"), append("1"));
            MessageDialogTemplatePreprocessors::add(QStringLiteral("second"), append("2"));
            guard.watchPreprocessor(QStringLiteral("second")); // it was not there when it was first named
        }
        QVERIFY(MessageDialogTemplatePreprocessors::isEmpty());
    }

    void watchingAPreprocessorLeavesItAlone()
    {
        MessageDialogTemplatePreprocessors::add(QStringLiteral("mine"), append("x"));
        {
            const StateGuard guard({QStringLiteral("mine"), QStringLiteral("nobody's"), QString()});
            QCOMPARE(titleAfterPreprocessing(), QStringLiteral("x"));
        }
        QCOMPARE(titleAfterPreprocessing(), QStringLiteral("x"));
        QVERIFY(MessageDialogTemplatePreprocessors::remove(QStringLiteral("mine")));
    }

    void anEntryThatStaysKeepsItsPlace()
    {
        MessageDialogTemplate::registerTemplate(templateCalled("a", "1"));
        const auto& entry = MessageDialogTemplate::getRegisteredTemplates().at(QStringLiteral("a"));
        {
            const StateGuard guard;
            MessageDialogTemplate::registerTemplate(templateCalled("a", "2"));
        }
        QCOMPARE(&MessageDialogTemplate::getRegisteredTemplates().at(QStringLiteral("a")), &entry);
        QCOMPARE(entry.title, QStringLiteral("1"));
    }

    void whatAGuardRestoresIsNotLogged()
    {
        MessageDialogTemplate::registerTemplate(templateCalled("a", "1"));
        LogCapture log;
        {
            const StateGuard guard;
            MessageDialogTemplate::registerTemplate(templateCalled("b", "2"));
            log.clear();
        }
        QCOMPARE(log.texts(), QStringList());
        QCOMPARE(registry(), QStringList(QStringLiteral("a=1")));
    }

    void guardsNest()
    {
        MessageDialogTemplate::registerTemplate(templateCalled("a", "before"));
        {
            const StateGuard outer;
            MessageDialogTemplate::registerTemplate(templateCalled("a", "outer"));
            {
                const StateGuard inner;
                MessageDialogTemplate::registerTemplate(templateCalled("a", "inner"));
            }
            QCOMPARE(registry(), QStringList(QStringLiteral("a=outer")));
        }
        QCOMPARE(registry(), QStringList(QStringLiteral("a=before")));
    }

    // LogCapture

    void linesAreCapturedFromTheThresholdOn_data()
    {
        QTest::addColumn<int>("threshold");
        QTest::addColumn<QVector<LogLine>>("lines");
        const LogLine progress = {2,
                                  QStringLiteral("MessageDialogTemplate: unregistering dialog template: a")};
        const LogLine refusal = {
            3,
            QStringLiteral("MessageDialogTemplate: trying to unregister dialog template with "
                           "empty identifier!")};
        QTest::newRow("all") << 0 << QVector<LogLine>({progress, refusal});
        QTest::newRow("refusals") << 3 << QVector<LogLine>({refusal});
        QTest::newRow("none") << 4 << QVector<LogLine>();
    }

    void linesAreCapturedFromTheThresholdOn()
    {
        QFETCH(const int, threshold);
        QFETCH(const QVector<LogLine>, lines);
        LogCapture log(threshold);
        MessageDialogTemplate::unregisterTemplate(QStringLiteral("a"));
        MessageDialogTemplate::unregisterTemplate(QString());
        QCOMPARE(log.lines(), lines);
        QCOMPARE(log.texts().size(), lines.size());
        for (int i = 0; i < lines.size(); ++i)
            QCOMPARE(log.texts().at(i), lines.at(i).text);
        log.clear();
        QVERIFY(log.lines().isEmpty());
    }

    void whatLoggedBeforeACaptureLogsAgainAfterIt()
    {
        int lines = 0;
        quorvel::SetLoggerLevel(1);
        quorvel::GetLoggerDelegate() = [&](std::int32_t, const std::wstring&) { ++lines; };
        {
            const LogCapture outer;
            {
                const LogCapture inner;
                MessageDialogTemplate::unregisterTemplate(QStringLiteral("a"));
                QCOMPARE(inner.lines().size(), 1);
            }
            MessageDialogTemplate::unregisterTemplate(QStringLiteral("a"));
            QCOMPARE(outer.lines().size(), 1);
        }
        QCOMPARE(lines, 0);
        QCOMPARE(quorvel::GetLoggerLevel(), 1);
        MessageDialogTemplate::unregisterTemplate(QStringLiteral("a"));
        QCOMPARE(lines, 1);
    }

    void aLineIsShownWithItsLevel()
    {
        const LogLine line = {3, QStringLiteral("text")};
        QVERIFY(line != (LogLine{2, QStringLiteral("text")}));
        QVERIFY(line != (LogLine{3, QStringLiteral("other")}));
        const std::unique_ptr<char[]> shown(toString(line));
        QCOMPARE(QString::fromUtf8(shown.get()), QStringLiteral("level 3: text"));
        std::ostringstream underGoogleTest;
        PrintTo(line, &underGoogleTest);
        QCOMPARE(QString::fromStdString(underGoogleTest.str()), QStringLiteral("level 3: text"));
    }
};

QUILLET_TEST_MAIN(TestStateGuard)
#include "tst_StateGuard.moc"
