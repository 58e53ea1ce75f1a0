#include "Viewport.h"

#include "Frame.h"

namespace {

QString text(double number)
{
    return QString::number(number, 'g', 12);
}

/// The width or the height of \a content, as text.
QString lengthFor(const char* name, const XmlElement& content, const XmlElement* use, double whole)
{
    QString value = use ? use->attribute(QLatin1String(name)) : QString();
    if (value.isEmpty())
        value = content.attribute(QLatin1String(name));
    if (value.isEmpty())
        value = QStringLiteral("100%");
    return value.endsWith(QLatin1Char('%')) && whole > 0 ? text(lengthOf(value, whole)) : value;
}

} // namespace

QString translation(double x, double y)
{
    return QStringLiteral(" translate(%1 %2)").arg(text(x), text(y));
}

Viewport viewportOf(const XmlElement& content, const XmlElement* use, const QSizeF& around)
{
    const QString width = lengthFor("width", content, use, around.width());
    const QString height = lengthFor("height", content, use, around.height());
    const Frame frame = readFrame(width,
                                  height,
                                  content.attribute(QStringLiteral("viewBox")),
                                  content.attribute(QStringLiteral("preserveAspectRatio")));
    Viewport viewport;
    const bool isSized = !width.endsWith(QLatin1Char('%')) && !height.endsWith(QLatin1Char('%'));
    viewport.isEmpty = frame.isEmpty;
    if (localName(content.name) == QLatin1String("svg")) {
        viewport.transform = translation(lengthOf(content.attribute(QStringLiteral("x")), around.width()),
                                         lengthOf(content.attribute(QStringLiteral("y")), around.height()));
    }
    if (frame.viewBox.isNull()) {
        viewport.size = frame.size;
        if (isSized)
            viewport.area = QRectF(QPointF(), frame.size);
        return viewport;
    }
    const double across = frame.target.width() / frame.viewBox.width();
    const double down = frame.target.height() / frame.viewBox.height();
    viewport.size = frame.viewBox.size();
    if (isSized)
        viewport.area = QRectF(frame.viewBox.x() - frame.target.x() / across,
                               frame.viewBox.y() - frame.target.y() / down,
                               frame.size.width() / across,
                               frame.size.height() / down);
    viewport.transform += translation(frame.target.x(), frame.target.y())
                          + QStringLiteral(" scale(%1 %2)").arg(text(across), text(down))
                          + translation(-frame.viewBox.x(), -frame.viewBox.y());
    return viewport;
}
