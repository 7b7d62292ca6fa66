#include "model/ClipboardFragment.h"

#include <string_view>

#include "host/TextFunctions.h"
#include "html/ClipboardHtml.h"

namespace lorvane::model {

namespace {

/// 0x80 to 0x9F of Windows-1252; unassigned bytes stay control characters.
constexpr std::u16string_view windows1252 =
    u"\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D\u017D\u008F"
    u"\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u009D\u017E\u0178";

std::u16string fromSingleBytes(std::string_view bytes) {
    std::u16string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto unit = static_cast<unsigned char>(byte);
        text += unit >= 0x80 && unit < 0xA0 ? windows1252[unit - 0x80] : static_cast<char16_t>(unit);
    }
    return text;
}

/// UTF-8 that comes back unchanged was UTF-8.
std::u16string decoded(std::string_view bytes) {
    std::u16string text = host::fromUtf8(bytes);
    return host::toUtf8(text) == bytes ? text : fromSingleBytes(bytes);
}

}  // namespace

std::optional<std::u16string> fragmentOfHtmlFormat(const host::Bytes& block) {
    return html::clipboardFragment(std::string_view(reinterpret_cast<const char*>(block.data()), block.size()), decoded);
}

}  // namespace lorvane::model
