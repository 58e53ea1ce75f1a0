#pragma once

#include <Quillet/Export.h>
#include <Quillet/MessageDialog.h>
#include <Quillet/MessageDialogButtonTemplate.h>

#include <array>
#include <map>

namespace Quillet {

/// Describes a message dialog completely: a plain value to copy, store, register and run.
///
/// \snippet tst_DialogTemplateSnippets.cpp register
/// \snippet tst_DialogTemplateSnippets.cpp run
///
/// A default-constructed template describes a dialog without icon, title, text and buttons.
///
/// **Preprocessors.** createDialog() and exec() build from a copy that the preprocessors have adjusted,
/// where there are any (see MessageDialogTemplatePreprocessors). The template itself never changes, and
/// where there are none it is not copied either: the actions run where they stand, in the template.
///
/// **Registry.** One table in the process, keyed by identifier. The library only keeps it: it never looks a
/// template up by itself.
///
/// **Log.** Each operation but getRegisteredTemplates() writes a line to the host's logger,
/// quorvel::GetLoggerDelegate(), if quorvel::GetLoggerLevel() is not above the level of the line: 2 for what
/// it does, 3 for a call that it refuses. A line that is not wanted costs two calls at most. One that is
/// wanted takes memory; running out of that may end the process.
///
/// Everything here is used from the GUI thread only. Exceptions thrown by preprocessors, callbacks, actions
/// and the logger's sink pass through.
struct QUILLET_EXPORT MessageDialogTemplate
{
    /// The key in the registry, and the identifier of the dialog (MessageDialog::getId()).
    QString id;

    /// The icon; NoIcon shows none.
    QMessageBox::Icon icon = QMessageBox::NoIcon;

    /// The window title. An empty one stays empty, whatever the icon.
    QString title;

    /// The main text. Like every text of a QMessageBox it is shown as rich text if it looks like it.
    QString text;

    /// The buttons, in the order in which they are added. Used slots need not be contiguous. Where all slots
    /// are empty, QMessageBox adds its OK button when the dialog is shown.
    std::array<MessageDialogButtonTemplate, 4> buttons;

    /// The dialog's parent where createDialog() or exec() is given none. May be null. Not owned; it must be
    /// alive whenever it is used.
    QWidget* parent = nullptr;

    /// Run by MessageDialog::exec() before the modal loop, and may veto it. May be empty.
    DialogCallback preExecCallback;

    /// Run by MessageDialog::exec() after the modal loop, and may veto its result. May be empty.
    DialogCallback postExecCallback;

    /// Builds the dialog, without showing it.
    ///
    /// The callbacks go with it, as copies; the actions do not, because nothing would run them: ask the
    /// dialog for clickedButton() or connect to its buttonClicked() signal. When it was opened without a
    /// modal loop and its window is closed, Qt neither emits that signal nor sets the clicked button; only
    /// QDialog::finished() tells.
    ///
    /// \param parentWidget wins over the member #parent; may be null.
    /// \return a new dialog, which the caller owns. With a parent the parent owns it, too: delete it, or
    ///         leave that to the parent.
    MessageDialog* createDialog(QWidget* parentWidget = nullptr) const;

    /// Builds the dialog, runs it modally, and runs the action of the button that was clicked.
    ///
    /// In this order: the preprocessors; the pre-exec callback, the modal loop and the post-exec callback
    /// as in MessageDialog::exec(); the action, while the dialog still exists but is no longer shown. The
    /// dialog is gone when this returns.
    ///
    /// Timers, network replies and all other code of the GUI thread go on during the modal loop. That code
    /// may destroy the dialog's parent, or the dialog itself: the loop then ends, and so does the run, as
    /// one without a clicked button. The clicked button's action may destroy both as well. What it all must
    /// not do before exec() returns, neither the code that runs in the loop nor the action, is to change or
    /// destroy this template, which exec() reads again after the loop. For an entry of the registry that
    /// means: do not unregister it and do not register another template under its identifier.
    ///
    /// \param parentWidget wins over the member #parent; may be null.
    /// \return One of three kinds of result:
    ///         - the MessageDialogButtonTemplate::role of the slot whose button was clicked. Its action, if
    ///           any, has run.
    ///         - QMessageBox::InvalidRole (-1) after a veto by a callback, and where other code ended the
    ///           dialog by QDialog::done(-1). No action has run.
    ///         - QMessageBox::NRoles when no button of a slot was clicked: other code hid, ended or destroyed
    ///           the dialog, or a button was clicked that no slot made, such as the OK button of a dialog
    ///           without slots. No action has run. (To close the window is to click the escape button.)
    QMessageBox::ButtonRole exec(QWidget* parentWidget = nullptr) const;

    /// Stores a copy of \a t under its identifier, in place of any template there.
    ///
    /// A template with an empty identifier is refused; the log tells so. When memory for the copy runs out,
    /// or a callable throws while it is copied, the registry stays as it was.
    static void registerTemplate(const MessageDialogTemplate& t);

    /// Removes the template with the identifier \a id and destroys it with its callables. An identifier
    /// that is not registered is ignored; an empty one is refused, and the log tells so.
    static void unregisterTemplate(const QString& id);

    /// All registered templates, in the order of the code units of their identifiers ("OK" before "ok").
    ///
    /// \return a live reference, valid until the library leaves the process: later changes show through
    ///         it. A reference to an entry stays valid until that entry is unregistered; registering another
    ///         template under its identifier gives it new content.
    static const std::map<QString, MessageDialogTemplate>& getRegisteredTemplates();

private:
    static std::map<QString, MessageDialogTemplate>& getRegisteredTemplatesImpl();
};

} // namespace Quillet
