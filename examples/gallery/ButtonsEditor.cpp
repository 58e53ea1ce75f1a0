#include "ButtonsEditor.h"

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTableWidget>

namespace {

constexpr int text_column = 0;
constexpr int role_column = 1;
constexpr int standard_button_columns = 5;
constexpr int key_role = Qt::UserRole;

} // namespace

void ButtonsEditor::addRowsTo(QFormLayout& form)
{
    m_defaultButton = new QComboBox;
    m_defaultButton->setObjectName(QStringLiteral("default button"));
    form.addRow(QStringLiteral("Standard buttons"), createStandardButtons());
    form.addRow(QStringLiteral("Custom buttons"), createCustomButtons());
    form.addRow(QStringLiteral("Default button"), m_defaultButton);

    connect(
        m_defaultButton, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &ButtonsEditor::changed);
    buttonsChanged();
}

void ButtonsEditor::setStandardButtons(QMessageBox::StandardButtons buttons)
{
    for (int i = 0; i < m_standardButtons.size(); ++i)
        m_standardButtons[i]->setChecked(buttons.testFlag(allStandardButtons()[i].value));
}

void ButtonsEditor::addCustomButton(const QString& text, QMessageBox::ButtonRole role)
{
    auto* roles = new QComboBox;
    for (const auto& each : allRoles())
        roles->addItem(each.name, each.value);
    roles->setCurrentIndex(roles->findData(role));
    connect(roles, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &ButtonsEditor::changed);

    const int row = m_customButtons->rowCount();
    m_customButtons->insertRow(row);
    m_customButtons->setCellWidget(row, role_column, roles);
    auto* item = new QTableWidgetItem(text);
    item->setData(key_role, --m_lastCustomKey);
    m_customButtons->setItem(row, text_column, item);
}

void ButtonsEditor::addButtonsTo(QMessageBox& box) const
{
    QVector<QPushButton*> added;
    for (int i = 0; i < m_standardButtons.size(); ++i) {
        if (m_standardButtons[i]->isChecked())
            added.append(box.addButton(allStandardButtons()[i].value));
    }
    const QVector<CustomButton> custom = customButtons();
    for (const CustomButton& button : custom)
        added.append(box.addButton(button.text, button.role));

    const int chosen = m_defaultButton->currentIndex() - 1;
    if (chosen >= 0)
        box.setDefaultButton(added.value(chosen));
}

QWidget* ButtonsEditor::createStandardButtons()
{
    auto* panel = new QWidget;
    auto* grid = new QGridLayout(panel);
    grid->setContentsMargins(0, 0, 0, 0);
    for (const auto& button : allStandardButtons()) {
        auto* box = new QCheckBox(button.name);
        connect(box, &QCheckBox::toggled, this, &ButtonsEditor::buttonsChanged);
        const int index = m_standardButtons.size();
        grid->addWidget(box, index / standard_button_columns, index % standard_button_columns);
        m_standardButtons.append(box);
    }
    return panel;
}

QWidget* ButtonsEditor::createCustomButtons()
{
    m_customButtons = new QTableWidget(0, 2);
    m_customButtons->setHorizontalHeaderLabels({QStringLiteral("Text"), QStringLiteral("Role")});
    m_customButtons->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_customButtons->verticalHeader()->hide();
    m_customButtons->setMinimumHeight(110);
    m_customButtons->setTabKeyNavigation(false); // Tab leaves the table
    connect(m_customButtons, &QTableWidget::cellChanged, this, &ButtonsEditor::buttonsChanged);

    auto* add = new QPushButton(QStringLiteral("Add"));
    connect(add, &QPushButton::clicked, this, [this] {
        addCustomButton(QStringLiteral("Custom %1").arg(m_customButtons->rowCount() + 1),
                        QMessageBox::AcceptRole);
    });
    auto* remove = new QPushButton(QStringLiteral("Remove"));
    connect(remove, &QPushButton::clicked, this, &ButtonsEditor::removeCustomButton);

    auto* panel = new QWidget;
    auto* layout = new QGridLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_customButtons, 0, 0, 3, 1);
    layout->addWidget(add, 0, 1);
    layout->addWidget(remove, 1, 1);
    layout->setRowStretch(2, 1);
    return panel;
}

void ButtonsEditor::removeCustomButton()
{
    // The current row, or the last one where none is.
    const int current = m_customButtons->currentRow();
    m_customButtons->removeRow(current >= 0 ? current : m_customButtons->rowCount() - 1);
    buttonsChanged();
}

QVector<ButtonsEditor::CustomButton> ButtonsEditor::customButtons() const
{
    QVector<CustomButton> result;
    for (int row = 0; row < m_customButtons->rowCount(); ++row) {
        const QTableWidgetItem* const item = m_customButtons->item(row, text_column);
        const auto* roles = qobject_cast<QComboBox*>(m_customButtons->cellWidget(row, role_column));
        if (!item->text().isEmpty())
            result.append({item->text(),
                           static_cast<QMessageBox::ButtonRole>(roles->currentData().toInt()),
                           item->data(key_role).toInt()});
    }
    return result;
}

void ButtonsEditor::buttonsChanged()
{
    {
        const QSignalBlocker block(m_defaultButton);
        const QVariant current = m_defaultButton->currentData();
        listButtons();
        m_defaultButton->setCurrentIndex(qMax(0, m_defaultButton->findData(current)));
    }
    Q_EMIT changed();
}

void ButtonsEditor::listButtons()
{
    m_defaultButton->clear();
    m_defaultButton->addItem(QStringLiteral("none: the button of highest priority is primary"));
    for (int i = 0; i < m_standardButtons.size(); ++i) {
        const auto& button = allStandardButtons()[i];
        if (m_standardButtons[i]->isChecked())
            m_defaultButton->addItem(button.name, static_cast<int>(button.value));
    }
    const QVector<CustomButton> custom = customButtons();
    for (const CustomButton& button : custom)
        m_defaultButton->addItem(button.text, button.key);
}
