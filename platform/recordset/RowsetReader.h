#pragma once

#include <memory>
#include <string_view>

#include "recordset/Table.h"

namespace lorvane::recordset {

/// Most cells that a rowset may have, those of rows before their changes counted too.
inline constexpr std::size_t mostRowsetCells = 5'000'000;
inline constexpr std::size_t mostRowsetFields = 4096;

/// The table that a rowset's text describes, with the state of each row: unmodified ones, those of "rs:insert" new, of "rs:update" modified, of "rs:delete"
/// deleted, the last two with the values they had before.
///
/// Any prefixes, either quotes and names in any case are read, a schema with its attribute types inside the element type or behind it, and fields that stand in
/// rows under another name. A cell that is absent was never assigned in a new row; in any other it is Null where the field takes Null. One that "rs:forcenull"
/// names is Null, unless it has a value too. Of an attribute given twice the last one counts.
///
/// Raises `error::NotARowset` for anything else, shaped rowsets among it: nothing is read by halves.
std::shared_ptr<Table> readRowset(std::u16string_view text);

}  // namespace lorvane::recordset
