#include "Frame.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>

namespace {

/// 0 for "Min", 0.5 for "Mid" and 1 for "Max" in a text such as "xMidYMax"; \a axis is "x" or "Y".
double alignment(const QString& text, QChar axis)
{
    const QString word = text.mid(text.indexOf(axis) + 1, 3);
    if (word == QLatin1String("Min"))
        return 0;
    return word == QLatin1String("Max") ? 1 : 0.5;
}

QRectF place(const QRectF& box, const QSizeF& size, const QString& aspectRatio)
{
    if (aspectRatio.contains(QLatin1String("none")))
        return {QPointF(), size};
    const Qt::AspectRatioMode mode =
        aspectRatio.contains(QLatin1String("slice")) ? Qt::KeepAspectRatioByExpanding : Qt::KeepAspectRatio;
    const QSizeF scaled = box.size().scaled(size, mode);
    const QSizeF rest = size - scaled;
    return {QPointF(rest.width() * alignment(aspectRatio, QLatin1Char('x')),
                    rest.height() * alignment(aspectRatio, QLatin1Char('Y'))),
            scaled};
}

} // namespace

std::optional<QRectF> readViewBox(const QString& text)
{
    static const QRegularExpression separators(QStringLiteral("[\\s,]+"));
    const QStringList parts = text.split(separators, Qt::SkipEmptyParts);
    if (parts.size() != 4)
        return std::nullopt;
    double numbers[4] = {};
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        numbers[i] = parts[i].toDouble(&ok);
        if (!ok || !std::isfinite(numbers[i]))
            return std::nullopt;
    }
    if (numbers[2] < 0 || numbers[3] < 0)
        return std::nullopt;
    return QRectF(numbers[0], numbers[1], numbers[2], numbers[3]);
}

double absoluteLength(const QString& text)
{
    struct Unit
    {
        const char* name;
        double pixels;
    };
    static constexpr Unit units[] = {
        {"px", 1}, {"pt", 96.0 / 72}, {"pc", 16}, {"mm", 96 / 25.4}, {"cm", 96 / 2.54}, {"in", 96}};
    QString number = text.trimmed();
    double pixels = 1;
    for (const Unit& unit : units) {
        if (number.endsWith(QLatin1String(unit.name), Qt::CaseInsensitive)) {
            number.chop(2);
            pixels = unit.pixels;
            break;
        }
    }
    bool ok = false;
    const double value = number.toDouble(&ok) * pixels;
    return ok && std::isfinite(value) ? value : 0;
}

double lengthOf(const QString& text, double whole)
{
    const QString number = text.trimmed();
    return number.endsWith(QLatin1Char('%')) ? number.chopped(1).toDouble() / 100 * whole
                                             : absoluteLength(number);
}

bool isZeroLength(const QString& text)
{
    static const QRegularExpression zero(QStringLiteral("^\\s*[-+]?(0+\\.?0*|\\.0+)(%|[a-zA-Z]*)\\s*$"));
    return zero.match(text).hasMatch();
}

bool Frame::isIdentity() const
{
    const double rounding = 1e-9 * std::max(viewBox.width(), viewBox.height());
    const auto isSame = [rounding](double one, double other) { return std::abs(one - other) <= rounding; };
    return viewBox.isNull()
           || (isSame(viewBox.x(), target.x()) && isSame(viewBox.y(), target.y())
               && isSame(viewBox.width(), target.width()) && isSame(viewBox.height(), target.height()));
}

Frame readFrame(const QString& width,
                const QString& height,
                const QString& viewBox,
                const QString& preserveAspectRatio)
{
    Frame frame;
    const std::optional<QRectF> box = readViewBox(viewBox);
    frame.isEmpty = isZeroLength(width) || isZeroLength(height) || (box && box->isEmpty());
    if (box && !box->isEmpty())
        frame.viewBox = *box;
    double w = absoluteLength(width);
    double h = absoluteLength(height);
    if (!frame.viewBox.isNull()) {
        const double ratio = frame.viewBox.height() / frame.viewBox.width();
        if (w <= 0 && h <= 0) {
            w = frame.viewBox.width();
            h = frame.viewBox.height();
        } else if (w <= 0) {
            w = h / ratio;
        } else if (h <= 0) {
            h = w * ratio;
        }
    }
    if (w > 0 && h > 0)
        frame.size = QSizeF(w, h);
    if (!frame.viewBox.isNull())
        frame.target = place(frame.viewBox, frame.size, preserveAspectRatio);
    return frame;
}

Frame readFrame(const XmlElement& root)
{
    return readFrame(root.attribute(QStringLiteral("width")),
                     root.attribute(QStringLiteral("height")),
                     root.attribute(QStringLiteral("viewBox")),
                     root.attribute(QStringLiteral("preserveAspectRatio")));
}
