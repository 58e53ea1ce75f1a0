#include "TestCase.h"

#include <Quillet/MessageDialog.h>

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QPushButton>

#include <memory>
#include <stdexcept>

using Quillet::DialogCallback;
using Quillet::MessageDialog;

Q_DECLARE_METATYPE(std::function<void(MessageDialog&)>)

namespace {

const QString title = QStringLiteral("The title");
const QString text = QStringLiteral("The text");
const QString informative_text = QStringLiteral("The informative text");
const Qt::WindowFlags standard_flags = Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint;

// Appends its name to a journal and answers.
DialogCallback entry(QStringList& journal, const QString& name, bool answer = true)
{
    return [&journal, name, answer](MessageDialog&) {
        journal.append(name);
        return answer;
    };
}

// An event filter that counts how often a widget is shown.
class ShowCounter : public QObject
{
public:
    int count = 0;

    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Show ? 1 : 0;
        return false;
    }
};

// An event filter that notes, at the moment a box gets its informative label, whether the box has a default
// button.
class InformativeLabelWatcher : public QObject
{
public:
    bool seen = false;
    bool hadDefaultButton = false;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const auto* box = qobject_cast<QMessageBox*>(watched);
        if (box && event->type() == QEvent::ChildAdded
            && static_cast<QChildEvent*>(event)->child()->objectName()
                   == QLatin1String("qt_msgbox_informativelabel")) {
            seen = true;
            hadDefaultButton = box->defaultButton() != nullptr;
        }
        return false;
    }
};

void click(QMessageBox& box, QMessageBox::StandardButton button)
{
    box.button(button)->click();
}

} // namespace

