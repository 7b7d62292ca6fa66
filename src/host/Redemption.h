#pragma once

#include "host/Outlook.h"

/// The helper that reaches guarded properties. Every use follows one form: clean up, make the wrapper, set its target, use it, let it go, clean up.
namespace lorvane::host {

/// A wrapper around an item: used like the item, with the raw properties beside.
class SafeMailItem : public MailItem {
public:
    SafeMailItem() = default;
    explicit SafeMailItem(Object object) : MailItem(std::move(object)) {}
    void Item(const Object& target) const { put(Member::Item, target); }
    Object Item() const { return getObject(Member::Item); }
    Variant Fields(std::int32_t tag) const { return get(Member::Fields, {tag}); }  ///< Empty where the property is not there
    void setFields(std::int32_t tag, const Variant& value) const { put(Member::Fields, value, {tag}); }
    std::int32_t GetIDsFromNames(std::u16string_view guid, std::int32_t id) const { return call(Member::GetIDsFromNames, {guid, id}).toInt32(); }
    AddressEntry Sender() const { return AddressEntry(getObject(Member::Sender)); }
};

/// A wrapper around an open item's window, for its editor.
class SafeInspector : public Object {
public:
    explicit SafeInspector(Object object) : Object(std::move(object)) {}
    Object WordEditor() const { return getObject(Member::WordEditor); }
    void Close(std::int32_t saveMode) const { call(Member::Close, {saveMode}); }
};

/// A new "qz7mRedemption.qz7mSafeMailItem" around an item.
SafeMailItem makeSafeMailItem(const Object& item);
/// A new "qz7mRedemption.qz7mSafePostItem" around an item.
SafeMailItem makeSafePostItem(const Object& item);
/// A new "qz7mRedemption.qz7mSafeInspector" around an Inspector.
SafeInspector makeSafeInspector(const Object& inspector);
/// `Cleanup` on a fresh "qz7mRedemption.qz7mMAPIUtils".
void SafeMapiCleanup();

/// Direct access to the stores, by the session that shares the host's logon.
class RDOSession : public Object {
public:
    RDOSession() = default;
    explicit RDOSession(Object object) : Object(std::move(object)) {}
    MAPIFolder GetFolderFromID(std::u16string_view entryId, std::u16string_view storeId) const {
        return MAPIFolder(call(Member::GetFolderFromID, {entryId, storeId}).toObject());
    }
};

}  // namespace lorvane::host
