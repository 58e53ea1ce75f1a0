#include "Timing.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <QtCore/QXmlStreamReader>
#include <QtXml/QDomDocument>

#include <algorithm>
#include <chrono>
#include <limits>

namespace {

using Microseconds = std::chrono::duration<double, std::micro>;

/// \return whether there was no error.
bool tokenise(const QString& text)
{
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false); // as Quillet reads
    while (!reader.atEnd())
        reader.readNext();
    return !reader.hasError();
}

bool makeTree(const QString& text)
{
    QDomDocument document;
    return document.setContent(text);
}

template <typename Work>
double timeOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return Microseconds(std::chrono::steady_clock::now() - start).count();
}

} // namespace

Timing timingOf(const QString& text, double limit)
{
    constexpr int few_rounds = 3;
    constexpr int many_rounds = 50;
    Timing least = {std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    const auto readXml = tokenise(text) ? tokenise : makeTree;
    const auto isNearLimit = [&] { return least.ours > least.floor * limit / 2; };
    for (int round = 0; round < few_rounds || (round < many_rounds && isNearLimit()); ++round) {
        Quillet::PainterPathContainer picture; // thrown away outside the measured time
        least.ours = std::min(least.ours, timeOf([&] { Quillet::parseSvg(text, picture); }));
        least.floor = std::min(least.floor, timeOf([&] { readXml(text); }));
    }
    return least;
}
