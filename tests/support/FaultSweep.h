#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/HostError.h"
#include "support/Snapshot.h"
#include "support/TestRun.h"

/// Lets each host call of a command fail, one after the other, and compares what is left with what the command says.
///
///     class MySweep : public SweepTest {};
///     SWEEP_CALLS(MySweep);
///     TEST_P(MySweep, Opening) {
///         FaultSweep sweep;
///         sweep.prepare = [](TestRun& run) { run.addTemplate(u"Offer", plain(u"Text")); };
///         sweep.command = [](TestRun&) { chooser().Show(false); };
///         sweep.boxes = {errorBox(u"frmEmail.Form_Load")};
///         run(sweep);
///     }
namespace lorvane::support {

enum class FaultKind { Error, LostObject };
enum class StoreKind { Memory, Sqlite };

/// The fault of one turn.
struct SweptFault {
    FaultKind kind = FaultKind::Error;
    std::size_t n = 0;                     ///< which of the command's host calls, from 1
    std::u16string className{}, member{};  ///< of the call that failed
    std::string line{};                    ///< the call as the log of a run without faults shows it

    bool isOf(std::u16string_view classSought) const;
    /// The screen, or the machine it comes from, is gone for good: then no window can be taken down either.
    bool losesScreen() const { return kind == FaultKind::LostObject && (isOf(u"Screen") || isOf(u"Machine")); }
    /// The call was one of the file service, or the service was not to be had: then files may stay that were to go.
    bool strikesFiles() const;
};

/// A message box that a command may show: its whole title, how its text begins, and its style.
struct NamedBox {
    std::u16string title, textFront;
    std::int32_t style = 0;
};
/// The standard error box of a routine.
NamedBox errorBox(std::u16string_view routine);
/// What the opening of an Inspector may say.
inline const NamedBox newInspectorBox{u"Lorvane", u"Error Number: ", host::msgbox::Plain};

/// A command and what has to hold behind it, whatever call failed.
///
/// Each item, setting and file is as it was before the command or as the command leaves it when nothing fails. What may be left on the way besides is told by
/// `Leftovers`. No item is lost, none is there twice.
struct FaultSweep : Leftovers {
    RunOptions options = {};  ///< of each turn's machine; its stores and instruments are the sweep's
    bool team = false;        ///< with a second, public store; see `teamFolder`

    /// Fills the stores and settings. In memory it runs in each turn; into files once, and each turn has a copy: what it makes is found again by name.
    std::function<void(TestRun&)> prepare = [](TestRun&) {};
    /// Brings up what stands open before the command, and all that ends with the machine.
    std::function<void(TestRun&)> open = [](TestRun&) {};
    std::function<void(TestRun&)> command;

    std::vector<NamedBox> boxes = {};  ///< all that may come
    std::size_t errorBoxes = 1;        ///< how many of them may be standard error boxes
    std::size_t lossBoxes = 1;         ///< the same where an object is lost: each routine with a guard that uses it says so
    bool raises = false;               ///< the routine has no guard: the fault is its caller's
    /// Whether the number of windows behind the command fits the one before it.
    std::function<bool(std::size_t before, std::size_t after)> windowsFit = [](std::size_t before, std::size_t after) { return before == after; };
    /// Looks at what else the command left; no fault is active any more.
    std::function<void(TestRun&, const SweptFault&)> check = [](TestRun&, const SweptFault&) {};
    std::int32_t errorNumber = host::host_failure::Failed;  ///< of the faults that are errors
};

/// The team's folder of templates in a sweep with a second store, made where it is missing.
host::MAPIFolder teamFolder(const TestRun& run);

/// Which turns a test runs.
struct SweptTurns {
    StoreKind store = StoreKind::Memory;
    FaultKind fault = FaultKind::Error;
    std::size_t every = 1;  ///< 3 takes call 3, 6, 9 …
};
std::string nameOf(const SweptTurns& turns);
/// Both kinds of fault: at every call on the store in memory, at every third on the one in a file, where a turn takes several times as long.
std::vector<SweptTurns> sweptTurns();

/// Runs the command once without a fault, to learn its calls and what it leaves, then once for each call that is to fail, each time on a new machine.
void sweepFaults(const FaultSweep& sweep, const SweptTurns& turns);

/// A sweep for each store and kind of fault.
class SweepTest : public testing::TestWithParam<SweptTurns> {
protected:
    void run(const FaultSweep& sweep) { sweepFaults(sweep, GetParam()); }
};

#define SWEEP_CALLS(Suite) INSTANTIATE_TEST_SUITE_P(Calls, Suite, testing::ValuesIn(sweptTurns()), [](const auto& turns) { return nameOf(turns.param); })

}  // namespace lorvane::support
