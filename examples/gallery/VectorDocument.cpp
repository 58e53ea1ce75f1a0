#include "VectorDocument.h"

#include "VectorView.h"

#include <Quillet/SvgFileParser.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtGui/QPainter>

#include <utility>

/// Keeps the samples, which stand in a static library, in the program. The macro wants no namespace around
/// it.
static void keepSamples()
{
    Q_INIT_RESOURCE(Samples);
}

namespace {

constexpr int drawing_margin = 12;

bool isReadable(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly);
}

QString countOf(std::size_t shapes)
{
    if (shapes == 0)
        return QStringLiteral("no shape");
    return shapes == 1 ? QStringLiteral("1 shape") : QStringLiteral("%1 shapes").arg(shapes);
}

QString reportOf(bool accepted, const QString& fileName, std::size_t shapes)
{
    const QString native = QDir::toNativeSeparators(fileName);
    if (accepted)
        return QStringLiteral("Read %1 from %2").arg(countOf(shapes), native);
    if (!isReadable(fileName))
        return QStringLiteral("Cannot open %1").arg(native);
    return QStringLiteral("Refused %1 after reading %2").arg(native, countOf(shapes));
}

} // namespace

VectorDocument readVectorDocument(const QString& fileName)
{
    auto picture = std::make_unique<Quillet::PainterPathContainer>();
    const bool accepted = Quillet::parseSvgFile(fileName, *picture);
    const QString report = reportOf(accepted, fileName, picture->getPaths().size());
    return {std::move(picture), report, accepted};
}

QRectF boundsOf(const Quillet::PainterPathContainer& picture)
{
    // QRectF's own union passes over a rectangle without a height, such as that of a level line.
    QPolygonF corners;
    for (const auto& shape : picture.getPaths()) {
        const QRectF bounds = shape->getPath().boundingRect();
        if (!shape->getPath().isEmpty())
            corners << bounds.topLeft() << bounds.bottomRight();
    }
    return corners.boundingRect();
}

const QVector<VectorSample>& vectorSamples()
{
    keepSamples();
    static const QVector<VectorSample> samples = {
        {QStringLiteral("harbour"),
         QStringLiteral("Harbour"),
         QStringLiteral(":/gallery/samples/harbour.svg")},
        {QStringLiteral("rosette"),
         QStringLiteral("Rosette"),
         QStringLiteral(":/gallery/samples/rosette.svg")},
        {QStringLiteral("strokes"),
         QStringLiteral("Strokes"),
         QStringLiteral(":/gallery/samples/strokes.svg")},
        {QStringLiteral("teacup"), QStringLiteral("Teacup"), QStringLiteral(":/gallery/samples/teacup.svg")},
        {QStringLiteral("arc-flags"),
         QStringLiteral("Flags of arcs"),
         QStringLiteral(":/gallery/samples/arc-flags.svg")},
    };
    return samples;
}

const QVector<VectorSample>& designSamples()
{
    keepSamples();
    static const QVector<VectorSample> samples = {
        {QStringLiteral("compass"),
         QStringLiteral("Compass: all of it can be kept"),
         QStringLiteral(":/gallery/samples/compass.svg")},
        {QStringLiteral("balloon"),
         QStringLiteral("Balloon: a gradient and a clip path are lost"),
         QStringLiteral(":/gallery/samples/balloon.svg")},
    };
    return samples;
}

const QVector<VectorSample>& dialogIcons()
{
    static const QVector<VectorSample> icons = {
        {QStringLiteral("critical"),
         QStringLiteral("Icon: critical"),
         QStringLiteral(":/Icons/Critical.svg")},
        {QStringLiteral("information"),
         QStringLiteral("Icon: information"),
         QStringLiteral(":/Icons/Information.svg")},
        {QStringLiteral("question"),
         QStringLiteral("Icon: question"),
         QStringLiteral(":/Icons/Question.svg")},
        {QStringLiteral("warning"), QStringLiteral("Icon: warning"), QStringLiteral(":/Icons/Warning.svg")},
    };
    return icons;
}

QImage drawing(const VectorDocument& document, int sideLength)
{
    QImage image(sideLength, sideLength, QImage::Format_RGB32);
    image.fill(Qt::white);

    const QRectF target(
        drawing_margin, drawing_margin, sideLength - 2 * drawing_margin, sideLength - 2 * drawing_margin);
    VectorView view;
    view.fit(boundsOf(*document.picture), target);
    document.picture->setTransform(view.transform());

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    document.picture->draw(painter);
    return image;
}
