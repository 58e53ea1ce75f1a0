#include <Quillet/MessageDialog.h>

#include <QtCore/QFile>
#include <QtCore/QTextStream>
#include <QtGui/QPixmap>
#include <QtWidgets/QPushButton>

#include <algorithm>
#include <map>

namespace {

// The texts and tables are built while the library is loaded, before any dialog exists: a text's
// translation is the one in force at that moment, and no show pays for building a table.
// clazy:excludeall=non-pod-global-static

// The strings own their characters. Literal data would be shared by whoever copies such a string and
// would leave the process with the library.
const QString messagebox_stylesheet_file_name = QString::fromLatin1(":/QSS/MessageBox.qss");
const QString primary_button_stylesheet_file_name = QString::fromLatin1(":/QSS/PrimaryButton.qss");
const QString critical_icon_file_name = QString::fromLatin1(":/Icons/Critical.svg");
const QString information_icon_file_name = QString::fromLatin1(":/Icons/Information.svg");
const QString question_icon_file_name = QString::fromLatin1(":/Icons/Question.svg");
const QString warning_icon_file_name = QString::fromLatin1(":/Icons/Warning.svg");

const QString error_title = QObject::tr("Error");
const QString information_title = QObject::tr("Information");
const QString question_title = QObject::tr("Question");
const QString warning_title = QObject::tr("Warning");
// Spelt so on purpose; keep it.
const QString deafult_title = QObject::tr("Message");

// A button's priority is the sum of its rows in the two tables below; a value without a row counts 0.
// Standard buttons count in thousands, so a role decides only between buttons of the same kind.
const std::map<QMessageBox::StandardButton, int> standard_button_to_priority = {
    {QMessageBox::Help, 1000},
    {QMessageBox::RestoreDefaults, 2000},
    {QMessageBox::NoToAll, 3000},
    {QMessageBox::Abort, 4000},
    {QMessageBox::Discard, 5000},
    {QMessageBox::No, 6000},
    {QMessageBox::Cancel, 7000},
    {QMessageBox::Close, 8000},
    {QMessageBox::Ignore, 9000},
    {QMessageBox::Reset, 10000},
    {QMessageBox::SaveAll, 11000},
    {QMessageBox::YesToAll, 12000},
    {QMessageBox::Retry, 13000},
    {QMessageBox::Save, 14000},
    {QMessageBox::Open, 15000},
    {QMessageBox::Apply, 16000},
    {QMessageBox::Yes, 17000},
    {QMessageBox::Ok, 18000},
    // What a custom button reports: who words a button for the occasion wants it to be the one.
    {QMessageBox::NoButton, 19000},
};

const std::map<QMessageBox::ButtonRole, int> button_role_to_priority = {
    {QMessageBox::HelpRole, 1},
    {QMessageBox::DestructiveRole, 2},
    {QMessageBox::NoRole, 3},
    {QMessageBox::RejectRole, 4},
    {QMessageBox::ResetRole, 5},
    {QMessageBox::ActionRole, 6},
    {QMessageBox::ApplyRole, 7},
    {QMessageBox::YesRole, 8},
    {QMessageBox::AcceptRole, 9},
};

struct IconData
{
    QString file_name;
    QString title;
};

const std::map<QMessageBox::Icon, IconData> icon_to_data = {
    {QMessageBox::Critical, {critical_icon_file_name, error_title}},
    {QMessageBox::Information, {information_icon_file_name, information_title}},
    {QMessageBox::Question, {question_icon_file_name, question_title}},
    {QMessageBox::Warning, {warning_icon_file_name, warning_title}},
};

constexpr Qt::WindowFlags standard_flags = Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint;

QString titleFor(QMessageBox::Icon icon, const QWidget* parent)
{
    if (parent)
        return parent->windowTitle();

    const auto row = icon_to_data.find(icon);
    if (row != icon_to_data.end() && !row->second.title.isEmpty())
        return row->second.title;
    return deafult_title;
}

QString readResource(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) // GCOVR_EXCL_BR_LINE it is in the library
        return {};                                         // GCOVR_EXCL_LINE
    return QTextStream(&file).readAll();
}

template <typename Key>
int priorityOf(Key key, const std::map<Key, int>& table)
{
    const auto row = table.find(key);
    return row == table.end() ? 0 : row->second; // GCOVR_EXCL_BR_LINE no button of a box has none
}

