#include "TemplateTestCase.h"

#include <QuilletTesting/DialogDriver.h>

#include <QtWidgets/QPushButton>

#include <memory>
#include <stdexcept>
#include <vector>

using Quillet::DialogCallback;
using Quillet::MessageDialog;
using Quillet::MessageDialogTemplate;
using Quillet::Testing::DialogDriver;
using Quillet::Testing::DialogExpectation;

Q_DECLARE_METATYPE(std::function<void(QMessageBox&)>)
Q_DECLARE_METATYPE(std::function<void(DialogExpectation&)>)

namespace {

using Answer = std::function<void(QMessageBox&)>;
using Instruction = std::function<void(DialogExpectation&)>;

// Keys and clicks go to the window, where they arrive from the keyboard and the mouse as well.

Answer press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    return [=](QMessageBox& box) {
        box.activateWindow(); // it may have been another dialog's turn
        if (QTest::qWaitForWindowActive(&box))
            QTest::keyClick(box.windowHandle(), static_cast<Qt::Key>(key), modifiers);
    };
}

Answer click(const QString& text)
{
    return [text](QMessageBox& box) { buttonOf(box, text)->click(); };
}

void closeWindow(QMessageBox& box)
{
    box.close();
}

// Runs the template and answers the dialog.
QMessageBox::ButtonRole run(const MessageDialogTemplate& t, const Answer& answer)
{
    whenModal(answer);
    return t.exec();
}

DialogCallback callback(QStringList& journal, const QString& name, bool answer = true)
{
    return [&journal, name, answer](MessageDialog&) {
        journal.append(name);
        return answer;
    };
}

struct Failure : std::runtime_error
{
    Failure() : std::runtime_error("on purpose") {}
};

} // namespace

class TestTemplateExec : public TemplateTestCase
{
    Q_OBJECT

private Q_SLOTS:
    // What the clicked button does

    void theClickedSlotsActionRunsAndItsRoleIsTheResult_data()
    {
        QTest::addColumn<Instruction>("instruct");
        QTest::addColumn<QString>("ran");
        QTest::addColumn<int>("role");
        const QString save = QStringLiteral("Save");
        const QString discard = QStringLiteral("Discard");
        const QString cancel = QStringLiteral("Cancel");
        const auto add = [](const char* name, const Instruction& instruct, const QString& ran, int role) {
            QTest::newRow(name) << instruct << ran << role;
        };
        add(
            "Return presses the default button",
            [](auto& box) { box.pressKey(Qt::Key_Return); },
            save,
            QMessageBox::AcceptRole);
        add(
            "Enter too", [](auto& box) { box.pressKey(Qt::Key_Enter); }, save, QMessageBox::AcceptRole);
        add(
            "Escape presses the escape button",
            [](auto& box) { box.pressEscape(); },
            cancel,
            QMessageBox::RejectRole);
        add(
            "closing the window too", [](auto& box) { box.closeWindow(); }, cancel, QMessageBox::RejectRole);
        add(
            "a mnemonic",
            [](auto& box) { box.pressKey(Qt::Key_D, Qt::AltModifier); },
            discard,
            QMessageBox::DestructiveRole);
        add(
            "the mouse", [=](auto& box) { box.click(discard); }, discard, QMessageBox::DestructiveRole);
        add(
            "the mouse, a later slot",
            [=](auto& box) { box.click(cancel); },
            cancel,
            QMessageBox::RejectRole);
    }

    void theClickedSlotsActionRunsAndItsRoleIsTheResult()
    {
        QFETCH(Instruction, instruct);
        QFETCH(QString, ran);
        QFETCH(int, role);
        QStringList journal;
        const MessageDialogTemplate t = saveChanges(journal);
        DialogDriver driver;
        instruct(driver.expect(t.id));
        QCOMPARE(int(t.exec()), role);
        QCOMPARE(journal, QStringList(ran));
    }

    void everyRoleIsReturnedAsItIs_data()
    {
        QTest::addColumn<int>("role");
        for (int role = QMessageBox::AcceptRole; role < QMessageBox::NRoles; ++role)
            QTest::addRow("%d", role) << role;
    }

