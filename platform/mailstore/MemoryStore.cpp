#include "mailstore/MemoryStore.h"

#include <atomic>
#include <map>
#include <tuple>

#include "mailstore/StoreDefaults.h"
#include "mailstore/StoreErrors.h"

namespace lorvane::mailstore {

namespace {

StoreId nextStoreId() {
    static std::atomic<std::uint32_t> made{0};
    const std::uint32_t number = ++made;
    StoreId id{0x4D, 0x45, 0x4D, 0x53};
    for (std::size_t i = 0; i < 4; ++i) id[7 - i] = static_cast<std::uint8_t>(number >> (8 * i));
    return id;
}

class MemoryStore final : public MailStore {
public:
    MemoryStore(std::u16string name, std::int32_t kind, const StoreId& id) : storeId_(toHexadecimal(id)), name_(std::move(name)), kind_(kind), ids_(id) {
        for (FolderRecord& folder : initialFolders(name_, kind_)) insertFolder(root_, std::move(folder));
    }

    const std::u16string& storeId() const override { return storeId_; }
    const std::u16string& name() const override { return name_; }
    std::int32_t kind() const override { return kind_; }

    FolderRecord rootFolder() const override { return folders_.at(root_).record; }

    std::vector<FolderRecord> childFolders(std::u16string_view folderId) const override {
        const std::u16string& id = folderAt(folderId).record.entryId;
        std::vector<FolderRecord> children;
        for (const auto& [number, folder] : folders_) {
            if (folder.record.parentId == id) children.push_back(folder.record);
        }
        return children;
    }

    std::optional<FolderRecord> findFolder(std::u16string_view folderId) const override {
        const auto number = ids_.parse(folderId);
        const auto found = number ? folders_.find(*number) : folders_.end();
        return found == folders_.end() ? std::nullopt : std::optional(found->second.record);
    }

    std::optional<FolderRecord> wellKnownFolder(std::int32_t number) const override {
        for (const auto& [key, folder] : folders_) {
            if (number != 0 && folder.record.wellKnown == number) return folder.record;
        }
        return std::nullopt;
    }

    FolderRecord addFolder(std::u16string_view parentId, FolderRecord folder) override {
        const std::int64_t parent = numberOfFolder(parentId);
        requireFreeName(parent, folder.name, 0);
        const std::int64_t number = insertFolder(parent, std::move(folder));
        ++changes_;
        return folders_.at(number).record;
    }

    void renameFolder(std::u16string_view folderId, std::u16string_view name) override {
        const std::int64_t number = numberOfFolder(folderId);
        FolderRecord& record = folders_.at(number).record;
        if (number != root_) requireFreeName(numberOfFolder(record.parentId), name, number);
        record.name = name;
        ++changes_;
    }

    void removeFolder(std::u16string_view folderId) override {
        const std::int64_t number = numberOfFolder(folderId);
        if (number == root_) throw rootCannotBeRemoved();
        eraseFolder(number);
        ++changes_;
    }

    std::size_t itemCount(std::u16string_view folderId) const override { return folderAt(folderId).items.size(); }

    std::vector<ItemHead> itemHeads(std::u16string_view folderId) const override {
        std::vector<ItemHead> heads;
        for (const auto& [number, item] : folderAt(folderId).items) heads.push_back(item.head);
        return heads;
    }

    std::optional<ItemHead> findItem(std::u16string_view entryId) const override {
        const auto number = ids_.parse(entryId);
        const auto found = number ? folderOf_.find(*number) : folderOf_.end();
        return found == folderOf_.end() ? std::nullopt : std::optional(folders_.at(found->second).items.at(*number).head);
    }

    std::u16string folderOfItem(std::u16string_view entryId) const override { return ids_.format(folderOf_.at(numberOfItem(entryId))); }

    ItemRecord loadItem(std::u16string_view entryId) const override {
        const std::int64_t number = numberOfItem(entryId);
        return folders_.at(folderOf_.at(number)).items.at(number);
    }

    ItemHead saveItem(std::u16string_view folderId, const ItemRecord& item) override {
        const bool isNew = item.head.entryId.empty();
        const std::int64_t folder = isNew ? numberOfFolder(folderId) : folderOf_.at(numberOfItem(item.head.entryId));
        const std::int64_t number = isNew ? next_++ : numberOfItem(item.head.entryId);
        ItemRecord& stored = folders_.at(folder).items[number];
        if (!isNew && stored.head.version != item.head.version) throw itemChangedMeanwhile();
        const std::uint64_t version = stored.head.version + 1;
        stored = item;
        stored.head.entryId = ids_.format(number);
        stored.head.version = version;
        folderOf_[number] = folder;
        ++changes_;
        return stored.head;
    }

