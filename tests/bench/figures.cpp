#include "bench/figures.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace {

double timeOf(const std::function<void()>& action)
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    action();
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

double percentile(std::vector<double> times, double share)
{
    std::sort(times.begin(), times.end());
    return times[static_cast<size_t>(share * static_cast<double>(times.size() - 1))];
}

} // namespace

Figures measure(int runs, const std::function<void()>& ours, const std::function<void()>& bare,
                const std::function<void()>& after)
{
    for (int i = 0; i < runs / 20 + 1; ++i) {
        ours();
        bare();
        after();
    }
    Figures figures;
    for (int i = 0; i < runs; ++i) {
        figures.ours.push_back(timeOf(ours));
        figures.bare.push_back(timeOf(bare));
        after();
    }
    return figures;
}

void printHeader()
{
    std::printf("%-36s %12s %12s %12s %12s %8s\n", "microseconds", "ours median", "ours 99 %", "bare median",
                "bare 99 %", "ratio");
}

void printLine(const char* name, const Figures& figures)
{
    const double ours = percentile(figures.ours, 0.5);
    const double bare = percentile(figures.bare, 0.5);
    std::printf("%-36s %12.1f %12.1f %12.1f %12.1f %8.2f\n", name, ours, percentile(figures.ours, 0.99), bare,
                percentile(figures.bare, 0.99), ours / bare);
}

void printLeastHeader()
{
    std::printf("%-36s %12s %12s %12s %12s %8s\n", "", "ours least", "ours median", "bare least",
                "bare median", "ratio");
}

void printLeast(const char* name, const Figures& figures)
{
    const double ours = percentile(figures.ours, 0);
    const double bare = percentile(figures.bare, 0);
    std::printf("%-36s %12.0f %12.0f %12.0f %12.0f %8.2f\n", name, ours, percentile(figures.ours, 0.5), bare,
                percentile(figures.bare, 0.5), ours / bare);
}
