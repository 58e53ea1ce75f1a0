// Scripts that change a box's buttons, default button, icon and style sheets between and during shows. After
// every pass of the look the box must look as the header says.

#include "Script.h"

#include <Quillet/MessageDialog.h>

#include <QtCore/QFile>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include <memory>
#include <vector>

using Quillet::MessageDialog;

namespace {

const char* const sheet_of_the_script = "color: red";

QString accentSheet()
{
    QFile file(QStringLiteral(":/QSS/PrimaryButton.qss"));
    check(file.open(QIODevice::ReadOnly | QIODevice::Text), "no accent sheet");
    return QString::fromUtf8(file.readAll());
}

class RestyleScript
{
public:
    RestyleScript(const std::uint8_t* data, std::size_t size) : m_script(data, size) {}

    void play()
    {
        while (!m_script.hasEnded())
            step();
    }

private:
    QAbstractButton* anyButton()
    {
        const QList<QAbstractButton*> buttons = m_dialog.buttons();
        return buttons.isEmpty() ? nullptr : buttons[m_script.choose(buttons.size())];
    }

    // The button for the details is QMessageBox's own, which does not survive its loss.
    QAbstractButton* anyOwnButton()
    {
        QAbstractButton* const button = anyButton();
        return button && button->text().endsWith(QLatin1String("Details...")) ? nullptr : button;
    }

    void step()
    {
        switch (m_script.choose(12)) {
        case 0:
            m_dialog.addButton(QStringLiteral("custom"),
                               static_cast<QMessageBox::ButtonRole>(m_script.choose(QMessageBox::NRoles)));
            break;
        case 1:
            m_dialog.addButton(static_cast<QMessageBox::StandardButton>(0x400 << m_script.choose(18)));
            break;
        case 2:
            delete anyOwnButton();
            break;
        case 3:
            removeOne();
            break;
        case 4:
            m_dialog.setDefaultButton(qobject_cast<QPushButton*>(anyButton()));
            break;
        case 5:
            m_dialog.setIcon(static_cast<QMessageBox::Icon>(m_script.choose(6)));
            break;
        case 6:
            m_dialog.setStyleSheet(m_script.flip() ? QString::fromLatin1(sheet_of_the_script) : QString());
            break;
        case 7:
            if (QAbstractButton* const button = anyButton())
                button->setStyleSheet(m_script.flip() ? QString::fromLatin1(sheet_of_the_script) : QString());
            break;
        case 8:
            m_dialog.setDetailedText(m_script.flip() ? QStringLiteral("details") : QString());
            break;
        case 9:
            m_dialog.hide();
            break;
        case 10: {
            const bool wasHidden = !m_dialog.isVisible();
            m_dialog.show();
            if (wasHidden)
                checkLook();
            break;
        }
        default:
            m_dialog.updateStyle();
            checkLook();
        }
    }

    void removeOne()
    {
        QAbstractButton* const button = anyOwnButton();
        if (!button)
            return;
        m_dialog.removeButton(button);
        if (m_script.flip())
            m_dialog.addButton(button, QMessageBox::ActionRole);
        else
            m_removed.emplace_back(button);
    }

    void checkLook() const
    {
        check(!m_dialog.styleSheet().isEmpty(), "a box without a style sheet");
        const QList<QAbstractButton*> buttons = m_dialog.buttons();
        const QAbstractButton* const primary = m_dialog.getPrimaryButton();
        check(buttons.isEmpty() == (primary == nullptr),
              "a primary button without buttons, or none with some");
        if (m_dialog.defaultButton() && buttons.contains(m_dialog.defaultButton()))
            check(primary == m_dialog.defaultButton(), "the default button is not the primary one");
        for (const QAbstractButton* button : buttons) {
            check(button->minimumWidth() == button->sizeHint().width(), "a button of another width");
            check(button == primary || button->styleSheet() != accentSheet() || !m_dialog.isVisible(),
                  "a second accent");
        }
    }

    Script m_script;
    std::vector<std::unique_ptr<QAbstractButton>> m_removed; // the dialog, which knew them, goes first
    MessageDialog m_dialog;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    makeApplication();
    RestyleScript(data, size).play();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
