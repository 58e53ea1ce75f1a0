#include "StyleSheet.h"

#include <QtCore/QRegularExpression>

#include <algorithm>

void StyleSheet::add(const QString& text)
{
    static const QRegularExpression comments(QStringLiteral("/\\*.*?\\*/"),
                                             QRegularExpression::DotMatchesEverythingOption);
    const QString sheet = QString(text).remove(comments);
    if (sheet.contains(QLatin1Char('@'))) {
        m_rest += sheet; // its braces may stand in each other
        return;
    }
    const QStringList blocks = sheet.split(QLatin1Char('}'), Qt::SkipEmptyParts);
    for (const QString& block : blocks) {
        const int brace = block.indexOf(QLatin1Char('{'));
        if (brace < 0)
            continue;
        const QString body = block.mid(brace + 1);
        const QVector<Declaration> declarations = readStyle(body);
        const QStringList selectors = block.left(brace).split(QLatin1Char(','));
        for (const QString& selector : selectors) {
            if (!addRule(selector.trimmed(), declarations))
                m_rest += selector + QLatin1Char('{') + body + QStringLiteral("}\n");
        }
    }
    std::stable_sort(m_rules.begin(), m_rules.end(), [](const Rule& one, const Rule& other) {
        return one.specificity < other.specificity;
    });
}

QVector<Declaration>
StyleSheet::declarations(const QString& element, const QString& id, const QString& classes) const
{
    QVector<Declaration> result;
    const QStringList names = classes.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const Rule& rule : m_rules) {
        const bool matches =
            (rule.element.isEmpty() || rule.element == element) && (rule.id.isEmpty() || rule.id == id)
            && std::all_of(rule.classes.begin(), rule.classes.end(), [&](const QString& one) {
                   return names.contains(one);
               });
        if (matches)
            result += rule.declarations;
    }
    return result;
}

bool StyleSheet::addRule(const QString& selector, const QVector<Declaration>& declarations)
{
    static const QRegularExpression simple(QStringLiteral("^(\\*|[A-Za-z]\\w*)?((?:[.#][\\w-]+)*)$"));
    static const QRegularExpression part(QStringLiteral("([.#])([\\w-]+)"));
    const QRegularExpressionMatch match = simple.match(selector);
    if (!match.hasMatch() || selector.isEmpty())
        return false;

    Rule rule;
    rule.declarations = declarations;
    rule.element = match.captured(1);
    if (rule.element == QLatin1String("*"))
        rule.element.clear();
    rule.specificity = rule.element.isEmpty() ? 0 : 1;
    QRegularExpressionMatchIterator parts = part.globalMatch(match.captured(2));
    while (parts.hasNext()) {
        const QRegularExpressionMatch each = parts.next();
        if (each.captured(1) == QLatin1String("#")) {
            rule.id = each.captured(2);
            rule.specificity += 100;
        } else {
            rule.classes.append(each.captured(2));
            rule.specificity += 10;
        }
    }
    m_rules.append(rule);
    return true;
}
