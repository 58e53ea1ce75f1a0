#include "Preparation.h"

#include "Cascade.h"
#include "Conditions.h"
#include "Frame.h"
#include "Losses.h"
#include "Marks.h"
#include "Names.h"
#include "PathGrammar.h"
#include "QtForms.h"
#include "References.h"
#include "Viewport.h"

#include <QtCore/QXmlStreamWriter>

#include <algorithm>
#include <memory>

namespace {

/// What is in force where an element is drawn.
struct Surroundings
{
    QSizeF viewport;                 ///< that percentages are of; empty where it is not known
    QVector<Declaration> properties; ///< of the element around
    InheritedPaint paint;
    bool isVisible = true;
};

bool isGradient(const QString& name)
{
    return isOneOf(name, {"linearGradient", "radialGradient"});
}

/// Whether a shape has no size, which keeps it from being drawn, its stroke too (SVG 1.1, 9.2 to 9.4).
bool hasNoSize(const QString& name, const QVector<Declaration>& properties)
{
    const auto isLong = [&](const char* property) {
        const Declaration* const length = find(properties, QLatin1String(property));
        return length && length->value.toDouble() > 0;
    };
    return (name == QLatin1String("circle") && !isLong("r"))
           || (name == QLatin1String("ellipse") && !(isLong("rx") && isLong("ry")))
           || (name == QLatin1String("rect") && !(isLong("width") && isLong("height")));
}

double number(const QVector<Declaration>& properties, const char* name)
{
    const Declaration* const found = find(properties, QLatin1String(name));
    return found ? found->value.toDouble() : 0;
}

void remove(QVector<Declaration>& properties, std::initializer_list<const char*> names)
{
    const auto isNamed = [&](const Declaration& each) { return isOneOf(each.property, names); };
    properties.erase(std::remove_if(properties.begin(), properties.end(), isNamed), properties.end());
}

/// The outline of a rectangle with round corners, from where and in the direction in which its dashes run
/// (SVG 1.1, 9.2); empty where there are none.
QString roundedRect(const QVector<Declaration>& properties)
{
    const auto radius = [&](const char* name, const char* otherName) {
        const bool isOwn = find(properties, QLatin1String(name)) && number(properties, name) >= 0;
        return number(properties, isOwn ? name : otherName);
    };
    const double width = number(properties, "width");
    const double height = number(properties, "height");
    const double rx = std::min(radius("rx", "ry"), width / 2);
    const double ry = std::min(radius("ry", "rx"), height / 2);
    if (!(rx > 0 && ry > 0))
        return {};
    const double left = number(properties, "x");
    const double top = number(properties, "y");
    const double right = left + width;
    const double bottom = top + height;
    const auto text = [](double value) { return QString::number(value, 'g', 15); };
    const auto corner = [&](double x, double y) {
        return QStringLiteral("A%1 %2 0 0 1 %3 %4").arg(text(rx), text(ry), text(x), text(y));
    };
    return QStringLiteral("M%1 %2H%3").arg(text(left + rx), text(top), text(right - rx))
           + corner(right, top + ry) + QLatin1Char('V') + text(bottom - ry) + corner(right - rx, bottom)
           + QLatin1Char('H') + text(left + rx) + corner(left, bottom - ry) + QLatin1Char('V')
           + text(top + ry) + corner(left + rx, top) + QLatin1Char('Z');
}

/// Path data for a shape all of whose points are the same, for caps that Qt draws only for paths; empty for
/// other shapes.
QString pointAsPath(const QString& name, const QVector<Declaration>& properties)
{
    const auto path = [](double x, double y) {
        return QStringLiteral("M%1 %2z").arg(QString::number(x, 'g', 17), QString::number(y, 'g', 17));
    };
    if (name == QLatin1String("line")) {
        const double x = number(properties, "x1");
        const double y = number(properties, "y1");
        return x == number(properties, "x2") && y == number(properties, "y2") ? path(x, y) : QString();
    }
    const Declaration* const points = find(properties, QStringLiteral("points"));
    if (!points || !isOneOf(name, {"polyline", "polygon"}))
        return {};
    const QStringList numbers = readPoints(points->value).numbers;
    if (numbers.isEmpty() || (numbers.size() == 2 && name == QLatin1String("polyline")))
        return {};
    const double x = numbers[0].toDouble();
    const double y = numbers[1].toDouble();
    for (int i = 2; i < numbers.size(); i += 2) {
        if (numbers[i].toDouble() != x || numbers[i + 1].toDouble() != y)
            return {};
    }
    return path(x, y);
}

/// Writes the elements of a document anew.
class Preparer
{
public:
    Preparer(const XmlTree& tree, const References& references)
        : m_tree(tree),
          m_elements(tree.elements()),
          m_references(references),
          m_cascade(tree),
          m_writer(&m_result.text)
    {
    }

