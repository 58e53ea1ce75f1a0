#include "CheckCommand.h"

#include "Checker.h"
#include "ExitStatus.h"
#include "FindingText.h"

#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMap>

#include <algorithm>
#include <cstdio>

#ifdef Q_OS_UNIX
#    include <unistd.h>
#endif

namespace {

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

QString counted(int number, const QString& what)
{
    return QStringLiteral("%1 %2%3").arg(
        QString::number(number), what, QLatin1String(number == 1 ? "" : "s"));
}

/// What a run over many files has come to.
class Summary
{
public:
    void addUnread() { ++m_unread; }

    void add(const Check& check)
    {
        ++m_verdicts[check.verdict()];
        QStringList rules;
        for (const Finding& each : check.findings) {
            if (each.weight != Finding::Note && !rules.contains(each.rule))
                rules.append(each.rule);
        }
        for (const QString& rule : rules)
            ++m_filesWithRule[rule];
    }

    QString text() const
    {
        QString result = QStringLiteral("%1: %2 clean, %3 lossy, %4 refused")
                             .arg(counted(all(), QStringLiteral("file")))
                             .arg(m_verdicts[Finding::Note])
                             .arg(m_verdicts[Finding::Lost])
                             .arg(m_verdicts[Finding::Refused]);
        if (m_unread > 0)
            result += QStringLiteral(", %1 not read").arg(m_unread);
        result += QLatin1Char('\n');
        for (auto each = m_filesWithRule.begin(); each != m_filesWithRule.end(); ++each)
            result +=
                QStringLiteral("  %1: %2\n").arg(each.key(), counted(each.value(), QStringLiteral("file")));
        return result;
    }

    QString json() const
    {
        QJsonObject rules;
        for (auto each = m_filesWithRule.begin(); each != m_filesWithRule.end(); ++each)
            rules.insert(each.key(), each.value());
        const QJsonObject object{{QStringLiteral("files"), all()},
                                 {QStringLiteral("clean"), m_verdicts[Finding::Note]},
                                 {QStringLiteral("lossy"), m_verdicts[Finding::Lost]},
                                 {QStringLiteral("refused"), m_verdicts[Finding::Refused]},
                                 {QStringLiteral("unread"), m_unread},
                                 {QStringLiteral("rules"), rules}};
        return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
    }

private:
    int all() const
    {
        return m_verdicts[Finding::Note] + m_verdicts[Finding::Lost] + m_verdicts[Finding::Refused]
               + m_unread;
    }

    int m_verdicts[3] = {};
    int m_unread = 0;
    QMap<QString, int> m_filesWithRule;
};

class CheckRun
{
public:
    CheckRun(const CheckOptions& options, Console& console) : m_options(options), m_console(console) {}

    int run(const QStringList& names)
    {
        const QVector<Input> inputs = svgFiles(names);
        Progress progress(inputs.size(), m_console.err());
        begin();
        for (const Input& input : inputs) {
            Document document;
            document.error = input.error;
            if (input.error.isEmpty())
                document = readDocument(input.fileName);
            progress.step();
            if (!document.error.isEmpty()) {
                progress.clear();
                m_status = std::max(m_status, m_console.unread(input.fileName, document.error));
                m_summary.addUnread();
                writeEntry(nameOfInput(input.fileName), document.error);
                continue;
            }
            const Check check = checkDocument(document);
            m_status = std::max(m_status, int(check.verdict()));
            m_summary.add(check);
            if (!m_options.onlySummary && !m_options.asJson)
                progress.clear();
            report(nameOfInput(input.fileName), check);
        }
        progress.clear();
        const bool hasDirectory = std::any_of(names.begin(), names.end(), [](const QString& name) {
            return !isStandardStream(name) && QFileInfo(name).isDir();
        });
        end(m_options.onlySummary || hasDirectory);
        return m_status;
    }

private:
    bool writesEntries() const { return m_options.asJson && !m_options.onlySummary; }

    void begin()
    {
        if (writesEntries())
            m_console.out() << "[";
    }

    /// Of the array of all files.
    template <typename Content>
    void writeEntry(const QString& name, const Content& content)
    {
        if (!writesEntries())
            return;
        m_console.out() << (m_isFirst ? "\n" : ",\n");
        writeJson(m_console.out(), name, content);
        m_isFirst = false;
    }

    void report(const QString& name, const Check& check)
    {
        if (m_options.asJson) {
            writeEntry(name, check);
        } else if (!m_options.onlySummary) {
            m_console.out() << printable(name) << ": " << nameOf(check.verdict()) << "; parseSvg() "
                            << (check.accepted ? "accepts it" : "refuses it") << ", "
                            << counted(check.shapes, QStringLiteral("shape")) << '\n';
            const QStringList lines = linesFor(name, check.findings, m_options.withNotes);
            for (const QString& line : lines)
                m_console.out() << line << '\n';
        }
    }

    void end(bool summarises)
    {
        if (writesEntries())
            m_console.out() << "\n]\n";
        else if (m_options.asJson)
            m_console.out() << m_summary.json() << '\n';
        else if (summarises)
            m_console.out() << m_summary.text();
    }

    CheckOptions m_options;
    Console& m_console;
    Summary m_summary;
    int m_status = Clean;
    bool m_isFirst = true;
};

} // namespace

int runCheck(const QStringList& names, const CheckOptions& options, Console& console)
{
    return CheckRun(options, console).run(names);
}
