#include "Rewriting.h"

#include <Quillet/PainterPathContainer.h>

#include <QtCore/QRegularExpression>
#include <QtGui/QColor>

namespace {

QDomDocument copyOf(const QDomDocument& document)
{
    return document.cloneNode(true).toDocument();
}

/// Calls \a visit(element, inherited) for the root, each group and each path that is drawn. What it returns
/// is what the element's children inherit.
template <typename Inherited, typename Visit>
void visitDrawn(QDomElement element, const Inherited& inherited, Visit visit)
{
    const Inherited handedDown = visit(element, inherited);
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (child.tagName() == QLatin1String("g") || child.tagName() == QLatin1String("path"))
            visitDrawn(child, handedDown, visit);
    }
}

void setFillRules(const QDomDocument& document)
{
    const QString attribute = QStringLiteral("fill-rule");
    visitDrawn(document.documentElement(),
               QStringLiteral("nonzero"),
               [&](QDomElement element, const QString& inherited) {
                   QString rule = element.attribute(attribute, inherited);
                   element.setAttribute(attribute, rule);
                   return rule;
               });
}

void replaceColour(QDomElement& element, const QString& attribute)
{
    static const QRegularExpression function(
        QStringLiteral("\\Argb\\(\\s*(\\d+)\\s*,\\s*(\\d+)\\s*,\\s*(\\d+)\\s*\\)\\z"));
    const QString colour = element.attribute(attribute);
    const QRegularExpressionMatch rgb = function.match(colour);
    if (colour.compare(QLatin1String("currentColor"), Qt::CaseInsensitive) == 0)
        element.setAttribute(attribute, QStringLiteral("#000000"));
    else if (colour == QLatin1String("inherit"))
        element.removeAttribute(attribute);
    else if (colour == QLatin1String("transparent"))
        element.setAttribute(attribute, QStringLiteral("none"));
    else if (rgb.hasMatch())
        element.setAttribute(attribute,
                             QColor(qMin(rgb.captured(1).toInt(), 255),
                                    qMin(rgb.captured(2).toInt(), 255),
                                    qMin(rgb.captured(3).toInt(), 255))
                                 .name());
}

void replaceColours(const QDomDocument& document)
{
    visitDrawn(document.documentElement(), 0, [](QDomElement element, int) {
        replaceColour(element, QStringLiteral("fill"));
        replaceColour(element, QStringLiteral("stroke"));
        return 0;
    });
}

/// A colour as docs/vector-paths.md has it: with the alpha that it got where it was set.
struct Paint
{
    QString colour;
    double alpha = 1;
};

struct Paints
{
    double opacity = 1;
    Paint fill = {QStringLiteral("#000000")};
    Paint stroke = {QStringLiteral("none")};
};

double numberOf(const QDomElement& element, const QString& attribute, double otherwise)
{
    return element.hasAttribute(attribute) ? element.attribute(attribute).toDouble() : otherwise;
}

Paint paintOf(const QDomElement& element, const QString& attribute, double opacity, const Paint& inherited)
{
    if (!element.hasAttribute(attribute))
        return inherited;
    const double own = numberOf(element, attribute + QStringLiteral("-opacity"), 1);
    return {element.attribute(attribute), own * opacity};
}

void setPaint(QDomElement& element, const QString& attribute, const Paint& paint)
{
    element.setAttribute(attribute, paint.colour);
    element.setAttribute(attribute + QStringLiteral("-opacity"), paint.alpha);
}

void setOpacities(const QDomDocument& document)
{
    visitDrawn(document.documentElement(), Paints(), [](QDomElement element, Paints paints) {
        const QString fill = QStringLiteral("fill");
        const QString stroke = QStringLiteral("stroke");
        paints.opacity = numberOf(element, QStringLiteral("opacity"), paints.opacity);
        paints.fill = paintOf(element, fill, paints.opacity, paints.fill);
        paints.stroke = paintOf(element, stroke, paints.opacity, paints.stroke);
        element.removeAttribute(QStringLiteral("opacity"));
        setPaint(element, fill, paints.fill);
        setPaint(element, stroke, paints.stroke);
        return paints;
    });
}

} // namespace

QDomDocument rewrittenForQuillet(const QDomDocument& document, Rules rules)
{
    QDomDocument copy = copyOf(document);
    if (rules & FillRuleRule)
        setFillRules(copy);
    if (rules & ColourRule)
        replaceColours(copy);
    return copy;
}

QDomDocument rewrittenForSvg(const QDomDocument& document, Rules rules)
{
    QDomDocument copy = copyOf(document);
    if (rules & OpacityRule)
        setOpacities(copy);
    return copy;
}

void adjustPens(Quillet::PainterPathContainer& picture, Rules rules)
{
    for (const auto& shape : picture.getPaths()) {
        QPen pen = shape->getPen();
        if ((rules & MiterLimitRule) && pen.joinStyle() == Qt::MiterJoin)
            pen.setJoinStyle(Qt::SvgMiterJoin);
        if ((rules & HairlineRule) && pen.widthF() == 0)
            pen.setColor(QColor());
        shape->setPen(pen);
    }
}
