#include "text/TagTails.h"

#include <bit>

namespace lorvane::text {

TagPieces::Tails::Tails(const TagPieces& pieces)
    : pieces_(pieces),
      entries_(std::make_unique_for_overwrite<Entry[]>(pieces.pieces_.size())),
      size_(pieces.pieces_.size()),
      buckets_(std::bit_ceil(size_ / 2 + 1), nowhere) {
    for (Place place = pieces.last_; place != nowhere; place = place == pieces.front_ ? nowhere : pieces.pieces_[place].previous) {
        entries_[place].previous = place;
        setTail(place);
    }
}

TagPieces::Tails::Tail TagPieces::Tails::with(Tail tail, Symbol symbol) noexcept {
    const std::uint64_t mixed = (std::uint64_t{tail} << 32 | symbol) * 0x9E3779B97F4A7C15U;
    return static_cast<Tail>(mixed >> 32 ^ mixed >> 12) | 1;
}

TagPieces::Tails::Tail TagPieces::Tails::tailOf(std::span<const Symbol> fragment) const {
    std::size_t length = 0;
    while (length < fragment.size() && !pieces_.symbols_[fragment[length++]].traits.isEnd) continue;
    Tail tail = none;
    while (length > 0) tail = with(tail, fragment[--length]);
    return tail;
}

TagPieces::Place TagPieces::Tails::withTail(Place place, Tail tail) {
    while (place != nowhere && entries_[place].tail != tail) {
        const Place next = entries_[place].next;
        if (entries_[place].tail == none) unlink(place, bucketOf(tail));
        place = next;
    }
    return place;
}

void TagPieces::Tails::unlink(Place place, std::size_t bucket) {
    Entry& entry = entries_[place];
    (entry.previous == nowhere ? buckets_[bucket] : entries_[entry.previous].next) = entry.next;
    if (entry.next != nowhere) entries_[entry.next].previous = entry.previous;
    entry.next = nowhere;
    entry.previous = place;
}

void TagPieces::Tails::setTail(Place place) {
    Entry& entry = entries_[place];
    if (entry.previous != place) unlink(place, bucketOf(entry.tail));
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
