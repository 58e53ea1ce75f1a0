#include "TestCase.h"

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QAbstractButton>

namespace {

struct Messages
{
    QStringList expected;
    QStringList unexpected;
    QtMessageHandler testLog = nullptr;
};

Messages& messages()
{
    static Messages all;
    return all;
}

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    // Written by the offscreen platform for every window that is shown, and for menus.
    if (text.startsWith(QLatin1String("This plugin does not support ")))
        return;
    // A real window manager answers late, when a test may already have closed its window.
    if (qstrcmp(context.category, "qt.qpa.xcb") == 0)
        return;
    if (messages().expected.removeOne(text))
        return;
    if (type == QtWarningMsg || type == QtCriticalMsg)
        messages().unexpected.append(text);
    messages().testLog(type, context, text);
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
    messages().expected.append(text);
}

void TestCase::init()
{
    messages() = {{}, {}, qInstallMessageHandler(handleMessage)};
}

void TestCase::cleanup()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    qInstallMessageHandler(messages().testLog);

    QCOMPARE(describe(QApplication::topLevelWidgets()), QStringList());
    QCOMPARE(messages().unexpected, QStringList());
    QCOMPARE(messages().expected, QStringList());
}

void whenModal(std::function<void(QMessageBox&)> answer)
{
    // A loop handles a timer without a delay only after the box has been shown.
    QTimer::singleShot(0, qApp, [answer = std::move(answer)] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box && QTest::qWaitForWindowExposed(box))
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

int rounds(int count)
{
    const int divisor = std::max(qEnvironmentVariableIntValue("QUILLET_TEST_ROUNDS_DIVISOR"), 1);
    return std::max(count / divisor, 1);
}

void prepareTestEnvironment()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}
