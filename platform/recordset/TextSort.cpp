#include "recordset/TextSort.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <numeric>
#include <span>

namespace lorvane::recordset {

namespace {

// A row on its way into order: eight of its letter weights, first in the highest byte, 0 behind the last.
struct Entry {
    std::uint64_t key;
    std::uint32_t turn;   // which of the incoming rows it is
    std::uint32_t place;  // where its record begins, in words; behind the record's end, the unit of the text * 4 + the weight in it
};

// Where the text of an incoming row stands.
struct Source {
    const char16_t* units;
    std::uint32_t length;
    bool isPlain;  // units below U+0080 only, and the table tells all of those

    std::u16string_view text() const noexcept { return {units, length}; }
};

// Rows that the weights table tells, by a radix sort over their weights: bytes are dealt out as long as a bucket is large, and small ones are compared.
//
// The first weights of all rows are laid out in one run of records before the sort, since what costs time is fetching texts from all over the column. Longer
// texts are walked on from there where two of them are equal that far.
class TabledSort {
public:
    TabledSort(const Collation& collation, const std::vector<Source>& sources) : collation_(collation), sources_(sources) {}

    void sort(std::vector<Entry>& entries) {
        layOut(entries);
        spare_ = std::make_unique_for_overwrite<Entry[]>(entries.size());
        refill(entries, 0);
        deal(entries, 0);
    }

private:
    static constexpr std::size_t keyBytes = 8;
    static constexpr std::size_t recordKeys = 8;  // a record has at most so many; one word more tells where its text goes on
    static constexpr std::size_t few = 128;
    static constexpr std::size_t ahead = 12;  // entries whose record is asked for before it is needed

    std::u16string_view textOf(const Entry& entry) const { return sources_[entry.turn].text(); }
    bool isPlain(const Entry& entry) const { return sources_[entry.turn].isPlain; }

    void layOut(std::span<Entry> entries) {
        std::size_t most = 0;
        for (const Entry& entry : entries) most += wordsAtMost(entry);
        records_ = std::make_unique_for_overwrite<std::uint64_t[]>(most);
        std::size_t word = 0;
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (i + ahead < entries.size()) {
                const char16_t* const coming = sources_[entries[i + ahead].turn].units;
                __builtin_prefetch(coming);
                __builtin_prefetch(coming + 32);
            }
            Entry& entry = entries[i];
            entry.place = static_cast<std::uint32_t>(word);
            const std::u16string_view text = textOf(entry);
            std::uint32_t next = 0;
            for (std::size_t keys = 0;; ++keys) {
                if (keys == recordKeys) {
                    records_[word++] = next;
                    break;
                }
                const std::uint64_t key = nextKey(text, next);
                records_[word++] = key;
                if (isLast(key)) break;
            }
        }
    }

    std::size_t wordsAtMost(const Entry& entry) const {
        const std::size_t weights = std::size_t{sources_[entry.turn].length} * (isPlain(entry) ? 1 : Collation::Weights::most);
        return std::min(weights / keyBytes, recordKeys) + 1;
    }

    // The next eight weights of the text from `next` on, and where those behind them begin.
    std::uint64_t nextKeyByWalk(std::u16string_view text, std::uint32_t& next) const {
        std::uint64_t key = 0;
        std::size_t filled = 0;
        std::size_t unit = next / Collation::Weights::most;
        std::size_t number = next % Collation::Weights::most;
        for (; unit < text.size(); ++unit, number = 0) {
            const Collation::Weights& weights = collation_.weights(text[unit]);
            for (; number < weights.letterCount && filled < keyBytes; ++number, ++filled) key = key << 8 | weights.letters[number];
            if (filled == keyBytes && number < weights.letterCount) break;
        }
        next = static_cast<std::uint32_t>(unit * Collation::Weights::most + number);
        return filled == 0 ? 0 : key << (8 * (keyBytes - filled));
    }

