#include "TestCase.h"

#include "Commands.h"
#include "Document.h"
#include "ExitStatus.h"
#include "Output.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTextStream>
#include <QtGui/QImage>

#include <memory>
#include <new>
#include <utility>

#ifdef Q_OS_LINUX
#    include <csignal>
#    include <fcntl.h>
#    include <sys/stat.h>
#    include <sys/wait.h>
#    include <unistd.h>
#endif

namespace {

constexpr const char* clean =
    "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20' viewBox='0 0 40 20'>"
    "<path d='M0 0h40v20h-40z' fill='red'/></svg>";
constexpr const char* lossy =
    "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20' viewBox='0 0 40 20'>"
    "<rect width='40' height='20' fill='red'/></svg>";
constexpr const char* withText =
    "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><text>t</text></svg>";
constexpr const char* refused = "<svg><path d='M0 0x1'/></svg>";
constexpr const char* broken = "<svg><path</svg>";

struct Run
{
    int status = -1;
    QString out;
    QString err;
};

} // namespace

// The program as a script sees it: what it prints, its exit status and what it writes.
class TestQuilletSvg : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        m_directory = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir::setCurrent(m_directory->path()));
        write("clean.svg", clean);
        write("lossy.svg", lossy);
        write("text.svg", withText);
        write("refused.svg", refused);
        write("broken.svg", broken);
    }

    void wrongArgumentsGetOneLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("says");
        const auto row = [](const char* arguments, const char* says) {
            QTest::newRow(*arguments ? arguments : "nothing")
                << QString::fromLatin1(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts)
                << QString::fromUtf8(says);
        };
        row("", "a command is missing");
        row("draw", "there is no command “draw”");
        row("check", "“check” needs a file or a directory");
        row("check --what clean.svg", "there is no option “--what”");
        row("check -w clean.svg", "there is no option “-w”");
        row("check - clean.svg -", "standard input can be read only once");
        row("convert clean.svg", "“convert” needs a file to read and one to write");
        row("convert a b c", "“convert” needs a file to read and one to write");
        row("convert --size 9 a b", "there is no option “--size”");
        row("render clean.svg", "“render” needs a file to read and a picture to write");
        row("render --size 0 clean.svg a.png", "a size is a whole number from 1 to 8192");
        row("render --size ten clean.svg a.png", "a size is a whole number from 1 to 8192");
        row("render --size 9999 clean.svg a.png", "a size is a whole number from 1 to 8192");
        row("render --size 9.5 clean.svg a.png", "a size is a whole number from 1 to 8192");
        row("render clean.svg a.png --size", "Missing value after '--size'");
        row("check --json=5 clean.svg", "Unexpected value after '--json'");
        row("compare --size -1 clean.svg a.png", "a size is a whole number from 1 to 8192");
        row("compare clean.svg", "“compare” needs a file to read and a picture to write");
    }

    void wrongArgumentsGetOneLine()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, says);
        const Run run = runProgram(arguments);
        QCOMPARE(run.err, QStringLiteral("quillet-svg: %1; see quillet-svg --help\n").arg(says));
        QCOMPARE(run.out, QString());
        QCOMPARE(run.status, int(WrongArguments));
        QVERIFY(!exists("a.png"));
    }

    void saysThatMemoryDoesNotSuffice()
    {
        // As a device that finds none left.
        class Full : public QIODevice
        {
        public:
            Full() { open(WriteOnly); }

        protected:
            qint64 readData(char* /*data*/, qint64 /*size*/) override { return -1; }
            qint64 writeData(const char* /*data*/, qint64 size) override
            {
                if (!std::exchange(m_hasThrown, true))
                    throw std::bad_alloc();
                return size;
            }

        private:
            bool m_hasThrown = false;
        };
        Full full;
        QTextStream out(&full);
        QString errors;
        QTextStream err(&errors);
        QCOMPARE(runQuilletSvg({QStringLiteral("quillet-svg"), QStringLiteral("--help")}, out, err),
                 int(NoAccess));
        err.flush();
        QCOMPARE(errors, QStringLiteral("quillet-svg: not enough memory\n"));
    }

    void anEmptyFileNameIsAWrongArgument()
    {
        const Run run = runProgram({QStringLiteral("check"), QString()});
        QCOMPARE(run.err, QStringLiteral("quillet-svg: a file name is empty; see quillet-svg --help\n"));
        QCOMPARE(run.status, int(WrongArguments));
    }

    void theProgramNeedsNoDisplay()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("none such"));
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(QUILLET_SVG_PROGRAM),
                      {QStringLiteral("check"), QStringLiteral("lossy.svg")});
        QVERIFY(process.waitForFinished());
        const Run expected = runProgram({QStringLiteral("check"), QStringLiteral("lossy.svg")});
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), expected.status);
        QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()), expected.out);
        QCOMPARE(QString::fromUtf8(process.readAllStandardError()), QString());
    }

    void helpAndVersionAreAskedFor()
    {
        const Run help = runProgram({QStringLiteral("--help")});
        QVERIFY(help.out.startsWith(QStringLiteral("Usage: quillet-svg check")));
        QCOMPARE(help.status, int(Clean));
        QCOMPARE(runProgram({QStringLiteral("check"), QStringLiteral("--help")}).out, help.out);
        QCOMPARE(runProgram({QStringLiteral("check"), QStringLiteral("-h")}).out, help.out);
        QCOMPARE(runProgram({QStringLiteral("--version")}).out, QStringLiteral("quillet-svg 1.0.0\n"));
    }

    void badInputGetsOneLine_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content"); // null: there is none
        QTest::addColumn<QString>("says");
        QTest::addColumn<int>("status");
        const auto row =
            [](const char* file, const QByteArray& content, const char* says, ExitStatus status) {
                QTest::newRow(file) << QString::fromLatin1(file) << content << QString::fromUtf8(says)
                                    << int(status);
            };
        const QByteArray none;
        row("missing.svg", none, "quillet-svg: missing.svg: there is no such file", NoAccess);
        row(".", none, "quillet-svg: .: this is a directory", NoAccess);
        row("packed.svgz",
            QByteArray("\x1f\x8b\x08"),
            "quillet-svg: packed.svgz: this file is compressed; unpack it first, with gunzip",
            NoAccess);
        row("wide.svg",
            QByteArray("\xff\xfe<\0s\0", 6),
            "quillet-svg: wide.svg: this file is in UTF-16; write it as UTF-8 first, with iconv",
            NoAccess);
        row("/dev/null", none, "quillet-svg: /dev/null: this is no regular file", NoAccess);
        row("empty.svg", QByteArray(""), "empty.svg:1:1: refused: Premature end of document", NotAccepted);
        row("cut.svg",
            QByteArray("<svg>\n<g>"),
            "cut.svg:2:3: refused: Premature end of document",
            NotAccepted);
        row("null.svg",
            QByteArray("<svg>\0</svg>", 12),
            "null.svg:1:5: refused: the reader stops at a null byte; the 6 bytes behind it are not read; "
            "Premature end of document",
            NotAccepted);
        row("page.svg",
            QByteArray("<html/>"),
            "page.svg:1:1: refused: the root is <html>, not <svg>",
            NotAccepted);
    }

    void badInputGetsOneLine()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(QString, says);
        QFETCH(int, status);
        if (!content.isNull())
            write(file.toLatin1().constData(), content);
        write("out.svg", "as it was");
        const Run run = runProgram({QStringLiteral("convert"), file, QStringLiteral("out.svg")});
        QCOMPARE(run.err, says + QLatin1Char('\n'));
        QCOMPARE(run.out, QString());
        QCOMPARE(run.status, status);
        QCOMPARE(read("out.svg"), QByteArray("as it was"));
    }

    void aFileNameIsSaidAsItIs()
    {
        write("100%2.svg", lossy);
        const Run run = runProgram({QStringLiteral("check"), QStringLiteral("100%2.svg")});
        QVERIFY2(run.out.contains(QStringLiteral("\n100%2.svg:1:84: lost: <rect> is ignored [shape]; ")),
                 qPrintable(run.out));
    }

    void aFileNameStaysOnOneLine()
    {
        write("a\nb: c.svg", lossy);
        const Run run = runProgram(
            {QStringLiteral("check"), QStringLiteral("a\nb: c.svg"), QStringLiteral("no\nsuch.svg")});
        QVERIFY2(run.out.startsWith(QStringLiteral("a\\nb: c.svg: lossy; parseSvg() accepts it, 0 shapes\n"
                                                   "a\\nb: c.svg:1:84: lost: ")),
                 qPrintable(run.out));
        QCOMPARE(run.out.count(QLatin1Char('\n')), 2);
        QCOMPARE(run.err, QStringLiteral("quillet-svg: no\\nsuch.svg: there is no such file\n"));
    }

    void whatAFileSaysDoesNotReachTheTerminalRaw()
    {
        write("evil.svg",
              "<svg><path opacity='\xc2\x9b"
              "2J' d='M0 0h9'/></svg>");
        const Run run = runProgram({QStringLiteral("check"), QStringLiteral("evil.svg")});
        QVERIFY2(run.out.contains(QStringLiteral("“\\u009b2J” is no value")), qPrintable(run.out));
    }

    void aFileNameNeedsNoLocale()
    {
        write("grün.svg", clean);
        const Run run = runAlone(QStringLiteral("LC_ALL=C exec \"$0\" check grün.svg"));
        QCOMPARE(run.out, QStringLiteral("grün.svg: clean; parseSvg() accepts it, 1 shape\n"));
    }

    void hugeFilesAreNotRead()
    {
        QFile file(path("huge.svg"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(largest_file + 1)); // takes no room
        file.close();
        for (const char* command : {"check", "convert", "render", "compare"}) {
            QStringList arguments{QLatin1String(command), QStringLiteral("huge.svg")};
            if (arguments.first() != QLatin1String("check"))
                arguments.append(QStringLiteral("out"));
            const Run run = runProgram(arguments);
            QCOMPARE(run.err, QStringLiteral("quillet-svg: huge.svg: this file is larger than 64 MiB\n"));
            QCOMPARE(run.status, int(NoAccess));
        }
    }

    void whatIsRefusedIsNotDrawn()
    {
        for (const char* command : {"render", "compare"}) {
            const Run run = runProgram(
                {QLatin1String(command), QStringLiteral("refused.svg"), QStringLiteral("out.png")});
            QVERIFY2(run.err.startsWith(QStringLiteral("refused.svg:1:19: refused: ")), qPrintable(run.err));
            QCOMPARE(run.err.count(QLatin1Char('\n')), 1);
            QCOMPARE(run.status, int(NotAccepted));
            QVERIFY(!exists("out.png"));
        }
    }

    void anOutputThatCannotBeWrittenGetsOneLine_data()
    {
        QTest::addColumn<QString>("command");
        for (const char* command : {"convert", "render", "compare"})
            QTest::newRow(command) << QString::fromLatin1(command);
    }

    void anOutputThatCannotBeWrittenGetsOneLine()
    {
        QFETCH(QString, command);
        const Run run = runProgram({command, QStringLiteral("clean.svg"), QStringLiteral("no/such/out")});
        QVERIFY2(run.err.startsWith(QStringLiteral("quillet-svg: no/such/out: cannot be written: ")),
                 qPrintable(run.err));
        QCOMPARE(run.err.count(QLatin1Char('\n')), 1);
        QCOMPARE(run.status, int(NoAccess));
    }

    void anOutputForWhichThereIsNoRoomStaysAsItWas()
    {
        QByteArray shapes;
        for (int i = 0; i < 1000; ++i)
            shapes += "<rect width='9' height='9'/>";
        write("large.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>" + shapes + "</svg>");
        write("out.svg", "as it was");
        // No file may become larger than some thousand bytes, as on a disk that is nearly full. Less is not
        // enough for what memcheck writes when it starts.
        const Run run = runAlone(QStringLiteral("ulimit -f 8; exec \"$0\" convert large.svg out.svg"));
        // What counts coverage has its own complaints then.
        const QStringList said = run.err.split(QLatin1Char('\n')).filter(QStringLiteral("quillet-svg:"));
        QCOMPARE(said.size(), 1);
        QVERIFY2(said.first().startsWith(QStringLiteral("quillet-svg: out.svg: cannot be written: ")),
                 qPrintable(run.err));
        QCOMPARE(run.out, QString());
        QCOMPARE(run.status, int(NoAccess));
        QCOMPARE(read("out.svg"), QByteArray("as it was"));
        QCOMPARE(QDir(m_directory->path()).entryList({QStringLiteral("out*")}),
                 QStringList{QStringLiteral("out.svg")});
    }

    void aDirectoryIsNoOutput()
    {
        const Run run =
            runProgram({QStringLiteral("convert"), QStringLiteral("lossy.svg"), QStringLiteral(".")});
        QCOMPARE(run.err, QStringLiteral("quillet-svg: .: cannot be written: this is a directory\n"));
        QCOMPARE(run.status, int(NoAccess));
    }

    void standardOutputThatCannotBeWrittenIsAnError_data()
    {
        QTest::addColumn<QString>("arguments");
        for (const char* arguments : {"check lossy.svg", "check --json .", "convert lossy.svg -", "--help"})
            QTest::newRow(arguments) << QString::fromLatin1(arguments);
    }

    void standardOutputThatCannotBeWrittenIsAnError()
    {
        QFETCH(QString, arguments);
        const Run run = runAlone(QStringLiteral("exec \"$0\" %1 > /dev/full").arg(arguments));
        QVERIFY2(run.err.startsWith(QStringLiteral("quillet-svg: <stdout>: cannot be written")),
                 qPrintable(run.err));
        QCOMPARE(run.err.count(QLatin1Char('\n')), 1);
        QCOMPARE(run.status, int(NoAccess));
    }

    void standardInputIsChecked()
    {
        const Run run = runAlone(QStringLiteral("exec \"$0\" check - clean.svg < refused.svg"));
        QVERIFY2(run.out.startsWith(QStringLiteral("<stdin>: refused; parseSvg() refuses it, 0 shapes\n"
                                                   "<stdin>:1:19: refused: ")),
                 qPrintable(run.out));
        QVERIFY(run.out.endsWith(QStringLiteral("\nclean.svg: clean; parseSvg() accepts it, 1 shape\n")));
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, int(NotAccepted));
    }

    void standardInputMayBeMoreThanAPipeHolds()
    {
        write("large.svg", clean + QByteArray(1000000, ' ') + "<!-- the end -->");
        const Run run = runAlone(QStringLiteral("cat large.svg | \"$0\" check -"));
        QCOMPARE(run.out, QStringLiteral("<stdin>: clean; parseSvg() accepts it, 1 shape\n"));
    }

    void standardInputIsConvertedToStandardOutput()
    {
        const Run run = runAlone(QStringLiteral("exec \"$0\" convert - - < text.svg"));
        QVERIFY2(run.out.startsWith(QStringLiteral("<svg ")) && run.out.endsWith(QStringLiteral("</svg>\n")),
                 qPrintable(run.out));
        QVERIFY2(run.err.startsWith(QStringLiteral("<stdin>:1:62: lost: <text> is left out [text]; ")),
                 qPrintable(run.err));
        QCOMPARE(run.status, int(Lossy));
    }

    void picturesAreWrittenToStandardOutput()
    {
        const Run run = runAlone(QStringLiteral(
            "\"$0\" render --size 10 - - < clean.svg > a.png && \"$0\" compare - - < clean.svg > b.png"));
        QCOMPARE(run.status, int(Clean));
        QVERIFY2(run.err.startsWith(QStringLiteral("<stdin>: drawn alike; ")), qPrintable(run.err));
        QCOMPARE(QImage(path("a.png")).size(), QSize(10, 5));
        QCOMPARE(QImage(path("b.png")).size(), QSize(3 * 256 + 16, 128));
    }

    void anOutputIsReplacedAsAWhole()
    {
        write("out.svg", QByteArray(100000, 'x'));
        QCOMPARE(
            runProgram({QStringLiteral("convert"), QStringLiteral("lossy.svg"), QStringLiteral("out.svg")})
                .status,
            int(Clean));
        QVERIFY(read("out.svg").startsWith("<svg "));
        QVERIFY(read("out.svg").endsWith("</svg>\n"));
        QVERIFY(!read("out.svg").contains('x' + QByteArray(1, 'x')));
        // Nothing is left beside it.
        QCOMPARE(QDir(m_directory->path()).entryList({QStringLiteral("out*")}),
                 QStringList{QStringLiteral("out.svg")});
    }

