#include "instruments/Decorator.h"

#include <gtest/gtest.h>

#include "instruments/FakeItem.h"

namespace lorvane::instruments::test {
namespace {

using host::Argument;
using host::makeObject;
using host::Member;
using host::Object;
using host::Variant;

/// An instrument that only counts.
class Counting final : public Tap {
public:
    Variant onUse(const Use&, const std::function<Variant()>& proceed) override {
        ++uses;
        return proceed();
    }
    int uses = 0;
};

class Decorator : public testing::Test {
protected:
    Decorator() {
        fake().child = makeObject<FakeItem>(u"FakeInspector");
        fake().parent = makeObject<FakeItem>(u"FakeFolder");
    }
    ~Decorator() override {
        if (bare) fake().letGo();
        shown = bare = Object();
        EXPECT_EQ(FakeItem::alive, 0) << "an object is still held";
    }
    FakeItem& fake() { return *host::implementation<FakeItem>(bare); }
    bool isDecorated(const Object& object) { return object.dispatch() != &object.dispatch()->undecorated(); }

    std::shared_ptr<Counting> tap = std::make_shared<Counting>();
    Object bare = makeObject<FakeItem>();
    Object shown = decorated(bare, tap);
};

TEST_F(Decorator, ADecoratedObjectIsTheSameObject) {
    EXPECT_EQ(shown, bare);
    EXPECT_NE(shown.dispatch(), bare.dispatch());
    EXPECT_EQ(shown, decorated(bare, std::make_shared<Counting>()));
    EXPECT_FALSE(shown == fake().child);
    EXPECT_EQ(shown.dispatch()->className(), u"FakeItem");
    EXPECT_EQ(host::implementation<FakeItem>(shown), host::implementation<FakeItem>(bare));
    EXPECT_EQ(Variant(shown), Variant(bare));
}

TEST_F(Decorator, MembersAreNamedByTheObjectItself) {
    EXPECT_EQ(shown.dispatch()->memberNamed(u"SECRET"), FakeItem::secret);
    EXPECT_EQ(shown.dispatch()->memberText(FakeItem::secret), u"Secret");
    EXPECT_EQ(shown.dispatch()->memberText(Member::Subject), u"Subject");
    EXPECT_EQ(shown.getText(FakeItem::secret), u"kept");
}

TEST_F(Decorator, NothingStaysNothing) {
    EXPECT_FALSE(decorated(Object(), tap));
    EXPECT_FALSE(stripped(Object()));
    fake().child = Object();
    EXPECT_FALSE(shown.getObject(Member::Inspector));
}

TEST_F(Decorator, ATapCountsWhatItsUsersHold) {
    EXPECT_EQ(tap->held(), 1u);
    {
        const Object inspector = shown.getObject(Member::Inspector), again = shown.getObject(Member::Inspector), copy = again;
        EXPECT_EQ(tap->held(), 3u);
    }
    EXPECT_EQ(tap->held(), 1u);
    shown = Object();
    EXPECT_EQ(tap->held(), 0u);
}

TEST_F(Decorator, ASinksOwnerIsHeldWhileAnEventIsTold) {
    struct Owner {
        FakeSink sink;
        host::Subscription connection;
    };
    auto first = std::make_shared<Owner>(), second = std::make_shared<Owner>();
    for (const auto& owner : {first, second}) owner->connection = shown.advise(std::shared_ptr<host::EventSink>(owner, &owner->sink));
    int heard = 0;
    first->sink.heard = [&](Member, host::Args) { second.reset(); };
    second->sink.heard = [&](Member, host::Args) { ++heard; };
    fake().events.raise(Member::Close);
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(second, nullptr);
    fake().events.raise(Member::Close);
    EXPECT_EQ(heard, 1);
}

TEST_F(Decorator, TheSameInstrumentStandsInFrontOnlyOnce) {
    EXPECT_EQ(decorated(shown, tap).dispatch(), shown.dispatch());
    shown.getText(Member::Subject);
    EXPECT_EQ(tap->uses, 1);
}

TEST_F(Decorator, ResultsAreDecoratedAlsoInsideArrays) {
    const Object inspector = shown.getObject(Member::Inspector);
    EXPECT_TRUE(isDecorated(inspector));
    EXPECT_EQ(inspector, fake().child);

    const Variant items = shown.call(Member::Items);
    EXPECT_EQ(items.toArray().lower, 1);
    EXPECT_TRUE(isDecorated(items.toArray().items[0].toObject()));
    const auto& inner = items.toArray().items[1].toArray().items;
    EXPECT_TRUE(isDecorated(inner[0].toObject()));
    EXPECT_EQ(inner[1], Variant(u"between"));
    EXPECT_FALSE(inner[2].toObject());
}

TEST_F(Decorator, ThePlatformSeesItsOwnObjectsOnly) {
    const Object inspector = shown.getObject(Member::Inspector);
    const Object given = shown.call(Member::Add, {inspector, host::Array{0, {shown, inspector}}, Argument::named(Member::Name, shown)}).toObject();
    shown.put(Member::Subject, inspector, {shown});

    EXPECT_TRUE(isDecorated(given));
    ASSERT_EQ(fake().seen.size(), 6u);
    for (const Object& object : fake().seen) EXPECT_FALSE(isDecorated(object));
    EXPECT_FALSE(isDecorated(fake().added.front()));
    EXPECT_FALSE(isDecorated(fake().subject.toObject()));
}

TEST_F(Decorator, VariablesByReferenceComeBackDecoratedWhereTheyWereAssigned) {
    Variant first = fake().parent;
    Variant count = 41;
    Variant left = fake().parent;
    shown.call(Member::Move, {Argument::byReference(first), Argument::byReference(count), Argument::byReference(left)});

    EXPECT_TRUE(isDecorated(first.toObject()));
    EXPECT_EQ(first.toObject(), fake().child);
    EXPECT_EQ(count, Variant(42));
    EXPECT_EQ(left.toObject().dispatch(), fake().parent.dispatch()) << "a variable that nobody assigned keeps its very value";
}

TEST_F(Decorator, WhatWasAssignedInFrontOfAFailureStays) {
    Variant first;
    Variant count = 1;
    EXPECT_EQ(errorOf([&] {
                  shown.call(Member::Move, {Argument::byReference(first), Argument::byReference(count), u"", u""});
              }),
              host::host_failure::AccessDenied);
    EXPECT_TRUE(isDecorated(first.toObject()));
    EXPECT_EQ(count, Variant(2));
}

TEST_F(Decorator, EventsBringDecoratedObjectsAndTakeBackAssignments) {
    auto sink = std::make_shared<FakeSink>();
    int heard = 0;
    sink->heard = [&](Member event, host::Args args) {
        ++heard;
        EXPECT_EQ(event, Member::Close);
        EXPECT_EQ(args[0].value().toObject(), fake().child);
        EXPECT_TRUE(isDecorated(args[0].value().toObject()));
        args[1].assign(true);
        args[2].assign(shown);
    };
    const host::Subscription subscription = shown.advise(sink);
    EXPECT_TRUE(fake().events.hasSinks());

    Variant cancel = false;
    Variant answer;
    fake().events.raise(Member::Close, {fake().child, Argument::byReference(cancel), Argument::byReference(answer)});
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(cancel, Variant(true));
    EXPECT_EQ(answer.toObject().dispatch(), bare.dispatch()) << "the platform gets its own object";
}

TEST_F(Decorator, DroppingTheSubscriptionDisconnectsAtOnceAlsoInsideTheEvent) {
    auto sink = std::make_shared<FakeSink>();
    int heard = 0;
    host::Subscription subscription = shown.advise(sink);
    sink->heard = [&](Member, host::Args) {
        ++heard;
        subscription.reset();
        fake().events.raise(Member::Close);
    };
    fake().events.raise(Member::Close);
    fake().events.raise(Member::Close);
    EXPECT_EQ(heard, 1);
    EXPECT_FALSE(fake().events.hasSinks());
}

TEST_F(Decorator, ASinkIsNotKeptAliveByItsSubscription) {
    auto sink = std::make_shared<FakeSink>();
    const std::weak_ptr<FakeSink> watched = sink;
    const host::Subscription subscription = shown.advise(sink);
    sink.reset();
    EXPECT_TRUE(watched.expired());
    fake().events.raise(Member::Close);
}

TEST_F(Decorator, ASinkMayDropTheLastHandleInsideItsEvent) {
    auto sink = std::make_shared<FakeSink>();
    host::Subscription subscription = shown.advise(sink);
    sink->heard = [&](Member, host::Args) {
        subscription.reset();
        sink.reset();
        shown = Object();
        bare = Object();
    };
    host::implementation<FakeItem>(bare)->events.raise(Member::Close);
    EXPECT_EQ(FakeItem::alive, 0);
}

TEST_F(Decorator, InstrumentsStack) {
    const auto outer = std::make_shared<Counting>();
    const Object both = decorated(shown, outer);
    const Object inspector = both.getObject(Member::Inspector);
    EXPECT_EQ(tap->uses, 1);
    EXPECT_EQ(outer->uses, 1);
    inspector.getText(Member::Subject);
    EXPECT_EQ(tap->uses, 2);
    EXPECT_EQ(outer->uses, 2);
    EXPECT_EQ(stripped(both).dispatch(), bare.dispatch());
}

TEST_F(Decorator, HandlesHoldTheObjectAndTheInstrumentAndNothingMore) {
    const std::weak_ptr<Counting> watched = tap;
    tap.reset();
    Object inspector = shown.getObject(Member::Inspector);
    shown = Object();
    EXPECT_EQ(FakeItem::alive, 3);
    bare = Object();
    EXPECT_EQ(FakeItem::alive, 1) << "the item went with its last handle; its inspector is still named";
    EXPECT_FALSE(watched.expired());
    EXPECT_EQ(inspector.getText(Member::Subject), u"first");
    inspector = Object();
    EXPECT_EQ(FakeItem::alive, 0);
    EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace lorvane::instruments::test