    void everyRoleIsReturnedAsItIs()
    {
        QFETCH(int, role);
        MessageDialogTemplate t;
        t.buttons[2] = {QStringLiteral("only"), static_cast<QMessageBox::ButtonRole>(role), false, false, {}};
        QCOMPARE(int(run(t, click(QStringLiteral("only")))), role);
    }

    void slotsOfOneRoleDifferByTheirActions_data()
    {
        QTest::addColumn<QString>("clicked");
        QTest::newRow("first") << QStringLiteral("first");
        QTest::newRow("second") << QStringLiteral("second");
    }

    void slotsOfOneRoleDifferByTheirActions()
    {
        QFETCH(QString, clicked);
        QString ran;
        MessageDialogTemplate t;
        t.buttons[0] = {QStringLiteral("first"), QMessageBox::ActionRole, false, false, [&] {
                            ran = QStringLiteral("first");
                        }};
        t.buttons[1] = {QStringLiteral("second"), QMessageBox::ActionRole, false, false, [&] {
                            ran = QStringLiteral("second");
                        }};
        QCOMPARE(run(t, click(clicked)), QMessageBox::ActionRole);
        QCOMPARE(ran, clicked);
    }

    void aSlotWithoutTextNeverRunsItsAction()
    {
        bool ran = false;
        MessageDialogTemplate t;
        t.buttons[0] = {QString(), QMessageBox::DestructiveRole, true, true, [&] { ran = true; }};
        t.buttons[1] = {QStringLiteral("only"), QMessageBox::NoRole, false, false, {}};
        QCOMPARE(run(t, press(Qt::Key_Return)), QMessageBox::NoRole);
        QCOMPARE(run(t, press(Qt::Key_Escape)), QMessageBox::NoRole);
        QVERIFY(!ran);
    }

    void anActionRunsOnceAfterTheLoopWhileTheDialogExists()
    {
        QStringList journal;
        QPointer<QMessageBox> dialog;
        MessageDialogTemplate t = saveChanges(journal);
        t.postExecCallback = callback(journal, QStringLiteral("post"));
        t.buttons[0].action = [&] {
            journal.append(QStringLiteral("action"));
            QVERIFY(dialog);
            QVERIFY(!dialog->isVisible());
            QVERIFY(!QApplication::activeModalWidget());
        };
        QCOMPARE(run(t,
                     [&](QMessageBox& box) {
                         dialog = &box;
                         journal.append(QStringLiteral("loop"));
                         press(Qt::Key_Return)(box);
                     }),
                 QMessageBox::AcceptRole);
        QCOMPARE(journal,
                 QStringList({QStringLiteral("loop"), QStringLiteral("post"), QStringLiteral("action")}));
        QVERIFY(!dialog);
    }

    void anActionKeepsItsStateFromRunToRun()
    {
        int shown = 0;
        MessageDialogTemplate t;
        t.buttons[0] = {
            QStringLiteral("only"), QMessageBox::AcceptRole, false, false, [&, runs = 0]() mutable {
                shown = ++runs;
            }};
        run(t, click(QStringLiteral("only")));
        run(t, click(QStringLiteral("only")));
        QCOMPARE(shown, 2);
    }

    // The other results

    void aDialogWithoutSlotsEndsWithoutAClickedSlot_data()
    {
        QTest::addColumn<Answer>("answer");
        QTest::newRow("its own OK button") << press(Qt::Key_Return);
        QTest::newRow("Escape") << press(Qt::Key_Escape);
        QTest::newRow("closing the window") << Answer(closeWindow);
    }

    void aDialogWithoutSlotsEndsWithoutAClickedSlot()
    {
        QFETCH(Answer, answer);
        MessageDialogTemplate t;
        t.text = QStringLiteral("nothing to choose");
        QCOMPARE(run(t, answer), QMessageBox::NRoles);
    }

    void aButtonThatACallbackAddedIsNoSlots()
    {
        QStringList journal;
        MessageDialogTemplate t = saveChanges(journal);
        t.preExecCallback = [](MessageDialog& dialog) {
            dialog.addButton(QMessageBox::Retry);
            return true;
        };
        QCOMPARE(run(t, [](QMessageBox& box) { box.button(QMessageBox::Retry)->click(); }),
                 QMessageBox::NRoles);
        QCOMPARE(journal, QStringList());
    }

