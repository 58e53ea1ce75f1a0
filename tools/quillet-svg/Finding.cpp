#include "Finding.h"

#include <algorithm>
#include <tuple>

namespace {

auto keyOf(const Finding& finding)
{
    return std::tie(finding.position.line, finding.position.column, finding.rule, finding.message);
}

} // namespace

Finding findingFor(const EntityReference& entity)
{
    return {Finding::Lost,
            entity.position,
            QStringLiteral("entity"),
            QStringLiteral("what “&%1;” stands for is not in the file, and not read").arg(entity.name),
            QStringLiteral("write it out in its place")};
}

void sortFindings(QVector<Finding>& findings)
{
    const auto comesBefore = [](const Finding& one, const Finding& other) {
        return std::tie(one.position.line, one.position.column)
               < std::tie(other.position.line, other.position.column);
    };
    std::stable_sort(findings.begin(), findings.end(), comesBefore);
    const auto isSame = [](const Finding& one, const Finding& other) { return keyOf(one) == keyOf(other); };
    findings.erase(std::unique(findings.begin(), findings.end(), isSame), findings.end());
}
