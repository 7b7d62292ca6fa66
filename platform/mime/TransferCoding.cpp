#include "mime/TransferCoding.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <utility>

#include "host/TextFunctions.h"
#include "mime/GmimeLibrary.h"
#include "mime/MimeTree.h"

namespace lorvane::mime {
namespace {

GMimeContentEncoding libraryEncoding(TransferEncoding encoding) noexcept {
    switch (encoding) {
        case TransferEncoding::QuotedPrintable:
            return GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE;
        case TransferEncoding::Base64:
            return GMIME_CONTENT_ENCODING_BASE64;
        case TransferEncoding::UuEncode:
            return GMIME_CONTENT_ENCODING_UUENCODE;
        case TransferEncoding::Identity:
            break;
    }
    return GMIME_CONTENT_ENCODING_DEFAULT;
}

std::string runLibrary(GMimeEncoding& state, std::string_view input) {
    std::string output(g_mime_encoding_outlen(&state, input.size()) + 16, '\0');
    output.resize(g_mime_encoding_flush(&state, input.data(), input.size(), output.data()));
    return output;
}

/// Each line without the blanks that transport may have put at its end, and with CRLF where asked.
std::string tidyLines(std::string_view content, bool dropTrailingBlanks, bool useCrLf) {
    std::string tidy;
    tidy.reserve(content.size() + content.size() / 32);
    for (std::size_t at = 0; at < content.size();) {
        const std::size_t feed = content.find('\n', at);
        std::string_view line = content.substr(at, feed == std::string_view::npos ? feed : feed - at);
        std::string_view end = feed == std::string_view::npos ? "" : "\n";
        if (!end.empty() && line.ends_with('\r')) {
            line.remove_suffix(1);
            end = "\r\n";
        }
        if (dropTrailingBlanks)
            while (!line.empty() && (line.back() == ' ' || line.back() == '\t')) line.remove_suffix(1);
        tidy += line;
        tidy += end.empty() || !useCrLf ? end : "\r\n";
        at = feed == std::string_view::npos ? content.size() : feed + 1;
    }
    return tidy;
}

/// What the library decodes of uuencoded content: the lines behind "begin".
std::string_view uuencodedLines(std::string_view content) noexcept {
    const std::size_t begin = content.starts_with("begin ") ? 0 : content.find("\nbegin ");
    if (begin == std::string_view::npos) return content;
    const std::size_t end = content.find('\n', begin + 1);
    return end == std::string_view::npos ? std::string_view() : content.substr(end + 1);
}

std::string decode(TransferEncoding encoding, std::string_view content) {
    if (encoding == TransferEncoding::Identity) return std::string(content);
    if (encoding == TransferEncoding::UuEncode) content = uuencodedLines(content);
    useGmime();
    GMimeEncoding state;
    g_mime_encoding_init_decode(&state, libraryEncoding(encoding));
    return runLibrary(state, content);
}

std::string withoutMarks(std::string_view charset) {
    std::string plain;
    for (const char c : lowerAscii(charset))
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) plain += c;
    return plain;
}

/// The set a name stands for in practice.
std::string effectiveCharset(std::string_view charset) {
    static constexpr std::array<std::pair<std::string_view, const char*>, 13> larger = {{{"iso88591", "windows-1252"},
                                                                                         {"latin1", "windows-1252"},
                                                                                         {"usascii", "windows-1252"},
                                                                                         {"ascii", "windows-1252"},
                                                                                         {"euckr", "CP949"},
                                                                                         {"ksc56011987", "CP949"},
                                                                                         {"gb2312", "GB18030"},
                                                                                         {"gbk", "GB18030"},
                                                                                         {"shiftjis", "CP932"},
                                                                                         {"sjis", "CP932"},
                                                                                         {"big5", "BIG5-HKSCS"},
                                                                                         {"iso885911", "CP874"},
                                                                                         {"iso88599", "windows-1254"}}};
    const std::string plain = withoutMarks(charset);
    const auto found = std::find_if(larger.begin(), larger.end(), [&](const auto& row) { return row.first == plain; });
    return found == larger.end() ? std::string(charset) : std::string(found->second);
}

/// A conversion descriptor of the library, closed at the end.
class Converter {
public:
    explicit Converter(const char* charset) : handle_(g_mime_iconv_open("UTF-16LE", charset)) {}
    ~Converter() {
        if (*this) g_mime_iconv_close(handle_);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    explicit operator bool() const noexcept { return handle_ != reinterpret_cast<iconv_t>(-1); }

    std::u16string convert(std::string_view bytes) {
        std::u16string text;
        std::array<char, 4096> buffer;
        char* in = const_cast<char*>(bytes.data());
        std::size_t left = bytes.size();
        while (left > 0) {
            char* out = buffer.data();
            std::size_t space = buffer.size();
            const std::size_t result = iconv(handle_, &in, &left, &out, &space);
            const int error = result == static_cast<std::size_t>(-1) ? errno : 0;
            append(text, std::string_view(buffer.data(), buffer.size() - space));
            if (error == EILSEQ) {
                text += u'\uFFFD';
                ++in;
                --left;
            } else if (error == EINVAL) {
                text += u'\uFFFD';
                break;
            }
        }
        return text;
    }

private:
    static void append(std::u16string& text, std::string_view units) {
        for (std::size_t i = 0; i + 1 < units.size(); i += 2)
            text += static_cast<char16_t>(static_cast<std::uint8_t>(units[i]) | static_cast<std::uint8_t>(units[i + 1]) << 8);
    }

    iconv_t handle_;
};

std::u16string convertFrom(std::string_view bytes, const std::string& charset) {
    Converter converter(charset.c_str());
    return converter ? converter.convert(bytes) : Converter("windows-1252").convert(bytes);
}

bool isKnown(const std::string& charset) {
    return !charset.empty() && static_cast<bool>(Converter(charset.c_str()));
}

/// Characters of a line without the "=" of a soft break.
constexpr std::size_t LineLimit = 75;

/// Encodes one line of text; its blanks at the end and what could be misread at its start are escaped.
void encodeLine(std::string_view line, std::string_view newline, std::string& out) {
    static constexpr char digits[] = "0123456789ABCDEF";
    const bool misread = line.starts_with("From ") || line.starts_with('.') || (line.starts_with("--") && line != "--" && line != "-- ");
    std::size_t column = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const auto byte = static_cast<std::uint8_t>(line[i]);
        const bool last = i + 1 == line.size();
        const bool blank = byte == ' ' || byte == '\t';
        const bool plain = (byte > 32 && byte < 127 && byte != '=') || (blank && !last);
        const bool escaped = !plain || (i == 0 && misread);
        const std::size_t width = escaped ? 3 : 1;
        if (column + width > LineLimit) {
            out += '=';
            out += newline;
            column = 0;
        }
        // A soft break may have put a dot or a dash to the start of a line.
        const bool exposed = column == 0 && i > 0 && (byte == '.' || byte == '-' || byte == 'F');
        if (escaped || exposed) {
            out += '=';
            out += digits[byte >> 4];
            out += digits[byte & 15];
            column += 3;
        } else {
            out += static_cast<char>(byte);
            ++column;
        }
    }
}

}  // namespace

