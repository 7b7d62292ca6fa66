// Search and category of the chooser's table beside SQLite in memory, ripgrep on a presorted file, and one plain scan of the same bytes.
// Usage: bench_search FOLDER [--smoke]   (an empty folder, best in memory: ripgrep's file lies in it)

#include <cstring>
#include <filesystem>
#include <fstream>
#include <numeric>

#include "Run.h"
#include "host/HostError.h"
#include "host/TextFunctions.h"
#include "store/TemplateList.h"
#include "store/basSearch.h"
#include "support/Child.h"
#include "support/Measure.h"
#include "support/Sqlite.h"
#include "support/Subjects.h"

namespace {

using namespace lorvane;
using namespace lorvane::bench;
namespace fs = std::filesystem;

constexpr std::u16string_view bySubject = u"strSubject";

host::Recordset tableOf(const std::vector<TemplateRow>& rows) {
    const host::Recordset table = store::newTemplateTable();
    const host::Field fields[] = {table.Fields(u"strEntryID"), table.Fields(u"strStoreID"), table.Fields(bySubject), table.Fields(u"strCategories")};
    for (const TemplateRow& row : rows) {
        table.AddNew();
        fields[0].Value(row.entryId);
        fields[1].Value(row.storeId);
        fields[2].Value(row.subject);
        fields[3].Value(row.categories);
        table.Update();
    }
    return table;
}

host::Recordset copyOf(const host::Recordset& table) {
    const host::Recordset copy = store::newTemplateTable();
    store::CopyTemplateRecords(table, copy, false);
    return copy;
}

/// The list as the chooser makes it, on its first row.
std::int32_t search(const host::Recordset& table, std::u16string_view text) {
    const host::Recordset found = store::FilterEmailSubject(table, bySubject, text);
    found.Sort(bySubject);
    const std::int32_t count = found.RecordCount();
    if (count > 0) found.MoveFirst();
    return count;
}

std::int32_t searchInCategory(const host::Recordset& table, std::u16string_view text, std::u16string_view category) {
    const host::Recordset found = store::FilterEmailSubjectAndCategory(table, text, category);
    found.Sort(bySubject);
    const std::int32_t count = found.RecordCount();
    if (count > 0) found.MoveFirst();
    return count;
}

void fill(Sqlite& database, const std::vector<TemplateRow>& rows) {
    database.execute(
        "PRAGMA temp_store = MEMORY; PRAGMA cache_size = -4000000;"
        "CREATE TABLE t (entry TEXT, store TEXT, subject TEXT, categories TEXT); BEGIN");
    Sqlite::Statement insert(database, "INSERT INTO t VALUES (?, ?, ?, ?)");
    for (const TemplateRow& row : rows) {
        insert.bind(1, row.entryId);
        insert.bind(2, row.storeId);
        insert.bind(3, row.subject);
        insert.bind(4, row.categories);
        insert.run();
    }
    database.execute("COMMIT");
}

void writeSorted(const fs::path& file, const std::vector<TemplateRow>& rows) {
    std::vector<std::string> lines;
    for (const TemplateRow& row : rows) lines.push_back(host::toUtf8(row.subject));
    std::ranges::sort(lines);
    std::ofstream out(file, std::ios::binary);
    for (const std::string& line : lines) out << line << '\n';
}

/// As many bytes as the subjects have units, with a separator each.
std::string plainBytes(const std::vector<TemplateRow>& rows) {
    std::string bytes;
    for (const TemplateRow& row : rows) {
        for (const char16_t unit : row.subject) bytes += static_cast<char>(unit & 0xFF);
        bytes += '\n';
    }
    return bytes;
}

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "not comparable: %s\n", what);
    std::exit(1);
}

struct Scale {
    std::size_t rows;
    std::string name;
    bool judged;  // whether the goals are for this size
};

/// Our times by share, for the growth.
using Times = std::vector<double>;

