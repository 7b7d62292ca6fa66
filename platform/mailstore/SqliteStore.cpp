#include "mailstore/SqliteStore.h"

#include <algorithm>

#include "mailstore/SqliteDatabase.h"
#include "mailstore/SqliteItems.h"
#include "mailstore/SqliteOpenItems.h"
#include "mailstore/SqliteSchema.h"
#include "mailstore/SqliteSettings.h"
#include "mailstore/StoreErrors.h"

namespace lorvane::mailstore {

namespace {

struct StoreRow {
    StoreId id{};
    std::u16string name;
    std::int32_t kind = 0;
};

StoreRow readStoreRow(SqliteDatabase& database) {
    Statement row(database, "SELECT store_id, name, kind FROM store");
    if (!row.step()) database.raiseDamaged(u"its name is missing.");
    StoreRow store;
    const std::span<const std::uint8_t> id = row.bytes(0);
    if (id.size() != store.id.size()) database.raiseDamaged(u"its identity cannot be read.");
    std::ranges::copy(id, store.id.begin());
    store.name = row.text(1);
    store.kind = row.number32(2);
    return store;
}

class SqliteMailStore final : public MailStore {
public:
    SqliteMailStore(std::shared_ptr<SqliteDatabase> database, Marks marks) : SqliteMailStore(database, std::move(marks), readStoreRow(*database)) {}

    const std::u16string& storeId() const override { return storeId_; }
    const std::u16string& name() const override { return name_; }
    std::int32_t kind() const override { return kind_; }

    FolderRecord rootFolder() const override {
        Statement row(*database_, "SELECT entry, parent, name, item_type, message_class, well_known FROM folders WHERE parent IS NULL");
        if (!row.step()) database_->raiseDamaged(u"its top folder is missing.");
        return folderAt(row);
    }

    std::vector<FolderRecord> childFolders(std::u16string_view folderId) const override {
        const Transaction oneState(*database_, Transaction::Kind::Read);
        const std::int64_t folder = requireFolder(folderId);
        std::vector<FolderRecord> children;
        Statement row(*database_, "SELECT entry, parent, name, item_type, message_class, well_known FROM folders WHERE parent = ? ORDER BY entry");
        row.bind(folder);
        while (row.step()) children.push_back(folderAt(row));
        return children;
    }

    std::optional<FolderRecord> findFolder(std::u16string_view folderId) const override {
        const auto number = ids_.parse(folderId);
        if (!number) return std::nullopt;
        Statement row(*database_, "SELECT entry, parent, name, item_type, message_class, well_known FROM folders WHERE entry = ?");
        return row.bind(*number).step() ? std::optional(folderAt(row)) : std::nullopt;
    }

    std::optional<FolderRecord> wellKnownFolder(std::int32_t number) const override {
        Statement row(*database_,
                      "SELECT entry, parent, name, item_type, message_class, well_known FROM folders WHERE well_known = ? AND well_known <> 0 ORDER BY entry");
        return row.bind(number).step() ? std::optional(folderAt(row)) : std::nullopt;
    }

    FolderRecord addFolder(std::u16string_view parentId, FolderRecord folder) override {
        Transaction transaction(*database_, Transaction::Kind::Write);
        const std::int64_t parent = requireFolder(parentId);
        requireFreeName(parent, folder.name, 0);
        const std::int64_t number = nextEntry();
        const std::u16string folded = foldedName(folder.name);
        Statement(*database_, "INSERT INTO folders (entry, parent, name, folded_name, item_type, message_class, well_known) VALUES (?, ?, ?, ?, ?, ?, ?)")
            .bind(number)
            .bind(parent)
            .bind(folder.name)
            .bind(folded)
            .bind(folder.defaultItemType)
            .bind(folder.defaultMessageClass)
            .bind(folder.wellKnown)
            .run();
        transaction.commit();
        folder.entryId = ids_.format(number);
        folder.parentId = ids_.format(parent);
        return folder;
    }

    void renameFolder(std::u16string_view folderId, std::u16string_view name) override {
        Transaction transaction(*database_, Transaction::Kind::Write);
        const std::int64_t folder = requireFolder(folderId);
        const std::int64_t parent = parentOf(folder);
        if (parent != 0) requireFreeName(parent, name, folder);
        const std::u16string folded = foldedName(name);
        Statement(*database_, "UPDATE folders SET name = ?, folded_name = ? WHERE entry = ?").bind(name).bind(folded).bind(folder).run();
        transaction.commit();
    }

    void removeFolder(std::u16string_view folderId) override {
        Transaction transaction(*database_, Transaction::Kind::Write);
        const std::int64_t folder = requireFolder(folderId);
        if (parentOf(folder) == 0) throw rootCannotBeRemoved();
        Statement(*database_, "DELETE FROM folders WHERE entry = ?").bind(folder).run();
        transaction.commit();
    }