TransferEncoding transferEncodingNamed(std::string_view value) {
    const std::string name = lowerAscii(trimBlanks(value.substr(0, value.find(';'))));
    if (name == "quoted-printable") return TransferEncoding::QuotedPrintable;
    if (name == "base64") return TransferEncoding::Base64;
    if (name == "x-uuencode" || name == "uuencode" || name == "x-uue") return TransferEncoding::UuEncode;
    return TransferEncoding::Identity;
}

std::string decodeBytes(TransferEncoding encoding, std::string_view content) {
    return encoding == TransferEncoding::QuotedPrintable ? decode(encoding, tidyLines(content, true, false)) : decode(encoding, content);
}

std::string decodeTextBytes(TransferEncoding encoding, std::string_view content) {
    switch (encoding) {
        case TransferEncoding::Identity:
            return tidyLines(content, false, true);
        case TransferEncoding::QuotedPrintable:
            return decode(encoding, tidyLines(content, true, true));
        case TransferEncoding::Base64:
        case TransferEncoding::UuEncode:
            break;
    }
    return decode(encoding, content);
}

std::string encodeBase64(std::string_view bytes, std::string_view newline) {
    useGmime();
    GMimeEncoding state;
    g_mime_encoding_init_encode(&state, GMIME_CONTENT_ENCODING_BASE64);
    const std::string lines = runLibrary(state, bytes);
    std::string out;
    out.reserve(lines.size() + lines.size() / 64);
    for (const char c : trimBlanks(lines)) {
        if (c == '\n')
            out += newline;
        else
            out += c;
    }
    return out;
}

std::string encodeQuotedPrintable(std::string_view bytes, std::string_view newline) {
    std::string out;
    for (std::size_t at = 0;;) {
        const std::size_t end = bytes.find("\r\n", at);
        encodeLine(bytes.substr(at, end == std::string_view::npos ? end : end - at), newline, out);
        if (end == std::string_view::npos) return out;
        out += newline;
        at = end + 2;
    }
}

std::u16string decodeCharset(std::string_view bytes, std::string_view charset) {
    useGmime();
    const std::string plain = withoutMarks(charset);
    if (plain == "utf8") return host::fromUtf8(bytes);
    const std::string effective = effectiveCharset(charset);
    const bool sevenBit = plain.empty() || plain == "usascii" || plain == "ascii";
    if (sevenBit || !isKnown(effective)) {
        std::u16string text = host::fromUtf8(bytes);
        return host::toUtf8(text) == bytes ? text : convertFrom(bytes, "windows-1252");
    }
    return convertFrom(bytes, effective);
}

}  // namespace lorvane::mime
