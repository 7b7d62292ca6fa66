#include "mime/MimeTree.h"

#include <algorithm>
#include <array>

#include "host/HostError.h"
#include "host/TextFunctions.h"
#include "mime/HeaderText.h"

namespace lorvane::mime {
namespace {

constexpr char lower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}
constexpr bool isBlank(char c) noexcept {
    return c == ' ' || c == '\t';
}

[[noreturn]] void refuse(std::u16string_view sentence) {
    throw host::HostError(host::host_failure::Failed, std::u16string(sentence));
}

/// The line that begins at `start`, with its line end.
std::string_view lineAt(std::string_view text, std::size_t start) noexcept {
    const std::size_t end = text.find('\n', start);
    return text.substr(start, end == std::string_view::npos ? std::string_view::npos : end + 1 - start);
}

bool isEmptyLine(std::string_view line) noexcept {
    return line == "\n" || line == "\r\n" || line.empty();
}

/// The field name a line begins with, empty where it begins none. Blanks in front of the colon are the obsolete form.
std::string_view fieldNameOf(std::string_view line) noexcept {
    std::size_t end = 0;
    while (end < line.size() && line[end] > 32 && line[end] < 127 && line[end] != ':') ++end;
    std::size_t colon = end;
    while (colon < line.size() && isBlank(line[colon])) ++colon;
    return end > 0 && colon < line.size() && line[colon] == ':' ? line.substr(0, end) : std::string_view();
}

bool isMailboxLine(std::string_view line) noexcept {
    return line.starts_with("From ") && fieldNameOf(line).empty();
}

/// Reads header and content of one entity; multiparts are split further.
class Parser {
public:
    void parseEntity(Entity& entity, std::string_view bytes, std::size_t depth) {
        std::size_t at = parseHeader(entity, bytes);
        const std::string_view line = lineAt(bytes, at);
        if (at < bytes.size() && isEmptyLine(line)) {
            entity.separator = line;
            at += line.size();
        }
        readType(entity, depth);
        const std::string_view content = bytes.substr(at);
        if (entity.boundary.empty())
            entity.content = content;
        else
            parseParts(entity, content, depth);
    }

private:
    struct Delimiter {
        std::size_t begin;  // with the line end in front
        std::size_t end;
        bool closing;
    };

    static void readType(Entity& entity, std::size_t depth) {
        const HeaderField* field = entity.find("Content-Type");
        const bool digest = entity.parent && entity.parent->type == "multipart/digest";
        const Parameterised type = field ? decodeContentType(field->value()) : Parameterised{};
        entity.type = field ? type.value : digest ? "message/rfc822" : "text/plain";
        if (!entity.type.starts_with("multipart/")) return;
        if (depth >= MaximumDepth) refuse(u"The message nests its parts more than 50 deep.");
        entity.boundary = host::toUtf8(type.parameter("boundary"));
    }

    static std::size_t parseHeader(Entity& entity, std::string_view bytes) {
        std::size_t at = 0;
        while (at < bytes.size()) {
            const std::string_view line = lineAt(bytes, at);
            if (isEmptyLine(line)) break;
            const std::string_view name = fieldNameOf(line);
            if (!name.empty())
                entity.fields.push_back({std::string(name), std::string(line)});
            else if (!entity.fields.empty() && (isBlank(line.front()) || isBrokenFold(bytes, at + line.size())))
                entity.fields.back().raw += line;
            else
                break;
            at += line.size();
        }
        return at;
    }

    /// A line that is no field stands for a fold that lost its blank where the header goes on behind it; else the content has begun.
    static bool isBrokenFold(std::string_view bytes, std::size_t next) noexcept {
        const std::string_view line = lineAt(bytes, next);
        return !line.empty() && !isEmptyLine(line) && (isBlank(line.front()) || !fieldNameOf(line).empty());
    }

    static std::vector<Delimiter> delimitersOf(std::string_view content, std::string_view boundary) {
        std::vector<Delimiter> found;
        const std::string sought = "--" + std::string(boundary);
        for (std::size_t at = content.find(sought); at != std::string_view::npos; at = content.find(sought, at + 1)) {
            if (at > 0 && content[at - 1] != '\n') continue;
            const std::string_view line = lineAt(content, at);
            std::string_view rest = line.substr(sought.size());
            const bool closing = rest.starts_with("--");
            if (closing) rest.remove_prefix(2);
            if (rest.find_first_not_of(" \t\r\n") != std::string_view::npos) continue;
            std::size_t begin = at;
            const std::size_t floor = found.empty() ? 0 : found.back().end;
            if (begin > floor && content[begin - 1] == '\n') --begin;
            if (begin > floor && begin < at && content[begin - 1] == '\r') --begin;
            found.push_back({begin, at + line.size(), closing});
            if (closing) break;
        }
        return found;
    }

