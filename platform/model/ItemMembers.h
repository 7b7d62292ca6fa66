#pragma once

#include <memory>
#include <string_view>

#include "host/Variant.h"
#include "model/ItemState.h"

/// The members of items: which class has which, and what each does. The host's objects and the safe wrappers share them.
namespace lorvane::model {

/// Who uses an item: the host's own object, or a safe wrapper, which has more members.
enum class Access { Bare, Safe };

/// The class name of items by their item class: "MailItem", "PostItem" …
std::u16string_view itemClassName(std::int32_t itemClass) noexcept;

/// True where an item of this class has the member.
bool hasItemMember(const ItemState& item, host::Member member, Access access) noexcept;

/// Reads or calls a member that `hasItemMember` allows; error 438 under `className` for one that it does not.
host::Variant useItem(const std::shared_ptr<ItemState>& item, host::Member member, host::Args args, Access access, std::u16string_view className);
void putItem(const std::shared_ptr<ItemState>& item, host::Member member, const host::Variant& value, Access access, std::u16string_view className);

}  // namespace lorvane::model
