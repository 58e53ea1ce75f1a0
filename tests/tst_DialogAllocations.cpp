#include "Allocations.h"
#include "TestCase.h"

#include <Quillet/MessageDialog.h>

#include <QtWidgets/QPushButton>

#include <array>
#include <memory>

using Quillet::DialogCallback;
using Quillet::MessageDialog;

namespace {

const QString title = QStringLiteral("title");
const QString text = QStringLiteral("text");

std::unique_ptr<MessageDialog> warning(QWidget* parent)
{
    auto dialog = std::make_unique<MessageDialog>(title, text, QMessageBox::Warning, parent);
    dialog->setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
    return dialog;
}

// What of the look of a shown box is missing; empty if nothing is.
QString missingLook(const MessageDialog& dialog)
{
    QStringList missing;
    if (dialog.styleSheet().isEmpty())
        missing.append(QStringLiteral("sheet of the box"));
    if (dialog.iconPixmap().isNull())
        missing.append(QStringLiteral("icon"));
    if (dialog.getPrimaryButton()->styleSheet().isEmpty())
        missing.append(QStringLiteral("sheet of the primary button"));
    if (dialog.getPrimaryButton()->minimumWidth() == 0)
        missing.append(QStringLiteral("width"));
    return missing.join(QStringLiteral(", "));
}

// Copying it allocates.
DialogCallback largeCallback()
{
    const std::array<void*, 16> ballast = {};
    return [ballast](MessageDialog&) { return ballast[0] == nullptr; };
}

} // namespace

class TestDialogAllocations : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { cacheNoPixmaps(); }

    void aBoxWhoseShowFailedIsStyledByTheNext_data()
    {
        QTest::addColumn<QString>("operation");
        for (const char* operation : {"show", "updateStyle", "exec"})
            QTest::addRow("%s", operation) << QString::fromLatin1(operation);
    }

    void aBoxWhoseShowFailedIsStyledByTheNext()
    {
        QFETCH(QString, operation);
        QWidget parent;
        const auto attempt = [&](std::size_t n) {
            auto dialog = warning(&parent);
            QTimer::singleShot(0, dialog.get(), &QDialog::accept); // ends exec()
            const Outcome outcome = withFailingAllocation(n, Failing::Library, [&] {
                if (operation == QLatin1String("show"))
                    dialog->show();
                else if (operation == QLatin1String("updateStyle"))
                    dialog->updateStyle();
                else
                    dialog->exec();
            });
            dialog->hide();
            dialog->show();
            const QString missing = missingLook(*dialog);
            if (!missing.isEmpty())
                qCritical("failing allocation %zu: no %s", n, qPrintable(missing));
            dialog.reset();
            QCoreApplication::processEvents(); // what Qt has put off
            return outcome;
        };
        const FailureCount count = failEach(attempt);
        QCOMPARE(count.leaks, 0);
        QCOMPARE(count.coped, 0);
        QVERIFY2(count.threw >= 4, "two sheets are read, each by way of a file and a stream");
        QVERIFY(parent.children().isEmpty());
    }

    void aRestyleThatFailedIsMadeUpForByTheNext()
    {
        QWidget parent;
        const auto attempt = [&](std::size_t n) {
            const auto dialog = warning(&parent);
            dialog->show();
            QPushButton* const other = dialog->addButton(QMessageBox::Help);
            dialog->setDefaultButton(other);
            const Outcome outcome =
                withFailingAllocation(n, Failing::Library, [&] { dialog->updateStyle(); });
            dialog->updateStyle();
            if (other->styleSheet().isEmpty() || !dialog->button(QMessageBox::Ok)->styleSheet().isEmpty())
                qCritical("failing allocation %zu: not the one primary button", n);
            return outcome;
        };
        const FailureCount count = failEach(attempt);
        QCOMPARE(count.leaks, 0);
        QVERIFY(count.threw >= 1);
    }

    void failingCallbackCopiesLeaveTheDialogUsable()
    {
        const DialogCallback callback = largeCallback();
        const auto attempt = [&](std::size_t n) {
            MessageDialog dialog;
            const Outcome outcome =
                withFailingAllocation(n, Failing::Library, [&] { dialog.setCallbacks(callback, callback); });
            dialog.setCallbacks({}, {});
            QTimer::singleShot(0, &dialog, &QDialog::accept);
            if (dialog.exec() != QDialog::Accepted)
                qCritical("failing allocation %zu: the dialog does not run", n);
            return outcome;
        };
        const FailureCount count = failEach(attempt);
        QCOMPARE(count.leaks, 0);
        QCOMPARE(count.threw, 2);
    }
};

QUILLET_TEST_MAIN(TestDialogAllocations)
#include "tst_DialogAllocations.moc"
