#pragma once

#include <cstdint>
#include <span>

#include "recordset/RowBits.h"

namespace lorvane::recordset {

class Table;

/// Fetches into the cache what a walk over an index, whose rows lie apart, is about to read: the fields that it reads of each row, some rows ahead; and of the
/// rows of which it reads more, the further fields side by side.
class ReadAhead {
public:
    /// A field of the current row is read.
    void note(const Table& table, RowId row, std::size_t field) noexcept;
    /// The walk came to a position of its index.
    void moveTo(const Table& table, std::span<const RowId> index, std::size_t position) noexcept;

private:
    using Fields = std::uint32_t;  // a bit each, for the first ones

    Fields here_ = 0;      // read of this row
    Fields before_ = 0;    // read of the row before
    Fields always_ = 0;    // read of both rows before this one
    Fields together_ = 0;  // read of the last row of which more was read than that
};

}  // namespace lorvane::recordset
