#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The values of header fields, read. What is given is the unfolded value (`HeaderField::value`).
namespace lorvane::mime {

/// Text with encoded words (RFC 2047); raw bytes above ASCII are read as UTF-8, else as windows-1252.
std::u16string decodeText(std::string_view value);

/// One address of a list.
struct Mailbox {
    std::u16string name;     ///< the display name; empty where there is none
    std::u16string address;  ///< empty for a group without members
    bool operator==(const Mailbox&) const = default;
};

/// The addresses of a list, groups flattened; a group without members is there with its name only where asked for.
std::vector<Mailbox> decodeAddresses(std::string_view value, bool emptyGroups = false);

/// The message identities in a value, each with its angle brackets; comments and whatever could not stand in a field as it is are left out.
std::vector<std::string> decodeMessageIds(std::string_view value);

/// Seconds since 1970 of a date; empty where it is none.
std::optional<std::int64_t> decodeDate(std::string_view value);

/// A value with parameters.
struct Parameterised {
    std::string value;                                 ///< in lower case
    std::map<std::string, std::u16string> parameters;  ///< decoded (RFC 2231, and RFC 2047 as many programs write it); names in lower case

    std::u16string parameter(std::string_view name) const;  ///< empty where there is none
};

/// A Content-Type; one without a slash counts as text/plain.
Parameterised decodeContentType(std::string_view value);
Parameterised decodeDisposition(std::string_view value);

}  // namespace lorvane::mime
