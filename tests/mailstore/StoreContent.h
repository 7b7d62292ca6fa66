#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "mailstore/MailStore.h"
#include "mailstore/SqliteStore.h"

namespace lorvane::mailstore::test {

/// An item and where it lies, as "\Personal Folders\Inbox".
struct PlacedItem {
    std::u16string folder;
    ItemRecord record;
    bool operator==(const PlacedItem&) const = default;
};

/// Everything that a store holds for its users.
struct StoreContent {
    std::vector<std::u16string> folders;  ///< paths, each in front of what lies in it
    std::vector<PlacedItem> items;
    std::vector<std::u16string> settings;
    bool operator==(const StoreContent&) const = default;
};

/// Folder by folder, items in the order in which they entered.
std::vector<PlacedItem> itemsOf(const MailStore& store);
StoreContent contentOf(const SqliteFile& file);

/// A line an item: where it lies, subject, recipients, body and attachments. For failing tests and goldens.
std::string lineOf(const PlacedItem& item);
void PrintTo(const StoreContent& content, std::ostream* stream);

}  // namespace lorvane::mailstore::test
