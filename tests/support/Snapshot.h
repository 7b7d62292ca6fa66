#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "mailstore/StoreContent.h"
#include "support/TestRun.h"

/// What outlives a run, and what a broken-off command may have done to it.
namespace lorvane::support {

using mailstore::test::PlacedItem;

/// What stores hold, settings, and the files of a folder.
struct Snapshot {
    std::vector<std::u16string> folders;                ///< paths
    std::vector<PlacedItem> items;                      ///< as they are saved
    std::map<std::u16string, std::u16string> settings;  ///< by key
    std::map<std::string, std::string> files;           ///< contents by path in the folder; a folder has none
};

/// The stores that a run uses, for looking at them from outside.
struct SeenStores {
    std::vector<std::shared_ptr<mailstore::MailStore>> mail;
    std::shared_ptr<mailstore::SettingsStore> settings;
};

Snapshot snapshotOf(const SeenStores& stores, const std::filesystem::path& folder);
/// The folder that lies around all places of a run: its documents, its application data and its temporary files.
std::filesystem::path folderOf(const TestRun& run);
/// Takes the files that attachments went through out of the snapshot of a run's folder; tells whether there were any.
bool forgetTemporaryFiles(Snapshot& snapshot);

/// The path of a templates folder from a walk upwards that ended at a parent that could not be read, which is not reported.
bool isCutPath(std::u16string_view key, std::u16string_view value);

/// What a command may leave on its way that is neither as it was nor as the command leaves it.
struct Leftovers {
    /// True where an item may be left so. None may unless told.
    std::function<bool(const PlacedItem& before, const PlacedItem& now)> mayLeaveChanged = [](const PlacedItem&, const PlacedItem&) { return false; };
    std::function<bool(const PlacedItem&)> mayLeaveNew = [](const PlacedItem&) { return false; };  ///< likewise for an item that was not there
    std::function<bool(std::u16string_view key, std::u16string_view value)> maySet = isCutPath;    ///< likewise for a setting
    std::set<std::string> files = {};                                                              ///< paths that may hold something else, be there or not
};

/// Each folder, item, setting and file is left as it was before the command, as in `whole`, which is what the command leaves when nothing fails, or as the
/// leftovers tell. No item is lost, none is there twice. Identities are compared where an item stayed, else contents.
void expectNothingElse(const Leftovers& leftovers, const Snapshot& before, const Snapshot& left, const Snapshot& whole);

/// The same item, at the same place, with the same content.
bool sameItems(const Snapshot& one, const Snapshot& other);

}  // namespace lorvane::support
