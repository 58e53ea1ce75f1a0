#include "Preparation.h"

#include "Frame.h"
#include "PathGrammar.h"
#include "StyleSheet.h"

#include <QtCore/QHash>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QXmlStreamWriter>

#include <algorithm>

namespace {

constexpr int most_elements = 1000000; ///< with those that "use" repeats
constexpr int deepest_nesting = 2000;  ///< as deep as the library's reader goes

bool isOneOf(const QString& name, std::initializer_list<const char*> names)
{
    return std::any_of(
        names.begin(), names.end(), [&](const char* each) { return name == QLatin1String(each); });
}

/// Whether the element draws something by itself.
bool isShape(const QString& name)
{
    return isOneOf(name, {"path", "rect", "circle", "ellipse", "line", "polyline", "polygon", "use", "text"});
}

/// Elements whose content is drawn only where something refers to it.
bool isDefinition(const QString& name)
{
    return isOneOf(name, {"defs", "symbol", "clipPath", "mask", "pattern", "marker"});
}

bool isAnimation(const QString& name)
{
    return isOneOf(
        name, {"animate", "animateColor", "animateMotion", "animateTransform", "set", "mpath", "script"});
}

class Preparer
{
public:
    explicit Preparer(const XmlTree& tree)
        : m_tree(tree), m_elements(tree.elements()), m_writer(&m_result.text)
    {
        m_cost.fill(-1, m_elements.size());
    }

    Preparation prepare()
    {
        index();
        if (!checkDepth() || !checkCost())
            return m_result;
        findStyleSheets();
        write(0, {});
        return m_result;
    }

private:
    const XmlElement& element(int i) const { return m_elements[i]; }

    void say(Finding::Weight weight,
             const Position& position,
             const char* rule,
             const QString& message,
             const QString& advice)
    {
        m_result.findings.append({weight, position, QLatin1String(rule), message, advice});
    }

    bool fail(const XmlElement& where, const QString& why)
    {
        m_result.error = why;
        m_result.errorPosition = where.position;
        return false;
    }

    void index()
    {
        for (int i = 0; i < m_elements.size(); ++i) {
            const QString id = element(i).attribute(QStringLiteral("id"));
            if (!id.isEmpty() && !m_ids.contains(id))
                m_ids.insert(id, i);
        }
    }

    bool checkDepth()
    {
        QVector<int> depth(m_elements.size(), 1);
        for (int i = 1; i < m_elements.size(); ++i) {
            depth[i] = depth[element(i).parent] + 1;
            if (depth[i] > deepest_nesting)
                return fail(element(i), QStringLiteral("elements are nested more than 2000 deep"));
        }
        return true;
    }

    /// The element that a "use" refers to, or -1.
    int target(const XmlElement& use) const
    {
        const XmlAttribute* link = use.find(QStringLiteral("href"));
        for (const XmlAttribute& each : use.attributes) {
            if (!link && localName(each.name) == QLatin1String("href"))
                link = &each;
        }
        const QString value = link ? link->value.trimmed() : QString();
        return value.startsWith(QLatin1Char('#')) ? m_ids.value(value.mid(1), -1) : -1;
    }

    /// Children come behind their parents, so that walking backwards meets them first. A "use" is the edge
    /// that may lead anywhere; it is followed by hand, without calling itself.
    bool checkCost()
    {
        QVector<int> path{0};
        QVector<int> next{0};
        while (!path.isEmpty()) {
            const int at = path.last();
            const QVector<int> edges = edgesOf(at);
            if (next.last() < edges.size()) {
                const int to = edges[next.last()++];
                if (m_cost[to] == -2)
                    return fail(element(at), QStringLiteral("<use> refers to what it stands in"));
                if (m_cost[to] == -1) {
                    m_cost[to] = -2;
                    path.append(to);
                    next.append(0);
                }
                continue;
            }
            qint64 sum = 1;
            for (const int to : edges)
                sum += m_cost[to];
            if (sum > most_elements)
                return fail(element(at), QStringLiteral("<use> repeats more than 1,000,000 elements"));
            m_cost[at] = int(sum);
            path.removeLast();
            next.removeLast();
        }
        return true;
    }

