#pragma once

#include <memory>
#include <string_view>

#include "model/ItemState.h"
#include "model/ModelObject.h"

namespace lorvane::model {

/// A safe wrapper: set its `Item`, then use it like the item; raw properties stand beside. Members raise 0x80004005 while it has no item.
/// Around an Inspector it has the Inspector's `WordEditor` and nothing else.
class SafeItem final : public ModelObject {
public:
    SafeItem(std::shared_ptr<HostCore> core, std::u16string_view name) : ModelObject(std::move(core)), name_(name) {}

    void put(host::Member member, const host::Variant& value, host::Args args) override;
    std::u16string_view className() const noexcept override { return name_; }

    const std::shared_ptr<ItemState>& requiredState() const;

protected:
    host::Variant use(host::Member member, host::Args args) override;

private:
    host::Variant sender() const;
    host::Variant useWindow(host::Member member) const;
    void setItem(const host::Object& target);

    std::u16string_view name_;
    std::shared_ptr<ItemState> state_;
    host::Object window_;  ///< an Inspector, in the place of an item
};

/// The editor of an open item: set its `Item` to the Inspector; `SelText`, `Text`, and the Inspector's own members.
host::Object makeSafeInspector(std::shared_ptr<HostCore> core);
/// Made only to be told to clean up.
host::Object makeMapiUtils(std::shared_ptr<HostCore> core);

}  // namespace lorvane::model
