#include "mailstore/StoreContent.h"

#include <functional>
#include <ostream>

#include "host/TextFunctions.h"

namespace lorvane::mailstore::test {

namespace {

using Visit = std::function<void(const FolderRecord&, const std::u16string& path)>;

void forEachFolder(const MailStore& store, const FolderRecord& folder, const std::u16string& parent, const Visit& visit) {
    const std::u16string path = parent + u"\\" + folder.name;
    visit(folder, path);
    for (const FolderRecord& child : store.childFolders(folder.entryId)) forEachFolder(store, child, path, visit);
}

std::u16string recipientText(const RecipientRecord& recipient) {
    constexpr std::u16string_view types[] = {u"from", u"to", u"cc", u"bcc"};
    std::u16string text(types[recipient.type & 3]);
    text += u" " + recipient.name;
    if (!recipient.address.empty()) text += u" <" + recipient.address + u">";
    return text;
}

}  // namespace

std::vector<PlacedItem> itemsOf(const MailStore& store) {
    std::vector<PlacedItem> items;
    forEachFolder(store, store.rootFolder(), u"", [&](const FolderRecord& folder, const std::u16string& path) {
        for (const ItemHead& head : store.itemHeads(folder.entryId)) items.push_back({path, store.loadItem(head.entryId)});
    });
    return items;
}

StoreContent contentOf(const SqliteFile& file) {
    StoreContent content;
    const auto store = file.mailStore();
    forEachFolder(*store, store->rootFolder(), u"", [&](const FolderRecord&, const std::u16string& path) { content.folders.push_back(path); });
    content.items = itemsOf(*store);
    for (const SettingsStore::Entry& entry : file.settings()->list()) {
        content.settings.push_back(entry.application + u"\\" + entry.section + u"\\" + entry.key + u"=" + entry.value);
    }
    return content;
}

std::string lineOf(const PlacedItem& item) {
    const ItemRecord& record = item.record;
    std::u16string line = item.folder + u": \"" + record.head.subject + u"\"";
    if (!record.head.categories.empty()) line += u" [" + record.head.categories + u"]";
    for (const RecipientRecord& recipient : record.recipients) line += u", " + recipientText(recipient);
    constexpr std::u16string_view kinds[] = {u"no text", u"plain", u"HTML", u"rich"};
    line += u", ";
    line += kinds[static_cast<std::size_t>(record.bodyKind)];
    if (!record.body.empty()) line += u" " + record.body;
    for (const AttachmentRecord& attachment : record.attachments)
        line += u", file " + attachment.fileName + u" of " + host::fromUtf8(std::to_string(attachment.data ? attachment.data->size() : 0));
    line = host::Replace(host::Replace(line, u"\r", u"\\r"), u"\n", u"\\n");
    return host::toUtf8(line);
}

void PrintTo(const StoreContent& content, std::ostream* stream) {
    for (const PlacedItem& item : content.items) *stream << "\n    " << lineOf(item) << " (version " << item.record.head.version << ")";
    for (const std::u16string& setting : content.settings) *stream << "\n    " << host::toUtf8(setting);
}

}  // namespace lorvane::mailstore::test
