#include "text/TagPieces.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "host/CaseTables.h"
#include "host/TextFunctions.h"

namespace lorvane::text {

namespace {

using host::case_tables::folded;

std::u16string foldedText(std::u16string_view text) {
    std::u16string result(text);
    for (char16_t& unit : result) unit = folded(unit);
    return result;
}

/// Whether the second text can stand so that it begins inside the first; for a text and itself not counting that it is the same one.
bool canReachInto(std::u16string_view a, std::u16string_view b, std::size_t leastShift) {
    for (std::size_t shift = leastShift; shift < a.size(); ++shift) {
        const std::size_t shared = std::min(a.size() - shift, b.size());
        if (a.substr(shift, shared) == b.substr(0, shared)) return true;
    }
    return false;
}

bool standApart(std::u16string_view a, std::u16string_view b) {
    return !canReachInto(a, b, 0) && !canReachInto(b, a, 0);
}

}  // namespace

/// Cuts the text: finds delimiters, tags and words in one pass, and gives equal pieces one number in a second one. (Apart, since the look-ups of the second go
/// all over the memory: they overlap only where nothing else stands between.)
class TagPieces::Cutter {
public:
    Cutter(TagPieces& pieces, std::u16string_view startDelimiter, std::u16string_view endDelimiter) : into_(pieces), text_(pieces.text_) {
        marks_[startMark] = foldedText(startDelimiter);
        marks_[endMark] = foldedText(endDelimiter);
        for (std::size_t i = 0; i < tagWords.size(); ++i) {
            marks_[firstTagMark + i] = foldedText(tagWords[i].tag);
            marks_[firstWordMark + i] = foldedText(tagWords[i].word);
            // In front of all others, so that the tag put in is known by its index.
            const auto length = static_cast<std::uint32_t>(tagWords[i].tag.size());
            into_.symbols_.push_back({.length = length, .traits = {.words = static_cast<Words>(1U << i), .isTag = true}});
        }
        for (const std::u16string& mark : marks_) {
            if (mark.front() < isFirst_.size()) isFirst_[mark.front()] = true;
        }
    }

    void run() {
        // Room for marks as close as they come in real markup.
        into_.pieces_.reserve(text_.size() / 8);
        traits_.reserve(text_.size() / 8);
        cut();
        number();
    }

private:
    enum : std::size_t { startMark, endMark, firstTagMark, firstWordMark = firstTagMark + tagWords.size(), noMark = firstWordMark + tagWords.size() };

    void cut() {
        while (at_ < text_.size()) {
            const char16_t unit = folded(text_[at_]);
            const std::size_t mark = unit < isFirst_.size() && !isFirst_[unit] ? noMark : markAt(unit);
            if (mark == startMark) {
                close();
                current_.isStart = true;
                take(marks_[mark].size());
            } else if (mark == endMark) {
                take(marks_[mark].size());
                current_.isEnd = true;
                close();
            } else if (mark < firstWordMark) {
                close();
                current_.isTag = true;
                add(static_cast<Symbol>(mark - firstTagMark));
                at_ += marks_[mark].size();
                begin();
            } else {
                if (mark != noMark) current_.words = static_cast<Words>(current_.words | 1U << (mark - firstWordMark));
                take(1);
            }
        }
        close();
    }

    /// What begins here; `unit` is the folded unit that stands here.
    std::size_t markAt(char16_t unit) const {
        for (std::size_t i = 0; i < marks_.size(); ++i) {
            const std::u16string& mark = marks_[i];
            if (mark.front() != unit || text_.size() - at_ < mark.size()) continue;
            std::size_t same = 1;
            while (same < mark.size() && folded(text_[at_ + same]) == mark[same]) ++same;
            if (same == mark.size()) return i;
        }
        return noMark;
    }

    void take(std::size_t length) {
        for (; length > 0; --length, ++at_) hash_ = (hash_ ^ folded(text_[at_])) * 0x9E3779B97F4A7C15U;
    }

    /// Ends the piece that was being taken, if it holds anything.
    void close() {
        if (at_ != begin_) add(static_cast<std::uint32_t>(hash_ >> 32));
        begin();
    }

    void begin() {
        begin_ = at_;
        current_ = {};
        hash_ = 0;
    }

    /// Until `number` runs, a piece that is no tag has its hash for a symbol.
    void add(Symbol symbol) {
        const auto place = static_cast<Place>(into_.pieces_.size());
        if (place != 0) into_.pieces_.back().next = place;
        into_.pieces_.push_back({static_cast<std::uint32_t>(begin_), symbol, nowhere, place - 1, nowhere, nowhere});
        traits_.push_back(current_);
    }

