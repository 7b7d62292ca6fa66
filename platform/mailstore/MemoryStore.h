#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "mailstore/EntryIds.h"
#include "mailstore/MailStore.h"

namespace lorvane::mailstore {

/// A store that lives as long as the object. `kind` is the `StoreKind`: a private one (2) starts with the default folders, any other with its root.
/// Without an id the store takes the next of a row that is the same in every run.
std::unique_ptr<MailStore> makeMemoryStore(std::u16string name, std::int32_t kind, std::optional<StoreId> id = std::nullopt);

/// Settings that live as long as the object.
std::unique_ptr<SettingsStore> makeMemorySettings();

}  // namespace lorvane::mailstore
