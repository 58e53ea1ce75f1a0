#include "PathComparison.h"
#include "TestCase.h"

#include <Quillet/PainterPath.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>

#include <cmath>
#include <limits>

using Quillet::PainterPath;
using Transform = lumo::AffineTransform<double>;

namespace {

QPen noPen()
{
    return {QColor()};
}

QBrush noBrush()
{
    return {QColor()};
}

QPainterPath square(double x, double y, double size)
{
    QPainterPath path;
    path.addRect(x, y, size, size);
    return path;
}

Transform translation(double x, double y)
{
    Eigen::Matrix<double, 4, 4> matrix = Eigen::Matrix<double, 4, 4>::Identity();
    matrix(0, 3) = x;
    matrix(1, 3) = y;
    return Transform(matrix);
}

Transform affine(double xx, double xy, double yx, double yy, double x, double y)
{
    Eigen::Matrix<double, 4, 4> matrix = Eigen::Matrix<double, 4, 4>::Identity();
    matrix(0, 0) = xx;
    matrix(0, 1) = xy;
    matrix(1, 0) = yx;
    matrix(1, 1) = yy;
    matrix(0, 3) = x;
    matrix(1, 3) = y;
    return Transform(matrix);
}

// What the shape paints on white.
QImage draw(const PainterPath& shape)
{
    QImage image(40, 40, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    shape.draw(painter);
    return image;
}

// The data that copies of a path share until one of them is changed.
const void* dataOf(const QPainterPath& path)
{
    return *reinterpret_cast<void* const*>(&path);
}

// How many paths share it: what the data begins with.
int ownersOf(const QPainterPath& path)
{
    return static_cast<const QAtomicInt*>(dataOf(path))->loadRelaxed();
}

} // namespace

class TestPainterPath : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theConstructorCopiesAllFourParts()
    {
        const PainterPath shape(square(1, 2, 3), QPen(Qt::red, 4), QBrush(Qt::blue), translation(5, 6));
        QCOMPARE(shape.getPath(), square(1, 2, 3));
        QCOMPARE(shape.getPen(), QPen(Qt::red, 4));
        QCOMPARE(shape.getBrush(), QBrush(Qt::blue));
        QVERIFY(shape.getTransform().matrix() == translation(5, 6).matrix());
        QVERIFY(!shape.getTransform().inverse().has_value());
    }

    void settersReplaceTheirPart()
    {
        PainterPath shape(square(1, 2, 3), noPen(), noBrush(), Transform());
        shape.setPath(square(4, 5, 6));
        shape.setPen(QPen(Qt::red));
        shape.setBrush(QBrush(Qt::blue));
        shape.setTransform(translation(1, 1));
        QCOMPARE(shape.getPath(), square(4, 5, 6));
        QCOMPARE(shape.getPen(), QPen(Qt::red));
        QCOMPARE(shape.getBrush(), QBrush(Qt::blue));
        QVERIFY(shape.getTransform().matrix() == translation(1, 1).matrix());
        shape.setTransform(Transform());
        QVERIFY(shape.getTransform().inverse().has_value());
    }

    // Drawing

    void invalidColoursDrawNothing()
    {
        const PainterPath shape(square(5, 5, 20), noPen(), noBrush(), Transform());
        QImage white(40, 40, QImage::Format_RGB32);
        white.fill(Qt::white);
        QCOMPARE(draw(shape), white);
    }

    void whatIsDrawnFollowsTheValidityOfTheColours_data()
    {
        QTest::addColumn<QPen>("pen");
        QTest::addColumn<QBrush>("brush");
        QTest::addColumn<QColor>("outline");
        QTest::addColumn<QColor>("area");
        const QColor white(Qt::white);
        QTest::newRow("stroke and fill")
            << QPen(Qt::red, 4) << QBrush(Qt::blue) << QColor(Qt::red) << QColor(Qt::blue);
        QTest::newRow("stroke only") << QPen(Qt::red, 4) << noBrush() << QColor(Qt::red) << white;
        QTest::newRow("fill only") << noPen() << QBrush(Qt::blue) << white << QColor(Qt::blue);
        QTest::newRow("fill of a brush without style, colour valid")
            << noPen() << QBrush(Qt::blue, Qt::NoBrush) << white << white;
    }

