#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "Run.h"
#include "host/HostError.h"
#include "mailstore/SqliteStore.h"
#include "support/Subjects.h"

/// Stores in a file with many templates.
namespace lorvane::bench {

inline std::u16string childNamed(const mailstore::MailStore& store, std::u16string_view parent, std::u16string_view name) {
    for (const mailstore::FolderRecord& folder : store.childFolders(parent)) {
        if (folder.name == name) return folder.entryId;
    }
    throw host::HostError(host::host_failure::NotFound);
}

inline cli::RunOptions runOptions(const std::filesystem::path& folder) {
    cli::RunOptions options;
    options.store = folder;
    options.locale = "en-US";
    options.now = "2028-01-10T09:00";
    return options;
}

inline constexpr std::u16string_view markedSubject = u"The template that is inserted";

/// Makes a store in the folder with the private folder of templates, which holds `count` of them; the last one has the subject above.
inline void makeStore(const std::filesystem::path& folder, std::size_t count) {
    std::filesystem::remove_all(folder);
    { const cli::Run first(runOptions(folder)); }
    const auto store = mailstore::SqliteFile(folder / "store.sqlite").mailStore();
    const std::u16string top = store->wellKnownFolder(6)->parentId;
    const std::u16string templates = childNamed(*store, childNamed(*store, top, u"Meravix Settings"), u"Lorvane");
    const std::size_t there = store->itemCount(templates);
    mailstore::ItemRecord record;
    record.bodyKind = mailstore::BodyKind::Html;
    record.body = u"<html><body><p>Dear [FirstName],</p><p>thank you for your order of [Date].</p></body></html>";
    for (const TemplateRow& row : templateRows(count - std::min(count, there))) {
        record.head = {};
        record.head.subject = row.subject;
        record.head.categories = row.categories;
        store->saveItem(templates, record);
    }
    record.head = {};
    record.head.subject = markedSubject;
    store->saveItem(templates, record);
}

}  // namespace lorvane::bench
