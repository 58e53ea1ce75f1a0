#include <Quillet/SvgFileParser.h>

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgNesting.h>
#include <Quillet/SvgPathParser.h>

#include <QtCore/QFile>
#include <QtXml/QDomDocument>

#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace {

// The tables are built while the library is loaded.
// clazy:excludeall=non-pod-global-static

const std::map<QString, Qt::PenCapStyle> line_cap_style_map = {
    {QString::fromLatin1("butt"), Qt::FlatCap},
    {QString::fromLatin1("round"), Qt::RoundCap},
    {QString::fromLatin1("square"), Qt::SquareCap},
};

const std::map<QString, Qt::PenJoinStyle> line_join_style_map = {
    {QString::fromLatin1("miter"), Qt::MiterJoin}, // not SvgMiterJoin: its limit is measured differently
    {QString::fromLatin1("round"), Qt::RoundJoin},
    {QString::fromLatin1("bevel"), Qt::BevelJoin},
};

QPen defaultPen()
{
    QPen pen((QColor())); // an invalid colour: no stroke
    pen.setCapStyle(Qt::FlatCap);
    pen.setJoinStyle(Qt::MiterJoin);
    pen.setMiterLimit(4.0);
    return pen;
}

/// The presentation in force at one element. Elements below get copies.
struct SvgPathData
{
    QPainterPath path; ///< of a group: nothing but a fill rule, which its paths do not take over
    QPen pen = defaultPen();
    QBrush brush = QBrush(Qt::black, Qt::SolidPattern);
    double opacity = 1.0; ///< goes into the alpha of the colours that elements set from here on
};

/// Reads a number in the C locale. Like QString::toDouble(), leaves 0 or an infinity where it fails.
bool readNumber(const QString& text, double& number)
{
    bool ok = false;
    number = text.toDouble(&ok);
    return ok;
}

/// Reads a number that may be left out; where it is, \a number stays as it is.
bool readNumberIfAny(const QString& text, double& number)
{
    return text.isEmpty() || readNumber(text, number);
}

/// Any text that Qt takes for no colour, "none" among them, is an invalid colour: no fill, or no stroke.
QColor readColor(const QString& text, double alpha)
{
    QColor color;
    color.setNamedColor(text);
    color.setAlphaF(alpha);
    return color;
}

// One function for each group of attributes that work together. An empty value counts as none. Each returns
// false when it rejects a value, which it then has not applied.

bool parseOpacity(const QDomElement& element, SvgPathData& data)
{
    // What is no number makes the opacity 0 before it is rejected: for a group, whose rejected values are
    // passed over, that is the opacity that its paths get.
    return readNumberIfAny(element.attribute(QStringLiteral("opacity")), data.opacity);
}

bool parseFill(const QDomElement& element, SvgPathData& data)
{
    double alpha = 1.0;
    if (!readNumberIfAny(element.attribute(QStringLiteral("fill-opacity")), alpha))
        return false;

    const QString fill = element.attribute(QStringLiteral("fill"));
    if (!fill.isEmpty())
        data.brush.setColor(readColor(fill, alpha * data.opacity));
    return true;
}

bool parseFillRule(const QDomElement& element, SvgPathData& data)
{
    const QString rule = element.attribute(QStringLiteral("fill-rule")).toLower();
    if (rule == QLatin1String("nonzero"))
        data.path.setFillRule(Qt::WindingFill);
    else if (rule == QLatin1String("evenodd"))
        data.path.setFillRule(Qt::OddEvenFill);
    else
        return rule.isEmpty();
    return true;
}

bool parseStroke(const QDomElement& element, SvgPathData& data)
{
    double alpha = 1.0;
    if (!readNumberIfAny(element.attribute(QStringLiteral("stroke-opacity")), alpha))
        return false;

    const QString stroke = element.attribute(QStringLiteral("stroke"));
    if (!stroke.isEmpty())
        data.pen.setColor(readColor(stroke, alpha * data.opacity));
    return true;
}

bool parseStrokeWidth(const QDomElement& element, SvgPathData& data)
{
    QString width = element.attribute(QStringLiteral("stroke-width"));
    if (width.isEmpty())
        return true;

    // Wherever it stands: this reads the lengths of drawing programs, and is no check of them.
    width.remove(QStringLiteral("px"));
    double number = 0;
    if (!readNumber(width, number))
        return false;
    data.pen.setWidthF(number);
    return true;
}

