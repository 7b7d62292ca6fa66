#include "text/TagPieces.h"

#include <algorithm>

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

/// Cuts the text: finds delimiters, tags and words in one pass and gives equal pieces one number.
class TagPieces::Cutter {
public:
    Cutter(TagPieces& pieces, std::u16string_view startDelimiter, std::u16string_view endDelimiter)
        : into_(pieces), text_(pieces.text_), numbers_(leastSlots, nowhere) {
        marks_[startMark] = foldedText(startDelimiter);
        marks_[endMark] = foldedText(endDelimiter);
        for (std::size_t i = 0; i < tagWords.size(); ++i) {
            marks_[firstTagMark + i] = foldedText(tagWords[i].tag);
            marks_[firstWordMark + i] = foldedText(tagWords[i].word);
            // In front of all others, so that the tag put in is known by its index.
            const auto length = static_cast<std::uint32_t>(tagWords[i].tag.size());
            into_.symbols_.push_back({.length = length, .words = static_cast<Words>(1U << i)});
        }
        for (const std::u16string& mark : marks_) {
            if (mark.front() < isFirst_.size()) isFirst_[mark.front()] = true;
        }
    }

    void run() {
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
                add(static_cast<Symbol>(mark - firstTagMark));
                begin_ = at_ += marks_[mark].size();
            } else {
                if (mark != noMark) current_.words = static_cast<Words>(current_.words | 1U << (mark - firstWordMark));
                take(1);
            }
        }
        close();
    }

private:
    enum : std::size_t { startMark, endMark, firstTagMark, firstWordMark = firstTagMark + tagWords.size(), noMark = firstWordMark + tagWords.size() };
    static constexpr std::size_t leastSlots = 64;

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
        if (at_ != begin_) {
            current_.offset = static_cast<std::uint32_t>(begin_);
            current_.length = static_cast<std::uint32_t>(at_ - begin_);
            add(numberOfCurrent());
        }
        begin_ = at_;
        current_ = {};
        hash_ = 0;
    }

    void add(Symbol symbol) {
        const auto place = static_cast<Place>(into_.pieces_.size());
        if (place != 0) into_.pieces_.back().next = place;
        into_.pieces_.push_back({static_cast<std::uint32_t>(begin_), symbol, nowhere, place - 1, nowhere, nowhere});
    }

    /// By a table with open addressing, at most half full.
    Symbol numberOfCurrent() {
        std::vector<SymbolEntry>& symbols = into_.symbols_;
        const auto high = static_cast<std::uint32_t>(hash_ >> 32);
        std::size_t slot = high & (numbers_.size() - 1);
        for (; numbers_[slot] != nowhere; slot = (slot + 1) & (numbers_.size() - 1)) {
            const Symbol symbol = numbers_[slot];
            if (hashes_[symbol - tagWords.size()] == high && host::equalsIgnoreCase(content(symbols[symbol]), content(current_))) return symbol;
        }
        const auto symbol = static_cast<Symbol>(symbols.size());
        numbers_[slot] = symbol;
        symbols.push_back(current_);
        hashes_.push_back(high);
        if (hashes_.size() * 2 > numbers_.size()) widen();
        return symbol;
    }

    void widen() {
        numbers_.assign(numbers_.size() * 4, nowhere);
        for (std::size_t i = 0; i < hashes_.size(); ++i) {
            std::size_t slot = hashes_[i] & (numbers_.size() - 1);
            while (numbers_[slot] != nowhere) slot = (slot + 1) & (numbers_.size() - 1);
            numbers_[slot] = static_cast<Symbol>(tagWords.size() + i);
        }
    }

    std::u16string_view content(const SymbolEntry& symbol) const { return text_.substr(symbol.offset, symbol.length); }

    TagPieces& into_;
    std::u16string_view text_;
    std::array<std::u16string, noMark> marks_;  // folded
    std::array<bool, 128> isFirst_{};           // of ASCII: what a mark can begin with
    std::size_t begin_ = 0, at_ = 0;            // of the piece that is being taken
    SymbolEntry current_;
    std::uint64_t hash_ = 0;
    std::vector<Symbol> numbers_;        // by hash; `nowhere` is free
    std::vector<std::uint32_t> hashes_;  // by number, without the tags
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
    for (; front_ != nowhere && !symbolAt(front_).isStart; front_ = after(front_)) remove(front_);
    return front_;
}

TagPieces::Place TagPieces::firstEnd(Place from, std::size_t distance) const {
    std::size_t passed = 0;
    for (Place place = from; place != nowhere; place = after(place)) {
        const SymbolEntry& symbol = symbolAt(place);
        passed += symbol.length;
        if (symbol.isEnd && passed >= distance + endLength_) return place;
    }
    return nowhere;
}

TagPieces::Words TagPieces::wordsIn(Place from, Place to) const {
    Words words = symbolAt(to).words;
    for (Place place = from; place != to; place = after(place)) words |= symbolAt(place).words;
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