    Preparation prepare()
    {
        m_result.findings = m_cascade.findings();
        for (const EntityReference& each : m_tree.unknownEntities())
            sayUnread(each);
        writeRoot();
        sortFindings(m_result.findings);
        return m_result;
    }

private:
    const XmlElement& element(int i) const { return m_elements[i]; }

    void say(Finding::Weight weight,
             const XmlElement& where,
             const char* rule,
             const QString& message,
             const QString& advice)
    {
        m_result.findings.append({weight, where.position, QLatin1String(rule), message, advice});
    }

    /// Names what is not in the file, unless it would be a text anyway.
    void sayUnread(const EntityReference& entity)
    {
        const QString name = localName(element(entity.element).name);
        if (isForeign(m_elements, entity.element)
            || !(isContainer(name) || isOneOf(name, {"defs", "symbol", "style"})))
            return;
        m_result.findings.append(findingFor(entity));
    }

    void writeRoot()
    {
        const XmlElement& root = element(0);
        const Frame frame = readFrame(root);
        const QVector<Declaration> stated = m_cascade.propertiesOf(0, {});
        const bool rendered = isRendered(root, stated);
        Surroundings inside;
        inside.viewport = frame.viewBox.isNull() ? frame.size : frame.viewBox.size();
        inside.properties = readProperties(root, stated, inside);
        inside.isVisible = isVisible(stated, true);
        m_result.clipsToFrame = !frame.size.isEmpty() && isClipped(inside.properties);

        m_writer.writeStartElement(QStringLiteral("svg"));
        m_writer.writeAttribute(QStringLiteral("xmlns"), QStringLiteral("http://www.w3.org/2000/svg"));
        m_writer.writeAttribute(QStringLiteral("xmlns:xlink"),
                                QStringLiteral("http://www.w3.org/1999/xlink"));
        QVector<Declaration> attributes = inside.properties;
        if (frame.viewBox.isNull())
            remove(attributes, {"viewBox"}); // Qt would take what is none
        const QVector<Mark> marks = takeMarks(attributes, 0);
        writeAttributes(attributes, {});
        writeGradients();
        writeMarks(marks);
        m_pending.append(Pending{-1, nullptr, nullptr, marks.size()});
        if (frame.isEmpty) {
            say(Finding::Note,
                root,
                "view-box",
                QStringLiteral("nothing is drawn: the drawing has a width or a height of 0"),
                QStringLiteral("give it a size, or none"));
        } else if (rendered) {
            appendChildren(0, inside);
        }
        writePending();
    }

