#pragma once

#include "MessageBoxNames.h"

#include <QtWidgets/QWidget>

class QCheckBox;
class QComboBox;
class QMessageBox;
class QPushButton;
class QTableWidget;

/// Chooses a message box's buttons: standard ones, custom ones with a role each, and the default button.
class ButtonsEditor : public QWidget
{
    Q_OBJECT

public:
    explicit ButtonsEditor(QWidget* parent = nullptr);

    /// Ticks exactly these standard buttons.
    void setStandardButtons(QMessageBox::StandardButtons buttons);

    /// Adds a row to the custom buttons.
    void addCustomButton(const QString& text, QMessageBox::ButtonRole role);

    /// Adds the chosen buttons to \a box and sets its default button. A custom button without a text is
    /// left out.
    void addButtonsTo(QMessageBox& box) const;

Q_SIGNALS:
    void changed();

private:
    struct CustomButton
    {
        QString text;
        QMessageBox::ButtonRole role;
    };

    QWidget* createStandardButtons();
    QWidget* createCustomButtons();
    void removeCustomButton();
    QVector<CustomButton> customButtons() const;
    void buttonsChanged();

    QVector<QCheckBox*> m_standardButtons; // in the order of allStandardButtons()
    QTableWidget* m_customButtons = nullptr;
    QComboBox* m_defaultButton = nullptr; // "none", then the chosen buttons in the order of adding
};
