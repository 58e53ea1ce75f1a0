#include <Quillet/MessageDialogTemplate.h>
#include <QuilletTesting/DialogDriver.h>
#include <QuilletTesting/GoogleTest.h>
#include <QuilletTesting/StateGuard.h>

#include <gtest/gtest.h>

#include <QtWidgets/QApplication>

// Lets GoogleTest show texts where a comparison fails.
void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

using Quillet::MessageDialogTemplate;
using Quillet::Testing::DialogDriver;
using Quillet::Testing::StateGuard;

namespace {

// What is tested: a registered template that deletes a layer, if the user says so.
void registerDialogs(int& layers)
{
    MessageDialogTemplate t;
    t.id = QStringLiteral("delete-layer");
    t.text = QStringLiteral("The layer contains 3 locked shapes.");
    t.buttons[0] = {
        QStringLiteral("&Delete"), QMessageBox::DestructiveRole, false, false, [&layers] { --layers; }};
    t.buttons[1] = {QStringLiteral("Cancel"), QMessageBox::RejectRole, true, true, {}};
    MessageDialogTemplate::registerTemplate(t);
}

struct DeleteLayer : testing::Test
{
    DeleteLayer() { registerDialogs(layers); }

    void run() const
    {
        MessageDialogTemplate::getRegisteredTemplates().at(QStringLiteral("delete-layer")).exec();
    }

    StateGuard guard; // unregisters the dialogs after each test
    int layers = 1;
};

TEST_F(DeleteLayer, DeletesWhenTheUserSaysSo)
{
    DialogDriver driver;
    driver.expect(QStringLiteral("delete-layer")).click(QStringLiteral("Delete"));
    run();
    EXPECT_EQ(layers, 0);
}

TEST_F(DeleteLayer, ReturnIsHarmless)
{
    DialogDriver driver;
    driver.expect(QStringLiteral("delete-layer"))
        .withDefaultButton(QStringLiteral("Cancel"))
        .pressKey(Qt::Key_Return);
    run();
    EXPECT_EQ(layers, 1);
    EXPECT_EQ(driver.records().constLast().clickedButton, QStringLiteral("Cancel"));
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    Quillet::Testing::reportFailuresToGoogleTest();
    return RUN_ALL_TESTS();
}
