#include "Checker.h"

#include "AttributeRules.h"
#include "Frame.h"
#include "LayerCheck.h"
#include "Names.h"
#include "NumberCheck.h"
#include "PathDataCheck.h"
#include "PresentationCheck.h"
#include "References.h"
#include "Style.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <iterator>

namespace {

constexpr qint64 most_drawn_in_layers = 20'000; ///< shapes, each in every layer around it

class Checker
{
public:
    Checker(const XmlTree& tree, const Quillet::PainterPathContainer& picture)
        : m_tree(tree),
          m_elements(tree.elements()),
          m_references(m_elements),
          m_picture(picture),
          m_before(m_elements.size() + 1)
    {
        for (int i = 0; i < m_elements.size(); ++i) {
            const XmlElement& each = m_elements[i];
            m_stated.append(statedIn(each));
            const QString& stroke = m_stated.last().stroke;
            const bool strokes = !stroke.isEmpty() && stroke != QLatin1String("none");
            m_before[i + 1].strokes = m_before[i].strokes + (strokes ? 1 : 0);
            m_before[i + 1].paths =
                m_before[i].paths + (each.name.toLower() == QLatin1String("path") ? 1 : 0);
        }
    }

    QVector<Finding> check()
    {
        if (!checkRoot())
            return m_findings;
        for (const Position& link : m_tree.styleSheetLinks()) {
            say(Finding::Lost,
                link,
                QStringLiteral("style-sheet"),
                QStringLiteral("the style sheet in another file is not read"),
                QStringLiteral("write the properties as attributes"));
        }
        for (const EntityReference& each : m_tree.unknownEntities()) {
            if (isEntered(each.element))
                m_findings.append(findingFor(each));
        }
        checkReferences();
        checkShapes();
        return m_findings;
    }

private:
    int indexOf(const XmlElement& element) const { return int(&element - m_elements.constData()); }

    Presentation inherited(const Presentation& around, const XmlElement& element) const
    {
        return inherit(around, element, m_stated[indexOf(element)]);
    }

    bool hasPaths(const XmlElement& element) const
    {
        return m_before[element.end].paths > m_before[indexOf(element)].paths;
    }

    /// Whether the element, or something in it, may be stroked.
    bool isStroked(const XmlElement& element, const Presentation& around) const
    {
        return inherited(around, element).strokes
               || m_before[element.end].strokes > m_before[indexOf(element) + 1].strokes;
    }

    /// What a property comes to that the element has in \a around.
    Finding::Weight weighed(const Ignored& ignored,
                            const QString& property,
                            const XmlElement& element,
                            const Presentation& around) const
    {
        const bool isLost = property == QLatin1String("display")            ? hasPaths(element)
                            : property == QLatin1String("stroke-dasharray") ? isStroked(element, around)
                                                                            : true;
        return isLost ? ignored.weight : Finding::Note;
    }

    void say(Finding::Weight weight,
             const Position& position,
             const QString& rule,
             const QString& message,
             const QString& advice)
    {
        m_findings.append({weight, position, rule, message, advice});
    }

    bool checkRoot()
    {
        const XmlElement& root = m_elements.first();
        if (root.name != QLatin1String("svg")) {
            say(Finding::Refused,
                root.position,
                QStringLiteral("root"),
                QStringLiteral("the root is <%1>; the reader takes <svg> only").arg(root.name),
                QStringLiteral("write <svg>, and the namespace in “xmlns”"));
            return false;
        }
        const int tooDeep = firstTooDeep(m_elements);
        if (tooDeep >= 0) {
            say(Finding::Refused,
                m_elements[tooDeep].position,
                QStringLiteral("depth"),
                QStringLiteral("elements are nested more than %1 deep").arg(deepest_nesting),
                QStringLiteral("take out groups that hold nothing but a group"));
            return false;
        }
        checkFrame(root);
        return true;
    }

    /// Whether the reader looks for paths in the element \a i.
    bool isEntered(int i) const
    {
        for (; m_elements[i].parent >= 0; i = m_elements[i].parent) {
            if (m_elements[i].name.toLower() != QLatin1String("g"))
                return false;
        }
        return true;
    }

    /// Names what a conversion would refuse.
    void checkReferences()
    {
        if (m_references.error().isEmpty())
            return;
        say(Finding::Lost,
            m_references.errorPosition(),
            QStringLiteral("use"),
            m_references.error() + QStringLiteral("; “quillet-svg convert” refuses the file for it"),
            m_references.advice());
    }