    std::size_t itemCount(std::u16string_view folderId) const override {
        const Transaction oneState(*database_, Transaction::Kind::Read);
        const std::int64_t folder = requireFolder(folderId);
        Statement row(*database_, "SELECT count(*) FROM items WHERE folder = ?");
        row.bind(folder).step();
        return static_cast<std::size_t>(row.number(0));
    }

    std::vector<ItemHead> itemHeads(std::u16string_view folderId) const override {
        const Transaction oneState(*database_, Transaction::Kind::Read);
        const std::int64_t folder = requireFolder(folderId);
        std::vector<ItemHead> heads;
        Statement row(*database_, "SELECT entry, version, item_class, message_class, subject, categories, item FROM items WHERE folder = ? ORDER BY entry");
        row.bind(folder);
        while (row.step()) heads.push_back(headAt(row));
        return heads;
    }

    std::optional<ItemHead> findItem(std::u16string_view entryId) const override {
        const auto number = ids_.parse(entryId);
        if (!number) return std::nullopt;
        Statement row(*database_, "SELECT entry, version, item_class, message_class, subject, categories, item FROM items WHERE entry = ?");
        return row.bind(*number).step() ? std::optional(headAt(row)) : std::nullopt;
    }

    std::u16string folderOfItem(std::u16string_view entryId) const override {
        Statement row(*database_, "SELECT folder FROM items WHERE entry = ?");
        if (!row.bind(numberOfItem(entryId)).step()) throw itemNotFound();
        return ids_.format(row.number(0));
    }

    ItemRecord loadItem(std::u16string_view entryId) const override {
        const Transaction oneState(*database_, Transaction::Kind::Read);
        ItemRecord record;
        std::int64_t item = 0;
        {
            Statement row(*database_, "SELECT entry, version, item_class, message_class, subject, categories, item FROM items WHERE entry = ?");
            if (!row.bind(numberOfItem(entryId)).step()) throw itemNotFound();
            record.head = headAt(row);
            item = row.number(InnerNumberColumn);
        }
        loadParts(*database_, item, record);
        return record;
    }

    ItemHead saveItem(std::u16string_view folderId, const ItemRecord& record) override {
        Transaction transaction(*database_, Transaction::Kind::Write);
        const Written written = write(folderId, record);
        transaction.commit();
        return written.head;
    }

    std::unique_ptr<OpenNote> noteOpen(std::u16string_view entryId) override {
        Transaction transaction(*database_, Transaction::Kind::Write);
        std::int64_t item = 0;
        {
            Statement row(*database_, "SELECT item FROM items WHERE entry = ?");
            if (!row.bind(numberOfItem(entryId)).step()) throw itemNotFound();
            item = row.number(0);
        }
        const std::int64_t row = addOpenItem(*database_, item);
        transaction.commitUncounted();
        return makeOpenNote(database_, row, item, marks_);
    }

    ItemHead saveOpenItem(std::u16string_view folderId, const ItemRecord& record, std::unique_ptr<OpenNote>& note) override {
        if (note) return saveItem(folderId, record);
        Transaction transaction(*database_, Transaction::Kind::Write);
        const Written written = write(folderId, record);
        const std::int64_t row = addOpenItem(*database_, written.item);
        transaction.commit();
        note = makeOpenNote(database_, row, written.item, marks_);
        return written.head;
    }

    std::u16string moveItem(std::u16string_view entryId, std::u16string_view folderId) override {
        Transaction transaction(*database_, Transaction::Kind::Write);
        const std::int64_t number = numberOfItem(entryId);
        if (!exists("SELECT 1 FROM items WHERE entry = ?", number)) throw itemNotFound();
        const std::int64_t folder = requireFolder(folderId);
        const std::int64_t moved = nextEntry();
        Statement(*database_, "UPDATE items SET entry = ?, folder = ? WHERE entry = ?").bind(moved).bind(folder).bind(number).run();
        transaction.commit();
        return ids_.format(moved);
    }

    void removeItem(std::u16string_view entryId) override {
        Transaction transaction(*database_, Transaction::Kind::Write);
        const std::int64_t number = numberOfItem(entryId);
        if (!exists("SELECT 1 FROM items WHERE entry = ?", number)) throw itemNotFound();
        Statement(*database_, "DELETE FROM items WHERE entry = ?").bind(number).run();
        transaction.commit();
    }

    std::uint64_t changeCount() const override { return database_->changeCount(); }

private:
    SqliteMailStore(std::shared_ptr<SqliteDatabase> database, Marks marks, StoreRow row)
        : database_(std::move(database)),
          marks_(std::move(marks)),
          storeId_(toHexadecimal(row.id)),
          name_(std::move(row.name)),
          kind_(row.kind),
          ids_(row.id) {}

