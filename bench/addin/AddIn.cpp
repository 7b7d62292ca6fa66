// What the add-in costs its host: the same host with and without it, started over a store of templates, opening mails, with many windows open.
// Usage: bench_addin FOLDER [--smoke]   (an empty folder, best in memory)

#include <malloc.h>

#include <filesystem>
#include <memory>

#include "host/Outlook.h"
#include "support/Measure.h"
#include "support/Store.h"

namespace {

using namespace lorvane;
using namespace lorvane::bench;
namespace fs = std::filesystem;

double heapBytes() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

/// A host over the store, its add-in loaded or not.
std::unique_ptr<cli::Run> start(const fs::path& folder, bool withAddIn) {
    cli::RunParts parts;
    parts.connects = withAddIn;
    return std::make_unique<cli::Run>(runOptions(folder), parts);
}

struct Opened {
    double time = 0;   // seconds for all
    double bytes = 0;  // kept while they are open
};

Opened openMails(const cli::Run& run, std::size_t count) {
    std::vector<host::Object> open;
    open.reserve(count);
    Opened opened;
    tidyMemory();
    const double before = heapBytes();
    opened.time = seconds([&] {
        for (std::size_t i = 0; i < count; ++i) open.push_back(run.driver().newMail());
    });
    opened.bytes = heapBytes() - before;
    for (const host::Object& inspector : open) run.driver().closeInspector(inspector, false);
    return opened;
}

void printAdded(const std::string& what, double with, double without) {
    printLine(what + ", ms added", inUnits(with), "without it " + inUnits(without), 1e3 * (with - without), atMost(5));
}

void measureStart(const fs::path& folder, std::size_t templates, int rounds) {
    const auto starting = [&](bool withAddIn) { return Work{[&folder, withAddIn] { use(start(folder, withAddIn)->isPassive()); }}; };
    const std::vector<double> times = mediansInTurns(rounds, {starting(true), starting(false)});
    printAdded("start over " + std::to_string(templates) + " templates", times[0], times[1]);
}

void measureWindows(const fs::path& folder, std::size_t many, int rounds) {
    struct Measured {
        double one = 0, tenth = 0, all = 0, bytes = 0;
    };
    const auto measure = [&](bool withAddIn) {
        const auto run = start(folder, withAddIn);
        std::vector<double> one, tenth, all;
        Measured measured;
        for (int round = 0; round < rounds; ++round) {
            one.push_back(openMails(*run, 1).time);
            tenth.push_back(openMails(*run, many / 10).time);
            const Opened opened = openMails(*run, many);
            all.push_back(opened.time);
            measured.bytes = opened.bytes;
        }
        measured.one = median(one), measured.tenth = median(tenth), measured.all = median(all);
        return measured;
    };
    const Measured without = measure(false), with = measure(true);
    const double windows = static_cast<double>(many);
    printAdded("open a mail", with.one, without.one);
    printLine(std::to_string(many) + " open mails, the growth of their time", inUnits(with.tenth), "to " + inUnits(with.all) + ", exponent",
              growthExponent(windows / 10, with.tenth, windows, with.all), atMost(1.1));
    printTimes(std::to_string(many) + " open mails, time", with.all, "without it", without.all);
    char ours[32], theirs[48];
    std::snprintf(ours, sizeof ours, "%.0f kB each", with.bytes / windows / 1e3);
    std::snprintf(theirs, sizeof theirs, "without it %.0f kB each", without.bytes / windows / 1e3);
    printLine(std::to_string(many) + " open mails, MB added for each", ours, theirs, (with.bytes - without.bytes) / windows / 1e6, atMost(1));
}

}  // namespace

int main(int argc, char** argv) {
    const Arguments arguments = argumentsOf(argc, argv);
    if (arguments.folder.empty()) return std::fputs("usage: bench_addin FOLDER [--smoke]\n", stderr), 2;
    try {
        const fs::path folder = fs::path(arguments.folder) / "addin";
        const std::size_t templates = arguments.smoke ? 100 : 10'000;
        makeStore(folder, templates);
        measureStart(folder, templates, arguments.rounds());
        measureWindows(folder, arguments.smoke ? 20 : 1000, arguments.rounds());
        fs::remove_all(folder);
    } catch (const host::HostError& error) {
        return std::fprintf(stderr, "%s\n", error.what()), 1;
    }
}
