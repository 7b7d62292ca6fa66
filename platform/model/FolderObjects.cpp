#include "model/FolderObjects.h"

#include <algorithm>

#include "host/TextFunctions.h"
#include "model/ApplicationObjects.h"
#include "model/Failures.h"
#include "model/HostCore.h"
#include "model/ModelMembers.h"

namespace lorvane::model {

using host::Member;
using host::Variant;
using mailstore::FolderRecord;

namespace {

constexpr std::int32_t folderClass = 2, foldersClass = 15;

/// What `Folders.Add` makes of its type, which is a number of `GetDefaultFolder`.
struct FolderType {
    std::int32_t number;
    std::int32_t itemType;
    std::u16string_view messageClass;
};
constexpr FolderType folderTypes[] = {
    {6, 0, u"IPM.Note"}, {9, 1, u"IPM.Appointment"}, {10, 2, u"IPM.Contact"}, {13, 3, u"IPM.Task"}, {11, 4, u"IPM.Activity"}, {12, 5, u"IPM.StickyNote"},
};

class FoldersObject final : public ModelObject {
public:
    FoldersObject(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, FolderRecord parent)
        : ModelObject(std::move(core)), store_(std::move(store)), parent_(std::move(parent)) {}

    std::u16string_view className() const noexcept override { return u"Folders"; }

    Variant at(const Variant& index) {
        const auto& all = children();
        if (index.kind() != Variant::Kind::Text) return makeFolder(sharedCore(), store_, all[indexFrom(index, all.size())]);
        const auto found = std::ranges::find_if(all, [&index](const FolderRecord& folder) { return host::equalsIgnoreCase(folder.name, index.text()); });
        if (found == all.end()) raiseNotFound();
        return makeFolder(sharedCore(), store_, *found);
    }

protected:
    Variant use(Member member, host::Args args) override {
        switch (member) {
            case Member::Count:
                return static_cast<std::int32_t>(children().size());
            case Member::Class:
                return foldersClass;
            case Member::Item:
                return at(host::requiredArgument(args, 0));
            case Member::Add:
                return add(args);
            default:
                raiseUnknown(member);
        }
    }

private:
    const std::vector<FolderRecord>& children() {
        const std::uint64_t changes = store_->required().changeCount();
        if (!read_ || changes != seenAt_) {
            children_ = store_->required().childFolders(parent_.entryId);
            seenAt_ = changes;
            read_ = true;
        }
        return children_;
    }

    Variant add(host::Args args) {
        store_->requireCreate(parent_.entryId);
        FolderRecord folder;
        folder.name = host::requiredArgument(args, 0).toText();
        if (folder.name.empty()) raiseInvalidArgument(u"A folder needs a name.");
        folder.defaultItemType = parent_.defaultItemType;
        folder.defaultMessageClass = parent_.defaultMessageClass;
        if (const Variant& type = host::argumentAt(args, 1); !type.isMissing()) {
            const std::int32_t number = type.toInt32();
            const auto known = std::ranges::find(folderTypes, number, &FolderType::number);
            if (known == std::end(folderTypes)) raiseInvalidArgument(u"A folder cannot be of that type.");
            folder.defaultItemType = known->itemType;
            folder.defaultMessageClass = std::u16string(known->messageClass);
        }
        return makeFolder(sharedCore(), store_, store_->required().addFolder(parent_.entryId, std::move(folder)));
    }

    std::shared_ptr<OpenStore> store_;
    FolderRecord parent_;
    std::vector<FolderRecord> children_;
    std::uint64_t seenAt_ = 0;
    bool read_ = false;
};

class TopFoldersObject final : public ModelObject {
public:
    using ModelObject::ModelObject;

    std::u16string_view className() const noexcept override { return u"Folders"; }

    Variant at(const Variant& index) const {
        const auto& stores = core().stores;
        if (index.kind() != Variant::Kind::Text) return root(stores[indexFrom(index, stores.size())]);
        for (const auto& store : stores) {
            if (host::equalsIgnoreCase(store->required().rootFolder().name, index.text())) return root(store);
        }
        raiseNotFound();
    }

protected:
    Variant use(Member member, host::Args args) override {
        switch (member) {
            case Member::Count:
                return static_cast<std::int32_t>(core().stores.size());
            case Member::Class:
                return foldersClass;
            case Member::Item:
                return at(host::requiredArgument(args, 0));
            default:
                raiseUnknown(member);
        }
    }

private:
    host::Object root(const std::shared_ptr<OpenStore>& store) const { return makeFolder(sharedCore(), store, store->required().rootFolder()); }
};

}  // namespace

FolderObject::FolderObject(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, FolderRecord record)
    : ModelObject(std::move(core)), store_(std::move(store)), record_(std::move(record)), seenAt_(store_->required().changeCount()) {}

void FolderObject::refresh() {
    const std::uint64_t changes = store_->required().changeCount();
    if (changes == seenAt_) return;
    auto current = store_->required().findFolder(record_.entryId);
    if (!current) raiseNotFound();
    record_ = std::move(*current);
    seenAt_ = changes;
}

host::Object FolderObject::parent() const {
    if (record_.parentId.empty()) return makeNameSpace(sharedCore());
    return makeFolder(sharedCore(), store_, record_.parentId);
}

Variant FolderObject::use(Member member, host::Args args) {
    refresh();
    switch (member) {
        case Member::Name:
            return record_.name;
        case Member::EntryID:
            return record_.entryId;
        case Member::StoreID:
            return store_->id();
        case Member::Parent:
            return parent();
        case Member::Class:
            return folderClass;
        case Member::DefaultItemType:
            return record_.defaultItemType;
        case member::DefaultMessageClass:
            return record_.defaultMessageClass;
        case Member::Folders:
            return makeFolders(sharedCore(), store_, record_, args);
        case Member::Items:
            return makeItems(sharedCore(), store_, record_, args);
        case Member::Delete:
            store_->requireChange(record_.entryId);
            store_->required().removeFolder(record_.entryId);
            return {};
        case Member::Application:
            return makeApplication(sharedCore());
        case Member::Session:
            return makeNameSpace(sharedCore());
        default:
            raiseUnknown(member);
    }
}

void FolderObject::put(Member member, const Variant& value, host::Args) {
    refresh();
    if (member != Member::Name) raiseUnknown(member);
    store_->requireChange(record_.entryId);
    store_->required().renameFolder(record_.entryId, value.toText());
}

host::Object makeFolder(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, FolderRecord record) {
    return host::makeObject<FolderObject>(std::move(core), std::move(store), std::move(record));
}

host::Object makeFolder(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, std::u16string_view folderId) {
    const auto record = store->folder(folderId);
    if (!record) raiseNotFound();
    return makeFolder(std::move(core), std::move(store), *record);
}

host::Object makeFolders(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, FolderRecord parent, host::Args args) {
    host::Object folders = host::makeObject<FoldersObject>(std::move(core), std::move(store), std::move(parent));
    return args.empty() ? folders : host::implementation<FoldersObject>(folders)->at(args[0].value()).toObject();
}

host::Object makeTopFolders(std::shared_ptr<HostCore> core, host::Args args) {
    host::Object folders = host::makeObject<TopFoldersObject>(std::move(core));
    return args.empty() ? folders : host::implementation<TopFoldersObject>(folders)->at(args[0].value()).toObject();
}

}  // namespace lorvane::model
