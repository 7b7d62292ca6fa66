#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "crash/KilledRounds.h"
#include "crash/Marks.h"

/// The program is killed at random moments, round after round over one store: the store opens, everything that was acknowledged is there, what the command
/// leaves is a state that its steps save, and the next start takes the caret mark away and says so.
///
/// CTest runs six shards of fifty rounds; LORVANE_CRASH_ROUNDS=500 crash_test --gtest_filter='*KilledProgram*' runs six of five hundred.
namespace lorvane::crash {
namespace {

/// A command with all that it saves on its way, and how long it takes undisturbed.
struct Measured {
    const CommandUnderTest* command = nullptr;
    std::vector<Difference> states;  ///< against the beginning
    Course undisturbed;
    std::string output;  ///< the message that it writes out
};

class Rounds {
public:
    Rounds() {
        prepareStore(lorvane_);
        for (const CommandUnderTest& command : commandsUnderTest()) measure(command);
    }

    void run(std::uint32_t first, std::uint32_t count) {
        for (std::uint32_t round = first; round < first + count && !testing::Test::HasFailure(); ++round) {
            SCOPED_TRACE("round " + std::to_string(round));
            play(round);
        }
    }
    const Tally& tally() const noexcept { return tally_; }

private:
    std::string outFile() const { return (lorvane_.folder() / "out.eml").string(); }

    void measure(const CommandUnderTest& command) {
        Measured measured;
        measured.command = &command;
        const std::vector<Items> states = savedStates(lorvane_, command, ++measuring_);
        for (const Items& state : states) measured.states.push_back(difference(states.front(), state));
        const Fate fate = runDoomed(lorvane_, command.prepare(lorvane_, ++measuring_), {});
        EXPECT_EQ(fate.status, command.status) << command.name << ": " << fate.err;
        measured.undisturbed = {fate.time, fate.writes};
        if (std::filesystem::exists(outFile())) measured.output = cli::test::textOf(outFile());
        std::filesystem::remove(outFile());
        measured_.push_back(std::move(measured));
    }

    void play(std::uint32_t round) {
        std::mt19937 random(round);
        const Measured& measured = measured_[random() % measured_.size()];
        SCOPED_TRACE(measured.command->name);
        const Program::Words words = measured.command->prepare(lorvane_, round);
        const Items before = itemsNow(storeOf(lorvane_));
        const Fate fate = runDoomed(lorvane_, words, doomOf(measured.undisturbed, round, static_cast<std::uint32_t>(random())));
        const Items left = itemsNow(storeOf(lorvane_));

        const Difference now = difference(before, left);
        const auto state = std::ranges::find(measured.states, now);
        ASSERT_NE(state, measured.states.end()) << "what is left is none of the states that it saves:\n" << summary(before, left) << fate.err;
        const auto number = static_cast<std::size_t>(state - measured.states.begin());
        tally_.count(fate.killed, number == 0                            ? "the store as it was"
                                  : std::ranges::any_of(left, holdsMark) ? caretMarkLeft
                                  : number + 1 < measured.states.size()  ? "another state on the way"
                                                                         : "the work done");
        if (fate.killed) {
            tally_.countDetail(measured.command->name + ", state " + std::to_string(number) + " of " + std::to_string(measured.states.size() - 1));
        } else {
            EXPECT_EQ(fate.status, measured.command->status) << fate.err;
            EXPECT_EQ(now, measured.states.back()) << "an acknowledged command has done its work";
        }
        expectWholeOutput(measured, fate);
        expectMendedByNextStart(lorvane_, {"settings", "get", "Rounds"}, left);
    }

    /// A message is written out whole or not at all.
    void expectWholeOutput(const Measured& measured, const Fate& fate) const {
        if (std::filesystem::exists(outFile())) {
            EXPECT_EQ(cli::test::textOf(outFile()), measured.output);
            std::filesystem::remove(outFile());
        } else {
            EXPECT_TRUE(fate.killed || measured.output.empty());
        }
    }

    const Program lorvane_;
    std::uint32_t measuring_ = 1'000'000;  ///< numbers that no round has
    std::vector<Measured> measured_;
    Tally tally_;
};

/// A shard is a sixth of all rounds, so that CTest runs several at once.
class KilledProgram : public testing::TestWithParam<std::uint32_t> {};
INSTANTIATE_TEST_SUITE_P(Shard, KilledProgram, testing::Range(0U, 6U), testing::PrintToStringParamName());

TEST_P(KilledProgram, LeavesNothingButWhatItsStepsSave) {
    const std::uint32_t count = roundsAsked();
    Rounds rounds;
    rounds.run(GetParam() * count, count);
    rounds.tally().print();
    EXPECT_EQ(rounds.tally().rounds(), count);
    EXPECT_GT(rounds.tally().killed(), count / 2);
}

}  // namespace
}  // namespace lorvane::crash
