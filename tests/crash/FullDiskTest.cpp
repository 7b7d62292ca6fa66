#include <gtest/gtest.h>

#include <algorithm>

#include "crash/DoomedProgram.h"
#include "crash/Marks.h"
#include "crash/SavedStates.h"

/// The program where files may not grow beyond a size: it says so and ends as with any fault, and the store is whole.
namespace lorvane::crash {
namespace {

/// Runs a command with more and more room, until it has enough.
void sweepRoom(const std::string& name) {
    const Program lorvane;
    prepareStore(lorvane);
    const auto& commands = commandsUnderTest();
    const CommandUnderTest& command = *std::ranges::find(commands, name, &CommandUnderTest::name);
    std::uint32_t round = 0;
    std::vector<Difference> states;
    {
        const std::vector<Items> saved = savedStates(lorvane, command, ++round);
        for (const Items& state : saved) states.push_back(difference(saved.front(), state));
    }
    int refused = 0;
    for (std::uint64_t room = 0; room <= 400'000 && !testing::Test::HasFailure(); room += 2900) {
        SCOPED_TRACE(std::to_string(room) + " bytes");
        const Program::Words words = command.prepare(lorvane, ++round);
        lorvane.done({"settings", "get", "Rounds"});  // takes out what the turn before left
        const Items before = itemsNow(storeOf(lorvane));
        EXPECT_TRUE(std::ranges::none_of(before, holdsMark));
        const Fate fate = runDoomed(lorvane, words, {.room = room});
        const Difference now = difference(before, itemsNow(storeOf(lorvane)));
        EXPECT_FALSE(fate.killed) << fate.err;
        if (fate.status == 0 && now == states.back()) {
            EXPECT_GT(refused, 5) << "there was room all the time";
            return;
        }
        ++refused;
        // Once the message is written out the command has done its work; that its own mail could not be deleted then is told.
        const bool onlyTheMailStays = fate.status == 0 && fate.err.find("the mail stays in the store") != std::string::npos;
        EXPECT_TRUE(fate.status == 3 || onlyTheMailStays) << fate.status << fate.err;
        EXPECT_EQ(fate.out, "");
        EXPECT_NE(fate.err.find("The disk is full"), std::string::npos) << fate.err;
        EXPECT_NE(fate.err.find("store.sqlite"), std::string::npos) << fate.err;
        EXPECT_NE(std::ranges::find(states, now), states.end()) << fate.err;
    }
    ADD_FAILURE() << "never enough room";
}

TEST(FullDisk, DuringAnImport) {
    sweepRoom("import");
}

TEST(FullDisk, DuringAnInsertion) {
    sweepRoom("insert with format");
}

TEST(FullDisk, WhileATemplateIsMade) {
    sweepRoom("template add");
}

}  // namespace
}  // namespace lorvane::crash
