#pragma once

#include <memory>

#include "model/ItemState.h"
#include "model/ModelObject.h"

namespace lorvane::model {

/// The named text fields of an item: Count, Item, Find, Add; each has Name and Value. With an argument, the field of that name or index.
host::Object makeUserProperties(const std::shared_ptr<ItemState>& item, host::Args args);

}  // namespace lorvane::model
