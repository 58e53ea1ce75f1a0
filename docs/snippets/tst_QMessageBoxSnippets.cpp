#include "TestCase.h"

#include <Quillet/MessageDialog.h>

#include <QtWidgets/QPushButton>

namespace {

//! [question]
QMessageBox::StandardButton question(
    QWidget* parent,
    const QString& title,
    const QString& text,
    QMessageBox::StandardButtons buttons = QMessageBox::StandardButtons(QMessageBox::Yes | QMessageBox::No),
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton)
{
    Quillet::MessageDialog dialog(
        title, text, QString(), QMessageBox::Question, buttons, defaultButton, parent);
    return static_cast<QMessageBox::StandardButton>(dialog.exec());
}
//! [question]

// What a user sees and may press.
QStringList describe(const QMessageBox& box)
{
    QStringList result = {box.windowTitle(), box.text()};
    const QList<QAbstractButton*> all = box.buttons();
    for (const QAbstractButton* button : all)
        result.append(button->text());
    result.append(box.defaultButton() ? box.defaultButton()->text() : QStringLiteral("no default button"));
    return result;
}

} // namespace

class TestQMessageBoxSnippets : public TestCase
{
    Q_OBJECT

    // What the box is that \a run shows, and answers it with \a key.
    static QStringList shownBy(const std::function<void()>& run, Qt::Key key = Qt::Key_Return)
    {
        QStringList result;
        whenModal([&](QMessageBox& box) {
            result = describe(box);
            QTest::keyClick(&box, key);
        });
        run();
        return result;
    }

private Q_SLOTS:
    void informationIsTheSameBox()
    {
        QWidget* const window = nullptr;
        const QStringList before = shownBy(
            [&] { QMessageBox::information(window, tr("Export"), tr("The picture has been exported.")); });
        const QStringList after = shownBy([&] {
            //! [information]
            Quillet::MessageDialog dialog(tr("Export"),
                                          tr("The picture has been exported."),
                                          QMessageBox::Information,
                                          QMessageBox::Ok,
                                          window);
            dialog.exec();
            //! [information]
        });
        QCOMPARE(after, before);
    }

    void questionIsTheSameBoxAndAnswer_data()
    {
        QTest::addColumn<int>("buttons");
        QTest::addColumn<int>("defaultButton");
        QTest::addColumn<int>("key");
        QTest::newRow("Enter") << int(QMessageBox::Yes | QMessageBox::No) << int(QMessageBox::No)
                               << int(Qt::Key_Return);
        QTest::newRow("Escape") << int(QMessageBox::Yes | QMessageBox::No) << int(QMessageBox::Yes)
                                << int(Qt::Key_Escape);
        QTest::newRow("three buttons, Escape")
            << int(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel) << int(QMessageBox::Save)
            << int(Qt::Key_Escape);
        QTest::newRow("no default button, Enter")
            << int(QMessageBox::Yes | QMessageBox::No) << int(QMessageBox::NoButton) << int(Qt::Key_Return);
    }

    void questionIsTheSameBoxAndAnswer()
    {
        QFETCH(int, buttons);
        QFETCH(int, defaultButton);
        QFETCH(int, key);
        const QMessageBox::StandardButtons all(buttons);
        const auto chosen = static_cast<QMessageBox::StandardButton>(defaultButton);
        const QString title = QStringLiteral("Close");
        const QString text = QStringLiteral("Close all windows?");
        int answerBefore = -1;
        int answer = -1;
        const QStringList before = shownBy(
            [&] { answerBefore = QMessageBox::question(nullptr, title, text, all, chosen); }, Qt::Key(key));
        const QStringList after =
            shownBy([&] { answer = question(nullptr, title, text, all, chosen); }, Qt::Key(key));
        QCOMPARE(after, before);
        QCOMPARE(answer, answerBefore);
    }

