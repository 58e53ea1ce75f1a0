#include "Recorder.h"

#include <QtGui/QPaintEngine>

#include <algorithm>

namespace {

constexpr int dots_per_inch = 96; // as CSS has it

} // namespace

class Recorder::Engine : public QPaintEngine
{
public:
    Engine() : QPaintEngine(AllFeatures) {}

    QVector<Painted> painted;

    bool begin(QPaintDevice* /*device*/) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }

    void updateState(const QPaintEngineState& news) override
    {
        const DirtyFlags changed = news.state();
        if (changed & DirtyTransform)
            m_now.transform = news.transform();
        if (changed & DirtyPen)
            m_now.pen = news.pen();
        if (changed & DirtyBrush)
            m_now.brush = news.brush();
        if (changed & DirtyOpacity)
            m_now.opacity = news.opacity();
    }

    void drawPath(const QPainterPath& path) override { record(path, m_now.brush); }

    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override
    {
        QPainterPath path;
        path.setFillRule(mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill);
        for (int i = 0; i < count; ++i) {
            if (i == 0)
                path.moveTo(points[i]);
            else
                path.lineTo(points[i]);
        }
        if (mode != PolylineMode)
            path.closeSubpath();
        record(path, mode == PolylineMode ? QBrush() : m_now.brush);
    }

    void drawPolygon(const QPoint* points, int count, PolygonDrawMode mode) override
    {
        QVector<QPointF> exact;
        exact.reserve(count);
        for (int i = 0; i < count; ++i)
            exact.append(points[i]);
        drawPolygon(exact.constData(), count, mode);
    }

    void drawRects(const QRectF* rects, int count) override
    {
        for (int i = 0; i < count; ++i) {
            QPainterPath path;
            path.addRect(rects[i]);
            drawPath(path);
        }
    }

    void drawEllipse(const QRectF& rect) override
    {
        QPainterPath path;
        path.addEllipse(rect);
        drawPath(path);
    }

    void drawLines(const QLineF* lines, int count) override
    {
        for (int i = 0; i < count; ++i) {
            QPainterPath path(lines[i].p1());
            path.lineTo(lines[i].p2());
            record(path, QBrush());
        }
    }

    void drawPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& /*part*/) override
    {
        recordMark(target, pixmap.width());
    }

    void drawImage(const QRectF& target,
                   const QImage& image,
                   const QRectF& /*part*/,
                   Qt::ImageConversionFlags /*flags*/) override
    {
        recordMark(target, image.width());
    }

private:
    void record(const QPainterPath& path, const QBrush& brush)
    {
        Painted item = m_now;
        item.path = path;
        item.brush = brush;
        painted.append(item);
    }

    void recordMark(const QRectF& area, int kind)
    {
        Painted item = m_now;
        item.isMark = true;
        item.mark = {Mark::Kind(std::clamp(kind, int(Mark::Clip), int(Mark::End))), area};
        painted.append(item);
    }

    Painted m_now;
};

Recorder::Recorder(const QSize& size) : m_size(size), m_engine(std::make_unique<Engine>()) {}

Recorder::~Recorder() = default;

const QVector<Painted>& Recorder::painted() const
{
    return m_engine->painted;
}

QPaintEngine* Recorder::paintEngine() const
{
    return m_engine.get();
}

int Recorder::metric(PaintDeviceMetric metric) const
{
    switch (metric) {
    case PdmWidth:
        return m_size.width();
    case PdmHeight:
        return m_size.height();
    case PdmWidthMM:
        return int(m_size.width() * 25.4 / dots_per_inch);
    case PdmHeightMM:
        return int(m_size.height() * 25.4 / dots_per_inch);
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return dots_per_inch;
    case PdmDepth:
        return 32;
    case PdmNumColors:
        return 0; // as many as there are
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return int(devicePixelRatioFScale());
    default:
        return QPaintDevice::metric(metric);
    }
}