    QVector<int> edgesOf(int at) const
    {
        QVector<int> edges;
        for (int child = at + 1; child < element(at).end; child = element(child).end)
            edges.append(child);
        if (localName(element(at).name) == QLatin1String("use")) {
            const int to = target(element(at));
            if (to >= 0)
                edges.append(to);
        }
        return edges;
    }

    void findStyleSheets()
    {
        static const QRegularExpression atRule(QStringLiteral("@[a-z-]+"));
        for (const XmlElement& each : m_elements) {
            if (localName(each.name) != QLatin1String("style"))
                continue;
            m_styleSheet.add(each.text);
            const QRegularExpressionMatch match = atRule.match(each.text);
            if (match.hasMatch()) {
                say(Finding::Lost,
                    each.position,
                    "style-sheet",
                    QStringLiteral("the rule %1 of a style sheet is not followed").arg(match.captured(0)),
                    QStringLiteral("write what it says as attributes"));
            }
        }
    }

    bool isForeign(int i) const
    {
        const QString& name = element(i).name;
        const int colon = name.indexOf(QLatin1Char(':'));
        const QString declaration =
            colon < 0 ? QStringLiteral("xmlns") : QStringLiteral("xmlns:") + name.left(colon);
        for (int at = i; at >= 0; at = element(at).parent) {
            if (const XmlAttribute* found = element(at).find(declaration))
                return found->value != QLatin1String("http://www.w3.org/2000/svg");
        }
        return colon >= 0;
    }

    bool isDrawn(int i) const
    {
        for (int at = i; at >= 0; at = element(at).parent) {
            if (isDefinition(localName(element(at).name)))
                return false;
        }
        return true;
    }

    void write(int i, const QString& placement)
    {
        if (isForeign(i))
            return;
        const XmlElement& now = element(i);
        const QString name = localName(now.name);
        if (isOneOf(name, {"style", "metadata", "title", "desc", "filter", "cursor", "font", "font-face"}))
            return;
        if (isAnimation(name)) {
            say(Finding::Note,
                now.position,
                "animation",
                QStringLiteral("<%1> is not followed; the drawing is as without it").arg(name),
                QStringLiteral("nothing needs be done"));
            return;
        }
        if (isOneOf(name, {"image", "text", "foreignObject", "video", "audio", "iframe", "canvas"})) {
            if (isDrawn(i)) {
                say(Finding::Lost,
                    now.position,
                    name == QLatin1String("text") ? "text" : "image",
                    QStringLiteral("<%1> is left out").arg(name),
                    name == QLatin1String("text")
                        ? QStringLiteral("have the drawing program make paths of it")
                        : QStringLiteral("draw it with paths"));
            }
            return;
        }

        const int symbol = name == QLatin1String("use") ? target(now) : -1;
        if (symbol >= 0 && localName(element(symbol).name) == QLatin1String("symbol")) {
            writeSymbol(i, symbol);
            return;
        }
        if (name == QLatin1String("use") && symbol < 0) {
            say(Finding::Lost,
                now.position,
                "use",
                QStringLiteral("<use> refers to nothing in this file"),
                QStringLiteral("put what it stands for into the file"));
            return;
        }
        const bool isInner = i > 0 && name == QLatin1String("svg");
        m_writer.writeStartElement(isInner ? QStringLiteral("g")
                                           : (isDefinition(name) ? QStringLiteral("defs") : name));
        if (i == 0) {
            m_writer.writeAttribute(QStringLiteral("xmlns"), QStringLiteral("http://www.w3.org/2000/svg"));
            m_writer.writeAttribute(QStringLiteral("xmlns:xlink"),
                                    QStringLiteral("http://www.w3.org/1999/xlink"));
        }
        const QString own = isInner ? placeOf(now, now) : placement;
        writeAttributes(i, own, isInner);
        if (i == 0 && !m_styleSheet.rest().isEmpty()) {
            m_writer.writeStartElement(QStringLiteral("style"));
            m_writer.writeAttribute(QStringLiteral("type"), QStringLiteral("text/css"));
            m_writer.writeCharacters(m_styleSheet.rest());
            m_writer.writeEndElement();
        }
        writeChildren(i);
        m_writer.writeEndElement();
    }

    void writeChildren(int i)
    {
        for (int child = i + 1; child < element(i).end; child = element(child).end)
            write(child, {});
    }

