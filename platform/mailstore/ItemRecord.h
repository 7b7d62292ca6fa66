#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "host/Object.h"

namespace lorvane::mailstore {

using host::Bytes;
using host::DateTime;

/// The kind of an item's text; the numbers are those of `BodyFormat`.
enum class BodyKind : std::uint8_t { None = 0, Plain = 1, Html = 2, Rich = 3 };

/// One raw MAPI property value. A list is a multi-valued string (type 101F).
using PropertyValue = std::variant<bool, std::int32_t, double, DateTime, std::u16string, Bytes, std::vector<std::u16string>>;

/// Raw properties by tag. Text properties are filed under the Unicode type (001F, 101F) whatever type they are asked for by; see `canonicalTag`.
using PropertyBag = std::map<std::uint32_t, PropertyValue>;

/// The tag a property is filed under: 001E becomes 001F, 101E becomes 101F.
constexpr std::uint32_t canonicalTag(std::uint32_t tag) noexcept {
    const std::uint32_t type = tag & 0xFFFFu;
    return type == 0x001Eu ? tag + 1 : type == 0x101Eu ? tag + 1 : tag;
}

struct RecipientRecord {
    std::u16string name;
    std::u16string address;
    std::u16string addressType;  ///< "SMTP", "EX", or empty while unresolved
    std::int32_t type = 1;       ///< 1 To, 2 CC, 3 BCC
    bool resolved = false;
    bool operator==(const RecipientRecord&) const = default;
};

struct AttachmentRecord {
    std::u16string fileName;
    std::u16string displayName;
    std::int32_t type = 1;       ///< 1 by value, 5 embedded item
    std::u16string mimeType;     ///< "image/png"; empty where unknown
    std::u16string contentId;    ///< without angle brackets; also raw property 3712
    bool inlinePicture = false;  ///< shown by the HTML through its content id
    PropertyBag properties;      ///< raw properties other than the above
    std::shared_ptr<const Bytes> data;
    bool operator==(const AttachmentRecord& other) const;  ///< data by content
};

/// Everything of an item that lists need; read for a whole folder in one query.
struct ItemHead {
    std::u16string entryId;  ///< upper-case hexadecimal; empty until the first save
    std::int32_t itemClass = 43;
    std::u16string messageClass = u"IPM.Note";
    std::u16string subject;
    std::u16string categories;
    std::uint64_t version = 0;  ///< goes up with each save; the store refuses a save of an older one
    bool operator==(const ItemHead&) const = default;
};

/// A whole item as a store keeps it. Everything survives a save and a load in equal code units and bytes.
///
/// Members of the object model that have no field here live in `properties` under their MAPI tag (`tags` below).
struct ItemRecord {
    ItemHead head;
    PropertyBag properties;
    std::map<std::u16string, std::u16string> userProperties;
    std::vector<RecipientRecord> recipients;
    BodyKind bodyKind = BodyKind::None;
    std::u16string body;  ///< the one source: plain text, HTML or RTF by `bodyKind`
    std::vector<AttachmentRecord> attachments;
    std::shared_ptr<const Bytes> original;           ///< the message as it came (RFC 5322), kept until the item is changed; null for items made here
    bool bodyChanged = false;                        ///< the body was written since `original` was read: its body parts are made anew on writing out
    bool operator==(const ItemRecord& other) const;  ///< `original` by content
};

/// What a property holds, where it is there and of that type; else null. `tag` is one of `tags` below, or another one in their form.
template <class T>
const T* propertyOf(const ItemRecord& item, std::uint32_t tag) {
    const auto found = item.properties.find(tag);
    return found == item.properties.end() ? nullptr : std::get_if<T>(&found->second);
}
/// A property's text; empty where it has none.
std::u16string textProperty(const ItemRecord& item, std::uint32_t tag);

/// True for an item that was not sent yet, nor received.
bool isUnsent(const ItemRecord& item);

/// MAPI tags of what an item keeps in its property bag.
namespace tags {
inline constexpr std::uint32_t ReceivedByName = 0x0040001F;
inline constexpr std::uint32_t SenderName = 0x0C1A001F;
inline constexpr std::uint32_t SenderAddressType = 0x0C1E001F;
inline constexpr std::uint32_t SenderAddress = 0x0C1F001F;
inline constexpr std::uint32_t SentOnBehalfOfName = 0x0042001F;
inline constexpr std::uint32_t ClientSubmitTime = 0x00390040;  ///< SentOn
inline constexpr std::uint32_t DeliveryTime = 0x0E060040;      ///< ReceivedTime
inline constexpr std::uint32_t MessageFlags = 0x0E070003;      ///< bit 0 read, bit 3 unsent (8)
inline constexpr std::uint32_t InternetMessageId = 0x1035001F;
inline constexpr std::uint32_t InternetReferences = 0x1039001F;  ///< of an answer made here; a message that came has them in `original`
inline constexpr std::uint32_t InReplyToId = 0x1042001F;         ///< likewise
inline constexpr std::uint32_t CreationTime = 0x30070040;
inline constexpr std::uint32_t LastModificationTime = 0x30080040;
inline constexpr std::uint32_t Mileage = 0x85340000 + 0x001F;
inline constexpr std::uint32_t Start = 0x820D0040;
inline constexpr std::uint32_t End = 0x820E0040;
inline constexpr std::uint32_t AllDayEvent = 0x8215000B;
inline constexpr std::uint32_t ReminderSet = 0x8503000B;
inline constexpr std::uint32_t ReminderMinutesBeforeStart = 0x85010003;
inline constexpr std::uint32_t AttachContentId = 0x3712001F;
inline constexpr std::uint32_t AttachMimeTag = 0x370E001F;
inline constexpr std::uint32_t AttachHidden = 0x7FFE000B;
inline constexpr std::uint32_t AttachFlags = 0x7FFD0003;
inline constexpr std::uint32_t NamePrefix = 0x3A45001F;
inline constexpr std::uint32_t GivenName = 0x3A06001F;
inline constexpr std::uint32_t MiddleName = 0x3A44001F;
inline constexpr std::uint32_t Surname = 0x3A11001F;
inline constexpr std::uint32_t Generation = 0x3A05001F;
inline constexpr std::uint32_t ProxyAddresses = 0x800F101F;
inline constexpr std::uint32_t SmtpAddress = 0x39FE001F;
}  // namespace tags

/// Bits of `tags::MessageFlags`.
namespace message_flags {
inline constexpr std::int32_t Read = 1;
inline constexpr std::int32_t Unsent = 8;
}  // namespace message_flags

}  // namespace lorvane::mailstore
