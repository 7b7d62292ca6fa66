#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/Object.h"
#include "host/Variant.h"

/// Facades over the mail host's objects: members with C++ names and types, and nothing else.
///
/// Every use is a late-bound call and may raise HostError; Nothing raises error 91. A facade of the wrong class is not noticed before a member is missing.
namespace lorvane::host {

/// The host's class numbers.
namespace item_class {
inline constexpr std::int32_t Appointment = 26, Contact = 40, Document = 41, Journal = 42, Mail = 43, Note = 44, Post = 45, Task = 48, DistributionList = 69;
}
/// Numbers of `EditorType` and `BodyFormat`.
namespace editor_type {
inline constexpr std::int32_t Text = 1, Html = 2, RichText = 3, Word = 4;
}
namespace body_format {
inline constexpr std::int32_t Unspecified = 0, Plain = 1, Html = 2, RichText = 3;
}
namespace default_folder {
inline constexpr std::int32_t DeletedItems = 3, Outbox = 4, SentMail = 5, Inbox = 6, Calendar = 9, Drafts = 16, Junk = 23;
}
inline constexpr std::int32_t olSave = 0, olDiscard = 1;
inline constexpr std::int32_t olMailItem = 0, olAppointmentItem = 1;
inline constexpr std::int32_t olTo = 1;

class MAPIFolder;

class AddressEntry : public Object {
public:
    AddressEntry() = default;
    explicit AddressEntry(Object object) : Object(std::move(object)) {}
    std::u16string Address() const { return getText(Member::Address); }
    std::u16string SMTPAddress() const { return getText(Member::SMTPAddress); }
    Variant Fields(std::int32_t tag) const { return get(Member::Fields, {tag}); }  ///< Empty where the property is not there
};

class Recipient : public Object {
public:
    explicit Recipient(Object object) : Object(std::move(object)) {}
    std::u16string Name() const { return getText(Member::Name); }
    std::int32_t Type() const { return getNumber(Member::Type); }
    bool Resolved() const { return getBoolean(Member::Resolved); }
    host::AddressEntry AddressEntry() const { return host::AddressEntry(getObject(Member::AddressEntry)); }
};

class Recipients : public Object {
public:
    explicit Recipients(Object object) : Object(std::move(object)) {}
    std::int32_t Count() const { return getNumber(Member::Count); }
    Recipient Item(std::int32_t index) const { return Recipient(call(Member::Item, {index}).toObject()); }
    bool ResolveAll() const { return call(Member::ResolveAll).toBoolean(); }
};

class Attachment : public Object {
public:
    explicit Attachment(Object object) : Object(std::move(object)) {}
    std::u16string FileName() const { return getText(Member::FileName); }
    std::u16string DisplayName() const { return getText(Member::DisplayName); }
    Variant Fields(std::int32_t tag) const { return get(Member::Fields, {tag}); }
    void setFields(std::int32_t tag, const Variant& value) const { put(Member::Fields, value, {tag}); }
    void SaveAsFile(std::u16string_view path) const { call(Member::SaveAsFile, {path}); }
};

class Attachments : public Object {
public:
    explicit Attachments(Object object) : Object(std::move(object)) {}
    std::int32_t Count() const { return getNumber(Member::Count); }
    Attachment Item(std::int32_t index) const { return Attachment(call(Member::Item, {index}).toObject()); }
    Attachment Add(std::u16string_view path, std::int32_t type, std::int32_t position, std::u16string_view displayName) const {
        return Attachment(call(Member::Add, {path, type, position, displayName}).toObject());
    }
};

class Inspector;

/// An item of any class. Members that an item's class lacks raise error 438.
class MailItem : public Object {
public:
    MailItem() = default;
    explicit MailItem(Object object) : Object(std::move(object)) {}
    std::int32_t Class() const { return getNumber(Member::Class); }
    std::u16string MessageClass() const { return getText(Member::MessageClass); }
    std::u16string EntryID() const { return getText(Member::EntryID); }
    MAPIFolder Parent() const;
    std::u16string Subject() const { return getText(Member::Subject); }
    void Subject(std::u16string_view value) const { put(Member::Subject, value); }
    std::u16string Body() const { return getText(Member::Body); }
    void Body(std::u16string_view value) const { put(Member::Body, value); }
    std::u16string HTMLBody() const { return getText(Member::HTMLBody); }
    void HTMLBody(std::u16string_view value) const { put(Member::HTMLBody, value); }
    std::int32_t BodyFormat() const { return getNumber(Member::BodyFormat); }
    std::u16string Categories() const { return getText(Member::Categories); }
    void Categories(std::u16string_view value) const { put(Member::Categories, value); }
    std::u16string To() const { return getText(Member::To); }
    std::u16string CC() const { return getText(Member::CC); }
    std::u16string BCC() const { return getText(Member::BCC); }
    std::u16string SenderName() const { return getText(Member::SenderName); }
    std::u16string SentOnBehalfOfName() const { return getText(Member::SentOnBehalfOfName); }
    bool Sent() const { return getBoolean(Member::Sent); }
    host::Recipients Recipients() const { return host::Recipients(getObject(Member::Recipients)); }
    host::Attachments Attachments() const { return host::Attachments(getObject(Member::Attachments)); }
    host::Inspector GetInspector() const;
    void Save() const { call(Member::Save); }
    void Display() const { call(Member::Display); }
    void Delete() const { call(Member::Delete); }
    MailItem Move(const Object& folder) const { return MailItem(call(Member::Move, {folder}).toObject()); }
};

class Items : public Object {
public:
    explicit Items(Object object) : Object(std::move(object)) {}
    std::int32_t Count() const { return getNumber(Member::Count); }
    MailItem Item(std::int32_t index) const { return MailItem(call(Member::Item, {index}).toObject()); }
};

class Folders : public Object {
public:
    explicit Folders(Object object) : Object(std::move(object)) {}
    std::int32_t Count() const { return getNumber(Member::Count); }
    MAPIFolder Item(std::int32_t index) const;
    MAPIFolder Add(std::u16string_view name) const;
};

class MAPIFolder : public Object {
public:
    MAPIFolder() = default;
    explicit MAPIFolder(Object object) : Object(std::move(object)) {}
    std::u16string Name() const { return getText(Member::Name); }
    std::u16string EntryID() const { return getText(Member::EntryID); }
    std::u16string StoreID() const { return getText(Member::StoreID); }
    Object Parent() const { return getObject(Member::Parent); }  ///< a folder, or at the top of a store the name space
    std::int32_t DefaultItemType() const { return getNumber(Member::DefaultItemType); }
    host::Folders Folders() const { return host::Folders(getObject(Member::Folders)); }
    host::Items Items() const { return host::Items(getObject(Member::Items)); }
};

inline MAPIFolder MailItem::Parent() const {
    return MAPIFolder(getObject(Member::Parent));
}
inline MAPIFolder Folders::Item(std::int32_t index) const {
    return MAPIFolder(call(Member::Item, {index}).toObject());
}
inline MAPIFolder Folders::Add(std::u16string_view name) const {
    return MAPIFolder(call(Member::Add, {name}).toObject());
}

class Inspector : public Object {
public:
    Inspector() = default;
    explicit Inspector(Object object) : Object(std::move(object)) {}
    MailItem CurrentItem() const { return MailItem(getObject(Member::CurrentItem)); }
    std::int32_t EditorType() const { return getNumber(Member::EditorType); }
    Object WordEditor() const { return getObject(Member::WordEditor); }
    void Activate() const { call(Member::Activate); }
    void Display() const { call(Member::Display); }
    void Close(std::int32_t saveMode) const { call(Member::Close, {saveMode}); }
};
inline Inspector MailItem::GetInspector() const {
    return Inspector(getObject(Member::GetInspector));
}

/// The live windows of one kind.
class Windows : public Object {
public:
    Windows() = default;
    explicit Windows(Object object) : Object(std::move(object)) {}
    std::int32_t Count() const { return getNumber(Member::Count); }
};

class NameSpace : public Object {
public:
    NameSpace() = default;
    explicit NameSpace(Object object) : Object(std::move(object)) {}
    MAPIFolder GetDefaultFolder(std::int32_t number) const { return MAPIFolder(call(Member::GetDefaultFolder, {number}).toObject()); }
    MAPIFolder GetFolderFromID(std::u16string_view entryId, std::u16string_view storeId) const {
        return MAPIFolder(call(Member::GetFolderFromID, {entryId, storeId}).toObject());
    }
    MAPIFolder GetFolderFromID(std::u16string_view entryId) const { return MAPIFolder(call(Member::GetFolderFromID, {entryId}).toObject()); }
    MailItem GetItemFromID(std::u16string_view entryId, std::u16string_view storeId) const {
        return MailItem(call(Member::GetItemFromID, {entryId, storeId}).toObject());
    }
};

class Application : public Object {
public:
    Application() = default;
    explicit Application(Object object) : Object(std::move(object)) {}
    std::u16string Version() const { return getText(Member::Version); }
    Object Session() const { return getObject(Member::Session); }
    Object ActiveExplorer() const { return call(Member::ActiveExplorer).toObject(); }
    Inspector ActiveInspector() const { return Inspector(call(Member::ActiveInspector).toObject()); }
    NameSpace GetNamespace(std::u16string_view type) const { return NameSpace(call(Member::GetNamespace, {type}).toObject()); }
    MailItem CreateItem(std::int32_t type) const { return MailItem(call(Member::CreateItem, {type}).toObject()); }
    Object CreateObject(std::u16string_view progId) const { return call(Member::CreateObject, {progId}).toObject(); }
    Windows Explorers() const { return Windows(getObject(Member::Explorers)); }
    Windows Inspectors() const { return Windows(getObject(Member::Inspectors)); }
};

}  // namespace lorvane::host
