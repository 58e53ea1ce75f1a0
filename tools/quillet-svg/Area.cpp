#include "Area.h"

#include <QtGui/QTransform>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <random>
#include <tuple>
#include <vector>

using ClipperLib::ClipType;
using ClipperLib::IntPoint;
using ClipperLib::Path;
using ClipperLib::Paths;

namespace {

constexpr double grid_size = 1 << 20;
constexpr double hair_width = grid_size / 10'000; ///< what is narrower is not seen

// Where outlines are given out, a point that lies no farther beside a line lies on it.
constexpr double straight = 2;

// The grid, in the units in which Qt straightens curves: it stays within a quarter of one.
constexpr double curve_size = 1000;

double longerSide(const QRectF& rect)
{
    return std::max({rect.width(), rect.height(), 1e-9});
}

/// What of \a polygon lies where \a depth is not negative; what does not lies on its border instead.
QPolygonF cut(const QPolygonF& polygon, const std::function<double(const QPointF&)>& depth)
{
    QPolygonF result;
    for (int i = 0; i < polygon.size(); ++i) {
        const QPointF from = polygon[i];
        const QPointF to = polygon[(i + 1) % polygon.size()];
        const double before = depth(from);
        const double after = depth(to);
        if (before >= 0)
            result.append(from);
        if ((before < 0) != (after < 0))
            result.append(from + before / (before - after) * (to - from));
    }
    return result;
}

QRectF boxOf(const Paths& outlines)
{
    QPolygonF points;
    for (const Path& outline : outlines) {
        for (const IntPoint& point : outline)
            points.append(QPointF(double(point.X), double(point.Y)));
    }
    return points.boundingRect();
}

/// The box of an edge.
struct Box
{
    ClipperLib::cInt left, right, top, bottom;
};

/// About how long it takes to join the \a edges that are level and lie on each other, in nanoseconds. Each is
/// joined with each, and the more there are, the longer a join takes.
double effortOfJoins(const std::vector<Box>& edges)
{
    constexpr double effort_of_join = 100;
    constexpr double most_effort = 1e11; // more than there ever is
    std::vector<Box> level;
    std::copy_if(edges.begin(), edges.end(), std::back_inserter(level), [](const Box& edge) {
        return edge.top == edge.bottom;
    });
    std::sort(level.begin(), level.end(), [](const Box& one, const Box& other) {
        return std::tie(one.top, one.left) < std::tie(other.top, other.left);
    });
    double effort = 0;
    for (auto one = level.begin(); one != level.end() && effort < most_effort; ++one) {
        const auto isApart = [&](const Box& other) {
            return other.top != one->top || other.left >= one->right;
        };
        const double joins = double(std::find_if(one + 1, level.end(), isApart) - one - 1);
        effort += joins * joins * effort_of_join;
    }
    return effort;
}

/// About how long it takes to compute with the outlines, in nanoseconds. That depends on how many pairs of
/// edges share a height, and most of all on how many may cross; of many pairs, some are looked at.
qint64 effortOf(const Paths& outlines, const Paths& others)
{
    constexpr std::size_t most_strides = 50;
    constexpr double effort_of_edge = 200;
    constexpr double effort_of_meeting = 10; // at the same height
    constexpr double effort_of_crossing = 500;
    std::vector<Box> boxes;
    for (const Paths* paths : {&outlines, &others}) {
        for (const Path& path : *paths) {
            for (std::size_t i = 0; i < path.size(); ++i) {
                const IntPoint& next = path[(i + 1) % path.size()];
                const auto [left, right] = std::minmax(path[i].X, next.X);
                const auto [top, bottom] = std::minmax(path[i].Y, next.Y);
                boxes.push_back({left, right, top, bottom});
            }
        }
    }
    const std::size_t half = boxes.size() / 2;
    const std::size_t strides = std::min(half, most_strides);
    double meeting = 0;
    double crossing = 0;
    std::minstd_rand random; // the same for each call
    for (std::size_t stride = 1; stride <= strides; ++stride) {
        const std::size_t distance = strides == half ? stride : 1 + random() % half;
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            const Box& one = boxes[i];
            const Box& other = boxes[(i + distance) % boxes.size()];
            const bool isMeeting = one.top < other.bottom && other.top < one.bottom;
            meeting += isMeeting ? 1 : 0;
            crossing += isMeeting && one.left < other.right && other.left < one.right ? 1 : 0;
        }
    }
    const double looked = double(strides) / double(std::max<std::size_t>(half, 1));
    const double pairs =
        (effort_of_meeting * meeting + effort_of_crossing * crossing) / std::max(looked, 1e-9);
    return qint64(pairs + effort_of_edge * double(boxes.size()) + effortOfJoins(boxes));
}

} // namespace

