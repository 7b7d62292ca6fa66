#pragma once

#include <string>
#include <string_view>

#include "mailstore/ItemRecord.h"

/// How an answer quotes the text it answers. Pure.
namespace lorvane::model {

/// What the block above the quoted text tells; nothing is told of a sender or a date that is not there.
struct QuotedHeader {
    std::u16string senderName = {}, senderAddress = {};
    std::u16string sent = {};
    std::u16string to = {}, cc = {};
    std::u16string subject = {};
};

/// The block as text: two line ends, so that an answer is written on an empty line above it, its lines, and one more line end.
std::u16string quotedBlock(const QuotedHeader& header);

/// The source of an answer of that kind. Plain: the block and the source. HTML: the source as it is, with the block directly behind its body tag, or in front
/// of it where it has none. Rich: both as one text.
std::u16string quotedSource(mailstore::BodyKind kind, std::u16string_view source, std::u16string_view block);

}  // namespace lorvane::model
