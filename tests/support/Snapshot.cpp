#include "support/Snapshot.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "host/TextFunctions.h"
#include "mailstore/TempFolder.h"

namespace lorvane::support {

namespace {

using mailstore::test::lineOf;

void addFolders(const mailstore::MailStore& store, const mailstore::FolderRecord& folder, const std::u16string& parent, std::vector<std::u16string>& paths) {
    const std::u16string path = parent + u"\\" + folder.name;
    paths.push_back(path);
    for (const mailstore::FolderRecord& child : store.childFolders(folder.entryId)) addFolders(store, child, path, paths);
}

std::u16string identityOf(const PlacedItem& item) {
    return item.record.head.entryId;
}

PlacedItem withoutIdentity(PlacedItem item) {
    item.record.head.entryId.clear();
    item.record.head.version = 0;
    return item;
}

/// The same at the same place, whatever their identities and versions.
bool sameContent(const PlacedItem& one, const PlacedItem& other) {
    return one.record.head.subject == other.record.head.subject && withoutIdentity(one) == withoutIdentity(other);
}

bool holdsContent(const std::vector<PlacedItem>& items, const PlacedItem& sought) {
    return std::ranges::any_of(items, [&](const PlacedItem& item) { return sameContent(item, sought); });
}

const PlacedItem* find(const std::vector<PlacedItem>& items, const std::u16string& identity) {
    const auto found = std::ranges::find(items, identity, identityOf);
    return found == items.end() ? nullptr : &*found;
}

/// How often a text is there, wherever.
std::ptrdiff_t countOfText(const std::vector<PlacedItem>& items, const PlacedItem& sought) {
    return std::ranges::count_if(
        items, [&](const PlacedItem& item) { return item.record.head.subject == sought.record.head.subject && item.record.body == sought.record.body; });
}

template <class Key>
bool holdsSame(const std::map<Key, Key>& values, const Key& key, const Key& value) {
    const auto found = values.find(key);
    return found != values.end() && found->second == value;
}

/// One turn: what was before, what is left, and what the command leaves when nothing fails.
struct Comparison {
    const Leftovers& leftovers;
    const Snapshot &before, &left, &whole;

    void expectItems() const {
        for (const PlacedItem& item : before.items) {
            const PlacedItem* const now = find(left.items, identityOf(item));
            if (!now) {
                expectMoved(item);
            } else if (!sameContent(item, *now) && !holdsContent(whole.items, *now)) {
                EXPECT_TRUE(leftovers.mayLeaveChanged(item, *now)) << "left changed\n    " << lineOf(item) << "\n    " << lineOf(*now);
            }
        }
        for (const PlacedItem& item : left.items)
            if (!find(before.items, identityOf(item))) expectNew(item);
    }

    void expectMoved(const PlacedItem& item) const {
        EXPECT_FALSE(holdsContent(whole.items, item)) << "gone from where the command leaves it\n    " << lineOf(item);
        EXPECT_GE(countOfText(left.items, item), countOfText(before.items, item)) << "lost\n    " << lineOf(item);
    }

    void expectNew(const PlacedItem& item) const {
        EXPECT_TRUE(holdsContent(whole.items, item) || leftovers.mayLeaveNew(item)) << "left new\n    " << lineOf(item);
        const auto most = std::max({countOfText(before.items, item), countOfText(whole.items, item), std::ptrdiff_t{1}});
        EXPECT_LE(countOfText(left.items, item), most) << "there twice\n    " << lineOf(item);
    }

    void expectFolders() const {
        for (const std::u16string& path : before.folders) EXPECT_EQ(std::ranges::count(left.folders, path), 1) << "lost " << host::toUtf8(path);
        for (const std::u16string& path : left.folders) EXPECT_EQ(std::ranges::count(whole.folders, path), 1) << "new " << host::toUtf8(path);
    }

    void expectSettings() const {
        for (const auto& [key, value] : left.settings)
            EXPECT_TRUE(leftovers.maySet(key, value) || holdsSame(before.settings, key, value) || holdsSame(whole.settings, key, value))
                << host::toUtf8(key) << " is " << host::toUtf8(value);
        for (const auto& [key, value] : before.settings) EXPECT_TRUE(left.settings.contains(key)) << host::toUtf8(key) << " is gone";
    }

    void expectFiles() const {
        for (const auto& [path, content] : left.files)
            EXPECT_TRUE(leftovers.files.contains(path) || holdsSame(before.files, path, content) || holdsSame(whole.files, path, content))
                << path << " holds " << content;
        for (const auto& [path, content] : before.files) EXPECT_TRUE(leftovers.files.contains(path) || left.files.contains(path)) << path << " is gone";
    }
};

}  // namespace

Snapshot snapshotOf(const SeenStores& stores, const std::filesystem::path& folder) {
    Snapshot snapshot;
    for (const auto& store : stores.mail) {
        addFolders(*store, store->rootFolder(), u"", snapshot.folders);
        for (PlacedItem& item : mailstore::test::itemsOf(*store)) snapshot.items.push_back(std::move(item));
    }
    for (const mailstore::SettingsStore::Entry& entry : stores.settings->list()) snapshot.settings[entry.key] = entry.value;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string path = entry.path().lexically_relative(folder).string();
        if (path.find(".sqlite") != std::string::npos) continue;  // a store, which was read as one
        const host::Bytes content = entry.is_directory() ? host::Bytes() : mailstore::test::readBytes(entry.path());
        snapshot.files[path] = std::string(content.begin(), content.end());
    }
    return snapshot;
}

std::filesystem::path folderOf(const TestRun& run) {
    const std::u16string path = host::Files(run.services().files).GetTempPath();
    return host::toUtf8(host::Replace(path, u"\\", u"/"));
}

bool forgetTemporaryFiles(Snapshot& snapshot) {
    return std::erase_if(snapshot.files, [](const auto& file) { return file.first.starts_with("Tolvenar/Lorvane/"); }) > 0;
}

bool isCutPath(std::u16string_view key, std::u16string_view value) {
    constexpr std::u16string_view ownPath = u"\\Personal Folders\\Meravix Settings\\Lorvane", teamPath = u"\\Team\\Shared Templates";
    const std::u16string_view path = key == u"LastFolderName" ? ownPath : key == u"SharedTemplFldrPath" ? teamPath : std::u16string_view();
    return value.starts_with(u'\\') && path.ends_with(value);
}

void expectNothingElse(const Leftovers& leftovers, const Snapshot& before, const Snapshot& left, const Snapshot& whole) {
    const Comparison comparison{leftovers, before, left, whole};
    comparison.expectItems();
    comparison.expectFolders();
    comparison.expectSettings();
    comparison.expectFiles();
}

bool sameItems(const Snapshot& one, const Snapshot& other) {
    return std::ranges::equal(one.items, other.items, [](const PlacedItem& left, const PlacedItem& right) {
        return identityOf(left) == identityOf(right) && sameContent(left, right);
    });
}

}  // namespace lorvane::support
