#include "Checker.h"
#include "Converter.h"
#include "Document.h"
#include "Drawing.h"
#include "Preparation.h"
#include "Replay.h"

#include <Quillet/SvgFileParser.h>

#include <QtCore/QFile>
#include <QtCore/QSet>
#include <QtCore/QTextStream>
#include <QtCore/QXmlStreamReader>
#include <QtGui/QGuiApplication>
#include <QtSvg/QSvgRenderer>

// Reads names of files, one a line, from the file LIST, and writes a line for each into LIST.result, with
// tabs between:
//
//   1  what "check" says of the file: clean, lossy, refused
//   2  of the pixels, the share in which the library's picture of it differs from Qt's
//   3  what "convert" says: kept, lossy, failed
//   4  whether the reader accepts what was converted: accepted, refused
//   5  the share in which the library's picture of that differs from Qt's of the original
//   6  likewise from Qt's of the original rewritten for Qt, with its clips and opacities
//   7  the rules of what is lost, with commas between
//   8  the elements and properties that excuse a file: gradient, filter, mask, text, image
//   9  the name

namespace {

constexpr int picture_size = 128;

QImage drawWithQt(const QString& text, const Frame& frame)
{
    QXmlStreamReader reader(text);
    QSvgRenderer renderer;
    renderer.load(&reader);
    return ::drawWithQt(renderer, frame, picture_size);
}

QString share(const QImage& one, const QImage& other)
{
    return QString::number(compare(one, other).share, 'f', 6);
}

QString joined(QSet<QString> names)
{
    QStringList list(names.begin(), names.end());
    list.sort();
    return list.join(QLatin1Char(','));
}

/// What a document uses that no path can draw.
QString excuses(const XmlTree& tree)
{
    QSet<QString> found;
    for (const XmlElement& each : tree.elements()) {
        const QString name = localName(each.name);
        if (name.endsWith(QLatin1String("Gradient")))
            found.insert(QStringLiteral("gradient"));
        else if (name == QLatin1String("filter") || name == QLatin1String("mask")
                 || name == QLatin1String("text") || name == QLatin1String("image"))
            found.insert(name);
    }
    return joined(found);
}

void prove(const QString& fileName, QTextStream& out)
{
    const Document document = readDocument(fileName);
    if (!document.error.isEmpty()) {
        out << "unread\t1\tfailed\trefused\t1\t1\tunread\t\t" << fileName << '\n';
        return;
    }
    const QString verdicts[] = {QStringLiteral("clean"), QStringLiteral("lossy"), QStringLiteral("refused")};
    const QString check = verdicts[checkSvg(document.text).verdict()];
    const Conversion conversion = convertSvg(document.text);
    const XmlTree tree(document.text);
    if (!conversion.error.isEmpty()) {
        out << check << "\t1\tfailed\trefused\t1\t1\t" << conversion.error << '\t' << excuses(tree) << '\t'
            << fileName << '\n';
        return;
    }

    QSet<QString> rules;
    for (const Finding& each : conversion.losses) {
        if (each.weight == Finding::Lost)
            rules.insert(each.rule);
    }
    Quillet::PainterPathContainer asItIs;
    Quillet::parseSvg(document.text, asItIs);
    Quillet::PainterPathContainer converted;
    const bool accepted = Quillet::parseSvg(conversion.text, converted);

    const Frame& frame = conversion.frame;
    const QImage byQt = drawWithQt(document.text, frame);
    const QImage byQtPrepared = drawPrepared(prepareForQt(tree).text, frame, picture_size);
    const QImage byLibrary = drawWithLibrary(asItIs, frame.size, picture_size);
    const QImage byLibraryConverted = drawWithLibrary(converted, frame.size, picture_size);
    out << check << '\t' << share(byQt, byLibrary) << '\t' << (rules.isEmpty() ? "kept" : "lossy") << '\t'
        << (accepted ? "accepted" : "refused") << '\t' << share(byQt, byLibraryConverted) << '\t'
        << share(byQtPrepared, byLibraryConverted) << '\t' << joined(rules) << '\t' << excuses(tree) << '\t'
        << fileName << '\n';
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*=false");
    const QGuiApplication application(argc, argv);
    QFile list(QGuiApplication::arguments().value(1));
    QFile results(list.fileName() + QStringLiteral(".result"));
    if (!list.open(QIODevice::ReadOnly) || !results.open(QIODevice::WriteOnly))
        return 2;
    QTextStream in(&list);
    QTextStream out(&results);
    in.setCodec("UTF-8");
    out.setCodec("UTF-8");
    QString name;
    while (in.readLineInto(&name)) {
        prove(name, out);
        out.flush();
    }
    return 0;
}