    /// Names what keeps SVG from drawing anything (SVG 1.1, 5.1.2 and 7.7).
    void checkSize(const XmlElement& root)
    {
        if (m_picture.getPaths().empty())
            return;
        for (const XmlAttribute& each : root.attributes) {
            const bool isBox = each.name == QLatin1String("viewBox");
            const bool isNothing = isBox
                                       ? isEmptyBox(each.value)
                                       : isOneOf(each.name, {"width", "height"}) && isZeroLength(each.value);
            if (!isNothing)
                continue;
            say(Finding::Lost,
                each.namePosition,
                QStringLiteral("hidden"),
                isBox ? QStringLiteral("the view box is empty, so SVG draws nothing; the reader draws")
                      : QStringLiteral("the %1 is 0, so SVG draws nothing; the reader draws").arg(each.name),
                QStringLiteral("write the size of the drawing"));
        }
    }

    static bool isEmptyBox(const QString& viewBox)
    {
        static const QRegularExpression separators(QStringLiteral("[\\s,]+"));
        const QStringList numbers = viewBox.split(separators, Qt::SkipEmptyParts);
        return numbers.size() == 4 && (isZeroLength(numbers[2]) || isZeroLength(numbers[3]));
    }

    void checkFrame(const XmlElement& root)
    {
        checkSize(root);
        const Frame frame = readFrame(root);
        if (frame.isIdentity())
            return;
        say(Finding::Lost,
            root.find(QStringLiteral("viewBox"))->namePosition,
            QStringLiteral("view-box"),
            QStringLiteral("the view box moves or scales the drawing; the reader does not follow it"),
            QStringLiteral("set a transform when you draw, or run “quillet-svg convert”"));
    }

    /// Checks the root and what is in it, up to where the reader stops.
    void checkShapes()
    {
        struct Group
        {
            int element;
            int next;
            int end;
            Presentation presentation;
            int firstShape;
            bool isForeign;
        };
        QVector<Group> groups;
        const auto enter = [&](int i, const Presentation& around) {
            const bool isOther = checkNamespace(i, !groups.isEmpty() && groups.last().isForeign);
            checkGroup(m_elements[i], around);
            groups.append(
                {i, i + 1, m_elements[i].end, inherited(around, m_elements[i]), m_layered.size(), isOther});
        };
        enter(0, Presentation());
        while (!groups.isEmpty()) {
            Group& group = groups.last();
            if (group.next >= group.end) {
                checkLayer(m_elements[group.element], group.firstShape);
                groups.removeLast();
                continue;
            }
            const int i = group.next;
            group.next = m_elements[i].end;
            const QString tag = m_elements[i].name.toLower();
            if (isOneOf(tag, {"g", "path"}))
                checkCase(m_elements[i], tag);
            if (tag == QLatin1String("g")) {
                const Presentation around = group.presentation;
                enter(i, around);
            } else if (tag == QLatin1String("path")) {
                checkNamespace(i, group.isForeign);
                if (!checkPath(i, group.presentation))
                    return;
            } else {
                checkIgnored(m_elements[i], group.presentation);
            }
        }
    }

    void checkCase(const XmlElement& element, const QString& tag)
    {
        if (element.name == tag)
            return;
        say(Finding::Lost,
            element.position,
            QStringLiteral("unknown-element"),
            QStringLiteral("<%1> is no element of SVG; the reader takes it for <%2>").arg(element.name, tag),
            QStringLiteral("write <%1>, or take it out").arg(tag));
    }

    /// Names the element \a i, with what is in it, if the reader takes it for SVG's and it is none.
    /// \return whether it is none; that it is in such a one is told by \a isInForeign.
    bool checkNamespace(int i, bool isInForeign)
    {
        const XmlElement& element = m_elements[i];
        const bool isOther = element.find(QStringLiteral("xmlns")) ? isForeign(m_elements, i) : isInForeign;
        if (!isOther || isInForeign)
            return isOther;
        say(hasPaths(element) ? Finding::Lost : Finding::Note,
            element.position,
            QStringLiteral("foreign"),
            QStringLiteral("<%1> is in another namespace than SVG's; the reader takes it for SVG's")
                .arg(element.name),
            element.parent < 0 ? QStringLiteral("write xmlns=\"http://www.w3.org/2000/svg\"")
                               : QStringLiteral("take it out, or run “quillet-svg convert”"));
        return true;
    }

