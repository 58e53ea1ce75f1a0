#include "Commands.h"

#include "Checker.h"
#include "Converter.h"
#include "Document.h"
#include "Drawing.h"
#include "ExitStatus.h"
#include "FindingText.h"

#include <Quillet/SvgFileParser.h>

#include <QtCore/QBuffer>
#include <QtCore/QCommandLineParser>
#include <QtCore/QJsonDocument>
#include <QtCore/QMap>
#include <QtCore/QXmlStreamReader>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <algorithm>
#include <cstdio>

#ifdef Q_OS_UNIX
#    include <unistd.h>
#endif

namespace {

constexpr int default_size = 256;
constexpr int largest_size = 8192;
constexpr int gap = 8; ///< between the pictures of "compare"

bool isTerminal(FILE* stream)
{
#ifdef Q_OS_UNIX
    return isatty(fileno(stream)) != 0;
#else
    Q_UNUSED(stream)
    return false;
#endif
}

/// Says on a terminal how far a long run has come.
class Progress
{
public:
    Progress(int all, QTextStream& err) : m_all(all), m_err(err), m_isShown(all > 1 && isTerminal(stderr)) {}
    ~Progress() { clear(); }

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void step()
    {
        ++m_done;
        if (!m_isShown || (m_done % 16 != 0 && m_done != m_all))
            return;
        m_err << "\r" << m_done << " of " << m_all << " files";
        m_err.flush();
    }

    void clear()
    {
        if (m_isShown)
            m_err << "\r\033[K";
        m_err.flush();
    }

private:
    int m_all;
    QTextStream& m_err;
    bool m_isShown;
    int m_done = 0;
};

QByteArray png(const QImage& picture)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return bytes;
}

/// The frame of the document \a text, as large as Qt's renderer finds it where it says nothing itself.
Frame frameOf(const QString& text)
{
    const XmlTree tree(text);
    Frame frame;
    if (!tree.elements().isEmpty()) {
        const XmlElement& root = tree.elements().first();
        frame = readFrame(root.attribute(QStringLiteral("width")),
                          root.attribute(QStringLiteral("height")),
                          root.attribute(QStringLiteral("viewBox")),
                          root.attribute(QStringLiteral("preserveAspectRatio")));
    }
    return frame;
}

/// The size of a drawing that names none: up to its farthest point.
QSizeF extentOf(const Quillet::PainterPathContainer& picture)
{
    QRectF box;
    for (const auto& shape : picture.getPaths())
        box = box.united(shape->getPath().boundingRect());
    return {std::max(box.right(), 1.0), std::max(box.bottom(), 1.0)};
}

class Program
{
public:
    Program(QTextStream& out, QTextStream& err) : m_out(out), m_err(err) {}

    int run(const QStringList& arguments)
    {
        const QString command = arguments.value(1);
        if (command == QLatin1String("--help") || command == QLatin1String("-h")) {
            m_out << usage();
            return Clean;
        }
        if (command == QLatin1String("--version") || command == QLatin1String("-v")) {
            m_out << "quillet-svg 1.0.0\n";
            return Clean;
        }
        static const QMap<QString, int (Program::*)(const QCommandLineParser&)> commands = {
            {QStringLiteral("check"), &Program::check},
            {QStringLiteral("convert"), &Program::convert},
            {QStringLiteral("render"), &Program::render},
            {QStringLiteral("compare"), &Program::compareFiles},
        };
        const auto found = commands.find(command);
        if (found == commands.end()) {
            return misused(command.isEmpty() ? QStringLiteral("a command is missing")
                                             : QStringLiteral("there is no command “%1”").arg(command));
        }
        QCommandLineParser parser;
        parser.addOption({QStringLiteral("help"), QString()});
        if (command == QLatin1String("check")) {
            parser.addOption({QStringLiteral("json"), QString()});
            parser.addOption({QStringLiteral("notes"), QString()});
            parser.addOption({QStringLiteral("summary"), QString()});
        } else if (command != QLatin1String("convert")) {
            parser.addOption({QStringLiteral("size"), QString(), QStringLiteral("N")});
        }
        if (command == QLatin1String("compare"))
            parser.addOption({QStringLiteral("original"), QString(), QStringLiteral("FILE")});
        QStringList rest = arguments;
        rest.removeAt(1);
        if (!parser.parse(rest))
            return misused(parser.errorText());
        if (parser.isSet(QStringLiteral("help"))) {
            m_out << usage();
            return Clean;
        }
        return (this->**found)(parser);
    }

private:
    static QString usage()
    {
        return QStringLiteral(
            "Usage: quillet-svg check [--json] [--notes] [--summary] FILE-OR-DIRECTORY...\n"
            "       quillet-svg convert IN OUT\n"
            "       quillet-svg render [--size N] FILE OUT.png\n"
            "       quillet-svg compare [--size N] [--original FILE] FILE OUT.png\n"
            "\n"
            "Finds what Quillet's SVG reader ignores or refuses, and converts files so that it draws them.\n"
            "\n"
            "Exit status: 0 clean, 1 lossy, 2 refused, 3 not read or written, 4 wrong arguments.\n");
    }

