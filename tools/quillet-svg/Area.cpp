#include "Area.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <tuple>

namespace {

constexpr int grid_size = 1 << 20;
constexpr double curve_tolerance = grid_size / 4000.0;
constexpr int hair_width = grid_size / 10'000; ///< what is narrower is not seen
constexpr double straight =
    2; ///< what lies no farther beside a line lies on it, where outlines are given out
constexpr int most_rounds = 50; ///< of cutting edges where they cross; a few are the rule
constexpr int rows_of_edge = 4; ///< in which it is, on average
constexpr int most_rows = 2048; ///< in which edges are looked up

/// Windings of the two areas: how often their outlines go round something.
struct Windings
{
    int one = 0;
    int other = 0;
};

/// An edge that goes down, or to the right.
struct Edge
{
    QPoint top;
    QPoint bottom;
    Windings left; ///< of the edge, more than right of it; of one that goes to the right, below it
};

using Inside = bool (*)(const Windings&);

bool isBefore(const QPoint& one, const QPoint& other)
{
    return std::make_pair(one.y(), one.x()) < std::make_pair(other.y(), other.x());
}

qint64 cross(const QPoint& from, const QPoint& to, const QPoint& point)
{
    return qint64(to.x() - from.x()) * (point.y() - from.y())
           - qint64(to.y() - from.y()) * (point.x() - from.x());
}

void append(QVector<Edge>& edges, const QPoint& from, const QPoint& to, const Windings& left)
{
    if (isBefore(from, to))
        edges.append({from, to, left});
    else if (from != to)
        edges.append({to, from, {-left.one, -left.other}});
}

/// Edges by rows, so that each meets few others.
class Rows
{
public:
    explicit Rows(const QVector<Edge>& edges)
        : m_edges(edges), m_top(edges.isEmpty() ? 0 : edges.first().top.y())
    {
        int last = m_top;
        qint64 heights = 1;
        for (const Edge& each : edges) {
            m_top = std::min(m_top, each.top.y());
            last = std::max(last, each.bottom.y());
            heights += each.bottom.y() - each.top.y();
        }
        const qint64 useful = rows_of_edge * qint64(edges.size()) * (last - m_top) / heights;
        const int count = int(std::clamp(useful, qint64(1), qint64(most_rows)));
        m_height = (last - m_top) / count + 1;
        m_rows.resize(count);
        for (int i = 0; i < edges.size(); ++i) {
            for (int row = at(edges[i].top.y()); row <= at(edges[i].bottom.y()); ++row)
                m_rows[row].append(i);
        }
    }

    int at(int y) const { return (y - m_top) / m_height; }
    const QVector<QVector<int>>& all() const { return m_rows; }

