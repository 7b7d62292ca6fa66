#include <algorithm>

#include "host/TextFunctions.h"
#include "model/Failures.h"
#include "model/HostCore.h"
#include "model/InspectorObject.h"
#include "model/ItemState.h"
#include "model/ItemText.h"

namespace lorvane::model {

using mailstore::BodyKind;

namespace {

constexpr std::int32_t contactClass = 40, appointmentClass = 26, taskClass = 48, mailClass = 43, postClass = 45;

}  // namespace

bool ItemState::isAlwaysRich() const noexcept {
    const std::int32_t number = head().itemClass;
    return number == contactClass || number == appointmentClass || number == taskClass;
}

BodyKind ItemState::editorKind() {
    if (isAlwaysRich()) return BodyKind::Rich;
    const BodyKind kind = record().bodyKind;
    return kind == BodyKind::None ? core_->newTextKind() : kind;
}

bool ItemState::isWordEdited() const noexcept {
    const std::int32_t number = head().itemClass;
    return core_->options.editor == EditorKind::Word && (number == mailClass || number == postClass);
}

std::int32_t ItemState::editorType() {
    return isWordEdited() ? static_cast<std::int32_t>(EditorKind::Word) : static_cast<std::int32_t>(editorKind());
}

std::u16string ItemState::body() {
    return visibleBody(record().bodyKind, record().body);
}

std::u16string ItemState::htmlBody() {
    return record().bodyKind == BodyKind::Html ? record().body : std::u16string();
}

std::u16string ItemState::rtfBody() {
    return record().bodyKind == BodyKind::Rich ? record().body : std::u16string();
}

std::int32_t ItemState::bodyFormat() {
    return static_cast<std::int32_t>(record().bodyKind);
}

void ItemState::commitBody(BodyKind kind, std::u16string_view source) {
    if (record().bodyKind == kind && record().body == source) return;
    mailstore::ItemRecord& changes = changed();
    changes.bodyKind = kind;
    changes.body = std::u16string(source);
    changes.bodyChanged = true;
}

void ItemState::setText(BodyKind kind, std::u16string source) {
    commitBody(kind, source);
    reloadBody();
}

void ItemState::setBody(std::u16string_view text) {
    BodyKind kind = record().bodyKind;
    if (kind == BodyKind::None) kind = isAlwaysRich() ? BodyKind::Rich : BodyKind::Plain;
    setText(kind, sourceFromText(kind, text));
}

void ItemState::setHtmlBody(std::u16string_view html) {
    const BodyKind kind = record().bodyKind;
    const bool keepsItsText = html.empty() && (kind == BodyKind::Plain || kind == BodyKind::Rich) && !body().empty();
    if (!keepsItsText) setText(BodyKind::Html, std::u16string(html));
}

void ItemState::setRtfBody(std::u16string_view rtf) {
    setText(BodyKind::Rich, std::u16string(rtf));
}

void ItemState::setBodyFormat(std::int32_t format) {
    if (format < 1 || format > 3) raiseInvalidArgument(u"A body has format 1, 2 or 3.");
    const auto kind = static_cast<BodyKind>(format);
    if (kind != record().bodyKind) setText(kind, sourceFromText(kind, body()));
}

void ItemState::reloadBody() {
    if (inspector) inspector->reloadBody();
}

void ItemState::reloadRecipients() {
    if (inspector) inspector->reloadRecipients();
}

std::u16string ItemState::recipientNames(std::int32_t type) {
    std::u16string names;
    for (const Recipient& recipient : recipients()) {
        if (recipient->type != type) continue;
        if (!names.empty()) names += u"; ";
        names += shownName(*recipient);
    }
    return names;
}

namespace {

/// True where `field` begins with a recipient's name as a whole part, whatever marks the name holds; then the part leaves `field`.
bool takeName(std::u16string_view& field, const std::u16string& name) {
    if (name.empty() || !field.starts_with(name)) return false;
    const std::u16string_view behind = host::LTrim(field.substr(name.size()));
    if (!behind.empty() && behind.front() != u';') return false;
    field = behind.empty() ? behind : behind.substr(1);
    return true;
}

bool isWritten(const mailstore::RecipientRecord& known, const mailstore::RecipientRecord& written) {
    return known.name == written.name && (written.address.empty() || host::equalsIgnoreCase(known.address, written.address));
}

}  // namespace

bool ItemState::assignRecipients(std::int32_t type, std::u16string_view field) {
    std::vector<Recipient> known;
    std::ranges::copy_if(recipients(), std::back_inserter(known), [type](const Recipient& one) { return one->type == type; });
    std::vector<Recipient> candidates = known;
    std::ranges::copy_if(replaced_, std::back_inserter(candidates), [type](const Recipient& one) { return one->type == type; });

    std::vector<Recipient> wanted;
    const auto take = [&](const auto& matches) {
        const auto found = std::ranges::find_if(candidates, [&](const Recipient& one) { return matches(*one); });
        if (found == candidates.end()) return false;
        wanted.push_back(*found);
        candidates.erase(found);
        return true;
    };
    while (!(field = host::LTrim(field)).empty()) {
        if (take([&](const mailstore::RecipientRecord& one) { return takeName(field, shownName(one)); })) continue;
        const std::u16string_view part = takeRecipient(field);
        if (part.empty()) break;
        const mailstore::RecipientRecord written = recipientFromText(part, type);
        if (take([&](const mailstore::RecipientRecord& one) { return isWritten(one, written); })) continue;
        wanted.push_back(std::make_shared<mailstore::RecipientRecord>(written));
    }
    if (wanted == known) return false;

    std::vector<Recipient>& all = changedRecipients();
    const auto place = std::ranges::find_if(all, [type](const Recipient& one) { return one->type == type; }) - all.begin();
    std::erase_if(all, [type](const Recipient& one) { return one->type == type; });
    all.insert(all.begin() + place, wanted.begin(), wanted.end());
    for (const Recipient& one : known) {
        if (std::ranges::find(replaced_, one) == replaced_.end()) replaced_.push_back(one);
    }
    return true;
}

void ItemState::setRecipientNames(std::int32_t type, std::u16string_view field) {
    if (assignRecipients(type, field)) reloadRecipients();
}

void ItemState::commitRecipientNames(std::int32_t type, std::u16string_view field) {
    assignRecipients(type, field);
}

ItemState::Recipient ItemState::addRecipient(std::u16string_view text, std::int32_t type) {
    auto added = std::make_shared<mailstore::RecipientRecord>(recipientFromText(text, type));
    if (added->name.empty()) raiseInvalidArgument(u"A recipient needs a name or an address.");
    changedRecipients().push_back(added);
    reloadRecipients();
    return added;
}

void ItemState::removeRecipient(const Recipient& recipient) {
    std::erase(changedRecipients(), recipient);
    reloadRecipients();
}

void ItemState::setRecipientType(mailstore::RecipientRecord& recipient, std::int32_t type) {
    touch();
    recipient.type = type;
    reloadRecipients();
}

bool ItemState::resolve(mailstore::RecipientRecord& recipient) {
    if (recipient.resolved) return true;
    if (!core_->addressBook.resolve(recipient)) return false;
    touch();
    reloadRecipients();
    return true;
}

bool ItemState::resolveAll() {
    bool all = true;
    bool any = false;
    for (const Recipient& recipient : recipients()) {
        if (recipient->resolved) continue;
        const bool resolved = core_->addressBook.resolve(*recipient);
        any = any || resolved;
        all = all && resolved;
    }
    if (any) {
        touch();
        reloadRecipients();
    }
    return all;
}

}  // namespace lorvane::model
