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
class DecoratedSink final : public host::EventSink, public std::enable_shared_from_this<DecoratedSink> {
public:
    DecoratedSink(std::weak_ptr<host::EventSink> sink, std::shared_ptr<Tap> tap) : sink_(std::move(sink)), tap_(std::move(tap)), client_(tap_->clientSide()) {}

    void onEvent(Member event, Args args) override {
        const auto self = shared_from_this();  // the client may end the connection meanwhile
        if (client_)
            client_([&] { tell(event, args); });
        else
            tell(event, args);
    }

    /// What the platform is given: it lives as long as the connection does. Holding it holds the client's sink too, where both are on one side.
    std::weak_ptr<host::EventSink> front() {
        const std::shared_ptr<host::EventSink> client = client_ ? nullptr : sink_.lock();
        return client ? std::shared_ptr<host::EventSink>(client, this) : shared_from_this();
    }
    /// At the client's side: it hears nothing any more, though an event may be on its way.
    void disconnect() noexcept { isConnected_ = false; }

private:
    void tell(Member event, Args args) {
        const std::shared_ptr<host::EventSink> sink = isConnected_ ? sink_.lock() : nullptr;
        if (!sink) return;
        PassedArguments arguments(args, decorating(tap_), &stripped);
        passing(arguments, [&] { sink->onEvent(event, arguments.args()); });
    }

    std::weak_ptr<host::EventSink> sink_;
    std::shared_ptr<Tap> tap_;
    Tap::ClientSide client_;
    bool isConnected_ = true;  // touched at the client's side only
};

/// The object holds the sink in front weakly, so the client's subscription keeps it.
struct DecoratedConnection {
    std::shared_ptr<Tap> tap;
    std::shared_ptr<DecoratedSink> sink;
    host::Subscription connection;

    DecoratedConnection(std::shared_ptr<Tap> usedTap, std::weak_ptr<host::EventSink> client)
        : tap(std::move(usedTap)), sink(std::make_shared<DecoratedSink>(std::move(client), tap)) {}
    DecoratedConnection(const DecoratedConnection&) = delete;
    DecoratedConnection& operator=(const DecoratedConnection&) = delete;
    ~DecoratedConnection() {
        sink->disconnect();
        tap->letGo(std::move(connection));
    }
};

}  // namespace

class Decorated final : public host::Dispatch {
public:
    Decorated(Object inner, std::shared_ptr<Tap> tap)
        : inner_(std::move(inner)), tap_(std::move(tap)), className_(behind().className()), identity_(behind().identity()) {
        ++tap_->held_;
    }
    ~Decorated() override {
        --tap_->held_;
        tap_->letGo(std::move(inner_));
    }

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
        auto connected = std::make_shared<DecoratedConnection>(tap_, std::move(sink));
        tap_->atObject([&] { connected->connection = behind().advise(connected->sink->front()); });
        return host::Subscription(std::move(connected));
    }

    std::optional<Member> memberNamed(std::u16string_view name) const override {
        std::optional<Member> named;
        tap_->atObject([&] { named = behind().memberNamed(name); });
        return named;
    }
    std::u16string_view memberText(Member member) const noexcept override { return behind().memberText(member); }
    std::u16string_view className() const noexcept override { return className_; }
    const void* identity() const noexcept override { return identity_; }
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
    // Both stay as they are for as long as the object lives; kept, so that no other thread asks the object itself.
    std::u16string_view className_;
    const void* identity_;
};

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
