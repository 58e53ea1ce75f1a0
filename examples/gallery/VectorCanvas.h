#pragma once

#include "VectorView.h"

#include <QtWidgets/QWidget>

#include <memory>
#include <optional>

namespace Quillet {
class PainterPathContainer;
}

/// Shows a picture to move with the mouse, and lights up one of its shapes.
///
/// Dragging moves the picture, the wheel zooms at the pointer. Strokes keep their width at every zoom,
/// because a shape's transform places its path and leaves its pen alone.
class VectorCanvas : public QWidget
{
    Q_OBJECT

public:
    explicit VectorCanvas(QWidget* parent = nullptr);
    ~VectorCanvas() override;

    /// Shows \a picture, which must not be null, fitted to the canvas and without a rotation.
    void setPicture(std::unique_ptr<Quillet::PainterPathContainer> picture);

    const Quillet::PainterPathContainer& picture() const;

    /// The shape to light up, by its place in the picture; -1 for none.
    void setLitShape(int index);
    int litShape() const;

    /// The topmost shape at \a point of the canvas, or -1.
    int shapeAt(const QPointF& point) const;

    const VectorView& view() const;

    /// Zooms at the middle of the canvas.
    void zoom(double factor);

    /// Shows the whole picture as large as the canvas has room, also when the canvas changes its size, until
    /// the picture is moved or zoomed.
    void fit();

    void setRotation(double degrees);

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The pointer came over another shape, or over none (-1). Another view may have brought the shape there.
    void shapeHovered(int index);

protected:
    bool event(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void zoomAt(double factor, const QPointF& fixed);
    void applyView();
    void hover();
    void paintLitShape(QPainter& painter) const;
    QRectF fittingArea() const;
    QPointF middle() const;

    std::unique_ptr<Quillet::PainterPathContainer> m_picture;
    QRectF m_bounds; // of the picture, in its own coordinates
    VectorView m_view;
    bool m_fitted = true;
    int m_litShape = -1;
    int m_hoveredShape = -1;
    std::optional<QPointF> m_pointer; // while it is over the canvas
    bool m_dragging = false;
};
