#include "mailstore/SqliteDatabase.h"

#include <sqlite3.h>

#include <bit>
#include <cerrno>
#include <cstring>
#include <limits>

#include "host/HostError.h"
#include "host/TextFunctions.h"
#include "mailstore/StoreErrors.h"
#include "mailstore/StoreFiles.h"

namespace lorvane::mailstore {

namespace {

/// No room: on the disk, of the user's share of it, or under the largest size that a file may have here. SQLite has a code for the first alone.
bool isOutOfRoom(int code, int systemError) {
    const int primary = code & 0xFF;
    const bool noRoom = systemError == ENOSPC || systemError == EDQUOT || systemError == EFBIG;
    return primary == SQLITE_FULL || ((primary == SQLITE_IOERR || primary == SQLITE_CANTOPEN) && noRoom);
}

std::u16string sentence(int code, const std::u16string& file, const char* detail) {
    switch (code & 0xFF) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return u"The store " + file + u" is in use by another program. Close that program or try again later.";
        case SQLITE_READONLY:
        case SQLITE_PERM:
            return u"The store " + file + u" may not be written.";
        case SQLITE_CANTOPEN:
            return u"The store " + file + u" cannot be opened. Check that its folder exists and that you may write there.";
        case SQLITE_TOOBIG:
            return u"The item is too large for the store " + file + u".";
        default:
            return u"The store " + file + u" could not be read or written: " + host::fromUtf8(detail) + u".";
    }
}

/// The file as a URI, whatever its name holds.
std::string uriOf(const std::filesystem::path& file, std::string_view parameter) {
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string uri = "file://";
    for (const char byte : std::filesystem::absolute(file).string()) {
        const auto value = static_cast<unsigned char>(byte);
        if (plain.find(byte) == std::string_view::npos)
            uri += {'%', digits[value >> 4], digits[value & 15]};
        else
            uri += byte;
    }
    return uri.append("?").append(parameter);
}

std::string nameFor(FileUse use, const std::filesystem::path& file) {
    switch (use) {
        case FileUse::Look:
            return uriOf(file, "readonly_shm=1");
        case FileUse::LookAlone:
            return uriOf(file, "immutable=1");
        case FileUse::Fill:
            return uriOf(file, "nolock=1");
        case FileUse::Keep:
            break;
    }
    return file.string();
}

int flagsFor(FileUse use) {
    if (use == FileUse::Keep) return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    return (use == FileUse::Fill ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY) | SQLITE_OPEN_URI;
}

}  // namespace

void SqliteDatabase::Finalizer::operator()(sqlite3_stmt* statement) const noexcept {
    sqlite3_finalize(statement);
}

void SqliteDatabase::Closer::operator()(sqlite3* connection) const noexcept {
    sqlite3_close(connection);
}

SqliteDatabase::SqliteDatabase(const std::filesystem::path& file, std::int32_t busyTimeoutMs, FileUse use) : SqliteDatabase(file, busyTimeoutMs, use, file) {}

SqliteDatabase::SqliteDatabase(const std::filesystem::path& file, std::int32_t busyTimeoutMs, FileUse use, const std::filesystem::path& shownAs)
    : fileName_(quoted(shownAs)), leftByCrash_(sizeOf(beside(file, "-wal")) > 0) {
    sqlite3* connection = nullptr;
    const int code = sqlite3_open_v2(nameFor(use, file).c_str(), &connection, flagsFor(use) | SQLITE_OPEN_EXRESCODE, nullptr);
    connection_.reset(connection);
    if (code != SQLITE_OK) raise(code);
    sqlite3_busy_timeout(connection, busyTimeoutMs);
    // A file is foreign data until it has been looked at: nothing in it may run code or reach beyond it.
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    execute("PRAGMA cell_size_check = ON");
    execute("PRAGMA foreign_keys = ON");
    execute("PRAGMA synchronous = FULL");
}

void SqliteDatabase::raise(int code) {
    const int systemError = errno;  // SQLite's own note of it leaves out what fails in a commit
    const int primary = code & 0xFF;
    if (primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB) raiseDamaged(u"its pages cannot be read.");
    sqlite3* const connection = connection_.get();
    if (isOutOfRoom(code, systemError)) {
        throw host::HostError(host::host_failure::Failed, u"The disk is full, or your share of it: the store " + fileName_ + u" could not be written.");
    }
    throw host::HostError(host::host_failure::Failed, sentence(code, fileName_, connection ? sqlite3_errmsg(connection) : sqlite3_errstr(code)));
}

void SqliteDatabase::raiseDamaged(std::u16string_view detail) const {
    throw storeDamaged(fileName_, detail);
}

void SqliteDatabase::execute(const char* sql) {
    const int code = sqlite3_exec(connection_.get(), sql, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) raise(code);
}

std::int64_t SqliteDatabase::number(const char* sql) {
    Statement statement(*this, sql);
    return statement.step() ? statement.number(0) : 0;
}

std::string SqliteDatabase::word(const char* sql) {
    Statement statement(*this, sql);
    return statement.step() ? statement.word(0) : std::string();
}

void SqliteDatabase::copyTo(SqliteDatabase& target) {
    sqlite3_backup* const copying = sqlite3_backup_init(target.connection_.get(), "main", connection_.get(), "main");
    if (!copying) target.raise(sqlite3_extended_errcode(target.connection_.get()));
    const int copied = sqlite3_backup_step(copying, -1);
    const int finished = sqlite3_backup_finish(copying);
    const int primary = copied & 0xFF;
    const bool ofSource = primary == SQLITE_BUSY || primary == SQLITE_LOCKED || primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB;
    if (ofSource) raise(copied);
    if (copied != SQLITE_DONE) target.raise(copied);
    if (finished != SQLITE_OK) target.raise(finished);
}

