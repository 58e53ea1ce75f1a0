#include "PathComparison.h"

#include <cstring>

namespace {

QString describe(const QPainterPath::Element& element)
{
    return QStringLiteral("type %1 (%2, %3)")
        .arg(element.type)
        .arg(element.x, 0, 'g', 17)
        .arg(element.y, 0, 'g', 17);
}

bool sameBits(double a, double b)
{
    quint64 bitsOfA = 0;
    quint64 bitsOfB = 0;
    std::memcpy(&bitsOfA, &a, sizeof a);
    std::memcpy(&bitsOfB, &b, sizeof b);
    return bitsOfA == bitsOfB;
}

} // namespace

QString firstDifference(const QPainterPath& actual, const QPainterPath& expected)
{
    if (actual.fillRule() != expected.fillRule())
        return QStringLiteral("the fill rules differ");
    for (int i = 0; i < qMin(actual.elementCount(), expected.elementCount()); ++i) {
        const QPainterPath::Element a = actual.elementAt(i);
        const QPainterPath::Element e = expected.elementAt(i);
        if (a.type != e.type || !sameBits(a.x, e.x) || !sameBits(a.y, e.y))
            return QStringLiteral("element %1 is %2, expected %3").arg(i).arg(describe(a), describe(e));
    }
    if (actual.elementCount() != expected.elementCount())
        return QStringLiteral("%1 elements, expected %2")
            .arg(actual.elementCount())
            .arg(expected.elementCount());
    return {};
}
