#include "mailstore/TypedMarks.h"

#include <algorithm>

namespace lorvane::mailstore {

namespace {

bool holdsAny(const std::u16string& text, std::span<const std::u16string> marks) {
    return std::ranges::any_of(marks, [&text](const std::u16string& mark) { return !mark.empty() && text.find(mark) != std::u16string::npos; });
}

bool takeOut(std::u16string& text, std::span<const std::u16string> marks) {
    bool any = false;
    for (const std::u16string& mark : marks) {
        const std::size_t place = mark.empty() ? std::u16string::npos : text.find(mark);
        if (place == std::u16string::npos) continue;
        text.erase(place, mark.size());
        any = true;
    }
    return any;
}

void restore(RecipientRecord& recipient, const std::vector<RecipientRecord>& before) {
    const auto known = std::ranges::find_if(before, [&recipient](const RecipientRecord& one) {
        const std::u16string& shown = one.name.empty() ? one.address : one.name;
        return one.type == recipient.type && shown == recipient.name;
    });
    if (known != before.end()) recipient = *known;
}

bool takeOut(std::vector<RecipientRecord>& recipients, std::span<const std::u16string> marks, const std::vector<RecipientRecord>& before) {
    bool any = false;
    for (RecipientRecord& recipient : recipients) {
        const bool fromName = takeOut(recipient.name, marks);
        const bool fromAddress = takeOut(recipient.address, marks);
        if (!fromName && !fromAddress) continue;
        any = true;
        if (recipient.address.empty()) restore(recipient, before);
    }
    if (any) std::erase_if(recipients, [](const RecipientRecord& recipient) { return recipient.name.empty() && recipient.address.empty(); });
    return any;
}

}  // namespace

bool holdsMark(const ItemRecord& item, std::span<const std::u16string> marks) {
    return holdsAny(item.head.subject, marks) || holdsAny(item.body, marks) || std::ranges::any_of(item.recipients, [marks](const RecipientRecord& recipient) {
               return holdsAny(recipient.name, marks) || holdsAny(recipient.address, marks);
           });
}

bool takeMarksOut(ItemRecord& item, std::span<const std::u16string> marks, const std::vector<RecipientRecord>& before) {
    const bool fromSubject = takeOut(item.head.subject, marks);
    const bool fromRecipients = takeOut(item.recipients, marks, before);
    const bool fromBody = takeOut(item.body, marks);
    if (fromBody) item.bodyChanged = true;
    return fromSubject || fromRecipients || fromBody;
}

}  // namespace lorvane::mailstore