    /// A "use" of a symbol, as a group with what is in the symbol.
    void writeSymbol(int use, int symbol)
    {
        m_writer.writeStartElement(QStringLiteral("g"));
        writeAttributes(use, placeOf(element(use), element(symbol)), true);
        m_writer.writeStartElement(QStringLiteral("g"));
        writeAttributes(symbol, {}, true);
        writeChildren(symbol);
        m_writer.writeEndElement();
        m_writer.writeEndElement();
    }

    /// The transform that places what is in \a content, which has the view box, where \a outer says.
    static QString placeOf(const XmlElement& outer, const XmlElement& content)
    {
        const auto length = [&](const char* name) {
            const QString value = outer.attribute(QLatin1String(name));
            return value.isEmpty() ? content.attribute(QLatin1String(name)) : value;
        };
        QString transform = QStringLiteral(" translate(%1 %2)")
                                .arg(outer.attribute(QStringLiteral("x")).toDouble())
                                .arg(outer.attribute(QStringLiteral("y")).toDouble());
        const Frame frame = readFrame(length("width"),
                                      length("height"),
                                      content.attribute(QStringLiteral("viewBox")),
                                      content.attribute(QStringLiteral("preserveAspectRatio")));
        if (!frame.viewBox.isNull() && !frame.isIdentity()) {
            transform += QStringLiteral(" translate(%1 %2) scale(%3 %4) translate(%5 %6)")
                             .arg(frame.target.x())
                             .arg(frame.target.y())
                             .arg(frame.target.width() / frame.viewBox.width(), 0, 'g', 12)
                             .arg(frame.target.height() / frame.viewBox.height(), 0, 'g', 12)
                             .arg(-frame.viewBox.x())
                             .arg(-frame.viewBox.y());
        }
        return transform;
    }

    /// What style sheets and its own style say about an element, each property once.
    QVector<Declaration> styleOf(const XmlElement& now) const
    {
        const QVector<Declaration> all = m_styleSheet.declarations(localName(now.name),
                                                                   now.attribute(QStringLiteral("id")),
                                                                   now.attribute(QStringLiteral("class")))
                                         + readStyle(now.attribute(QStringLiteral("style")));
        QVector<Declaration> last;
        for (const Declaration& each : all) {
            // Properties since SVG 2 only; in SVG 1.1 these are attributes.
            if (isOneOf(each.property, {"x", "y", "cx", "cy", "r", "rx", "ry", "width", "height", "d"}))
                continue;
            const auto same = std::find_if(last.begin(), last.end(), [&](const Declaration& one) {
                return one.property == each.property;
            });
            if (same == last.end())
                last.append(each);
            else
                same->value = each.value;
        }
        return last;
    }

    /// \a placement comes behind the element's own transform. \a asGroup leaves out what a group has not.
    void writeAttributes(int i, const QString& placement, bool asGroup)
    {
        const XmlElement& now = element(i);
        QVector<Declaration> style = styleOf(now);
        QVector<Declaration> attributes;
        for (const XmlAttribute& each : now.attributes) {
            const bool restyled = std::any_of(style.begin(), style.end(), [&](const Declaration& one) {
                return one.property == each.name;
            });
            const bool placed =
                asGroup
                && isOneOf(each.name, {"x", "y", "width", "height", "viewBox", "preserveAspectRatio"});
            const bool isLink =
                each.name == QLatin1String("href") || each.name.endsWith(QLatin1String(":href"));
            if (restyled || placed || (asGroup && isLink) || each.name == QLatin1String("style")
                || each.name == QLatin1String("transform") || each.name.startsWith(QLatin1String("xmlns")))
                continue;
            if (isLink)
                attributes.append({QStringLiteral("xlink:href"), each.value});
            else if (!each.name.contains(QLatin1Char(':')))
                attributes.append({each.name, each.value});
        }
        look(now, attributes);
        look(now, style);

        const QString transform = now.attribute(QStringLiteral("transform")) + placement;
        if (!transform.trimmed().isEmpty())
            m_writer.writeAttribute(QStringLiteral("transform"), transform.trimmed());
        rewrite(attributes);
        rewrite(style);
        for (const Declaration& each : attributes)
            m_writer.writeAttribute(each.property, each.value);
        if (!style.isEmpty()) {
            QString text;
            for (const Declaration& each : style)
                text += each.property + QLatin1Char(':') + each.value + QLatin1Char(';');
            m_writer.writeAttribute(QStringLiteral("style"), text);
        }
    }