    void whatIsDrawnFollowsTheValidityOfTheColours()
    {
        QFETCH(QPen, pen);
        QFETCH(QBrush, brush);
        QFETCH(QColor, outline);
        QFETCH(QColor, area);
        const QImage image = draw(PainterPath(square(10, 10, 20), pen, brush, Transform()));
        QCOMPARE(image.pixelColor(9, 20), outline);
        QCOMPARE(image.pixelColor(20, 20), area);
    }

    void strokeAndFillLeaveThePainterWithPenAndBrush()
    {
        QImage image(10, 10, QImage::Format_RGB32);
        QPainter painter(&image);
        PainterPath(square(1, 1, 5), QPen(Qt::red, 4), QBrush(Qt::blue), Transform()).draw(painter);
        QCOMPARE(painter.pen(), QPen(Qt::red, 4));
        QCOMPARE(painter.brush(), QBrush(Qt::blue));
    }

    void stylesDoNotDecideWhatIsDrawn_data()
    {
        QTest::addColumn<QPen>("pen");
        QTest::addColumn<QBrush>("brush");
        QTest::newRow("a pen without a line") << QPen(Qt::red, 4, Qt::NoPen) << QBrush(Qt::blue);
        QTest::newRow("a brush without a pattern") << QPen(Qt::red, 4) << QBrush(Qt::blue, Qt::NoBrush);
    }

    void stylesDoNotDecideWhatIsDrawn()
    {
        QFETCH(QPen, pen);
        QFETCH(QBrush, brush);
        QImage image(10, 10, QImage::Format_RGB32);
        QPainter painter(&image);
        PainterPath(square(1, 1, 5), pen, brush, Transform()).draw(painter);
        QCOMPARE(painter.pen(), pen);
        QCOMPARE(painter.brush(), brush);
    }

    void strokeOrFillAloneLeavesThePainterAsItWas_data()
    {
        QTest::addColumn<QPen>("pen");
        QTest::addColumn<QBrush>("brush");
        QTest::newRow("stroke") << QPen(Qt::red, 4) << noBrush();
        QTest::newRow("fill") << noPen() << QBrush(Qt::blue);
        QTest::newRow("neither") << noPen() << noBrush();
    }

    void strokeOrFillAloneLeavesThePainterAsItWas()
    {
        QFETCH(QPen, pen);
        QFETCH(QBrush, brush);
        QImage image(10, 10, QImage::Format_RGB32);
        QPainter painter(&image);
        painter.setPen(QPen(Qt::green, 3));
        painter.setBrush(QBrush(Qt::yellow));
        PainterPath(square(1, 1, 5), pen, brush, Transform()).draw(painter);
        QCOMPARE(painter.pen(), QPen(Qt::green, 3));
        QCOMPARE(painter.brush(), QBrush(Qt::yellow));
    }

    void aShapeIsDrawnWhereItsTransformPutsIt()
    {
        const QImage image =
            draw(PainterPath(square(0, 0, 10), noPen(), QBrush(Qt::blue), translation(20, 10)));
        QCOMPARE(image.pixelColor(5, 5), QColor(Qt::white));
        QCOMPARE(image.pixelColor(25, 15), QColor(Qt::blue));
    }

    // The transformed path

    void theIdentityGivesThePathElementForElement()
    {
        QPainterPath path = square(1, 2, 3);
        path.cubicTo(1, 2, 3, 4, -0.0, 6);
        path.setFillRule(Qt::WindingFill);
        const PainterPath shape(path, noPen(), noBrush(), Transform());
        QCOMPARE(firstDifference(shape.getTransformedPath(), path), QString());
        QCOMPARE(dataOf(shape.getTransformedPath()), dataOf(shape.getPath()));
    }

