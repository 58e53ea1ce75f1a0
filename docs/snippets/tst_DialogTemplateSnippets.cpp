#include "TemplateTestCase.h"

#include <QtGui/QTextDocument>
#include <QtWidgets/QPushButton>

#include <memory>

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

    // What a label shows of a template's text once the preprocessors have been at it.
    static QString shownTextOf(const QString& text)
    {
        Quillet::MessageDialogTemplate t;
        t.text = text;
        const std::unique_ptr<Quillet::MessageDialog> dialog(t.createDialog());
        if (!Qt::mightBeRichText(dialog->text()))
            return dialog->text();
        QTextDocument shown;
        shown.setHtml(dialog->text());
        return shown.toPlainText();
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
        connect(dialog, &QMessageBox::buttonClicked, this, [this, dialog](QAbstractButton* button) {
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

    void textIsShownAsItIs_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << QStringLiteral("Harbour");
        QTest::newRow("an ampersand") << QStringLiteral("Tom & Jerry");
        QTest::newRow("a tag") << QStringLiteral("Delete <img src='secret.png'>?");
        QTest::newRow("a tag in the second line") << QStringLiteral("Delete\n<b>bold</b>?");
        QTest::newRow("an escaped tag") << QStringLiteral("&lt;b>");
        QTest::newRow("a comparison") << QStringLiteral("if a<b and c>d");
    }

    void textIsShownAsItIs()
    {
        QFETCH(QString, text);
        //! [escape]
        Quillet::MessageDialogTemplatePreprocessors::add(
            QStringLiteral("escape"), [](Quillet::MessageDialogTemplate& t) {
                if (Qt::mightBeRichText(t.text)) // show a "<b>" as it stands
                    t.text = Qt::convertFromPlainText(t.text, Qt::WhiteSpaceNormal);
            });
        //! [escape]
        const QString shown = shownTextOf(text);
        QVERIFY(Quillet::MessageDialogTemplatePreprocessors::remove(QStringLiteral("escape")));
        QCOMPARE(shown, text);
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
