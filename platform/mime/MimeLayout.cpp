#include "mime/MimeLayout.h"

#include <algorithm>

#include "host/TextFunctions.h"
#include "mime/HeaderText.h"
#include "mime/TransferCoding.h"

namespace lorvane::mime {
namespace {

using mailstore::BodyKind;

bool isRichText(std::string_view type) noexcept {
    return type == "text/rtf" || type == "application/rtf";
}
bool isEnriched(std::string_view type) noexcept {
    return type == "text/enriched" || type == "text/richtext";
}
bool isRendition(std::string_view type) noexcept {
    return type == "text/plain" || type == "text/html" || isRichText(type) || isEnriched(type);
}

BodyKind kindOf(std::string_view type) noexcept {
    if (type == "text/html") return BodyKind::Html;
    return isRichText(type) ? BodyKind::Rich : BodyKind::Plain;
}

class Collector {
public:
    explicit Collector(Entity& root) : root_(root) { collect(root, false); }
    MessageLayout take() { return std::move(layout_); }

private:
    /// A leaf that may be the message's text where it stands.
    bool isText(const Entity& part) const {
        const std::string disposition = decodeDisposition(part.value("Content-Disposition")).value;
        if (disposition == "attachment") return false;
        if (&part == &root_) return part.type.starts_with("text/");
        return isRendition(part.type) && (disposition == "inline" || fileNameOf(part).empty());
    }

    /// How much a part is worth as a message's text; 0 for one that is none.
    int worth(const Entity& part) const {
        if (part.isMultipart()) {
            int best = 0;
            for (const auto& child : part.children) best = std::max(best, worth(*child));
            return best;
        }
        if (!isText(part)) return 0;
        switch (kindOf(part.type)) {
            case BodyKind::Html:
                return 4;
            case BodyKind::Rich:
                return 3;
            default:
                return part.type == "text/plain" ? 2 : 1;
        }
    }

    void collect(Entity& part, bool related) {
        // Behind the body there is nothing to choose: each rendition is an attachment of its own.
        const bool choose = !layout_.body && !related;
        if (choose && part.type == "multipart/alternative" && part.isMultipart())
            collectAlternatives(part);
        else if (part.type == "multipart/related" && part.isMultipart())
            collectRelated(part, related);
        else if (part.isMultipart())
            for (const auto& child : part.children) collect(*child, related);
        else
            collectLeaf(part, related);
    }

    void collectLeaf(Entity& part, bool related) {
        // What names its parts but has none is a message with only the text in front of them, if there is any.
        const bool hollow = part.type.starts_with("multipart/");
        if (hollow && trimBlanks(part.content).empty()) return;
        if (!layout_.body && !related && (isText(part) || hollow)) {
            layout_.body = &part;
            layout_.kind = kindOf(part.type);
        } else {
            layout_.attachments.push_back({&part, related});
        }
    }

    void collectAlternatives(Entity& part) {
        Entity* best = nullptr;
        int bestWorth = 0;
        for (const auto& child : part.children)
            if (const int value = worth(*child); value > 0 && value >= bestWorth) {
                best = child.get();
                bestWorth = value;
            }
        for (const auto& child : part.children) {
            if (child.get() == best || bestWorth == 0)
                collect(*child, false);
            else
                collectRendition(*child);
        }
    }

    /// The texts of an alternative that was not chosen are renditions, the rest of it are attachments.
    void collectRendition(Entity& part) {
        if (part.isMultipart()) {
            for (const auto& child : part.children) collectRendition(*child);
        } else if (!isText(part)) {
            layout_.attachments.push_back({&part, false});
        } else if (part.type == "text/plain" && !layout_.textAlternative) {
            layout_.textAlternative = &part;
        } else {
            layout_.otherRenditions.push_back(&part);
        }
    }

    void collectRelated(Entity& part, bool related) {
        const std::u16string start = decodeContentType(part.value("Content-Type")).parameter("start");
        Entity* main = part.children.front().get();
        for (const auto& child : part.children)
            if (!start.empty() && u'<' + contentIdOf(*child) + u'>' == start) main = child.get();
        collect(*main, related);
        for (const auto& child : part.children)
            if (child.get() != main) collect(*child, true);
    }

    Entity& root_;
    MessageLayout layout_;
};

/// The set an HTML text names in its first bytes, where its header names none.
std::string charsetOfMarkup(std::string_view bytes) {
    const std::string start = lowerAscii(bytes.substr(0, 1024));
    const std::size_t at = start.find("charset=");
    if (at == std::string::npos) return {};
    const std::size_t first = start.find_first_not_of("\"' ", at + 8);
    if (first == std::string::npos) return {};
    return start.substr(first, start.find_first_of("\"' ;>/", first) - first);
}

/// The text of enriched text (RFC 1896): commands out, "<<" is "<", and of a run of line ends one is a fold.
std::u16string withoutEnrichedMarkup(std::u16string_view text) {
    std::u16string out;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == u'<') {
            if (at + 1 < text.size() && text[at + 1] == u'<') {
                out += u'<';
                at += 2;
                continue;
            }
            const std::size_t end = text.find(u'>', at);
            if (end == std::u16string_view::npos) break;
            at = end + 1;
        } else if (text.substr(at).starts_with(host::CrLf)) {
            std::size_t count = 0;
            for (; text.substr(at).starts_with(host::CrLf); at += 2) ++count;
            if (count == 1 && !out.empty() && at < text.size()) out += u' ';
            for (; count > 1; --count) out += host::CrLf;
        } else {
            out += text[at++];
        }
    }
    return out;
}

}  // namespace

MessageLayout layoutOf(Entity& root) {
    return Collector(root).take();
}

std::u16string textOf(const Entity& part) {
    const std::string bytes = decodeTextBytes(transferEncodingNamed(part.value("Content-Transfer-Encoding")), part.content);
    std::string charset = host::toUtf8(decodeContentType(part.value("Content-Type")).parameter("charset"));
    if (charset.empty() && part.type == "text/html") charset = charsetOfMarkup(bytes);
    std::u16string text = decodeCharset(bytes, charset);
    return isEnriched(part.type) ? withoutEnrichedMarkup(text) : text;
}

std::u16string fileNameOf(const Entity& part) {
    std::u16string name = decodeDisposition(part.value("Content-Disposition")).parameter("filename");
    if (name.empty()) name = decodeContentType(part.value("Content-Type")).parameter("name");
    name.erase(0, name.find_last_of(u"/\\") + 1);
    return name == u"." || name == u".." ? std::u16string() : name;
}

std::u16string contentIdOf(const Entity& part) {
    const std::u16string id = host::fromUtf8(part.value("Content-ID"));
    const std::size_t open = id.find(u'<');
    const std::size_t close = id.rfind(u'>');
    return open == std::u16string::npos || close == std::u16string::npos || close < open ? id : id.substr(open + 1, close - open - 1);
}

}  // namespace lorvane::mime
