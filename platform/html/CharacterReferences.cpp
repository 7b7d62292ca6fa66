#include "html/CharacterReferences.h"

#include <gumbo.h>

#include <algorithm>

#include "host/TextFunctions.h"
#include "html/Units.h"

namespace lorvane::html {

namespace {

constexpr std::size_t LongestName = 32;  // "CounterClockwiseContourIntegral;" has 32 units
constexpr std::size_t RememberedNames = 4096;

bool isHexDigit(char16_t unit) noexcept {
    return isAsciiDigit(unit) || (asciiLower(unit) >= u'a' && asciiLower(unit) <= u'f');
}

/// The text that the parser reads from a piece of markup without tags.
std::u16string parsedText(const std::string& markup) {
    GumboOptions options = kGumboDefaultOptions;
    options.max_errors = 0;
    options.fragment_context = GUMBO_TAG_DIV;
    GumboOutput* output = gumbo_parse_with_options(&options, markup.data(), markup.size());
    std::u16string text;
    const GumboVector& children = output->root->v.element.children;
    for (unsigned int i = 0; i < children.length; ++i) {
        const GumboNode* node = static_cast<const GumboNode*>(children.data[i]);
        if (node->type == GUMBO_NODE_TEXT || node->type == GUMBO_NODE_WHITESPACE) text += host::fromUtf8(node->v.text.text);
    }
    gumbo_destroy_output(&options, output);
    return text;
}

/// "&#0065;" as "&#65;": the number of leading zeros is without limit.
std::u16string canonicalNumber(std::u16string_view digits, bool hexadecimal) {
    while (digits.size() > 1 && digits.front() == u'0') digits.remove_prefix(1);
    // Anything longer lies beyond the last code point, as does this.
    if (digits.size() > 8) digits = u"99999999";
    std::u16string run = hexadecimal ? u"&#x" : u"&#";
    run += digits;
    run += u';';
    return run;
}

}  // namespace

CharacterReference CharacterReferences::at(std::u16string_view source, std::size_t offset) {
    std::size_t end = offset + 1;
    const auto unitAt = [&](std::size_t i) { return i < source.size() ? source[i] : u'\0'; };
    if (unitAt(end) == u'#') {
        const bool hexadecimal = asciiLower(unitAt(end + 1)) == u'x';
        const std::size_t first = end + (hexadecimal ? 2 : 1);
        std::size_t last = first;
        while (hexadecimal ? isHexDigit(unitAt(last)) : isAsciiDigit(unitAt(last))) ++last;
        if (last == first) return {};
        CharacterReference reference = lookUp(canonicalNumber(source.substr(first, last - first), hexadecimal));
        if (reference.length != 0) reference.length = last - offset + (unitAt(last) == u';' ? 1 : 0);
        return reference;
    }
    while (end - offset <= LongestName && isAsciiAlnum(unitAt(end))) ++end;
    if (end == offset + 1) return {};
    if (unitAt(end) == u';') ++end;
    return lookUp(source.substr(offset, end - offset));
}

CharacterReference CharacterReferences::lookUp(std::u16string_view run) {
    const std::u16string key(run);
    if (const auto found = known_.find(key); found != known_.end()) return found->second;
    const std::u16string text = parsedText(host::toUtf8(run));
    CharacterReference reference;
    if (!text.empty() && text != key) {
        // "&notit;" reads as "¬it;": what both end with alike was not part of the entity. At least one character was.
        const std::size_t least = characterLength(text, 0);
        const std::size_t most = std::min(text.size() - least, key.size() - 1);
        std::size_t alike = 0;
        while (alike < most && text[text.size() - 1 - alike] == key[key.size() - 1 - alike]) ++alike;
        reference.length = key.size() - alike;
        reference.character = text.substr(0, text.size() - alike);
    }
    if (known_.size() < RememberedNames) known_.emplace(key, reference);
    return reference;
}

}  // namespace lorvane::html
