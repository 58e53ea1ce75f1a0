#pragma once

#include <QuilletTesting/DialogRecord.h>
#include <QuilletTesting/Failure.h>

#include <QtCore/QPoint>
#include <QtCore/QString>
#include <QtWidgets/QMessageBox>

#include <algorithm>
#include <functional>
#include <optional>
#include <vector>

/// \file
/// What an expectation holds. Not installed.

namespace Quillet::Testing {

/// A place in a box to click at.
struct Target
{
    QWidget* widget = nullptr; ///< null: there is none
    QPoint point;              ///< in the widget
    QString problem;           ///< why there is none, as the end of a sentence about the box
};

/// One thing that a user, or the test, does with a box.
struct Step
{
    enum class Kind { Click, Key, Close, Run };

    Kind kind;
    QString name; ///< as the end of a sentence about what has not been done
    std::function<Target(QMessageBox&)> findTarget = nullptr;
    Qt::Key key = Qt::Key_unknown;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    std::function<void(QMessageBox&)> code = nullptr;
    bool isAnswer = true; ///< whether a user who does it means to close the box
};

/// Compares one property of a box; the result tells the difference, and is empty where there is none.
using Check = std::function<QString(const QMessageBox&, const DialogRecord&)>;

struct ExpectationData
{
    QString identifier;
    SourceLocation where;
    std::optional<QString> title;
    std::optional<QString> text;
    std::vector<Check> checks;
    std::vector<Step> steps;
    int least = 1;
    int most = 1;
    int come = 0;

    /// Whether one of the steps is there to close the box; where none is, Escape does it after them.
    bool hasAnswer() const
    {
        return std::any_of(steps.begin(), steps.end(), [](const Step& step) { return step.isAnswer; });
    }

    /// Whether title and text, where they were given, are those of the box.
    bool fits(const DialogRecord& record) const
    {
        return title.value_or(record.title) == record.title && text.value_or(record.text) == record.text;
    }
};

} // namespace Quillet::Testing
