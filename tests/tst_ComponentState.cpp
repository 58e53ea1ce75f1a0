#include "TestCase.h"

#include <Quillet/ComponentState.h>

#include <QtWidgets/QAction>
#include <QtWidgets/QWidget>

#include <type_traits>

using Quillet::ComponentState;

namespace {

// What a state holds, seen by swapping a copy of it onto a widget.
QPair<bool, bool> held(ComponentState state)
{
    QWidget window;
    QWidget widget(&window);
    state.swap(&widget);
    return {widget.isEnabled(), !widget.isHidden()};
}

QPair<bool, bool> flags(bool enabled, bool visible)
{
    return {enabled, visible};
}

} // namespace

class TestComponentState : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void isAPlainValue()
    {
        QVERIFY(std::is_trivially_copyable<ComponentState>::value);
        QVERIFY(!std::is_polymorphic<ComponentState>::value);
    }

    void theConstructorStoresBothFlags()
    {
        QCOMPARE(held(ComponentState(true, false)), flags(true, false));
        QCOMPARE(held(ComponentState(false, true)), flags(false, true));
    }

    void swappingTwiceOntoAnActionRestoresIt()
    {
        QAction action(nullptr);
        ComponentState state(false, false);

        state.swap(&action);
        QCOMPARE(action.isEnabled(), false);
        QCOMPARE(action.isVisible(), false);
        QCOMPARE(held(state), flags(true, true));

        state.swap(&action);
        QCOMPARE(action.isEnabled(), true);
        QCOMPARE(action.isVisible(), true);
        QCOMPARE(held(state), flags(false, false));
    }

    void swappingTwiceOntoAWidgetRestoresIt()
    {
        QWidget window;
        QWidget widget(&window);
        ComponentState state(false, false);

        state.swap(&widget);
        QCOMPARE(widget.isEnabled(), false);
        QCOMPARE(widget.isHidden(), true);
        QCOMPARE(held(state), flags(true, true));

        state.swap(&widget);
        QCOMPARE(widget.isEnabled(), true);
        QCOMPARE(widget.isHidden(), false);
        QCOMPARE(held(state), flags(false, false));
    }

    void theTwoFlagsOfAWidgetAreIndependent()
    {
        QWidget window;
        QWidget widget(&window);
        ComponentState state(true, false);
        state.swap(&widget);
        QCOMPARE(widget.isEnabled(), true);
        QCOMPARE(widget.isHidden(), true);
    }

    void aWidgetInAWindowThatWasNotShownCountsAsVisible()
    {
        QWidget window;
        QWidget widget(&window);
        QVERIFY(!widget.isVisible());
        ComponentState state(true, true);
        state.swap(&widget);
        QCOMPARE(held(state), flags(true, true));
    }

    void aHiddenWidgetCountsAsHidden()
    {
        QWidget window;
        QWidget widget(&window);
        widget.hide();
        ComponentState state(true, true);
        state.swap(&widget);
        QCOMPARE(held(state), flags(true, false));
        QVERIFY(!widget.isHidden());
    }

    void aWidgetDisabledByItsParentCountsAsDisabled()
    {
        QWidget window;
        QWidget widget(&window);
        window.setEnabled(false);
        QVERIFY(!widget.testAttribute(Qt::WA_ForceDisabled));
        ComponentState state(true, true);
        state.swap(&widget);
        QCOMPARE(held(state), flags(false, true));
    }

    void anActionReportsItsOwnVisibility()
    {
        QAction action(nullptr);
        action.setVisible(false);
        ComponentState state(true, true);
        state.swap(&action);
        QCOMPARE(held(state), flags(false, false)); // Qt disables what it does not show
        QVERIFY(action.isVisible());
    }

    void oneStateHandsFlagsFromComponentToComponent()
    {
        QAction first(nullptr);
        QAction second(nullptr);
        first.setEnabled(false);
        ComponentState state(true, true);

        state.swap(&first);
        QCOMPARE(first.isEnabled(), true);
        QCOMPARE(first.isVisible(), true);
        state.swap(&second);
        QCOMPARE(second.isEnabled(), false);
        QCOMPARE(second.isVisible(), true);
        QCOMPARE(held(state), flags(true, true));
    }
};

QUILLET_TEST_MAIN(TestComponentState)
#include "tst_ComponentState.moc"