    /// Says which of the properties will not be drawn.
    void look(const XmlElement& now, const QVector<Declaration>& properties)
    {
        for (const Declaration& each : properties) {
            const QString& name = each.property;
            const QString value = each.value.trimmed();
            const XmlAttribute* attribute = now.find(name);
            const Position position = attribute ? attribute->namePosition : now.position;
            if (value == QLatin1String("none") || value.isEmpty())
                continue;
            if (isOneOf(name, {"filter", "mask", "clip-path"})
                || (name.startsWith(QLatin1String("marker")) && !referenceIn(value).isEmpty())) {
                say(Finding::Lost,
                    position,
                    name == QLatin1String("filter")      ? "filter"
                    : name == QLatin1String("mask")      ? "mask"
                    : name == QLatin1String("clip-path") ? "clip-path"
                                                         : "marker",
                    QStringLiteral("“%1” is left out").arg(name),
                    QStringLiteral("draw what it does with paths"));
            } else if ((name == QLatin1String("mix-blend-mode") || name == QLatin1String("paint-order"))
                       && value != QLatin1String("normal")) {
                say(Finding::Lost,
                    position,
                    "unknown-property",
                    QStringLiteral("“%1: %2” is left out").arg(name, value),
                    QStringLiteral("draw what it does with paths"));
            } else if (isOneOf(name, {"transform", "transform-origin", "transform-box"})) {
                say(Finding::Lost,
                    position,
                    "style-transform",
                    QStringLiteral("“%1” in a style, or its origin, is left out").arg(name),
                    QStringLiteral("write it as an attribute “transform”"));
            } else if (name == QLatin1String("fill") || name == QLatin1String("stroke")) {
                lookAtPaint(position, name, value);
            } else if (name == QLatin1String("opacity")) {
                lookAtOpacity(now, position, value);
            } else if (value.endsWith(QLatin1String("em")) || value.endsWith(QLatin1String("ex"))
                       || value.endsWith(QLatin1String("rem"))) {
                if (isOneOf(name, {"x", "y", "width", "height", "cx", "cy", "r", "rx", "ry", "stroke-width"})
                    && now.parent >= 0) {
                    say(Finding::Lost,
                        position,
                        "font-unit",
                        QStringLiteral("“%1” is measured by a font").arg(value),
                        QStringLiteral("write it as a number"));
                }
            }
        }
    }

    void lookAtPaint(const Position& position, const QString& name, const QString& value)
    {
        const QString id = referenceIn(value);
        if (id.isEmpty())
            return;
        const int to = m_ids.value(id, -1);
        const QString kind = to < 0 ? QString() : localName(element(to).name);
        if (kind.endsWith(QLatin1String("Gradient"))) {
            say(Finding::Lost,
                position,
                "gradient",
                QStringLiteral("the gradient “%1” becomes its mean colour").arg(id),
                QStringLiteral("choose a plain %1").arg(name));
        } else {
            say(to < 0 ? Finding::Note : Finding::Lost,
                position,
                to < 0 ? "missing-paint" : "pattern",
                QStringLiteral("the %1 “%2” is left out")
                    .arg(to < 0 ? QStringLiteral("missing paint") : kind, id),
                QStringLiteral("choose a plain %1").arg(name));
        }
    }

    void lookAtOpacity(const XmlElement& now, const Position& position, const QString& value)
    {
        const QString name = localName(now.name);
        if (value.toDouble() >= 1 || value.toDouble() <= 0 || name == QLatin1String("stop"))
            return;
        int shapes = 0;
        const int self = int(&now - m_elements.constData());
        for (int i = self + 1; i < now.end; ++i)
            shapes += isShape(localName(element(i).name)) ? 1 : 0;
        if (shapes < 2)
            return;
        say(Finding::Note,
            position,
            "group-opacity",
            QStringLiteral("the opacity of a group goes to each of its %1 shapes; where they overlap, one "
                           "shows through the other")
                .arg(shapes),
            QStringLiteral("choose colours that need no opacity, if they overlap"));
    }

