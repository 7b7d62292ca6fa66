#pragma once

#include <string_view>

#include "host/HostError.h"

namespace lorvane::mailstore {

/// The errors that every kind of store raises in the same words.

host::HostError folderNotFound();                           ///< host_failure::NotFound
host::HostError itemNotFound();                             ///< host_failure::NotFound
host::HostError itemChangedMeanwhile();                     ///< host_failure::ObjectChanged
host::HostError folderNameTaken(std::u16string_view name);  ///< host_failure::Failed
host::HostError rootCannotBeRemoved();                      ///< host_failure::AccessDenied
/// host_failure::Failed: what lies in `source` (a file in quotes, or "the store") cannot be what was written there; `detail` tells which part.
host::HostError storeDamaged(std::u16string_view source, std::u16string_view detail);

}  // namespace lorvane::mailstore