int buttonPriority(const QMessageBox& box, QAbstractButton* button)
{
    return priorityOf(box.standardButton(button), standard_button_to_priority)
           + priorityOf(box.buttonRole(button), button_role_to_priority);
}

bool precedes(const QMessageBox& box, QAbstractButton* a, QAbstractButton* b)
{
    const QAbstractButton* const defaultButton = box.defaultButton();
    if (a == defaultButton)
        return true;
    if (b == defaultButton)
        return false;
    return buttonPriority(box, a) > buttonPriority(box, b);
}

} // namespace

namespace Quillet {

MessageDialog::MessageDialog(QWidget* parent) : QMessageBox(parent) {}

MessageDialog::MessageDialog(const QString& text, QMessageBox::Icon icon, QWidget* parent)
    : MessageDialog(titleFor(icon, parent), text, icon, parent)
{
}

MessageDialog::MessageDialog(const QString& title,
                             const QString& text,
                             QMessageBox::Icon icon,
                             QWidget* parent)
    : QMessageBox(icon, title, text, QMessageBox::NoButton, parent, standard_flags)
{
}

MessageDialog::MessageDialog(const QString& title,
                             const QString& text,
                             QMessageBox::Icon icon,
                             QMessageBox::StandardButton button,
                             QWidget* parent)
    : QMessageBox(icon, title, text, button, parent, standard_flags)
{
    setDefaultButton(button);
}

MessageDialog::MessageDialog(const QString& title,
                             const QString& text,
                             const QString& informativeText,
                             QMessageBox::Icon icon,
                             QMessageBox::StandardButtons buttons,
                             QMessageBox::StandardButton defaultButton,
                             QWidget* parent,
                             Qt::WindowFlags flags)
    : QMessageBox(icon, title, text, buttons, parent, flags)
{
    setDefaultButton(defaultButton);
    setInformativeText(informativeText);
}

void MessageDialog::setId(const QString& id)
{
    m_id = id;
}

QString MessageDialog::getId() const
{
    return m_id;
}

void MessageDialog::setCallbacks(const DialogCallback& preExec, const DialogCallback& postExec)
{
    m_preExecCallback = preExec;
    m_postExecCallback = postExec;
}

int MessageDialog::exec()
{
    if (m_preExecCallback && !m_preExecCallback(*this))
        return -1;

    // Code that runs during the loop may delete this box, and so does Qt::WA_DeleteOnClose at its end.
    const QPointer<MessageDialog> box(this);
    const int result = QDialog::exec();
    if (box.isNull())
        return result;

    if (m_postExecCallback && !m_postExecCallback(*this))
        return -1;
    return result;
}

void MessageDialog::updateStyle()
{
    if (styleSheet().isEmpty())
        setStyleSheet(readResource(messagebox_stylesheet_file_name));

    updatePrimaryButton();

    // The sheets above decide how wide a button wants to be.
    const QList<QAbstractButton*> all = buttons();
    for (QAbstractButton* button : all)
        button->setMinimumWidth(button->sizeHint().width());

    updateIcon();
}

QAbstractButton* MessageDialog::getPrimaryButton() const
{
    const QList<QAbstractButton*> all = buttons();
    const auto first =
        std::min_element(all.begin(), all.end(), [this](auto* a, auto* b) { return precedes(*this, a, b); });
    return first == all.end() ? nullptr : *first;
}

void MessageDialog::showEvent(QShowEvent* event)
{
    QMessageBox::showEvent(event);
    updateStyle();
}

void MessageDialog::updatePrimaryButton()
{
    QAbstractButton* const primary = getPrimaryButton();
    if (primary == m_primaryButton)
        return;

    // A button that has left the box is no longer the box's to touch.
    if (m_primaryButton && buttons().contains(m_primaryButton))
        m_primaryButton->setStyleSheet(QString());
    m_primaryButton = nullptr;

    if (primary && primary->styleSheet().isEmpty()) {
        primary->setStyleSheet(readResource(primary_button_stylesheet_file_name));
        m_primaryButton = primary;
    }
}

void MessageDialog::updateIcon()
{
    if (icon() == m_appliedIcon)
        return;
    m_appliedIcon = icon();

    const auto row = icon_to_data.find(m_appliedIcon);
    if (row != icon_to_data.end())
        setIconPixmap(QPixmap(row->second.file_name));
}

} // namespace Quillet
