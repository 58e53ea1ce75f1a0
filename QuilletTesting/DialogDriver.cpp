#include <QuilletTesting/DialogDriver.h>

#include <QuilletTesting/Boxes.h>
#include <QuilletTesting/ExpectationData.h>
#include <QuilletTesting/Labels.h>

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtGui/QWindow>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <functional>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

namespace Quillet::Testing {

namespace {

constexpr int default_timeout = 5000;

// Code that asks again until it gets another answer than Escape would otherwise never end.
constexpr int most_unexpected_boxes = 100;
constexpr int most_timeouts = 20;

// The time-out is counted in ticks, not by one timer: while the event loop stands still nothing can happen,
// and that must not count for more than one of them.
constexpr int ticks_of_timeout = 10;

// How long to wait for the window to become active before asking again, in milliseconds. Another program on
// the display may have become active meanwhile.
constexpr int activation_patience = 500;

int defaultTimeout()
{
    const int chosen = qEnvironmentVariableIntValue("QUILLET_TESTING_TIMEOUT");
    return chosen > 0 ? chosen : default_timeout;
}

QVector<DialogDriverPrivate*>& drivers()
{
    static QVector<DialogDriverPrivate*> all;
    return all;
}

// Whether the platform's dialogs were in use before the first driver was made.
bool& nativeDialogsBefore()
{
    static bool result = false;
    return result;
}

QString nameOf(const QString& identifier)
{
    return identifier.isEmpty() ? QStringLiteral("dialog without identifier")
                                : QStringLiteral("dialog ") + quoted(identifier);
}

// With all that tells it from others.
QString nameOf(const ExpectationData& expectation)
{
    QString name = nameOf(expectation.identifier);
    for (const Feature& each : expectation.features)
        name += each.description;
    return name;
}

QString lineOf(const ExpectationData& expectation)
{
    return QStringLiteral(" (line %1)").arg(expectation.where.line);
}

// A box that has come, and what it was taken for.
QString summaryOf(const DialogRecord& record, const ExpectationData* expectation)
{
    return QStringLiteral("%1, titled %2, text %3, buttons %4: %5")
        .arg(nameOf(record.identifier),
             quoted(record.title),
             quoted(record.text),
             quoted(record.buttons),
             expectation ? QStringLiteral("expected") + lineOf(*expectation) : QStringLiteral("unexpected"));
}

// For the end of a message; empty where there is none.
QString screenshotLine(const QString& file)
{
    return file.isEmpty() ? QString() : QStringLiteral("\n  screenshot: ") + file;
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
    QString lastStep;          ///< its name
    QString obstacle;          ///< to the next one, as the end of a sentence about an open box
    bool isSeen = false;       ///< has been looked at, and looked up among the expectations
    bool isLeftToCode = false; ///< the test's code may have closed it
    bool isOpen = true;        ///< neither hidden nor destroyed
    bool isBusy = false;       ///< a step is being performed, maybe in a loop below this one
    bool isGivenUp = false;    ///< has been dismissed
    QMetaObject::Connection clicked;

    /// Whether the time-out is for it.
    bool isPending() const { return isOpen && dialog && !isGivenUp; }

    /// Whether it is to be answered.
    bool isPendingBox() const { return isMessageBox && isPending(); }

    /// Null also when the box is being destroyed.
    QMessageBox* box() const { return qobject_cast<QMessageBox*>(dialog.data()); }

    /// What is to be done next with an expected box; none when all has been done.
    std::optional<Step> step() const
    {
        if (nextStep < expectation->steps.size())
            return expectation->steps[nextStep];
        if (nextStep == expectation->steps.size() && !expectation->hasAnswer())
            return keyStep(Qt::Key_Escape, Qt::NoModifier);
        return {};
    }
};

// Shared: other code runs, and boxes close, inside most functions here.
using ShowingPointer = std::shared_ptr<Showing>;

/// Sees all events of the application. What it has to do it does later, from the event loop that then runs:
/// at a show the box's own loop has not begun.
class DialogDriverPrivate : public QObject
{
    Q_OBJECT

public:
    explicit DialogDriverPrivate(const SourceLocation& location) : where(location)
    {
        if (drivers().isEmpty())
            nativeDialogsBefore() = !QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs);
        drivers().append(this);
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        m_activation.setSingleShot(true);
        connect(&m_activation, &QTimer::timeout, this, &DialogDriverPrivate::schedule);
        connect(&m_ticker, &QTimer::timeout, this, &DialogDriverPrivate::tick);
        setTimeout(defaultTimeout());
        QCoreApplication::instance()->installEventFilter(this);
    }

