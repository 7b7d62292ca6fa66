#include "model/ExplorerObject.h"

#include "model/ApplicationObjects.h"
#include "model/BuiltInBars.h"
#include "model/FolderObjects.h"
#include "model/ItemObject.h"
#include "model/ModelMembers.h"

namespace lorvane::model {

using host::Member;
using host::Variant;

namespace {

constexpr std::int32_t explorerClass = 34, selectionClass = 74;

/// The items that were selected when it was asked for.
class SelectionObject final : public ModelObject {
public:
    SelectionObject(std::shared_ptr<HostCore> core, std::vector<std::shared_ptr<ItemState>> items) : ModelObject(std::move(core)), items_(std::move(items)) {}

    std::u16string_view className() const noexcept override { return u"Selection"; }

    Variant at(const Variant& index) const { return makeItem(items_[indexFrom(index, items_.size())]); }

protected:
    Variant use(Member member, host::Args args) override {
        switch (member) {
            case Member::Count:
                return static_cast<std::int32_t>(items_.size());
            case Member::Item:
                return at(host::requiredArgument(args, 0));
            case Member::Class:
                return selectionClass;
            default:
                raiseUnknown(member);
        }
    }

private:
    std::vector<std::shared_ptr<ItemState>> items_;
};

}  // namespace

ExplorerObject::ExplorerObject(std::shared_ptr<HostCore> core, HostCore::PlacedFolder folder) : HostWindow(std::move(core)), folder_(std::move(folder)) {}

void ExplorerObject::raiseNew() {
    core().explorersEvents.raise(member::NewExplorer, {host::Object(this)});
}

std::vector<BarTree> ExplorerObject::builtInBars() const {
    return explorerBars(core().options);
}

void ExplorerObject::select(std::vector<std::shared_ptr<ItemState>> items) {
    selected_ = std::move(items);
    events.raise(member::SelectionChange);
}

void ExplorerObject::put(Member member, const Variant& value, host::Args) {
    requireOpen();
    if (member != member::CurrentFolder) raiseUnknown(member);
    const host::Object target = value.toObject();
    const auto* folder = host::implementation<FolderObject>(target);
    if (!folder) throw host::HostError(host::runtime_error::TypeMismatch);
    Variant cancel(false);
    events.raise(member::BeforeFolderSwitch, {target, host::Argument::byReference(cancel)});
    if (cancel.toBoolean() || isClosed()) return;
    folder_ = {folder->store(), folder->record()};
    select({});
}

Variant ExplorerObject::use(Member member, host::Args args) {
    requireOpen();
    switch (member) {
        case Member::Selection: {
            // An item that went meanwhile is not selected any more.
            std::erase_if(selected_, [](const auto& item) { return !item->isAlive(); });
            host::Object selection = host::makeObject<SelectionObject>(sharedCore(), selected_);
            return args.empty() ? Variant(selection) : host::implementation<SelectionObject>(selection)->at(args[0].value());
        }
        case member::CurrentFolder:
            return makeFolder(sharedCore(), folder_.store, folder_.folder.entryId);
        case member::CommandBars:
            return useCommandBars(args);
        case member::Caption:
            return caption();
        case Member::Class:
            return explorerClass;
        case Member::Activate:
        case Member::Display:
            show();
            return {};
        case Member::Close:
            closeForGood();
            return {};
        case Member::Application:
            return makeApplication(sharedCore());
        case Member::Session:
            return makeNameSpace(sharedCore());
        default:
            raiseUnknown(member);
    }
}

}  // namespace lorvane::model
