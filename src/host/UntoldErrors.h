#pragma once

#include <cstdint>

namespace lorvane::host {

/// Errors whose standard box could not be shown. Who runs the add-in without anybody before the screen asks here whether something failed unseen.
struct UntoldErrors {
    std::int32_t count = 0;
};

}  // namespace lorvane::host
