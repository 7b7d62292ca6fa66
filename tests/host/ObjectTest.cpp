#include "host/Object.h"

#include <gtest/gtest.h>

#include <functional>

#include "host/Variant.h"

namespace lorvane::host {
namespace {

std::int32_t numberOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const HostError& error) {
        return error.number();
    }
    return 0;
}

/// An object with one property, events, and a count of those alive.
class Item : public Dispatch {
public:
    static inline int alive = 0;
    EventSource events;
    Variant subject = u"first";

    Item() { ++alive; }
    ~Item() override { --alive; }

    Variant get(Member member, Args args) override {
        if (member == Member::Items) return requiredArgument(args, 0);
        if (member != Member::Text) raiseNoSuchMember(className(), member);
        return subject;
    }
    void put(Member member, const Variant& value, Args) override {
        if (member != Member::Text) raiseNoSuchMember(className(), member);
        subject = value;
    }
    Variant call(Member member, Args args) override {
        if (member != Member::Update) raiseNoSuchMember(className(), member);
        events.raise(Member::Update, args);
        return Variant();
    }
    Subscription advise(std::weak_ptr<EventSink> sink) override { return events.advise(std::move(sink)); }
    std::u16string_view className() const noexcept override { return u"Item"; }
};

class Silent : public Dispatch {
public:
    Variant get(Member member, Args) override { raiseNoSuchMember(className(), member); }
    void put(Member member, const Variant&, Args) override { raiseNoSuchMember(className(), member); }
    Variant call(Member member, Args) override { raiseNoSuchMember(className(), member); }
    std::u16string_view className() const noexcept override { return u"Silent"; }
};

/// Passes everything on, as a recorder does.
class Decorator : public Silent {
public:
    explicit Decorator(Object inner) : inner_(std::move(inner)) {}
    const void* identity() const noexcept override { return inner_.dispatch()->identity(); }
    Dispatch& undecorated() noexcept override { return inner_.dispatch()->undecorated(); }

private:
    Object inner_;
};

class Listener : public EventSink {
public:
    explicit Listener(std::function<void(Member, Args)> handler) : handler_(std::move(handler)) {}
    void onEvent(Member event, Args args) override { handler_(event, args); }

private:
    std::function<void(Member, Args)> handler_;
};

std::shared_ptr<Listener> listener(std::function<void()> handler) {
    return std::make_shared<Listener>([handler = std::move(handler)](Member, Args) { handler(); });
}

TEST(Object, LivesAsLongAsItsHandles) {
    ASSERT_EQ(Item::alive, 0);
    Object first = makeObject<Item>();
    Object second = first;
    first = nullptr;
    EXPECT_EQ(Item::alive, 1);
    const Object third = std::move(second);
    EXPECT_FALSE(second);
    EXPECT_TRUE(third);
    second = third;
    EXPECT_EQ(Item::alive, 1);
    EXPECT_EQ(second, third);
}

TEST(Object, UsingNothingIsError91) {
    const Object nothing;
    EXPECT_EQ(numberOf([&] { nothing.get(Member::Text); }), 91);
    EXPECT_EQ(numberOf([&] { nothing.put(Member::Text, u"x"); }), 91);
    EXPECT_EQ(numberOf([&] { nothing.call(Member::Update); }), 91);
    EXPECT_EQ(numberOf([&] { nothing.advise({}); }), 91);
}

TEST(Object, ReadsAndWritesMembersWithConversion) {
    const Object item = makeObject<Item>();
    EXPECT_EQ(item.getText(Member::Text), u"first");
    item.put(Member::Text, 7);
    EXPECT_EQ(item.getText(Member::Text), u"7");
    EXPECT_EQ(item.getNumber(Member::Text), 7);
    EXPECT_TRUE(item.getBoolean(Member::Text));
    item.put(Member::Text, item);
    EXPECT_EQ(item.getObject(Member::Text), item);
    item.put(Member::Text, Variant());
    EXPECT_EQ(item.getText(Member::Items, {u"argument"}), u"argument");
    EXPECT_EQ(numberOf([&] { item.get(Member::Items); }), 449);
}

TEST(Object, AnUnknownMemberIsError438AndNamesObjectAndMember) {
    const Object item = makeObject<Item>();
    try {
        item.get(Member::FolderExists);
        FAIL() << "no error";
    } catch (const HostError& error) {
        EXPECT_EQ(error.number(), 438);
        EXPECT_EQ(error.description(), u"Object doesn't support this property or method: Item.FolderExists");
    }
    try {
        raiseNoSuchMember(u"Item", Member{platformMembers});
    } catch (const HostError& error) {
        EXPECT_EQ(error.description(), u"Object doesn't support this property or method: Item.?4096");
    }
}

TEST(Object, WithoutEventsCannotBeAdvised) {
    const auto sink = listener([] {});
    EXPECT_EQ(numberOf([&] { makeObject<Silent>().advise(sink); }), 438);
}

TEST(Object, FindsMembersOfTheTableByName) {
    const Object item = makeObject<Item>();
    EXPECT_EQ(item.dispatch()->memberNamed(u"text"), Member::Text);
    EXPECT_EQ(item.dispatch()->memberNamed(u"NotAMember"), std::nullopt);
}

TEST(Object, KeepsItsIdentityBehindDecorators) {
    const Object item = makeObject<Item>();
    const Object other = makeObject<Item>();
    const Object decorated = makeObject<Decorator>(makeObject<Decorator>(item));
    EXPECT_EQ(decorated, item);
    EXPECT_NE(item, other);
    EXPECT_NE(item, Object());
    EXPECT_EQ(Object(), Object());
    EXPECT_EQ(implementation<Item>(decorated), implementation<Item>(item));
    EXPECT_EQ(implementation<Silent>(item), nullptr);
    EXPECT_EQ(implementation<Item>(Object()), nullptr);
}

