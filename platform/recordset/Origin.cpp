#include "recordset/Origin.h"

#include <algorithm>

#include "recordset/Table.h"

namespace lorvane::recordset {

void Origin::add(RowId own, const Table& source, std::size_t field, RowId sourceRow) {
    // A copy of a copy is traced back to the first, since those in between are often gone soon.
    const Origin& further = source.origin(field);
    const Run* const run = further.runOf(sourceRow);
    if (run && (runs_.empty() ? further.source(field) != nullptr : isOf(further.sourceId_, further.edition_))) {
        if (runs_.empty()) begin(further.sourceId_, further.edition_, further.source_);
        return append(own, run->source + (sourceRow - run->own));
    }
    const std::uint64_t edition = source.textColumn(field)->edition();
    if (runs_.empty()) begin(source.id(), edition, source.weak_from_this());
    if (isOf(source.id(), edition)) append(own, sourceRow);
}

void Origin::begin(std::uint64_t sourceId, std::uint64_t edition, std::weak_ptr<const Table> source) {
    sourceId_ = sourceId;
    edition_ = edition;
    source_ = std::move(source);
}

void Origin::append(RowId own, RowId sourceRow) {
    const RowId next = runs_.empty() ? 0 : runs_.back().source + runs_.back().count;
    if (sourceRow < next) return;
    if (!runs_.empty() && sourceRow == next && own == runs_.back().own + runs_.back().count)
        ++runs_.back().count;
    else
        runs_.push_back({own, sourceRow, 1});
}

std::shared_ptr<const Table> Origin::source(std::size_t field) const {
    if (runs_.empty()) return nullptr;
    std::shared_ptr<const Table> table = source_.lock();
    return table && table->textColumn(field)->edition() == edition_ ? table : nullptr;
}

const Origin::Run* Origin::runOf(RowId own) const noexcept {
    const auto behind = std::ranges::upper_bound(runs_, own, {}, &Run::own);
    if (behind == runs_.begin()) return nullptr;
    const Run& run = *(behind - 1);
    return own - run.own < run.count ? &run : nullptr;
}

}  // namespace lorvane::recordset
