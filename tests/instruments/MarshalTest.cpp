#include "instruments/Marshal.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "instruments/FakeItem.h"
#include "instruments/Mailbox.h"
#include "support/ThisThread.h"

namespace lorvane::instruments::test {
namespace {

using host::Argument;
using host::makeObject;
using host::Member;
using host::Object;
using host::Variant;

/// Notes on which thread it is used, connected and ended; what a use does besides is laid down by a test.
class Placed final : public host::Dispatch {
public:
    struct Log {
        std::vector<const void*> uses, ends;
        std::function<Variant(Placed&, host::Args)> act;
    };
    explicit Placed(std::shared_ptr<Log> log) : log_(std::move(log)) {}

    std::u16string_view className() const noexcept override { return u"Placed"; }
    Variant get(Member, host::Args args) override { return use(args); }
    void put(Member, const Variant&, host::Args args) override { use(args); }
    Variant call(Member, host::Args args) override { return use(args); }
    host::Subscription advise(std::weak_ptr<host::EventSink> sink) override {
        log_->uses.push_back(support::thisThread());
        return events.advise(std::move(sink));
    }

    host::EventSource events;

protected:
    ~Placed() override { log_->ends.push_back(support::thisThread()); }

private:
    Variant use(host::Args args) {
        log_->uses.push_back(support::thisThread());
        return log_->act ? log_->act(*this, args) : Variant();
    }
    std::shared_ptr<Log> log_;
};

class MarshalTest : public testing::Test {
protected:
    /// Runs `act` on a thread of its own while this one serves.
    template <class Act>
    void onAnotherThread(Act&& act) {
        std::atomic<bool> isOver = false;
        std::thread other([&] {
            act();
            isOver = true;
            marshal.wake();
        });
        marshal.serveUntil([&] { return isOver.load(); });
        other.join();
        marshal.serve();
    }
    bool isHome(const std::vector<const void*>& threads, std::size_t count) const { return threads == std::vector<const void*>(count, support::thisThread()); }

