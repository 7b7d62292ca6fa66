#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "mailstore/ItemRecord.h"

namespace lorvane::mime {

struct ReadOptions {
    std::u16string accountName = u"Lorvane User";       ///< the received-by name
    std::u16string accountAddress = u"user@localhost";  ///< stands in where the name is empty
    std::optional<host::DateTime> now;                  ///< delivery time of a received message that has no date at all; without it there is none
    /// Seconds that local time is ahead of UTC at a moment (seconds since 1970); the process's zone unless given.
    std::function<std::int32_t(std::int64_t)> zoneOffset;
};

/// Reads a message (RFC 5322, MIME; line ends CRLF or LF, a mailbox line in front allowed) into a record that has no identity yet.
///
/// `X-Unsent: 1` makes a draft: unsent flag, no received-by name, no sender, no times. Every other message is received: it has the account's name as
/// received-by name, a sender ("Unknown" where the message has none) with type SMTP, a submit time (Date) and a delivery time (the uppermost Received field,
/// else Date). The body is HTML where there is HTML, else rich text, else plain; renditions beside it stay in `original` alone. Categories come from Keywords,
/// else X-Keywords. A mailbox without a display name has its address as name. A recipient group without members is an unresolved recipient of a draft and
/// nothing in a received message.
///
/// Attachments carry file name, media type, content id and data; embedded messages are type 5. A part without a name is called "ATT00001" with an extension.
/// A part that belongs to the HTML and has a content id is `inlinePicture`.
///
/// Raises host_failure::Failed with a sentence for what is no mail and for messages beyond the limits of `MimeTree.h`.
mailstore::ItemRecord readMessage(std::span<const std::uint8_t> bytes, const ReadOptions& options = {});

}  // namespace lorvane::mime
