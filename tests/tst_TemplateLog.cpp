#include "Allocations.h"
#include "TemplateTestCase.h"

#include <memory>

using Quillet::MessageDialogTemplate;

namespace {

using Operation = std::function<void(const QString& id)>;

void create(const QString& id)
{
    MessageDialogTemplate t;
    t.id = id;
    const std::unique_ptr<Quillet::MessageDialog> dialog(t.createDialog());
}

void execute(const QString& id)
{
    MessageDialogTemplate t;
    t.id = id;
    t.preExecCallback = [](Quillet::MessageDialog&) { return false; };
    t.exec();
}

void registerIt(const QString& id)
{
    MessageDialogTemplate t;
    t.id = id;
    MessageDialogTemplate::registerTemplate(t);
}

void unregisterIt(const QString& id)
{
    MessageDialogTemplate::unregisterTemplate(id);
}

const QString id = QStringLiteral("save-changes");

} // namespace

Q_DECLARE_METATYPE(Operation)

class TestTemplateLog : public TemplateTestCase
{
    Q_OBJECT

    // The operations with the one line that each writes.
    static void addOperations()
    {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<QString>("identifier");
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("text");
        QTest::newRow("createDialog")
            << Operation(create) << id << 2
            << QStringLiteral("MessageDialogTemplate: creating dialog from dialog template: save-changes");
        QTest::newRow("createDialog, empty identifier")
            << Operation(create) << QString() << 2
            << QStringLiteral("MessageDialogTemplate: creating dialog from dialog template: ");
        QTest::newRow("exec") << Operation(execute) << id << 2
                              << QStringLiteral(
                                     "MessageDialogTemplate: executing dialog template: save-changes");
        QTest::newRow("exec, empty identifier")
            << Operation(execute) << QString() << 2
            << QStringLiteral("MessageDialogTemplate: executing dialog template: ");
        QTest::newRow("registerTemplate")
            << Operation(registerIt) << id << 2
            << QStringLiteral("MessageDialogTemplate: registering dialog template: save-changes");
        QTest::newRow("registerTemplate, empty identifier")
            << Operation(registerIt) << QString() << 3
            << QStringLiteral(
                   "MessageDialogTemplate: trying to register dialog template with empty identifier!");
        QTest::newRow("unregisterTemplate")
            << Operation(unregisterIt) << id << 2
            << QStringLiteral("MessageDialogTemplate: unregistering dialog template: save-changes");
        QTest::newRow("unregisterTemplate, empty identifier")
            << Operation(unregisterIt) << QString() << 3
            << QStringLiteral(
                   "MessageDialogTemplate: trying to unregister dialog template with empty identifier!");
    }

private Q_SLOTS:
    void eachOperationWritesItsLine_data() { addOperations(); }

    void eachOperationWritesItsLine()
    {
        QFETCH(Operation, operation);
        QFETCH(QString, identifier);
        QFETCH(int, level);
        QFETCH(QString, text);
        const LogCapture log;
        operation(identifier);
        QCOMPARE(log.lines(), (QVector<LogLine>{{level, text}}));
    }

    void theThresholdDecidesWhichLevelsAreWritten_data() { addOperations(); }

    void theThresholdDecidesWhichLevelsAreWritten()
    {
        QFETCH(Operation, operation);
        QFETCH(QString, identifier);
        QFETCH(int, level);
        QFETCH(QString, text);
        for (const std::int32_t threshold : {INT32_MIN, -1, 0, 1, 2, 3, 4, 5, INT32_MAX}) {
            const LogCapture log(threshold);
            operation(identifier);
            QCOMPARE(log.lines(),
                     threshold <= level ? (QVector<LogLine>{{level, text}}) : QVector<LogLine>());
        }
    }

    void withoutASinkTheOperationsStillWork()
    {
        quorvel::SetLoggerLevel(2);
        create(id);
        execute(id);
        registerIt(id);
        QCOMPARE(MessageDialogTemplate::getRegisteredTemplates().size(), std::size_t(1));
        registerIt(QString());
        unregisterIt(QString());
        QCOMPARE(MessageDialogTemplate::getRegisteredTemplates().size(), std::size_t(1));
        unregisterIt(id);
        QVERIFY(MessageDialogTemplate::getRegisteredTemplates().empty());
    }

