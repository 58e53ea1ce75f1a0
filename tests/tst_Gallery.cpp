#include "ConvertPage.h"
#include "Drawing.h"
#include "GalleryPage.h"
#include "GalleryWindow.h"
#include "Pictures.h"
#include "ShapeList.h"
#include "TestCase.h"
#include "VectorCanvas.h"
#include "VectorPage.h"

#include <Quillet/PainterPathContainer.h>
#include <QuilletTesting/DialogDriver.h>

#include <QtCore/QMimeData>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>
#include <QtWidgets/QTableWidget>

#include <cmath>

using Quillet::Testing::DialogDriver;

namespace {

void click(const QWidget& window, const QString& text)
{
    const QList<QAbstractButton*> buttons = window.findChildren<QAbstractButton*>();
    for (QAbstractButton* button : buttons) {
        if (button->text() == text)
            return button->click();
    }
    QFAIL(qPrintable(QStringLiteral("no button ") + text));
}

/// A picture on the page about converting.
QImage pictureOn(const ConvertPage& page, const char* name)
{
    return page.findChild<QLabel*>(QLatin1String(name))->property("pixmap").value<QPixmap>().toImage();
}

/// The log of the dialogs page.
QStringList logOf(const GalleryWindow& window)
{
    const auto* const log = window.pages().first()->findChild<QPlainTextEdit*>();
    return log->toPlainText().split(QLatin1Char('\n'));
}

// The little square lies over a corner of the large one.
const char* const two_squares = "<svg><path d='M 0,0 H 90 V 90 H 0 Z' fill='#336699'/>"
                                "<path d='M 70,70 H 100 V 100 H 70 Z' fill='none' stroke='red' "
                                "stroke-width='2' stroke-opacity='0.5'/></svg>";

/// The gallery with one document open, laid out as if it were shown, and the parts of its vector page.
struct OpenedDocument
{
    explicit OpenedDocument(const QByteArray& content)
    {
        QFile file(fileName());
        if (file.open(QIODevice::WriteOnly))
            file.write(content);
        file.close();
        window.openFile(fileName());
        picture(window);
    }

    QString fileName() const { return directory.filePath(QStringLiteral("document.svg")); }

    QString report() const { return page->findChild<QLabel*>(QStringLiteral("report"))->text(); }

    /// What the list says of a shape, from column to column.
    QStringList row(int shape) const
    {
        QStringList result;
        for (int column = 0; column < list->columnCount(); ++column)
            result.append(list->topLevelItem(shape)->text(column));
        return result;
    }

    int selectedShape() const
    {
        const QList<QTreeWidgetItem*> selected = list->selectedItems();
        return selected.size() == 1 ? list->indexOfTopLevelItem(selected.first()) : -1;
    }

    /// Where the canvas shows a point of the document.
    QPointF onCanvas(double x, double y) const
    {
        const auto& shape = canvas->picture().getPaths().front();
        const auto point = shape->getTransform().map({x, y});
        return {point.x(), point.y()};
    }

    void sendMouse(QEvent::Type type, const QPointF& position, Qt::MouseButton button = Qt::NoButton) const
    {
        const Qt::MouseButtons buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : button;
        QMouseEvent event(type, position, button, buttons, Qt::NoModifier);
        QApplication::sendEvent(canvas, &event);
    }

    void hover(const QPointF& position) const { sendMouse(QEvent::MouseMove, position); }

    /// Turns the wheel by so many notches away from the user.
    void turnWheel(const QPointF& position, int notches) const
    {
        QWheelEvent event(position,
                          canvas->mapToGlobal(position.toPoint()),
                          QPoint(),
                          QPoint(0, 120 * notches),
                          Qt::NoButton,
                          Qt::NoModifier,
                          Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(canvas, &event);
    }

    QTemporaryDir directory;
    GalleryWindow window;
    VectorPage* page = window.findChild<VectorPage*>();
    VectorCanvas* canvas = page->findChild<VectorCanvas*>();
    ShapeList* list = page->findChild<ShapeList*>();
};

/// The gallery, and what chooses buttons on its dialogs page.
struct DialogButtons
{
    void add(const QStringList& texts) const
    {
        for (const QString& text : texts) {
            click(window, QStringLiteral("Add"));
            table->item(table->rowCount() - 1, 0)->setText(text);
        }
    }

