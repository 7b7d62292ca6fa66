#include "mime/HeaderText.h"

#include <gmime/gmime.h>

#include <memory>

#include "host/TextFunctions.h"
#include "mime/GmimeLibrary.h"
#include "mime/MimeTree.h"
#include "mime/TransferCoding.h"

namespace lorvane::mime {
namespace {

/// A reference to an object of the library, given back at the end.
struct Unref {
    void operator()(void* object) const noexcept { g_object_unref(object); }
};
template <class T>
using Ref = std::unique_ptr<T, Unref>;

struct FreeDate {
    void operator()(GDateTime* date) const noexcept { g_date_time_unref(date); }
};

std::string_view orEmpty(const char* text) noexcept {
    return text ? std::string_view(text) : std::string_view();
}

/// One encoded word: "=?charset?encoding?text?=".
struct EncodedWord {
    std::string_view charset, text;
    bool base64 = false;
    std::size_t length = 0;
};

/// Longest encoded word looked for: the standard allows 75 characters, some programs write longer ones, and without a limit a hostile field takes for ever.
constexpr std::size_t LongestWord = 2000;

std::optional<EncodedWord> encodedWordAt(std::string_view value, std::size_t at) {
    if (!value.substr(at).starts_with("=?")) return {};
    value = value.substr(0, at + LongestWord);
    const std::size_t charsetEnd = value.find('?', at + 2);
    if (charsetEnd == std::string_view::npos || charsetEnd == at + 2 || charsetEnd + 2 >= value.size() || value[charsetEnd + 2] != '?') return {};
    const std::size_t end = value.find("?=", charsetEnd + 3);
    if (end == std::string_view::npos) return {};
    EncodedWord word;
    word.charset = value.substr(at + 2, charsetEnd - at - 2);
    word.charset = word.charset.substr(0, word.charset.find('*'));  // RFC 2231: a language behind the set
    word.text = value.substr(charsetEnd + 3, end - charsetEnd - 3);
    const char encoding = value[charsetEnd + 1];
    word.base64 = encoding == 'B' || encoding == 'b';
    if (!word.base64 && encoding != 'Q' && encoding != 'q') return {};
    if (word.charset.find_first_of(" \t") != std::string_view::npos) return {};
    word.length = end + 2 - at;
    return word;
}

std::string bytesOf(const EncodedWord& word) {
    if (word.base64) return decodeBytes(TransferEncoding::Base64, word.text);
    std::string text(word.text);
    for (char& c : text)
        if (c == '_') c = ' ';
    // A blank at the end is text here, but would be transport's padding in a body.
    const std::size_t kept = text.find_last_not_of(" \t") + 1;
    return decodeBytes(TransferEncoding::QuotedPrintable, std::string_view(text).substr(0, kept)) + text.substr(kept);
}

/// The run of encoded words at `at` in UTF-16; `at` is moved behind it. Blanks between words are none, and a character may be split between words of a set.
/// The words are decoded one by one since each may carry its own padding, which the library's decoder takes for the end of them all.
std::optional<std::u16string> decodeRun(std::string_view value, std::size_t& at) {
    auto word = encodedWordAt(value, at);
    if (!word) return {};
    std::u16string text;
    std::string bytes, charset(word->charset);
    while (word) {
        if (!equalsAscii(charset, word->charset)) {
            text += decodeCharset(bytes, charset);
            bytes.clear();
            charset = word->charset;
        }
        bytes += bytesOf(*word);
        at += word->length;
        const std::size_t next = value.find_first_not_of(" \t", at);
        word = next == std::string_view::npos ? std::nullopt : encodedWordAt(value, next);
        if (word) at = next;
    }
    return text + decodeCharset(bytes, charset);
}

/// Decoded text may look like an encoded word and must not be decoded a second time: a noncharacter breaks its start until the library is done.
constexpr std::u16string_view MaskedWordStart = u"=\uFDD0?";

std::u16string fromLibrary(const char* text) {
    return host::Replace(host::fromUtf8(orEmpty(text)), MaskedWordStart, u"=?");
}

/// The value with its encoded words replaced by quoted text in UTF-8, so that the library finds nothing left to decode.
std::string wordsToQuotedText(std::string_view value) {
    std::string out;
    bool quoted = false;
    int comments = 0;
    for (std::size_t at = 0; at < value.size();) {
        if (const auto text = decodeRun(value, at)) {
            const bool bare = !quoted && comments == 0;
            if (bare) out += '"';
            for (const char c : host::toUtf8(host::Replace(*text, u"=?", MaskedWordStart))) {
                const bool control = static_cast<unsigned char>(c) < 32 || c == 127;
                if (c == '"' || c == '\\' || (comments > 0 && (c == '(' || c == ')'))) out += '\\';
                out += control ? ' ' : c;
            }
            if (bare) out += '"';
            continue;
        }
        const char c = value[at++];
        out += c;
        if (c == '\\' && (quoted || comments > 0) && at < value.size())
            out += value[at++];
        else if (c == '"' && comments == 0)
            quoted = !quoted;
        else if (c == '(' && !quoted)
            ++comments;
        else if (c == ')' && !quoted && comments > 0)
            --comments;
    }
    return out;
}

/// Raw bytes above ASCII of a value as UTF-8, so that the library has nothing to guess.
std::string withoutForeignBytes(std::string_view value) {
    return host::toUtf8(decodeCharset(value, ""));
}

void flatten(InternetAddressList* list, bool emptyGroups, std::size_t depth, std::vector<Mailbox>& out) {
    const int count = list ? internet_address_list_length(list) : 0;
    for (int i = 0; i < count; ++i) {
        InternetAddress* address = internet_address_list_get_address(list, i);
        const std::u16string name = fromLibrary(internet_address_get_name(address));
        if (INTERNET_ADDRESS_IS_MAILBOX(address)) {
            out.push_back({name, host::fromUtf8(orEmpty(internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(address))))});
        } else if (INTERNET_ADDRESS_IS_GROUP(address) && depth < MaximumDepth) {
            InternetAddressList* members = internet_address_group_get_members(INTERNET_ADDRESS_GROUP(address));
            if (emptyGroups && (!members || internet_address_list_length(members) == 0)) out.push_back({name, {}});
            flatten(members, emptyGroups, depth + 1, out);
        }
    }
}

/// The parameters of a list of the library.
void readParameters(GMimeParamList* list, Parameterised& out) {
    const int count = list ? g_mime_param_list_length(list) : 0;
    for (int i = 0; i < count; ++i) {
        GMimeParam* parameter = g_mime_param_list_get_parameter_at(list, i);
        out.parameters.emplace(lowerAscii(orEmpty(g_mime_param_get_name(parameter))), fromLibrary(g_mime_param_get_value(parameter)));
    }
}

/// Comments out, and no blanks around a colon: both are allowed in a date, and the library stops at them.
std::string plainDate(std::string_view value) {
    std::string out;
    int comments = 0;
    for (const char c : value) {
        if (c == '(') ++comments;
        const bool blank = c == ' ' || c == '\t';
        if (comments == 0 && !(blank && (out.empty() || out.back() == ':' || out.back() == ' '))) {
            if (c == ':' && out.ends_with(' ')) out.pop_back();
            out += blank ? ' ' : c;
        }
        if (c == ')' && comments > 0) --comments;
    }
    return out;
}

}  // namespace

