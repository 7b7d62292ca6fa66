#pragma once

#include <string>
#include <string_view>

#include "automation/AddInObjects.h"

namespace lorvane::automation {

/// The page with each of its tables as the door's own tables give it. A table stands between the lines `<!-- table: methods -->` and `<!-- end -->`; there are
/// methods, roots, user, globals and modules.
std::string withTables(std::string_view page, const AddInTables& tables);

}  // namespace lorvane::automation