    void checkGroup(const XmlElement& group, const Presentation& around)
    {
        const QVector<QString>& names = readAttributes();
        const auto isRefusedIn = [&group](const QString& name) {
            const XmlAttribute* attribute = group.find(name);
            return attribute && isRefused(name, attribute->value);
        };
        QStringList unread;
        const auto refused = std::find_if(names.begin(), names.end(), isRefusedIn);
        if (refused != names.end()) {
            const XmlAttribute& attribute = *group.find(*refused);
            std::copy_if(std::next(refused),
                         names.end(),
                         std::back_inserter(unread),
                         [&](const QString& name) { return group.find(name) != nullptr; });
            QString message = QStringLiteral("“%1” is no value that the reader takes for “%2”")
                                  .arg(attribute.value, attribute.name);
            if (attribute.name == QLatin1String("opacity"))
                message += QStringLiteral("; it counts as 0");
            if (!unread.isEmpty())
                message += QStringLiteral("; because of it these are not read: ")
                           + unread.join(QStringLiteral(", "));
            say(Finding::Lost,
                attribute.valuePosition,
                QStringLiteral("group-value"),
                message,
                refusalOf(attribute.name));
            unread.append(attribute.name);
        }
        checkAttributes(group, around, unread);
    }

    /// \return false where the reader stops.
    bool checkPath(int i, const Presentation& around)
    {
        const XmlElement& path = m_elements[i];
        if (const XmlAttribute* data = path.find(QStringLiteral("d"))) {
            const QVector<Finding> findings = checkPathData(*data);
            m_findings += findings;
            if (std::any_of(findings.begin(), findings.end(), [](const Finding& each) {
                    return each.weight == Finding::Refused;
                }))
                return false;
        }
        for (const QString& name : readAttributes()) {
            const XmlAttribute* attribute = path.find(name);
            if (attribute && isRefused(name, attribute->value)) {
                say(Finding::Refused,
                    attribute->valuePosition,
                    QStringLiteral("value"),
                    QStringLiteral("“%1” is no value that the reader takes for “%2”; it refuses the document "
                                   "here")
                        .arg(attribute->value, name),
                    refusalOf(name));
                return false;
            }
        }
        checkAttributes(path, around);
        for (int child = i + 1; child < path.end; child = m_elements[child].end)
            checkIgnored(m_elements[child], inherited(around, path));
        if (m_shape < m_picture.getPaths().size()) {
            const Quillet::PainterPath& shape = *m_picture.getPaths()[m_shape];
            const Presentation presentation = inherited(around, path);
            m_findings += checkPresentation(path, presentation, shape);
            checkStroke(path, presentation, shape.getPen());
            m_layered.append({&shape,
                              presentation.fillOpacity * presentation.opacity,
                              presentation.strokeOpacity * presentation.opacity});
            checkLayer(path, m_layered.size() - 1);
        }
        ++m_shape;
        return true;
    }

    /// Checks whether the opacity of \a element, a group or a path, holds for what overlaps.
    void checkLayer(const XmlElement& element, int firstShape)
    {
        bool isNumber = false;
        const double opacity = element.attribute(QStringLiteral("opacity")).toDouble(&isNumber);
        if (!isNumber || !(opacity > 0 && opacity < 1))
            return;
        const QVector<LayeredShape> shapes = m_layered.mid(firstShape);
        // What cannot be drawn in time counts as overlapping.
        m_drawnInLayers += shapes.size();
        if (m_drawnInLayers <= most_drawn_in_layers && !showsThrough(shapes, opacity))
            return;
        say(Finding::Lost,
            element.position,
            QStringLiteral("opacity"),
            shapes.size() == 1
                ? QStringLiteral(
                    "the opacity holds for fill and stroke together; the reader lets the fill show "
                    "through the stroke")
                : QStringLiteral(
                    "the opacity holds for shapes together that overlap; the reader lets one show "
                    "through the other"),
            QStringLiteral("run “quillet-svg convert”, which parts them"));
    }

    void checkStroke(const XmlElement& path, const Presentation& presentation, const QPen& pen)
    {
        if (!pen.color().isValid())
            return;
        const XmlAttribute* data = path.find(QStringLiteral("d"));
        const bool hasCaps = pen.color().alpha() > 0 && pen.widthF() > 0 && pen.capStyle() != Qt::FlatCap;
        if (data && hasCaps && presentation.isDisplayed)
            m_findings += checkCaps(*data);
        if (pen.joinStyle() != Qt::MiterJoin || pen.miterLimit() >= 1)
            return;
        say(Finding::Lost,
            path.position,
            QStringLiteral("miter"),
            QStringLiteral("the miter limit %1 is an error in SVG; the reader cuts corners by it")
                .arg(pen.miterLimit()),
            QStringLiteral("choose another line join or limit, or run “quillet-svg convert”"));
    }

