#include "Preparation.h"

#include "Frame.h"
#include "Losses.h"
#include "Names.h"
#include "QtForms.h"
#include "References.h"
#include "StyleSheet.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QXmlStreamWriter>

#include <algorithm>

namespace {

/// The transform that places what is in \a content, which has the view box, where \a outer says.
QString placeOf(const XmlElement& outer, const XmlElement& content)
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

/// Sets a property that is there, or adds it.
void set(QVector<Declaration>& properties, const QString& name, const QString& value)
{
    const auto found = std::find_if(
        properties.begin(), properties.end(), [&](const Declaration& each) { return each.property == name; });
    if (found == properties.end())
        properties.append({name, value});
    else
        found->value = value;
}

/// Writes the elements of a document anew.
class Preparer
{
public:
    Preparer(const QVector<XmlElement>& elements, const References& references)
        : m_elements(elements), m_references(references), m_writer(&m_result.text)
    {
    }

    Preparation prepare()
    {
        readStyleSheets();
        write(0);
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

    void readStyleSheets()
    {
        static const QRegularExpression atRule(QStringLiteral("@[a-z-]+"));
        for (const XmlElement& each : m_elements) {
            if (localName(each.name) != QLatin1String("style"))
                continue;
            m_styleSheet.add(each.text);
            const QRegularExpressionMatch match = atRule.match(each.text);
            if (match.hasMatch()) {
                say(Finding::Lost,
                    each,
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

    /// Names what is left out. \return whether \a i is to be written at all.
    bool isKept(int i)
    {
        const XmlElement& now = element(i);
        const QString name = localName(now.name);
        if (isForeign(i)
            || isOneOf(name, {"style", "metadata", "title", "desc", "filter", "cursor", "font", "font-face"}))
            return false;
        if (isAnimation(name)) {
            say(Finding::Note,
                now,
                "animation",
                QStringLiteral("<%1> is not followed; the drawing is as without it").arg(name),
                QStringLiteral("nothing needs be done"));
            return false;
        }
        if (isPicture(name)) {
            const bool isText = name == QLatin1String("text");
            if (isDrawn(i)) {
                say(Finding::Lost,
                    now,
                    isText ? "text" : "image",
                    QStringLiteral("<%1> is left out").arg(name),
                    isText ? QStringLiteral("have the drawing program make paths of it")
                           : QStringLiteral("draw it with paths"));
            }
            return false;
        }
        if (name == QLatin1String("use") && m_references.targetOf(now) < 0) {
            say(Finding::Lost,
                now,
                "use",
                QStringLiteral("<use> refers to nothing in this file"),
                QStringLiteral("put what it stands for into the file"));
            return false;
        }
        return true;
    }

    void write(int i)
    {
        if (!isKept(i))
            return;
        const XmlElement& now = element(i);
        const QString name = localName(now.name);
        if (i == 0)
            return writeRoot();
        if (name == QLatin1String("svg"))
            return writeGroup(i, placeOf(now, now), i);
        if (name == QLatin1String("use")) {
            const int target = m_references.targetOf(now);
            if (localName(element(target).name) == QLatin1String("symbol"))
                return writeSymbol(i, target);
        }
        m_writer.writeStartElement(isDefinition(name) ? QStringLiteral("defs") : name);
        writeAttributes(now, {}, false);
        writeChildren(i);
        m_writer.writeEndElement();
    }

    void writeRoot()
    {
        m_writer.writeStartElement(QStringLiteral("svg"));
        m_writer.writeAttribute(QStringLiteral("xmlns"), QStringLiteral("http://www.w3.org/2000/svg"));
        m_writer.writeAttribute(QStringLiteral("xmlns:xlink"),
                                QStringLiteral("http://www.w3.org/1999/xlink"));
        writeAttributes(element(0), {}, false);
        if (!m_styleSheet.rest().isEmpty()) {
            m_writer.writeStartElement(QStringLiteral("style"));
            m_writer.writeAttribute(QStringLiteral("type"), QStringLiteral("text/css"));
            m_writer.writeCharacters(m_styleSheet.rest());
            m_writer.writeEndElement();
        }
        writeChildren(0);
        m_writer.writeEndElement();
    }

    void writeChildren(int i)
    {
        for (int child = i + 1; child < element(i).end; child = element(child).end)
            write(child);
    }

    /// A group with the attributes of \a i and the children of \a content.
    void writeGroup(int i, const QString& placement, int content)
    {
        m_writer.writeStartElement(QStringLiteral("g"));
        writeAttributes(element(i), placement, true);
        writeChildren(content);
        m_writer.writeEndElement();
    }

    /// A "use" of a symbol, as a group with what is in the symbol.
    void writeSymbol(int use, int symbol)
    {
        m_writer.writeStartElement(QStringLiteral("g"));
        writeAttributes(element(use), placeOf(element(use), element(symbol)), true);
        writeGroup(symbol, {}, symbol);
        m_writer.writeEndElement();
    }

    /// The attributes that matter for the drawing and what styles say, each property once.
    QVector<Declaration> propertiesOf(const XmlElement& now, bool asGroup) const
    {
        QVector<Declaration> properties;
        for (const XmlAttribute& each : now.attributes) {
            const bool isLink = localName(each.name) == QLatin1String("href");
            const bool isPlaced =
                isOneOf(each.name, {"x", "y", "width", "height", "viewBox", "preserveAspectRatio"});
            if (asGroup && (isLink || isPlaced))
                continue;
            if (isLink)
                set(properties, QStringLiteral("xlink:href"), each.value);
            else if (!each.name.contains(QLatin1Char(':'))
                     && !isOneOf(each.name, {"style", "transform", "xmlns"}))
                set(properties, each.name, each.value.trimmed());
        }
        const QVector<Declaration> styles = m_styleSheet.declarations(localName(now.name),
                                                                      now.attribute(QStringLiteral("id")),
                                                                      now.attribute(QStringLiteral("class")))
                                            + readStyle(now.attribute(QStringLiteral("style")));
        for (const Declaration& each : styles) {
            // Properties since SVG 2 only; in SVG 1.1 these are attributes.
            const bool isAttribute =
                isOneOf(each.property, {"x", "y", "cx", "cy", "r", "rx", "ry", "width", "height", "d"});
            if (!isAttribute && each.property.at(0).isLetter())
                set(properties, each.property, each.value);
        }
        return properties;
    }

    /// \a placement comes behind the element's own transform. \a asGroup leaves out what a group has not.
    void writeAttributes(const XmlElement& now, const QString& placement, bool asGroup)
    {
        QVector<Declaration> properties = propertiesOf(now, asGroup);
        m_result.findings += lossesIn(now, properties, m_references);
        writeInQtsForms(properties, m_references);

        const QString transform = now.attribute(QStringLiteral("transform")) + placement;
        if (!transform.trimmed().isEmpty())
            m_writer.writeAttribute(QStringLiteral("transform"), transform.trimmed());
        for (const Declaration& each : qAsConst(properties)) {
            if (each.property == QLatin1String("opacity"))
                m_result.findings += lossesByOpacity(m_elements, now, each.value.toDouble());
            if (each.property != QLatin1String("transform"))
                m_writer.writeAttribute(each.property, each.value);
        }
    }

    const QVector<XmlElement>& m_elements;
    const References& m_references;
    Preparation m_result;
    QXmlStreamWriter m_writer;
    StyleSheet m_styleSheet;
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
    return Preparer(tree.elements(), references).prepare();
}
