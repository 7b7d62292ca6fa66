#include "ScreenRig.h"

namespace lorvane::screen {
namespace {

class TimersTest : public ScreenTest {
protected:
    /// The moments at which the timer fired.
    std::vector<std::int64_t> moments;
    frmSample& beating() {
        frmSample& form = sample();
        form.atBeat = [this] { moments.push_back(desktop.now()); };
        return form;
    }
    using Moments = std::vector<std::int64_t>;
};

TEST_F(TimersTest, ATimerFiresEachIntervalWhileItIsEnabled) {
    frmSample& form = beating();
    form.tmrBeat.Interval = 1000;
    user.Advance(5000);
    EXPECT_TRUE(moments.empty());
    form.tmrBeat.Enabled = true;
    user.Advance(2500);
    EXPECT_EQ(moments, (Moments{6000, 7000}));
    form.tmrBeat.Enabled = false;
    user.Advance(5000);
    EXPECT_EQ(moments.size(), 2U);
}

TEST_F(TimersTest, EnablingAgainRestartsTheWait) {
    frmSample& form = beating();
    const auto restart = [&] {
        form.tmrBeat.Enabled = false;
        form.tmrBeat.Interval = 1000;
        form.tmrBeat.Enabled = true;
    };
    restart();
    user.Advance(999);
    restart();
    user.Advance(999);
    EXPECT_TRUE(moments.empty());
    user.Advance(1);
    EXPECT_EQ(moments, (Moments{1999}));
}

TEST_F(TimersTest, AnotherIntervalCountsFromNow) {
    frmSample& form = beating();
    form.tmrBeat.Interval = 1000;
    form.tmrBeat.Enabled = true;
    user.Advance(600);
    form.tmrBeat.Interval = 500;
    user.Advance(500);
    EXPECT_EQ(moments, (Moments{1100}));
}

TEST_F(TimersTest, ATimerMayStopItselfAndUnloadItsWindow) {
    frmSample& form = sample();
    form.atBeat = [&form] { form.unload(); };
    form.tmrBeat.Interval = 10;
    form.tmrBeat.Enabled = true;
    user.Advance(100);
    EXPECT_EQ(said(), (Said{"Load", "tmrBeat_Timer", "Unload", "gone"}));
}

TEST_F(TimersTest, UnloadingEndsTimersAndHidingDoesNot) {
    frmSample& form = beating();
    form.tmrBeat.Interval = 10;
    form.tmrBeat.Enabled = true;
    form.Show(false);
    form.Hide();
    user.Advance(20);
    EXPECT_EQ(moments, (Moments{10, 20}));
    form.unload();
    EXPECT_EQ(said().back(), "gone");
    user.Advance(100);
    EXPECT_EQ(moments.size(), 2U);
}

TEST_F(TimersTest, AHandlerThatLetsTimePassIsNotEnteredAgainEvenWhereItsTimerIsSetAnew) {
    frmSample& form = sample();
    int deep = 0;
    form.atBeat = [&] {
        EXPECT_EQ(++deep, 1);
        form.tmrBeat.Enabled = false;
        form.tmrBeat.Enabled = true;
        screen().DoEvents();
        user.Advance(150);
        --deep;
    };
    form.tmrBeat.Interval = 100;
    form.tmrBeat.Enabled = true;
    user.Advance(100);
    EXPECT_EQ(said(), (Said{"Load", "tmrBeat_Timer"}));
    user.Advance(50);
    EXPECT_EQ(said(), (Said{"Load", "tmrBeat_Timer", "tmrBeat_Timer"}));
}

TEST_F(TimersTest, TypingDuringALongHandlerIsSeenByIt) {
    frmSample& form = sample();
    bool stop = false;
    int rows = 0;
    form.txtSearch.KeyDown = [&](std::int32_t&, std::int32_t) { stop = true; };
    form.atBeat = [&] {
        for (; rows < 100 && !stop; ++rows) screen().DoEvents();
    };
    form.tmrBeat.Interval = 1000;
    form.tmrBeat.Enabled = true;
    user.then([](ScriptedUser& she) { she.Advance(1000); });
    user.atPump(5, [](ScriptedUser& she) { she.Type(u"frmSample", u"txtSearch", u"k"); });
    form.Show(true);
    EXPECT_EQ(rows, 5);
}

TEST_F(TimersTest, ATimerThatIsEnabledByDesignStartsWithTheWindow) {
    class frmDesigned final : public frmSample {
    public:
        frmDesigned() : frmSample(u"frmDesigned") {
            tmrBeat.Interval = 50;
            tmrBeat.Enabled = true;
        }
    };
    const host::Object form = host::makeObject<frmDesigned>();
    user.Advance(100);
    EXPECT_TRUE(said().empty());
    host::implementation<frmDesigned>(form)->load();
    user.Advance(50);
    EXPECT_EQ(said(), (Said{"frmDesigned Load", "frmDesigned tmrBeat_Timer"}));
    host::implementation<frmDesigned>(form)->unload();
}

TEST_F(TimersTest, OnlyTimersOfTheWindowCanBeSet) {
    EXPECT_EQ(refusal([&] { screen().SetTimer(sample(), u"cmdOK", 10); }), u"There is no timer \"cmdOK\".");
    EXPECT_EQ(refusal([&] { screen().SetTimer(sample(), u"tmrBeat", 0); }), u"A timer's interval is one millisecond at least.");
    screen().KillTimer(sample(), u"tmrBeat");
}

}  // namespace
}  // namespace lorvane::screen
