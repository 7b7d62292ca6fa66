#include "mailstore/ItemRecord.h"

namespace lorvane::mailstore {

namespace {

bool sameContent(const std::shared_ptr<const Bytes>& a, const std::shared_ptr<const Bytes>& b) {
    if (a == b) return true;
    return a && b && *a == *b;
}

}  // namespace

bool AttachmentRecord::operator==(const AttachmentRecord& other) const {
    return fileName == other.fileName && displayName == other.displayName && type == other.type && mimeType == other.mimeType && contentId == other.contentId &&
           inlinePicture == other.inlinePicture && properties == other.properties && sameContent(data, other.data);
}

bool ItemRecord::operator==(const ItemRecord& other) const {
    return head == other.head && properties == other.properties && userProperties == other.userProperties && recipients == other.recipients &&
           bodyKind == other.bodyKind && body == other.body && attachments == other.attachments && sameContent(original, other.original) &&
           bodyChanged == other.bodyChanged;
}

std::u16string textProperty(const ItemRecord& item, std::uint32_t tag) {
    const auto* text = propertyOf<std::u16string>(item, tag);
    return text ? *text : std::u16string();
}

bool isUnsent(const ItemRecord& item) {
    const auto* flags = propertyOf<std::int32_t>(item, tags::MessageFlags);
    return flags && (*flags & message_flags::Unsent) != 0;
}

}  // namespace lorvane::mailstore
