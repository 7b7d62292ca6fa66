#include "mime/AnswerFields.h"

#include <algorithm>

#include "host/Guards.h"
#include "host/TextFunctions.h"
#include "mime/MimeTree.h"

namespace lorvane::mime {

namespace {

using mailstore::ItemRecord;
namespace tags = mailstore::tags;

using MessageIds = std::vector<std::string>;

/// The fields of the answered message that say where it stands among others.
struct Place {
    MessageIds own, inReplyTo, references;
};

MessageIds idsOfProperty(const ItemRecord& item, std::uint32_t tag) {
    return decodeMessageIds(host::toUtf8(textProperty(item, tag)));
}

void takeThread(Place message, AnswerFields& fields) {
    fields.references = std::move(message.references);
    if (fields.references.empty() && message.inReplyTo.size() == 1) fields.references = std::move(message.inReplyTo);
    if (message.own.empty()) return;
    fields.inReplyTo = {message.own.front()};
    std::erase(fields.references, message.own.front());
    fields.references.push_back(message.own.front());
}

void takeOriginal(const ItemRecord& item, AnswerFields& fields) {
    const std::unique_ptr<Entity> root = parseMessage({reinterpret_cast<const char*>(item.original->data()), item.original->size()});
    for (const HeaderField& field : root->fields) {
        if (!equalsAscii(field.name, "Reply-To")) continue;
        for (Mailbox& mailbox : decodeAddresses(field.value())) fields.replyTo.push_back(std::move(mailbox));
    }
    takeThread({decodeMessageIds(root->value("Message-ID")), decodeMessageIds(root->value("In-Reply-To")), decodeMessageIds(root->value("References"))},
               fields);
}

}  // namespace

AnswerFields answerFieldsOf(const ItemRecord& item) {
    AnswerFields fields;
    // An original that cannot be read any more says nothing; the item itself can still be answered.
    if (item.original && host::ignoringErrors([&] { takeOriginal(item, fields); })) return fields;
    takeThread({idsOfProperty(item, tags::InternetMessageId), idsOfProperty(item, tags::InReplyToId), idsOfProperty(item, tags::InternetReferences)}, fields);
    return fields;
}

}  // namespace lorvane::mime