    /// What the values of \a unread are does not matter.
    void
    checkAttributes(const XmlElement& element, const Presentation& around, const QStringList& unread = {})
    {
        for (const XmlAttribute& each : element.attributes) {
            if (each.name == QLatin1String("style"))
                checkStyle(each, element, around);
            else if (!readAttributes().contains(each.name) && each.name != QLatin1String("d"))
                checkIgnoredAttribute(each, element, around);
            else if (unread.contains(each.name))
                continue;
            else if (each.name == QLatin1String("fill") || each.name == QLatin1String("stroke"))
                m_findings += checkColor(each, around);
            else
                m_findings += checkNumber(each);
        }
    }

    void checkIgnoredAttribute(const XmlAttribute& attribute,
                               const XmlElement& element,
                               const Presentation& around)
    {
        if (attribute.name == QLatin1String("xmlns") || attribute.name.startsWith(QLatin1String("xmlns:")))
            return;
        const Ignored ignored = ignoredProperty(attribute.name, attribute.value);
        say(weighed(ignored, attribute.name, element, around),
            attribute.namePosition,
            ignored.rule,
            QStringLiteral("the attribute “%1” is ignored").arg(attribute.name),
            ignored.advice);
    }

    /// A declaration of a style attribute.
    struct PlacedDeclaration
    {
        Declaration declaration;
        Position position;
    };

    static QVector<PlacedDeclaration> readDeclarations(const XmlAttribute& style)
    {
        QVector<PlacedDeclaration> result;
        const bool isPlain = !style.value.contains(QLatin1String("/*"));
        const QVector<Declaration> declarations = readStyle(style.value);
        for (const Declaration& each : declarations)
            result.append({each, style.namePosition});
        PlacesInValue places(style);
        int begin = 0;
        auto next = result.begin();
        const QVector<QStringRef> parts = style.value.splitRef(QLatin1Char(';'));
        for (const QStringRef& part : parts) {
            const auto isSpace = [](QChar each) { return each.isSpace(); };
            const auto word = std::find_if_not(part.begin(), part.end(), isSpace);
            const int colon = part.indexOf(QLatin1Char(':'));
            const int at = int(word - part.begin());
            if (isPlain && at < colon && next != result.end())
                (next++)->position = places.at(begin + at);
            begin += part.size() + 1;
        }
        return result;
    }

    /// One finding for what attributes could say as well, and one for each other property that is lost.
    void checkStyle(const XmlAttribute& style, const XmlElement& element, const Presentation& around)
    {
        const Ignored ignored = ignoredProperty(QStringLiteral("style"), style.value);
        QStringList plain;
        bool isHarmless = true;
        const QVector<PlacedDeclaration> declarations = readDeclarations(style);
        for (const PlacedDeclaration& each : declarations) {
            const QString& property = each.declaration.property;
            const Ignored byItself = ignoredInStyle(property, each.declaration.value);
            if (weighed(byItself, property, element, around) != Finding::Lost)
                continue;
            isHarmless = false;
            if (byItself.rule == ignored.rule) {
                plain.append(property);
                continue;
            }
            say(Finding::Lost,
                each.position,
                byItself.rule,
                QStringLiteral("“%1” in the style is ignored").arg(property),
                byItself.advice);
        }
        if (plain.isEmpty() && !isHarmless)
            return;
        say(isHarmless ? Finding::Note : Finding::Lost,
            style.namePosition,
            ignored.rule,
            isHarmless ? QStringLiteral("the attribute “style” is ignored")
                       : QStringLiteral("the attribute “style” is ignored, and with it: ")
                             + plain.join(QStringLiteral(", ")),
            ignored.advice);
    }

