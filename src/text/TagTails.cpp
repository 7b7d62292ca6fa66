#include "text/TagTails.h"

#include <bit>

namespace lorvane::text {

TagPieces::Tails::Tails(const TagPieces& pieces)
    : pieces_(pieces), entries_(pieces.pieces_.size()), buckets_(std::bit_ceil(pieces.pieces_.size() / 2 + 1), nowhere) {
    for (Place place = 0; place < entries_.size(); ++place) entries_[place] = {none, nowhere, place};
    Place last = nowhere;
    for (Place place = pieces.front_; place != nowhere; place = pieces.after(place)) last = place;
    for (Place place = last; place != nowhere; place = place == pieces.front_ ? nowhere : pieces.pieces_[place].previous) setTail(place);
}

TagPieces::Tails::Tail TagPieces::Tails::with(Tail tail, Symbol symbol) noexcept {
    const Tail mixed = (std::rotl(tail, 23) ^ (symbol + 1)) * 0x9E3779B97F4A7C15U;
    return (mixed ^ mixed >> 31) | 1;
}

TagPieces::Tails::Tail TagPieces::Tails::tailOf(std::span<const Symbol> fragment) const {
    std::size_t length = 0;
    while (length < fragment.size() && !pieces_.symbols_[fragment[length++]].traits.isEnd) continue;
    Tail tail = none;
    while (length > 0) tail = with(tail, fragment[--length]);
    return tail;
}

TagPieces::Place TagPieces::Tails::withTail(Place place, Tail tail) const {
    while (place != nowhere && entries_[place].tail != tail) place = entries_[place].next;
    return place;
}

void TagPieces::Tails::remove(Place place) {
    Entry& entry = entries_[place];
    if (entry.previous == place) return;
    (entry.previous == nowhere ? buckets_[bucketOf(entry.tail)] : entries_[entry.previous].next) = entry.next;
    if (entry.next != nowhere) entries_[entry.next].previous = entry.previous;
    entry.next = nowhere;
    entry.previous = place;
}

void TagPieces::Tails::setTail(Place place) {
    remove(place);
    Entry& entry = entries_[place];
    const Traits& traits = pieces_.symbolAt(place).traits;
    const Place behind = pieces_.after(place);
    const Tail further = traits.isEnd || behind == nowhere ? none : entries_[behind].tail;
    entry.tail = traits.isEnd || further != none ? with(further, pieces_.pieces_[place].symbol) : none;
    if (!traits.isStart || entry.tail == none) return;
    Place& first = buckets_[bucketOf(entry.tail)];
    entry.next = first;
    entry.previous = nowhere;
    if (first != nowhere) entries_[first].previous = place;
    first = place;
}

void TagPieces::Tails::enter(Place place) {
    for (;; ++steps_) {
        setTail(place);
        if (place == pieces_.front_) return;
        place = pieces_.pieces_[place].previous;
        if (place == nowhere || pieces_.symbolAt(place).traits.isEnd) return;
    }
}

}  // namespace lorvane::text
