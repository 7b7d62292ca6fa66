#include "text/TagTails.h"

#include <bit>

namespace lorvane::text {

TagPieces::Tails::Tails(const TagPieces& pieces)
    : pieces_(pieces), tails_(pieces.pieces_.size(), none), links_(pieces.pieces_.size()), buckets_(std::bit_ceil(pieces.pieces_.size() / 2 + 1), nowhere) {
    for (Place place = 0; place < links_.size(); ++place) links_[place] = {nowhere, place};
    Place last = nowhere;
    for (Place place = pieces.front_; place != nowhere; place = pieces.after(place)) last = place;
    for (Place place = last; place != nowhere; place = place == pieces.front_ ? nowhere : pieces.pieces_[place].previous) setTail(place);
}

std::uint64_t TagPieces::Tails::with(std::uint64_t tail, Symbol symbol) noexcept {
    const std::uint64_t mixed = (std::rotl(tail, 23) ^ (symbol + 1)) * 0x9E3779B97F4A7C15U;
    return (mixed ^ mixed >> 31) | 1;
}

std::uint64_t TagPieces::Tails::tailOf(std::span<const Symbol> fragment) const {
    std::size_t length = 0;
    while (length < fragment.size() && !pieces_.symbols_[fragment[length++]].traits.isEnd) continue;
    std::uint64_t tail = none;
    while (length > 0) tail = with(tail, fragment[--length]);
    return tail;
}

TagPieces::Place TagPieces::Tails::withTail(Place place, std::uint64_t tail) const {
    while (place != nowhere && tails_[place] != tail) place = links_[place].next;
    return place;
}

void TagPieces::Tails::remove(Place place) {
    Links& links = links_[place];
    if (links.previous == place) return;
    (links.previous == nowhere ? buckets_[bucketOf(tails_[place])] : links_[links.previous].next) = links.next;
    if (links.next != nowhere) links_[links.next].previous = links.previous;
    links = {nowhere, place};
}

void TagPieces::Tails::setTail(Place place) {
    remove(place);
    const Traits& traits = pieces_.symbolAt(place).traits;
    const Place behind = pieces_.after(place);
    const std::uint64_t further = traits.isEnd || behind == nowhere ? none : tails_[behind];
    tails_[place] = traits.isEnd || further != none ? with(further, pieces_.pieces_[place].symbol) : none;
    if (!traits.isStart || tails_[place] == none) return;
    Place& first = buckets_[bucketOf(tails_[place])];
    links_[place] = {first, nowhere};
    if (first != nowhere) links_[first].previous = place;
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
