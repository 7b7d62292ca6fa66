#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/HostError.h"
#include "host/TextFunctions.h"
#include "support/TestRun.h"

/// Lets each host call of a command fail, one after the other.
///
///     sweepFaults({.begin = [] { return std::make_unique<TestRun>(RunOptions{.connected = false, .instruments = true}); },
///                  .command = [](TestRun& run) { run.connect(); },
///                  .check = [](TestRun& run, const SweptFault&) { EXPECT_TRUE(run.boxes().empty()); }});
namespace lorvane::support {

enum class FaultKind { Error, LostObject };

/// The fault of one turn.
struct SweptFault {
    FaultKind kind = FaultKind::Error;
    std::size_t n = 0;                 ///< which of the command's host calls, from 1
    std::u16string className, member;  ///< of the call that failed
    std::string line;                  ///< the call as the log of a run without faults shows it

    bool isOf(std::u16string_view classSought) const { return host::equalsIgnoreCase(className, classSought); }
    /// The screen, or the machine it comes from, is gone for good: then no window can be taken down either.
    bool losesScreen() const { return kind == FaultKind::LostObject && (isOf(u"Screen") || isOf(u"Machine")); }
};

/// A command and what has to hold behind it, whatever call failed.
struct FaultSweep {
    /// A new machine, with everything set up for the command; it has instruments.
    std::function<std::unique_ptr<TestRun>()> begin;
    /// Runs the command; a HostError that comes out of it fails the test.
    std::function<void(TestRun&)> command;
    /// Looks at what the command left; no fault is active any more.
    std::function<void(TestRun&, const SweptFault&)> check = [](TestRun&, const SweptFault&) {};
    std::int32_t errorNumber = host::host_failure::Failed;  ///< of the faults that are errors
    /// Whether the number of windows behind the command fits the one before it.
    std::function<bool(std::size_t before, std::size_t after)> windowsFit = [](std::size_t before, std::size_t after) { return before == after; };
};

namespace sweep_detail {

/// Files that the command left in its local folder.
inline std::vector<std::u16string> temporaryFiles(TestRun& run) {
    const host::Files files = run.apartment().machine.files();
    const std::u16string folder = files.GetTempPath() + u"Tolvenar\\Lorvane";
    return files.FolderExists(folder) ? files.ListFiles(folder) : std::vector<std::u16string>{};
}

inline void runOnce(const FaultSweep& sweep, const SweptFault& fault) {
    SCOPED_TRACE((fault.kind == FaultKind::Error ? "error at call " : "lost object at call ") + std::to_string(fault.n) + ": " + fault.line);
    const std::unique_ptr<TestRun> run = sweep.begin();
    const std::size_t windowsBefore = run->user().Windows().size();
    run->faults().clear();
    if (fault.kind == FaultKind::Error)
        run->faults().failCall(fault.n, sweep.errorNumber);
    else
        run->faults().loseObjectAt(fault.n);
    try {
        sweep.command(*run);
    } catch (const host::HostError& error) {
        ADD_FAILURE() << "an error came out of the command: " << error.what();
    }
    EXPECT_GE(run->faults().failures(), 1U) << "the fault never struck";
    run->faults().clear();
    const std::size_t windowsAfter = run->user().Windows().size();
    EXPECT_TRUE(fault.losesScreen() || sweep.windowsFit(windowsBefore, windowsAfter)) << windowsBefore << " windows before, " << windowsAfter << " behind";
    const bool filesFailed = fault.isOf(u"Files") || fault.member == u"Files" || (fault.kind == FaultKind::LostObject && fault.isOf(u"Machine"));
    EXPECT_TRUE(filesFailed || temporaryFiles(*run).empty()) << "temporary files are left";
    sweep.check(*run, fault);
}

}  // namespace sweep_detail

/// Runs the command once without a fault, to learn its calls, then once for each call and kind of fault, each time on a new machine.
/// After each: no error came out, the windows fit, no temporary file is left (but where the file service itself failed), and `check` holds.
inline void sweepFaults(const FaultSweep& sweep) {
    std::vector<instruments::RecordedCall> calls;
    {
        const std::unique_ptr<TestRun> run = sweep.begin();
        run->recorder().clear();
        run->faults().clear();
        sweep.command(*run);
        calls = run->recorder().calls();
        ASSERT_EQ(calls.size(), run->faults().uses()) << "each call is seen by both instruments";
    }
    ASSERT_FALSE(calls.empty());
    for (const FaultKind kind : {FaultKind::Error, FaultKind::LostObject}) {
        for (std::size_t n = 1; n <= calls.size(); ++n) {
            const instruments::RecordedCall& call = calls[n - 1];
            sweep_detail::runOnce(sweep, {kind, n, call.className, call.member, instruments::lineText(call)});
            if (testing::Test::HasFatalFailure()) return;
        }
    }
}

}  // namespace lorvane::support
