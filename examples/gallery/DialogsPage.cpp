#include "DialogsPage.h"

#include "ButtonsEditor.h"
#include "LogView.h"
#include "MessageBoxNames.h"
#include "Pictures.h"

#include <Quillet/MessageDialog.h>

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

#include <initializer_list>
#include <memory>

using Quillet::DialogCallback;
using Quillet::MessageDialog;

namespace {

void hover(QAbstractButton& button)
{
    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(&button, &enter);
    QMouseEvent move(QEvent::MouseMove, button.rect().center(), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&button, &move);
}

void press(QAbstractButton& button)
{
    hover(button);
    button.setDown(true);
}

/// A dialog with \a text and two buttons, each brought into its state by \a prepare.
QImage dialogWithButtons(const QString& text, void (*prepare)(QAbstractButton&))
{
    MessageDialog dialog(text, QMessageBox::NoIcon);
    dialog.setStandardButtons(QMessageBox::Save | QMessageBox::Cancel);
    picture(dialog); // lays the buttons out, and styles them so that they take notice of the mouse
    const QList<QAbstractButton*> buttons = dialog.buttons();
    for (QAbstractButton* button : buttons)
        prepare(*button);
    return picture(dialog);
}

} // namespace

DialogsPage::DialogsPage(QWidget* parent)
    : GalleryPage(parent),
      m_icon(new QComboBox),
      m_title(new QLineEdit),
      m_text(new QLineEdit(QStringLiteral("Save the changes to Harbour.svg?"))),
      m_informativeText(new QLineEdit(QStringLiteral("Changes that you do not save are lost."))),
      m_parented(new QCheckBox(QStringLiteral("parented to this window"))),
      m_buttons(new ButtonsEditor(this)),
      m_primaryButton(new QLabel),
      m_log(new LogView(QStringLiteral("What ran, and what exec() returned.")))
{
    for (const auto& icon : allIcons())
        m_icon->addItem(icon.name, icon.value);
    m_icon->setCurrentIndex(m_icon->findData(QMessageBox::Question));
    m_title->setPlaceholderText(QStringLiteral("empty: the parent's title, or one that names the icon"));

    auto* layout = new QHBoxLayout(this);
    layout->addWidget(createForm(), 3);
    layout->addWidget(m_log, 2);

    connect(m_buttons, &ButtonsEditor::changed, this, &DialogsPage::showPrimaryButton);
    m_buttons->setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
}

QString DialogsPage::name() const
{
    return QStringLiteral("dialogs");
}

QString DialogsPage::title() const
{
    return QStringLiteral("Message dialogs");
}

QVector<Picture> DialogsPage::pictures()
{
    MessageDialog critical(QStringLiteral("The file could not be written."), QMessageBox::Critical);
    critical.setInformativeText(QStringLiteral("The disk is full."));
    critical.setStandardButtons(QMessageBox::Retry | QMessageBox::Abort);

    MessageDialog information(QStringLiteral("All 128 pictures have been exported."),
                              QMessageBox::Information);
    information.setStandardButtons(QMessageBox::Ok);

    MessageDialog question(QStringLiteral("Save the changes to Harbour.svg?"), QMessageBox::Question);
    question.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);

    MessageDialog warning(QStringLiteral("The layer contains 3 locked shapes."), QMessageBox::Warning);
    warning.addButton(QStringLiteral("Delete anyway"), QMessageBox::DestructiveRole);
    warning.addButton(QMessageBox::Cancel);
    warning.setDefaultButton(QMessageBox::Cancel); // so Enter deletes nothing

    QVector<Picture> result = {
        {QStringLiteral("dialog-critical"), picture(critical)},
        {QStringLiteral("dialog-information"), picture(information)},
        {QStringLiteral("dialog-question"), picture(question)},
        {QStringLiteral("dialog-warning"), picture(warning)},
    };
    QVector<QImage> dialogs;
    for (const Picture& each : result)
        dialogs.append(each.image);
    result.append({QStringLiteral("dialogs"), sheet(dialogs, 2)});

    QVector<QImage> icons;
    for (const MessageDialog* dialog : {&critical, &information, &question, &warning})
        icons.append(dialog->iconPixmap().toImage());
    result.append({QStringLiteral("icons"), sheet(icons, icons.size())});

    const QVector<QImage> states = {
        dialogWithButtons(QStringLiteral("Left alone"), [](QAbstractButton&) {}),
        dialogWithButtons(QStringLiteral("Under the mouse"), hover),
        dialogWithButtons(QStringLiteral("Pressed"), press),
    };
    result.append({QStringLiteral("buttons"), sheet(states, states.size())});
    return result;
}

