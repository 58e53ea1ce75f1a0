#pragma once

#include "MessageBoxNames.h"

#include <QtCore/QObject>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QMessageBox;
class QPushButton;
class QTableWidget;
class QWidget;

/// Chooses a message box's buttons: standard ones, custom ones with a role each, and the default button.
class ButtonsEditor : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Adds what chooses the buttons to \a form, whose widget owns it. Call it once, and first.
    void addRowsTo(QFormLayout& form);

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
        int key;
    };

    QWidget* createStandardButtons();
    QWidget* createCustomButtons();
    void removeCustomButton();
    QVector<CustomButton> customButtons() const;
    void buttonsChanged();
    void listButtons();

    QVector<QCheckBox*> m_standardButtons; // in the order of allStandardButtons()
    QTableWidget* m_customButtons = nullptr;
    QComboBox* m_defaultButton = nullptr; // "none", then the chosen buttons in the order of adding

    // What tells a button from the others in the list of default buttons, whatever its text: the value of a
    // standard button, and a number below 0 for a custom one.
    int m_lastCustomKey = 0;
};