    int misused(const QString& why)
    {
        m_err << "quillet-svg: " << why.simplified() << "; see quillet-svg --help\n";
        return WrongArguments;
    }

    int inaccessible(const QString& fileName, const QString& why)
    {
        m_err << "quillet-svg: " << fileName << ": " << why << '\n';
        return NoAccess;
    }

    int refuse(const QString& fileName, const Position& position, const QString& why)
    {
        m_err << fileName << ':' << position.line << ':' << position.column
              << ": refused: " << why.simplified() << '\n';
        return NotAccepted;
    }

    int check(const QCommandLineParser& parser)
    {
        const QStringList names = parser.positionalArguments();
        if (names.isEmpty())
            return misused(QStringLiteral("check needs a file"));
        const bool asJson = parser.isSet(QStringLiteral("json"));
        const bool withNotes = parser.isSet(QStringLiteral("notes"));
        const bool onlySummary = parser.isSet(QStringLiteral("summary"));
        const QStringList files = svgFiles(names);
        const bool summarises = onlySummary || files.size() != names.size() || files != names;

        Progress progress(files.size(), m_err);
        int status = Clean;
        int verdicts[3] = {};
        QMap<QString, int> filesWithRule;
        if (asJson)
            m_out << "[";
        bool isFirst = true;
        for (const QString& file : files) {
            const Document document = readDocument(file);
            progress.step();
            if (!document.error.isEmpty()) {
                progress.clear();
                status = std::max(status, inaccessible(file, document.error));
                continue;
            }
            const Check result = checkSvg(document.text);
            const Finding::Weight verdict = result.verdict();
            ++verdicts[verdict];
            status = std::max(status, int(verdict));
            countRules(result, filesWithRule);
            if (asJson) {
                m_out << (isFirst ? "\n" : ",\n")
                      << QJsonDocument(jsonFor(file, result)).toJson(QJsonDocument::Compact);
                isFirst = false;
            } else if (!onlySummary) {
                progress.clear();
                report(file, result, withNotes);
            }
        }
        progress.clear();
        if (asJson)
            m_out << "\n]\n";
        else if (summarises)
            summarise(files.size(), verdicts, filesWithRule);
        return status;
    }

    static void countRules(const Check& result, QMap<QString, int>& filesWithRule)
    {
        QStringList rules;
        for (const Finding& each : result.findings) {
            if (each.weight != Finding::Note && !rules.contains(each.rule))
                rules.append(each.rule);
        }
        for (const QString& rule : rules)
            ++filesWithRule[rule];
    }

    void report(const QString& file, const Check& result, bool withNotes)
    {
        m_out << file << ": " << nameOf(result.verdict()) << "; parseSvg() "
              << (result.accepted ? "accepts it" : "refuses it") << ", " << result.shapes
              << (result.shapes == 1 ? " shape\n" : " shapes\n");
        for (const Finding& each : result.findings) {
            if (withNotes || each.weight != Finding::Note)
                m_out << lineFor(file, each) << '\n';
        }
    }

    void summarise(int all, const int (&verdicts)[3], const QMap<QString, int>& filesWithRule)
    {
        m_out << all << (all == 1 ? " file: " : " files: ") << verdicts[Finding::Note] << " clean, "
              << verdicts[Finding::Lost] << " lossy, " << verdicts[Finding::Refused] << " refused";
        const int unread =
            all - verdicts[Finding::Note] - verdicts[Finding::Lost] - verdicts[Finding::Refused];
        if (unread > 0)
            m_out << ", " << unread << " not read";
        m_out << '\n';
        for (auto each = filesWithRule.begin(); each != filesWithRule.end(); ++each)
            m_out << "  " << each.key() << ": " << each.value()
                  << (each.value() == 1 ? " file\n" : " files\n");
    }

    int convert(const QCommandLineParser& parser)
    {
        const QStringList names = parser.positionalArguments();
        if (names.size() != 2)
            return misused(QStringLiteral("convert needs two files"));
        const Document document = readDocument(names[0]);
        if (!document.error.isEmpty())
            return inaccessible(names[0], document.error);
        const Conversion conversion = convertSvg(document.text);
        if (!conversion.error.isEmpty())
            return refuse(names[0], conversion.errorPosition, conversion.error);

        bool isLossy = false;
        for (const Finding& each : conversion.losses) {
            m_out << lineFor(names[0], each) << '\n';
            isLossy = isLossy || each.weight == Finding::Lost;
        }
        const QString error = replaceFile(names[1], conversion.text.toUtf8());
        if (!error.isEmpty())
            return inaccessible(names[1], error);
        return isLossy ? Lossy : Clean;
    }

