#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/Object.h"
#include "mailstore/ItemRecord.h"
#include "mailstore/MailStore.h"
#include "model/AddressBook.h"
#include "model/CommandBarTree.h"
#include "model/EditorFields.h"
#include "model/FolderRights.h"

namespace lorvane::model {

class ModelHost;

/// What a person at the host does, and what a program around it needs, beside the members of its objects.
///
/// Objects may be decorated. An object of another class than asked for is error 13.
class Driver {
public:
    explicit Driver(const ModelHost& host);

    /// Entry and store identity of an item.
    using Identity = std::pair<std::u16string, std::u16string>;

    // Windows.
    host::Object openExplorer() const;  ///< on the Inbox
    host::Object openExplorer(const host::Object& folder) const;
    host::Object newMail() const;                                                           ///< the Inspector of a new mail, shown
    host::Object openItem(std::u16string_view entryId, std::u16string_view storeId) const;  ///< the Inspector, shown and in front
    void closeInspector(const host::Object& inspector, bool save) const;
    void selectItems(const host::Object& explorer, const std::vector<Identity>& items) const;

    // Command bars of an Explorer or Inspector.
    std::vector<BarTree> bars(const host::Object& window) const;
    /// "Bar/Popup/Caption", captions in any case without "&"; the window comes to the front. Error 5 with a sentence where a person could not click it.
    void clickBar(const host::Object& window, std::u16string_view path) const;

    // The caret of an open item. Keys reach it through the desktop while its window is in front.
    static constexpr std::int32_t AtEnd = -1;
    void focus(const host::Object& inspector, EditorFieldName field, std::int32_t position) const;  ///< position in the visible text, `AtEnd` the end
    void select(const host::Object& inspector, std::size_t start, std::size_t length) const;        ///< in the field that has the caret
    EditorFieldName focusedField(const host::Object& inspector) const;
    std::size_t caret(const host::Object& inspector) const;
    std::u16string visibleText(const host::Object& inspector, EditorFieldName field) const;  ///< what the window shows, committed or not

    // What comes from outside.
    /// Delivers a mail into the Inbox: it is sent and unread, received by the account.
    host::Object receive(mailstore::ItemRecord record) const;
    /// Saves a record as a new item of a folder, as it is.
    host::Object import(mailstore::ItemRecord record, const host::Object& folder) const;
    void addContact(Contact contact) const;

    // Stores.
    void addStore(std::shared_ptr<mailstore::MailStore> store) const;
    void removeStore(std::u16string_view name) const;                       ///< by display name; error 0x8004010F where none has it
    void setRights(const host::Object& folder, FolderRights rights) const;  ///< those of a store's root hold for its folders that have none of their own

    // Items as data.
    /// The whole item with all that was typed committed; nothing is saved.
    mailstore::ItemRecord record(const host::Object& item) const;
    void purge(const host::Object& item) const;  ///< the item goes for good, not to Deleted Items

    void setCommitDelay(std::uint32_t pumps) const;

private:
    std::shared_ptr<HostCore> core_;
};

}  // namespace lorvane::model
