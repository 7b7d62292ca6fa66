#include "mailstore/SqliteSchema.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/HostError.h"
#include "host/TextFunctions.h"
#include "mailstore/StoreErrors.h"
#include "mailstore/StoreFiles.h"

namespace lorvane::mailstore {

namespace {

namespace fs = std::filesystem;
using host::HostError;
using host::host_failure::Failed;

// Text is kept as the bytes of its UTF-16 units, low byte first, since SQLite's own text would not carry lone surrogates and zeros. What lists need is in
// `items` alone, so that a folder is listed without a page of a body. An item has an inner number beside its identity: a move changes the latter and nothing
// else. Numbers of notes are never given again, so that a note that outlives its item takes nobody else's away.
constexpr SchemaStep Steps[] = {{R"sql(
CREATE TABLE store (
    one INTEGER PRIMARY KEY CHECK (one = 1),
    store_id BLOB NOT NULL,
    name BLOB NOT NULL,
    kind INTEGER NOT NULL,
    next_entry INTEGER NOT NULL
);
CREATE TABLE folders (
    entry INTEGER PRIMARY KEY,
    parent INTEGER REFERENCES folders (entry) ON DELETE CASCADE,
    name BLOB NOT NULL,
    folded_name BLOB NOT NULL,
    item_type INTEGER NOT NULL,
    message_class BLOB NOT NULL,
    well_known INTEGER NOT NULL,
    UNIQUE (parent, folded_name)
);
CREATE TABLE items (
    item INTEGER PRIMARY KEY,
    entry INTEGER NOT NULL UNIQUE,
    folder INTEGER NOT NULL REFERENCES folders (entry) ON DELETE CASCADE,
    version INTEGER NOT NULL,
    item_class INTEGER NOT NULL,
    message_class BLOB NOT NULL,
    subject BLOB NOT NULL,
    categories BLOB NOT NULL
);
CREATE INDEX items_of_folder ON items (folder, entry);
CREATE TABLE details (
    item INTEGER PRIMARY KEY REFERENCES items (item) ON DELETE CASCADE,
    properties BLOB NOT NULL,
    user_properties BLOB NOT NULL,
    recipients BLOB NOT NULL
);
CREATE TABLE bodies (
    item INTEGER PRIMARY KEY REFERENCES items (item) ON DELETE CASCADE,
    kind INTEGER NOT NULL,
    changed INTEGER NOT NULL,
    text BLOB NOT NULL
);
CREATE TABLE attachments (
    item INTEGER NOT NULL REFERENCES items (item) ON DELETE CASCADE,
    position INTEGER NOT NULL,
    file_name BLOB NOT NULL,
    display_name BLOB NOT NULL,
    type INTEGER NOT NULL,
    mime_type BLOB NOT NULL,
    content_id BLOB NOT NULL,
    inline INTEGER NOT NULL,
    properties BLOB NOT NULL,
    data BLOB,
    UNIQUE (item, position)
);
CREATE TABLE originals (
    item INTEGER PRIMARY KEY REFERENCES items (item) ON DELETE CASCADE,
    data BLOB NOT NULL
);
CREATE TABLE settings (
    folded_application BLOB NOT NULL,
    folded_section BLOB NOT NULL,
    folded_key BLOB NOT NULL,
    application BLOB NOT NULL,
    section BLOB NOT NULL,
    key BLOB NOT NULL,
    value BLOB NOT NULL,
    PRIMARY KEY (folded_application, folded_section, folded_key)
) WITHOUT ROWID;
)sql"},
                                {R"sql(
CREATE TABLE open_items (
    note INTEGER PRIMARY KEY AUTOINCREMENT,
    item INTEGER NOT NULL REFERENCES items (item) ON DELETE CASCADE,
    process INTEGER NOT NULL,
    started INTEGER NOT NULL,
    machine_start BLOB NOT NULL,
    number_space BLOB NOT NULL,
    recipients BLOB NOT NULL
);
)sql"}};

HostError newerFile(const std::u16string& file) {
    return HostError(Failed, u"The store " + file + u" was written by a newer version of Lorvane. It was left as it is; open it with that version.");
}

HostError foreignFile(const std::u16string& file) {
    return HostError(Failed, u"The file " + file + u" is not a store of Lorvane, or it is damaged. It was left as it is.");
}

void refuseNetwork(const fs::path& file, const SqliteOptions& options) {
    std::error_code none;
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    if (isNetworkFileSystem(options.fileSystem(fs::exists(file, none) ? file : folder))) {
        throw HostError(Failed, u"The store " + quoted(file) + u" lies on a network drive, where it cannot be kept safely. Choose a folder on this computer.");
    }
}

std::uint32_t bigEndian32(const unsigned char* bytes) {
    return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 | static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

using Header = std::array<unsigned char, 100>;

/// The file's first bytes; nothing where it has fewer. Read by SQLite's own means: where a program closes a file by itself, the locks go that SQLite has on it
/// in the whole process, and another program that closes the store then takes the log away from under this one.
std::optional<Header> firstBytes(const fs::path& file) {
    sqlite3_vfs* const system = sqlite3_vfs_find(nullptr);
    std::vector<std::max_align_t> space(static_cast<std::size_t>(system->szOsFile) / sizeof(std::max_align_t) + 1);
    auto* const in = reinterpret_cast<sqlite3_file*>(space.data());
    std::error_code none;
    const std::string path = fs::canonical(file, none).string() + std::string(2, '\0');  // behind any link, and as names of databases end
    if (system->xOpen(system, path.c_str(), in, SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        if (in->pMethods) in->pMethods->xClose(in);
        throw HostError(Failed, u"The store " + quoted(file) + u" cannot be opened. Check that you may read it.");
    }
    Header header{};
    const int read = in->pMethods->xRead(in, header.data(), static_cast<int>(header.size()), 0);
    in->pMethods->xClose(in);
    if (read == SQLITE_IOERR_SHORT_READ) return std::nullopt;
    if (read != SQLITE_OK) throw HostError(Failed, u"The store " + quoted(file) + u" cannot be read.");
    return header;
}

/// Refuses by the first bytes alone, so that SQLite never opens a file that is no store: already its opening may write beside it.
void refuseByHeader(const fs::path& file) {
    // With a journal beside it the file may stand in the middle of a commit that SQLite takes back.
    if (sizeOf(file) == 0 || sizeOf(beside(file, "-journal")) > 0) return;
    const auto header = firstBytes(file);
    constexpr std::string_view magic("SQLite format 3\0", 16);
    if (!header || magic != std::string_view(reinterpret_cast<const char*>(header->data()), magic.size())) throw foreignFile(quoted(file));
    const std::uint32_t application = bigEndian32(&(*header)[68]);
    if (application != 0 && application != StoreApplicationId) throw foreignFile(quoted(file));
    if (application == StoreApplicationId && bigEndian32(&(*header)[60]) > schemaSteps().size()) throw newerFile(quoted(file));
}

/// Makes the file with its owner's rights alone: what SQLite makes beside it takes them over.
void makePrivateFile(const fs::path& file) {
    const int made = ::open(file.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0600);
    if (made < 0) return;  // It exists, or SQLite tells why it cannot.
    ::close(made);
}

void check(SqliteDatabase& database, const char* pragma) {
    if (database.word(pragma) != "ok") database.raiseDamaged(u"its pages do not fit together.");
}

void fillNewStore(SqliteDatabase& database, const SqliteOptions& options) {
    const StoreId id = options.storeId ? *options.storeId : randomStoreId();
    const std::vector<FolderRecord> folders = initialFolders(options.storeName, options.storeKind);
    Statement(database, "INSERT INTO store (one, store_id, name, kind, next_entry) VALUES (1, ?, ?, ?, ?)")
        .bind(std::span<const std::uint8_t>(id))
        .bind(options.storeName)
        .bind(options.storeKind)
        .bind(static_cast<std::int64_t>(folders.size()) + 1)
        .run();
    std::int64_t entry = 0;
    for (const FolderRecord& folder : folders) {
        const std::u16string folded = foldedName(folder.name);
        Statement insert(database, "INSERT INTO folders (entry, parent, name, folded_name, item_type, message_class, well_known) VALUES (?, ?, ?, ?, ?, ?, ?)");
        insert.bind(++entry);
        if (entry == 1) {
            insert.bindNull();
        } else {
            insert.bind(1);
        }
        insert.bind(folder.name).bind(folded).bind(folder.defaultItemType).bind(folder.defaultMessageClass).bind(folder.wellKnown).run();
    }
}

void makeStore(SqliteDatabase& database, const SqliteOptions& options) {
    Transaction transaction(database, Transaction::Kind::Write);
    // Another program may have made it since.
    if (refuseUnsuitable(database) == Found::Store) return;
    database.execute(("PRAGMA application_id = " + std::to_string(StoreApplicationId)).c_str());
    for (const SchemaStep& step : schemaSteps()) database.execute(step.sql);
    database.execute(("PRAGMA user_version = " + std::to_string(schemaSteps().size())).c_str());
    fillNewStore(database, options);
    transaction.commit();
}

}  // namespace

std::span<const SchemaStep> schemaSteps() noexcept {
    return Steps;
}

void refuseUnsuitableFile(const fs::path& file, const SqliteOptions& options) {
    refuseNetwork(file, options);
    refuseByHeader(file);
}

Found refuseUnsuitable(SqliteDatabase& database) {
    const std::int64_t application = database.number("PRAGMA application_id");
    const std::int64_t version = database.number("PRAGMA user_version");
    if (application == 0 && version == 0 && database.number("SELECT count(*) FROM sqlite_schema") == 0) return Found::Nothing;
    if (application != StoreApplicationId) throw foreignFile(database.fileName());
    if (version > static_cast<std::int64_t>(schemaSteps().size())) throw newerFile(database.fileName());
    if (version < 1) database.raiseDamaged(u"its version cannot be read.");
    return Found::Store;
}

void migrate(SqliteDatabase& database, std::span<const SchemaStep> steps) {
    if (database.number("PRAGMA user_version") == static_cast<std::int64_t>(steps.size())) return;
    Transaction transaction(database, Transaction::Kind::Write);
    for (auto version = static_cast<std::size_t>(database.number("PRAGMA user_version")); version < steps.size(); ++version) {
        database.execute(steps[version].sql);
        database.execute(("PRAGMA user_version = " + std::to_string(version + 1)).c_str());
    }
    transaction.commit();
}

std::shared_ptr<SqliteDatabase> openStoreFile(const fs::path& file, const SqliteOptions& options) {
    refuseUnsuitableFile(file, options);
    makePrivateFile(file);
    auto database = std::make_shared<SqliteDatabase>(file, options.busyTimeoutMs);
    try {
        const Found found = refuseUnsuitable(*database);
        if (found == Found::Store && sizeOf(file) <= options.checkUpToBytes) check(*database, "PRAGMA quick_check(1)");
        if (found == Found::Nothing) makeStore(*database, options);
        migrate(*database, schemaSteps());
    } catch (const HostError&) {
        database->keepUntouchedOnClose();
        throw;
    }
    if (database->word("PRAGMA journal_mode = WAL") != "wal") {
        throw HostError(Failed, u"The store " + database->fileName() + u" cannot be kept safely on this file system. Choose another folder.");
    }
    database->watchWalIndex();
    database->changeCount();  // Changes count from here on.
    return database;
}

void SqliteFile::check() const {
    mailstore::check(*database_, "PRAGMA integrity_check(1)");
}

}  // namespace lorvane::mailstore