void useGmime() {
    static const bool ready = (g_mime_init(), true);
    static_cast<void>(ready);
}

std::u16string decodeText(std::string_view value) {
    std::u16string text;
    std::size_t plain = 0;
    for (std::size_t at = value.find("=?"); at != std::string_view::npos; at = value.find("=?", at)) {
        const std::size_t start = at;
        if (const auto decoded = decodeRun(value, at)) {
            text += decodeCharset(value.substr(plain, start - plain), "") + *decoded;
            plain = at;
        } else {
            ++at;
        }
    }
    return text + decodeCharset(value.substr(plain), "");
}

std::vector<Mailbox> decodeAddresses(std::string_view value, bool emptyGroups) {
    useGmime();
    std::vector<Mailbox> out;
    const Ref<InternetAddressList> list(internet_address_list_parse(nullptr, wordsToQuotedText(withoutForeignBytes(value)).c_str()));
    if (list) flatten(list.get(), emptyGroups, 0, out);
    return out;
}

std::vector<std::string> decodeMessageIds(std::string_view value) {
    constexpr std::size_t longest = 900;  // a line may have 998 characters
    std::vector<std::string> ids;
    int comments = 0;
    for (std::size_t at = 0; at < value.size(); ++at) {
        const char c = value[at];
        if (c == '\\') {
            ++at;
        } else if (c == '(') {
            ++comments;
        } else if (c == ')' && comments > 0) {
            --comments;
        } else if (c == '<' && comments == 0) {
            std::size_t end = at + 1;
            while (end < value.size() && value[end] > 32 && value[end] < 127 && value[end] != '<' && value[end] != '>') ++end;
            const bool whole = end < value.size() && value[end] == '>' && end > at + 1 && end - at < longest;
            if (whole) ids.emplace_back(value.substr(at, end - at + 1));
            at = whole ? end : end - 1;
        }
    }
    return ids;
}

std::optional<std::int64_t> decodeDate(std::string_view value) {
    useGmime();
    const std::unique_ptr<GDateTime, FreeDate> date(g_mime_utils_header_decode_date(plainDate(value).c_str()));
    if (!date) return {};
    return g_date_time_to_unix(date.get());
}

std::u16string Parameterised::parameter(std::string_view name) const {
    const auto found = parameters.find(std::string(name));
    return found == parameters.end() ? std::u16string() : found->second;
}

Parameterised decodeContentType(std::string_view value) {
    useGmime();
    Parameterised out;
    out.value = "text/plain";
    if (value.substr(0, value.find(';')).find('/') == std::string_view::npos) return out;
    const Ref<GMimeContentType> type(g_mime_content_type_parse(nullptr, wordsToQuotedText(withoutForeignBytes(value)).c_str()));
    out.value = lowerAscii(std::string(orEmpty(g_mime_content_type_get_media_type(type.get()))) + "/" +
                           std::string(orEmpty(g_mime_content_type_get_media_subtype(type.get()))));
    readParameters(g_mime_content_type_get_parameters(type.get()), out);
    return out;
}

Parameterised decodeDisposition(std::string_view value) {
    useGmime();
    Parameterised out;
    if (value.empty()) return out;
    const Ref<GMimeContentDisposition> disposition(g_mime_content_disposition_parse(nullptr, wordsToQuotedText(withoutForeignBytes(value)).c_str()));
    out.value = lowerAscii(orEmpty(g_mime_content_disposition_get_disposition(disposition.get())));
    readParameters(g_mime_content_disposition_get_parameters(disposition.get()), out);
    return out;
}

}  // namespace lorvane::mime
