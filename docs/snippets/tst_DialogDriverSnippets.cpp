#include "TemplateTestCase.h"

#include <QuilletTesting/DialogDriver.h>
#include <QuilletTesting/LogCapture.h>
#include <QuilletTesting/StateGuard.h>

#include <Quillet/MessageDialog.h>

#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QInputDialog>

#include <memory>

using Quillet::MessageDialog;
using Quillet::MessageDialogTemplate;
using Quillet::MessageDialogTemplatePreprocessors;
using Quillet::Testing::DialogDriver;
using Quillet::Testing::DialogExpectation;
using Quillet::Testing::DialogRecord;
using Quillet::Testing::LogCapture;
using Quillet::Testing::SourceLocation;
using Quillet::Testing::StateGuard;

namespace {

// An application, as far as the snippets need one.
class Editor : public QWidget
{
public:
    bool isChanged = true;
    bool isSaved = false;

    bool closeDocument()
    {
        MessageDialog dialog(QStringLiteral("Unsaved changes"),
                             QStringLiteral("Save the changes?"),
                             QMessageBox::Question,
                             this);
        dialog.setId(QStringLiteral("save-changes"));
        dialog.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
        dialog.setDefaultButton(QMessageBox::Save);
        const int answer = isChanged ? dialog.exec() : QMessageBox::Discard;
        isSaved = answer == QMessageBox::Save && mayOverwrite();
        return answer == QMessageBox::Discard || isSaved;
    }

    void remindOfBackup()
    {
        auto* const dialog = new MessageDialog(QStringLiteral("Make a backup?"), QMessageBox::Question, this);
        dialog->setId(QStringLiteral("backup"));
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        dialog->setCheckBox(new QCheckBox(QStringLiteral("Do not ask again")));
        connect(dialog, &QDialog::finished, this, [=](int result) {
            hasBackup = result == QMessageBox::Yes;
            asksAgain = !dialog->checkBox()->isChecked();
        });
        dialog->open();
    }

    void publish()
    {
        m_notice = std::make_unique<QMessageBox>(QMessageBox::NoIcon,
                                                 QString(),
                                                 QStringLiteral("Publishing harbour.svg"),
                                                 QMessageBox::Cancel,
                                                 this);
        m_notice->setObjectName(QStringLiteral("publishing"));
        m_notice->open();
        QTimer::singleShot(10, this, [this] {
            isPublished = !m_notice->clickedButton();
            m_notice->hide();
        });
    }

    bool hasBackup = false;
    bool asksAgain = true;
    bool fileExists = false;
    bool isPublished = false;

private:
    std::unique_ptr<QMessageBox> m_notice;

    bool mayOverwrite()
    {
        return !fileExists
               || QMessageBox::warning(this,
                                       QStringLiteral("Save"),
                                       QStringLiteral("Overwrite harbour.svg?"),
                                       QMessageBox::Yes | QMessageBox::No)
                      == QMessageBox::Yes;
    }
};

void registerDialogs()
{
    MessageDialogTemplate t;
    t.id = QStringLiteral("delete-layer");
    t.buttons[0] = {QStringLiteral("&Delete"), QMessageBox::DestructiveRole, false, false, {}};
    t.buttons[2] = {QStringLiteral("Cancel"), QMessageBox::RejectRole, true, true, {}};
    MessageDialogTemplate::registerTemplate(t);
}

QMessageBox::ButtonRole deleteLayer()
{
    return MessageDialogTemplate::getRegisteredTemplates().at(QStringLiteral("delete-layer")).exec();
}

} // namespace