    FolderRecord folderAt(const Statement& row) const {
        FolderRecord folder;
        folder.entryId = ids_.format(row.number(0));
        if (!row.isNull(1)) folder.parentId = ids_.format(row.number(1));
        folder.name = row.text(2);
        folder.defaultItemType = row.number32(3);
        folder.defaultMessageClass = row.text(4);
        folder.wellKnown = row.number32(5);
        return folder;
    }

    static constexpr int InnerNumberColumn = 6;
    ItemHead headAt(const Statement& row) const {
        ItemHead head;
        head.entryId = ids_.format(row.number(0));
        head.version = static_cast<std::uint64_t>(row.number(1));
        head.itemClass = row.number32(2);
        head.messageClass = row.text(3);
        head.subject = row.text(4);
        head.categories = row.text(5);
        return head;
    }

    bool exists(std::string_view sql, std::int64_t number) const { return Statement(*database_, sql).bind(number).step(); }

    std::int64_t requireFolder(std::u16string_view folderId) const {
        const auto number = ids_.parse(folderId);
        if (!number || !exists("SELECT 1 FROM folders WHERE entry = ?", *number)) throw folderNotFound();
        return *number;
    }

    std::int64_t numberOfItem(std::u16string_view entryId) const {
        const auto number = ids_.parse(entryId);
        if (!number) throw itemNotFound();
        return *number;
    }

    /// The folder that this one lies in; 0 for the root.
    std::int64_t parentOf(std::int64_t folder) const {
        Statement row(*database_, "SELECT parent FROM folders WHERE entry = ?");
        row.bind(folder).step();
        return row.number(0);
    }

    void requireFreeName(std::int64_t parent, std::u16string_view name, std::int64_t except) const {
        const std::u16string folded = foldedName(name);
        Statement row(*database_, "SELECT 1 FROM folders WHERE parent = ? AND folded_name = ? AND entry <> ?");
        if (row.bind(parent).bind(folded).bind(except).step()) throw folderNameTaken(name);
    }

    std::int64_t nextEntry() {
        Statement row(*database_, "UPDATE store SET next_entry = next_entry + 1 RETURNING next_entry - 1");
        row.step();
        return row.number(0);
    }

    struct Written {
        ItemHead head;
        std::int64_t item;  ///< its inner number
    };
    Written write(std::u16string_view folderId, const ItemRecord& record) {
        Written written{record.head, 0};
        written.item = written.head.entryId.empty() ? insertHead(folderId, written.head) : updateHead(written.head);
        saveParts(*database_, written.item, record);
        return written;
    }

    std::int64_t insertHead(std::u16string_view folderId, ItemHead& head) {
        const std::int64_t folder = requireFolder(folderId);
        const std::int64_t number = nextEntry();
        head.entryId = ids_.format(number);
        head.version = 1;
        Statement row(*database_,
                      "INSERT INTO items (entry, folder, version, item_class, message_class, subject, categories) VALUES (?, ?, 1, ?, ?, ?, ?) RETURNING item");
        row.bind(number).bind(folder).bind(head.itemClass).bind(head.messageClass).bind(head.subject).bind(head.categories).step();
        return row.number(0);
    }

    std::int64_t updateHead(ItemHead& head) {
        std::int64_t item = 0;
        {
            Statement row(*database_, "SELECT item, version, entry FROM items WHERE entry = ?");
            if (!row.bind(numberOfItem(head.entryId)).step()) throw itemNotFound();
            item = row.number(0);
            if (static_cast<std::uint64_t>(row.number(1)) != head.version) throw itemChangedMeanwhile();
            head.entryId = ids_.format(row.number(2));
        }
        ++head.version;
        Statement(*database_, "UPDATE items SET version = ?, item_class = ?, message_class = ?, subject = ?, categories = ? WHERE item = ?")
            .bind(static_cast<std::int64_t>(head.version))
            .bind(head.itemClass)
            .bind(head.messageClass)
            .bind(head.subject)
            .bind(head.categories)
            .bind(item)
            .run();
        return item;
    }

    std::shared_ptr<SqliteDatabase> database_;
    Marks marks_;
    std::u16string storeId_;
    std::u16string name_;
    std::int32_t kind_;
    EntryIds ids_;
};

}  // namespace

std::unique_ptr<MailStore> makeSqliteMailStore(std::shared_ptr<SqliteDatabase> database) {
    return std::make_unique<SqliteMailStore>(std::move(database), std::make_shared<const std::vector<std::u16string>>());
}

SqliteFile::SqliteFile(const std::filesystem::path& file, const SqliteOptions& options)
    : database_(openStoreFile(file, options)),
      marks_(std::make_shared<const std::vector<std::u16string>>(options.typedMarks)),
      mending_(mendAbandonedItems(*database_, *marks_)) {}

std::unique_ptr<MailStore> SqliteFile::mailStore() const {
    return std::make_unique<SqliteMailStore>(database_, marks_);
}

std::unique_ptr<SettingsStore> SqliteFile::settings() const {
    return makeSqliteSettings(database_);
}

}  // namespace lorvane::mailstore
