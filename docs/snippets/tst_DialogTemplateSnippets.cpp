#include "TemplateTestCase.h"

#include <QtGui/QTextDocument>
#include <QtWidgets/QPushButton>

class TestDialogTemplateSnippets : public TemplateTestCase
{
    Q_OBJECT

    QStringList m_journal;

    void save() { m_journal.append(QStringLiteral("saved")); }
    void answered(QMessageBox::ButtonRole role) { m_journal.append(QString::number(role)); }

    void registerSaveChanges()
    {
        //! [register]
        Quillet::MessageDialogTemplate t;
        t.id = QStringLiteral("save-changes");
        t.icon = QMessageBox::Question;
        t.title = tr("Unsaved changes");
        t.text = tr("Save the changes to Harbour.svg?");
        // text, role, default, escape, action
        t.buttons[0] = {tr("&Save"), QMessageBox::AcceptRole, true, false, [this] { save(); }};
        t.buttons[1] = {tr("&Discard"), QMessageBox::DestructiveRole, false, false, {}};
        t.buttons[2] = {tr("Cancel"), QMessageBox::RejectRole, false, true, {}};
        Quillet::MessageDialogTemplate::registerTemplate(t);
        //! [register]
    }

private Q_SLOTS:
    void init()
    {
        TemplateTestCase::init();
        m_journal.clear();
    }

    void aRegisteredTemplateIsRun_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<bool>("closes");
        QTest::addColumn<QStringList>("journal");
        QTest::newRow("Save") << int(Qt::Key_Return) << true << QStringList(QStringLiteral("saved"));
        QTest::newRow("Cancel") << int(Qt::Key_Escape) << false << QStringList();
    }

    void aRegisteredTemplateIsRun()
    {
        QFETCH(int, key);
        QFETCH(bool, closes);
        QFETCH(QStringList, journal);
        registerSaveChanges();
        QWidget theWindow;
        theWindow.show();
        QWidget* const window = &theWindow;
        whenModal([&](QMessageBox& box) { QTest::keyClick(&box, static_cast<Qt::Key>(key)); });
        //! [run]
        const auto& templates = Quillet::MessageDialogTemplate::getRegisteredTemplates();
        const auto saveChanges = templates.find(QStringLiteral("save-changes"));
        if (saveChanges != templates.end() && saveChanges->second.exec(window) != QMessageBox::RejectRole)
            window->close();
        //! [run]
        QCOMPARE(window->isVisible(), !closes);
        QCOMPARE(m_journal, journal);
    }

    void aCopyRunsWhileTheEntryIsReplaced()
    {
        registerSaveChanges();
        QWidget theWindow;
        QWidget* const window = &theWindow;
        const auto& templates = Quillet::MessageDialogTemplate::getRegisteredTemplates();
        const auto saveChanges = templates.begin();
        whenModal([](QMessageBox& box) {
            Quillet::MessageDialogTemplate::unregisterTemplate(QStringLiteral("save-changes"));
            QTest::keyClick(&box, Qt::Key_Return);
        });
        //! [run-a-copy]
        const Quillet::MessageDialogTemplate copy = saveChanges->second;
        copy.exec(window);
        //! [run-a-copy]
        QCOMPARE(m_journal, QStringList(QStringLiteral("saved")));
    }

    void aDialogIsOpenedWithoutANestedLoop()
    {
        registerSaveChanges();
        QWidget theWindow;
        QWidget* const window = &theWindow;
        const auto saveChanges = Quillet::MessageDialogTemplate::getRegisteredTemplates().begin();
        //! [open]
        Quillet::MessageDialog* const dialog = saveChanges->second.createDialog(window);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &QMessageBox::buttonClicked, this, [=](QAbstractButton* button) {
            answered(dialog->buttonRole(button));
        });
        dialog->open();
        //! [open]
        buttonOf(*dialog, QStringLiteral("Discard"))->click();
        QCOMPARE(m_journal, QStringList(QString::number(QMessageBox::DestructiveRole)));
    }

    void thePreExecCallbackAddsDetails()
    {
        Quillet::MessageDialogTemplate t;
        const QString details = QStringLiteral("Line 12: unexpected end");
        //! [details]
        t.preExecCallback = [details](Quillet::MessageDialog& dialog) {
            dialog.setDetailedText(details);
            return true;
        };
        //! [details]
        QString shown;
        whenModal([&](QMessageBox& box) {
            shown = box.detailedText();
            box.done(0);
        });
        t.exec();
        QCOMPARE(shown, details);
    }

    void aPreprocessorEscapes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("plain") << QStringLiteral("Salt & pepper") << QStringLiteral("Salt & pepper");
        QTest::newRow("tag") << QStringLiteral("a <b>.svg") << QStringLiteral("<p>a &lt;b&gt;.svg</p>");
    }

    void aPreprocessorEscapes()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        //! [escape]
        Quillet::MessageDialogTemplatePreprocessors::add(
            QStringLiteral("escape"), [](Quillet::MessageDialogTemplate& t) {
                if (Qt::mightBeRichText(t.text)) // show a "<b>" as it stands
                    t.text = Qt::convertFromPlainText(t.text, Qt::WhiteSpaceNormal);
            });
        //! [escape]
        Quillet::MessageDialogTemplate t;
        t.text = text;
        Quillet::MessageDialogTemplatePreprocessors::apply(t);
        QVERIFY(Quillet::MessageDialogTemplatePreprocessors::remove(QStringLiteral("escape")));
        QCOMPARE(t.text, expected);
    }

    void twoSlots()
    {
        Quillet::MessageDialogTemplate t;
        //! [slots]
        t.buttons[0] = {tr("Save"), QMessageBox::AcceptRole, true, false, [this] { save(); }};
        t.buttons[1] = {tr("Cancel"), QMessageBox::RejectRole, false, true, {}};
        //! [slots]
        whenModal([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
        QCOMPARE(t.exec(), QMessageBox::AcceptRole);
        QCOMPARE(m_journal, QStringList(QStringLiteral("saved")));
    }
};

QUILLET_TEST_MAIN(TestDialogTemplateSnippets)
#include "tst_DialogTemplateSnippets.moc"
