#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mailstore/ItemRecord.h"

namespace lorvane::mailstore {

/// A folder as the store keeps it.
struct FolderRecord {
    std::u16string entryId;   ///< upper-case hexadecimal, never changes, not even by a rename
    std::u16string parentId;  ///< empty for the store's root
    std::u16string name;
    std::int32_t defaultItemType = 0;  ///< 0 mail, 1 appointment, 2 contact, 3 task, 6 post …
    std::u16string defaultMessageClass = u"IPM.Note";
    std::int32_t wellKnown = 0;  ///< the number of `GetDefaultFolder` (6 Inbox …), 0 for others
    bool operator==(const FolderRecord&) const = default;
};

/// That an item stands open for writing in this program; it ends with the object. See `MailStore::noteOpen`.
class OpenNote {
public:
    OpenNote() = default;
    OpenNote(const OpenNote&) = delete;
    OpenNote& operator=(const OpenNote&) = delete;
    virtual ~OpenNote() = default;
};

/// One store of folders and items: the memory and the SQLite implementation pass one contract suite.
///
/// Every function raises host::HostError: `host_failure::NotFound` for an unknown identity, `ObjectChanged` for a save that lost against a later one, `Failed`
/// with a sentence for a store that cannot be read or written. A function that returned has its effect durable (SQLite: on disk).
/// Items of a folder come in the order in which they entered it.
class MailStore {
public:
    virtual ~MailStore() = default;

    virtual const std::u16string& storeId() const = 0;  ///< upper-case hexadecimal, kept across runs
    virtual const std::u16string& name() const = 0;     ///< display name, as "Personal Folders"
    virtual std::int32_t kind() const = 0;              ///< Redemption's `StoreKind`: 2 private file, 5 public folders …

    virtual FolderRecord rootFolder() const = 0;
    virtual std::vector<FolderRecord> childFolders(std::u16string_view folderId) const = 0;
    virtual std::optional<FolderRecord> findFolder(std::u16string_view folderId) const = 0;
    virtual std::optional<FolderRecord> wellKnownFolder(std::int32_t number) const = 0;
    virtual FolderRecord addFolder(std::u16string_view parentId, FolderRecord folder) = 0;  ///< gives the identity; error where the parent has that name
    virtual void renameFolder(std::u16string_view folderId, std::u16string_view name) = 0;
    virtual void removeFolder(std::u16string_view folderId) = 0;  ///< with everything in it

    virtual std::size_t itemCount(std::u16string_view folderId) const = 0;
    /// The heads of all items of a folder in one query; bodies and attachments stay where they are.
    virtual std::vector<ItemHead> itemHeads(std::u16string_view folderId) const = 0;
    virtual std::optional<ItemHead> findItem(std::u16string_view entryId) const = 0;
    virtual std::u16string folderOfItem(std::u16string_view entryId) const = 0;
    virtual ItemRecord loadItem(std::u16string_view entryId) const = 0;

    /// Saves a new item (empty entryId) into the folder, or a known one where it is; gives the head with identity and new version.
    virtual ItemHead saveItem(std::u16string_view folderId, const ItemRecord& item) = 0;
    /// Notes that this program has an item open for writing. What a killed program typed into it for a moment is taken out by a later opening of the store; see
    /// `SqliteOptions::typedMarks`. A store that ends with its program has nothing to note and gives none.
    virtual std::unique_ptr<OpenNote> noteOpen(std::u16string_view /*entryId*/) { return nullptr; }
    /// Saves an item that stands open, as `saveItem` does. The note is made in the same commit where there is none yet.
    virtual ItemHead saveOpenItem(std::u16string_view folderId, const ItemRecord& item, std::unique_ptr<OpenNote>& /*note*/) {
        return saveItem(folderId, item);
    }

    /// Moves an item into a folder of this store; it gets a new identity, which is returned.
    virtual std::u16string moveItem(std::u16string_view entryId, std::u16string_view folderId) = 0;
    virtual void removeItem(std::u16string_view entryId) = 0;

    /// A number that goes up whenever anything in the store changes, by this program or another.
    virtual std::uint64_t changeCount() const = 0;
};

/// Per-user text values under application, section and key. Names compare without regard to case.
class SettingsStore {
public:
    struct Entry {
        std::u16string application, section, key, value;
    };
    virtual ~SettingsStore() = default;
    virtual std::optional<std::u16string> find(std::u16string_view application, std::u16string_view section, std::u16string_view key) const = 0;
    virtual void save(std::u16string_view application, std::u16string_view section, std::u16string_view key, std::u16string_view value) = 0;
    virtual void remove(std::u16string_view application, std::u16string_view section, std::u16string_view key) = 0;
    virtual std::vector<Entry> list() const = 0;  ///< ordered by application, section, key
};

}  // namespace lorvane::mailstore
