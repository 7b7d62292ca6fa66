#include "mime/HeaderWriter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "host/TextFunctions.h"
#include "mime/MimeTree.h"
#include "mime/TransferCoding.h"

namespace lorvane::mime {
namespace {

constexpr std::size_t Column = 76;
constexpr std::size_t LongestToken = 200;  // a longer one is encoded: far below the 998 characters a line may have

constexpr char digits[] = "0123456789ABCDEF";

bool isAlphanumeric(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool isPrintable(std::u16string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit >= 0x20 && unit < 0x7F; });
}

/// Text that reads back the same where it stands in a field as it is.
bool isPlainText(std::u16string_view text) noexcept {
    if (!isPrintable(text) || text.find(u"=?") != std::u16string_view::npos) return false;
    if (!text.empty() && (text.front() == u' ' || text.back() == u' ')) return false;
    std::size_t token = 0;
    for (const char16_t unit : text) {
        token = unit == u' ' ? 0 : token + 1;
        if (token > LongestToken) return false;
    }
    return true;
}

/// The characters of a text, each in UTF-8.
std::vector<std::string> charactersOf(std::u16string_view text) {
    std::vector<std::string> characters;
    for (const char c : host::toUtf8(text)) {
        if (characters.empty() || (static_cast<unsigned char>(c) & 0xC0) != 0x80) characters.emplace_back();
        characters.back() += c;
    }
    return characters;
}

/// One character in the "Q" encoding; only what is safe in a display name too stays as it is.
std::string quotedCharacter(const std::string& character) {
    std::string out;
    for (const char c : character) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == ' ')
            out += '_';
        else if (isAlphanumeric(c) || c == '!' || c == '*' || c == '+' || c == '-' || c == '/')
            out += c;
        else
            out.append({'=', digits[byte >> 4], digits[byte & 15]});
    }
    return out;
}

std::vector<std::string> encodedWords(std::u16string_view text) {
    constexpr std::size_t frame = 12;  // "=?utf-8?q?" and "?="
    constexpr std::size_t room = 75 - frame;
    std::vector<std::string> quoted(1), base64;
    std::string bytes;
    std::size_t quotedLength = 0;
    const auto endBase64 = [&] { base64.push_back("=?utf-8?b?" + encodeBase64(bytes, "") + "?="); };
    for (const std::string& character : charactersOf(text)) {
        const std::string escaped = quotedCharacter(character);
        if (quoted.back().size() + escaped.size() > room) quoted.emplace_back();
        quoted.back() += escaped;
        quotedLength += escaped.size();
        if (bytes.size() + character.size() > room / 4 * 3) {
            endBase64();
            bytes.clear();
        }
        bytes += character;
    }
    endBase64();
    for (std::string& word : quoted) word = "=?utf-8?q?" + word + "?=";
    std::size_t base64Length = 0;
    for (const std::string& word : base64) base64Length += word.size();
    return quotedLength + quoted.size() * frame <= base64Length ? quoted : base64;
}

/// Pieces put behind one another with a blank or a fold between them.
class Folder {
public:
    Folder(std::string_view name, std::string_view newline) : line_(std::string(name) + ":"), newline_(newline) {}

    void add(std::string_view piece) {
        if (line_.size() + 1 + piece.size() > Column && pieces_ > 0) {
            out_ += line_;
            out_ += newline_;
            line_.clear();
        }
        line_ += ' ';
        line_ += piece;
        ++pieces_;
    }

    std::string end() { return out_ + line_ + std::string(newline_); }

private:
    std::string out_, line_;
    std::string_view newline_;
    int pieces_ = 0;
};

/// A run of blanks stays with the word behind it but for its first blank, which is where a fold goes.
std::vector<std::string> wordsOf(std::u16string_view text) {
    std::vector<std::string> words;
    const std::string all = host::toUtf8(text);
    for (std::size_t at = 0; at < all.size();) {
        std::size_t end = all.find_first_not_of(' ', at);
        end = all.find(' ', end);
        if (end == std::string::npos) end = all.size();
        words.push_back(all.substr(at, end - at));
        at = end + 1;
    }
    return words;
}

std::vector<std::string> displayName(std::u16string_view name) {
    std::u16string clean(name);
    for (char16_t& unit : clean)
        if (unit < 0x20 || unit == 0x7F) unit = u' ';
    if (!isPlainText(clean)) return encodedWords(clean);
    if (std::all_of(clean.begin(), clean.end(), [](char16_t unit) { return unit == u' ' || (unit < 0x7F && isAlphanumeric(static_cast<char>(unit))); }) &&
        clean.find(u"  ") == std::u16string::npos)
        return {host::toUtf8(clean)};
    std::string quoted = "\"";
    for (const char c : host::toUtf8(clean)) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return {quoted + "\""};
}

bool isAddressMark(char16_t unit) noexcept {
    return unit <= 0x20 || unit == 0x7F || std::u16string_view(u"()<>[]:;,\\\"").find(unit) != std::u16string_view::npos;
}

/// A parameter's value in the extended form, percent-encoded.
std::vector<std::string> percentPieces(std::u16string_view value) {
    std::vector<std::string> pieces;
    for (const std::string& character : charactersOf(value)) {
        const bool plain =
            character.size() == 1 && (isAlphanumeric(character[0]) || std::string_view("!#$&+-.^_`{}~").find(character[0]) != std::string_view::npos);
        std::string piece = plain ? character : "";
        if (!plain)
            for (const char c : character) piece.append({'%', digits[static_cast<unsigned char>(c) >> 4], digits[static_cast<unsigned char>(c) & 15]});
        pieces.push_back(std::move(piece));
    }
    return pieces;
}

