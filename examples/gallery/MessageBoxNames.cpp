#include "MessageBoxNames.h"

#include <algorithm>

const QVector<Named<QMessageBox::Icon>>& allIcons()
{
    static const QVector<Named<QMessageBox::Icon>> icons = {
        {QMessageBox::NoIcon, QStringLiteral("NoIcon")},
        {QMessageBox::Information, QStringLiteral("Information")},
        {QMessageBox::Question, QStringLiteral("Question")},
        {QMessageBox::Warning, QStringLiteral("Warning")},
        {QMessageBox::Critical, QStringLiteral("Critical")},
    };
    return icons;
}

const QVector<Named<QMessageBox::StandardButton>>& allStandardButtons()
{
    static const QVector<Named<QMessageBox::StandardButton>> buttons = {
        {QMessageBox::Ok, QStringLiteral("Ok")},
        {QMessageBox::Yes, QStringLiteral("Yes")},
        {QMessageBox::YesToAll, QStringLiteral("YesToAll")},
        {QMessageBox::Save, QStringLiteral("Save")},
        {QMessageBox::SaveAll, QStringLiteral("SaveAll")},
        {QMessageBox::Open, QStringLiteral("Open")},
        {QMessageBox::Apply, QStringLiteral("Apply")},
        {QMessageBox::Retry, QStringLiteral("Retry")},
        {QMessageBox::Ignore, QStringLiteral("Ignore")},
        {QMessageBox::Reset, QStringLiteral("Reset")},
        {QMessageBox::RestoreDefaults, QStringLiteral("RestoreDefaults")},
        {QMessageBox::No, QStringLiteral("No")},
        {QMessageBox::NoToAll, QStringLiteral("NoToAll")},
        {QMessageBox::Discard, QStringLiteral("Discard")},
        {QMessageBox::Abort, QStringLiteral("Abort")},
        {QMessageBox::Close, QStringLiteral("Close")},
        {QMessageBox::Cancel, QStringLiteral("Cancel")},
        {QMessageBox::Help, QStringLiteral("Help")},
    };
    return buttons;
}

const QVector<Named<QMessageBox::ButtonRole>>& allRoles()
{
    static const QVector<Named<QMessageBox::ButtonRole>> roles = {
        {QMessageBox::AcceptRole, QStringLiteral("AcceptRole")},
        {QMessageBox::RejectRole, QStringLiteral("RejectRole")},
        {QMessageBox::DestructiveRole, QStringLiteral("DestructiveRole")},
        {QMessageBox::ActionRole, QStringLiteral("ActionRole")},
        {QMessageBox::HelpRole, QStringLiteral("HelpRole")},
        {QMessageBox::YesRole, QStringLiteral("YesRole")},
        {QMessageBox::NoRole, QStringLiteral("NoRole")},
        {QMessageBox::ResetRole, QStringLiteral("ResetRole")},
        {QMessageBox::ApplyRole, QStringLiteral("ApplyRole")},
    };
    return roles;
}

QString roleName(QMessageBox::ButtonRole role)
{
    QVector<Named<QMessageBox::ButtonRole>> roles = allRoles();
    roles.append({QMessageBox::InvalidRole, QStringLiteral("InvalidRole")});
    roles.append({QMessageBox::NRoles, QStringLiteral("NRoles")});
    const auto found =
        std::find_if(roles.cbegin(), roles.cend(), [role](const auto& each) { return each.value == role; });
    return QStringLiteral("%1 (%2)").arg(role).arg(found->name);
}

QString withoutMnemonic(QString label)
{
    return label.remove(QLatin1Char('&'));
}

QString resultName(int result)
{
    for (const auto& button : allStandardButtons()) {
        if (button.value == result)
            return QStringLiteral("%1 (%2)").arg(result).arg(button.name);
    }
    return QString::number(result);
}
