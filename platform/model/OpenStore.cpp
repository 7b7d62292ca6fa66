#include "model/OpenStore.h"

#include "model/Failures.h"
#include "model/ItemState.h"

namespace lorvane::model {

namespace {

// A walk shows in its third item; single look-ups never read a folder.
constexpr int missesOfAWalk = 3;

}  // namespace

mailstore::MailStore& OpenStore::required() const {
    if (!open_) throw host::HostError(host::host_failure::NotFound, u"The store \"" + store_->name() + u"\" is not open.");
    return *store_;
}

FolderRights OpenStore::rights(std::u16string_view folderId) const {
    if (rights_.empty()) return FolderRights::All;
    auto found = rights_.find(folderId);
    if (found == rights_.end()) found = rights_.find(rootId_);
    return found == rights_.end() ? FolderRights::All : found->second;
}

void OpenStore::refuse(std::u16string_view folderId, std::u16string_view what) const {
    const auto folder = store_->findFolder(folderId);
    std::u16string text = u"You do not have permission to ";
    text.append(what).append(u" the folder \"").append(folder ? folder->name : std::u16string(folderId)).append(u"\".");
    throw host::HostError(host::host_failure::AccessDenied, std::move(text));
}

void OpenStore::requireRead(std::u16string_view folderId) const {
    if (rights(folderId) < FolderRights::Read) refuse(folderId, u"read the items of");
}

void OpenStore::requireCreate(std::u16string_view folderId) const {
    if (rights(folderId) < FolderRights::Add) refuse(folderId, u"create items in");
}

void OpenStore::requireChange(std::u16string_view folderId) const {
    if (rights(folderId) < FolderRights::All) refuse(folderId, u"change the items of");
}

void OpenStore::dropStale() {
    const std::uint64_t changes = required().changeCount();
    if (changes == readAt_) return;
    readAt_ = changes;
    places_.clear();
    folders_.clear();
    heads_.clear();
    misses_ = 0;
}

std::shared_ptr<const mailstore::FolderRecord> OpenStore::folder(std::u16string_view folderId) {
    dropStale();
    if (const auto known = folders_.find(folderId); known != folders_.end()) return known->second;
    auto found = store_->findFolder(folderId);
    if (!found) return nullptr;
    auto kept = std::make_shared<const mailstore::FolderRecord>(std::move(*found));
    folders_.emplace(std::u16string(folderId), kept);
    return kept;
}

std::shared_ptr<const FolderHeads> OpenStore::heads(std::u16string_view folderId) {
    dropStale();
    if (const auto known = heads_.find(folderId); known != heads_.end()) return known->second;
    auto read = std::make_shared<FolderHeads>(FolderHeads{std::u16string(folderId), store_->itemHeads(folderId)});
    places_.add(read);
    heads_.emplace(read->folderId, read);
    return read;
}

ListedHead OpenStore::find(std::u16string_view entryId) {
    dropStale();
    if (ListedHead known = places_.find(entryId)) return known;
    auto head = store_->findItem(entryId);
    if (!head) return {};
    auto alone = std::make_shared<FolderHeads>();
    alone->folderId = store_->folderOfItem(entryId);
    alone->items.push_back(std::move(*head));
    misses_ = alone->folderId == lastMissFolder_ ? misses_ + 1 : 1;
    lastMissFolder_ = alone->folderId;
    if (misses_ >= missesOfAWalk) {
        misses_ = 0;
        heads(alone->folderId);
    }
    return {std::move(alone), 0};
}

std::vector<std::shared_ptr<ItemState>> OpenStore::liveStates(std::u16string_view entryId) const {
    std::vector<std::shared_ptr<ItemState>> states;
    if (live_.empty()) return states;
    const auto [first, last] = live_.equal_range(TextHash{}(entryId));
    for (auto entry = first; entry != last; ++entry) {
        if (entry->second->head().entryId != entryId) continue;
        if (auto state = entry->second->weak_from_this().lock()) states.push_back(std::move(state));
    }
    return states;
}

void OpenStore::registerState(ItemState& state) {
    live_.emplace(TextHash{}(state.head().entryId), &state);
}

void OpenStore::forgetState(const ItemState& state) noexcept {
    const auto [first, last] = live_.equal_range(TextHash{}(state.head().entryId));
    for (auto entry = first; entry != last; ++entry) {
        if (entry->second != &state) continue;
        live_.erase(entry);
        return;
    }
}

}  // namespace lorvane::model
