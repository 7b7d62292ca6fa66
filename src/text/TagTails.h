#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
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

    using Tail = std::uint32_t;

    /// That of the fragment's first piece.
    Tail tailOf(std::span<const Symbol> fragment) const;
    /// The start delimiters with this tail, in no order: the first one, and the one behind another.
    Place first(Tail tail) { return withTail(buckets_[bucketOf(tail)], tail); }
    Place after(Place place) { return withTail(entries_[place].next, entries_[place].tail); }

    /// A piece that is gone. It leaves its bucket when it is next met there: its neighbours lie all over the text, and most are never looked at again.
    void drop(Place place) { entries_[place].tail = none; }
    /// A piece that is another one now, or has another one behind it than before.
    void enter(Place place);

    bool isTooCostly() const noexcept { return steps_ > 8 * size_; }

private:
    static constexpr Tail none = 0;  // no end delimiter follows, or the piece is gone

    struct Entry {
        Tail tail;
        Place next, previous;  // in the bucket; `previous` of a piece that is in none is its own
    };

    static Tail with(Tail tail, Symbol symbol) noexcept;
    std::size_t bucketOf(Tail tail) const noexcept { return (tail >> 1) & (buckets_.size() - 1); }
    Place withTail(Place place, Tail tail);
    void setTail(Place place);
    void unlink(Place place, std::size_t bucket);

    const TagPieces& pieces_;
    std::unique_ptr<Entry[]> entries_;  // by place; nothing of meaning for one that is gone
    std::size_t size_;
    std::vector<Place> buckets_;  // the first of each
    std::size_t steps_ = 0;
};

}  // namespace lorvane::text
