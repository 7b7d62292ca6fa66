#include "services/RegionNames.h"

#include <unicode/udat.h>
#include <unicode/uloc.h>

#include <algorithm>
#include <array>
#include <memory>

#include "host/HostError.h"
#include "host/Locale.h"
#include "host/TextFunctions.h"

namespace lorvane::services {

namespace {

using LocaleBuffer = std::array<char, ULOC_FULLNAME_CAPACITY>;

struct CloseFormat {
    void operator()(UDateFormat* format) const noexcept { udat_close(format); }
};

/// The surface's own row for a region; null where it has none.
const host::Locale* surfaceRow(std::u16string_view region) {
    const host::Locale& row = host::knownLocale(region);
    return host::equalsIgnoreCase(row.name, region) ? &row : nullptr;
}

bool hasNames(const char* language) {
    for (std::int32_t i = 0; i < uloc_countAvailable(); ++i) {
        if (std::string_view(uloc_getAvailable(i)) == language) return true;
    }
    return false;
}

std::string part(const char* locale, std::int32_t (*get)(const char*, char*, std::int32_t, UErrorCode*)) {
    LocaleBuffer buffer{};
    UErrorCode status = U_ZERO_ERROR;
    get(locale, buffer.data(), static_cast<std::int32_t>(buffer.size()), &status);
    return U_SUCCESS(status) ? buffer.data() : "";
}

std::vector<std::u16string> symbols(std::u16string_view region, UDateFormatSymbolType type, std::int32_t first, std::int32_t count) {
    const std::string tag = host::toUtf8(region);
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UDateFormat, CloseFormat> format(udat_open(UDAT_NONE, UDAT_NONE, tag.c_str(), nullptr, 0, nullptr, 0, &status));
    std::vector<std::u16string> names;
    for (std::int32_t i = first; i < first + count && U_SUCCESS(status); ++i) {
        std::array<char16_t, 128> buffer;
        const std::int32_t length = udat_getSymbols(format.get(), type, i, buffer.data(), static_cast<std::int32_t>(buffer.size()), &status);
        if (U_SUCCESS(status)) names.emplace_back(buffer.data(), static_cast<std::size_t>(length));
    }
    if (U_FAILURE(status)) throw host::HostError(host::host_failure::Failed, u"The names of months and days cannot be read.");
    return names;
}

template <std::size_t count>
std::vector<std::u16string> listOf(const std::array<std::u16string, count>& names) {
    return {names.begin(), names.end()};
}

}  // namespace

std::optional<std::u16string> regionName(std::u16string_view given) {
    std::string tag = host::toUtf8(given.substr(0, given.find_first_of(u".@")));
    std::ranges::replace(tag, '_', '-');
    if (tag.empty() || tag == "C" || tag == "POSIX") return u"en-US";

    LocaleBuffer locale{};
    std::int32_t parsed = 0;
    UErrorCode status = U_ZERO_ERROR;
    uloc_forLanguageTag(tag.c_str(), locale.data(), static_cast<std::int32_t>(locale.size()), &parsed, &status);
    if (U_FAILURE(status) || parsed != static_cast<std::int32_t>(tag.size())) return std::nullopt;
    const std::string language = part(locale.data(), &uloc_getLanguage);
    if (!hasNames(language.c_str())) return std::nullopt;

    std::string country = part(locale.data(), &uloc_getCountry);
    if (country.empty()) {
        LocaleBuffer likely{};
        uloc_addLikelySubtags(locale.data(), likely.data(), static_cast<std::int32_t>(likely.size()), &status);
        if (U_SUCCESS(status)) country = part(likely.data(), &uloc_getCountry);
    }
    std::string name = language;
    if (const std::string script = part(locale.data(), &uloc_getScript); !script.empty()) name += "-" + script;
    if (!country.empty()) name += "-" + country;
    return host::fromUtf8(name);
}

std::vector<std::u16string> monthNames(std::u16string_view region, bool abbreviated) {
    if (const host::Locale* row = surfaceRow(region)) return listOf(abbreviated ? row->monthsShort : row->months);
    return symbols(region, abbreviated ? UDAT_STANDALONE_SHORT_MONTHS : UDAT_STANDALONE_MONTHS, 0, 12);
}

std::vector<std::u16string> dayNames(std::u16string_view region, bool abbreviated) {
    if (const host::Locale* row = surfaceRow(region)) return listOf(abbreviated ? row->daysShort : row->days);
    return symbols(region, abbreviated ? UDAT_STANDALONE_SHORT_WEEKDAYS : UDAT_STANDALONE_WEEKDAYS, 1, 7);
}

}  // namespace lorvane::services
