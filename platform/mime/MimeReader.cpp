#include "mime/MimeReader.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <set>

#include "host/TextFunctions.h"
#include "mime/ContentIds.h"
#include "mime/HeaderText.h"
#include "mime/MimeLayout.h"
#include "mime/TransferCoding.h"

namespace lorvane::mime {
namespace {

using mailstore::AttachmentRecord;
using mailstore::BodyKind;
using mailstore::ItemRecord;
namespace tags = mailstore::tags;

std::int32_t offsetOfProcess(std::int64_t moment) {
    const auto time = static_cast<std::time_t>(moment);
    std::tm local{};
    return ::localtime_r(&time, &local) ? static_cast<std::int32_t>(local.tm_gmtoff) : 0;
}

host::DateTime localTime(std::int64_t moment, const ReadOptions& options) {
    constexpr double daysTo1970 = 25569.0;
    const std::int64_t seconds = moment + (options.zoneOffset ? options.zoneOffset(moment) : offsetOfProcess(moment));
    return {daysTo1970 + static_cast<double>(seconds) / 86400.0};
}

void readRecipients(const Entity& root, std::string_view field, std::int32_t type, bool draft, ItemRecord& item) {
    for (const HeaderField& header : root.fields) {
        if (!equalsAscii(header.name, field)) continue;
        for (Mailbox& mailbox : decodeAddresses(header.value(), draft)) {
            const bool resolved = !mailbox.address.empty();
            std::u16string name = mailbox.name.empty() ? mailbox.address : std::move(mailbox.name);
            if (!name.empty()) item.recipients.push_back({std::move(name), std::move(mailbox.address), resolved ? u"SMTP" : u"", type, resolved});
        }
    }
}

void readSender(const Entity& root, ItemRecord& item) {
    Mailbox sender;
    for (const std::string_view field : {"From", "Sender", "Reply-To", "Return-Path"}) {
        const auto found = decodeAddresses(root.value(field));
        if (!found.empty()) sender = found.front();
        if (!sender.address.empty()) break;
    }
    if (sender.name.empty()) sender.name = sender.address;
    if (sender.name.empty()) sender.name = decodeText(root.value("From"));
    if (sender.name.empty()) sender.name = u"Unknown";
    item.properties[tags::SenderName] = sender.name;
    item.properties[tags::SentOnBehalfOfName] = sender.name;
    item.properties[tags::SenderAddress] = sender.address;
    item.properties[tags::SenderAddressType] = std::u16string(u"SMTP");
}

void readTimes(const Entity& root, const ReadOptions& options, ItemRecord& item) {
    const auto submitted = decodeDate(root.value("Date"));
    const std::string received = root.value("Received");
    const std::size_t semicolon = received.rfind(';');
    auto delivered = semicolon == std::string::npos ? std::nullopt : decodeDate(std::string_view(received).substr(semicolon + 1));
    if (!delivered) delivered = submitted;
    if (submitted) item.properties[tags::ClientSubmitTime] = localTime(*submitted, options);
    if (delivered)
        item.properties[tags::DeliveryTime] = localTime(*delivered, options);
    else if (options.now)
        item.properties[tags::DeliveryTime] = *options.now;
}

std::u16string readCategories(const Entity& root) {
    for (const std::string_view name : {"Keywords", "X-Keywords"}) {
        std::u16string all;
        for (const HeaderField& field : root.fields)
            if (equalsAscii(field.name, name) && !field.value().empty()) all += (all.empty() ? u"" : u", ") + decodeText(field.value());
        if (!all.empty()) return all;
    }
    return {};
}

void readHeader(const Entity& root, const ReadOptions& options, ItemRecord& item) {
    const bool draft = root.value("X-Unsent") == "1";
    item.head.subject = decodeText(root.value("Subject"));
    item.head.categories = readCategories(root);
    readRecipients(root, "To", 1, draft, item);
    readRecipients(root, "Cc", 2, draft, item);
    readRecipients(root, "Bcc", 3, draft, item);
    if (const std::string id = root.value("Message-ID"); !id.empty()) item.properties[tags::InternetMessageId] = decodeText(id);
    item.properties[tags::MessageFlags] = draft ? mailstore::message_flags::Unsent : 0;
    if (draft) return;
    item.properties[tags::ReceivedByName] = options.accountName.empty() ? options.accountAddress : options.accountName;
    readSender(root, item);
    readTimes(root, options, item);
}

std::u16string extensionOf(std::string_view type) {
    static constexpr std::array<std::pair<std::string_view, const char16_t*>, 14> known = {{{"text/plain", u".txt"},
                                                                                            {"text/html", u".htm"},
                                                                                            {"text/calendar", u".ics"},
                                                                                            {"text/rtf", u".rtf"},
                                                                                            {"application/rtf", u".rtf"},
                                                                                            {"application/pdf", u".pdf"},
                                                                                            {"application/pkcs7-signature", u".p7s"},
                                                                                            {"application/pgp-signature", u".asc"},
                                                                                            {"image/png", u".png"},
                                                                                            {"image/jpeg", u".jpg"},
                                                                                            {"image/gif", u".gif"},
                                                                                            {"message/rfc822", u".eml"},
                                                                                            {"message/delivery-status", u".txt"},
                                                                                            {"text/csv", u".csv"}}};
    const auto found = std::find_if(known.begin(), known.end(), [&](const auto& row) { return row.first == type; });
    if (found != known.end()) return found->second;
    return type.starts_with("text/") ? u".txt" : u".dat";
}

std::u16string madeUpName(std::size_t number, std::string_view type) {
    const std::u16string digits = host::decimal(static_cast<std::int64_t>(number));
    return u"ATT" + std::u16string(digits.size() < 5 ? 5 - digits.size() : 0, u'0') + digits + extensionOf(type);
}

AttachmentRecord readAttachment(const Entity& part, std::size_t& unnamed) {
    AttachmentRecord attachment;
    const std::string data = decodeBytes(transferEncodingNamed(part.value("Content-Transfer-Encoding")), part.content);
    attachment.data = std::make_shared<const host::Bytes>(data.begin(), data.end());
    attachment.mimeType = host::fromUtf8(part.type);
    attachment.contentId = contentIdOf(part);
    attachment.fileName = fileNameOf(part);
    if (attachment.fileName.empty()) attachment.fileName = madeUpName(++unnamed, part.type);
    if (part.type == "message/rfc822") {
        attachment.type = 5;
        if (!host::LCase(attachment.fileName).ends_with(u".eml")) attachment.fileName += u".eml";
    }
    attachment.displayName = attachment.fileName;
    return attachment;
}

void readAttachments(const MessageLayout& layout, ItemRecord& item) {
    const std::set<std::u16string> referenced = item.bodyKind == BodyKind::Html ? referencedContentIds(item.body) : std::set<std::u16string>();
    std::size_t unnamed = 0;
    for (const AttachmentPart& part : layout.attachments) {
        AttachmentRecord attachment = readAttachment(*part.entity, unnamed);
        const bool shown = referenced.contains(host::LCase(attachment.contentId));
        const bool marked = decodeDisposition(part.entity->value("Content-Disposition")).value == "inline";
        attachment.inlinePicture = item.bodyKind == BodyKind::Html && !attachment.contentId.empty() && (part.related || (marked && shown));
        item.attachments.push_back(std::move(attachment));
    }
}

}  // namespace

ItemRecord readMessage(std::span<const std::uint8_t> bytes, const ReadOptions& options) {
    const std::unique_ptr<Entity> root = parseMessage({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    const MessageLayout layout = layoutOf(*root);
    ItemRecord item;
    readHeader(*root, options, item);
    item.bodyKind = layout.kind;
    if (layout.body) item.body = textOf(*layout.body);
    readAttachments(layout, item);
    item.original = std::make_shared<const host::Bytes>(bytes.begin(), bytes.end());
    return item;
}

}  // namespace lorvane::mime
