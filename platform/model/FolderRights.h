#pragma once

#include <cstdint>

namespace lorvane::model {

/// What the user may do with the items of a folder. Each right holds those before it.
enum class FolderRights : std::uint8_t {
    None,  ///< items are not even counted
    Read,  ///< items are read
    Add,   ///< new items are created, known ones only read
    All,
};

}  // namespace lorvane::model