    void parseParts(Entity& entity, std::string_view content, std::size_t depth) {
        const std::vector<Delimiter> delimiters = delimitersOf(content, entity.boundary);
        if (delimiters.empty()) {
            entity.content = content;
            return;
        }
        entity.content = content.substr(0, delimiters.front().begin);
        for (std::size_t i = 0; i < delimiters.size(); ++i) {
            const Delimiter& delimiter = delimiters[i];
            if (delimiter.closing) {
                entity.closing = content.substr(delimiter.begin);
                return;
            }
            if (++parts_ > MaximumParts) refuse(u"The message has more than 5000 parts.");
            const std::size_t end = i + 1 < delimiters.size() ? delimiters[i + 1].begin : content.size();
            Entity& child = entity.append(std::make_unique<Entity>());
            child.delimiter = content.substr(delimiter.begin, delimiter.end - delimiter.begin);
            parseEntity(child, content.substr(delimiter.end, end - delimiter.end), depth + 1);
        }
    }

    std::size_t parts_ = 0;
};

/// Any file of the kind "word: text" would pass for a mail without this.
bool isFieldOfMail(std::string_view name) noexcept {
    static constexpr std::array<std::string_view, 21> names = {"From",         "To",           "Cc",          "Bcc",         "Subject",
                                                               "Date",         "Message-ID",   "Received",    "Return-Path", "Delivered-To",
                                                               "Sender",       "Reply-To",     "In-Reply-To", "References",  "Keywords",
                                                               "MIME-Version", "Content-Type", "Resent-From", "Resent-To",   "Content-Transfer-Encoding",
                                                               "Comments"};
    return startsWithAscii(name, "X-") || std::any_of(names.begin(), names.end(), [&](std::string_view known) { return equalsAscii(known, name); });
}

/// Length of what may stand in front of the first field.
std::size_t prefaceLength(std::string_view bytes) noexcept {
    std::size_t at = bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0;
    while (at < bytes.size() && isEmptyLine(lineAt(bytes, at))) at += lineAt(bytes, at).size();
    if (at < bytes.size() && isMailboxLine(lineAt(bytes, at))) at += lineAt(bytes, at).size();
    return at;
}

}  // namespace

std::string HeaderField::value() const {
    const std::string_view all = trimBlanks(std::string_view(raw).substr(raw.find(':') + 1));
    std::string unfolded;
    unfolded.reserve(all.size());
    for (const char c : all)
        if (c != '\r' && c != '\n') unfolded += c;
    return unfolded;
}

const HeaderField* Entity::find(std::string_view name) const noexcept {
    const auto found = std::find_if(fields.begin(), fields.end(), [&](const HeaderField& field) { return equalsAscii(field.name, name); });
    return found == fields.end() ? nullptr : &*found;
}

std::string Entity::value(std::string_view name) const {
    const HeaderField* field = find(name);
    return field ? field->value() : std::string();
}

Entity& Entity::append(std::unique_ptr<Entity> child) {
    child->parent = this;
    children.push_back(std::move(child));
    return *children.back();
}

std::unique_ptr<Entity> Entity::detach() {
    auto& siblings = parent->children;
    const auto at = std::find_if(siblings.begin(), siblings.end(), [&](const auto& sibling) { return sibling.get() == this; });
    std::unique_ptr<Entity> self = std::move(*at);
    siblings.erase(at);
    self->parent = nullptr;
    return self;
}

std::unique_ptr<Entity> parseMessage(std::string_view bytes) {
    if (trimBlanks(bytes).empty()) refuse(u"The file is empty.");
    auto root = std::make_unique<Entity>();
    const std::size_t start = prefaceLength(bytes);
    root->preface = bytes.substr(0, start);
    Parser().parseEntity(*root, bytes.substr(start), 0);
    const auto& fields = root->fields;
    const auto isBinary = [](const HeaderField& field) { return field.raw.find('\0') != std::string::npos; };
    if (std::any_of(fields.begin(), fields.end(), isBinary)) refuse(u"The file is not a mail: its header holds binary data.");
    if (std::none_of(fields.begin(), fields.end(), [](const HeaderField& field) { return isFieldOfMail(field.name); }))
        refuse(u"The file is not a mail: it does not begin with the header fields of one.");
    return root;
}

namespace {

void serializeTo(const Entity& entity, std::string& out) {
    out += entity.delimiter;
    out += entity.preface;
    for (const HeaderField& field : entity.fields) out += field.raw;
    out += entity.separator;
    out += entity.content;
    for (const auto& child : entity.children) serializeTo(*child, out);
    out += entity.closing;
}

}  // namespace

std::string serialize(const Entity& entity) {
    std::string out;
    serializeTo(entity, out);
    return out;
}

std::string_view newlineOf(std::string_view bytes) noexcept {
    const std::size_t end = bytes.find('\n');
    return end == std::string_view::npos || (end > 0 && bytes[end - 1] == '\r') ? "\r\n" : "\n";
}

bool equalsAscii(std::string_view a, std::string_view b) noexcept {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return lower(x) == lower(y); });
}

bool startsWithAscii(std::string_view text, std::string_view start) noexcept {
    return text.size() >= start.size() && equalsAscii(text.substr(0, start.size()), start);
}

std::string lowerAscii(std::string_view text) {
    std::string lowered(text);
    std::transform(lowered.begin(), lowered.end(), lowered.begin(), lower);
    return lowered;
}

std::string_view trimBlanks(std::string_view text) noexcept {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") + 1 - first);
}

}  // namespace lorvane::mime
