#pragma once

#include "host/Routines.h"

namespace lorvane::respond {

host::RoutineTable routines();  ///< the public routines of this folder's modules, by name

}  // namespace lorvane::respond
