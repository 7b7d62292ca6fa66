#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lorvane::html {

/// Part of a source, counted in UTF-16 units.
struct SourceRange {
    std::size_t begin = 0;
    std::size_t end = 0;

    bool empty() const noexcept { return begin == end; }
    bool operator==(const SourceRange&) const = default;
};

/// A character of the visible text: the positions in front of it and behind it.
struct CharacterRange {
    std::size_t from = 0;
    std::size_t to = 0;

    bool empty() const noexcept { return from == to; }
};

/// What has to leave a source so that a stretch of its visible text goes.
struct Removal {
    std::vector<SourceRange> characters;  ///< the characters themselves, entities whole, and `br` tags
    std::vector<SourceRange> edges;       ///< tags whose edges made a line end or parted cells; without them blocks become one
};

/// The visible text of a source, and where in the source each of its characters stands.
///
/// Positions count the UTF-16 units of the visible text, a line end counting as one. Kept as runs, so that a large body costs little more than its text.
class TextMap {
public:
    /// The visible text with one LF for each line end; positions are offsets into it.
    const std::u16string& units() const noexcept { return units_; }
    std::size_t length() const noexcept { return units_.size(); }
    /// The visible text with its line ends as CRLF.
    std::u16string text() const { return text(0, units_.size()); }
    /// The part from position `from` to position `to`, line ends as CRLF. Positions behind the end are the end.
    std::u16string text(std::size_t from, std::size_t to) const;

    /// Where text typed at a position goes. Behind the end is the end; the middle of a surrogate pair is behind the pair.
    std::size_t sourceOffsetAt(std::size_t position) const;
    /// The last position whose source offset does not lie behind `offset`.
    std::size_t positionAt(std::size_t offset) const;
    /// The character that ends at a position (a surrogate pair is one); empty at position 0.
    CharacterRange characterRangeBefore(std::size_t position) const;
    /// The character that starts at a position; empty at the end.
    CharacterRange characterRangeAfter(std::size_t position) const;
    /// The source of the character that ends at a position, an entity whole; empty at position 0 and behind what block edges made.
    SourceRange sourceBefore(std::size_t position) const;
    Removal removal(std::size_t from, std::size_t to) const;
    /// True where an offset lies inside a character's source, as in an entity.
    bool splitsCharacter(std::size_t offset) const;

    // For those who build a map, in order of the visible text.

    /// Where position 0 stands when nothing is visible.
    void setEmptyStart(std::size_t offset) noexcept { emptyStart_ = offset; }
    /// One unit that stands in the source as itself, or as another single unit.
    void addLiteral(char16_t unit, std::size_t offset);
    /// One or two units that stand for a longer piece of source.
    void addAtom(std::u16string_view units, SourceRange range);
    /// Makes one more piece of source part of the last unit: blanks folded into one around a tag.
    void extendLast(SourceRange range);
    /// A line end that a `br` made.
    void addBreak(SourceRange tag);
    /// A line end that block edges made; `behind` is where typed text goes if its line is empty.
    void addEdge(std::size_t behind, std::vector<SourceRange> tags);
    /// A tab between cells; `behind` lies in its own cell, `front` in the one in front of it if that is empty, else it is the same.
    void addTab(std::size_t front, std::size_t behind, std::vector<SourceRange> tags);

private:
    enum class Kind : std::uint8_t { Literal, Atom, Break, Edge, Tab };
    struct Segment {
        std::uint32_t position;  ///< of its first unit
        std::uint32_t count;
        std::uint32_t begin;  ///< of its source; for what markup made, where typed text goes in front of it
        std::uint32_t end;    ///< of its source; for what markup made, where typed text goes on an empty line behind it
        std::uint32_t extra;  ///< 1 + index into `extras_`, 0 for none
        Kind kind;
    };

    static bool madeByMarkup(Kind kind) noexcept { return kind >= Kind::Break; }
    std::size_t segmentOf(std::size_t unit) const;
    void push(std::u16string_view units, std::size_t begin, std::size_t end, Kind kind);
    std::size_t snapped(std::size_t position) const;

    std::u16string units_;
    std::vector<Segment> segments_;
    std::vector<std::vector<SourceRange>> extras_;
    std::size_t emptyStart_ = 0;
};

}  // namespace lorvane::html
