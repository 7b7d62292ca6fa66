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

bool isUnsent(const ItemRecord& item) {
    const auto flags = item.properties.find(tags::MessageFlags);
    const auto* number = flags == item.properties.end() ? nullptr : std::get_if<std::int32_t>(&flags->second);
    return number && (*number & message_flags::Unsent) != 0;
}

}  // namespace lorvane::mailstore