    /// All gradients of the document, in front of what they are used for.
    void writeGradients()
    {
        m_writer.writeStartElement(QStringLiteral("defs"));
        for (int i = 0; i < m_elements.size(); ++i) {
            if (!isGradient(localName(element(i).name)) || isForeign(m_elements, i))
                continue;
            Surroundings around = colorAround(i);
            m_writer.writeStartElement(localName(element(i).name));
            m_writer.writeAttribute(QStringLiteral("id"), element(i).attribute(QStringLiteral("id")));
            for (const XmlAttribute& each : element(i).attributes) {
                if (localName(each.name) == QLatin1String("href"))
                    m_writer.writeAttribute(QStringLiteral("xlink:href"), each.value);
            }
            writeAttributes(formsOf(i, around), {});
            for (int child = i + 1; child < element(i).end; child = element(child).end) {
                if (localName(element(child).name) != QLatin1String("stop"))
                    continue;
                m_writer.writeStartElement(QStringLiteral("stop"));
                writeAttributes(formsOf(child, around), {});
                m_writer.writeEndElement();
            }
            m_writer.writeEndElement();
        }
        m_writer.writeEndElement();
    }

    /// The surroundings of a gradient, as far as they matter for its colours.
    Surroundings colorAround(int i) const
    {
        Surroundings around;
        for (int at = element(i).parent; at >= 0; at = element(at).parent) {
            const QVector<Declaration> properties = m_cascade.propertiesOf(at, {});
            const Declaration* const color = find(properties, QStringLiteral("color"));
            if (color && readColor(color->value).isValid()) {
                around.paint.color = color->value;
                break;
            }
        }
        return around;
    }

    QVector<Declaration> formsOf(int i, Surroundings& around) const
    {
        QVector<Declaration> properties = m_cascade.propertiesOf(i, {});
        writeInQtsForms(properties, around.viewport, m_references, around.paint);
        return properties;
    }

    /// The properties of \a now, which say \a stated, in the forms that Qt knows; names what is lost of them.
    /// \a around becomes what is in force in \a now.
    QVector<Declaration>
    readProperties(const XmlElement& now, const QVector<Declaration>& stated, Surroundings& around)
    {
        m_result.findings += lossesIn(now, stated, m_references);
        m_result.findings += lossesInGeometry(now, m_cascade.geometryOf(int(&now - m_elements.constData())));
        QVector<Declaration> properties = stated;
        writeInQtsForms(properties, around.viewport, m_references, around.paint);
        m_result.findings += takeLossesInNumbers(now, properties);
        return properties;
    }

    /// Names a language that is asked for. \return whether \a now is drawn at all.
    bool isRendered(const XmlElement& now, const QVector<Declaration>& properties)
    {
        const Declaration* const display = find(properties, QStringLiteral("display"));
        if (display && display->value == QLatin1String("none"))
            return false;
        if (now.find(QStringLiteral("systemLanguage"))) {
            say(Finding::Lost,
                now,
                "condition",
                QStringLiteral("<%1> is for some languages; what is drawn for English is drawn for all")
                    .arg(now.name),
                QStringLiteral("write a file for each language"));
        }
        return passesTests(now);
    }

    static bool isVisible(const QVector<Declaration>& properties, bool isAroundVisible)
    {
        const Declaration* const visibility = find(properties, QStringLiteral("visibility"));
        return visibility ? visibility->value == QLatin1String("visible") : isAroundVisible;
    }

    static bool isClipped(const QVector<Declaration>& properties)
    {
        const Declaration* const overflow = find(properties, QStringLiteral("overflow"));
        return !overflow || !isOneOf(overflow->value, {"visible", "auto"});
    }

    /// Something to be written, or the end of a group.
    struct Pending
    {
        int element; ///< -1: the end
        std::shared_ptr<const Surroundings> around;
        const XmlElement* use; ///< that repeats it, or null
        int marks;             ///< that end there
    };

    /// Does not call itself however deep elements stand in each other.
    void writePending()
    {
        while (!m_pending.isEmpty()) {
            const Pending next = m_pending.takeLast();
            if (next.element >= 0) {
                write(next.element, *next.around, next.use);
                continue;
            }
            writeEnds(next.marks);
            m_writer.writeEndElement();
        }
    }

    void append(int i, const Surroundings& around, const XmlElement* use)
    {
        m_pending.append(Pending{i, std::make_shared<Surroundings>(around), use, 0});
    }

