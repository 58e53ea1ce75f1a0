// A QtTest program whose cases fail, each by one failure of the test kit; tst_DialogDriverFailures runs them
// one by one. With "no-framework" for its only argument a failure comes where no test runs.

#include <QuilletTesting/DialogDriver.h>
#include <QuilletTesting/StateGuard.h>

#include <Quillet/MessageDialog.h>

#include <QtTest/QtTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QInputDialog>
#include <QtWidgets/QPushButton>

#include <memory>
#include <stdexcept>

using Quillet::MessageDialog;
using Quillet::MessageDialogTemplate;
using Quillet::MessageDialogTemplatePreprocessors;
using Quillet::Testing::DialogDriver;
using Quillet::Testing::SourceLocation;
using Quillet::Testing::StateGuard;

namespace {

// It has to come in these cases, and on a busy machine after what comes before it.
constexpr int timeout = 2000;

struct SaveChanges : MessageDialog
{
    SaveChanges()
        : MessageDialog(
            QStringLiteral("Unsaved changes"), QStringLiteral("Save the changes?"), QMessageBox::Question)
    {
        setId(QStringLiteral("save-changes"));
        save = addButton(QStringLiteral("&Save"), QMessageBox::AcceptRole);
        cancel = addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole);
        setDefaultButton(save);
    }

    QPushButton* save;
    QPushButton* cancel;
};

// Stays open the first times that it is to close.
struct Stubborn : SaveChanges
{
    explicit Stubborn(int stays) : m_stays(stays) {}

    void setVisible(bool visible) override
    {
        if (visible || m_stays-- <= 0)
            MessageDialog::setVisible(visible);
    }

private:
    int m_stays;
};

void keepPreprocessor(MessageDialogTemplate& /*unused*/) {}

} // namespace

