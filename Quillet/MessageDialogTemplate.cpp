#include <Quillet/MessageDialogTemplate.h>

#include <Quillet/LogQtTypes.h>
#include <Quillet/MessageDialogTemplatePreprocessors.h>

#include <quorvel/Logger.h>

#include <QtCore/QPointer>
#include <QtWidgets/QPushButton>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <utility>

using Quillet::MessageDialog;
using Quillet::MessageDialogTemplate;
using Quillet::MessageDialogTemplatePreprocessors;

namespace {

constexpr std::int32_t progress_level = 2;
constexpr std::int32_t refusal_level = 3;

// Hands the line that the pieces make up to the host's sink, unless the threshold, as the host gave it at
// the start of the operation, or a missing sink suppresses it. Nothing is built for a suppressed line.
template <typename... Pieces>
void writeLine(std::int32_t threshold, std::int32_t level, const Pieces&... pieces)
{
    if (threshold > level)
        return;
    const auto& sink = quorvel::GetLoggerDelegate();
    if (!sink)
        return;

    std::wostringstream line;
    line << "MessageDialogTemplate: ";
    (line << ... << pieces);
    sink(level, line.str());
}

std::unique_ptr<MessageDialog> makeDialog(const MessageDialogTemplate& t, QWidget* parent)
{
    auto dialog = std::make_unique<MessageDialog>(t.title, t.text, t.icon, parent ? parent : t.parent);
    dialog->setId(t.id);
    dialog->setCallbacks(t.preExecCallback, t.postExecCallback);
    return dialog;
}

// The buttons made from a template's slots, null for a slot without one. Guarded: code that runs while the
// dialog is up may delete a button, and a new one at its address must not pass for it.
using SlotButtons = std::array<QPointer<QPushButton>, 4>;

SlotButtons addButtons(MessageDialog& dialog, const MessageDialogTemplate& t)
{
    SlotButtons buttons;
    for (std::size_t i = 0; i < t.buttons.size(); ++i) {
        const auto& slot = t.buttons[i];
        if (slot.text.isEmpty())
            continue;
        QPushButton* const button = dialog.addButton(slot.text, slot.role);
        if (!button->parent()) { // Qt refused the role and gave the button to nobody
            dialog.removeButton(button);
            delete button;
            continue;
        }
        if (slot.isDefault)
            dialog.setDefaultButton(button);
        if (slot.isEscape)
            dialog.setEscapeButton(button);
        buttons[i] = button;
    }
    return buttons;
}

MessageDialog* createDialogFromTemplate(const MessageDialogTemplate& t, QWidget* parent)
{
    auto dialog = makeDialog(t, parent);
    addButtons(*dialog, t);
    return dialog.release();
}

// Deletes its dialog at the end of the call that made it, unless other code was faster.
struct DialogOwner
{
    Q_DISABLE_COPY(DialogOwner)

    explicit DialogOwner(std::unique_ptr<MessageDialog> owned) : dialog(owned.get())
    {
        static_cast<void>(owned.release()); // only now: the guarded pointer allocates
    }
    ~DialogOwner() { delete dialog; }

    const QPointer<MessageDialog> dialog;
};

QMessageBox::ButtonRole execTemplate(const MessageDialogTemplate& t, QWidget* parent)
{
    const DialogOwner owner(makeDialog(t, parent));
    const QPointer<MessageDialog>& dialog = owner.dialog;
    const SlotButtons buttons = addButtons(*dialog, t);

    if (dialog->exec() == -1)
        return QMessageBox::InvalidRole;

    const QAbstractButton* const clicked = dialog ? dialog->clickedButton() : nullptr;
    if (!clicked)
        return QMessageBox::NRoles;
    const auto found = std::find(buttons.begin(), buttons.end(), clicked);
    if (found == buttons.end())
        return QMessageBox::NRoles;

    const auto& slot = t.buttons[static_cast<std::size_t>(found - buttons.begin())];
    if (slot.action)
        slot.action();
    return slot.role;
}

MessageDialogTemplate preprocessed(const MessageDialogTemplate& t)
{
    MessageDialogTemplate copy = t;
    MessageDialogTemplatePreprocessors::apply(copy);
    return copy;
}

} // namespace

namespace Quillet {

MessageDialog* MessageDialogTemplate::createDialog(QWidget* parentWidget) const
{
    writeLine(quorvel::GetLoggerLevel(), progress_level, "creating dialog from dialog template: ", id);
    if (MessageDialogTemplatePreprocessors::isEmpty())
        return createDialogFromTemplate(*this, parentWidget);
    return createDialogFromTemplate(preprocessed(*this), parentWidget);
}

QMessageBox::ButtonRole MessageDialogTemplate::exec(QWidget* parentWidget) const
{
    writeLine(quorvel::GetLoggerLevel(), progress_level, "executing dialog template: ", id);
    if (MessageDialogTemplatePreprocessors::isEmpty())
        return execTemplate(*this, parentWidget);
    return execTemplate(preprocessed(*this), parentWidget);
}

void MessageDialogTemplate::registerTemplate(const MessageDialogTemplate& t)
{
    const std::int32_t threshold = quorvel::GetLoggerLevel();
    if (t.id.isEmpty()) {
        writeLine(threshold, refusal_level, "trying to register dialog template with empty identifier!");
        return;
    }
    writeLine(threshold, progress_level, "registering dialog template: ", t.id);

    // Whatever can fail to be copied is copied before the table is touched; moving it in cannot fail.
    MessageDialogTemplate copy = t;
    getRegisteredTemplatesImpl()[t.id] = std::move(copy);
}

void MessageDialogTemplate::unregisterTemplate(const QString& id)
{
    const std::int32_t threshold = quorvel::GetLoggerLevel();
    if (id.isEmpty()) {
        writeLine(threshold, refusal_level, "trying to unregister dialog template with empty identifier!");
        return;
    }
    writeLine(threshold, progress_level, "unregistering dialog template: ", id);

    getRegisteredTemplatesImpl().erase(id);
}

const std::map<QString, MessageDialogTemplate>& MessageDialogTemplate::getRegisteredTemplates()
{
    return getRegisteredTemplatesImpl();
}

std::map<QString, MessageDialogTemplate>& MessageDialogTemplate::getRegisteredTemplatesImpl()
{
    static std::map<QString, MessageDialogTemplate> templates;
    return templates;
}

} // namespace Quillet
