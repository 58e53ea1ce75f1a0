#pragma once

#include <QtCore/QRectF>
#include <QtGui/QPainterPath>

#include <clipper.hpp>

/// An area with straight edges between points of a grid. Areas that are computed with each other have to be
/// on the same grid. What is computed takes from an effort, which is about as many nanoseconds; where that
/// becomes negative, nothing is computed, and the result is empty and not valid. What comes of such a one is
/// not valid.
class Area
{
public:
    Area() = default;

    /// What of the inside of \a path lies in \a bounds, whose longer side is as long as the grid. Curves
    /// become lines that are nowhere farther away than 1/4000 of that.
    Area(const QPainterPath& path, const QRectF& bounds, qint64& effort);

    bool isEmpty() const { return m_outlines.empty(); }
    QRectF box() const { return m_box; } ///< in coordinates of the grid

    /// Whether it could be computed.
    bool isValid() const { return m_isValid; }

    /// Whether nothing of it is wide enough to be seen.
    bool isHair() const;

    Area intersected(const Area& other, qint64& effort) const;
    Area subtracted(const Area& other, qint64& effort) const;
    Area united(const Area& other, qint64& effort) const;

    /// Where it lies, with the grid over \a bounds.
    QPainterPath path(const QRectF& bounds) const;

private:
    /// What lies inside of \a outlines and, as \a operation says, of \a others.
    Area(ClipperLib::ClipType operation,
         const ClipperLib::Paths& outlines,
         ClipperLib::PolyFillType rule,
         const ClipperLib::Paths& others,
         qint64& effort);

    Area combined(ClipperLib::ClipType operation, const Area& other, qint64& effort) const;

    ClipperLib::Paths m_outlines; ///< none crosses itself or another; holes go the other way round
    QRectF m_box;
    bool m_isValid = true;
};
