#pragma once

#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// What all measurements share: the clock, medians of works done in turns, and the line that a ratio is printed on.
namespace lorvane::bench {

/// Seconds. With LORVANE_BENCH_CLOCK=cpu those that this process and its ended children computed, for a machine that is busy with other work; else those that
/// passed.
inline double now() {
    static const bool byCpu = [] {
        const char* const clock = std::getenv("LORVANE_BENCH_CLOCK");
        return clock && std::string_view(clock) == "cpu";
    }();
    timespec time{};
    clock_gettime(byCpu ? CLOCK_PROCESS_CPUTIME_ID : CLOCK_MONOTONIC, &time);
    double seconds = static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    if (!byCpu) return seconds;
    rusage children{};
    getrusage(RUSAGE_CHILDREN, &children);
    for (const timeval& part : {children.ru_utime, children.ru_stime}) seconds += static_cast<double>(part.tv_sec) + 1e-6 * static_cast<double>(part.tv_usec);
    return seconds;
}

template <class F>
double seconds(F&& work) {
    const double start = now();
    work();
    return now() - start;
}

inline double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

/// Keeps the compiler from leaving out what makes the value.
template <class T>
void use(const T& value) {
    asm volatile("" : : "r,m"(value) : "memory");
}

/// A work and what must be done before each of its runs without being timed.
struct Work {
    std::function<void()> run;
    std::function<void()> prepare = [] {};
};

/// Lets the memory's manager put together what was freed. It does so when it is next asked for something large, and then at the cost of whoever asks: the work
/// that comes behind one that freed a million small things.
inline void tidyMemory() {
    void* const large = std::malloc(std::size_t{1} << 20);
    use(large);
    std::free(large);
}

/// The median time of each work. They are done in turns, so that all meet the same moods of the machine.
inline std::vector<double> mediansInTurns(int rounds, const std::vector<Work>& works) {
    std::vector<std::vector<double>> times(works.size());
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < works.size(); ++i) {
            works[i].prepare();
            tidyMemory();
            times[i].push_back(seconds(works[i].run));
        }
    }
    std::vector<double> medians;
    for (auto& each : times) medians.push_back(median(std::move(each)));
    return medians;
}

/// How the time grows with the size: the exponent between the smallest and the largest one.
inline double growthExponent(double smallSize, double smallTime, double largeSize, double largeTime) {
    return std::log(largeTime / smallTime) / std::log(largeSize / smallSize);
}

/// "12.3 ms".
inline std::string inUnits(double time) {
    char text[32];
    if (time >= 1)
        std::snprintf(text, sizeof text, "%.2f s", time);
    else if (time >= 1e-3)
        std::snprintf(text, sizeof text, "%.*f ms", time >= 0.1 ? 0 : time >= 0.01 ? 1 : 2, time * 1e3);
    else if (time >= 1e-6)
        std::snprintf(text, sizeof text, "%.1f us", time * 1e6);
    else
        std::snprintf(text, sizeof text, "%.1f ns", time * 1e9);
    return text;
}

struct Goal {
    enum class Kind { None, AtLeast, AtMost } kind = Kind::None;
    double value = 0;

    bool isMet(double found) const { return kind == Kind::None || (kind == Kind::AtLeast ? found >= value : found <= value); }
};
inline Goal atLeast(double value) {
    return {Goal::Kind::AtLeast, value};
}
inline Goal atMost(double value) {
    return {Goal::Kind::AtMost, value};
}

/// One line: what was done, a figure of ours, a peer's figure, and the number that is told beside its goal.
inline void printLine(std::string_view what, std::string_view ours, std::string_view peer, double ratio, Goal goal = {}) {
    std::printf("%-46.*s %12.*s   %-30.*s %8.2f", static_cast<int>(what.size()), what.data(), static_cast<int>(ours.size()), ours.data(),
                static_cast<int>(peer.size()), peer.data(), ratio);
    if (goal.kind != Goal::Kind::None)
        std::printf("   goal %s %g%s", goal.kind == Goal::Kind::AtLeast ? ">=" : "<=", goal.value, goal.isMet(ratio) ? "" : "   MISSED");
    std::putchar('\n');
    std::fflush(stdout);
}

/// How many times as fast as the peer.
inline void printFaster(std::string_view what, double ours, std::string_view peer, double theirs, Goal goal = {}) {
    printLine(what, inUnits(ours), std::string(peer) + " " + inUnits(theirs), theirs / ours, goal);
}
/// How many times the peer's time.
inline void printTimes(std::string_view what, double ours, std::string_view peer, double theirs, Goal goal = {}) {
    printLine(what, inUnits(ours), std::string(peer) + " " + inUnits(theirs), ours / theirs, goal);
}

/// What the command line of a measurement says: `[--smoke] [FOLDER]`.
struct Arguments {
    bool smoke = false;
    std::string folder;
    int rounds() const { return smoke ? 3 : 15; }
};
inline Arguments argumentsOf(int argc, char** argv) {
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) == "--smoke")
            arguments.smoke = true;
        else
            arguments.folder = argv[i];
    }
    return arguments;
}

/// The largest amount of memory that this process has held, in bytes.
inline double peakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return 1024.0 * static_cast<double>(usage.ru_maxrss);
}

}  // namespace lorvane::bench
