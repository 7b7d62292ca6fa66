#include "crash/Marks.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>

#include "respond/TextInsert.h"

namespace lorvane::crash {

namespace {

const std::u16string mark(respond::caretMarker);

bool takeOut(std::u16string& text) {
    const std::size_t at = text.find(mark);
    if (at != std::u16string::npos) text.erase(at, mark.size());
    return at != std::u16string::npos;
}

/// The number that a statement gives, 0 where it gives none.
std::int64_t run(const std::filesystem::path& store, const char* sql) {
    sqlite3* connection = nullptr;
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_open(store.c_str(), &connection), SQLITE_OK);
    EXPECT_EQ(sqlite3_prepare_v2(connection, sql, -1, &statement, nullptr), SQLITE_OK) << sqlite3_errmsg(connection);
    const int code = sqlite3_step(statement);
    EXPECT_TRUE(code == SQLITE_ROW || code == SQLITE_DONE) << sqlite3_errmsg(connection);
    const std::int64_t number = code == SQLITE_ROW ? sqlite3_column_int64(statement, 0) : 0;
    sqlite3_finalize(statement);
    sqlite3_close(connection);
    return number;
}

}  // namespace

bool holdsMark(const mailstore::test::PlacedItem& item) {
    const mailstore::ItemRecord& record = item.record;
    const auto isIn = [](const std::u16string& text) { return text.find(mark) != std::u16string::npos; };
    return isIn(record.head.subject) || isIn(record.body) ||
           std::ranges::any_of(record.recipients, [&](const auto& recipient) { return isIn(recipient.name); });
}

mailstore::ItemRecord withoutMark(mailstore::ItemRecord record) {
    takeOut(record.head.subject);
    if (takeOut(record.body)) record.bodyChanged = true;
    return record;
}

mailstore::SqliteOptions programOptions() {
    mailstore::SqliteOptions options;
    options.typedMarks = {mark};
    return options;
}

std::int64_t notesIn(const std::filesystem::path& store) {
    return run(store, "SELECT count(*) FROM open_items");
}

void endProgramsOf(const std::filesystem::path& store) {
    run(store, "UPDATE open_items SET started = started - 1");
}

}  // namespace lorvane::crash
