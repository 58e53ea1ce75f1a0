// A GoogleTest program whose tests fail, each by one failure of the test kit; tst_DialogDriverFailures runs
// it.

#include <QuilletTesting/DialogDriver.h>
#include <QuilletTesting/GoogleTest.h>

#include <gtest/gtest.h>

#include <QtWidgets/QApplication>

using Quillet::Testing::DialogDriver;

TEST(Failing, Unexpected)
{
    const DialogDriver driver;
    QMessageBox::warning(nullptr, QStringLiteral("Disk"), QStringLiteral("The disk is full."));
}

TEST(Failing, NeverCame)
{
    DialogDriver driver;
    driver.expect(QStringLiteral("save-changes"));
}

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    Quillet::Testing::reportFailuresToGoogleTest();
    const bool isEarly = argc == 2 && qstrcmp(argv[1], "early") == 0;
    const bool isLate = argc == 2 && qstrcmp(argv[1], "late") == 0;
    if (isEarly)
        DialogDriver().expect(QStringLiteral("save-changes"));
    const int result = RUN_ALL_TESTS();
    if (isLate)
        DialogDriver().expect(QStringLiteral("save-changes"));
    return result;
}
