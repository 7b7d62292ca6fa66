#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

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

    std::uintmax_t checkUpToBytes = 4u << 20;  ///< a file up to this size is checked as a whole on opening, a larger one where it is read
    std::function<FileSystemKind(const std::filesystem::path&)> fileSystem = fileSystemOf;
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

    /// Reads the whole file; raises host_failure::Failed where it is damaged.
    void check() const;

private:
    std::shared_ptr<SqliteDatabase> database_;
};

}  // namespace lorvane::mailstore
