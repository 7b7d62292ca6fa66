#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/HostError.h"
#include "host/Object.h"
#include "host/Variant.h"

namespace lorvane::instruments::test {

/// A platform object that knows nothing of instruments, as every one of a host.
///
/// It has a Subject, an Inspector and Parent (objects), Items (an array of arrays of objects), a list that grows by Add, MAPIOBJECT (gives its first argument
/// back), Move, which assigns its arguments by reference, a Close event with (item, Cancel), and one member of its own: Secret.
class FakeItem final : public host::Dispatch {
public:
    static constexpr auto secret = static_cast<host::Member>(host::platformMembers + 0x321);
    static inline int alive = 0;  ///< how many there are

    explicit FakeItem(std::u16string_view className = u"FakeItem") : className_(className) { ++alive; }

    std::u16string_view className() const noexcept override { return className_; }
    std::optional<host::Member> memberNamed(std::u16string_view name) const override;
    std::u16string_view memberText(host::Member member) const noexcept override;
    host::Variant get(host::Member member, host::Args args) override;
    void put(host::Member member, const host::Variant& value, host::Args args) override;
    host::Variant call(host::Member member, host::Args args) override;
    host::Subscription advise(std::weak_ptr<host::EventSink> sink) override { return events.advise(std::move(sink)); }

    host::EventSource events;
    host::Object child, parent;
    host::Variant subject = u"first";
    std::vector<host::Object> added;
    std::vector<host::Object> seen;  ///< every object that came in as an argument or value

    void letGo();  ///< forgets what it and its child were given, since that may be they themselves

protected:
    ~FakeItem() override { --alive; }

private:
    void see(const host::Variant& value);
    host::Variant use(host::Member member, host::Args args);
    std::u16string className_;
};

/// What a test's client hears.
class FakeSink final : public host::EventSink {
public:
    void onEvent(host::Member event, host::Args args) override { heard(event, args); }
    std::function<void(host::Member, host::Args)> heard = [](host::Member, host::Args) {};
};

/// The number of the HostError that `act` raises, 0 for none.
template <class Act>
std::int32_t errorOf(Act&& act) {
    try {
        act();
    } catch (const host::HostError& error) {
        return error.number();
    }
    return 0;
}

}  // namespace lorvane::instruments::test
