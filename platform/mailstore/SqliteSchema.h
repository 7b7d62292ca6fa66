#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

#include "mailstore/SqliteDatabase.h"
#include "mailstore/SqliteStore.h"

namespace lorvane::mailstore {

/// Marks a SQLite file as a store of this program: "LRVN".
inline constexpr std::int64_t StoreApplicationId = 0x4C52564E;

/// One step of the schema: the statements that bring a file of the version in front of it to its own. Step n of a list makes version n + 1.
struct SchemaStep {
    const char* sql;
};

/// All steps from an empty file on; their number is this program's schema version. A step that was released is never changed, a change is a new step.
std::span<const SchemaStep> schemaSteps() noexcept;

/// Runs the steps that the file lacks, in one transaction. The file must have been found suitable.
void migrate(SqliteDatabase& database, std::span<const SchemaStep> steps);

enum class Found { Nothing, Store };

/// Refuses a file that can be no store of this program, by its place and its first bytes alone: SQLite has not opened it yet.
void refuseUnsuitableFile(const std::filesystem::path& file, const SqliteOptions& options);
/// Refuses an open file that is newer, damaged or foreign, and tells whether a store was made in it.
Found refuseUnsuitable(SqliteDatabase& database);

/// Opens a file as a store, and makes and fills a new one where it is absent. A file that is newer, damaged, foreign or on a network file system is refused
/// with an error and left as it is.
std::shared_ptr<SqliteDatabase> openStoreFile(const std::filesystem::path& file, const SqliteOptions& options);

}  // namespace lorvane::mailstore
