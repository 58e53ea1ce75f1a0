#include <QuilletTesting/Steps.h>

#include <QuilletTesting/Labels.h>

#include <Quillet/MessageDialog.h>
#include <Quillet/MessageDialogTemplate.h>
#include <Quillet/MessageDialogTemplatePreprocessors.h>

#include <QtCore/QPointer>
#include <QtGui/QKeySequence>
#include <QtGui/QWindow>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionButton>

#include <algorithm>
#include <exception>
#include <vector>

namespace Quillet::Testing {

namespace {

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

// Key by key, and not by QTest::keyClick(): each of them may destroy the window, and no events are processed
// between them, which might make another window the active one.
void pressAndRelease(const QPointer<QWindow>& window, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    struct Key
    {
        Qt::Key key;
        Qt::KeyboardModifier modifier;
    };
    std::vector<Key> keys;
    for (const Key& each : {Key{Qt::Key_Shift, Qt::ShiftModifier},
                            Key{Qt::Key_Control, Qt::ControlModifier},
                            Key{Qt::Key_Alt, Qt::AltModifier},
                            Key{Qt::Key_Meta, Qt::MetaModifier}}) {
        if (modifiers & each.modifier)
            keys.push_back(each);
    }
    keys.push_back({key, Qt::NoModifier});

    // What is released when the window has closed goes elsewhere, as for a user. It has to be released: Qt
    // keeps account of the modifiers that are down.
    QWindow elsewhere;
    const auto isThere = [&] { return window && window->isVisible(); };
    const auto send = [&](bool isPress, Qt::Key code, Qt::KeyboardModifiers held) {
        const char ascii = QTest::keyToAscii(code);
        const QString plain = ascii ? QString(QLatin1Char(ascii)) : QString();
        const QString text = held & Qt::ShiftModifier ? plain.toUpper() : plain;
        qt_handleKeyEvent(isThere() ? window.data() : &elsewhere,
                          isPress ? QEvent::KeyPress : QEvent::KeyRelease,
                          code,
                          held,
                          text);
    };
    Qt::KeyboardModifiers held = modifiers & Qt::KeypadModifier;
    auto next = keys.begin();
    for (; next != keys.end() && isThere(); ++next) {
        send(true, next->key, held);
        held |= next->modifier;
    }
    while (next != keys.begin()) {
        --next;
        held &= ~Qt::KeyboardModifiers(next->modifier);
        send(false, next->key, held);
    }
}

} // namespace

Step clickStep(const QString& name, const FindTarget& find)
{
    Step step{QStringLiteral("a click on ") + name, [](QMessageBox& box, const Target& target) {
                  const QPointer<QWidget> widget = target.widget;
                  bool hasReacted = false;
                  const auto watch = QObject::connect(static_cast<QAbstractButton*>(target.widget),
                                                      &QAbstractButton::clicked,
                                                      [&hasReacted] { hasReacted = true; });
                  const QPointer<QWindow> window = box.windowHandle();
                  const QPoint point = target.widget->mapTo(&box, target.point);
                  const bool hasPopup = QApplication::activePopupWidget();
                  QTest::mouseClick(window, Qt::LeftButton, Qt::NoModifier, point);
                  // While a list in the box drops down, the first click only closes that.
                  if (widget && !hasReacted && hasPopup)
                      QTest::mouseClick(window, Qt::LeftButton, Qt::NoModifier, point);
                  QObject::disconnect(watch);
                  return hasReacted || !widget
                             ? QString()
                             : QStringLiteral("cannot be answered: its %1 does not react to a click")
                                   .arg(nameOf(*widget));
              }};
    step.findTarget = find;
    return step;
}

Step keyStep(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    const QString name = QKeySequence(static_cast<int>(modifiers) | key).toString(QKeySequence::PortableText);
    Step step{QStringLiteral("the key ") + name, [=](QMessageBox& box, const Target&) {
                  pressAndRelease(box.windowHandle(), key, modifiers);
                  return QString();
              }};
    step.needsActiveWindow = true;
    return step;
}

Step closeStep()
{
    return {QStringLiteral("the close of its window"), [](QMessageBox& box, const Target&) {
                box.windowHandle()->close();
                return QString();
            }};
}

Step waitStep()
{
    return {QStringLiteral("its end by the application"), nullptr};
}

Step codeStep(const std::function<void(QMessageBox&)>& code)
{
    // An exception must not go on from here, into an event loop of Qt.
    Step step{QStringLiteral("a call of the test's code"), [=](QMessageBox& box, const Target&) -> QString {
                  const QString problem = QStringLiteral("is given up, since the test's code has thrown ");
                  try {
                      code(box);
                      return {};
                  } catch (const std::exception& exception) {
                      return problem + quoted(QString::fromLocal8Bit(exception.what()));
                  } catch (...) {
                      return problem + QStringLiteral("an exception");
                  }
              }};
    step.isAnswer = false;
    step.mayEndBox = true;
    return step;
}

QString obstacleTo(const Target& target, const QMessageBox& box)
{
    const auto state = [&](const QString& what) {
        return QStringLiteral(", %1 %2").arg(nameOf(*target.widget), what);
    };
    if (!target.widget->isVisible())
        return state(QStringLiteral("hidden"));
    if (!target.widget->isEnabled())
        return state(QStringLiteral("disabled"));
    const QWidget* const there = box.childAt(target.widget->mapTo(&box, target.point));
    if (!there)
        return state(QStringLiteral("outside of the window"));
    const bool isFree = there == target.widget || target.widget->isAncestorOf(there);
    return isFree ? QString() : state(QStringLiteral("covered by ") + nameOf(*there));
}

Target findButton(const QMessageBox& box, const QString& label)
{
    return findOne(
        box, [&](const auto* each) { return labelOf(each) == label; }, quoted(label));
}

Target findButton(const QMessageBox& box, QMessageBox::StandardButton button)
{
    return findOne(
        box,
        [&](auto* each) { return button != QMessageBox::NoButton && box.standardButton(each) == button; },
        QStringLiteral("with the standard value ") + namesOf(button));
}

Target findButton(const QMessageBox& box, QMessageBox::ButtonRole role)
{
    return findOne(
        box,
        [&](auto* each) { return box.buttonRole(each) == role; },
        QStringLiteral("with ") + nameOf(role));
}

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

    // Slots of one text and role have made their buttons in their own order.
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

} // namespace Quillet::Testing
