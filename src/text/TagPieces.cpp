#include "text/TagPieces.h"

#include <algorithm>

#include "host/CaseTables.h"
#include "host/TextFunctions.h"
#include "text/TagTails.h"

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

bool hasSign(std::u16string_view text) {
    return std::ranges::any_of(text, TagPieces::isSign);
}

}  // namespace

bool TagPieces::canHold(std::u16string_view text, std::u16string_view startDelimiter, std::u16string_view endDelimiter) {
    if (startDelimiter.empty() || endDelimiter.empty() || text.size() >= nowhere) return false;
    const std::u16string start = foldedText(startDelimiter);
    const std::u16string end = foldedText(endDelimiter);
    if (canReachInto(start, start, 1) || canReachInto(end, end, 1) || !standApart(start, end)) return false;
    if (!hasSign(start) || !hasSign(end)) return false;
    return std::ranges::all_of(tagWords, [&](const TagWord& each) {
        const std::u16string tag = foldedText(each.tag);
        const std::u16string word = foldedText(each.word);
        return standApart(start, tag) && standApart(end, tag) && standApart(start, word) && standApart(end, word);
    });
}

TagPieces::~TagPieces() = default;

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
    for (; front_ != nowhere && !symbolAt(front_).traits.isStart; front_ = after(front_)) {
        if (pieces_[front_].symbol != unread) remove(front_);
    }
    return front_;
}

TagPieces::Place TagPieces::firstEnd(Place from, std::size_t distance) const {
    std::size_t passed = 0;
    for (Place place = from; place != nowhere; place = after(place)) {
        passed += pieces_[place].length;
        if (symbolAt(place).traits.isEnd && passed >= distance + endLength_) return place;
    }
    return nowhere;
}

TagPieces::Words TagPieces::wordsIn(Place from, Place to) {
    Words words = symbolAt(to).traits.words;
    for (Place place = from; place != to; place = after(place)) {
        if (pieces_[place].symbol == unread) numberRest();
        words |= symbolAt(place).traits.words;
    }
    return words;
}

void TagPieces::read(Place from, Place to, Fragment& fragment) const {
    fragment.symbols.clear();
    fragment.length = 0;
    for (Place place = from;; place = after(place)) {
        fragment.symbols.push_back(pieces_[place].symbol);
        fragment.length += pieces_[place].length;
        if (place == to) return;
    }
}

void TagPieces::replaceAll(const Fragment& fragment, std::size_t tag) {
    if (!triedTails_ && inVain_ > pieces_.size() / 8) {
        numberRest();
        tails_ = std::make_unique<Tails>(*this);
        triedTails_ = true;
    }
    if (tails_ && tails_->isTooCostly()) tails_.reset();
    if (!findByTail(fragment) && !findByRarest(fragment)) findByWalk(fragment);
    std::size_t count = 0;
    for (const Run run : runs_) {
        if (count == 0 || run.first > runs_[count - 1].last) runs_[count++] = run;
    }
    inVain_ -= std::min(inVain_, count * fragment.symbols.size());
    // From the right, so that the tails between two of them are made once.
    while (count > 0) replace(runs_[--count], tag);
}

void TagPieces::replace(Run run, std::size_t tag) {
    const Place behind = after(run.last);
    for (Place place = run.first; place != behind; place = after(place)) {
        if (tails_ && place != run.first) tails_->drop(place);
        if (pieces_[place].symbol != unread) remove(place);
    }
    Piece& piece = pieces_[run.first];
    piece.offset = nowhere;
    piece.length = static_cast<std::uint32_t>(tagWords[tag].tag.size());
    piece.symbol = static_cast<Symbol>(tag);
    piece.next = behind;
    (behind == nowhere ? last_ : pieces_[behind].previous) = run.first;
    enter(run.first);
    if (tails_) tails_->enter(run.first);
    changed_ = true;
}

/// Every place of the fragment, ascending, overlapping ones too. False where this would cost more than a walk over the text.
bool TagPieces::findByRarest(const Fragment& fragment) {
    const std::vector<Symbol>& sought = fragment.symbols;
    const auto rarest = std::ranges::min_element(sought, {}, [this](Symbol symbol) { return symbols_[symbol].count; });
    runs_.clear();
    std::size_t steps = 0;
    for (Place anchor = symbols_[*rarest].first; anchor != nowhere; anchor = pieces_[anchor].nextAlike) {
        if (++steps > known_ + sought.size()) break;
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
    const bool isWhole = steps <= known_ + sought.size();
    inVain_ += steps;
    if (!isWhole) return false;
    if (!std::ranges::is_sorted(runs_, {}, &Run::first)) std::ranges::sort(runs_, {}, &Run::first);
    return true;
}

/// The same from the tail of its first piece. False where there are no tails.
bool TagPieces::findByTail(const Fragment& fragment) {
    if (!tails_) return false;
    const std::vector<Symbol>& sought = fragment.symbols;
    runs_.clear();
    std::size_t steps = 0;
    for (Place place = tails_->first(tails_->tailOf(sought)); place != nowhere; place = tails_->after(place)) {
        if (steps > known_ + sought.size()) return false;
        Run run{place, place};
        std::size_t same = 0;
        for (Place at = place; at != nowhere && same < sought.size() && pieces_[at].symbol == sought[same]; at = after(at), ++same) run.last = at;
        if (same == sought.size()) runs_.push_back(run);
        steps += same;
    }
    std::ranges::sort(runs_, {}, &Run::first);
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
        // A tag is never longer than the fragment it stands for, so nothing unread is overwritten.
        const char16_t* source = piece.offset == nowhere ? tagWords[piece.symbol].tag.data() : text.data() + piece.offset;
        std::u16string::traits_type::move(text.data() + written, source, piece.length);
        written += piece.length;
    }
    text.resize(written);
}

}  // namespace lorvane::text
