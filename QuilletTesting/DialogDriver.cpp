#include <QuilletTesting/DialogDriver.h>

#include <QuilletTesting/ExpectationData.h>
#include <QuilletTesting/Labels.h>

#include <Quillet/MessageDialog.h>

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtGui/QKeyEvent>
#include <QtGui/QWindow>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QPushButton>

#include <algorithm>
#include <exception>
#include <utility>
#include <vector>

namespace Quillet::Testing {

namespace {

constexpr int default_timeout = 5000;

// Code that asks again until it gets another answer than Escape would otherwise never end.
constexpr int most_unexpected_boxes = 100;

QVector<DialogDriverPrivate*>& drivers()
{
    static QVector<DialogDriverPrivate*> all;
    return all;
}

QString identifierOf(const QMessageBox& box)
{
    const auto* const dialog = qobject_cast<const MessageDialog*>(&box);
    const QString id = dialog ? dialog->getId() : QString();
    return id.isEmpty() ? box.objectName() : id;
}

// QMessageBox forgets the icon of a box that gets a picture, as a MessageDialog does on its first show.
QMessageBox::Icon iconOf(const QMessageBox& box)
{
    const QPixmap picture = box.iconPixmap();
    if (box.icon() != QMessageBox::NoIcon || picture.isNull() || !qobject_cast<const MessageDialog*>(&box))
        return box.icon();
    for (const auto icon :
         {QMessageBox::Information, QMessageBox::Warning, QMessageBox::Critical, QMessageBox::Question}) {
        MessageDialog other({}, {}, icon);
        other.updateStyle();
        if (other.iconPixmap().toImage() == picture.toImage())
            return icon;
    }
    return QMessageBox::NoIcon;
}

// What the box is at this moment, but for its icon.
void describe(const QMessageBox& box, DialogRecord& record)
{
    record.identifier = identifierOf(box);
    record.title = box.windowTitle();
    record.text = box.text();
    record.informativeText = box.informativeText();
    record.buttons.clear();
    const QList<QAbstractButton*> buttons = box.buttons();
    for (const QAbstractButton* button : buttons)
        record.buttons.append(labelOf(button));
    record.defaultButton = labelOf(box.defaultButton());
    const auto* const dialog = qobject_cast<const MessageDialog*>(&box);
    record.primaryButton = labelOf(dialog ? dialog->getPrimaryButton() : nullptr);
}

QString nameOf(const QString& identifier)
{
    return identifier.isEmpty() ? QStringLiteral("dialog without identifier")
                                : QStringLiteral("dialog ") + quoted(identifier);
}

QString summaryOf(const DialogRecord& record)
{
    return QStringLiteral("%1, titled %2, text %3, buttons %4")
        .arg(nameOf(record.identifier), quoted(record.title), quoted(record.text), quoted(record.buttons));
}

QString indented(const QString& lines)
{
    return QStringLiteral("\n  ") + QString(lines).replace(QLatin1Char('\n'), QStringLiteral("\n  "));
}

// Ends a dialog in the ways that a user has and, where it has none of them, by force.
void dismiss(const QPointer<QDialog>& dialog)
{
    const auto isOpen = [&] { return dialog && dialog->isVisible(); };
    if (isOpen()) {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(dialog, &escape);
    }
    if (isOpen())
        dialog->close();
    if (isOpen())
        dialog->done(QDialog::Rejected);
    if (isOpen())
        dialog->QDialog::setVisible(false); // whatever the dialog itself makes of it
}

// The window at the head of all that have been opened from one another.
const QWidget* mainWindowOf(const QWidget& window)
{
    const QWidget* head = &window;
    while (head->parentWidget())
        head = head->parentWidget();
    return head;
}

// Whether the box is where a user can see and reach all of it. A window manager takes its time to expose a
// window, and once more to give it the size that it has asked for when its first show has given it its look.
bool isOnScreen(const QMessageBox& box)
{
    const QWindow* const window = box.windowHandle();
    return window && window->isExposed() && box.size() == box.size().expandedTo(box.minimumSize());
}

} // namespace

/// One show of a dialog, until it closes.
struct Showing
{
    QPointer<QDialog> dialog;
    bool isMessageBox = false; ///< others are only watched by the time-out
    int record = -1;
    ExpectationData* expectation = nullptr;
    std::size_t nextStep = 0;
    bool isMatched = false;   ///< has been looked up among the expectations
    bool isOpen = true;       ///< neither hidden nor destroyed
    bool isBusy = false;      ///< a step is being performed, maybe in a loop below this one
    bool isGivenUp = false;   ///< has been dismissed
    bool isActivated = false; ///< has been asked to become the active window
    QMetaObject::Connection clicked;

