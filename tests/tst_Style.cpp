#include "TestCase.h"

#include <Quillet/MessageDialog.h>

#include <QtCore/QFile>
#include <QtGui/QPixmap>
#include <QtWidgets/QPushButton>

#include <new>

using Quillet::MessageDialog;

Q_DECLARE_METATYPE(std::function<void(MessageDialog&)>)

namespace {

const QString own_sheet = QStringLiteral("* { color: green }");

QString content(const char* resource)
{
    QFile file(QString::fromLatin1(resource));
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

QString boxSheet()
{
    return content(":/QSS/MessageBox.qss");
}

QString accentSheet()
{
    return content(":/QSS/PrimaryButton.qss");
}

QImage iconImage(const char* resource)
{
    return QPixmap(QString::fromLatin1(resource)).toImage();
}

// The colour of a button's face, at its left edge and half its height, where no text and no corner is.
QColor face(QWidget& box, const QAbstractButton* button)
{
    QCoreApplication::processEvents(); // the new sheets ask for a new layout
    const QImage image = box.grab().toImage();
    const int marginTop = 16;
    const QPoint left(4, marginTop + (button->height() - marginTop) / 2);
    return image.pixelColor(button->mapTo(&box, left));
}

void showAgain(MessageDialog& dialog)
{
    dialog.hide();
    dialog.show();
}

// A push button whose address the test decides.
class PlacedButton
{
public:
    explicit PlacedButton(const QString& text) { place(text); }
    ~PlacedButton() { destroy(); }
    Q_DISABLE_COPY(PlacedButton)

    QPushButton* get() { return m_button; }

    void replace(const QString& text)
    {
        destroy();
        place(text);
    }

private:
    void place(const QString& text) { m_button = new (m_storage) QPushButton(text); }
    void destroy() { m_button->~QPushButton(); }

    alignas(QPushButton) unsigned char m_storage[sizeof(QPushButton)] = {};
    QPushButton* m_button = nullptr;
};

} // namespace

class TestStyle : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The box's sheet

    void everyWayOfShowingStylesTheBox_data()
    {
        QTest::addColumn<std::function<void(MessageDialog&)>>("show");
        using Show = std::function<void(MessageDialog&)>;
        QTest::newRow("show") << Show([](MessageDialog& dialog) { dialog.show(); });
        QTest::newRow("open") << Show([](MessageDialog& dialog) { dialog.open(); });
        QTest::newRow("setVisible") << Show([](MessageDialog& dialog) { dialog.setVisible(true); });
        QTest::newRow("exec") << Show([](MessageDialog& dialog) {
            whenModal([](QMessageBox& box) { box.button(QMessageBox::Ok)->click(); });
            dialog.exec();
        });
    }

    void everyWayOfShowingStylesTheBox()
    {
        QFETCH(std::function<void(MessageDialog&)>, show);
        MessageDialog dialog;
        dialog.addButton(QMessageBox::Ok);
        QCOMPARE(dialog.styleSheet(), QString());
        show(dialog);
        QCOMPARE(dialog.styleSheet(), boxSheet());
        QCOMPARE(dialog.button(QMessageBox::Ok)->styleSheet(), accentSheet());
    }

    void aBoxWithASheetOfItsOwnKeepsIt()
    {
        MessageDialog dialog;
        dialog.setStyleSheet(own_sheet);
        dialog.show();
        QCOMPARE(dialog.styleSheet(), own_sheet);
    }

    void aSheetThatWasClearedIsSetAgainOnTheNextShow()
    {
        MessageDialog dialog;
        dialog.show();
        dialog.setStyleSheet(QString());
        showAgain(dialog);
        QCOMPARE(dialog.styleSheet(), boxSheet());
    }

    // The primary button's sheet

    void onlyThePrimaryButtonGetsTheAccentSheet()
    {
        MessageDialog dialog;
        dialog.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        dialog.show();
        QCOMPARE(dialog.button(QMessageBox::Ok)->styleSheet(), accentSheet());
        QCOMPARE(dialog.button(QMessageBox::Cancel)->styleSheet(), QString());
    }

