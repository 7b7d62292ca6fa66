#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "crash/DoorActs.h"
#include "crash/DoorClient.h"
#include "crash/KilledRounds.h"
#include "crash/Marks.h"
#include "host/TextFunctions.h"
#include "mailstore/StoreUpkeep.h"

/// The automation door is killed at random moments while requests are under way, session after session over one store: the store is sound, everything that was
/// answered is there as it was asked for, beyond it at most what was sent, and the next start takes the caret mark away and says so.
///
/// CTest runs fifty rounds; LORVANE_CRASH_ROUNDS=1000 crash_test --gtest_filter='KilledDoor*' runs a thousand.
namespace lorvane::crash {
namespace {

const Program::Words nextDoor = {"serve"};

void expectSound(const Program& program) {
    const mailstore::StoreFindings findings = mailstore::checkStore(storeOf(program));
    EXPECT_TRUE(findings.faults.empty()) << host::toUtf8(findings.faults.front());
}

/// The store is sound and in a state that it may be in, and what no request touched is as it was, to the last property. Gives how many saved states it is
/// further than what was answered.
std::size_t expectAllowed(const Items& before, const DoorPlan& plan, const DoorClient& client, const Items& left) {
    const auto states = client.states();
    const auto state = std::ranges::find(states, knownOf(left), &DoorPlan::State::items);
    EXPECT_TRUE(state != states.end()) << "what is left is none of the states that it may be in:\n" << summary(before, left) << client.transcript();
    for (std::size_t number = 0; number < before.size(); ++number)
        EXPECT_TRUE(!plan.isUntouched(number) || std::ranges::find(left, before[number]) != left.end()) << knownOf(before[number]);
    return static_cast<std::size_t>(state - states.begin());
}

class DoorRounds {
public:
    DoorRounds() {
        prepareStore(lorvane_);
        constexpr std::uint32_t sessions = 4;
        for (std::uint32_t session = 0; session < sessions; ++session) {
            const DoorPlan plan = planOf(1'000'000 + session);
            const Fate fate = play(plan, session, {});
            EXPECT_FALSE(fate.killed);
            undisturbed_.time += fate.time;
            undisturbed_.writes += fate.writes;
            states_ += plan.states().size();
        }
        tally_ = {};
    }

    void run(std::uint32_t count) {
        for (std::uint32_t round = 0; round < count && !testing::Test::HasFailure(); ++round) {
            SCOPED_TRACE("round " + std::to_string(round));
            const DoorPlan plan = planOf(round);
            play(plan, round, doomOf(plan, round));
        }
    }
    const Tally& tally() const noexcept { return tally_; }

private:
    DoorPlan planOf(std::uint32_t round) {
        before_ = itemsNow(storeOf(lorvane_));
        return planOfRound(lorvane_, before_, round);
    }

    /// What a session takes goes with what it saves.
    Course expected(const DoorPlan& plan) const {
        const auto share = [&](auto whole) { return whole * plan.states().size() / states_; };
        return {std::chrono::microseconds(share(static_cast<std::uint64_t>(undisturbed_.time.count()))),
                static_cast<std::uint32_t>(share(undisturbed_.writes))};
    }

    /// As any program, or a few writes behind some answer: so the kill comes where something is saved, however long the session takes.
    Doom doomOf(const DoorPlan& plan, std::uint32_t round) const {
        std::mt19937 random(round ^ 0x5A5A);
        if (round % 2 == 0) return crash::doomOf(expected(plan), round / 2, static_cast<std::uint32_t>(random()));
        return {.writes = static_cast<std::uint32_t>(random() % 6), .lines = random() % plan.requests().size()};
    }

    Fate play(const DoorPlan& plan, std::uint32_t round, const Doom& doom) {
        DoorClient client(plan, 3 + std::mt19937(round)() % plan.requests().size());
        const Fate fate = runDoomed(lorvane_, nextDoor, doom, &client);
        look(plan, client, fate);
        return fate;
    }

    void look(const DoorPlan& plan, const DoorClient& client, const Fate& fate) {
        expectSound(lorvane_);
        const Items left = itemsNow(storeOf(lorvane_));
        const std::size_t further = expectAllowed(before_, plan, client, left);
        EXPECT_EQ(fate.err, "");
        if (!fate.killed) {
            EXPECT_EQ(fate.status, 0);
            EXPECT_TRUE(client.isAllAnswered()) << client.transcript();
        }
        const bool isMarked = std::ranges::any_of(left, holdsMark);
        tally_.count(fate.killed, isMarked ? caretMarkLeft : further == 0 ? "what was answered" : "what a request did that was not answered yet");
        if (fate.killed && client.sent() > client.answers()) tally_.countDetail("requests were under way");
        expectMendedByNextStart(lorvane_, nextDoor, left);
    }

