#include "TemplateEditor.h"

#include "MessageBoxNames.h"
#include "SlotsEditor.h"

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>

using Quillet::MessageDialogTemplate;

TemplateEditor::TemplateEditor(QWidget* parent)
    : QWidget(parent),
      m_id(new QLineEdit),
      m_icon(new QComboBox),
      m_title(new QLineEdit),
      m_text(new QPlainTextEdit),
      m_slots(new SlotsEditor(this))
{
    m_id->setObjectName(QStringLiteral("id"));
    m_id->setPlaceholderText(QStringLiteral("empty: refused"));
    m_icon->setObjectName(QStringLiteral("icon"));
    for (const auto& icon : allIcons())
        m_icon->addItem(icon.name, icon.value);
    m_title->setObjectName(QStringLiteral("title"));
    m_text->setObjectName(QStringLiteral("text"));
    m_text->setTabChangesFocus(true);
    m_text->setFixedHeight(4 * m_text->fontMetrics().lineSpacing());

    auto* form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    form->addRow(QStringLiteral("&Identifier"), m_id);
    form->addRow(QStringLiteral("Ic&on"), m_icon);
    form->addRow(QStringLiteral("&Title"), m_title);
    form->addRow(QStringLiteral("Te&xt"), m_text);
    m_slots->addRowsTo(*form);

    connect(m_id, &QLineEdit::textChanged, this, &TemplateEditor::changed);
    connect(m_icon, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &TemplateEditor::changed);
    connect(m_title, &QLineEdit::textChanged, this, &TemplateEditor::changed);
    connect(m_text, &QPlainTextEdit::textChanged, this, &TemplateEditor::changed);
    connect(m_slots, &SlotsEditor::changed, this, &TemplateEditor::changed);
}

void TemplateEditor::load(const MessageDialogTemplate& t)
{
    const QSignalBlocker block(this);
    m_loaded = t;
    m_id->setText(t.id);
    m_icon->setCurrentIndex(m_icon->findData(t.icon));
    m_title->setText(t.title);
    m_text->setPlainText(t.text);
    m_slots->load(t);
}

MessageDialogTemplate TemplateEditor::edited() const
{
    MessageDialogTemplate t = m_loaded;
    t.id = m_id->text();
    t.icon = static_cast<QMessageBox::Icon>(m_icon->currentData().toInt());
    t.title = m_title->text();
    t.text = m_text->toPlainText();
    m_slots->storeIn(t);
    return t;
}
