#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtWidgets/QMessageBox>

/// A value of one of QMessageBox's enumerations and its name in the code.
template <typename Value>
struct Named
{
    Value value;
    QString name;
};

/// All icons, NoIcon first.
const QVector<Named<QMessageBox::Icon>>& allIcons();

/// All standard buttons, affirmative ones first.
const QVector<Named<QMessageBox::StandardButton>>& allStandardButtons();

/// All roles that a button can have, AcceptRole first.
const QVector<Named<QMessageBox::ButtonRole>>& allRoles();

/// A role with its number and name; as well InvalidRole and NRoles, which no button can have.
QString roleName(QMessageBox::ButtonRole role);

/// A button's label as it is shown.
QString withoutMnemonic(QString label);

/// What a modal result means: the name of a standard button, or just the number.
QString resultName(int result);
