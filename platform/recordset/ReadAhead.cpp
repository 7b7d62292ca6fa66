#include "recordset/ReadAhead.h"

#include <bit>
#include <utility>

#include "recordset/Table.h"

namespace lorvane::recordset {

namespace {

// A text is found by its cell, which must be there when the text is fetched.
constexpr std::size_t cellsAhead = 12, textsAhead = 6;

}  // namespace

void ReadAhead::moveTo(const Table& table, std::span<const RowId> index, std::size_t position) noexcept {
    const Fields always = here_ & before_;
    before_ = std::exchange(here_, 0);
    if (position + cellsAhead >= index.size()) return;
    for (Fields fields = always; fields != 0; fields &= fields - 1) {
        const auto field = static_cast<std::size_t>(std::countr_zero(fields));
        table.prefetchCell(index[position + cellsAhead], field);
        table.prefetchText(index[position + textsAhead], field);
    }
}

}  // namespace lorvane::recordset
