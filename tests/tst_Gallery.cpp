#include "GalleryPage.h"
#include "GalleryWindow.h"
#include "Pictures.h"
#include "TestCase.h"

#include <QtCore/QTemporaryDir>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>

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

QStringList logOf(const QWidget& window)
{
    return window.findChild<QPlainTextEdit*>()->toPlainText().split(QLatin1Char('\n'));
}

} // namespace

class TestGallery : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void anExecutedDialogLogsItsCallbacksAndItsResult()
    {
        GalleryWindow window;
        QString title;
        whenModal([&](QMessageBox& box) {
            title = box.windowTitle();
            box.button(QMessageBox::Discard)->click();
        });
        click(window, QStringLiteral("exec()"));
        QCOMPARE(title, QStringLiteral("Question"));
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
        click(window, QStringLiteral("open()"));
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(box);
        box->button(QMessageBox::Save)->click();
        QCOMPARE(logOf(window),
                 QStringList({QStringLiteral("open() of \"Question\""), QStringLiteral("clicked: Save")}));
    }

    void closingTheGalleryInsideTheLoopIsSafe()
    {
        auto window = std::make_unique<GalleryWindow>();
        click(*window, QStringLiteral("parented to this window"));
        whenModal([&](QMessageBox&) { window.reset(); });
        click(*window, QStringLiteral("exec()"));
        QVERIFY(!window);
    }

    void everyPageAndEveryDialogIsPainted()
    {
        const QTemporaryDir directory;
        GalleryWindow window;
        QVERIFY(writePictures(window, directory.filePath(QStringLiteral("new"))));

        QStringList expected = {
            QStringLiteral("dialog-critical.png"),
            QStringLiteral("dialog-information.png"),
            QStringLiteral("dialog-question.png"),
            QStringLiteral("dialog-warning.png"),
            QStringLiteral("dialogs.png"),
        };
        for (const GalleryPage* page : window.pages())
            expected.append(QStringLiteral("page-%1.png").arg(page->name()));
        const QDir written(directory.filePath(QStringLiteral("new")));
        QCOMPARE(written.entryList(QDir::Files, QDir::Name), expected);
        for (const QString& fileName : expected) {
            const QImage image(written.filePath(fileName));
            QVERIFY2(image.width() > 200 && image.height() > 100, qPrintable(fileName));
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
