#include "model/ItemObject.h"

#include "model/Failures.h"
#include "model/HostCore.h"
#include "model/ItemMembers.h"
#include "model/SafeObjects.h"

namespace lorvane::model {

ItemObject::ItemObject(std::shared_ptr<ItemState> state) : ModelObject(state->sharedCore()), state_(std::move(state)) {}

host::Variant ItemObject::use(host::Member member, host::Args args) {
    return useItem(state_, member, args, Access::Bare, className());
}

void ItemObject::put(host::Member member, const host::Variant& value, host::Args) {
    putItem(state_, member, value, Access::Bare, className());
}

host::Subscription ItemObject::advise(std::weak_ptr<host::EventSink> sink) {
    return state_->events.advise(std::move(sink));
}

std::u16string_view ItemObject::className() const noexcept {
    return itemClassName(state_->head().itemClass);
}

host::Object makeItem(std::shared_ptr<ItemState> state) {
    return host::makeObject<ItemObject>(std::move(state));
}

const std::shared_ptr<ItemState>& itemStateOf(const host::Object& object) {
    if (const auto* item = host::implementation<ItemObject>(object)) return item->state();
    if (const auto* wrapper = host::implementation<SafeItem>(object)) return wrapper->requiredState();
    throw host::HostError(host::runtime_error::TypeMismatch);
}

}  // namespace lorvane::model
