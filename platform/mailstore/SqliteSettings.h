#pragma once

#include <memory>

#include "mailstore/MailStore.h"
#include "mailstore/SqliteDatabase.h"

namespace lorvane::mailstore {

/// The settings of a file that `openStoreFile` opened.
std::unique_ptr<SettingsStore> makeSqliteSettings(std::shared_ptr<SqliteDatabase> database);

}  // namespace lorvane::mailstore
