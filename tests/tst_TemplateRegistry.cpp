#include "TemplateTestCase.h"

#include <memory>
#include <stdexcept>

using Quillet::MessageDialogTemplate;

namespace {

MessageDialogTemplate named(const QString& id, const QString& text = QString())
{
    MessageDialogTemplate t;
    t.id = id;
    t.text = text;
    return t;
}

QStringList registeredIds()
{
    QStringList result;
    for (const auto& [id, t] : MessageDialogTemplate::getRegisteredTemplates())
        result.append(id);
    return result;
}

// Whether code outside the class can reach the writable registry.
template <typename Template, typename = void>
struct OffersWritableRegistry : std::false_type
{
};
template <typename Template>
struct OffersWritableRegistry<Template, std::void_t<decltype(Template::getRegisteredTemplatesImpl())>>
    : std::true_type
{
};
static_assert(!OffersWritableRegistry<MessageDialogTemplate>::value);
static_assert(std::is_same_v<decltype(MessageDialogTemplate::getRegisteredTemplates()),
                             const std::map<QString, MessageDialogTemplate>&>);

const QString a = QStringLiteral("A");
const QString b = QStringLiteral("B");

} // namespace

class TestTemplateRegistry : public TemplateTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theRegistryStartsEmptyAndIsOneObject()
    {
        const auto& first = MessageDialogTemplate::getRegisteredTemplates();
        QVERIFY(first.empty());
        QCOMPARE(&MessageDialogTemplate::getRegisteredTemplates(), &first);
    }

    void aRegisteredTemplateIsFoundUnderItsIdentifier()
    {
        MessageDialogTemplate::registerTemplate(named(a, QStringLiteral("text")));
        const auto& templates = MessageDialogTemplate::getRegisteredTemplates();
        QCOMPARE(registeredIds(), QStringList(a));
        QCOMPARE(templates.at(a).id, a);
        QCOMPARE(templates.at(a).text, QStringLiteral("text"));
    }

    void theLastRegistrationWins()
    {
        MessageDialogTemplate::registerTemplate(named(a, QStringLiteral("first")));
        MessageDialogTemplate::registerTemplate(named(a, QStringLiteral("second")));
        QCOMPARE(registeredIds(), QStringList(a));
        QCOMPARE(MessageDialogTemplate::getRegisteredTemplates().at(a).text, QStringLiteral("second"));
    }

    void aReplacementGivesTheSameEntryNewContent()
    {
        MessageDialogTemplate::registerTemplate(named(a, QStringLiteral("first")));
        const MessageDialogTemplate& entry = MessageDialogTemplate::getRegisteredTemplates().at(a);
        MessageDialogTemplate::registerTemplate(named(b));
        MessageDialogTemplate::registerTemplate(named(a, QStringLiteral("second")));
        QCOMPARE(&MessageDialogTemplate::getRegisteredTemplates().at(a), &entry);
        QCOMPARE(entry.text, QStringLiteral("second"));
    }

    void anEntryCanBeRegisteredAgainFromTheRegistryItself()
    {
        QStringList journal;
        MessageDialogTemplate::registerTemplate(saveChanges(journal));
        const auto& entry = MessageDialogTemplate::getRegisteredTemplates().begin()->second;
        MessageDialogTemplate::registerTemplate(entry);
        QCOMPARE(entry.title, QStringLiteral("Unsaved changes"));
        entry.buttons[0].action();
        QCOMPARE(journal, QStringList(QStringLiteral("Save")));
    }

    void theRegistryKeepsACopy()
    {
        MessageDialogTemplate t = named(a, QStringLiteral("before"));
        MessageDialogTemplate::registerTemplate(t);
        t.id = b;
        t.text = QStringLiteral("after");
        QCOMPARE(registeredIds(), QStringList(a));
        QCOMPARE(MessageDialogTemplate::getRegisteredTemplates().at(a).text, QStringLiteral("before"));
    }

    void registrationRunsNoPreprocessor()
    {
        const ScopedPreprocessor preprocessor(
            QStringLiteral("text"), [](MessageDialogTemplate& t) { t.text = QStringLiteral("changed"); });
        MessageDialogTemplate::registerTemplate(named(a, QStringLiteral("text")));
        QCOMPARE(MessageDialogTemplate::getRegisteredTemplates().at(a).text, QStringLiteral("text"));
    }

    void unregisteringRemovesJustThatTemplate()
    {
        MessageDialogTemplate::registerTemplate(named(a));
        MessageDialogTemplate::registerTemplate(named(b));
        MessageDialogTemplate::unregisterTemplate(a);
        QCOMPARE(registeredIds(), QStringList(b));
    }

    void unregisteringAnUnknownIdentifierRemovesNoneBeforeOrAfterIt()
    {
        MessageDialogTemplate::registerTemplate(named(b));
        MessageDialogTemplate::unregisterTemplate(a);
        MessageDialogTemplate::unregisterTemplate(QStringLiteral("C"));
        MessageDialogTemplate::unregisterTemplate(QStringLiteral("b"));
        QCOMPARE(registeredIds(), QStringList(b));
    }

    void unregisteringAnUnknownIdentifierOnlyLeavesALine()
    {
        MessageDialogTemplate::registerTemplate(named(a));
        const LogCapture log(2);
        MessageDialogTemplate::unregisterTemplate(b);
        QCOMPARE(registeredIds(), QStringList(a));
        const QVector<LogLine> lines = {
            {2, QStringLiteral("MessageDialogTemplate: unregistering dialog template: B")}};
        QCOMPARE(log.lines(), lines);
    }

    void anEntryCanBeUnregisteredByItsOwnIdentifier()
    {
        MessageDialogTemplate::registerTemplate(named(a));
        MessageDialogTemplate::unregisterTemplate(
            MessageDialogTemplate::getRegisteredTemplates().begin()->second.id);
        QVERIFY(registeredIds().isEmpty());
    }

    void anEmptyIdentifierIsRefusedWithOneLine_data()
    {
        QTest::addColumn<bool>("registers");
        QTest::addColumn<QString>("id");
        QTest::addColumn<int>("threshold");
        for (const int threshold : {0, 2, 3}) {
            for (const bool registers : {true, false}) {
                const char* const operation = registers ? "registering" : "unregistering";
                QTest::addRow("%s a null identifier, threshold %d", operation, threshold)
                    << registers << QString() << threshold;
                QTest::addRow("%s an empty identifier, threshold %d", operation, threshold)
                    << registers << QString(QLatin1String("")) << threshold;
            }
        }
    }

    void anEmptyIdentifierIsRefusedWithOneLine()
    {
        QFETCH(bool, registers);
        QFETCH(QString, id);
        QFETCH(int, threshold);
        MessageDialogTemplate::registerTemplate(named(a));
        const LogCapture log(threshold);
        if (registers)
            MessageDialogTemplate::registerTemplate(named(id));
        else
            MessageDialogTemplate::unregisterTemplate(id);
        QCOMPARE(registeredIds(), QStringList(a));
        QCOMPARE(log.lines().size(), 1);
        QCOMPARE(log.lines().constFirst().level, 3);
    }

    void identifiersAreOrderedAndToldApartByCase()
    {
        for (const QString& id : {QStringLiteral("ok"), QStringLiteral("OK"), QStringLiteral("Ok")})
            MessageDialogTemplate::registerTemplate(named(id));
        QCOMPARE(registeredIds(),
                 QStringList({QStringLiteral("OK"), QStringLiteral("Ok"), QStringLiteral("ok")}));
    }

    void lookingUpCreatesNoEntry()
    {
        const auto& templates = MessageDialogTemplate::getRegisteredTemplates();
        QVERIFY(templates.find(a) == templates.end());
        QCOMPARE(templates.count(a), std::size_t(0));
        QVERIFY(templates.empty());
    }

    void replacingAndRemovingDestroyTheOldCallablesAtOnce()
    {
        const auto token = std::make_shared<int>();
        MessageDialogTemplate t = named(a);
        t.buttons[3].action = [token] {};
        t.postExecCallback = [token](Quillet::MessageDialog&) { return true; };
        MessageDialogTemplate::registerTemplate(t);
        t = {};
        QCOMPARE(token.use_count(), 3L);
        MessageDialogTemplate::registerTemplate(named(a));
        QCOMPARE(token.use_count(), 1L);

        t = named(a);
        t.buttons[0].action = [token] {};
        MessageDialogTemplate::registerTemplate(t);
        t = {};
        QCOMPARE(token.use_count(), 2L);
        MessageDialogTemplate::unregisterTemplate(a);
        QCOMPARE(token.use_count(), 1L);
    }

    void anExceptionOfTheSinkComesBeforeTheTableIsTouched_data()
    {
        QTest::addColumn<QString>("operation");
        for (const char* operation : {"add", "replace", "remove", "refuse", "refuse to add"})
            QTest::addRow("%s", operation) << QString::fromLatin1(operation);
    }

    void anExceptionOfTheSinkComesBeforeTheTableIsTouched()
    {
        QFETCH(QString, operation);
        const std::map<QString, std::function<void()>> operations = {
            {QStringLiteral("add"), [] { MessageDialogTemplate::registerTemplate(named(b)); }},
            {QStringLiteral("replace"),
             [] { MessageDialogTemplate::registerTemplate(named(a, QStringLiteral("new"))); }},
            {QStringLiteral("remove"), [] { MessageDialogTemplate::unregisterTemplate(a); }},
            {QStringLiteral("refuse"), [] { MessageDialogTemplate::unregisterTemplate(QString()); }},
            {QStringLiteral("refuse to add"),
             [] { MessageDialogTemplate::registerTemplate(MessageDialogTemplate()); }},
        };
        MessageDialogTemplate::registerTemplate(named(a, QStringLiteral("old")));
        quorvel::GetLoggerDelegate() = [](std::int32_t, const std::wstring&) {
            throw std::runtime_error("sink");
        };
        QVERIFY_EXCEPTION_THROWN(operations.at(operation)(), std::runtime_error);
        QCOMPARE(registeredIds(), QStringList(a));
        QCOMPARE(MessageDialogTemplate::getRegisteredTemplates().at(a).text, QStringLiteral("old"));
        quorvel::GetLoggerDelegate() = nullptr;
    }
};

QUILLET_GUILESS_TEST_MAIN(TestTemplateRegistry)
#include "tst_TemplateRegistry.moc"
