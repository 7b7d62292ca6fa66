#pragma once

#include <memory>

#include "host/Object.h"
#include "instruments/Tap.h"

/// Objects with an instrument in front. A decorated object is the same object (identity, class, members), and what comes out of it is decorated too: results,
/// assigned variables, the arguments of its events. What goes into it is stripped first, so that the platform sees its own objects only.
namespace lorvane::instruments {

/// The object with `tap` in front; as it is where that tap stands in front already, and for Nothing. Instruments stack. The decorated objects keep the tap
/// alive.
host::Object decorated(const host::Object& object, const std::shared_ptr<Tap>& tap);

/// The object without any instrument in front.
host::Object stripped(const host::Object& object);

}  // namespace lorvane::instruments