    ~DialogDriverPrivate() override
    {
        drivers().removeOne(this);
        if (!drivers().isEmpty())
            drivers().constLast()->schedule(); // it has let pass what came meanwhile
        else if (nativeDialogsBefore())
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
            schedule();
            break;
        case QEvent::Hide:
            if (const auto showing = find(watched); showing && !event->spontaneous())
                close(*showing);
            schedule();
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
        case QEvent::EnabledChange:
        case QEvent::Expose:
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::WindowActivate:
        case QEvent::ZOrderChange:
            schedule();
            break;
        default:
            break;
        }
        return false;
    }

    /// The expectation that a box meets: of those that fit the one that says most about it, rather one that
    /// is owed than one that may or may not be met, and the first of those that are left. Where none fits,
    /// likewise among those of the identifier, but for boxes without one. Null where there is none, and where
    /// the box must not come at all.
    ExpectationData* findExpectation(const DialogRecord& record) const
    {
        if (findForbidding(record))
            return nullptr;
        using Rank = std::tuple<bool, std::size_t, bool>;
        ExpectationData* found = nullptr;
        Rank bestRank;
        for (const auto& each : expectations) {
            ExpectationData& data = *each->d;
            const bool isFit = data.fits(record);
            if (data.identifier != record.identifier || data.come >= data.most
                || (data.identifier.isEmpty() && !isFit))
                continue;
            const Rank rank(isFit, isFit ? data.features.size() : 0, data.isOwed());
            if (!found || rank > bestRank) {
                found = &data;
                bestRank = rank;
            }
        }
        return found;
    }

    /// The expectation that says that the box must not come; null where there is none.
    const ExpectationData* findForbidding(const DialogRecord& record) const
    {
        const auto found = std::find_if(expectations.begin(), expectations.end(), [&](const auto& each) {
            return each->d->isForbidding() && each->d->identifier == record.identifier
                   && each->d->fits(record);
        });
        return found == expectations.end() ? nullptr : (*found)->d.get();
    }

    bool allHaveCome() const
    {
        return std::all_of(
            expectations.begin(), expectations.end(), [](const auto& each) { return !each->d->isOwed(); });
    }

    bool wait()
    {
        const QPointer<DialogDriverPrivate> self(this); // the code that runs may end the driver
        const int timeOutsBefore = m_timeOuts;
        bool isDone = false;
        const auto isOver = [&] {
            if (!self || m_timeOuts != timeOutsBefore)
                return true;
            forgetClosed();
            isDone = allHaveCome() && !findLast(&Showing::isPendingBox);
            return isDone;
        };
        // What is due first: it may open a box that nobody expects.
        QCoreApplication::processEvents();
        if (self) {
            ++m_waits;
            noteProgress();
        }
        while (!QTest::qWaitFor(isOver, 1000)) {
        }
        if (self)
            --m_waits;
        return isDone;
    }

    bool verify()
    {
        forgetClosed();
        const auto stillOpen = m_showings;
        for (const auto& each : stillOpen) {
            if (each->isPendingBox())
                look(*each);
        }
        QString instead = QStringLiteral("No dialog has come.");
        if (!records.isEmpty()) {
            QStringList seen;
            for (int i = 0; i < records.size(); ++i)
                seen.append(summaryOf(records.at(i), m_expectationsOfRecords.at(i)));
            instead = QStringLiteral("What has come:") + indented(seen.join(QLatin1Char('\n')));
        }
        const auto all = std::exchange(expectations, {});
        bool haveAllCome = true;
        for (const auto& each : all) {
            const ExpectationData& data = *each->d;
            if (!data.isOwed())
                continue;
            haveAllCome = false;
            QString message = QStringLiteral("The expected ") + nameOf(data);
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
            const ShowingPointer showing = findLast(&Showing::isPendingBox);
            if (!showing)
                return;
            look(*showing);
            if (!showing->expectation) {
                giveUp(*showing);
                continue;
            }
            const QString reason = isBlocked(*showing)
                                       ? blockerOf(*showing->dialog) + QLatin1Char('.')
                                       : QStringLiteral(". Call wait() before, for boxes that are opened "
                                                        "without blocking.");
            reportFailure(QStringLiteral("The %1 is still open at the end of its driver%2")
                              .arg(nameOf(showing->expectation->identifier), reason),
                          showing->expectation->where);
            giveUp(*showing);
        }
    }

