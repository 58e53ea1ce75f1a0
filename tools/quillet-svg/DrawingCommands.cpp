#include "DrawingCommands.h"

#include "Checker.h"
#include "Converter.h"
#include "Drawing.h"
#include "ExitStatus.h"
#include "Output.h"
#include "Preparation.h"
#include "Replay.h"

#include <Quillet/SvgFileParser.h>

#include <QtCore/QBuffer>
#include <QtCore/QXmlStreamReader>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <algorithm>

namespace {

constexpr int gap = 8; ///< between the pictures of "compare"

/// The bytes of a file with the picture; none if there is not enough memory for it.
QByteArray png(const QImage& picture)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return picture.save(&buffer, "PNG") ? bytes : QByteArray();
}

/// The frame of the document \a text.
Frame frameOf(const QString& text)
{
    const XmlTree tree(text);
    return tree.elements().isEmpty() ? Frame() : readFrame(tree.elements().first());
}

/// The size of a drawing that names none: up to its farthest point.
QSizeF extentOf(const Quillet::PainterPathContainer& picture)
{
    QRectF box;
    for (const auto& shape : picture.getPaths())
        box = box.united(shape->getPath().boundingRect());
    return {std::max(box.right(), 1.0), std::max(box.bottom(), 1.0)};
}

QImage sideBySide(const QImage& byQt, const QImage& byLibrary)
{
    const QSize cell = byQt.size().expandedTo(byLibrary.size());
    QImage result(3 * cell.width() + 2 * gap, cell.height(), QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter painter(&result);
    painter.drawImage(0, 0, byQt);
    painter.drawImage(cell.width() + gap, 0, byLibrary);
    painter.drawImage(2 * (cell.width() + gap), 0, differencePicture(byQt, byLibrary));
    return result;
}

/// What SVG says of the document \a text; no picture where something in it cannot be
/// drawn here.
QImage drawAsSvgSays(const QString& text, const Frame& frame, int size)
{
    const Preparation prepared = prepareForQt(XmlTree(text));
    const bool isWhole =
        std::none_of(prepared.findings.begin(), prepared.findings.end(), [](const Finding& each) {
            return each.weight == Finding::Lost && each.rule != QLatin1String("gradient");
        });
    return isWhole ? drawPrepared(prepared.text, frame, size) : QImage();
}

QString percent(const Difference& difference)
{
    return QStringLiteral("%1 %").arg(difference.share * 100, 0, 'f', 2);
}

/// The first reason for which the reader refuses the document.
int refuse(const QString& fileName, const Document& document, Console& console)
{
    const Check check = checkDocument(document);
    const auto found = std::find_if(check.findings.begin(), check.findings.end(), [](const Finding& each) {
        return each.weight == Finding::Refused;
    });
    if (found == check.findings.end())
        return console.refused(fileName, Position(), QStringLiteral("the reader refuses the document"));
    return console.refused(fileName, found->position, found->message);
}

int writePicture(const QString& fileName, const QImage& picture, Console& console)
{
    const QByteArray bytes = png(picture);
    if (bytes.isEmpty())
        return console.unwritten(fileName, QStringLiteral("there is not enough memory for the picture"));
    const QString error = replaceFile(fileName, bytes);
    return error.isEmpty() ? int(Clean) : console.unwritten(fileName, error);
}

} // namespace

int runRender(const QString& input, const QString& output, int size, Console& console)
{
    const Document document = readDocument(input);
    if (!document.error.isEmpty())
        return console.unread(input, document.error);
    Quillet::PainterPathContainer picture;
    if (!Quillet::parseSvg(document.text, picture))
        return refuse(input, document, console);

    QSizeF drawing = frameOf(document.text).size;
    if (drawing.isEmpty())
        drawing = extentOf(picture);
    return writePicture(output, drawWithLibrary(picture, drawing, size), console);
}

int runCompare(
    const QString& input, const QString& original, const QString& output, int size, Console& console)
{
    const Document document = readDocument(input);
    if (!document.error.isEmpty())
        return console.unread(input, document.error);
    const Document meant = original == input ? document : readDocument(original);
    if (!meant.error.isEmpty())
        return console.unread(original, meant.error);

    Quillet::PainterPathContainer picture;
    if (!Quillet::parseSvg(document.text, picture))
        return refuse(input, document, console);
    // Also tells whether Qt's renderer would ever come to an end.
    const Conversion conversion = convertSvg(meant.text);
    if (!conversion.error.isEmpty())
        return console.refused(original, conversion.errorPosition, conversion.error);
    QXmlStreamReader reader(meant.text);
    QSvgRenderer renderer;
    renderer.load(&reader);

    const QImage byQt = drawWithQt(renderer, conversion.frame, size);
    const QImage bySvg = drawAsSvgSays(meant.text, conversion.frame, size);
    const QImage byLibrary = drawWithLibrary(picture, conversion.frame.size, size);
    const int status = writePicture(output, sideBySide(byQt, byLibrary), console);
    if (status != Clean)
        return status;

    const Difference difference = compare(byQt, byLibrary);
    const bool departs = !bySvg.isNull() && !compare(byQt, bySvg).isSmall();
    const Difference fromSvg = departs ? compare(bySvg, byLibrary) : difference;
    QTextStream& report = console.reportBeside(output);
    report << nameOfInput(input) << ": "
           << (difference.isSmall() ? "drawn alike"
               : fromSvg.isSmall()  ? "drawn as SVG says"
                                    : "drawn otherwise")
           << "; " << percent(difference) << " of the pixels differ by more than " << channel_tolerance
           << " of 255, the worst by " << difference.worst;
    if (departs)
        report << "; Qt's renderer departs from SVG in this file: from what SVG says, " << percent(fromSvg)
               << " differ";
    report << '\n';
    return difference.isSmall() || fromSvg.isSmall() ? Clean : Lossy;
}
