#include "screen/Desktop.h"

#include <gtest/gtest.h>

#include <functional>

#include "host/HostError.h"

namespace lorvane::screen {
namespace {

class RecordingWindow final : public DesktopWindow {
public:
    std::u16string caption() const override { return u"A window"; }
    void keys(const std::vector<KeyStroke>& strokes) override {
        runs.push_back(strokes);
        if (atKeys) atKeys();
    }
    std::vector<std::vector<KeyStroke>> runs;
    std::function<void()> atKeys;
};

class DesktopTest : public testing::Test {
protected:
    Desktop desktop;
    RecordingWindow first, second;
    std::vector<std::string> seen;
};

using Seen = std::vector<std::string>;

TEST_F(DesktopTest, TheWindowOpenedLastHasTheKeys) {
    desktop.open(first);
    desktop.open(second);
    desktop.sendKeys(u"x");
    EXPECT_TRUE(first.runs.empty());
    EXPECT_EQ(second.runs.size(), 1U);
    desktop.close(second);
    EXPECT_EQ(desktop.foreground(), &first);
    desktop.close(first);
    EXPECT_EQ(desktop.foreground(), nullptr);
    desktop.sendKeys(u"x");
    EXPECT_EQ(second.runs.size(), 1U);
}

TEST_F(DesktopTest, ComingToTheFrontKeepsTheNumber) {
    desktop.open(first);
    desktop.open(second);
    const auto number = desktop.handleOf(first);
    EXPECT_GT(number, 0);
    desktop.bringToFront(first);
    EXPECT_EQ(desktop.windows(), (std::vector<DesktopWindow*>{&second, &first}));
    desktop.open(second);
    EXPECT_EQ(desktop.windows(), (std::vector<DesktopWindow*>{&first, &second}));
    EXPECT_EQ(desktop.handleOf(first), number);
    EXPECT_EQ(desktop.windowOf(number), &first);
}

TEST_F(DesktopTest, NumbersAreNeverUsedAgain) {
    desktop.open(first);
    const auto number = desktop.handleOf(first);
    desktop.close(first);
    EXPECT_EQ(desktop.handleOf(first), 0);
    EXPECT_EQ(desktop.windowOf(number), nullptr);
    desktop.open(first);
    EXPECT_GT(desktop.handleOf(first), number);
    desktop.bringToFront(second);
    EXPECT_FALSE(desktop.isOpen(second));
}

TEST_F(DesktopTest, AWordIsOneRun) {
    desktop.open(first);
    desktop.sendKeys(u"word{BACKSPACE 4}^v~");
    ASSERT_EQ(first.runs.size(), 4U);
    EXPECT_EQ(first.runs[0], parseKeys(u"word"));
    EXPECT_EQ(first.runs[1].size(), 4U);
    EXPECT_EQ(first.runs[2], parseKeys(u"^v"));
}

TEST_F(DesktopTest, KeysBehindOneThatOpensAWindowGoToThatWindow) {
    desktop.open(first);
    first.atKeys = [&] { desktop.open(second); };
    desktop.sendKeys(u"~abc");
    EXPECT_EQ(first.runs.size(), 1U);
    ASSERT_EQ(second.runs.size(), 1U);
    EXPECT_EQ(second.runs[0], parseKeys(u"abc"));
}

TEST_F(DesktopTest, AWindowMayCloseInItsOwnKeys) {
    desktop.open(first);
    desktop.open(second);
    second.atKeys = [&] { desktop.close(second); };
    desktop.sendKeys(u"a~b");
    EXPECT_EQ(second.runs.size(), 1U);
    EXPECT_EQ(first.runs.size(), 2U);
}

TEST_F(DesktopTest, NothingOfABrokenTextIsSent) {
    desktop.open(first);
    EXPECT_THROW(desktop.sendKeys(u"abc{NOKEY}"), host::HostError);
    EXPECT_TRUE(first.runs.empty());
}

TEST_F(DesktopTest, PumpAsksListenersInTheOrderTheyCame) {
    const auto one = desktop.onPump([&] { seen.push_back("one"); });
    auto two = desktop.onPump([&] { seen.push_back("two"); });
    desktop.pump();
    two.reset();
    desktop.pump();
    EXPECT_EQ(seen, (Seen{"one", "two", "one"}));
    EXPECT_EQ(desktop.pumpCount(), 2U);
}

TEST_F(DesktopTest, AListenerMayPumpAndListenersComeAndGoMeanwhile) {
    host::Subscription two, late;
    int depth = 0;
    const auto one = desktop.onPump([&] {
        seen.push_back("one");
        if (++depth == 1) {
            late = desktop.onPump([&] { seen.push_back("late"); });
            two.reset();
            desktop.pump();
        }
    });
    two = desktop.onPump([&] { seen.push_back("two"); });
    desktop.pump();
    EXPECT_EQ(seen, (Seen{"one", "one", "late"}));
}

TEST_F(DesktopTest, AListenerThatLeavesIsNotHeardInsideItself) {
    host::Subscription one;
    one = desktop.onPump([&] {
        seen.push_back("one");
        one.reset();
        desktop.pump();
    });
    desktop.pump();
    EXPECT_EQ(seen, (Seen{"one"}));
}

TEST_F(DesktopTest, TimersFireAtTheirMomentsInOrder) {
    const auto tell = [&](const char* who) { return [this, who] { seen.push_back(who + std::to_string(desktop.now())); }; };
    const auto slow = desktop.every(300, tell("slow "));
    const auto quick = desktop.every(200, tell("quick "));
    const auto equal = desktop.every(300, tell("equal "));
    desktop.advance(199);
    EXPECT_TRUE(seen.empty());
    desktop.advance(401);
    EXPECT_EQ(seen, (Seen{"quick 200", "slow 300", "equal 300", "quick 400", "slow 600", "quick 600", "equal 600"}));
    EXPECT_EQ(desktop.now(), 600);
}

TEST_F(DesktopTest, PumpAloneLetsNoTimePass) {
    const auto timer = desktop.every(1, [&] { seen.push_back("beat"); });
    for (int i = 0; i < 100; ++i) desktop.pump();
    EXPECT_TRUE(seen.empty());
    EXPECT_EQ(desktop.now(), 0);
}

TEST_F(DesktopTest, ATimerMayEndInItsOwnAction) {
    host::Subscription timer;
    timer = desktop.every(10, [&] {
        seen.push_back("beat");
        timer.reset();
        desktop.advance(50);
    });
    desktop.advance(100);
    EXPECT_EQ(seen, (Seen{"beat"}));
    EXPECT_EQ(desktop.now(), 100);
}

TEST_F(DesktopTest, AnActionIsNotEnteredAgainAndOthersGoOn) {
    int deep = 0, deepest = 0;
    const auto slow = desktop.every(100, [&] {
        deepest = std::max(deepest, ++deep);
        seen.push_back("slow in");
        desktop.advance(250);
        seen.push_back("slow out " + std::to_string(desktop.now()));
        --deep;
    });
    const auto quick = desktop.every(150, [&] { seen.push_back("quick " + std::to_string(desktop.now())); });
    desktop.advance(400);
    // What fell due at 200 and 300 while the action ran is dropped; the next one is at 400.
    EXPECT_EQ(seen, (Seen{"slow in", "quick 150", "quick 300", "slow out 350", "slow in", "quick 450", "quick 600", "slow out 650"}));
    EXPECT_EQ(deepest, 1);
    EXPECT_EQ(desktop.now(), 650);
}

TEST_F(DesktopTest, APumpInsideATimerFiresWhatIsDueAtThatMoment) {
    const auto first100 = desktop.every(100, [&] {
        seen.push_back("first in");
        desktop.pump();
        seen.push_back("first out");
    });
    const auto second100 = desktop.every(100, [&] { seen.push_back("second"); });
    desktop.advance(100);
    EXPECT_EQ(seen, (Seen{"first in", "second", "first out"}));
}

TEST_F(DesktopTest, AnErrorInATimerLeavesItRunning) {
    bool fail = true;
    const auto timer = desktop.every(10, [&] {
        seen.push_back("beat");
        if (std::exchange(fail, false)) throw host::HostError(5);
    });
    EXPECT_THROW(desktop.advance(10), host::HostError);
    desktop.advance(10);
    EXPECT_EQ(seen, (Seen{"beat", "beat"}));
}

TEST_F(DesktopTest, TimeAndIntervalsAreChecked) {
    EXPECT_THROW(desktop.advance(-1), host::HostError);
    EXPECT_THROW((void)desktop.every(0, [] {}), host::HostError);
}

}  // namespace
}  // namespace lorvane::screen
