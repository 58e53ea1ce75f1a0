#include <Quillet/ComponentState.h>

#include <QtWidgets/QAction>
#include <QtWidgets/QWidget>

namespace Quillet {

ComponentState::ComponentState(bool enabled, bool visible) : m_enabled(enabled), m_visible(visible) {}

void ComponentState::swap(QAction* action)
{
    const ComponentState stored = *this;
    m_enabled = action->isEnabled();
    m_visible = action->isVisible();
    action->setEnabled(stored.m_enabled);
    action->setVisible(stored.m_visible);
}

void ComponentState::swap(QWidget* widget)
{
    const ComponentState stored = *this;
    m_enabled = widget->isEnabled();
    // isVisible() would also ask whether the parents have been shown, which is not the widget's own state.
    m_visible = !widget->isHidden();
    widget->setEnabled(stored.m_enabled);
    widget->setHidden(!stored.m_visible);
}

} // namespace Quillet
