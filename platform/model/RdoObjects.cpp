#include "model/RdoObjects.h"

#include <algorithm>

#include "host/TextFunctions.h"
#include "host/Variant.h"
#include "model/ApplicationObjects.h"
#include "model/Failures.h"
#include "model/HostCore.h"
#include "model/ModelMembers.h"
#include "model/ModelObject.h"

namespace lorvane::model {

using host::Member;
using host::Variant;

namespace {

using Folder = std::shared_ptr<const mailstore::FolderRecord>;

host::Object makeRdoFolder(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, Folder folder);

/// A message by its head, to be read only.
class RdoMail final : public ModelObject {
public:
    RdoMail(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, Folder folder, std::shared_ptr<const FolderHeads> heads, std::size_t index)
        : ModelObject(std::move(core)), store_(std::move(store)), folder_(std::move(folder)), heads_(std::move(heads)), head_(heads_->items[index]) {}

    std::u16string_view className() const noexcept override { return u"RDOMail"; }

protected:
    Variant use(Member member, host::Args) override {
        switch (member) {
            case Member::EntryID:
                return head_.entryId;
            case Member::MessageClass:
                return head_.messageClass;
            case Member::Subject:
                return head_.subject;
            case Member::Categories:
                return head_.categories;
            case Member::Parent:
                return makeRdoFolder(sharedCore(), store_, folder_);
            default:
                raiseUnknown(member);
        }
    }

private:
    std::shared_ptr<OpenStore> store_;
    Folder folder_;
    std::shared_ptr<const FolderHeads> heads_;
    const mailstore::ItemHead& head_;  // lies in heads_
};

class RdoItems final : public ModelObject {
public:
    RdoItems(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, Folder folder)
        : ModelObject(std::move(core)), store_(std::move(store)), folder_(std::move(folder)) {}

    std::u16string_view className() const noexcept override { return u"RDOItems"; }

    host::Object at(const Variant& index) {
        auto heads = current();
        const std::size_t position = indexFrom(index, heads->items.size());
        return host::makeObject<RdoMail>(sharedCore(), store_, folder_, std::move(heads), position);
    }

protected:
    Variant use(Member member, host::Args args) override {
        switch (member) {
            case Member::Count:
                return static_cast<std::int32_t>(current()->items.size());
            case Member::Item:
                return at(host::requiredArgument(args, 0));
            default:
                raiseUnknown(member);
        }
    }

private:
    std::shared_ptr<const FolderHeads> current() const {
        store_->requireRead(folder_->entryId);
        return store_->heads(folder_->entryId);
    }

    std::shared_ptr<OpenStore> store_;
    Folder folder_;
};

class RdoFolders final : public ModelObject {
public:
    RdoFolders(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, Folder parent)
        : ModelObject(std::move(core)), store_(std::move(store)), parent_(std::move(parent)) {}

    std::u16string_view className() const noexcept override { return u"RDOFolders"; }

    host::Object at(const Variant& index) const {
        auto children = store_->required().childFolders(parent_->entryId);
        auto found = children.begin();
        if (index.kind() == Variant::Kind::Text) {
            found = std::ranges::find_if(children, [&index](const auto& folder) { return host::equalsIgnoreCase(folder.name, index.text()); });
            if (found == children.end()) raiseNotFound();
        } else {
            found += static_cast<std::ptrdiff_t>(indexFrom(index, children.size()));
        }
        return makeRdoFolder(sharedCore(), store_, std::make_shared<const mailstore::FolderRecord>(std::move(*found)));
    }

protected:
    Variant use(Member member, host::Args args) override {
        switch (member) {
            case Member::Count:
                return static_cast<std::int32_t>(store_->required().childFolders(parent_->entryId).size());
            case Member::Item:
                return at(host::requiredArgument(args, 0));
            default:
                raiseUnknown(member);
        }
    }

private:
    std::shared_ptr<OpenStore> store_;
    Folder parent_;
};

class RdoFolder final : public ModelObject {
public:
    RdoFolder(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, Folder folder)
        : ModelObject(std::move(core)), store_(std::move(store)), folder_(std::move(folder)) {}

