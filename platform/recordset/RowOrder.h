#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "recordset/FieldType.h"
#include "recordset/RowBits.h"

namespace lorvane::recordset {

class Collation;
class Table;

/// One field of a sort.
struct SortKey {
    std::size_t field = 0;
    bool descending = false;

    bool operator==(const SortKey&) const = default;
};

/// Reads "name [ASC|DESC], …", a name also in "[ ]". Raises `ItemNotFound` for an unknown name and `BadArgument` for an empty one.
std::vector<SortKey> parseSort(std::u16string_view text, std::span<const FieldDefinition> fields);

/// Negative, 0 or positive. Null and never assigned cells are equal and come in front.
int compareRows(const Table& table, std::span<const SortKey> keys, const Collation& collation, RowId a, RowId b);

/// Sorts rows that stand in ascending order; equal ones keep it.
void orderRows(const Table& table, std::span<const SortKey> keys, const Collation& collation, std::vector<RowId>& rows);

}  // namespace lorvane::recordset
