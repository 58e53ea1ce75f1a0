#include "TemplateTestCase.h"

#include <QuilletTesting/DialogDriver.h>
#include <QuilletTesting/Labels.h>

#include <Quillet/MessageDialog.h>

#include <QtCore/QEventLoop>
#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QInputDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>

#include <memory>

using Quillet::MessageDialog;
using Quillet::MessageDialogTemplate;
using Quillet::Testing::DialogDriver;
using Quillet::Testing::DialogExpectation;
using Quillet::Testing::DialogRecord;
using Quillet::Testing::labelOf;
using Quillet::Testing::SourceLocation;

namespace {

using Instruct = std::function<void(DialogExpectation&)>;
using Show = std::function<QString()>;

QString identifier()
{
    return QStringLiteral("save-changes");
}

void addButtons(QMessageBox& box)
{
    box.setDefaultButton(box.addButton(QStringLiteral("&Save"), QMessageBox::AcceptRole));
    box.addButton(QStringLiteral("&Discard"), QMessageBox::DestructiveRole);
    box.addButton(QMessageBox::Cancel);
}

QString clickedButtonOf(const QMessageBox& box)
{
    return box.clickedButton() ? box.clickedButton()->text().remove(QLatin1Char('&')) : QString();
}

// Each of these shows a box with the identifier and the three buttons, and returns the clicked one's text.

QString execDialog()
{
    MessageDialog dialog(
        QStringLiteral("Unsaved changes"), QStringLiteral("Save the changes?"), QMessageBox::Question);
    dialog.setId(identifier());
    addButtons(dialog);
    dialog.exec();
    return clickedButtonOf(dialog);
}

QString execPlainBox()
{
    QMessageBox box;
    box.setObjectName(identifier());
    addButtons(box);
    box.exec();
    return clickedButtonOf(box);
}

QString execTemplate()
{
    QStringList journal;
    const MessageDialogTemplate t = saveChanges(journal);
    MessageDialogTemplate::registerTemplate(t);
    t.exec();
    return journal.join(QLatin1Char(','));
}

// Runs a box with only this identifier, and buttons as QMessageBox chooses them.
void execBoxCalled(const QString& id)
{
    MessageDialog dialog;
    dialog.setId(id);
    dialog.exec();
}

} // namespace

Q_DECLARE_METATYPE(Instruct)
Q_DECLARE_METATYPE(Show)
Q_DECLARE_METATYPE(QMessageBox::ButtonRole)

