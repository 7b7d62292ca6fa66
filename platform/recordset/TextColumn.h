#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "host/Variant.h"
#include "recordset/RowBits.h"
#include "recordset/TextPool.h"

namespace lorvane::recordset {

/// What a cell holds: nothing was ever assigned, Null was, or a value (for text the empty one too).
enum class CellState : std::uint8_t { Empty, Null, Value };

/// The cells of one text field: eight bytes a row, and the texts in a pool. A text that is the same as in the row appended or assigned before, as an identity
/// that all rows share, stands there once. A text that was handed out by another column, and comes back in a cell of this one, stays in that one's pool.
///
/// For searching, the text is kept a second time, folded, in blocks of rows that are made at the first search that needs them and dropped when a row of theirs
/// changes; a block whose folded units all fit a byte takes a byte a unit.
class TextColumn {
public:
    TextColumn();
    ~TextColumn();
    TextColumn(TextColumn&&) noexcept;
    TextColumn& operator=(TextColumn&&) noexcept;

    /// The text is given as units, or as `kept` where a cell handed it out.
    void append(CellState state, std::u16string_view text, const host::KeptText* kept = nullptr);
    void assign(RowId row, CellState state, std::u16string_view text, const host::KeptText* kept = nullptr);
    void removeLast() noexcept;

    std::size_t size() const noexcept { return cells_.size(); }
    CellState state(RowId row) const noexcept { return std::min(static_cast<CellState>(cells_[row] >> kindShift & 3), CellState::Value); }
    std::u16string_view text(RowId row) const noexcept { return textOf(cells_[row]); }
    std::size_t length(RowId row) const noexcept { return lengthOf(cells_[row]); }
    /// Whether every unit of the text is below U+0080.
    bool isPlainText(RowId row) const noexcept { return (cells_[row] >> kindShift & 3) == plainKind; }
    /// The text of a cell with a value, for whoever passes it on.
    host::KeptText keptText(RowId row) const { return {pools_[poolOf(cells_[row])], cells_[row] & ~poolMask}; }

    /// Fetches a row's cell into the cache, or the text of one whose cell is there.
    void prefetchCell(RowId row) const noexcept { __builtin_prefetch(cells_.data() + row); }
    void prefetchText(RowId row) const noexcept {
        constexpr std::size_t unitsOfLine = 64 / sizeof(char16_t);
        const std::u16string_view text = textOf(cells_[row]);
        __builtin_prefetch(text.data());
        if (text.size() > unitsOfLine / 2) __builtin_prefetch(text.data() + unitsOfLine);
    }

    /// Adds to `rows` each row whose text holds `folded`, a text folded unit by unit. The empty text is in every value.
    void findContaining(std::u16string_view folded, RowBits& rows) const;

    /// Takes what `source` keeps for searching, for the blocks of rows in front of `count`, which have the same texts as its own, that have nothing yet.
    void shareBlocks(const TextColumn& source, std::size_t count) const;

    /// Goes up whenever the text of a row that was there changes.
    std::uint64_t edition() const noexcept { return edition_; }

private:
    // The number of the text in its pool, with its kind and whose pool that is as the four marks.
    using Cell = std::uint64_t;
    static constexpr std::size_t kindShift = 32, poolShift = 34;
    static constexpr Cell poolMask = Cell{3} << poolShift;
    static constexpr std::uint32_t plainKind = 3;  // the others are the states
    // A text is in the column's own pool, where it was put for this cell or for another one as well; or in that of another column.
    enum Pool : std::size_t { own, ownShared, firstForeign, poolCount = 4 };
    struct Block;

    static std::size_t poolOf(Cell cell) noexcept { return cell >> poolShift & 3; }
    static std::size_t lengthOf(Cell cell) noexcept { return cell >> 36; }
    std::u16string_view textOf(Cell cell) const noexcept { return pools_[poolOf(cell)]->keptText(cell); }

    std::size_t blockCount() const noexcept;
    Cell store(CellState state, std::u16string_view text, const host::KeptText* kept);
    std::optional<Cell> cellIn(const host::KeptText& kept);
    void renewPool();
    void abandon(RowId row) noexcept;
    void compact();
    const Block& blockAt(std::size_t number) const;

    std::shared_ptr<TextPool> pool_;
    std::array<std::shared_ptr<const TextPool>, poolCount> pools_;  // by the mark of the cells in them
    std::vector<Cell> cells_;
    Cell last_ = 0;              // of the text that was stored last
    std::size_t abandoned_ = 0;  // units of the own pool that their first cell does not point at any more
    std::uint64_t edition_ = 0;
    mutable std::vector<std::shared_ptr<const Block>> blocks_;
};

}  // namespace lorvane::recordset
