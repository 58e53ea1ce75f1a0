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

Conversion convertSvg(const QString& text)
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
    Composition composition = compose(recorder.painted());
    for (const int element : qAsConst(composition.coarseLayers)) {
        result.losses.append(
            {Finding::Lost,
             tree.elements()[element].position,
             QStringLiteral("opacity"),
             QStringLiteral("shapes with an opacity in common overlap in too many places; one "
                            "shows through the other"),
             QStringLiteral("choose colours that need no opacity")});
    }
    if (composition.hasFineDashes) {
        result.losses.append({Finding::Lost,
                              root.position,
                              QStringLiteral("dashes"),
                              QStringLiteral("a line of more than 100,000 dashes is drawn without gaps"),
                              QStringLiteral("choose longer dashes")});
    }
    sortFindings(result.losses);
    if (prepared.clipsToFrame)
        composition.shapes = clipped(composition.shapes, QRectF(QPointF(), result.frame.size), QTransform());
    SubsetWriter writer(result.frame.size);
    for (const SubsetShape& shape : qAsConst(composition.shapes)) {
        writer.add(shape);
        ++result.shapes;
    }
    result.text = writer.document();
    return result;
}