    void setTimeout(int msecs)
    {
        timeout = msecs;
        m_idleTicks = 0;
        m_ticker.start((msecs - 1) / ticks_of_timeout + 1);
    }

    const SourceLocation where;
    std::vector<std::shared_ptr<DialogExpectation>> expectations;
    QVector<DialogRecord> records;
    int timeout = default_timeout;
    QString screenshotDirectory = qEnvironmentVariable("QUILLET_TESTING_SCREENSHOTS");

private:
    void schedule()
    {
        if (!m_showings.empty() && !std::exchange(m_isScheduled, true))
            QTimer::singleShot(0, this, &DialogDriverPrivate::answer);
    }

    /// Something has happened: the time-out begins anew.
    static void noteProgress()
    {
        for (DialogDriverPrivate* each : qAsConst(drivers()))
            each->m_idleTicks = 0;
    }

    /// The same for what happens to a dialog. One of another kind that comes and goes over a box does not
    /// help the box on.
    void noteProgress(const Showing& showing)
    {
        if (showing.isMessageBox || !findLast(&Showing::isPendingBox))
            noteProgress();
    }

    void tick()
    {
        if (drivers().constLast() != this && m_waits == 0) {
            m_idleTicks = 0;
            return;
        }
        forgetClosed();
        // What has come before the driver, was shown once more by exec(), or whose show was kept from it.
        bool isAnyOfOthers = false;
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget* window : windows) {
            auto* const dialog = qobject_cast<QDialog*>(window);
            if (!dialog || !dialog->isVisible() || !dialog->isModal())
                continue;
            const DialogDriverPrivate* const owner = ownerOf(*dialog);
            if (!owner && drivers().constLast() == this)
                open(*dialog);
            else if (owner != this)
                isAnyOfOthers = true;
        }
        if (m_waits == 0 && !isAnyOfOthers && !findLast(&Showing::isPending))
            m_idleTicks = 0;
        else if (++m_idleTicks == ticks_of_timeout)
            endWhatHangs();
    }

    /// The driver that has seen the dialog come; null where none has.
    static DialogDriverPrivate* ownerOf(const QDialog& dialog)
    {
        const auto found = std::find_if(
            drivers().cbegin(), drivers().cend(), [&](const auto* each) { return each->find(&dialog); });
        return found == drivers().cend() ? nullptr : *found;
    }

    ShowingPointer find(const QObject* dialog) const
    {
        return findLast([=](const Showing& each) { return each.isOpen && each.dialog == dialog; });
    }

    /// The last of the showings for which \a isMeant holds; null where there is none.
    template <typename Condition>
    ShowingPointer findLast(Condition isMeant) const
    {
        const auto found = std::find_if(m_showings.rbegin(), m_showings.rend(), [&](const auto& each) {
            return std::invoke(isMeant, *each);
        });
        return found == m_showings.rend() ? nullptr : *found;
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
            showing->record = records.size();
            records.append(record);
            m_expectationsOfRecords.append(nullptr);
            showing->clicked = connect(
                box, &QMessageBox::buttonClicked, this, [this, box, at = showing->record](auto* button) {
                    records[at].clickedButton = labelOf(button);
                    records[at].clickedStandardButton = box->standardButton(button);
                });
        }
        m_showings.push_back(showing);
        connect(&dialog, &QObject::destroyed, this, &DialogDriverPrivate::schedule);
        noteProgress(*showing);
        schedule();
    }

    void close(Showing& showing)
    {
        showing.isOpen = false;
        disconnect(showing.clicked);
        if (showing.dialog)
            disconnect(showing.dialog, &QObject::destroyed, this, nullptr);
        noteUnanswered(showing);
        noteProgress(showing);
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
        look(showing);
        if (!showing.expectation)
            return;
        auto step = showing.step();
        while (step && !step->perform) { // it has been waited for
            ++showing.nextStep;
            step = showing.step();
        }
        const bool isGiven =
            showing.nextStep < showing.expectation->steps.size(); // not the Escape after them
        if (!step || (showing.isLeftToCode && !isGiven))
            return;
        const QString advice =
            QStringLiteral(" waitUntilClosed() is for boxes that their application closes.");
        reportFailure(QStringLiteral("The %1 has closed before %2.%3")
                          .arg(nameOf(showing.expectation->identifier),
                               step->name,
                               showing.expectation->hasAnswer() ? QString() : advice),
                      showing.expectation->where);
    }

    /// Goes on with the box that a user could answer now, if there is one.
    void answer()
    {
        m_isScheduled = false;
        if (drivers().constLast() != this)
            return;
        forgetClosed();
        const auto all = m_showings;
        for (auto each = all.rbegin(); each != all.rend(); ++each) {
            Showing& showing = **each;
            if (showing.isPendingBox() && !showing.isBusy && !isBlocked(showing) && goOn(showing))
                return;
        }
    }

    /// Returns false when nothing can be done with the box as yet; an event that changes that comes back
    /// here.
    bool goOn(Showing& showing)
    {
        look(showing);
        if (!showing.expectation) {
            giveUp(showing);
            return true;
        }
        const auto step = showing.step();
        return step && step->perform && perform(showing, *step);
    }

    /// Looks at a box for the first time: what it is, and whether it is what was expected.
    void look(Showing& showing)
    {
        if (std::exchange(showing.isSeen, true))
            return;
        DialogRecord& record = records[showing.record];
        // What the show itself has added, such as an OK button. A box that is being destroyed is no box any
        // more.
        if (const QMessageBox* box = showing.box())
            describe(*box, record);
        showing.expectation = findExpectation(record);
        m_expectationsOfRecords[showing.record] = showing.expectation;
        record.wasExpected = showing.expectation;
        if (!showing.expectation) {
            reportUnexpected(showing);
            return;
        }
        ++showing.expectation->come;
        if (showing.box()) {
            check(showing);
        } else if (!showing.expectation->checks.empty()) {
            reportFailure(QStringLiteral("The %1 has been destroyed before it was checked.")
                              .arg(nameOf(showing.expectation->identifier)),
                          showing.expectation->where);
        }
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
        takeScreenshot(showing);
        reportFailure(QStringLiteral("The %1 differs from what was expected:%2%3")
                          .arg(nameOf(showing.expectation->identifier),
                               indented(differences.join(QLatin1Char('\n'))),
                               screenshotLine(records.at(showing.record).screenshot)),
                      showing.expectation->where);
    }

    /// Returns false when it cannot be done as yet, and notes why.
    bool perform(Showing& showing, const Step& step)
    {
        QMessageBox& box = *showing.box();
        showing.obstacle = obstacleOf(box);
        if (!showing.obstacle.isEmpty())
            return false;
        if (const QWidget* popup = popupOver(box)) {
            showing.obstacle =
                QStringLiteral(", behind a ") + QString::fromLatin1(popup->metaObject()->className());
            return false;
        }
        // Asked of the window: QWidget::isActiveWindow() stays false on the offscreen platform for a box that
        // is shown again.
        if (step.needsActiveWindow && QGuiApplication::focusWindow() != box.windowHandle()) {
            showing.obstacle = QStringLiteral(", its window not active");
            if (!m_activation.isActive()) {
                m_activation.start(activation_patience);
                box.activateWindow();
            }
            return true; // other boxes must not ask for it meanwhile
        }
        const Target target = step.findTarget ? step.findTarget(box) : Target();
        if (step.findTarget && !target.widget) {
            reportProblem(showing, target.problem);
            giveUp(showing);
            return true;
        }
        showing.obstacle = target.widget ? obstacleTo(target, box) : QString();
        if (!showing.obstacle.isEmpty())
            return false;

        // The step's own event loops may come by here, and end the box, or the driver with the expectation.
        const QPointer<DialogDriverPrivate> self(this);
        const QString identifier = showing.expectation->identifier;
        const SourceLocation place = showing.expectation->where;
        showing.isBusy = true;
        showing.isLeftToCode = step.mayEndBox;
        ++showing.nextStep;
        showing.lastStep = step.name;
        m_activation.stop();
        noteProgress();
        schedule(); // other boxes may be answered in the step's event loops
        const QString problem = step.perform(box, target);
        const QString message = QStringLiteral("The %1 %2.").arg(nameOf(identifier), problem);
        if (!self) {
            if (!problem.isEmpty())
                reportFailure(message, place);
        } else if (!problem.isEmpty()) {
            reportProblem(showing, problem);
            giveUp(showing);
        } else {
            showing.isBusy = false;
            noteProgress();
            schedule();
        }
        return true;
    }

    /// Tells why a box cannot be answered.
    void reportProblem(Showing& showing, const QString& problem)
    {
        takeScreenshot(showing);
        reportFailure(QStringLiteral("The %1 %2.%3")
                          .arg(nameOf(showing.expectation->identifier),
                               problem,
                               screenshotLine(records.at(showing.record).screenshot)),
                      showing.expectation->where);
    }

    /// Dismisses a box, or another dialog. What has come again meanwhile is another show.
    void giveUp(Showing& showing)
    {
        if (!showing.isOpen)
            return;
        const QPointer<DialogDriverPrivate> self(this); // the box's own code may end the driver
        showing.isGivenUp = true;
        dismiss(showing.dialog);
        if (!self)
            return;
        noteProgress();
        schedule();
    }

    void reportUnexpected(Showing& showing)
    {
        takeScreenshot(showing);
        const DialogRecord& record = records.at(showing.record);
        const ExpectationData* const forbidding = findForbidding(record);
        QStringList expected;
        for (const auto& each : expectations) {
            if (each->d->isOwed())
                expected.append(nameOf(*each->d) + lineOf(*each->d));
        }
        // Code that asks again and again brings the same one each time.
        const QString what = indented(record.description());
        const bool isRepeated = std::exchange(m_lastUnexpected, what) == what;
        reportFailure(isRepeated ? QStringLiteral("The same unexpected dialog has come again.")
                                 : QStringLiteral("An unexpected dialog has come:%1\nStill expected: %2.")
                                       .arg(what,
                                            expected.isEmpty() ? QStringLiteral("none")
                                                               : expected.join(QStringLiteral(", "))),
                      forbidding ? forbidding->where : where);
        if (++m_unexpectedBoxes == most_unexpected_boxes) { // GCOVR_EXCL_BR_LINE ends what counts, too
            qFatal("%d unexpected dialogs: the code seems to ask until it gets another answer.",
                   most_unexpected_boxes);
        }
    }

    /// Ends the dialog that keeps everything waiting, be it another driver's.
    void endWhatHangs()
    {
        m_idleTicks = 0;
        DialogDriverPrivate* owner = this;
        ShowingPointer hanging;
        for (DialogDriverPrivate* each : qAsConst(drivers())) {
            if (const auto showing = each->find(QApplication::activeModalWidget())) {
                owner = each;
                hanging = showing;
            }
        }
        if (!hanging || !hanging->isPending()) {
            owner = this;
            hanging = findLast(&Showing::isPending);
        }
        if (hanging)
            owner->end(*hanging, timeout);
        else
            ++m_timeOuts; // wait() waits for what does not come
    }

    void end(Showing& hanging, int idleTime)
    {
        if (++m_timeOuts >= most_timeouts) { // GCOVR_EXCL_BR_LINE ends what counts, too
            qFatal("%d time-outs: the code seems to ask until it gets another answer.", m_timeOuts);
        }
        const QString problem = QStringLiteral("Nothing has happened for %1 ms while ").arg(idleTime);
        if (hanging.isMessageBox) {
            look(hanging);
            if (hanging.expectation)
                reportHanging(hanging, problem);
        } else {
            QDialog& dialog = *hanging.dialog;
            const QString screenshot = saveScreenshot(
                dialog, screenshotDirectory, QString::fromLatin1(dialog.metaObject()->className()));
            reportFailure(
                problem
                    + QStringLiteral("a %1 titled %2 was open.%3")
                          .arg(nameOf(dialog), quoted(dialog.windowTitle()), screenshotLine(screenshot)),
                where);
        }
        // The code behind a menu may end the dialog, or the driver.
        const QPointer<DialogDriverPrivate> self(this);
        hanging.isGivenUp = true;
        closePopups();
        if (self)
            giveUp(hanging);
    }

    void reportHanging(const Showing& showing, const QString& problem)
    {
        const QString state = stateOf(showing);
        takeScreenshot(showing);
        DialogRecord now = records.at(showing.record);
        describe(*showing.box(), now);
        reportFailure(problem
                          + QStringLiteral("the %1 was open%2.%3")
                                .arg(nameOf(now.identifier), state, indented(now.description())),
                      showing.expectation->where);
    }

    /// Whether a modal dialog keeps a user from the box. Qt drops what mouse and keyboard do to it then.
    bool isBlocked(const Showing& showing) const
    {
        return m_blocked.contains(showing.dialog->windowHandle());
    }

    /// What has been done with an expected box, or why it has not.
    QString stateOf(const Showing& showing) const
    {
        if (showing.isBusy)
            return QStringLiteral(" during ") + showing.lastStep;
        const auto step = showing.step();
        if (!step)
            return QStringLiteral(" after ") + showing.lastStep;
        if (!step->perform)
            return QStringLiteral(", waiting for ") + step->name;
        return isBlocked(showing) ? blockerOf(*showing.dialog) : showing.obstacle;
    }

    void takeScreenshot(const Showing& showing)
    {
        DialogRecord& record = records[showing.record];
        QMessageBox* const box = showing.box();
        if (box && record.screenshot.isEmpty())
            record.screenshot =
                saveScreenshot(*box,
                               screenshotDirectory,
                               record.identifier.isEmpty() ? QStringLiteral("dialog") : record.identifier);
    }

    std::vector<ShowingPointer> m_showings;                 // in the order in which they came
    QVector<QPointer<QWindow>> m_blocked;                   // by modal dialogs; may hold null
    std::vector<std::shared_ptr<DialogExpectation>> m_kept; // verified, and still referred to
    QTimer m_ticker;
    QTimer m_activation; // active while a window that was asked to become active may do so
    int m_idleTicks = 0; // since something has happened
    int m_waits = 0;     // calls of wait(), one inside the other
    QVector<const ExpectationData*> m_expectationsOfRecords; // null: unexpected
    int m_timeOuts = 0;
    int m_unexpectedBoxes = 0;
    QString m_lastUnexpected; // described
    bool m_isScheduled = false;
};

DialogDriver::DialogDriver(const SourceLocation& where)
{
    const auto* const application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!application)                                   // GCOVR_EXCL_BR_LINE ends what counts, too
        qFatal("A DialogDriver needs a QApplication."); // GCOVR_EXCL_LINE
    d = std::make_unique<DialogDriverPrivate>(where);
}

DialogDriver::~DialogDriver()
{
    d->finish();
    d->verify();
}

DialogExpectation& DialogDriver::expect(const QString& identifier, const SourceLocation& where)
{
    d->expectations.push_back(std::shared_ptr<DialogExpectation>(new DialogExpectation(identifier, where)));
    return *d->expectations.back();
}

bool DialogDriver::wait()
{
    return d->wait();
}

bool DialogDriver::verify()
{
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

void DialogDriver::setTimeout(int msecs)
{
    if (msecs > 0)
        d->setTimeout(msecs);
    else
        reportFailure(QStringLiteral("A time-out of %1 ms would end nothing.").arg(msecs), d->where);
}

void DialogDriver::setScreenshotDirectory(const QString& directory)
{
    d->screenshotDirectory = directory;
}

} // namespace Quillet::Testing

#include "DialogDriver.moc"
