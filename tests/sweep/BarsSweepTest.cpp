#include <gtest/gtest.h>

#include "CommandTurns.h"

/// `bars`, while host calls fail: it opens items of its own, and none of them stays.
namespace lorvane::sweep {
namespace {

using namespace cli;
using support::FaultKind;

class BarsSweep : public testing::TestWithParam<FaultKind> {
protected:
    /// Every third call behind the connection: the building of bars is swept whole elsewhere.
    void run(const std::string& window) {
        SweptCommand command;
        // A first run, which makes the folders.
        command.prepare = [](const RunOptions& run, const SweptCommand::Files&) { ASSERT_EQ(runSettingsSet(run, {"A", "B"}), ExitStatus::Done); };
        command.command = [&](const RunOptions& run, const SweptCommand::Files&) {
            BarsOptions options;
            options.window = window;
            return runBars(run, options);
        };
        // What the add-in could not add is not there; the host's own bars always are.
        command.mayAlsoGive = [](const Ended& ended) {
            return ended.out.starts_with("Menu Bar\n  File\n") && ended.out.find("\nStandard\n  Save\n  Print\n  Cut\n  Copy\n  Paste\n") != std::string::npos;
        };
        sweepCommand(command, GetParam(), 3);
    }
};
INSTANTIATE_TEST_SUITE_P(EveryThirdCall, BarsSweep, testing::Values(FaultKind::Error, FaultKind::LostObject),
                         [](const auto& kind) { return std::string(kind.param == FaultKind::Error ? "Error" : "LostObject"); });

TEST_P(BarsSweep, OfAReceivedMail) {
    run("received");
}

TEST_P(BarsSweep, OfANewTask) {
    run("task");
}

}  // namespace
}  // namespace lorvane::sweep
