#include "TemplateTestCase.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtGui/QTextDocument>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include <cstddef>
#include <functional>
#include <map>

namespace {

//! [do-not-ask-again]
bool confirm(const QString& id, const QString& text, QSettings& settings, QWidget* window)
{
    const QString key = QStringLiteral("do-not-ask/") + id;
    if (settings.value(key).toBool())
        return true;

    Quillet::MessageDialog dialog(text, QMessageBox::Question, window);
    dialog.setStandardButtons(QMessageBox::Yes | QMessageBox::Cancel);
    auto* const doNotAsk = new QCheckBox(QObject::tr("Do not ask again"));
    dialog.setCheckBox(doNotAsk); // the dialog owns it from here on
    const bool isConfirmed = dialog.exec() == QMessageBox::Yes;
    if (isConfirmed && doNotAsk->isChecked())
        settings.setValue(key, true);
    return isConfirmed;
}
//! [do-not-ask-again]

//! [remember-an-answer]
QMessageBox::ButtonRole ask(Quillet::MessageDialogTemplate t, QSettings& settings, QWidget* window)
{
    const QString key = QStringLiteral("answers/") + t.id;
    const QVariant remembered = settings.value(key);
    for (const Quillet::MessageDialogButtonTemplate& slot : t.buttons) {
        if (slot.text.isEmpty() || remembered.isNull() || slot.role != remembered.toInt())
            continue;
        if (slot.action)
            slot.action();
        return slot.role;
    }

    t.preExecCallback = [](Quillet::MessageDialog& dialog) {
        dialog.setCheckBox(new QCheckBox(QObject::tr("Remember my answer")));
        return true;
    };
    t.postExecCallback = [&](Quillet::MessageDialog& dialog) {
        const QMessageBox::ButtonRole role = dialog.buttonRole(dialog.clickedButton());
        if (dialog.checkBox()->isChecked() && role != QMessageBox::InvalidRole)
            settings.setValue(key, int(role));
        return true;
    };
    return t.exec(window);
}
//! [remember-an-answer]

//! [open-a-template]
void openTemplate(const Quillet::MessageDialogTemplate& t, QWidget* window)
{
    Quillet::MessageDialog* const dialog = t.createDialog(window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QDialog::finished, dialog, [dialog, buttons = t.buttons] {
        QAbstractButton* clicked = dialog->clickedButton();
        if (!clicked) // the window was closed
            clicked = dialog->escapeButton();
        const QMessageBox::ButtonRole role = dialog->buttonRole(clicked);
        for (const Quillet::MessageDialogButtonTemplate& slot : buttons) {
            if (!slot.text.isEmpty() && slot.role == role && slot.action)
                slot.action();
        }
    });
    dialog->open();
}
//! [open-a-template]

//! [dark]
void makeDark(Quillet::MessageDialog& dialog)
{
    dialog.setStyleSheet(QStringLiteral(R"(
        QMessageBox { background-color: #202124; }
        QMessageBox QLabel, QMessageBox QCheckBox { color: #e8eaed; }
        QMessageBox QPushButton { background-color: #3c4043; color: #e8eaed; border-radius: 4px;
                                  min-width: 48px; min-height: 32px; padding: 0px 16px; }
        QMessageBox QPushButton:hover { background-color: #5f6368; }
    )"));
    if (QAbstractButton* const primary = dialog.getPrimaryButton())
        primary->setStyleSheet(QStringLiteral("background-color: #8ab4f8; color: #202124;"));
}
//! [dark]

//! [from-json]
using Actions = std::map<QString, std::function<void()>>;

Quillet::MessageDialogTemplate templateFrom(const QJsonObject& json, const Actions& actions)
{
    const std::map<QString, QMessageBox::Icon> icons = {
        {QStringLiteral("information"), QMessageBox::Information},
        {QStringLiteral("question"), QMessageBox::Question},
        {QStringLiteral("warning"), QMessageBox::Warning},
        {QStringLiteral("critical"), QMessageBox::Critical}};
    const std::map<QString, QMessageBox::ButtonRole> roles = {
        {QStringLiteral("accept"), QMessageBox::AcceptRole},
        {QStringLiteral("destructive"), QMessageBox::DestructiveRole},
        {QStringLiteral("reject"), QMessageBox::RejectRole}};

    Quillet::MessageDialogTemplate t;
    t.id = json[QStringLiteral("id")].toString();
    t.icon = icons.at(json[QStringLiteral("icon")].toString()); // at() throws at a name that is not there
    t.title = json[QStringLiteral("title")].toString();
    t.text = json[QStringLiteral("text")].toString();
    std::size_t i = 0;
    const QJsonArray buttons = json[QStringLiteral("buttons")].toArray();
    for (const QJsonValue& value : buttons) {
        const QJsonObject button = value.toObject();
        t.buttons.at(i++) = {button[QStringLiteral("text")].toString(),
                             roles.at(button[QStringLiteral("role")].toString()),
                             button[QStringLiteral("default")].toBool(),
                             button[QStringLiteral("escape")].toBool(),
                             actions.at(button[QStringLiteral("action")].toString())};
    }
    return t;
}
//! [from-json]

QColor colorAt(QWidget& window, QWidget& part, const QPoint& point)
{
    return window.grab().toImage().pixelColor(part.mapTo(&window, point) * window.devicePixelRatio());
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(QMessageBox&)>)

class TestCookbookSnippets : public TemplateTestCase
{
    Q_OBJECT

    QTemporaryDir m_directory;
    std::unique_ptr<QSettings> m_settings;

    static const Quillet::MessageDialogTemplate& registered(const Quillet::MessageDialogTemplate& t)
    {
        Quillet::MessageDialogTemplate::registerTemplate(t);
        return Quillet::MessageDialogTemplate::getRegisteredTemplates().at(t.id);
    }

private Q_SLOTS:
    void init()
    {
        TemplateTestCase::init();
        m_settings = std::make_unique<QSettings>(m_directory.filePath(QStringLiteral("settings.ini")),
                                                 QSettings::IniFormat);
        m_settings->clear();
    }

    void aQuestionIsNotAskedAgain_data()
    {
        QTest::addColumn<bool>("checks");
        QTest::addColumn<bool>("confirms");
        QTest::addColumn<bool>("isAskedAgain");
        QTest::newRow("checked and confirmed") << true << true << false;
        QTest::newRow("checked and cancelled") << true << false << true;
        QTest::newRow("confirmed only") << false << true << true;
    }

    void aQuestionIsNotAskedAgain()
    {
        QFETCH(bool, checks);
        QFETCH(bool, confirms);
        QFETCH(bool, isAskedAgain);
        const QString id = QStringLiteral("overwrite");
        int asked = 0;
        const auto answer = [&](QMessageBox& box) {
            ++asked;
            box.checkBox()->setChecked(checks);
            box.button(confirms ? QMessageBox::Yes : QMessageBox::Cancel)->click();
        };
        whenModal(answer);
        QCOMPARE(confirm(id, QStringLiteral("Overwrite?"), *m_settings, nullptr), confirms);
        QCOMPARE(asked, 1);
        if (isAskedAgain)
            whenModal(answer);
        QCOMPARE(confirm(id, QStringLiteral("Overwrite?"), *m_settings, nullptr), confirms);
        QCOMPARE(asked, isAskedAgain ? 2 : 1);
    }

    void aHintIsVetoedOnceItIsKnown()
    {
        QSettings& settings = *m_settings;
        Quillet::MessageDialogTemplate t;
        t.id = QStringLiteral("hint");
        t.buttons[0] = {QStringLiteral("Close"), QMessageBox::RejectRole, true, true, {}};
        //! [veto]
        t.preExecCallback = [&settings](Quillet::MessageDialog& dialog) {
            if (settings.value(QStringLiteral("known/") + dialog.getId()).toBool())
                return false; // exec() returns QMessageBox::InvalidRole, and nothing is shown
            dialog.setCheckBox(new QCheckBox(QObject::tr("Do not show this again")));
            return true;
        };
        t.postExecCallback = [&settings](Quillet::MessageDialog& dialog) {
            if (dialog.checkBox()->isChecked())
                settings.setValue(QStringLiteral("known/") + dialog.getId(), true);
            return true;
        };
        //! [veto]
        for (const bool checks : {false, true}) {
            whenModal([=](QMessageBox& box) {
                box.checkBox()->setChecked(checks);
                QTest::keyClick(&box, Qt::Key_Return);
            });
            QCOMPARE(t.exec(), QMessageBox::RejectRole);
        }
        QCOMPARE(t.exec(), QMessageBox::InvalidRole);
    }

    void anAnswerIsRememberedByItsIdentifier()
    {
        const QString discard = QStringLiteral("Discard");
        QStringList journal;
        const Quillet::MessageDialogTemplate& t = registered(saveChanges(journal));
        whenModal([](QMessageBox& box) { buttonOf(box, QStringLiteral("Discard"))->click(); });
        QCOMPARE(ask(t, *m_settings, nullptr), QMessageBox::DestructiveRole);
        QVERIFY(m_settings->allKeys().isEmpty());

        whenModal([](QMessageBox& box) {
            box.checkBox()->setChecked(true);
            buttonOf(box, QStringLiteral("Discard"))->click();
        });
        QCOMPARE(ask(t, *m_settings, nullptr), QMessageBox::DestructiveRole);
        QCOMPARE(ask(t, *m_settings, nullptr), QMessageBox::DestructiveRole);
        QCOMPARE(journal, QStringList({discard, discard, discard}));
    }

    void aDialogThatOtherCodeClosesLeavesNoAnswer()
    {
        QStringList journal;
        whenModal([](QMessageBox& box) {
            box.checkBox()->setChecked(true);
            box.done(0);
        });
        QCOMPARE(ask(saveChanges(journal), *m_settings, nullptr), QMessageBox::NRoles);
        QVERIFY(m_settings->allKeys().isEmpty());
    }

    void anOpenedTemplateRunsItsAction_data()
    {
        QTest::addColumn<bool>("isClosed");
        QTest::addColumn<QString>("action");
        QTest::newRow("its button is clicked") << false << QStringLiteral("Discard");
        QTest::newRow("its window is closed") << true << QStringLiteral("Cancel");
    }

    void anOpenedTemplateRunsItsAction()
    {
        QFETCH(bool, isClosed);
        QFETCH(QString, action);
        QStringList journal;
        QWidget window;
        openTemplate(saveChanges(journal), &window);
        auto* const dialog = window.findChild<QMessageBox*>();
        QVERIFY(dialog->isVisible());
        if (isClosed)
            dialog->close();
        else
            buttonOf(*dialog, QStringLiteral("Discard"))->click();
        QCOMPARE(journal, QStringList(action));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!window.findChild<QMessageBox*>());
    }

    void anAnswerWithoutANestedLoop_data()
    {
        QTest::addColumn<std::function<void(QMessageBox&)>>("answer");
        QTest::addColumn<int>("expected");
        using Answer = std::function<void(QMessageBox&)>;
        QTest::newRow("Save is clicked")
            << Answer([](QMessageBox& box) { box.button(QMessageBox::Save)->click(); })
            << int(QMessageBox::Save);
        QTest::newRow("Escape is pressed")
            << Answer([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); })
            << int(QMessageBox::Cancel);
        QTest::newRow("the window is closed") << Answer([](QMessageBox& box) { box.close(); }) << 0;
    }

    void anAnswerWithoutANestedLoop()
    {
        QFETCH(std::function<void(QMessageBox&)>, answer);
        QFETCH(int, expected);
        QWidget theWindow;
        QWidget* const window = &theWindow;
        bool saved = false;
        const auto save = [&] { saved = true; };
        //! [open]
        auto* const dialog =
            new Quillet::MessageDialog(tr("Save the changes?"), QMessageBox::Question, window);
        dialog->setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        QObject::connect(dialog, &QDialog::finished, window, [=](int result) {
            if (result == QMessageBox::Save)
                save();
        });
        dialog->open(); // returns at once
        //! [open]
        const QSignalSpy finished(dialog, &QDialog::finished);
        QVERIFY(finished.isEmpty());
        answer(*dialog);
        QCOMPARE(finished.size(), 1);
        QCOMPARE(finished.first().first().toInt(), expected);
        QCOMPARE(saved, expected == QMessageBox::Save);
    }

    void everyTemplateIsShownDark()
    {
        //! [all-dark]
        Quillet::MessageDialogTemplatePreprocessors::add(
            QStringLiteral("dark"), [](Quillet::MessageDialogTemplate& t) {
                t.preExecCallback = [next = t.preExecCallback](Quillet::MessageDialog& dialog) {
                    makeDark(dialog);
                    return !next || next(dialog);
                };
            });
        //! [all-dark]
        QStringList journal;
        QVector<QColor> colors;
        whenModal([&](QMessageBox& box) {
            colors = {colorAt(box, box, QPoint(1, 1)),
                      colorAt(box, *buttonOf(box, QStringLiteral("Save")), QPoint(8, 20)),
                      colorAt(box, *buttonOf(box, QStringLiteral("Discard")), QPoint(8, 20))};
            box.done(0);
        });
        saveChanges(journal).exec();
        QVERIFY(Quillet::MessageDialogTemplatePreprocessors::remove(QStringLiteral("dark")));
        QCOMPARE(colors, QVector<QColor>({QColor(0x202124), QColor(0x8ab4f8), QColor(0x3c4043)}));
    }

    void aPartIsEscaped()
    {
        const QString fileName = QStringLiteral("Tom & <b>Jerry</b>.svg");
        Quillet::MessageDialogTemplate t;
        //! [escape-a-part]
        t.text = tr("<p>Delete <b>%1</b>?</p>").arg(fileName.toHtmlEscaped());
        //! [escape-a-part]
        QVERIFY(Qt::mightBeRichText(t.text));
        QTextDocument shown;
        shown.setHtml(t.text);
        QCOMPARE(shown.toPlainText(), QStringLiteral("Delete Tom & <b>Jerry</b>.svg?"));
    }

    void templatesAreReadFromJson()
    {
        QStringList journal;
        const auto deleteLayer = [&] { journal.append(QStringLiteral("deleted")); };
        //! [read-json]
        const QByteArray text = R"([
            {"id": "delete-layer", "icon": "warning", "title": "Delete layer",
             "text": "The layer contains 3 locked shapes.",
             "buttons": [
                 {"text": "&Delete", "role": "destructive", "action": "delete-layer"},
                 {"text": "Cancel", "role": "reject", "default": true, "escape": true, "action": "nothing"}]}
        ])";
        const Actions actions = {{QStringLiteral("nothing"), {}},
                                 {QStringLiteral("delete-layer"), [=] { deleteLayer(); }}};
        const QJsonArray all = QJsonDocument::fromJson(text).array();
        for (const QJsonValue& each : all)
            Quillet::MessageDialogTemplate::registerTemplate(templateFrom(each.toObject(), actions));
        //! [read-json]
        const auto& t =
            Quillet::MessageDialogTemplate::getRegisteredTemplates().at(QStringLiteral("delete-layer"));
        QCOMPARE(t.icon, QMessageBox::Warning);
        QCOMPARE(t.title, QStringLiteral("Delete layer"));
        QCOMPARE(t.text, QStringLiteral("The layer contains 3 locked shapes."));
        whenModal([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
        QCOMPARE(t.exec(), QMessageBox::RejectRole);
        whenModal([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
        QCOMPARE(t.exec(), QMessageBox::RejectRole);
        QCOMPARE(journal, QStringList());
        whenModal([](QMessageBox& box) { buttonOf(box, QStringLiteral("Delete"))->click(); });
        QCOMPARE(t.exec(), QMessageBox::DestructiveRole);
        QCOMPARE(journal, QStringList(QStringLiteral("deleted")));
    }

    void namesThatAreNotKnownAreRefused()
    {
        const QJsonObject json = {{QStringLiteral("icon"), QStringLiteral("skull")}};
        QVERIFY_EXCEPTION_THROWN(templateFrom(json, {}), std::out_of_range);
    }
};

QUILLET_TEST_MAIN(TestCookbookSnippets)
#include "tst_CookbookSnippets.moc"
