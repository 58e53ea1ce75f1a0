#include "PresentationCheck.h"

#include "Drawing.h"
#include "Style.h"
#include "SubsetShape.h"

#include <QtGui/QImage>
#include <QtGui/QPainter>

#include <cmath>
#include <utility>

namespace {

constexpr double alpha_tolerance = 1.0 / 255;
constexpr int area_size = 128; ///< of the picture in which two areas are compared

void readNumber(const XmlElement& element, const char* name, double& number)
{
    bool ok = false;
    const double value = element.attribute(QLatin1String(name)).toDouble(&ok);
    if (ok)
        number = qBound(0.0, value, 1.0);
}

void readPaint(const QString& paint, bool& isPainted)
{
    if (!paint.isEmpty() && paint != QLatin1String("inherit"))
        isPainted = paint != QLatin1String("none");
}

/// In black on nothing.
QImage drawArea(QPainterPath path, Qt::FillRule rule)
{
    const QRectF box = path.boundingRect();
    const double longer = qMax(box.width(), box.height());
    QImage picture(area_size, area_size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    if (!(longer > 0) || !std::isfinite(longer))
        return picture;
    path.setFillRule(rule);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(area_size / longer, area_size / longer);
    painter.translate(-box.topLeft());
    painter.fillPath(path, Qt::black);
    return picture;
}

/// Whether the rule that decides what is inside matters for the path.
bool ruleMatters(const QPainterPath& path)
{
    // Edges that lie on each other are drawn harder by one rule than by the other.
    return compare(drawArea(path, Qt::WindingFill), drawArea(path, Qt::OddEvenFill)).worst
           > channel_tolerance;
}

QString percent(double share)
{
    return QStringLiteral("%1 %").arg(qRound(share * 1000) / 10.0);
}

} // namespace

Stated statedIn(const XmlElement& element)
{
    Stated stated{element.attribute(QStringLiteral("fill")).trimmed(),
                  element.attribute(QStringLiteral("stroke")).trimmed(),
                  element.attribute(QStringLiteral("display")).trimmed()};
    const QVector<Declaration> style = readStyle(element.attribute(QStringLiteral("style")));
    for (const Declaration& each : style) {
        if (each.property == QLatin1String("fill"))
            stated.fill = each.value;
        else if (each.property == QLatin1String("stroke"))
            stated.stroke = each.value;
        else if (each.property == QLatin1String("display"))
            stated.display = each.value;
    }
    return stated;
}

Presentation inherit(const Presentation& around, const XmlElement& element, const Stated& stated)
{
    Presentation result = around;
    double own = 1;
    readNumber(element, "opacity", own);
    result.opacity *= own;
    readNumber(element, "fill-opacity", result.fillOpacity);
    readNumber(element, "stroke-opacity", result.strokeOpacity);
    const QString rule = element.attribute(QStringLiteral("fill-rule")).trimmed();
    if (rule == QLatin1String("evenodd"))
        result.fillRule = Qt::OddEvenFill;
    else if (rule == QLatin1String("nonzero"))
        result.fillRule = Qt::WindingFill;
    for (const auto& [name, paint] :
         {std::make_pair("fill", &result.fill), std::make_pair("stroke", &result.stroke)}) {
        const QString value = element.attribute(QLatin1String(name));
        if (!value.isEmpty())
            *paint = value;
    }
    readPaint(stated.fill, result.fills);
    readPaint(stated.stroke, result.strokes);
    if (stated.display == QLatin1String("none"))
        result.isDisplayed = false; // whatever is in it says
    return result;
}

QVector<Finding> checkColor(const XmlAttribute& attribute, const Presentation& around)
{
    const QString& value = attribute.value;
    if (value.isEmpty() || value == QLatin1String("none"))
        return {};
    const bool isPaintedAround = attribute.name == QLatin1String("fill") ? around.fills : around.strokes;
    if (value == QLatin1String("inherit") && !isPaintedAround)
        return {}; // to the reader, too, there is none
    QColor taken;
    taken.setNamedColor(value);
    const QColor meant = readColor(value);
    const QString advice =
        QStringLiteral("write #rrggbb, with “%1-opacity” beside it where need be; “quillet-svg "
                       "convert” does it")
            .arg(attribute.name);
    if (!taken.isValid()) {
        return {{Finding::Lost,
                 attribute.valuePosition,
                 QStringLiteral("color"),
                 QStringLiteral("“%1” is no colour that the reader takes; there is no %2")
                     .arg(value, attribute.name),
                 advice}};
    }
    if (!meant.isValid() || meant.rgb() != taken.rgb() || meant.alpha() < 255) {
        return {{Finding::Lost,
                 attribute.valuePosition,
                 QStringLiteral("color"),
                 QStringLiteral("“%1” is read as the colour %2").arg(value, taken.name()),
                 advice}};
    }
    return {};
}

QVector<Finding>
checkPresentation(const XmlElement& path, const Presentation& presentation, const Quillet::PainterPath& shape)
{
    QVector<Finding> findings;
    const auto compareAlpha = [&](const QColor& color, double own, const char* what) {
        const double meant = own * presentation.opacity;
        if (!color.isValid() || std::abs(color.alphaF() - meant) <= alpha_tolerance)
            return;
        findings.append(
            {Finding::Lost,
             path.position,
             QStringLiteral("opacity"),
             QStringLiteral("the %1 should have an opacity of %2; the reader gives it %3")
                 .arg(QLatin1String(what), percent(meant), percent(color.alphaF())),
             QStringLiteral("write “%1” and “%1-opacity” on the path, or run “quillet-svg convert”")
                 .arg(QLatin1String(what))});
    };
    const auto compareColor = [&](const QColor& color, const QString& written, const char* what) {
        QColor expected;
        expected.setNamedColor(written == QLatin1String("none") ? QString() : written);
        if (color.isValid() == expected.isValid() && (!color.isValid() || color.rgb() == expected.rgb()))
            return;
        findings.append(
            {Finding::Lost,
             path.position,
             QStringLiteral("color"),
             QStringLiteral("the %1 is meant to be “%2”; the reader draws it %3")
                 .arg(QLatin1String(what),
                      written.simplified(),
                      color.isValid() ? color.name() : QStringLiteral("not at all")),
             QStringLiteral("write “%1” on the path, without line breaks in it").arg(QLatin1String(what))});
    };
    compareColor(shape.getBrush().color(), presentation.fill, "fill");
    compareColor(shape.getPen().color(), presentation.stroke, "stroke");
    const bool fills = shape.getBrush().color().isValid();
    const bool strokes = shape.getPen().color().isValid();
    compareAlpha(shape.getBrush().color(), presentation.fillOpacity, "fill");
    compareAlpha(shape.getPen().color(), presentation.strokeOpacity, "stroke");

    if (fills && shape.getPath().fillRule() != presentation.fillRule && ruleMatters(shape.getPath())) {
        const QString rule =
            presentation.fillRule == Qt::WindingFill ? QStringLiteral("nonzero") : QStringLiteral("evenodd");
        findings.append({Finding::Lost,
                         path.position,
                         QStringLiteral("fill-rule"),
                         QStringLiteral("the rule “%1” is meant and the reader takes the other, which fills "
                                        "another area")
                             .arg(rule),
                         QStringLiteral("write fill-rule=\"%1\" on the path").arg(rule)});
    }
    if (strokes && shape.getPen().widthF() <= 0) {
        findings.append({Finding::Lost,
                         path.position,
                         QStringLiteral("stroke-width"),
                         QStringLiteral("a stroke without width is drawn one pixel wide"),
                         QStringLiteral("write stroke=\"none\"")});
    } else if (strokes && !hasSameMiters(shape.getPath(), shape.getPen())) {
        findings.append({Finding::Lost,
                         path.position,
                         QStringLiteral("miter"),
                         QStringLiteral("a sharp corner of the stroke is cut otherwise than SVG says"),
                         QStringLiteral("choose another line join or limit, or run “quillet-svg convert”")});
    }
    return findings;
}
