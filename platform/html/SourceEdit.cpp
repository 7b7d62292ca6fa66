#include "html/SourceEdit.h"

#include <algorithm>
#include <utility>

#include "host/TextFunctions.h"
#include "html/CharacterReferences.h"
#include "html/HtmlText.h"
#include "html/RtfText.h"
#include "html/Units.h"

namespace lorvane::html {

namespace {

constexpr std::size_t LongestReference = 40;

/// The "&" in front of `offset` with only letters, digits and "#" between; npos where there is none.
std::size_t openReference(std::u16string_view source, std::size_t offset) {
    const std::size_t least = offset - std::min(offset, LongestReference);
    for (std::size_t i = offset; i > least; --i) {
        if (source[i - 1] == u'&') return i - 1;
        if (!isAsciiAlnum(source[i - 1]) && source[i - 1] != u'#') break;
    }
    return std::u16string_view::npos;
}

/// True where text that starts with `next`, put behind `offset`, reads the "&" at `ampersand` in another way than what stands there alone.
bool changesReference(std::u16string_view source, std::size_t ampersand, std::size_t offset, std::u16string_view next) {
    CharacterReferences references;
    std::u16string run(source.substr(ampersand, offset - ampersand));
    const CharacterReference before = references.at(run, 0);
    run += next.substr(0, LongestReference);
    const CharacterReference after = references.at(run, 0);
    return before.length != after.length || before.character != after.character;
}

bool startsMarkup(char16_t unit) noexcept {
    return isAsciiLetter(unit) || unit == u'/' || unit == u'!' || unit == u'?';
}

template <typename Encode>
void encodeEach(EncodedText& result, std::u16string_view text, Encode encode) {
    result.lengths.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t lineEnd = lineEndLength(text, i);
        const std::size_t length = lineEnd != 0 ? lineEnd : characterLength(text, i);
        const std::size_t before = result.source.size();
        result.source += encode(text.substr(i, length));
        result.lengths.push_back(result.source.size() - before);
        i += length;
    }
}

}  // namespace

EncodedText encodeForHtml(std::u16string_view source, std::size_t offset, std::u16string_view text, std::u16string_view lineEnd) {
    EncodedText result;
    encodeEach(result, text, [&](std::u16string_view character) { return escapeHtml(character, lineEnd); });
    if (text.empty() || offset == 0 || text.front() > 0x7E || isLineEnd(text.front())) return result;
    const std::size_t ampersand = openReference(source, offset);
    const bool joins = (source[offset - 1] == u'<' && startsMarkup(text.front())) ||
                       (ampersand != std::u16string_view::npos && changesReference(source, ampersand, offset, result.source));
    if (joins) {
        const std::u16string number = u"&#" + host::decimal(text.front()) + u";";
        result.source.replace(0, result.lengths.front(), number);
        result.lengths.front() = number.size();
    }
    return result;
}

EncodedText encodeForRtf(std::u16string_view source, std::size_t offset, std::u16string_view text) {
    EncodedText result;
    encodeEach(result, text, [](std::u16string_view character) { return escapeRtf(character); });
    if (!text.empty() && rtfNeedsDelimiter(source, offset)) {
        result.source.insert(0, 1, u' ');
        ++result.lengths.front();
    }
    return result;
}

EncodedText encodePlain(std::u16string_view text) {
    EncodedText result;
    encodeEach(result, text, [](std::u16string_view character) { return character; });
    return result;
}

Erasure::Erasure(std::u16string_view source, std::vector<SourceRange> ranges) {
    std::sort(ranges.begin(), ranges.end(), [](const SourceRange& a, const SourceRange& b) { return a.begin < b.begin; });
    for (const SourceRange& range : ranges) {
        if (range.empty()) continue;
        if (!ranges_.empty() && range.begin <= ranges_.back().end) {
            ranges_.back().end = std::max(ranges_.back().end, range.end);
        } else {
            ranges_.push_back(range);
        }
    }
    result_.reserve(source.size());
    std::size_t kept = 0;
    for (const SourceRange& range : ranges_) {
        result_ += source.substr(kept, range.begin - kept);
        kept = range.end;
    }
    result_ += source.substr(kept);
}

std::size_t Erasure::moved(std::size_t offset) const {
    std::size_t gone = 0;
    for (const SourceRange& range : ranges_) {
        if (range.begin >= offset) break;
        gone += std::min(range.end, offset) - range.begin;
    }
    return offset - gone;
}

bool splitsReference(std::u16string_view source, std::size_t offset) {
    const std::size_t ampersand = openReference(source, offset);
    if (ampersand == std::u16string_view::npos) return false;
    CharacterReferences references;
    return references.at(source, ampersand).length > offset - ampersand;
}

std::size_t keepApartInHtml(std::u16string& source, std::size_t offset) {
    if (offset == 0 || offset >= source.size()) return offset;
    std::size_t at = std::u16string::npos;
    std::u16string_view escaped;
    if (source[offset - 1] == u'<' && startsMarkup(source[offset])) {
        at = offset - 1;
        escaped = u"&lt;";
    } else if (at = openReference(source, offset); at != std::u16string::npos) {
        const std::u16string_view next = std::u16string_view(source).substr(offset, LongestReference);
        if (!changesReference(source, at, offset, next)) return offset;
        escaped = u"&amp;";
        // A whole entity without its ";" gets one instead.
        CharacterReferences references;
        if (references.at(std::u16string_view(source).substr(0, offset), at).length != 0) {
            source.insert(offset, 1, u';');
            return offset + 1;
        }
    }
    if (escaped.empty()) return offset;
    source.replace(at, 1, escaped);
    return offset + escaped.size() - 1;
}

}  // namespace lorvane::html
