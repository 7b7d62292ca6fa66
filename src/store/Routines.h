#pragma once

#include "host/Routines.h"

namespace lorvane::store {

host::RoutineTable routines();  ///< the public routines of this folder's modules, by name
host::GlobalTable globalValues();

}  // namespace lorvane::store