    /// The text of the default button of the dialog that the page describes.
    QString defaultInDialog() const
    {
        DialogDriver driver;
        driver.expect(QString()).pressKey(Qt::Key_Return);
        click(window, QStringLiteral("exec()"));
        return driver.records().constLast().defaultButton;
    }

    GalleryWindow window;
    QTableWidget* table = window.findChild<QTableWidget*>();
    QComboBox* defaultButton = window.findChild<QComboBox*>(QStringLiteral("default button"));
};

bool isNear(const QPointF& one, const QPointF& other)
{
    return (one - other).manhattanLength() < 1e-6;
}

} // namespace

class TestGallery : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void anExecutedDialogLogsItsCallbacksAndItsResult()
    {
        GalleryWindow window;
        DialogDriver driver;
        driver.expect(QString()).withTitle(QStringLiteral("Question")).click(QMessageBox::Discard);
        click(window, QStringLiteral("exec()"));
        QCOMPARE(logOf(window),
                 QStringList({QStringLiteral("exec() of \"Question\""),
                              QStringLiteral("Pre-exec callback: go on"),
                              QStringLiteral("Post-exec callback: go on"),
                              QStringLiteral("clicked: Discard"),
                              QStringLiteral("exec() returned 8388608 (Discard)")}));
    }

    void aVetoIsLoggedAsSuch()
    {
        GalleryWindow window;
        click(window, QStringLiteral("vetoes")); // the first such switch is the pre-exec callback's
        click(window, QStringLiteral("exec()"));
        QCOMPARE(logOf(window),
                 QStringList({QStringLiteral("exec() of \"Question\""),
                              QStringLiteral("Pre-exec callback: veto"),
                              QStringLiteral("clicked: nothing"),
                              QStringLiteral("exec() returned -1")}));
    }

    void anOpenedDialogRunsNoCallback()
    {
        GalleryWindow window;
        DialogDriver driver;
        driver.expect(QString()).click(QMessageBox::Save);
        click(window, QStringLiteral("open()"));
        QVERIFY(driver.wait());
        QCOMPARE(logOf(window),
                 QStringList({QStringLiteral("open() of \"Question\""), QStringLiteral("clicked: Save")}));
    }

    void aRenamedDefaultButtonStaysDefault()
    {
        const DialogButtons buttons;
        buttons.add({QStringLiteral("Later"), QStringLiteral("Never")});
        buttons.defaultButton->setCurrentText(QStringLiteral("Never"));
        buttons.table->item(1, 0)->setText(QStringLiteral("Not at all"));
        QCOMPARE(buttons.defaultButton->currentText(), QStringLiteral("Not at all"));
        QCOMPARE(buttons.defaultInDialog(), QStringLiteral("Not at all"));
    }

    void theDefaultButtonOfTwoWithOneTextStaysDefault()
    {
        const DialogButtons buttons;
        buttons.add({QStringLiteral("Later"), QStringLiteral("Later"), QStringLiteral("Never")});
        const int second = buttons.defaultButton->count() - 2;
        buttons.defaultButton->setCurrentIndex(second);
        buttons.table->item(2, 0)->setText(QStringLiteral("Not at all"));
        QCOMPARE(buttons.defaultButton->currentIndex(), second);
    }

