#include <QuilletTesting/DialogExpectation.h>

#include <QuilletTesting/ExpectationData.h>
#include <QuilletTesting/Labels.h>

#include <Quillet/MessageDialog.h>
#include <Quillet/MessageDialogTemplate.h>
#include <Quillet/MessageDialogTemplatePreprocessors.h>

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionButton>

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
    return QStringLiteral("%1: %2 where %3 was expected").arg(QLatin1String(property), actual, expected);
}

Check checkOf(const char* property, QString DialogRecord::*member, const QString& expected)
{
    return [=](const QMessageBox&, const DialogRecord& record) {
        return differenceOf(property, quoted(record.*member), quoted(expected));
    };
}

Target targetOf(QWidget* widget)
{
    return {widget, widget->rect().center(), {}};
}

// The one of the box's buttons for which \a isMeant holds.
Target findOne(const QMessageBox& box,
               const std::function<bool(QAbstractButton*)>& isMeant,
               const QString& description)
{
    QList<QAbstractButton*> found = box.buttons();
    QStringList labels;
    for (const QAbstractButton* button : qAsConst(found))
        labels.append(labelOf(button));
    found.erase(std::remove_if(found.begin(), found.end(), [&](auto* each) { return !isMeant(each); }),
                found.end());
    if (found.size() == 1)
        return targetOf(found.first());
    return {nullptr,
            {},
            QStringLiteral("has %1 %2; its buttons are %3")
                .arg(found.isEmpty() ? QStringLiteral("no button")
                                     : QString::number(found.size()) + QStringLiteral(" buttons"),
                     description,
                     quoted(labels))};
}

// The button that a slot has made. Slots of one text and role have made their buttons in their own order.
Target findSlot(const QMessageBox& box, int number)
{
    const auto problem = [](const QString& text) { return Target{nullptr, {}, text}; };
    const auto* const dialog = qobject_cast<const MessageDialog*>(&box);
    const auto& templates = MessageDialogTemplate::getRegisteredTemplates();
    const auto entry = templates.find(dialog ? dialog->getId() : QString());
    if (entry == templates.end())
        return problem(QStringLiteral("is of no registered template, so its slots are not known"));

    MessageDialogTemplate t = entry->second;
    MessageDialogTemplatePreprocessors::apply(t);
    const auto index = static_cast<std::size_t>(number);
    if (number < 0 || index >= t.buttons.size() || t.buttons[index].text.isEmpty())
        return problem(QStringLiteral("has no button of slot %1").arg(number));

    const auto isLikeIt = [&wanted = t.buttons[index]](const QString& text, QMessageBox::ButtonRole role) {
        return withoutMnemonic(text) == withoutMnemonic(wanted.text) && role == wanted.role;
    };
    const auto before = std::count_if(t.buttons.begin(), t.buttons.begin() + number, [&](const auto& slot) {
        return isLikeIt(slot.text, slot.role);
    });
    QList<QAbstractButton*> found = box.buttons();
    found.erase(std::remove_if(found.begin(),
                               found.end(),
                               [&](auto* each) { return !isLikeIt(each->text(), box.buttonRole(each)); }),
                found.end());
    if (before >= found.size())
        return problem(QStringLiteral("has no button of slot %1").arg(number));
    return targetOf(found.at(static_cast<int>(before)));
}

Target findCheckBox(const QMessageBox& box)
{
    QCheckBox* const checkBox = box.checkBox();
    if (!checkBox)
        return {nullptr, {}, QStringLiteral("has no check box")};
    QStyleOptionButton option;
    option.initFrom(checkBox);
    const QRect indicator =
        checkBox->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, checkBox);
    return {checkBox, indicator.center(), {}};
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
    d->title = title;
    d->checks.emplace_back(checkOf("title", &DialogRecord::title, title));
    return *this;
}

DialogExpectation& DialogExpectation::withText(const QString& text)
{
    d->text = text;
    d->checks.emplace_back(checkOf("text", &DialogRecord::text, text));
    return *this;
}

DialogExpectation& DialogExpectation::withInformativeText(const QString& text)
{
    d->checks.emplace_back(checkOf("informative text", &DialogRecord::informativeText, text));
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
            if (box.standardButton(button) == QMessageBox::NoButton)
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

DialogExpectation& DialogExpectation::withPrimaryButton(const QString& label)
{
    d->checks.emplace_back([=](const QMessageBox& box, const DialogRecord& record) {
        const bool hasPrimaryButton = qobject_cast<const MessageDialog*>(&box);
        return differenceOf("primary button",
                            hasPrimaryButton ? quoted(record.primaryButton)
                                             : QStringLiteral("a plain QMessageBox"),
                            quoted(label));
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
    Step step{Step::Kind::Click, QStringLiteral("a click on ") + quoted(label)};
    step.findTarget = [=](const QMessageBox& box) {
        return findOne(
            box, [&](const auto* each) { return labelOf(each) == label; }, quoted(label));
    };
    d->steps.push_back(std::move(step));
    return *this;
}

DialogExpectation& DialogExpectation::click(QMessageBox::StandardButton button)
{
    const QString name = namesOf(button);
    Step step{Step::Kind::Click, QStringLiteral("a click on ") + name};
    step.findTarget = [=](const QMessageBox& box) {
        return findOne(
            box,
            [&](auto* each) { return box.standardButton(each) == button; },
            QStringLiteral("with the standard value ") + name);
    };
    d->steps.push_back(std::move(step));
    return *this;
}

DialogExpectation& DialogExpectation::click(QMessageBox::ButtonRole role)
{
    const QString name = nameOf(role);
    Step step{Step::Kind::Click, QStringLiteral("a click on the button with ") + name};
    step.findTarget = [=](const QMessageBox& box) {
        return findOne(
            box, [&](auto* each) { return box.buttonRole(each) == role; }, QStringLiteral("with ") + name);
    };
    d->steps.push_back(std::move(step));
    return *this;
}

DialogExpectation& DialogExpectation::clickSlot(int slot)
{
    Step step{Step::Kind::Click, QStringLiteral("a click on the button of slot %1").arg(slot)};
    step.findTarget = [=](const QMessageBox& box) { return findSlot(box, slot); };
    d->steps.push_back(std::move(step));
    return *this;
}

DialogExpectation& DialogExpectation::toggleCheckBox()
{
    Step step{Step::Kind::Click, QStringLiteral("a click on the check box")};
    step.isAnswer = false;
    step.findTarget = findCheckBox;
    d->steps.push_back(std::move(step));
    return *this;
}

DialogExpectation& DialogExpectation::pressKey(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    const QString name = QKeySequence(static_cast<int>(modifiers) | key).toString(QKeySequence::PortableText);
    Step step{Step::Kind::Key, QStringLiteral("the key ") + name};
    step.key = key;
    step.modifiers = modifiers;
    d->steps.push_back(std::move(step));
    return *this;
}

DialogExpectation& DialogExpectation::pressEscape()
{
    return pressKey(Qt::Key_Escape);
}

DialogExpectation& DialogExpectation::closeWindow()
{
    d->steps.push_back(Step{Step::Kind::Close, QStringLiteral("the close of its window")});
    return *this;
}

DialogExpectation& DialogExpectation::run(const std::function<void(QMessageBox&)>& code)
{
    Step step{Step::Kind::Run, QStringLiteral("a call of the test's code")};
    step.isAnswer = false;
    step.code = code;
    d->steps.push_back(std::move(step));
    return *this;
}

} // namespace Quillet::Testing
