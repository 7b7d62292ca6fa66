#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/HostError.h"
#include "mailstore/EntryIds.h"
#include "mailstore/FileSystemKind.h"
#include "mailstore/MailStore.h"
#include "mailstore/StoreDefaults.h"

namespace lorvane::mailstore {

class SqliteDatabase;

struct SqliteOptions {
    std::int32_t busyTimeoutMs = 5000;  ///< how long to wait for another writer, in milliseconds; 0 does not wait

    std::u16string storeName{DefaultStoreName};        ///< of a new file
    std::int32_t storeKind = store_kind::PrivateFile;  ///< of a new file
    std::optional<StoreId> storeId;                    ///< of a new file; random unless given

    /// Texts that the program types into open items for a moment and saves with them. One that a program left behind that was killed meanwhile is taken out of
    /// the item on opening, unless a running program has it open; see `SqliteFile::mending`.
    std::vector<std::u16string> typedMarks;

    std::uintmax_t checkUpToBytes = 4u << 20;  ///< a file up to this size is checked as a whole on opening, a larger one where it is read
    std::function<FileSystemKind(const std::filesystem::path&)> fileSystem = fileSystemOf;
};

/// The store in a file that was opened and found suitable.
std::unique_ptr<MailStore> makeSqliteMailStore(std::shared_ptr<SqliteDatabase> database);

/// What opening a store did about texts that a killed program had typed into items for a moment.
struct Mending {
    std::vector<std::u16string> subjects;   ///< of the items that are rid of them
    std::vector<host::HostError> failures;  ///< an item each, which the next opening tries again
};

/// One file that holds a store and settings, with all its work on one connection.
///
/// Opening makes a new file, readable by its owner only, where there is none; its folder must exist. It raises host_failure::Failed, with a sentence that names
/// the file, for one that is newer, damaged, no store, on a network file system, or locked by another writer for too long, and leaves such a file as it is. One
/// thread at a time; several programs may have the file open.
class SqliteFile {
public:
    explicit SqliteFile(const std::filesystem::path& file, const SqliteOptions& options = {});

    /// Both stay usable when the SqliteFile is gone; the file is closed with the last of them.
    std::unique_ptr<MailStore> mailStore() const;
    std::unique_ptr<SettingsStore> settings() const;

    const Mending& mending() const noexcept { return mending_; }

    /// Reads the whole file; raises host_failure::Failed where it is damaged.
    void check() const;

private:
    std::shared_ptr<SqliteDatabase> database_;
    std::shared_ptr<const std::vector<std::u16string>> marks_;
    Mending mending_;
};

}  // namespace lorvane::mailstore