    /// The windings right of the middle of \a edge; of one that goes to the right, below it.
    Windings beside(const Edge& edge) const
    {
        const QPoint middle = edge.top + edge.bottom; // doubled, like all that it is compared with
        Windings result;
        for (const int i : m_rows[at((edge.top.y() + edge.bottom.y()) / 2)]) {
            const Edge& each = m_edges[i];
            if (&each != &edge && 2 * each.top.y() <= middle.y() && middle.y() < 2 * each.bottom.y()
                && cross(2 * each.top, 2 * each.bottom, middle) > 0) {
                result.one += each.left.one;
                result.other += each.left.other;
            }
        }
        return result;
    }

private:
    const QVector<Edge>& m_edges;
    int m_top;
    int m_height = 1;
    QVector<QVector<int>> m_rows;
};

/// Makes one of edges that lie on each other.
void merge(QVector<Edge>& edges)
{
    const auto key = [](const Edge& each) {
        return std::make_tuple(each.top.y(), each.top.x(), each.bottom.y(), each.bottom.x());
    };
    std::sort(edges.begin(), edges.end(), [&](const Edge& one, const Edge& other) {
        return key(one) < key(other);
    });
    int kept = 0;
    for (int i = 0; i < edges.size();) {
        Edge sum = edges[i];
        for (++i; i < edges.size() && key(edges[i]) == key(sum); ++i) {
            sum.left.one += edges[i].left.one;
            sum.left.other += edges[i].left.other;
        }
        if (sum.left.one != 0 || sum.left.other != 0)
            edges[kept++] = sum;
    }
    edges.resize(kept);
}

/// Notes in \a cuts where two edges meet inside of one of them.
void meet(const Edge& one, const Edge& other, QVector<QPoint>& ofOne, QVector<QPoint>& ofOther)
{
    const auto cut = [](const Edge& edge, const QPoint& point, QVector<QPoint>& cuts) {
        if (point != edge.top && point != edge.bottom)
            cuts.append(point);
    };
    const auto isBetween = [](const QPoint& point, const Edge& edge) {
        return isBefore(edge.top, point) && isBefore(point, edge.bottom);
    };
    const qint64 sides[] = {cross(one.top, one.bottom, other.top),
                            cross(one.top, one.bottom, other.bottom),
                            cross(other.top, other.bottom, one.top),
                            cross(other.top, other.bottom, one.bottom)};
    if (sides[0] == 0 && isBetween(other.top, one))
        cut(one, other.top, ofOne);
    if (sides[1] == 0 && isBetween(other.bottom, one))
        cut(one, other.bottom, ofOne);
    if (sides[2] == 0 && isBetween(one.top, other))
        cut(other, one.top, ofOther);
    if (sides[3] == 0 && isBetween(one.bottom, other))
        cut(other, one.bottom, ofOther);
    const auto areApart = [](qint64 a, qint64 b) { return (a < 0 && b > 0) || (a > 0 && b < 0); };
    if (!areApart(sides[0], sides[1]) || !areApart(sides[2], sides[3]))
        return;
    const double share = double(sides[2]) / (double(sides[2]) - double(sides[3]));
    const QPoint crossing = (QPointF(one.top) + share * QPointF(one.bottom - one.top)).toPoint();
    cut(one, crossing, ofOne);
    cut(other, crossing, ofOther);
}

/// Cuts edges where they meet, unless that takes more than \a effort, which is less afterwards. \return
/// whether there was something to cut.
bool cutWhereTheyMeet(QVector<Edge>& edges, qint64& effort)
{
    const Rows rows(edges);
    for (const QVector<int>& row : rows.all())
        effort -= qint64(row.size()) * row.size();
    if (effort < 0)
        return false;
    QVector<QVector<QPoint>> cuts(edges.size());
    for (int row = 0; row < rows.all().size(); ++row) {
        const QVector<int>& here = rows.all()[row];
        for (int i = 0; i < here.size(); ++i) {
            const Edge& one = edges.at(here[i]);
            const int left = std::min(one.top.x(), one.bottom.x());
            const int right = std::max(one.top.x(), one.bottom.x());
            for (int j = i + 1; j < here.size(); ++j) {
                const Edge& other = edges.at(here[j]);
                const bool isElsewhere = (other.top.x() < left && other.bottom.x() < left)
                                         || (other.top.x() > right && other.bottom.x() > right)
                                         || other.top.y() > one.bottom.y() || one.top.y() > other.bottom.y();
                // Two that share several rows meet in the first of these.
                if (!isElsewhere && rows.at(std::max(one.top.y(), other.top.y())) == row)
                    meet(one, other, cuts[here[i]], cuts[here[j]]);
            }
        }
    }
    bool hasCuts = false;
    const int count = edges.size();
    for (int i = 0; i < count; ++i) {
        QVector<QPoint>& points = cuts[i];
        if (points.isEmpty())
            continue;
        hasCuts = true;
        const Edge edge = edges.at(i);
        const auto along = [&](const QPoint& point) {
            const QPoint way = edge.bottom - edge.top;
            return qint64(way.x()) * (point.x() - edge.top.x())
                   + qint64(way.y()) * (point.y() - edge.top.y());
        };
        std::sort(points.begin(), points.end(), [&](const QPoint& one, const QPoint& other) {
            return along(one) < along(other);
        });
        edges[i].left = Windings();
        QPoint from = edge.top;
        for (const QPoint& point : qAsConst(points)) {
            append(edges, from, point, edge.left);
            from = point;
        }
        append(edges, from, edge.bottom, edge.left);
    }
    merge(edges);
    return hasCuts;
}

/// Edges that meet at their ends only.
class Arrangement
{
public:
    Arrangement(QVector<Edge> edges, qint64& effort) : m_edges(std::move(edges))
    {
        merge(m_edges);
        for (int round = 0; m_isValid && cutWhereTheyMeet(m_edges, effort); ++round)
            m_isValid = round < most_rounds;
        m_isValid = m_isValid && effort >= 0;
        if (!m_isValid)
            return;
        const Rows rows(m_edges);
        m_beside.reserve(m_edges.size());
        for (const Edge& each : qAsConst(m_edges))
            m_beside.append(rows.beside(each));
    }

