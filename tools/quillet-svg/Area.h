#pragma once

#include <QtCore/QRect>
#include <QtCore/QVector>
#include <QtGui/QPainterPath>
#include <QtGui/QPolygon>

/// An area with straight edges between points of a grid. What is computed from such areas is exact, up to
/// crossings, which move to the nearest point of the grid. What is computed takes from an effort, which are
/// pairs of edges; where that becomes negative, the result is not valid.
class Area
{
public:
    Area() = default;

    /// What of the inside of \a path lies in \a bounds, whose longer side is as long as the grid. Curves
    /// become lines that are nowhere farther away than 1/4000 of that.
    Area(const QPainterPath& path, const QRectF& bounds, qint64& effort);

    bool isEmpty() const { return m_outlines.isEmpty(); }
    QRect box() const { return m_box; }

    /// Whether it could be computed.
    bool isValid() const { return m_isValid; }

    /// Whether nothing of it is wide enough to be seen.
    bool isHair() const;

    /// Where it lies, on the grid over \a bounds.
    QPainterPath path(const QRectF& bounds) const;

private:
    friend struct Overlap;

    Area(const QVector<QPolygon>& outlines, bool isValid);

    QVector<QPolygon> m_outlines; ///< around each point in the area once, around others not at all
    QRect m_box;
    bool m_isValid = true;
};

/// What two areas have in common, and what only one of them has.
struct Overlap
{
    Overlap(const Area& one, const Area& other, qint64& effort);

    Area common;
    Area onlyOne;
    Area onlyOther;
    Area both; ///< all of these
};
