#include "FindingText.h"

#include <QtCore/QJsonArray>

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

/// A value of the file, made to stay on one line.
QString onOneLine(const QString& text)
{
    constexpr int longest = 300;
    const QString simple = text.simplified();
    return simple.size() <= longest ? simple : simple.left(longest) + QStringLiteral("…");
}

} // namespace

QString lineFor(const QString& fileName, const Finding& finding)
{
    // In one go: what is filled in may hold "%1" itself.
    return QStringLiteral("%1:%2:%3: %4: %5 [%6]; %7")
        .arg(fileName,
             QString::number(finding.position.line),
             QString::number(finding.position.column),
             wordFor(finding.weight),
             onOneLine(finding.message),
             finding.rule,
             finding.advice);
}

QJsonObject jsonFor(const Finding& finding)
{
    return {{QStringLiteral("line"), finding.position.line},
            {QStringLiteral("column"), finding.position.column},
            {QStringLiteral("weight"), wordFor(finding.weight)},
            {QStringLiteral("rule"), finding.rule},
            {QStringLiteral("message"), finding.message},
            {QStringLiteral("advice"), finding.advice}};
}

QJsonObject jsonFor(const QString& fileName, const Check& check)
{
    QJsonArray findings;
    for (const Finding& each : check.findings)
        findings.append(jsonFor(each));
    return {{QStringLiteral("file"), fileName},
            {QStringLiteral("accepted"), check.accepted},
            {QStringLiteral("shapes"), check.shapes},
            {QStringLiteral("verdict"), nameOf(check.verdict())},
            {QStringLiteral("findings"), findings}};
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
