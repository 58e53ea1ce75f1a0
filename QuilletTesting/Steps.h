#pragma once

#include <QtCore/QPoint>
#include <QtCore/QString>
#include <QtWidgets/QMessageBox>

#include <functional>

/// \file
/// What can be done with a box. Not installed.

namespace Quillet::Testing {

/// A place in a box to click at.
struct Target
{
    QWidget* widget = nullptr; ///< null: there is none
    QPoint point;              ///< in the widget
    QString problem;           ///< why there is none, as the end of a sentence about the box
};

using FindTarget = std::function<Target(const QMessageBox&)>;

/// One thing that a user, or the test, does with a box.
struct Step
{
    /// What it is, to follow "before", "during" or "after" in a message.
    QString name;

    /// Does it. Returns why it could not be done, as the end of a sentence about the box. Empty for a step
    /// that leaves the box to the code that has opened it.
    std::function<QString(QMessageBox&, const Target&)> perform;

    /// Finds what is handed to it. Empty for a step without target.
    FindTarget findTarget = nullptr;

    bool needsActiveWindow = false;

    /// Whether it is there to close the box.
    bool isAnswer = true;

    /// Whether the box may be closed by it, or at any time after it.
    bool mayEndBox = false;
};

/// A click on what \a find finds.
Step clickStep(const QString& name, const FindTarget& find);

/// A press and release of a key.
Step keyStep(Qt::Key key, Qt::KeyboardModifiers modifiers);

/// Closing the window, as the window system asks for it.
Step closeStep();

/// Waiting until the box is closed by others.
Step waitStep();

/// A call of the test's code.
Step codeStep(const std::function<void(QMessageBox&)>& code);

/// What keeps a user from clicking there, as the end of a sentence about an open box; empty if nothing does.
QString obstacleTo(const Target& target, const QMessageBox& box);

/// The one button of the box with this label, standard value or role.
Target findButton(const QMessageBox& box, const QString& label);
Target findButton(const QMessageBox& box, QMessageBox::StandardButton button);
Target findButton(const QMessageBox& box, QMessageBox::ButtonRole role);

/// The button that a slot of the box's registered template has made.
Target findSlot(const QMessageBox& box, int number);

/// The box's check box.
Target findCheckBox(const QMessageBox& box);

} // namespace Quillet::Testing