bool parseStrokeLineCap(const QDomElement& element, SvgPathData& data)
{
    const QString keyword = element.attribute(QStringLiteral("stroke-linecap")).toLower();
    if (keyword.isEmpty())
        return true;

    const auto row = line_cap_style_map.find(keyword);
    if (row == line_cap_style_map.end())
        return false;
    data.pen.setCapStyle(row->second);
    return true;
}

bool parseStrokeLineJoin(const QDomElement& element, SvgPathData& data)
{
    const QString keyword = element.attribute(QStringLiteral("stroke-linejoin")).toLower();
    if (keyword.isEmpty())
        return true;

    const auto row = line_join_style_map.find(keyword);
    if (row == line_join_style_map.end())
        return false;
    data.pen.setJoinStyle(row->second);
    return true;
}

bool parseStrokeMiterLimit(const QDomElement& element, SvgPathData& data)
{
    const QString limit = element.attribute(QStringLiteral("stroke-miterlimit"));
    if (limit.isEmpty())
        return true;

    double number = 0;
    if (!readNumber(limit, number))
        return false;
    data.pen.setMiterLimit(number);
    return true;
}

/// Applies the presentation attributes of \a element to \a data, in this order whatever theirs.
///
/// \return false at the first that is rejected; those before it are applied, those after it not read.
bool parsePathAttributes(const QDomElement& element, SvgPathData& data)
{
    return parseOpacity(element, data) && parseFill(element, data) && parseFillRule(element, data)
           && parseStroke(element, data) && parseStrokeWidth(element, data)
           && parseStrokeLineCap(element, data) && parseStrokeLineJoin(element, data)
           && parseStrokeMiterLimit(element, data);
}

/// Appends the shape of one "path" element.
bool parsePath(const QDomElement& element, SvgPathData data, Quillet::PainterPathContainer& container)
{
    QPainterPath path;
    if (!Quillet::parseSvgPathData(element.attribute(QStringLiteral("d")), path))
        return false;
    data.path = std::move(path);
    if (!parsePathAttributes(element, data))
        return false;

    container.appendPath(std::make_unique<Quillet::PainterPath>(
        data.path, data.pen, data.brush, lumo::AffineTransform<double>()));
    return true;
}

/// Appends the shapes of \a element, the root or a group, and of all groups in it.
bool parsePathGroup(const QDomElement& element, SvgPathData data, Quillet::PainterPathContainer& container)
{
    struct Group
    {
        QDomElement next; ///< the child to read next, null behind the last
        SvgPathData data;
    };
    // The groups being read, each inside the one before it. They stand here and not on the call stack, which
    // may be small.
    std::vector<Group> groups;
    const auto enter = [&groups](const QDomElement& group, SvgPathData inherited) {
        // A rejected value of a group ends the reading of the group's attributes, and nothing else.
        parsePathAttributes(group, inherited);
        groups.push_back({group.firstChildElement(), std::move(inherited)});
    };

    enter(element, std::move(data));
    while (!groups.empty()) {
        Group& group = groups.back();
        if (group.next.isNull()) {
            groups.pop_back();
            continue;
        }
        const QDomElement child = group.next;
        group.next = child.nextSiblingElement();

        const QString tag = child.tagName().toLower();
        if (tag == QLatin1String("g"))
            enter(child, group.data);
        else if (tag == QLatin1String("path") && !parsePath(child, group.data, container))
            return false;
    }
    return true;
}

/// Qt's XML reader needs less than 1 MiB of stack for it.
constexpr int deepest_nesting = 2000;

} // namespace

namespace Quillet {

bool parseSvgFile(const QString& fileName, PainterPathContainer& container)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return false;

    const QByteArray bytes = file.readAll();
    const int length = int(qstrnlen(bytes.constData(), uint(bytes.size()))); // up to the first null byte
    return parseSvg(QString::fromUtf8(bytes.constData(), length), container);
}

bool parseSvg(const QString& text, PainterPathContainer& container)
{
    if (isNestedDeeperThan(deepest_nesting, text))
        return false;

    QDomDocument document;
    if (!document.setContent(text))
        return false;
    const QDomElement root = document.firstChildElement(QStringLiteral("svg"));
    if (root.isNull())
        return false;
    return parsePathGroup(root, SvgPathData(), container);
}

} // namespace Quillet
