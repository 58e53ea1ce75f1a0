#include "TestCase.h"

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QAbstractButton>

namespace {

QtMessageHandler test_log = nullptr;
QStringList expected_messages;
QStringList unexpected_messages;

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    // Written by the offscreen platform for every window that is shown.
    if (text == QLatin1String("This plugin does not support propagateSizeHints()"))
        return;
    if (expected_messages.removeOne(text))
        return;
    if (type == QtWarningMsg || type == QtCriticalMsg)
        unexpected_messages.append(text);
    test_log(type, context, text);
}

QStringList describe(const QWidgetList& widgets)
{
    QStringList result;
    for (const QWidget* widget : widgets)
        result.append(QString::fromLatin1(widget->metaObject()->className()));
    return result;
}

} // namespace

void TestCase::expectMessage(const QString& text)
{
    expected_messages.append(text);
}

void TestCase::init()
{
    expected_messages.clear();
    unexpected_messages.clear();
    test_log = qInstallMessageHandler(handleMessage);
}

void TestCase::cleanup()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    qInstallMessageHandler(test_log);

    QCOMPARE(describe(QApplication::topLevelWidgets()), QStringList());
    QCOMPARE(unexpected_messages, QStringList());
    QCOMPARE(expected_messages, QStringList());
}

void whenModal(std::function<void(QMessageBox&)> answer)
{
    // A loop handles a timer without a delay only after the box has been shown.
    QTimer::singleShot(0, [answer = std::move(answer)] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box)
            answer(*box);
        else
            qCritical("whenModal: no message box runs a modal loop");
    });
}

QAbstractButton* buttonOf(const QMessageBox& box, const QString& text)
{
    const QList<QAbstractButton*> buttons = box.buttons();
    for (QAbstractButton* button : buttons) {
        if (button->text().remove(QLatin1Char('&')) == text)
            return button;
    }
    return nullptr;
}

void prepareTestEnvironment()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}
