#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "recordset/RowBits.h"

namespace lorvane::recordset {

class Table;

/// Fetches into the cache what a walk over an index, whose rows lie apart, is about to read: the fields that it reads of each row, some rows ahead.
class ReadAhead {
public:
    /// A field of the current row is read.
    void note(std::size_t field) noexcept {
        if (field < fieldsNoted) here_ |= Fields{1} << field;
    }
    /// The walk came to a position of its index.
    void moveTo(const Table& table, std::span<const RowId> index, std::size_t position) noexcept;

private:
    using Fields = std::uint32_t;  // a bit each, for the first ones
    static constexpr std::size_t fieldsNoted = 32;

    Fields here_ = 0;    // read of this row
    Fields before_ = 0;  // read of the row before
};

}  // namespace lorvane::recordset