    Marshal marshal;
    std::shared_ptr<Placed::Log> log = std::make_shared<Placed::Log>();
    Object bare = makeObject<Placed>(log);
    Object carried = marshal.carried(bare);
};

/// Has one text, and notes how often it was asked for it elsewhere than at home.
struct Keeper final : host::TextKeeper {
    std::u16string_view keptText(std::uint64_t) const noexcept override {
        if (support::thisThread() != home) ++askedAbroad;
        return u"kept";
    }
    const void* home = support::thisThread();
    mutable std::atomic<int> askedAbroad = 0;
};

TEST_F(MarshalTest, ATextThatIsKeptAtHomeCrossesAsTheCallersOwn) {
    const auto keeper = std::make_shared<Keeper>();
    log->act = [&](Placed&, host::Args args) {
        *args[0].reference() = host::KeptText{keeper, 0};
        return Variant(host::Array{1, {Variant(host::KeptText{keeper, 0}), Variant(1)}});
    };
    Variant variable, result;
    onAnotherThread([&] {
        result = carried.call(Member::Save, {Argument::byReference(variable)});
        EXPECT_EQ(variable, Variant(u"kept"));
        EXPECT_EQ(result.toArray().items.at(0), Variant(u"kept"));
    });
    EXPECT_EQ(variable.keptText(), nullptr);
    EXPECT_EQ(result.toArray().items.at(0).keptText(), nullptr);
    EXPECT_EQ(keeper->askedAbroad, 0);
}

TEST_F(MarshalTest, UsesRunOnTheObjectsThread) {
    onAnotherThread([&] {
        (void)carried.get(Member::Subject);
        carried.put(Member::Subject, u"x");
        (void)carried.call(Member::Save);
    });
    EXPECT_TRUE(isHome(log->uses, 3));
}

TEST_F(MarshalTest, OnTheObjectsThreadTheyRunAtOnce) {
    (void)carried.get(Member::Subject);
    EXPECT_EQ(log->uses.size(), 1u);
}

TEST_F(MarshalTest, ResultsAndAssignedVariablesComeBack) {
    log->act = [](Placed&, host::Args args) {
        args[1].assign(u"assigned");
        return Variant(args[0].value().toInt32() + 1);
    };
    onAnotherThread([&] {
        Variant variable;
        EXPECT_EQ(carried.call(Member::Add, {41, Argument::byReference(variable)}), Variant(42));
        EXPECT_EQ(variable, Variant(u"assigned"));
    });
}

TEST_F(MarshalTest, ErrorsComeBack) {
    log->act = [](Placed&, host::Args) -> Variant { throw host::HostError(3021, u"gone"); };
    onAnotherThread([&] {
        try {
            (void)carried.get(Member::Subject);
            ADD_FAILURE() << "no error was raised";
        } catch (const host::HostError& error) {
            EXPECT_EQ(error.number(), 3021);
            EXPECT_EQ(error.description(), u"gone");
        }
    });
}

TEST_F(MarshalTest, WhatComesOutIsCarriedTooAndGoesBackAsItIs) {
    const auto childLog = std::make_shared<Placed::Log>();
    Object child = makeObject<Placed>(childLog), given;
    log->act = [&](Placed&, host::Args args) {
        if (args.size() == 1) given = args[0].value().toObject();
        return Variant(child);
    };
    onAnotherThread([&] {
        const Object out = carried.getObject(Member::Inspector);
        (void)out.get(Member::Subject);
        EXPECT_EQ(out, child);
        (void)carried.call(Member::Add, {out});
    });
    EXPECT_TRUE(isHome(childLog->uses, 1));
    EXPECT_EQ(given.dispatch(), child.dispatch());
}

TEST_F(MarshalTest, AnObjectGoesOnItsOwnThread) {
    const auto childLog = std::make_shared<Placed::Log>();
    log->act = [&](Placed&, host::Args) { return Variant(makeObject<Placed>(childLog)); };
    onAnotherThread([&] { (void)carried.getObject(Member::Inspector); });
    EXPECT_TRUE(isHome(childLog->ends, 1));
}

TEST_F(MarshalTest, EventsAreToldOnTheSinksThread) {
    log->act = [](Placed& self, host::Args) {
        Variant cancel(false);
        self.events.raise(Member::Close, {Object(&self), Argument::byReference(cancel)});
        return cancel;
    };
    onAnotherThread([&] {
        const auto sink = std::make_shared<FakeSink>();
        std::vector<const void*> heard;
        sink->heard = [&](Member, host::Args args) {
            heard.push_back(support::thisThread());
            EXPECT_TRUE(args[0].value().toObject().dispatch()->memberNamed(u"Subject"));
            args[1].assign(true);
        };
        const host::Subscription connection = carried.advise(sink);
        EXPECT_EQ(carried.call(Member::Close), Variant(true));
        EXPECT_EQ(heard, std::vector<const void*>{support::thisThread()});
    });
    EXPECT_TRUE(isHome(log->uses, 2));
}

TEST_F(MarshalTest, ASinkMayUseTheObjectThatWaitsForIt) {
    int depth = 0;
    log->act = [&](Placed& self, host::Args) {
        if (++depth == 1) self.events.raise(Member::Close);
        return Variant(depth);
    };
    onAnotherThread([&] {
        const auto sink = std::make_shared<FakeSink>();
        sink->heard = [&](Member, host::Args) { EXPECT_EQ(carried.get(Member::Subject), Variant(2)); };
        const host::Subscription connection = carried.advise(sink);
        (void)carried.get(Member::Subject);
    });
    EXPECT_EQ(depth, 2);
}

TEST_F(MarshalTest, ADisconnectedSinkHearsNothing) {
    log->act = [](Placed& self, host::Args) {
        self.events.raise(Member::Close);
        return Variant();
    };
    onAnotherThread([&] {
        const auto sink = std::make_shared<FakeSink>();
        int heard = 0;
        sink->heard = [&](Member, host::Args) { ++heard; };
        host::Subscription connection = carried.advise(sink);
        (void)carried.call(Member::Close);
        connection.reset();
        (void)carried.call(Member::Close);
        EXPECT_EQ(heard, 1);
    });
}

TEST_F(MarshalTest, ASinkOfAThreadThatEndedKeepsNobodyWaiting) {
    const auto sink = std::make_shared<FakeSink>();
    int heard = 0;
    sink->heard = [&](Member, host::Args) { ++heard; };
    host::Subscription connection;
    onAnotherThread([&] { connection = carried.advise(sink); });
    host::implementation<Placed>(bare)->events.raise(Member::Close);
    EXPECT_EQ(heard, 0);
}

TEST_F(MarshalTest, AnObjectOfAThreadThatEndedIsDisconnected) {
    Object theirs;
    std::thread other([&] { theirs = Marshal().carried(makeObject<Placed>(std::make_shared<Placed::Log>())); });
    other.join();
    EXPECT_EQ(errorOf([&] { (void)theirs.get(Member::Subject); }), Mailbox::Disconnected);
}

TEST_F(MarshalTest, ThreadsThatCallEachOtherGetTheirAnswers) {
    onAnotherThread([&] {
        const Marshal there;
        const auto theirLog = std::make_shared<Placed::Log>();
        const Object theirs = there.carried(makeObject<Placed>(theirLog));
        const auto answer = [](Placed&, host::Args) { return Variant(7); };
        theirLog->act = answer;
        log->act = [&](Placed&, host::Args) { return theirs.get(Member::Subject); };
        EXPECT_EQ(carried.get(Member::Subject), Variant(7));
        EXPECT_EQ(theirLog->uses, std::vector<const void*>{support::thisThread()});
        log->act = nullptr;
    });
}

TEST_F(MarshalTest, ManyThreadsAreServed) {
    constexpr int threads = 4, calls = 200;
    int sum = 0;
    log->act = [&](Placed&, host::Args) {
        ++sum;
        return Variant();
    };
    std::atomic<int> ended = 0;
    std::vector<std::thread> others;
    for (int i = 0; i < threads; ++i) {
        others.emplace_back([&] {
            for (int j = 0; j < calls; ++j) (void)carried.call(Member::Save);
            ++ended;
            marshal.wake();
        });
    }
    marshal.serveUntil([&] { return ended == threads; });
    for (std::thread& other : others) other.join();
    EXPECT_EQ(sum, threads * calls);
}

}  // namespace
}  // namespace lorvane::instruments::test
