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
#include <cmath>

namespace {

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
    Preparer(const XmlTree& tree, const References& references)
        : m_elements(tree.elements()),
          m_links(tree.styleSheetLinks()),
          m_references(references),
          m_writer(&m_result.text)
    {
    }

    Preparation prepare()
    {
        for (const Position& link : m_links) {
            m_result.findings.append({Finding::Lost,
                                      link,
                                      QStringLiteral("style-sheet"),
                                      QStringLiteral("the style sheet in another file is not read"),
                                      QStringLiteral("put it into the file, as <style>")});
        }
        readStyleSheets();
        write(0);
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

    void readStyleSheets()
    {
        static const QRegularExpression atRule(QStringLiteral("@[a-z-]+"));
        for (const XmlElement& each : m_elements) {
            if (localName(each.name) != QLatin1String("style"))
                continue;
            const int before = m_styleSheet.rest().size();
            m_styleSheet.add(each.text);
            const QRegularExpressionMatch match = atRule.match(each.text);
            if (match.hasMatch()) {
                say(Finding::Lost,
                    each,
                    "style-sheet",
                    QStringLiteral("the rule %1 of a style sheet is not followed").arg(match.captured(0)),
                    QStringLiteral("write what it says as attributes"));
            } else if (m_styleSheet.rest().size() > before) {
                say(Finding::Note,
                    each,
                    "selector",
                    QStringLiteral("a selector of a style sheet names more than one element; attributes win "
                                   "over what it says"),
                    QStringLiteral("give the elements a class, and name that"));
            }
        }
    }

    bool isDrawn(int i) const
    {
        for (int at = i; at >= 0; at = element(at).parent) {
            if (m_references.isUsed(at))
                return true;
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
        if (isForeign(m_elements, i)
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
        if (!isElementOfSvg(name)) {
            if (isDrawn(i)) {
                say(Finding::Lost,
                    now,
                    "unknown-element",
                    QStringLiteral("<%1> is left out").arg(name),
                    QStringLiteral("draw what it does with paths"));
            }
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
        if (name != QLatin1String("use"))
            return true;
        const int target = m_references.targetOf(now);
        if (target < 0) {
            say(Finding::Lost,
                now,
                "use",
                QStringLiteral("<use> refers to nothing in this file"),
                QStringLiteral("put what it stands for into the file"));
            return false;
        }
        // What is not kept is named where it stands.
        const QString repeated = localName(element(target).name);
        return isElementOfSvg(repeated) && !isPicture(repeated);
    }

    /// The size that percentages inside of the element \a i are of; empty if it is not known.
    QSizeF viewportIn(int i) const
    {
        for (int at = i; at >= 0; at = element(at).parent) {
            const XmlElement& now = element(at);
            const bool isSvg = localName(now.name) == QLatin1String("svg");
            if (!isSvg && localName(now.name) != QLatin1String("symbol"))
                continue;
            const QRectF viewBox = readFrame({}, {}, now.attribute(QStringLiteral("viewBox")), {}).viewBox;
            if (!viewBox.isNull())
                return viewBox.size();
            if (isSvg)
                return at == 0 ? frameOf(now, now, {}).size : frameOf(now, now, viewportIn(now.parent)).size;
        }
        return {};
    }

    /// The frame of \a content, which has the view box, where \a outer says. What neither says is as large as
    /// \a viewport (SVG 1.1, 5.1.2 and 5.6).
    static Frame frameOf(const XmlElement& outer, const XmlElement& content, const QSizeF& viewport)
    {
        const auto length = [&](const char* name, double whole) {
            QString value = outer.attribute(QLatin1String(name));
            if (value.isEmpty())
                value = content.attribute(QLatin1String(name));
            if (value.isEmpty())
                value = QStringLiteral("100%");
            if (!value.endsWith(QLatin1Char('%')))
                return value;
            return QString::number(value.chopped(1).toDouble() / 100 * whole, 'g', 12);
        };
        return readFrame(length("width", viewport.width()),
                         length("height", viewport.height()),
                         content.attribute(QStringLiteral("viewBox")),
                         content.attribute(QStringLiteral("preserveAspectRatio")));
    }

    /// The transform that places what is in \a content, which has the view box, where \a outer says.
    QString placeOf(const XmlElement& outer, const XmlElement& content) const
    {
        const auto text = [](double number) { return QString::number(number, 'g', 12); };
        const QSizeF viewport = viewportIn(outer.parent);
        const auto offset = [&](const char* name, double whole) {
            const QString value = outer.attribute(QLatin1String(name));
            return value.endsWith(QLatin1Char('%')) ? value.chopped(1).toDouble() / 100 * whole
                                                    : absoluteLength(value);
        };
        QString transform =
            QStringLiteral(" translate(%1 %2)")
                .arg(text(offset("x", viewport.width())), text(offset("y", viewport.height())));
        const Frame frame = frameOf(outer, content, viewport);
        if (!frame.viewBox.isNull() && !frame.isIdentity()) {
            transform += QStringLiteral(" translate(%1 %2) scale(%3 %4) translate(%5 %6)")
                             .arg(text(frame.target.x()),
                                  text(frame.target.y()),
                                  text(frame.target.width() / frame.viewBox.width()),
                                  text(frame.target.height() / frame.viewBox.height()),
                                  text(-frame.viewBox.x()),
                                  text(-frame.viewBox.y()));
        }
        return transform;
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
        QVector<Declaration> styles = m_styleSheet.declarations(localName(now.name),
                                                                now.attribute(QStringLiteral("id")),
                                                                now.attribute(QStringLiteral("class")))
                                      + readStyle(now.attribute(QStringLiteral("style")));
        std::stable_partition(
            styles.begin(), styles.end(), [](const Declaration& each) { return !each.isImportant; });
        for (const Declaration& each : qAsConst(styles)) {
            // Properties since SVG 2 only; in SVG 1.1 these are attributes.
            const bool isAttribute =
                isOneOf(each.property, {"x", "y", "cx", "cy", "r", "rx", "ry", "width", "height", "d"});
            if (!isAttribute && each.property.at(0).isLetter())
                set(properties, each.property, each.value);
        }
        return properties;
    }

    /// Percentages are of the width, the height or the diagonal of what the element stands in
    /// (SVG 1.1, 7.10). Qt's renderer takes them all of the document's width.
    void resolvePercentages(const XmlElement& now, QVector<Declaration>& properties) const
    {
        const bool shape = isShape(localName(now.name));
        for (Declaration& each : properties) {
            const bool stroke = isOneOf(each.property, {"stroke-width", "stroke-dashoffset"});
            if (!each.value.endsWith(QLatin1Char('%')) || !(shape || stroke))
                continue;
            const QSizeF viewport = viewportIn(now.parent);
            double whole = 0;
            if (isOneOf(each.property, {"x", "cx", "rx", "x1", "x2", "width"}))
                whole = viewport.width();
            else if (isOneOf(each.property, {"y", "cy", "ry", "y1", "y2", "height"}))
                whole = viewport.height();
            else if (stroke || each.property == QLatin1String("r"))
                whole = std::hypot(viewport.width(), viewport.height()) / std::sqrt(2);
            if (whole > 0)
                each.value = QString::number(each.value.chopped(1).toDouble() / 100 * whole, 'g', 12);
        }
    }

    /// \a placement comes behind the element's own transform. \a asGroup leaves out what a group has not.
    void writeAttributes(const XmlElement& now, const QString& placement, bool asGroup)
    {
        QVector<Declaration> properties = propertiesOf(now, asGroup);
        m_result.findings += lossesIn(now, properties, m_references);
        resolvePercentages(now, properties);
        writeInQtsForms(properties, m_references);

        const QString transform = now.attribute(QStringLiteral("transform")) + placement;
        if (!transform.trimmed().isEmpty())
            m_writer.writeAttribute(QStringLiteral("transform"), transform.trimmed());
        for (const Declaration& each : qAsConst(properties)) {
            if (each.property == QLatin1String("opacity"))
                m_result.findings += lossesByOpacity(m_elements, now, each.value.toDouble(), m_references);
            if (each.property != QLatin1String("transform"))
                m_writer.writeAttribute(each.property, each.value);
        }
    }

    const QVector<XmlElement>& m_elements;
    const QVector<Position>& m_links;
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
    return Preparer(tree, references).prepare();
}
