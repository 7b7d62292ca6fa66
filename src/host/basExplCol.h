#pragma once

#include <cstdint>
#include <memory>

#include "host/ExplorerWrap.h"
#include "host/WrapperCollection.h"

/// The wrappers of the host's Explorers.
namespace lorvane::host {

struct ExplorerWraps {
    WrapperCollection<ExplorerWrap> gExplorerWraps;
    std::int16_t gExplorerKey = 0;  ///< of the next wrapper; never used twice
};
ExplorerWraps& explorerWraps();

/// Wraps an Explorer and builds its bars. Error 6 when the keys are used up, behind everything else; a failure takes nothing back.
void AddExpl(const Object& explorer);
/// Takes the wrapper out of the collection and lets the caller's reference go. Error 1 where another wrapper stands under the key.
void KillExpl(std::int16_t key, std::shared_ptr<ExplorerWrap>& wrapper);

}  // namespace lorvane::host
