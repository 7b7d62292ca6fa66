// The program's commands as whole processes, with the store's file out of the page cache, beside `sqlite3` reading the same file.
// Usage: bench_program FOLDER [--smoke]   (an empty folder on the disk to be measured)

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>

#include "host/TextFunctions.h"
#include "support/Child.h"
#include "support/Measure.h"
#include "support/Store.h"

namespace {

using namespace lorvane;
using namespace lorvane::bench;
namespace fs = std::filesystem;

/// Asks the system to forget what it has read of a file.
void cool(const fs::path& file) {
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return;
    fsync(descriptor);
    posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
    close(descriptor);
}

struct Measured {
    double time = 0, peakMemory = 0;
};

Measured measure(const std::vector<std::string>& words, const fs::path& store, int rounds) {
    std::vector<double> times, peaks;
    for (int round = 0; round < rounds; ++round) {
        cool(store);
        ChildResult result;
        times.push_back(seconds([&] { result = runChild(words); }));
        peaks.push_back(result.peakMemory);
        if (result.status != 0) std::fprintf(stderr, "%s ended with %d\n", words[0].c_str(), result.status), std::exit(1);
    }
    return {median(times), median(peaks)};
}

void print(const std::string& what, const Measured& ours, const Measured& theirs) {
    char memory[48];
    std::snprintf(memory, sizeof memory, "  %.1f MB beside %.1f MB", ours.peakMemory / 1e6, theirs.peakMemory / 1e6);
    printTimes(what, ours.time, "sqlite3", theirs.time);
    printLine(what + ", peak memory", "", memory, ours.peakMemory / theirs.peakMemory);
}

}  // namespace

int main(int argc, char** argv) {
    const Arguments arguments = argumentsOf(argc, argv);
    if (arguments.folder.empty()) return std::fputs("usage: bench_program FOLDER [--smoke]\n", stderr), 2;
    try {
        for (const std::size_t count : {std::size_t{10}, arguments.smoke ? std::size_t{100} : std::size_t{10'000}}) {
            const fs::path folder = fs::path(arguments.folder) / "program";
            makeStore(folder, count);
            const fs::path store = folder / "store.sqlite";
            const std::vector<std::string> program = {LORVANE_PROGRAM, "--store", folder.string()};
            const auto command = [&program](std::vector<std::string> rest) {
                std::vector<std::string> words = program;
                words.insert(words.end(), rest.begin(), rest.end());
                return words;
            };
            const int rounds = arguments.rounds();
            const Measured listed = measure({"sqlite3", store.string(), "SELECT subject FROM items"}, store, rounds);
            const Measured read = measure({"sqlite3", store.string(), "SELECT text FROM bodies ORDER BY item DESC LIMIT 1"}, store, rounds);
            const std::string size = std::to_string(count) + " templates, ";
            print(size + "lorvane templates", measure(command({"templates"}), store, rounds), listed);
            const std::string subject = host::toUtf8(std::u16string(markedSubject));
            const std::vector<std::string> insert =
                command({"insert", "--template", subject, "--with-format", "--to", "John Public <john@example.com>", "--out", "/dev/null"});
            print(size + "lorvane insert", measure(insert, store, rounds), read);
            fs::remove_all(folder);
        }
    } catch (const host::HostError& error) {
        return std::fprintf(stderr, "%s\n", error.what()), 1;
    }
}
