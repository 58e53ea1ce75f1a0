#include "TestCase.h"

#include <Quillet/MessageDialog.h>

#include <QtWidgets/QPushButton>

#include <algorithm>
#include <array>

using Quillet::MessageDialog;

Q_DECLARE_METATYPE(QMessageBox::StandardButton)
Q_DECLARE_METATYPE(QMessageBox::ButtonRole)

namespace {

using StandardButton = QMessageBox::StandardButton;
using ButtonRole = QMessageBox::ButtonRole;

// From the lowest rank to the highest.
constexpr std::array<StandardButton, 18> ranked_standard_buttons = {
    QMessageBox::Help,
    QMessageBox::RestoreDefaults,
    QMessageBox::NoToAll,
    QMessageBox::Abort,
    QMessageBox::Discard,
    QMessageBox::No,
    QMessageBox::Cancel,
    QMessageBox::Close,
    QMessageBox::Ignore,
    QMessageBox::Reset,
    QMessageBox::SaveAll,
    QMessageBox::YesToAll,
    QMessageBox::Retry,
    QMessageBox::Save,
    QMessageBox::Open,
    QMessageBox::Apply,
    QMessageBox::Yes,
    QMessageBox::Ok,
};
constexpr std::array<ButtonRole, 9> ranked_roles = {
    QMessageBox::HelpRole,
    QMessageBox::DestructiveRole,
    QMessageBox::NoRole,
    QMessageBox::RejectRole,
    QMessageBox::ResetRole,
    QMessageBox::ActionRole,
    QMessageBox::ApplyRole,
    QMessageBox::YesRole,
    QMessageBox::AcceptRole,
};

// What stands on the button, mnemonics left out.
QString label(const QAbstractButton* button)
{
    return button ? button->text().remove(QLatin1Char('&')) : QStringLiteral("none");
}

} // namespace

