#pragma once

#include <functional>
#include <memory>

#include "host/Object.h"

namespace lorvane::instruments {

class Mailbox;

/// Carries the use of one thread's objects over to that thread, so that others can use them like their own: members, events, and what comes out of them.
///
///     Marshal marshal;                                              // on the host's thread
///     const auto pump = desktop.onPump([&] { marshal.serve(); });   // the host's event pump serves the others
///     …
///     ApartmentScope scope(marshalled);                             // on another thread; `marshalled` is marshal.carried(machine)
///
/// A thread that waits for the host serves the host's events meanwhile, and the host that waits for a sink of the thread serves its calls. An object that is
/// let go of by another thread goes at the host's next serving. Objects of the other thread must not be handed to the host, but for sinks.
class Marshal {
public:
    /// Over the objects of the calling thread.
    Marshal();

    /// The object for other threads; on the objects' own thread it is used at once.
    host::Object carried(const host::Object& object) const;

    /// Runs what other threads wait for. On the objects' thread.
    void serve() const;
    /// Serves until `isOver`, which is asked behind each call and each `wake`: for waits of the objects' thread.
    void serveUntil(const std::function<bool()>& isOver) const;
    void wake() const noexcept;  ///< from any thread

private:
    std::shared_ptr<Mailbox> home_;
};

}  // namespace lorvane::instruments
