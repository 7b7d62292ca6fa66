#pragma once

namespace lorvane::support {

/// Tells threads apart: the same value within one thread, another one in every other that runs.
inline const void* thisThread() noexcept {
    thread_local const char place = 0;
    return &place;
}

}  // namespace lorvane::support