    void thePrimaryButtonIsBlueAndTheOthersAreGrey()
    {
        MessageDialog dialog;
        dialog.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        dialog.show();
        // A real window manager takes its time over the new size.
        QTRY_COMPARE(face(dialog, dialog.button(QMessageBox::Ok)).name(), QStringLiteral("#233f7a"));
        QCOMPARE(face(dialog, dialog.button(QMessageBox::Cancel)).name(), QStringLiteral("#cfcfcf"));
        QCOMPARE(dialog.grab().toImage().pixelColor(2, 2).name(), QStringLiteral("#f4f4f4"));
    }

    void thePrimaryButtonAddedByTheShowItselfIsStyled()
    {
        MessageDialog dialog;
        dialog.show();
        QCOMPARE(dialog.buttons().size(), 1);
        QCOMPARE(dialog.buttons().constFirst()->styleSheet(), accentSheet());
    }

    void theAccentSheetMovesWithTheDefaultButton()
    {
        MessageDialog dialog;
        dialog.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        dialog.show();
        dialog.setDefaultButton(QMessageBox::Cancel);
        showAgain(dialog);
        QCOMPARE(dialog.button(QMessageBox::Ok)->styleSheet(), QString());
        QCOMPARE(dialog.button(QMessageBox::Cancel)->styleSheet(), accentSheet());
    }

    void aPrimaryButtonWithASheetOfItsOwnKeepsItForEver()
    {
        MessageDialog dialog;
        dialog.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        dialog.button(QMessageBox::Ok)->setStyleSheet(own_sheet);
        dialog.show();
        QCOMPARE(dialog.button(QMessageBox::Ok)->styleSheet(), own_sheet);

        dialog.setDefaultButton(QMessageBox::Cancel);
        showAgain(dialog);
        QCOMPARE(dialog.button(QMessageBox::Ok)->styleSheet(), own_sheet);
        QCOMPARE(dialog.button(QMessageBox::Cancel)->styleSheet(), accentSheet());
    }

    void theFormerPrimaryButtonIsClearedWhereTheNewOneHasItsOwnSheet()
    {
        MessageDialog dialog;
        dialog.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        dialog.show();
        dialog.button(QMessageBox::Cancel)->setStyleSheet(own_sheet);
        dialog.setDefaultButton(QMessageBox::Cancel);
        showAgain(dialog);
        QCOMPARE(dialog.button(QMessageBox::Ok)->styleSheet(), QString());
        QCOMPARE(dialog.button(QMessageBox::Cancel)->styleSheet(), own_sheet);
    }

    void theAccentSheetComesBackAfterAButtonWithItsOwnSheetWasPrimary()
    {
        MessageDialog dialog;
        dialog.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        dialog.show();
        dialog.button(QMessageBox::Cancel)->setStyleSheet(own_sheet);
        dialog.setDefaultButton(QMessageBox::Cancel);
        showAgain(dialog);
        dialog.setDefaultButton(QMessageBox::Ok);
        showAgain(dialog);
        QCOMPARE(dialog.button(QMessageBox::Ok)->styleSheet(), accentSheet());
        QCOMPARE(dialog.button(QMessageBox::Cancel)->styleSheet(), own_sheet);
    }

    void aFormerPrimaryButtonIsClearedWhateverSheetItHasByThen()
    {
        MessageDialog dialog;
        dialog.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        dialog.show();
        dialog.button(QMessageBox::Ok)->setStyleSheet(own_sheet);
        dialog.setDefaultButton(QMessageBox::Cancel);
        showAgain(dialog);
        QCOMPARE(dialog.button(QMessageBox::Ok)->styleSheet(), QString());
    }

    void aSheetThatTheApplicationClearedOnThePrimaryButtonStaysCleared()
    {
        MessageDialog dialog;
        dialog.addButton(QMessageBox::Ok);
        dialog.show();
        dialog.button(QMessageBox::Ok)->setStyleSheet(QString());
        showAgain(dialog);
        QCOMPARE(dialog.button(QMessageBox::Ok)->styleSheet(), QString());
    }

