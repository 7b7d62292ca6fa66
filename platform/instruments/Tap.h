#pragma once

#include <atomic>
#include <cstddef>
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

    /// Runs what is done at the decorated object's side beside its uses: connecting a sink, asking for a name.
    virtual void atObject(const std::function<void()>& act) { act(); }
    /// Lets go of an object that is not decorated any more, or of a connection to one. They go as they end here unless they are kept.
    virtual void letGo(host::Object) noexcept {}
    virtual void letGo(host::Subscription) noexcept {}
    /// How sinks that the calling client connects are told of events: at once and with their owners held, where there is no such way.
    using ClientSide = std::function<void(const std::function<void()>& act)>;
    virtual ClientSide clientSide() { return nullptr; }

    /// How many decorated objects with this tap in front there are. What goes into the platform is stripped, so it is the client that holds them: a client that
    /// has let go of everything leaves none behind. An object counts once for each time it came out.
    std::size_t held() const noexcept { return held_; }

private:
    friend class Decorated;
    std::atomic<std::size_t> held_ = 0;
};

}  // namespace lorvane::instruments
