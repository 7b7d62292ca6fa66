#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// The structure of a message as a tree that loses nothing.
///
/// Every byte of the message belongs to exactly one token of the tree, so that `serialize(*parseMessage(bytes))` is `bytes` for any input, and a part that
/// nobody edits is written back as it came. The mail library's own writer does not promise that: of the odd mails of the tests it alters every third one
/// (mailbox lines, end boundaries that are missing, blanks in front of a colon). It is therefore used for values (`HeaderText.h`, `TransferCoding.h`) only.
namespace lorvane::mime {

/// One field of a header, folded lines included.
struct HeaderField {
    std::string name;  ///< as written, without blanks
    std::string raw;   ///< the whole field with its line ends

    /// What stands behind the colon, unfolded, without blanks at its ends; undecoded.
    std::string value() const;
};

/// A message or a part: header and either a content or, of a multipart, children.
struct Entity {
    Entity* parent = nullptr;
    std::string delimiter;  ///< the boundary line in front of a part, with the line end in front of that
    std::string preface;    ///< what stands in front of a message's header: a mailbox line, a byte order mark
    std::vector<HeaderField> fields;
    std::string separator;  ///< the blank line behind the header; empty where there is none
    std::string content;    ///< still in its transfer encoding; of a multipart, the text in front of the first part
    std::vector<std::unique_ptr<Entity>> children;
    std::string closing;   ///< of a multipart: the closing boundary line, and all behind it
    std::string boundary;  ///< of a multipart that names one
    std::string type;      ///< media type in lower case, "text/plain" where none is told

    const HeaderField* find(std::string_view name) const noexcept;  ///< the first field of that name, any case
    std::string value(std::string_view name) const;                 ///< its value, empty where there is none
    bool isMultipart() const noexcept { return !children.empty(); }

    Entity& append(std::unique_ptr<Entity> child);  ///< sets the parent; the delimiter is the caller's
    std::unique_ptr<Entity> detach();               ///< takes this entity out of its parent
};

/// The limits beyond which a message is refused with host_failure::Failed.
inline constexpr std::size_t MaximumDepth = 50;
inline constexpr std::size_t MaximumParts = 5000;

/// The tree of a message. Raises host_failure::Failed for what is no mail (empty, binary, no header field of a mail) and beyond the limits.
std::unique_ptr<Entity> parseMessage(std::string_view bytes);

std::string serialize(const Entity& entity);

/// "\n" where the message knows no other line end, else "\r\n".
std::string_view newlineOf(std::string_view bytes) noexcept;

bool equalsAscii(std::string_view a, std::string_view b) noexcept;             ///< without regard to case
bool startsWithAscii(std::string_view text, std::string_view start) noexcept;  ///< without regard to case
std::string lowerAscii(std::string_view text);
std::string_view trimBlanks(std::string_view text) noexcept;  ///< space, tab, CR, LF at both ends

}  // namespace lorvane::mime
