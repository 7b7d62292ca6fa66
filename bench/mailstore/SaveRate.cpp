// Prints how a store in a file does beside bare SQLite: saves a second, listing a folder, opening, asking for changes.
// Usage: bench_mailstore FOLDER [--smoke]   (an empty folder on the disk to be measured; --smoke runs a hundredth of it, to see that it runs)

#include <sqlite3.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "host/HostError.h"
#include "mailstore/PropertyBlob.h"
#include "mailstore/SqliteStore.h"

namespace {

using namespace lorvane::mailstore;
namespace fs = std::filesystem;

double seconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

ItemRecord typicalMail(int number) {
    ItemRecord record;
    record.head.subject = u"Quotation for the second quarter";
    record.head.subject += static_cast<char16_t>(u'0' + number % 10);
    record.head.categories = u"Sales, Customers";
    record.bodyKind = BodyKind::Html;
    record.body.assign(4000, u'x');
    record.properties[tags::SenderName] = std::u16string(u"John Public");
    record.properties[tags::SenderAddress] = std::u16string(u"john@example.com");
    record.properties[tags::CreationTime] = DateTime{46762.375};
    record.properties[tags::MessageFlags] = std::int32_t{9};
    record.recipients.push_back({u"Jane Public", u"jane@example.com", u"SMTP", 1, true});
    return record;
}

/// The same bytes as one row and one commit, with the same settings.
class BareSqlite {
public:
    explicit BareSqlite(const fs::path& file) {
        sqlite3_open(file.c_str(), &connection_);
        sqlite3_exec(connection_, "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; CREATE TABLE t (id INTEGER PRIMARY KEY, folder INTEGER, data BLOB)",
                     nullptr, nullptr, nullptr);
        sqlite3_prepare_v2(connection_, "INSERT INTO t (folder, data) VALUES (1, ?)", -1, &insert_, nullptr);
    }
    BareSqlite(const BareSqlite&) = delete;
    BareSqlite& operator=(const BareSqlite&) = delete;
    ~BareSqlite() {
        sqlite3_finalize(insert_);
        sqlite3_close(connection_);
    }
    void save(const Bytes& data) {
        sqlite3_bind_blob64(insert_, 1, data.data(), data.size(), SQLITE_STATIC);
        sqlite3_step(insert_);
        sqlite3_reset(insert_);
    }

private:
    sqlite3* connection_ = nullptr;
    sqlite3_stmt* insert_ = nullptr;
};

std::size_t bytesOf(const ItemRecord& record) {
    return 2 * (record.head.subject.size() + record.head.categories.size() + record.head.messageClass.size() + record.body.size()) +
           encodeProperties(record.properties).size() + encodeRecipients(record.recipients).size() + encodeUserProperties(record.userProperties).size() + 64;
}

void saves(const fs::path& folder, std::size_t attachmentSize, int count) {
    ItemRecord record = typicalMail(0);
    if (attachmentSize > 0) {
        record.attachments.resize(1);
        record.attachments[0].data = std::make_shared<const Bytes>(attachmentSize, std::uint8_t{7});
    }
    const auto store = SqliteFile(folder / ("saves" + std::to_string(attachmentSize))).mailStore();
    const std::u16string inbox = store->wellKnownFolder(6)->entryId;
    BareSqlite bare(folder / ("bare" + std::to_string(attachmentSize)));
    const Bytes data(bytesOf(record) + attachmentSize, std::uint8_t{7});
    double ours = 0, theirs = 0;
    // In turns, so that both meet the same moods of the disk.
    for (int round = 0; round < 10; ++round) {
        ours += seconds([&] {
            for (int i = 0; i < count / 10; ++i) store->saveItem(inbox, record);
        });
        theirs += seconds([&] {
            for (int i = 0; i < count / 10; ++i) bare.save(data);
        });
    }
    std::printf("save, %7zu bytes:  store %8.0f/s   bare SQLite commits %8.0f/s   ratio %.2f\n", data.size(), count / ours, count / theirs, theirs / ours);
}

void listing(const fs::path& folder, int count) {
    const fs::path file = folder / "listing";
    std::u16string inbox;
    {
        const auto store = SqliteFile(file).mailStore();
        inbox = store->wellKnownFolder(6)->entryId;
        for (int i = 0; i < count; ++i) store->saveItem(inbox, typicalMail(i));
    }
    std::unique_ptr<MailStore> store;
    const double opening = seconds([&] { store = SqliteFile(file).mailStore(); });
    const double first = seconds([&] { store->itemHeads(inbox); });
    const double again = seconds([&] { store->itemHeads(inbox); });
    const double asking = seconds([&] {
        for (int i = 0; i < count; ++i) store->changeCount();
    });
    std::printf("open a file of %ju bytes:  %.2f ms\n", fs::file_size(file), opening * 1e3);
    std::printf("list %d items:  %.1f ms, again %.1f ms\n", count, first * 1e3, again * 1e3);
    std::printf("changeCount:  %.2f us\n", asking / count * 1e6);
    SqliteOptions small;
    small.checkUpToBytes = ~std::uintmax_t{0};
    const double checked = seconds([&] { SqliteFile(file, small).mailStore(); });
    std::printf("open it with a check of the whole file:  %.2f ms\n", checked * 1e3);
}

}  // namespace

int main(int argc, char** argv) {
    const bool smoke = argc == 3 && std::string_view(argv[2]) == "--smoke";
    if (argc != 2 && !smoke) return std::fputs("usage: bench_mailstore FOLDER [--smoke]\n", stderr), 2;
    try {
        const fs::path folder = argv[1];
        saves(folder, 0, smoke ? 30 : 3000);
        saves(folder, 100'000, smoke ? 10 : 500);
        saves(folder, 1u << 20, smoke ? 10 : 100);
        listing(folder, smoke ? 100 : 10'000);
    } catch (const lorvane::host::HostError& error) {
        return std::fprintf(stderr, "%s\n", error.what()), 1;
    }
}
