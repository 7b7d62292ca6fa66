#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/Object.h"
#include "mime/HeaderText.h"

/// Header fields, written: whole fields with their line ends, folded to 76 columns where a blank allows it.
///
/// No text that goes in can end a field: control characters of text and file names are encoded, those of display names become blanks, and what is no plain
/// address is not written as one.
namespace lorvane::mime {

/// A field of text. Plain where it is printable ASCII that reads back the same, else encoded words in UTF-8, the shorter of both encodings.
std::string textField(std::string_view name, std::u16string_view text, std::string_view newline);

/// A field of addresses. A mailbox without a plain address is written as a group without members, the one form that is valid and keeps its name.
std::string addressField(std::string_view name, const std::vector<Mailbox>& mailboxes, std::string_view newline);

/// A field of tokens that are ASCII already, as "1.0".
std::string tokenField(std::string_view name, std::string_view value, std::string_view newline);

/// A field of message identities that are ASCII already; empty where there is none.
std::string messageIdsField(std::string_view name, const std::vector<std::string>& ids, std::string_view newline);

struct Parameter {
    std::string_view name;
    std::u16string value;
};

/// A value with parameters; those that are not short ASCII are written by RFC 2231.
std::string parameterField(std::string_view name, std::string_view value, const std::vector<Parameter>& parameters, std::string_view newline);

/// "Mon, 10 Jan 2028 09:00:00 +0100": local time and the minutes it is ahead of UTC.
std::string dateText(host::DateTime local, std::int32_t zoneMinutes);

/// An address that can stand in a field as it is: no blanks, controls or marks of the address grammar, and one "@" at most.
bool isPlainAddress(std::u16string_view address) noexcept;

}  // namespace lorvane::mime