    /// Whether it is one to answer or to dismiss.
    bool isPending() const { return isMessageBox && isOpen && dialog && !isGivenUp; }

    QMessageBox* box() const { return isMessageBox ? qobject_cast<QMessageBox*>(dialog.data()) : nullptr; }
};

using ShowingPointer =
    std::shared_ptr<Showing>; // other code runs, and shows close, inside most functions here

/// Sees all events of the application. What it has to do it does later, from the event loop that then runs:
/// at a show the box's own loop has not begun.
class DialogDriverPrivate : public QObject
{
    Q_OBJECT

public:
    explicit DialogDriverPrivate(const SourceLocation& location) : where(location)
    {
        drivers().append(this);
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        m_watchdog.setSingleShot(true);
        connect(&m_watchdog, &QTimer::timeout, this, &DialogDriverPrivate::endWhatHangs);
        QCoreApplication::instance()->installEventFilter(this);
    }

    ~DialogDriverPrivate() override
    {
        drivers().removeOne(this);
        if (!drivers().isEmpty())
            drivers().constLast()->schedule(); // it has let pass what came meanwhile
        if (m_usedNativeDialogs)
            QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false);
    }

    Q_DISABLE_COPY(DialogDriverPrivate)

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const bool isLast = drivers().constLast() == this;
        switch (event->type()) {
        case QEvent::Show:
            if (auto* dialog = qobject_cast<QDialog*>(watched); dialog && isLast && !event->spontaneous())
                open(*dialog);
            break;
        case QEvent::Hide:
            if (const auto showing = find(watched); showing && !event->spontaneous())
                close(*showing);
            break;
        case QEvent::WindowBlocked:
            if (watched->isWindowType())
                m_blocked.append(static_cast<QWindow*>(watched));
            break;
        case QEvent::WindowUnblocked:
            if (watched->isWindowType())
                m_blocked.removeAll(static_cast<QWindow*>(watched));
            schedule();
            break;
        case QEvent::Expose:
        case QEvent::Resize:
        case QEvent::WindowActivate:
            schedule();
            break;
        default:
            break;
        }
        return false;
    }

    /// The expectation that a box of this kind meets next; null where none does.
    ExpectationData* findExpectation(const DialogRecord& record)
    {
        ExpectationData* found = nullptr;
        for (const auto& each : expectations) {
            ExpectationData& data = *each->d;
            if (data.identifier != record.identifier || data.come == data.most)
                continue;
            if (data.fits(record))
                return &data;
            if (!found)
                found = &data;
        }
        return found;
    }

    bool allHaveCome() const
    {
        return std::all_of(expectations.begin(), expectations.end(), [](const auto& each) {
            return each->d->come >= each->d->least;
        });
    }

    bool isBoxOpen() const
    {
        return std::any_of(
            m_showings.begin(), m_showings.end(), [](const auto& each) { return each->isPending(); });
    }

    bool wait()
    {
        const auto isDone = [this] {
            forgetClosed();
            return allHaveCome() && !isBoxOpen();
        };
        // What is due first: it may open a box that nobody expects.
        QCoreApplication::processEvents();
        m_sinceProgress.start();
        for (qint64 left = timeout; left > 0; left = timeout - m_sinceProgress.elapsed()) {
            if (QTest::qWaitFor(isDone, static_cast<int>(left)))
                return true;
        }
        return false;
    }

    bool verify()
    {
        QString instead = QStringLiteral("No dialog has come.");
        if (!records.isEmpty()) {
            QStringList seen;
            for (const DialogRecord& record : qAsConst(records))
                seen.append(summaryOf(record));
            instead = QStringLiteral("What has come:") + indented(seen.join(QLatin1Char('\n')));
        }
        const auto all = std::exchange(expectations, {});
        bool haveAllCome = true;
        for (const auto& each : all) {
            const ExpectationData& data = *each->d;
            if (data.come >= data.least)
                continue;
            haveAllCome = false;
            QString message = QStringLiteral("The expected ") + nameOf(data.identifier);
            if (data.least == 1)
                message += QStringLiteral(" has not come.");
            else
                message += QStringLiteral(" has come %1 of %2 times.").arg(data.come).arg(data.least);
            reportFailure(message + QLatin1Char('\n') + instead, data.where);
        }
        m_kept.insert(m_kept.end(), all.begin(), all.end());
        return haveAllCome;
    }

    /// Ends what is still open, for good.
    void finish()
    {
        for (;;) { // the end of one may bring another
            forgetClosed();
            const auto last = std::find_if(
                m_showings.rbegin(), m_showings.rend(), [](const auto& each) { return each->isPending(); });
            if (last == m_showings.rend())
                return;
            const ShowingPointer showing = *last;
            match(*showing);
            const QString blocker = blockerOf(*showing);
            const QString advice =
                QStringLiteral(" Call wait() before, for boxes that are opened without blocking.");
            reportFailure(QStringLiteral("The %1 is still open at the end of its driver%2.%3")
                              .arg(nameOf(records.at(showing->record).identifier),
                                   blocker,
                                   blocker.isEmpty() ? advice : QString()),
                          whereOf(*showing));
            if (!showing->expectation)
                countUnexpected();
            giveUp(*showing);
        }
    }

    const SourceLocation where;
    std::vector<std::shared_ptr<DialogExpectation>> expectations;
    QVector<DialogRecord> records;
    int timeout = default_timeout;
    QString screenshotDirectory;
    bool isVerified = false;

