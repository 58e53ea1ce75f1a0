#include "Commands.h"

#include "CheckCommand.h"
#include "Checker.h"
#include "Converter.h"
#include "DrawingCommands.h"
#include "ExitStatus.h"
#include "FindingText.h"
#include "Output.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QMap>

#include <algorithm>
#include <new>

namespace {

constexpr int default_size = 256;

QString usage()
{
    return QStringLiteral(
        "Usage: quillet-svg check [--json] [--notes] [--summary] FILE-OR-DIRECTORY...\n"
        "       quillet-svg convert IN OUT\n"
        "       quillet-svg render [--size N] FILE OUT.png\n"
        "       quillet-svg compare [--size N] [--original FILE] FILE OUT.png\n"
        "\n"
        "Finds what Quillet's SVG reader ignores or refuses, and converts files so that it draws them.\n"
        "“-” stands for standard input, or output.\n"
        "\n"
        "Exit status: 0 clean, 1 lossy, 2 refused, 3 not read or written, 4 wrong arguments.\n");
}

class Program
{
public:
    explicit Program(Console& console) : m_console(console) {}

    int run(const QStringList& arguments)
    {
        const QString command = arguments.value(1);
        if (command == QLatin1String("--help") || command == QLatin1String("-h"))
            return help();
        if (command == QLatin1String("--version") || command == QLatin1String("-v")) {
            m_console.out() << "quillet-svg " QUILLET_VERSION "\n";
            return Clean;
        }
        static const QMap<QString, Command> commands = {
            {QStringLiteral("check"), {&Program::check, {{"json", ""}, {"notes", ""}, {"summary", ""}}}},
            {QStringLiteral("convert"), {&Program::convert, {}}},
            {QStringLiteral("render"), {&Program::render, {{"size", "N"}}}},
            {QStringLiteral("compare"), {&Program::compare, {{"size", "N"}, {"original", "FILE"}}}},
        };
        const auto found = commands.find(command);
        if (found == commands.end()) {
            return m_console.misused(command.isEmpty()
                                         ? QStringLiteral("a command is missing")
                                         : QStringLiteral("there is no command “%1”").arg(command));
        }
        QCommandLineParser parser;
        parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, QString()});
        for (const Option& each : found->options)
            parser.addOption({QLatin1String(each.name), QString(), QLatin1String(each.value)});
        QStringList rest = arguments;
        rest.removeAt(1);
        if (!parser.parse(rest))
            return m_console.misused(errorOf(parser));
        if (parser.isSet(QStringLiteral("help")))
            return help();
        if (parser.positionalArguments().contains(QString()))
            return m_console.misused(QStringLiteral("a file name is empty"));
        return (this->*found->run)(parser);
    }

private:
    struct Option
    {
        const char* name;
        const char* value; ///< what it takes; empty if nothing
    };

    struct Command
    {
        int (Program::*run)(const QCommandLineParser&);
        QVector<Option> options;
    };

    static QString errorOf(const QCommandLineParser& parser)
    {
        const QStringList unknown = parser.unknownOptionNames();
        if (unknown.isEmpty()) {
            const QString text = parser.errorText();
            return text.endsWith(QLatin1Char('.')) ? text.chopped(1) : text;
        }
        const QString dashes = QLatin1String(unknown.first().size() == 1 ? "-" : "--");
        return QStringLiteral("there is no option “%1%2”").arg(dashes, unknown.first());
    }

    int help()
    {
        m_console.out() << usage();
        return Clean;
    }

    int check(const QCommandLineParser& parser)
    {
        const QStringList names = parser.positionalArguments();
        if (names.isEmpty())
            return m_console.misused(QStringLiteral("“check” needs a file or a directory"));
        if (names.count(QStringLiteral("-")) > 1)
            return m_console.misused(QStringLiteral("standard input can be read only once"));
        CheckOptions options;
        options.asJson = parser.isSet(QStringLiteral("json"));
        options.withNotes = parser.isSet(QStringLiteral("notes"));
        options.onlySummary = parser.isSet(QStringLiteral("summary"));
        return runCheck(names, options, m_console);
    }

    int convert(const QCommandLineParser& parser)
    {
        const QStringList names = parser.positionalArguments();
        if (names.size() != 2)
            return m_console.misused(QStringLiteral("“convert” needs a file to read and one to write"));
        const Document document = readDocument(names[0]);
        if (!document.error.isEmpty())
            return m_console.unread(names[0], document.error);
        const QVector<Finding> unread = checkBytes(document);
        const Conversion conversion = convertSvg(document.text);
        if (!conversion.error.isEmpty()) {
            const QString cause = unread.isEmpty() ? QString() : unread.last().message + QStringLiteral("; ");
            return m_console.refused(names[0], conversion.errorPosition, cause + conversion.error);
        }

        // What is said before a file is written is said of one that may never be.
        const QString error = replaceFile(names[1], conversion.text.toUtf8());
        if (!error.isEmpty())
            return m_console.unwritten(names[1], error);
        QVector<Finding> losses = conversion.losses + unread;
        sortFindings(losses);
        for (const Finding& each : qAsConst(losses))
            m_console.reportBeside(names[1]) << lineFor(nameOfInput(names[0]), each) << '\n';
        const bool isLossy = std::any_of(
            losses.begin(), losses.end(), [](const Finding& each) { return each.weight == Finding::Lost; });
        return isLossy ? Lossy : Clean;
    }

    /// \return the option "size"; 0 if it is none.
    static int sizeOf(const QCommandLineParser& parser)
    {
        if (!parser.isSet(QStringLiteral("size")))
            return default_size;
        const int size = parser.value(QStringLiteral("size")).toInt();
        return size >= 1 && size <= largest_size ? size : 0;
    }

    int misusedSize()
    {
        return m_console.misused(QStringLiteral("a size is a whole number from 1 to %1").arg(largest_size));
    }

    int render(const QCommandLineParser& parser)
    {
        const QStringList names = parser.positionalArguments();
        if (names.size() != 2)
            return m_console.misused(QStringLiteral("“render” needs a file to read and a picture to write"));
        const int size = sizeOf(parser);
        return size == 0 ? misusedSize() : runRender(names[0], names[1], size, m_console);
    }

    int compare(const QCommandLineParser& parser)
    {
        const QStringList names = parser.positionalArguments();
        if (names.size() != 2)
            return m_console.misused(QStringLiteral("“compare” needs a file to read and a picture to write"));
        const int size = sizeOf(parser);
        if (size == 0)
            return misusedSize();
        const QString original =
            parser.isSet(QStringLiteral("original")) ? parser.value(QStringLiteral("original")) : names[0];
        return runCompare(names[0], original, names[1], size, m_console);
    }

    Console& m_console;
};

} // namespace

int runQuilletSvg(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    Console console(out, err);
    try {
        const int status = Program(console).run(arguments);
        out.flush();
        if (out.status() == QTextStream::WriteFailed)
            return std::max(status,
                            console.unwritten(QStringLiteral("-"), QStringLiteral("cannot be written")));
        return status;
    } catch (const std::bad_alloc&) {
        return console.failed(QStringLiteral("not enough memory"));
    }
}