    void aCharacterBeyondTheBasicMultilingualPlaneIsOneWideCharacter()
    {
        std::wstring line;
        quorvel::GetLoggerDelegate() = [&](std::int32_t, const std::wstring& text) { line = text; };
        unregisterIt(QStringLiteral("\U0001F4BE"));
        // As many as the compiler makes of it: one, but for a wchar_t of 16 bits.
        QVERIFY(line == L"MessageDialogTemplate: unregistering dialog template: \U0001F4BE");
    }

    void theLineIsWrittenBeforeAnythingElseHappens()
    {
        QStringList journal;
        const ScopedPreprocessor preprocessor(QStringLiteral("journal"), [&](MessageDialogTemplate&) {
            journal.append(QStringLiteral("preprocessor"));
        });
        quorvel::GetLoggerDelegate() = [&](std::int32_t, const std::wstring&) {
            journal.append(MessageDialogTemplate::getRegisteredTemplates().empty()
                               ? QStringLiteral("empty")
                               : QStringLiteral("filled"));
        };
        create(id);
        execute(id);
        registerIt(id);
        unregisterIt(id);
        QCOMPARE(journal,
                 QStringList({QStringLiteral("empty"),
                              QStringLiteral("preprocessor"),
                              QStringLiteral("empty"),
                              QStringLiteral("preprocessor"),
                              QStringLiteral("empty"),
                              QStringLiteral("filled")}));
    }

    void theLineShowsTheIdentifierAsItIsBeforePreprocessing()
    {
        const ScopedPreprocessor preprocessor(
            QStringLiteral("id"), [](MessageDialogTemplate& t) { t.id = QStringLiteral("changed"); });
        const LogCapture log;
        create(id);
        execute(id);
        QCOMPARE(log.lines().size(), 2);
        for (const LogLine& line : log.lines())
            QVERIFY2(line.text.endsWith(QStringLiteral(": save-changes")), qPrintable(line.text));
    }

    void theHostsSinkItselfIsCalledAndNoCopyOfIt()
    {
        int shown = 0;
        quorvel::GetLoggerDelegate() = [&shown, lines = 0](std::int32_t, const std::wstring&) mutable {
            shown = ++lines;
        };
        unregisterIt(id);
        unregisterIt(id);
        QCOMPARE(shown, 2);
    }

    void aSuppressedLineAllocatesNothing_data()
    {
        QTest::addColumn<int>("threshold");
        QTest::addColumn<bool>("sink");
        QTest::newRow("above the threshold, with a sink") << 4 << true;
        QTest::newRow("above the threshold, without a sink") << 4 << false;
        QTest::newRow("without a sink") << 0 << false;
    }

    void aSuppressedLineAllocatesNothing()
    {
        QFETCH(int, threshold);
        QFETCH(bool, sink);
        quorvel::SetLoggerLevel(threshold);
        if (sink)
            quorvel::GetLoggerDelegate() = [](std::int32_t, const std::wstring&) {};

        // These two have nothing else to allocate.
        const QString unknown = QStringLiteral("an identifier that nobody has registered");
        const QString empty;
        const MessageDialogTemplate nameless;
        unregisterIt(unknown); // makes the registry
        const std::size_t before = allocations();
        unregisterIt(unknown);
        unregisterIt(empty);
        MessageDialogTemplate::registerTemplate(nameless);
        QCOMPARE(allocations(), before);
    }

    void aWrittenLineAllocates()
    {
        // Otherwise the case above would count in vain.
        quorvel::GetLoggerDelegate() = [](std::int32_t, const std::wstring&) {};
        const QString unknown = QStringLiteral("an identifier that nobody has registered");
        const std::size_t before = allocations();
        unregisterIt(unknown);
        QVERIFY(allocations() > before);
    }
};

QUILLET_TEST_MAIN(TestTemplateLog)
#include "tst_TemplateLog.moc"
