#include "mailstore/StoreDefaults.h"

#include "host/TextFunctions.h"

namespace lorvane::mailstore {

namespace {

struct DefaultFolder {
    std::u16string_view name;
    std::int32_t wellKnown;
    std::int32_t itemType;
    std::u16string_view messageClass;
};

constexpr DefaultFolder DefaultFolders[] = {
    {u"Deleted Items", 3, 0, u"IPM.Note"},   {u"Outbox", 4, 0, u"IPM.Note"},       {u"Sent Items", 5, 0, u"IPM.Note"},
    {u"Inbox", 6, 0, u"IPM.Note"},           {u"Drafts", 16, 0, u"IPM.Note"},      {u"Junk E-mail", 23, 0, u"IPM.Note"},
    {u"Calendar", 9, 1, u"IPM.Appointment"}, {u"Contacts", 10, 2, u"IPM.Contact"}, {u"Tasks", 13, 3, u"IPM.Task"},
};

}  // namespace

std::vector<FolderRecord> initialFolders(std::u16string_view storeName, std::int32_t kind) {
    std::vector<FolderRecord> folders(1);
    folders.front().name = storeName;
    if (kind != store_kind::PrivateFile) return folders;
    for (const DefaultFolder& folder : DefaultFolders) {
        FolderRecord& record = folders.emplace_back();
        record.name = folder.name;
        record.wellKnown = folder.wellKnown;
        record.defaultItemType = folder.itemType;
        record.defaultMessageClass = folder.messageClass;
    }
    return folders;
}

std::u16string foldedName(std::u16string_view name) {
    std::u16string folded(name);
    for (char16_t& unit : folded) unit = host::foldUnit(unit);
    return folded;
}

}  // namespace lorvane::mailstore
