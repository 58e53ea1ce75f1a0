#include "VectorView.h"

#include <QtCore/QtMath>
#include <QtGui/QTransform>

#include <cmath>

namespace {

constexpr double largest_zoom = 200;

/// A document may hold any number that a double can, so the width of its bounds may be infinite.
bool isUsable(const QRectF& bounds)
{
    return std::isfinite(bounds.right()) && std::isfinite(bounds.bottom());
}

/// 1 for a picture without any extent, such as a single point.
double fittingScale(const QSizeF& size, const QSizeF& target)
{
    const double largest = qMax(size.width() / target.width(), size.height() / target.height());
    const double scale = 1 / largest;
    return std::isnormal(scale) ? scale : 1;
}

} // namespace

void VectorView::fit(const QRectF& bounds, const QRectF& target)
{
    const QTransform rotation = QTransform().rotate(m_degrees);
    const QRectF turned = isUsable(bounds) ? rotation.mapRect(bounds) : QRectF();
    m_fittedScale = fittingScale(turned.size(), target.size());
    m_scale = m_fittedScale;
    m_origin = target.center() - turned.center() * m_scale;
}

void VectorView::pan(const QPointF& distance)
{
    m_origin += distance;
}

void VectorView::zoom(double factor, const QPointF& fixed)
{
    const double before = m_scale;
    m_scale = qBound(m_fittedScale / largest_zoom, m_scale * factor, m_fittedScale * largest_zoom);
    m_origin = fixed + (m_origin - fixed) * (m_scale / before);
}

void VectorView::setRotation(double degrees, const QPointF& fixed)
{
    const QTransform turn = QTransform().rotate(degrees - m_degrees);
    m_origin = fixed + turn.map(m_origin - fixed);
    m_degrees = degrees;
}

lumo::AffineTransform<double> VectorView::transform() const
{
    const double radians = qDegreesToRadians(m_degrees);
    const double cosine = m_scale * std::cos(radians);
    const double sine = m_scale * std::sin(radians);

    Eigen::Matrix4d matrix = Eigen::Matrix4d::Identity();
    matrix.topLeftCorner<2, 2>() << cosine, -sine, sine, cosine;
    matrix.topRightCorner<2, 1>() << m_origin.x(), m_origin.y();
    return lumo::AffineTransform<double>(matrix);
}
