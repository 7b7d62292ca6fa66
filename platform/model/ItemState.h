#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/Object.h"
#include "mailstore/ItemRecord.h"
#include "model/OpenStore.h"

namespace lorvane::model {

class HostCore;
class InspectorObject;

/// An item that was opened, with its changes until they are saved. The host's object, the safe wrappers around it and its window share one.
///
/// An item that is opened twice has two: what one saves the other shows from then on, unless it has changes of its own; then its save is told (0x80040109).
/// Members raise 0x8004010A once the item was moved or deleted, through whichever object. A saved item is read from its store when more than its head is asked
/// for.
class ItemState : public std::enable_shared_from_this<ItemState> {
public:
    using Recipient = std::shared_ptr<mailstore::RecipientRecord>;
    using Attachment = std::shared_ptr<mailstore::AttachmentRecord>;

    /// An item of the store.
    ItemState(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, ListedHead listed);
    /// An item that was never saved; the record has no identity.
    ItemState(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, std::u16string folderId, mailstore::ItemRecord fresh);
    ItemState(const ItemState&) = delete;
    ItemState& operator=(const ItemState&) = delete;
    ~ItemState();

    HostCore& core() const noexcept { return *core_; }
    const std::shared_ptr<HostCore>& sharedCore() const noexcept { return core_; }
    const std::shared_ptr<OpenStore>& store() const noexcept { return store_; }
    const std::u16string& folderId() const noexcept { return listed_ ? listed_.folderId() : folderId_; }

    void requireAlive() const;
    bool isAlive() const noexcept { return alive_; }
    bool isDirty() const noexcept { return dirty_; }
    bool isSaved() const noexcept { return !head().entryId.empty(); }
    bool isShown() const noexcept;  ///< a window shows it
    bool hasChanges() const;        ///< its own, or its window's, that were not saved

    const mailstore::ItemHead& head() const noexcept { return listed_ ? listed_.head() : record_.head; }
    /// The item's values; lists of recipients and attachments stand beside.
    const mailstore::ItemRecord& record();
    /// The same, to be changed: the item counts as changed.
    mailstore::ItemRecord& changed();
    const std::vector<Recipient>& recipients();
    std::vector<Recipient>& changedRecipients();
    const std::vector<Attachment>& attachments();
    std::vector<Attachment>& changedAttachments();
    void touch();

    const mailstore::PropertyValue* property(std::uint32_t tag);
    void setProperty(std::uint32_t tag, mailstore::PropertyValue value);
    void removeProperty(std::uint32_t tag);

    /// The whole item with its lists, as a store takes it.
    mailstore::ItemRecord snapshot();

    /// The text members, by the rules of kinds; a write reloads the open editor.
    std::u16string body();
    std::u16string htmlBody();
    std::u16string rtfBody();
    std::int32_t bodyFormat();
    void setBody(std::u16string_view text);
    void setHtmlBody(std::u16string_view html);
    void setRtfBody(std::u16string_view rtf);
    void setBodyFormat(std::int32_t format);
    /// What the editor commits: no reload, and no change where nothing differs.
    void commitBody(mailstore::BodyKind kind, std::u16string_view source);

    void setSubject(std::u16string_view subject);
    void commitSubject(std::u16string_view subject);
    void setCategories(std::u16string_view categories);
    /// The names of the recipients of a type, joined by "; ".
    std::u16string recipientNames(std::int32_t type);
    void setRecipientNames(std::int32_t type, std::u16string_view field);
    void commitRecipientNames(std::int32_t type, std::u16string_view field);
    Recipient addRecipient(std::u16string_view text, std::int32_t type);
    void removeRecipient(const Recipient& recipient);
    void setRecipientType(mailstore::RecipientRecord& recipient, std::int32_t type);
    bool resolve(mailstore::RecipientRecord& recipient);
    bool resolveAll();

    /// The kind of the text in the editor: the item's, or the run's choice while it has none; always rich for tasks, appointments and contacts.
    mailstore::BodyKind editorKind();
    /// The editor by its number: that of the kind, or Word.
    std::int32_t editorType();
    /// True for mails and posts of a run with Word as editor.
    bool isWordEdited() const noexcept;
    bool isAlwaysRich() const noexcept;

    /// Commits the open editor as the run delays it, and saves.
    void save();
    /// Saves what was committed already.
    void saveCommitted();
    /// Saves what the properties hold. Nothing where nothing changed.
    void persist();
    /// Forgets changes since the last save; an item that was never saved keeps its values.
    void revert();
    /// Moves the item to Deleted Items; one that is there already, or in a store without that folder, goes for good. Its window closes.
    void remove();
    void purge();  ///< goes for good wherever it is
    std::shared_ptr<ItemState> copy();
    std::shared_ptr<ItemState> moveTo(const std::shared_ptr<OpenStore>& target, std::u16string_view targetFolder);
    /// Takes in what another program did, where this one has changed nothing; error 0x8004010F where the item is gone.
    void refresh();

    /// Its window opens: the store notes it, and what another program did before is taken in. Error 0x8004010F where the item is gone.
    void noteOpened();
    void noteClosed() noexcept { openNote_.reset(); }

    host::EventSource events;
    /// The item's window, shown or hidden; it clears this when it ends.
    InspectorObject* inspector = nullptr;

private:
    void detach();
    void load();
    void take(mailstore::ItemRecord record);
    void setText(mailstore::BodyKind kind, std::u16string source);
    void reloadBody();
    void reloadRecipients();
    bool assignRecipients(std::int32_t type, std::u16string_view field);
    void end();
    void endAll();
    void tellOthers();
    void requireSavable() const;

    std::shared_ptr<HostCore> core_;
    std::shared_ptr<OpenStore> store_;
    ListedHead listed_;  // the item's head and folder as they were read, until it gets a head of its own
    std::u16string folderId_;
    mailstore::ItemRecord record_;
    std::vector<Recipient> recipients_;
    std::vector<Attachment> attachments_;
    /// Recipients that an edit of an address field replaced, so that taking the edit back gives them back with their addresses.
    std::vector<Recipient> replaced_;
    std::unique_ptr<mailstore::OpenNote> openNote_;
    std::uint64_t seenAt_ = 0;
    bool loaded_ = false;
    bool dirty_ = false;
    bool alive_ = true;
};

/// A new item of a message class, "IPM.Note" and so on, as the host starts it.
mailstore::ItemRecord freshRecord(std::int32_t itemClass, std::u16string_view messageClass, host::DateTime now);
/// The item class that a message class belongs to; a mail for any that is not known.
std::int32_t itemClassOf(std::u16string_view messageClass);
/// The message class of a type of `CreateItem`: 0 mail, 1 appointment, 2 contact, 3 task, 6 post …
std::u16string messageClassOfType(std::int32_t type);

}  // namespace lorvane::model