    void appendChildren(int i, const Surroundings& inside)
    {
        const auto shared = std::make_shared<const Surroundings>(inside);
        const int before = m_pending.size();
        for (int child = i + 1; child < element(i).end; child = element(child).end)
            m_pending.append(Pending{child, shared, nullptr, 0});
        std::reverse(m_pending.begin() + before, m_pending.end()); // the last comes first
    }

    /// Writes what is drawn of the element \a i, which \a use repeats if that is not null.
    void write(int i, const Surroundings& around, const XmlElement* use)
    {
        const XmlElement& now = element(i);
        const QString name = localName(now.name);
        if (isForeign(m_elements, i))
            return;
        if (isAnimation(name)) {
            return say(Finding::Note,
                       now,
                       "animation",
                       QStringLiteral("<%1> is not followed; the drawing is as without it").arg(name),
                       QStringLiteral("nothing needs to be done"));
        }
        const bool isSymbol = use && name == QLatin1String("symbol");
        const bool isGroup = isContainer(name) || isSymbol;
        const bool isWritten = isShape(name) || isGroup;
        if (isElementOfSvg(name) && !isPicture(name) && !isWritten)
            return;

        const QVector<Declaration> stated = m_cascade.propertiesOf(i, around.properties);
        Surroundings inside = around;
        inside.isVisible = isVisible(stated, around.isVisible);
        if (!isRendered(now, stated) || !(isGroup || inside.isVisible))
            return;
        if (!isWritten)
            return sayLeftOut(i, name);
        Viewport viewport;
        if (isSymbol || name == QLatin1String("svg")) {
            viewport = viewportOf(now, use, around.viewport);
            inside.viewport = viewport.size;
        }
        if (viewport.isEmpty)
            return;
        QVector<Declaration> properties = readProperties(now, stated, inside);
        inside.properties = properties;

        const QString transform = now.attribute(QStringLiteral("transform"));
        if (name == QLatin1String("use")) {
            const int target = m_references.targetOf(now);
            const double x = number(properties, "x");
            const double y = number(properties, "y");
            if (target < 0)
                return sayNothingToUse(now);
            remove(properties, {"x", "y", "width", "height"});
            openGroup(i, properties, transform + translation(x, y), {});
            append(target, inside, &now);
        } else if (isShape(name)) {
            writeShape(i, name, properties, inside.paint);
        } else {
            QVector<Mark> marks;
            if (!viewport.area.isEmpty() && isClipped(properties))
                marks.append(Mark::clip(viewport.area));
            remove(properties, {"x", "y", "width", "height", "viewBox", "preserveAspectRatio"});
            openGroup(i, properties, transform + viewport.transform, marks);
            if (name == QLatin1String("switch"))
                appendChoice(i, inside);
            else
                appendChildren(i, inside);
        }
    }

    /// The first child whose tests let it be drawn (SVG 1.1, 5.8.2).
    void appendChoice(int i, const Surroundings& inside)
    {
        for (int child = i + 1; child < element(i).end; child = element(child).end) {
            const bool isCandidate =
                !isForeign(m_elements, child)
                && !isOneOf(localName(element(child).name), {"title", "desc", "metadata"});
            if (isCandidate && passesTests(element(child)))
                return append(child, inside, nullptr);
            if (isCandidate)
                isRendered(element(child), {}); // names what is for other languages
        }
    }

    void sayLeftOut(int i, const QString& name)
    {
        const bool isText = name == QLatin1String("text");
        if (isText && isEmptyText(m_tree, i))
            return;
        const char* const rule = isText ? "text" : isPicture(name) ? "image" : "unknown-element";
        say(Finding::Lost,
            element(i),
            rule,
            QStringLiteral("<%1> is left out").arg(name),
            isText            ? QStringLiteral("have the drawing program make paths of it")
            : isPicture(name) ? QStringLiteral("draw it with paths")
                              : QStringLiteral("draw what it does with paths"));
    }

