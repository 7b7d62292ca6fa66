#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "mailstore/MailStore.h"

namespace lorvane::mailstore {

/// Display name of a private store that was given none.
inline constexpr std::u16string_view DefaultStoreName = u"Personal Folders";

/// Kinds of stores, as `StoreKind` numbers them.
namespace store_kind {
inline constexpr std::int32_t PrivateFile = 2;
inline constexpr std::int32_t PublicFolders = 5;
}  // namespace store_kind

/// The folders of a new store, without identities: the root first, which has the store's name, then those that lie in it. A private store has the default
/// folders, any other kind the root alone.
std::vector<FolderRecord> initialFolders(std::u16string_view storeName, std::int32_t kind);

/// A name as names are compared: folded code unit by code unit.
std::u16string foldedName(std::u16string_view name);

}  // namespace lorvane::mailstore
