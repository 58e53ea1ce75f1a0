#include "SlotsEditor.h"

#include "MessageBoxNames.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>

using Quillet::MessageDialogButtonTemplate;
using Quillet::MessageDialogTemplate;

void SlotsEditor::addRowsTo(QFormLayout& form)
{
    for (std::size_t i = 0; i < m_slots.size(); ++i)
        m_slots[i] = createSlot(static_cast<int>(i), form);
}

void SlotsEditor::load(const MessageDialogTemplate& t)
{
    for (std::size_t i = 0; i < m_slots.size(); ++i) {
        const MessageDialogButtonTemplate& button = t.buttons[i];
        m_slots[i].text->setText(button.text);
        m_slots[i].role->setCurrentIndex(m_slots[i].role->findData(button.role));
        m_slots[i].isDefault->setChecked(button.isDefault);
        m_slots[i].isEscape->setChecked(button.isEscape);
    }
}

void SlotsEditor::storeIn(MessageDialogTemplate& t) const
{
    for (std::size_t i = 0; i < m_slots.size(); ++i) {
        MessageDialogButtonTemplate& button = t.buttons[i];
        button.text = m_slots[i].text->text();
        button.role = static_cast<QMessageBox::ButtonRole>(m_slots[i].role->currentData().toInt());
        button.isDefault = m_slots[i].isDefault->isChecked();
        button.isEscape = m_slots[i].isEscape->isChecked();
    }
}

SlotsEditor::Slot SlotsEditor::createSlot(int index, QFormLayout& form)
{
    const Slot slot = {
        new QLineEdit,
        new QComboBox,
        new QCheckBox(QStringLiteral("default")),
        new QCheckBox(QStringLiteral("escape")),
    };
    slot.text->setObjectName(QStringLiteral("slot %1 text").arg(index));
    slot.text->setPlaceholderText(QStringLiteral("no button"));
    slot.role->setObjectName(QStringLiteral("slot %1 role").arg(index));
    for (const auto& role : allRoles())
        slot.role->addItem(role.name, role.value);

    auto* row = new QHBoxLayout;
    row->addWidget(slot.text, 1);
    row->addWidget(slot.role);
    row->addWidget(slot.isDefault);
    row->addWidget(slot.isEscape);
    auto* label = new QLabel(QStringLiteral("Slot &%1").arg(index));
    label->setBuddy(slot.text);
    form.addRow(label, row);

    connect(slot.text, &QLineEdit::textChanged, this, &SlotsEditor::changed);
    connect(slot.role, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &SlotsEditor::changed);
    connect(slot.isDefault, &QCheckBox::toggled, this, &SlotsEditor::changed);
    connect(slot.isEscape, &QCheckBox::toggled, this, &SlotsEditor::changed);
    return slot;
}