    std::u16string_view className() const noexcept override { return u"RDOFolder"; }

protected:
    Variant use(Member member, host::Args args) override {
        switch (member) {
            case Member::Name:
                return folder_->name;
            case Member::EntryID:
                return folder_->entryId;
            case Member::StoreID:
                return store_->id();
            case member::DefaultMessageClass:
                return folder_->defaultMessageClass;
            case Member::Folders: {
                host::Object folders = host::makeObject<RdoFolders>(sharedCore(), store_, folder_);
                return args.empty() ? folders : host::implementation<RdoFolders>(folders)->at(args[0].value());
            }
            case Member::Items: {
                host::Object items = host::makeObject<RdoItems>(sharedCore(), store_, folder_);
                return args.empty() ? items : host::implementation<RdoItems>(items)->at(args[0].value());
            }
            default:
                raiseUnknown(member);
        }
    }

private:
    std::shared_ptr<OpenStore> store_;
    Folder folder_;
};

host::Object makeRdoFolder(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, Folder folder) {
    return host::makeObject<RdoFolder>(std::move(core), std::move(store), std::move(folder));
}

class RdoStore final : public ModelObject {
public:
    RdoStore(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store) : ModelObject(std::move(core)), store_(std::move(store)) {}

    std::u16string_view className() const noexcept override { return u"RDOStore"; }

protected:
    Variant use(Member member, host::Args) override {
        switch (member) {
            case Member::Name:
                return store_->required().name();
            case Member::EntryID:
            case Member::StoreID:
                return store_->id();
            case member::StoreKind:
                return store_->required().kind();
            case member::IPMRootFolder:
                return makeRdoFolder(sharedCore(), store_, std::make_shared<const mailstore::FolderRecord>(store_->required().rootFolder()));
            default:
                raiseUnknown(member);
        }
    }

private:
    std::shared_ptr<OpenStore> store_;
};

class RdoStores final : public ModelObject {
public:
    using ModelObject::ModelObject;
    std::u16string_view className() const noexcept override { return u"RDOStores"; }

    host::Object at(const Variant& index) const { return host::makeObject<RdoStore>(sharedCore(), core().stores[indexFrom(index, core().stores.size())]); }

protected:
    Variant use(Member member, host::Args args) override {
        switch (member) {
            case Member::Count:
                return static_cast<std::int32_t>(core().stores.size());
            case Member::Item:
                return at(host::requiredArgument(args, 0));
            default:
                raiseUnknown(member);
        }
    }
};

class RdoSession final : public ModelObject {
public:
    using ModelObject::ModelObject;
    std::u16string_view className() const noexcept override { return u"RDOSession"; }

    void put(Member member, const Variant& value, host::Args) override {
        if (member != Member::MAPIOBJECT) raiseUnknown(member);
        if (sessionBehind(value.toObject()) != &core()) throw host::HostError(host::runtime_error::TypeMismatch);
        loggedOn_ = true;
    }

protected:
    Variant use(Member member, host::Args args) override {
        switch (member) {
            case Member::Logon:
                loggedOn_ = true;
                return {};
            case member::LoggedOn:
                return loggedOn_;
            case Member::GetFolderFromID: {
                requireLogon();
                const Variant& store = host::argumentAt(args, 1);
                auto placed = core().folderFromId(host::requiredArgument(args, 0).toText(), store.isMissing() ? std::u16string() : store.toText());
                return makeRdoFolder(sharedCore(), std::move(placed.store), std::make_shared<const mailstore::FolderRecord>(std::move(placed.folder)));
            }
            case Member::GetDefaultFolder:
                requireLogon();
                return makeRdoFolder(sharedCore(), core().stores.front(),
                                     std::make_shared<const mailstore::FolderRecord>(core().defaultFolder(host::requiredArgument(args, 0).toInt32())));
            case member::Stores: {
                requireLogon();
                host::Object stores = host::makeObject<RdoStores>(sharedCore());
                return args.empty() ? stores : host::implementation<RdoStores>(stores)->at(args[0].value());
            }
            default:
                raiseUnknown(member);
        }
    }

private:
    void requireLogon() const {
        if (!loggedOn_) raiseFailed(u"The session is not logged on.");
    }

    bool loggedOn_ = false;
};

}  // namespace

host::Object makeRdoSession(std::shared_ptr<HostCore> core) {
    return host::makeObject<RdoSession>(std::move(core));
}

}  // namespace lorvane::model