    void allElementsAreMappedAndTheFillRuleComesAlong()
    {
        QPainterPath path;
        path.moveTo(1, 2);
        path.lineTo(3, 4);
        path.cubicTo(5, 6, 7, 8, 9, 10);
        path.setFillRule(Qt::WindingFill);
        const PainterPath shape(path, noPen(), noBrush(), affine(2, 3, 5, 7, 11, 13));

        QPainterPath expected;
        const auto mapped = [](double x, double y) {
            return QPointF(2 * x + 3 * y + 11, 5 * x + 7 * y + 13);
        };
        expected.moveTo(mapped(1, 2));
        expected.lineTo(mapped(3, 4));
        expected.cubicTo(mapped(5, 6), mapped(7, 8), mapped(9, 10));
        expected.setFillRule(Qt::WindingFill);
        QCOMPARE(firstDifference(shape.getTransformedPath(), expected), QString());
        QCOMPARE(firstDifference(shape.getPath(), path), QString());
    }

    void pointsAreMappedAsTheHostsTransformMapsThem()
    {
        QPainterPath path;
        path.moveTo(0.1, -0.3);
        for (int i = 0; i < 1000; ++i)
            path.lineTo(std::sin(i) * 1e5, std::cos(i) / 7);
        Eigen::Matrix<double, 4, 4> matrix;
        matrix << 0.1, 1.7, 3, 1e-9, //
            -0.7, 1e5, 5, 1.1,       //
            0, 0, 1, 2,              //
            3, 4, 5, 6;
        const Transform transform(matrix);
        const PainterPath shape(path, noPen(), noBrush(), transform);
        QPainterPath expected = path;
        for (int i = 0; i < path.elementCount(); ++i) {
            const Transform::Point mapped = transform.map({path.elementAt(i).x, path.elementAt(i).y});
            expected.setElementPositionAt(i, mapped.x(), mapped.y());
        }
        QCOMPARE(firstDifference(shape.getTransformedPath(), expected), QString());
    }

    void anInfiniteThirdColumnIsNotLeftOut()
    {
        Eigen::Matrix<double, 4, 4> matrix = Eigen::Matrix<double, 4, 4>::Identity();
        matrix(0, 2) = std::numeric_limits<double>::infinity();
        const PainterPath shape(square(0, 0, 1), noPen(), noBrush(), Transform(matrix));
        QVERIFY(std::isnan(shape.getTransformedPath().elementAt(0).x));
        QCOMPARE(shape.getTransformedPath().elementAt(0).y, 0.0);
    }

    void theIdentityIsRecognisedByItsBytes()
    {
        // 1 * -0 + 0 * 0 is +0, so arithmetic shows.
        QPainterPath path;
        path.moveTo(-0.0, 0.0);
        path.lineTo(1, 1);
        Eigen::Matrix<double, 4, 4> matrix = Eigen::Matrix<double, 4, 4>::Identity();
        QVERIFY(std::signbit(
            PainterPath(path, noPen(), noBrush(), Transform(matrix)).getTransformedPath().elementAt(0).x));
        matrix(3, 0) = -0.0;
        QVERIFY(!std::signbit(
            PainterPath(path, noPen(), noBrush(), Transform(matrix)).getTransformedPath().elementAt(0).x));
    }

    void aTransformReplacesTheOneBefore()
    {
        PainterPath shape(square(0, 0, 1), noPen(), noBrush(), translation(1, 1));
        shape.getTransformedPath();
        shape.setTransform(translation(10, 20));
        QCOMPARE(shape.getTransformedPath(), square(10, 20, 1));
        shape.setTransform(Transform());
        QCOMPARE(shape.getTransformedPath(), square(0, 0, 1));
    }

