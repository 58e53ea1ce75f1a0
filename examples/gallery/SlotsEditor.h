#pragma once

#include <Quillet/MessageDialogTemplate.h>

#include <QtCore/QObject>

#include <array>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLineEdit;

/// Edits the four button slots of a template, all but their actions.
class SlotsEditor : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Adds a row for each slot to \a form, whose widget owns it. Call it once, and first.
    void addRowsTo(QFormLayout& form);

    void load(const Quillet::MessageDialogTemplate& t);

    /// Replaces the slots of \a t; its actions stay.
    void storeIn(Quillet::MessageDialogTemplate& t) const;

Q_SIGNALS:
    void changed();

private:
    struct Slot
    {
        QLineEdit* text;
        QComboBox* role;
        QCheckBox* isDefault;
        QCheckBox* isEscape;
    };

    Slot createSlot(int index, QFormLayout& form);

    std::array<Slot, 4> m_slots{};
};