    void aDialogEndedByOtherCodeHasNoClickedSlot()
    {
        QStringList journal;
        QCOMPARE(run(saveChanges(journal), [](QMessageBox& box) { box.done(7); }), QMessageBox::NRoles);
        QCOMPARE(run(saveChanges(journal), [](QMessageBox& box) { box.done(-2); }), QMessageBox::NRoles);
        QCOMPARE(run(saveChanges(journal), [](QMessageBox& box) { box.hide(); }), QMessageBox::NRoles);
        QCOMPARE(journal, QStringList());
    }

    void aResultOfMinusOneCountsAsAVeto()
    {
        QStringList journal;
        QCOMPARE(run(saveChanges(journal), [](QMessageBox& box) { box.done(-1); }), QMessageBox::InvalidRole);
        QCOMPARE(journal, QStringList());
    }

    void aVetoBeforeTheLoopGivesInvalidRole()
    {
        QStringList journal;
        MessageDialogTemplate t = saveChanges(journal);
        t.preExecCallback = callback(journal, QStringLiteral("pre"), false);
        t.postExecCallback = callback(journal, QStringLiteral("post"));
        QCOMPARE(t.exec(), QMessageBox::InvalidRole);
        QCOMPARE(journal, QStringList(QStringLiteral("pre")));
    }

    void aVetoAfterTheLoopGivesInvalidRole()
    {
        QStringList journal;
        MessageDialogTemplate t = saveChanges(journal);
        t.postExecCallback = callback(journal, QStringLiteral("post"), false);
        QCOMPARE(run(t, press(Qt::Key_Return)), QMessageBox::InvalidRole);
        QCOMPARE(journal, QStringList(QStringLiteral("post")));
    }

    void aNewButtonAtTheAddressOfASlotsButtonIsNotTheSlots()
    {
        QStringList journal;
        bool addressUsedAgain = false;
        const auto result = run(saveChanges(journal), [&](QMessageBox& box) {
            const QAbstractButton* const deleted = buttonOf(box, QStringLiteral("Save"));
            delete deleted;
            std::vector<std::unique_ptr<QPushButton>> spare(1);
            for (int i = 0; i < 1000 && spare.back().get() != deleted; ++i)
                spare.push_back(std::make_unique<QPushButton>());
            addressUsedAgain = spare.back().get() == deleted;
            QPushButton* const added = spare.back().release();
            box.addButton(added, QMessageBox::AcceptRole);
            added->click();
        });
        QCOMPARE(result, QMessageBox::NRoles);
        QCOMPARE(journal, QStringList());
        if (!addressUsedAgain)
            qInfo("this allocator gives a freed address to nobody else so soon");
    }

    // The dialog itself

    void theCallersParentWinsOverTheTemplates()
    {
        QWidget given;
        QWidget stored;
        MessageDialogTemplate t;
        QWidget* seen = &given;
        const Answer look = [&](QMessageBox& box) {
            seen = box.parentWidget();
            box.done(0);
        };
        run(t, look);
        QCOMPARE(seen, nullptr);
        t.parent = &stored;
        run(t, look);
        QCOMPARE(seen, &stored);
        whenModal(look);
        t.exec(&given);
        QCOMPARE(seen, &given);
    }

    void theDialogIsGoneWhenExecReturns()
    {
        QWidget parent;
        QPointer<QMessageBox> dialog;
        MessageDialogTemplate t;
        whenModal([&](QMessageBox& box) {
            dialog = &box;
            box.done(0);
        });
        t.exec(&parent);
        QVERIFY(!dialog);
        QVERIFY(parent.children().isEmpty());
    }

    // Preprocessors

    void thePreprocessorsActOnACopyThatLivesUntilExecReturns()
    {
        QStringList journal;
        const ScopedPreprocessor preprocessor(QStringLiteral("swap"), [&](MessageDialogTemplate& t) {
            t.id = QStringLiteral("changed");
            t.buttons[0].role = QMessageBox::YesRole;
            t.buttons[0].action = [&journal] { journal.append(QStringLiteral("changed action")); };
        });
        const MessageDialogTemplate t = saveChanges(journal);
        QString id;
        QCOMPARE(run(t,
                     [&](QMessageBox& box) {
                         id = qobject_cast<MessageDialog*>(&box)->getId();
                         press(Qt::Key_Return)(box);
                     }),
                 QMessageBox::YesRole);
        QCOMPARE(id, QStringLiteral("changed"));
        QCOMPARE(journal, QStringList(QStringLiteral("changed action")));
        QCOMPARE(t.buttons[0].role, QMessageBox::AcceptRole);
    }

