#pragma once

#include <Quillet/Export.h>

#include <QtGui/QBrush>
#include <QtGui/QPainterPath>
#include <QtGui/QPen>

#include <lumo/AffineTransform.h>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace Quillet {

/// A shape to draw and to hit: a path, the pen that strokes it, the brush that fills it, and the transform
/// that places it.
///
/// The path is given in path coordinates; drawing and hit-testing happen in drawing coordinates, to which the
/// transform maps. The mapped path is computed when it is first needed and kept until the path or the
/// transform changes. Because of that, even const calls must not run in two threads at once.
///
/// What switches stroke and fill on is the validity of a colour, not a style: a pen whose colour is invalid
/// (QColor::isValid()) does not stroke, whatever its style, and a brush whose colour is invalid does not
/// fill.
class QUILLET_EXPORT PainterPath
{
public:
    /// A shape with copies of the arguments.
    PainterPath(const QPainterPath& path,
                const QPen& pen,
                const QBrush& brush,
                const lumo::AffineTransform<double>& transform);

    /// The path in path coordinates.
    const QPainterPath& getPath() const;
    /// Replaces the path, with its fill rule.
    void setPath(const QPainterPath& path);

    /// What strokes the outline, if its colour is valid. Its width is in drawing coordinates: the transform
    /// maps the path, not the pen.
    const QPen& getPen() const;
    /// Replaces the pen.
    void setPen(const QPen& pen);

    /// What fills the area, if its colour is valid.
    const QBrush& getBrush() const;
    /// Replaces the brush.
    void setBrush(const QBrush& brush);

    /// The map from path coordinates to drawing coordinates.
    const lumo::AffineTransform<double>& getTransform() const;

    /// Replaces the transform; it is not combined with the one before.
    void setTransform(const lumo::AffineTransform<double>& transform);

    /// Draws the shape: stroke and fill, one of them, or nothing, as the colours say.
    ///
    /// The painter's state is neither saved nor restored. A shape with both stroke and fill leaves its pen
    /// and brush set; the other shapes leave the painter as it was.
    void draw(QPainter& painter) const;

    /// The path in drawing coordinates, with its fill rule. The reference is live: it shows the mapped path
    /// until the next change of path or transform, and is valid as long as the shape.
    const QPainterPath& getTransformedPath() const;

    /// Whether \a point, in drawing coordinates, lies in the area of the path by its fill rule. The stroke
    /// plays no part, and a shape without a fill is hit as well.
    bool contains(const QPointF& point) const;

private:
    QPainterPath m_path;
    QPen m_pen;
    QBrush m_brush;
    lumo::AffineTransform<double> m_transform;
    mutable QPainterPath m_transformedPath; // empty: not computed yet
};

} // namespace Quillet
