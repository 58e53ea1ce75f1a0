#include "Replay.h"

#include "Drawing.h"
#include "Recorder.h"

#include <QtCore/QXmlStreamReader>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <algorithm>

namespace {

constexpr qint64 most_pixels_at_once = qint64(1) << 28;
constexpr qint64 most_pixels_in_all = qint64(1) << 31;

struct Layer
{
    QImage picture;
    Mark mark;
    QTransform transform;
};

void paint(Layer& layer, const Painted& painted, const QTransform& scaling)
{
    QPainter painter(&layer.picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(painted.transform * scaling);
    painter.setOpacity(painted.opacity);
    painter.setPen(painted.pen);
    painter.setBrush(painted.brush);
    painter.drawPath(painted.path);
}

/// Puts the layer on top into the one below.
void close(QVector<Layer>& layers, const QTransform& scaling)
{
    Layer layer = layers.takeLast();
    if (layer.mark.kind == Mark::Clip) {
        QImage mask(layer.picture.size(), layer.picture.format());
        mask.fill(Qt::transparent);
        QPainter painter(&mask);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setTransform(layer.transform * scaling);
        painter.fillRect(layer.mark.area, Qt::black);
        painter.end();
        QPainter masking(&layer.picture);
        masking.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        masking.drawImage(0, 0, mask);
    }
    QPainter painter(&layers.last().picture);
    painter.setOpacity(layer.mark.kind == Mark::Layer ? layer.mark.opacity() : 1);
    painter.drawImage(0, 0, layer.picture);
}

/// Whether pictures of \a pixels can be had for all layers.
bool isBearable(const QVector<Painted>& all, qint64 pixels)
{
    qint64 layers = 1;
    qint64 depth = 1;
    qint64 deepest = 1;
    for (const Painted& each : all) {
        if (!each.isMark)
            continue;
        if (each.mark.kind == Mark::End) {
            --depth;
        } else {
            ++layers;
            deepest = std::max(deepest, ++depth);
        }
    }
    return layers * pixels <= most_pixels_in_all && deepest * pixels <= most_pixels_at_once;
}

} // namespace

QImage drawPrepared(const QString& prepared, const Frame& frame, int size)
{
    QXmlStreamReader reader(prepared);
    QSvgRenderer renderer;
    renderer.load(&reader);
    Recorder recorder(frame.size.toSize().expandedTo(QSize(1, 1)));
    {
        QPainter painter(&recorder);
        paintWithQt(painter, renderer, frame);
    }
    QTransform scaling;
    const QImage empty = emptyPicture(frame.size, size, scaling);
    if (!isBearable(recorder.painted(), qint64(empty.width()) * empty.height()))
        return {};
    QVector<Layer> layers{{empty, Mark(), QTransform()}};
    for (const Painted& each : recorder.painted()) {
        if (!each.isMark)
            paint(layers.last(), each, scaling);
        else if (each.mark.kind != Mark::End)
            layers.append({empty, each.mark, each.transform});
        else if (layers.size() > 1)
            close(layers, scaling);
    }
    return layers.first().picture;
}
