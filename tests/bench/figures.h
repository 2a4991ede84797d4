#pragma once

#include <functional>
#include <vector>

// Times of one action and of the bare calls that it cannot do without, taken in turn so that both meet the
// same machine.
struct Figures
{
    std::vector<double> ours; // microseconds, where nothing else is said
    std::vector<double> bare;
};

// Runs both `runs` times, a few of each uncounted first; `after` each pair comes what is not counted.
Figures measure(
    int runs, const std::function<void()>& ours, const std::function<void()>& bare,
    const std::function<void()>& after = [] {});

void printHeader();
// One line: median and 99th percentile of each, and the ratio of the medians.
void printLine(const char* name, const Figures& figures);

// The same for what takes long, is done a few times, and is the more disturbed by the machine's other work:
// the least and the median of each, and the ratio of the least. `name` says the unit.
void printLeastHeader();
void printLeast(const char* name, const Figures& figures);