    /// By a table with open addressing, at most three quarters full.
    void number() {
        std::vector<Piece>& pieces = into_.pieces_;
        std::vector<SymbolEntry>& symbols = into_.symbols_;
        slots_.resize(std::bit_ceil(pieces.size() / 4 + 4));
        symbols.reserve(pieces.size() / 2 + symbols.size());
        for (std::size_t place = 0; place < pieces.size(); ++place) {
            if (traits_[place].isTag) continue;
            Piece& piece = pieces[place];
            const std::size_t end = place + 1 < pieces.size() ? pieces[place + 1].offset : text_.size();
            const SymbolEntry entry{.offset = piece.offset, .length = static_cast<std::uint32_t>(end - piece.offset), .traits = traits_[place]};
            Slot& slot = slotOf(piece.symbol, entry);
            if (slot.symbol == nowhere) {
                slot = {piece.symbol, static_cast<Symbol>(symbols.size())};
                symbols.push_back(entry);
            }
            piece.symbol = slot.symbol;
            if (symbols.size() > slots_.size() / 4 * 3) widen();
        }
    }

    struct Slot {
        std::uint32_t hash = 0;
        Symbol symbol = nowhere;
    };

    /// The one that holds this content, else the free one where it belongs.
    Slot& slotOf(std::uint32_t hash, const SymbolEntry& entry) {
        std::size_t slot = hash & (slots_.size() - 1);
        while (slots_[slot].symbol != nowhere && !(slots_[slot].hash == hash && holds(slots_[slot].symbol, entry))) slot = (slot + 1) & (slots_.size() - 1);
        return slots_[slot];
    }

