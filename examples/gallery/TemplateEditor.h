#pragma once

#include <Quillet/MessageDialogTemplate.h>

#include <QtWidgets/QWidget>

class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class SlotsEditor;

/// Edits a template. What it has no field for (callbacks, actions, parent) is kept from the one loaded last.
class TemplateEditor : public QWidget
{
    Q_OBJECT

public:
    explicit TemplateEditor(QWidget* parent = nullptr);

    /// Shows \a t. Does not emit changed().
    void load(const Quillet::MessageDialogTemplate& t);

    Quillet::MessageDialogTemplate edited() const;

Q_SIGNALS:
    void changed();

private:
    Quillet::MessageDialogTemplate m_loaded;
    QLineEdit* m_id;
    QComboBox* m_icon;
    QLineEdit* m_title;
    QPlainTextEdit* m_text;
    SlotsEditor* m_slots;
};
