// Reads the SVG files whose names come on standard input, one a line, and says for each what came of it.
//
//   corpus-check read      reads, draws and hits: for builds with sanitizers
//   corpus-check compare   takes the time, and compares the picture with that of Qt's SVG renderer
//
// For each file there are two lines on standard output: its name, before anything is done with it, and an
// object in JSON. So the name of a file that ends the process is known.

#include "Pictures.h"
#include "Rewriting.h"
#include "Subset.h"
#include "Timing.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTextStream>
#include <QtGui/QGuiApplication>
#include <QtGui/QPolygonF>

#include <algorithm>
#include <bitset>
#include <memory>
#include <vector>

using Quillet::PainterPathContainer;

namespace {

constexpr double slowest = 20; ///< times the floor

// By how much a channel of a pixel may differ, of 255. The two round the alpha of a translucent layer at
// different places, and layers on each other add up.
constexpr int rounding = 1;
constexpr int rounding_of_layers = 8;

/// As parseSvgFile() makes it of a file.
QString textOf(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    return QString::fromUtf8(bytes.constData(), int(qstrnlen(bytes.constData(), uint(bytes.size()))));
}

QRectF boundsOf(const PainterPathContainer& picture)
{
    QPolygonF corners;
    for (const auto& shape : picture.getPaths()) {
        const QRectF bounds = shape->getPath().boundingRect();
        corners << bounds.topLeft() << bounds.bottomRight();
    }
    return corners.boundingRect();
}

/// Where the document does not say what is to be shown: that which is drawn.
QRectF areaOf(const Judgement& judgement, const PainterPathContainer& picture)
{
    QRectF area = judgement.area;
    if (area.isEmpty())
        area = boundsOf(picture);
    if (!(area.width() > 0) && !(area.height() > 0))
        area.setSize(QSizeF(1, 1));
    return area;
}

// What is refused

QString documentWith(const QDomElement& path, const QString& attribute)
{
    QDomDocument document;
    QDomElement root = document.createElement(QStringLiteral("svg"));
    QDomElement alone = document.createElement(QStringLiteral("path"));
    alone.setAttribute(attribute, path.attribute(attribute));
    root.appendChild(alone);
    document.appendChild(root);
    return document.toString(-1);
}

/// What Quillet refuses of a path, each attribute tried alone; empty where it takes it.
QString refusedOf(const QDomElement& path)
{
    const QDomNamedNodeMap attributes = path.attributes();
    for (int i = 0; i < attributes.size(); ++i) {
        const QString name = attributes.item(i).nodeName();
        PainterPathContainer picture;
        if (!name.contains(QLatin1Char(':')) && !Quillet::parseSvg(documentWith(path, name), picture))
            return name == QLatin1String("d") ? QStringLiteral("path data")
                                              : QStringLiteral("value of %1").arg(name);
    }
    return {};
}

QString firstRefusedIn(const QDomElement& element)
{
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const QString tag = child.tagName().toLower();
        QString cause;
        if (tag == QLatin1String("g"))
            cause = firstRefusedIn(child);
        else if (tag == QLatin1String("path"))
            cause = refusedOf(child);
        if (!cause.isEmpty())
            return cause;
    }
    return {};
}

QString causeOfRefusal(const QString& text)
{
    QDomDocument document;
    QString message;
    if (!document.setContent(text, &message))
        return QStringLiteral("not well-formed");
    const QDomElement root = document.firstChildElement(QStringLiteral("svg"));
    if (root.isNull())
        return QStringLiteral("root is no svg");
    const QString cause = firstRefusedIn(root);
    return cause.isEmpty() ? QStringLiteral("unknown") : cause;
}

// Pictures

/// Quillet's picture and that of Qt, with the differences taken away that some rules make.
struct Comparison
{
    PictureDifference difference;
    bool isBlank = true;
    QStringList messages; ///< of Qt
};

Comparison
compare(const QString& forQuillet, const QString& forQt, const Judgement& judgement, Rules rules = 0)
{
    PainterPathContainer picture;
    Quillet::parseSvg(forQuillet, picture);
    adjustPens(picture, rules);
    const QRectF area = areaOf(judgement, picture);

    Comparison result;
    const QImage ours = pictureByQuillet(picture, area);
    const QImage theirs = pictureByQt(forQt, area, result.messages);
    if (theirs.isNull())
        result.messages.append(QStringLiteral("cannot be loaded"));
    else
        result.difference = differenceOf(ours, theirs);
    result.isBlank = isBlank(ours) && isBlank(theirs);
    return result;
}

bool isEqual(const Comparison& comparison, int tolerance)
{
    return comparison.messages.isEmpty() && comparison.difference.worst <= tolerance;
}