    void theDefaultButtonStaysDefaultWhenOneBeforeItGoes()
    {
        const DialogButtons buttons;
        buttons.add({QStringLiteral("Later"), QStringLiteral("Never")});
        buttons.defaultButton->setCurrentText(QStringLiteral("Never"));
        buttons.table->setCurrentCell(0, 0);
        click(buttons.window, QStringLiteral("Remove"));
        click(buttons.window, QStringLiteral("Ok")); // before all others
        QCOMPARE(buttons.defaultButton->currentText(), QStringLiteral("Never"));
    }

    void withoutItsDefaultButtonTheDialogHasNone()
    {
        const DialogButtons buttons;
        buttons.add({QStringLiteral("Later"), QStringLiteral("Never")});
        buttons.defaultButton->setCurrentText(QStringLiteral("Never"));
        buttons.table->setCurrentCell(1, 0);
        click(buttons.window, QStringLiteral("Remove"));
        click(buttons.window, QStringLiteral("Add"));
        QCOMPARE(buttons.defaultButton->currentIndex(), 0);
    }

    void theFieldsOfTheDialogsPageFormOneColumn()
    {
        DialogButtons buttons;
        picture(buttons.window);
        const QWidget* const page = buttons.window.pages().first();
        const auto left = [page](const QWidget* widget) { return widget->mapTo(page, QPoint()).x(); };
        QCOMPARE(left(buttons.table), left(page->findChild<QLineEdit*>()));
        QCOMPARE(left(buttons.defaultButton), left(page->findChild<QLineEdit*>()));
    }

    void closingTheGalleryInsideTheLoopIsSafe()
    {
        auto window = std::make_unique<GalleryWindow>();
        click(*window, QStringLiteral("parented to this window"));
        whenModal([&](QMessageBox&) { window.reset(); });
        click(*window, QStringLiteral("exec()"));
        QVERIFY(!window);
    }

    void everySampleIsReadAndShown()
    {
        GalleryWindow window;
        const auto* page = window.findChild<VectorPage*>();
        auto* const documents = page->findChild<QComboBox*>();
        int samples = 0;
        for (int i = 0; i < documents->count(); ++i) {
            if (documents->itemText(i).isEmpty())
                continue; // a separator
            documents->setCurrentIndex(i);
            const int shapes = page->findChild<ShapeList*>()->topLevelItemCount();
            const QString report = page->findChild<QLabel*>(QStringLiteral("report"))->text();
            QVERIFY2(shapes > 0, qPrintable(report));
            QVERIFY2(report.startsWith(QStringLiteral("Read ")), qPrintable(report));
            ++samples;
        }
        QCOMPARE(samples, 9);
    }

    void aFileToOpenIsShownOnTheVectorPage()
    {
        const OpenedDocument opened(two_squares);
        QVERIFY(opened.page->isVisibleTo(&opened.window));
        QCOMPARE(opened.canvas->picture().getPaths().size(), std::size_t(2));
        QCOMPARE(opened.page->findChild<QComboBox*>()->currentText(), QStringLiteral("document.svg"));
    }

    void theShapesOfADocumentAreListed()
    {
        const OpenedDocument opened(two_squares);
        QCOMPARE(opened.list->topLevelItemCount(), 2);
        QCOMPARE(opened.row(0),
                 QStringList({QStringLiteral("0"),
                              QStringLiteral("5"),
                              QStringLiteral("no stroke"),
                              QStringLiteral("#336699")}));
        QCOMPARE(opened.row(1),
                 QStringList({QStringLiteral("1"),
                              QStringLiteral("5"),
                              QStringLiteral("#ff0000, 50 %, 2 wide"),
                              QStringLiteral("no fill")}));
    }

