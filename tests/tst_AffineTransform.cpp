#include "TestCase.h"

#include <lumo/AffineTransform.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <type_traits>

using Transform = lumo::AffineTransform<double>;

namespace {

// Rows are written as on paper.
Transform someTransform()
{
    Eigen::Matrix<double, 4, 4> matrix;
    matrix << 2, 3, 100, 10, //
        5, 7, 100, 20,       //
        0, 0, 1, 30,         //
        4, 4, 4, 9;
    return Transform(matrix);
}

} // namespace

class TestAffineTransform : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theDefaultIsTheIdentityWithItsInversePresent()
    {
        const Transform transform;
        QVERIFY(transform.matrix() == Transform::mg_identity);
        QVERIFY(transform.inverse().has_value());
        QVERIFY(*transform.inverse() == Transform::mg_identity);
    }

    void theIdentityMatrixHasOnesAtItsDiagonalIndices()
    {
        for (int i = 0; i < 16; ++i)
            QCOMPARE(Transform::mg_identity.data()[i], i % 5 == 0 ? 1.0 : 0.0);
    }

    void aTransformOfAMatrixHasNoInverse()
    {
        QVERIFY(!someTransform().inverse().has_value());
        QVERIFY(!Transform(Eigen::Matrix<double, 4, 4>::Identity()).inverse().has_value());
        QVERIFY((!std::is_convertible<Eigen::Matrix<double, 4, 4>, Transform>::value));
    }

    void theMatrixIsStoredColumnByColumn()
    {
        const Transform transform = someTransform();
        QCOMPARE(transform.matrix().data()[12], 10.0);
        QCOMPARE(transform.matrix().data()[13], 20.0);
        QCOMPARE(transform.matrix().data()[14], 30.0);
        QCOMPARE(transform.matrix().data()[1], 5.0);
        QCOMPARE(transform.matrix()(0, 1), 3.0);
    }

    void copiesCarryTheInverseOnlyWhereThereIsOne()
    {
        const Transform identity;
        const Transform other = someTransform();
        Transform copy(identity);
        QVERIFY(copy.inverse().has_value());
        copy = other;
        QVERIFY(!copy.inverse().has_value());
        QVERIFY(copy.matrix() == other.matrix());
        copy = identity;
        QVERIFY(copy.inverse().has_value());
    }

    void aPointIsMappedWithoutDivision()
    {
        const Transform::Point mapped = someTransform().map({1, 10});
        QCOMPARE(mapped.x(), 2.0 * 1 + 3 * 10 + 10);
        QCOMPARE(mapped.y(), 5.0 * 1 + 7 * 10 + 20);
    }

    void anInfiniteThirdColumnMakesThePointNotANumber()
    {
        Eigen::Matrix<double, 4, 4> matrix = Eigen::Matrix<double, 4, 4>::Identity();
        matrix(0, 2) = std::numeric_limits<double>::infinity();
        QVERIFY(std::isnan(Transform(matrix).map({1, 1}).x()));
        QVERIFY(!std::isnan(Transform(matrix).map({1, 1}).y()));
        matrix(1, 2) = std::numeric_limits<double>::infinity();
        QVERIFY(std::isnan(Transform(matrix).map({1, 1}).y()));
    }

    void theIdentityReturnsPointsAsTheyAre()
    {
        // Arithmetic would make these NaN and +0.
        QCOMPARE(Transform().map({std::numeric_limits<double>::infinity(), 5}).y(), 5.0);
        const Transform::Point zero = Transform().map({-0.0, -0.0});
        QCOMPARE(zero.x(), 0.0);
        QVERIFY(std::signbit(zero.x()));
        QVERIFY(std::signbit(zero.y()));
    }

    void theIdentityIsRecognisedByItsBytes()
    {
        Eigen::Matrix<double, 4, 4> matrix = Eigen::Matrix<double, 4, 4>::Identity();
        matrix(3, 0) = -0.0;
        // 0 * infinity: the arithmetic was done.
        QVERIFY(std::isnan(Transform(matrix).map({1, std::numeric_limits<double>::infinity()}).x()));
    }

    void needsNoOverAlignedAllocation()
    {
        QVERIFY(alignof(Transform) <= alignof(std::max_align_t));
        QVERIFY(alignof(Transform) <= alignof(double));
    }
};

QUILLET_TEST_MAIN(TestAffineTransform)
#include "tst_AffineTransform.moc"
