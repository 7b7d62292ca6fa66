#include "recordset/Collation.h"

#include <unicode/ucol.h>
#include <unicode/ucoleitr.h>
#include <unicode/uloc.h>
#include <unicode/unorm2.h>
#include <unicode/uset.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <optional>
#include <set>

#include "host/HostError.h"
#include "host/TextFunctions.h"

namespace lorvane::recordset {

namespace {

// Units that get weights of their own if they stand for themselves: Latin letters, and the punctuation that mail programs put into subjects.
constexpr std::size_t tableSize = 0x2123;

bool isCandidate(std::size_t unit) {
    return unit < 0x180 || (unit >= 0x2010 && unit <= 0x203A) || unit == 0x20AC || unit == 0x2122;
}

template <auto close>
struct Closer {
    template <class T>
    void operator()(T* thing) const {
        close(thing);
    }
};
using Set = std::unique_ptr<USet, Closer<uset_close>>;
using Elements = std::unique_ptr<UCollationElements, Closer<ucol_closeElements>>;

void check(UErrorCode status) {
    if (U_FAILURE(status)) throw host::HostError(host::host_failure::Failed, u"The collation library failed: " + host::fromUtf8(u_errorName(status)));
}

std::u16string normalized(std::u16string_view text, bool compose) {
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2* form = compose ? unorm2_getNFCInstance(&status) : unorm2_getNFDInstance(&status);
    std::u16string out(text.size() * 4 + 16, u'\0');
    const int32_t length = unorm2_normalize(form, text.data(), static_cast<int32_t>(text.size()), out.data(), static_cast<int32_t>(out.size()), &status);
    check(status);
    out.resize(static_cast<std::size_t>(length));
    return out;
}

bool isSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}

bool isMark(char16_t unit) {
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2* form = unorm2_getNFDInstance(&status);
    check(status);
    return unorm2_getCombiningClass(form, unit) != 0;
}

// The units of the table that can make two characters count as one. A run of characters can only meet if all of them are there, so one of each run is enough:
// one that the table does not have anyway, else those outside ASCII, else the last. A run that one precomposed unit spells out is that unit's own matter.
std::set<char16_t> meetingUnits(const UCollator* collator) {
    UErrorCode status = U_ZERO_ERROR;
    const Set runs(uset_openEmpty());
    ucol_getContractionsAndExpansions(collator, runs.get(), nullptr, true, &status);
    check(status);
    std::set<char16_t> meeting;
    const auto add = [&meeting](std::u16string_view run) {
        if (normalized(run, true).size() <= 1) return;
        const std::u16string parts = normalized(run, false);
        if (std::ranges::any_of(parts, [](char16_t unit) { return !isCandidate(unit) && !isMark(unit); })) return;
        bool outsideAscii = false;
        for (const char16_t unit : parts) {
            if (unit < 0x80) continue;
            meeting.insert(unit);
            outsideAscii = true;
        }
        if (!outsideAscii) meeting.insert(parts.back());
    };
    for (int32_t i = 0, count = uset_getItemCount(runs.get()); i < count; ++i) {
        UChar32 first = 0, last = 0;
        std::u16string run(256, u'\0');
        const int32_t length = uset_getItem(runs.get(), i, &first, &last, run.data(), static_cast<int32_t>(run.size()), &status);
        check(status);
        if (length >= 2) add(std::u16string_view(run).substr(0, static_cast<std::size_t>(length)));
    }
    return meeting;
}

// A locale whose order is more than a walk along weights from the left is left to the library altogether.
bool isPlainOrder(const UCollator* collator) {
    UErrorCode status = U_ZERO_ERROR;
    const bool plain = ucol_getAttribute(collator, UCOL_FRENCH_COLLATION, &status) == UCOL_OFF &&
                       ucol_getAttribute(collator, UCOL_ALTERNATE_HANDLING, &status) == UCOL_NON_IGNORABLE &&
                       ucol_getAttribute(collator, UCOL_CASE_LEVEL, &status) == UCOL_OFF &&
                       ucol_getAttribute(collator, UCOL_NUMERIC_COLLATION, &status) == UCOL_OFF;
    check(status);
    const int32_t reordered = ucol_getReorderCodes(collator, nullptr, 0, &status);
    return plain && reordered == 0 && U_SUCCESS(status);
}

struct RawWeights {
    std::vector<std::uint16_t> letters;
    std::vector<std::uint8_t> accents;
};

// The weights of a unit that stands alone; empty where it has too many.
std::optional<RawWeights> rawWeights(const UCollator* collator, char16_t unit) {
    UErrorCode status = U_ZERO_ERROR;
    const Elements elements(ucol_openElements(collator, &unit, 1, &status));
    check(status);
    RawWeights raw;
    for (int32_t element; (element = ucol_next(elements.get(), &status)) != UCOL_NULLORDER;) {
        if (const int32_t letter = ucol_primaryOrder(element); letter != 0) raw.letters.push_back(static_cast<std::uint16_t>(letter));
        if (const int32_t accent = ucol_secondaryOrder(element); accent != 0) raw.accents.push_back(static_cast<std::uint8_t>(accent));
    }
    check(status);
    if (raw.letters.size() > Collation::Weights::most || raw.accents.size() > Collation::Weights::most) return std::nullopt;
    return raw;
}

bool standsForItself(char16_t unit, const std::set<char16_t>& meeting) {
    if (isSurrogate(unit)) return false;
    const std::u16string parts = normalized(std::u16string_view(&unit, 1), false);
    if (isMark(parts[0])) return false;
    return std::ranges::none_of(parts, [&](char16_t part) { return isSurrogate(part) || meeting.contains(part); });
}

}  // namespace

