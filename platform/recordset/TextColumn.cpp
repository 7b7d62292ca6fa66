#include "recordset/TextColumn.h"

#include <algorithm>

#include "host/TextFunctions.h"
#include "recordset/Errors.h"
#include "recordset/TextScan.h"

namespace lorvane::recordset {

namespace {

constexpr std::size_t rowsOfBlock = 1024;
constexpr std::size_t shortestShared = 8;  // units

const std::array<char16_t, 256>& lowFolds() {
    static const auto table = [] {
        std::array<char16_t, 256> folds{};
        for (std::size_t unit = 0; unit < folds.size(); ++unit) folds[unit] = host::foldUnit(static_cast<char16_t>(unit));
        return folds;
    }();
    return table;
}

}  // namespace

// The folded rows of a block, a separator behind each, in one of the two widths.
struct TextColumn::Block {
    bool wide = false;
    std::vector<std::uint8_t> bytes;
    std::vector<char16_t> units;
    std::vector<std::uint32_t> ends;  // where each row's separator stands

    template <class Unit>
    bool fill(const TextColumn& column, RowId first, RowId end, std::vector<Unit>& out) {
        std::size_t total = 0;
        for (RowId row = first; row < end; ++row) total += column.length(row) + 1;
        out.resize(total + scanSlack);
        ends.clear();
        ends.reserve(end - first);
        const std::array<char16_t, 256>& low = lowFolds();
        std::size_t at = 0;
        for (RowId row = first; row < end; ++row) {
            const std::u16string_view text = column.text(row);
            if (column.isPlainText(row)) {
                foldPlain(text, out.data() + at);
            } else {
                for (std::size_t i = 0; i < text.size(); ++i) {
                    const char16_t unit = text[i] < low.size() ? low[text[i]] : host::foldUnit(text[i]);
                    if (sizeof(Unit) == 1 && unit > 0xFF) return false;
                    out[at + i] = static_cast<Unit>(unit);
                }
            }
            at += text.size();
            ends.push_back(static_cast<std::uint32_t>(at));
            out[at++] = static_cast<Unit>(rowSeparator);
        }
        return true;
    }
};

TextColumn::TextColumn() {
    renewPool();
}
TextColumn::~TextColumn() = default;
TextColumn::TextColumn(TextColumn&&) noexcept = default;
TextColumn& TextColumn::operator=(TextColumn&&) noexcept = default;

void TextColumn::append(CellState state, std::u16string_view text, const host::KeptText* kept) {
    const std::size_t block = cells_.size() / rowsOfBlock;
    cells_.push_back(store(state, text, kept));
    if (block < blocks_.size()) blocks_[block].reset();
}

void TextColumn::assign(RowId row, CellState state, std::u16string_view text, const host::KeptText* kept) {
    const Cell made = store(state, text, kept);
    ++edition_;
    abandon(row);
    cells_[row] = made;
    if (row / rowsOfBlock < blocks_.size()) blocks_[row / rowsOfBlock].reset();
    if (abandoned_ > 65536 && abandoned_ > pool_->size() / 2) compact();
}

void TextColumn::removeLast() noexcept {
    const std::size_t block = (cells_.size() - 1) / rowsOfBlock;
    abandon(static_cast<RowId>(cells_.size() - 1));
    cells_.pop_back();
    ++edition_;
    if (block < blocks_.size()) blocks_[block].reset();
}

TextColumn::Cell TextColumn::store(CellState state, std::u16string_view text, const host::KeptText* kept) {
    if (state != CellState::Value) return TextPool::numberOf(0, 0, static_cast<std::uint32_t>(state));
    if (kept) {
        if (const auto cell = cellIn(*kept)) return *cell;
        text = kept->view();
    }
    if (text.size() >= shortestShared && sameUnits(text, textOf(last_))) return last_ | Cell{ownShared} << poolShift;
    const auto offset = text.size() > TextPool::longest ? std::nullopt : pool_->add(text);
    if (!offset) raise(error::MultipleStep);
    return last_ = TextPool::numberOf(*offset, text.size(), isPlain(text) ? plainKind : static_cast<std::uint32_t>(state));
}

/// The cell of a text that a column handed out, and none where it cannot be shared.
std::optional<TextColumn::Cell> TextColumn::cellIn(const host::KeptText& kept) {
    if (kept.keeper == pool_) return kept.number | Cell{ownShared} << poolShift;
    for (std::size_t number = firstForeign; number < poolCount; ++number) {
        if (!pools_[number]) pools_[number] = std::dynamic_pointer_cast<const TextPool>(kept.keeper);
        if (pools_[number] && pools_[number] == kept.keeper) return kept.number | Cell{number} << poolShift;
    }
    return std::nullopt;
}

void TextColumn::renewPool() {
    pool_ = std::make_shared<TextPool>();
    pools_[own] = pools_[ownShared] = pool_;
    last_ = 0;
}

void TextColumn::abandon(RowId row) noexcept {
    if (poolOf(cells_[row]) == own) abandoned_ += length(row);
}

/// Moves what is still in use into a new pool. Who else holds texts of the old one keeps that.
void TextColumn::compact() {
    const std::shared_ptr<const TextPool> old = pool_;
    renewPool();
    for (Cell& cell : cells_) {
        if (poolOf(cell) < firstForeign && (cell >> kindShift & 3) >= static_cast<Cell>(CellState::Value))
            cell = store(CellState::Value, old->keptText(cell), nullptr);
    }
    abandoned_ = 0;
}

const TextColumn::Block& TextColumn::blockAt(std::size_t number) const {
    std::shared_ptr<const Block>& block = blocks_[number];
    if (!block) {
        const auto made = std::make_shared<Block>();
        const auto first = static_cast<RowId>(number * rowsOfBlock);
        const auto end = static_cast<RowId>(std::min(cells_.size(), (number + 1) * rowsOfBlock));
        if (!made->fill(*this, first, end, made->bytes)) {
            made->wide = true;
            made->bytes = {};
            made->fill(*this, first, end, made->units);
        }
        block = made;
    }
    return *block;
}

std::size_t TextColumn::blockCount() const noexcept {
    return (cells_.size() + rowsOfBlock - 1) / rowsOfBlock;
}

void TextColumn::shareBlocks(const TextColumn& source, std::size_t count) const {
    blocks_.resize(blockCount());
    source.blocks_.resize(source.blockCount());
    for (std::size_t number = 0; number < std::min(blocks_.size(), source.blocks_.size()); ++number) {
        const std::size_t end = std::min(cells_.size(), (number + 1) * rowsOfBlock);
        if (end > count || end != std::min(source.cells_.size(), (number + 1) * rowsOfBlock)) return;
        if (blocks_[number]) continue;
        source.blockAt(number);
        blocks_[number] = source.blocks_[number];
    }
}

void TextColumn::findContaining(std::u16string_view sought, RowBits& rows) const {
    if (sought.empty()) {
        for (RowId row = 0; row < cells_.size(); ++row) {
            if (state(row) == CellState::Value) rows.set(row);
        }
        return;
    }
    blocks_.resize(blockCount());
    std::optional<Needle<std::uint8_t>> narrow;
    std::optional<Needle<char16_t>> wide;
    const bool fitsBytes = std::ranges::all_of(sought, [](char16_t unit) { return unit <= 0xFF; });
    for (std::size_t number = 0; number < blocks_.size(); ++number) {
        const Block& block = blockAt(number);
        const auto first = static_cast<RowId>(number * rowsOfBlock);
        if (block.wide) {
            if (!wide) {
                wide.emplace().units.assign(sought.begin(), sought.end());
                wide->choose(block.units);
            }
            findRows(FoldedRows<char16_t>{block.units.data(), block.ends, first}, *wide, rows);
        } else if (fitsBytes) {
            if (!narrow) {
                narrow.emplace();
                for (const char16_t unit : sought) narrow->units.push_back(static_cast<std::uint8_t>(unit));
                narrow->choose(block.bytes);
            }
            findRows(FoldedRows<std::uint8_t>{block.bytes.data(), block.ends, first}, *narrow, rows);
        }
    }
}

}  // namespace lorvane::recordset
