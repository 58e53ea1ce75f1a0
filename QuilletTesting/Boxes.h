#pragma once

#include <QuilletTesting/DialogRecord.h>

#include <QtCore/QPointer>
#include <QtWidgets/QDialog>

/// \file
/// What can be seen of boxes and other dialogs, and how they are ended. Not installed.

namespace Quillet::Testing {

/// Writes down what the box is at this moment.
void describe(const QMessageBox& box, DialogRecord& record);

/// What the window system has not done for the box yet, as the end of a sentence; empty if nothing.
QString obstacleOf(const QMessageBox& box);

/// The modal dialog that keeps a user from \a dialog, which is known to be blocked, as the end of a sentence.
QString blockerOf(const QDialog& dialog);

/// The menu or other popup that is open and does not belong to the box; null where there is none.
const QWidget* popupOver(const QMessageBox& box);

/// Closes menus and other popups, so far as they let themselves be closed.
void closePopups();

/// Ends a dialog in the ways that a user has and, where it has none of them, by force.
void dismiss(const QPointer<QDialog>& dialog);

/// Saves a picture of the widget under a name that is not taken yet, and returns that; null for an empty
/// directory, and where the picture cannot be written.
QString saveScreenshot(QWidget& widget, const QString& directory, const QString& name);

} // namespace Quillet::Testing
