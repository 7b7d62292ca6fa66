#include <algorithm>
#include <array>
#include <bit>
#include <utility>

#include "host/CaseTables.h"
#include "host/TextFunctions.h"
#include "text/TagPieces.h"
#include "text/TagTails.h"

namespace lorvane::text {

namespace {

using host::case_tables::folded;

std::u16string foldedText(std::u16string_view text) {
    std::u16string result(text);
    for (char16_t& unit : result) unit = folded(unit);
    return result;
}

/// Whether a folded text stands there, any case.
bool stands(std::u16string_view mark, std::u16string_view text, std::size_t at) {
    if (at > text.size() || text.size() - at < mark.size()) return false;
    std::size_t same = 0;
    while (same < mark.size() && folded(text[at + same]) == mark[same]) ++same;
    return same == mark.size();
}

}  // namespace

/// Cuts the text at delimiters and tags. Each of them is looked for by one of its signs.
class TagPieces::Cutter {
public:
    Cutter(TagPieces& pieces, std::u16string_view startDelimiter, std::u16string_view endDelimiter) : into_(pieces), text_(pieces.text_) {
        const std::array<std::uint32_t, 128> times = sampled();
        add(startMark, startDelimiter, times);
        add(endMark, endDelimiter, times);
        for (std::size_t i = 0; i < tagWords.size(); ++i) add(firstTagMark + i, tagWords[i].tag, times);
    }

    /// Tells of each piece whether it begins with the start delimiter, ends with the end delimiter, or is a tag.
    std::vector<Traits> run() {
        into_.pieces_.reserve(text_.size() / 8);  // room for marks as close as they come in real markup, and closer
        traits_.reserve(text_.size() / 8);
        for (std::size_t at = nextSign(0); at < text_.size(); at = nextSign(at)) {
            const std::size_t mark = markAround(at);
            if (mark == marks_.size()) {
                ++at;
                continue;
            }
            const std::size_t begin = at - marks_[mark].signOffset;
            at = begin + marks_[mark].folded.size();
            if (mark != endMark) close(begin);
            if (mark == startMark) {
                current_.isStart = true;
            } else if (mark == endMark) {
                current_.isEnd = true;
                close(at);
            } else {
                current_.isTag = true;
                tag_ = static_cast<Symbol>(mark - firstTagMark);
                close(at);
            }
        }
        close(text_.size());
        return std::move(traits_);
    }

private:
    enum : std::size_t { startMark, endMark, firstTagMark };

    struct Mark {
        std::u16string folded;
        std::size_t signOffset = 0;
        char16_t sign = 0;
    };

    /// How often signs stand in the text, by its beginning.
    std::array<std::uint32_t, 128> sampled() const {
        std::array<std::uint32_t, 128> times{};
        for (const char16_t unit : text_.substr(0, 4096)) {
            if (unit < times.size()) ++times[unit];
        }
        return times;
    }

    void add(std::size_t number, std::u16string_view text, const std::array<std::uint32_t, 128>& times) {
        Mark& mark = marks_[number];
        mark.folded = foldedText(text);
        bool found = false;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (!isSign(text[i]) || (found && times[text[i]] >= times[mark.sign])) continue;
            mark.sign = text[i];
            mark.signOffset = i;
            found = true;
        }
    }

    /// The first sign of a mark from there on. Written for the compiler to make vector code of it.
    std::size_t nextSign(std::size_t from) const noexcept {
        const char16_t a = marks_[startMark].sign, b = marks_[endMark].sign, c = marks_[firstTagMark].sign;
        from = c == a || c == b ? skipped(from, [a, b](char16_t unit) { return unit == a || unit == b; })
                                : skipped(from, [a, b, c](char16_t unit) { return unit == a || unit == b || unit == c; });
        while (from < text_.size() && text_[from] != a && text_[from] != b && text_[from] != c) ++from;
        return from;
    }

    /// The first block from there on in which a sign stands, or the rest that is no block.
    template <class IsSign>
    std::size_t skipped(std::size_t from, IsSign isSign) const noexcept {
        constexpr std::size_t block = 64;
        for (; from + block <= text_.size(); from += block) {
            const char16_t* const units = text_.data() + from;
            std::uint16_t any = 0;
            for (std::size_t i = 0; i < block; ++i) any = static_cast<std::uint16_t>(any | (isSign(units[i]) ? 0xFFFF : 0));
            if (any != 0) break;
        }
        return from;
    }

    /// The mark that has its sign here; their number where there is none.
    std::size_t markAround(std::size_t at) const {
        std::size_t number = 0;
        for (; number < marks_.size(); ++number) {
            const Mark& mark = marks_[number];
            if (text_[at] == mark.sign && at >= begin_ + mark.signOffset && stands(mark.folded, text_, at - mark.signOffset)) break;
        }
        return number;
    }

    /// Ends the piece that was being taken, if it holds anything.
    void close(std::size_t end) {
        if (end != begin_) {
            std::vector<Piece>& pieces = into_.pieces_;
            const auto place = static_cast<Place>(pieces.size());
            if (place != 0) pieces.back().next = place;
            pieces.push_back({static_cast<std::uint32_t>(begin_), static_cast<std::uint32_t>(end - begin_), current_.isTag ? tag_ : unread, nowhere, place - 1,
                              nowhere, nowhere});
            traits_.push_back(current_);
        }
        begin_ = end;
        current_ = {};
    }