    /// The outlines of what is inside. \a isValid becomes false if there are none.
    QVector<QPolygon> outlines(Inside isInside, bool& isValid) const
    {
        struct Side
        {
            QPoint from;
            QPoint to;
        };
        QVector<Side> sides;
        isValid = m_isValid;
        if (!isValid)
            return {};
        for (int i = 0; i < m_edges.size(); ++i) {
            const Edge& edge = m_edges[i];
            const Windings& beside = m_beside[i];
            const int sign = edge.top.y() == edge.bottom.y() ? -1 : 1; // what is beside it is then below it
            const bool here = isInside(beside);
            const bool there =
                isInside({beside.one + sign * edge.left.one, beside.other + sign * edge.left.other});
            if (here == there)
                continue;
            const bool isInsideLeft = sign > 0 ? there : here;
            sides.append(isInsideLeft ? Side{edge.top, edge.bottom} : Side{edge.bottom, edge.top});
        }
        const auto fromBefore = [](const Side& one, const Side& other) {
            return isBefore(one.from, other.from);
        };
        std::sort(sides.begin(), sides.end(), fromBefore);
        QVector<bool> isTaken(sides.size(), false);
        QVector<QPolygon> result;
        for (int start = 0; start < sides.size(); ++start) {
            if (isTaken[start])
                continue;
            QPolygon outline;
            for (int at = start;;) {
                isTaken[at] = true;
                outline.append(sides[at].from);
                const QPoint to = sides[at].to;
                if (to == sides[start].from)
                    break;
                at = int(std::lower_bound(sides.begin(), sides.end(), Side{to, to}, fromBefore)
                         - sides.begin());
                while (at < sides.size() && sides[at].from == to && isTaken[at])
                    ++at;
                if (at == sides.size() || sides[at].from != to) {
                    isValid = false;
                    return {};
                }
            }
            result.append(outline);
        }
        return result;
    }

private:
    QVector<Edge> m_edges;
    QVector<Windings> m_beside;
    bool m_isValid = true;
};

/// Whether \a point lies in the rectangle that has the two others as corners.
bool isWithin(const QPoint& point, const QPoint& one, const QPoint& other)
{
    return std::min(one.x(), other.x()) <= point.x() && point.x() <= std::max(one.x(), other.x())
           && std::min(one.y(), other.y()) <= point.y() && point.y() <= std::max(one.y(), other.y());
}

void append(QVector<Edge>& edges, const QVector<QPolygon>& outlines, const Windings& left)
{
    for (const QPolygon& outline : outlines) {
        for (int i = 0; i < outline.size(); ++i)
            append(edges, outline[i], outline[(i + 1) % outline.size()], left);
    }
}

/// Lines instead of the curve from the end of \a line.
void appendCurve(QPolygonF& line, const QPointF& c1, const QPointF& c2, const QPointF& to)
{
    const QPointF from = line.last();
    const auto length = [](const QPointF& point) { return std::hypot(point.x(), point.y()); };
    const double bend = 6 * std::max(length(from - 2 * c1 + c2), length(c1 - 2 * c2 + to));
    const int count = int(std::clamp(std::ceil(std::sqrt(bend / (8 * curve_tolerance))), 1.0, 1000.0));
    for (int i = 1; i < count; ++i) {
        const double t = double(i) / count;
        const double s = 1 - t;
        line.append(s * s * s * from + 3 * s * s * t * c1 + 3 * s * t * t * c2 + t * t * t * to);
    }
    line.append(to);
}

QVector<QPolygonF> straightened(const QPainterPath& path)
{
    QVector<QPolygonF> result;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        if (element.isMoveTo())
            result.append(QPolygonF());
        if (element.isCurveTo() && i + 2 < path.elementCount()) {
            appendCurve(result.last(), element, path.elementAt(i + 1), path.elementAt(i + 2));
            i += 2;
        } else {
            result.last().append(element);
        }
    }
    return result;
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

double longerSide(const QRectF& rect)
{
    return std::max({rect.width(), rect.height(), 1e-9});
}

} // namespace