private:
    void schedule() { QTimer::singleShot(0, this, &DialogDriverPrivate::answer); }

    /// Something has happened: the time-out begins anew.
    void noteProgress()
    {
        m_sinceProgress.start();
        const bool isAnyOpen = std::any_of(m_showings.begin(), m_showings.end(), [](const auto& each) {
            return each->isOpen && each->dialog && !each->isGivenUp;
        });
        if (isAnyOpen)
            m_watchdog.start(timeout);
        else
            m_watchdog.stop();
    }

    ShowingPointer find(const QObject* dialog) const
    {
        const auto found = std::find_if(m_showings.begin(), m_showings.end(), [=](const auto& each) {
            return each->isOpen && each->dialog == dialog;
        });
        return found == m_showings.end() ? nullptr : *found;
    }

    void open(QDialog& dialog)
    {
        auto* const box = qobject_cast<QMessageBox*>(&dialog);
        if (!dialog.isWindow() || find(&dialog) || !(box || dialog.isModal()))
            return;

        const auto showing = std::make_shared<Showing>();
        showing->dialog = &dialog;
        showing->isMessageBox = box;
        if (box) {
            DialogRecord record;
            describe(*box, record);
            record.icon = iconOf(*box);
            showing->record = records.size();
            records.append(record);
            showing->clicked =
                connect(box, &QMessageBox::buttonClicked, this, [this, at = showing->record](auto* button) {
                    records[at].clickedButton = labelOf(button);
                });
        }
        m_showings.push_back(showing);
        connect(&dialog, &QObject::destroyed, this, &DialogDriverPrivate::schedule);
        noteProgress();
        schedule();
    }

    void close(Showing& showing)
    {
        showing.isOpen = false;
        disconnect(showing.clicked);
        if (showing.dialog)
            disconnect(showing.dialog, &QObject::destroyed, this, nullptr);
        noteUnanswered(showing);
        noteProgress();
        schedule();
    }

    /// Drops what has closed, and what has been destroyed without ever closing.
    void forgetClosed()
    {
        const auto all = m_showings;
        for (const auto& each : all) {
            if (each->isOpen && !each->dialog)
                close(*each);
        }
        m_showings.erase(std::remove_if(m_showings.begin(),
                                        m_showings.end(),
                                        [](const auto& each) { return !each->isOpen; }),
                         m_showings.end());
    }

    /// Tells of a box that has closed with something left to do with it.
    void noteUnanswered(Showing& showing)
    {
        if (!showing.isMessageBox || showing.isGivenUp)
            return;
        const bool hasBeenSeen = showing.isMatched;
        match(showing);
        const ExpectationData* const expectation = showing.expectation;
        if (!expectation) {
            if (!hasBeenSeen)
                reportUnexpected(showing);
            return;
        }
        if (!hasBeenSeen && showing.box()) {
            check(showing);
        } else if (!hasBeenSeen && !expectation->checks.empty()) {
            reportFailure(QStringLiteral("The %1 has been destroyed before it was checked.")
                              .arg(nameOf(expectation->identifier)),
                          expectation->where);
        }
        if (showing.nextStep < expectation->steps.size()) {
            const Step& step = expectation->steps[showing.nextStep];
            reportFailure(QStringLiteral("The %1 has closed before %2.")
                              .arg(nameOf(expectation->identifier), step.name),
                          expectation->where);
        }
    }

    /// The open box that a user could answer now; null where there is none.
    ShowingPointer findAnswerable() const
    {
        for (auto each = m_showings.rbegin(); each != m_showings.rend(); ++each) {
            const Showing& showing = **each;
            if (showing.isPending() && !showing.isBusy && !isBlocked(showing))
                return *each;
        }
        return nullptr;
    }

    void answer()
    {
        if (drivers().constLast() != this)
            return;
        forgetClosed();
        const ShowingPointer showing = findAnswerable();
        if (!showing)
            return;

        if (!showing->isMatched) {
            match(*showing);
            if (showing->expectation)
                check(*showing);
            else
                reportUnexpected(*showing);
        }
        const ExpectationData* const expectation = showing->expectation;
        if (!expectation) {
            giveUp(*showing);
        } else if (showing->nextStep < expectation->steps.size()) {
            perform(*showing, Step(expectation->steps[showing->nextStep]));
        } else if (showing->nextStep == expectation->steps.size() && !expectation->hasAnswer()) {
            Step escape{Step::Kind::Key, QStringLiteral("the key Esc")};
            escape.key = Qt::Key_Escape;
            perform(*showing, escape);
        }
    }

    void match(Showing& showing)
    {
        if (showing.isMatched)
            return;
        showing.isMatched = true;
        DialogRecord& record = records[showing.record];
        // What the show itself has added, such as an OK button. A box that is being destroyed is no box any
        // more.
        if (const QMessageBox* box = showing.box())
            describe(*box, record);
        showing.expectation = findExpectation(record);
        if (showing.expectation)
            ++showing.expectation->come;
        record.wasExpected = showing.expectation;
    }

    void check(Showing& showing)
    {
        const QMessageBox& box = *showing.box();
        QStringList differences;
        for (const Check& each : showing.expectation->checks) {
            const QString difference = each(box, records.at(showing.record));
            if (!difference.isEmpty())
                differences.append(difference);
        }
        if (differences.isEmpty())
            return;
        QString message = QStringLiteral("The %1 differs from what was expected:")
                              .arg(nameOf(showing.expectation->identifier));
        takeScreenshot(showing);
        const QString screenshot = records.at(showing.record).screenshot;
        if (!screenshot.isEmpty())
            differences.append(QStringLiteral("screenshot: ") + screenshot);
        message += indented(differences.join(QLatin1Char('\n')));
        reportFailure(message, showing.expectation->where);
    }

    void perform(Showing& showing, const Step& step)
    {
        QMessageBox& box = *showing.box();
        if (!isOnScreen(box))
            return; // the event that changes that comes back here
        QWindow* const window = box.windowHandle();
        // Asked of the window: QWidget::isActiveWindow() stays false on the offscreen platform for a box that
        // is shown again.
        if (step.kind == Step::Kind::Key && QGuiApplication::focusWindow() != window) {
            if (!std::exchange(showing.isActivated, true))
                box.activateWindow();
            return;
        }

        // The step's own event loops may come by here, and end the box, or the driver.
        const QPointer<DialogDriverPrivate> self(this);
        showing.isBusy = true;
        showing.isActivated = false;
        ++showing.nextStep;
        noteProgress();
        switch (step.kind) {
        case Step::Kind::Click: {
            const QString problem = click(box, step);
            if (!problem.isEmpty()) {
                reportFailure(
                    QStringLiteral("The %1 %2.").arg(nameOf(showing.expectation->identifier), problem),
                    showing.expectation->where);
                giveUp(showing);
            }
            break;
        }
        case Step::Kind::Key:
            press(window, step);
            break;
        case Step::Kind::Close:
            window->close();
            break;
        case Step::Kind::Run:
            if (!run(box, step, *showing.expectation) && self)
                giveUp(showing);
            break;
        }
        if (!self)
            return;
        showing.isBusy = false;
        noteProgress();
        schedule();
    }

    /// Runs the step's code, and tells whether it has come to its end: an exception must not go on from here,
    /// into an event loop of Qt.
    static bool run(QMessageBox& box, const Step& step, const ExpectationData& expectation)
    {
        // The code may end the driver, and with it the expectation.
        const SourceLocation where = expectation.where;
        const QString problem = QStringLiteral("The %1 is given up, since the test's code has thrown ")
                                    .arg(nameOf(expectation.identifier));
        try {
            step.code(box);
            return true;
        } catch (const std::exception& exception) {
            reportFailure(problem + quoted(QString::fromLocal8Bit(exception.what())) + QLatin1Char('.'),
                          where);
        } catch (...) {
            reportFailure(problem + QStringLiteral("an exception."), where);
        }
        return false;
    }

    /// Presses and releases the step's key. The release of one that closes the window is for no window of
    /// ours.
    static void press(const QPointer<QWindow>& window, const Step& step)
    {
        QTest::keyPress(window, step.key, step.modifiers);
        if (window && window->isVisible())
            QTest::keyRelease(window, step.key, step.modifiers);
    }

    /// Clicks where the step says. Returns why it could not, as the end of a sentence about the box.
    static QString click(QMessageBox& box, const Step& step)
    {
        const Target target = step.findTarget(box);
        if (!target.widget)
            return target.problem;
        const auto outOfReach = [&](const QString& why) {
            return QStringLiteral("cannot be answered: the button %1 is %2")
                .arg(quoted(labelOf(qobject_cast<QAbstractButton*>(target.widget))), why);
        };
        if (!target.widget->isVisible())
            return outOfReach(QStringLiteral("hidden"));
        if (!target.widget->isEnabled())
            return outOfReach(QStringLiteral("disabled"));
        const QPoint point = target.widget->mapTo(&box, target.point);
        if (box.childAt(point) != target.widget)
            return outOfReach(QStringLiteral("covered"));
        QTest::mouseClick(box.windowHandle(), Qt::LeftButton, Qt::NoModifier, point);
        return {};
    }

    void giveUp(Showing& showing)
    {
        const QPointer<DialogDriverPrivate> self(this); // the box's own code may end the driver
        showing.isGivenUp = true;
        showing.isBusy = true;
        dismiss(showing.dialog);
        if (!self)
            return;
        showing.isBusy = false;
        noteProgress();
        schedule();
    }

    void reportUnexpected(Showing& showing)
    {
        takeScreenshot(showing);
        QStringList expected;
        for (const auto& each : expectations) {
            if (each->d->come < each->d->least)
                expected.append(each->d->identifier);
        }
        reportFailure(QStringLiteral("An unexpected dialog has come:%1\nStill expected: %2.")
                          .arg(indented(records.at(showing.record).description()), quoted(expected)),
                      where);
        countUnexpected();
    }

    void countUnexpected()
    {
        if (++m_unexpectedBoxes == most_unexpected_boxes) {
            qFatal("%d unexpected dialogs: the code seems to ask until it gets another answer.",
                   most_unexpected_boxes);
        }
    }

    void endWhatHangs()
    {
        if (drivers().constLast() != this) {
            m_watchdog.start(timeout);
            return;
        }
        forgetClosed();
        ShowingPointer hanging = find(QApplication::activeModalWidget());
        for (auto each = m_showings.rbegin(); each != m_showings.rend() && !(hanging && !hanging->isGivenUp);
             ++each)
            hanging = *each;
        if (!hanging || hanging->isGivenUp)
            return;

        if (!hanging->isMessageBox) {
            const QDialog& dialog = *hanging->dialog;
            reportFailure(
                QStringLiteral("Nothing has happened for %1 ms while a %2 titled %3 was open.")
                    .arg(timeout)
                    .arg(QString::fromLatin1(dialog.metaObject()->className()), quoted(dialog.windowTitle())),
                where);
        } else {
            match(*hanging);
            takeScreenshot(*hanging);
            reportFailure(QStringLiteral("Nothing has happened for %1 ms while the %2 was open%3.%4")
                              .arg(timeout)
                              .arg(nameOf(records.at(hanging->record).identifier),
                                   stateOf(*hanging),
                                   indented(records.at(hanging->record).description())),
                          whereOf(*hanging));
        }
        giveUp(*hanging);
    }

    /// Whether a modal dialog keeps a user from the box. Qt drops what mouse and keyboard do to it then.
    bool isBlocked(const Showing& showing) const
    {
        QWindow* const window = showing.dialog->windowHandle();
        return window && m_blocked.contains(window);
    }

    /// That modal dialog, as the end of a sentence; empty where there is none.
    QString blockerOf(const Showing& showing) const
    {
        if (!isBlocked(showing))
            return {};
        const auto isBlocker = [&](const QWidget* other) {
            return other && other != showing.dialog && other->isVisible()
                   && (other->windowModality() == Qt::ApplicationModal
                       || (other->windowModality() == Qt::WindowModal
                           && mainWindowOf(*other) == mainWindowOf(*showing.dialog)));
        };
        const QWidget* blocker = QApplication::activeModalWidget();
        if (!isBlocker(blocker)) {
            const QWidgetList windows = QApplication::topLevelWidgets();
            const auto found = std::find_if(windows.begin(), windows.end(), isBlocker);
            if (found == windows.end())
                return QStringLiteral(", blocked by another window");
            blocker = *found;
        }
        return QStringLiteral(", blocked by a %1 titled %2")
            .arg(QString::fromLatin1(blocker->metaObject()->className()), quoted(blocker->windowTitle()));
    }

    /// What has been done with a box, or why it has not.
    QString stateOf(const Showing& showing) const
    {
        const ExpectationData* const expectation = showing.expectation;
        if (expectation && showing.isBusy && showing.nextStep <= expectation->steps.size())
            return QStringLiteral(" during ") + expectation->steps[showing.nextStep - 1].name;
        if (expectation && showing.nextStep > expectation->steps.size())
            return QStringLiteral(" after the key Esc");
        if (expectation && expectation->hasAnswer() && showing.nextStep == expectation->steps.size())
            return QStringLiteral(" after ") + expectation->steps.back().name;
        QString blocker = blockerOf(showing);
        if (!blocker.isEmpty())
            return blocker;
        if (!isOnScreen(*showing.box()))
            return QStringLiteral(", not completely on the screen");
        if (QGuiApplication::focusWindow() != showing.dialog->windowHandle())
            return QStringLiteral(", its window not active");
        return {};
    }

    SourceLocation whereOf(const Showing& showing) const
    {
        return showing.expectation ? showing.expectation->where : where;
    }

    void takeScreenshot(const Showing& showing)
    {
        DialogRecord& record = records[showing.record];
        const QMessageBox* const box = showing.box();
        if (!box || screenshotDirectory.isEmpty() || !record.screenshot.isEmpty())
            return;
        QString name = record.identifier.isEmpty() ? QStringLiteral("dialog") : record.identifier;
        for (QChar& each : name) {
            if (!each.isLetterOrNumber() && each != QLatin1Char('-'))
                each = QLatin1Char('_');
        }
        QDir().mkpath(screenshotDirectory);
        QString file;
        int number = 0;
        do {
            file = QStringLiteral("%1/%2-%3.png").arg(screenshotDirectory, name).arg(++number);
        } while (QFile::exists(file));
        if (const_cast<QMessageBox*>(box)->grab().save(file))
            record.screenshot = file;
        else
            qWarning("The screenshot %s cannot be written.", qUtf8Printable(file));
    }

    std::vector<ShowingPointer> m_showings;                 // in the order in which they came
    QVector<QPointer<QWindow>> m_blocked;                   // by modal dialogs; may hold null
    std::vector<std::shared_ptr<DialogExpectation>> m_kept; // verified, and still referred to
    QTimer m_watchdog;
    QElapsedTimer m_sinceProgress;
    int m_unexpectedBoxes = 0;
    const bool m_usedNativeDialogs = !QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs);
};

