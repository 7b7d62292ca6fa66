#include "services/CodePage.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <memory>

#include "host/HostError.h"
#include "host/TextFunctions.h"

namespace lorvane::services {

namespace {

constexpr char16_t replacement = 0xFFFD;

struct CloseConverter {
    void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
};

struct LanguagePage {
    std::u16string_view language;  // a language, or one with its script
    std::string_view page;
};

constexpr LanguagePage languagePages[] = {
    {u"ar", "windows-1256"},      {u"az-Cyrl", "windows-1251"}, {u"az", "windows-1254"}, {u"be", "windows-1251"}, {u"bg", "windows-1251"},
    {u"bs-Cyrl", "windows-1251"}, {u"bs", "windows-1250"},      {u"cs", "windows-1250"}, {u"el", "windows-1253"}, {u"et", "windows-1257"},
    {u"fa", "windows-1256"},      {u"he", "windows-1255"},      {u"hr", "windows-1250"}, {u"hu", "windows-1250"}, {u"kk", "windows-1251"},
    {u"ky", "windows-1251"},      {u"lt", "windows-1257"},      {u"lv", "windows-1257"}, {u"mk", "windows-1251"}, {u"mn", "windows-1251"},
    {u"pl", "windows-1250"},      {u"ro", "windows-1250"},      {u"ru", "windows-1251"}, {u"sk", "windows-1250"}, {u"sl", "windows-1250"},
    {u"sq", "windows-1250"},      {u"sr-Latn", "windows-1250"}, {u"sr", "windows-1251"}, {u"tg", "windows-1251"}, {u"th", "windows-874"},
    {u"tr", "windows-1254"},      {u"tt", "windows-1251"},      {u"uk", "windows-1251"}, {u"ur", "windows-1256"}, {u"uz-Cyrl", "windows-1251"},
    {u"uz", "windows-1254"},      {u"vi", "windows-1258"},
};

}  // namespace

CodePage::CodePage(std::string_view name) : name_(name) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, CloseConverter> converter(ucnv_open(name_.c_str(), &status));
    if (U_FAILURE(status) || ucnv_getMaxCharSize(converter.get()) != 1)
        throw host::HostError(host::runtime_error::InvalidProcedureCall, u"There is no single-byte code page \"" + host::fromUtf8(name) + u"\".");
    for (std::size_t byte = 0; byte < units_.size(); ++byte) {
        const char source = static_cast<char>(byte);
        char16_t unit = replacement;
        status = U_ZERO_ERROR;
        const std::int32_t count = ucnv_toUChars(converter.get(), &unit, 1, &source, 1, &status);
        units_[byte] = U_SUCCESS(status) && count == 1 ? unit : replacement;
        if (units_[byte] != replacement) bytes_.push_back({units_[byte], static_cast<std::uint8_t>(byte)});
    }
    std::ranges::stable_sort(bytes_, {}, &Row::unit);
}

host::Bytes CodePage::encode(std::u16string_view text) const {
    host::Bytes bytes;
    bytes.reserve(text.size());
    for (const char16_t unit : text) {
        if (unit < 0x80 && units_[unit] == unit) {
            bytes.push_back(static_cast<std::uint8_t>(unit));
            continue;
        }
        const auto row = std::ranges::lower_bound(bytes_, unit, {}, &Row::unit);
        bytes.push_back(row != bytes_.end() && row->unit == unit ? row->byte : std::uint8_t{'?'});
    }
    return bytes;
}

std::u16string CodePage::decode(const host::Bytes& bytes) const {
    std::u16string text;
    text.reserve(bytes.size());
    for (const std::uint8_t byte : bytes) text += units_[byte];
    return text;
}

std::string_view codePageOfRegion(std::u16string_view localeName) noexcept {
    for (const LanguagePage& row : languagePages) {
        const std::size_t length = row.language.size();
        const bool ends = localeName.size() == length || (localeName.size() > length && localeName[length] == u'-');
        if (ends && host::equalsIgnoreCase(localeName.substr(0, length), row.language)) return row.page;
    }
    return "windows-1252";
}

}  // namespace lorvane::services
