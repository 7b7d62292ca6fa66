#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lorvane::text {

/// A word that makes a fragment a tag, and the tag the fragment becomes.
struct TagWord {
    std::u16string_view word, tag;
};

/// In the order in which a fragment is tested.
inline constexpr std::array<TagWord, 3> tagWords{{{u"FullName", u"[FullName]"}, {u"FirstName", u"[FirstName]"}, {u"Date", u"[Date]"}}};

/// A text cut in front of each start delimiter, behind each end delimiter and around each tag, for the replacing of whole fragments: runs from a start
/// delimiter to an end delimiter.
///
/// Equal pieces, any case, have one number, so that runs are compared by numbers; and each number knows its places, so that a fragment's other places are found
/// from its rarest piece. What stands between the delimiters and belongs to no fragment, which is nearly all of a common text, is not read for that. What is
/// put in is a piece of its own and joins with nothing: that, and that delimiters, tags and words never overlap, is what `canHold` asks of the delimiters. So a
/// text is cut only once.
class TagPieces {
public:
    /// A piece's place: places ascend in reading order; one is valid until its piece is replaced.
    using Place = std::uint32_t;
    static constexpr Place nowhere = UINT32_MAX;
    /// One bit for each of `tagWords`.
    using Words = std::uint8_t;

    struct Fragment {
        std::vector<std::uint32_t> symbols;
        std::size_t length = 0;  ///< in UTF-16 units
    };

    /// Whether the unit is one of ASCII and no letter: such a one is like no other in any case.
    static constexpr bool isSign(char16_t unit) noexcept { return unit < 0x80 && !((unit | 0x20) >= u'a' && (unit | 0x20) <= u'z'); }

    /// False for delimiters that are empty or hold no sign, or can share a unit with each other, with a tag, with a word or with a second one of their own; and
    /// for a text too long.
    static bool canHold(std::u16string_view text, std::u16string_view startDelimiter, std::u16string_view endDelimiter);

    /// `text` outlives the pieces.
    TagPieces(std::u16string_view text, std::u16string_view startDelimiter, std::u16string_view endDelimiter);
    TagPieces(const TagPieces&) = delete;
    TagPieces& operator=(const TagPieces&) = delete;
    ~TagPieces();

    Place first() const noexcept { return pieces_.empty() ? nowhere : 0; }
    Place after(Place place) const { return pieces_[place].next; }
    /// The first start delimiter of the whole text. What stands in front of it cannot change any more and is taken out of the look-ups.
    Place firstStart();
    /// The piece with the first end delimiter from `from` on that begins at least `distance` units behind the beginning of `from`.
    Place firstEnd(Place from, std::size_t distance) const;
    /// The words in the pieces from `from` up to `to`, with `to`.
    Words wordsIn(Place from, Place to);
    /// The run of pieces from `from` up to `to`, with `to`.
    void read(Place from, Place to, Fragment& fragment) const;
    /// Replaces a fragment wherever it stands, from the left, by the tag with this index; what remains of places that overlap stays.
    void replaceAll(const Fragment& fragment, std::size_t tag);

    bool isChanged() const noexcept { return changed_; }
    /// Writes the text as it stands over the one it was cut from, which it is never longer than.
    void write(std::u16string& text) const;

private:
    using Symbol = std::uint32_t;                      // those of the tags come first
    static constexpr Symbol unread = tagWords.size();  // of all pieces without a delimiter until their numbers are asked for

    struct Piece {
        std::uint32_t offset;  // in the text; `nowhere` for a tag that was put in
        std::uint32_t length;
        Symbol symbol;
        Place next, previous;            // in reading order
        Place nextAlike, previousAlike;  // of the same symbol, in no order
    };
    struct Traits {
        Words words = 0;
        bool isStart = false, isEnd = false;  // begins with the start delimiter, ends with the end delimiter
        bool isTag = false;
    };
    struct SymbolEntry {
        std::uint32_t offset = nowhere;  // of the first of its pieces
        std::uint32_t length = 0;
        std::uint32_t count = 0;
        Place first = nowhere;
        Traits traits{};
    };
    struct Run {
        Place first, last;
    };
    class Cutter;
    class Numbering;
    class Tails;

    void numberRest();
    const SymbolEntry& symbolAt(Place place) const { return symbols_[pieces_[place].symbol]; }
    void enter(Place place);   // into its symbol's places
    void remove(Place place);  // from its symbol's places
    void replace(Run run, std::size_t tag);
    // Each puts the fragment's places into runs_.
    bool findByRarest(const Fragment& fragment);
    bool findByTail(const Fragment& fragment);
    void findByWalk(const Fragment& fragment);

    std::u16string_view text_;
    std::size_t endLength_;  // of the end delimiter
    std::vector<Piece> pieces_;
    std::vector<SymbolEntry> symbols_;
    Place front_ = nowhere;         // the first piece that the look-ups know
    Place last_ = nowhere;          // the last one
    std::size_t known_ = 0;         // how many they know
    std::vector<Run> runs_;         // of the fragment that is being replaced
    std::size_t inVain_ = 0;        // pieces looked at, from fragments' rarest pieces, beyond those that were replaced
    std::unique_ptr<Tails> tails_;  // made when those were an eighth of the text, and given up when they are no better
    bool triedTails_ = false;
    bool changed_ = false;
    bool restIsNumbered_ = false;
};

}  // namespace lorvane::text
