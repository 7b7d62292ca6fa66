#pragma once

#include "host/Object.h"

/// The add-in as a host loads it. A host needs nothing else of it.
namespace lorvane::host {

/// The name under which a host knows the add-in, and hands out its connection class.
inline constexpr const char16_t* addInProgId = u"Lorvane.Connect";

/// Makes the add-in's connection class. A host enters an apartment on its thread, calls `AddinInstance_OnConnection(Application, ConnectMode, AddInInst,
/// custom)` on it when it loads the add-in and `AddinInstance_OnDisconnection(RemoveMode, custom)` when it unloads it, both by name.
Object makeAddIn();

}  // namespace lorvane::host
