#include "recordset/TextScan.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace lorvane::recordset {

namespace {

constexpr char16_t lowered(char16_t unit) noexcept {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

#if defined(__SSE2__)

__m128i loadAt(const void* place) noexcept {
    return _mm_loadu_si128(static_cast<const __m128i*>(place));
}

void storeAt(void* place, __m128i value) noexcept {
    _mm_storeu_si128(static_cast<__m128i*>(place), value);
}

// Eight plain units folded.
__m128i loweredUnits(__m128i units) noexcept {
    const __m128i capital = _mm_and_si128(_mm_cmpgt_epi16(units, _mm_set1_epi16(u'A' - 1)), _mm_cmplt_epi16(units, _mm_set1_epi16(u'Z' + 1)));
    return _mm_or_si128(units, _mm_and_si128(capital, _mm_set1_epi16(0x20)));
}

__m128i repeated(std::uint8_t unit) noexcept {
    return _mm_set1_epi8(static_cast<char>(unit));
}
__m128i repeated(char16_t unit) noexcept {
    return _mm_set1_epi16(static_cast<short>(unit));
}

// One bit for each of sixteen places: whether `a` stands at the first and `b` at the second.
std::uint64_t sixteenPlaces(const std::uint8_t* first, const std::uint8_t* second, __m128i a, __m128i b) noexcept {
    return static_cast<std::uint64_t>(_mm_movemask_epi8(_mm_and_si128(_mm_cmpeq_epi8(loadAt(first), a), _mm_cmpeq_epi8(loadAt(second), b))));
}
std::uint64_t sixteenPlaces(const char16_t* first, const char16_t* second, __m128i a, __m128i b) noexcept {
    const __m128i low = _mm_and_si128(_mm_cmpeq_epi16(loadAt(first), a), _mm_cmpeq_epi16(loadAt(second), b));
    const __m128i high = _mm_and_si128(_mm_cmpeq_epi16(loadAt(first + 8), a), _mm_cmpeq_epi16(loadAt(second + 8), b));
    return static_cast<std::uint64_t>(_mm_movemask_epi8(_mm_packs_epi16(low, high)));
}

#endif

// Each of these answers for 64 places, the first in the lowest bit: whether the needle's two rarest units stand as they would if it stood there.

template <class Unit>
struct PlacesOneByOne {
    Unit a, b;
    std::uint64_t operator()(const Unit* first, const Unit* second) const noexcept {
        std::uint64_t mask = 0;
        for (unsigned i = 0; i < 64; ++i) mask |= std::uint64_t{first[i] == a && second[i] == b} << i;
        return mask;
    }
};

#if defined(__SSE2__)

template <class Unit>
struct PlacesBySixteen {
    Unit a, b;
    std::uint64_t operator()(const Unit* first, const Unit* second) const noexcept {
        std::uint64_t mask = 0;
        for (unsigned i = 0; i < 64; i += 16) mask |= sixteenPlaces(first + i, second + i, repeated(a), repeated(b)) << i;
        return mask;
    }
};

struct BytesByThirtyTwo {
    std::uint8_t a, b;
    [[gnu::target("avx2")]] std::uint64_t operator()(const std::uint8_t* first, const std::uint8_t* second) const noexcept {
        const __m256i x = _mm256_set1_epi8(static_cast<char>(a));
        const __m256i y = _mm256_set1_epi8(static_cast<char>(b));
        const auto at = [](const std::uint8_t* place) { return reinterpret_cast<const __m256i*>(place); };
        const __m256i low = _mm256_and_si256(_mm256_cmpeq_epi8(_mm256_loadu_si256(at(first)), x), _mm256_cmpeq_epi8(_mm256_loadu_si256(at(second)), y));
        const __m256i high =
            _mm256_and_si256(_mm256_cmpeq_epi8(_mm256_loadu_si256(at(first + 32)), x), _mm256_cmpeq_epi8(_mm256_loadu_si256(at(second + 32)), y));
        return static_cast<std::uint32_t>(_mm256_movemask_epi8(low)) | std::uint64_t{static_cast<std::uint32_t>(_mm256_movemask_epi8(high))} << 32;
    }
};

#endif

// Inlined into each of its callers, so that it takes the instructions that the caller may use.
template <class Unit, class Places>
[[gnu::always_inline]] inline void findBy(const Places& places, const FoldedRows<Unit>& rows, const Needle<Unit>& needle, RowBits& found) noexcept {
    const auto& ends = rows.ends;
    const std::size_t length = needle.units.size();
    const std::size_t size = ends.empty() ? 0 : ends.back();
    if (length > size) return;
    const std::size_t stop = size - length + 1;
    std::size_t row = 0;
    std::size_t open = 0;  // where the row begins that is looked at next: one hit a row is enough
    for (std::size_t base = 0; base < stop; base += 64) {
        std::uint64_t mask = places(rows.text + base + needle.first, rows.text + base + needle.second);
        if (mask == 0) continue;
        if (stop - base < 64) mask &= (std::uint64_t{1} << (stop - base)) - 1;
        for (; mask != 0; mask &= mask - 1) {
            const std::size_t at = base + static_cast<std::size_t>(std::countr_zero(mask));
            if (at < open || std::memcmp(rows.text + at, needle.units.data(), length * sizeof(Unit)) != 0) continue;
            // The next rows are looked at one by one, since hits are often close; then by halves.
            const std::size_t near = std::min(row + 8, ends.size());
            while (row < near && ends[row] < at) ++row;
            if (row == near) row = static_cast<std::size_t>(std::lower_bound(ends.begin() + static_cast<std::ptrdiff_t>(row), ends.end(), at) - ends.begin());
            found.set(rows.first + static_cast<RowId>(row));
            open = ends[row];
        }
    }
}

template <class Unit>
void findPortably(const FoldedRows<Unit>& rows, const Needle<Unit>& needle, RowBits& found) noexcept {
#if defined(__SSE2__)
    findBy(PlacesBySixteen<Unit>{needle.units[needle.first], needle.units[needle.second]}, rows, needle, found);
#else
    findBy(PlacesOneByOne<Unit>{needle.units[needle.first], needle.units[needle.second]}, rows, needle, found);
#endif
}

#if defined(__SSE2__)
[[gnu::target("avx2")]] void findWithAvx2(const FoldedRows<std::uint8_t>& rows, const Needle<std::uint8_t>& needle, RowBits& found) noexcept {
    findBy(BytesByThirtyTwo{needle.units[needle.first], needle.units[needle.second]}, rows, needle, found);
}
#endif

}  // namespace

bool isPlain(std::u16string_view text) noexcept {
    std::size_t i = 0;
#if defined(__SSE2__)
    __m128i seen = _mm_setzero_si128();
    for (; i + 8 <= text.size(); i += 8) seen = _mm_or_si128(seen, loadAt(text.data() + i));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_and_si128(seen, _mm_set1_epi16(static_cast<short>(0xFF80))), _mm_setzero_si128())) != 0xFFFF) return false;
