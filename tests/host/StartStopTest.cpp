#include <gtest/gtest.h>

#include <memory>
#include <ostream>

#include "WindowRig.h"
#include "model/CommandBarSet.h"

/// A host that loads and unloads the add-in again and again: nothing of a round is left when it is over.
namespace lorvane::host {
namespace {

using namespace support;

/// What a round leaves behind.
struct Left {
    std::size_t heldObjects = 0;        ///< of the host, by the add-in
    std::size_t windows = 0, bars = 0;  ///< of the host, still in memory
    bool isHeard = false;               ///< by anybody: the application, its windows, the first Explorer

    bool operator==(const Left&) const = default;
    friend void PrintTo(const Left& left, std::ostream* out) {
        *out << left.heldObjects << " objects, " << left.windows << " windows, " << left.bars << " sets of bars, " << (left.isHeard ? "heard" : "not heard");
    }
};

/// Windows and their bars, as long as something keeps them.
class Watched {
public:
    void add(const Object& window) { bars_.push_back(implementation<model::HostWindow>(window)->commandBars().weak_from_this()); }
    std::size_t left() const {
        return static_cast<std::size_t>(std::ranges::count_if(bars_, [](const auto& bars) { return !bars.expired(); }));
    }

private:
    std::vector<std::weak_ptr<model::CommandBarSet>> bars_;
};

class StartStop : public testing::Test {
protected:
    StartStop() { run.recorder().leaveOut(u""); }

    Left round() {
        Watched watched;
        run.connect();
        const auto openAndClose = [&](const Object& window) {
            watched.add(window);
            closeWindow(window);
        };
        openAndClose(run.driver().openExplorer());
        openAndClose(instruments::stripped(run.newMail()));
        openAndClose(instruments::stripped(run.openMail(received)));
        run.disconnect();
        const Object explorer = firstExplorer(run);
        const model::HostCore& core = implementation<model::HostWindow>(explorer)->core();
        Left left;
        left.heldObjects = run.recorder().held();
        left.windows = core.explorers.size() + core.inspectors.size();
        left.bars = watched.left();
        left.isHeard = core.applicationEvents.hasSinks() || core.explorersEvents.hasSinks() || core.inspectorsEvents.hasSinks() || isHeard(explorer);
        return left;
    }

    TestRun run{{.connected = false, .instruments = true}};
    MailItem received = run.receivedMail(u"Question", plain(u"Text"));
};

TEST_F(StartStop, AThousandRoundsLeaveWhatTheFirstLeft) {
    const Left first = round();
    EXPECT_EQ(first.windows, 1U);
    EXPECT_EQ(first.bars, 0U);
    EXPECT_FALSE(first.isHeard);
    for (int turn = 1; turn < 1000; ++turn) ASSERT_EQ(round(), first) << "round " << turn + 1;
    EXPECT_EQ(inspectorWraps().gInspectorKey, 2000);
    EXPECT_EQ(explorerWraps().gExplorerKey, 2000);
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(StartStop, AWordWindowLeavesNothingEither) {
    TestRun word({.editor = model::EditorKind::Word, .connected = false, .instruments = true});
    std::size_t first = 0;
    for (int turn = 0; turn < 20; ++turn) {
        word.connect();
        closeWindow(word.newMail());
        closeWindow(openItem(word, contactKind));
        word.disconnect();
        if (turn == 0) first = word.recorder().held();
    }
    EXPECT_EQ(word.recorder().held(), first);
}

}  // namespace
}  // namespace lorvane::host
