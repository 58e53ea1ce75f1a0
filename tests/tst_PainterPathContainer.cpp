#include "TestCase.h"

#include <Quillet/PainterPathContainer.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>

#include <type_traits>

using Quillet::PainterPath;
using Quillet::PainterPathContainer;
using Transform = lumo::AffineTransform<double>;

namespace {

std::unique_ptr<PainterPath>
square(double x, double y, const QColor& color, const Transform& transform = Transform())
{
    QPainterPath path;
    path.addRect(x, y, 10, 10);
    return std::make_unique<PainterPath>(path, QPen(QColor()), QBrush(color), transform);
}

Transform translation(double x, double y)
{
    Eigen::Matrix<double, 4, 4> matrix = Eigen::Matrix<double, 4, 4>::Identity();
    matrix(0, 3) = x;
    matrix(1, 3) = y;
    return Transform(matrix);
}

QImage draw(const PainterPathContainer& container)
{
    QImage image(40, 40, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    container.draw(painter);
    return image;
}

} // namespace

class TestPainterPathContainer : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void cannotBeCopied()
    {
        QVERIFY(!std::is_copy_constructible<PainterPathContainer>::value);
        QVERIFY(!std::is_copy_assignable<PainterPathContainer>::value);
    }

    void anEmptyContainerDrawsNothingAndContainsNothing()
    {
        const PainterPathContainer container;
        QImage white(40, 40, QImage::Format_RGB32);
        white.fill(Qt::white);
        QVERIFY(container.getPaths().empty());
        QCOMPARE(draw(container), white);
        QVERIFY(!container.contains(QPointF(0, 0)));
    }

    void shapesAreOwnedAndKeptInOrder()
    {
        PainterPathContainer container;
        auto first = square(0, 0, Qt::red);
        const PainterPath* const address = first.get();
        container.appendPath(std::move(first));
        container.appendPath(square(5, 5, Qt::blue));
        QVERIFY(!first); // NOLINT(bugprone-use-after-move): that it was taken is what is asked
        QCOMPARE(container.getPaths().size(), std::size_t(2));
        QCOMPARE(container.getPaths()[0].get(), address);
        QCOMPARE(container.getPaths()[1]->getBrush().color(), QColor(Qt::blue));
    }

    void laterShapesPaintOverEarlierOnes()
    {
        PainterPathContainer container;
        container.appendPath(square(0, 0, Qt::red));
        container.appendPath(square(5, 5, Qt::blue));
        QCOMPARE(draw(container).pixelColor(2, 2), QColor(Qt::red));
        QCOMPARE(draw(container).pixelColor(7, 7), QColor(Qt::blue));
    }

    void aTransformReplacesThatOfEveryShape()
    {
        PainterPathContainer container;
        container.appendPath(square(0, 0, Qt::red, translation(1, 1)));
        container.appendPath(square(0, 0, Qt::blue, translation(2, 2)));
        container.setTransform(translation(20, 10));
        for (const auto& shape : container.getPaths())
            QVERIFY(shape->getTransform().matrix() == translation(20, 10).matrix());
        QCOMPARE(draw(container).pixelColor(25, 15), QColor(Qt::blue));

        container.appendPath(square(0, 0, Qt::green));
        QCOMPARE(draw(container).pixelColor(5, 5), QColor(Qt::green));
    }

    void aPointIsContainedWhereAnyShapeContainsIt()
    {
        PainterPathContainer container;
        container.appendPath(square(0, 0, Qt::red));
        container.appendPath(square(20, 20, Qt::blue));
        container.appendPath(square(40, 40, Qt::green));
        QVERIFY(container.contains(QPointF(5, 5)));
        QVERIFY(container.contains(QPointF(45, 45)));
        QVERIFY(container.contains(QPointF(25, 25)));
        QVERIFY(!container.contains(QPointF(15, 15)));
        container.setTransform(translation(10, 10));
        QVERIFY(container.contains(QPointF(15, 15)));
        QVERIFY(!container.contains(QPointF(5, 5)));
    }
};

QUILLET_TEST_MAIN(TestPainterPathContainer)
#include "tst_PainterPathContainer.moc"
