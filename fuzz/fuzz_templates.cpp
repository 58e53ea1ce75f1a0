// Scripts of templates that are registered, preprocessed, built and run, with callbacks that veto and
// anything that throws, and that are answered in every way, the destruction of the dialog and of its parent
// among them. Results must be those of the clicked slot, and the right action must have run, once.

#include "Script.h"

#include <Quillet/MessageDialogTemplate.h>
#include <Quillet/MessageDialogTemplatePreprocessors.h>
#include <quorvel/Logger.h>

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include <memory>

using Quillet::MessageDialog;
using Quillet::MessageDialogTemplate;
using Quillet::MessageDialogTemplatePreprocessors;

namespace {

constexpr int no_slot = -1;

struct Failure
{
};

// What happened during one run.
struct Run
{
    int clickedSlot = no_slot;
    int actions = 0;
    int slotOfAction = no_slot;
    bool destroyed = false;
    bool vetoed = false;
};

QString choice(Script& script, const char* prefix, int count)
{
    const int number = script.choose(count);
    return number == 0 ? QString() : QString::fromLatin1(prefix) + QString::number(number);
}

class TemplateScript
{
public:
    TemplateScript(const std::uint8_t* data, std::size_t size) : m_script(data, size) {}

    ~TemplateScript()
    {
        while (!MessageDialogTemplate::getRegisteredTemplates().empty()) {
            const QString id = MessageDialogTemplate::getRegisteredTemplates().begin()->first;
            MessageDialogTemplate::unregisterTemplate(id);
        }
        for (int i = 1; i < 4; ++i)
            MessageDialogTemplatePreprocessors::remove(QStringLiteral("preprocessor%1").arg(i));
        quorvel::GetLoggerDelegate() = nullptr;
    }
    Q_DISABLE_COPY(TemplateScript)

    void play()
    {
        while (!m_script.hasEnded())
            step();
    }

private:
    void step()
    {
        switch (m_script.choose(8)) {
        case 0:
            return registerOne();
        case 1:
            return MessageDialogTemplate::unregisterTemplate(choice(m_script, "id", 4));
        case 2:
            return changePreprocessors();
        case 3:
            return changeLog();
        case 4:
            return build();
        default:
            return execute();
        }
    }

    void changeLog()
    {
        quorvel::SetLoggerLevel(m_script.choose(6));
        if (m_script.flip())
            quorvel::GetLoggerDelegate() = [](std::int32_t, const std::wstring&) {};
        else
            quorvel::GetLoggerDelegate() = nullptr;
    }

    void registerOne()
    {
        const MessageDialogTemplate t = makeTemplate();
        const auto& templates = MessageDialogTemplate::getRegisteredTemplates();
        const std::size_t before = templates.size();
        const bool isNew = templates.count(t.id) == 0;
        MessageDialogTemplate::registerTemplate(t);
        check(templates.size() == before + (isNew && !t.id.isEmpty() ? 1 : 0), "wrong number of templates");
        check(t.id.isEmpty() || templates.at(t.id).title == t.title, "not what was registered");
    }

    void changePreprocessors()
    {
        const QString name = choice(m_script, "preprocessor", 4);
        if (m_script.flip()) {
            MessageDialogTemplatePreprocessors::remove(name);
            return;
        }
        const int effect = m_script.choose(6);
        const auto slot = static_cast<std::size_t>(m_script.choose(4));
        MessageDialogTemplatePreprocessors::add(name, [effect, slot](MessageDialogTemplate& t) {
            switch (effect) {
            case 0:
                t.title += QLatin1Char('!');
                break;
            case 1:
                t.buttons[slot].text.clear();
                break;
            case 2:
                t.buttons[slot].text = slotText(slot);
                break;
            case 3:
                t.buttons[slot].isEscape = !t.buttons[slot].isEscape;
                break;
            case 4:
                t.parent = nullptr;
                break;
            default:
                throw Failure();
            }
        });
    }

    static QString slotText(std::size_t slot) { return QStringLiteral("&slot %1").arg(slot); }

    std::function<void()> makeAction(int slot)
    {
        const bool throws = m_script.choose(8) == 7;
        return [this, slot, throws] {
            ++m_run.actions;
            m_run.slotOfAction = slot;
            if (throws)
                throw Failure();
        };
    }

    Quillet::DialogCallback makeCallback()
    {
        const int answer = m_script.choose(6);
        if (answer < 2)
            return {};
        return [this, answer](MessageDialog&) {
            if (answer == 5)
                throw Failure();
            m_run.vetoed = m_run.vetoed || answer == 4;
            return answer != 4;
        };
    }

