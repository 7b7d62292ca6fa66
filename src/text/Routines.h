#pragma once

#include "host/Routines.h"

namespace lorvane::text {

host::RoutineTable routines();  ///< the public routines of this folder's modules, by name

}  // namespace lorvane::text
