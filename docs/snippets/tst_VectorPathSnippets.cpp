#include "TestCase.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtGui/QPainter>

class TestVectorPathSnippets : public TestCase
{
    Q_OBJECT

    QTemporaryDir m_directory;
    QString m_fileName = m_directory.filePath(QStringLiteral("harbour.svg"));

private Q_SLOTS:
    void initTestCase()
    {
        QFile file(m_fileName);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<svg><path d='M 0 0 H 10 V 10 H 0 Z' fill='red'/></svg>");
        file.close();
        QVERIFY(QDir::setCurrent(m_directory.path()));
    }

    void cleanupTestCase() { QVERIFY(QDir::setCurrent(QDir::rootPath())); }

    void aFileIsDrawn()
    {
        QImage image(20, 20, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        //! [draw]
        Quillet::PainterPathContainer picture;
        if (Quillet::parseSvgFile(QStringLiteral("harbour.svg"), picture))
            picture.draw(painter); // a QPainter on whatever is to show it
        //! [draw]
        QCOMPARE(image.pixelColor(5, 5), QColor(Qt::red));
        QCOMPARE(image.pixelColor(15, 15), QColor(Qt::white));
    }

    void aPictureIsPlacedAndHit()
    {
        const QString fileName = m_fileName;
        QImage image(20, 20, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        Eigen::Matrix4d moved = Eigen::Matrix4d::Identity();
        moved(0, 3) = 10;
        const lumo::AffineTransform<double> transform(moved);
        const QPointF mousePosition(15, 5);
        //! [place-and-hit]
        Quillet::PainterPathContainer picture;
        if (!Quillet::parseSvgFile(fileName, picture))
            qWarning("not all of the picture could be read"); // what was read stays, and can be drawn
        picture.setTransform(transform); // a lumo::AffineTransform<double>, from the picture to the widget
        picture.draw(painter);
        const bool hit = picture.contains(mousePosition);
        //! [place-and-hit]
        QVERIFY(hit);
        QCOMPARE(image.pixelColor(15, 5), QColor(Qt::red));
        QCOMPARE(image.pixelColor(5, 5), QColor(Qt::white));
    }

    // The guide's table of flags.
    void flagsOfArcsMustStandApart_data()
    {
        QTest::addColumn<QString>("data");
        QTest::addColumn<bool>("draws");
        QTest::addColumn<QPointF>("end");
        QTest::newRow("apart") << QStringLiteral("M0 5a5 5 0 1 1 10 0") << true << QPointF(10, 5);
        QTest::newRow("together") << QStringLiteral("M0 5a5 5 0 1110 0") << false << QPointF(0, 5);
        QTest::newRow("two arcs together")
            << QStringLiteral("M0 5a5 5 0 1110 0 5 5 0 11-10 0") << true << QPointF(5, 10);
        QTest::newRow("decimals") << QStringLiteral("M0 5a5 5 0 01.5.5") << false << QPointF(0, 5);
    }

    void flagsOfArcsMustStandApart()
    {
        QFETCH(QString, data);
        QFETCH(bool, draws);
        QFETCH(QPointF, end);
        Quillet::PainterPathContainer picture;
        QVERIFY(Quillet::parseSvg(QStringLiteral("<svg><path d='%1'/></svg>").arg(data), picture));
        const QPainterPath& path = picture.getPaths().front()->getPath();
        QCOMPARE(path.elementCount() > 1, draws);
        QCOMPARE(path.currentPosition(), end);
    }
};

QUILLET_TEST_MAIN(TestVectorPathSnippets)
#include "tst_VectorPathSnippets.moc"