bool isPlainParameter(std::u16string_view value) noexcept {
    return value.size() <= 60 && isPrintable(value) && value.find_first_of(u"\"\\") == std::u16string_view::npos &&
           value.find(u"=?") == std::u16string_view::npos && isPlainText(value);
}

std::vector<std::string> parameterPieces(const Parameter& parameter) {
    const std::string name(parameter.name);
    if (isPlainParameter(parameter.value)) return {name + "=\"" + host::toUtf8(parameter.value) + "\""};
    constexpr std::size_t room = 50;
    std::vector<std::string> parts{"utf-8''"};
    for (const std::string& piece : percentPieces(parameter.value)) {
        if (parts.back().size() + piece.size() > room) parts.emplace_back();
        parts.back() += piece;
    }
    if (parts.size() == 1) return {name + "*=" + parts.front()};
    for (std::size_t i = 0; i < parts.size(); ++i) parts[i] = name + "*" + std::to_string(i) + "*=" + parts[i];
    return parts;
}

}  // namespace

std::string textField(std::string_view name, std::u16string_view text, std::string_view newline) {
    Folder folder(name, newline);
    for (const std::string& piece : isPlainText(text) ? wordsOf(text) : encodedWords(text)) folder.add(piece);
    return folder.end();
}

bool isPlainAddress(std::u16string_view address) noexcept {
    return !address.empty() && std::none_of(address.begin(), address.end(), isAddressMark) && std::count(address.begin(), address.end(), u'@') <= 1 &&
           address.front() != u'@' && address.back() != u'@' && address.find(u"=?") == std::u16string_view::npos && address.size() < 500;
}

std::string addressField(std::string_view name, const std::vector<Mailbox>& mailboxes, std::string_view newline) {
    Folder folder(name, newline);
    for (std::size_t i = 0; i < mailboxes.size(); ++i) {
        const Mailbox& mailbox = mailboxes[i];
        const std::string comma = i + 1 < mailboxes.size() ? "," : "";
        const std::string address = host::toUtf8(mailbox.address);
        const bool plain = isPlainAddress(mailbox.address);
        if (plain && (mailbox.name.empty() || mailbox.name == mailbox.address)) {
            folder.add(address + comma);
            continue;
        }
        std::vector<std::string> pieces = displayName(mailbox.name.empty() ? mailbox.address : mailbox.name);
        if (plain)
            pieces.push_back("<" + address + ">");
        else
            pieces.back() += ":;";
        pieces.back() += comma;
        for (const std::string& piece : pieces) folder.add(piece);
    }
    return folder.end();
}

std::string tokenField(std::string_view name, std::string_view value, std::string_view newline) {
    return std::string(name) + ": " + std::string(value) + std::string(newline);
}

std::string messageIdsField(std::string_view name, const std::vector<std::string>& ids, std::string_view newline) {
    if (ids.empty()) return {};
    Folder folder(name, newline);
    for (const std::string& id : ids) folder.add(id);
    return folder.end();
}

std::string parameterField(std::string_view name, std::string_view value, const std::vector<Parameter>& parameters, std::string_view newline) {
    std::vector<std::string> pieces{std::string(value)};
    for (const Parameter& parameter : parameters)
        for (std::string& piece : parameterPieces(parameter)) pieces.push_back(std::move(piece));
    Folder folder(name, newline);
    for (std::size_t i = 0; i < pieces.size(); ++i) folder.add(pieces[i] + (i + 1 < pieces.size() ? ";" : ""));
    return folder.end();
}

std::string dateText(host::DateTime local, std::int32_t zoneMinutes) {
    static constexpr std::array<const char*, 7> weekdays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static constexpr std::array<const char*, 12> months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const double whole = std::trunc(local.days);
    std::int64_t day = static_cast<std::int64_t>(whole);
    std::int64_t second = std::llround(std::fabs(local.days - whole) * 86400.0);
    day += second / 86400;
    second %= 86400;
    // Days from 1899-12-30 into the proleptic calendar, counted in eras of 400 years that begin on a first of March.
    const std::int64_t shifted = day + 693899;
    const std::int64_t era = (shifted >= 0 ? shifted : shifted - 146096) / 146097;
    const std::int64_t dayOfEra = shifted - era * 146097;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t marchMonth = (5 * dayOfYear + 2) / 153;
    const auto month = static_cast<std::size_t>(marchMonth < 10 ? marchMonth + 2 : marchMonth - 10);
    const std::int64_t year = yearOfEra + era * 400 + (month <= 1 ? 1 : 0);
    const auto weekday = static_cast<std::size_t>(((day + 6) % 7 + 7) % 7);
    const std::int32_t zone = std::abs(zoneMinutes);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%s, %lld %s %04lld %02lld:%02lld:%02lld %c%02d%02d", weekdays[weekday],
                  static_cast<long long>(dayOfYear - (153 * marchMonth + 2) / 5 + 1), months[month], static_cast<long long>(year),
                  static_cast<long long>(second / 3600), static_cast<long long>(second / 60 % 60), static_cast<long long>(second % 60),
                  zoneMinutes < 0 ? '-' : '+', static_cast<int>(zone / 60), static_cast<int>(zone % 60));
    return text.data();
}

}  // namespace lorvane::mime
