#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host/WrapperCollection.h"
#include "host/clsInspWrap.h"

/// The wrappers of the host's Inspectors.
namespace lorvane::host {

struct InspectorWraps {
    WrapperCollection<clsInspWrap> gInspectorWraps;
    std::int16_t gInspectorKey = 0;    ///< of the next wrapper; never used twice
    std::u16string lastOpenedSubject;  ///< of the mail that was opened last
};
InspectorWraps& inspectorWraps();

/// Wraps an Inspector with its item and builds its bar; gives the wrapper's key. Runs with errors ignored and takes nothing back.
std::u16string AddInsp(const Object& inspector);
/// Takes the wrapper out of the collection and lets the caller's reference go; nothing where another wrapper stands under the key. Runs with errors ignored.
void KillInsp(std::int16_t key, std::shared_ptr<clsInspWrap>& wrapper);

}  // namespace lorvane::host
