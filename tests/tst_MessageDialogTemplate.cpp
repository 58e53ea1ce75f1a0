#include "TemplateTestCase.h"

#include <QtWidgets/QPushButton>

#include <memory>
#include <type_traits>

using Quillet::MessageDialog;
using Quillet::MessageDialogButtonTemplate;
using Quillet::MessageDialogTemplate;

namespace {

static_assert(std::is_aggregate_v<MessageDialogTemplate>, "a plain value");
static_assert(std::is_aggregate_v<MessageDialogButtonTemplate>, "a plain value");
static_assert(
    std::is_same_v<decltype(MessageDialogTemplate::buttons), std::array<MessageDialogButtonTemplate, 4>>);
static_assert(std::is_same_v<decltype(MessageDialogTemplate::preExecCallback), Quillet::DialogCallback>);
static_assert(std::is_same_v<decltype(MessageDialogTemplate::postExecCallback), Quillet::DialogCallback>);
static_assert(std::is_same_v<decltype(MessageDialogButtonTemplate::action), std::function<void()>>);

// What registering relies on to leave no half-made entry behind.
static_assert(std::is_nothrow_move_assignable_v<MessageDialogTemplate>);

// An action with a counter of its own, which every copy takes along.
struct CountingAction
{
    int count = 0;
    int* shown;

    void operator()() { *shown = ++count; }
};

std::unique_ptr<MessageDialog> created(const MessageDialogTemplate& t, QWidget* parent = nullptr)
{
    return std::unique_ptr<MessageDialog>(t.createDialog(parent));
}

QStringList textsOf(const MessageDialog& dialog)
{
    QStringList result;
    const QList<QAbstractButton*> buttons = dialog.buttons();
    for (const QAbstractButton* button : buttons)
        result.append(button->text());
    return result;
}

} // namespace