    const Program lorvane_{mailstore::test::memoryFolder()};
    Course undisturbed_;      ///< of some sessions together
    std::size_t states_ = 0;  ///< that those have saved
    Items before_;
    Tally tally_;
};

TEST(KilledDoor, LeavesWhatItAnsweredAndAtMostWhatItWasSentBesides) {
    const std::uint32_t count = roundsAsked();
    DoorRounds rounds;
    rounds.run(count);
    rounds.tally().print();
    EXPECT_EQ(rounds.tally().rounds(), count);
    EXPECT_GT(rounds.tally().killed(), count / 2);
}

/// What goes and what comes from each state to the next.
std::string changesIn(const std::vector<std::vector<std::string>>& states) {
    std::string changes;
    for (std::size_t number = 1; number < states.size(); ++number) {
        std::vector<std::string> gone, come;
        std::ranges::set_difference(states[number - 1], states[number], std::back_inserter(gone));
        std::ranges::set_difference(states[number], states[number - 1], std::back_inserter(come));
        for (const std::string& known : gone) changes += "- " + known + "\n";
        for (const std::string& known : come) changes += "+ " + known + "\n";
        if (!gone.empty() || !come.empty()) changes += "\n";
    }
    return changes;
}

/// The plans are right: of each state that a session saves there is one, in order.
TEST(KilledDoor, SavesUndisturbedWhatThePlanOfItsRequestsTells) {
    const Program lorvane(mailstore::test::memoryFolder());
    prepareStore(lorvane);
    for (std::uint32_t round = 1; round <= 4 && !testing::Test::HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const DoorPlan plan = planOfRound(lorvane, itemsNow(storeOf(lorvane)), round);
        DoorClient client(plan, plan.requests().size());
        std::vector<std::vector<std::string>> saved, planned;
        for (const Items& state : savedStates(storeOf(lorvane), [&] { EXPECT_EQ(runDoomed(lorvane, nextDoor, {}, &client).status, 0); }))
            saved.push_back(knownOf(state));
        for (const DoorPlan::State& state : plan.states()) planned.push_back(state.items);
        EXPECT_TRUE(client.isAllAnswered());
        EXPECT_EQ(saved.front(), planned.front());
        EXPECT_EQ(changesIn(saved), changesIn(planned)) << client.transcript();
    }
}

/// A client leaves after so many answers, with six requests under way, in one session after the other.
void leave(DoorClient::Leaving::Manner manner, bool inTheMiddle) {
    constexpr std::uint32_t sessions = 6;
    constexpr std::size_t ahead = 6;
    const Program lorvane(mailstore::test::memoryFolder());
    prepareStore(lorvane);
    for (std::uint32_t session = 0; session < sessions && !testing::Test::HasFailure(); ++session) {
        const Items before = itemsNow(storeOf(lorvane));
        const DoorPlan plan = planOfRound(lorvane, before, session);
        const std::size_t answers = plan.requests().size() * session / sessions;
        SCOPED_TRACE("after " + std::to_string(answers) + " answers");
        DoorClient client(plan, ahead, DoorClient::Leaving{answers, manner, inTheMiddle});
        const Fate fate = runDoomed(lorvane, nextDoor, {}, &client);
        EXPECT_EQ(fate.status, 0) << "the status of a door whose client is gone";
        EXPECT_EQ(fate.err, "");
        expectSound(lorvane);
        const Items now = itemsNow(storeOf(lorvane));
        expectAllowed(before, plan, client, now);
        EXPECT_TRUE(notesIn(storeOf(lorvane)) == 0 && std::ranges::none_of(now, holdsMark)) << "it ended in order";
        const bool isHeard = manner == DoorClient::Leaving::Manner::EndsItsInput;
        EXPECT_EQ(client.sent() - client.answers(), isHeard ? 0 : std::min(ahead, plan.requests().size() - client.answers())) << client.transcript();
    }
}

TEST(LeavingClient, LosesNothingThatWasAnswered) {
    leave(DoorClient::Leaving::Manner::GoesAway, false);
}

TEST(LeavingClient, InTheMiddleOfARequestLosesNothingThatWasAnswered) {
    leave(DoorClient::Leaving::Manner::GoesAway, true);
}

TEST(LeavingClient, ThatOnlyEndsItsInputGetsTheAnswersToAllItSent) {
    leave(DoorClient::Leaving::Manner::EndsItsInput, false);
    leave(DoorClient::Leaving::Manner::EndsItsInput, true);
}

}  // namespace
}  // namespace lorvane::crash
