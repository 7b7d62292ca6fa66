#include "mailstore/Records.h"

namespace lorvane::mailstore::test {

namespace {

std::size_t pick(std::mt19937& source, std::size_t below) {
    return source() % below;
}

PropertyValue randomValue(std::mt19937& source) {
    switch (pick(source, 7)) {
        case 0:
            return pick(source, 2) == 1;
        case 1:
            return static_cast<std::int32_t>(source());
        case 2:
            return static_cast<double>(source()) / 7.0 - 1e9;
        case 3:
            return DateTime{static_cast<double>(source()) / 65536.0};
        case 4:
            return randomText(source, 40);
        case 5:
            return randomBytes(source, pick(source, 40));
        default: {
            std::vector<std::u16string> list(pick(source, 4));
            for (std::u16string& text : list) text = randomText(source, 20);
            return list;
        }
    }
}

PropertyBag randomProperties(std::mt19937& source) {
    PropertyBag properties;
    for (std::size_t left = pick(source, 12); left > 0; --left) properties[static_cast<std::uint32_t>(source())] = randomValue(source);
    return properties;
}

/// Nothing, no bytes, or some: three different things.
std::shared_ptr<const Bytes> randomContent(std::mt19937& source) {
    const std::size_t kind = pick(source, 4);
    if (kind == 0) return nullptr;
    return std::make_shared<const Bytes>(kind == 1 ? Bytes() : randomBytes(source, pick(source, 9000)));
}

AttachmentRecord randomAttachment(std::mt19937& source) {
    AttachmentRecord attachment;
    attachment.fileName = randomText(source, 20);
    attachment.displayName = randomText(source, 20);
    attachment.type = pick(source, 2) ? 1 : 5;
    attachment.mimeType = randomText(source, 10);
    attachment.contentId = randomText(source, 10);
    attachment.inlinePicture = pick(source, 2) == 1;
    attachment.properties = randomProperties(source);
    attachment.data = randomContent(source);
    return attachment;
}

}  // namespace

ItemRecord mail(std::u16string subject, std::u16string body) {
    ItemRecord record;
    record.head.subject = std::move(subject);
    record.bodyKind = BodyKind::Plain;
    record.body = std::move(body);
    return record;
}

Bytes randomBytes(std::mt19937& source, std::size_t size) {
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(source());
    return bytes;
}

std::u16string randomText(std::mt19937& source, std::size_t atMost) {
    static constexpr char16_t awkward[] = {0, 0xD800, 0xDFFF, 0xDC00, 0xFFFE, 0xFFFF, 0xFEFF, u'\r', u'\n', u'\'', 0x0301, 0x212B};
    std::u16string text(pick(source, atMost + 1), u'\0');
    for (char16_t& unit : text) unit = pick(source, 3) == 0 ? awkward[pick(source, std::size(awkward))] : static_cast<char16_t>(source());
    return text;
}

ItemRecord randomRecord(std::mt19937& source) {
    ItemRecord record;
    record.head.itemClass = static_cast<std::int32_t>(source());
    record.head.messageClass = randomText(source, 12);
    record.head.subject = randomText(source, 60);
    record.head.categories = randomText(source, 30);
    record.properties = randomProperties(source);
    for (std::size_t left = pick(source, 4); left > 0; --left) record.userProperties[randomText(source, 10)] = randomText(source, 30);
    for (std::size_t left = pick(source, 5); left > 0; --left) {
        record.recipients.push_back(
            {randomText(source, 20), randomText(source, 20), randomText(source, 4), static_cast<std::int32_t>(source()), left % 2 == 0});
    }
    record.bodyKind = static_cast<BodyKind>(pick(source, 4));
    record.body = randomText(source, 5000);
    for (std::size_t left = pick(source, 4); left > 0; --left) record.attachments.push_back(randomAttachment(source));
    record.original = randomContent(source);
    record.bodyChanged = pick(source, 2) == 1;
    return record;
}

ItemRecord withHead(ItemRecord record, const ItemHead& head) {
    record.head = head;
    return record;
}

std::optional<host::HostError> errorOf(const std::function<void()>& action) {
    try {
        action();
        return std::nullopt;
    } catch (const host::HostError& error) {
        return error;
    }
}

std::int32_t numberOf(const std::function<void()>& action) {
    const auto error = errorOf(action);
    return error ? error->number() : 0;
}

std::vector<std::u16string> subjects(const std::vector<ItemHead>& heads) {
    std::vector<std::u16string> list;
    for (const ItemHead& head : heads) list.push_back(head.subject);
    return list;
}

std::vector<std::u16string> names(const std::vector<FolderRecord>& folders) {
    std::vector<std::u16string> list;
    for (const FolderRecord& folder : folders) list.push_back(folder.name);
    return list;
}

}  // namespace lorvane::mailstore::test
