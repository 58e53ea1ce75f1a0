#pragma once

#include <Quillet/PainterPathContainer.h>

#include <QtCore/QRectF>
#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtGui/QImage>

#include <memory>

/// What was read of an SVG file.
struct VectorDocument
{
    std::unique_ptr<Quillet::PainterPathContainer>
        picture;    ///< not null, but without shapes where none was read
    QString report; ///< how many shapes were read, or what went wrong
    bool accepted;  ///< false: refused, or not readable at all
};

/// Reads the file \a fileName. A document that is refused half-way has the shapes before that point.
VectorDocument readVectorDocument(const QString& fileName);

/// The smallest rectangle around the paths of all shapes, without their strokes and transforms.
QRectF boundsOf(const Quillet::PainterPathContainer& picture);

/// A document that comes with the gallery.
struct VectorSample
{
    QString name; ///< short, in lower case
    QString title;
    QString fileName;
};

/// The drawings made for the gallery.
const QVector<VectorSample>& vectorSamples();

/// Drawings as drawing programs write them, which the reader reads in part only.
const QVector<VectorSample>& designSamples();

/// The icons that the library has for its dialogs.
const QVector<VectorSample>& dialogIcons();

/// Draws \a document into the middle of a white square, as large as fits.
QImage drawing(const VectorDocument& document, int sideLength);