    /// Reads the option "size" into \a size; \return whether it is good.
    static bool readSize(const QCommandLineParser& parser, int& size)
    {
        if (!parser.isSet(QStringLiteral("size")))
            return true;
        bool ok = false;
        size = parser.value(QStringLiteral("size")).toInt(&ok);
        return ok && size >= 1 && size <= largest_size;
    }

    int render(const QCommandLineParser& parser)
    {
        const QStringList names = parser.positionalArguments();
        if (names.size() != 2)
            return misused(QStringLiteral("render needs a file and a picture to write"));
        int size = default_size;
        if (!readSize(parser, size))
            return misused(QStringLiteral("a size is a number from 1 to %1").arg(largest_size));
        const Document document = readDocument(names[0]);
        if (!document.error.isEmpty())
            return inaccessible(names[0], document.error);
        Quillet::PainterPathContainer picture;
        if (!Quillet::parseSvg(document.text, picture))
            return refuseAsChecked(names[0], document.text);

        QSizeF drawing = frameOf(document.text).size;
        if (drawing.isEmpty())
            drawing = extentOf(picture);
        const QString error = replaceFile(names[1], png(drawWithLibrary(picture, drawing, size)));
        return error.isEmpty() ? int(Clean) : inaccessible(names[1], error);
    }

    /// One line: the first reason for which the reader refuses \a text.
    int refuseAsChecked(const QString& fileName, const QString& text)
    {
        const Check check = checkSvg(text);
        for (const Finding& each : check.findings) {
            if (each.weight == Finding::Refused)
                return refuse(fileName, each.position, each.message);
        }
        return refuse(fileName, Position(), QStringLiteral("the reader refuses the document"));
    }

    int compareFiles(const QCommandLineParser& parser)
    {
        const QStringList names = parser.positionalArguments();
        if (names.size() != 2)
            return misused(QStringLiteral("compare needs a file and a picture to write"));
        int size = default_size;
        if (!readSize(parser, size))
            return misused(QStringLiteral("a size is a number from 1 to %1").arg(largest_size));
        const QString originalName =
            parser.isSet(QStringLiteral("original")) ? parser.value(QStringLiteral("original")) : names[0];
        const Document document = readDocument(names[0]);
        if (!document.error.isEmpty())
            return inaccessible(names[0], document.error);
        const Document original = readDocument(originalName);
        if (!original.error.isEmpty())
            return inaccessible(originalName, original.error);

        Quillet::PainterPathContainer picture;
        if (!Quillet::parseSvg(document.text, picture))
            return refuseAsChecked(names[0], document.text);
        // Also tells whether Qt's renderer would ever come to an end.
        const Conversion conversion = convertSvg(original.text);
        if (!conversion.error.isEmpty())
            return refuse(originalName, conversion.errorPosition, conversion.error);
        const Frame& frame = conversion.frame;
        QXmlStreamReader reader(original.text);
        QSvgRenderer renderer;
        renderer.load(&reader);

        const QImage byQt = drawWithQt(renderer, frame, size);
        const QImage byLibrary = drawWithLibrary(picture, frame.size, size);
        const QString error = replaceFile(names[1], png(sideBySide(byQt, byLibrary)));
        if (!error.isEmpty())
            return inaccessible(names[1], error);

        const Difference difference = compare(byQt, byLibrary);
        m_out << names[0] << ": " << (difference.isSmall() ? "drawn alike" : "drawn otherwise") << "; "
              << QString::number(difference.share * 100, 'f', 2) << " % of the pixels differ by more than "
              << channel_tolerance << " of 255, the worst by " << difference.worst << '\n';
        return difference.isSmall() ? Clean : Lossy;
    }

    static QImage sideBySide(const QImage& byQt, const QImage& byLibrary)
    {
        const QSize cell = byQt.size().expandedTo(byLibrary.size());
        QImage result(3 * cell.width() + 2 * gap, cell.height(), QImage::Format_RGB32);
        result.fill(Qt::white);
        QPainter painter(&result);
        painter.drawImage(0, 0, byQt);
        painter.drawImage(cell.width() + gap, 0, byLibrary);
        painter.drawImage(2 * (cell.width() + gap), 0, differencePicture(byQt, byLibrary));
        return result;
    }

    QTextStream& m_out;
    QTextStream& m_err;
};

} // namespace

int runQuilletSvg(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    return Program(out, err).run(arguments);
}