class TestMessageDialog : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The meta-object

    void theMetaObjectNamesTheClassAndDeclaresNothing()
    {
        const QMetaObject& own = MessageDialog::staticMetaObject;
        const QMetaObject& base = QMessageBox::staticMetaObject;
        QCOMPARE(own.className(), "Quillet::MessageDialog");
        QCOMPARE(own.superClass(), &base);
        QCOMPARE(own.methodCount(), base.methodCount());
        QCOMPARE(own.propertyCount(), base.propertyCount());
        QCOMPARE(own.enumeratorCount(), base.enumeratorCount());
        QCOMPARE(own.classInfoCount(), base.classInfoCount());
        QCOMPARE(own.constructorCount(), 0);
    }

    void castsByNameAnswerForTheClassAndItsBases()
    {
        MessageDialog dialog;
        QCOMPARE(dialog.qt_metacast("Quillet::MessageDialog"), static_cast<void*>(&dialog));
        QCOMPARE(dialog.qt_metacast("QMessageBox"), static_cast<void*>(static_cast<QMessageBox*>(&dialog)));
        QVERIFY(!dialog.qt_metacast("MessageDialog"));
        QVERIFY(!dialog.qt_metacast(nullptr));
    }

    // Constructors

    void theParentConstructorMakesABareBox()
    {
        QWidget parent;
        const MessageDialog dialog(&parent);
        QCOMPARE(dialog.parentWidget(), &parent);
        QCOMPARE(dialog.windowTitle(), QString());
        QCOMPARE(dialog.text(), QString());
        QCOMPARE(dialog.icon(), QMessageBox::NoIcon);
        QVERIFY(dialog.buttons().isEmpty());
        QCOMPARE(dialog.windowFlags(), QMessageBox(&parent).windowFlags());
        QVERIFY(!MessageDialog().parentWidget());
    }

    void theTitleComesFromTheIconWithoutAParent_data()
    {
        QTest::addColumn<QMessageBox::Icon>("icon");
        QTest::addColumn<QString>("expected");
        QTest::newRow("Critical") << QMessageBox::Critical << QStringLiteral("Error");
        QTest::newRow("Information") << QMessageBox::Information << QStringLiteral("Information");
        QTest::newRow("Question") << QMessageBox::Question << QStringLiteral("Question");
        QTest::newRow("Warning") << QMessageBox::Warning << QStringLiteral("Warning");
        QTest::newRow("NoIcon") << QMessageBox::NoIcon << QStringLiteral("Message");
        QTest::newRow("an unknown icon") << static_cast<QMessageBox::Icon>(7) << QStringLiteral("Message");
    }

    void theTitleComesFromTheIconWithoutAParent()
    {
        QFETCH(QMessageBox::Icon, icon);
        QFETCH(QString, expected);
        const MessageDialog dialog(text, icon);
        QCOMPARE(dialog.windowTitle(), expected);
        QCOMPARE(dialog.text(), text);
        QCOMPARE(dialog.icon(), icon);
        QVERIFY(dialog.buttons().isEmpty());
        QCOMPARE(
            dialog.windowFlags(),
            QMessageBox(icon, title, text, QMessageBox::NoButton, nullptr, standard_flags).windowFlags());
    }

    void theTitleComesFromTheParentWhereThereIsOne()
    {
        QWidget parent;
        parent.setWindowTitle(QStringLiteral("Main window"));
        const MessageDialog dialog(text, QMessageBox::Warning, &parent);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Main window"));
        QCOMPARE(dialog.parentWidget(), &parent);
    }

    void anEmptyTitleOfTheParentIsTakenAsItIs()
    {
        QWidget parent;
        QCOMPARE(MessageDialog(text, QMessageBox::Warning, &parent).windowTitle(), QString());
        QCOMPARE(MessageDialog(text, QMessageBox::NoIcon, &parent).windowTitle(), QString());
    }

    void theTitleConstructorMakesABoxWithoutButtons()
    {
        QWidget parent;
        const MessageDialog dialog(title, text, QMessageBox::Critical, &parent);
        QCOMPARE(dialog.windowTitle(), title);
        QCOMPARE(dialog.text(), text);
        QCOMPARE(dialog.icon(), QMessageBox::Critical);
        QCOMPARE(dialog.parentWidget(), &parent);
        QVERIFY(dialog.buttons().isEmpty());
        QCOMPARE(
            dialog.windowFlags(),
            QMessageBox(QMessageBox::Critical, title, text, QMessageBox::NoButton, &parent, standard_flags)
                .windowFlags());
        QVERIFY(!MessageDialog(title, text, QMessageBox::Critical).parentWidget());
    }

    void theButtonConstructorMakesABoxWithThatOneDefaultButton()
    {
        QWidget parent;
        const MessageDialog dialog(title, text, QMessageBox::Warning, QMessageBox::Ok, &parent);
        QCOMPARE(dialog.buttons().size(), 1);
        QCOMPARE(dialog.standardButton(dialog.buttons().constFirst()), QMessageBox::Ok);
        QCOMPARE(dialog.defaultButton(), dialog.button(QMessageBox::Ok));
        QCOMPARE(dialog.windowTitle(), title);
        QCOMPARE(dialog.text(), text);
        QCOMPARE(dialog.icon(), QMessageBox::Warning);
        QCOMPARE(dialog.parentWidget(), &parent);
        QCOMPARE(dialog.windowFlags(),
                 QMessageBox(QMessageBox::Warning, title, text, QMessageBox::Ok, &parent, standard_flags)
                     .windowFlags());
        QVERIFY(!MessageDialog(title, text, QMessageBox::Warning, QMessageBox::Ok).parentWidget());
    }

    void theFullConstructorSetsEverything()
    {
        QWidget parent;
        const QMessageBox::StandardButtons buttons = QMessageBox::Yes | QMessageBox::No;
        const MessageDialog dialog(
            title, text, informative_text, QMessageBox::Question, buttons, QMessageBox::No, &parent);
        QCOMPARE(dialog.windowTitle(), title);
        QCOMPARE(dialog.text(), text);
        QCOMPARE(dialog.informativeText(), informative_text);
        QCOMPARE(dialog.icon(), QMessageBox::Question);
        QCOMPARE(dialog.standardButtons(), buttons);
        QCOMPARE(dialog.buttons().size(), 2);
        QCOMPARE(dialog.defaultButton(), dialog.button(QMessageBox::No));
        QCOMPARE(dialog.parentWidget(), &parent);
        QCOMPARE(
            dialog.windowFlags(),
            QMessageBox(QMessageBox::Question, title, text, buttons, &parent, standard_flags).windowFlags());
        QVERIFY(!MessageDialog(title, text, informative_text, QMessageBox::Question, buttons, QMessageBox::No)
                     .parentWidget());
    }

    void theFullConstructorTakesFlagsInPlaceOfTheStandardOnes()
    {
        const Qt::WindowFlags flags = Qt::Window | Qt::WindowStaysOnTopHint;
        const MessageDialog dialog(title,
                                   text,
                                   informative_text,
                                   QMessageBox::Question,
                                   QMessageBox::Ok,
                                   QMessageBox::Ok,
                                   nullptr,
                                   flags);
        QCOMPARE(
            dialog.windowFlags(),
            QMessageBox(QMessageBox::Question, title, text, QMessageBox::Ok, nullptr, flags).windowFlags());
        QCOMPARE(dialog.windowType(), Qt::Window);
    }

    void theFullConstructorSetsTheDefaultButtonBeforeTheInformativeText()
    {
        InformativeLabelWatcher watcher;
        qApp->installEventFilter(&watcher);
        const MessageDialog dialog(
            title, text, informative_text, QMessageBox::Question, QMessageBox::Ok, QMessageBox::Ok);
        QVERIFY(watcher.seen);
        QVERIFY(watcher.hadDefaultButton);
    }

    // The identifier

    void aFreshDialogHasNoIdentifier()
    {
        QCOMPARE(MessageDialog().getId(), QString());
        QCOMPARE(MessageDialog(text, QMessageBox::Warning).getId(), QString());
    }

    void theIdentifierIsWhatWasSet()
    {
        MessageDialog dialog;
        QString id = QStringLiteral("save-changes");
        dialog.setId(id);
        id.append(QLatin1Char('!'));
        QCOMPARE(dialog.getId(), QStringLiteral("save-changes"));
        dialog.setId(QString());
        QCOMPARE(dialog.getId(), QString());
    }

    // exec() and its callbacks

    void execRunsTheCallbacksAroundTheLoopAndReturnsTheLoopsResult()
    {
        QStringList journal;
        MessageDialog dialog(title, text, QMessageBox::Question, QMessageBox::Retry);
        dialog.setCallbacks(entry(journal, QStringLiteral("pre")), entry(journal, QStringLiteral("post")));
        whenModal([&](QMessageBox& box) {
            journal.append(QStringLiteral("loop"));
            click(box, QMessageBox::Retry);
        });
        QCOMPARE(dialog.exec(), int(QMessageBox::Retry));
        QCOMPARE(journal,
                 QStringList({QStringLiteral("pre"), QStringLiteral("loop"), QStringLiteral("post")}));
    }

    void callbacksAreGivenTheDialog()
    {
        MessageDialog dialog(title, text, QMessageBox::Question, QMessageBox::Ok);
        QVector<MessageDialog*> given;
        const DialogCallback note = [&](MessageDialog& box) {
            given.append(&box);
            return true;
        };
        dialog.setCallbacks(note, note);
        whenModal([](QMessageBox& box) { click(box, QMessageBox::Ok); });
        dialog.exec();
        QCOMPARE(given, QVector<MessageDialog*>({&dialog, &dialog}));
    }

    void aVetoBeforeTheLoopKeepsTheBoxFromShowing()
    {
        QStringList journal;
        MessageDialog dialog(title, text, QMessageBox::Question, QMessageBox::Ok);
        ShowCounter shows;
        dialog.installEventFilter(&shows);
        dialog.setCallbacks(entry(journal, QStringLiteral("pre"), false),
                            entry(journal, QStringLiteral("post")));
        QCOMPARE(dialog.exec(), -1);
        QCOMPARE(journal, QStringList(QStringLiteral("pre")));
        QCOMPARE(shows.count, 0);
        QVERIFY(!dialog.isVisible());
    }

    void theCallbackAfterTheLoopRunsForAResultOfZeroToo()
    {
        for (const bool veto : {false, true}) {
            QStringList journal;
            MessageDialog dialog(title, text, QMessageBox::Question);
            QPushButton* const custom = dialog.addButton(QStringLiteral("Custom"), QMessageBox::AcceptRole);
            dialog.setCallbacks({}, entry(journal, QStringLiteral("post"), !veto));
            whenModal([&](QMessageBox&) { custom->click(); });
            QCOMPARE(dialog.exec(), veto ? -1 : 0);
            QCOMPARE(journal, QStringList(QStringLiteral("post")));
        }
    }

    void aVetoAfterTheLoopDropsTheResult()
    {
        MessageDialog dialog(title, text, QMessageBox::Question, QMessageBox::Ok);
        QAbstractButton* clicked = nullptr;
        dialog.setCallbacks({}, [&](MessageDialog& box) {
            clicked = box.clickedButton();
            return false;
        });
        whenModal([](QMessageBox& box) { click(box, QMessageBox::Ok); });
        QCOMPARE(dialog.exec(), -1);
        QCOMPARE(clicked, dialog.button(QMessageBox::Ok));
    }

    void eitherCallbackMayBeMissing_data()
    {
        QTest::addColumn<bool>("pre");
        QTest::addColumn<bool>("post");
        QTest::addColumn<QStringList>("ran");
        QTest::newRow("both empty") << false << false << QStringList();
        QTest::newRow("only pre-exec") << true << false << QStringList({QStringLiteral("pre")});
        QTest::newRow("only post-exec") << false << true << QStringList({QStringLiteral("post")});
    }

    void eitherCallbackMayBeMissing()
    {
        QFETCH(bool, pre);
        QFETCH(bool, post);
        QFETCH(QStringList, ran);
        QStringList journal;
        MessageDialog dialog(title, text, QMessageBox::Question, QMessageBox::Ok);
        dialog.setCallbacks(pre ? entry(journal, QStringLiteral("pre")) : DialogCallback(),
                            post ? entry(journal, QStringLiteral("post")) : DialogCallback());
        whenModal([](QMessageBox& box) { click(box, QMessageBox::Ok); });
        QCOMPARE(dialog.exec(), int(QMessageBox::Ok));
        QCOMPARE(journal, ran);
    }

    void twoEmptyCallbacksMakeExecBehaveLikeTheBaseClass_data()
    {
        QTest::addColumn<bool>("ownExec");
        QTest::newRow("MessageDialog::exec") << true;
        QTest::newRow("QDialog::exec") << false;
    }

    void twoEmptyCallbacksMakeExecBehaveLikeTheBaseClass()
    {
        QFETCH(bool, ownExec);
        QStringList journal;
        MessageDialog dialog(title, text, QMessageBox::Question, QMessageBox::Ok);
        dialog.addButton(QMessageBox::Cancel);
        dialog.setCallbacks(entry(journal, QStringLiteral("pre"), false),
                            entry(journal, QStringLiteral("post"), false));
        dialog.setCallbacks({}, {});

        whenModal([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
        QCOMPARE(ownExec ? dialog.exec() : dialog.QDialog::exec(), int(QMessageBox::Cancel));
        QCOMPARE(dialog.result(), int(QMessageBox::Cancel));
        QCOMPARE(dialog.clickedButton(), dialog.button(QMessageBox::Cancel));
        QVERIFY(!dialog.isVisible());
        QCOMPARE(journal, QStringList());
    }

    void execThroughABasePointerRunsTheCallbacks()
    {
        QStringList journal;
        MessageDialog dialog(title, text, QMessageBox::Question, QMessageBox::Ok);
        dialog.setCallbacks(entry(journal, QStringLiteral("pre")), entry(journal, QStringLiteral("post")));

        QMessageBox* const box = &dialog;
        whenModal([](QMessageBox& running) { click(running, QMessageBox::Ok); });
        QCOMPARE(box->exec(), int(QMessageBox::Ok));
        QCOMPARE(journal, QStringList({QStringLiteral("pre"), QStringLiteral("post")}));

        QDialog* const base = &dialog;
        whenModal([](QMessageBox& running) { click(running, QMessageBox::Ok); });
        QCOMPARE(base->exec(), int(QMessageBox::Ok));
        QCOMPARE(journal.size(), 4);
    }

    void callbacksCanBeReplacedBetweenRunsAndDuringTheLoop()
    {
        QStringList journal;
        MessageDialog dialog(title, text, QMessageBox::Question, QMessageBox::Ok);
        dialog.setCallbacks(entry(journal, QStringLiteral("first pre")),
                            entry(journal, QStringLiteral("first post")));
        whenModal([&](QMessageBox& box) {
            dialog.setCallbacks(entry(journal, QStringLiteral("second pre")),
                                entry(journal, QStringLiteral("second post")));
            click(box, QMessageBox::Ok);
        });
        dialog.exec();
        QCOMPARE(journal, QStringList({QStringLiteral("first pre"), QStringLiteral("second post")}));

        journal.clear();
        dialog.setCallbacks({}, entry(journal, QStringLiteral("third post")));
        whenModal([](QMessageBox& box) { click(box, QMessageBox::Ok); });
        dialog.exec();
        QCOMPARE(journal, QStringList(QStringLiteral("third post")));
    }

    void showingWithoutExecRunsNoCallback_data()
    {
        QTest::addColumn<std::function<void(MessageDialog&)>>("show");
        using Show = std::function<void(MessageDialog&)>;
        QTest::newRow("show") << Show([](MessageDialog& dialog) { dialog.show(); });
        QTest::newRow("open") << Show([](MessageDialog& dialog) { dialog.open(); });
        QTest::newRow("setVisible") << Show([](MessageDialog& dialog) { dialog.setVisible(true); });
    }

    void showingWithoutExecRunsNoCallback()
    {
        QFETCH(std::function<void(MessageDialog&)>, show);
        QStringList journal;
        MessageDialog dialog(title, text, QMessageBox::Question, QMessageBox::Ok);
        dialog.setCallbacks(entry(journal, QStringLiteral("pre"), false),
                            entry(journal, QStringLiteral("post")));
        show(dialog);
        QVERIFY(dialog.isVisible());
        QVERIFY(!dialog.styleSheet().isEmpty());
        click(dialog, QMessageBox::Ok);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(journal, QStringList());
    }

    void exceptionsOfCallbacksPassThrough_data()
    {
        QTest::addColumn<bool>("fromPreExec");
        QTest::newRow("pre-exec") << true;
        QTest::newRow("post-exec") << false;
    }

    void exceptionsOfCallbacksPassThrough()
    {
        QFETCH(bool, fromPreExec);
        const DialogCallback failing = [](MessageDialog&) -> bool { throw std::runtime_error("callback"); };
        MessageDialog dialog(title, text, QMessageBox::Question, QMessageBox::Ok);
        dialog.setCallbacks(fromPreExec ? failing : DialogCallback(),
                            fromPreExec ? DialogCallback() : failing);
        if (!fromPreExec)
            whenModal([](QMessageBox& box) { click(box, QMessageBox::Ok); });
        QVERIFY_EXCEPTION_THROWN(dialog.exec(), std::runtime_error);
        QVERIFY(!dialog.isVisible());
    }

    void aDialogWhoseCallbackHasThrownRunsAgain()
    {
        MessageDialog dialog(title, text, QMessageBox::Question, QMessageBox::Ok);
        bool throws = true;
        dialog.setCallbacks(
            [&throws](MessageDialog&) {
                if (throws)
                    throw std::runtime_error("callback");
                return true;
            },
            {});
        QVERIFY_EXCEPTION_THROWN(dialog.exec(), std::runtime_error);
        throws = false;
        whenModal([](QMessageBox& box) { click(box, QMessageBox::Ok); });
        QCOMPARE(dialog.exec(), int(QMessageBox::Ok));
    }

    // The end of the application inside the modal loop. To delete it there ends the process, by Qt's own
    // doing, with any dialog.

    void quittingTheApplicationEndsTheLoopAndLeavesThePostExecCallbackItsTurn()
    {
        QStringList journal;
        MessageDialog dialog(title, text, QMessageBox::Question, QMessageBox::Ok);
        dialog.setCallbacks({}, entry(journal, QStringLiteral("post")));
        int result = -2;
        QTimer::singleShot(0, qApp, [&] {
            whenModal([](QMessageBox&) { QCoreApplication::quit(); });
            result = dialog.exec();
        });
        QApplication::exec();
        QCOMPARE(result, int(QDialog::Rejected));
        QCOMPARE(journal, QStringList(QStringLiteral("post")));
    }

    // Deletion inside the modal loop

    void execSurvivesADeletionOfTheBoxInsideTheLoop()
    {
        QStringList journal;
        const QPointer<MessageDialog> dialog(
            new MessageDialog(title, text, QMessageBox::Question, QMessageBox::Ok));
        dialog->setCallbacks({}, entry(journal, QStringLiteral("post"), false));
        whenModal([](QMessageBox& box) { delete &box; });
        QCOMPARE(dialog->exec(), int(QDialog::Rejected));
        QVERIFY(dialog.isNull());
        QCOMPARE(journal, QStringList());
    }

    void execSurvivesADeletionOfTheParentInsideTheLoop()
    {
        QStringList journal;
        auto parent = std::make_unique<QWidget>();
        const QPointer<MessageDialog> dialog(
            new MessageDialog(title, text, QMessageBox::Question, QMessageBox::Ok, parent.get()));
        dialog->setCallbacks({}, entry(journal, QStringLiteral("post"), false));
        whenModal([&](QMessageBox&) { parent.reset(); });
        QCOMPARE(dialog->exec(), int(QDialog::Rejected));
        QVERIFY(dialog.isNull());
        QCOMPARE(journal, QStringList());
    }

    void execSurvivesADeletionOnClose()
    {
        QStringList journal;
        const QPointer<MessageDialog> dialog(
            new MessageDialog(title, text, QMessageBox::Question, QMessageBox::Ok));
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setCallbacks({}, entry(journal, QStringLiteral("post"), false));
        whenModal([](QMessageBox& box) { click(box, QMessageBox::Ok); });
        QCOMPARE(dialog->exec(), int(QMessageBox::Ok));
        QVERIFY(dialog.isNull());
        QCOMPARE(journal, QStringList());
    }
};

QUILLET_TEST_MAIN(TestMessageDialog)
#include "tst_MessageDialog.moc"
