#include "mailstore/SqliteOpenItems.h"

#include <algorithm>

#include "host/Guards.h"
#include "mailstore/ProcessIdentity.h"
#include "mailstore/PropertyBlob.h"
#include "mailstore/SqliteItems.h"
#include "mailstore/TypedMarks.h"

namespace lorvane::mailstore {

namespace {

/// The item with what a mark may stand in.
ItemRecord readItem(SqliteDatabase& database, std::int64_t item) {
    ItemRecord record;
    {
        Statement row(database, "SELECT subject FROM items WHERE item = ?");
        if (!row.bind(item).step()) database.raiseDamaged(u"an open item is missing.");
        record.head.subject = row.text(0);
    }
    loadParts(database, item, record);
    return record;
}

class SqliteOpenNote final : public OpenNote {
public:
    SqliteOpenNote(std::shared_ptr<SqliteDatabase> database, std::int64_t row, std::int64_t item, Marks marks)
        : database_(std::move(database)), row_(row), item_(item), marks_(std::move(marks)) {}
    ~SqliteOpenNote() override {
        host::ignoringErrors([this] { close(); });
    }

private:
    void close() {
        Transaction transaction(*database_, Transaction::Kind::Write);
        {
            Statement row(*database_, "SELECT 1 FROM open_items WHERE note = ?");
            if (!row.bind(row_).step()) return;  // gone with its item
        }
        // An insertion that an error ended leaves its mark too.
        if (!marks_->empty() && holdsMark(readItem(*database_, item_), *marks_)) return;
        Statement(*database_, "DELETE FROM open_items WHERE note = ?").bind(row_).run();
        transaction.commitUncounted();
    }

    std::shared_ptr<SqliteDatabase> database_;
    std::int64_t row_, item_;
    Marks marks_;
};

struct OpenItem {
    ProcessIdentity process;
    std::vector<RecipientRecord> recipients;
};

std::vector<OpenItem> openingsOf(SqliteDatabase& database, std::int64_t item) {
    std::vector<OpenItem> openings;
    Statement row(database, "SELECT process, started, machine_start, number_space, recipients FROM open_items WHERE item = ? ORDER BY note");
    row.bind(item);
    while (row.step()) {
        OpenItem& opening = openings.emplace_back();
        opening.process = {row.number(0), row.number(1), row.text(2), row.text(3)};
        opening.recipients = decodeRecipients(row.bytes(4), database.fileName());
    }
    return openings;
}

bool isAbandoned(const std::vector<OpenItem>& openings) {
    return std::ranges::all_of(openings, [](const OpenItem& opening) { return hasEnded(opening.process); });
}

void saveMended(SqliteDatabase& database, std::int64_t item, const ItemRecord& record) {
    Statement(database, "UPDATE items SET version = version + 1, subject = ? WHERE item = ?").bind(record.head.subject).bind(item).run();
    saveParts(database, item, record);
}

void mend(SqliteDatabase& database, std::int64_t item, const std::vector<std::u16string>& marks, Mending& mending) {
    if (!isAbandoned(openingsOf(database, item))) return;
    Transaction transaction(database, Transaction::Kind::Write);
    // Another program may have opened it, or looked after it, since.
    const std::vector<OpenItem> openings = openingsOf(database, item);
    if (openings.empty() || !isAbandoned(openings)) return;
    std::vector<RecipientRecord> before;
    for (const OpenItem& opening : openings) before.insert(before.end(), opening.recipients.begin(), opening.recipients.end());
    ItemRecord record = readItem(database, item);
    const bool mended = isUnsent(record) && takeMarksOut(record, marks, before);
    if (mended) saveMended(database, item, record);
    Statement(database, "DELETE FROM open_items WHERE item = ?").bind(item).run();
    transaction.commit();
    if (mended) mending.subjects.push_back(record.head.subject);
}

std::vector<std::int64_t> openItems(SqliteDatabase& database) {
    std::vector<std::int64_t> items;
    Statement row(database, "SELECT DISTINCT item FROM open_items ORDER BY item");
    while (row.step()) items.push_back(row.number(0));
    return items;
}

}  // namespace

std::int64_t addOpenItem(SqliteDatabase& database, std::int64_t item) {
    const ProcessIdentity process = thisProcess();
    Statement row(database, R"sql(
        INSERT INTO open_items (item, process, started, machine_start, number_space, recipients)
        SELECT item, ?, ?, ?, ?, recipients FROM details WHERE item = ? RETURNING note)sql");
    row.bind(process.number).bind(process.started).bind(process.machineStart).bind(process.numberSpace).bind(item);
    if (!row.step()) database.raiseDamaged(u"the properties of an item are missing.");
    return row.number(0);
}

std::unique_ptr<OpenNote> makeOpenNote(std::shared_ptr<SqliteDatabase> database, std::int64_t row, std::int64_t item, Marks marks) {
    return std::make_unique<SqliteOpenNote>(std::move(database), row, item, std::move(marks));
}

Mending mendAbandonedItems(SqliteDatabase& database, const std::vector<std::u16string>& marks) {
    Mending mending;
    if (marks.empty()) return mending;
    for (const std::int64_t item : openItems(database)) {
        try {
            mend(database, item, marks, mending);
        } catch (const host::HostError& error) {
            mending.failures.push_back(error);
        }
    }
    return mending;
}

}  // namespace lorvane::mailstore
