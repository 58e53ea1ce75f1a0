#pragma once

#include <QuilletTesting/DialogExpectation.h>
#include <QuilletTesting/DialogRecord.h>
#include <QuilletTesting/Failure.h>

#include <QtCore/QVector>

#include <memory>

namespace Quillet::Testing {

class DialogDriverPrivate;

/// Answers the message boxes that a test makes appear, in the user's place.
///
/// \snippet tst_DialogDriverSnippets.cpp driver
///
/// For as long as it lives, a driver sees every show of a message box in the process: of a MessageDialog, one
/// from a template, a plain QMessageBox, by exec(), open(), show() or a static function. It answers each from
/// inside the event loop that runs while the box is open, so code that waits for the user goes on.
///
/// - **An expected box**, one with the identifier of an expect() that has not been met, is checked and
///   answered as the DialogExpectation says. Boxes may come in any order, and while others are open. Of
///   several expectations with one identifier that one is met whose title and text are those of the box and
///   which says most of these; then rather one that is owed than one for anyTimes(); then the first. Where
///   title or text are those of none, the first that is owed, or else the first, is met all the same, and
///   fails; only a box without identifier is unexpected then. A fitting expectation with times(0) makes the
///   box unexpected in any case.
/// - **An unexpected box** makes the test fail with a message that describes it, and is dismissed: by Escape
///   or by closing its window, which presses its escape button; by QDialog::done() where it has none. The
///   hundredth ends the process: the code seems to ask until it gets another answer.
/// - **An expected box that never comes** makes the test fail, with a message that tells what came instead,
///   when verify() is called or the driver is destroyed.
/// - **Nothing hangs.** When nothing has happened for the time-out while a box is open, or a modal dialog
///   that is no message box, the test fails, menus are closed, and that box or dialog is. What happens is
///   that a box comes or closes, or a step of its answer; while no box is open, also that another modal
///   dialog comes or closes. Time in which the event loop stands still does not count. The time-out ends
///   nothing else, and nothing that goes well waits for it. The twentieth ends the process. What a driver
///   cannot end is code that blocks without an event loop, and an event loop that belongs to no dialog.
///
/// Boxes that are opened without blocking are answered as soon as events are processed: call wait(). A modal
/// box that was open before the driver was made is answered a moment later; a modeless one is not.
///
/// A driver needs a QApplication and is used from the GUI thread only. Of several that live at once the one
/// made last answers; the others see no show meanwhile. While a driver lives, message boxes are never the
/// platform's native ones (Qt::AA_DontUseNativeDialogs), which nothing in the process could answer.
class DialogDriver
{
public:
    /// Starts to answer. Failures that belong to no expectation are told at \a where.
    explicit DialogDriver(const SourceLocation& where = SourceLocation::current());

    /// Calls verify() and stops answering. A box that is still open fails the test and is dismissed.
    ~DialogDriver();

    Q_DISABLE_COPY(DialogDriver)

    /// Expects a box with this identifier: MessageDialog::getId() or, where that is empty and for a plain
    /// QMessageBox, the object name. An empty identifier stands for boxes that have neither.
    ///
    /// \return the expectation, to be told what to check and how to answer; it lives as long as the driver.
    DialogExpectation& expect(const QString& identifier,
                              const SourceLocation& where = SourceLocation::current());

    /// Runs the event loop until every expected box has come and no box is open; at least for what is due
    /// when it is called.
    ///
    /// \return whether that is so; false when nothing has happened for the time-out, which then ends what is
    ///         open. An expected box that has not come is left to verify().
    bool wait();

    /// Makes the test fail for each expected box that has not come as often as expected. The expectations are
    /// forgotten, so that a test may go on in another phase; the records stay.
    ///
    /// \return whether all have come.
    bool verify();

    /// All boxes shown since the driver was made, in the order of their shows, those included that are still
    /// open.
    QVector<DialogRecord> records() const;

    /// The identifiers of records().
    QStringList identifiers() const;

    /// How long nothing may happen while a dialog is open, in milliseconds: 5000, or the positive number in
    /// the environment variable `QUILLET_TESTING_TIMEOUT`, until setTimeout() is called.
    int timeout() const;

    /// Sets the time-out to \a msecs; it begins anew. It must be more than 0; anything else fails the test
    /// and changes nothing.
    void setTimeout(int msecs);

    /// Has a picture of each dialog that a failure is about saved as a PNG file in \a directory, which is
    /// made if need be: unexpected ones, those that differ from what was expected or cannot be answered, and
    /// those that ran into the time-out. An empty one saves none. The failure names the file, unless it
    /// cannot be written. Unless this is called the directory is that of the environment variable
    /// `QUILLET_TESTING_SCREENSHOTS`.
    void setScreenshotDirectory(const QString& directory);

private:
    std::unique_ptr<DialogDriverPrivate> d;
};

} // namespace Quillet::Testing
