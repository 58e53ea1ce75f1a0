#pragma once

#include "GalleryPage.h"

#include <QtWidgets/QMessageBox>

class ButtonsEditor;
class LogView;
class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;

namespace Quillet {
class MessageDialog;
}

/// Builds a MessageDialog from every choice it offers, runs it, and logs what happened.
class DialogsPage : public GalleryPage
{
    Q_OBJECT

public:
    explicit DialogsPage(QWidget* parent = nullptr);

    QString name() const override;
    QString title() const override;

    /// One dialog of each kind; all of them, their icons, and the states of buttons, each on one sheet.
    QVector<Picture> pictures() override;

private:
    /// The switches of one callback.
    struct CallbackSwitches
    {
        QString name;
        QCheckBox* installed;
        QCheckBox* veto;
    };

    QWidget* createForm();
    CallbackSwitches createSwitches(const QString& name, QFormLayout* form);

    /// A dialog as the page describes it, on the heap, owned by the caller and, if it has one, its parent.
    Quillet::MessageDialog* createDialog();
    void execDialog();
    void openDialog();
    void showPrimaryButton();
    bool runCallback(const CallbackSwitches& callback);

    QComboBox* m_icon;
    QLineEdit* m_title;
    QLineEdit* m_text;
    QLineEdit* m_informativeText;
    QCheckBox* m_parented;
    ButtonsEditor* m_buttons;
    QLabel* m_primaryButton;
    CallbackSwitches m_preExec{};
    CallbackSwitches m_postExec{};
    LogView* m_log;
};
