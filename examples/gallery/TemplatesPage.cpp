#include "TemplatesPage.h"

#include "CallbackSwitches.h"
#include "LogThreshold.h"
#include "LogView.h"
#include "MessageBoxNames.h"
#include "Pictures.h"
#include "PreprocessorSwitches.h"
#include "SampleTemplates.h"
#include "TemplateEditor.h"
#include "TemplateList.h"

#include <QtCore/QPointer>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include <memory>

using Quillet::MessageDialog;
using Quillet::MessageDialogTemplate;

namespace {

constexpr int list_width = 170;
constexpr int column_spacing = 12;

// Whatever the process keeps of the page's may outlive the page, so it holds the log by a guarded pointer.
quorvel::LoggerDelegate sinkInto(LogView* log)
{
    return [log = QPointer<LogView>(log)](std::int32_t level, const std::wstring& line) {
        if (log)
            log->addDiagnostic(level, QString::fromStdWString(line));
    };
}

std::function<void()> actionLoggedIn(LogView* log, const QString& line)
{
    return [log = QPointer<LogView>(log), line] {
        if (log)
            log->add(line);
    };
}

QImage pictureOf(const QVector<MessageDialogTemplate>& templates)
{
    QVector<QImage> dialogs;
    for (const MessageDialogTemplate& t : templates) {
        const std::unique_ptr<MessageDialog> dialog(t.createDialog());
        dialogs.append(picture(*dialog));
    }
    return sheet(dialogs, 2);
}

} // namespace

TemplatesPage::TemplatesPage(QWidget* parent)
    : GalleryPage(parent),
      m_log(new LogView(QStringLiteral("What the library writes, with its level, and what ran."))),
      m_tap(sinkInto(m_log)),
      m_list(new TemplateList),
      m_exec(new QPushButton(QStringLiteral("&exec()"))),
      m_open(new QPushButton(QStringLiteral("&createDialog()"))),
      m_editor(new TemplateEditor),
      m_register(new QPushButton),
      m_state(new QLabel),
      m_preprocessors(new PreprocessorSwitches),
      m_callbacks(new CallbackSwitches)
{
    m_state->setObjectName(QStringLiteral("state"));

    auto* layout = new QGridLayout(this);
    layout->setHorizontalSpacing(column_spacing);
    layout->addWidget(createList(), 0, 0);
    layout->addWidget(createEditor(), 0, 1);
    layout->addWidget(createSwitches(), 0, 2);
    layout->addWidget(m_log, 1, 0, 1, 3);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(1, 1);

    registerSamples();
    m_list->setCurrentRow(0);
}

TemplatesPage::~TemplatesPage()
{
    for (const QString& id : qAsConst(m_registered))
        MessageDialogTemplate::unregisterTemplate(id);
}

QString TemplatesPage::name() const
{
    return QStringLiteral("templates");
}

QString TemplatesPage::title() const
{
    return QStringLiteral("Dialog templates");
}

void TemplatesPage::prepareForPicture()
{
    m_editor->load({});
    registerEditedTemplate();
    m_list->renew(QStringLiteral("save-changes"));
    loadChosenTemplate();
}

QVector<Picture> TemplatesPage::pictures()
{
    const QVector<MessageDialogTemplate> samples = sampleTemplates();
    QVector<Picture> result = {{QStringLiteral("templates"), pictureOf(samples)}};
    m_preprocessors->switchAll(true);
    result.append({QStringLiteral("templates-preprocessed"), pictureOf({samples[1], samples[3]})});
    m_preprocessors->switchAll(false);
    return result;
}

QWidget* TemplatesPage::createList()
{
    auto* label = new QLabel(QStringLiteral("Registered te&mplates"));
    label->setBuddy(m_list);
    m_exec->setToolTip(QStringLiteral("Runs the chosen template and then the action of the clicked button."));
    m_open->setToolTip(
        QStringLiteral("Builds the dialog and opens it without blocking; no callback and no action runs."));

    connect(m_list, &QListWidget::currentRowChanged, this, &TemplatesPage::loadChosenTemplate);
    // Also the entry that is current already, to undo what was edited.
    connect(m_list, &QListWidget::itemClicked, this, &TemplatesPage::loadChosenTemplate);
    connect(m_list, &QListWidget::itemActivated, this, &TemplatesPage::loadChosenTemplate);
    connect(m_exec, &QPushButton::clicked, this, &TemplatesPage::execChosenTemplate);
    connect(m_open, &QPushButton::clicked, this, &TemplatesPage::openChosenTemplate);

    auto* panel = new QWidget;
    panel->setFixedWidth(list_width);
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    layout->addWidget(m_list);
    layout->addWidget(m_exec);
    layout->addWidget(m_open);
    return panel;
}

