#pragma once

#include <vector>

#include "host/Object.h"
#include "host/Routines.h"

/// The add-in's own names as objects: its routines, its process-wide values, its windows. Each looks up a table that is handed in and runs the row.
namespace lorvane::automation {

/// All tables of an add-in.
struct AddInTables {
    std::vector<host::RoutineTable> routines;
    std::vector<host::GlobalTable> globals;
    host::ClassTable classes;
};

/// `Modules`: the modules by name, each with its routines; a routine also by its name alone, on any module and on `Modules` itself. `New` makes an object of a
/// class. A call answers with the arguments as they stand afterwards.
host::Object makeModules(const AddInTables& tables);
/// `Globals`: the values by name, and the two routines of the settings.
host::Object makeGlobals(const AddInTables& tables);
/// `Forms`: the windows by name; naming one loads it.
host::Object makeForms();

/// The routines of the settings that `Globals` has.
host::RoutineTable settingsRoutines() noexcept;

}  // namespace lorvane::automation
