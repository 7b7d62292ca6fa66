#include "model/ItemState.h"

#include <algorithm>

#include "host/Guards.h"
#include "host/TextFunctions.h"
#include "host/Variant.h"
#include "model/Failures.h"
#include "model/HostCore.h"
#include "model/InspectorObject.h"

namespace lorvane::model {

using mailstore::ItemRecord;
namespace tags = mailstore::tags;

namespace {

constexpr std::int32_t deletedItemsFolder = 3;

}  // namespace

ItemState::ItemState(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, ListedHead listed)
    : core_(std::move(core)), store_(std::move(store)), listed_(std::move(listed)) {
    seenAt_ = store_->required().changeCount();
    store_->registerState(*this);
}

ItemState::ItemState(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, std::u16string folderId, ItemRecord fresh)
    : core_(std::move(core)), store_(std::move(store)), folderId_(std::move(folderId)) {
    take(std::move(fresh));
    dirty_ = true;
}

ItemState::~ItemState() {
    store_->forgetState(*this);
}

bool ItemState::isShown() const noexcept {
    return inspector && inspector->isShown();
}

bool ItemState::hasChanges() const {
    return dirty_ || (inspector && inspector->isEdited());
}

void ItemState::requireAlive() const {
    if (!alive_) raiseDeleted();
}

void ItemState::take(ItemRecord record) {
    recipients_.clear();
    attachments_.clear();
    replaced_.clear();
    for (auto& recipient : record.recipients) recipients_.push_back(std::make_shared<mailstore::RecipientRecord>(std::move(recipient)));
    for (auto& attachment : record.attachments) attachments_.push_back(std::make_shared<mailstore::AttachmentRecord>(std::move(attachment)));
    record.recipients.clear();
    record.attachments.clear();
    record_ = std::move(record);
    loaded_ = true;
}

/// Takes head and folder out of the list that they were read with.
void ItemState::detach() {
    if (!listed_) return;
    record_.head = listed_.head();
    folderId_ = listed_.folderId();
    listed_ = {};
}

void ItemState::load() {
    if (loaded_) return;
    detach();
    // The version stays that of the opening: a save over what another program changed since is told.
    const std::uint64_t version = record_.head.version;
    take(store_->required().loadItem(record_.head.entryId));
    record_.head.version = version;
}

const ItemRecord& ItemState::record() {
    load();
    return record_;
}

ItemRecord& ItemState::changed() {
    touch();
    return record_;
}

void ItemState::touch() {
    load();
    dirty_ = true;
}

const std::vector<ItemState::Recipient>& ItemState::recipients() {
    load();
    return recipients_;
}

std::vector<ItemState::Recipient>& ItemState::changedRecipients() {
    touch();
    return recipients_;
}

const std::vector<ItemState::Attachment>& ItemState::attachments() {
    load();
    return attachments_;
}

std::vector<ItemState::Attachment>& ItemState::changedAttachments() {
    touch();
    return attachments_;
}

const mailstore::PropertyValue* ItemState::property(std::uint32_t tag) {
    load();
    const auto found = record_.properties.find(mailstore::canonicalTag(tag));
    return found == record_.properties.end() ? nullptr : &found->second;
}

void ItemState::setProperty(std::uint32_t tag, mailstore::PropertyValue value) {
    const mailstore::PropertyValue* known = property(tag);
    if (known && *known == value) return;
    changed().properties.insert_or_assign(mailstore::canonicalTag(tag), std::move(value));
}

void ItemState::removeProperty(std::uint32_t tag) {
    if (property(tag)) changed().properties.erase(mailstore::canonicalTag(tag));
}

ItemRecord ItemState::snapshot() {
    load();
    ItemRecord whole = record_;
    for (const auto& recipient : recipients_) whole.recipients.push_back(*recipient);
    for (const auto& attachment : attachments_) whole.attachments.push_back(*attachment);
    return whole;
}

void ItemState::setSubject(std::u16string_view subject) {
    commitSubject(subject);
    if (inspector) inspector->reloadSubject();
}

void ItemState::commitSubject(std::u16string_view subject) {
    if (head().subject != subject) changed().head.subject = std::u16string(subject);
}

void ItemState::setCategories(std::u16string_view categories) {
    if (head().categories != categories) changed().head.categories = std::u16string(categories);
}

void ItemState::requireSavable() const {
    requireAlive();
    store_->required();
    if (isSaved()) {
        store_->requireChange(folderId());
    } else {
        store_->requireCreate(folderId());
    }
}

void ItemState::save() {
    requireSavable();
    if (inspector) inspector->commit();
    persist();
}

void ItemState::saveCommitted() {
    requireSavable();
    persist();
}

void ItemState::persist() {
    if (isSaved() && !dirty_) return;
    load();
    const host::DateTime now = core_->now();
    record_.properties.insert_or_assign(tags::LastModificationTime, now);
    const std::u16string before = record_.head.entryId;
    mailstore::MailStore& store = store_->required();
    record_.head = isShown() && isUnsent(record_) ? store.saveOpenItem(folderId_, snapshot(), openNote_) : store.saveItem(folderId_, snapshot());
    dirty_ = false;
    seenAt_ = store_->required().changeCount();
    if (before.empty()) store_->registerState(*this);
    tellOthers();
}

void ItemState::noteOpened() {
    if (!isSaved() || !isUnsent(record())) return;
    // An item can be shown although nothing can be written; then its first save makes the note.
    host::ignoringErrors([this] { openNote_ = store_->required().noteOpen(record_.head.entryId); });
    refresh();
}

void ItemState::tellOthers() {
    for (const auto& other : store_->liveStates(record_.head.entryId)) {
        if (other.get() == this || other->hasChanges()) continue;
        other->detach();
        other->record_.head = record_.head;
        other->loaded_ = false;
        if (other->inspector) other->inspector->reload();
    }
}

void ItemState::revert() {
    if (!alive_ || !dirty_ || !isSaved()) return;
    dirty_ = false;
    loaded_ = false;
    if (const auto located = store_->find(record_.head.entryId)) record_.head = located.head();
}

void ItemState::refresh() {
    const std::uint64_t changes = store_->required().changeCount();
    if (changes == seenAt_) return;
    const auto located = store_->find(head().entryId);
    if (!located) {
        endAll();
        raiseNotFound();
    }
    seenAt_ = changes;
    if (located.head().version == head().version || hasChanges()) return;
    detach();
    record_.head = located.head();
    loaded_ = false;
    if (inspector) inspector->reload();
}

void ItemState::end() {
    const auto held = shared_from_this();
    alive_ = false;
    if (inspector) inspector->drop();
}

void ItemState::endAll() {
    const auto states = store_->liveStates(head().entryId);
    end();
    for (const auto& state : states) {
        if (state->alive_) state->end();
    }
}

void ItemState::remove() {
    requireAlive();
    const auto bin = isSaved() ? store_->required().wellKnownFolder(deletedItemsFolder) : std::nullopt;
    if (!bin || bin->entryId == folderId()) return purge();
    store_->requireChange(folderId());
    store_->required().moveItem(head().entryId, bin->entryId);
    endAll();
}

void ItemState::purge() {
    requireAlive();
    if (isSaved()) {
        store_->requireChange(folderId());
        store_->required().removeItem(head().entryId);
    }
    endAll();
}

std::shared_ptr<ItemState> ItemState::copy() {
    requireAlive();
    store_->requireCreate(folderId());
    ItemRecord record = snapshot();
    record.head.entryId.clear();
    record.head.version = 0;
    auto made = std::make_shared<ItemState>(core_, store_, folderId_, std::move(record));
    made->persist();
    return made;
}

std::shared_ptr<ItemState> ItemState::moveTo(const std::shared_ptr<OpenStore>& target, std::u16string_view targetFolder) {
    requireAlive();
    if (isSaved()) store_->requireChange(folderId());
    target->requireCreate(targetFolder);
    std::shared_ptr<ItemState> moved;
    if (target == store_ && isSaved()) {
        persist();
        const std::u16string id = store_->required().moveItem(head().entryId, targetFolder);
        auto located = store_->find(id);
        if (!located) raiseNotFound();
        moved = std::make_shared<ItemState>(core_, store_, std::move(located));
    } else {
        ItemRecord record = snapshot();
        record.head.entryId.clear();
        record.head.version = 0;
        moved = std::make_shared<ItemState>(core_, target, std::u16string(targetFolder), std::move(record));
        moved->persist();
        if (isSaved()) store_->required().removeItem(record_.head.entryId);
    }
    endAll();
    return moved;
}

}  // namespace lorvane::model
