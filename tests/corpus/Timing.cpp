#include "Timing.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <QtCore/QXmlStreamReader>
#include <QtXml/QDomDocument>

#include <algorithm>
#include <ctime>
#include <limits>

namespace {

/// The processor's time that this thread has had, which goes on only while it runs.
double microseconds()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e6 + double(time.tv_nsec) / 1e3;
}

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
    const double start = microseconds();
    work();
    return microseconds() - start;
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
