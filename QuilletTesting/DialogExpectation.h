#pragma once

#include <QuilletTesting/Failure.h>

#include <QtCore/QRegularExpression>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtWidgets/QMessageBox>

#include <functional>
#include <memory>

namespace Quillet::Testing {

struct ExpectationData;

/// One message box that a test expects: what it must look like, and what the user does with it.
///
/// \snippet tst_DialogDriverSnippets.cpp checks
///
/// Each function returns the expectation itself, so that calls can follow one another. It belongs to the
/// DialogDriver that made it and lives as long as that; it is used from the GUI thread only.
///
/// **Checks**, `with...()`, are made when the box has been shown, before anything is done with it. All that
/// differ make one failure together, at the line that called DialogDriver::expect(), and the box is answered
/// all the same.
///
/// **Answers** are performed one after the other, each as soon as a user could do it: the window is exposed,
/// no modal dialog and no menu is in front of it, and what is to be clicked is there, enabled and not
/// covered. Where no answer is given, it is pressEscape(), also after run() and toggleCheckBox(). A click on
/// a button that the box does not have, or that does not react, is a failure at once, and the box is
/// dismissed as an unexpected one is; so it is at the time-out, when an answer is still not possible or the
/// box is still open after the last one. It is a failure, too, when the box closes before it is answered.
///
/// Mouse and key events are handed to the box's window, as they arrive from a real mouse and keyboard;
/// nothing is called by name. What is hidden, disabled or covered is out of reach, as it is for a user.
class DialogExpectation
{
public:
    ~DialogExpectation();
    Q_DISABLE_COPY(DialogExpectation)

    // Checks

    /// The window title. (On macOS message boxes show none.)
    DialogExpectation& withTitle(const QString& title);

    /// The main text, as it was set: rich text with its tags.
    DialogExpectation& withText(const QString& text);

    /// The main text, for texts of which only a part is known: \a pattern has to match somewhere in it.
    DialogExpectation& withText(const QRegularExpression& pattern);

    /// The smaller text below the main one.
    DialogExpectation& withInformativeText(const QString& text);

    /// The text behind the button "Show Details...".
    DialogExpectation& withDetailedText(const QString& text);

    /// The icon that was asked for. MessageDialog puts a picture of its own in its place; what it stands for
    /// is checked.
    DialogExpectation& withIcon(QMessageBox::Icon icon);

    /// The labels of all buttons, without mnemonics, in any order: the platform decides how buttons are
    /// arranged. "Show Details..." is one of them.
    DialogExpectation& withButtons(const QStringList& labels);

    /// All buttons, by their standard values. A custom button is none of them, and makes the check fail; only
    /// "Show Details..." is left out.
    DialogExpectation& withButtons(QMessageBox::StandardButtons buttons);

    /// The label of QMessageBox::defaultButton(); an empty one for a box without.
    DialogExpectation& withDefaultButton(const QString& label);

    /// Its standard value; QMessageBox::NoButton for a box without. A custom button makes the check fail.
    DialogExpectation& withDefaultButton(QMessageBox::StandardButton button);

    /// The label of MessageDialog::getPrimaryButton(), the button that stands out. A plain QMessageBox has
    /// none, and makes the check fail.
    DialogExpectation& withPrimaryButton(const QString& label);

    /// Its standard value, likewise.
    DialogExpectation& withPrimaryButton(QMessageBox::StandardButton button);

    // How often

    /// Expects \a count shows in place of one, each checked and answered alike. 0: it must not come at all,
    /// and where it does, the failure is told at the line of this expectation. A negative number fails the
    /// test.
    DialogExpectation& times(int count);

    /// Expects from 0 to 1000 shows.
    DialogExpectation& anyTimes();

    // Answers

    /// Clicks the one button with this label, written without mnemonic.
    DialogExpectation& click(const QString& label);

    /// Clicks a standard button. The buttons of a template are none.
    DialogExpectation& click(QMessageBox::StandardButton button);

    /// Clicks the one button with this role.
    DialogExpectation& click(QMessageBox::ButtonRole role);

    /// Clicks the button that the slot of this number, from 0 on, has made.
    ///
    /// A dialog does not know the slots of its template. So the template is looked up in the registry, under
    /// the dialog's identifier, and adjusted by the preprocessors that are there at that moment, which run
    /// again each time the driver looks whether the button can be clicked; then the button is the one with
    /// the slot's text and role.
    DialogExpectation& clickSlot(int slot);

    /// Clicks the check box, in the middle of its indicator. That does not close the dialog: another answer,
    /// or Escape, follows.
    DialogExpectation& toggleCheckBox();

    /// Presses and releases a key, with the window active: Return for the default button, a letter with Alt
    /// for a mnemonic, Tab, and so on.
    DialogExpectation& pressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    /// Presses Escape.
    DialogExpectation& pressEscape();

    /// Closes the window as the window system does when a user closes it.
    DialogExpectation& closeWindow();

    /// Does nothing with the box: whoever has opened it closes it, as soon as may be. If it stays, the
    /// time-out ends it. It is the last answer: what follows it is not done, and fails.
    DialogExpectation& waitUntilClosed();

    /// Runs \a code with the box: for checks of one's own, and for what is no user's doing, such as
    /// QDialog::done() or the destruction of the box. Where it leaves the box open and no answer is given,
    /// Escape follows. An exception fails the test, and the box is dismissed.
    DialogExpectation& run(const std::function<void(QMessageBox&)>& code);

private:
    friend class DialogDriver;
    friend class DialogDriverPrivate;
    DialogExpectation(const QString& identifier, const SourceLocation& where);

    std::unique_ptr<ExpectationData> d;
};

} // namespace Quillet::Testing