    void aReportTellsWhatWasRead_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("report");
        QTest::addColumn<int>("shapes");
        QTest::newRow("two shapes") << QByteArray(two_squares) << QStringLiteral("Read 2 shapes from %1")
                                    << 2;
        QTest::newRow("one shape") << QByteArray("<svg><path d='M 0,0 H 9'/></svg>")
                                   << QStringLiteral("Read 1 shape from %1") << 1;
        QTest::newRow("no shape") << QByteArray("<svg/>") << QStringLiteral("Read no shape from %1") << 0;
        QTest::newRow("no XML") << QByteArray("harbour")
                                << QStringLiteral("Refused %1 after reading no shape") << 0;
        QTest::newRow("the second path is wrong")
            << QByteArray("<svg><path d='M 0,0 H 9 V 9'/><path d='?1'/><path d='M 0,0 H 9'/></svg>")
            << QStringLiteral("Refused %1 after reading 1 shape") << 1;
    }

    void aReportTellsWhatWasRead()
    {
        QFETCH(const QByteArray, content);
        QFETCH(const QString, report);
        QFETCH(const int, shapes);
        const OpenedDocument opened(content);
        QCOMPARE(opened.report(), report.arg(QDir::toNativeSeparators(opened.fileName())));
        QCOMPARE(opened.list->topLevelItemCount(), shapes);
    }

    void aFileThatIsMissingIsReported()
    {
        OpenedDocument opened(two_squares);
        const QString missing = opened.directory.filePath(QStringLiteral("missing.svg"));
        opened.window.openFile(missing);
        QCOMPARE(opened.report(), QStringLiteral("Cannot open ") + QDir::toNativeSeparators(missing));
        QCOMPARE(opened.list->topLevelItemCount(), 0);
    }

    void aFileOpenedAgainIsReadAgain()
    {
        OpenedDocument opened(two_squares);
        const int entries = opened.page->findChild<QComboBox*>()->count();
        QVERIFY(QFile::remove(opened.fileName()));
        opened.window.openFile(opened.fileName());
        QCOMPARE(opened.list->topLevelItemCount(), 0);
        QCOMPARE(opened.page->findChild<QComboBox*>()->count(), entries);
    }

    void aFileDroppedOnThePageIsOpened()
    {
        GalleryWindow window;
        auto* const page = window.findChild<VectorPage*>();
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QStringLiteral("/nowhere/dropped.svg"))});
        QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(page, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(QPointF(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(page, &drop);
        QCOMPARE(page->findChild<QComboBox*>()->currentText(), QStringLiteral("dropped.svg"));
    }

    void whatIsNoFileOfThisMachineCannotBeDropped()
    {
        GalleryWindow window;
        QMimeData data;
        data.setUrls({QUrl(QStringLiteral("https://harbour.example/boat.svg"))});
        QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.findChild<VectorPage*>(), &enter);
        QVERIFY(!enter.isAccepted());
    }

    void thePictureIsFittedToTheMiddleOfTheCanvas()
    {
        const OpenedDocument opened(two_squares);
        QVERIFY(isNear(opened.onCanvas(50, 50), QRectF(opened.canvas->rect()).center()));
        QVERIFY(opened.canvas->rect().contains(opened.onCanvas(0, 0).toPoint()));
        QVERIFY(opened.canvas->rect().contains(opened.onCanvas(100, 100).toPoint()));
        const double room = qMin(opened.canvas->width(), opened.canvas->height()) / 100.0;
        QVERIFY(opened.canvas->view().scale() > 0.8 * room);
    }

    void aPictureOfAnyExtentCanBeShown_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::newRow("none") << QByteArray();
        QTest::newRow("a point") << QByteArray("M 5,5");
        QTest::newRow("a level line") << QByteArray("M 5,5 H 9");
        QTest::newRow("wider than a double") << QByteArray("M -1e308,0 H 1e308 V 9 Z");
        QTest::newRow("tiny") << QByteArray("M 0,0 H 1e-300 V 1e-300 Z");
    }

    void aPictureOfAnyExtentCanBeShown()
    {
        QFETCH(const QByteArray, data);
        const OpenedDocument opened("<svg><path d='" + data + "' stroke='red'/></svg>");
        QCOMPARE(opened.list->topLevelItemCount(), 1);
        QVERIFY(opened.canvas->view().scale() > 0);
        QVERIFY(std::isfinite(opened.canvas->view().scale()));
    }

    void hoveringLightsUpTheTopmostShape()
    {
        const OpenedDocument opened(two_squares);
        opened.hover(opened.onCanvas(20, 20));
        QCOMPARE(opened.canvas->litShape(), 0);
        opened.hover(opened.onCanvas(80, 80)); // both squares are here
        QCOMPARE(opened.canvas->litShape(), 1);
        opened.hover(opened.onCanvas(95, 20));
        QCOMPARE(opened.canvas->litShape(), -1);
    }

    void theLitShapeIsPaintedInAnotherColour()
    {
        const OpenedDocument opened(two_squares);
        const QPoint inside = opened.onCanvas(20, 20).toPoint();
        QCOMPARE(opened.canvas->grab().toImage().pixelColor(inside), QColor(QStringLiteral("#336699")));
        opened.hover(inside);
        QVERIFY(opened.canvas->grab().toImage().pixelColor(inside) != QColor(QStringLiteral("#336699")));
    }

    void theListFollowsThePointer()
    {
        const OpenedDocument opened(two_squares);
        opened.hover(opened.onCanvas(20, 20));
        QCOMPARE(opened.selectedShape(), 0);
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(opened.canvas, &leave);
        QCOMPARE(opened.selectedShape(), -1);
        QCOMPARE(opened.canvas->litShape(), -1);
    }

    void theCanvasFollowsTheList()
    {
        const OpenedDocument opened(two_squares);
        opened.list->topLevelItem(1)->setSelected(true);
        QCOMPARE(opened.canvas->litShape(), 1);
        opened.list->clearSelection();
        QCOMPARE(opened.canvas->litShape(), -1);
    }

    void anotherDocumentHasNoLitShape()
    {
        OpenedDocument opened(two_squares);
        opened.list->topLevelItem(1)->setSelected(true);
        opened.window.openFile(QStringLiteral("/nowhere/missing.svg"));
        QCOMPARE(opened.canvas->litShape(), -1);
    }

    void theWheelZoomsAtThePointer()
    {
        const OpenedDocument opened(two_squares);
        const QPointF pointer = opened.onCanvas(20, 20);
        const double scale = opened.canvas->view().scale();
        opened.turnWheel(pointer, 2);
        QVERIFY(qFuzzyCompare(opened.canvas->view().scale(), scale * 1.44));
        QVERIFY(isNear(opened.onCanvas(20, 20), pointer));
    }

    void zoomingBringsAnotherShapeUnderThePointer()
    {
        const OpenedDocument opened(two_squares);
        const QPointF pointer = opened.onCanvas(10, 10);
        opened.hover(pointer);
        QCOMPARE(opened.canvas->litShape(), 0);
        for (int i = 0; i < 3; ++i)
            click(*opened.page, QStringLiteral("−"));
        QCOMPARE(opened.canvas->shapeAt(pointer), -1);
        QCOMPARE(opened.canvas->litShape(), -1);
        click(*opened.page, QStringLiteral("Fit"));
        QCOMPARE(opened.canvas->litShape(), 0);
    }

    void rotatingBringsAnotherShapeUnderThePointer()
    {
        const OpenedDocument opened(two_squares);
        const QPointF pointer = opened.onCanvas(80, 80);
        opened.hover(pointer);
        QCOMPARE(opened.canvas->litShape(), 1);
        opened.page->findChild<QSlider*>()->setValue(90); // the small square goes to the lower left
        QVERIFY(isNear(opened.onCanvas(80, 20), pointer));
        QCOMPARE(opened.canvas->shapeAt(pointer), 0);
        QCOMPARE(opened.selectedShape(), 0);
    }

    void draggingMovesThePicture()
    {
        const OpenedDocument opened(two_squares);
        const QPointF start = opened.onCanvas(20, 20);
        const QPointF distance(30, -10);
        opened.sendMouse(QEvent::MouseButtonPress, start, Qt::LeftButton);
        opened.sendMouse(QEvent::MouseMove, start + distance, Qt::LeftButton);
        opened.sendMouse(QEvent::MouseButtonRelease, start + distance, Qt::LeftButton);
        opened.hover(start);
        QVERIFY(isNear(opened.onCanvas(20, 20), start + distance));
    }

    void aConvertedSampleIsDrawnAsQtDrawsTheOriginal()
    {
        ConvertPage page;
        const QImage original = pictureOn(page, "original");
        QVERIFY(!original.isNull());
        QVERIFY(pictureOn(page, "as-it-is") != original);
        QVERIFY(compare(pictureOn(page, "converted"), original).isSmall());
    }

    void whatTheCheckFoundIsListed()
    {
        const QTemporaryDir directory;
        const QString fileName = directory.filePath(QStringLiteral("designed.svg"));
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<svg width='9' height='9'>\n<rect width='9' height='9'/><text>t</text></svg>");
        file.close();
        ConvertPage page;
        page.open(fileName);
        const auto* const list = page.findChild<QTreeWidget*>();
        QStringList found;
        for (int i = 0; i < list->topLevelItemCount(); ++i) {
            const QTreeWidgetItem& item = *list->topLevelItem(i);
            found.append(QStringList{item.text(0), item.text(1), item.text(2)}.join(QLatin1Char(' ')));
        }
        QCOMPARE(found,
                 (QStringList{QStringLiteral("check 2 shape"),
                              QStringLiteral("check 2 text"),
                              QStringLiteral("convert 2 text")}));
        QCOMPARE(page.findChild<QLabel*>(QStringLiteral("report"))->text(),
                 QStringLiteral("The original is lossy, with 0 of 1 shapes"));
    }

    void whatCannotBeConvertedIsReported()
    {
        ConvertPage page;
        page.open(QStringLiteral("no such file"));
        QCOMPARE(page.findChild<QLabel*>(QStringLiteral("report"))->text(),
                 QStringLiteral("This cannot be converted: there is no such file"));
        QVERIFY(pictureOn(page, "converted").isNull());
    }

    void everyPageAndEveryDialogIsPainted()
    {
        const QTemporaryDir directory;
        GalleryWindow window;
        QVERIFY(writePictures(window, directory.filePath(QStringLiteral("new"))));

        QStringList expected = {
            QStringLiteral("buttons.png"),
            QStringLiteral("dialog-critical.png"),
            QStringLiteral("dialog-information.png"),
            QStringLiteral("dialog-question.png"),
            QStringLiteral("dialog-warning.png"),
            QStringLiteral("dialogs.png"),
            QStringLiteral("icons.png"),
        };
        for (const char* const page : {"convert", "dialogs", "templates", "vector"})
            expected.append(QStringLiteral("page-%1.png").arg(QLatin1String(page)));
        expected.append({QStringLiteral("templates-preprocessed.png"), QStringLiteral("templates.png")});
        for (const char* const sample : {"arc-flags", "harbour", "rosette", "strokes", "teacup"})
            expected.append(QStringLiteral("vector-%1.png").arg(QLatin1String(sample)));
        const QDir written(directory.filePath(QStringLiteral("new")));
        QCOMPARE(written.entryList(QDir::Files, QDir::Name), expected);
        for (const QString& fileName : expected) {
            const QImage image(written.filePath(fileName));
            QVERIFY2(image.width() > 200 && image.height() > 90, qPrintable(fileName));
        }
    }

    void aDirectoryThatCannotBeMadeIsAFailure()
    {
        const QTemporaryDir directory;
        QFile file(directory.filePath(QStringLiteral("file")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        GalleryWindow window;
        QVERIFY(!writePictures(window, file.fileName() + QStringLiteral("/below")));
    }
};

QUILLET_TEST_MAIN(TestGallery)
#include "tst_Gallery.moc"