QWidget* DialogsPage::createForm()
{
    auto* execButton = new QPushButton(QStringLiteral("exec()"));
    connect(execButton, &QPushButton::clicked, this, &DialogsPage::execDialog);
    auto* openButton = new QPushButton(QStringLiteral("open()"));
    openButton->setToolTip(QStringLiteral("Shows the dialog without blocking; no callback runs."));
    connect(openButton, &QPushButton::clicked, this, &DialogsPage::openDialog);
    auto* run = new QHBoxLayout;
    run->addWidget(execButton);
    run->addWidget(openButton);
    run->addStretch();

    auto* panel = new QWidget;
    auto* form = new QFormLayout(panel);
    form->setContentsMargins(0, 0, 0, 0);
    form->addRow(QStringLiteral("Icon"), m_icon);
    form->addRow(QStringLiteral("Title"), m_title);
    form->addRow(QString(), m_parented);
    form->addRow(QStringLiteral("Text"), m_text);
    form->addRow(QStringLiteral("Informative text"), m_informativeText);
    m_buttons->addRowsTo(*form);
    form->addRow(QStringLiteral("Primary button"), m_primaryButton);
    m_preExec = createSwitches(QStringLiteral("Pre-exec callback"), form);
    m_postExec = createSwitches(QStringLiteral("Post-exec callback"), form);
    form->addRow(run);
    return panel;
}

DialogsPage::CallbackSwitches DialogsPage::createSwitches(const QString& name, QFormLayout* form)
{
    CallbackSwitches switches = {
        name,
        new QCheckBox(QStringLiteral("installed")),
        new QCheckBox(QStringLiteral("vetoes")),
    };
    switches.installed->setChecked(true);
    connect(switches.installed, &QCheckBox::toggled, switches.veto, &QCheckBox::setEnabled);

    auto* row = new QHBoxLayout;
    row->addWidget(switches.installed);
    row->addWidget(switches.veto);
    row->addStretch();
    form->addRow(name, row);
    return switches;
}

MessageDialog* DialogsPage::createDialog()
{
    const auto icon = static_cast<QMessageBox::Icon>(m_icon->currentData().toInt());
    QWidget* const dialogParent = m_parented->isChecked() ? window() : nullptr;

    auto* dialog = m_title->text().isEmpty()
                       ? new MessageDialog(m_text->text(), icon, dialogParent)
                       : new MessageDialog(m_title->text(), m_text->text(), icon, dialogParent);
    dialog->setInformativeText(m_informativeText->text());
    m_buttons->addButtonsTo(*dialog);

    const auto callback = [this](const CallbackSwitches& switches) -> DialogCallback {
        if (!switches.installed->isChecked())
            return {};
        // An unparented dialog may outlive the page.
        return [page = QPointer<DialogsPage>(this), switches](MessageDialog&) {
            return !page || page->runCallback(switches);
        };
    };
    dialog->setCallbacks(callback(m_preExec), callback(m_postExec));
    return dialog;
}

void DialogsPage::execDialog()
{
    // A window that is deleted while the dialog is up deletes a parented dialog inside its loop.
    const QPointer<MessageDialog> dialog(createDialog());
    m_log->add(QStringLiteral("exec() of \"%1\"").arg(dialog->windowTitle()));
    const QPointer<DialogsPage> page(this);
    const int result = dialog->exec();
    if (page) {
        const QAbstractButton* const clicked = dialog ? dialog->clickedButton() : nullptr;
        m_log->add(QStringLiteral("clicked: %1").arg(clicked ? clicked->text() : QStringLiteral("nothing")));
        m_log->add(QStringLiteral("exec() returned %1").arg(resultName(result)));
    }
    delete dialog;
}

void DialogsPage::openDialog()
{
    MessageDialog* const dialog = createDialog();
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QMessageBox::buttonClicked, this, [this](QAbstractButton* button) {
        m_log->add(QStringLiteral("clicked: %1").arg(button->text()));
    });
    m_log->add(QStringLiteral("open() of \"%1\"").arg(dialog->windowTitle()));
    dialog->open();
}

void DialogsPage::showPrimaryButton()
{
    const std::unique_ptr<MessageDialog> dialog(createDialog());
    const QAbstractButton* const primary = dialog->getPrimaryButton();
    m_primaryButton->setText(primary ? primary->text() : QStringLiteral("none yet: showing the box adds Ok"));
}

bool DialogsPage::runCallback(const CallbackSwitches& callback)
{
    const bool vetoes = callback.veto->isChecked();
    m_log->add(QStringLiteral("%1: %2").arg(callback.name,
                                            vetoes ? QStringLiteral("veto") : QStringLiteral("go on")));
    return !vetoes;
}
