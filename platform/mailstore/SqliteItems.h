#pragma once

#include <cstdint>

#include "mailstore/ItemRecord.h"
#include "mailstore/SqliteDatabase.h"

/// The parts of an item that stand in tables of their own, by the item's inner number. Call within a transaction.
namespace lorvane::mailstore {

/// Writes the parts of a new or known item; parts that already stand there in the same bytes are not written again.
void saveParts(SqliteDatabase& database, std::int64_t item, const ItemRecord& record);

/// Fills everything of the record but its head.
void loadParts(SqliteDatabase& database, std::int64_t item, ItemRecord& record);

}  // namespace lorvane::mailstore