#ifdef Q_OS_LINUX
    void aPipeIsWrittenIntoAndNotReplaced()
    {
        // A pipe of our own: where this fails, what is at that place is replaced.
        const QByteArray pipe = QFile::encodeName(path("pipe"));
        QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
        // Opened both ways nobody has to wait. NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg)
        const int reader = open(pipe.constData(), O_RDWR | O_NONBLOCK);
        QVERIFY(reader >= 0);
        const Run run =
            runProgram({QStringLiteral("convert"), QStringLiteral("lossy.svg"), QStringLiteral("pipe")});
        QByteArray written(10000, '\0');
        written.truncate(int(qMax<qint64>(0, ::read(reader, written.data(), size_t(written.size())))));
        close(reader);
        QCOMPARE(run.status, int(Clean));
        QVERIFY2(written.startsWith("<svg ") && written.endsWith("</svg>\n"), written.constData());
        QVERIFY(exists("pipe") && !QFileInfo(path("pipe")).isFile());
    }

    void anInterruptionLeavesNothingBesideTheOutput()
    {
        constexpr int cannot_tell = 2;
        write("out.svg", "as it was");
        // The kernel sends the signal when a file appears in the directory, which is the temporary one.
        const pid_t child = fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            const int directory = open(".", O_RDONLY); // NOLINT(cppcoreguidelines-pro-type-vararg)
            std::signal(SIGINT, SIG_DFL);
            // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg) there is no other way
            if (fcntl(directory, F_SETSIG, SIGINT) != 0 || fcntl(directory, F_NOTIFY, DN_CREATE) != 0)
                _exit(cannot_tell);
            replaceFile(QStringLiteral("out.svg"), "all of it");
            _exit(0);
        }
        int status = 0;
        QCOMPARE(waitpid(child, &status, 0), child);
        if (WIFEXITED(status) && WEXITSTATUS(status) == cannot_tell) {
            // What QSKIP() does; with a reason alone, that is no standard C++.
            return QTest::qSkip("this system does not tell of new files by a signal", __FILE__, __LINE__);
        }
        QVERIFY2(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT, qPrintable(QString::number(status)));
        QCOMPARE(QDir(m_directory->path()).entryList({QStringLiteral("out*")}),
                 QStringList{QStringLiteral("out.svg")});
        QCOMPARE(read("out.svg"), QByteArray("all of it"));
    }