    MessageDialogTemplate makeTemplate()
    {
        MessageDialogTemplate t;
        t.id = choice(m_script, "id", 4);
        t.icon = static_cast<QMessageBox::Icon>(m_script.choose(6));
        t.title = choice(m_script, "title", 3);
        t.text = choice(m_script, "<b>text", 3);
        for (std::size_t i = 0; i < t.buttons.size(); ++i) {
            if (m_script.choose(3) > 0)
                t.buttons[i].text = slotText(i);
            t.buttons[i].role = static_cast<QMessageBox::ButtonRole>(m_script.choose(QMessageBox::NRoles));
            t.buttons[i].isDefault = m_script.flip();
            t.buttons[i].isEscape = m_script.flip();
            if (m_script.flip())
                t.buttons[i].action = makeAction(static_cast<int>(i));
        }
        t.preExecCallback = makeCallback();
        t.postExecCallback = makeCallback();
        return t;
    }

    MessageDialogTemplate chosenTemplate()
    {
        const auto& templates = MessageDialogTemplate::getRegisteredTemplates();
        const auto found = templates.find(choice(m_script, "id", 4));
        return found == templates.end() ? makeTemplate() : found->second;
    }

    void build()
    {
        const MessageDialogTemplate t = chosenTemplate();
        auto parent = m_script.flip() ? std::make_unique<QWidget>() : nullptr;
        QPointer<MessageDialog> dialog;
        try {
            dialog = t.createDialog(parent.get());
        } catch (const Failure&) {
            return;
        }
        check(dialog->parentWidget() == parent.get(), "wrong parent");
        if (m_script.flip())
            dialog->show();
        if (m_script.flip())
            parent.reset();
        delete dialog;
    }

    void answer(const QPointer<QMessageBox>& box, std::unique_ptr<QWidget>& parent)
    {
        switch (m_script.choose(9)) {
        case 0:
            box->done(m_script.choose(3));
            break;
        case 1:
            box->hide();
            break;
        case 2:
            parent.reset();
            m_run.destroyed = box.isNull();
            break;
        case 3:
            box->deleteLater(); // the loop will
            m_run.destroyed = true;
            return;
        case 4:
            box->close();
            break;
        case 5: {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            QApplication::sendEvent(box, &press);
            break;
        }
        default:
            clickOne(*box);
        }
        if (!box)
            return;
        if (box->isVisible())
            box->done(0); // the answer was none
        // Closing the window clicks a button without a signal.
        for (int i = 0; box->clickedButton() && i < 4; ++i) {
            if (box->clickedButton()->text() == slotText(static_cast<std::size_t>(i)))
                m_run.clickedSlot = i;
        }
    }

    void clickOne(QMessageBox& box)
    {
        const QList<QAbstractButton*> buttons = box.buttons();
        if (!buttons.isEmpty())
            buttons[m_script.choose(buttons.size())]->click();
    }

    void execute()
    {
        const MessageDialogTemplate t = chosenTemplate();
        auto parent = m_script.flip() ? std::make_unique<QWidget>() : nullptr;
        m_run = {};
        QPointer<QMessageBox> box;
        QTimer answering;
        answering.setSingleShot(true);
        QObject::connect(&answering, &QTimer::timeout, &answering, [&] {
            box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            check(box, "no dialog runs");
            answer(box, parent);
        });
        answering.start(0);

        auto result = QMessageBox::ApplyRole;
        try {
            result = t.exec(parent.get());
        } catch (const Failure&) {
            check(box.isNull(), "a dialog stayed behind an exception");
            return;
        }
        check(box.isNull(), "a dialog stayed behind");
        checkResult(t, result);
    }

    void checkResult(const MessageDialogTemplate& t, QMessageBox::ButtonRole result) const
    {
        if (m_run.vetoed) {
            check(result == QMessageBox::InvalidRole && m_run.actions == 0, "a veto was not heeded");
            return;
        }
        if (m_run.destroyed || m_run.clickedSlot == no_slot) {
            check(result == QMessageBox::NRoles && m_run.actions == 0, "no slot was clicked");
            return;
        }
        const auto& slot = t.buttons[static_cast<std::size_t>(m_run.clickedSlot)];
        check(result == slot.role, "not the clicked slot's role");
        check(m_run.actions == (slot.action ? 1 : 0), "wrong number of actions");
        check(m_run.actions == 0 || m_run.slotOfAction == m_run.clickedSlot, "another slot's action");
    }

    Script m_script;
    Run m_run;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    makeApplication();
    TemplateScript(data, size).play();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
