#include "html/ClipboardHtml.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "host/TextFunctions.h"

namespace lorvane::html {

namespace {

template <typename Unit>
std::size_t find(std::basic_string_view<Unit> text, std::string_view sought, std::size_t from = 0) {
    const auto begin = text.begin() + static_cast<std::ptrdiff_t>(std::min(from, text.size()));
    const auto found = std::search(begin, text.end(), sought.begin(), sought.end(), [](Unit a, char b) { return a == static_cast<Unit>(b); });
    return found == text.end() ? std::basic_string_view<Unit>::npos : static_cast<std::size_t>(found - text.begin());
}

/// The number behind a key of the header; none where the key or the number is missing.
template <typename Unit>
std::optional<std::size_t> headerNumber(std::basic_string_view<Unit> header, std::string_view key) {
    std::size_t at = find(header, key);
    if (at == std::basic_string_view<Unit>::npos) return std::nullopt;
    at += key.size();
    while (at < header.size() && header[at] == ' ') ++at;
    // Any number of digits: what lies beyond every block stays there.
    constexpr std::size_t Beyond = std::basic_string_view<Unit>::npos / 32;
    std::size_t value = 0;
    const std::size_t first = at;
    for (; at < header.size() && header[at] >= '0' && header[at] <= '9'; ++at)
        value = std::min(value * 10 + static_cast<std::size_t>(header[at] - '0'), Beyond);
    return at == first ? std::nullopt : std::optional(value);
}

template <typename Unit>
std::optional<std::basic_string_view<Unit>> fragmentOf(std::basic_string_view<Unit> block) {
    constexpr std::size_t npos = std::basic_string_view<Unit>::npos;
    const std::basic_string_view<Unit> header = block.substr(0, find(block, "<"));
    const std::optional<std::size_t> start = headerNumber(header, "StartFragment:");
    const std::optional<std::size_t> end = headerNumber(header, "EndFragment:");
    if (start && end && *start <= *end && *start <= block.size() && *start > 0) return block.substr(*start, *end - *start);
    const std::size_t open = find(block, "<!--StartFragment");
    if (open == npos) return std::nullopt;
    const std::size_t text = find(block, "-->", open);
    if (text == npos) return std::nullopt;
    const std::size_t close = find(block, "<!--EndFragment", text);
    return block.substr(text + 3, close == npos ? npos : close - text - 3);
}

/// Each number is ten digits wide, so that the header's length is known before it is written.
constexpr std::size_t NumberWidth = 10;
constexpr std::string_view Version = "Version:0.9\r\n", HeaderEnd = "\r\n";
constexpr std::string_view Keys[] = {"StartHTML:", "EndHTML:", "StartFragment:", "EndFragment:"};
constexpr std::string_view BeforeFragment = "<html><body><!--StartFragment-->", BehindFragment = "<!--EndFragment--></body></html>";

constexpr std::size_t headerLength() noexcept {
    std::size_t length = Version.size();
    for (const std::string_view key : Keys) length += key.size() + NumberWidth + HeaderEnd.size();
    return length;
}

}  // namespace

std::string clipboardBlock(std::u16string_view fragment) {
    const std::string bytes = host::toUtf8(fragment);
    const std::size_t start = headerLength() + BeforeFragment.size(), end = start + bytes.size();
    const std::size_t numbers[] = {headerLength(), end + BehindFragment.size(), start, end};

    std::string block(Version);
    block.reserve(numbers[1]);
    for (std::size_t i = 0; i < std::size(Keys); ++i) {
        const std::string digits = std::to_string(numbers[i]);
        block.append(Keys[i]).append(NumberWidth - digits.size(), '0').append(digits).append(HeaderEnd);
    }
    return block.append(BeforeFragment).append(bytes).append(BehindFragment);
}

std::optional<std::u16string> clipboardFragment(std::u16string_view block) {
    const auto fragment = fragmentOf(block);
    return fragment ? std::optional(std::u16string(*fragment)) : std::nullopt;
}

std::optional<std::u16string> clipboardFragment(std::string_view block, const std::function<std::u16string(std::string_view)>& decode) {
    const auto fragment = fragmentOf(block);
    return fragment ? std::optional(decode(*fragment)) : std::nullopt;
}

}  // namespace lorvane::html
