#pragma once

#include <atomic>
#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/HostError.h"
#include "host/Member.h"

namespace lorvane::host {

class Argument;
class Dispatch;
class Variant;

using Args = std::span<const Argument>;
using Bytes = std::vector<std::uint8_t>;

/// A point in local time as automation counts it: days since 1899-12-30 with the time of day as fraction.
struct DateTime {
    double days = 0;
    auto operator<=>(const DateTime&) const = default;
};

/// Receives the events of an object it was advised on.
class EventSink {
public:
    virtual ~EventSink() = default;
    /// `event` is the event's name; an argument by reference (`Cancel`) may be assigned.
    virtual void onEvent(Member event, Args args) = 0;
};

/// Keeps an advised sink connected; dropping it, or `reset`, disconnects at once, also from inside an event.
class Subscription {
public:
    Subscription() noexcept = default;
    explicit Subscription(std::shared_ptr<void> connection) noexcept : connection_(std::move(connection)) {}
    void reset() noexcept { connection_.reset(); }
    explicit operator bool() const noexcept { return connection_ != nullptr; }

private:
    std::shared_ptr<void> connection_;
};

/// What a platform implements: one object that is reached late, by member.
///
/// Every function may raise HostError. An unknown member is error 438 and names object and member.
class Dispatch {
public:
    Dispatch() noexcept = default;
    Dispatch(const Dispatch&) = delete;
    Dispatch& operator=(const Dispatch&) = delete;

    virtual Variant get(Member member, Args args) = 0;
    virtual void put(Member member, const Variant& value, Args args) = 0;
    virtual Variant call(Member member, Args args) = 0;

    /// Connects a sink to the object's events. The object does not keep the sink alive, but holds it while it runs. Error 438 where there are no events.
    virtual Subscription advise(std::weak_ptr<EventSink> sink);

    /// The number of a member named from outside, any case; empty where the object cannot have it. Windows and controls answer for their own.
    virtual std::optional<Member> memberNamed(std::u16string_view name) const;

    /// The name of one of the object's members, as logs show it: `memberNamed` the other way. "?" for a number it does not know.
    virtual std::u16string_view memberText(Member member) const noexcept;

    /// The class as messages and the recorder name it, as "MailItem".
    virtual std::u16string_view className() const noexcept = 0;

    /// Two handles are the same object when their identities are equal; decorators give that of what they decorate.
    virtual const void* identity() const noexcept { return this; }
    /// The object behind all decorators.
    virtual Dispatch& undecorated() noexcept { return *this; }

    void addReference() noexcept { references_.fetch_add(1, std::memory_order_relaxed); }
    void release() noexcept {
        if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) dispose();
    }

protected:
    virtual ~Dispatch() = default;
    /// Runs when the last handle goes. Objects that live inside others (a window's controls) override it with nothing.
    virtual void dispose() noexcept { delete this; }

private:
    std::atomic<std::int32_t> references_{0};
};

/// Raises error 438 in the words every platform uses: "Object doesn't support this property or method: Class.Member".
[[noreturn]] void raiseNoSuchMember(std::u16string_view className, Member member);

/// A counted handle on one platform object; empty means Nothing.
///
/// Using a member of Nothing raises error 91.
class Object {
public:
    Object() noexcept = default;
    Object(std::nullptr_t) noexcept {}
    explicit Object(Dispatch* dispatch) noexcept : dispatch_(dispatch) {
        if (dispatch_) dispatch_->addReference();
    }
    Object(const Object& other) noexcept : Object(other.dispatch_) {}
    Object(Object&& other) noexcept : dispatch_(std::exchange(other.dispatch_, nullptr)) {}
    Object& operator=(Object other) noexcept {
        std::swap(dispatch_, other.dispatch_);
        return *this;
    }
    ~Object() {
        if (dispatch_) dispatch_->release();
    }

    explicit operator bool() const noexcept { return dispatch_ != nullptr; }
    Dispatch* dispatch() const noexcept { return dispatch_; }

    Variant get(Member member, std::initializer_list<Argument> args = {}) const;
    void put(Member member, const Variant& value, std::initializer_list<Argument> args = {}) const;
    Variant call(Member member, std::initializer_list<Argument> args = {}) const;
    Subscription advise(std::weak_ptr<EventSink> sink) const;

    std::u16string getText(Member member, std::initializer_list<Argument> args = {}) const;
    std::int32_t getNumber(Member member, std::initializer_list<Argument> args = {}) const;
    bool getBoolean(Member member, std::initializer_list<Argument> args = {}) const;
    Object getObject(Member member, std::initializer_list<Argument> args = {}) const;

    friend bool operator==(const Object& a, const Object& b) noexcept;

private:
    Dispatch& required() const;  // error 91 for Nothing
    Dispatch* dispatch_ = nullptr;
};

/// Makes a platform object and the first handle on it.
template <class T, class... A>
Object makeObject(A&&... args) {
    return Object(new T(std::forward<A>(args)...));
}

/// The object behind a handle as the class T that implements it, through any decorators; null where it is another class or Nothing.
template <class T>
T* implementation(const Object& object) noexcept {
    return object ? dynamic_cast<T*>(&object.dispatch()->undecorated()) : nullptr;
}

/// The sinks of one object. Raising walks a copy and holds all sinks of its start alive until each was told, and with a sink what owns it where the two share
/// their count; a sink that is unadvised meanwhile is not called any more. One whose owner was let go by all others hears this event and nothing after it.
/// The HostError of a sink is ignored and the next one is told, as the host does. The source itself may end inside its own event.
class EventSource {
public:
    Subscription advise(std::weak_ptr<EventSink> sink);
    void raise(Member event, Args args);
    void raise(Member event, std::initializer_list<Argument> args = {});
    bool hasSinks() const noexcept;

private:
    struct Connection;
    std::vector<std::weak_ptr<Connection>> connections_;
};

}  // namespace lorvane::host
