#include "html/BodySource.h"

#include <algorithm>
#include <optional>

#include "html/MarkupScanner.h"
#include "html/Units.h"

namespace lorvane::html {

namespace {

bool isNamed(const MarkupToken& tag, std::u16string_view lowerName) {
    return std::ranges::equal(tag.name, lowerName, [](char16_t a, char16_t b) { return asciiLower(a) == b; });
}

}  // namespace

std::u16string_view bodySource(std::u16string_view html) {
    std::size_t behindHead = 0;
    std::optional<std::size_t> behindBodyTag, bodyEnd, htmlEnd;
    MarkupScanner scanner(html);
    while (const std::optional<MarkupToken> token = scanner.next()) {
        const bool start = token->kind == MarkupToken::Kind::StartTag, close = token->kind == MarkupToken::Kind::EndTag;
        if (start && isNamed(*token, u"body") && !behindBodyTag) {
            behindBodyTag = token->range.end;
            bodyEnd = htmlEnd = std::nullopt;  // an end in front of the start ends nothing
        }
        if ((start && isNamed(*token, u"html")) || (close && isNamed(*token, u"head"))) behindHead = token->range.end;
        if (close && isNamed(*token, u"body")) bodyEnd = token->range.begin;
        if (close && isNamed(*token, u"html")) htmlEnd = token->range.begin;
    }
    const std::size_t begin = behindBodyTag.value_or(behindHead);
    const std::size_t end = std::max(begin, bodyEnd.value_or(htmlEnd.value_or(html.size())));
    return html.substr(begin, end - begin);
}

}  // namespace lorvane::html
