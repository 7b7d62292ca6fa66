#include "instruments/Decorator.h"

#include <utility>

#include "instruments/PassedArguments.h"

namespace lorvane::instruments {

using host::Args;
using host::Member;
using host::Object;
using host::Variant;

namespace {

ObjectMap decorating(const std::shared_ptr<Tap>& tap) {
    return [tap](const Object& object) { return decorated(object, tap); };
}

/// Runs `use` with translated arguments; what it assigned by reference comes back also where it raised an error behind it.
template <class Run>
auto passing(PassedArguments& arguments, Run&& run) {
    try {
        if constexpr (std::is_void_v<decltype(run())>) {
            run();
            arguments.writeBack();
        } else {
            auto result = run();
            arguments.writeBack();
            return result;
        }
    } catch (const host::HostError&) {
        arguments.writeBack();
        throw;
    }
}

/// Stands between an object and the sink of a client, so that the client sees decorated objects.
class DecoratedSink final : public host::EventSink {
public:
    DecoratedSink(std::weak_ptr<host::EventSink> sink, std::shared_ptr<Tap> tap) : sink_(std::move(sink)), tap_(std::move(tap)) {}

    void onEvent(Member event, Args args) override {
        const std::shared_ptr<host::EventSink> sink = sink_.lock();
        if (!sink) return;
        PassedArguments arguments(args, decorating(tap_), &stripped);
        passing(arguments, [&] { sink->onEvent(event, arguments.args()); });
    }

private:
    std::weak_ptr<host::EventSink> sink_;
    std::shared_ptr<Tap> tap_;
};

/// The object holds the sink in front weakly, so the client's subscription keeps it. The connection is the later member: it goes first.
struct DecoratedConnection {
    std::shared_ptr<DecoratedSink> sink;
    host::Subscription connection;
};

class Decorated final : public host::Dispatch {
public:
    Decorated(Object inner, std::shared_ptr<Tap> tap) : inner_(std::move(inner)), tap_(std::move(tap)) {}

    const Object& inner() const noexcept { return inner_; }
    const Tap* tap() const noexcept { return tap_.get(); }

    Variant get(Member member, Args args) override {
        return use({behind(), UseKind::Get, member, args, nullptr}, [&](Args passed) { return behind().get(member, passed); });
    }

    void put(Member member, const Variant& value, Args args) override {
        use({behind(), UseKind::Put, member, args, &value}, [&](Args passed) {
            behind().put(member, mapped(value, &stripped), passed);
            return Variant();
        });
    }

    Variant call(Member member, Args args) override {
        return use({behind(), UseKind::Call, member, args, nullptr}, [&](Args passed) { return behind().call(member, passed); });
    }

    host::Subscription advise(std::weak_ptr<host::EventSink> sink) override {
        tap_->onAdvise(behind());
        auto connected = std::make_shared<DecoratedConnection>();
        connected->sink = std::make_shared<DecoratedSink>(std::move(sink), tap_);
        connected->connection = behind().advise(connected->sink);
        return host::Subscription(std::move(connected));
    }

    std::optional<Member> memberNamed(std::u16string_view name) const override { return behind().memberNamed(name); }
    std::u16string_view memberText(Member member) const noexcept override { return behind().memberText(member); }
    std::u16string_view className() const noexcept override { return behind().className(); }
    const void* identity() const noexcept override { return behind().identity(); }
    host::Dispatch& undecorated() noexcept override { return behind().undecorated(); }

private:
    host::Dispatch& behind() const noexcept { return *inner_.dispatch(); }

    template <class Run>
    Variant use(const Use& use, Run&& run) {
        return tap_->onUse(use, [&] {
            PassedArguments arguments(use.args, &stripped, decorating(tap_));
            return mapped(passing(arguments, [&] { return run(arguments.args()); }), decorating(tap_));
        });
    }

    Object inner_;
    std::shared_ptr<Tap> tap_;
};

}  // namespace

Object decorated(const Object& object, const std::shared_ptr<Tap>& tap) {
    if (!object) return object;
    const auto* outermost = dynamic_cast<const Decorated*>(object.dispatch());
    return outermost && outermost->tap() == tap.get() ? object : host::makeObject<Decorated>(object, tap);
}

Object stripped(const Object& object) {
    Object bare = object;
    while (const auto* outermost = dynamic_cast<const Decorated*>(bare.dispatch())) bare = Object(outermost->inner());
    return bare;
}

}  // namespace lorvane::instruments
