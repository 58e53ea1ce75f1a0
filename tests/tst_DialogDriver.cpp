#include "TemplateTestCase.h"

#include <QuilletTesting/DialogDriver.h>

#include <Quillet/MessageDialog.h>

#include <QtCore/QEventLoop>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QInputDialog>
#include <QtWidgets/QPushButton>

#include <memory>

using Quillet::MessageDialog;
using Quillet::MessageDialogTemplate;
using Quillet::Testing::DialogDriver;
using Quillet::Testing::DialogExpectation;
using Quillet::Testing::DialogRecord;

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

    void aDialogThatIsNoMessageBoxIsLeftAlone()
    {
        const DialogDriver driver;
        QInputDialog dialog;
        QTimer::singleShot(0, &dialog, [&] { dialog.done(7); });
        QCOMPARE(dialog.exec(), 7);
        QCOMPARE(driver.identifiers(), QStringList());
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
        for (int i = 0; i < 3; ++i)
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
            QCoreApplication::processEvents();
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
            .withButtons({QStringLiteral("Cancel"), QStringLiteral("Discard"), QStringLiteral("Save")})
            .withDefaultButton(QStringLiteral("Save"))
            .withPrimaryButton(QStringLiteral("Save"))
            .click(QStringLiteral("Save"));
        QCOMPARE(execTemplate(), QStringLiteral("Save"));
    }

    void standardButtonsAreCheckedByTheirValues()
    {
        DialogDriver driver;
        driver.expect(QString()).withButtons(QMessageBox::Yes | QMessageBox::No).withDefaultButton(QString());
        QMessageBox::question(nullptr, {}, {});
        driver.expect(identifier()).withButtons(QMessageBox::Ok);
        execBoxCalled(identifier());
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

    // The driver

    void theTimeOutIsFiveSecondsUnlessSet()
    {
        DialogDriver driver;
        QCOMPARE(driver.timeout(), 5000);
        driver.setTimeout(7);
        QCOMPARE(driver.timeout(), 7);
    }

    void aDriverWithNothingToDoHasNothingToSay()
    {
        DialogDriver driver;
        QVERIFY(driver.wait());
        QVERIFY(driver.verify());
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