Times measure(const Scale& scale, const fs::path& folder, int rounds) {
    const std::vector<TemplateRow> rows = templateRows(scale.rows);
    host::Recordset table;
    std::printf("\n%s templates: loading the table %s", scale.name.c_str(), inUnits(seconds([&] { table = tableOf(rows); })).c_str());
    host::Recordset fresh;
    std::printf(", copying it %s", inUnits(seconds([&] { fresh = copyOf(table); })).c_str());
    std::printf(", first search and sort on the copy %s\n", inUnits(seconds([&] { search(fresh, shares.back().word); })).c_str());
    Sqlite database(":memory:");
    fill(database, rows);
    const fs::path sorted = folder / "subjects";
    writeSorted(sorted, rows);
    const std::string bytes = plainBytes(rows);

    Times ours;
    for (const Share& share : shares) {
        const std::string word = host::toUtf8(std::u16string(share.word));
        Sqlite::Statement select(database, "SELECT rowid FROM t WHERE subject LIKE '%" + word + "%' ORDER BY subject COLLATE NOCASE");
        Sqlite::Statement selectInCategory(database,
                                           "SELECT rowid FROM t WHERE subject LIKE '%" + word +
                                               "%' AND ',' || replace(categories, ', ', ',') || ',' LIKE '%,Sales,%' ORDER BY subject COLLATE NOCASE");
        Sqlite::Statement makeTable(database, "CREATE TEMP TABLE m AS SELECT * FROM t WHERE subject LIKE '%" + word +
                                                  "%' AND ',' || replace(categories, ', ', ',') || ',' LIKE '%,Sales,%'");
        const std::vector<std::string> ripgrep = {"rg", "-i", "--no-config", "-N", word, sorted.string()};
        const std::string found = (folder / "found").string();
        require(search(table, share.word) == static_cast<std::int32_t>(select.run()), "SQLite finds other rows");
        require(searchInCategory(table, share.word, u"Sales") == static_cast<std::int32_t>(selectInCategory.run()), "SQLite finds other rows of the category");
        const std::vector<double> times = mediansInTurns(rounds, {{[&] { use(search(table, share.word)); }},
                                                                  {[&] { use(search(fresh, share.word)); },
                                                                   [&] {
                                                                       fresh = {};
                                                                       fresh = copyOf(table);
                                                                   }},
                                                                  {[&] { use(select.run()); }},
                                                                  {[&] { runChild(ripgrep, found); }},
                                                                  {[&] { use(std::memchr(bytes.data(), 1, bytes.size())); }},
                                                                  {[&] { use(searchInCategory(table, share.word, u"Sales")); }},
                                                                  {[&] { use(selectInCategory.run()); }},
                                                                  {[&] {
                                                                       makeTable.run();
                                                                       Sqlite::Statement(database, "SELECT rowid FROM m ORDER BY subject COLLATE NOCASE").run();
                                                                   },
                                                                   [&] { database.execute("DROP TABLE IF EXISTS m"); }}});
        database.execute("DROP TABLE m");
        const bool judged = scale.judged;
        const std::string what = scale.name + ", hits of " + share.name;
        printFaster(what + ", loaded table", times[0], "SQLite", times[2], judged ? atLeast(20) : Goal{});
        printFaster(what + ", copied table", times[1], "SQLite", times[2], judged ? atLeast(20) : Goal{});
        printFaster(what + ", loaded table", times[0], "rg -i", times[3], judged ? atLeast(1) : Goal{});
        printTimes(what + ", loaded table", times[0], "plain scan", times[4], judged && share.perTenThousand == 1 ? atMost(4) : Goal{});
        printFaster(what + ", with a category", times[5], "SQLite", times[6], judged ? atLeast(5) : Goal{});
        printFaster(what + ", with a category", times[5], "SQLite, a new table", times[7]);
        ours.push_back(times[0]);
        ours.push_back(times[1]);
    }
    return ours;
}

/// Case folds by Unicode, unit by unit.
void checkFolding() {
    std::vector<TemplateRow> rows(3);
    rows[0].subject = u"GRÖSSE";
    rows[1].subject = u"GRÖẞE";
    rows[2].subject = u"something else";
    const host::Recordset table = tableOf(rows);
    require(search(table, u"grö") == 2 && search(table, u"größe") == 1, "folding");
}

}  // namespace

int main(int argc, char** argv) {
    const Arguments arguments = argumentsOf(argc, argv);
    if (arguments.folder.empty()) return std::fputs("usage: bench_search FOLDER [--smoke]\n", stderr), 2;
    try {
        cli::RunOptions options;
        options.store = fs::path(arguments.folder) / "store";
        options.locale = "en-US";
        const cli::Run run(options);
        checkFolding();
        const std::vector<Scale> scales = arguments.smoke ? std::vector<Scale>{{100, "100", false}, {1000, "1k", false}, {10'000, "10k", false}}
                                                          : std::vector<Scale>{{10'000, "10k", false}, {100'000, "100k", false}, {1'000'000, "1M", true}};
        std::vector<Times> times;
        for (const Scale& scale : scales) times.push_back(measure(scale, arguments.folder, arguments.rounds()));
        std::putchar('\n');
        for (std::size_t i = 0; i < times[0].size(); ++i) {
            const double exponent =
                growthExponent(static_cast<double>(scales.front().rows), times.front()[i], static_cast<double>(scales.back().rows), times.back()[i]);
            printLine(std::string("growth, hits of ") + shares[i / 2].name + (i % 2 ? ", copied table" : ", loaded table"), inUnits(times.front()[i]),
                      "to " + inUnits(times.back()[i]) + ", exponent", exponent, arguments.smoke ? Goal{} : atMost(1.1));
        }
    } catch (const host::HostError& error) {
        return std::fprintf(stderr, "%s\n", error.what()), 1;
    }
}
