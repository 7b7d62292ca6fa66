#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "mailstore/ItemRecord.h"

namespace lorvane::mime {

struct WriteOptions {
    std::u16string fromName = u"Lorvane User";  ///< the account
    std::u16string fromAddress = u"user@localhost";
    bool fromGiven = false;                     ///< the user named the account: a draft's own From gives way to it
    std::optional<host::DateTime> date;         ///< local time for a message that has no date; without it 1970-01-01, so that output never varies by itself
    std::optional<std::int32_t> zoneMinutes;    ///< how far local time is ahead of UTC; the process's zone at that time unless given
    std::function<std::string()> newMessageId;  ///< an id with its angle brackets, asked for once where one is needed; else made from the content
    /// Written as a draft (`X-Unsent: 1`). Unless given: by the record's message flags, and where it has none, unless it has a received-by name.
    std::optional<bool> unsent;
    std::function<std::u16string(std::u16string_view rtf)> richText;  ///< the text of RTF, for the plain rendition; without it that is empty
};

/// Writes a record as a message (RFC 5322, MIME).
///
/// A record without `original`: From (the account; of a received item its sender), To, Cc, Bcc, Subject, Date, Message-ID, In-Reply-To and References (of an
/// answer), Keywords (the categories), `X-Unsent: 1` for a draft. Plain items have one text part; HTML items text and HTML as alternatives, inline pictures
/// related to the HTML; rich items text and text/rtf as alternatives; other attachments are mixed. UTF-8, quoted-printable or base64 as shorter, CRLF.
/// Boundaries come from the content: the same record gives the same bytes.
///
/// A record with `original` is compared with what the original reads as. Where nothing differs the original is the result, byte for byte. Otherwise only what
/// differs is written anew, in its place: fields of the header, the body parts (where `bodyChanged`), attachments. All other fields and parts keep their bytes
/// and their order, line ends included; From, Date, Message-ID and MIME-Version are added where they are missing. An attachment is the original's where name,
/// type, content id and data are equal; it needs no mark in the record. Parts are put together anew, each still with its own bytes, where the kind of the text
/// changes or the last part of a multipart leaves.
///
/// Embedded messages go out as they are where mail allows it, else as application/octet-stream. A sender that was changed is not written into an original.
host::Bytes writeMessage(const mailstore::ItemRecord& item, const WriteOptions& options = {});

}  // namespace lorvane::mime
