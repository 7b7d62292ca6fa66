#pragma once

#include <vector>

#include "host/Variant.h"
#include "model/CommandBarTree.h"

namespace lorvane::automation {

/// The bars of a window as a list of records, with the numbers that the host itself uses. Each has `controls`, and so has each popup; a button has `faceId` and
/// `style` instead.
host::Variant barRecords(const std::vector<model::BarTree>& bars);

}  // namespace lorvane::automation
