#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "host/Object.h"
#include "host/Variant.h"

namespace lorvane::host {

/// A variable with events: holds an object of the platform, and hears of that object's events for as long as it holds it.
///
///     WithEvents m_objExpl;
///     m_objExpl.on(Member::Close, [this](Args) { m_objExpl_Close(); });
///     m_objExpl.set(explorer, shared_from_this());
///
/// A handler may let go of the variable, and of what the variable is a part of: no event reaches it from then on.
class WithEvents {
public:
    using Handler = std::function<void(Args)>;

    WithEvents() : sink_(std::make_unique<Sink>()) {}
    WithEvents(const WithEvents&) = delete;
    WithEvents& operator=(const WithEvents&) = delete;

    /// Tells the handler of an event, once for each. Events without one are no matter.
    void on(Member event, Handler handler) { sink_->handlers.emplace_back(event, std::move(handler)); }

    /// Takes another object. Error 438 for one that has no events; then the variable stays as it was.
    /// The variable's owner is kept alive while an event is told: one that was let go meanwhile still hears that event, and nothing after it.
    void set(Object object, const std::shared_ptr<void>& owner) {
        Subscription subscription = object ? object.advise(std::shared_ptr<EventSink>(owner, sink_.get())) : Subscription();
        subscription_ = std::move(subscription);
        object_ = std::move(object);
    }
    void reset() noexcept {
        subscription_.reset();
        object_ = {};
    }

    const Object& get() const noexcept { return object_; }
    explicit operator bool() const noexcept { return static_cast<bool>(object_); }

private:
    struct Sink final : EventSink {
        std::vector<std::pair<Member, Handler>> handlers;
        void onEvent(Member event, Args args) override {
            for (const auto& [handled, handler] : handlers)
                if (handled == event) handler(args);
        }
    };

    std::unique_ptr<Sink> sink_;
    Subscription subscription_;
    Object object_;
};

}  // namespace lorvane::host
