#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "text/TagPieces.h"

namespace lorvane::text {

/// The pieces' tails: what stands from a piece to the first end delimiter behind its beginning. Start delimiters with equal tails are found from the tail.
///
/// For texts in which each piece stands so often that a fragment cannot be told by its rarest one. A replacement changes the tails in front of it, up to the
/// end delimiter there; a text in which that is more than a few passes over it is `isTooCostly`.
class TagPieces::Tails {
public:
    explicit Tails(const TagPieces& pieces);

    using Tail = std::uint64_t;

    /// That of the fragment's first piece.
    Tail tailOf(std::span<const Symbol> fragment) const;
    /// The start delimiters with this tail, in no order: the first one, and the one behind another.
    Place first(Tail tail) const { return withTail(buckets_[bucketOf(tail)], tail); }
    Place after(Place place) const { return withTail(entries_[place].next, entries_[place].tail); }

    /// A piece that is about to leave, or whose symbol is about to change.
    void remove(Place place);
    /// A piece that is new, or has another one behind it than before.
    void enter(Place place);

    bool isTooCostly() const noexcept { return steps_ > 8 * entries_.size(); }

private:
    static constexpr Tail none = 0;  // no end delimiter follows

    struct Entry {
        Tail tail = none;
        Place next, previous;  // in the bucket; `previous` of a piece that is in none is its own
    };

    static Tail with(Tail tail, Symbol symbol) noexcept;
    std::size_t bucketOf(Tail tail) const noexcept { return static_cast<std::size_t>(tail >> 20) & (buckets_.size() - 1); }
    Place withTail(Place place, Tail tail) const;
    void setTail(Place place);

    const TagPieces& pieces_;
    std::vector<Entry> entries_;  // by place
    std::vector<Place> buckets_;  // the first of each
    std::size_t steps_ = 0;
};

}  // namespace lorvane::text
