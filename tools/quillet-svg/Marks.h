#pragma once

#include <QtCore/QRectF>
#include <QtCore/QString>

QT_BEGIN_NAMESPACE
class QXmlStreamWriter;
QT_END_NAMESPACE

/// What a prepared document tells the recorder past Qt's renderer, which knows nothing of it: something that
/// holds for all that is painted up to the mark "End".
///
/// A mark is an image that cannot be seen. A prepared document has no other images.
struct Mark
{
    enum Kind {
        Clip = 1,   ///< nothing outside of a rectangle is seen
        Layer = 2,  ///< what is painted is painted together, with an opacity
        Dashes = 3, ///< dashes are measured by a length that the path is said to have
        End = 4,
    };

    Kind kind = End;
    QRectF area{0, 0, 1, 1}; ///< of the image; holds what the mark says

    static Mark clip(const QRectF& rect) { return {Clip, rect}; }
    static Mark layer(double opacity, int element) { return {Layer, {0, 0, opacity, element + 1.0}}; }
    static Mark dashes(double pathLength) { return {Dashes, {0, 0, pathLength, 1}}; }

    double opacity() const { return area.width(); }
    int element() const { return int(area.height()) - 1; } ///< that has the opacity
    double pathLength() const { return area.width(); }
};

void writeMark(QXmlStreamWriter& writer, const Mark& mark);
