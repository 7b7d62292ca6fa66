#pragma once

#include <memory>

#include "model/ModelObject.h"
#include "model/OpenStore.h"

namespace lorvane::model {

/// A folder of an open store. Members raise 0x8004010F once the folder is gone.
class FolderObject final : public ModelObject {
public:
    FolderObject(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, mailstore::FolderRecord record);

    void put(host::Member member, const host::Variant& value, host::Args args) override;
    std::u16string_view className() const noexcept override { return u"MAPIFolder"; }

    const std::shared_ptr<OpenStore>& store() const noexcept { return store_; }
    const mailstore::FolderRecord& record() const noexcept { return record_; }

protected:
    host::Variant use(host::Member member, host::Args args) override;

private:
    void refresh();
    host::Object parent() const;

    std::shared_ptr<OpenStore> store_;
    mailstore::FolderRecord record_;
    std::uint64_t seenAt_;
};

host::Object makeFolder(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, mailstore::FolderRecord record);
/// Error 0x8004010F where the store has no such folder.
host::Object makeFolder(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, std::u16string_view folderId);

/// The folders in a folder: Count, Item by index or name, Add. With an argument, the folder of that index or name.
host::Object makeFolders(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, mailstore::FolderRecord parent, host::Args args);
/// The top-level folders, one per open store: Count, Item.
host::Object makeTopFolders(std::shared_ptr<HostCore> core, host::Args args);
/// The items of a folder: Count, Item, Add, Sort. With an argument, the item at that index.
host::Object makeItems(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, mailstore::FolderRecord folder, host::Args args);

}  // namespace lorvane::model
