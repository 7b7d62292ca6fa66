#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "mailstore/MailStore.h"
#include "mailstore/SqliteDatabase.h"
#include "mailstore/SqliteStore.h"

/// Which items stand open for writing, and in which programs.
///
/// A program types a mark into an open item for a moment, and an item is saved with it. Where the program is killed just then, the mark stays. So each item
/// that a program has open has a row that names the program, made before the first mark can be saved and taken away when the item is closed without one. A row
/// whose program has ended tells where to look for a mark: no body of the store is read for it otherwise.
namespace lorvane::mailstore {

using Marks = std::shared_ptr<const std::vector<std::u16string>>;

/// Adds the row of an item, by its inner number, within a transaction that the caller commits; gives the number of the row.
std::int64_t addOpenItem(SqliteDatabase& database, std::int64_t item);

/// The note of a row that was committed. Its end takes the row away, unless the item holds one of the marks as it was saved; errors are ignored then.
std::unique_ptr<OpenNote> makeOpenNote(std::shared_ptr<SqliteDatabase> database, std::int64_t row, std::int64_t item, Marks marks);

/// Takes the marks out of unsent items whose programs have all ended, and their rows away; each item in a transaction of its own. What fails is tried again by
/// the next opening. Nothing where there are no marks.
Mending mendAbandonedItems(SqliteDatabase& database, const std::vector<std::u16string>& marks);

}  // namespace lorvane::mailstore