    // The same. Eight units with a weight each, which is nearly all there is, take no step that waits for the one before.
    std::uint64_t nextKey(std::u16string_view text, std::uint32_t& next) const {
        const std::size_t unit = next / Collation::Weights::most;
        if (unit + keyBytes > text.size() || next % Collation::Weights::most != 0) return nextKeyByWalk(text, next);
        std::array<std::uint64_t, keyBytes> weights;
        for (std::size_t i = 0; i < keyBytes; ++i) weights[i] = collation_.singleWeight(text[unit + i]);
        std::uint64_t key = 0;
        std::uint64_t least = 255;
        for (std::size_t i = 0; i < keyBytes; ++i) {
            key |= weights[i] << (56 - 8 * i);
            least = std::min(least, weights[i]);
        }
        if (least == 0) return nextKeyByWalk(text, next);
        next = static_cast<std::uint32_t>((unit + keyBytes) * Collation::Weights::most);
        return key;
    }

    // Loads key number `chunk` of each entry.
    void refill(std::span<Entry> entries, std::size_t chunk) const {
        for (std::size_t i = 0; i < entries.size(); ++i) {
            Entry& entry = entries[i];
            if (chunk <= recordKeys) {
                if (i + ahead < entries.size()) __builtin_prefetch(&records_[entries[i + ahead].place + chunk]);
                const std::uint64_t word = records_[entry.place + chunk];
                if (chunk < recordKeys) {
                    entry.key = word;
                    continue;
                }
                entry.place = static_cast<std::uint32_t>(word);
            }
            entry.key = nextKey(textOf(entry), entry.place);
        }
    }

    // Sorts entries that are equal in all keys in front of number `chunk`. The largest bucket is dealt with in the loop and the others in calls, so that the
    // calls nest no deeper than the number of entries can be halved.
    void deal(std::span<Entry> entries, std::size_t chunk) {
        while (entries.size() > few) {
            std::uint64_t differing = 0;
            for (const Entry& entry : entries) differing |= entry.key ^ entries[0].key;
            if (differing == 0) {
                if (isLast(entries[0].key)) return orderEqual(entries);
                refill(entries, ++chunk);
                continue;
            }
            const auto shift = static_cast<unsigned>(56 - std::countl_zero(differing) / 8 * 8);
            const auto digitOf = [shift](const Entry& entry) { return entry.key >> shift & 0xFF; };
            std::array<std::uint32_t, 257> starts{};
            for (const Entry& entry : entries) ++starts[digitOf(entry) + 1];
            std::partial_sum(starts.begin(), starts.end(), starts.begin());
            std::array<std::uint32_t, 256> places;
            std::copy_n(starts.begin(), places.size(), places.begin());
            for (const Entry& entry : entries) spare_[places[digitOf(entry)]++] = entry;
            std::copy_n(spare_.get(), entries.size(), entries.begin());
            const auto bucket = [&](std::size_t digit) { return entries.subspan(starts[digit], starts[digit + 1] - starts[digit]); };
            std::size_t largest = 0;
            for (std::size_t digit = 1; digit < 256; ++digit) {
                if (bucket(digit).size() > bucket(largest).size()) largest = digit;
            }
            for (std::size_t digit = 0; digit < 256; ++digit) {
                if (digit != largest && bucket(digit).size() > 1) deal(bucket(digit), chunk);
            }
            entries = bucket(largest);
        }
        compareFew(entries, chunk);
    }

    void compareFew(std::span<Entry> entries, std::size_t chunk) {
        if (entries.size() < 2) return;
        for (;; refill(entries, ++chunk)) {
            std::ranges::sort(entries, [](const Entry& a, const Entry& b) { return a.key != b.key ? a.key < b.key : a.turn < b.turn; });
            if (entries.front().key != entries.back().key) break;
            if (isLast(entries.front().key)) return orderEqual(entries);
        }
        for (std::size_t first = 0, end; first < entries.size(); first = end) {
            for (end = first + 1; end < entries.size() && entries[end].key == entries[first].key;) ++end;
            const auto equal = entries.subspan(first, end - first);
            if (isLast(equal.front().key)) {
                orderEqual(equal);
            } else if (equal.size() > 1) {
                refill(equal, chunk + 1);
                compareFew(equal, chunk + 1);
            }
        }
    }

    static bool isLast(std::uint64_t key) { return (key & 0xFF) == 0; }

