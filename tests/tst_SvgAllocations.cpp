#include "Allocations.h"
#include "PathComparison.h"
#include "TestCase.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <QtCore/QTemporaryFile>

#include <memory>
#include <utility>

using Quillet::PainterPath;
using Quillet::PainterPathContainer;

namespace {

using Transform = lumo::AffineTransform<double>;

Transform translation(double x, double y)
{
    Eigen::Matrix4d matrix = Eigen::Matrix4d::Identity();
    matrix(0, 3) = x;
    matrix(1, 3) = y;
    return Transform(matrix);
}

std::unique_ptr<PainterPath> triangle()
{
    QPainterPath path;
    path.lineTo(3, 0);
    path.lineTo(0, 4);
    path.closeSubpath();
    return std::make_unique<PainterPath>(path, QPen(Qt::red), QBrush(Qt::blue), Transform());
}

// Where the shapes of \a actual are not the first ones of \a expected; empty if they are.
QString differenceFromPrefix(const PainterPathContainer& actual, const PainterPathContainer& expected)
{
    if (actual.getPaths().size() > expected.getPaths().size())
        return QStringLiteral("too many shapes");
    for (std::size_t i = 0; i < actual.getPaths().size(); ++i) {
        const PainterPath& a = *actual.getPaths()[i];
        const PainterPath& e = *expected.getPaths()[i];
        const QString difference = firstDifference(a.getPath(), e.getPath());
        if (!difference.isEmpty() || a.getPen() != e.getPen() || a.getBrush() != e.getBrush())
            return QStringLiteral("shape %1: %2").arg(i).arg(difference);
    }
    return {};
}

} // namespace

class TestSvgAllocations : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void eachFailingAllocationOfTheReaderThrowsAndLeavesWholeShapes_data()
    {
        QTest::addColumn<QString>("document");
        QTest::addColumn<bool>("fromFile");
        QTest::addColumn<int>("fewest"); // allocations that fail; without those of malloc()

        // The reader takes memory only for numbers that are no usual ones.
        const QString longNumber = QStringLiteral("0.") + QString(1200, QLatin1Char('7'));
        const QString numbers =
            QStringLiteral("<svg><path d='M %1 1 L 5 %1 A 5 6 %1 0 1 9 9'/></svg>").arg(longNumber);
        QTest::newRow("path data") << numbers << false << 1;

        const QString groups =
            QStringLiteral("<!DOCTYPE svg [<!ENTITY e '<g opacity=\"x\"/>'>]>"
                           "<svg fill='RED'><g stroke='blue' stroke-linecap='ROUND'>&e;"
                           "<path d='M0 0 L5 5'/>"
                           "<g stroke-linejoin='Bevel'><PATH stroke-width='2px' d='M1 0h7'/></g>"
                           "<path fill-rule='EvenOdd' stroke-miterlimit='3' d='M9 0v1'/></g>"
                           "<path d='M1 1h4v4'/></svg>");
        QTest::newRow("document") << groups << false << 10;
        QTest::newRow("file") << groups << true << 10;
    }

    void eachFailingAllocationOfTheReaderThrowsAndLeavesWholeShapes()
    {
        QFETCH(QString, document);
        QFETCH(bool, fromFile);
        QFETCH(int, fewest);
        QTemporaryFile file;
        QVERIFY(file.open());
        QCOMPARE(file.write(document.toUtf8()), qint64(document.toUtf8().size()));
        QVERIFY(file.flush());
        const QString fileName = file.fileName();
        PainterPathContainer whole;
        QVERIFY(Quillet::parseSvg(document, whole));

        bool accepted = false;
        const auto attempt = [&](std::size_t n) {
            PainterPathContainer container;
            accepted = false;
            const Outcome outcome = withFailingAllocation(n, Failing::Library, [&] {
                accepted = fromFile ? Quillet::parseSvgFile(fileName, container)
                                    : Quillet::parseSvg(document, container);
            });
            const QString difference = differenceFromPrefix(container, whole);
            if (!difference.isEmpty() || (accepted && container.getPaths().size() != whole.getPaths().size()))
                qCritical("failing allocation %zu: %s", n, qPrintable(difference));
            return outcome;
        };
        const FailureCount count = failEach(attempt);
        QVERIFY(accepted);
        QCOMPARE(count.leaks, 0);
        QCOMPARE(count.coped, 0);
        QVERIFY2(count.threw >= fewest, qPrintable(QString::number(count.threw)));
    }

    void aFailingAppendLeavesContainerAndShapeAsTheyWere()
    {
        const auto attempt = [](std::size_t n) {
            PainterPathContainer container;
            std::unique_ptr<PainterPath> shape = triangle();
            const PainterPath* const address = shape.get();
            const Outcome outcome =
                withFailingAllocation(n, Failing::Library, [&] { container.appendPath(std::move(shape)); });
            // NOLINTNEXTLINE(bugprone-use-after-move) it was moved only where that succeeded
            const bool isStillOurs = shape.get() == address && container.getPaths().empty();
            if (isStillOurs != (outcome == Outcome::Threw))
                qCritical("The shape is lost, or in two places");
            return outcome;
        };
        const FailureCount count = failEach(attempt);
        QCOMPARE(count.leaks, 0);
        QCOMPARE(count.threw, 1);
    }

    void aFailingTransformIsMadeUpFor()
    {
        // Operator new is called by QtGui here, in place of which the mapped path must not be half made. What
        // QtGui itself loses then is its own affair.
        const QPainterPath mapped = triangle()->getPath().translated(10, 20);
        const auto attempt = [&](std::size_t n) {
            PainterPathContainer container;
            container.appendPath(triangle());
            const PainterPath& shape = *container.getPaths().front();
            const Outcome outcome = withFailingAllocation(n, Failing::OperatorNew, [&] {
                container.setTransform(translation(10, 20));
                shape.getTransformedPath();
            });
            container.contains(QPointF(11, 21)); // fills the cache where it is empty
            const QString difference = firstDifference(shape.getTransformedPath(), mapped);
            if (!difference.isEmpty())
                qCritical("failing allocation %zu: %s", n, qPrintable(difference));
            return outcome;
        };
        QVERIFY(failEach(attempt).threw >= 1);
    }

    void copyingAShapeFailsWithoutALoss()
    {
        const auto attempt = [](std::size_t n) {
            const std::unique_ptr<PainterPath> shape = triangle();
            std::unique_ptr<PainterPath> copy;
            const Outcome outcome = withFailingAllocation(
                n, Failing::OperatorNew, [&] { copy = std::make_unique<PainterPath>(*shape); });
            const QString difference = copy ? firstDifference(copy->getPath(), shape->getPath()) : QString();
            if (bool(copy) != (outcome == Outcome::Succeeded) || !difference.isEmpty())
                qCritical("The copy is not the shape: %s", qPrintable(difference));
            return outcome;
        };
        const FailureCount count = failEach(attempt);
        QCOMPARE(count.leaks, 0);
        QCOMPARE(count.threw, 1);
    }
};

QUILLET_TEST_MAIN(TestSvgAllocations)
#include "tst_SvgAllocations.moc"
