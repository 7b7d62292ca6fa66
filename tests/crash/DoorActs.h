#pragma once

#include <cstdint>

#include "crash/CommandsUnderTest.h"
#include "crash/DoorPlan.h"

namespace lorvane::crash {

/// What a client does in one session on a store that `prepareStore` made: mails are written, found again, changed, copied, moved and deleted, and templates
/// inserted by the chooser. All by the round's number, which stands in what it writes.
DoorPlan planOfRound(const Program& program, const Items& before, std::uint32_t round);

}  // namespace lorvane::crash
