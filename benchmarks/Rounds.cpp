#include "Rounds.h"

#include <QtCore/QtGlobal>

#include <algorithm>
#include <ctime>
#include <map>

#ifdef __GLIBC__
#    include <malloc.h>
#endif

namespace {

/// Has the process keep what it frees. Giving pages back and faulting them in again costs more than most of
/// what is measured here.
void keepMemory()
{
#ifdef __GLIBC__
    constexpr int one_gigabyte = 1 << 30;
    mallopt(M_MMAP_THRESHOLD, one_gigabyte);
    mallopt(M_TRIM_THRESHOLD, one_gigabyte);
#endif
}

/// Of the processor, for this process: other programs do not count. (On Windows it is the time of day.)
double millisecondsSince(std::clock_t start)
{
    return double(std::clock() - start) * 1000 / CLOCKS_PER_SEC;
}

std::map<std::string, double> runRound(const std::vector<Contender>& contenders, int turns)
{
    std::map<std::string, double> times;
    for (int i = 0; i < turns; ++i) {
        for (const Contender& contender : contenders) {
            const std::clock_t start = std::clock();
            contender.work();
            times[contender.name] += millisecondsSince(start);
            if (contender.cleanUp)
                contender.cleanUp();
        }
    }
    return times;
}

/// The order changes from round to round, because each contender finds the caches as the one before left
/// them.
void rotate(std::vector<Contender>& contenders)
{
    std::rotate(contenders.begin(), contenders.begin() + 1, contenders.end());
}

void report(benchmark::State& state,
            const std::map<std::string, double>& times,
            const std::vector<Ratio>& ratios)
{
    for (const auto& [name, time] : times)
        state.counters[name] = time;
    for (const Ratio& ratio : ratios) {
        const double less = ratio.lessUnder.empty() ? 0 : times.at(ratio.lessUnder);
        state.counters["ratio " + ratio.name] =
            times.at(ratio.over) / ratio.overRepeats / (times.at(ratio.under) - less);
    }
}

} // namespace

void compareInRounds(const std::string& name,
                     const std::vector<Contender>& contenders,
                     const std::vector<Ratio>& ratios,
                     int rounds,
                     int turns)
{
    const auto round = [ratios, turns, order = contenders](benchmark::State& state) mutable {
        for ([[maybe_unused]] auto _ : state) {
            const auto times = runRound(order, turns);
            state.SetIterationTime(times.begin()->second / 1000);
            report(state, times, ratios);
        }
        rotate(order);
    };
    benchmark::RegisterBenchmark(name.c_str(), round)
        ->Iterations(1)
        ->Repetitions(rounds)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

int runRounds(int argc, char** argv)
{
    keepMemory();
    benchmark::AddCustomContext("qt", qVersion());
    benchmark::AddCustomContext("eigen", EIGEN_VERSION);
    benchmark::AddCustomContext("google benchmark", GOOGLE_BENCHMARK_VERSION);
#ifdef __clang__
    benchmark::AddCustomContext("compiler", "clang " __clang_version__);
#elif defined(__GNUC__)
    benchmark::AddCustomContext("compiler", "g++ " __VERSION__);
#endif
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
