#pragma once

#include <memory>

#include "host/Object.h"

namespace lorvane::model {

class HostCore;

/// The helper's session: shares the host's logon through `MAPIOBJECT`, or logs on by itself; then gives folders whose items are read straight from their heads.
host::Object makeRdoSession(std::shared_ptr<HostCore> core);

}  // namespace lorvane::model
