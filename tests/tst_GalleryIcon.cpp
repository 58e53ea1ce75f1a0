#include "TestCase.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <QtCore/QFile>

// The gallery's icon for desktops is drawn within what the library itself reads.
class TestGalleryIcon : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void everyPathIsReadAsAShape()
    {
        QFile file(fileName());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const int paths = file.readAll().count("<path");
        QVERIFY(paths > 0);

        Quillet::PainterPathContainer icon;
        QVERIFY(Quillet::parseSvgFile(fileName(), icon));
        QCOMPARE(static_cast<int>(icon.getPaths().size()), paths);
    }

    void theShapesLieInTheViewBox()
    {
        Quillet::PainterPathContainer icon;
        QVERIFY(Quillet::parseSvgFile(fileName(), icon));
        for (const auto& shape : icon.getPaths()) {
            const qreal margin = shape->getPen().widthF() / 2;
            const QRectF box = shape->getPath().boundingRect().adjusted(-margin, -margin, margin, margin);
            QVERIFY(QRectF(0, 0, 128, 128).contains(box));
        }
    }

private:
    static QString fileName() { return QStringLiteral(GALLERY_ICON_FILE); }
};

QUILLET_TEST_MAIN(TestGalleryIcon)
#include "tst_GalleryIcon.moc"
