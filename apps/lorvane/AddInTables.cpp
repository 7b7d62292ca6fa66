#include "AddInTables.h"

#include "host/LifecycleRoutines.h"
#include "respond/Routines.h"
#include "store/Routines.h"
#include "text/Routines.h"

namespace lorvane::cli {

automation::AddInTables addInTables() {
    return {{host::routines(), text::routines(), store::routines(), respond::routines(), host::lifecycleRoutines()},
            {host::globalValues(), store::globalValues()},
            host::lifecycleClasses()};
}

}  // namespace lorvane::cli