    void theTemplateIsCopiedOnlyWherePreprocessorsAre()
    {
        const auto token = std::make_shared<int>();
        MessageDialogTemplate t;
        t.buttons[0].action = [token] {};
        const long before = token.use_count();
        long during = 0;
        const Answer look = [&](QMessageBox& box) {
            during = token.use_count();
            box.done(0);
        };
        run(t, look);
        QCOMPARE(during, before);

        const ScopedPreprocessor preprocessor(QStringLiteral("nothing"), [](MessageDialogTemplate&) {});
        run(t, look);
        QCOMPARE(during, before + 1);
        QCOMPARE(token.use_count(), before);
    }

    void aPreprocessorMayAddAButtonAndItsAction()
    {
        QStringList journal;
        const ScopedPreprocessor preprocessor(QStringLiteral("help"), [&](MessageDialogTemplate& t) {
            t.buttons[2] = {QStringLiteral("Explain"), QMessageBox::ActionRole, false, false, [&journal] {
                                journal.append(QStringLiteral("explained"));
                            }};
        });
        QCOMPARE(run(saveChanges(journal), click(QStringLiteral("Explain"))), QMessageBox::ActionRole);
        QCOMPARE(journal, QStringList(QStringLiteral("explained")));
    }

    void withPreprocessorsTheTemplateMayGoWhileTheDialogIsUp()
    {
        const ScopedPreprocessor preprocessor(QStringLiteral("nothing"), [](MessageDialogTemplate&) {});
        QStringList journal;
        auto t = std::make_unique<MessageDialogTemplate>(saveChanges(journal));
        QCOMPARE(run(*t,
                     [&](QMessageBox& box) {
                         t.reset();
                         press(Qt::Key_Return)(box);
                     }),
                 QMessageBox::AcceptRole);
        QCOMPARE(journal, QStringList(QStringLiteral("Save")));
    }

    void preprocessorsMayChangeWhileTheDialogIsUp()
    {
        using Quillet::MessageDialogTemplatePreprocessors;
        QStringList journal;
        MessageDialogTemplatePreprocessors::add(QStringLiteral("first"), [](MessageDialogTemplate&) {});
        QCOMPARE(run(saveChanges(journal),
                     [&](QMessageBox& box) {
                         MessageDialogTemplatePreprocessors::remove(QStringLiteral("first"));
                         press(Qt::Key_Return)(box);
                     }),
                 QMessageBox::AcceptRole);
        QCOMPARE(journal, QStringList(QStringLiteral("Save")));
    }

    // Nesting

    void aDialogMayRunInTheLoopAndInTheActionOfAnother()
    {
        QStringList journal;
        MessageDialogTemplate inner = saveChanges(journal);
        MessageDialogTemplate outer = saveChanges(journal);
        outer.id = QStringLiteral("outer");
        outer.buttons[0].action = [&] {
            QCOMPARE(inner.exec(), QMessageBox::RejectRole);
            journal.append(QStringLiteral("outer action"));
        };
        DialogDriver driver;
        driver.expect(outer.id)
            .run([&](QMessageBox&) { QCOMPARE(inner.exec(), QMessageBox::DestructiveRole); })
            .pressKey(Qt::Key_Return);
        driver.expect(inner.id).click(QStringLiteral("Discard"));
        driver.expect(inner.id).pressEscape();
        QCOMPARE(outer.exec(), QMessageBox::AcceptRole);
        QCOMPARE(journal,
                 QStringList(
                     {QStringLiteral("Discard"), QStringLiteral("Cancel"), QStringLiteral("outer action")}));
    }

    // Destruction while exec() runs