    void sayNothingToUse(const XmlElement& use)
    {
        say(Finding::Lost,
            use,
            "use",
            QStringLiteral("<use> refers to nothing in this file"),
            QStringLiteral("put what it stands for into the file"));
    }

    /// Begins a group for the element \a i. What is appended next is in it.
    void
    openGroup(int i, QVector<Declaration> properties, const QString& transform, const QVector<Mark>& clips)
    {
        const QVector<Mark> marks = takeMarks(properties, i) + clips;
        m_writer.writeStartElement(QStringLiteral("g"));
        writeAttributes(properties, transform);
        writeMarks(marks);
        m_pending.append(Pending{-1, nullptr, nullptr, marks.size()});
    }

    void writeShape(int i, QString name, QVector<Declaration> properties, const InheritedPaint& paint)
    {
        if (hasNoSize(name, properties))
            return;
        QString path = pointAsPath(name, properties);
        if (name == QLatin1String("rect")) {
            const QString rounded = roundedRect(properties);
            const bool isWrong = number(properties, "rx") < 0 || number(properties, "ry") < 0;
            if (paint.isDashed || isWrong)
                path = rounded;
            if (rounded.isEmpty() || !path.isEmpty())
                remove(properties, {"rx", "ry"});
        }
        if (!path.isEmpty()) {
            name = QStringLiteral("path");
            remove(properties, {"x", "y", "width", "height", "x1", "y1", "x2", "y2", "points"});
            set(properties, QStringLiteral("d"), pathForQt(path, paint.strokeWidth));
        }
        QVector<Mark> marks = takeMarks(properties, i);
        const double pathLength = number(properties, "pathLength");
        if (pathLength > 0)
            marks.append(Mark::dashes(pathLength));
        writeMarks(marks);
        m_writer.writeStartElement(name);
        writeAttributes(properties, element(i).attribute(QStringLiteral("transform")));
        m_writer.writeEndElement();
        writeEnds(marks.size());
    }

    /// Takes out of the properties of \a i what marks say instead.
    static QVector<Mark> takeMarks(QVector<Declaration>& properties, int i)
    {
        QVector<Mark> marks;
        const double opacity = number(properties, "opacity");
        if (opacity > 0)
            remove(properties, {"opacity"});
        if (opacity > 0 && opacity < 1)
            marks.append(Mark::layer(opacity, i));
        return marks;
    }

    void writeMarks(const QVector<Mark>& marks)
    {
        for (const Mark& mark : marks)
            writeMark(m_writer, mark);
    }

    void writeEnds(int marks)
    {
        for (int i = 0; i < marks; ++i)
            writeMark(m_writer, Mark());
    }

    void writeAttributes(const QVector<Declaration>& properties, const QString& transform)
    {
        if (!transform.trimmed().isEmpty())
            m_writer.writeAttribute(QStringLiteral("transform"), transform.trimmed());
        for (const Declaration& each : properties) {
            // There is no text, but Qt has to say something about fonts that it cannot find. What is hidden
            // is not written; Qt shows it behind something visible.
            if (!isOneOf(each.property, {"transform", "visibility"})
                && !each.property.startsWith(QLatin1String("font")))
                m_writer.writeAttribute(each.property, each.value);
        }
    }

    const XmlTree& m_tree;
    const QVector<XmlElement>& m_elements;
    const References& m_references;
    Cascade m_cascade;
    QVector<Pending> m_pending; ///< the next one last
    Preparation m_result;
    QXmlStreamWriter m_writer;
};

} // namespace

Preparation prepareForQt(const XmlTree& tree)
{
    const References references(tree.elements());
    if (!references.error().isEmpty()) {
        Preparation failed;
        failed.error = references.error();
        failed.errorPosition = references.errorPosition();
        return failed;
    }
    return Preparer(tree, references).prepare();
}
