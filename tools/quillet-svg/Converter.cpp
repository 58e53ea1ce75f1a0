#include "Converter.h"

#include "Drawing.h"
#include "Preparation.h"
#include "Recorder.h"
#include "SubsetShape.h"

#include <QtCore/QXmlStreamReader>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

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
    result.frame = readFrame(root.attribute(QStringLiteral("width")),
                             root.attribute(QStringLiteral("height")),
                             root.attribute(QStringLiteral("viewBox")),
                             root.attribute(QStringLiteral("preserveAspectRatio")));

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

    Recorder recorder(result.frame.size.toSize().expandedTo(QSize(1, 1)));
    {
        QPainter painter(&recorder);
        paintWithQt(painter, renderer, result.frame);
    }
    SubsetWriter writer(result.frame.size);
    for (const Painted& painted : recorder.painted()) {
        const QVector<SubsetShape> shapes = subsetShapes(painted);
        for (const SubsetShape& shape : shapes) {
            writer.add(shape);
            ++result.shapes;
        }
    }
    result.text = writer.document();
    return result;
}
