#include "mime/MimeWriter.h"

#include <algorithm>
#include <ctime>
#include <utility>
#include <vector>

#include "host/TextFunctions.h"
#include "html/HtmlText.h"
#include "mime/HeaderWriter.h"
#include "mime/MimeLayout.h"
#include "mime/MimeReader.h"
#include "mime/PartBuilder.h"

namespace lorvane::mime {
namespace {

using mailstore::AttachmentRecord;
using mailstore::BodyKind;
using mailstore::ItemRecord;
using mailstore::RecipientRecord;
namespace tags = mailstore::tags;

std::string_view viewOf(const host::Bytes& bytes) noexcept {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

bool isUnsent(const ItemRecord& item, const WriteOptions& options) {
    if (options.unsent) return *options.unsent;
    const auto* flags = mailstore::propertyOf<std::int32_t>(item, tags::MessageFlags);
    return flags ? (*flags & mailstore::message_flags::Unsent) != 0 : textProperty(item, tags::ReceivedByName).empty();
}

std::vector<Mailbox> recipientsOf(const ItemRecord& item, std::int32_t type) {
    std::vector<Mailbox> mailboxes;
    for (const RecipientRecord& recipient : item.recipients)
        if (recipient.type == type) mailboxes.push_back({recipient.name, recipient.addressType == u"EX" ? std::u16string() : recipient.address});
    return mailboxes;
}

bool sameData(const AttachmentRecord& a, const AttachmentRecord& b) {
    const bool emptyA = !a.data || a.data->empty(), emptyB = !b.data || b.data->empty();
    return emptyA || emptyB ? emptyA == emptyB : a.data == b.data || *a.data == *b.data;
}

bool sameAttachment(const AttachmentRecord& a, const AttachmentRecord& b) {
    return a.fileName == b.fileName && a.mimeType == b.mimeType && a.contentId == b.contentId && a.type == b.type && sameData(a, b);
}

std::int32_t zoneMinutesAt(host::DateTime local, const WriteOptions& options) {
    if (options.zoneMinutes) return *options.zoneMinutes;
    const auto seconds = static_cast<std::time_t>((local.days - 25569.0) * 86400.0);
    std::tm parts{};
    if (!::gmtime_r(&seconds, &parts)) return 0;
    parts.tm_isdst = -1;
    ::mktime(&parts);
    return static_cast<std::int32_t>(parts.tm_gmtoff / 60);
}

/// An id that follows from the message.
std::string contentMessageId(std::string_view content) {
    return "<" + contentDigest(content) + "@lorvane>";
}

void collectBoundaries(const Entity& entity, std::vector<std::string>& boundaries) {
    if (!entity.boundary.empty()) boundaries.push_back(entity.boundary);
    for (const Part& child : entity.children) collectBoundaries(*child, boundaries);
}

/// Takes a part out, and the multiparts that have no other.
void remove(Entity& part) {
    Entity* parent = part.parent;
    part.detach();
    if (parent->children.empty() && parent->parent) remove(*parent);
}

/// Writes one record; `root` is the tree of its original, or a new message.
class Writer {
public:
    Writer(const ItemRecord& item, const WriteOptions& options, std::string_view newline) : item_(item), options_(options), build_(newline) {}

    Part writeNew();
    /// Whether anything differed.
    bool writeInto(Entity& root);

private:
    struct Attachments {
        std::vector<Entity*> kept;     // parts of the original, in the order of the item
        std::vector<Entity*> removed;  // parts of the original that the item has no more
        std::vector<const AttachmentRecord*> added;
    };

    std::string newline() const { return std::string(build_.newline()); }
    std::string textFieldOf(std::string_view name, std::u16string_view text) const { return text.empty() ? "" : textField(name, text, newline()); }
    std::string addressFieldOf(std::string_view name, std::int32_t type) const;
    std::string messageIdsFieldOf(std::string_view name, std::uint32_t tag) const;

    void setFrom(Entity& root, bool received) const;
    void addMissingFields(Entity& root) const;
    bool changeHeader(Entity& root, const ItemRecord& before) const;
    Part bodyPart() const;
    std::u16string plainRendition() const;
    bool isRelated(const AttachmentRecord& attachment) const;
    Part assemble(std::vector<Part> related, std::vector<Part> others) const;

    Attachments compareAttachments(const MessageLayout& layout, const ItemRecord& before) const;
    bool bodyChanges(const ItemRecord& before) const;
    bool canStay(const MessageLayout& layout, const ItemRecord& before, const Attachments& attachments) const;
    void changeBody(MessageLayout& layout) const;
    void addAttachments(Entity& root, MessageLayout& layout, const std::vector<const AttachmentRecord*>& added) const;
    void rebuild(Entity& root, const MessageLayout& layout, const Attachments& attachments) const;

    const ItemRecord& item_;
    const WriteOptions& options_;
    PartBuilder build_;
};

std::string Writer::addressFieldOf(std::string_view name, std::int32_t type) const {
    const std::vector<Mailbox> mailboxes = recipientsOf(item_, type);
    return mailboxes.empty() ? "" : addressField(name, mailboxes, newline());
}

std::string Writer::messageIdsFieldOf(std::string_view name, std::uint32_t tag) const {
    return messageIdsField(name, decodeMessageIds(host::toUtf8(textProperty(item_, tag))), newline());
}

void Writer::setFrom(Entity& root, bool received) const {
    Mailbox from{options_.fromName, options_.fromAddress};
    const std::u16string sender = textProperty(item_, tags::SenderAddress);
    if (received && (!sender.empty() || !textProperty(item_, tags::SenderName).empty())) from = {textProperty(item_, tags::SenderName), sender};
    build_.setField(root, "From", addressField("From", {from}, newline()));
}

void Writer::addMissingFields(Entity& root) const {
    const bool received = !isUnsent(item_, options_);
    if (!root.find("From")) setFrom(root, received);
    if (!root.find("Date")) {
        host::DateTime date = options_.date.value_or(host::DateTime{25569.0});
        const auto sent = item_.properties.find(tags::ClientSubmitTime);
        if (received && sent != item_.properties.end() && std::holds_alternative<host::DateTime>(sent->second)) date = std::get<host::DateTime>(sent->second);
        build_.setField(root, "Date", tokenField("Date", dateText(date, zoneMinutesAt(date, options_)), newline()));
    }
    if (!root.find("Message-ID")) {
        std::string id = host::toUtf8(textProperty(item_, tags::InternetMessageId));
        const bool usable = id.size() > 2 && id.size() < 900 && std::all_of(id.begin(), id.end(), [](char c) { return c > 32 && c < 127; });
        if (!usable) id = options_.newMessageId ? options_.newMessageId() : contentMessageId(serialize(root) + host::toUtf8(item_.body));
        build_.setField(root, "Message-ID", tokenField("Message-ID", id, newline()));
    }
}

Part Writer::writeNew() {
    auto root = std::make_unique<Entity>();
    const bool unsent = isUnsent(item_, options_);
    setFrom(*root, !unsent);
    build_.setField(*root, "To", addressFieldOf("To", 1));
    build_.setField(*root, "Cc", addressFieldOf("Cc", 2));
    build_.setField(*root, "Bcc", addressFieldOf("Bcc", 3));
    build_.setField(*root, "Subject", textFieldOf("Subject", item_.head.subject));
    addMissingFields(*root);
    build_.setField(*root, "In-Reply-To", messageIdsFieldOf("In-Reply-To", tags::InReplyToId));
    build_.setField(*root, "References", messageIdsFieldOf("References", tags::InternetReferences));
    build_.setField(*root, "Keywords", textFieldOf("Keywords", item_.head.categories));
    if (unsent) build_.setField(*root, "X-Unsent", tokenField("X-Unsent", "1", newline()));
    build_.setField(*root, "MIME-Version", tokenField("MIME-Version", "1.0", newline()));
    std::vector<Part> related, others;
    for (const AttachmentRecord& attachment : item_.attachments)
        (isRelated(attachment) ? related : others).push_back(build_.attachment(attachment, isRelated(attachment), {}));
    build_.replaceContent(*root, assemble(std::move(related), std::move(others)));
    if (!root->isMultipart()) build_.endText(*root);
    return root;
}

bool Writer::isRelated(const AttachmentRecord& attachment) const {
    return item_.bodyKind == BodyKind::Html && attachment.inlinePicture && !attachment.contentId.empty();
}

std::u16string Writer::plainRendition() const {
    if (item_.bodyKind == BodyKind::Html) return html::visibleText(item_.body);
    if (item_.bodyKind == BodyKind::Rich) return options_.richText ? options_.richText(item_.body) : std::u16string();
    return item_.body;
}

/// The part that is the item's text in its kind.
Part Writer::bodyPart() const {
    const std::string_view type = item_.bodyKind == BodyKind::Html ? "text/html" : item_.bodyKind == BodyKind::Rich ? "text/rtf" : "text/plain";
    return build_.text(type, item_.body);
}

Part Writer::assemble(std::vector<Part> related, std::vector<Part> others) const {
    Part body = bodyPart();
    if (!related.empty()) {
        related.insert(related.begin(), std::move(body));
        body = build_.multipart("related", std::move(related));
    }
    if (item_.bodyKind == BodyKind::Html || item_.bodyKind == BodyKind::Rich) {
        std::vector<Part> renditions;
        renditions.push_back(build_.text("text/plain", plainRendition()));
        renditions.push_back(std::move(body));
        body = build_.multipart("alternative", std::move(renditions));
    }
    if (others.empty()) return body;
    others.insert(others.begin(), std::move(body));
    return build_.multipart("mixed", std::move(others));
}

bool Writer::changeHeader(Entity& root, const ItemRecord& before) const {
    bool changed = false;
    const auto change = [&](bool differs, std::string_view name, const std::string& raw) {
        if (!differs) return;
        build_.setField(root, name, raw);
        changed = true;
    };
    change(item_.head.subject != before.head.subject, "Subject", textFieldOf("Subject", item_.head.subject));
    change(recipientsOf(item_, 1) != recipientsOf(before, 1), "To", addressFieldOf("To", 1));
    change(recipientsOf(item_, 2) != recipientsOf(before, 2), "Cc", addressFieldOf("Cc", 2));
    change(recipientsOf(item_, 3) != recipientsOf(before, 3), "Bcc", addressFieldOf("Bcc", 3));
    const bool categories = item_.head.categories != before.head.categories;
    change(categories, "Keywords", textFieldOf("Keywords", item_.head.categories));
    change(categories, "X-Keywords", {});
    const bool unsent = isUnsent(item_, options_);
    change(unsent != isUnsent(before, {}), "X-Unsent", unsent ? tokenField("X-Unsent", "1", newline()) : "");
    if (unsent && options_.fromGiven) {
        const auto from = decodeAddresses(root.value("From"));
        const bool same = from.size() == 1 && from.front() == Mailbox{options_.fromName, options_.fromAddress};
        if (!same) setFrom(root, false);
        changed = changed || !same;
    }
    return changed;
}

Writer::Attachments Writer::compareAttachments(const MessageLayout& layout, const ItemRecord& before) const {
    Attachments result;
    std::vector<bool> used(before.attachments.size());
    for (const AttachmentRecord& attachment : item_.attachments) {
        std::size_t at = 0;
        while (at < used.size() && (used[at] || !sameAttachment(attachment, before.attachments[at]))) ++at;
        if (at == used.size()) {
            result.added.push_back(&attachment);
        } else {
            used[at] = true;
            result.kept.push_back(layout.attachments[at].entity);
        }
    }
    for (std::size_t at = 0; at < used.size(); ++at)
        if (!used[at]) result.removed.push_back(layout.attachments[at].entity);
    return result;
}

bool Writer::bodyChanges(const ItemRecord& before) const {
    return item_.bodyChanged && (item_.bodyKind != before.bodyKind || item_.body != before.body);
}

/// Whether the structure of the original can take the changes part by part.
bool Writer::canStay(const MessageLayout& layout, const ItemRecord& before, const Attachments& attachments) const {
    if (!layout.body && attachments.kept.empty() && !attachments.removed.empty()) return false;
    if (!bodyChanges(before)) return true;
    if (!layout.body || layout.body->type.starts_with("multipart/")) return false;
    const bool alone = !layout.textAlternative && layout.otherRenditions.empty();
    return alone || item_.bodyKind == before.bodyKind;
}

/// Writes the item's text into the parts that hold it; a single HTML part becomes text and HTML.
void Writer::changeBody(MessageLayout& layout) const {
    for (Entity* rendition : layout.otherRenditions) remove(*rendition);
    layout.otherRenditions.clear();
    Entity& body = *layout.body;
    if (item_.bodyKind == BodyKind::Plain || item_.bodyKind == BodyKind::None || layout.textAlternative) {
        const Part made = bodyPart();
        build_.setText(body, made->type, item_.body);
        if (layout.textAlternative) build_.setText(*layout.textAlternative, "text/plain", plainRendition());
        return;
    }
    build_.replaceContent(body, assemble({}, {}));
    layout.textAlternative = body.children.front().get();
    layout.body = body.children.back().get();
    // A multipart/related names the type of its first part.
    if (Entity* parent = body.parent; parent && parent->type == "multipart/related") {
        const Parameterised type = decodeContentType(parent->value("Content-Type"));
        std::vector<Parameter> parameters;
        for (const auto& [name, value] : type.parameters) parameters.push_back({name, name == "type" ? u"multipart/alternative" : value});
        build_.setField(*parent, "Content-Type", parameterField("Content-Type", type.value, parameters, newline()));
    }
}

void Writer::addAttachments(Entity& root, MessageLayout& layout, const std::vector<const AttachmentRecord*>& added) const {
    std::vector<std::string> boundaries;
    collectBoundaries(root, boundaries);
    for (const AttachmentRecord* attachment : added) {
        const bool related = isRelated(*attachment) && layout.body;
        Part part = build_.attachment(*attachment, related, boundaries);
        Entity* target = &root;
        if (related) {
            target = layout.body->parent;
            while (target && target->type != "multipart/related") target = target->parent;
        } else if (root.type != "multipart/mixed" || !root.isMultipart()) {
            target = nullptr;
        }
        if (!target) {
            Entity& wrapped = related ? *layout.body : root;
            Entity& inner = build_.wrap(wrapped, related ? "related" : "mixed");
            if (layout.body == &wrapped) layout.body = &inner;
            target = &wrapped;
        }
        build_.append(*target, std::move(part));
    }
}

/// Puts the message together anew from the item's text and the parts that are kept, each with its own bytes.
void Writer::rebuild(Entity& root, const MessageLayout& layout, const Attachments& attachments) const {
    std::vector<Part> related, others;
    for (Entity* entity : attachments.kept) {
        const auto known =
            std::find_if(layout.attachments.begin(), layout.attachments.end(), [&](const AttachmentPart& part) { return part.entity == entity; });
        const bool shown = known->related && item_.bodyKind == BodyKind::Html;
        if (!entity->parent) entity = &build_.wrap(root, "mixed");
        (shown ? related : others).push_back(entity->detach());
    }
    std::vector<std::string> boundaries;
    for (const auto* parts : {&related, &others})
        for (const Part& part : *parts) collectBoundaries(*part, boundaries);
    for (const AttachmentRecord* attachment : attachments.added)
        (isRelated(*attachment) ? related : others).push_back(build_.attachment(*attachment, isRelated(*attachment), boundaries));
    for (const char* name : {"Content-Disposition", "Content-ID", "Content-Description", "Content-Location"}) build_.setField(root, name, {});
    build_.replaceContent(root, assemble(std::move(related), std::move(others)));
    if (!root.isMultipart()) build_.endText(root);
}

bool Writer::writeInto(Entity& root) {
    const ItemRecord before = readMessage(*item_.original);
    MessageLayout layout = layoutOf(root);
    const bool headerChanges = changeHeader(root, before);
    const Attachments attachments = compareAttachments(layout, before);
    if (!headerChanges && !bodyChanges(before) && attachments.removed.empty() && attachments.added.empty()) return false;
    if (canStay(layout, before, attachments)) {
        for (Entity* part : attachments.removed) remove(*part);
        if (bodyChanges(before)) changeBody(layout);
        addAttachments(root, layout, attachments.added);
    } else {
        rebuild(root, layout, attachments);
    }
    addMissingFields(root);
    if (!root.find("MIME-Version") && root.find("Content-Type")) build_.setField(root, "MIME-Version", tokenField("MIME-Version", "1.0", newline()));
    return true;
}

host::Bytes bytesOf(const Entity& root) {
    const std::string message = serialize(root);
    return {message.begin(), message.end()};
}

}  // namespace

host::Bytes writeMessage(const ItemRecord& item, const WriteOptions& options) {
    if (!item.original) return bytesOf(*Writer(item, options, "\r\n").writeNew());
    const Part root = parseMessage(viewOf(*item.original));
    return Writer(item, options, newlineOf(viewOf(*item.original))).writeInto(*root) ? bytesOf(*root) : *item.original;
}

}  // namespace lorvane::mime
