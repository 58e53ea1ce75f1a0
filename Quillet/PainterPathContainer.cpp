#include <Quillet/PainterPathContainer.h>

#include <algorithm>
#include <utility>

namespace Quillet {

PainterPathContainer::PainterPathContainer() = default;

PainterPathContainer::~PainterPathContainer() = default;

const std::vector<std::unique_ptr<PainterPath>>& PainterPathContainer::getPaths() const
{
    return m_paths;
}

void PainterPathContainer::appendPath(std::unique_ptr<PainterPath>&& path)
{
    m_paths.push_back(std::move(path));
}

void PainterPathContainer::setTransform(const lumo::AffineTransform<double>& transform)
{
    for (const auto& path : m_paths)
        path->setTransform(transform);
}

void PainterPathContainer::draw(QPainter& painter) const
{
    for (const auto& path : m_paths)
        path->draw(painter);
}

bool PainterPathContainer::contains(const QPointF& point) const
{
    return std::any_of(
        m_paths.begin(), m_paths.end(), [&](const auto& path) { return path->contains(point); });
}

} // namespace Quillet