#endif

    void aFileMayBeConvertedIntoItself()
    {
        QCOMPARE(
            runProgram({QStringLiteral("convert"), QStringLiteral("lossy.svg"), QStringLiteral("lossy.svg")})
                .status,
            int(Clean));
        QCOMPARE(runProgram({QStringLiteral("check"), QStringLiteral("lossy.svg")}).status, int(Clean));
    }

    void convertNamesBytesThatAreNotRead()
    {
        write("null.svg", QByteArray(clean) + QByteArray("\0more", 5));
        const Run run =
            runProgram({QStringLiteral("convert"), QStringLiteral("null.svg"), QStringLiteral("out.svg")});
        QVERIFY2(
            run.out.startsWith(QStringLiteral("null.svg:1:128: lost: the reader stops at a null byte; ")),
            qPrintable(run.out));
        QCOMPARE(run.out.count(QLatin1Char('\n')), 1);
        QCOMPARE(run.status, int(Lossy));
    }

    void convertNamesWhatIsLost()
    {
        const Run run =
            runProgram({QStringLiteral("convert"), QStringLiteral("text.svg"), QStringLiteral("out.svg")});
        QCOMPARE(run.out,
                 QStringLiteral(
                     "text.svg:1:62: lost: <text> is left out [text]; have the drawing program make paths "
                     "of it\n"));
        QCOMPARE(run.status, int(Lossy));
        QVERIFY(exists("out.svg"));
    }

    void checkTellsItsVerdict_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("firstLine");
        QTest::addColumn<int>("status");
        QTest::newRow("clean") << QStringLiteral("clean.svg")
                               << QStringLiteral("clean.svg: clean; parseSvg() accepts it, 1 shape")
                               << int(Clean);
        QTest::newRow("lossy") << QStringLiteral("lossy.svg")
                               << QStringLiteral("lossy.svg: lossy; parseSvg() accepts it, 0 shapes")
                               << int(Lossy);
        QTest::newRow("refused") << QStringLiteral("refused.svg")
                                 << QStringLiteral("refused.svg: refused; parseSvg() refuses it, 0 shapes")
                                 << int(NotAccepted);
        QTest::newRow("broken") << QStringLiteral("broken.svg")
                                << QStringLiteral("broken.svg: refused; parseSvg() refuses it, 0 shapes")
                                << int(NotAccepted);
    }

    void checkTellsItsVerdict()
    {
        QFETCH(QString, file);
        QFETCH(QString, firstLine);
        QFETCH(int, status);
        const Run run = runProgram({QStringLiteral("check"), file});
        QCOMPARE(run.out.section(QLatin1Char('\n'), 0, 0), firstLine);
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, status);
    }

    void checkNamesPlaceRuleAndAdvice()
    {
        const Run run = runProgram({QStringLiteral("check"), QStringLiteral("lossy.svg")});
        QCOMPARE(
            run.out.section(QLatin1Char('\n'), 1),
            QStringLiteral("lossy.svg:1:84: lost: <rect> is ignored [shape]; run “quillet-svg convert”\n"));
    }

    void checkShowsNotesWhereAskedTo()
    {
        QVERIFY(!runProgram({QStringLiteral("check"), QStringLiteral("clean.svg")})
                     .out.contains(QLatin1String("note:")));
        const Run run =
            runProgram({QStringLiteral("check"), QStringLiteral("--notes"), QStringLiteral("clean.svg")});
        QVERIFY(run.out.contains(QStringLiteral("clean.svg:1:41: note: the attribute “width” is ignored")));
        QCOMPARE(run.status, int(Clean));
    }

    void checkSumsDirectoriesUp()
    {
        QVERIFY(QDir(m_directory->path()).mkpath(QStringLiteral("icons/more")));
        write("icons/a.svg", clean);
        write("icons/more/b.svg", lossy);
        write("icons/more/c.svg", refused);
        write("icons/more/d.txt", "no svg");
        const Run run =
            runProgram({QStringLiteral("check"), QStringLiteral("--summary"), QStringLiteral("icons")});
        QCOMPARE(
            run.out,
            QStringLiteral("3 files: 1 clean, 1 lossy, 1 refused\n  path-error: 1 file\n  shape: 1 file\n"));
        QCOMPARE(run.err, QString()); // progress is for terminals
        QCOMPARE(run.status, int(NotAccepted));

        const Run asJson = runProgram({QStringLiteral("check"),
                                       QStringLiteral("--json"),
                                       QStringLiteral("--summary"),
                                       QStringLiteral("icons"),
                                       QStringLiteral("missing.svg")});
        const QJsonObject expected{
            {QStringLiteral("files"), 4},
            {QStringLiteral("clean"), 1},
            {QStringLiteral("lossy"), 1},
            {QStringLiteral("refused"), 1},
            {QStringLiteral("unread"), 1},
            {QStringLiteral("rules"),
             QJsonObject{{QStringLiteral("path-error"), 1}, {QStringLiteral("shape"), 1}}}};
        QCOMPARE(QJsonDocument::fromJson(asJson.out.toUtf8()).object(), expected);
        QCOMPARE(asJson.status, int(NoAccess));
    }

    void hiddenDirectoriesAndLinksToDirectoriesAreNotEntered()
    {
        const QDir directory(m_directory->path());
        QVERIFY(directory.mkpath(QStringLiteral("icons/more")));
        QVERIFY(directory.mkpath(QStringLiteral("icons/.git/more")));
        write("icons/more/a.svg", clean);
        write("icons/.b.svg", clean);
        write("icons/.git/c.svg", clean);
        write("icons/.git/more/d.svg", clean);
        QVERIFY(QFile::link(path("icons"), path("icons/more/loop")));
        QVERIFY(QFile::link(path("icons/.git"), path("icons/git.svg")));
        QVERIFY(QFile::link(path("clean.svg"), path("icons/link.svg")));
        QCOMPARE(runProgram({QStringLiteral("check"), QStringLiteral("icons")}).out,
                 QStringLiteral("icons/link.svg: clean; parseSvg() accepts it, 1 shape\n"
                                "icons/more/a.svg: clean; parseSvg() accepts it, 1 shape\n"
                                "2 files: 2 clean, 0 lossy, 0 refused\n"));
        // What is named is not passed over.
        QCOMPARE(
            runProgram({QStringLiteral("check"), QStringLiteral("--summary"), QStringLiteral("icons/.git")})
                .out,
            QStringLiteral("2 files: 2 clean, 0 lossy, 0 refused\n"));
    }

    void aSummaryFollowsOnlyADirectory()
    {
        QVERIFY(QDir(m_directory->path()).mkpath(QStringLiteral("icons")));
        write("icons/a.svg", clean);
        QCOMPARE(runProgram({QStringLiteral("check"), QStringLiteral("icons")}).out,
                 QStringLiteral("icons/a.svg: clean; parseSvg() accepts it, 1 shape\n"
                                "1 file: 1 clean, 0 lossy, 0 refused\n"));
        QCOMPARE(runProgram({QStringLiteral("check"), QStringLiteral("icons/a.svg")}).out,
                 QStringLiteral("icons/a.svg: clean; parseSvg() accepts it, 1 shape\n"));
    }

    void aDirectoryWithoutSvgFilesIsAnError()
    {
        QVERIFY(QDir(m_directory->path()).mkpath(QStringLiteral("icons/more")));
        write("icons/more/d.txt", "no svg");
        const Run run = runProgram({QStringLiteral("check"), QStringLiteral("icons")});
        QCOMPARE(run.err, QStringLiteral("quillet-svg: icons: there is no SVG file in this directory\n"));
        QCOMPARE(run.out, QStringLiteral("1 file: 0 clean, 0 lossy, 0 refused, 1 not read\n"));
        QCOMPARE(run.status, int(NoAccess));
    }

    void manyFaultsOfOneKindInAPathAreSummedUp()
    {
        const QByteArray path = "<path d='M0 0" + QByteArray("a5 5 0 111 1").repeated(15) + "'/>\n";
        write("many.svg", "<svg>\n" + path + path + "</svg>");
        const Run run = runProgram({QStringLiteral("check"), QStringLiteral("many.svg")});
        const QStringList lines = run.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 1 + 2 * 11);
        QVERIFY2(
            lines[10].startsWith(QStringLiteral("many.svg:2:129: lost: the flags of an arc are not apart; ")),
            qPrintable(lines[10]));
        QCOMPARE(lines[11],
                 QStringLiteral("many.svg:2:141: lost: from here on 5 more of this kind in the same path "
                                "[arc-flags]; “--json” names them all"));
        QVERIFY2(
            lines[12].startsWith(QStringLiteral("many.svg:3:21: lost: the flags of an arc are not apart; ")),
            qPrintable(lines[12]));

        const Run asJson =
            runProgram({QStringLiteral("check"), QStringLiteral("--json"), QStringLiteral("many.svg")});
        const QJsonArray files = QJsonDocument::fromJson(asJson.out.toUtf8()).array();
        QCOMPARE(files[0].toObject().value(QStringLiteral("findings")).toArray().size(), 30);
    }

    void checkGoesOnBehindAFileThatCannotBeRead()
    {
        const Run run =
            runProgram({QStringLiteral("check"), QStringLiteral("missing.svg"), QStringLiteral("clean.svg")});
        QCOMPARE(run.err, QStringLiteral("quillet-svg: missing.svg: there is no such file\n"));
        QCOMPARE(run.out, QStringLiteral("clean.svg: clean; parseSvg() accepts it, 1 shape\n"));
        QCOMPARE(run.status, int(NoAccess));
    }

    void checkWritesJson()
    {
        const Run run = runProgram({QStringLiteral("check"),
                                    QStringLiteral("--json"),
                                    QStringLiteral("clean.svg"),
                                    QStringLiteral("refused.svg")});
        QCOMPARE(run.status, int(NotAccepted));
        const QJsonArray files = QJsonDocument::fromJson(run.out.toUtf8()).array();
        QCOMPARE(files.size(), 2);
        QCOMPARE(files[0].toObject().value(QStringLiteral("verdict")).toString(), QStringLiteral("clean"));
        QCOMPARE(files[0].toObject().value(QStringLiteral("shapes")).toInt(), 1);
        const QJsonObject second = files[1].toObject();
        QCOMPARE(second.value(QStringLiteral("file")).toString(), QStringLiteral("refused.svg"));
        QCOMPARE(second.value(QStringLiteral("accepted")).toBool(true), false);
        const QJsonObject expected{
            {QStringLiteral("line"), 1},
            {QStringLiteral("column"), 19},
            {QStringLiteral("weight"), QStringLiteral("refused")},
            {QStringLiteral("rule"), QStringLiteral("path-error")},
            {QStringLiteral("message"),
             QStringLiteral("path data is wrong: “x” stands where a command must; the reader refuses the "
                            "document here")},
            {QStringLiteral("advice"),
             QStringLiteral("correct it, or have the program that wrote the file write it anew")}};
        QCOMPARE(second.value(QStringLiteral("findings")).toArray().last().toObject(), expected);
    }

    void jsonHasAnEntryForAFileThatIsNotRead()
    {
        const Run run = runProgram({QStringLiteral("check"),
                                    QStringLiteral("--json"),
                                    QStringLiteral("missing.svg"),
                                    QStringLiteral("clean.svg")});
        const QJsonArray files = QJsonDocument::fromJson(run.out.toUtf8()).array();
        QCOMPARE(files.size(), 2);
        const QJsonObject expected{{QStringLiteral("file"), QStringLiteral("missing.svg")},
                                   {QStringLiteral("verdict"), QStringLiteral("unread")},
                                   {QStringLiteral("error"), QStringLiteral("there is no such file")}};
        QCOMPARE(files[0].toObject(), expected);
        QCOMPARE(run.err, QStringLiteral("quillet-svg: missing.svg: there is no such file\n"));
        QCOMPARE(run.status, int(NoAccess));
    }

    void renderDrawsWhatTheLibraryDraws()
    {
        QCOMPARE(runProgram({QStringLiteral("render"),
                             QStringLiteral("--size"),
                             QStringLiteral("80"),
                             QStringLiteral("clean.svg"),
                             QStringLiteral("out.png")})
                     .status,
                 int(Clean));
        const QImage picture(path("out.png"));
        QCOMPARE(picture.size(), QSize(80, 40));
        QCOMPARE(QColor(picture.pixel(40, 20)), QColor(Qt::red));
        QCOMPARE(
            runProgram({QStringLiteral("render"), QStringLiteral("lossy.svg"), QStringLiteral("out.png")})
                .status,
            int(Clean));
        const QImage nothing(path("out.png"));
        QCOMPARE(nothing.size(), QSize(256, 128));
        QCOMPARE(qAlpha(nothing.pixel(128, 64)), 0);
    }

    void picturesHaveTheNearestNumberOfPixels_data()
    {
        QTest::addColumn<QByteArray>("size");
        QTest::addColumn<QString>("length");
        QTest::addColumn<QSize>("picture");
        const auto row = [](const char* name, const char* size, const char* length, const QSize& picture) {
            QTest::newRow(name) << QByteArray(size) << QString::fromLatin1(length) << picture;
        };
        row("up", "width='100mm' height='50mm'", "377", {377, 189}); // 188.5 and more
        row("wholly up", "width='256' height='188.976'", "256", {256, 189});
        row("down", "width='256' height='188.4'", "256", {256, 188});
        row("upright", "width='188.976' height='256'", "256", {189, 256});
        row("at least one", "width='256' height='.1'", "256", {256, 1});
        row("not more than asked for", "width='256' height='255.9'", "256", {256, 256});
    }

    void picturesHaveTheNearestNumberOfPixels()
    {
        QFETCH(QByteArray, size);
        QFETCH(QString, length);
        QFETCH(QSize, picture);
        write("drawing.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' " + size
                  + "><path d='M0 0h999v999h-999z' fill='red'/></svg>");
        const auto draw = [&](const char* command) {
            return runProgram({QString::fromLatin1(command),
                               QStringLiteral("--size"),
                               length,
                               QStringLiteral("drawing.svg"),
                               QStringLiteral("out.png")})
                .status;
        };
        QCOMPARE(draw("render"), int(Clean));
        QCOMPARE(QImage(path("out.png")).size(), picture);
        QCOMPARE(draw("compare"), int(Clean));
        QCOMPARE(QImage(path("out.png")).size(), QSize(3 * picture.width() + 16, picture.height()));
    }

    void theFrameEndsWherePixelsDo()
    {
        // The last line of pixels would be drawn by half, where what is converted ends at the frame.
        write("drawing.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='128' height='99.5'>"
              "<rect width='200' height='200' fill='red'/></svg>");
        QCOMPARE(
            runProgram({QStringLiteral("convert"), QStringLiteral("drawing.svg"), QStringLiteral("out.svg")})
                .status,
            int(Clean));
        const Run run = runProgram({QStringLiteral("compare"),
                                    QStringLiteral("--size"),
                                    QStringLiteral("128"),
                                    QStringLiteral("--original"),
                                    QStringLiteral("drawing.svg"),
                                    QStringLiteral("out.svg"),
                                    QStringLiteral("out.png")});
        QVERIFY2(run.out.startsWith(QStringLiteral("out.svg: drawn alike; 0.00 %")), qPrintable(run.out));
    }

    void compareTellsHowMuchDiffers()
    {
        const Run same =
            runProgram({QStringLiteral("compare"), QStringLiteral("clean.svg"), QStringLiteral("out.png")});
        QVERIFY2(same.out.startsWith(QStringLiteral("clean.svg: drawn alike; 0.00 %")), qPrintable(same.out));
        QCOMPARE(same.status, int(Clean));

        const Run other =
            runProgram({QStringLiteral("compare"), QStringLiteral("lossy.svg"), QStringLiteral("out.png")});
        QVERIFY2(other.out.startsWith(QStringLiteral("lossy.svg: drawn otherwise; 100.00 %")),
                 qPrintable(other.out));
        QCOMPARE(other.status, int(Lossy));
        const QImage picture(path("out.png"));
        QCOMPARE(picture.size(), QSize(3 * 256 + 16, 128));
        QCOMPARE(QColor(picture.pixel(128, 64)), QColor(Qt::red));             // by Qt
        QCOMPARE(QColor(picture.pixel(264 + 128, 64)), QColor(Qt::white));     // by the library
        QCOMPARE(QColor(picture.pixel(2 * 264 + 128, 64)), QColor(Qt::white)); // the difference

        const Run original = runProgram({QStringLiteral("compare"),
                                         QStringLiteral("--original"),
                                         QStringLiteral("lossy.svg"),
                                         QStringLiteral("clean.svg"),
                                         QStringLiteral("out.png")});
        QCOMPARE(original.status, int(Clean));
    }

    void compareTellsWhereQtDepartsFromSvg()
    {
        // Qt's renderer does not clip the inner document.
        write("clipped.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'>"
              "<svg width='20' height='20'><rect width='40' height='20' fill='red'/></svg></svg>");
        write("right.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'>"
              "<path d='M0 0h20v20h-20z' fill='red'/></svg>");
        write("wrong.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'>"
              "<path d='M0 0h10v20h-10z' fill='red'/></svg>");
        const auto compare = [](const char* original, const char* file) {
            return runProgram({QStringLiteral("compare"),
                               QStringLiteral("--original"),
                               QString::fromLatin1(original),
                               QString::fromLatin1(file),
                               QStringLiteral("out.png")});
        };
        const Run right = compare("clipped.svg", "right.svg");
        QCOMPARE(right.out,
                 QStringLiteral(
                     "right.svg: drawn as SVG says; 50.00 % of the pixels differ by more than 32 of 255, "
                     "the worst by 255; Qt's renderer departs from SVG in this file: from what SVG says, "
                     "0.00 % differ\n"));
        QCOMPARE(right.status, int(Clean));

        const Run wrong = compare("clipped.svg", "wrong.svg");
        QVERIFY2(wrong.out.startsWith(QStringLiteral("wrong.svg: drawn otherwise; 75.00 % "))
                     && wrong.out.endsWith(QStringLiteral("from what SVG says, 25.00 % differ\n")),
                 qPrintable(wrong.out));
        QCOMPARE(wrong.status, int(Lossy));

        const Run asQt = compare("clipped.svg", "clean.svg");
        QVERIFY2(asQt.out.startsWith(QStringLiteral("clean.svg: drawn alike; 0.00 % "))
                     && asQt.out.endsWith(QStringLiteral("from what SVG says, 50.00 % differ\n")),
                 qPrintable(asQt.out));
        QCOMPARE(asQt.status, int(Clean));
    }

    void layersInLayersTakeNoMemoryWithoutLimit()
    {
        const QByteArray groups = QByteArray("<g opacity='.999'>").repeated(1500);
        write("layers.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='40'>"
              "<svg width='20' height='20'><rect width='40' height='40' fill='red'/></svg>"
                  + groups + "<path d='M0 0h1'/>" + QByteArray("</g>").repeated(1500) + "</svg>");
        const Run run = runProgram({QStringLiteral("compare"),
                                    QStringLiteral("--size"),
                                    QStringLiteral("1024"),
                                    QStringLiteral("layers.svg"),
                                    QStringLiteral("out.png")});
        QVERIFY2(run.out.startsWith(QStringLiteral("layers.svg: drawn otherwise; ")), qPrintable(run.out));
        QVERIFY2(!run.out.contains(QStringLiteral("departs")), qPrintable(run.out)); // nobody has looked
    }

    void whatCannotBeDrawnIsNoDepartureOfQt()
    {
        // The text is left out of what SVG says here, so that is not the whole of it.
        write("text.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'>"
              "<svg width='20' height='20'><rect width='40' height='20' "
              "fill='red'/></svg><text>t</text></svg>");
        write("right.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'>"
              "<path d='M0 0h20v20h-20z' fill='red'/></svg>");
        const Run run = runProgram({QStringLiteral("compare"),
                                    QStringLiteral("--original"),
                                    QStringLiteral("text.svg"),
                                    QStringLiteral("right.svg"),
                                    QStringLiteral("out.png")});
        QVERIFY2(run.out.startsWith(QStringLiteral("right.svg: drawn otherwise; ")), qPrintable(run.out));
        QVERIFY(!run.out.contains(QStringLiteral("departs")));
        QCOMPARE(run.status, int(Lossy));
    }

