#pragma once

#include <string>
#include <vector>

#include "mailstore/ItemRecord.h"
#include "mime/HeaderText.h"

namespace lorvane::mime {

/// What the answer to a message takes from its header.
struct AnswerFields {
    std::vector<Mailbox> replyTo;         ///< the addresses of Reply-To; none where the message has no such field
    std::vector<std::string> inReplyTo;   ///< message identities for In-Reply-To of the answer (RFC 5322, 3.6.4)
    std::vector<std::string> references;  ///< the same for References
};

/// By the message as it came where the item has it, else by the item's properties.
AnswerFields answerFieldsOf(const mailstore::ItemRecord& item);

}  // namespace lorvane::mime