    void aPrimaryButtonThatLeftTheBoxIsNotTouched()
    {
        MessageDialog dialog;
        dialog.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        dialog.show();
        QAbstractButton* const removed = dialog.button(QMessageBox::Ok);
        dialog.removeButton(removed);
        showAgain(dialog);
        QCOMPARE(removed->styleSheet(), accentSheet());
        QCOMPARE(dialog.button(QMessageBox::Cancel)->styleSheet(), accentSheet());
        delete removed;
    }

    void aDeletedPrimaryButtonIsForgotten()
    {
        MessageDialog dialog;
        dialog.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        dialog.show();
        delete dialog.button(QMessageBox::Ok);
        showAgain(dialog);
        QCOMPARE(dialog.button(QMessageBox::Cancel)->styleSheet(), accentSheet());
    }

    void aNewButtonAtADeletedOnesAddressIsStyled()
    {
        MessageDialog dialog;
        PlacedButton button(QStringLiteral("first"));
        dialog.addButton(button.get(), QMessageBox::AcceptRole);
        dialog.updateStyle();
        QCOMPARE(button.get()->styleSheet(), accentSheet());

        button.replace(QStringLiteral("second"));
        dialog.addButton(button.get(), QMessageBox::AcceptRole);
        dialog.updateStyle();
        QCOMPARE(button.get()->styleSheet(), accentSheet());
    }

    // Button widths

    void everyButtonGetsItsSizeHintsWidthAsItsMinimum()
    {
        MessageDialog dialog;
        dialog.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        dialog.button(QMessageBox::Ok)->setMinimumWidth(300);
        dialog.addButton(QStringLiteral("A button with a long text that needs its room"),
                         QMessageBox::ActionRole);
        dialog.show();
        const QList<QAbstractButton*> buttons = dialog.buttons();
        for (const QAbstractButton* button : buttons)
            QCOMPARE(button->minimumWidth(), button->sizeHint().width());
    }

    void theWidthsAreTakenFromTheStyledButtons()
    {
        MessageDialog dialog;
        const QString text = QStringLiteral("A button with a long text that needs its room");
        QPushButton* const button = dialog.addButton(text, QMessageBox::AcceptRole);
        const int unstyledWidth = button->sizeHint().width();
        dialog.updateStyle();
        QVERIFY(button->sizeHint().width() != unstyledWidth);
        QCOMPARE(button->minimumWidth(), button->sizeHint().width());
    }

    // The icon

    void theIconIsReplacedByThePictureOfItsKind_data()
    {
        QTest::addColumn<QMessageBox::Icon>("icon");
        QTest::addColumn<QByteArray>("resource");
        QTest::newRow("Critical") << QMessageBox::Critical << QByteArray(":/Icons/Critical.svg");
        QTest::newRow("Information") << QMessageBox::Information << QByteArray(":/Icons/Information.svg");
        QTest::newRow("Question") << QMessageBox::Question << QByteArray(":/Icons/Question.svg");
        QTest::newRow("Warning") << QMessageBox::Warning << QByteArray(":/Icons/Warning.svg");
    }

    void theIconIsReplacedByThePictureOfItsKind()
    {
        QFETCH(QMessageBox::Icon, icon);
        QFETCH(QByteArray, resource);
        MessageDialog dialog(QString(), icon);
        dialog.show();
        QCOMPARE(dialog.iconPixmap().size(), QSize(64, 64));
        QCOMPARE(dialog.iconPixmap().toImage(), iconImage(resource.constData()));
    }

    void aShownIconReportsNoIconAndStays()
    {
        MessageDialog dialog(QString(), QMessageBox::Warning);
        dialog.show();
        QCOMPARE(dialog.icon(), QMessageBox::NoIcon);
        const QImage picture = dialog.iconPixmap().toImage();
        showAgain(dialog);
        QCOMPARE(dialog.icon(), QMessageBox::NoIcon);
        QCOMPARE(dialog.iconPixmap().toImage(), picture);
    }

