#pragma once

#include <functional>

#include "host/Object.h"
#include "host/Variant.h"

namespace lorvane::instruments {

enum class UseKind { Get, Put, Call };

/// One use of one member, as the caller made it.
struct Use {
    host::Dispatch& object;  ///< what is decorated, not the decorator
    UseKind kind;
    host::Member member;
    host::Args args;
    const host::Variant* value;  ///< what is put; null for the other kinds
};

/// What an instrument does at each use of a decorated object.
class Tap {
public:
    Tap() = default;
    Tap(const Tap&) = delete;
    Tap& operator=(const Tap&) = delete;
    virtual ~Tap() = default;

    /// Runs in place of the use. `proceed` makes it and gives its result; an instrument that raises instead keeps it from happening.
    virtual host::Variant onUse(const Use& use, const std::function<host::Variant()>& proceed) = 0;
    /// Runs in front of connecting a sink; raises to refuse it.
    virtual void onAdvise(host::Dispatch&) {}
};

}  // namespace lorvane::instruments
