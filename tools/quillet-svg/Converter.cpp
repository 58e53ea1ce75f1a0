#include "Converter.h"

#include "Composition.h"
#include "Drawing.h"
#include "Preparation.h"
#include "Recorder.h"

#include <QtCore/QXmlStreamReader>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

namespace {

constexpr QSizeF largest_device(1e6, 1e6); ///< that holds what is recorded, of drawings of any size

} // namespace

Conversion convertSvg(const QString& text, qint64 effort)
{
    Conversion result;
    const XmlTree tree(text);
    if (!tree.error().isEmpty()) {
        result.error = tree.error();
        result.errorPosition = tree.errorPosition();
        return result;
    }
    const XmlElement& root = tree.elements().first();
    if (localName(root.name) != QLatin1String("svg")) {
        result.error = QStringLiteral("the root is <%1>, not <svg>").arg(root.name);
        result.errorPosition = root.position;
        return result;
    }
    result.frame = readFrame(root);

    const Preparation prepared = prepareForQt(tree);
    result.losses = prepared.findings;
    if (!prepared.error.isEmpty()) {
        result.error = prepared.error;
        result.errorPosition = prepared.errorPosition;
        return result;
    }
    QXmlStreamReader reader(prepared.text);
    QSvgRenderer renderer;
    if (!renderer.load(&reader)) {
        result.error = QStringLiteral("Qt's SVG renderer cannot read it");
        return result;
    }
    if (result.frame.size.isEmpty())
        result.frame.size =
            renderer.viewBoxF().bottomRight().x() > 0 ? renderer.viewBoxF().size() : QSizeF(1, 1);

    Recorder recorder(result.frame.size.boundedTo(largest_device).toSize().expandedTo(QSize(1, 1)));
    {
        QPainter painter(&recorder);
        paintWithQt(painter, renderer, result.frame);
    }
    const Composition composition = compose(
        recorder.painted(), prepared.clipsToFrame ? QRectF(QPointF(), result.frame.size) : QRectF(), effort);
    const auto lose =
        [&](const XmlElement& where, const char* rule, const QString& message, const QString& advice) {
            result.losses.append({Finding::Lost, where.position, QLatin1String(rule), message, advice});
        };
    for (const int element : composition.mergedLayers) {
        lose(tree.elements()[element],
             "opacity",
             QStringLiteral("shapes with an opacity in common overlap, and could not be parted; one "
                            "shows through the other"),
             QStringLiteral("choose colours that need no opacity"));
    }
    if (composition.hasWholeShapes) {
        lose(root,
             "overflow",
             QStringLiteral("a shape sticks out of its frame, and could not be cut there"),
             QStringLiteral("draw no more than is to be seen"));
    }
    if (composition.hasFineDashes) {
        lose(root,
             "dashes",
             QStringLiteral("a line of more than 100,000 dashes is drawn without gaps"),
             QStringLiteral("choose longer dashes"));
    }
    if (composition.hasManyDashes) {
        lose(root,
             "dashes",
             QStringLiteral("behind the first 500,000 dashes, lines are drawn without gaps"),
             QStringLiteral("choose longer dashes"));
    }
    sortFindings(result.losses);
    SubsetWriter writer(result.frame.size);
    for (const SubsetShape& shape : composition.shapes) {
        result.shapes += writer.add(shape) ? 1 : 0;
    }
    result.text = writer.document();
    return result;
}
