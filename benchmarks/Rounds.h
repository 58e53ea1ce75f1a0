#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

// How all of our comparisons of times are made. One repetition of a benchmark is one round: every contender
// does the same work, one after the other, and each ratio is formed of times of the same round. So a machine
// that slows down for a while slows down both sides. The figure to look at is the median over the rounds.
// Measured is the time of the processor.

struct Contender
{
    std::string name;
    std::function<void()> work;
    std::function<void()> cleanUp = nullptr; ///< done after each work and not measured; may be empty
};

/// A ratio of two times, each the sum of contenders' times or the difference of two.
struct Ratio
{
    std::string name;
    std::string over;
    std::string under;
    std::string lessUnder = std::string(); ///< what is taken away from \a under; empty for nothing
    int overRepeats = 1;                   ///< how many times \a over does its work
};

/// Registers the benchmark \a name. Its counters are the time of each contender in milliseconds and, as
/// "ratio NAME", each ratio. Work that is short is done in several \a turns a round.
void compareInRounds(const std::string& name,
                     const std::vector<Contender>& contenders,
                     const std::vector<Ratio>& ratios,
                     int rounds,
                     int turns = 1);

/// Parses the command line, runs what was registered, and says how the program was built.
int runRounds(int argc, char** argv);
