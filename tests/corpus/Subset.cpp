#include "Subset.h"

#include "PathGrammar.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtGui/QColor>

#include <algorithm>

namespace {

bool isOneOf(const QString& text, std::initializer_list<const char*> words)
{
    return std::any_of(
        words.begin(), words.end(), [&](const char* word) { return text == QLatin1String(word); });
}

bool readNumber(const QString& text, double& number)
{
    static const QRegularExpression grammar(
        QStringLiteral("\\A[+-]?(?:[0-9]+\\.?[0-9]*|\\.[0-9]+)(?:[eE][+-]?[0-9]+)?\\z"));
    number = text.toDouble();
    return grammar.match(text).hasMatch();
}

bool isNumberFrom(double least, double most, const QString& text)
{
    double number = 0;
    return readNumber(text, number) && number >= least && number <= most;
}

/// A colour that means the same to QColor, apart from an alpha of its own.
bool isPlainColour(const QString& text)
{
    static const QRegularExpression hexadecimal(QStringLiteral("\\A#(?:[0-9a-fA-F]{3}){1,2}\\z"));
    static const QStringList names = QColor::colorNames();
    return text == QLatin1String("none") || hexadecimal.match(text).hasMatch()
           || (names.contains(text) && text != QLatin1String("transparent"));
}

/// The colours of CSS that mean something without looking at other elements.
bool isOtherColour(const QString& text)
{
    static const QRegularExpression function(
        QStringLiteral("\\Argb\\(\\s*[0-9]+\\s*,\\s*[0-9]+\\s*,\\s*[0-9]+\\s*\\)\\z"));
    return text.compare(QLatin1String("currentColor"), Qt::CaseInsensitive) == 0
           || isOneOf(text, {"inherit", "transparent"}) || function.match(text).hasMatch();
}

/// Attributes that have no influence on what is drawn, as long as there are no style sheets.
bool drawsNothing(const QString& attribute, bool ofRoot)
{
    // Of other name spaces, as drawing programs add them.
    if (attribute.contains(QLatin1Char(':')))
        return !attribute.startsWith(QLatin1String("xlink:"));
    return attribute == QLatin1String("xmlns") || attribute.startsWith(QLatin1String("aria-"))
           || attribute.startsWith(QLatin1String("data-"))
           || isOneOf(attribute,
                      {"id",
                       "class",
                       "role",
                       "focusable",
                       "version",
                       "baseProfile",
                       "clip-rule",
                       "enable-background"})
           || (ofRoot && isOneOf(attribute, {"width", "height", "viewBox", "x", "y", "preserveAspectRatio"}));
}

QRectF rectangleOf(const QString& viewBox)
{
    const QStringList parts = viewBox.simplified().split(QRegularExpression(QStringLiteral(" ?, ?| ")));
    double numbers[4] = {};
    if (parts.size() != 4)
        return {};
    for (int i = 0; i < 4; ++i) {
        if (!readNumber(parts.at(i), numbers[i]))
            return {};
    }
    return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

QRectF areaOf(const QDomElement& root)
{
    const QString viewBox = root.attribute(QStringLiteral("viewBox"));
    if (!viewBox.isEmpty())
        return rectangleOf(viewBox);
    double width = 0;
    double height = 0;
    readNumber(root.attribute(QStringLiteral("width")).remove(QStringLiteral("px")), width);
    readNumber(root.attribute(QStringLiteral("height")).remove(QStringLiteral("px")), height);
    return {0, 0, width, height};
}

class Judge
{
public:
    Judgement judge(const QDomDocument& document)
    {
        for (QDomNode node = document.firstChild(); !node.isNull(); node = node.nextSibling())
            judgeTopLevel(node);
        const QDomElement root = document.documentElement();
        if (root.attribute(QStringLiteral("xmlns")) != QLatin1String("http://www.w3.org/2000/svg"))
            note(QStringLiteral("no name space"));
        m_judgement.area = areaOf(root);
        if (root.hasAttribute(QStringLiteral("viewBox")) && m_judgement.area.isEmpty())
            note(QStringLiteral("view box"));
        judgeAttributes(root, true);
        judgeChildren(root);

        m_judgement.outside = m_outside.values();
        m_judgement.outside.sort();
        return m_judgement;
    }

private:
    void note(const QString& what) { m_outside.insert(what); }

    void judgeTopLevel(const QDomNode& node)
    {
        if (!node.isProcessingInstruction())
            return;
        const QDomProcessingInstruction instruction = node.toProcessingInstruction();
        if (instruction.target() != QLatin1String("xml"))
            note(QStringLiteral("processing instruction"));
        else if (instruction.data().contains(QLatin1String("encoding"))
                 && !instruction.data().contains(QLatin1String("utf-8"), Qt::CaseInsensitive))
            note(QStringLiteral("other encoding than UTF-8"));
    }

    void judgeChildren(const QDomElement& element)
    {
        for (QDomElement child = element.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement()) {
            const QString tag = child.tagName();
            if (isOneOf(tag, {"g", "path"})) {
                judgeAttributes(child, false);
                if (tag == QLatin1String("g"))
                    judgeChildren(child);
                else
                    judgePath(child);
            } else if (tag == QLatin1String("defs")) {
                judgeUnseen(child);
            } else if (!isOneOf(tag, {"title", "desc", "metadata"}) && !isForeign(tag)) {
                note(QStringLiteral("element %1").arg(tag));
            }
        }
    }

    /// Drawing programs have elements of their own name spaces, which draw nothing.
    static bool isForeign(const QString& tag)
    {
        return tag.contains(QLatin1Char(':')) && !tag.startsWith(QLatin1String("svg:"));
    }

    /// What is only defined is not drawn, but a style sheet works from there.
    void judgeUnseen(const QDomElement& element)
    {
        for (QDomElement child = element.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement()) {
            if (isOneOf(child.tagName(), {"style", "script"}))
                note(QStringLiteral("element %1").arg(child.tagName()));
            judgeUnseen(child);
        }
    }

    void judgePath(const QDomElement& path)
    {
        const PathReading reading = readPathData(path.attribute(QStringLiteral("d")));
        const auto hasAny = [&](auto condition) {
            return std::any_of(reading.segments.begin(), reading.segments.end(), condition);
        };
        if (reading.errorOffset >= 0 || hasAny(hasSignedRadius))
            note(QStringLiteral("error in path data"));
        if (hasAny([](const PathSegment& segment) { return segment.hasJoinedFlags; }))
            note(QStringLiteral("flags of arcs together"));
        if (hasAny(isFlatArc))
            note(QStringLiteral("arc with a radius of 0"));
        if (!path.hasAttribute(QStringLiteral("fill-rule")))
            m_judgement.rules |= FillRuleRule;
    }

    void judgeAttributes(const QDomElement& element, bool isRoot)
    {
        const QDomNamedNodeMap attributes = element.attributes();
        for (int i = 0; i < attributes.size(); ++i) {
            const QDomAttr attribute = attributes.item(i).toAttr();
            const QString name = attribute.name();
            if (drawsNothing(name, isRoot)
                || (name == QLatin1String("d") && element.tagName() == QLatin1String("path")))
                continue;
            judgeAttribute(name, attribute.value());
        }
    }

    void judgeAttribute(const QString& name, const QString& value)
    {
        constexpr double most = 1e6;
        bool isRight = true;
        if (isOneOf(name, {"opacity", "fill-opacity", "stroke-opacity"})) {
            m_judgement.rules |= OpacityRule;
            isRight = isNumberFrom(0, 1, value);
        } else if (isOneOf(name, {"fill", "stroke"})) {
            isRight = judgeColour(value);
            if (name == QLatin1String("stroke") && value != QLatin1String("none"))
                m_judgement.rules |= MiterLimitRule;
        } else if (name == QLatin1String("fill-rule")) {
            isRight = isOneOf(value, {"nonzero", "evenodd"});
        } else if (name == QLatin1String("stroke-width")) {
            isRight = judgeWidth(value);
        } else if (name == QLatin1String("stroke-linecap")) {
            isRight = isOneOf(value, {"butt", "round", "square"});
        } else if (name == QLatin1String("stroke-linejoin")) {
            isRight = isOneOf(value, {"miter", "round", "bevel"});
        } else if (name == QLatin1String("stroke-miterlimit")) {
            isRight = isNumberFrom(1, most, value);
        } else {
            note(QStringLiteral("attribute %1").arg(name));
        }
        if (!isRight)
            note(QStringLiteral("value of %1").arg(name));
    }

    bool judgeColour(const QString& value)
    {
        if (isPlainColour(value))
            return true;
        m_judgement.rules |= ColourRule;
        return isOtherColour(value);
    }

    bool judgeWidth(QString value)
    {
        constexpr double most = 1e6;
        if (value.endsWith(QLatin1String("px")))
            value.chop(2);
        double width = 0;
        if (readNumber(value, width) && width == 0)
            m_judgement.rules |= HairlineRule;
        return isNumberFrom(0, most, value);
    }

    QSet<QString> m_outside;
    Judgement m_judgement;
};

} // namespace

QString nameOf(Rule rule)
{
    switch (rule) {
    case FillRuleRule:
        return QStringLiteral("fill rule");
    case OpacityRule:
        return QStringLiteral("opacity");
    case ColourRule:
        return QStringLiteral("colour");
    case MiterLimitRule:
        return QStringLiteral("miter limit");
    case HairlineRule:
        return QStringLiteral("width 0");
    }
    return {};
}

Judgement judge(const QDomDocument& document)
{
    return Judge().judge(document);
}