Area::Area(const QVector<QPolygon>& outlines, bool isValid) : m_outlines(outlines), m_isValid(isValid)
{
    for (const QPolygon& each : outlines)
        m_box |= each.boundingRect();
}

Area::Area(const QPainterPath& path, const QRectF& bounds, qint64& effort)
{
    const double scale = grid_size / longerSide(bounds);
    const QTransform toGrid =
        QTransform::fromTranslate(-bounds.left(), -bounds.top()) * QTransform::fromScale(scale, scale);
    const double right = bounds.width() * scale;
    const double bottom = bounds.height() * scale;
    QVector<Edge> edges;
    const QVector<QPolygonF> polygons = straightened(toGrid.map(path));
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
        append(edges, {polygon.toPolygon()}, {1, 0});
    }
    const Arrangement arrangement(edges, effort);
    bool isValid = true;
    const QVector<QPolygon> outlines = arrangement.outlines(
        path.fillRule() == Qt::WindingFill ? [](const Windings& at) { return at.one != 0; }
                                           : [](const Windings& at) { return at.one % 2 != 0; },
        isValid);
    *this = Area(outlines, isValid);
}

bool Area::isHair() const
{
    if (m_box.width() <= hair_width || m_box.height() <= hair_width)
        return true;
    double doubled = 0;
    double around = 0;
    for (const QPolygon& outline : m_outlines) {
        for (int i = 0; i < outline.size(); ++i) {
            const QPointF from = outline[i];
            const QPointF to = outline[(i + 1) % outline.size()];
            doubled += from.x() * to.y() - from.y() * to.x();
            around += std::hypot(to.x() - from.x(), to.y() - from.y());
        }
    }
    return std::abs(doubled) <= hair_width * around;
}

QPainterPath Area::path(const QRectF& bounds) const
{
    const double scale = longerSide(bounds) / grid_size;
    QPainterPath result;
    for (const QPolygon& outline : m_outlines) {
        // Cuts leave points on lines.
        QPolygon corners;
        for (int i = 0; i < outline.size(); ++i) {
            const QPoint from = corners.isEmpty() ? outline.last() : corners.last();
            const QPoint way = outline[(i + 1) % outline.size()] - from;
            const double length = std::hypot(way.x(), way.y());
            const double beside = std::abs(double(cross(from, from + way, outline[i])));
            if (beside > straight * length || !isWithin(outline[i], from, from + way))
                corners.append(outline[i]);
        }
        if (corners.size() < 3)
            continue;
        for (int i = 0; i < corners.size(); ++i) {
            const QPointF point = bounds.topLeft() + scale * QPointF(corners[i]);
            if (i == 0)
                result.moveTo(point);
            else
                result.lineTo(point);
        }
        result.closeSubpath();
    }
    return result;
}

Overlap::Overlap(const Area& one, const Area& other, qint64& effort)
{
    QVector<Edge> edges;
    append(edges, one.m_outlines, {1, 0});
    append(edges, other.m_outlines, {0, 1});
    const Arrangement arrangement(edges, effort);
    const auto area = [&](Inside isInside) {
        bool isValid = true;
        const QVector<QPolygon> outlines = arrangement.outlines(isInside, isValid);
        return Area(outlines, isValid && one.isValid() && other.isValid());
    };
    common = area([](const Windings& at) { return at.one != 0 && at.other != 0; });
    onlyOne = area([](const Windings& at) { return at.one != 0 && at.other == 0; });
    onlyOther = area([](const Windings& at) { return at.one == 0 && at.other != 0; });
    both = area([](const Windings& at) { return at.one != 0 || at.other != 0; });
}
