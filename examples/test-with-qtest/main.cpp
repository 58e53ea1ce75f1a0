#include <Quillet/MessageDialog.h>
#include <QuilletTesting/DialogDriver.h>

#include <QtTest/QtTest>

using Quillet::Testing::DialogDriver;

namespace {

// What is tested: asks before changes are lost, and tells whether the document may be closed.
bool mayClose(bool isChanged)
{
    if (!isChanged)
        return true;
    Quillet::MessageDialog dialog(QStringLiteral("Save the changes?"), QMessageBox::Question);
    dialog.setId(QStringLiteral("save-changes"));
    dialog.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    return dialog.exec() != QMessageBox::Cancel;
}

} // namespace

class TestClosing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesAreAskedAbout()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"))
            .withText(QStringLiteral("Save the changes?"))
            .withIcon(QMessageBox::Question)
            .withButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel)
            .click(QMessageBox::Discard);
        QVERIFY(mayClose(true));
    }

    void escapeKeepsTheDocumentOpen()
    {
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).pressEscape();
        QVERIFY(!mayClose(true));
    }

    void nothingIsAskedWithoutChanges()
    {
        const DialogDriver driver; // any dialog fails the test
        QVERIFY(mayClose(false));
    }
};

QTEST_MAIN(TestClosing)
#include "main.moc"
