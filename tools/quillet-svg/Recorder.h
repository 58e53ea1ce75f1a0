#pragma once

#include "Marks.h"

#include <QtCore/QVector>
#include <QtGui/QBrush>
#include <QtGui/QPaintDevice>
#include <QtGui/QPainterPath>
#include <QtGui/QPen>
#include <QtGui/QTransform>

#include <memory>

/// One thing that was painted, as the painter was told it, or a mark.
struct Painted
{
    bool isMark = false; ///< then only the mark and the transform count
    Mark mark;
    QPainterPath path; ///< before the transform; with its fill rule
    QTransform transform;
    QPen pen;           ///< Qt::NoPen: not stroked
    QBrush brush;       ///< Qt::NoBrush: not filled
    double opacity = 1; ///< of the painter, on top of the colours'
};

/// A paint device that keeps what is painted on it instead of drawing it.
class Recorder : public QPaintDevice
{
public:
    explicit Recorder(const QSize& size);
    ~Recorder() override;

    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    const QVector<Painted>& painted() const;

    QPaintEngine* paintEngine() const override;

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    class Engine;

    QSize m_size;
    std::unique_ptr<Engine> m_engine;
};
