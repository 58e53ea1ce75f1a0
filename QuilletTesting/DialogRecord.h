#pragma once

#include <QtCore/QDebug>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtWidgets/QMessageBox>

namespace Quillet::Testing {

/// What a DialogDriver saw of one show of a message box, at the moment when it first looked at it: after the
/// show, before any answer. All labels are as the user reads them, without the '&' of mnemonics.
struct DialogRecord
{
    /// MessageDialog::getId(), or else, where that is empty and for a plain QMessageBox, the object name.
    QString identifier;

    /// The window title.
    QString title;

    /// The main text, as it was set: rich text with its tags.
    QString text;

    /// The smaller text below it, likewise.
    QString informativeText;

    /// The text behind the button "Show Details...".
    QString detailedText;

    /// The label of the check box; null where there is none.
    QString checkBox;

    /// The icon that was asked for, also where MessageDialog has put its own picture in its place.
    QMessageBox::Icon icon = QMessageBox::NoIcon;

    /// The labels of the buttons, in the order of QMessageBox::buttons().
    QStringList buttons;

    /// The label of QMessageBox::defaultButton(); null where there is none.
    QString defaultButton;

    /// The label of MessageDialog::getPrimaryButton(); null for a plain QMessageBox.
    QString primaryButton;

    /// Whether a DialogExpectation was waiting for it.
    bool wasExpected = false;

    /// The label of the button that was clicked, be it by mouse, key or code. Null as long as the box is
    /// open, and where its window was closed or other code ended it.
    QString clickedButton;

    /// Its standard value; QMessageBox::NoButton for a custom button, and where none was clicked.
    QMessageBox::StandardButton clickedStandardButton = QMessageBox::NoButton;

    /// The file with its picture; empty unless one was asked for (DialogDriver::setScreenshotDirectory()).
    QString screenshot;

    /// All that tells what the box was, one property a line, for failure messages.
    QString description() const;
};

/// Writes the description, in lines of its own.
QDebug operator<<(QDebug debug, const DialogRecord& record);

} // namespace Quillet::Testing