    void theMappedPathIsKeptUntilPathOrTransformChange()
    {
        PainterPath shape(square(0, 0, 10), QPen(Qt::red), QBrush(Qt::blue), translation(3, 4));
        draw(shape);
        // Held, so that a new one could not get its place in memory.
        const QPainterPath mapped = shape.getTransformedPath();
        draw(shape);
        shape.contains(QPointF(5, 5));
        shape.setPen(QPen(Qt::green));
        QCOMPARE(dataOf(shape.getTransformedPath()), dataOf(mapped));
        shape.setBrush(QBrush(Qt::yellow));
        QCOMPARE(dataOf(shape.getTransformedPath()), dataOf(mapped));
        draw(shape);
        QCOMPARE(dataOf(shape.getTransformedPath()), dataOf(mapped));

        shape.setPath(square(1, 1, 2));
        QCOMPARE(shape.getTransformedPath(), square(4, 5, 2));
        shape.setTransform(translation(0, 1));
        QCOMPARE(shape.getTransformedPath(), square(1, 2, 2));
    }

    void aShapeThatDrawsNothingMapsNothing()
    {
        // Under the identity the mapped path shares the data of the path, so the owners can be counted.
        const QPainterPath path = square(0, 0, 10);
        const PainterPath shape(path, noPen(), noBrush(), Transform());
        const int owners = ownersOf(path);
        draw(shape);
        QCOMPARE(ownersOf(path), owners);
        shape.getTransformedPath();
        QCOMPARE(ownersOf(path), owners + 1);
    }

    void aPathOfOneMoveIsMappedEachTime()
    {
        QPainterPath path;
        path.moveTo(1, 2);
        const PainterPath shape(path, noPen(), noBrush(), translation(3, 4));
        QCOMPARE(QPointF(shape.getTransformedPath().elementAt(0)), QPointF(4, 6));
        QCOMPARE(QPointF(shape.getTransformedPath().elementAt(0)), QPointF(4, 6));
    }

    void anEmptyPathStaysEmpty()
    {
        const PainterPath shape(QPainterPath(), QPen(Qt::red), QBrush(Qt::blue), translation(3, 4));
        draw(shape);
        QVERIFY(shape.getTransformedPath().isEmpty());
        QVERIFY(!shape.contains(QPointF(3, 4)));
    }

    // Hit-testing

    void containsAsksForTheAreaInDrawingCoordinates()
    {
        const PainterPath shape(square(0, 0, 10), noPen(), noBrush(), translation(100, 0));
        QVERIFY(shape.contains(QPointF(105, 5)));
        QVERIFY(!shape.contains(QPointF(5, 5)));
    }

    void theStrokePlaysNoPart()
    {
        const PainterPath shape(square(10, 10, 10), QPen(Qt::red, 8), noBrush(), Transform());
        QVERIFY(!shape.contains(QPointF(8, 15)));
        QVERIFY(shape.contains(QPointF(15, 15)));
    }

    void theFillRuleDecidesAboutHoles_data()
    {
        QTest::addColumn<Qt::FillRule>("rule");
        QTest::addColumn<bool>("hit");
        QTest::newRow("odd-even") << Qt::OddEvenFill << false;
        QTest::newRow("winding, both contours in one direction") << Qt::WindingFill << true;
    }

    void theFillRuleDecidesAboutHoles()
    {
        QFETCH(Qt::FillRule, rule);
        QFETCH(bool, hit);
        QPainterPath path = square(0, 0, 30);
        path.addPath(square(10, 10, 10));
        path.setFillRule(rule);
        const PainterPath shape(path, noPen(), noBrush(), Transform());
        QCOMPARE(shape.contains(QPointF(15, 15)), hit);
        QVERIFY(shape.contains(QPointF(5, 5)));
    }
};

QUILLET_TEST_MAIN(TestPainterPath)
#include "tst_PainterPath.moc"