    // The guide says that a static function chooses a default button where none is given.
    void onlyAStaticFunctionChoosesADefaultButton()
    {
        const auto buttons = QMessageBox::Save | QMessageBox::Cancel;
        const QStringList before =
            shownBy([&] { QMessageBox::question(nullptr, QString(), QString(), buttons); });
        const QStringList after = shownBy([&] { question(nullptr, QString(), QString(), buttons); });
        QCOMPARE(before.last(), QStringLiteral("Save"));
        QCOMPARE(after.last(), QStringLiteral("no default button"));
    }

    void staticFunctionsShowAPlainBox()
    {
        QString sheet = QStringLiteral("not run");
        bool isOurs = true;
        whenModal([&](QMessageBox& box) {
            isOurs = qobject_cast<Quillet::MessageDialog*>(&box);
            sheet = box.styleSheet();
            box.done(0);
        });
        Quillet::MessageDialog::information(nullptr, QString(), QString());
        QVERIFY(!isOurs);
        QCOMPARE(sheet, QString());
    }

    void aPropertyBasedBox()
    {
        QWidget* const window = nullptr;
        bool overwritten = false;
        const auto overwrite = [&] { overwritten = true; };
        whenModal([](QMessageBox& box) { box.button(QMessageBox::Save)->click(); });
        //! [properties]
        Quillet::MessageDialog box(window); // was: QMessageBox box(window);
        box.setIcon(QMessageBox::Warning);
        box.setWindowTitle(tr("Save"));
        box.setText(tr("The file exists."));
        box.setInformativeText(tr("Saving replaces what is in it."));
        box.setStandardButtons(QMessageBox::Save | QMessageBox::Cancel);
        box.setDefaultButton(QMessageBox::Cancel);
        if (box.exec() == QMessageBox::Save)
            overwrite();
        //! [properties]
        QVERIFY(overwritten);
        QCOMPARE(box.icon(), QMessageBox::NoIcon);
    }

    void aVetoIsNoButton()
    {
        bool saved = false;
        const auto save = [&] { saved = true; };
        Quillet::MessageDialog dialog;
        dialog.setStandardButtons(QMessageBox::Save | QMessageBox::Cancel);
        dialog.setCallbacks([](Quillet::MessageDialog&) { return false; }, {});
        //! [compare]
        const int result = dialog.exec();
        if (result == QMessageBox::Save) // not "result & QMessageBox::Save", which is true of -1, too
            save();
        //! [compare]
        QCOMPARE(result, -1);
        QVERIFY(result & QMessageBox::Save);
        QVERIFY(!saved);
    }

    // The table's rows on what a box shown once reports and how it chooses.
    void whatDiffersAfterAShow()
    {
        Quillet::MessageDialog dialog(QStringLiteral("text"), QMessageBox::Warning);
        QPushButton* const custom = dialog.addButton(QStringLiteral("Delete"), QMessageBox::DestructiveRole);
        dialog.addButton(QMessageBox::Cancel);
        custom->setMinimumWidth(1000);
        QCOMPARE(dialog.icon(), QMessageBox::Warning);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Warning"));
        dialog.show();
        QCOMPARE(dialog.icon(), QMessageBox::NoIcon);
        QVERIFY(!dialog.iconPixmap().isNull());
        QVERIFY(!dialog.styleSheet().isEmpty());
        QCOMPARE(dialog.getPrimaryButton(), custom);
        QVERIFY(!custom->styleSheet().isEmpty());
        QVERIFY(custom->minimumWidth() < 1000);
        dialog.hide();
    }

    void aPictureOfTheApplicationIsKept()
    {
        QPixmap picture(20, 20);
        picture.fill(Qt::red);
        whenModal([](QMessageBox& box) { box.done(0); });
        //! [about]
        Quillet::MessageDialog dialog(
            tr("About Harbour"), tr("<h3>Harbour 2.1</h3>Draws ships."), QMessageBox::NoIcon);
        dialog.setIconPixmap(picture); // kept, because the box has no icon
        dialog.exec();
        //! [about]
        QCOMPARE(dialog.iconPixmap().size(), QSize(20, 20));
    }
};

QUILLET_TEST_MAIN(TestQMessageBoxSnippets)
#include "tst_QMessageBoxSnippets.moc"