DialogDriver::DialogDriver(const SourceLocation& where)
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        qFatal("A DialogDriver needs a QApplication.");
    d = std::make_unique<DialogDriverPrivate>(where);
}

DialogDriver::~DialogDriver()
{
    d->finish();
    if (!d->isVerified)
        verify();
}

DialogExpectation& DialogDriver::expect(const QString& identifier, const SourceLocation& where)
{
    d->isVerified = false;
    d->expectations.push_back(std::shared_ptr<DialogExpectation>(new DialogExpectation(identifier, where)));
    return *d->expectations.back();
}

bool DialogDriver::wait()
{
    return d->wait();
}

bool DialogDriver::verify()
{
    d->isVerified = true;
    return d->verify();
}

QVector<DialogRecord> DialogDriver::records() const
{
    return d->records;
}

QStringList DialogDriver::identifiers() const
{
    QStringList result;
    for (const DialogRecord& record : qAsConst(d->records))
        result.append(record.identifier);
    return result;
}

int DialogDriver::timeout() const
{
    return d->timeout;
}

void DialogDriver::setTimeout(int milliseconds)
{
    if (milliseconds > 0)
        d->timeout = milliseconds;
    else
        reportFailure(QStringLiteral("A time-out of %1 ms would end nothing.").arg(milliseconds), d->where);
}

void DialogDriver::setScreenshotDirectory(const QString& directory)
{
    d->screenshotDirectory = directory;
}

} // namespace Quillet::Testing

#include "DialogDriver.moc"
