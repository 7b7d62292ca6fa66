#include "html/TextMap.h"

#include <algorithm>

#include "html/Units.h"

namespace lorvane::html {

std::u16string TextMap::text(std::size_t from, std::size_t to) const {
    to = std::min(to, units_.size());
    std::u16string result;
    if (from >= to) return result;
    result.reserve(to - from + (to - from) / 16);
    for (std::size_t i = from; i < to; ++i) {
        if (units_[i] == u'\n') result += u'\r';
        result += units_[i];
    }
    return result;
}

std::size_t TextMap::snapped(std::size_t position) const {
    position = std::min(position, units_.size());
    const bool splitsPair = position > 0 && position < units_.size() && isHighSurrogate(units_[position - 1]) && isLowSurrogate(units_[position]);
    return splitsPair ? position + 1 : position;
}

std::size_t TextMap::segmentOf(std::size_t unit) const {
    const auto next = std::upper_bound(segments_.begin(), segments_.end(), unit, [](std::size_t value, const Segment& s) { return value < s.position; });
    return static_cast<std::size_t>(next - segments_.begin()) - 1;
}

std::size_t TextMap::sourceOffsetAt(std::size_t position) const {
    if (segments_.empty()) return emptyStart_;
    position = snapped(position);
    if (position == 0) return segments_.front().begin;
    const std::size_t index = segmentOf(position - 1);
    const Segment& segment = segments_[index];
    if (segment.kind == Kind::Literal) return segment.begin + (position - segment.position);
    // Blanks folded around a tag count as one character that ends with the last of them.
    if (segment.kind == Kind::Atom) return segment.extra == 0 ? segment.end : extras_[segment.extra - 1].back().end;
    if (index + 1 == segments_.size()) return segment.end;
    const Segment& next = segments_[index + 1];
    // In front of a tab stands an empty cell, or one that ends with what made this line.
    const bool emptyCell = next.kind == Kind::Tab && next.begin != next.end;
    return emptyCell || !madeByMarkup(next.kind) ? next.begin : segment.end;
}

std::size_t TextMap::positionAt(std::size_t offset) const {
    std::size_t best = 0;
    std::size_t bestOffset = 0;
    const auto consider = [&](std::size_t position, std::size_t at) {
        if (at > offset || at < bestOffset) return;
        best = position;
        bestOffset = at;
    };
    for (std::size_t i = 0; i < segments_.size(); ++i) {
        const Segment& segment = segments_[i];
        if (segment.kind == Kind::Literal) {
            if (offset > segment.begin) {
                const std::size_t inside = std::min<std::size_t>(segment.count, offset - segment.begin);
                consider(segment.position + inside, segment.begin + inside);
            }
        } else {
            const std::size_t position = segment.position + segment.count;
            consider(position, sourceOffsetAt(position));
        }
    }
    return snapped(best);
}

CharacterRange TextMap::characterRangeBefore(std::size_t position) const {
    position = snapped(position);
    if (position == 0) return {};
    const bool pair = position > 1 && isLowSurrogate(units_[position - 1]) && isHighSurrogate(units_[position - 2]);
    std::size_t from = position - (pair ? 2 : 1);
    // An entity of two characters leaves as one.
    const Segment& segment = segments_[segmentOf(position - 1)];
    if (segment.kind == Kind::Atom) from = std::min<std::size_t>(from, segment.position);
    return {from, position};
}

CharacterRange TextMap::characterRangeAfter(std::size_t position) const {
    position = snapped(position);
    if (position >= units_.size()) return {position, position};
    const bool pair = position + 1 < units_.size() && isHighSurrogate(units_[position]) && isLowSurrogate(units_[position + 1]);
    std::size_t to = position + (pair ? 2 : 1);
    const Segment& segment = segments_[segmentOf(position)];
    if (segment.kind == Kind::Atom) to = std::max<std::size_t>(to, segment.position + segment.count);
    return {position, to};
}

SourceRange TextMap::sourceBefore(std::size_t position) const {
    const CharacterRange range = characterRangeBefore(position);
    if (range.empty()) return {};
    const Removal removed = removal(range.from, range.to);
    if (removed.characters.empty()) return {};
    return {removed.characters.front().begin, removed.characters.back().end};
}

Removal TextMap::removal(std::size_t from, std::size_t to) const {
    Removal result;
    to = std::min(to, units_.size());
    if (from >= to) return result;
    for (std::size_t i = segmentOf(from); i < segments_.size() && segments_[i].position < to; ++i) {
        const Segment& segment = segments_[i];
        if (segment.kind == Kind::Literal) {
            const std::size_t first = std::max<std::size_t>(from, segment.position) - segment.position;
            const std::size_t last = std::min<std::size_t>(to, segment.position + segment.count) - segment.position;
            result.characters.push_back({segment.begin + first, segment.begin + last});
        } else if (!madeByMarkup(segment.kind)) {
            result.characters.push_back({segment.begin, segment.end});
        }
        if (segment.extra == 0) continue;
        const std::vector<SourceRange>& extra = extras_[segment.extra - 1];
        std::vector<SourceRange>& list = segment.kind == Kind::Edge || segment.kind == Kind::Tab ? result.edges : result.characters;
        list.insert(list.end(), extra.begin(), extra.end());
    }
    return result;
}

bool TextMap::splitsCharacter(std::size_t offset) const {
    return std::any_of(segments_.begin(), segments_.end(), [&](const Segment& segment) {
        if (offset <= segment.begin || offset >= segment.end) return false;
        if (segment.kind == Kind::Atom) return true;
        if (segment.kind != Kind::Literal) return false;
        const std::size_t unit = segment.position + (offset - segment.begin);
        return isHighSurrogate(units_[unit - 1]) && isLowSurrogate(units_[unit]);
    });
}

void TextMap::push(std::u16string_view units, std::size_t begin, std::size_t end, Kind kind) {
    segments_.push_back({static_cast<std::uint32_t>(units_.size()), static_cast<std::uint32_t>(units.size()), static_cast<std::uint32_t>(begin),
                         static_cast<std::uint32_t>(end), 0, kind});
    units_ += units;
}

void TextMap::addLiteral(char16_t unit, std::size_t offset) {
    if (!segments_.empty() && segments_.back().kind == Kind::Literal && segments_.back().end == offset && segments_.back().extra == 0) {
        ++segments_.back().count;
        ++segments_.back().end;
        units_ += unit;
        return;
    }
    push({&unit, 1}, offset, offset + 1, Kind::Literal);
}

void TextMap::addAtom(std::u16string_view units, SourceRange range) {
    push(units, range.begin, range.end, Kind::Atom);
}

void TextMap::extendLast(SourceRange range) {
    if (segments_.empty()) return;
    const Segment last = segments_.back();
    if (last.kind == Kind::Literal && last.count > 1) {
        // The last unit of a run becomes a run of its own.
        --segments_.back().count;
        --segments_.back().end;
        segments_.push_back({last.position + last.count - 1, 1, last.end - 1, last.end, 0, Kind::Atom});
    }
    Segment& segment = segments_.back();
    segment.kind = Kind::Atom;
    if (segment.end == range.begin && segment.extra == 0) {
        segment.end = static_cast<std::uint32_t>(range.end);
        return;
    }
    if (segment.extra == 0) {
        extras_.emplace_back();
        segment.extra = static_cast<std::uint32_t>(extras_.size());
    }
    extras_[segment.extra - 1].push_back(range);
}

void TextMap::addBreak(SourceRange tag) {
    push(u"\n", tag.begin, tag.end, Kind::Break);
    extras_.push_back({tag});
    segments_.back().extra = static_cast<std::uint32_t>(extras_.size());
}

void TextMap::addEdge(std::size_t behind, std::vector<SourceRange> tags) {
    push(u"\n", behind, behind, Kind::Edge);
    extras_.push_back(std::move(tags));
    segments_.back().extra = static_cast<std::uint32_t>(extras_.size());
}

void TextMap::addTab(std::size_t front, std::size_t behind, std::vector<SourceRange> tags) {
    push(u"\t", front, behind, Kind::Tab);
    extras_.push_back(std::move(tags));
    segments_.back().extra = static_cast<std::uint32_t>(extras_.size());
}

}  // namespace lorvane::html
