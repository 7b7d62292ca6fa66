#include "recordset/RowsetTokenizer.h"

#include <algorithm>
#include <cstring>

#include "host/TextFunctions.h"
#include "recordset/Errors.h"

namespace lorvane::recordset {

namespace {

constexpr char16_t byteOrderMark = u'\uFEFF';

bool isBlank(char16_t unit) noexcept {
    return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
}

bool startsName(char16_t unit) noexcept {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == u'_' || unit >= 0x80;
}

bool belongsToName(char16_t unit) noexcept {
    return startsName(unit) || (unit >= u'0' && unit <= u'9') || unit == u'-' || unit == u'.';
}

int digitOf(char16_t unit, int base) noexcept {
    int digit = 99;
    if (unit >= u'0' && unit <= u'9')
        digit = unit - u'0';
    else if (unit >= u'a' && unit <= u'f')
        digit = unit - u'a' + 10;
    else if (unit >= u'A' && unit <= u'F')
        digit = unit - u'A' + 10;
    return digit < base ? digit : -1;
}

struct NamedReference {
    std::u16string_view name;
    char16_t unit;
};

constexpr NamedReference namedReferences[] = {{u"amp", u'&'}, {u"lt", u'<'}, {u"gt", u'>'}, {u"quot", u'"'}, {u"apos", u'\''}};

}  // namespace

bool isSameName(const RowsetName& a, const RowsetName& b) noexcept {
    return host::equalsIgnoreCase(a.local, b.local) && host::equalsIgnoreCase(a.prefix, b.prefix);
}

RowsetTokenizer::RowsetTokenizer(std::u16string_view text) : text_(text) {
    if (text_.size() > longestText) refuse(u"The source is too long.");
    if (!text_.empty() && text_[0] == byteOrderMark) text_.remove_prefix(1);
}

void RowsetTokenizer::refuse(std::u16string_view reason) const {
    const auto line = std::count(text_.begin(), text_.begin() + static_cast<std::ptrdiff_t>(at_), u'\n') + 1;
    raiseNotARowset(std::u16string(reason).append(u" (Line ").append(host::decimal(line)).append(u".)"));
}

void RowsetTokenizer::passBlanks() noexcept {
    while (!atEnd() && isBlank(text_[at_])) ++at_;
}

void RowsetTokenizer::passBehind(std::u16string_view mark) {
    const std::size_t found = text_.find(mark, at_);
    if (found == std::u16string_view::npos) refuse(u"The text breaks off.");
    at_ = found + mark.size();
}

// Everything between elements: blanks, comments and instructions.
void RowsetTokenizer::passMarkup() {
    for (;;) {
        passBlanks();
        if (startsHere(u"<!--"))
            passBehind(u"-->");
        else if (startsHere(u"<?"))
            passBehind(u"?>");
        else if (startsHere(u"<!"))
            refuse(u"It may have neither a document type nor CDATA sections.");
        else
            return;
    }
}

RowsetTokenizer::Token RowsetTokenizer::next() {
    if (closesItself_) {
        closesItself_ = false;
        return close();
    }
    attributes_.clear();
    passMarkup();
    if (atEnd()) {
        if (!open_.empty() || !rootSeen_) refuse(u"The text breaks off.");
        return Token::Finished;
    }
    if (text_[at_] != u'<') refuse(u"There is text outside of the elements.");
    ++at_;
    if (!atEnd() && text_[at_] == u'/') {
        ++at_;
        return readEnd();
    }
    return readStart();
}

RowsetName RowsetTokenizer::readName() {
    const auto part = [this] {
        const std::size_t start = at_;
        if (atEnd() || !startsName(text_[at_])) refuse(atEnd() ? u"The text breaks off." : u"A name is expected here.");
        while (!atEnd() && belongsToName(text_[at_])) ++at_;
        if (at_ - start > longestName) refuse(u"A name is too long.");
        return text_.substr(start, at_ - start);
    };
    const std::u16string_view first = part();
    if (atEnd() || text_[at_] != u':') return {{}, first};
    ++at_;
    return {first, part()};
}

RowsetTokenizer::Token RowsetTokenizer::readStart() {
    if (rootSeen_ && open_.empty()) refuse(u"There is more than one root element.");
    if (open_.size() == deepest) refuse(u"The elements are nested too deeply.");
    rootSeen_ = true;
    name_ = readName();
    open_.push_back(name_);
    values_.clear();
    for (;;) {
        const std::size_t before = at_;
        passBlanks();
        if (atEnd()) refuse(u"The text breaks off.");
        if (text_[at_] == u'>') {
            ++at_;
            return Token::Start;
        }
        if (startsHere(u"/>")) {
            at_ += 2;
            closesItself_ = true;
            return Token::Start;
        }
        if (at_ == before) refuse(u"A blank is missing between attributes.");
        readAttribute();
    }
}

RowsetTokenizer::Token RowsetTokenizer::readEnd() {
    const RowsetName name = readName();
    passBlanks();
    if (atEnd() || text_[at_] != u'>') refuse(u"The end of an element is not complete.");
    ++at_;
    if (open_.empty() || !isSameName(open_.back(), name)) refuse(u"An element ends that is not open here.");
    return close();
}

RowsetTokenizer::Token RowsetTokenizer::close() {
    attributes_.clear();
    name_ = open_.back();
    open_.pop_back();
    return Token::End;
}

void RowsetTokenizer::readAttribute() {
    if (attributes_.size() == mostAttributes) refuse(u"An element has too many attributes.");
    const RowsetName name = readName();
    passBlanks();
    if (atEnd() || text_[at_] != u'=') refuse(u"An attribute has no value.");
    ++at_;
    passBlanks();
    if (atEnd() || (text_[at_] != u'\'' && text_[at_] != u'"')) refuse(u"The value of an attribute does not stand in quotes.");
    const char16_t quote = text_[at_++];
    attributes_.push_back({name, {}});
    readValue(quote);
}

void RowsetTokenizer::readValue(char16_t quote) {
    const std::size_t start = at_;
    const std::size_t end = text_.find(quote, at_);
    if (end == std::u16string_view::npos) refuse(u"The text breaks off.");
    const std::u16string_view raw = text_.substr(start, end - start);
    if (const std::size_t opens = raw.find(u'<'); opens != std::u16string_view::npos) {
        at_ = start + opens;
        refuse(u"A value holds \"<\" that is not written as a reference.");
    }
    if (raw.find(u'&') == std::u16string_view::npos) {
        attributes_.back().value = raw;
        at_ = end + 1;
        return;
    }
    // A resolved value is never longer than the raw one; growing moves the values in front, whose views are made anew.
    if (values_.capacity() - values_.size() < raw.size()) {
        const char16_t* const old = values_.data();
        const std::size_t used = values_.size();
        std::u16string grown;
        grown.reserve(std::max(values_.capacity() * 2, used + raw.size()));
        grown.append(values_);
        for (RowsetAttribute& attribute : attributes_) {
            const std::less<const char16_t*> before;
            if (!attribute.value.empty() && !before(attribute.value.data(), old) && before(attribute.value.data(), old + used))
                attribute.value = {grown.data() + (attribute.value.data() - old), attribute.value.size()};
        }
        values_ = std::move(grown);
    }
    const std::size_t begins = values_.size();
    while (at_ < end) {
        const std::size_t next = std::min(text_.find(u'&', at_), end);
        values_.append(text_.substr(at_, next - at_));
        at_ = next;
        if (at_ < end) readReference();
    }
    attributes_.back().value = std::u16string_view(values_).substr(begins);
    at_ = end + 1;
}

// Leaves the place behind the reference. One that cannot be read is refused, for a value must not come out other than it was meant.
void RowsetTokenizer::readReference() {
    constexpr std::size_t longest = 32;
    const std::size_t end = text_.substr(at_, longest).find(u';');
    if (end == std::u16string_view::npos) refuse(u"A value holds \"&\" that begins no reference.");
    std::u16string_view name = text_.substr(at_ + 1, end - 1);
    const auto pass = [&](char16_t unit) {
        values_ += unit;
        at_ += end + 1;
    };
    for (const NamedReference& known : namedReferences) {
        if (known.name == name) return pass(known.unit);
    }
    if (name.size() < 2 || name[0] != u'#') refuse(u"A value holds a reference that is not known.");
    const int base = name[1] == u'x' || name[1] == u'X' ? 16 : 10;
    name.remove_prefix(base == 16 ? 2 : 1);
    std::uint32_t code = 0;
    for (const char16_t unit : name) {
        const int digit = digitOf(unit, base);
        if (digit < 0 || code > 0x10FFFF) refuse(u"A value holds a reference that is not known.");
        code = code * static_cast<std::uint32_t>(base) + static_cast<std::uint32_t>(digit);
    }
    if (name.empty() || code > 0x10FFFF) refuse(u"A value holds a reference that is not known.");
    if (code >= 0x10000) {
        values_ += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
        code = 0xDC00 + ((code - 0x10000) & 0x3FF);
    }
    pass(static_cast<char16_t>(code));
}

std::u16string rowsetTextFrom(std::span<const std::uint8_t> bytes) {
    if (bytes.size() > 4 * RowsetTokenizer::longestText) raiseNotARowset(u"The source is too long.");
    const auto startsWith = [bytes](std::initializer_list<std::uint8_t> mark) {
        return std::ranges::equal(bytes.first(std::min(bytes.size(), mark.size())), mark);
    };
    if (startsWith({0xFF, 0xFE}) || startsWith({0xFE, 0xFF})) {
        if (bytes.size() % 2 != 0) raiseNotARowset(u"The text breaks off.");
        const std::size_t low = bytes[0] == 0xFF ? 0 : 1;
        std::u16string text;
        text.reserve(bytes.size() / 2);
        for (std::size_t i = 2; i < bytes.size(); i += 2) text += static_cast<char16_t>(bytes[i + low] | bytes[i + 1 - low] << 8);
        return text;
    }
    if (startsWith({0xEF, 0xBB, 0xBF})) bytes = bytes.subspan(3);
    const std::string utf8(bytes.begin(), bytes.end());
    std::u16string text = host::fromUtf8(utf8);
    if (host::toUtf8(text) != utf8) raiseNotARowset(u"The source is neither UTF-8 nor UTF-16 text.");
    return text;
}

}  // namespace lorvane::recordset
