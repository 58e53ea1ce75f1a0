#include <QuilletTesting/DialogExpectation.h>

#include <QuilletTesting/ExpectationData.h>
#include <QuilletTesting/Labels.h>

#include <Quillet/MessageDialog.h>

#include <QtWidgets/QPushButton>

#include <algorithm>
#include <utility>

namespace Quillet::Testing {

namespace {

// What anyTimes() allows. Code that asks again and again until it likes the answer must come to an end.
constexpr int many = 1000;

QString differenceOf(const char* property, const QString& actual, const QString& expected)
{
    if (actual == expected)
        return {};
    // What is long can be compared only where one stands below the other.
    const bool isLong = std::max(actual.size(), expected.size()) > 60;
    return (isLong ? QStringLiteral("%1:\n  %2\nwhere this was expected:\n  %3")
                   : QStringLiteral("%1: %2 where %3 was expected"))
        .arg(QLatin1String(property), actual, expected);
}

QString ofPlainBox()
{
    return QStringLiteral("a plain QMessageBox");
}

// Whether it is the button that QMessageBox itself adds for a detailed text.
bool isDetailsButton(const QMessageBox& box, const QAbstractButton& button)
{
    return !box.detailedText().isEmpty()
           && (button.text() == QMessageBox::tr("Show Details...")
               || button.text() == QMessageBox::tr("Hide Details..."));
}

// A button by its standard value, as messages name it.
QString standardNameOf(const QMessageBox& box, QAbstractButton* button)
{
    const QMessageBox::StandardButton value = box.standardButton(button);
    return button && value == QMessageBox::NoButton ? QStringLiteral("custom one ") + quoted(labelOf(button))
                                                    : namesOf(value);
}

Check checkOf(const char* property, QString DialogRecord::*member, const QString& expected)
{
    return [=](const QMessageBox&, const DialogRecord& record) {
        return differenceOf(property, quoted(record.*member), quoted(expected));
    };
}

DialogExpectation& then(DialogExpectation& expectation, ExpectationData& data, const Step& step)
{
    data.steps.push_back(step);
    return expectation;
}

} // namespace

DialogExpectation::DialogExpectation(const QString& identifier, const SourceLocation& where)
    : d(std::make_unique<ExpectationData>())
{
    d->identifier = identifier;
    d->where = where;
}

DialogExpectation::~DialogExpectation() = default;

DialogExpectation& DialogExpectation::withTitle(const QString& title)
{
    d->features.push_back({QStringLiteral(" titled ") + quoted(title),
                           [=](const DialogRecord& record) { return record.title == title; }});
    d->checks.emplace_back(checkOf("title", &DialogRecord::title, title));
    return *this;
}

DialogExpectation& DialogExpectation::withText(const QString& text)
{
    d->features.push_back({QStringLiteral(" with the text ") + quoted(text),
                           [=](const DialogRecord& record) { return record.text == text; }});
    d->checks.emplace_back(checkOf("text", &DialogRecord::text, text));
    return *this;
}

DialogExpectation& DialogExpectation::withText(const QRegularExpression& pattern)
{
    const QString expected = QStringLiteral("something like ") + quoted(pattern.pattern());
    const auto isMatched = [=](const DialogRecord& record) { return pattern.match(record.text).hasMatch(); };
    d->features.push_back({QStringLiteral(" with a text like ") + quoted(pattern.pattern()), isMatched});
    d->checks.emplace_back([=](const QMessageBox&, const DialogRecord& record) {
        return isMatched(record) ? QString() : differenceOf("text", quoted(record.text), expected);
    });
    return *this;
}

DialogExpectation& DialogExpectation::withInformativeText(const QString& text)
{
    d->checks.emplace_back(checkOf("informative text", &DialogRecord::informativeText, text));
    return *this;
}

DialogExpectation& DialogExpectation::withDetailedText(const QString& text)
{
    d->checks.emplace_back(checkOf("detailed text", &DialogRecord::detailedText, text));
    return *this;
}

DialogExpectation& DialogExpectation::withIcon(QMessageBox::Icon icon)
{
    d->checks.emplace_back([=](const QMessageBox&, const DialogRecord& record) {
        return differenceOf("icon", nameOf(record.icon), nameOf(icon));
    });
    return *this;
}

DialogExpectation& DialogExpectation::withButtons(const QStringList& labels)
{
    d->checks.emplace_back([=](const QMessageBox&, const DialogRecord& record) {
        QStringList actual = record.buttons;
        QStringList expected = labels;
        actual.sort();
        expected.sort();
        return actual == expected ? QString()
                                  : differenceOf("buttons", quoted(record.buttons), quoted(labels));
    });
    return *this;
}

DialogExpectation& DialogExpectation::withButtons(QMessageBox::StandardButtons buttons)
{
    d->checks.emplace_back([=](const QMessageBox& box, const DialogRecord&) {
        QStringList others;
        const QList<QAbstractButton*> all = box.buttons();
        for (QAbstractButton* button : all) {
            if (box.standardButton(button) == QMessageBox::NoButton && !isDetailsButton(box, *button))
                others.append(labelOf(button));
        }
        QStringList actual;
        if (others.isEmpty() || box.standardButtons())
            actual.append(namesOf(box.standardButtons()));
        if (!others.isEmpty())
            actual.append(QStringLiteral("custom ones ") + quoted(others));
        return differenceOf("buttons", actual.join(QStringLiteral(" and ")), namesOf(buttons));
    });
    return *this;
}

DialogExpectation& DialogExpectation::withDefaultButton(const QString& label)
{
    d->checks.emplace_back(checkOf("default button", &DialogRecord::defaultButton, label));
    return *this;
}

DialogExpectation& DialogExpectation::withDefaultButton(QMessageBox::StandardButton button)
{
    d->checks.emplace_back([=](const QMessageBox& box, const DialogRecord&) {
        return differenceOf("default button", standardNameOf(box, box.defaultButton()), namesOf(button));
    });
    return *this;
}

DialogExpectation& DialogExpectation::withPrimaryButton(const QString& label)
{
    d->checks.emplace_back([=](const QMessageBox& box, const DialogRecord& record) {
        return differenceOf("primary button",
                            qobject_cast<const MessageDialog*>(&box) ? quoted(record.primaryButton)
                                                                     : ofPlainBox(),
                            quoted(label));
    });
    return *this;
}

DialogExpectation& DialogExpectation::withPrimaryButton(QMessageBox::StandardButton button)
{
    d->checks.emplace_back([=](const QMessageBox& box, const DialogRecord&) {
        const auto* const dialog = qobject_cast<const MessageDialog*>(&box);
        return differenceOf("primary button",
                            dialog ? standardNameOf(box, dialog->getPrimaryButton()) : ofPlainBox(),
                            namesOf(button));
    });
    return *this;
}

DialogExpectation& DialogExpectation::times(int count)
{
    if (count < 0)
        reportFailure(QStringLiteral("A dialog cannot be expected %1 times.").arg(count), d->where);
    d->least = std::max(count, 0);
    d->most = d->least;
    return *this;
}

DialogExpectation& DialogExpectation::anyTimes()
{
    d->least = 0;
    d->most = many;
    return *this;
}

DialogExpectation& DialogExpectation::click(const QString& label)
{
    return then(*this, *d, clickStep(quoted(label), [=](const auto& box) { return findButton(box, label); }));
}

DialogExpectation& DialogExpectation::click(QMessageBox::StandardButton button)
{
    return then(
        *this, *d, clickStep(namesOf(button), [=](const auto& box) { return findButton(box, button); }));
}

DialogExpectation& DialogExpectation::click(QMessageBox::ButtonRole role)
{
    return then(*this, *d, clickStep(QStringLiteral("the button with ") + nameOf(role), [=](const auto& box) {
        return findButton(box, role);
    }));
}

DialogExpectation& DialogExpectation::clickSlot(int slot)
{
    return then(*this, *d, clickStep(QStringLiteral("the button of slot %1").arg(slot), [=](const auto& box) {
        return findSlot(box, slot);
    }));
}

DialogExpectation& DialogExpectation::toggleCheckBox()
{
    Step step = clickStep(QStringLiteral("the check box"), findCheckBox);
    step.isAnswer = false;
    return then(*this, *d, step);
}

DialogExpectation& DialogExpectation::pressKey(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    return then(*this, *d, keyStep(key, modifiers));
}

DialogExpectation& DialogExpectation::pressEscape()
{
    return pressKey(Qt::Key_Escape);
}

DialogExpectation& DialogExpectation::closeWindow()
{
    return then(*this, *d, closeStep());
}

DialogExpectation& DialogExpectation::waitUntilClosed()
{
    return then(*this, *d, waitStep());
}

DialogExpectation& DialogExpectation::run(const std::function<void(QMessageBox&)>& code)
{
    return then(*this, *d, codeStep(code));
}

} // namespace Quillet::Testing