QWidget* TemplatesPage::createEditor()
{
    auto* unregisterButton = new QPushButton(QStringLiteral("&Unregister"));
    connect(m_register, &QPushButton::clicked, this, &TemplatesPage::registerEditedTemplate);
    connect(unregisterButton, &QPushButton::clicked, this, &TemplatesPage::unregisterEditedTemplate);
    connect(m_editor, &TemplateEditor::changed, this, [this] {
        m_edited = true;
        showState();
    });

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_register);
    buttons->addWidget(unregisterButton);
    buttons->addWidget(m_state, 1);

    auto* panel = new QWidget;
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_editor);
    layout->addLayout(buttons);
    return panel;
}

QWidget* TemplatesPage::createSwitches()
{
    connect(m_preprocessors, &PreprocessorSwitches::switched, m_log, &LogView::add);
    connect(m_callbacks, &CallbackSwitches::ran, m_log, &LogView::add);

    auto* panel = new QWidget;
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_preprocessors);
    layout->addWidget(m_callbacks);
    layout->addWidget(new LogThreshold);
    layout->addStretch();
    return panel;
}

void TemplatesPage::registerSamples()
{
    const QVector<MessageDialogTemplate> samples = sampleTemplates();
    for (MessageDialogTemplate t : samples) {
        m_callbacks->control(t);
        registerWithActions(t);
    }
    m_list->renew(QString());
}

void TemplatesPage::registerWithActions(MessageDialogTemplate t)
{
    for (std::size_t i = 0; i < t.buttons.size(); ++i) {
        const QString line = QStringLiteral("action of slot %1: %2");
        t.buttons[i].action = actionLoggedIn(m_log, line.arg(i).arg(withoutMnemonic(t.buttons[i].text)));
    }
    MessageDialogTemplate::registerTemplate(t);
    if (!t.id.isEmpty())
        m_registered.insert(t.id);
}

void TemplatesPage::loadChosenTemplate()
{
    if (const MessageDialogTemplate* const chosen = m_list->chosen()) {
        m_editor->load(*chosen);
        m_edited = false;
    }
    showState();
}

void TemplatesPage::registerEditedTemplate()
{
    const MessageDialogTemplate t = m_editor->edited();
    registerWithActions(t);
    if (t.id.isEmpty())
        return;
    m_edited = false;
    m_list->renew(t.id);
    showState();
}

void TemplatesPage::unregisterEditedTemplate()
{
    const QString id = m_editor->edited().id;
    MessageDialogTemplate::unregisterTemplate(id);
    m_registered.remove(id);
    m_list->renew(m_list->chosenId());
    showState();
}

void TemplatesPage::execChosenTemplate()
{
    // A copy: the page may be destroyed while the dialog is up, and takes what it registered with it.
    const MessageDialogTemplate t = *m_list->chosen();
    const QPointer<TemplatesPage> page(this);
    const QMessageBox::ButtonRole result = t.exec(window());
    if (page)
        m_log->add(QStringLiteral("exec() returned ") + roleName(result));
}

void TemplatesPage::openChosenTemplate()
{
    MessageDialog* const dialog = m_list->chosen()->createDialog(window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::finished, this, [this, dialog] {
        const QAbstractButton* const clicked = dialog->clickedButton();
        m_log->add(QStringLiteral("clicked: ")
                   + (clicked ? withoutMnemonic(clicked->text()) : QStringLiteral("nothing")));
    });
    m_log->add(QStringLiteral("open() of \"%1\"").arg(dialog->getId()));
    dialog->open();
}

void TemplatesPage::showState()
{
    const bool taken = MessageDialogTemplate::getRegisteredTemplates().count(m_editor->edited().id) != 0;
    m_register->setText(taken ? QStringLiteral("&Replace") : QStringLiteral("&Register"));
    m_state->setText(m_edited || !taken ? QStringLiteral("not registered yet") : QString());
    m_exec->setEnabled(m_list->chosen());
    m_open->setEnabled(m_list->chosen());
}