TEST(EventSource, TellsEverySinkInOrderWithTheArguments) {
    EventSource source;
    std::u16string heard;
    const auto first = std::make_shared<Listener>([&](Member event, Args args) { heard.append(memberName(event)).append(argumentAt(args, 0).toText()); });
    const auto second = listener([&] { heard += u"!"; });
    const Subscription one = source.advise(first);
    const Subscription two = source.advise(second);
    source.raise(Member::Update, {u"x"});
    EXPECT_EQ(heard, u"Updatex!");
}

TEST(EventSource, ArgumentsByReferenceComeBack) {
    EventSource source;
    const auto sink = std::make_shared<Listener>([](Member, Args args) { args[0].assign(true); });
    const Subscription subscription = source.advise(sink);
    Variant cancel = false;
    source.raise(Member::Update, {Argument::byReference(cancel)});
    EXPECT_TRUE(cancel.toBoolean());
}

TEST(EventSource, AnUnadvisedSinkIsSilentAtOnce) {
    EventSource source;
    int heard = 0;
    const auto sink = listener([&] { ++heard; });
    Subscription subscription = source.advise(sink);
    source.raise(Member::Update);
    subscription.reset();
    source.raise(Member::Update);
    EXPECT_EQ(heard, 1);
    EXPECT_FALSE(source.hasSinks());
}

TEST(EventSource, ASinkUnadvisedByAnEarlierOneIsNotTold) {
    EventSource source;
    int heard = 0;
    Subscription later;
    const auto first = listener([&] { later.reset(); });
    const auto second = listener([&] { ++heard; });
    const Subscription subscription = source.advise(first);
    later = source.advise(second);
    source.raise(Member::Update);
    EXPECT_EQ(heard, 0);
}

TEST(EventSource, ASinkThatUnadvisesItselfIsNotToldByAnEventInside) {
    EventSource source;
    int heard = 0;
    Subscription own;
    const auto sink = listener([&] {
        ++heard;
        own.reset();
        source.raise(Member::Update);
    });
    own = source.advise(sink);
    source.raise(Member::Update);
    EXPECT_EQ(heard, 1);
}

TEST(EventSource, ASinkAdvisedMeanwhileHearsTheNextEventOnly) {
    EventSource source;
    int heard = 0;
    Subscription later;
    const auto second = listener([&] { ++heard; });
    const auto first = listener([&] {
        if (!later) later = source.advise(second);
    });
    const Subscription subscription = source.advise(first);
    source.raise(Member::Update);
    EXPECT_EQ(heard, 0);
    source.raise(Member::Update);
    EXPECT_EQ(heard, 1);
}

/// Ends itself in its own event, as a wrapper does when its window closes.
class Wrapper : public EventSink {
public:
    Wrapper(std::shared_ptr<Wrapper>& owner, bool& survived) : owner_(owner), survived_(survived) {}
    Subscription subscription;

    void onEvent(Member, Args) override {
        owner_.reset();
        text_ += u" told";
        survived_ = text_ == u"still told";
    }

private:
    std::shared_ptr<Wrapper>& owner_;
    bool& survived_;
    std::u16string text_ = u"still";
};

TEST(EventSource, ASinkWhoseOwnerDropsItInsideItsEventRunsToTheEnd) {
    EventSource source;
    bool survived = false;
    std::shared_ptr<Wrapper> owner;
    owner = std::make_shared<Wrapper>(owner, survived);
    owner->subscription = source.advise(owner);
    source.raise(Member::Update);
    EXPECT_TRUE(survived);
    EXPECT_EQ(owner, nullptr);
    EXPECT_FALSE(source.hasSinks());
}

TEST(EventSource, MayDieInsideItsOwnEvent) {
    int heard = 0;
    {
        auto source = std::make_unique<EventSource>();
        const auto first = listener([&] {
            ++heard;
            source.reset();
        });
        const auto second = listener([&] { ++heard; });
        const Subscription one = source->advise(first);
        const Subscription two = source->advise(second);
        source->raise(Member::Update);
    }
    EXPECT_EQ(heard, 2);
}

TEST(EventSource, TheObjectStaysWhileItsOwnCallDropsTheLastHandle) {
    Object item = makeObject<Item>();
    const auto sink = listener([&] { item = nullptr; });
    const Subscription subscription = item.advise(sink);
    item.call(Member::Update);
    EXPECT_FALSE(item);
    EXPECT_EQ(Item::alive, 0);
}

TEST(EventSource, ADeadSinkIsPassedOver) {
    EventSource source;
    auto sink = listener([] { FAIL() << "a dead sink was told"; });
    const Subscription subscription = source.advise(sink);
    EXPECT_TRUE(source.hasSinks());
    sink.reset();
    EXPECT_FALSE(source.hasSinks());
    source.raise(Member::Update);
}

TEST(EventSource, TheErrorOfAHandlerIsIgnoredAndTheNextSinkIsTold) {
    EventSource source;
    int heard = 0;
    const auto failing = listener([] { throw HostError(91); });
    const auto second = listener([&] { ++heard; });
    const Subscription one = source.advise(failing);
    const Subscription two = source.advise(second);
    source.raise(Member::Update);
    EXPECT_EQ(heard, 1);
}

TEST(EventSource, SubscriptionsMayOutliveIt) {
    const auto sink = listener([] {});
    Subscription subscription;
    {
        EventSource source;
        subscription = source.advise(sink);
    }
    EXPECT_TRUE(static_cast<bool>(subscription));
    subscription.reset();
    EXPECT_FALSE(static_cast<bool>(subscription));
}

}  // namespace
}  // namespace lorvane::host