/// What a driver does where nothing fails; tst_DialogDriverFailures is for the rest.
class TestDialogDriver : public TemplateTestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Answers

    void aBoxIsAnsweredAsTold_data()
    {
        QTest::addColumn<Show>("show");
        QTest::addColumn<Instruct>("instruct");
        QTest::addColumn<QString>("clicked");
        const QVector<QPair<const char*, Show>> ways = {
            {"MessageDialog", execDialog}, {"QMessageBox", execPlainBox}, {"template", execTemplate}};
        const QString save = QStringLiteral("Save");
        const QString discard = QStringLiteral("Discard");
        const QString cancel = QStringLiteral("Cancel");
        const QVector<std::tuple<const char*, Instruct, QString>> answers = {
            {"text", [=](auto& box) { box.click(discard); }, discard},
            {"role", [](auto& box) { box.click(QMessageBox::DestructiveRole); }, discard},
            {"Escape", [](auto& box) { box.pressEscape(); }, cancel},
            {"no answer", [](auto&) {}, cancel},
            {"closing the window", [](auto& box) { box.closeWindow(); }, cancel},
            {"Return", [](auto& box) { box.pressKey(Qt::Key_Return); }, save},
            {"a mnemonic", [](auto& box) { box.pressKey(Qt::Key_D, Qt::AltModifier); }, discard},
            {"two keys",
             [](auto& box) { box.pressKey(Qt::Key_Tab).pressKey(Qt::Key_Backtab).pressKey(Qt::Key_Space); },
             save},
            {"code",
             [=](auto& box) { box.run([=](QMessageBox& it) { buttonOf(it, discard)->click(); }); },
             discard},
        };
        for (const auto& [way, show] : ways) {
            for (const auto& [answer, instruct, clicked] : answers)
                QTest::addRow("%s, %s", way, answer) << show << instruct << clicked;
        }
    }

    void aBoxIsAnsweredAsTold()
    {
        QFETCH(const Show, show);
        QFETCH(const Instruct, instruct);
        DialogDriver driver;
        instruct(driver.expect(identifier()));
        QTEST(show(), "clicked");
        QVERIFY(driver.verify());
    }

    void aStandardButtonIsClickedByItsValue()
    {
        DialogDriver driver;
        driver.expect(QString()).click(QMessageBox::Discard);
        QCOMPARE(QMessageBox::question(nullptr, {}, {}, QMessageBox::Save | QMessageBox::Discard),
                 QMessageBox::Discard);
    }

    void aSlotsButtonIsClickedByItsNumber_data()
    {
        QTest::addColumn<int>("slot");
        QTest::addColumn<QString>("clicked");
        QTest::newRow("first") << 0 << QStringLiteral("Save");
        QTest::newRow("after an empty one") << 3 << QStringLiteral("Cancel");
    }

    void aSlotsButtonIsClickedByItsNumber()
    {
        QFETCH(const int, slot);
        DialogDriver driver;
        driver.expect(identifier()).clickSlot(slot);
        QTEST(execTemplate(), "clicked");
    }

    void slotsThatLookAlikeAreToldApart()
    {
        int clicked = -1;
        MessageDialogTemplate t;
        t.id = identifier();
        for (const int i : {0, 1, 3})
            t.buttons[std::size_t(i)] = {
                QStringLiteral("&Go"), QMessageBox::ActionRole, false, false, [&clicked, i] { clicked = i; }};
        MessageDialogTemplate::registerTemplate(t);
        for (const int i : {0, 1, 3}) {
            DialogDriver driver;
            driver.expect(identifier()).clickSlot(i);
            t.exec();
            QCOMPARE(clicked, i);
        }
    }

    void aSlotIsFoundWhatPreprocessorsHaveMadeOfIt()
    {
        const ScopedPreprocessor german(QStringLiteral("german"), [](MessageDialogTemplate& t) {
            t.buttons[0].text = QStringLiteral("Speichern");
        });
        DialogDriver driver;
        driver.expect(identifier()).clickSlot(0);
        QCOMPARE(execTemplate(), QStringLiteral("Save"));
    }

    void theCheckBoxIsToggledBeforeTheAnswer()
    {
        DialogDriver driver;
        driver.expect(identifier()).toggleCheckBox().click(QMessageBox::Ok);
        driver.expect(identifier()).toggleCheckBox();
        QMessageBox box;
        box.setObjectName(identifier());
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        box.setCheckBox(new QCheckBox(QStringLiteral("Do not ask again")));
        QCOMPARE(box.exec(), int(QMessageBox::Ok));
        QVERIFY(box.checkBox()->isChecked());
        QCOMPARE(box.exec(), int(QMessageBox::Cancel)); // Escape, since nothing else was said
        QVERIFY(!box.checkBox()->isChecked());
    }

    void aButtonThatDoesNotCloseTheBoxIsOneAnswerOfSeveral()
    {
        DialogDriver driver;
        bool isShown = false;
        driver.expect(identifier())
            .click(QStringLiteral("Show Details..."))
            .run([&](QMessageBox& box) { isShown = buttonOf(box, QStringLiteral("Hide Details...")); })
            .click(QStringLiteral("OK"));
        QMessageBox box(QMessageBox::NoIcon, {}, QStringLiteral("text"), QMessageBox::Ok);
        box.setObjectName(identifier());
        box.setDetailedText(QStringLiteral("details"));
        QCOMPARE(box.exec(), int(QMessageBox::Ok));
        QVERIFY(isShown);
    }

    void anAnswerWaitsForTheEndOfTheOneBefore()
    {
        DialogDriver driver;
        bool wasOpen = false;
        driver.expect(identifier())
            .run([&](QMessageBox& box) {
                QEventLoop loop;
                QTimer::singleShot(0, &loop, [&] { QTimer::singleShot(0, &loop, &QEventLoop::quit); });
                loop.exec();
                wasOpen = box.isVisible();
            })
            .click(QStringLiteral("Discard"));
        QCOMPARE(execDialog(), QStringLiteral("Discard"));
        QVERIFY(wasOpen);
    }

    void noModifierStaysDownAfterAKeyThatClosesItsBox()
    {
        DialogDriver driver;
        driver.expect(identifier()).pressKey(Qt::Key_D, Qt::AltModifier);
        QCOMPARE(execDialog(), QStringLiteral("Discard"));
        QCOMPARE(QGuiApplication::keyboardModifiers(), Qt::KeyboardModifiers());
    }

    void aKeyIsPressedWithItsModifiersAndText()
    {
        struct Recorder : QObject
        {
            QStringList keys;

            bool eventFilter(QObject* watched, QEvent* event) override
            {
                if (watched->isWindowType()
                    && (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease)) {
                    const auto& key = static_cast<QKeyEvent&>(*event);
                    keys.append(QStringLiteral("%1 %2 %3 %4")
                                    .arg(event->type() == QEvent::KeyPress ? QStringLiteral("press")
                                                                           : QStringLiteral("release"))
                                    .arg(key.key(), 0, 16)
                                    .arg(int(key.modifiers()), 0, 16)
                                    .arg(key.text()));
                }
                return false;
            }
        } recorder;
        DialogDriver driver;
        driver.expect(QString())
            .pressKey(Qt::Key_J, Qt::ControlModifier | Qt::MetaModifier)
            .pressKey(Qt::Key_J, Qt::ShiftModifier)
            .pressEscape();
        qApp->installEventFilter(&recorder);
        QMessageBox().exec();
        recorder.keys = recorder.keys.mid(0, 8);
        QCOMPARE(recorder.keys,
                 QStringList({QStringLiteral("press 1000021 4000000 "),
                              QStringLiteral("press 1000022 14000000 "),
                              QStringLiteral("press 4a 14000000 j"),
                              QStringLiteral("release 4a 14000000 j"),
                              QStringLiteral("release 1000022 14000000 "),
                              QStringLiteral("release 1000021 4000000 "),
                              QStringLiteral("press 1000020 2000000 "),
                              QStringLiteral("press 4a 2000000 J")}));
    }

    void aBoxMayVanishAtTheFirstKeyOfSeveral()
    {
        DialogDriver driver;
        driver.expect(identifier()).pressKey(Qt::Key_D, Qt::AltModifier);
        const QPointer<MessageDialog> dialog(new MessageDialog);
        dialog->setId(identifier());
        addButtons(*dialog);
        dialog->open();
        struct Deleter : QObject
        {
            QPointer<MessageDialog> dialog;

            bool eventFilter(QObject*, QEvent* event) override
            {
                if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent&>(*event).key() == Qt::Key_Alt
                    && dialog) {
                    delete dialog;
                    return true;
                }
                return false;
            }
        } deleter;
        deleter.dialog = dialog;
        qApp->installEventFilter(&deleter);
        QVERIFY(driver.wait());
        QVERIFY(!dialog);
        QCOMPARE(QGuiApplication::keyboardModifiers(), Qt::KeyboardModifiers());
    }

    void aKeyWaitsUntilItsBoxIsActiveAgain()
    {
        DialogDriver driver;
        driver.expect(identifier()).pressKey(Qt::Key_D, Qt::AltModifier);
        QWidget window;
        window.show();
        MessageDialog dialog;
        dialog.setId(identifier());
        addButtons(dialog);
        dialog.setModal(false);
        dialog.show();
        QTimer::singleShot(0, &window, &QWidget::activateWindow);
        QVERIFY(driver.wait());
        QCOMPARE(clickedButtonOf(dialog), QStringLiteral("Discard"));
    }

    void aPopupOfTheBoxIsNotInItsWay_data()
    {
        QTest::addColumn<bool>("isBox");
        QTest::newRow("the box") << true;
        QTest::newRow("of a list in it") << false;
    }

    void aPopupOfTheBoxIsNotInItsWay()
    {
        QFETCH(const bool, isBox);
        DialogDriver driver;
        MessageDialog dialog;
        dialog.setId(identifier());
        addButtons(dialog);
        auto& expectation = driver.expect(identifier());
        if (isBox) {
            dialog.setWindowFlags(Qt::Popup);
        } else {
            auto* const list = new QComboBox(&dialog);
            list->addItems({QStringLiteral("a"), QStringLiteral("b")});
            expectation.run([=](QMessageBox&) { list->showPopup(); });
        }
        expectation.click(QStringLiteral("Save"));
        dialog.exec();
        QCOMPARE(clickedButtonOf(dialog), QStringLiteral("Save"));
    }

    void aButtonMayHaveChildren()
    {
        DialogDriver driver;
        driver.expect(identifier())
            .run([](QMessageBox& box) {
                QAbstractButton* const save = buttonOf(box, QStringLiteral("Save"));
                auto* const label = new QLabel(QStringLiteral("S"), save);
                label->resize(save->size());
                label->show();
            })
            .click(QStringLiteral("Save"));
        QCOMPARE(execDialog(), QStringLiteral("Save"));
    }

    void aBoxMayBeSmallerByOnePixelThanItIsToBe()
    {
        if (QGuiApplication::platformName() != QLatin1String("offscreen"))
            return; // a window manager makes no window smaller than it may be, but by rounding
        DialogDriver driver;
        driver.expect(identifier())
            .run([](QMessageBox& box) {
                const QSize size = box.size() - QSize(1, 1);
                box.windowHandle()->resize(size);
                QTRY_COMPARE(box.size(), size);
            })
            .click(QStringLiteral("Save"));
        QCOMPARE(execDialog(), QStringLiteral("Save"));
    }

    void workBeforeTheAnswerDoesNotCountAsTimeOut()
    {
        DialogDriver driver;
        driver.setTimeout(100);
        driver.expect(identifier()).click(QStringLiteral("Save"));
        MessageDialog dialog;
        dialog.setId(identifier());
        addButtons(dialog);
        dialog.open();
        QThread::msleep(250);
        QCoreApplication::processEvents();
        driver.setTimeout(5000); // as the answer itself may take its time
        QVERIFY(driver.wait());
        QCOMPARE(clickedButtonOf(dialog), QStringLiteral("Save"));
    }

    void anAnswerWaitsUntilAllOfTheBoxIsThere()
    {
        if (QGuiApplication::platformName() != QLatin1String("offscreen"))
            return; // a window manager makes no window smaller than it may be
        DialogDriver driver;
        bool wasSmall = false;
        driver.expect(identifier())
            .run([&](QMessageBox& box) {
                const QSize size = box.size();
                box.windowHandle()->resize(size / 2);
                QTRY_COMPARE(box.size(), size / 2);
                QTimer::singleShot(50, &box, [&box, &wasSmall, size] {
                    wasSmall = box.size() == size / 2;
                    box.windowHandle()->resize(size);
                });
            })
            .click(QStringLiteral("Save"));
        QCOMPARE(execDialog(), QStringLiteral("Save"));
        QVERIFY(wasSmall);
    }

    void aClickWaitsUntilItsButtonCanBeClicked_data()
    {
        QTest::addColumn<Instruct>("instruct");
        QTest::newRow("enabled") << Instruct([](auto& box) {
            box.run([](QMessageBox& it) {
                QAbstractButton* const save = buttonOf(it, QStringLiteral("Save"));
                save->setEnabled(false);
                QTimer::singleShot(50, save, [save] { save->setEnabled(true); });
            });
        });
        QTest::newRow("shown") << Instruct([](auto& box) {
            box.run([](QMessageBox& it) {
                QAbstractButton* const save = buttonOf(it, QStringLiteral("Save"));
                save->hide();
                QTimer::singleShot(50, save, &QWidget::show);
            });
        });
        QTest::newRow("uncovered") << Instruct([](auto& box) {
            box.run([](QMessageBox& it) {
                auto* const curtain = new QWidget(&it);
                curtain->resize(it.size());
                curtain->show();
                QTimer::singleShot(50, curtain, &QWidget::lower);
            });
        });
        QTest::newRow("not behind a menu") << Instruct([](auto& box) {
            box.run([](QMessageBox& it) {
                auto* const menu = new QMenu;
                menu->setAttribute(Qt::WA_DeleteOnClose);
                menu->addAction(QStringLiteral("Copy"));
                menu->popup(it.pos());
                QTimer::singleShot(50, menu, &QWidget::close);
            });
        });
    }

    void aClickWaitsUntilItsButtonCanBeClicked()
    {
        QFETCH(const Instruct, instruct);
        DialogDriver driver;
        auto& expectation = driver.expect(identifier());
        instruct(expectation);
        expectation.click(QStringLiteral("Save"));
        QCOMPARE(execDialog(), QStringLiteral("Save"));
        QVERIFY(driver.verify());
    }

    void aBoxThatItsApplicationClosesIsLeftToIt()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("notice")).withText(QStringLiteral("Publishing")).waitUntilClosed();
        driver.expect(QStringLiteral("notice")).waitUntilClosed(); // this one is gone at once
        driver.expect(identifier()).click(QStringLiteral("Save"));
        QMessageBox notice(QMessageBox::NoIcon, {}, QStringLiteral("Publishing"), QMessageBox::Cancel);
        notice.setObjectName(QStringLiteral("notice"));
        notice.setModal(false);
        notice.show();
        QCOMPARE(execDialog(),
                 QStringLiteral("Save")); // answered though it lies under the notice or above it
        QVERIFY(notice.isVisible());
        QTimer::singleShot(50, &notice, &QWidget::hide);
        QTRY_VERIFY(!notice.isVisible());
        QVERIFY(!notice.clickedButton());
        notice.show();
        notice.hide();
        QVERIFY(driver.wait());
    }

    void aMnemonicReachesABoxThatIsShownAgain()
    {
        DialogDriver driver;
        driver.expect(identifier()).times(2).pressKey(Qt::Key_D, Qt::AltModifier);
        QMessageBox box;
        box.setObjectName(identifier());
        addButtons(box);
        for (int i = 0; i < 2; ++i) {
            box.exec();
            QCOMPARE(clickedButtonOf(box), QStringLiteral("Discard"));
        }
    }

    // Ways to show

    void aBoxOpenedWithoutBlockingIsAnsweredWhileTheTestWaits_data()
    {
        QTest::addColumn<bool>("isModal");
        QTest::newRow("open()") << true;
        QTest::newRow("show()") << false;
    }

    void aBoxOpenedWithoutBlockingIsAnsweredWhileTheTestWaits()
    {
        QFETCH(const bool, isModal);
        DialogDriver driver;
        driver.expect(identifier()).click(QStringLiteral("Discard"));
        MessageDialog dialog;
        dialog.setId(identifier());
        addButtons(dialog);
        if (isModal)
            dialog.open();
        else
            dialog.show();
        QVERIFY(dialog.isVisible());
        QVERIFY(driver.wait());
        QCOMPARE(clickedButtonOf(dialog), QStringLiteral("Discard"));
    }

    void waitingIsAlsoForABoxThatComesLater()
    {
        DialogDriver driver;
        driver.expect(identifier()).click(QStringLiteral("Save"));
        QString clicked;
        QTimer::singleShot(0, this, [&] { clicked = execDialog(); });
        QVERIFY(driver.wait());
        QTRY_COMPARE(clicked, QStringLiteral("Save"));
    }

    void escapeFollowsCodeThatLeavesTheBoxOpen()
    {
        DialogDriver driver;
        driver.expect(identifier()).run([](QMessageBox&) {});
        QCOMPARE(execDialog(), QStringLiteral("Cancel"));
        QVERIFY(driver.verify());
    }

    void eachStepHasTheTimeOutForItself()
    {
        DialogDriver driver;
        driver.setTimeout(1000);
        const auto work = [](QMessageBox&) { QTest::qWait(400); };
        driver.expect(identifier()).run(work).run(work).run(work).run(work).click(QStringLiteral("Save"));
        QCOMPARE(execDialog(), QStringLiteral("Save"));
    }

    void eachBoxHasTheTimeOutForItselfWhileTheTestWaits()
    {
        DialogDriver driver;
        driver.setTimeout(1000);
        driver.expect(identifier()).times(4);
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [] { execBoxCalled(identifier()); });
        timer.start(400);
        QVERIFY(driver.wait());
    }

    void eachNoticeHasTheTimeOutForItself()
    {
        DialogDriver driver;
        driver.setTimeout(1000);
        driver.expect(QString()).times(4).waitUntilClosed();
        QMessageBox notice;
        QTimer timer;
        connect(&timer, &QTimer::timeout, &notice, [&] { notice.setVisible(!notice.isVisible()); });
        timer.start(300);
        QVERIFY(driver.wait());
        timer.stop();
    }

    void aModelessBoxIsAnsweredWhileAnotherIsBusy()
    {
        DialogDriver driver;
        MessageDialog lower;
        MessageDialog upper;
        lower.setId(QStringLiteral("lower"));
        upper.setId(QStringLiteral("upper"));
        driver.expect(QStringLiteral("lower"));
        driver.expect(QStringLiteral("upper")).run([&](QMessageBox&) { QTRY_VERIFY(!lower.isVisible()); });
        lower.setModal(false);
        upper.setModal(false);
        lower.show();
        upper.show();
        QVERIFY(driver.wait());
    }

    void severalModelessBoxesAreAllAnswered()
    {
        DialogDriver driver;
        MessageDialog a;
        MessageDialog b;
        a.setId(QStringLiteral("a"));
        b.setId(QStringLiteral("b"));
        driver.expect(QStringLiteral("a"));
        driver.expect(QStringLiteral("b"));
        a.show();
        b.show();
        QVERIFY(driver.wait());
        QVERIFY(!a.isVisible() && !b.isVisible());
    }

    void aBoxShownAgainIsAnotherOne()
    {
        DialogDriver driver;
        driver.expect(identifier()).withIcon(QMessageBox::Warning).click(QMessageBox::Yes);
        driver.expect(identifier()).withIcon(QMessageBox::Warning).click(QMessageBox::No);
        MessageDialog dialog(QString(), QString(), QMessageBox::Warning);
        dialog.setId(identifier());
        dialog.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        QCOMPARE(dialog.exec(), int(QMessageBox::Yes));
        QCOMPARE(dialog.exec(), int(QMessageBox::No));
        QCOMPARE(driver.records().size(), 2);
    }

    void aDialogThatIsNoMessageBoxIsLeftAlone_data()
    {
        QTest::addColumn<bool>("isModal");
        QTest::newRow("modal") << true;
        QTest::newRow("modeless") << false;
    }

    void aDialogThatIsNoMessageBoxIsLeftAlone()
    {
        QFETCH(const bool, isModal);
        DialogDriver driver;
        QInputDialog dialog;
        dialog.setModal(isModal);
        dialog.show();
        QVERIFY(driver.wait());
        QVERIFY(dialog.isVisible());
        QCOMPARE(driver.identifiers(), QStringList());
    }

    void aModelessDialogOfAnotherKindHasNoTimeOut()
    {
        DialogDriver driver;
        driver.setTimeout(20);
        QInputDialog dialog;
        dialog.setModal(false);
        dialog.show();
        QTest::qWait(200);
        QVERIFY(dialog.isVisible());
    }

    void aBoxThatIsNoWindowIsLeftAlone()
    {
        DialogDriver driver;
        QWidget window;
        QMessageBox box(&window);
        box.setWindowFlags(Qt::Widget);
        window.show();
        box.show();
        QVERIFY(driver.wait());
        QVERIFY(box.isVisible());
        QCOMPARE(driver.identifiers(), QStringList());
    }

    void aBoxThatIsGoneAtOnceHasCome()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("hidden")).waitUntilClosed();
        driver.expect(QString()).waitUntilClosed();
        MessageDialog hidden;
        hidden.setId(QStringLiteral("hidden"));
        hidden.show();
        hidden.hide();
        MessageDialog().show();
        QVERIFY(driver.verify());
    }

    void aBoxThatTheWindowSystemHidesForAWhileHasComeOnce()
    {
        DialogDriver driver;
        driver.expect(identifier())
            .run([](QMessageBox& box) {
                QHideEvent hide;
                QShowEvent show;
                for (QEvent* event : {static_cast<QEvent*>(&hide), static_cast<QEvent*>(&show)}) {
                    QSpontaneKeyEvent::setSpontaneous(event);
                    QApplication::instance()->notify(&box, event);
                }
            })
            .click(QStringLiteral("Save"));
        QCOMPARE(execDialog(), QStringLiteral("Save"));
        QCOMPARE(driver.identifiers(), QStringList(identifier()));
    }

    void aBoxWhoseHidingIsSwallowedIsForgottenWhenItIsDestroyed()
    {
        struct Swallower : QObject
        {
            bool eventFilter(QObject* watched, QEvent* event) override
            {
                return event->type() == QEvent::Hide && watched->inherits("QDialog");
            }
        } swallower;
        DialogDriver driver;
        driver.expect(identifier()).waitUntilClosed();
        auto dialog = std::make_unique<MessageDialog>();
        dialog->setId(identifier());
        dialog->show();
        qApp->installEventFilter(&swallower);
        dialog->hide();
        dialog->show();
        dialog.reset();
        qApp->removeEventFilter(&swallower);
        QMessageBox other;
        driver.expect(QString()).waitUntilClosed();
        other.show();
        other.hide();
        QInputDialog input;
        input.open();
        input.hide();
        QVERIFY(driver.wait());
        QCOMPARE(driver.identifiers(), QStringList({identifier(), QString()}));
    }

    // Order and nesting

    void expectationsAreMetInAnyOrder()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("a"));
        driver.expect(QStringLiteral("b"));
        driver.expect(QStringLiteral("c"));
        const QStringList order = {QStringLiteral("c"), QStringLiteral("a"), QStringLiteral("b")};
        for (const QString& each : order)
            execBoxCalled(each);
        QCOMPARE(driver.identifiers(), order);
        QVERIFY(driver.verify());
    }

    void expectationsOfOneIdentifierAreToldApartByTitleAndText()
    {
        DialogDriver driver;
        driver.expect(QString()).withTitle(QStringLiteral("B")).click(QMessageBox::No);
        driver.expect(QString()).withText(QStringLiteral("A")).click(QMessageBox::Yes);
        QCOMPARE(QMessageBox::question(nullptr, {}, QStringLiteral("A")), QMessageBox::Yes);
        QCOMPARE(QMessageBox::question(nullptr, QStringLiteral("B"), {}), QMessageBox::No);
    }

    void boxesAreToldApartByAPartOfTheirText()
    {
        DialogDriver driver;
        driver.expect(QString())
            .withText(QRegularExpression(QStringLiteral("^Replace ")))
            .click(QMessageBox::No);
        driver.expect(QString()).withText(QRegularExpression(QStringLiteral("full"))).click(QMessageBox::Yes);
        QCOMPARE(QMessageBox::question(nullptr, {}, QStringLiteral("The disk is full. Go on?")),
                 QMessageBox::Yes);
        QCOMPARE(QMessageBox::question(nullptr, {}, QStringLiteral("Replace harbour.svg?")), QMessageBox::No);
    }

    void anExpectationThatIsOwedIsMetBeforeOneThatIsNot()
    {
        DialogDriver driver;
        driver.expect(identifier()).anyTimes().click(QStringLiteral("Discard"));
        driver.expect(identifier()).click(QStringLiteral("Save"));
        QCOMPARE(execDialog(), QStringLiteral("Save"));
        QCOMPARE(execDialog(), QStringLiteral("Discard"));
        QVERIFY(driver.verify());
    }

    void anExpectationThatSaysMoreIsMetBeforeOneThatSaysLess()
    {
        DialogDriver driver;
        driver.expect(identifier()).click(QStringLiteral("Save"));
        driver.expect(identifier())
            .withTitle(QStringLiteral("Unsaved changes"))
            .anyTimes()
            .click(QStringLiteral("Discard"));
        QCOMPARE(execDialog(), QStringLiteral("Discard"));
        QCOMPARE(execPlainBox(), QStringLiteral("Save"));
    }

    void expectationsThatAreAlikeAreMetInTheirOrder()
    {
        DialogDriver driver;
        driver.expect(identifier()).click(QStringLiteral("Save"));
        driver.expect(identifier()).click(QStringLiteral("Discard"));
        QCOMPARE(execDialog(), QStringLiteral("Save"));
        QCOMPARE(execDialog(), QStringLiteral("Discard"));
    }

    void oneExpectationMayStandForSeveralShows()
    {
        DialogDriver driver;
        driver.expect(identifier()).times(2).click(QStringLiteral("Discard"));
        driver.expect(QStringLiteral("never")).anyTimes();
        driver.expect(QStringLiteral("often")).anyTimes();
        driver.expect(QStringLiteral("not at all")).times(0);
        QCOMPARE(execDialog(), QStringLiteral("Discard"));
        QCOMPARE(execDialog(), QStringLiteral("Discard"));
        for (int i = 0; i < 20; ++i)
            execBoxCalled(QStringLiteral("often"));
        QVERIFY(driver.verify());
    }

    void aBoxInAnActionOfAnotherIsAnswered()
    {
        QString inner;
        MessageDialogTemplate t;
        t.id = QStringLiteral("outer");
        t.buttons[0] = {
            QStringLiteral("Go"), QMessageBox::AcceptRole, false, false, [&] { inner = execDialog(); }};
        DialogDriver driver;
        driver.expect(QStringLiteral("outer")).click(QStringLiteral("Go"));
        driver.expect(identifier()).click(QStringLiteral("Save"));
        QCOMPARE(t.exec(), QMessageBox::AcceptRole);
        QCOMPARE(inner, QStringLiteral("Save"));
    }

    void aBoxInsideTheLoopOfAnotherIsAnsweredFirst_data()
    {
        QTest::addColumn<QString>("by");
        for (const char* by : {"click", "timer", "run"})
            QTest::addRow("%s", by) << QString::fromLatin1(by);
    }

    void aBoxInsideTheLoopOfAnotherIsAnsweredFirst()
    {
        QFETCH(const QString, by);
        QStringList order;
        MessageDialog outer;
        outer.setId(QStringLiteral("outer"));
        auto* const go = outer.addButton(QStringLiteral("Go"), QMessageBox::AcceptRole);
        const auto openInner = [&] { order.append(execDialog()); };
        DialogDriver driver;
        auto& expectation = driver.expect(QStringLiteral("outer"));
        if (by == QLatin1String("click"))
            connect(go, &QAbstractButton::clicked, this, openInner);
        else if (by == QLatin1String("timer"))
            QTimer::singleShot(0, this, openInner);
        else
            expectation.run([=](QMessageBox&) { openInner(); });
        expectation.click(QStringLiteral("Go"));
        driver.expect(identifier()).click(QStringLiteral("Discard"));
        outer.exec();
        order.append(clickedButtonOf(outer));
        QCOMPARE(order, QStringList({QStringLiteral("Discard"), QStringLiteral("Go")}));
        QCOMPARE(driver.identifiers(), QStringList({QStringLiteral("outer"), identifier()}));
    }

    void aBoxUnderAModalDialogOfAnotherKindIsAnsweredAfterIt()
    {
        DialogDriver driver;
        driver.expect(identifier()).click(QStringLiteral("Save"));
        MessageDialog box;
        box.setId(identifier());
        addButtons(box);
        QInputDialog dialog;
        bool wasOpen = false;
        QTimer::singleShot(0, &dialog, [&] {
            QTimer::singleShot(0, &dialog, [&] {
                wasOpen = box.isVisible();
                dialog.done(0);
            });
        });
        box.show();
        dialog.exec();
        QVERIFY(wasOpen);
        QVERIFY(driver.wait());
        QCOMPARE(clickedButtonOf(box), QStringLiteral("Save"));
    }

    void aBoxOfAnotherWindowThanTheWindowModalDialogsIsAnswered()
    {
        QWidget window;
        QWidget other;
        window.show();
        other.show();
        QInputDialog sheet(&window);
        DialogDriver driver;
        driver.expect(identifier()).click(QStringLiteral("Save"));
        driver.expect(QStringLiteral("blocked"));
        sheet.open();
        QMessageBox blocked(&window);
        blocked.setObjectName(QStringLiteral("blocked"));
        blocked.setModal(false);
        blocked.show();
        MessageDialog box(&other);
        box.setId(identifier());
        addButtons(box);
        box.open();
        QTRY_COMPARE(clickedButtonOf(box), QStringLiteral("Save"));
        QVERIFY(sheet.isVisible() && blocked.isVisible());
        sheet.done(0);
        QVERIFY(driver.wait());
        QVERIFY(!blocked.isVisible());
    }

    void theDriverMadeLastAnswers()
    {
        DialogDriver first;
        first.expect(identifier()).click(QStringLiteral("Save"));
        {
            DialogDriver second;
            second.expect(identifier()).click(QStringLiteral("Discard"));
            QCOMPARE(execDialog(), QStringLiteral("Discard"));
        }
        QCOMPARE(first.identifiers(), QStringList());
        QCOMPARE(execDialog(), QStringLiteral("Save"));
    }

    void aModalBoxThatWasOpenBeforeTheDriverIsAnsweredAndAModelessOneIsNot()
    {
        QMessageBox modeless;
        modeless.setObjectName(QStringLiteral("modeless"));
        modeless.setModal(false);
        modeless.show();
        MessageDialog modal;
        modal.setId(identifier());
        addButtons(modal);
        modal.show();
        DialogDriver driver;
        driver.setTimeout(1000);
        driver.expect(identifier()).click(QStringLiteral("Save"));
        driver.expect(QStringLiteral("modeless")).times(0);
        QVERIFY(driver.wait());
        QCOMPARE(clickedButtonOf(modal), QStringLiteral("Save"));
        QVERIFY(modeless.isVisible());
    }

    void aDriverThatWaitsLeavesBoxesToALaterOne()
    {
        MessageDialog modal;
        modal.setId(identifier());
        addButtons(modal);
        modal.show();
        DialogDriver first;
        first.setTimeout(300);
        first.expect(QStringLiteral("never")).anyTimes();
        auto& owed = first.expect(QStringLiteral("at all"));
        DialogDriver second;
        second.expect(identifier())
            .run([](QMessageBox&) { QTest::qWait(200); })
            .click(QStringLiteral("Save"));
        QVERIFY(!first.wait());
        QVERIFY(second.wait());
        QCOMPARE(clickedButtonOf(modal), QStringLiteral("Save"));
        owed.times(0);
    }

    void whatHappensToALaterDriversBoxCountsForOneThatWaits()
    {
        DialogDriver first;
        first.setTimeout(500);
        auto& owed = first.expect(QStringLiteral("never"));
        DialogDriver second;
        const auto work = [](QMessageBox&) { QTest::qWait(200); };
        second.expect(identifier())
            .run(work)
            .run(work)
            .run(work)
            .run(work)
            .run([&](QMessageBox&) { owed.times(0); })
            .click(QStringLiteral("Save"));
        MessageDialog dialog;
        dialog.setId(identifier());
        addButtons(dialog);
        dialog.open();
        QVERIFY(first.wait());
        QVERIFY(second.wait());
    }

    void aWaitInsideAnotherLeavesItItsTimeOut()
    {
        DialogDriver driver;
        driver.setTimeout(100);
        DialogExpectation* never = nullptr;
        driver.expect(identifier()).run([&](QMessageBox& box) {
            box.done(0);
            QVERIFY(driver.wait());
            never = &driver.expect(QStringLiteral("never"));
        });
        MessageDialog dialog;
        dialog.setId(identifier());
        dialog.open();
        QVERIFY(!driver.wait());
        never->times(0);
    }

    void aNewTimeOutBeginsAnew()
    {
        DialogDriver driver;
        driver.setTimeout(1000);
        driver.expect(QString()).waitUntilClosed();
        QMessageBox notice;
        notice.open();
        QTimer::singleShot(800, &notice, [&] { driver.setTimeout(1000); });
        QTimer::singleShot(1500, &notice, &QWidget::hide);
        QVERIFY(driver.wait());
    }

    void aBoxThatIsOpenHasComeWhenTheTestVerifies()
    {
        DialogDriver driver;
        driver.expect(identifier()).click(QStringLiteral("Save"));
        MessageDialog dialog;
        dialog.setId(identifier());
        addButtons(dialog);
        dialog.open();
        QVERIFY(driver.verify());
        QVERIFY(driver.wait());
        QCOMPARE(clickedButtonOf(dialog), QStringLiteral("Save"));
    }

    void anExpectationIsMetNoMoreThanItSaysInTheEnd()
    {
        DialogDriver driver;
        auto& expectation = driver.expect(identifier()).anyTimes().click(QStringLiteral("Save"));
        QCOMPARE(execDialog(), QStringLiteral("Save"));
        QCOMPARE(execDialog(), QStringLiteral("Save"));
        expectation.times(1);
        driver.expect(identifier()).anyTimes().click(QStringLiteral("Discard"));
        QCOMPARE(execDialog(), QStringLiteral("Discard"));
    }

    void aFailureHandlerMayReplaceItself()
    {
        QStringList failures;
        const auto before = Quillet::Testing::setFailureHandler([&](const QString& message, const auto&) {
            Quillet::Testing::setFailureHandler({});
            failures.append(message);
        });
        Quillet::Testing::reportFailure(QStringLiteral("message"));
        QCOMPARE(failures, QStringList(QStringLiteral("message")));
        QVERIFY(!before);
    }

    void aDriverMayWaitWhileALaterOneLives()
    {
        DialogDriver first;
        first.setTimeout(50);
        first.expect(QStringLiteral("never")).anyTimes();
        auto& owed = first.expect(identifier());
        const DialogDriver second;
        QVERIFY(!first.wait());
        owed.times(0);
    }

    void whatCameBeforeAnotherDriverIsAnsweredAfterIt()
    {
        DialogDriver first;
        first.expect(identifier()).click(QStringLiteral("Save"));
        MessageDialog dialog;
        dialog.setId(identifier());
        addButtons(dialog);
        dialog.show();
        {
            const DialogDriver second;
            QTest::qWait(50);
            QVERIFY(dialog.isVisible());
        }
        QVERIFY(first.wait());
        QCOMPARE(clickedButtonOf(dialog), QStringLiteral("Save"));
    }

    void whatClosesInTheTimeOfAnotherDriverMayComeAgain()
    {
        DialogDriver first;
        first.expect(identifier()).run([](QMessageBox& box) {
            const DialogDriver second;
            box.done(0);
        });
        first.expect(identifier()).click(QStringLiteral("Save"));
        QMessageBox box;
        box.setObjectName(identifier());
        addButtons(box);
        box.exec();
        box.exec();
        QCOMPARE(clickedButtonOf(box), QStringLiteral("Save"));
        QCOMPARE(first.identifiers().size(), 2);
    }

    // Destruction

    void aDriverMayEndWhenABoxCloses_data()
    {
        QTest::addColumn<Instruct>("instruct");
        QTest::newRow("click") << Instruct([](auto& box) { box.click(QStringLiteral("Save")); });
        QTest::newRow("key") << Instruct([](auto& box) { box.pressEscape(); });
        QTest::newRow("closing the window") << Instruct([](auto& box) { box.closeWindow(); });
    }

    void aDriverMayEndWhileItWaits_data()
    {
        QTest::addColumn<bool>("isAtOnce");
        QTest::newRow("at once") << true;
        QTest::newRow("when the box closes") << false;
    }

    void aDriverMayEndWhileItWaits()
    {
        QFETCH(const bool, isAtOnce);
        auto driver = std::make_unique<DialogDriver>();
        driver->expect(QString()).times(!isAtOnce);
        MessageDialog dialog;
        connect(&dialog, &QDialog::finished, this, [&] { driver.reset(); });
        if (isAtOnce)
            QMetaObject::invokeMethod(
                this, [&] { driver.reset(); }, Qt::QueuedConnection);
        else
            dialog.open();
        QVERIFY(!driver->wait());
        QVERIFY(!driver);
    }

    void aDriverMayEndWhenABoxCloses()
    {
        QFETCH(const Instruct, instruct);
        auto driver = std::make_unique<DialogDriver>();
        instruct(driver->expect(identifier()));
        MessageDialog dialog;
        dialog.setId(identifier());
        addButtons(dialog);
        connect(&dialog, &QDialog::finished, this, [&] { driver.reset(); });
        dialog.exec();
        QVERIFY(!driver);
        QVERIFY(dialog.clickedButton());
    }

    void aBoxMayBeDestroyedWhileItIsAnswered_data()
    {
        QTest::addColumn<Instruct>("instruct");
        QTest::newRow("the box") << Instruct([](auto& box) { box.run([](QMessageBox& it) { delete &it; }); });
        QTest::newRow("its parent") << Instruct(
            [](auto& box) { box.run([](QMessageBox& it) { delete it.parentWidget(); }); });
        QTest::newRow("later") << Instruct([](auto& box) {
            box.run([](QMessageBox& it) {
                it.deleteLater();
                it.hide();
            });
        });
        QTest::newRow("closing the parent") << Instruct([](auto& box) {
            box.run([](QMessageBox& it) {
                it.parentWidget()->setAttribute(Qt::WA_DeleteOnClose);
                it.parentWidget()->close();
            });
        });
        QTest::newRow("by a key") << Instruct([](auto& box) {
            box.run([](QMessageBox& it) {
                   connect(buttonOf(it, QStringLiteral("Cancel")), &QAbstractButton::clicked, &it, [&it] {
                       delete it.parentWidget();
                   });
               })
                .pressEscape();
        });
        QTest::newRow("by half a click") << Instruct([](auto& box) {
            box.run([](QMessageBox& it) {
                   connect(buttonOf(it, QStringLiteral("Save")), &QAbstractButton::pressed, &it, [&it] {
                       delete it.parentWidget();
                   });
               })
                .click(QStringLiteral("Save"));
        });
        QTest::newRow("by a click") << Instruct([](auto& box) {
            box.run([](QMessageBox& it) {
                   connect(
                       &it, &QMessageBox::buttonClicked, &it, [&it] { it.parentWidget()->deleteLater(); });
               })
                .click(QStringLiteral("Save"));
        });
    }

    void aBoxMayBeDestroyedWhileItIsAnswered()
    {
        QFETCH(const Instruct, instruct);
        const QPointer<QWidget> parent(new QWidget);
        parent->show();
        QStringList journal;
        const MessageDialogTemplate t = saveChanges(journal);
        DialogDriver driver;
        instruct(driver.expect(identifier()));
        t.exec(parent);
        QVERIFY(driver.verify());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        delete parent;
    }

    // Checks

    void whatABoxLooksLikeIsChecked()
    {
        DialogDriver driver;
        driver.expect(identifier())
            .withTitle(QStringLiteral("Unsaved changes"))
            .withText(QStringLiteral("Save the changes?"))
            .withInformativeText(QString())
            .withIcon(QMessageBox::Question)
            .withButtons({QStringLiteral("Save"), QStringLiteral("Cancel"), QStringLiteral("Discard")})
            .withDefaultButton(QStringLiteral("Save"))
            .withPrimaryButton(QStringLiteral("Save"))
            .click(QStringLiteral("Save"));
        QCOMPARE(execTemplate(), QStringLiteral("Save"));
    }

    void standardButtonsAreCheckedByTheirValues()
    {
        DialogDriver driver;
        driver.expect(QString())
            .withButtons(QMessageBox::Yes | QMessageBox::No)
            .withDefaultButton(QString())
            .withDefaultButton(QMessageBox::NoButton);
        QMessageBox::question(nullptr, {}, {});
        driver.expect(identifier())
            .withButtons(QMessageBox::Yes | QMessageBox::No)
            .withDefaultButton(QMessageBox::No)
            .withPrimaryButton(QMessageBox::No);
        MessageDialog dialog;
        dialog.setId(identifier());
        dialog.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        dialog.setDefaultButton(QMessageBox::No);
        dialog.exec();
        QVERIFY(driver.verify());
    }

    void theButtonForDetailsIsNoStandardButtonAndNoCustomOne()
    {
        DialogDriver driver;
        driver.expect(QString()).withButtons(QMessageBox::Ok);
        QMessageBox box(QMessageBox::NoIcon, {}, {}, QMessageBox::Ok);
        box.setDetailedText(QStringLiteral("harbour.svg"));
        box.exec();
        driver.expect(QString()).withButtons(QMessageBox::Ok);
        box.open();
        buttonOf(box, QStringLiteral("Show Details..."))->click();
        QVERIFY(driver.wait());
    }

    void whatChangesAfterTheShowIsWhatIsChecked()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("new"))
            .withTitle(QStringLiteral("New"))
            .withText(QStringLiteral("new"))
            .withInformativeText(QStringLiteral("new"))
            .withIcon(QMessageBox::Critical)
            .withButtons({QStringLiteral("New"), QStringLiteral("Close")})
            .withDefaultButton(QStringLiteral("New"));
        QMessageBox box(QMessageBox::Warning, QStringLiteral("Old"), QStringLiteral("old"));
        box.addButton(QStringLiteral("Close"), QMessageBox::RejectRole);
        box.open();
        box.setObjectName(QStringLiteral("new"));
        box.setWindowTitle(QStringLiteral("New"));
        box.setText(QStringLiteral("new"));
        box.setInformativeText(QStringLiteral("new"));
        box.setIcon(QMessageBox::Critical);
        box.setDefaultButton(box.addButton(QStringLiteral("New"), QMessageBox::AcceptRole));
        QVERIFY(driver.wait());
        QCOMPARE(driver.records().constFirst().icon, QMessageBox::Critical);
    }

    void eachIconOfAMessageDialogIsToldWhenItIsShownAgain_data()
    {
        QTest::addColumn<QMessageBox::Icon>("icon");
        QTest::newRow("none") << QMessageBox::NoIcon;
        QTest::newRow("Information") << QMessageBox::Information;
        QTest::newRow("Warning") << QMessageBox::Warning;
        QTest::newRow("Critical") << QMessageBox::Critical;
        QTest::newRow("Question") << QMessageBox::Question;
    }

    void eachIconOfAMessageDialogIsToldWhenItIsShownAgain()
    {
        QFETCH(const QMessageBox::Icon, icon);
        DialogDriver driver;
        driver.expect(QString()).times(2).withIcon(icon);
        MessageDialog dialog({}, {}, icon);
        dialog.exec();
        dialog.exec();
        QCOMPARE(driver.records().constLast().icon, icon);
    }

    void checksOfTheTestsOwnSeeTheBox()
    {
        DialogDriver driver;
        QWidget parent;
        QWidget* seen = nullptr;
        driver.expect(identifier()).run([&](QMessageBox& box) { seen = box.parentWidget(); }).pressEscape();
        MessageDialog dialog(&parent);
        dialog.setId(identifier());
        dialog.exec();
        QCOMPARE(seen, &parent);
    }

    // Records

    void everyBoxIsRecorded()
    {
        DialogDriver driver;
        driver.expect(identifier()).click(QStringLiteral("Discard"));
        execTemplate();
        const QVector<DialogRecord> records = driver.records();
        QCOMPARE(records.size(), 1);
        const DialogRecord& record = records.first();
        QCOMPARE(record.identifier, identifier());
        QCOMPARE(record.title, QStringLiteral("Unsaved changes"));
        QCOMPARE(record.text, QStringLiteral("Save the changes?"));
        QCOMPARE(record.informativeText, QString());
        QCOMPARE(record.icon, QMessageBox::Question);
        QStringList buttons = record.buttons;
        buttons.sort();
        QCOMPARE(buttons,
                 QStringList({QStringLiteral("Cancel"), QStringLiteral("Discard"), QStringLiteral("Save")}));
        QCOMPARE(record.defaultButton, QStringLiteral("Save"));
        QCOMPARE(record.primaryButton, QStringLiteral("Save"));
        QVERIFY(record.wasExpected);
        QCOMPARE(record.clickedButton, QStringLiteral("Discard"));
        QCOMPARE(record.screenshot, QString());
    }

    void aRecordKeepsTheButtonThatHasClosedItsBox()
    {
        DialogDriver driver;
        driver.expect(QString()).click(QMessageBox::No);
        QMessageBox box(QMessageBox::NoIcon, {}, {}, QMessageBox::Yes | QMessageBox::No);
        box.exec();
        box.button(QMessageBox::Yes)->click();
        QCOMPARE(driver.records().constFirst().clickedButton, labelOf(box.button(QMessageBox::No)));
    }

    void aRecordTellsOfCheckBoxDetailsAndStandardButtons()
    {
        DialogDriver driver;
        driver.expect(QString()).withDetailedText(QStringLiteral("harbour.svg")).click(QMessageBox::No);
        QMessageBox box(QMessageBox::NoIcon, {}, {}, QMessageBox::Yes | QMessageBox::No);
        box.setDetailedText(QStringLiteral("harbour.svg"));
        box.setCheckBox(new QCheckBox(QStringLiteral("Do not &ask again")));
        box.exec();
        const DialogRecord record = driver.records().constFirst();
        QCOMPARE(record.detailedText, QStringLiteral("harbour.svg"));
        QCOMPARE(record.checkBox, QStringLiteral("Do not ask again"));
        QCOMPARE(record.clickedStandardButton, QMessageBox::No);
        QString text;
        QDebug(&text).nospace() << record << 1;
        QCOMPARE(text,
                 QStringLiteral("\n  ")
                     + record.description().replace(QLatin1Char('\n'), QStringLiteral("\n  "))
                     + QLatin1Char('1'));
    }

    void whatABoxDoesNotHaveIsNullInItsRecord()
    {
        DialogDriver driver;
        driver.expect(QString());
        QMessageBox box;
        box.addButton(new QPushButton, QMessageBox::RejectRole);
        box.exec();
        const DialogRecord record = driver.records().constFirst();
        QVERIFY(record.checkBox.isNull());
        QVERIFY(record.defaultButton.isNull());
        QVERIFY(record.primaryButton.isNull());
        QVERIFY(!record.clickedButton.isNull()); // it has an empty label
        QCOMPARE(record.clickedStandardButton, QMessageBox::NoButton);
    }

    void aLabelIsWhatTheUserReads_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("label");
        QTest::newRow("mnemonic") << QStringLiteral("Sa&ve") << QStringLiteral("Save");
        QTest::newRow("ampersand") << QStringLiteral("Salt && pepper") << QStringLiteral("Salt & pepper");
        QTest::newRow("both") << QStringLiteral("&Salt && pepper") << QStringLiteral("Salt & pepper");
        QTest::newRow("at the end") << QStringLiteral("Salt &") << QStringLiteral("Salt ");
    }

    void aLabelIsWhatTheUserReads()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, label);
        DialogDriver driver;
        driver.expect(QString()).click(label);
        QMessageBox box;
        box.addButton(text, QMessageBox::AcceptRole);
        box.exec();
        QCOMPARE(driver.records().constFirst().clickedButton, label);
    }

    void theIdentifierIsTheDialogsOrElseTheObjectName()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("id"));
        driver.expect(QStringLiteral("name"));
        MessageDialog dialog;
        dialog.setObjectName(QStringLiteral("name"));
        dialog.exec();
        dialog.setId(QStringLiteral("id"));
        dialog.exec();
        QVERIFY(driver.verify());
    }

    void aPictureThatIsNoneOfTheIconsIsNoIcon()
    {
        QPixmap picture(64, 64);
        picture.fill(Qt::red);
        DialogDriver driver;
        driver.expect(QString()).times(2).withIcon(QMessageBox::NoIcon);
        QMessageBox plain;
        MessageDialog dialog;
        for (QMessageBox* box : {&plain, static_cast<QMessageBox*>(&dialog)}) {
            box->setIconPixmap(picture);
            box->exec();
            QCOMPARE(driver.records().constLast().icon, QMessageBox::NoIcon);
        }
    }

    void eachRoleHasItsName_data()
    {
        QTest::addColumn<QMessageBox::ButtonRole>("role");
        QTest::addColumn<QString>("name");
        QTest::newRow("accept") << QMessageBox::AcceptRole << QStringLiteral("AcceptRole");
        QTest::newRow("reject") << QMessageBox::RejectRole << QStringLiteral("RejectRole");
        QTest::newRow("destructive") << QMessageBox::DestructiveRole << QStringLiteral("DestructiveRole");
        QTest::newRow("action") << QMessageBox::ActionRole << QStringLiteral("ActionRole");
        QTest::newRow("help") << QMessageBox::HelpRole << QStringLiteral("HelpRole");
        QTest::newRow("yes") << QMessageBox::YesRole << QStringLiteral("YesRole");
        QTest::newRow("no") << QMessageBox::NoRole << QStringLiteral("NoRole");
        QTest::newRow("reset") << QMessageBox::ResetRole << QStringLiteral("ResetRole");
        QTest::newRow("apply") << QMessageBox::ApplyRole << QStringLiteral("ApplyRole");
    }

    void eachRoleHasItsName()
    {
        QFETCH(const QMessageBox::ButtonRole, role);
        QTEST(Quillet::Testing::nameOf(role), "name");
    }

    // The driver

    void anExpectationLivesAsLongAsItsDriver()
    {
        DialogDriver driver;
        auto& expectation = driver.expect(identifier()).anyTimes();
        QVERIFY(driver.verify());
        expectation.withTitle(QStringLiteral("title")).times(2); // it is expected no more
        QVERIFY(driver.verify());
    }

    void aFailureGoesToTheHandlerThatIsSet()
    {
        QStringList failures;
        const auto handle = [&](const QString& message, const SourceLocation& where) {
            failures.append(QStringLiteral("%1 %2").arg(message).arg(where.line));
        };
        QVERIFY(!Quillet::Testing::setFailureHandler(handle));
        Quillet::Testing::reportFailure(QStringLiteral("message"), {"file", 7});
        const auto before = Quillet::Testing::setFailureHandler({});
        QCOMPARE(failures, QStringList(QStringLiteral("message 7")));
        before(QStringLiteral("another"), {"file", 8});
        QCOMPARE(failures.size(), 2);
    }

    void onlyTheTimeOutOfTheDriverMadeLastEndsADialog()
    {
        DialogDriver first;
        first.setTimeout(10);
        MessageDialog dialog;
        dialog.setId(identifier());
        addButtons(dialog);
        dialog.show();
        {
            const DialogDriver second;
            QTest::qWait(100);
            QVERIFY(dialog.isVisible());
        }
        first.setTimeout(5000);
        first.expect(identifier()).click(QStringLiteral("Save"));
        QVERIFY(first.wait());
        QCOMPARE(clickedButtonOf(dialog), QStringLiteral("Save"));
    }

    void theTimeOutIsFiveSecondsUnlessSet()
    {
        DialogDriver driver;
        QCOMPARE(driver.timeout(), 5000);
        driver.setTimeout(7);
        QCOMPARE(driver.timeout(), 7);
    }

    void theEnvironmentMayGiveTheTimeOut_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<int>("timeout");
        QTest::newRow("a number") << QByteArray("20000") << 20000;
        QTest::newRow("no number") << QByteArray("soon") << 5000;
        QTest::newRow("none that ends anything") << QByteArray("0") << 5000;
    }

    void theEnvironmentMayGiveTheTimeOut()
    {
        QFETCH(const QByteArray, value);
        qputenv("QUILLET_TESTING_TIMEOUT", value);
        const DialogDriver driver;
        qunsetenv("QUILLET_TESTING_TIMEOUT");
        QTEST(driver.timeout(), "timeout");
    }

    void nothingTimesOutWhileNothingIsOpen()
    {
        DialogDriver driver;
        driver.setTimeout(10);
        QTest::qWait(100);
        QVERIFY(driver.wait());
    }

    void aDriverWithNothingToDoHasNothingToSay()
    {
        DialogDriver driver;
        QVERIFY(driver.wait());
        QVERIFY(driver.verify());
    }

    void nativeBoxesAreOffUntilTheLastDriverEnds()
    {
        auto first = std::make_unique<DialogDriver>();
        auto second = std::make_unique<DialogDriver>();
        first.reset();
        QVERIFY(QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
        second.reset();
        QVERIFY(!QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
    }

    void nativeBoxesThatWereOffStayOff()
    {
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        {
            const DialogDriver driver;
        }
        QVERIFY(QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false);
    }

    void nativeBoxesAreOffOnlyWhileADriverLives()
    {
        QVERIFY(!QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
        {
            const DialogDriver driver;
            QVERIFY(QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
        }
        QVERIFY(!QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
    }
};

QUILLET_TEST_MAIN(TestDialogDriver)
#include "tst_DialogDriver.moc"
