#pragma once

#include <cstdint>
#include <limits>
#include <string>

#include "host/HostError.h"
#include "host/TextFunctions.h"

/// The keys of wrappers: 16-bit numbers, written as decimal text.
namespace lorvane::host {

inline std::u16string keyText(std::int16_t key) {
    return decimal(key);
}

/// Error 6 behind 32767; the number stays.
inline void increment(std::int16_t& key) {
    if (key == std::numeric_limits<std::int16_t>::max()) throw HostError(runtime_error::Overflow);
    ++key;
}

}  // namespace lorvane::host
