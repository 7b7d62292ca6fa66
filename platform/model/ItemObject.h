#pragma once

#include "model/ItemState.h"
#include "model/ModelObject.h"

namespace lorvane::model {

/// An item as the host gives it: a mail, post, appointment, contact or task, by the class of its record.
///
/// Objects of the same item are the same object: they share its state, its events and their identity.
class ItemObject final : public ModelObject {
public:
    explicit ItemObject(std::shared_ptr<ItemState> state);

    void put(host::Member member, const host::Variant& value, host::Args args) override;
    host::Subscription advise(std::weak_ptr<host::EventSink> sink) override;
    std::u16string_view className() const noexcept override;
    const void* identity() const noexcept override { return state_.get(); }

    const std::shared_ptr<ItemState>& state() const noexcept { return state_; }

protected:
    host::Variant use(host::Member member, host::Args args) override;

private:
    std::shared_ptr<ItemState> state_;
};

host::Object makeItem(std::shared_ptr<ItemState> state);

/// The state behind an argument that must be an item, bare or in a safe wrapper; error 13 where it is none.
const std::shared_ptr<ItemState>& itemStateOf(const host::Object& object);

}  // namespace lorvane::model
