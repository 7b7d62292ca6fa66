#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "recordset/RowBits.h"

/// The inner loops over text: telling and folding plain letters, and finding one text in a long run of units.
namespace lorvane::recordset {

/// What stands between two rows in a run of folded text. Folding gives small letters, so no folded text holds it, and no find crosses from row to row.
inline constexpr char16_t rowSeparator = u'A';

/// Units that must be readable behind the end of what `findRows` searches, and writable behind what `foldPlain` writes.
inline constexpr std::size_t scanSlack = 80;

/// Whether two texts are the same units. The comparison of character strings goes unit by unit.
inline bool sameUnits(std::u16string_view a, std::u16string_view b) noexcept {
    return a.size() == b.size() && (a.data() == b.data() || a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t)) == 0);
}

/// Whether every unit is below U+0080.
bool isPlain(std::u16string_view text) noexcept;

/// Writes the folded units of a plain text (`isPlain`). May write up to `scanSlack` units more than the text has.
void foldPlain(std::u16string_view text, std::uint8_t* out) noexcept;
void foldPlain(std::u16string_view text, char16_t* out) noexcept;

/// A text to be found, with the two of its units that are tried first.
template <class Unit>
struct Needle {
    std::vector<Unit> units;            ///< at least one
    std::size_t first = 0, second = 0;  ///< offsets of its two rarest units

    /// Chooses the two offsets by how often units stand in `sample`.
    void choose(const std::vector<Unit>& sample);
};

/// Rows of folded text, one behind the other, a separator behind each.
template <class Unit>
struct FoldedRows {
    const Unit* text;                        ///< `scanSlack` units more are readable
    const std::vector<std::uint32_t>& ends;  ///< where each row's separator stands
    RowId first;                             ///< the number of the first row
};

/// Adds to `found` each row that holds the needle.
void findRows(const FoldedRows<std::uint8_t>& rows, const Needle<std::uint8_t>& needle, RowBits& found) noexcept;
void findRows(const FoldedRows<char16_t>& rows, const Needle<char16_t>& needle, RowBits& found) noexcept;

}  // namespace lorvane::recordset
