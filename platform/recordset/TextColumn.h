#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "recordset/RowBits.h"

namespace lorvane::recordset {

/// What a cell holds: nothing was ever assigned, Null was, or a value (for text the empty one too).
enum class CellState : std::uint8_t { Empty, Null, Value };

/// The cells of one text field: all text in one run of UTF-16 units, eight bytes a row beside it.
///
/// For searching, the text is kept a second time, folded, in blocks of rows that are made at the first search that needs them and dropped when a row of theirs
/// changes; a block whose folded units all fit a byte takes a byte a unit.
class TextColumn {
public:
    TextColumn();
    ~TextColumn();
    TextColumn(TextColumn&&) noexcept;
    TextColumn& operator=(TextColumn&&) noexcept;

    void append(CellState state, std::u16string_view text);
    void assign(RowId row, CellState state, std::u16string_view text);
    void removeLast() noexcept;

    std::size_t size() const noexcept { return cells_.size(); }
    CellState state(RowId row) const noexcept { return static_cast<CellState>(cells_[row].packed & 3); }
    std::u16string_view text(RowId row) const noexcept { return {units_.data() + cells_[row].offset, cells_[row].packed >> 3}; }
    std::size_t length(RowId row) const noexcept { return cells_[row].packed >> 3; }
    /// Whether every unit of the text is below U+0080.
    bool isPlainText(RowId row) const noexcept { return (cells_[row].packed & 4) != 0; }

    /// Adds to `rows` each row whose text holds `folded`, a text folded unit by unit. The empty text is in every value.
    void findContaining(std::u16string_view folded, RowBits& rows) const;

    /// Takes what `source` keeps for searching, for the blocks of rows in front of `count`, which have the same texts as its own, that have nothing yet.
    void shareBlocks(const TextColumn& source, std::size_t count) const;

    /// Goes up whenever the text of a row that was there changes.
    std::uint64_t edition() const noexcept { return edition_; }

    /// Longest text of a cell, in units.
    static constexpr std::size_t longest = (std::size_t{1} << 29) - 1;

private:
    struct Cell {
        std::uint32_t offset;
        std::uint32_t packed;  // length << 3 | plain << 2 | state
    };
    struct Block;

    std::size_t blockCount() const noexcept;
    Cell store(CellState state, std::u16string_view text);
    void compact();
    const Block& blockAt(std::size_t number) const;

    std::u16string units_;
    std::vector<Cell> cells_;
    std::size_t abandoned_ = 0;  // units that no cell points at any more
    std::uint64_t edition_ = 0;
    mutable std::vector<std::shared_ptr<const Block>> blocks_;
};

}  // namespace lorvane::recordset