    std::u16string moveItem(std::u16string_view entryId, std::u16string_view folderId) override {
        const std::int64_t number = numberOfItem(entryId);
        const std::int64_t target = numberOfFolder(folderId);
        auto node = folders_.at(folderOf_.at(number)).items.extract(number);
        folderOf_.erase(number);
        node.key() = next_++;
        node.mapped().head.entryId = ids_.format(node.key());
        folderOf_[node.key()] = target;
        ++changes_;
        return folders_.at(target).items.insert(std::move(node)).position->second.head.entryId;
    }

    void removeItem(std::u16string_view entryId) override {
        const std::int64_t number = numberOfItem(entryId);
        folders_.at(folderOf_.at(number)).items.erase(number);
        folderOf_.erase(number);
        ++changes_;
    }

    std::uint64_t changeCount() const override { return changes_; }

private:
    // Entries are numbered in the order in which they came, so both maps are in that order.
    struct Folder {
        FolderRecord record;
        std::map<std::int64_t, ItemRecord> items;
    };

    std::int64_t numberOfFolder(std::u16string_view folderId) const {
        const auto number = ids_.parse(folderId);
        if (!number || !folders_.contains(*number)) throw folderNotFound();
        return *number;
    }
    const Folder& folderAt(std::u16string_view folderId) const { return folders_.at(numberOfFolder(folderId)); }
    std::int64_t numberOfItem(std::u16string_view entryId) const {
        const auto number = ids_.parse(entryId);
        if (!number || !folderOf_.contains(*number)) throw itemNotFound();
        return *number;
    }

    void requireFreeName(std::int64_t parent, std::u16string_view name, std::int64_t except) const {
        const std::u16string parentId = ids_.format(parent);
        const std::u16string folded = foldedName(name);
        for (const auto& [number, folder] : folders_) {
            if (number != except && folder.record.parentId == parentId && foldedName(folder.record.name) == folded) throw folderNameTaken(name);
        }
    }

    std::int64_t insertFolder(std::int64_t parent, FolderRecord record) {
        const std::int64_t number = next_++;
        record.entryId = ids_.format(number);
        record.parentId = number == root_ ? std::u16string() : ids_.format(parent);
        folders_.emplace(number, Folder{std::move(record), {}});
        return number;
    }

    void eraseFolder(std::int64_t number) {
        const std::u16string id = ids_.format(number);
        std::vector<std::int64_t> children;
        for (const auto& [child, folder] : folders_) {
            if (folder.record.parentId == id) children.push_back(child);
        }
        for (const std::int64_t child : children) eraseFolder(child);
        for (const auto& [item, record] : folders_.at(number).items) folderOf_.erase(item);
        folders_.erase(number);
    }

    std::u16string storeId_;
    std::u16string name_;
    std::int32_t kind_;
    EntryIds ids_;
    std::int64_t root_ = 1;
    std::int64_t next_ = 1;
    std::uint64_t changes_ = 0;
    std::map<std::int64_t, Folder> folders_;
    std::map<std::int64_t, std::int64_t> folderOf_;
};

class MemorySettings final : public SettingsStore {
public:
    std::optional<std::u16string> find(std::u16string_view application, std::u16string_view section, std::u16string_view key) const override {
        const auto found = entries_.find(keyOf(application, section, key));
        return found == entries_.end() ? std::nullopt : std::optional(found->second.value);
    }

    void save(std::u16string_view application, std::u16string_view section, std::u16string_view key, std::u16string_view value) override {
        const auto [entry, isNew] = entries_.try_emplace(keyOf(application, section, key));
        if (isNew) entry->second = {std::u16string(application), std::u16string(section), std::u16string(key), {}};
        entry->second.value = value;
    }

    void remove(std::u16string_view application, std::u16string_view section, std::u16string_view key) override {
        entries_.erase(keyOf(application, section, key));
    }

    std::vector<Entry> list() const override {
        std::vector<Entry> entries;
        for (const auto& [key, entry] : entries_) entries.push_back(entry);
        return entries;
    }

private:
    using Key = std::tuple<std::u16string, std::u16string, std::u16string>;
    static Key keyOf(std::u16string_view application, std::u16string_view section, std::u16string_view key) {
        return {foldedName(application), foldedName(section), foldedName(key)};
    }
    std::map<Key, Entry> entries_;
};

}  // namespace

std::unique_ptr<MailStore> makeMemoryStore(std::u16string name, std::int32_t kind, std::optional<StoreId> id) {
    return std::make_unique<MemoryStore>(std::move(name), kind, id ? *id : nextStoreId());
}

std::unique_ptr<SettingsStore> makeMemorySettings() {
    return std::make_unique<MemorySettings>();
}

}  // namespace lorvane::mailstore
