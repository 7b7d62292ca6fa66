#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "mailstore/MailStore.h"
#include "model/FolderRights.h"
#include "model/HeadIndex.h"

namespace lorvane::model {

class ItemState;

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::u16string_view text) const noexcept { return std::hash<std::u16string_view>{}(text); }
};
template <class T>
using TextMap = std::unordered_map<std::u16string, T, TextHash, std::equal_to<>>;

/// A store that is open in the host: the store itself, the user's rights, what was read of it while its change count stands still, and the items in use.
class OpenStore {
public:
    explicit OpenStore(std::shared_ptr<mailstore::MailStore> store) : store_(std::move(store)), rootId_(store_->rootFolder().entryId) {}

    /// The store; error 0x8004010F once it was taken away.
    mailstore::MailStore& required() const;
    const std::u16string& id() const { return store_->storeId(); }
    bool isOpen() const noexcept { return open_; }
    void close() noexcept { open_ = false; }

    void setRights(std::u16string_view folderId, FolderRights rights) { rights_.insert_or_assign(std::u16string(folderId), rights); }
    /// The folder's own rights, else those of the store's root, else all.
    FolderRights rights(std::u16string_view folderId) const;
    void requireRead(std::u16string_view folderId) const;    ///< error 0x80070005 where the user may not
    void requireCreate(std::u16string_view folderId) const;  ///< likewise
    void requireChange(std::u16string_view folderId) const;  ///< likewise: saving, moving away and deleting

    /// A folder by identity; null where there is none. It stays as it was read, whatever happens to the folder.
    std::shared_ptr<const mailstore::FolderRecord> folder(std::u16string_view folderId);
    /// The heads of a folder, one query for as long as nothing in the store changes.
    std::shared_ptr<const FolderHeads> heads(std::u16string_view folderId);

    /// An item's head by identity; Nothing where there is none. A folder whose items are asked for one after the other is read in one query.
    ListedHead find(std::u16string_view entryId);

    /// The states that objects hold of an identity.
    std::vector<std::shared_ptr<ItemState>> liveStates(std::u16string_view entryId) const;
    void registerState(ItemState& state);
    void forgetState(const ItemState& state) noexcept;

private:
    void dropStale();
    [[noreturn]] void refuse(std::u16string_view folderId, std::u16string_view what) const;

    std::shared_ptr<mailstore::MailStore> store_;
    std::u16string rootId_;
    bool open_ = true;
    std::map<std::u16string, FolderRights, std::less<>> rights_;
    std::uint64_t readAt_ = 0;
    TextMap<std::shared_ptr<const mailstore::FolderRecord>> folders_;
    TextMap<std::shared_ptr<const FolderHeads>> heads_;
    HeadIndex places_;
    std::u16string lastMissFolder_;
    int misses_ = 0;
    std::unordered_multimap<std::size_t, ItemState*> live_;  // by the hash of their identity, which they hold themselves
};

}  // namespace lorvane::model
