#include "VectorCanvas.h"

#include "VectorDocument.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QWheelEvent>

#include <cmath>
#include <utility>

namespace {

constexpr double fitting_margin = 24;
constexpr double zoom_per_notch = 1.2;
constexpr double wheel_notch = 120;

QPointF positionOf(const QWheelEvent& event)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    return event.position();
#else
    return event.posF();
#endif
}

} // namespace

VectorCanvas::VectorCanvas(QWidget* parent)
    : QWidget(parent), m_picture(std::make_unique<Quillet::PainterPathContainer>())
{
    setMouseTracking(true);
    setMinimumSize(160, 160);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setCursor(Qt::OpenHandCursor);
}

VectorCanvas::~VectorCanvas() = default;

void VectorCanvas::setPicture(std::unique_ptr<Quillet::PainterPathContainer> picture)
{
    m_picture = std::move(picture);
    m_bounds = boundsOf(*m_picture);
    m_litShape = -1;
    m_hoveredShape = -1;
    m_view = VectorView();
    fit();
}

const Quillet::PainterPathContainer& VectorCanvas::picture() const
{
    return *m_picture;
}

void VectorCanvas::setLitShape(int index)
{
    m_litShape = index;
    update();
}

int VectorCanvas::litShape() const
{
    return m_litShape;
}

int VectorCanvas::shapeAt(const QPointF& point) const
{
    const auto& shapes = m_picture->getPaths();
    for (std::size_t i = shapes.size(); i > 0; --i) {
        if (shapes[i - 1]->contains(point))
            return int(i - 1);
    }
    return -1;
}

const VectorView& VectorCanvas::view() const
{
    return m_view;
}

void VectorCanvas::zoom(double factor)
{
    zoomAt(factor, middle());
}

void VectorCanvas::fit()
{
    m_view.fit(m_bounds, fittingArea());
    m_fitted = true;
    applyView();
}

void VectorCanvas::setRotation(double degrees)
{
    m_view.setRotation(degrees, middle());
    if (m_fitted)
        fit();
    else
        applyView();
}

QSize VectorCanvas::sizeHint() const
{
    return {480, 480};
}

bool VectorCanvas::event(QEvent* event)
{
    if (event->type() == QEvent::Leave) {
        m_pointer.reset();
        hover();
    }
    return QWidget::event(event);
}

void VectorCanvas::mouseMoveEvent(QMouseEvent* event)
{
    const QPointF before = m_pointer.value_or(event->localPos());
    m_pointer = event->localPos();
    if (!m_dragging)
        return hover();

    m_view.pan(*m_pointer - before);
    m_fitted = false;
    applyView();
}

void VectorCanvas::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    m_pointer = event->localPos();
    m_dragging = true;
    setCursor(Qt::ClosedHandCursor);
}

void VectorCanvas::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mouseReleaseEvent(event);
    m_dragging = false;
    setCursor(Qt::OpenHandCursor);
}

void VectorCanvas::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.setRenderHint(QPainter::Antialiasing);
    m_picture->draw(painter);
    paintLitShape(painter);

    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void VectorCanvas::resizeEvent(QResizeEvent* /*event*/)
{
    if (m_fitted)
        fit();
}

void VectorCanvas::wheelEvent(QWheelEvent* event)
{
    const double notches = event->angleDelta().y() / wheel_notch;
    zoomAt(std::pow(zoom_per_notch, notches), positionOf(*event));
}

void VectorCanvas::zoomAt(double factor, const QPointF& fixed)
{
    m_view.zoom(factor, fixed);
    m_fitted = false;
    applyView();
}

void VectorCanvas::applyView()
{
    m_picture->setTransform(m_view.transform());
    hover();
    update();
}

void VectorCanvas::hover()
{
    const int hovered = m_pointer ? shapeAt(*m_pointer) : -1;
    if (hovered == m_hoveredShape)
        return;
    m_hoveredShape = hovered;
    Q_EMIT shapeHovered(hovered);
}

void VectorCanvas::paintLitShape(QPainter& painter) const
{
    if (m_litShape < 0)
        return;
    const auto& shape = m_picture->getPaths()[std::size_t(m_litShape)];
    QColor overlay = palette().color(QPalette::Highlight);
    painter.setPen(QPen(overlay, 2));
    overlay.setAlphaF(0.4);
    painter.setBrush(overlay);
    painter.drawPath(shape->getTransformedPath());
}

QRectF VectorCanvas::fittingArea() const
{
    // Before its first layout the canvas is smaller than that.
    const QRectF whole(QPointF(), QSizeF(size().expandedTo(minimumSize())));
    return whole.adjusted(fitting_margin, fitting_margin, -fitting_margin, -fitting_margin);
}

QPointF VectorCanvas::middle() const
{
    return QRectF(rect()).center();
}
