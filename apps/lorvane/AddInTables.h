#pragma once

#include "automation/AddInObjects.h"

namespace lorvane::cli {

/// The tables of the add-in's parts put together: what it has by name.
automation::AddInTables addInTables();

}  // namespace lorvane::cli