class TestMessageDialogTemplate : public TemplateTestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The value

    void aDefaultTemplateIsFullyDefined()
    {
        // In storage that is not zero, so that a forgotten initialiser shows.
        alignas(MessageDialogTemplate) unsigned char storage[sizeof(MessageDialogTemplate)];
        std::fill(std::begin(storage), std::end(storage), static_cast<unsigned char>(0xA5));
        const auto destroy = [](MessageDialogTemplate* t) { t->~MessageDialogTemplate(); };
        const std::unique_ptr<MessageDialogTemplate, decltype(destroy)> t(new (storage) MessageDialogTemplate,
                                                                          destroy);

        QCOMPARE(t->id, QString());
        QCOMPARE(t->icon, QMessageBox::NoIcon);
        QCOMPARE(t->title, QString());
        QCOMPARE(t->text, QString());
        QCOMPARE(t->parent, nullptr);
        QVERIFY(!t->preExecCallback);
        QVERIFY(!t->postExecCallback);
        for (const MessageDialogButtonTemplate& slot : t->buttons) {
            QCOMPARE(slot.text, QString());
            QCOMPARE(slot.role, QMessageBox::AcceptRole);
            QCOMPARE(slot.isDefault, false);
            QCOMPARE(slot.isEscape, false);
            QVERIFY(!slot.action);
        }
    }

    void membersComeInTheDocumentedOrder()
    {
        QWidget parent;
        int ran = 0;
        const MessageDialogTemplate t = {QStringLiteral("id"),
                                         QMessageBox::Warning,
                                         QStringLiteral("title"),
                                         QStringLiteral("text"),
                                         {},
                                         &parent,
                                         [&](MessageDialog&) { return ran = 1; },
                                         [&](MessageDialog&) { return ran = 2; }};
        const MessageDialogButtonTemplate slot = {
            QStringLiteral("slot"), QMessageBox::NoRole, true, false, [&] { ran = 3; }};

        MessageDialog dialog;
        QCOMPARE(t.id, QStringLiteral("id"));
        QCOMPARE(t.icon, QMessageBox::Warning);
        QCOMPARE(t.title, QStringLiteral("title"));
        QCOMPARE(t.text, QStringLiteral("text"));
        QCOMPARE(t.parent, &parent);
        t.preExecCallback(dialog);
        QCOMPARE(ran, 1);
        t.postExecCallback(dialog);
        QCOMPARE(ran, 2);
        QCOMPARE(slot.text, QStringLiteral("slot"));
        QCOMPARE(slot.role, QMessageBox::NoRole);
        QVERIFY(slot.isDefault && !slot.isEscape);
        slot.action();
        QCOMPARE(ran, 3);
    }

    void aCopyCountsForItself()
    {
        int shown = 0;
        MessageDialogTemplate source;
        source.buttons[2].action = CountingAction{0, &shown};
        source.buttons[2].action();
        source.buttons[2].action();
        QCOMPARE(shown, 2);

        const MessageDialogTemplate constructed = source;
        MessageDialogTemplate assigned;
        assigned = source;
        for (const MessageDialogTemplate* copy : {&constructed, &std::as_const(assigned)}) {
            copy->buttons[2].action();
            QCOMPARE(shown, 3);
        }
        source.buttons[2].action();
        QCOMPARE(shown, 3);
    }

    void selfAssignmentChangesNothing()
    {
        QStringList journal;
        MessageDialogTemplate t = saveChanges(journal);
        t.preExecCallback = [&](MessageDialog&) {
            journal.append(QStringLiteral("pre"));
            return true;
        };
        const MessageDialogTemplate& same = t;
        t = same;

        QCOMPARE(t.id, QStringLiteral("save-changes"));
        QCOMPARE(t.icon, QMessageBox::Question);
        QCOMPARE(t.title, QStringLiteral("Unsaved changes"));
        QCOMPARE(t.text, QStringLiteral("Save the changes?"));
        QCOMPARE(t.buttons[1].text, QStringLiteral("&Discard"));
        QCOMPARE(t.buttons[1].role, QMessageBox::DestructiveRole);
        QVERIFY(t.buttons[0].isDefault && t.buttons[3].isEscape);
        MessageDialog dialog;
        t.preExecCallback(dialog);
        t.buttons[3].action();
        QVERIFY(!t.postExecCallback);
        QCOMPARE(journal, QStringList({QStringLiteral("pre"), QStringLiteral("Cancel")}));
    }

    // createDialog()

    void theDialogIsWhatTheTemplateDescribes()
    {
        QStringList journal;
        const auto dialog = created(saveChanges(journal));
        QCOMPARE(dialog->getId(), QStringLiteral("save-changes"));
        QCOMPARE(dialog->icon(), QMessageBox::Question);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Unsaved changes"));
        QCOMPARE(dialog->text(), QStringLiteral("Save the changes?"));
        QCOMPARE(dialog->buttons().size(), 3);
        QCOMPARE(dialog->buttonRole(buttonOf(*dialog, QStringLiteral("Save"))), QMessageBox::AcceptRole);
        QCOMPARE(dialog->buttonRole(buttonOf(*dialog, QStringLiteral("Discard"))),
                 QMessageBox::DestructiveRole);
        QCOMPARE(dialog->buttonRole(buttonOf(*dialog, QStringLiteral("Cancel"))), QMessageBox::RejectRole);
        QCOMPARE(dialog->defaultButton(), buttonOf(*dialog, QStringLiteral("Save")));
        QCOMPARE(dialog->escapeButton(), buttonOf(*dialog, QStringLiteral("Cancel")));
        QVERIFY(!dialog->isVisible());
        QVERIFY(!dialog->testAttribute(Qt::WA_WState_ExplicitShowHide));
    }

    void buttonsAreAddedInTheOrderOfTheSlots()
    {
        MessageDialogTemplate t;
        // Of equal role, because a box sorts its buttons by role.
        for (std::size_t i = 0; i < t.buttons.size(); ++i)
            t.buttons[i] = {QString::number(i), QMessageBox::ActionRole, false, false, {}};
        QCOMPARE(textsOf(*created(t)),
                 QStringList(
                     {QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")}));
    }

    void aDefaultTemplateMakesABareDialog()
    {
        QWidget parent;
        const auto dialog = created(MessageDialogTemplate(), &parent);
        QCOMPARE(dialog->parentWidget(), &parent);
        QCOMPARE(dialog->getId(), QString());
        QCOMPARE(dialog->icon(), QMessageBox::NoIcon);
        QCOMPARE(dialog->windowTitle(), QString());
        QCOMPARE(dialog->text(), QString());
        QVERIFY(dialog->buttons().isEmpty());
        QVERIFY(!dialog->defaultButton());
        QVERIFY(!dialog->escapeButton());
    }

    void anEmptyTitleStaysEmptyWhateverTheIcon()
    {
        MessageDialogTemplate t;
        t.icon = QMessageBox::Critical;
        QCOMPARE(created(t)->windowTitle(), QString());
        QWidget parent;
        parent.setWindowTitle(QStringLiteral("parent"));
        QCOMPARE(created(t, &parent)->windowTitle(), QString());
    }

    void theCallersParentWinsOverTheTemplates_data()
    {
        QTest::addColumn<bool>("given");
        QTest::addColumn<bool>("stored");
        QTest::addColumn<QString>("expected");
        QTest::newRow("neither") << false << false << QString();
        QTest::newRow("only the template's") << false << true << QStringLiteral("stored");
        QTest::newRow("only the caller's") << true << false << QStringLiteral("given");
        QTest::newRow("both") << true << true << QStringLiteral("given");
    }

    void theCallersParentWinsOverTheTemplates()
    {
        QFETCH(bool, given);
        QFETCH(bool, stored);
        QFETCH(QString, expected);
        QWidget givenParent;
        givenParent.setObjectName(QStringLiteral("given"));
        QWidget storedParent;
        storedParent.setObjectName(QStringLiteral("stored"));
        MessageDialogTemplate t;
        t.parent = stored ? &storedParent : nullptr;

        const auto dialog = created(t, given ? &givenParent : nullptr);
        QCOMPARE(dialog->parentWidget() ? dialog->parentWidget()->objectName() : QString(), expected);
    }

    void theParentOwnsTheDialog()
    {
        auto parent = std::make_unique<QWidget>();
        const QPointer<MessageDialog> dialog(MessageDialogTemplate().createDialog(parent.get()));
        QVERIFY(dialog);
        parent.reset();
        QVERIFY(!dialog);
    }

    void ofTwoDefaultSlotsTheLaterWins()
    {
        MessageDialogTemplate t;
        t.buttons[0] = {QStringLiteral("first"), QMessageBox::AcceptRole, true, false, {}};
        t.buttons[2] = {QStringLiteral("second"), QMessageBox::AcceptRole, true, false, {}};
        const auto dialog = created(t);
        QCOMPARE(dialog->buttons().size(), 2);
        QCOMPARE(dialog->defaultButton(), buttonOf(*dialog, QStringLiteral("second")));
    }

    void ofTwoEscapeSlotsTheLaterWins()
    {
        MessageDialogTemplate t;
        t.buttons[0] = {QStringLiteral("first"), QMessageBox::RejectRole, false, true, {}};
        t.buttons[2] = {QStringLiteral("second"), QMessageBox::AcceptRole, false, true, {}};
        const auto dialog = created(t);
        QCOMPARE(dialog->buttons().size(), 2);
        QCOMPARE(dialog->escapeButton(), buttonOf(*dialog, QStringLiteral("second")));
    }

    void oneSlotMayBeDefaultAndEscape()
    {
        MessageDialogTemplate t;
        t.buttons[1] = {QStringLiteral("both"), QMessageBox::AcceptRole, true, true, {}};
        const auto dialog = created(t);
        QCOMPARE(dialog->defaultButton(), dialog->buttons().constFirst());
        QCOMPARE(dialog->escapeButton(), dialog->buttons().constFirst());
    }

    void aSlotWithoutTextMakesNoButtonAndNoDefault_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("null") << QString();
        QTest::newRow("empty") << QString(QLatin1String(""));
    }

    void aSlotWithoutTextMakesNoButtonAndNoDefault()
    {
        QFETCH(QString, text);
        bool ran = false;
        MessageDialogTemplate t;
        t.buttons[0] = {QStringLiteral("only"), QMessageBox::AcceptRole, true, false, {}};
        t.buttons[1] = {text, QMessageBox::DestructiveRole, true, true, [&] { ran = true; }};
        const auto dialog = created(t);
        QCOMPARE(textsOf(*dialog), QStringList(QStringLiteral("only")));
        QCOMPARE(dialog->defaultButton(), dialog->buttons().constFirst());
        QVERIFY(!dialog->escapeButton());
        QVERIFY(!ran);
    }

    void aRoleThatNoButtonCanHaveMakesNoButton_data()
    {
        QTest::addColumn<int>("role");
        QTest::newRow("InvalidRole") << int(QMessageBox::InvalidRole);
        QTest::newRow("NRoles") << int(QMessageBox::NRoles);
    }

    void aRoleThatNoButtonCanHaveMakesNoButton()
    {
        QFETCH(int, role);
        MessageDialogTemplate t;
        t.buttons[0] = {QStringLiteral("none"), static_cast<QMessageBox::ButtonRole>(role), true, true, {}};
        t.buttons[1] = {QStringLiteral("one"), QMessageBox::NoRole, false, false, {}};
        expectMessage(QStringLiteral("QDialogButtonBox::addButton: Invalid ButtonRole, button not added"));
        const auto dialog = created(t);
        QCOMPARE(textsOf(*dialog), QStringList(QStringLiteral("one")));
        QVERIFY(!dialog->defaultButton());
        QVERIFY(!dialog->escapeButton());
    }

    void theCallbacksGoWithTheDialogAndTheActionsDoNot()
    {
        QStringList journal;
        MessageDialogTemplate t = saveChanges(journal);
        t.preExecCallback = [&](MessageDialog& dialog) {
            journal.append(QStringLiteral("pre ") + dialog.getId());
            return true;
        };
        t.postExecCallback = [&](MessageDialog&) {
            journal.append(QStringLiteral("post"));
            return true;
        };
        const auto dialog = created(t);
        t = {};

        whenModal([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
        dialog->exec();
        QCOMPARE(dialog->clickedButton(), buttonOf(*dialog, QStringLiteral("Save")));
        QCOMPARE(journal, QStringList({QStringLiteral("pre save-changes"), QStringLiteral("post")}));
    }

    // Preprocessors

    void thePreprocessorsChangeTheDialogAndNotTheTemplate()
    {
        const ScopedPreprocessor preprocessor(QStringLiteral("all"), [](MessageDialogTemplate& t) {
            t.id += QLatin1Char('!');
            t.title += QLatin1Char('!');
            t.buttons[2] = {QStringLiteral("More"), QMessageBox::HelpRole, false, false, {}};
        });
        QStringList journal;
        const MessageDialogTemplate t = saveChanges(journal);
        const auto dialog = created(t);
        QCOMPARE(dialog->getId(), QStringLiteral("save-changes!"));
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Unsaved changes!"));
        QCOMPARE(dialog->buttonRole(buttonOf(*dialog, QStringLiteral("More"))), QMessageBox::HelpRole);

        QCOMPARE(t.id, QStringLiteral("save-changes"));
        QCOMPARE(t.title, QStringLiteral("Unsaved changes"));
        QCOMPARE(t.buttons[2].text, QString());
    }

    void theParentThatAPreprocessorSetsIsUsed()
    {
        QWidget parent;
        const ScopedPreprocessor preprocessor(QStringLiteral("parent"),
                                              [&](MessageDialogTemplate& t) { t.parent = &parent; });
        QCOMPARE(created(MessageDialogTemplate())->parentWidget(), &parent);
    }

    void theTemplateIsCopiedOnlyWherePreprocessorsAre()
    {
        int copies = 0;
        struct Action
        {
            int* copies;
            explicit Action(int* counter) : copies(counter) {}
            Action(const Action& other) : copies(other.copies) { ++*copies; }
            Action(Action&&) = default;
            void operator()() const {}
        };
        MessageDialogTemplate t;
        t.buttons[0].action = Action(&copies);
        copies = 0;
        created(t);
        QCOMPARE(copies, 0);

        const ScopedPreprocessor preprocessor(QStringLiteral("nothing"), [](MessageDialogTemplate&) {});
        created(t);
        QCOMPARE(copies, 1);
    }

    void theCopyIsDestroyedBeforeCreateDialogReturns()
    {
        auto token = std::make_shared<int>();
        MessageDialogTemplate t;
        t.buttons[0].action = [token] {};
        const ScopedPreprocessor preprocessor(QStringLiteral("nothing"), [](MessageDialogTemplate&) {});
        const long before = token.use_count();
        const auto dialog = created(t);
        QCOMPARE(token.use_count(), before);
    }

    void anExceptionOfACallbackThatIsCopiedLeavesNoDialogBehind()
    {
        struct Callback
        {
            bool throws = false;
            explicit Callback(bool value) : throws(value) {}
            Callback(const Callback& other) : throws(other.throws)
            {
                if (throws)
                    throw std::bad_alloc();
            }
            Callback(Callback&&) = default;
            bool operator()(MessageDialog&) const { return true; }
        };
        QWidget parent;
        MessageDialogTemplate t;
        t.preExecCallback = Callback(true);
        QVERIFY_EXCEPTION_THROWN(t.createDialog(&parent), std::bad_alloc);
        QVERIFY(!parent.findChild<MessageDialog*>());
    }
};

QUILLET_TEST_MAIN(TestMessageDialogTemplate)
#include "tst_MessageDialogTemplate.moc"