class TestFailing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unexpected()
    {
        const DialogDriver driver;
        SaveChanges dialog;
        dialog.setInformativeText(QStringLiteral("They are lost otherwise."));
        dialog.exec();
        QCOMPARE(driver.records().constFirst().clickedButton, QStringLiteral("Cancel"));
        QVERIFY(!driver.records().constFirst().wasExpected);
    }

    void unexpectedPlainBox()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("a"));
        driver.expect(QStringLiteral("b")).anyTimes();
        driver.expect(QStringLiteral("c")).times(0);
        QMessageBox::warning(nullptr, QStringLiteral("Disk"), QStringLiteral("The disk is full."));
        QMessageBox box;
        box.setObjectName(QStringLiteral("a"));
        box.exec();
    }

    void unexpectedWithoutEscapeButton()
    {
        const DialogDriver driver;
        QMessageBox box;
        box.addButton(QStringLiteral("One"), QMessageBox::AcceptRole);
        box.addButton(QStringLiteral("Two"), QMessageBox::AcceptRole);
        QCOMPARE(box.exec(), int(QDialog::Rejected));
        QVERIFY(!box.clickedButton());
    }

    void unexpectedAgain()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"));
        SaveChanges dialog;
        dialog.exec();
        dialog.exec();
    }

    void unexpectedInsideAnExpectedOne()
    {
        DialogDriver driver;
        SaveChanges outer;
        driver.expect(QStringLiteral("save-changes"))
            .run([](QMessageBox&) {
                QMessageBox::about(nullptr, QStringLiteral("About"), QStringLiteral("text"));
            })
            .click(QStringLiteral("Save"));
        outer.exec();
        QCOMPARE(outer.clickedButton(), outer.save);
    }

    void unexpectedAndGoneAtOnce()
    {
        const DialogDriver driver;
        SaveChanges dialog;
        dialog.show();
        dialog.hide();
    }

    void unexpectedAndDueLater()
    {
        DialogDriver driver;
        QTimer::singleShot(0, this, [] { SaveChanges().exec(); });
        QVERIFY(driver.wait());
    }

    void screenshotThatCannotBeWritten()
    {
        DialogDriver driver;
        driver.setScreenshotDirectory(QCoreApplication::applicationFilePath());
        SaveChanges().exec();
        QCOMPARE(driver.records().constFirst().screenshot, QString());
    }

    void screenshot()
    {
        const QTemporaryDir directory;
        QString file;
        {
            DialogDriver driver;
            driver.setScreenshotDirectory(directory.filePath(QStringLiteral("pictures")));
            driver.expect(QStringLiteral("save-changes")).withTitle(QStringLiteral("Changes"));
            SaveChanges dialog;
            dialog.exec();
            file = driver.records().constFirst().screenshot;
        }
        qInfo().noquote() << "The file is" << file;
        QVERIFY(QImage(file).width() > 100);
        QCOMPARE(file, directory.filePath(QStringLiteral("pictures/save-changes-1.png")));
    }

    void neverCame()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"));
    }

    void cameTooRarely()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).times(3);
        SaveChanges dialog;
        dialog.exec();
    }

    void verifiedOnlyOnce()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"));
        driver.setTimeout(timeout);
        QVERIFY(!driver.wait());
        QVERIFY(!driver.verify());
    }

    void everythingDiffers()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"))
            .withTitle(QStringLiteral("Changes"))
            .withText(QStringLiteral("Save?"))
            .withInformativeText(QStringLiteral("Otherwise they are lost."))
            .withIcon(QMessageBox::Warning)
            .withButtons({QStringLiteral("Save"), QStringLiteral("Discard")})
            .withButtons(QMessageBox::Save | QMessageBox::Cancel)
            .withDefaultButton(QStringLiteral("Cancel"))
            .withPrimaryButton(QStringLiteral("Cancel"))
            .click(QStringLiteral("Save"));
        SaveChanges dialog;
        dialog.exec();
        QCOMPARE(dialog.clickedButton(), dialog.save); // all the same
    }

    void plainBoxDiffers()
    {
        DialogDriver driver;
        driver.expect(QString())
            .withButtons(QMessageBox::Ok)
            .withDefaultButton(QStringLiteral("Yes"))
            .withPrimaryButton(QStringLiteral("Yes"));
        QMessageBox::question(nullptr, {}, {});
    }

    void differsAndGoneAtOnce()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).withTitle(QStringLiteral("Changes"));
        SaveChanges dialog;
        dialog.show();
        dialog.hide();
    }

    void destroyedBeforeItsChecks()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).withTitle(QStringLiteral("Changes"));
        SaveChanges().show();
    }

    void noSuchButton()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).click(QStringLiteral("Sav"));
        SaveChanges dialog;
        dialog.exec();
        QCOMPARE(dialog.clickedButton(), dialog.cancel);
    }

    void noSuchStandardButton()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).click(QMessageBox::Save);
        SaveChanges().exec();
    }

    void noSuchRole()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).click(QMessageBox::HelpRole);
        SaveChanges().exec();
    }

    void severalButtonsOfARole()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).click(QMessageBox::AcceptRole);
        SaveChanges dialog;
        dialog.addButton(QStringLiteral("Save a copy"), QMessageBox::AcceptRole);
        dialog.exec();
    }

    void noTemplateOfTheSlot()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).clickSlot(0);
        SaveChanges().exec();
    }

    void emptySlot()
    {
        const StateGuard guard;
        MessageDialogTemplate t;
        t.id = QStringLiteral("save-changes");
        t.buttons[0].text = QStringLiteral("Save");
        MessageDialogTemplate::registerTemplate(t);
        DialogDriver driver;
        driver.expect(t.id).clickSlot(1);
        t.exec();
    }

    void noCheckBox()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).toggleCheckBox();
        SaveChanges().exec();
    }

    void disabledButton()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).click(QStringLiteral("Save"));
        SaveChanges dialog;
        dialog.save->setEnabled(false);
        dialog.exec();
        QCOMPARE(dialog.clickedButton(), dialog.cancel);
    }

    void hiddenButton()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"))
            .run([](QMessageBox& box) { static_cast<SaveChanges&>(box).save->hide(); })
            .click(QStringLiteral("Save"));
        SaveChanges().exec();
    }

    void coveredButton()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"))
            .run([](QMessageBox& box) {
                auto* const curtain = new QWidget(&box);
                curtain->resize(box.size());
                curtain->show();
            })
            .click(QStringLiteral("Save"));
        SaveChanges().exec();
    }

    void closedBeforeItsAnswer()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"))
            .run([](QMessageBox& box) { box.done(0); })
            .click(QStringLiteral("Save"));
        SaveChanges().exec();
    }

    void destroyedBeforeItsAnswer()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"))
            .run([](QMessageBox& box) { delete &box; })
            .closeWindow();
        QPointer<SaveChanges> dialog(new SaveChanges);
        dialog->exec();
        QVERIFY(!dialog);
    }

    void throwingAnException()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"))
            .run([](QMessageBox&) { throw std::runtime_error("no such file"); })
            .click(QStringLiteral("Save"));
        SaveChanges dialog;
        dialog.exec();
        QCOMPARE(dialog.clickedButton(), dialog.cancel);
    }

    void throwingSomethingElse()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).run([](QMessageBox&) { throw 1; });
        SaveChanges dialog;
        dialog.exec();
        QCOMPARE(dialog.clickedButton(), dialog.cancel);
    }

    void driverEndedByItsAnswer()
    {
        auto driver = std::make_unique<DialogDriver>();
        driver->expect(QStringLiteral("save-changes")).run([&](QMessageBox&) { driver.reset(); });
        SaveChanges dialog;
        dialog.exec();
        QCOMPARE(dialog.clickedButton(), dialog.cancel);
    }

    void driverEndedByADismissal()
    {
        auto driver = std::make_unique<DialogDriver>(SourceLocation::current());
        SaveChanges dialog;
        connect(&dialog, &QDialog::finished, &dialog, [&] { driver.reset(); });
        dialog.exec();
        QVERIFY(!driver);
    }

    void negativeTimes()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).times(-1);
    }

    void noTimeOut()
    {
        DialogDriver driver;
        driver.setTimeout(0);
        QCOMPARE(driver.timeout(), 5000);
    }

    void openAfterItsAnswer()
    {
        DialogDriver driver;
        driver.setTimeout(timeout);
        driver.expect(QStringLiteral("save-changes")).click(QStringLiteral("Save"));
        Stubborn dialog(2); // a click hides it twice
        dialog.exec();
        QCOMPARE(dialog.clickedButton(), dialog.cancel);
    }

    void openDuringItsAnswer()
    {
        DialogDriver driver;
        driver.setTimeout(timeout);
        driver.expect(QStringLiteral("save-changes")).run([](QMessageBox& box) {
            QEventLoop loop;
            connect(&box, &QDialog::finished, &loop, &QEventLoop::quit);
            loop.exec();
        });
        SaveChanges().exec();
    }

    void openAfterEscape()
    {
        DialogDriver driver;
        driver.setTimeout(timeout);
        driver.expect(QString());
        QMessageBox box;
        box.addButton(QStringLiteral("One"), QMessageBox::AcceptRole);
        box.addButton(QStringLiteral("Two"), QMessageBox::AcceptRole);
        box.exec();
    }

    void unexpectedAndStubborn()
    {
        const DialogDriver driver;
        Stubborn(1000).exec();
    }

    void blockedByAnotherDialog()
    {
        DialogDriver driver;
        driver.setTimeout(timeout);
        driver.expect(QStringLiteral("save-changes")).click(QStringLiteral("Save"));
        SaveChanges dialog;
        dialog.setModal(false);
        QInputDialog other;
        other.setWindowTitle(QStringLiteral("Name"));
        dialog.show();
        QCOMPARE(other.exec(), int(QDialog::Rejected));
        QVERIFY(driver.wait()); // it is the other one that has been closed
        QCOMPARE(dialog.clickedButton(), dialog.save);
    }

    void openAtTheEnd()
    {
        SaveChanges dialog;
        {
            DialogDriver driver;
            driver.expect(QStringLiteral("save-changes")).click(QStringLiteral("Save"));
            dialog.open();
        }
        QVERIFY(!dialog.isVisible());
    }

    void openedByTheEndOfAnother()
    {
        SaveChanges dialog;
        QMessageBox next;
        next.setObjectName(QStringLiteral("next"));
        connect(&dialog, &QDialog::finished, &next, &QDialog::open);
        {
            DialogDriver driver;
            driver.expect(QStringLiteral("save-changes"));
            driver.expect(QStringLiteral("next"));
            dialog.open();
        }
        QVERIFY(!dialog.isVisible());
        QVERIFY(!next.isVisible());
    }

    void blockedBySheet()
    {
        QWidget window;
        QWidget otherWindow;
        window.show();
        otherWindow.show();
        QInputDialog sheet(&window);
        sheet.setWindowTitle(QStringLiteral("Name"));
        QInputDialog otherSheet(&otherWindow);
        otherSheet.setWindowTitle(QStringLiteral("Other name"));
        SaveChanges dialog;
        dialog.setParent(&window, dialog.windowFlags());
        dialog.setModal(false);
        {
            DialogDriver driver;
            driver.expect(QStringLiteral("save-changes"));
            dialog.show();
            sheet.open();
            otherSheet.open();
        }
        QVERIFY(!dialog.isVisible());
    }

    void blockedAtTheEnd()
    {
        SaveChanges dialog;
        dialog.setModal(false);
        QInputDialog other;
        other.setWindowTitle(QStringLiteral("Name"));
        {
            DialogDriver driver;
            driver.expect(QStringLiteral("save-changes"));
            dialog.show();
            other.setModal(true);
            other.show();
        }
        QVERIFY(!dialog.isVisible());
    }

    void preprocessorLeftBehind()
    {
        {
            const StateGuard guard;
            MessageDialogTemplatePreprocessors::add(QStringLiteral("mine"), keepPreprocessor);
        }
        MessageDialogTemplatePreprocessors::remove(QStringLiteral("mine"));
    }

    void preprocessorLost()
    {
        MessageDialogTemplatePreprocessors::add(QStringLiteral("mine"), keepPreprocessor);
        const StateGuard guard({QStringLiteral("mine")});
        MessageDialogTemplatePreprocessors::remove(QStringLiteral("mine"));
    }

    void allPreprocessorsLost()
    {
        MessageDialogTemplatePreprocessors::add(QStringLiteral("mine"), keepPreprocessor);
        const StateGuard guard;
        MessageDialogTemplatePreprocessors::remove(QStringLiteral("mine"));
    }

    void preprocessorNotAdded()
    {
        StateGuard guard;
        guard.addPreprocessor(QStringLiteral("mine"), {});
    }

    // These end the process.

    void askingForEver()
    {
        const DialogDriver driver;
        SaveChanges dialog;
        do
            dialog.exec();
        while (dialog.clickedButton() != dialog.save);
    }
};

int main(int argc, char** argv)
{
    if (argc == 2 && qstrcmp(argv[1], "no-application") == 0)
        const DialogDriver driver;
    QApplication application(argc, argv);
    if (argc == 2 && qstrcmp(argv[1], "no-framework") == 0) {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"));
        return 0;
    }
    TestFailing test;
    return QTest::qExec(&test, argc, argv);
}

#include "failing-dialogs.moc"
