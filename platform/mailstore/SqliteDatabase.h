#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "mailstore/ItemRecord.h"
#include "mailstore/WalIndex.h"

struct sqlite3;
struct sqlite3_stmt;

namespace lorvane::mailstore {

/// What a file is opened for.
enum class FileUse {
    Keep,       ///< read and written, made where it is absent
    Look,       ///< read alone, with what others save meanwhile; nothing is written to it or beside it. Error where a log stands beside it without its index
    LookAlone,  ///< read alone, of a file that nobody has open: what stands beside it does not count
    Fill,       ///< written, of a file that nobody else knows of yet: without locks, which not every file system has
};

/// One connection to one SQLite file. Every failure is a HostError (host_failure::Failed) whose sentence names the file.
class SqliteDatabase {
public:
    /// Opens the file and makes it where it is absent. `busyTimeoutMs` is how long to wait while another program writes; 0 does not wait.
    SqliteDatabase(const std::filesystem::path& file, std::int32_t busyTimeoutMs, FileUse use = FileUse::Keep);
    /// The same for a file that stands in for another one, which errors name.
    SqliteDatabase(const std::filesystem::path& file, std::int32_t busyTimeoutMs, FileUse use, const std::filesystem::path& shownAs);
    SqliteDatabase(const SqliteDatabase&) = delete;
    SqliteDatabase& operator=(const SqliteDatabase&) = delete;

    void execute(const char* sql);
    /// The number that a statement without parameters gives, as a pragma does.
    std::int64_t number(const char* sql);
    /// The word that a statement without parameters gives, as some pragmas do.
    std::string word(const char* sql);

    /// Copies the whole of one saved state into an empty file, whoever writes here meanwhile.
    void copyTo(SqliteDatabase& target);

    /// Leaves what lay beside the file when it was opened, as a crashed program leaves it, where it is, instead of taking it into the file on closing.
    void keepUntouchedOnClose();

    /// From here on `changeCount` asks the file only when somebody has committed. For a connection in WAL mode, which it keeps from then on.
    void watchWalIndex();
    /// Goes up with each committed write of this connection and whenever another one has committed, which the next call sees.
    std::uint64_t changeCount();

    /// The file in quotes, as errors name it.
    const std::u16string& fileName() const noexcept { return fileName_; }
    [[noreturn]] void raise(int code);
    [[noreturn]] void raiseDamaged(std::u16string_view detail) const;

private:
    friend class Statement;
    friend class Transaction;

    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const noexcept;
    };
    using Prepared = std::unique_ptr<sqlite3_stmt, Finalizer>;
    struct Closer {
        void operator()(sqlite3* connection) const noexcept;
    };

    sqlite3_stmt* prepared(std::string_view sql);

    std::u16string fileName_;
    bool leftByCrash_;  // something lay in the log when it was opened
    std::unique_ptr<sqlite3, Closer> connection_;
    std::map<std::string_view, Prepared> statements_;
    std::uint64_t changes_ = 0;
    std::int64_t seenByOthers_ = 0;
    WalIndex walIndex_;
    std::optional<WalIndex::Header> seenAt_;  // what `changes_` was found at
};

/// One run of a statement that the connection keeps prepared. `sql` must be a literal. Parameters are bound in their order; text and bytes must live as long
/// as the run. Text is kept as its code units, so that nothing is normalised.
class Statement {
public:
    Statement(SqliteDatabase& database, std::string_view sql);
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    ~Statement();

    Statement& bind(std::int64_t value);
    Statement& bind(std::u16string_view text);
    Statement& bind(std::span<const std::uint8_t> bytes);
    Statement& bindNull();
    Statement& bindOptional(const std::shared_ptr<const Bytes>& bytes);  ///< NULL for none

    /// Goes to the next row; false behind the last.
    bool step();
    /// Runs a statement that gives no rows.
    void run();

    std::int64_t number(int column) const;
    std::int32_t number32(int column) const;  ///< raises "damaged" for one out of range
    std::u16string text(int column) const;
    std::span<const std::uint8_t> bytes(int column) const;  ///< valid until the next step
    std::shared_ptr<const Bytes> optionalBytes(int column) const;
    bool isNull(int column) const;
    std::string word(int column) const;  ///< of a pragma; everything the store keeps itself is bytes

private:
    void check(int code);

    SqliteDatabase& database_;
    sqlite3_stmt* statement_;
    int bound_ = 0;
};

/// A transaction that is rolled back unless it is committed. One for reading sees one state of the file however many statements it runs.
class Transaction {
public:
    enum class Kind { Read, Write };
    Transaction(SqliteDatabase& database, Kind kind);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();

    void commit();           ///< once it returns, the effect is on disk
    void commitUncounted();  ///< the same for what is no change of the store's content

private:
    SqliteDatabase& database_;
    bool open_ = true;
};

}  // namespace lorvane::mailstore
