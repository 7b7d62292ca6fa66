// Opening the chooser over a store in a file (walk, tables, categories, list with its item check) beside one SQL scan of the same columns; and what lines cost.
// Usage: bench_chooser FOLDER [--smoke]   (an empty folder, best in memory)

#include <malloc.h>

#include <filesystem>

#include "Chooser.h"
#include "host/Form.h"
#include "host/TextFunctions.h"
#include "store/TemplateList.h"
#include "support/Measure.h"
#include "support/Sqlite.h"
#include "support/Store.h"

namespace {

using namespace lorvane;
using namespace lorvane::bench;
namespace fs = std::filesystem;

struct Opened {
    double opening = 0;    // seconds from the naming of the window until it is up with its list
    double searching = 0;  // seconds for the list of a search
    std::size_t lines = 0;
};

Opened open(cli::Run& run) {
    double up = 0;
    Opened opened;
    const double start = now();
    auto& chooser = host::apartment().forms.use<respond::frmEmail>();
    run.user().then([&](screen::ScriptedUser& user) {
        up = now();
        opened.lines = static_cast<std::size_t>(chooser.lstEmails.ListCount());
        chooser.txtSearch.Text = std::u16string(shares[1].word);
        opened.searching = seconds([&] { chooser.UpdateEmailList(); });
        user.CloseWindow(cli::chooserWindow);
    });
    chooser.Show(true);
    opened.opening = up - start;
    return opened;
}

/// The time of one opening over so many templates.
double measure(const fs::path& place, std::size_t count, int rounds, bool judged) {
    const fs::path folder = place / "chooser";
    makeStore(folder, count);
    cli::Run run(runOptions(folder));
    Sqlite database((folder / "store.sqlite").string());
    Sqlite::Statement scan(database, "SELECT entry, item_class, message_class, subject, categories FROM items");
    std::vector<double> ours, theirs, searching;
    std::size_t lines = 0;
    for (int round = 0; round < rounds; ++round) {
        const Opened opened = open(run);
        ours.push_back(opened.opening);
        searching.push_back(opened.searching);
        lines = opened.lines;
        theirs.push_back(seconds([&] {
            std::size_t bytes = 0;
            while (scan.step()) {
                for (int column = 0; column < 5; ++column) bytes += scan.text(column).size();
            }
            scan.reset();
            use(bytes);
        }));
    }
    if (lines < count) std::fprintf(stderr, "the list has %zu lines only\n", lines), std::exit(1);
    const double time = median(ours);
    printTimes("open the chooser, " + std::to_string(count) + " templates", time, "SQL scan", median(theirs), judged ? atMost(12) : Goal{});
    printTimes("search in it, hits of " + std::string(shares[1].name) + ", whole list anew", median(searching), "SQL scan", median(theirs));
    fs::remove_all(folder);
    return time;
}

class ListWindow final : public host::Form {
public:
    ListWindow() : Form(u"frmList", u""), lstLines(*this, u"lstLines") {}
    host::ListBox lstLines;
};

double heapBytes() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

void measureLines(std::size_t count) {
    const std::vector<TemplateRow> rows = templateRows(count);
    const host::Object keeper(new ListWindow);
    auto& window = *host::implementation<ListWindow>(keeper);
    const double before = heapBytes();
    for (std::size_t i = 0; i < count; ++i) window.lstLines.AddItem(store::MakeListEntry(rows[i].subject, static_cast<std::int32_t>(i + 1)));
    const double grown = heapBytes() - before;
    const std::size_t units = window.lstLines.List(static_cast<std::int32_t>(count - 1)).size();
    const double whole = static_cast<double>(count * units * sizeof(char16_t));
    char ours[32], theirs[48];
    std::snprintf(ours, sizeof ours, "%.1f MB", grown / 1e6);
    std::snprintf(theirs, sizeof theirs, "as read, %.1f MB", whole / 1e6);
    printLine("memory of " + std::to_string(count) + " lines, MB for 100k", ours, theirs, grown / 1e6 * 1e5 / static_cast<double>(count), atMost(30));
}

}  // namespace

int main(int argc, char** argv) {
    const Arguments arguments = argumentsOf(argc, argv);
    if (arguments.folder.empty()) return std::fputs("usage: bench_chooser FOLDER [--smoke]\n", stderr), 2;
    try {
        const std::vector<std::size_t> sizes = arguments.smoke ? std::vector<std::size_t>{10, 100, 1000} : std::vector<std::size_t>{1000, 10'000, 100'000};
        std::vector<double> times;
        for (const std::size_t size : sizes) times.push_back(measure(arguments.folder, size, arguments.rounds(), !arguments.smoke));
        printLine("growth of an opening", inUnits(times.front()), "to " + inUnits(times.back()) + ", exponent",
                  growthExponent(static_cast<double>(sizes[0]), times[0], static_cast<double>(sizes[2]), times[2]), arguments.smoke ? Goal{} : atMost(1.1));
        measureLines(arguments.smoke ? 1000 : 100'000);
    } catch (const host::HostError& error) {
        return std::fprintf(stderr, "%s\n", error.what()), 1;
    }
}