Comparison compareUnder(Rules rules, const QDomDocument& document, const Judgement& judgement)
{
    const QDomDocument forQuillet = rewrittenForQuillet(document, rules);
    const QDomDocument forQt = rewrittenForSvg(document, rules);
    return compare(forQuillet.toString(-1), forQt.toString(-1), judgement, rules);
}

/// All sets of the rules that may make a difference, the smallest sets first.
std::vector<Rules> setsOf(Rules all)
{
    std::vector<Rules> sets;
    for (Rules rules = 0; rules <= all; ++rules) {
        if ((rules & all) == rules)
            sets.push_back(rules);
    }
    const auto count = [](Rules rules) { return std::bitset<32>(rules).count(); };
    std::stable_sort(
        sets.begin(), sets.end(), [&](Rules one, Rules other) { return count(one) < count(other); });
    return sets;
}

QJsonArray namesOf(Rules rules)
{
    QJsonArray names;
    for (const Rule rule : all_rules) {
        if (rules & rule)
            names.append(nameOf(rule));
    }
    return names;
}

/// What it takes for the pictures to be equal: nothing, or some rules' differences taken away, or also a
/// larger tolerance. Where nothing helps there are no "reasons".
QJsonObject comparisonOf(const QString& text, const QDomDocument& document, const Judgement& judgement)
{
    const Comparison comparison = compare(text, text, judgement);
    QJsonObject result{
        {QStringLiteral("largest"), comparison.difference.worst},
        {QStringLiteral("pixels"), comparison.difference.pixels},
        {QStringLiteral("blank"), comparison.isBlank},
        {QStringLiteral("messages"), QJsonArray::fromStringList(comparison.messages)},
        {QStringLiteral("equal"), isEqual(comparison, rounding)},
    };
    if (isEqual(comparison, rounding))
        return result;

    const std::vector<Rules> sets = setsOf(judgement.rules);
    const bool hasLayers = (judgement.rules & OpacityRule) != 0;
    for (const int tolerance : {rounding, hasLayers ? rounding_of_layers : rounding}) {
        const auto explanation = std::find_if(sets.begin(), sets.end(), [&](Rules rules) {
            return isEqual(compareUnder(rules, document, judgement), tolerance);
        });
        if (explanation != sets.end()) {
            QJsonArray reasons = namesOf(*explanation);
            if (tolerance != rounding)
                reasons.append(QStringLiteral("rounding"));
            result.insert(QStringLiteral("reasons"), reasons);
            break;
        }
    }
    return result;
}

// What is done with each file

QJsonObject read(const QString& fileName)
{
    PainterPathContainer picture;
    const bool isAccepted = Quillet::parseSvgFile(fileName, picture);
    const QRectF area = areaOf(Judgement(), picture);
    pictureByQuillet(picture, area);
    picture.contains(area.center());
    return {{QStringLiteral("accepted"), isAccepted}};
}

QJsonObject compareWithQt(const QString& fileName)
{
    const QString text = textOf(fileName);
    const Timing timing = timingOf(text, slowest);
    PainterPathContainer picture;
    const bool isAccepted = Quillet::parseSvg(text, picture);
    QJsonObject result{{QStringLiteral("accepted"), isAccepted},
                       {QStringLiteral("shapes"), int(picture.getPaths().size())},
                       {QStringLiteral("ours"), timing.ours},
                       {QStringLiteral("floor"), timing.floor}};
    if (!isAccepted) {
        result.insert(QStringLiteral("cause"), causeOfRefusal(text));
        return result;
    }

    QDomDocument document;
    document.setContent(text);
    const Judgement judgement = judge(document);
    result.insert(QStringLiteral("outside"), QJsonArray::fromStringList(judgement.outside));
    if (judgement.outside.isEmpty())
        result.insert(QStringLiteral("picture"), comparisonOf(text, document, judgement));
    return result;
}

} // namespace

int main(int argc, char** argv)
{
    const QByteArray mode = argc == 2 ? argv[1] : "";
    if (mode != "read" && mode != "compare") {
        QTextStream(stderr) << "usage: corpus-check read|compare\n";
        return 2;
    }
    // Only Qt's renderer needs more, for text.
    std::unique_ptr<QCoreApplication> application;
    if (mode == "compare") {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application = std::make_unique<QGuiApplication>(argc, argv);
    }

    QTextStream in(stdin);
    QTextStream out(stdout);
    QString fileName;
    while (in.readLineInto(&fileName)) {
        out << fileName << Qt::endl;
        const QJsonObject result = mode == "read" ? read(fileName) : compareWithQt(fileName);
        out << QJsonDocument(result).toJson(QJsonDocument::Compact) << Qt::endl;
    }
    return 0;
}