private:
    QString path(const char* name) const
    {
        return m_directory->filePath(QString::fromUtf8(name));
    }
    bool exists(const char* name) const
    {
        return QFile::exists(path(name));
    }

    void write(const char* name, const QByteArray& content) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }

    QByteArray read(const char* name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// What the program does where the files are, without the price of a process.
    static Run runProgram(const QStringList& arguments)
    {
        Run run;
        QTextStream out(&run.out);
        QTextStream err(&run.err);
        run.status = runQuilletSvg(QStringList{QStringLiteral("quillet-svg")} + arguments, out, err);
        return run;
    }

    /// What the program does in a process of its own. In \a command, for a shell, "$0" is the program.
    static Run runAlone(const QString& command)
    {
        QProcess process;
        process.start(QStringLiteral("sh"),
                      {QStringLiteral("-c"), command, QStringLiteral(QUILLET_SVG_PROGRAM)});
        Run run;
        if (process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit)
            run.status = process.exitCode();
        run.out = QString::fromUtf8(process.readAllStandardOutput());
        run.err = QString::fromUtf8(process.readAllStandardError());
        return run;
    }

    std::unique_ptr<QTemporaryDir> m_directory;
};

QUILLET_TEST_MAIN(TestQuilletSvg)
#include "tst_QuilletSvg.moc"