    void destructionInsideTheLoopEndsTheRunWithoutAClickedSlot_data()
    {
        QTest::addColumn<Answer>("destroy");
        QTest::addColumn<bool>("preprocessed");
        const QVector<QPair<const char*, Answer>> ways = {
            {"the dialog", [](QMessageBox& box) { delete &box; }},
            {"the dialog, later", [](QMessageBox& box) { box.deleteLater(); }},
            {"the parent", [](QMessageBox& box) { delete box.parentWidget(); }},
            {"the parent, later", [](QMessageBox& box) { box.parentWidget()->deleteLater(); }},
            {"the parent, by closing it",
             [](QMessageBox& box) {
                 box.parentWidget()->setAttribute(Qt::WA_DeleteOnClose);
                 box.parentWidget()->close();
             }},
            {"the parent, in a loop inside",
             [](QMessageBox& box) {
                 QEventLoop loop;
                 QTimer::singleShot(0, box.parentWidget(), [&] {
                     delete box.parentWidget();
                     loop.quit();
                 });
                 loop.exec();
             }},
            {"the parent, after a click",
             [](QMessageBox& box) {
                 buttonOf(box, QStringLiteral("Save"))->click();
                 delete box.parentWidget();
             }},
        };
        for (const auto& [name, destroy] : ways) {
            QTest::addRow("%s", name) << destroy << false;
            QTest::addRow("%s, preprocessed", name) << destroy << true;
        }
    }

    void destructionInsideTheLoopEndsTheRunWithoutAClickedSlot()
    {
        QFETCH(Answer, destroy);
        QFETCH(bool, preprocessed);
        std::unique_ptr<ScopedPreprocessor> preprocessor;
        if (preprocessed) {
            preprocessor = std::make_unique<ScopedPreprocessor>(
                QStringLiteral("title"), [](MessageDialogTemplate& t) { t.title = QStringLiteral("title"); });
        }
        QStringList journal;
        const QPointer<QWidget> parent(new QWidget);
        parent->show();
        MessageDialogTemplate t = saveChanges(journal);
        t.postExecCallback = callback(journal, QStringLiteral("post"));
        QPointer<QMessageBox> dialog;
        whenModal([&](QMessageBox& box) {
            dialog = &box;
            destroy(box);
        });
        QCOMPARE(t.exec(parent), QMessageBox::NRoles);
        QCOMPARE(journal, QStringList());
        QVERIFY(!dialog);
        delete parent;
    }

    void aDialogThatDeletesItselfOnCloseHasNoClickedSlot()
    {
        QStringList journal;
        MessageDialogTemplate t = saveChanges(journal);
        t.preExecCallback = [](MessageDialog& dialog) {
            dialog.setAttribute(Qt::WA_DeleteOnClose);
            return true;
        };
        QCOMPARE(run(t, press(Qt::Key_Return)), QMessageBox::NRoles);
        QCOMPARE(journal, QStringList());
    }

    void quittingTheApplicationEndsTheRunWithoutAClickedSlot()
    {
        QStringList journal;
        const MessageDialogTemplate t = saveChanges(journal);
        auto result = QMessageBox::InvalidRole;
        QTimer::singleShot(0, qApp, [&] {
            whenModal([](QMessageBox&) { QCoreApplication::quit(); });
            result = t.exec();
        });
        QApplication::exec();
        QCOMPARE(result, QMessageBox::NRoles);
        QCOMPARE(journal, QStringList());
    }

    void anActionMayDestroyTheParentAndTheDialogWithIt()
    {
        QStringList journal;
        const QPointer<QWidget> parent(new QWidget);
        MessageDialogTemplate t = saveChanges(journal);
        t.buttons[0].action = [&] { delete parent; };
        whenModal(press(Qt::Key_Return));
        QCOMPARE(t.exec(parent), QMessageBox::AcceptRole);
        QVERIFY(!parent);
    }

    void anActionMayDestroyTheDialogAlone()
    {
        QStringList journal;
        QWidget parent;
        MessageDialogTemplate t = saveChanges(journal);
        t.buttons[0].action = [&] { delete parent.findChild<MessageDialog*>(); };
        whenModal(press(Qt::Key_Return));
        QCOMPARE(t.exec(&parent), QMessageBox::AcceptRole);
        QVERIFY(parent.children().isEmpty());
    }

    // Exceptions

