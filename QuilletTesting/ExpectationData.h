#pragma once

#include <QuilletTesting/DialogRecord.h>
#include <QuilletTesting/Failure.h>
#include <QuilletTesting/Steps.h>

#include <QtCore/QString>
#include <QtWidgets/QMessageBox>

#include <algorithm>
#include <functional>
#include <vector>

/// \file
/// What an expectation holds. Not installed.

namespace Quillet::Testing {

/// Compares one property of a box; the result tells the difference, and is empty where there is none.
using Check = std::function<QString(const QMessageBox&, const DialogRecord&)>;

/// Something that tells the expected box from others of its identifier.
struct Feature
{
    QString description; ///< as a part of the box's name in a sentence
    std::function<bool(const DialogRecord&)> isOf;
};

struct ExpectationData
{
    QString identifier;
    SourceLocation where;
    std::vector<Feature> features;
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

    /// Whether the box must not come at all.
    bool isForbidding() const { return most == 0; }

    /// Whether the box has to come, once more.
    bool isOwed() const { return come < least; }

    /// Whether the box has all the features.
    bool fits(const DialogRecord& record) const
    {
        return std::all_of(
            features.begin(), features.end(), [&](const Feature& each) { return each.isOf(record); });
    }
};

} // namespace Quillet::Testing