class TestPrimaryButton : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aBoxWithoutButtonsHasNone() { QVERIFY(!MessageDialog().getPrimaryButton()); }

    void theOnlyButtonIsPrimary_data()
    {
        QTest::addColumn<bool>("isDefault");
        QTest::newRow("default") << true;
        QTest::newRow("not default") << false;
    }

    void theOnlyButtonIsPrimary()
    {
        QFETCH(bool, isDefault);
        MessageDialog dialog;
        QPushButton* const only = dialog.addButton(QMessageBox::Help);
        if (isDefault)
            dialog.setDefaultButton(only);
        QCOMPARE(dialog.getPrimaryButton(), only);
    }

    void standardButtonsRankInThisOrder_data()
    {
        QTest::addColumn<std::size_t>("lower");
        for (std::size_t i = 0; i + 1 < ranked_standard_buttons.size(); ++i)
            QTest::addRow("0x%x below 0x%x", ranked_standard_buttons[i], ranked_standard_buttons[i + 1]) << i;
    }

    void standardButtonsRankInThisOrder()
    {
        QFETCH(std::size_t, lower);
        for (const bool higherFirst : {false, true}) {
            MessageDialog dialog;
            dialog.addButton(ranked_standard_buttons[lower + (higherFirst ? 1 : 0)]);
            dialog.addButton(ranked_standard_buttons[lower + (higherFirst ? 0 : 1)]);
            QCOMPARE(dialog.standardButton(dialog.getPrimaryButton()), ranked_standard_buttons[lower + 1]);
        }
    }

    void customButtonsRankByRoleInThisOrder_data()
    {
        QTest::addColumn<std::size_t>("lower");
        for (std::size_t i = 0; i + 1 < ranked_roles.size(); ++i)
            QTest::addRow("role %d below role %d", ranked_roles[i], ranked_roles[i + 1]) << i;
    }

    void customButtonsRankByRoleInThisOrder()
    {
        QFETCH(std::size_t, lower);
        for (const bool higherFirst : {false, true}) {
            MessageDialog dialog;
            dialog.addButton(QStringLiteral("a"), ranked_roles[lower + (higherFirst ? 1 : 0)]);
            dialog.addButton(QStringLiteral("b"), ranked_roles[lower + (higherFirst ? 0 : 1)]);
            QCOMPARE(dialog.buttonRole(dialog.getPrimaryButton()), ranked_roles[lower + 1]);
        }
    }

    void everyCustomButtonOutranksEveryStandardButton_data()
    {
        QTest::addColumn<ButtonRole>("role");
        for (const ButtonRole role : ranked_roles)
            QTest::addRow("role %d", role) << role;
    }

    void everyCustomButtonOutranksEveryStandardButton()
    {
        QFETCH(ButtonRole, role);
        MessageDialog dialog;
        for (const StandardButton standard : ranked_standard_buttons)
            dialog.addButton(standard);
        QPushButton* const custom = dialog.addButton(QStringLiteral("Custom"), role);
        QCOMPARE(dialog.getPrimaryButton(), custom);
    }

    void theButtonOfHighestRankIsPrimaryWithoutADefault_data()
    {
        QTest::addColumn<QMessageBox::StandardButtons>("buttons");
        QTest::addColumn<StandardButton>("expected");
        using Buttons = QMessageBox::StandardButtons;
        QTest::newRow("Ok of Ok and Cancel")
            << Buttons(QMessageBox::Ok | QMessageBox::Cancel) << QMessageBox::Ok;
        QTest::newRow("Yes of Yes and No") << Buttons(QMessageBox::Yes | QMessageBox::No) << QMessageBox::Yes;
        QTest::newRow("Save of Save, Discard and Cancel")
            << Buttons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel) << QMessageBox::Save;
    }

    void theButtonOfHighestRankIsPrimaryWithoutADefault()
    {
        QFETCH(QMessageBox::StandardButtons, buttons);
        QFETCH(StandardButton, expected);
        MessageDialog dialog;
        dialog.setStandardButtons(buttons);
        QCOMPARE(dialog.standardButton(dialog.getPrimaryButton()), expected);
    }

    void aDefaultButtonIsAlwaysPrimary()
    {
        MessageDialog dialog;
        dialog.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel | QMessageBox::Help);
        dialog.setDefaultButton(QMessageBox::Cancel);
        QCOMPARE(dialog.getPrimaryButton(), dialog.button(QMessageBox::Cancel));

        dialog.addButton(QStringLiteral("Custom"), QMessageBox::AcceptRole);
        dialog.setDefaultButton(QMessageBox::Help);
        QCOMPARE(dialog.getPrimaryButton(), dialog.button(QMessageBox::Help));
    }

    void aDefaultButtonIsPrimaryAlsoBeforeAButtonOfHigherRank()
    {
        MessageDialog dialog;
        dialog.setStandardButtons(QMessageBox::Ok);
        QPushButton* const custom = dialog.addButton(QStringLiteral("Custom"), QMessageBox::HelpRole);
        QVERIFY(dialog.buttons().indexOf(custom) > dialog.buttons().indexOf(dialog.button(QMessageBox::Ok)));
        dialog.setDefaultButton(QMessageBox::Ok);
        QCOMPARE(dialog.getPrimaryButton(), dialog.button(QMessageBox::Ok));
    }

    void aDestructiveCustomButtonOutranksOk()
    {
        MessageDialog dialog;
        dialog.addButton(QMessageBox::Ok);
        QPushButton* const custom = dialog.addButton(QStringLiteral("Delete"), QMessageBox::DestructiveRole);
        QCOMPARE(dialog.getPrimaryButton(), custom);
    }

    void aRejectingCustomButtonOutranksOk()
    {
        MessageDialog dialog;
        dialog.addButton(QMessageBox::Ok);
        QPushButton* const custom = dialog.addButton(QStringLiteral("Back"), QMessageBox::RejectRole);
        QCOMPARE(dialog.getPrimaryButton(), custom);
    }

    void aReadyMadeButtonCountsAsCustom()
    {
        MessageDialog dialog;
        dialog.addButton(QMessageBox::Ok);
        auto* const own = new QPushButton(QStringLiteral("Own"));
        dialog.addButton(own, QMessageBox::HelpRole);
        QCOMPARE(dialog.getPrimaryButton(), own);
    }

    void theDetailsButtonCountsAsCustom()
    {
        MessageDialog dialog;
        dialog.addButton(QMessageBox::Ok);
        dialog.setDetailedText(QStringLiteral("Details"));
        QCOMPARE(dialog.buttonRole(dialog.getPrimaryButton()), QMessageBox::ActionRole);
    }

    void ofEqualButtonsTheFirstInTheListIsPrimary()
    {
        MessageDialog dialog;
        dialog.addButton(QMessageBox::Ok);
        dialog.addButton(QStringLiteral("One"), QMessageBox::AcceptRole);
        dialog.addButton(QStringLiteral("Two"), QMessageBox::AcceptRole);

        const QList<QAbstractButton*> buttons = dialog.buttons();
        const auto first = std::find_if(buttons.begin(), buttons.end(), [&](QAbstractButton* button) {
            return dialog.standardButton(button) == QMessageBox::NoButton;
        });
        QCOMPARE(label(dialog.getPrimaryButton()), label(*first));
    }

    void askingLeavesTheOrderOfTheButtonsAlone()
    {
        MessageDialog dialog;
        dialog.setStandardButtons(QMessageBox::Help | QMessageBox::Cancel | QMessageBox::Ok
                                  | QMessageBox::Apply);
        dialog.addButton(QStringLiteral("Custom"), QMessageBox::NoRole);
        const QList<QAbstractButton*> before = dialog.buttons();
        dialog.getPrimaryButton();
        QCOMPARE(dialog.buttons(), before);
    }
};

QUILLET_TEST_MAIN(TestPrimaryButton)
#include "tst_PrimaryButton.moc"