    void exceptionsPassThroughAndLeaveNoDialogBehind_data()
    {
        QTest::addColumn<QString>("from");
        for (const char* from : {"sink", "preprocessor", "pre-exec callback", "post-exec callback", "action"})
            QTest::addRow("%s", from) << QString::fromLatin1(from);
    }

    void exceptionsPassThroughAndLeaveNoDialogBehind()
    {
        QFETCH(QString, from);
        const auto failIn = [from](const char* place) {
            if (from == QLatin1String(place))
                throw Failure();
        };
        quorvel::GetLoggerDelegate() = [&](std::int32_t, const std::wstring&) { failIn("sink"); };
        const ScopedPreprocessor preprocessor(QStringLiteral("failing"),
                                              [&](MessageDialogTemplate&) { failIn("preprocessor"); });

        MessageDialogTemplate t;
        t.buttons[0] = {
            QStringLiteral("only"), QMessageBox::AcceptRole, true, false, [&] { failIn("action"); }};
        t.preExecCallback = [&](MessageDialog&) {
            failIn("pre-exec callback");
            whenModal(press(Qt::Key_Return));
            return true;
        };
        t.postExecCallback = [&](MessageDialog&) {
            failIn("post-exec callback");
            return true;
        };
        QWidget parent;
        QVERIFY_EXCEPTION_THROWN(t.exec(&parent), Failure);
        QVERIFY(parent.children().isEmpty());
    }

    void anExceptionOfTheSinkPassesThroughCreateDialog()
    {
        quorvel::GetLoggerDelegate() = [](std::int32_t, const std::wstring&) { throw Failure(); };
        QWidget parent;
        QVERIFY_EXCEPTION_THROWN(MessageDialogTemplate().createDialog(&parent), Failure);
        QVERIFY(parent.children().isEmpty());
    }

    // From registration to role

    void aTypicalRequestRunsFromRegistrationToRole()
    {
        LogCapture log;
        QStringList journal;
        QWidget mainWindow;
        {
            MessageDialogTemplate t = saveChanges(journal);
            t.preExecCallback = callback(journal, QStringLiteral("pre"));
            t.postExecCallback = callback(journal, QStringLiteral("post"));
            MessageDialogTemplate::registerTemplate(t);
        }
        const ScopedPreprocessor preprocessor(QStringLiteral("prefix"), [](MessageDialogTemplate& t) {
            t.title.prepend(QStringLiteral("Harbour: "));
        });

        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"))
            .withTitle(QStringLiteral("Harbour: Unsaved changes"))
            .withText(QStringLiteral("Save the changes?"))
            .withIcon(QMessageBox::Question)
            .withPrimaryButton(QStringLiteral("Save"))
            .run([&](QMessageBox& box) {
                QCOMPARE(box.parentWidget(), &mainWindow);
                QVERIFY(!box.styleSheet().isEmpty());
                QVERIFY(!box.iconPixmap().isNull());
                QVERIFY(!buttonOf(box, QStringLiteral("Save"))->styleSheet().isEmpty());
                QVERIFY(buttonOf(box, QStringLiteral("Cancel"))->styleSheet().isEmpty());
                journal.append(QStringLiteral("loop"));
            })
            .pressKey(Qt::Key_Return);
        const auto& templates = MessageDialogTemplate::getRegisteredTemplates();
        QCOMPARE(templates.at(QStringLiteral("save-changes")).exec(&mainWindow), QMessageBox::AcceptRole);

        QCOMPARE(journal,
                 QStringList({QStringLiteral("pre"),
                              QStringLiteral("loop"),
                              QStringLiteral("post"),
                              QStringLiteral("Save")}));
        MessageDialogTemplate::unregisterTemplate(QStringLiteral("save-changes"));
        QVERIFY(templates.empty());
        const QVector<LogLine> lines = {
            {2, QStringLiteral("MessageDialogTemplate: registering dialog template: save-changes")},
            {2, QStringLiteral("MessageDialogTemplate: executing dialog template: save-changes")},
            {2, QStringLiteral("MessageDialogTemplate: unregistering dialog template: save-changes")},
        };
        QCOMPARE(log.lines(), lines);
    }
};

QUILLET_TEST_MAIN(TestTemplateExec)
#include "tst_TemplateExec.moc"
