#pragma once

#include "host/Routines.h"

/// The routines and classes of the add-in's lifecycle by name.
namespace lorvane::host {

RoutineTable lifecycleRoutines();
ClassTable lifecycleClasses();

}  // namespace lorvane::host
