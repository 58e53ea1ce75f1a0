// Scripts that change a box's buttons, default button, icon and style sheets between and during shows. After
// every pass of the look the box must look as the header says: nothing may be missing, and nothing else may
// have changed.

#include "Script.h"

#include <Quillet/MessageDialog.h>

#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include <map>
#include <memory>
#include <vector>

using Quillet::MessageDialog;

namespace {

const char* const sheet_of_the_script = "color: red";

QString textOf(const char* name)
{
    QFile file(QStringLiteral(":/QSS/") + QString::fromLatin1(name));
    check(file.open(QIODevice::ReadOnly | QIODevice::Text), "no such sheet");
    return QString::fromUtf8(file.readAll());
}

QString boxSheet()
{
    static const QString content = textOf("MessageBox.qss");
    return content;
}

QString accentSheet()
{
    static const QString content = textOf("PrimaryButton.qss");
    return content;
}

// Null for what has none.
QImage picture(QMessageBox::Icon icon)
{
    static const std::map<QMessageBox::Icon, QString> names = {
        {QMessageBox::Critical, QStringLiteral("Critical")},
        {QMessageBox::Information, QStringLiteral("Information")},
        {QMessageBox::Question, QStringLiteral("Question")},
        {QMessageBox::Warning, QStringLiteral("Warning")},
    };
    const auto name = names.find(icon);
    return name == names.end() ? QImage()
                               : QPixmap(QStringLiteral(":/Icons/%1.svg").arg(name->second)).toImage();
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
            const Look before = look();
            m_dialog.show();
            if (wasHidden)
                checkPass(before);
            break;
        }
        default:
            const Look before = look();
            m_dialog.updateStyle();
            checkPass(before);
        }
    }

    // What a pass goes by, and what it may change.
    struct Look
    {
        QString boxSheet;
        std::map<const QAbstractButton*, QString> sheets;
        QMessageBox::Icon icon;
        qint64 pixmap;
    };

    Look look() const
    {
        Look result = {m_dialog.styleSheet(), {}, m_dialog.icon(), m_dialog.iconPixmap().cacheKey()};
        const QList<QAbstractButton*> buttons = m_dialog.buttons();
        for (const QAbstractButton* button : buttons)
            result.sheets[button] = button->styleSheet();
        return result;
    }

    void checkPass(const Look& before)
    {
        checkLook();
        const Look after = look();
        check(after.boxSheet == (before.boxSheet.isEmpty() ? boxSheet() : before.boxSheet),
              "not the sheet of the box");

        // A button that the show itself has added comes without a sheet.
        std::map<const QAbstractButton*, QString> expected = before.sheets;
        for (const auto& [button, sheet] : after.sheets)
            expected.try_emplace(button);
        QAbstractButton* const primary = m_dialog.getPrimaryButton();
        if (primary != m_accented) {
            if (m_accented && expected.count(m_accented) == 1)
                expected[m_accented].clear();
            const bool gets = primary && expected[primary].isEmpty();
            m_accented = gets ? primary : nullptr;
            if (gets)
                expected[primary] = accentSheet();
        }
        check(after.sheets == expected, "not the sheets of the buttons");

        if (before.icon == m_seenIcon) {
            check(after.icon == before.icon && after.pixmap == before.pixmap, "an icon that changed");
            return;
        }
        m_seenIcon = before.icon;
        const QImage expectedIcon = picture(before.icon);
        check(expectedIcon.isNull() ? after.pixmap == before.pixmap
                                    : m_dialog.iconPixmap().toImage() == expectedIcon,
              "not the picture of the icon");
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
    QPointer<QAbstractButton> m_accented;               // which has the accent sheet from the library
    QMessageBox::Icon m_seenIcon = QMessageBox::NoIcon; // by the last pass
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    makeApplication();
    RestyleScript(data, size).play();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
