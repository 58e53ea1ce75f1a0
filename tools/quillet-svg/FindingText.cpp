#include "FindingText.h"

#include <QtCore/QHash>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace {

QString wordFor(Finding::Weight weight)
{
    switch (weight) {
    case Finding::Refused:
        return QStringLiteral("refused");
    case Finding::Lost:
        return QStringLiteral("lost");
    default:
        return QStringLiteral("note");
    }
}

/// What quotes values of the file, made short.
QString shortened(const QString& text)
{
    constexpr int longest = 300;
    const QString simple = printable(text.simplified());
    return simple.size() <= longest ? simple : simple.left(longest) + QStringLiteral("…");
}

constexpr int most_of_a_kind = 10;

/// Counts findings of one kind in one piece of path data.
class Series
{
public:
    /// \return how many there are now; 0 if \a finding belongs to none.
    int add(const Finding& finding) { return finding.series.line == 0 ? 0 : ++m_counts[keyOf(finding)]; }
    int count(const Finding& finding) const { return m_counts.value(keyOf(finding)); }

private:
    static QString keyOf(const Finding& finding)
    {
        return QStringLiteral("%1 %2 %3 %4")
            .arg(QString::number(finding.series.line),
                 QString::number(finding.series.column),
                 QString::number(finding.weight),
                 finding.rule);
    }

    QHash<QString, int> m_counts;
};

QJsonObject jsonFor(const Finding& finding)
{
    return {{QStringLiteral("line"), finding.position.line},
            {QStringLiteral("column"), finding.position.column},
            {QStringLiteral("weight"), wordFor(finding.weight)},
            {QStringLiteral("rule"), finding.rule},
            {QStringLiteral("message"), finding.message},
            {QStringLiteral("advice"), finding.advice}};
}

QString compact(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

} // namespace

QString printable(const QString& text)
{
    QString result;
    for (const QChar each : text) {
        if (each == QLatin1Char('\n'))
            result += QStringLiteral("\\n");
        else if (each.category() == QChar::Other_Control || each.category() == QChar::Separator_Line
                 || each.category() == QChar::Separator_Paragraph)
            result += QStringLiteral("\\u%1").arg(each.unicode(), 4, 16, QLatin1Char('0'));
        else
            result += each;
    }
    return result;
}

QString lineFor(const QString& fileName, const Finding& finding)
{
    // In one go: what is filled in may hold "%1" itself.
    return QStringLiteral("%1:%2:%3: %4: %5 [%6]; %7")
        .arg(printable(fileName),
             QString::number(finding.position.line),
             QString::number(finding.position.column),
             wordFor(finding.weight),
             shortened(finding.message),
             finding.rule,
             finding.advice);
}

QStringList linesFor(const QString& fileName, const QVector<Finding>& findings, bool withNotes)
{
    QStringList lines;
    Series all;
    for (const Finding& each : findings)
        all.add(each);
    Series shown;
    for (const Finding& each : findings) {
        if (each.weight == Finding::Note && !withNotes)
            continue;
        const int number = shown.add(each);
        if (number <= most_of_a_kind) {
            lines.append(lineFor(fileName, each));
        } else if (number == most_of_a_kind + 1) {
            Finding rest = each;
            rest.message = QStringLiteral("from here on %1 more of this kind in the same path")
                               .arg(all.count(each) - most_of_a_kind);
            rest.advice = QStringLiteral("“--json” names them all");
            lines.append(lineFor(fileName, rest));
        }
    }
    return lines;
}

void writeJson(QTextStream& out, const QString& fileName, const Check& check)
{
    const QJsonObject object{{QStringLiteral("file"), fileName},
                             {QStringLiteral("accepted"), check.accepted},
                             {QStringLiteral("shapes"), check.shapes},
                             {QStringLiteral("verdict"), nameOf(check.verdict())}};
    // One by one, since there may be millions.
    out << compact(object).chopped(1) << R"(,"findings":[)";
    for (int i = 0; i < check.findings.size(); ++i)
        out << (i > 0 ? "," : "") << compact(jsonFor(check.findings[i]));
    out << "]}";
}

void writeJson(QTextStream& out, const QString& fileName, const QString& error)
{
    out << compact({{QStringLiteral("file"), fileName},
                    {QStringLiteral("verdict"), QStringLiteral("unread")},
                    {QStringLiteral("error"), error}});
}

QString nameOf(Finding::Weight verdict)
{
    switch (verdict) {
    case Finding::Refused:
        return QStringLiteral("refused");
    case Finding::Lost:
        return QStringLiteral("lossy");
    default:
        return QStringLiteral("clean");
    }
}