void SqliteDatabase::keepUntouchedOnClose() {
    if (leftByCrash_) sqlite3_db_config(connection_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

void SqliteDatabase::watchWalIndex() {
    number("PRAGMA data_version");  // a reading takes the index up
    walIndex_.attach(connection_.get());
}

std::uint64_t SqliteDatabase::changeCount() {
    const auto header = walIndex_.header();  // read in front of the question: a commit behind it is told next time
    if (header && header == seenAt_) return changes_;
    // The pragma's number stands still for this connection's own writes and changes with those of others.
    const std::int64_t byOthers = number("PRAGMA data_version");
    if (byOthers != seenByOthers_) {
        seenByOthers_ = byOthers;
        ++changes_;
    }
    seenAt_ = header;
    return changes_;
}

sqlite3_stmt* SqliteDatabase::prepared(std::string_view sql) {
    const auto found = statements_.find(sql);
    if (found != statements_.end()) return found->second.get();
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v3(connection_.get(), sql.data(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (code != SQLITE_OK) raise(code);
    statements_.emplace(sql, Prepared(statement));
    return statement;
}

Statement::Statement(SqliteDatabase& database, std::string_view sql) : database_(database), statement_(database.prepared(sql)) {}

Statement::~Statement() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

void Statement::check(int code) {
    if (code != SQLITE_OK) database_.raise(code);
}

Statement& Statement::bind(std::int64_t value) {
    check(sqlite3_bind_int64(statement_, ++bound_, value));
    return *this;
}

Statement& Statement::bind(std::u16string_view text) {
    if constexpr (std::endian::native == std::endian::little) {
        return bind(std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size() * sizeof(char16_t)));
    } else {
        Bytes units;
        units.reserve(text.size() * sizeof(char16_t));
        for (const char16_t unit : text) {
            units.push_back(static_cast<std::uint8_t>(unit & 0xFF));
            units.push_back(static_cast<std::uint8_t>(unit >> 8));
        }
        check(sqlite3_bind_blob64(statement_, ++bound_, units.data(), units.size(), SQLITE_TRANSIENT));
        return *this;
    }
}

Statement& Statement::bind(std::span<const std::uint8_t> bytes) {
    // A null address would bind NULL, which is not the same as no bytes.
    check(sqlite3_bind_blob64(statement_, ++bound_, bytes.empty() ? static_cast<const void*>("") : bytes.data(), bytes.size(), SQLITE_STATIC));
    return *this;
}

Statement& Statement::bindNull() {
    check(sqlite3_bind_null(statement_, ++bound_));
    return *this;
}

Statement& Statement::bindOptional(const std::shared_ptr<const Bytes>& bytes) {
    return bytes ? bind(std::span<const std::uint8_t>(*bytes)) : bindNull();
}

bool Statement::step() {
    const int code = sqlite3_step(statement_);
    if (code == SQLITE_ROW) return true;
    if (code != SQLITE_DONE) database_.raise(code);
    return false;
}

void Statement::run() {
    while (step()) {
    }
}

std::int64_t Statement::number(int column) const {
    return sqlite3_column_int64(statement_, column);
}

std::int32_t Statement::number32(int column) const {
    const std::int64_t value = number(column);
    if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max()) {
        database_.raiseDamaged(u"a number is out of range.");
    }
    return static_cast<std::int32_t>(value);
}

std::u16string Statement::text(int column) const {
    const std::span<const std::uint8_t> units = bytes(column);
    if (units.size() % sizeof(char16_t) != 0) database_.raiseDamaged(u"a text breaks off in the middle of a character.");
    std::u16string text(units.size() / sizeof(char16_t), u'\0');
    if constexpr (std::endian::native == std::endian::little) {
        if (!units.empty()) std::memcpy(text.data(), units.data(), units.size());
    } else {
        for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char16_t>(units[2 * i] | units[2 * i + 1] << 8);
    }
    return text;
}

std::span<const std::uint8_t> Statement::bytes(int column) const {
    if (sqlite3_column_type(statement_, column) != SQLITE_BLOB) database_.raiseDamaged(u"a value has the wrong type.");
    const void* data = sqlite3_column_blob(statement_, column);
    const int size = sqlite3_column_bytes(statement_, column);
    if (!data && size > 0) database_.raise(SQLITE_NOMEM);
    return {static_cast<const std::uint8_t*>(data), static_cast<std::size_t>(size)};
}

std::shared_ptr<const Bytes> Statement::optionalBytes(int column) const {
    if (isNull(column)) return nullptr;
    const std::span<const std::uint8_t> content = bytes(column);
    return std::make_shared<const Bytes>(content.begin(), content.end());
}

bool Statement::isNull(int column) const {
    return sqlite3_column_type(statement_, column) == SQLITE_NULL;
}

std::string Statement::word(int column) const {
    const unsigned char* text = sqlite3_column_text(statement_, column);
    return text ? reinterpret_cast<const char*>(text) : std::string();
}

Transaction::Transaction(SqliteDatabase& database, Kind kind) : database_(database) {
    Statement(database, kind == Kind::Write ? std::string_view("BEGIN IMMEDIATE") : std::string_view("BEGIN")).run();
}

Transaction::~Transaction() {
    // SQLite has rolled back by itself after some errors.
    if (open_ && !sqlite3_get_autocommit(database_.connection_.get())) sqlite3_exec(database_.connection_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::commit() {
    commitUncounted();
    ++database_.changes_;
}

void Transaction::commitUncounted() {
    Statement(database_, "COMMIT").run();
    open_ = false;
}

}  // namespace lorvane::mailstore