#endif
    char16_t rest = 0;
    for (; i < text.size(); ++i) rest = static_cast<char16_t>(rest | text[i]);
    return rest < 0x80;
}

void foldPlain(std::u16string_view text, std::uint8_t* out) noexcept {
    std::size_t i = 0;
#if defined(__SSE2__)
    for (; i + 8 <= text.size(); i += 8) {
        const __m128i folded = loweredUnits(loadAt(text.data() + i));
        storeAt(out + i, _mm_packus_epi16(folded, folded));
    }
#endif
    for (; i < text.size(); ++i) out[i] = static_cast<std::uint8_t>(lowered(text[i]));
}

void foldPlain(std::u16string_view text, char16_t* out) noexcept {
    std::size_t i = 0;
#if defined(__SSE2__)
    for (; i + 8 <= text.size(); i += 8) storeAt(out + i, loweredUnits(loadAt(text.data() + i)));
#endif
    for (; i < text.size(); ++i) out[i] = lowered(text[i]);
}

template <class Unit>
void Needle<Unit>::choose(const std::vector<Unit>& sample) {
    // Units beyond the first 256 share a place with another: the choice is one of speed only.
    std::array<std::uint32_t, 256> times{};
    for (const Unit unit : sample) ++times[static_cast<std::uint8_t>(unit)];
    const auto rarity = [&](std::size_t offset) { return times[static_cast<std::uint8_t>(units[offset])]; };
    first = 0;
    for (std::size_t i = 1; i < units.size(); ++i) {
        if (rarity(i) < rarity(first)) first = i;
    }
    second = first == 0 ? units.size() - 1 : 0;
    for (std::size_t i = 0; i < units.size(); ++i) {
        if (i != first && rarity(i) < rarity(second)) second = i;
    }
}

template struct Needle<std::uint8_t>;
template struct Needle<char16_t>;

void findRows(const FoldedRows<std::uint8_t>& rows, const Needle<std::uint8_t>& needle, RowBits& found) noexcept {
#if defined(__SSE2__)
    static const bool hasAvx2 = __builtin_cpu_supports("avx2");
    if (hasAvx2) return findWithAvx2(rows, needle, found);
#endif
    findPortably(rows, needle, found);
}

void findRows(const FoldedRows<char16_t>& rows, const Needle<char16_t>& needle, RowBits& found) noexcept {
    findPortably(rows, needle, found);
}

}  // namespace lorvane::recordset