    void checkIgnored(const XmlElement& element, const Presentation& around)
    {
        const int self = indexOf(element);
        const QString local = localName(element.name);
        // "svg:" is often left undeclared.
        const bool foreign = isForeign(m_elements, self) && !element.name.startsWith(QLatin1String("svg:"));
        Ignored ignored = ignoredElement(local);
        QString message = QStringLiteral("<%1> is ignored").arg(element.name);
        if (foreign) {
            ignored = {Finding::Note, QStringLiteral("foreign"), QStringLiteral("nothing needs to be done")};
        } else if (local != element.name && isOneOf(local, {"path", "g"})) {
            ignored = {Finding::Lost,
                       QStringLiteral("prefix"),
                       QStringLiteral("take the prefix out, or run “quillet-svg convert”")};
            message += QStringLiteral(", because its name has a prefix");
        } else if (element.end - self > 1) {
            message += QStringLiteral(", with everything in it");
        }
        const bool isSheet = local == QLatin1String("style"); // which acts wherever it stands
        if (!isSheet
            && ((local == QLatin1String("text") && isEmptyText(m_tree, self))
                || !inherited(around, element).isDisplayed)) {
            ignored.weight = Finding::Note;
            ignored.advice = QStringLiteral("nothing needs to be done");
        }
        if (ignored.rule == QLatin1String("use") && !m_references.error().isEmpty())
            ignored.advice = m_references.advice() + QStringLiteral(", then run “quillet-svg convert”");
        say(ignored.weight, element.position, ignored.rule, message, ignored.advice);
        for (int i = self + 1; i < element.end; ++i) {
            if (localName(m_elements[i].name) == QLatin1String("style")) {
                const Ignored style = ignoredElement(QStringLiteral("style"));
                say(style.weight,
                    m_elements[i].position,
                    style.rule,
                    QStringLiteral("<%1> is ignored").arg(m_elements[i].name),
                    style.advice);
            }
        }
    }

    /// How many elements there are.
    struct Count
    {
        int paths = 0;
        int strokes = 0; ///< that say what to stroke with
    };

    const XmlTree& m_tree;
    const QVector<XmlElement>& m_elements;
    const References m_references;
    const Quillet::PainterPathContainer& m_picture;
    QVector<Stated> m_stated;
    QVector<Count> m_before; ///< in front of each element, and of the end
    QVector<Finding> m_findings;
    std::size_t m_shape = 0;
    QVector<LayeredShape> m_layered; ///< the shapes so far
    qint64 m_drawnInLayers = 0;
};

} // namespace

Finding::Weight Check::verdict() const
{
    Finding::Weight worst = Finding::Note;
    for (const Finding& each : findings)
        worst = std::max(worst, each.weight);
    return worst;
}

Check checkSvg(const QString& text)
{
    Check result;
    Quillet::PainterPathContainer picture;
    result.accepted = Quillet::parseSvg(text, picture);
    result.shapes = int(picture.getPaths().size());

    const XmlTree tree(text);
    if (tree.error().isEmpty()) {
        result.findings = Checker(tree, picture).check();
    } else {
        result.findings.append({result.accepted ? Finding::Lost : Finding::Refused,
                                tree.errorPosition(),
                                QStringLiteral("xml"),
                                QStringLiteral("this is no well-formed XML: ") + tree.error(),
                                QStringLiteral("have the program that wrote the file write it anew")});
    }
    if (!result.accepted && result.verdict() != Finding::Refused) {
        result.findings.append({Finding::Refused,
                                Position(),
                                QStringLiteral("refused"),
                                QStringLiteral("the reader refuses the document"),
                                QStringLiteral("run “quillet-svg convert”")});
    }
    sortFindings(result.findings);
    return result;
}

QVector<Finding> checkBytes(const Document& document)
{
    QVector<Finding> findings;
    const QString& text = document.text;
    if (document.hasInvalidBytes) {
        const int place = text.indexOf(QChar(QChar::ReplacementCharacter));
        findings.append(
            {Finding::Note,
             positionIn(text, place < 0 ? text.size() : place),
             QStringLiteral("encoding"),
             QStringLiteral("there are bytes that are no UTF-8; the reader knows no other encoding"),
             QStringLiteral("write the file as UTF-8, with iconv")});
    }
    if (document.bytesBehindNull > 0) {
        findings.append(
            {Finding::Lost,
             positionIn(text, text.size()),
             QStringLiteral("null-byte"),
             QStringLiteral("the reader stops at a null byte; the %1 behind it %2 not read")
                 .arg(document.bytesBehindNull == 1
                          ? QStringLiteral("byte")
                          : QStringLiteral("%1 bytes").arg(document.bytesBehindNull),
                      document.bytesBehindNull == 1 ? QStringLiteral("is") : QStringLiteral("are")),
             QStringLiteral("take the null byte out, with tr -d '\\000'")});
    }
    return findings;
}

Check checkDocument(const Document& document)
{
    Check result = checkSvg(document.text);
    result.findings += checkBytes(document);
    sortFindings(result.findings);
    return result;
}