class TestDialogDriverSnippets : public TemplateTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void driver()
    {
        Editor editor;
        //! [driver]
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).click(QMessageBox::Discard);
        QVERIFY(editor.closeDocument());
        //! [driver]
    }

    void nothingExpected()
    {
        Editor editor;
        editor.isChanged = false;
        //! [nothing-expected]
        const DialogDriver driver; // whatever message box comes, the test fails
        QVERIFY(editor.closeDocument());
        //! [nothing-expected]
    }

    void checks()
    {
        Editor editor;
        DialogDriver driver;
        //! [checks]
        driver.expect(QStringLiteral("save-changes"))
            .withTitle(QStringLiteral("Unsaved changes"))
            .withText(QStringLiteral("Save the changes?"))
            .withIcon(QMessageBox::Question)
            .withButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel)
            .withDefaultButton(QMessageBox::Save)
            .withPrimaryButton(QMessageBox::Save)
            .pressKey(Qt::Key_Return);
        //! [checks]
        QVERIFY(editor.closeDocument());
        QVERIFY(editor.isSaved);
    }

    void ownChecks()
    {
        Editor editor;
        DialogDriver driver;
        //! [own-checks]
        driver.expect(QStringLiteral("save-changes"))
            .run([&](QMessageBox& box) { QCOMPARE(box.parentWidget(), &editor); })
            .pressEscape();
        //! [own-checks]
        QVERIFY(!editor.closeDocument());
    }

    void nested()
    {
        Editor editor;
        editor.fileExists = true;
        //! [nested]
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).click(QMessageBox::Save);
        driver.expect(QString()).withText(QStringLiteral("Overwrite harbour.svg?")).click(QMessageBox::No);
        QVERIFY(!editor.closeDocument());
        QCOMPARE(driver.identifiers(), QStringList({QStringLiteral("save-changes"), QString()}));
        //! [nested]
    }

    void withoutBlocking()
    {
        Editor editor;
        //! [without-blocking]
        DialogDriver driver;
        driver.expect(QStringLiteral("backup")).toggleCheckBox().click(QMessageBox::Yes);
        editor.remindOfBackup(); // calls open(), and returns at once
        QVERIFY(driver.wait());
        QVERIFY(editor.hasBackup);
        QVERIFY(!editor.asksAgain);
        //! [without-blocking]
    }

    void templates()
    {
        registerDialogs();
        //! [templates]
        DialogDriver driver;
        driver.expect(QStringLiteral("delete-layer")).click(QStringLiteral("Delete"));
        driver.expect(QStringLiteral("delete-layer")).click(QMessageBox::RejectRole);
        driver.expect(QStringLiteral("delete-layer")).clickSlot(2);
        QCOMPARE(deleteLayer(), QMessageBox::DestructiveRole);
        QCOMPARE(deleteLayer(), QMessageBox::RejectRole);
        QCOMPARE(deleteLayer(), QMessageBox::RejectRole);
        //! [templates]
    }

    void records()
    {
        Editor editor;
        DialogDriver driver;
        //! [records]
        driver.expect(QStringLiteral("save-changes")).anyTimes().click(QMessageBox::Cancel);
        editor.closeDocument();
        editor.closeDocument();
        QCOMPARE(driver.records().size(), 2);
        const DialogRecord record = driver.records().constLast();
        QCOMPARE(record.title, QStringLiteral("Unsaved changes"));
        QCOMPARE(record.clickedButton, QStringLiteral("Cancel"));
        //! [records]
    }

    void sharedExpectation()
    {
        Editor editor;
        DialogDriver driver;
        //! [shared-expectation]
        const auto expectSaveChanges = [&](const SourceLocation& where =
                                               SourceLocation::current()) -> DialogExpectation& {
            return driver.expect(QStringLiteral("save-changes"), where)
                .withTitle(QStringLiteral("Unsaved changes"))
                .withDefaultButton(QMessageBox::Save);
        };
        expectSaveChanges().click(QMessageBox::Cancel);
        QVERIFY(!editor.closeDocument());
        expectSaveChanges().click(QMessageBox::Discard);
        QVERIFY(editor.closeDocument());
        //! [shared-expectation]
    }

    void phases()
    {
        Editor editor;
        //! [phases]
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).times(2).click(QMessageBox::Cancel);
        QVERIFY(!editor.closeDocument());
        QVERIFY(!editor.closeDocument());
        QVERIFY(driver.verify()); // both have come; nothing is expected from here on
        driver.expect(QStringLiteral("save-changes")).click(QMessageBox::Discard);
        QVERIFY(editor.closeDocument());
        //! [phases]
    }

    void closedByTheApplication()
    {
        Editor editor;
        DialogDriver driver;
        //! [closed-by-the-application]
        driver.expect(QStringLiteral("publishing"))
            .withText(QRegularExpression(QStringLiteral("^Publishing .*\\.svg$")))
            .waitUntilClosed();
        editor.publish(); // shows a notice while it works
        QVERIFY(driver.wait());
        //! [closed-by-the-application]
        QVERIFY(editor.isPublished);
    }

    void everyTest()
    {
        // As members of the test class.
        std::unique_ptr<StateGuard> guard;
        std::unique_ptr<DialogDriver> driver;
        //! [every-test]
        // In init(), before each test. SourceLocation::current() is needed because of std::make_unique().
        guard = std::make_unique<StateGuard>(QStringList(), SourceLocation::current());
        driver = std::make_unique<DialogDriver>(SourceLocation::current());

        // In cleanup(), after it.
        driver.reset();
        guard.reset();
        //! [every-test]
    }

    void otherDialog()
    {
        QWidget window;
        const auto askForName = [&] {
            return QInputDialog::getText(&window, QString(), QStringLiteral("Name"));
        };
        //! [other-dialog]
        QTimer::singleShot(0, &window, [] {
            auto* const dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            dialog->setTextValue(QStringLiteral("Harbour"));
            dialog->accept();
        });
        QCOMPARE(askForName(), QStringLiteral("Harbour"));
        //! [other-dialog]
    }

    void settings()
    {
        const QTemporaryDir directory;
        //! [settings]
        DialogDriver driver;
        driver.setTimeout(20000); // this machine is slow
        driver.setScreenshotDirectory(directory.path());
        //! [settings]
    }

    void log()
    {
        //! [log]
        const LogCapture log(3); // refused calls only
        MessageDialogTemplate::unregisterTemplate(QString());
        QCOMPARE(
            log.texts(),
            QStringList(QStringLiteral("MessageDialogTemplate: trying to unregister dialog template with "
                                       "empty identifier!")));
        //! [log]
    }

    void guard()
    {
        {
            //! [guard]
            StateGuard guard({QStringLiteral("translate")}); // a preprocessor that the tested code may add
            guard.startEmpty();
            guard.addPreprocessor(QStringLiteral("prefix"), [](MessageDialogTemplate& t) {
                t.title.prepend(QStringLiteral("Harbour: "));
            });
            registerDialogs();
            //! [guard]
            MessageDialogTemplatePreprocessors::add(QStringLiteral("translate"),
                                                    [](MessageDialogTemplate&) {});
        }
        QVERIFY(MessageDialogTemplate::getRegisteredTemplates().empty());
        QVERIFY(MessageDialogTemplatePreprocessors::isEmpty());
    }
};

QUILLET_TEST_MAIN(TestDialogDriverSnippets)
#include "tst_DialogDriverSnippets.moc"
