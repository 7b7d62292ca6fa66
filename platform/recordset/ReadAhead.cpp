#include "recordset/ReadAhead.h"

#include <bit>
#include <utility>

#include "recordset/Table.h"

namespace lorvane::recordset {

namespace {

// A text is found by its cell, which must be there when the text is fetched.
constexpr std::size_t cellsAhead = 12, textsAhead = 6;

constexpr std::size_t fieldsNoted = 32;

}  // namespace

void ReadAhead::note(const Table& table, RowId row, std::size_t field) noexcept {
    if (field >= fieldsNoted) return;
    const Fields bit = Fields{1} << field;
    // The first field that is not read of every row tells that the others will be read too.
    if (((here_ | bit) & ~always_) == bit) {
        for (Fields fields = together_ & ~here_ & ~bit; fields != 0; fields &= fields - 1)
            table.prefetchText(row, static_cast<std::size_t>(std::countr_zero(fields)));
    }
    here_ |= bit;
}

void ReadAhead::moveTo(const Table& table, std::span<const RowId> index, std::size_t position) noexcept {
    always_ = here_ & before_;
    before_ = std::exchange(here_, 0);
    if ((before_ & ~always_) != 0) together_ = before_;
    if (position + cellsAhead >= index.size()) return;
    for (Fields fields = always_; fields != 0; fields &= fields - 1) {
        const auto field = static_cast<std::size_t>(std::countr_zero(fields));
        table.prefetchCell(index[position + cellsAhead], field);
        table.prefetchText(index[position + textsAhead], field);
    }
}

}  // namespace lorvane::recordset
