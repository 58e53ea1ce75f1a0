#include "TemplateTestCase.h"

#include <QtCore/QDebug>

using Quillet::MessageDialogTemplate;
using Quillet::MessageDialogTemplatePreprocessors;

namespace {

//! [plug-in]
class Module
{
public:
    Module()
    {
        Quillet::MessageDialogTemplate t;
        t.id = QStringLiteral("export-module/overwrite");
        t.buttons[0] = {
            QStringLiteral("Overwrite"), QMessageBox::AcceptRole, false, false, [this] { run(); }};
        Quillet::MessageDialogTemplate::registerTemplate(t);
        Quillet::MessageDialogTemplatePreprocessors::add(QStringLiteral("export-module/title"),
                                                         [this](auto& each) { each.title = m_title; });
    }

    ~Module()
    {
        Quillet::MessageDialogTemplatePreprocessors::remove(QStringLiteral("export-module/title"));
        Quillet::MessageDialogTemplate::unregisterTemplate(QStringLiteral("export-module/overwrite"));
    }

private:
    void run() {}

    QString m_title = QStringLiteral("Export");
};
//! [plug-in]

} // namespace

class TestEmbeddingSnippets : public TemplateTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void linesGoToTheHostsSink()
    {
        //! [log]
        quorvel::SetLoggerLevel(2);
        quorvel::GetLoggerDelegate() = [](std::int32_t level, const std::wstring& line) {
            const QString text = QString::fromStdWString(line);
            level < 3 ? qInfo().noquote() << text : qWarning().noquote() << text;
        };
        //! [log]
        const auto say = [this](const char* text) {
            expectMessage(QStringLiteral("MessageDialogTemplate: ") + QLatin1String(text));
        };
        say("unregistering dialog template: overwrite");
        say("trying to unregister dialog template with empty identifier!");
        MessageDialogTemplate::unregisterTemplate(QStringLiteral("overwrite"));
        MessageDialogTemplate::unregisterTemplate(QString());
        quorvel::SetLoggerLevel(4);
        MessageDialogTemplate::unregisterTemplate(QString());
    }

    void aModuleTakesBackWhatItRegistered()
    {
        {
            const Module module;
            QCOMPARE(MessageDialogTemplate::getRegisteredTemplates().size(), std::size_t(1));
            QVERIFY(!MessageDialogTemplatePreprocessors::isEmpty());
        }
        QVERIFY(MessageDialogTemplate::getRegisteredTemplates().empty());
        QVERIFY(MessageDialogTemplatePreprocessors::isEmpty());
    }
};

QUILLET_TEST_MAIN(TestEmbeddingSnippets)
#include "tst_EmbeddingSnippets.moc"
