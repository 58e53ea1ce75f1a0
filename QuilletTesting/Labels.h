#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QMessageBox>

/// \file
/// How messages name buttons, icons and roles. Not installed.

namespace Quillet::Testing {

/// The text of a button as the user reads it, without the '&' of its mnemonic.
QString withoutMnemonic(const QString& text);

/// What the user reads on a button. Null for no button.
QString labelOf(const QAbstractButton* button);

/// "button" or "check box" with its label, or else the class and, if it has one, the object name.
QString nameOf(const QWidget& widget);

/// In quotation marks.
QString quoted(const QString& text);

/// The lines, each in a line of its own and indented.
QString indented(const QString& lines);

/// Each in quotation marks, between commas; "none" for an empty list.
QString quoted(const QStringList& texts);

/// The name of the enumerator.
QString nameOf(QMessageBox::Icon icon);

/// The names of the enumerators, joined by '|'.
QString namesOf(QMessageBox::StandardButtons buttons);

/// The name of the enumerator.
QString nameOf(QMessageBox::ButtonRole role);

} // namespace Quillet::Testing