    void aLaterIconIsPickedUpByTheNextShow()
    {
        MessageDialog dialog(QString(), QMessageBox::Warning);
        dialog.show();
        showAgain(dialog);
        dialog.setIcon(QMessageBox::Question);
        showAgain(dialog);
        QCOMPARE(dialog.iconPixmap().toImage(), iconImage(":/Icons/Question.svg"));

        dialog.setIcon(QMessageBox::Critical);
        showAgain(dialog);
        QCOMPARE(dialog.iconPixmap().toImage(), iconImage(":/Icons/Critical.svg"));
    }

    void theSameIconIsPickedUpAgainAfterAPassThatSawNone()
    {
        MessageDialog dialog(QString(), QMessageBox::Warning);
        dialog.show();
        showAgain(dialog);
        dialog.setIcon(QMessageBox::Warning);
        showAgain(dialog);
        QCOMPARE(dialog.icon(), QMessageBox::NoIcon);
        QCOMPARE(dialog.iconPixmap().toImage(), iconImage(":/Icons/Warning.svg"));
    }

    void theIconOfTheLastPassIsNotLookedUpAgain()
    {
        MessageDialog dialog(QString(), QMessageBox::Warning);
        dialog.show();
        dialog.setIcon(QMessageBox::Warning);
        showAgain(dialog);
        QCOMPARE(dialog.icon(), QMessageBox::Warning);
        QVERIFY(dialog.iconPixmap().toImage() != iconImage(":/Icons/Warning.svg"));
    }

    void aBoxWithoutIconKeepsItsIconArea()
    {
        MessageDialog empty;
        empty.show();
        QVERIFY(empty.iconPixmap().isNull());

        QPixmap own(10, 20);
        own.fill(Qt::green);
        MessageDialog dialog;
        dialog.setIconPixmap(own);
        dialog.show();
        QCOMPARE(dialog.iconPixmap().toImage(), own.toImage());
    }

    // The whole pass

    void aBoxWithoutButtonsCanBeStyledBeforeItIsShown()
    {
        MessageDialog dialog;
        dialog.updateStyle();
        QCOMPARE(dialog.styleSheet(), boxSheet());
        QVERIFY(dialog.buttons().isEmpty());
    }

    void aSecondPassChangesNothing()
    {
        MessageDialog dialog(QStringLiteral("Text"), QMessageBox::Warning);
        dialog.setStandardButtons(QMessageBox::Save | QMessageBox::Cancel);
        dialog.show();
        QCoreApplication::processEvents();
        const QImage before = dialog.grab().toImage();
        const int width = dialog.button(QMessageBox::Save)->minimumWidth();
        const qint64 picture = dialog.iconPixmap().cacheKey();

        dialog.updateStyle();
        dialog.updateStyle();
        QCoreApplication::processEvents();
        QCOMPARE(dialog.grab().toImage(), before);
        QCOMPARE(dialog.styleSheet(), boxSheet());
        QCOMPARE(dialog.button(QMessageBox::Save)->styleSheet(), accentSheet());
        QCOMPARE(dialog.button(QMessageBox::Save)->minimumWidth(), width);
        QCOMPARE(dialog.iconPixmap().cacheKey(), picture);
    }

    void anUpdateBringsAShownBoxUpToDate()
    {
        MessageDialog dialog(QString(), QMessageBox::Warning);
        dialog.addButton(QMessageBox::Cancel);
        dialog.show();
        QPushButton* const ok = dialog.addButton(QMessageBox::Ok);
        dialog.setIcon(QMessageBox::Question);
        dialog.updateStyle();
        QCOMPARE(ok->styleSheet(), accentSheet());
        QCOMPARE(dialog.button(QMessageBox::Cancel)->styleSheet(), QString());
        QCOMPARE(ok->minimumWidth(), ok->sizeHint().width());
        QCOMPARE(dialog.iconPixmap().toImage(), iconImage(":/Icons/Question.svg"));
    }
};

QUILLET_TEST_MAIN(TestStyle)
#include "tst_Style.moc"
