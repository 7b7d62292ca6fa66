#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// The one-to-one case mappings of the basic plane, for the text functions. The data is generated; what it means is told in TextFunctions.h.
namespace lorvane::host::case_tables {

/// Units `first`, `first` + `step` … `last` map to themselves plus `distance`.
struct Run {
    std::uint16_t first, last;
    std::uint8_t step;
    std::int32_t distance;
};

/// A mapping laid out for looking up: two steps, by the high and by the low byte.
struct View {
    const std::uint8_t* pageOf;
    const std::uint16_t* distances;

    char16_t operator()(char16_t unit) const noexcept { return static_cast<char16_t>(unit + distances[std::size_t{pageOf[unit >> 8]} * 256 + (unit & 0xFF)]); }
};

/// The pages that a mapping needs: one for each high byte with a mapped unit, and one of nothing but zeros for the rest.
constexpr std::size_t pagesOf(std::span<const Run> runs) {
    std::array<bool, 256> used{};
    for (const Run& run : runs) {
        for (std::uint32_t unit = run.first; unit <= run.last; unit += run.step) used[unit >> 8] = true;
    }
    std::size_t count = 1;
    for (const bool page : used) count += page;
    return count;
}

template <std::size_t Pages>
struct Table {
    std::array<std::uint8_t, 256> pageOf{};
    std::array<std::uint16_t, Pages * 256> distances{};

    constexpr View view() const noexcept { return {pageOf.data(), distances.data()}; }
};

template <std::size_t Pages>
constexpr Table<Pages> expand(std::span<const Run> runs) {
    Table<Pages> table;
    std::uint8_t pages = 0;
    for (const Run& run : runs) {
        for (std::uint32_t unit = run.first; unit <= run.last; unit += run.step) {
            std::uint8_t& page = table.pageOf[unit >> 8];
            if (page == 0) page = ++pages;
            table.distances[std::size_t{page} * 256 + (unit & 0xFF)] = static_cast<std::uint16_t>(run.distance);
        }
    }
    return table;
}

extern const View upper;
extern const View lower;
extern const View fold;

/// A unit that folds to `folded` and is neither that nor its upper-case form, as the Kelvin sign for "k". At most two for one `folded`.
struct FurtherForm {
    char16_t folded, unit;
};

/// Ascending.
extern const std::span<const FurtherForm> furtherForms;

/// `fold`, quick for ASCII.
inline char16_t folded(char16_t unit) noexcept {
    if (unit < 0x80) return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
    return fold(unit);
}

}  // namespace lorvane::host::case_tables