    /// Writes values in the forms that Qt's renderer knows.
    void rewrite(QVector<Declaration>& properties) const
    {
        static const QRegularExpression absolute(QStringLiteral("^\\s*[-+.0-9eE]+(mm|cm|in|pt|pc)\\s*$"));
        for (Declaration& each : properties) {
            const QString value = each.value.trimmed();
            if (each.property.endsWith(QLatin1String("opacity")) && value.endsWith(QLatin1Char('%')))
                each.value = QString::number(value.chopped(1).toDouble() / 100);
            else if (absolute.match(value).hasMatch())
                each.value = QString::number(absoluteLength(value), 'g', 12);
            else if (each.property == QLatin1String("d"))
                rewritePath(each.value);
        }
        const QVector<Declaration> before = properties;
        for (const Declaration& each : before) {
            if (isOneOf(each.property, {"fill", "stroke", "stop-color", "color"}))
                rewriteColor(properties, each);
        }
    }

    void rewriteColor(QVector<Declaration>& properties, const Declaration& one) const
    {
        QString value = one.value.trimmed();
        if (value.startsWith(QLatin1String("url("))) {
            const int paint = m_ids.value(referenceIn(value), -1);
            if (paint >= 0 && element(paint).name.endsWith(QLatin1String("Gradient")))
                return;
            // The colour behind it is for the case that there is no such paint.
            value = value.mid(value.indexOf(QLatin1Char(')')) + 1).trimmed();
            if (value.isEmpty())
                value = QStringLiteral("none");
        }
        const int icc = value.indexOf(QLatin1String(" icc-color"));
        if (icc > 0)
            value.truncate(icc);
        const auto named = [&properties](const QString& name) {
            return std::find_if(properties.begin(), properties.end(), [&](const Declaration& each) {
                return each.property == name;
            });
        };
        const QColor color = readColor(value);
        named(one.property)->value = color.isValid() ? color.name() : value;
        if (!color.isValid())
            return;
        if (color.alpha() == 255 || one.property == QLatin1String("color"))
            return;
        const QString opacity = one.property == QLatin1String("stop-color")
                                    ? QStringLiteral("stop-opacity")
                                    : one.property + QLatin1String("-opacity");
        const auto found = named(opacity);
        const double own = found == properties.end() ? 1 : found->value.toDouble();
        const QString product = QString::number(own * color.alphaF(), 'g', 8);
        if (found == properties.end())
            properties.append({opacity, product});
        else
            found->value = product;
    }

    static void rewritePath(QString& data)
    {
        PathReading reading = readPathData(data);
        QVector<PathSegment>& segments = reading.segments;
        bool changes = std::any_of(segments.begin(), segments.end(), [](const PathSegment& segment) {
            return segment.command.toUpper() == QLatin1Char('A')
                   && (segment.numbers[0].toDouble() == 0 || segment.numbers[1].toDouble() == 0);
        });
        // A line without length has caps, but Qt leaves it out. Made this long, it is still not seen.
        for (int i = segments.size() - 2; i >= 0; --i) {
            if (segments[i].command.toUpper() == QLatin1Char('M') && isPoint(segments[i], segments[i + 1])) {
                segments.insert(i + 1, {QLatin1Char('h'), {QStringLiteral("0.01")}, 0, false});
                changes = true;
            }
        }
        // An error ends the path where it stands (SVG 1.1, F.2).
        if (changes || reading.errorOffset >= 0)
            data = spelledOut(reading, segments.size());
    }

    /// Whether \a segment, which stands behind the move \a move, leads nowhere.
    static bool isPoint(const PathSegment& move, const PathSegment& segment)
    {
        const auto isZero = [](const QString& number) { return number.toDouble() == 0; };
        const QChar command = segment.command;
        if (command == QLatin1Char('l') || command == QLatin1Char('h') || command == QLatin1Char('v'))
            return std::all_of(segment.numbers.begin(), segment.numbers.end(), isZero);
        if (command == QLatin1Char('L'))
            return move.command == QLatin1Char('M') && move.numbers == segment.numbers;
        return command.toUpper() == QLatin1Char('Z');
    }

    const XmlTree& m_tree;
    const QVector<XmlElement>& m_elements;
    Preparation m_result;
    QXmlStreamWriter m_writer;
    QHash<QString, int> m_ids;
    QVector<int> m_cost; ///< elements drawn for one; -1: not known, -2: being counted
    StyleSheet m_styleSheet;
};

} // namespace

Preparation prepareForQt(const XmlTree& tree)
{
    return Preparer(tree).prepare();
}
