#include <Quillet/PainterPath.h>

#include <QtGui/QPainter>

#include <cstring>

namespace {

using Transform = lumo::AffineTransform<double>;

/// By its bytes: what differs from the identity in nothing but the sign of a zero is mapped by arithmetic.
bool isIdentity(const Transform& transform)
{
    const auto& matrix = transform.matrix();
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
    return std::memcmp(matrix.data(), Transform::mg_identity.data(), 16 * sizeof(double)) == 0;
}

/// Maps all points of \a path, control points included, which keeps curves exact under an affine map.
void mapElements(QPainterPath& path, const Transform& transform)
{
    const auto& matrix = transform.matrix();
    const double* const m = matrix.data();
    // A point lies in the plane z = 0. The products stay: they are not 0 where the matrix is not finite.
    const double xOfZ = m[8] * 0.0;
    const double yOfZ = m[9] * 0.0;

    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element point = path.elementAt(i);
        path.setElementPositionAt(i,
                                  m[0] * point.x + m[4] * point.y + xOfZ + m[12],
                                  m[1] * point.x + m[5] * point.y + yOfZ + m[13]);
    }
}

} // namespace

namespace Quillet {

PainterPath::PainterPath(const QPainterPath& path,
                         const QPen& pen,
                         const QBrush& brush,
                         const lumo::AffineTransform<double>& transform)
    : m_path(path), m_pen(pen), m_brush(brush), m_transform(transform)
{
}

const QPainterPath& PainterPath::getPath() const
{
    return m_path;
}

void PainterPath::setPath(const QPainterPath& path)
{
    m_path = path;
    m_transformedPath = QPainterPath();
}

const QPen& PainterPath::getPen() const
{
    return m_pen;
}

void PainterPath::setPen(const QPen& pen)
{
    m_pen = pen;
}

const QBrush& PainterPath::getBrush() const
{
    return m_brush;
}

void PainterPath::setBrush(const QBrush& brush)
{
    m_brush = brush;
}

const lumo::AffineTransform<double>& PainterPath::getTransform() const
{
    return m_transform;
}

void PainterPath::setTransform(const lumo::AffineTransform<double>& transform)
{
    m_transform = transform;
    m_transformedPath = QPainterPath();
}

void PainterPath::draw(QPainter& painter) const
{
    const bool strokes = m_pen.color().isValid();
    const bool fills = m_brush.color().isValid();

    if (strokes && fills) {
        painter.setPen(m_pen);
        painter.setBrush(m_brush);
        painter.drawPath(getTransformedPath());
    } else if (strokes) {
        painter.strokePath(getTransformedPath(), m_pen);
    } else if (fills) {
        painter.fillPath(getTransformedPath(), m_brush);
    }
}

const QPainterPath& PainterPath::getTransformedPath() const
{
    if (m_transformedPath.isEmpty()) {
        // Half mapped, the path must not stay here when memory runs out.
        QPainterPath mapped = m_path;
        if (!isIdentity(m_transform))
            mapElements(mapped, m_transform);
        m_transformedPath.swap(mapped);
    }
    return m_transformedPath;
}

bool PainterPath::contains(const QPointF& point) const
{
    return getTransformedPath().contains(point);
}

} // namespace Quillet
