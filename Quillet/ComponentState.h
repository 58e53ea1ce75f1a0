#pragma once

#include <Quillet/Export.h>

#include <QtCore/qglobal.h>

QT_BEGIN_NAMESPACE
class QAction;
class QWidget;
QT_END_NAMESPACE

namespace Quillet {

/// An enabled flag and a visible flag that change places with those of an action or a widget.
///
/// The first swap() applies the stored flags and keeps the component's own; a second swap() with the same
/// component restores them:
///
/// \snippet tst_ComponentStateSnippets.cpp swap
///
/// What it keeps is what the component reported. A widget that only its parent disables reports disabled, and
/// so does an action that is not visible: after two swaps these are disabled by themselves.
///
/// The state refers to no component, so one object swapped onto two components in turn hands the first
/// one's flags on to the second.
class QUILLET_EXPORT ComponentState
{
public:
    /// The flags that the next swap() applies.
    ComponentState(bool enabled, bool visible);

    /// Exchanges the flags with QAction::isEnabled() and QAction::isVisible(). \a action must not be null.
    void swap(QAction* action);

    /// Exchanges the flags with those of \a widget, which must not be null.
    ///
    /// Enabled is QWidget::isEnabled(), which is false also where only an ancestor is disabled. Visible is
    /// the opposite of QWidget::isHidden(): a widget whose window has not been shown yet counts as visible
    /// unless it is hidden itself.
    void swap(QWidget* widget);

private:
    bool m_enabled;
    bool m_visible;
};

} // namespace Quillet
