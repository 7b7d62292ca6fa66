#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "mailstore/SqliteStore.h"

/// Looking after the file of a store, beside the programs that use it.
namespace lorvane::mailstore {

/// What a store was found to be.
struct StoreFindings {
    std::vector<std::u16string> faults;  ///< a sentence each; none where the store is sound
    std::int64_t version = 0;            ///< of its schema
    std::int64_t currentVersion = 0;     ///< that the next opening brings it to
    std::size_t folders = 0, items = 0;  ///< that were read, whole
};

/// Reads the whole of a store: its pages, what they refer to, and every item and setting in it. Nothing is written, not even beside the file, and other
/// programs may go on using it; what they have saved counts. Content of an older version is left unread.
///
/// Raises host_failure::Failed, with a sentence that names the file, for one that cannot be looked at: it is not there, no store, newer, damaged from its
/// start, on a network file system, or another program keeps it to itself. Not for a program that has the same file open.
StoreFindings checkStore(const std::filesystem::path& file, const SqliteOptions& options = {});

/// Makes a copy of a store, of one saved state as a whole, while other programs may go on using it. The copy is a store in one file, readable by its owner
/// only, that stands under its name when it is whole and on disk; it may lie on any file system.
///
/// Raises host_failure::Failed, with a sentence that names the file, where `target` is there already or cannot be written, or the store cannot be opened or is
/// damaged. Nothing of the copy is left then, and the store is as it was.
void backUpStore(const std::filesystem::path& file, const std::filesystem::path& target, const SqliteOptions& options = {});

}  // namespace lorvane::mailstore
