#include "TestCase.h"

#include <Quillet/MessageDialog.h>

#include <QtCore/QPointer>
#include <QtWidgets/QPushButton>

#include <memory>

class TestMessageDialogSnippets : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aQuestionWithStandardButtons()
    {
        bool saved = false;
        const auto save = [&] { saved = true; };
        whenModal([](QMessageBox& box) { box.button(QMessageBox::Save)->click(); });
        //! [standard-buttons]
        Quillet::MessageDialog dialog(QStringLiteral("The document has unsaved changes."),
                                      QMessageBox::Question);
        dialog.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
        if (dialog.exec() == QMessageBox::Save)
            save();
        //! [standard-buttons]
        QVERIFY(saved);
    }

    void aCustomButton()
    {
        bool saved = false;
        const auto saveACopy = [&] { saved = true; };
        whenModal([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
        //! [custom-button]
        Quillet::MessageDialog dialog(QStringLiteral("Save the changes?"), QMessageBox::Question);
        QPushButton* const save = dialog.addButton(QStringLiteral("Save a copy"), QMessageBox::AcceptRole);
        dialog.addButton(QMessageBox::Cancel);
        dialog.setDefaultButton(save);
        dialog.exec();
        if (dialog.clickedButton() == save) // exec() tells standard buttons apart, this custom ones
            saveACopy();
        //! [custom-button]
        QVERIFY(saved);
    }

    void callbacks()
    {
        int confirmed = 0;
        const auto documentIsModified = [] { return true; };
        const auto confirm = [&](const QAbstractButton* button) { return button && ++confirmed > 0; };
        Quillet::MessageDialog dialog(QStringLiteral("Save the changes?"), QMessageBox::Question);
        dialog.setStandardButtons(QMessageBox::Ok);
        //! [callbacks]
        dialog.setCallbacks(
            [&](Quillet::MessageDialog&) { return documentIsModified(); }, // nothing to ask otherwise
            [&](Quillet::MessageDialog& box) { return confirm(box.clickedButton()); });
        //! [callbacks]
        whenModal([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
        QCOMPARE(dialog.exec(), int(QMessageBox::Ok));
        QCOMPARE(confirmed, 1);
    }

    void aParentThatMayDieInTheLoop_data()
    {
        QTest::addColumn<bool>("dies");
        QTest::newRow("it lives") << false;
        QTest::newRow("it dies") << true;
    }

    void aParentThatMayDieInTheLoop()
    {
        QFETCH(bool, dies);
        auto parent = std::make_unique<QWidget>();
        QWidget* const window = parent.get();
        const QString text = QStringLiteral("text");
        whenModal([&](QMessageBox& box) { dies ? parent.reset() : box.accept(); });
        //! [parent-may-die]
        const QPointer<Quillet::MessageDialog> dialog(
            new Quillet::MessageDialog(text, QMessageBox::Warning, window));
        const int result = dialog->exec();
        if (dialog)
            dialog->deleteLater(); // nobody has deleted it meanwhile
        //! [parent-may-die]
        QCOMPARE(result, dies ? int(QDialog::Rejected) : int(QDialog::Accepted));
        QCOMPARE(dialog.isNull(), dies);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(dialog.isNull());
    }

    void openingWithoutANestedLoop()
    {
        QWidget parent;
        QWidget* const window = &parent;
        const QString text = QStringLiteral("text");
        int handled = -1;
        const auto handle = [&](int result) { handled = result; };
        //! [open]
        auto* const dialog = new Quillet::MessageDialog(text, QMessageBox::Question, window);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        QObject::connect(dialog, &QDialog::finished, window, [=](int result) { handle(result); });
        dialog->open();
        //! [open]
        QVERIFY(dialog->isVisible());
        QTest::keyClick(dialog, Qt::Key_Return);
        QCOMPARE(handled, int(QMessageBox::Ok));
    }
};

QUILLET_TEST_MAIN(TestMessageDialogSnippets)
#include "tst_MessageDialogSnippets.moc"
