#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/Object.h"
#include "model/AddressBook.h"
#include "model/HostOptions.h"
#include "model/OpenStore.h"
#include "model/SavedFiles.h"
#include "model/WordTemplates.h"

namespace lorvane::model {

class HostWindow;

/// What the objects of one running host share. They hold it alive; it holds the open windows.
class HostCore : public std::enable_shared_from_this<HostCore> {
public:
    explicit HostCore(HostOptions runOptions);

    HostOptions options;
    AddressBook addressBook;
    SavedFiles savedFiles;
    WordTemplates wordTemplates;
    std::vector<std::shared_ptr<OpenStore>> stores;  ///< the default one first

    host::EventSource applicationEvents, explorersEvents, inspectorsEvents;

    int majorVersion() const noexcept { return majorVersion_; }
    /// True for the hosts that give Word's document to a safe wrapper only: version 10 from build 6515 on.
    bool guardsWordEditor() const noexcept { return guardsWordEditor_; }
    /// The kind of text of a mail that nobody gave text yet.
    mailstore::BodyKind newTextKind() const noexcept;
    host::DateTime now() const;  ///< of the run's clock; 0 where the run has none

    OpenStore& defaultStore() const { return *stores.front(); }
    /// An open store by identity, any case; null where there is none.
    std::shared_ptr<OpenStore> findStore(std::u16string_view storeId) const;
    void addStore(std::shared_ptr<mailstore::MailStore> store);
    void removeStore(std::u16string_view name);  ///< by display name; error 0x8004010F where none has it

    /// The folder of the default store that a number of `GetDefaultFolder` means; error 0x8004010F where it has none.
    mailstore::FolderRecord defaultFolder(std::int32_t number) const;
    struct PlacedFolder {
        std::shared_ptr<OpenStore> store;
        mailstore::FolderRecord folder;
    };
    /// A folder by identity; without a store all are searched. Error 0x8004010F.
    PlacedFolder folderFromId(std::u16string_view entryId, std::u16string_view storeId) const;
    /// An item by identity; without a store all are searched. That of an open window is the window's own, any other is opened anew, as it was last saved.
    /// Error 0x8004010F, or 0x80070005 where the folder may not be read.
    std::shared_ptr<ItemState> itemFromId(std::u16string_view entryId, std::u16string_view storeId);

    /// The windows that are shown, in the order they were opened.
    std::vector<HostWindow*> explorers, inspectors;
    HostWindow* frontmost(const std::vector<HostWindow*>& kind) const noexcept;

    /// Objects that `Application.CreateObject` makes inside the host, by ProgID.
    void registerClass(std::u16string progId, std::function<host::Object()> factory);
    /// Nothing for a ProgID that nobody registered.
    host::Object createRegistered(std::u16string_view progId) const;

    /// Ends the run: every window goes without events.
    void shutDown() noexcept;

private:
    struct RegisteredClass {
        std::u16string progId;
        std::function<host::Object()> factory;
    };
    std::vector<RegisteredClass> classes_;
    int majorVersion_;
    bool guardsWordEditor_;
};

/// An identity as stores write it.
std::u16string normalizedId(std::u16string_view id);

}  // namespace lorvane::model
