#pragma once

#include <memory>

#include "model/ItemMembers.h"
#include "model/ItemState.h"
#include "model/ModelObject.h"

namespace lorvane::model {

/// The attachments of an item: Count, Item, Add. Through a safe wrapper each has its raw properties (`Fields`) beside. With an argument, the one at that index.
host::Object makeAttachments(const std::shared_ptr<ItemState>& item, Access access, host::Args args);

}  // namespace lorvane::model
