#include "host/Object.h"

#include <algorithm>

#include "host/TextFunctions.h"
#include "host/Variant.h"

namespace lorvane::host {

namespace {

Args spanOf(std::initializer_list<Argument> args) noexcept {
    return {args.begin(), args.size()};
}

constexpr std::u16string_view noSuchMemberText = u"Object doesn't support this property or method: ";

}  // namespace

Subscription Dispatch::advise(std::weak_ptr<EventSink>) {
    throw HostError(runtime_error::NoSuchMember, std::u16string(noSuchMemberText).append(className()).append(u" has no events"));
}

std::optional<Member> Dispatch::memberNamed(std::u16string_view name) const {
    return findMember(name);
}

std::u16string_view Dispatch::memberText(Member member) const noexcept {
    return memberName(member);
}

void raiseNoSuchMember(std::u16string_view className, Member member) {
    std::u16string text(noSuchMemberText);
    text.append(className).append(u".").append(memberName(member));
    if (member >= Member::Count_) text += decimal(static_cast<std::int64_t>(member));
    throw HostError(runtime_error::NoSuchMember, std::move(text));
}

Dispatch& Object::required() const {
    if (!dispatch_) throw HostError(runtime_error::ObjectNotSet);
    return *dispatch_;
}

// Each use keeps a handle of its own: the member may drop the last other one, as an event handler does that sets its own variable to Nothing.

Variant Object::get(Member member, std::initializer_list<Argument> args) const {
    const Object held(&required());
    return held.dispatch_->get(member, spanOf(args));
}

void Object::put(Member member, const Variant& value, std::initializer_list<Argument> args) const {
    const Object held(&required());
    held.dispatch_->put(member, value, spanOf(args));
}

Variant Object::call(Member member, std::initializer_list<Argument> args) const {
    const Object held(&required());
    return held.dispatch_->call(member, spanOf(args));
}

Subscription Object::advise(std::weak_ptr<EventSink> sink) const {
    const Object held(&required());
    return held.dispatch_->advise(std::move(sink));
}

std::u16string Object::getText(Member member, std::initializer_list<Argument> args) const {
    return get(member, args).toText();
}

std::int32_t Object::getNumber(Member member, std::initializer_list<Argument> args) const {
    return get(member, args).toInt32();
}

bool Object::getBoolean(Member member, std::initializer_list<Argument> args) const {
    return get(member, args).toBoolean();
}

Object Object::getObject(Member member, std::initializer_list<Argument> args) const {
    return get(member, args).toObject();
}

bool operator==(const Object& a, const Object& b) noexcept {
    if (a.dispatch_ == b.dispatch_) return true;
    return a.dispatch_ && b.dispatch_ && a.dispatch_->identity() == b.dispatch_->identity();
}

struct EventSource::Connection {
    std::weak_ptr<EventSink> sink;
};

Subscription EventSource::advise(std::weak_ptr<EventSink> sink) {
    std::erase_if(connections_, [](const std::weak_ptr<Connection>& connection) { return connection.expired(); });
    auto connection = std::make_shared<Connection>(std::move(sink));
    connections_.push_back(connection);
    return Subscription(std::move(connection));
}

void EventSource::raise(Member event, Args args) {
    if (connections_.empty()) return;
    struct Told {
        // Not held: it would outlive its subscription and be heard by an event inside this one.
        std::weak_ptr<Connection> connection;
        std::shared_ptr<EventSink> sink;
    };
    std::vector<Told> told;
    for (const std::weak_ptr<Connection>& entry : connections_) {
        if (const auto connection = entry.lock())
            if (auto sink = connection->sink.lock()) told.push_back({entry, std::move(sink)});
    }
    // From here on nothing of this object is touched: a sink may drop the last handle on what owns it.
    for (const Told& one : told) {
        if (one.connection.expired()) continue;
        try {
            one.sink->onEvent(event, args);
        } catch (const HostError&) {
            // The host ignores the error of an event handler and tells the next one.
        }
    }
}

void EventSource::raise(Member event, std::initializer_list<Argument> args) {
    raise(event, spanOf(args));
}

bool EventSource::hasSinks() const noexcept {
    return std::ranges::any_of(connections_, [](const std::weak_ptr<Connection>& entry) {
        const auto connection = entry.lock();
        return connection && !connection->sink.expired();
    });
}

}  // namespace lorvane::host
