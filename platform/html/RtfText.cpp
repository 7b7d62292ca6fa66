#include "html/RtfText.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "host/TextFunctions.h"
#include "html/Units.h"

namespace lorvane::html {

namespace {

constexpr int WesternCodePage = 1252;

/// Windows-1252 from 0x80 to 0x9F; the rest is Latin-1.
constexpr std::array<char16_t, 32> WesternHigh = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

char16_t western(unsigned char byte) noexcept {
    return byte >= 0x80 && byte <= 0x9F ? WesternHigh[byte - 0x80] : byte;
}

int hexValue(char16_t unit) noexcept {
    if (isAsciiDigit(unit)) return unit - u'0';
    const char16_t lower = asciiLower(unit);
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

bool isSkippedDestination(std::u16string_view word) {
    static constexpr std::u16string_view words[] = {u"fonttbl",
                                                    u"colortbl",
                                                    u"stylesheet",
                                                    u"info",
                                                    u"pict",
                                                    u"object",
                                                    u"objdata",
                                                    u"header",
                                                    u"headerl",
                                                    u"headerr",
                                                    u"headerf",
                                                    u"footer",
                                                    u"footerl",
                                                    u"footerr",
                                                    u"footerf",
                                                    u"listtable",
                                                    u"revtbl",
                                                    u"rsidtbl",
                                                    u"generator",
                                                    u"xmlnstbl",
                                                    u"themedata",
                                                    u"latentstyles",
                                                    u"filetbl",
                                                    u"fldinst",
                                                    u"datastore",
                                                    u"pntxta",
                                                    u"pntxtb",
                                                    u"footnote",
                                                    u"listoverridetable",
                                                    u"colorschememapping",
                                                    u"bkmkstart",
                                                    u"bkmkend",
                                                    u"xe",
                                                    u"tc",
                                                    u"private",
                                                    u"nonshppict"};
    return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

struct SpecialWord {
    std::u16string_view word;
    char16_t unit;
};

constexpr SpecialWord SpecialWords[] = {{u"par", u'\n'},        {u"line", u'\n'},          {u"sect", u'\n'},          {u"page", u'\n'},
                                        {u"row", u'\n'},        {u"tab", u'\t'},           {u"cell", u'\t'},          {u"emdash", u'\u2014'},
                                        {u"endash", u'\u2013'}, {u"emspace", u'\u2003'},   {u"enspace", u'\u2002'},   {u"lquote", u'\u2018'},
                                        {u"rquote", u'\u2019'}, {u"ldblquote", u'\u201C'}, {u"rdblquote", u'\u201D'}, {u"bullet", u'\u2022'},
                                        {u"zwj", u'\u200D'},    {u"zwnj", u'\u200C'},      {u"ltrmark", u'\u200E'},   {u"rtlmark", u'\u200F'}};

/// Reads RTF from its start to its end.
class RtfReader {
public:
    RtfReader(std::u16string_view rtf, const ByteDecoder& decoder) : rtf_(rtf), decoder_(decoder) {}

    TextMap read() {
        while (at_ < rtf_.size()) {
            switch (rtf_[at_]) {
                case u'{':
                    openGroup();
                    break;
                case u'}':
                    closeGroup();
                    break;
                case u'\\':
                    control();
                    break;
                case u'\r':
                case u'\n':
                    ++at_;
                    break;
                default: {
                    const std::size_t length = characterLength(rtf_, at_);
                    show(rtf_.substr(at_, length), {at_, at_ + length});
                    at_ += length;
                }
            }
        }
        map_.setEmptyStart(end_.value_or(rtf_.size()));
        return std::move(map_);
    }

private:
    struct Group {
        bool skipped = false;
        bool fresh = true;         ///< nothing but "\*" so far
        std::size_t fallback = 1;  ///< characters that follow a "\u" for readers that do not know it
    };

    void openGroup() {
        ++at_;
        pending_ = 0;
        Group group = groups_.empty() ? Group{} : groups_.back();
        group.fresh = true;
        groups_.push_back(group);
    }

    void closeGroup() {
        if (groups_.size() == 1 && !end_) end_ = at_;
        if (!groups_.empty()) groups_.pop_back();
        ++at_;
        pending_ = 0;
    }

    Group& group() {
        if (groups_.empty()) groups_.emplace_back();
        return groups_.back();
    }

    void control() {
        const std::size_t begin = at_++;
        if (at_ >= rtf_.size()) return;
        if (!isAsciiLetter(rtf_[at_])) {
            controlSymbol(begin);
            return;
        }
        const std::size_t name = at_;
        while (at_ < rtf_.size() && isAsciiLetter(rtf_[at_])) ++at_;
        const std::u16string_view word = rtf_.substr(name, at_ - name);
        const std::optional<long> parameter = readParameter();
        if (at_ < rtf_.size() && rtf_[at_] == u' ') ++at_;
        controlWord(word, parameter, begin);
    }

    std::optional<long> readParameter() {
        const bool negative = at_ + 1 < rtf_.size() && rtf_[at_] == u'-' && isAsciiDigit(rtf_[at_ + 1]);
        if (negative) ++at_;
        if (at_ >= rtf_.size() || !isAsciiDigit(rtf_[at_])) return std::nullopt;
        long value = 0;
        for (; at_ < rtf_.size() && isAsciiDigit(rtf_[at_]); ++at_) value = std::min(value * 10 + (rtf_[at_] - u'0'), 100'000'000L);
        return negative ? -value : value;
    }

    void controlWord(std::u16string_view word, std::optional<long> parameter, std::size_t begin) {
        const bool first = std::exchange(group().fresh, false);
        if (word == u"bin") {
            at_ = std::min(rtf_.size(), at_ + static_cast<std::size_t>(std::max(parameter.value_or(0), 0L)));
        } else if (first && isSkippedDestination(word)) {
            group().skipped = true;
        } else if (word == u"ansicpg") {
            codePage_ = static_cast<int>(parameter.value_or(WesternCodePage));
        } else if (word == u"uc") {
            group().fallback = static_cast<std::size_t>(std::clamp(parameter.value_or(1), 0L, 16L));
        } else if (word == u"u" && parameter) {
            const char16_t unit = static_cast<char16_t>(*parameter & 0xFFFF);
            if (takeFallback({begin, at_})) return;
            show({&unit, 1}, {begin, at_});
            pending_ = group().skipped ? 0 : group().fallback;
        } else {
            for (const SpecialWord& special : SpecialWords) {
                if (special.word == word && !takeFallback({begin, at_})) show({&special.unit, 1}, {begin, at_});
            }
        }
    }

    void controlSymbol(std::size_t begin) {
        const char16_t symbol = rtf_[at_++];
        if (symbol == u'*') {
            if (group().fresh) group().skipped = true;
            return;
        }
        group().fresh = false;
        if (symbol == u'\'') {
            byte(begin);
            return;
        }
        if (symbol == u'\r' && at_ < rtf_.size() && rtf_[at_] == u'\n') ++at_;
        const SourceRange range{begin, at_};
        switch (symbol) {
            case u'\\':
            case u'{':
            case u'}':
                show({&symbol, 1}, range);
                break;
            case u'~':
                show(u"\u00A0", range);
                break;
            case u'_':
                show(u"\u2011", range);
                break;
            case u'\r':
            case u'\n':
                show(u"\n", range);
                break;
            case u'\t':
                show(u"\t", range);
                break;
            default:
                break;
        }
    }

    std::optional<unsigned char> hexAt(std::size_t offset) const {
        if (offset + 1 >= rtf_.size()) return std::nullopt;
        const int high = hexValue(rtf_[offset]);
        const int low = hexValue(rtf_[offset + 1]);
        if (high < 0 || low < 0) return std::nullopt;
        return static_cast<unsigned char>(high * 16 + low);
    }

    void byte(std::size_t begin) {
        const std::optional<unsigned char> first = hexAt(at_);
        if (!first) return;
        at_ += 2;
        if (takeFallback({begin, at_})) return;
        std::u16string units(1, western(*first));
        if (decoder_ && codePage_ != WesternCodePage && *first >= 0x80) {
            std::string bytes(1, static_cast<char>(*first));
            units = decoder_(bytes, codePage_);
            const bool pairFollows = at_ + 1 < rtf_.size() && rtf_[at_] == u'\\' && rtf_[at_ + 1] == u'\'';
            const std::optional<unsigned char> second = pairFollows ? hexAt(at_ + 2) : std::nullopt;
            if (units.empty() && second) {
                bytes += static_cast<char>(*second);
                at_ += 4;
                units = decoder_(bytes, codePage_);
            }
            if (units.empty()) units = u"\uFFFD";
        }
        if (units == u"\r") units = u"\n";
        show(units, {begin, at_});
    }

    /// Takes a character as what stands behind a "\u" for older readers.
    bool takeFallback(SourceRange range) {
        if (pending_ == 0) return false;
        --pending_;
        map_.extendLast(range);
        return true;
    }

    void show(std::u16string_view units, SourceRange range) {
        Group& now = group();
        now.fresh = false;
        if (now.skipped || takeFallback(range)) return;
        if (units.size() == range.end - range.begin) {
            for (std::size_t i = 0; i < units.size(); ++i) map_.addLiteral(units[i], range.begin + i);
        } else {
            map_.addAtom(units, range);
        }
    }

    std::u16string_view rtf_;
    const ByteDecoder& decoder_;
    TextMap map_;
    std::vector<Group> groups_;
    std::size_t at_ = 0;
    std::size_t pending_ = 0;         ///< fallback characters still to come
    std::optional<std::size_t> end_;  ///< where the document's own group closes
    int codePage_ = WesternCodePage;
};

}  // namespace

TextMap mapRtf(std::u16string_view rtf, const ByteDecoder& decoder) {
    return RtfReader(rtf, decoder).read();
}

std::u16string rtfToText(std::u16string_view rtf, const ByteDecoder& decoder) {
    return mapRtf(rtf, decoder).text();
}

std::u16string escapeRtf(std::u16string_view text) {
    static constexpr char16_t hexDigits[] = u"0123456789abcdef";
    std::u16string result;
    result.reserve(text.size() + text.size() / 16);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (isLineEnd(unit)) {
            i += lineEndLength(text, i) - 1;
            result += u"\\par\r\n";
        } else if (unit == u'\t') {
            result += u"\\tab ";
        } else if (unit == u'\\' || unit == u'{' || unit == u'}') {
            result += u'\\';
            result += unit;
        } else if (unit > 0x7E) {
            result += u"\\u" + host::decimal(static_cast<std::int16_t>(unit)) + u"?";
        } else if (unit < 0x20) {
            result += u"\\'";
            result += hexDigits[unit >> 4];
            result += hexDigits[unit & 15];
        } else {
            result += unit;
        }
    }
    return result;
}

std::u16string textToRtf(std::u16string_view text) {
    std::u16string result = u"{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss Arial;}}\r\n\\pard\\plain\\f0\\fs20 ";
    result += escapeRtf(text);
    result += u'}';
    return result;
}

bool rtfNeedsDelimiter(std::u16string_view rtf, std::size_t offset) {
    std::size_t at = std::min(offset, rtf.size());
    while (at > 0 && isAsciiDigit(rtf[at - 1])) --at;
    if (at > 0 && at < offset && rtf[at - 1] == u'-') --at;
    const std::size_t wordEnd = at;
    while (at > 0 && isAsciiLetter(rtf[at - 1])) --at;
    if (at == wordEnd) return false;
    // An even number of backslashes is so many backslashes in the text.
    std::size_t backslashes = 0;
    while (backslashes < at && rtf[at - 1 - backslashes] == u'\\') ++backslashes;
    return backslashes % 2 == 1;
}

}  // namespace lorvane::html
