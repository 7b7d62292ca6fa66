#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>
#include <random>

#include "crash/DoomedProgram.h"
#include "crash/Marks.h"
#include "crash/SavedStates.h"
#include "host/TextFunctions.h"

/// The program is killed at random moments, round after round over one store: the store opens, everything that was acknowledged is there, what the command
/// leaves is a state that its steps save, and the next start takes the caret mark away and says so.
///
/// CTest runs six shards of fifty rounds; LORVANE_CRASH_ROUNDS=500 crash_test --gtest_filter='*KilledProgram*' runs six of five hundred.
namespace lorvane::crash {
namespace {

using mailstore::test::PlacedItem;

/// A command with all that it saves on its way, and how long it takes undisturbed.
struct Measured {
    const CommandUnderTest* command = nullptr;
    std::vector<Difference> states;  ///< against the beginning
    std::vector<std::string> summaries;
    std::chrono::microseconds time{};
    std::uint32_t writes = 0;
    std::string output;  ///< the message that it writes out
};

/// What the kills left.
struct Tally {
    std::uint32_t rounds = 0, killed = 0;
    std::map<std::string, std::uint32_t> left, leftByCommand;

    void print() const {
        std::cout << rounds << " rounds, " << killed << " killed; they left\n";
        for (const auto& [what, count] : left) std::cout << "    " << count << " times " << what << '\n';
        for (const auto& [what, count] : leftByCommand) std::cout << "    " << count << " times " << what << '\n';
    }
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
        for (const Items& state : states) {
            measured.states.push_back(difference(states.front(), state));
            measured.summaries.push_back(summary(states.front(), state));
        }
        const Fate fate = runDoomed(lorvane_, command.prepare(lorvane_, ++measuring_), {});
        EXPECT_EQ(fate.status, command.status) << command.name << ": " << fate.err;
        measured.time = fate.time;
        measured.writes = fate.writes;
        if (std::filesystem::exists(outFile())) measured.output = cli::test::textOf(outFile());
        std::filesystem::remove(outFile());
        measured_.push_back(std::move(measured));
    }

    /// A third of the rounds is killed at a moment, the others behind a write: most of a command's time goes by before its first.
    static Doom doomOf(const Measured& measured, std::uint32_t round, std::mt19937& random) {
        if (round % 3 != 0) return {.writes = 1 + random() % (measured.writes + measured.writes / 10 + 1)};
        return {.time = std::chrono::microseconds(random() % static_cast<std::uint32_t>(measured.time.count() * 11 / 10))};
    }

    void play(std::uint32_t round) {
        std::mt19937 random(round);
        const Measured& measured = measured_[random() % measured_.size()];
        SCOPED_TRACE(measured.command->name);
        const Program::Words words = measured.command->prepare(lorvane_, round);
        const Items before = itemsNow(storeOf(lorvane_));
        const Fate fate = runDoomed(lorvane_, words, doomOf(measured, round, random));
        const Items left = itemsNow(storeOf(lorvane_));

        ++tally_.rounds;
        const Difference now = difference(before, left);
        const auto state = std::ranges::find(measured.states, now);
        ASSERT_NE(state, measured.states.end()) << "what is left is none of the states that it saves:\n" << summary(before, left) << fate.err;
        if (fate.killed) {
            ++tally_.killed;
            const auto number = static_cast<std::size_t>(state - measured.states.begin());
            const bool marked = std::ranges::any_of(left, holdsMark);
            ++tally_.left[number == 0                           ? "the store as it was"
                          : marked                              ? "an item with the caret mark, which the next start took out"
                          : number + 1 < measured.states.size() ? "another state on the way"
                                                                : "the work done"];
            ++tally_.leftByCommand[measured.command->name + ", state " + std::to_string(number) + " of " + std::to_string(measured.states.size() - 1)];
        } else {
            EXPECT_EQ(fate.status, measured.command->status) << fate.err;
            EXPECT_EQ(now, measured.states.back()) << "an acknowledged command has done its work";
        }
        expectWholeOutput(measured, fate);
        lookAfter(left);
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

    /// The next start finds what has to be mended by the notes alone, tells it, and touches nothing else.
    void lookAfter(const Items& left) {
        if (notesIn(storeOf(lorvane_)) == 0 && std::ranges::none_of(left, holdsMark)) return;
        const cli::test::Ended next = lorvane_({"settings", "get", "Rounds"});
        EXPECT_EQ(next.status, 0) << next;
        EXPECT_EQ(notesIn(storeOf(lorvane_)), 0);
        std::string told;
        Items expected = left;
        for (PlacedItem& item : expected) {
            if (!holdsMark(item)) continue;
            item.record = withoutMark(item.record);
            ++item.record.head.version;
            told += "lorvane: took the caret mark of an interrupted insertion out of \"" + host::toUtf8(item.record.head.subject) + "\"\n";
        }
        EXPECT_EQ(next.err, told);
        EXPECT_EQ(itemsNow(storeOf(lorvane_)), expected);
    }

    const Program lorvane_;
    std::uint32_t measuring_ = 1'000'000;  ///< numbers that no round has
    std::vector<Measured> measured_;
    Tally tally_;
};

/// Fifty, or as many as a longer run asks for.
std::uint32_t roundsOfAShard() {
    const char* const asked = std::getenv("LORVANE_CRASH_ROUNDS");
    return asked ? static_cast<std::uint32_t>(std::max(std::atoi(asked), 1)) : 50;
}

/// A shard is a sixth of all rounds, so that CTest runs several at once.
class KilledProgram : public testing::TestWithParam<std::uint32_t> {};
INSTANTIATE_TEST_SUITE_P(Shard, KilledProgram, testing::Range(0U, 6U), testing::PrintToStringParamName());

TEST_P(KilledProgram, LeavesNothingButWhatItsStepsSave) {
    const std::uint32_t count = roundsOfAShard();
    Rounds rounds;
    rounds.run(GetParam() * count, count);
    rounds.tally().print();
    EXPECT_EQ(rounds.tally().rounds, count);
    EXPECT_GT(rounds.tally().killed, count / 2);
}

}  // namespace
}  // namespace lorvane::crash
