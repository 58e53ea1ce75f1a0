#pragma once

#include "Recorder.h"

#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtGui/QColor>

/// Strokes as wide as that, or wider, are painted by no QPen, and so not by the reader.
constexpr double unpaintable_width = 32768;

/// A path as the library's reader takes it: in the coordinates of the drawing, with plain colours.
struct SubsetShape
{
    QPainterPath path;
    QColor fill;   ///< invalid: not filled
    QColor stroke; ///< invalid: not stroked
    double width = 1;
    Qt::PenCapStyle cap = Qt::FlatCap;
    Qt::PenJoinStyle join = Qt::MiterJoin;
    double miterLimit = 4;
};

/// The shapes that draw what \a painted drew, in their order.
///
/// A stroke becomes an outline to fill where the reader has nothing for it: dashes, a pen that the transform
/// squeezes, a miter that the reader's limit would cut otherwise. A gradient becomes its mean colour.
QVector<SubsetShape> subsetShapes(const Painted& painted);

/// The area that the stroke of \a shape covers.
QPainterPath strokeArea(const SubsetShape& shape);

/// Whether the miters that Qt::MiterJoin draws for a pen are those of SVG, which measures their limit in
/// another way.
bool hasSameMiters(const QPainterPath& path, const QPen& pen);

/// Writes a document that holds nothing but paths.
///
/// Coordinates are written with so many digits that none is more than a 200,000th of the longer side away
/// from where it is.
class SubsetWriter
{
public:
    explicit SubsetWriter(const QSizeF& size);

    /// \return whether there is something of \a shape to draw.
    bool add(const SubsetShape& shape);

    /// The whole document.
    QString document() const;

private:
    QString number(double value, int decimals) const;
    QString pathData(const SubsetShape& shape) const;

    QSizeF m_size;
    int m_decimals;
    QString m_paths;
};
