#pragma once

// The host's own transform.

#include <Eigen/Core>

#include <optional>

namespace lumo {

template <typename T>
class AffineTransform
{
public:
    using Matrix = Eigen::Matrix<T, 4, 4, Eigen::DontAlign>;

    static constexpr bool belongs_to_the_host = true;
    static const Matrix mg_identity;

    AffineTransform() : m_matrix(Matrix::Identity()), m_inverse(Matrix(Matrix::Identity())) {}
    explicit AffineTransform(const Eigen::Matrix<T, 4, 4>& matrix) : m_matrix(matrix) {}

    const Matrix& matrix() const { return m_matrix; }

private:
    Matrix m_matrix;
    std::optional<Matrix> m_inverse;
};

template <typename T>
const typename AffineTransform<T>::Matrix AffineTransform<T>::mg_identity = Matrix::Identity();

} // namespace lumo
