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

/// The cells of one text field: all text in one run of UTF-16 units, eight bytes a row beside it. A text that is the same as in the row appended or assigned
/// before, as an identity that all rows share, stands there once.
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
    std::u16string_view text(RowId row) const noexcept { return {units_.data() + cells_[row].offset, cells_[row].packed >> 4}; }
    std::size_t length(RowId row) const noexcept { return cells_[row].packed >> 4; }
    /// Whether every unit of the text is below U+0080.
    bool isPlainText(RowId row) const noexcept { return (cells_[row].packed & 4) != 0; }

    /// Fetches a row's cell into the cache, or the text of one whose cell is there.
    void prefetchCell(RowId row) const noexcept { __builtin_prefetch(cells_.data() + row); }
    void prefetchText(RowId row) const noexcept {
        constexpr std::size_t unitsOfLine = 64 / sizeof(char16_t);
        const char16_t* const text = units_.data() + cells_[row].offset;
        __builtin_prefetch(text);
        if (cells_[row].length() > unitsOfLine / 2) __builtin_prefetch(text + unitsOfLine);
    }

    /// Adds to `rows` each row whose text holds `folded`, a text folded unit by unit. The empty text is in every value.
    void findContaining(std::u16string_view folded, RowBits& rows) const;

    /// Takes what `source` keeps for searching, for the blocks of rows in front of `count`, which have the same texts as its own, that have nothing yet.
    void shareBlocks(const TextColumn& source, std::size_t count) const;

    /// Goes up whenever the text of a row that was there changes.
    std::uint64_t edition() const noexcept { return edition_; }

    /// Longest text of a cell, in units.
    static constexpr std::size_t longest = (std::size_t{1} << 28) - 1;

private:
    struct Cell {
        std::uint32_t offset;
        std::uint32_t packed;  // length << 4 | shared << 3 | plain << 2 | state
        std::uint32_t length() const noexcept { return packed >> 4; }
    };
    struct Block;

    std::size_t blockCount() const noexcept;
    Cell store(CellState state, std::u16string_view text);
    void abandon(RowId row) noexcept;
    void compact();
    const Block& blockAt(std::size_t number) const;

    std::u16string units_;
    std::vector<Cell> cells_;
    Cell last_{0, 0};            // of the text that was stored last
    std::size_t abandoned_ = 0;  // units that their first cell does not point at any more
    std::uint64_t edition_ = 0;
    mutable std::vector<std::shared_ptr<const Block>> blocks_;
};

}  // namespace lorvane::recordset
