#pragma once

#include <memory>

#include "model/AddressBook.h"
#include "model/ItemMembers.h"
#include "model/ItemState.h"
#include "model/ModelObject.h"

namespace lorvane::model {

/// The recipients of an item: Count, Item, Add, ResolveAll. With an argument, the recipient at that index. Their address entries are as for `makeAddressEntry`.
host::Object makeRecipients(const std::shared_ptr<ItemState>& item, Access access, host::Args args);

/// Someone's entry in the address book, or a one-off address. Through a safe wrapper it has its raw properties (`Fields`) and `SMTPAddress` beside.
host::Object makeAddressEntry(std::shared_ptr<HostCore> core, Access access, std::u16string name, std::u16string address, std::u16string type);

}  // namespace lorvane::model
