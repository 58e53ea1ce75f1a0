#pragma once

#include <QtCore/QString>
#include <QtWidgets/QMessageBox>

#include <functional>

namespace Quillet {

/// One button of a MessageDialogTemplate: a plain value. A slot with an empty text stands for no button.
///
/// \snippet tst_DialogTemplateSnippets.cpp slots
///
/// Copying copies the action with all that it holds: a copy shares nothing with its source, unless the
/// action itself captured a pointer or a reference.
struct MessageDialogButtonTemplate
{
    /// The button's label, in which '&' marks the mnemonic. Empty: no button is made for this slot, and
    /// the other members are not looked at.
    QString text;

    /// The button's role, and what MessageDialogTemplate::exec() returns when this button is clicked. Use
    /// each role for one slot only where the result has to tell the slots apart. InvalidRole and NRoles are
    /// not for buttons: Qt warns and adds none, and a dialog whose only slots have such a role cannot be
    /// closed.
    QMessageBox::ButtonRole role = QMessageBox::AcceptRole;

    /// Whether Enter presses the button, which is then also the dialog's primary one. Of several such
    /// slots the last one wins.
    bool isDefault = false;

    /// Whether Escape and closing the window press the button. Of several such slots the last one wins.
    bool isEscape = false;

    /// Run once by MessageDialogTemplate::exec() after its modal loop, if this button was clicked. May be
    /// empty. A dialog from MessageDialogTemplate::createDialog() does not run it.
    std::function<void()> action;
};

} // namespace Quillet
