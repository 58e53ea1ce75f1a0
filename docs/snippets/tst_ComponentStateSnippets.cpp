#include "TestCase.h"

#include <Quillet/ComponentState.h>

#include <QtWidgets/QAction>

class TestComponentStateSnippets : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void twoSwapsRestoreAnAction()
    {
        QAction theAction;
        QAction* const action = &theAction;
        //! [swap]
        Quillet::ComponentState state(false, false);
        state.swap(action); // disabled and hidden
        state.swap(action); // as it was
        //! [swap]
        QVERIFY(action->isEnabled());
        QVERIFY(action->isVisible());
    }
};

QUILLET_TEST_MAIN(TestComponentStateSnippets)
#include "tst_ComponentStateSnippets.moc"
