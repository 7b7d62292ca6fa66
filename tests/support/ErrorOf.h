#pragma once

#include <gtest/gtest.h>

#include "host/HostError.h"

namespace lorvane::support {

/// The error that an act ends with; the test fails where it goes through.
template <class Act>
host::HostError errorOf(Act&& act) {
    try {
        act();
    } catch (const host::HostError& error) {
        return error;
    }
    ADD_FAILURE() << "no error";
    return host::HostError(0, u"");
}

/// The number of the error that an act ends with; 0 where it goes through.
template <class Act>
std::int32_t errorNumberOf(Act&& act) {
    try {
        act();
    } catch (const host::HostError& error) {
        return error.number();
    }
    return 0;
}

}  // namespace lorvane::support
