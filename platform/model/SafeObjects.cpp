#include "model/SafeObjects.h"

#include "model/Failures.h"
#include "model/HostCore.h"
#include "model/InspectorObject.h"
#include "model/ItemMembers.h"
#include "model/ItemObject.h"
#include "model/ModelMembers.h"
#include "model/PropertyAccess.h"
#include "model/RecipientObjects.h"

namespace lorvane::model {

using host::Member;
using host::Variant;
namespace tags = mailstore::tags;

namespace {

constexpr std::u16string_view noItem = u"The Item property of the wrapper has not been set.";

class SafeInspector final : public ModelObject {
public:
    using ModelObject::ModelObject;

    std::u16string_view className() const noexcept override { return u"SafeInspector"; }

    void put(Member member, const Variant& value, host::Args) override {
        switch (member) {
            case Member::Item:
                return setItem(value.toObject());
            case member::SelText: {
                EditorFields& fields = inspector().fields();
                fields.body().replaceSelection(value.toText());
                fields.noteChanges();
                return;
            }
            default:
                raiseUnknown(member);
        }
    }

protected:
    Variant use(Member member, host::Args args) override {
        switch (member) {
            case Member::Item:
                return window_;
            case member::SelText:
                return inspector().fields().body().selectedText();
            case Member::Text:
                return inspector().fields().body().visible();
            case Member::Activate:
            case Member::Close:
            case Member::CurrentItem:
            case Member::Display:
            case Member::EditorType:
            case member::IsWordMail:
                return inspector().call(member, args);
            case Member::WordEditor:
                return inspector().wordEditor();
            default:
                raiseUnknown(member);
        }
    }

private:
    void setItem(host::Object window) {
        if (window && !host::implementation<InspectorObject>(window)) throw host::HostError(host::runtime_error::TypeMismatch);
        window_ = std::move(window);
    }

    InspectorObject& inspector() const {
        if (!window_) raiseFailed(noItem);
        return *host::implementation<InspectorObject>(window_);
    }

    host::Object window_;
};

class MapiUtils final : public ModelObject {
public:
    using ModelObject::ModelObject;
    std::u16string_view className() const noexcept override { return u"MAPIUtils"; }

protected:
    Variant use(Member member, host::Args) override {
        // Nothing is kept between two uses here, so that nothing is left to clean.
        if (member != Member::Cleanup) raiseUnknown(member);
        return {};
    }
};

}  // namespace

const std::shared_ptr<ItemState>& SafeItem::requiredState() const {
    if (!state_) raiseFailed(noItem);
    return state_;
}

Variant SafeItem::sender() const {
    const auto text = [this](std::uint32_t tag) { return mailstore::textProperty(state_->record(), tag); };
    std::u16string name = text(tags::SenderName), address = text(tags::SenderAddress), type = text(tags::SenderAddressType);
    if (name.empty() && address.empty()) return host::Object();
    return makeAddressEntry(sharedCore(), Access::Safe, std::move(name), std::move(address), std::move(type));
}

Variant SafeItem::use(Member member, host::Args args) {
    if (window_) return useWindow(member);
    switch (member) {
        case Member::Item:
            return state_ ? makeItem(state_) : host::Object();
        case Member::Fields:
            requiredState()->requireAlive();
            return itemField(*state_, static_cast<std::uint32_t>(host::requiredArgument(args, 0).toInt32()));
        case Member::GetIDsFromNames:
            requiredState();
            return static_cast<std::int32_t>(namedPropertyTag(host::requiredArgument(args, 0).toText(), host::requiredArgument(args, 1)));
        case Member::Sender:
            requiredState()->requireAlive();
            return sender();
        default:
            return useItem(requiredState(), member, args, Access::Safe, name_);
    }
}

Variant SafeItem::useWindow(Member member) const {
    if (member == Member::Item) return window_;
    if (member != Member::WordEditor) raiseUnknown(member);
    return host::implementation<InspectorObject>(window_)->wordEditor();
}

void SafeItem::setItem(const host::Object& target) {
    const bool isWindow = host::implementation<InspectorObject>(target) != nullptr;
    state_ = target && !isWindow ? itemStateOf(target) : nullptr;
    window_ = isWindow ? target : host::Object();
}

void SafeItem::put(Member member, const Variant& value, host::Args args) {
    if (member == Member::Item) return setItem(value.toObject());
    if (window_) raiseUnknown(member);
    switch (member) {
        case Member::Fields:
            requiredState()->requireAlive();
            return setItemField(*state_, static_cast<std::uint32_t>(host::requiredArgument(args, 0).toInt32()), value);
        default:
            return putItem(requiredState(), member, value, Access::Safe, name_);
    }
}

host::Object makeSafeInspector(std::shared_ptr<HostCore> core) {
    return host::makeObject<SafeInspector>(std::move(core));
}

host::Object makeMapiUtils(std::shared_ptr<HostCore> core) {
    return host::makeObject<MapiUtils>(std::move(core));
}

}  // namespace lorvane::model
