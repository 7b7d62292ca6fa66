#pragma once

#include <memory>
#include <string_view>

#include "host/Object.h"

namespace lorvane::model {

class HostCore;

/// The running application. Every handle on it is the same object.
host::Object makeApplication(std::shared_ptr<HostCore> core);
/// The "MAPI" name space of the session.
host::Object makeNameSpace(std::shared_ptr<HostCore> core);
/// The host's entry for the add-in.
host::Object makeAddInInst(std::shared_ptr<HostCore> core);
/// Where a run begins: objects by ProgID, and the services.
host::Object makeMachine(std::shared_ptr<HostCore> core);

/// The host's session as it is handed to a helper's session. Null where the object is another.
HostCore* sessionBehind(const host::Object& mapiObject) noexcept;

/// A new object by ProgID, any case: the helpers' and the recordset; error 429 for any other.
host::Object createByProgId(const std::shared_ptr<HostCore>& core, std::u16string_view progId);

}  // namespace lorvane::model
