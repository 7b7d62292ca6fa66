#include "html/MarkupScanner.h"

#include <algorithm>

#include "html/Units.h"

namespace lorvane::html {

namespace {

bool isTagBlank(char16_t unit) noexcept {
    return isBlank(unit) || unit == u'\f';
}

bool equalsAscii(std::u16string_view a, std::u16string_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char16_t x, char16_t y) { return asciiLower(x) == asciiLower(y); });
}

bool startsWithAt(std::u16string_view source, std::size_t offset, std::u16string_view sought) noexcept {
    return source.substr(std::min(offset, source.size()), sought.size()) == sought;
}

std::size_t behind(std::u16string_view source, std::u16string_view sought, std::size_t from) {
    const std::size_t found = source.find(sought, from);
    return found == std::u16string_view::npos ? source.size() : found + sought.size();
}

std::size_t commentEnd(std::u16string_view source, std::size_t offset) {
    const std::size_t text = offset + 4;
    if (startsWithAt(source, text, u">")) return text + 1;
    if (startsWithAt(source, text, u"->")) return text + 2;
    for (std::size_t dashes = source.find(u"--", text); dashes != std::u16string_view::npos; dashes = source.find(u"--", dashes + 1)) {
        if (startsWithAt(source, dashes + 2, u">")) return dashes + 3;
        if (startsWithAt(source, dashes + 2, u"!>")) return dashes + 4;
    }
    return source.size();
}

/// A tag from its name on: attributes, quoted values and the end.
class TagReader {
public:
    TagReader(std::u16string_view source, std::size_t name) : source_(source), at_(name) {}

    MarkupToken read() {
        MarkupToken token;
        const std::size_t name = at_;
        while (at_ < source_.size() && !isTagBlank(source_[at_]) && source_[at_] != u'/' && source_[at_] != u'>') ++at_;
        token.name = source_.substr(name, at_ - name);
        while (true) {
            while (at_ < source_.size() && isTagBlank(source_[at_])) ++at_;
            if (at_ >= source_.size()) break;
            if (source_[at_] == u'>') {
                ++at_;
                break;
            }
            if (source_[at_] == u'/') {
                ++at_;
                token.selfClosing = startsWithAt(source_, at_, u">");
                continue;
            }
            readAttribute();
            ++token.attributes;
        }
        token.range.end = at_;
        return token;
    }

private:
    void readAttribute() {
        ++at_;  // even a "=" starts a name
        while (at_ < source_.size() && !isTagBlank(source_[at_]) && source_[at_] != u'/' && source_[at_] != u'>' && source_[at_] != u'=') ++at_;
        std::size_t value = at_;
        while (value < source_.size() && isTagBlank(source_[value])) ++value;
        if (!startsWithAt(source_, value, u"=")) return;
        at_ = value + 1;
        while (at_ < source_.size() && isTagBlank(source_[at_])) ++at_;
        if (at_ >= source_.size()) return;
        if (source_[at_] == u'"' || source_[at_] == u'\'') {
            at_ = behind(source_, source_.substr(at_, 1), at_ + 1);
            return;
        }
        while (at_ < source_.size() && !isTagBlank(source_[at_]) && source_[at_] != u'>') ++at_;
    }

    std::u16string_view source_;
    std::size_t at_;
};

/// The token that starts with the "<" at `offset`; its range is empty where that "<" is text.
MarkupToken readMarkup(std::u16string_view source, std::size_t offset) {
    MarkupToken token;
    const char16_t first = offset + 1 < source.size() ? source[offset + 1] : u'\0';
    if (isAsciiLetter(first)) {
        token = TagReader(source, offset + 1).read();
        token.kind = MarkupToken::Kind::StartTag;
    } else if (first == u'/' && offset + 2 < source.size()) {
        if (isAsciiLetter(source[offset + 2])) {
            token = TagReader(source, offset + 2).read();
            token.kind = MarkupToken::Kind::EndTag;
        } else {
            token.kind = MarkupToken::Kind::Other;
            token.range.end = behind(source, u">", offset + 2);
        }
    } else if (first == u'!' || first == u'?') {
        token.kind = MarkupToken::Kind::Other;
        token.range.end = startsWithAt(source, offset + 2, u"--") && first == u'!' ? commentEnd(source, offset) : behind(source, u">", offset + 2);
    } else {
        token.range.end = offset;
    }
    token.range.begin = offset;
    return token;
}

}  // namespace

std::size_t markupEnd(std::u16string_view source, std::size_t offset) {
    return readMarkup(source, offset).range.end;
}

MarkupToken MarkupScanner::verbatimText() {
    MarkupToken token;
    token.content = contentOfName(rawName_);
    token.range.begin = offset_;
    std::size_t end = source_.size();
    if (token.content != Content::EverBehind) {
        for (std::size_t at = source_.find(u"</", offset_); at != std::u16string_view::npos; at = source_.find(u"</", at + 2)) {
            const std::size_t nameEnd = at + 2 + rawName_.size();
            if (nameEnd >= source_.size() || !equalsAscii(source_.substr(at + 2, rawName_.size()), rawName_)) continue;
            if (!isTagBlank(source_[nameEnd]) && source_[nameEnd] != u'/' && source_[nameEnd] != u'>') continue;
            end = at;
            break;
        }
    }
    token.range.end = offset_ = end;
    rawName_ = {};
    return token;
}

std::optional<MarkupToken> MarkupScanner::next() {
    if (!rawName_.empty()) {
        const MarkupToken token = verbatimText();
        if (!token.range.empty()) return token;
    }
    if (offset_ >= source_.size()) return std::nullopt;
    if (source_[offset_] == u'<') {
        const MarkupToken token = readMarkup(source_, offset_);
        if (!token.range.empty()) {
            offset_ = token.range.end;
            if (token.kind == MarkupToken::Kind::StartTag && contentOfName(token.name) != Content::Markup) rawName_ = token.name;
            return token;
        }
    }
    MarkupToken token;
    token.range.begin = offset_;
    std::size_t end = source_.find(u'<', offset_ + 1);
    const auto isText = [&](std::size_t at) {
        const char16_t first = at + 1 < source_.size() ? source_[at + 1] : u'\0';
        return !isAsciiLetter(first) && first != u'!' && first != u'?' && !(first == u'/' && at + 2 < source_.size());
    };
    while (end != std::u16string_view::npos && isText(end)) end = source_.find(u'<', end + 1);
    token.range.end = offset_ = std::min(end, source_.size());
    return token;
}

bool liesInMarkup(std::u16string_view source, std::size_t offset) {
    MarkupScanner scanner(source);
    while (const std::optional<MarkupToken> token = scanner.next()) {
        if (token->range.end < offset) continue;
        return token->kind != MarkupToken::Kind::Text && token->range.begin < offset && offset < token->range.end;
    }
    return false;
}

}  // namespace lorvane::html
