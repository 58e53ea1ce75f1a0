// A QtTest program whose cases fail, each by one failure of the test kit; tst_DialogDriverFailures runs them
// one by one. With "no-framework" for its only argument a failure comes where no test runs.

#include <QuilletTesting/DialogDriver.h>
#include <QuilletTesting/StateGuard.h>

#include <Quillet/MessageDialog.h>

#include <QtTest/QtTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QInputDialog>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>

#include <memory>
#include <stdexcept>

using Quillet::MessageDialog;
using Quillet::MessageDialogTemplate;
using Quillet::MessageDialogTemplatePreprocessors;
using Quillet::Testing::DialogDriver;
using Quillet::Testing::DialogRecord;
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

struct MouseSwallower : QObject
{
    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        return event->type() == QEvent::MouseButtonPress;
    }
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
        dialog.setDetailedText(QStringLiteral("harbour.svg"));
        dialog.setCheckBox(new QCheckBox(QStringLiteral("Do not &ask again")));
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
        const QSignalSpy finished(&box, &QDialog::finished);
        QCOMPARE(box.exec(), int(QDialog::Rejected));
        QVERIFY(!box.clickedButton());
        QCOMPARE(finished.size(), 1);
    }

    void unexpectedAndDeafToEscape()
    {
        struct Deaf : SaveChanges
        {
            void keyPressEvent(QKeyEvent* /*event*/) override {}
        } dialog;
        const DialogDriver driver;
        dialog.exec();
        QCOMPARE(dialog.clickedButton(), dialog.cancel); // closing its window has pressed it
    }

    void unexpectedAgain()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"));
        driver.expect(QStringLiteral("save-changes")).withTitle(QStringLiteral("Changes")).times(0);
        SaveChanges dialog;
        dialog.exec();
        dialog.exec();
    }

    void unexpectedTwice()
    {
        const DialogDriver driver;
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

    void unexpectedAtTheEnd()
    {
        SaveChanges dialog;
        {
            const DialogDriver driver;
            dialog.open();
        }
        QVERIFY(!dialog.isVisible());
    }

    void unexpectedAndDestroyed()
    {
        const QTemporaryDir directory;
        DialogDriver driver;
        driver.setScreenshotDirectory(directory.path());
        SaveChanges().show();
    }

    void unexpectedAndDeletedByItsEnd()
    {
        DialogDriver driver;
        const QPointer<SaveChanges> dialog(new SaveChanges);
        connect(dialog, &QDialog::finished, dialog, [dialog] { delete dialog; });
        dialog->open();
        QVERIFY(driver.wait());
        QVERIFY(!dialog);
    }

    void unexpectedUnderAWindow()
    {
        const DialogDriver driver;
        QWindow other;
        other.setModality(Qt::ApplicationModal);
        other.show();
        SaveChanges dialog;
        dialog.setModal(false);
        dialog.show();
    }

    void unexpectedAndWaitedForUnderAWindow()
    {
        DialogDriver driver;
        driver.setTimeout(timeout);
        QWindow other;
        other.setModality(Qt::ApplicationModal);
        other.show();
        SaveChanges dialog;
        dialog.setModal(false);
        dialog.show();
        QVERIFY(!driver.wait());
        QVERIFY(!dialog.isVisible());
    }

    void unexpectedAndHiddenUnseen()
    {
        struct Swallower : QObject
        {
            bool eventFilter(QObject* watched, QEvent* event) override
            {
                return event->type() == QEvent::Hide && watched->inherits("QDialog");
            }
        } swallower;
        DialogDriver driver;
        SaveChanges dialog;
        dialog.show();
        qApp->installEventFilter(&swallower);
        dialog.hide();
        QVERIFY(driver.wait());
        qApp->removeEventFilter(&swallower);
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
            qputenv("QUILLET_TESTING_SCREENSHOTS",
                    QFile::encodeName(directory.filePath(QStringLiteral("pictures"))));
            DialogDriver driver;
            driver.expect(QStringLiteral("save-changes")).withTitle(QStringLiteral("Changes"));
            SaveChanges dialog;
            dialog.exec();
            file = driver.records().constFirst().screenshot;
        }
        qInfo().noquote() << "The file is" << file;
        QVERIFY(QImage(file).width() > 100);
        QCOMPARE(file, directory.filePath(QStringLiteral("pictures/save-changes-1.png")));
    }

    void severalScreenshots()
    {
        const QTemporaryDir directory;
        DialogDriver driver;
        driver.setTimeout(timeout);
        driver.setScreenshotDirectory(directory.path());
        driver.expect(QStringLiteral("a/b c"))
            .times(2)
            .withTitle(QStringLiteral("Changes"))
            .click(QStringLiteral("OK"));
        QMessageBox::about(nullptr, {}, {});
        QMessageBox box;
        box.setObjectName(QStringLiteral("a/b c"));
        box.exec();
        Stubborn dialog(2); // differs, and does not close at a click: one picture
        dialog.setId(QStringLiteral("a/b c"));
        dialog.save->setText(QStringLiteral("OK"));
        dialog.exec();
        QStringList files;
        const QVector<DialogRecord> records = driver.records();
        for (const DialogRecord& record : records)
            files.append(QFileInfo(record.screenshot).fileName());
        qInfo().noquote() << "The files are" << files.join(QLatin1Char(' '));
    }

    void screenshotsOfWhatHangs()
    {
        const QTemporaryDir directory;
        DialogDriver driver;
        driver.setTimeout(timeout);
        driver.setScreenshotDirectory(directory.path());
        driver.expect(QStringLiteral("save-changes")).click(QStringLiteral("Save"));
        Stubborn(2).exec();
        QInputDialog().exec();
    }

    void neverCame()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"));
    }

    void cameInsteadOfAnother()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).withTitle(QStringLiteral("Changes"));
        driver.expect(QStringLiteral("save-changes")).withTitle(QStringLiteral("Unsaved changes"));
        SaveChanges().exec();
        QMessageBox::about(nullptr, {}, {});
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

    void longTextDiffers()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"))
            .withInformativeText(
                QStringLiteral("They are lost otherwise, and nobody can bring them back to you."));
        SaveChanges dialog;
        dialog.setInformativeText(
            QStringLiteral("They are lost otherwise, and nobody can bring them back to me."));
        dialog.exec();
    }

    void standardButtonsDiffer()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"))
            .withText(QRegularExpression(QStringLiteral("^Sav[^e]")))
            .withDetailedText(QStringLiteral("details"))
            .withDefaultButton(QMessageBox::Save)
            .withPrimaryButton(QMessageBox::Save);
        driver.expect(QStringLiteral("plain"))
            .withDefaultButton(QMessageBox::Yes)
            .withPrimaryButton(QMessageBox::Yes);
        SaveChanges().exec();
        QMessageBox box;
        box.setObjectName(QStringLiteral("plain"));
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.exec();
    }

    void anotherBoxWithoutIdentifier()
    {
        DialogDriver driver;
        driver.expect(QString())
            .withTitle(QStringLiteral("Disk"))
            .withText(QRegularExpression(QStringLiteral("is full")))
            .click(QMessageBox::Yes);
        QCOMPARE(QMessageBox::question(nullptr, QStringLiteral("Disk"), QStringLiteral("Format it?")),
                 QMessageBox::StandardButton(QMessageBox::No));
    }

    void forbidden()
    {
        const SourceLocation elsewhere = SourceLocation::current();
        DialogDriver driver({elsewhere.file, 1});
        driver.expect(QStringLiteral("save-changes")).times(0);
        SaveChanges().exec();
    }

    void forbiddenBesideAnother()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).anyTimes();
        driver.expect(QStringLiteral("save-changes")).withText(QStringLiteral("Save the changes?")).times(0);
        SaveChanges dialog;
        dialog.exec();
        dialog.setText(QStringLiteral("Save?"));
        dialog.exec();
        QCOMPARE(driver.records().constLast().wasExpected, true);
    }

    void uncheckedAtTheEnd()
    {
        SaveChanges dialog;
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).withTitle(QStringLiteral("Changes"));
        dialog.open();
    }

    void noneOfTwoFits()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).withText(QStringLiteral("Save?"));
        driver.expect(QStringLiteral("save-changes")).withTitle(QStringLiteral("Changes"));
        SaveChanges().exec();
    }

    void noneFits()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"))
            .withTitle(QStringLiteral("Unsaved changes"))
            .withText(QStringLiteral("Save?"));
        driver.expect(QStringLiteral("save-changes")).withTitle(QStringLiteral("Changes")).anyTimes();
        SaveChanges().exec();
    }

    void noStandardButtonsExpected()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).withButtons(QMessageBox::NoButton);
        SaveChanges dialog;
        dialog.addButton(QMessageBox::RestoreDefaults);
        dialog.setDetailedText(QStringLiteral("harbour.svg"));
        dialog.exec();
    }

    void differsAndGoneAtOnce()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).withTitle(QStringLiteral("Changes")).waitUntilClosed();
        SaveChanges dialog;
        dialog.show();
        dialog.hide();
    }

    void destroyedBeforeItsChecks()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).withTitle(QStringLiteral("Changes")).waitUntilClosed();
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

    void noButtonAtAll()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).click(QMessageBox::NoButton);
        SaveChanges dialog;
        delete dialog.cancel;
        dialog.exec();
    }

    void clickWithoutEffect()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).click(QStringLiteral("Save"));
        SaveChanges dialog;
        MouseSwallower swallower;
        dialog.save->installEventFilter(&swallower);
        dialog.exec();
        QCOMPARE(dialog.clickedButton(), dialog.cancel);
    }

    void toggleWithoutEffect()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).toggleCheckBox().click(QStringLiteral("Save"));
        SaveChanges dialog;
        dialog.setCheckBox(new QCheckBox(QStringLiteral("Do not ask again")));
        MouseSwallower swallower;
        dialog.checkBox()->installEventFilter(&swallower);
        dialog.exec();
    }

    void noRole()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).click(QMessageBox::InvalidRole);
        SaveChanges().exec();
    }

    void roleBeyondTheLast()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).click(QMessageBox::NRoles);
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

    void slotOfAPlainBox()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).clickSlot(0);
        QMessageBox box;
        box.setObjectName(QStringLiteral("save-changes"));
        box.exec();
    }

    void emptySlot() { clickSlot(1); }
    void negativeSlot() { clickSlot(-1); }
    void slotBeyondTheLast() { clickSlot(4); }

    void slotWhoseButtonIsGone()
    {
        clickSlot(2, [](QMessageBox& box) {
            const QList<QAbstractButton*> buttons = box.buttons();
            for (QAbstractButton* button : buttons) {
                if (box.buttonRole(button) == QMessageBox::ActionRole)
                    delete button;
            }
        });
    }

    void noCheckBox()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).toggleCheckBox();
        SaveChanges().exec();
    }

    void disabledButton()
    {
        openForEver([](QMessageBox& box) { static_cast<SaveChanges&>(box).save->setEnabled(false); });
    }

    void hiddenButton()
    {
        openForEver([](QMessageBox& box) { static_cast<SaveChanges&>(box).save->hide(); });
    }

    void coveredButton()
    {
        openForEver([](QMessageBox& box) {
            auto* const curtain = new QWidget(&box);
            curtain->setObjectName(QStringLiteral("curtain"));
            curtain->resize(box.size());
            curtain->show();
        });
    }

    void coveredCheckBox()
    {
        DialogDriver driver;
        driver.setTimeout(timeout);
        driver.expect(QStringLiteral("save-changes")).toggleCheckBox();
        SaveChanges dialog;
        auto* const checkBox = new QCheckBox(QStringLiteral("Do not ask again"));
        dialog.setCheckBox(checkBox);
        checkBox->setEnabled(false);
        dialog.exec();
    }

    void buttonOutsideOfItsBox()
    {
        openForEver([](QMessageBox& box) { static_cast<SaveChanges&>(box).save->move(-1000, 0); });
    }

    void closedBeforeEscape()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"));
        SaveChanges dialog;
        dialog.show();
        dialog.hide();
    }

    void closedBeforeWhatFollowsWaiting()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"))
            .waitUntilClosed()
            .waitUntilClosed()
            .click(QStringLiteral("Save"));
        SaveChanges dialog;
        dialog.show();
        dialog.hide();
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

    void throwingAfterItHasComeAgain()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).run([](QMessageBox& box) {
            box.hide();
            box.show();
            throw std::runtime_error("no such file");
        });
        driver.expect(QStringLiteral("save-changes")).click(QStringLiteral("Save"));
        SaveChanges dialog;
        dialog.open();
        QVERIFY(driver.wait());
        QCOMPARE(dialog.clickedButton(), dialog.save);
    }

    void screenshotInAStrangeDirectory()
    {
        const QTemporaryDir directory;
        DialogDriver driver;
        driver.setScreenshotDirectory(directory.filePath(QStringLiteral("a%1b")));
        SaveChanges().exec();
        QVERIFY(QFile::exists(directory.filePath(QStringLiteral("a%1b/save-changes-1.png"))));
        qInfo().noquote() << "The files are there";
    }

    void throwingAfterItsEnd()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).run([](QMessageBox& box) {
            box.done(0);
            throw std::runtime_error("no such file");
        });
        SaveChanges().exec();
    }

    void throwingAfterTheDriversEnd()
    {
        auto driver = std::make_unique<DialogDriver>();
        driver->expect(QStringLiteral("save-changes")).run([&](QMessageBox&) {
            driver.reset();
            throw std::runtime_error("no such file");
        });
        SaveChanges().exec();
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

    void dialogThatWasOpenBefore()
    {
        QInputDialog dialog;
        dialog.setWindowTitle(QStringLiteral("Name"));
        dialog.show();
        DialogDriver driver;
        driver.setTimeout(timeout);
        dialog.exec(); // which shows nothing any more
    }

    void dialogOfAnotherKind()
    {
        DialogDriver driver;
        driver.setTimeout(timeout);
        driver.setScreenshotDirectory(QCoreApplication::applicationFilePath());
        QInputDialog dialog;
        dialog.setObjectName(QStringLiteral("name"));
        dialog.exec();
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

    void modelessAndOpenAfterItsAnswer()
    {
        DialogDriver driver;
        driver.setTimeout(timeout);
        driver.expect(QStringLiteral("save-changes")).click(QStringLiteral("Save"));
        Stubborn dialog(2);
        dialog.setModal(false);
        dialog.show();
        QVERIFY(!driver.wait());
        QVERIFY(!dialog.isVisible());
    }

    void openUnderADialogThatIsGivenUp()
    {
        struct Waiting : QMessageBox
        {
            QEventLoop loop;

            void setVisible(bool visible) override
            {
                if (!visible)
                    loop.exec();
                QMessageBox::setVisible(visible);
            }
        } inner;
        DialogDriver driver;
        driver.setTimeout(timeout);
        driver.expect(QStringLiteral("save-changes")).run([&](QMessageBox&) { inner.exec(); });
        SaveChanges dialog;
        connect(&dialog, &QDialog::finished, &inner.loop, &QEventLoop::quit);
        dialog.exec();
    }

    void openWithTooSmallAWindow()
    {
        openForEver([](QMessageBox& box) { box.windowHandle()->resize(10, 10); });
    }

    void openUnderADialogThatComesAndGoes()
    {
        DialogDriver driver;
        driver.setTimeout(timeout);
        driver.expect(QStringLiteral("save-changes")).click(QStringLiteral("Save"));
        Stubborn dialog(2);
        QInputDialog other;
        QTimer timer;
        connect(&timer, &QTimer::timeout, &other, [&] { other.setVisible(!other.isVisible()); });
        timer.start(timeout / 10);
        dialog.exec();
    }

    void openInTheTimeOfAnotherDriver()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).run([](QMessageBox& box) {
            DialogDriver other;
            other.setTimeout(timeout);
            QTRY_VERIFY_WITH_TIMEOUT(!box.isVisible(), 60000);
        });
        SaveChanges().exec();
    }

    void openBehindAMenu()
    {
        QMenu menu;
        menu.addAction(QStringLiteral("Copy"));
        openForEver([&](QMessageBox& box) { menu.popup(box.pos()); });
        QVERIFY(!menu.isVisible());
    }

    void openAsAPopup()
    {
        DialogDriver driver;
        driver.setTimeout(timeout);
        driver.expect(QStringLiteral("save-changes")).click(QStringLiteral("Save"));
        SaveChanges dialog;
        dialog.setWindowFlags(Qt::Popup);
        dialog.save->setEnabled(false);
        dialog.exec();
    }

    void openUnderAMenuThatEndsIt()
    {
        DialogDriver driver;
        driver.setTimeout(timeout);
        driver.expect(QStringLiteral("save-changes")).click(QStringLiteral("Save"));
        QMenu menu;
        menu.addAction(QStringLiteral("Copy"));
        QPointer<SaveChanges> dialog(new SaveChanges);
        connect(&menu, &QMenu::aboutToHide, &menu, [&] { delete dialog; });
        dialog->open();
        menu.popup(dialog->pos());
        QVERIFY(!driver.wait());
        QVERIFY(!dialog);
    }

    void openUnderAMenuThatEndsTheDriver()
    {
        auto driver = std::make_unique<DialogDriver>(SourceLocation::current());
        driver->setTimeout(timeout);
        driver->expect(QStringLiteral("save-changes")).click(QStringLiteral("Save"));
        QMenu menu;
        menu.addAction(QStringLiteral("Copy"));
        connect(&menu, &QMenu::aboutToHide, &menu, [&] { driver.reset(); });
        SaveChanges dialog;
        dialog.open();
        menu.popup(dialog.pos());
        QVERIFY(!driver->wait());
        QVERIFY(!driver);
    }

    void openBehindAStubbornPopup()
    {
        struct : QWidget
        {
            void closeEvent(QCloseEvent* event) override { event->ignore(); }
        } popup;
        popup.setWindowFlags(Qt::Popup);
        openForEver([&](QMessageBox&) { popup.show(); });
    }

    void openInsteadOfBeingClosedByItsApplication()
    {
        DialogDriver driver;
        driver.setTimeout(timeout);
        driver.expect(QStringLiteral("save-changes")).waitUntilClosed();
        SaveChanges().exec();
    }

    void openWithAnotherText()
    {
        openForEver([](QMessageBox& box) {
            box.setText(QStringLiteral("Save?"));
            static_cast<SaveChanges&>(box).save->setEnabled(false);
        });
    }

    void openWithoutBeingActive()
    {
        DialogDriver driver;
        driver.setTimeout(timeout);
        QWidget other;
        driver.expect(QStringLiteral("save-changes"))
            .run([&](QMessageBox& box) {
                box.windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus);
                other.show();
                other.activateWindow();
                QTRY_COMPARE(QGuiApplication::focusWindow(), other.windowHandle());
                QTimer::singleShot(50, &other, [&] { other.resize(other.size() * 2); });
            })
            .pressKey(Qt::Key_Return);
        SaveChanges dialog;
        dialog.setModal(false);
        dialog.show();
        QVERIFY(!driver.wait());
    }

    void openUnderAWindow()
    {
        QWindow other;
        other.setModality(Qt::ApplicationModal);
        QInputDialog hidden;
        hidden.setModal(true);
        QWidget plain;
        plain.show();
        openForEver([&](QMessageBox&) { other.show(); });
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
        QCOMPARE(other.exec(), int(QDialog::Rejected)); // it has been closed
        QVERIFY(driver.wait());
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
        const bool isAdded = guard.addPreprocessor(QStringLiteral("mine"), {});
        QVERIFY(!isAdded);
    }