    // Entries with the same letters: by accents, then as they came.
    void orderEqual(std::span<Entry> entries) {
        if (entries.size() < 2 || std::ranges::all_of(entries, [this](const Entry& entry) { return isPlain(entry); })) return;
        std::ranges::stable_sort(entries, [this](const Entry& a, const Entry& b) { return collation_.compareAccents(textOf(a), textOf(b)) < 0; });
    }

    const Collation& collation_;
    const std::vector<Source>& sources_;
    std::unique_ptr<std::uint64_t[]> records_;
    std::unique_ptr<Entry[]> spare_;
};

// Rows that need the library: by its sort keys. Gives the turns in order.
std::vector<std::uint32_t> sortByKeys(const TextColumn& column, const Collation& collation, const std::vector<RowId>& rows, std::vector<std::uint32_t> turns) {
    std::vector<std::uint8_t> keys;
    struct Keyed {
        std::size_t key;
        std::uint32_t turn;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(turns.size());
    for (const std::uint32_t turn : turns) {
        keyed.push_back({keys.size(), turn});
        collation.appendKey(column.text(rows[turn]), keys);
    }
    const auto keyOf = [&keys](const Keyed& row) { return reinterpret_cast<const char*>(keys.data() + row.key); };
    std::ranges::stable_sort(keyed, [&](const Keyed& a, const Keyed& b) { return std::strcmp(keyOf(a), keyOf(b)) < 0; });
    std::ranges::transform(keyed, turns.begin(), &Keyed::turn);
    return turns;
}

// Two ordered lists into one. Where one is much shorter, its places in the other are found by halves. `textOf` tells the text of an entry; entries with equal
// texts ascend.
template <class TextOf>
std::vector<std::uint32_t> merged(const Collation& collation, const TextOf& textOf, const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b) {
    const auto before = [&](std::uint32_t x, std::uint32_t y) {
        const int order = collation.compare(textOf(x), textOf(y));
        return order != 0 ? order < 0 : x < y;
    };
    const std::vector<std::uint32_t>& many = a.size() < b.size() ? b : a;
    const std::vector<std::uint32_t>& fewer = a.size() < b.size() ? a : b;
    std::vector<std::uint32_t> out;
    out.reserve(a.size() + b.size());
    if (fewer.size() * 16 > many.size()) {
        std::ranges::merge(many, fewer, std::back_inserter(out), before);
        return out;
    }
    auto from = many.begin();
    for (const std::uint32_t entry : fewer) {
        const auto place = std::lower_bound(from, many.end(), entry, before);
        out.insert(out.end(), from, place);
        out.push_back(entry);
        from = place;
    }
    out.insert(out.end(), from, many.end());
    return out;
}

}  // namespace

void sortByText(const TextColumn& column, const Collation& collation, std::vector<RowId>& rows) {
    std::vector<Entry> tabled;
    std::vector<std::uint32_t> others;
    std::vector<Source> sources;
    tabled.reserve(rows.size());
    sources.reserve(rows.size());
    for (std::uint32_t turn = 0; turn < rows.size(); ++turn) {
        const std::u16string_view text = column.text(rows[turn]);
        const bool plain = column.isPlainText(rows[turn]) && collation.plainIsTabled();
        sources.push_back({text.data(), static_cast<std::uint32_t>(text.size()), plain});
        if (plain || collation.isTabled(text))
            tabled.push_back({0, turn, 0});
        else
            others.push_back(turn);
    }
    TabledSort(collation, sources).sort(tabled);
    std::vector<std::uint32_t> order;
    order.reserve(rows.size());
    std::ranges::transform(tabled, std::back_inserter(order), &Entry::turn);
    if (!others.empty()) {
        others = sortByKeys(column, collation, rows, std::move(others));
        order = merged(
            collation, [&](std::uint32_t turn) { return column.text(rows[turn]); }, order, others);
    }
    std::vector<RowId> sorted(rows.size());
    std::ranges::transform(order, sorted.begin(), [&rows](std::uint32_t turn) { return rows[turn]; });
    rows = std::move(sorted);
}

std::vector<RowId> mergedByText(const TextColumn& column, const Collation& collation, const std::vector<RowId>& a, const std::vector<RowId>& b) {
    return merged(
        collation, [&column](RowId row) { return column.text(row); }, a, b);
}

}  // namespace lorvane::recordset
