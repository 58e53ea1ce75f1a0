#include "ConvertedDocument.h"

#include <Document.h>
#include <Drawing.h>

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <QtCore/QXmlStreamReader>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

namespace {

QImage onWhite(const QImage& drawing)
{
    QImage result(drawing.size(), QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter(&result).drawImage(0, 0, drawing);
    return result;
}

QImage drawnByTheLibrary(const QString& text, const QSizeF& frameSize, int size)
{
    Quillet::PainterPathContainer picture;
    Quillet::parseSvg(text, picture); // what was read before a refusal is drawn, too
    return onWhite(drawWithLibrary(picture, frameSize, size));
}

} // namespace

ConvertedDocument convertDocument(const QString& fileName, int size)
{
    ConvertedDocument result;
    const Document document = readDocument(fileName);
    result.error = document.error;
    if (!result.error.isEmpty())
        return result;
    result.check = checkDocument(document);
    result.conversion = convertSvg(document.text);
    result.error = result.conversion.error;
    if (!result.error.isEmpty())
        return result;

    const Frame& frame = result.conversion.frame;
    QXmlStreamReader reader(document.text);
    QSvgRenderer renderer;
    if (renderer.load(&reader))
        result.original = onWhite(drawWithQt(renderer, frame, size));
    result.asItIs = drawnByTheLibrary(document.text, frame.size, size);
    result.converted = drawnByTheLibrary(result.conversion.text, frame.size, size);
    return result;
}
