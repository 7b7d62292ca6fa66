#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/TextFunctions.h"
#include "store/TemplateFolders.h"
#include "store/TemplateList.h"
#include "support/TestRun.h"

/// What the tests of folders and tables share.
namespace lorvane::support {

inline constexpr std::u16string_view defaultPath = u"\\Personal Folders\\Meravix Settings\\Lorvane";

inline void rename(const host::MAPIFolder& folder, std::u16string_view name) {
    folder.put(host::Member::Name, host::Variant(name));
}

/// Puts the private keys on a folder, as choosing it would.
inline void usePrivately(const TestRun& run, const host::MAPIFolder& folder) {
    run.setSetting(u"LastFolderStoreid", folder.StoreID());
    run.setSetting(u"LastFolderEntryid", folder.EntryID());
    run.setSetting(u"LastFolderName", store::GetFolderPath(folder));
}

inline void useShared(const TestRun& run, const host::MAPIFolder& folder) {
    run.setSetting(u"SharedTemplates", u"True");
    run.setSetting(u"SharedFolderStoreid", folder.StoreID());
    run.setSetting(u"SharedFolderEntryid", folder.EntryID());
    run.setSetting(u"SharedTemplFldrPath", store::GetFolderPath(folder));
}

/// The top folder of the first store.
inline host::MAPIFolder topFolder(const TestRun& run) {
    return host::MAPIFolder(run.folder(host::default_folder::Inbox).Parent());
}

inline std::vector<std::u16string> subjectsIn(const host::MAPIFolder& folder) {
    std::vector<std::u16string> subjects;
    const host::Items items = folder.Items();
    for (std::int32_t index = 1; index <= items.Count(); ++index) subjects.push_back(items.Item(index).Subject());
    return subjects;
}

/// A post in a folder.
inline host::MailItem addPost(const TestRun& run, const host::MAPIFolder& folder, std::u16string_view subject, std::u16string_view categories = u"",
                              std::u16string_view messageClass = u"IPM.Post", std::int32_t itemClass = host::item_class::Post) {
    mailstore::ItemRecord record;
    record.head.itemClass = itemClass;
    record.head.messageClass = messageClass;
    record.head.subject = subject;
    record.head.categories = categories;
    record.bodyKind = mailstore::BodyKind::Plain;
    record.body = u"Text";
    return host::MailItem(run.driver().import(std::move(record), folder));
}

using Names = std::vector<std::u16string>;

/// A table of category names with these rows.
inline host::Recordset categoryTable(std::initializer_list<std::u16string_view> names) {
    const host::Recordset table = store::newCategoryTable();
    for (const std::u16string_view name : names) {
        table.AddNew();
        table.Fields(u"strCategory").Value(name);
        table.Update();
    }
    return table;
}

/// The category names of a table, in the order of its rows.
inline Names categoriesIn(const host::Recordset& table) {
    Names names;
    if (table.RecordCount() == 0) return names;
    for (table.MoveFirst(); !table.EndOfFile(); table.MoveNext()) names.push_back(table.Fields(u"strCategory").text());
    return names;
}

}  // namespace lorvane::support