Collation::Collation(std::u16string_view localeName) {
    UErrorCode status = U_ZERO_ERROR;
    char locale[ULOC_FULLNAME_CAPACITY] = "";
    const std::string tag = host::toUtf8(localeName);
    uloc_forLanguageTag(tag.c_str(), locale, sizeof locale, nullptr, &status);
    if (U_FAILURE(status)) locale[0] = '\0';
    status = U_ZERO_ERROR;
    std::unique_ptr<UCollator, Closer<ucol_close>> made(ucol_open(locale, &status));
    check(status);
    ucol_setStrength(made.get(), UCOL_SECONDARY);
    collator_ = made.get();
    fillTable();
    made.release();
}

Collation::~Collation() {
    ucol_close(collator_);
}

std::shared_ptr<const Collation> Collation::of(std::u16string_view localeName) {
    static std::mutex mutex;
    static std::map<std::u16string, std::shared_ptr<const Collation>, std::less<>> known;
    const std::lock_guard lock(mutex);
    std::shared_ptr<const Collation>& collation = known[std::u16string(localeName)];
    if (!collation) collation = std::make_shared<const Collation>(localeName);
    return collation;
}

void Collation::fillTable() {
    table_.resize(tableSize);
    singles_.resize(tableSize);
    known_.resize(0x10000);
    if (!isPlainOrder(collator_)) return;
    const std::set<char16_t> meeting = meetingUnits(collator_);
    std::vector<std::optional<RawWeights>> raw(tableSize);
    std::set<std::uint16_t> letters;
    for (std::size_t unit = 0; unit < tableSize; ++unit) {
        if (!isCandidate(unit) || !standsForItself(static_cast<char16_t>(unit), meeting)) continue;
        auto own = rawWeights(collator_, static_cast<char16_t>(unit));
        if (!own) continue;
        std::set<std::uint16_t> more = letters;
        more.insert(own->letters.begin(), own->letters.end());
        if (more.size() > 255) continue;  // a weight must fit a byte; what comes late goes through the library
        letters = std::move(more);
        raw[unit] = std::move(own);
    }
    const std::vector<std::uint16_t> ranks(letters.begin(), letters.end());
    for (std::size_t unit = 0; unit < tableSize; ++unit) {
        if (!raw[unit]) continue;
        Weights& weights = table_[unit];
        weights.known = true;
        known_[unit] = 1;
        for (const std::uint16_t letter : raw[unit]->letters)
            weights.letters[weights.letterCount++] = static_cast<std::uint8_t>(std::ranges::lower_bound(ranks, letter) - ranks.begin() + 1);
        for (const std::uint8_t accent : raw[unit]->accents) weights.accents[weights.accentCount++] = accent;
        singles_[unit] = weights.letterCount == 1 ? weights.letters[0] : std::uint8_t{0};
    }
    // Plain units: one letter weight or none, and the same accent for all, so that plain texts with equal letters are equal.
    plainTabled_ = true;
    for (std::size_t unit = 0; unit < 0x80; ++unit) {
        const Weights& weights = table_[unit];
        const bool single =
            weights.letterCount <= 1 && weights.accentCount == weights.letterCount && weights.accents[0] == (weights.letterCount ? table_[u'a'].accents[0] : 0);
        plainTabled_ = plainTabled_ && weights.known && single;
    }
}

int Collation::compare(std::u16string_view a, std::u16string_view b) const {
    return ucol_strcoll(collator_, a.data(), static_cast<int32_t>(a.size()), b.data(), static_cast<int32_t>(b.size()));
}

void Collation::appendKey(std::u16string_view text, std::vector<std::uint8_t>& keys) const {
    const std::size_t at = keys.size();
    std::size_t room = text.size() * 3 + 16;
    for (;;) {
        keys.resize(at + room);
        const int32_t length = ucol_getSortKey(collator_, text.data(), static_cast<int32_t>(text.size()), keys.data() + at, static_cast<int32_t>(room));
        if (static_cast<std::size_t>(length) <= room) {
            keys.resize(at + static_cast<std::size_t>(length));
            return;
        }
        room = static_cast<std::size_t>(length);
    }
}

bool Collation::isTabled(std::u16string_view text) const noexcept {
    std::uint8_t all = 1;
    for (const char16_t unit : text) all &= known_[unit];
    return all != 0;
}

namespace {

// Walks the accent weights of a tabled text; 0 behind the last.
class AccentWalk {
public:
    AccentWalk(const Collation& collation, std::u16string_view text) : collation_(collation), text_(text) {}
    std::uint8_t next() noexcept {
        for (; unit_ < text_.size(); ++unit_, weight_ = 0) {
            const Collation::Weights& weights = collation_.weights(text_[unit_]);
            if (weight_ < weights.accentCount) return weights.accents[weight_++];
        }
        return 0;
    }

private:
    const Collation& collation_;
    std::u16string_view text_;
    std::size_t unit_ = 0, weight_ = 0;
};

}  // namespace

int Collation::compareAccents(std::u16string_view a, std::u16string_view b) const noexcept {
    AccentWalk left(*this, a), right(*this, b);
    for (;;) {
        const int x = left.next();
        const int y = right.next();
        if (x != y || x == 0) return x - y;
    }
}

}  // namespace lorvane::recordset