    bool holds(Symbol symbol, const SymbolEntry& entry) const {
        const SymbolEntry& known = into_.symbols_[symbol];
        return known.length == entry.length && host::equalsIgnoreCase(text_.substr(known.offset, known.length), text_.substr(entry.offset, entry.length));
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

    TagPieces& into_;
    std::u16string_view text_;
    std::array<std::u16string, noMark> marks_;  // folded
    std::array<bool, 128> isFirst_{};           // of ASCII: what a mark can begin with
    std::size_t begin_ = 0, at_ = 0;            // of the piece that is being taken
    Traits current_;
    std::uint64_t hash_ = 0;
    std::vector<Traits> traits_;  // by place
    std::vector<Slot> slots_;
};

bool TagPieces::canHold(std::u16string_view text, std::u16string_view startDelimiter, std::u16string_view endDelimiter) {
    if (startDelimiter.empty() || endDelimiter.empty() || text.size() >= nowhere) return false;
    const std::u16string start = foldedText(startDelimiter);
    const std::u16string end = foldedText(endDelimiter);
    if (canReachInto(start, start, 1) || canReachInto(end, end, 1) || !standApart(start, end)) return false;
    return std::ranges::all_of(tagWords, [&](const TagWord& each) {
        const std::u16string tag = foldedText(each.tag);
        const std::u16string word = foldedText(each.word);
        return standApart(start, tag) && standApart(end, tag) && standApart(start, word) && standApart(end, word);
    });
}

TagPieces::TagPieces(std::u16string_view text, std::u16string_view startDelimiter, std::u16string_view endDelimiter)
    : text_(text), endLength_(endDelimiter.size()) {
    Cutter(*this, startDelimiter, endDelimiter).run();
    for (auto place = static_cast<Place>(pieces_.size()); place-- > 0;) enter(place);
    front_ = first();
}

void TagPieces::enter(Place place) {
    Piece& piece = pieces_[place];
    SymbolEntry& symbol = symbols_[piece.symbol];
    piece.previousAlike = nowhere;
    piece.nextAlike = symbol.first;
    if (symbol.first != nowhere) pieces_[symbol.first].previousAlike = place;
    symbol.first = place;
    ++symbol.count;
    ++known_;
}

void TagPieces::remove(Place place) {
    const Piece& piece = pieces_[place];
    SymbolEntry& symbol = symbols_[piece.symbol];
    (piece.previousAlike == nowhere ? symbol.first : pieces_[piece.previousAlike].nextAlike) = piece.nextAlike;
    if (piece.nextAlike != nowhere) pieces_[piece.nextAlike].previousAlike = piece.previousAlike;
    --symbol.count;
    --known_;
}

TagPieces::Place TagPieces::firstStart() {
    for (; front_ != nowhere && !symbolAt(front_).traits.isStart; front_ = after(front_)) remove(front_);
    return front_;
}

TagPieces::Place TagPieces::firstEnd(Place from, std::size_t distance) const {
    std::size_t passed = 0;
    for (Place place = from; place != nowhere; place = after(place)) {
        const SymbolEntry& symbol = symbolAt(place);
        passed += symbol.length;
        if (symbol.traits.isEnd && passed >= distance + endLength_) return place;
    }
    return nowhere;
}

TagPieces::Words TagPieces::wordsIn(Place from, Place to) const {
    Words words = symbolAt(to).traits.words;
    for (Place place = from; place != to; place = after(place)) words |= symbolAt(place).traits.words;
    return words;
}

void TagPieces::read(Place from, Place to, Fragment& fragment) const {
    fragment.symbols.clear();
    fragment.length = 0;
    for (Place place = from;; place = after(place)) {
        fragment.symbols.push_back(pieces_[place].symbol);
        fragment.length += symbolAt(place).length;
        if (place == to) return;
    }
}

void TagPieces::replaceAll(const Fragment& fragment, std::size_t tag) {
    if (!findByRarest(fragment)) findByWalk(fragment);
    Place replacedUpTo = nowhere;
    for (const Run run : runs_) {
        if (replacedUpTo != nowhere && run.first <= replacedUpTo) continue;
        replace(run, tag);
        replacedUpTo = run.last;
    }
}

void TagPieces::replace(Run run, std::size_t tag) {
    const Place behind = after(run.last);
    for (Place place = run.first; place != behind; place = after(place)) remove(place);
    Piece& piece = pieces_[run.first];
    piece.offset = nowhere;
    piece.symbol = static_cast<Symbol>(tag);
    piece.next = behind;
    if (behind != nowhere) pieces_[behind].previous = run.first;
    enter(run.first);
    changed_ = true;
}

/// Every place of the fragment, ascending, overlapping ones too. False where this would cost more than a walk over the text.
bool TagPieces::findByRarest(const Fragment& fragment) {
    const std::vector<Symbol>& sought = fragment.symbols;
    const auto rarest = std::ranges::min_element(sought, {}, [this](Symbol symbol) { return symbols_[symbol].count; });
    runs_.clear();
    std::size_t steps = 0;
    for (Place anchor = symbols_[*rarest].first; anchor != nowhere; anchor = pieces_[anchor].nextAlike) {
        if (++steps > known_ + sought.size()) return false;
        Run run{anchor, anchor};
        auto front = rarest;
        for (; front != sought.begin(); --front, ++steps) {
            const Place previous = pieces_[run.first].previous;
            if (previous == nowhere || pieces_[previous].symbol != *(front - 1)) break;
            run.first = previous;
        }
        if (front != sought.begin()) continue;
        auto back = rarest + 1;
        for (; back != sought.end(); ++back, ++steps) {
            const Place next = after(run.last);
            if (next == nowhere || pieces_[next].symbol != *back) break;
            run.last = next;
        }
        if (back == sought.end()) runs_.push_back(run);
    }
    if (!std::ranges::is_sorted(runs_, {}, &Run::first)) std::ranges::sort(runs_, {}, &Run::first);
    return true;
}

/// The places of the fragment, ascending, none overlapping the one before: by one walk that never looks back (Knuth, Morris, Pratt).
void TagPieces::findByWalk(const Fragment& fragment) {
    const std::vector<Symbol>& sought = fragment.symbols;
    std::vector<std::size_t> border(sought.size() + 1, 0);  // of each beginning: the longest of its own beginnings that it ends with
    for (std::size_t i = 1, length = 0; i < sought.size(); ++i) {
        while (length != 0 && sought[i] != sought[length]) length = border[length];
        if (sought[i] == sought[length]) ++length;
        border[i + 1] = length;
    }

    runs_.clear();
    std::size_t matched = 0;
    for (Place place = front_; place != nowhere; place = after(place)) {
        const Symbol symbol = pieces_[place].symbol;
        while (matched != 0 && symbol != sought[matched]) matched = border[matched];
        if (symbol == sought[matched]) ++matched;
        if (matched < sought.size()) continue;
        Run run{place, place};
        for (std::size_t i = 1; i < sought.size(); ++i) run.first = pieces_[run.first].previous;
        runs_.push_back(run);
        matched = 0;
    }
}

void TagPieces::write(std::u16string& text) const {
    std::size_t written = 0;
    for (Place place = first(); place != nowhere; place = after(place)) {
        const Piece& piece = pieces_[place];
        const std::size_t length = symbols_[piece.symbol].length;
        // A tag is never longer than the fragment it stands for, so nothing unread is overwritten.
        const char16_t* source = piece.offset == nowhere ? tagWords[piece.symbol].tag.data() : text.data() + piece.offset;
        std::u16string::traits_type::move(text.data() + written, source, length);
        written += length;
    }
    text.resize(written);
}

}  // namespace lorvane::text
