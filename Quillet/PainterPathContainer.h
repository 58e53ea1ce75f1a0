#pragma once

#include <Quillet/Export.h>
#include <Quillet/PainterPath.h>

#include <memory>
#include <vector>

namespace Quillet {

/// An ordered list of shapes that is drawn, placed and hit as one picture; parseSvg() fills it.
///
/// The container owns its shapes and cannot be copied. Shapes stay in the order in which they were appended,
/// and none is ever removed.
///
/// \snippet tst_VectorPathSnippets.cpp draw
class QUILLET_EXPORT PainterPathContainer
{
public:
    /// An empty container.
    PainterPathContainer();

    /// Destroys the shapes.
    ~PainterPathContainer();

    PainterPathContainer(const PainterPathContainer&) = delete;
    PainterPathContainer& operator=(const PainterPathContainer&) = delete;

    /// The shapes; a live reference, valid as long as the container. None of the pointers is null.
    const std::vector<std::unique_ptr<PainterPath>>& getPaths() const;

    /// Takes a shape over and puts it at the end. \a path must not be null.
    void appendPath(std::unique_ptr<PainterPath>&& path);

    /// Gives every shape this transform in place of its own. Shapes appended later keep theirs.
    void setTransform(const lumo::AffineTransform<double>& transform);

    /// Draws all shapes in their order, the later ones over the earlier ones. See PainterPath::draw() for
    /// what becomes of the painter's pen and brush.
    void draw(QPainter& painter) const;

    /// Whether \a point, in drawing coordinates, lies in the area of any shape.
    bool contains(const QPointF& point) const;

private:
    std::vector<std::unique_ptr<PainterPath>> m_paths;
};

} // namespace Quillet
