#pragma once

#include <Quillet/Export.h>

#include <QtCore/QPointer>
#include <QtWidgets/QMessageBox>

#include <functional>

/// \file
/// A message box with the application's own look, and the callbacks that run around its modal loop.

namespace Quillet {

class MessageDialog;

/// Called by MessageDialog::exec() before or after its modal loop; returning false vetoes.
///
/// An empty callback is skipped. While a callback runs, the dialog's callbacks must not be replaced and the
/// dialog must not be deleted, be it by the callback itself or in an event loop that the callback runs.
using DialogCallback = std::function<bool(MessageDialog&)>;

/// A message box with the application's own look, an identifier and two veto callbacks.
///
/// Everything of QMessageBox works as it does there. What is added:
///
/// - Every show, by whatever call, styles the box (see updateStyle()) and paints one of its buttons, the
///   primary button, in accent colours (see getPrimaryButton()).
/// - exec() runs a callback before and after the modal loop, and either may veto.
/// - An identifier, which the dialog only stores.
/// - A window title that follows from the icon, for the constructor without a title.
///
/// \snippet tst_MessageDialogSnippets.cpp standard-buttons
///
/// What a host application must know:
///
/// - exec() runs a nested event loop: timers, network replies and all other code of the GUI thread go on
///   inside it. See exec() for what happens when that code deletes the dialog.
/// - Once a box has been shown with an icon, icon() reports QMessageBox::NoIcon: QMessageBox does so for
///   every box with a pixmap of its own. A later setIcon() is picked up by the next show, unless it sets
///   the very icon that the show before replaced.
/// - The static functions that it inherits, question() and so on, show a plain QMessageBox.
/// - Only the box's own style sheet keeps the library's away; one of the application or of a window does not.
/// - A custom button, one added with a text of its own or as a button object, outranks every standard
///   button, Ok included, when the primary button is chosen. The button that setDetailedText() adds counts
///   as custom. Give the box a default button to decide otherwise.
/// - Which button Enter presses is Qt's business, and in a box without a default button it need not be the
///   one that stands out. Where it matters, set the default button: it is both.
/// - The window titles "Error", "Information", "Question", "Warning" and "Message" are translated once,
///   while the library is being loaded, by the translator installed at that moment (context "QObject").
///   Load the library after the translator, or pass titles. On macOS, message boxes show no title at all.
/// - The icons are SVG documents. Where Qt's SVG image-format plug-in is missing at run time, the box has
///   no icon.
///
/// Like every widget, a dialog is used from the GUI thread only. Its parent, where it has one, owns it.
class QUILLET_EXPORT MessageDialog : public QMessageBox
{
    Q_OBJECT

public:
    /// A box without icon, title, text or buttons. \a parent may be null.
    explicit MessageDialog(QWidget* parent = nullptr);

    /// A box without buttons whose title is \a parent's window title, even an empty one: pass the window
    /// itself, because its child widgets have none as a rule. Without a parent the title names \a icon:
    /// "Error" for Critical, "Information", "Question", "Warning", and "Message" for every other value.
    MessageDialog(const QString& text, QMessageBox::Icon icon, QWidget* parent = nullptr);

    /// A box without buttons. \a title may be empty, \a parent may be null.
    MessageDialog(const QString& title,
                  const QString& text,
                  QMessageBox::Icon icon,
                  QWidget* parent = nullptr);

    /// A box with the one button \a button, which is also its default button.
    MessageDialog(const QString& title,
                  const QString& text,
                  QMessageBox::Icon icon,
                  QMessageBox::StandardButton button,
                  QWidget* parent = nullptr);

    /// A box with all of its contents.
    ///
    /// \param informativeText the smaller text below \a text; empty for none.
    /// \param defaultButton one of \a buttons; any other value leaves the box without a default button.
    /// \param flags replace the flags that the other constructors use (this parameter's default).
    MessageDialog(const QString& title,
                  const QString& text,
                  const QString& informativeText,
                  QMessageBox::Icon icon,
                  QMessageBox::StandardButtons buttons,
                  QMessageBox::StandardButton defaultButton,
                  QWidget* parent = nullptr,
                  Qt::WindowFlags flags = Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);

    /// Stores an identifier for the application's own use; the dialog itself never reads it.
    void setId(const QString& id);

    /// The identifier; empty until setId() is called.
    QString getId() const;

    /// Replaces both callbacks with copies of the arguments; an empty argument clears that callback.
    ///
    /// The callbacks may be changed at any time, also between two runs of exec() and, by other code,
    /// while the modal loop runs, but not by a callback itself.
    void setCallbacks(const DialogCallback& preExec, const DialogCallback& postExec);

    /// Runs the dialog modally and reports how it ended.
    ///
    /// Order: the pre-exec callback, the modal loop, the post-exec callback; an empty callback is skipped.
    /// While the loop runs, other code of the GUI thread runs too. It may delete the dialog, by itself or
    /// with its parent: the loop then ends, the post-exec callback is not called, and nothing of the
    /// dialog is touched any more. A caller that cannot rule this out keeps the dialog on the heap and
    /// in a QPointer. The same holds for a dialog with Qt::WA_DeleteOnClose, which the loop deletes as it
    /// ends.
    ///
    /// \return the result of QDialog::exec(), which is 0 when the dialog was deleted in its loop, or -1 when
    /// a callback
    ///         returned false. After a veto by the pre-exec callback the box has never been shown and the
    ///         post-exec callback is not called.
    /// \note Exceptions thrown by a callback pass through.
    int exec() override;

    /// Gives the box its look. Called on every show; call it to bring a shown box up to date with a
    /// change of its buttons, default button or icon.
    ///
    /// In this order:
    ///
    /// 1. A box without a style sheet gets the library's; one that has a sheet keeps it unchanged.
    /// 2. Where another button than before is primary, the button that has been given the accent sheet
    ///    loses its style sheet, and the primary button gets the accent sheet if it has none of its own.
    /// 3. The width of every button's size hint becomes its minimum width, in place of any other.
    /// 4. An icon other than the one that the last call saw is replaced by the library's picture of it,
    ///    64 x 64 pixels.
    void updateStyle();

    /// The button that stands out: the default button, or else the one that ranks highest.
    ///
    /// Custom buttons rank above standard ones, and among themselves by role: Accept, Yes, Apply,
    /// Action, Reset, Reject, No, Destructive, Help. Standard buttons rank Ok, Yes, Apply, Open, Save,
    /// Retry, YesToAll, SaveAll, Reset, Ignore, Close, Cancel, No, Discard, Abort, NoToAll,
    /// RestoreDefaults, Help. Of equals, the first of buttons() is taken.
    ///
    /// \return a button that the box owns; null when the box has no buttons.
    QAbstractButton* getPrimaryButton() const;

protected:
    /// Shows the box as QMessageBox does, then calls updateStyle().
    void showEvent(QShowEvent* event) override;

private:
    void updatePrimaryButton();
    void updateIcon();

    QString m_id;
    // Guarded: a new button may get the address of a deleted one, and must not pass for it.
    QPointer<QAbstractButton> m_primaryButton;
    QMessageBox::Icon m_appliedIcon = QMessageBox::NoIcon;
    DialogCallback m_preExecCallback;
    DialogCallback m_postExecCallback;
};

} // namespace Quillet
