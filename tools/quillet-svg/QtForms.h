#pragma once

#include "References.h"
#include "Style.h"

#include <QtCore/QSizeF>
#include <QtCore/QVector>

/// What an element's paint is made of, where the element itself does not say it.
struct InheritedPaint
{
    /// Qt takes colours without their opacity.
    struct Opacity
    {
        double ofColor = 1;
        double own = 1; ///< "fill-opacity" or "stroke-opacity"

        double product() const { return ofColor * own; }
    };

    QString color = QStringLiteral("black"); ///< that "currentColor" stands for
    Opacity fill;
    Opacity stroke;
    double strokeWidth = 1;
    bool isDashed = false;
};

/// Writes the values of an element's properties in the forms that Qt's SVG renderer knows: colours as
/// "#rrggbb" with an opacity beside them, lengths in pixels, path data without what it draws otherwise.
///
/// Percentages are of \a viewport, where that is known. \a paint is that of the element around, and becomes
/// the element's own.
void writeInQtsForms(QVector<Declaration>& properties,
                     const QSizeF& viewport,
                     const References& references,
                     InheritedPaint& paint);

/// Path data without what Qt draws otherwise, for a stroke of the width \a strokeWidth.
QString pathForQt(const QString& data, double strokeWidth);
