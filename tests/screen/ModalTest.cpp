#include "ScreenRig.h"

namespace lorvane::screen {
namespace {

class ModalTest : public ScreenTest {};

TEST_F(ModalTest, AShowWaitsUntilTheWindowIsHidden) {
    frmSample& form = sample();
    form.atOK = [&] { form.Hide(); };
    user.then([](ScriptedUser& she) { she.Click(u"frmSample", u"chkTips"); });
    user.then([](ScriptedUser& she) { she.Click(u"frmSample", u"cmdOK"); });
    form.Show(true);
    EXPECT_EQ(said(), (Said{"Load", "Activate", "chkTips_Click 1", "cmdOK_Click"}));
    EXPECT_TRUE(form.isLoaded());
    EXPECT_FALSE(form.isVisible());
    EXPECT_TRUE(user.Windows().empty());
}

TEST_F(ModalTest, TheRunningHandlerEndsBeforeTheShowDoes) {
    frmSample& form = sample();
    form.atOK = [&] {
        form.Hide();
        said().push_back("behind Hide");
    };
    user.then([](ScriptedUser& she) { she.Click(u"frmSample", u"cmdOK"); });
    form.Show(true);
    said().push_back("behind Show");
    EXPECT_EQ(said(), (Said{"Load", "Activate", "cmdOK_Click", "behind Hide", "behind Show"}));
}

TEST_F(ModalTest, AWindowMayUnloadInItsOwnHandler) {
    {
        frmSample& form = sample();
        form.atOK = [&form] {
            form.unload();
            form.txtOther.Text = u"still there";  // the running handler keeps the window alive
            said().push_back("behind unload");
        };
        user.then([](ScriptedUser& she) { she.Click(u"frmSample", u"cmdOK"); });
        form.Show(true);
    }
    EXPECT_EQ(said(), (Said{"Load", "Activate", "cmdOK_Click", "Unload", "behind unload", "gone"}));
    EXPECT_EQ(host::apartment().forms.find<frmSample>(), nullptr);
}

TEST_F(ModalTest, AWindowMayEndInsideItsActivate) {
    frmSample& form = sample();
    form.atActivate = [&form] { form.unload(); };
    form.Show(true);
    EXPECT_EQ(said(), (Said{"Load", "Activate", "Unload", "gone"}));
    EXPECT_TRUE(user.leftUp().empty());
}

TEST_F(ModalTest, AWindowNobodyAttendsToIsClosedByItsTitleBar) {
    sample().Show(true);
    EXPECT_EQ(said(), (Said{"Load", "Activate", "Unload", "gone"}));
    EXPECT_EQ(user.leftUp(), (std::vector<std::u16string>{u"frmSample"}));
    EXPECT_TRUE(user.Windows().empty());
}

TEST_F(ModalTest, OpenWindowsEndLastInFirstOut) {
    frmSample& outer = sample();
    frmInner& over = inner();
    said().clear();
    outer.atOK = [&] {
        over.Show(true);
        said().push_back("inner ended");
    };
    over.atOK = [&] {
        outer.Hide();  // ends the outer showing, which waits for the inner one
        said().push_back("outer hidden");
    };
    user.then([](ScriptedUser& she) { she.Click(u"frmSample", u"cmdOK"); });
    user.then([](ScriptedUser& she) {
        EXPECT_EQ(she.Windows(), (std::vector<WindowList::Row>{{u"frmSample", u"A sample", true}, {u"frmInner", u"A sample", true}}));
        she.Click(u"frmInner", u"cmdOK");
    });
    user.then([](ScriptedUser& she) {
        EXPECT_EQ(she.Windows(), (std::vector<WindowList::Row>{{u"frmInner", u"A sample", true}}));
        she.CloseWindow(u"frmInner");
    });
    outer.Show(true);
    said().push_back("outer ended");
    EXPECT_EQ(said(), (Said{"Activate", "cmdOK_Click", "frmInner Activate", "frmInner cmdOK_Click", "outer hidden", "frmInner Unload", "frmInner gone",
                            "inner ended", "outer ended"}));
}

TEST_F(ModalTest, ActivateComesOnceAShowing) {
    frmSample& form = sample();
    form.Show(false);
    form.Show(false);
    EXPECT_EQ(said(), (Said{"Load", "Activate"}));
    form.Hide();
    form.Show(false);
    EXPECT_EQ(said(), (Said{"Load", "Activate", "Activate"}));
}

TEST_F(ModalTest, AWindowThatIsUpCannotBeShownModally) {
    frmSample& form = sample();
    form.Show(false);
    try {
        form.Show(true);
        FAIL() << "shown twice";
    } catch (const host::HostError& error) {
        EXPECT_EQ(error.number(), 400);
    }
    EXPECT_EQ(user.Windows(), (std::vector<WindowList::Row>{{u"frmSample", u"A sample", false}}));
}

TEST_F(ModalTest, AModalWindowCoversThoseOpenedBeforeIt) {
    frmSample& under = sample();
    frmInner& over = inner();
    under.Show(false);
    user.then([](ScriptedUser& she) {
        EXPECT_EQ(refusal([&] { she.Click(u"frmSample", u"cmdOK"); }), u"The window \"frmSample\" is covered by the modal window \"frmInner\".");
        EXPECT_EQ(refusal([&] { she.Type(u"frmSample", u"txtSearch", u"x"); }), u"The window \"frmSample\" is covered by the modal window \"frmInner\".");
        EXPECT_EQ(refusal([&] { she.CloseWindow(u"frmSample"); }), u"The window \"frmSample\" is covered by the modal window \"frmInner\".");
        she.CloseWindow(u"frmInner");
    });
    over.Show(true);
    user.Click(u"frmSample", u"cmdOK");
    EXPECT_EQ(said().back(), "cmdOK_Click");
}

TEST_F(ModalTest, AWindowOpenedOverAModalOneTakesInput) {
    frmSample& modal = sample();
    modal.atOK = [&] { inner().Show(false); };
    user.then([](ScriptedUser& she) { she.Click(u"frmSample", u"cmdOK"); });
    user.then([](ScriptedUser& she) { she.Click(u"frmInner", u"cmdOK"); });
    user.then([](ScriptedUser& she) { she.CloseWindow(u"frmSample"); });
    modal.Show(true);
    EXPECT_EQ(user.Windows(), (std::vector<WindowList::Row>{{u"frmInner", u"A sample", false}}));
}

TEST_F(ModalTest, AMistakeOfTheScriptDoesNotReachTheCodeUnderIt) {
    user.onFailure({});
    user.then([](ScriptedUser& she) { she.Click(u"frmSample", u"cmdNone"); });
    user.then([](ScriptedUser& she) { she.CloseWindow(u"frmSample"); });
    sample().Show(true);
    ASSERT_EQ(user.failures().size(), 1U);
    EXPECT_EQ(user.failures()[0].description(), u"The window \"frmSample\" has no control \"cmdNone\".");
    EXPECT_TRUE(user.leftUp().empty());
}

TEST_F(ModalTest, AnErrorThatLeavesTheShowTakesTheWindowDown) {
    frmSample& form = sample();
    form.atActivate = [] { throw host::HostError(9); };
    EXPECT_THROW(form.Show(true), host::HostError);
    EXPECT_FALSE(form.isVisible());
    EXPECT_TRUE(user.Windows().empty());
}

TEST_F(ModalTest, AnActCanComeInTheMiddleOfAPump) {
    frmSample& form = sample();
    form.Show(false);
    user.atPump(3, [&](ScriptedUser& she) { she.Type(u"frmSample", u"txtOther", u"x"); });
    for (int row = 1; row <= 4; ++row) {
        screen().DoEvents();
        EXPECT_EQ(form.txtOther.Text.get(), row < 3 ? u"" : u"x") << row;
    }
    EXPECT_EQ(user.pumpCount(), 4U);
    EXPECT_EQ(desktop.pumpCount(), 4U);
}

TEST_F(ModalTest, UnloadedWindowsAreNotHeldAndApartmentsMayEndWithWindowsUp) {
    sample().Show(false);
    inner().Show(false);
    user.CloseWindow(u"FRMSAMPLE");
    EXPECT_EQ(said().back(), "gone");
    EXPECT_EQ(user.Windows().size(), 1U);
}

}  // namespace
}  // namespace lorvane::screen