    TagPieces& into_;
    std::u16string_view text_;
    std::array<Mark, firstTagMark + tagWords.size()> marks_;
    std::size_t begin_ = 0;  // of the piece that is being taken
    Traits current_;
    Symbol tag_ = 0;
    std::vector<Traits> traits_;  // by place
};

/// Gives pieces with equal content one number, by a table with open addressing, at most three quarters full.
class TagPieces::Numbering {
public:
    explicit Numbering(TagPieces& pieces) : pieces_(pieces) {
        for (std::size_t i = 0; i < tagWords.size(); ++i) {
            words_[i] = foldedText(tagWords[i].word);
            isFirst_[words_[i].front()] = true;
        }
    }

    void number(Place place, Traits traits) {
        Piece& piece = pieces_.pieces_[place];
        const std::u16string_view content = pieces_.text_.substr(piece.offset, piece.length);
        const std::uint32_t hash = read(content, traits);
        if (symbols_ >= slots_.size() / 4 * 3) widen();
        const SymbolEntry entry{.offset = piece.offset, .length = piece.length, .traits = traits};
        Slot& slot = slotOf(hash, entry);
        if (slot.symbol == nowhere) {
            slot = {hash, static_cast<Symbol>(pieces_.symbols_.size())};
            pieces_.symbols_.push_back(entry);
            ++symbols_;
        }
        piece.symbol = slot.symbol;
    }

private:
    struct Slot {
        std::uint32_t hash = 0;
        Symbol symbol = nowhere;
    };

    /// The content's hash; adds the words that it holds.
    std::uint32_t read(std::u16string_view content, Traits& traits) const {
        std::uint64_t hash = 0;
        for (std::size_t i = 0; i < content.size(); ++i) {
            const char16_t unit = folded(content[i]);
            hash = (hash ^ unit) * 0x9E3779B97F4A7C15U;
            if (unit >= isFirst_.size() || !isFirst_[unit]) continue;
            for (std::size_t word = 0; word < words_.size(); ++word) {
                if (stands(words_[word], content, i)) traits.words = static_cast<Words>(traits.words | 1U << word);
            }
        }
        return static_cast<std::uint32_t>(hash >> 32);
    }

    /// The one that holds this content, else the free one where it belongs.
    Slot& slotOf(std::uint32_t hash, const SymbolEntry& entry) {
        std::size_t slot = hash & (slots_.size() - 1);
        while (slots_[slot].symbol != nowhere && !(slots_[slot].hash == hash && holds(slots_[slot].symbol, entry))) slot = (slot + 1) & (slots_.size() - 1);
        return slots_[slot];
    }

    bool holds(Symbol symbol, const SymbolEntry& entry) const {
        const SymbolEntry& known = pieces_.symbols_[symbol];
        const std::u16string_view text = pieces_.text_;
        return known.length == entry.length && host::equalsIgnoreCase(text.substr(known.offset, known.length), text.substr(entry.offset, entry.length));
    }

    void widen() {
        const std::vector<Slot> full = std::exchange(slots_, std::vector<Slot>(slots_.size() * 2));
        for (const Slot& known : full) {
            if (known.symbol == nowhere) continue;
            std::size_t slot = known.hash & (slots_.size() - 1);
            while (slots_[slot].symbol != nowhere) slot = (slot + 1) & (slots_.size() - 1);
            slots_[slot] = known;
        }
    }

    TagPieces& pieces_;
    std::array<std::u16string, tagWords.size()> words_;  // folded
    std::array<bool, 128> isFirst_{};                    // what a word can begin with
    std::vector<Slot> slots_ = std::vector<Slot>(64);
    std::size_t symbols_ = 0;
};

TagPieces::TagPieces(std::u16string_view text, std::u16string_view startDelimiter, std::u16string_view endDelimiter)
    : text_(text), endLength_(endDelimiter.size()) {
    for (std::size_t i = 0; i < tagWords.size(); ++i) {
        // In front of all others, so that the tag put in is known by its index.
        const auto length = static_cast<std::uint32_t>(tagWords[i].tag.size());
        symbols_.push_back({.length = length, .traits = {.words = static_cast<Words>(1U << i), .isTag = true}});
    }
    symbols_.push_back({});  // unread
    const std::vector<Traits> traits = Cutter(*this, startDelimiter, endDelimiter).run();
    Numbering numbering(*this);
    for (Place place = 0; place < pieces_.size(); ++place) {
        if (traits[place].isStart || traits[place].isEnd) numbering.number(place, traits[place]);
    }
    for (auto place = static_cast<Place>(pieces_.size()); place-- > 0;) {
        if (pieces_[place].symbol != unread) enter(place);
    }
    front_ = first();
    if (!pieces_.empty()) last_ = static_cast<Place>(pieces_.size() - 1);
}

/// Gives the pieces without a delimiter their numbers too, as far as the look-ups go.
void TagPieces::numberRest() {
    if (restIsNumbered_) return;
    restIsNumbered_ = true;
    Numbering numbering(*this);
    for (Place place = front_; place != nowhere; place = after(place)) {
        if (pieces_[place].symbol != unread) continue;
        numbering.number(place, {});
        enter(place);
    }
}

}  // namespace lorvane::text
