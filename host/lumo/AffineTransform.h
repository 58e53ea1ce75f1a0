#pragma once

#include <Eigen/Core>

#include <cstring>
#include <optional>

/// \file
/// Stand-in for a host application's affine transform.

namespace lumo {

/// An affine map of space: a 4 x 4 matrix and, where it is known, its inverse.
///
/// The matrix is stored column by column and multiplies column vectors from the left, so the
/// translation stands at the indices 12, 13 and 14 of matrix().data(). Copying copies the inverse too;
/// an absent inverse stays absent.
template <typename T>
class AffineTransform
{
public:
    /// Stored unaligned: objects that hold a transform then need no over-aligned operator new, which
    /// C++ run-time libraries of older systems lack.
    using Matrix = Eigen::Matrix<T, 4, 4, Eigen::ColMajor | Eigen::DontAlign>;

    /// A point of the plane z = 0.
    using Point = Eigen::Matrix<T, 2, 1, Eigen::ColMajor | Eigen::DontAlign>;

    /// The identity matrix. Compare matrices with it as raw memory; -0 counts as different from 0.
    static const Matrix mg_identity;

    /// The identity, with its inverse present.
    ///
    /// Does not read mg_identity, so that it is right in static initialisers as well.
    AffineTransform() : m_matrix(Matrix::Identity()), m_inverse(Matrix(Matrix::Identity())) {}

    /// The map with the given matrix. Its inverse is absent.
    explicit AffineTransform(const Eigen::Matrix<T, 4, 4>& matrix) : m_matrix(matrix) {}

    /// The whole map.
    const Matrix& matrix() const { return m_matrix; }

    /// The inverse of matrix(), or nothing where it was never computed.
    const std::optional<Matrix>& inverse() const { return m_inverse; }

    /// Maps \a point, taken as (x, y, 0, 1), without dividing by the resulting w.
    ///
    /// The identity returns the point as it is, so that not even an infinity or the sign of a zero
    /// changes.
    Point map(const Point& point) const
    {
        // Raw memory on purpose: -0 is not the identity's 0.
        // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
        if (std::memcmp(m_matrix.data(), mg_identity.data(), sizeof(T) * 16) == 0)
            return point;

        const T* m = m_matrix.data();
        const T x = point.x();
        const T y = point.y();
        const T z = T(0);
        return Point(m[0] * x + m[4] * y + m[8] * z + m[12], m[1] * x + m[5] * y + m[9] * z + m[13]);
    }

private:
    Matrix m_matrix;
    std::optional<Matrix> m_inverse;
};

template <typename T>
const typename AffineTransform<T>::Matrix AffineTransform<T>::mg_identity = Matrix::Identity();

} // namespace lumo