Area::Area(ClipType operation,
           const Paths& outlines,
           ClipperLib::PolyFillType rule,
           const Paths& others,
           qint64& effort)
{
    effort -= effortOf(outlines, others);
    if (effort < 0) {
        m_isValid = false;
        return;
    }
    ClipperLib::Clipper clipper;
    try {
        const bool hasOutlines = clipper.AddPaths(outlines, ClipperLib::ptSubject, true);
        const bool hasOthers = clipper.AddPaths(others, ClipperLib::ptClip, true);
        if (hasOutlines || hasOthers) // it fails without any
            m_isValid = clipper.Execute(operation, m_outlines, rule, ClipperLib::pftNonZero);
    } catch (const ClipperLib::clipperException&) {
        m_isValid = false;
    }
    m_box = boxOf(m_outlines);
}

Area::Area(const QPainterPath& path, const QRectF& bounds, qint64& effort)
{
    const double scale = curve_size / longerSide(bounds);
    const QTransform toCurveSize =
        QTransform::fromTranslate(-bounds.left(), -bounds.top()) * QTransform::fromScale(scale, scale);
    const double right = bounds.width() * scale;
    const double bottom = bounds.height() * scale;
    Paths outlines;
    const QList<QPolygonF> polygons = path.toSubpathPolygons(toCurveSize);
    for (QPolygonF polygon : polygons) {
        const QRectF box = polygon.boundingRect();
        if (!std::isfinite(box.width()) || !std::isfinite(box.height())) {
            m_isValid = false;
            return;
        }
        polygon = cut(polygon, [](const QPointF& point) { return point.x(); });
        polygon = cut(polygon, [](const QPointF& point) { return point.y(); });
        polygon = cut(polygon, [=](const QPointF& point) { return right - point.x(); });
        polygon = cut(polygon, [=](const QPointF& point) { return bottom - point.y(); });
        Path outline;
        for (const QPointF& point : qAsConst(polygon))
            outline.emplace_back(std::llround(point.x() * grid_size / curve_size),
                                 std::llround(point.y() * grid_size / curve_size));
        outlines.push_back(outline);
    }
    const auto rule = path.fillRule() == Qt::WindingFill ? ClipperLib::pftNonZero : ClipperLib::pftEvenOdd;
    *this = Area(ClipperLib::ctUnion, outlines, rule, {}, effort);
}

bool Area::isHair() const
{
    if (m_box.width() <= hair_width || m_box.height() <= hair_width)
        return true;
    double area = 0;
    double around = 0;
    for (const Path& outline : m_outlines) {
        area += ClipperLib::Area(outline);
        for (std::size_t i = 0; i < outline.size(); ++i) {
            const IntPoint& from = outline[i];
            const IntPoint& to = outline[(i + 1) % outline.size()];
            around += std::hypot(double(to.X - from.X), double(to.Y - from.Y));
        }
    }
    return 2 * area <= hair_width * around;
}

Area Area::intersected(const Area& other, qint64& effort) const
{
    return combined(ClipperLib::ctIntersection, other, effort);
}

Area Area::subtracted(const Area& other, qint64& effort) const
{
    return combined(ClipperLib::ctDifference, other, effort);
}

Area Area::united(const Area& other, qint64& effort) const
{
    return combined(ClipperLib::ctUnion, other, effort);
}

Area Area::combined(ClipType operation, const Area& other, qint64& effort) const
{
    Area result(operation, m_outlines, ClipperLib::pftNonZero, other.m_outlines, effort);
    result.m_isValid = result.isValid() && isValid() && other.isValid();
    return result;
}

QPainterPath Area::path(const QRectF& bounds) const
{
    Paths outlines;
    ClipperLib::CleanPolygons(m_outlines, outlines, straight);
    const double scale = longerSide(bounds) / grid_size;
    QPainterPath result;
    for (const Path& outline : outlines) {
        for (std::size_t i = 0; i < outline.size(); ++i) {
            const QPointF point =
                bounds.topLeft() + scale * QPointF(double(outline[i].X), double(outline[i].Y));
            if (i == 0)
                result.moveTo(point);
            else
                result.lineTo(point);
        }
        result.closeSubpath();
    }
    return result;
}
