#include "mailstore/ProcessIdentity.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "mailstore/OtherProgram.h"

namespace lorvane::mailstore::test {
namespace {

/// This program, told of another number and start.
ProcessIdentity numbered(std::int64_t number, std::int64_t started) {
    ProcessIdentity process = thisProcess();
    process.number = number;
    process.started = started;
    return process;
}

TEST(ProcessIdentityTest, ARunningProgramIsKnownAgain) {
    const ProcessIdentity here = thisProcess();
    EXPECT_EQ(here.number, ::getpid());
    EXPECT_GT(here.started, 0);
    EXPECT_FALSE(here.machineStart.empty());
    EXPECT_EQ(here, thisProcess());
    EXPECT_FALSE(hasEnded(here));
    EXPECT_FALSE(hasEnded(numbered(::getppid(), 0))) << "a machine that does not tell the start";
}

TEST(ProcessIdentityTest, OneThatWasKilledHasEndedAlsoWhileNobodyAskedForItsStatus) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::pause();
        ::_exit(0);
    }
    EXPECT_FALSE(hasEnded(numbered(child, 0)));
    ::kill(child, SIGKILL);
    siginfo_t ended{};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT), 0);
    EXPECT_TRUE(hasEnded(numbered(child, 0)));
    ::waitpid(child, nullptr, 0);
    EXPECT_TRUE(hasEnded(numbered(child, 0)));
}

TEST(ProcessIdentityTest, ANumberThatWasGivenAnewIsAnotherProgram) {
    EXPECT_TRUE(hasEnded(numbered(::getpid(), thisProcess().started - 1)));
}

TEST(ProcessIdentityTest, ProgramsFromBeforeTheMachineWasStartedHaveEnded) {
    ProcessIdentity before = thisProcess();
    before.machineStart = u"another";
    EXPECT_TRUE(hasEnded(before));
}

TEST(ProcessIdentityTest, AProgramInAnotherSpaceOfNumbersCannotBeSeenAndCountsAsRunning) {
    ProcessIdentity elsewhere = numbered(1 << 30, 5);
    EXPECT_TRUE(hasEnded(elsewhere));
    elsewhere.numberSpace = u"pid:[1]";
    EXPECT_FALSE(hasEnded(elsewhere));
}

TEST(ProcessIdentityTest, NumbersThatNoProgramHasAreNoRunningOnes) {
    EXPECT_TRUE(hasEnded(numbered(0, 0)));
    EXPECT_TRUE(hasEnded(numbered(-1, 0)));
    EXPECT_TRUE(hasEnded(numbered(std::int64_t{1} << 40, 0)));
}

}  // namespace
}  // namespace lorvane::mailstore::test