private:
    // With three buttons, of the slots 0, 2 and 3; the last two look alike.
    static void clickSlot(
        int slot, const std::function<void(QMessageBox&)>& before = [](QMessageBox&) {})
    {
        const StateGuard guard;
        MessageDialogTemplate t;
        t.id = QStringLiteral("save-changes");
        t.buttons[0] = {QStringLiteral("Save"), QMessageBox::AcceptRole, false, true, {}};
        t.buttons[2] = {QStringLiteral("Copy"), QMessageBox::ActionRole, false, false, {}};
        t.buttons[3] = {QStringLiteral("Copy"), QMessageBox::HelpRole, false, false, {}};
        MessageDialogTemplate::registerTemplate(t);
        DialogDriver driver;
        driver.expect(t.id).run(before).clickSlot(slot);
        t.exec();
    }

    // With a click on a button that \a code has put out of reach.
    static void openForEver(const std::function<void(QMessageBox&)>& code)
    {
        DialogDriver driver;
        driver.setTimeout(timeout);
        driver.expect(QStringLiteral("save-changes")).run(code).click(QStringLiteral("Save"));
        SaveChanges().exec();
    }

private Q_SLOTS:
    // These end the process.

    void endingForEver()
    {
        DialogDriver driver;
        driver.setTimeout(20);
        driver.expect(QStringLiteral("never"));
        QInputDialog dialog;
        for (int i = 0; i < 19; ++i)
            dialog.exec();
        driver.wait();
        dialog.exec();
    }

    void askingForEverByAnotherKind()
    {
        DialogDriver driver;
        driver.setTimeout(20);
        QInputDialog dialog;
        while (dialog.exec() != QDialog::Accepted) {
        }
    }

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
