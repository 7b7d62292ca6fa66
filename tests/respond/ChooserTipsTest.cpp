#include <gtest/gtest.h>

#include <algorithm>

#include "ChooserRig.h"
#include "respond/FurtherWindows.h"

/// The balloon beside the search box, the manual, and the links that answer the pointer.
namespace lorvane::support {
namespace {

using namespace host;
using respond::frmEmail;

class ChooserTipsTest : public testing::Test {
protected:
    ChooserTipsTest() {
        auto& windows = respond::furtherWindows();
        windows.showSearchTip = [this](const Control& beside) { said.push_back(u"tip beside " + std::u16string(beside.name())); };
        windows.closeSearchTip = [this] { said.emplace_back(u"closed"); };
        windows.openManual = [this](std::int32_t topic) { said.push_back(u"manual " + decimal(topic)); };
    }
    std::vector<std::u16string> said;
    TestRun run;
};

TEST_F(ChooserTipsTest, TheBalloonComesAtOpeningUnlessTheSettingSaysNo) {
    struct Case {
        std::u16string_view setting;
        bool shown;
    };
    for (const Case& turn : {Case{u"", true}, Case{u"True", true}, Case{u"False", false}, Case{u"false", true}}) {
        run.setSetting(u"ShowTips", turn.setting);
        said.clear();
        openChooser(run, [&](ScriptedUser&) {
            EXPECT_EQ(std::ranges::count(said, u"tip beside txtSearch"), turn.shown ? 1 : 0) << toUtf8(turn.setting);
            said.clear();
        });
        EXPECT_EQ(said, Subjects{u"closed"}) << "it goes with the window";
    }
}

TEST_F(ChooserTipsTest, TheLinkShowsTheBalloonAndClosesTheOneThatIsOpen) {
    run.setSetting(u"ShowTips", u"False");
    openChooser(run, [&](ScriptedUser& she) {
        said.clear();
        she.Click(chooserName, u"lblShowTips");
        EXPECT_EQ(said, (Subjects{u"closed", u"tip beside txtSearch"}));
        EXPECT_EQ(run.setting(u"ShowTips"), u"False") << "the setting stays";
        EXPECT_TRUE(chooser().lblShowTips.Visible);
    });
}

TEST_F(ChooserTipsTest, ABalloonThatCannotComeKeepsNothingFromComing) {
    respond::furtherWindows().showSearchTip = [](const Control&) { throw HostError(host_failure::Failed); };
    run.addTemplate(u"Alpha", plain(u"Text"), u"Sales");
    run.addTemplate(u"Beta", plain(u"Text"));
    openChooser(run, [](ScriptedUser& she) {
        she.Select(chooserName, u"cmbCategories", 1);
        EXPECT_EQ(listed(), Subjects{u"Alpha"}) << "the opening was complete";
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserTipsTest, HelpOpensTheManual) {
    openChooser(run, [&](ScriptedUser& she) {
        said.clear();
        she.Click(chooserName, u"cmdHelp");
        EXPECT_EQ(said, Subjects{u"manual 1000"});
        EXPECT_TRUE(isChooserOpen());
    });
}

TEST_F(ChooserTipsTest, WithoutBalloonAndManualTheirButtonsAreSilent) {
    respond::furtherWindows() = {};
    openChooser(run, [](ScriptedUser& she) {
        she.Click(chooserName, u"lblShowTips");
        she.Click(chooserName, u"cmdHelp");
        EXPECT_TRUE(isChooserOpen());
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserTipsTest, ErrorsOfBothShowTheStandardBox) {
    respond::furtherWindows().openManual = [](std::int32_t) { throw HostError(runtime_error::FileNotFound); };
    openChooser(run, [&](ScriptedUser& she) {
        respond::furtherWindows().showSearchTip = [](const Control&) { throw HostError(host_failure::Failed); };
        she.Click(chooserName, u"lblShowTips");
        she.Click(chooserName, u"cmdHelp");
    });
    ASSERT_EQ(run.boxes().size(), 2U);
    EXPECT_EQ(run.boxes()[0].title, u"frmEmail.lblShowTips_Click - Lorvane");
    EXPECT_EQ(run.boxes()[1].title, u"frmEmail.cmdHelp_Click - Lorvane");
    EXPECT_EQ(run.boxes()[1].text, u"Error 53: File not found");
}

TEST_F(ChooserTipsTest, TheBannerFollowsItsTwoRoutines) {
    openChooser(run, [&](ScriptedUser&) {
        chooser().HideTips();
        EXPECT_EQ(run.setting(u"ShowTips"), u"False");
        EXPECT_EQ(chooser().picLorvane.Height, 480);
        EXPECT_TRUE(chooser().lblShowTips.Visible);
        chooser().ShowTips();
        EXPECT_EQ(run.setting(u"ShowTips"), u"True");
        EXPECT_EQ(chooser().picLorvane.Height, 1440);
        EXPECT_FALSE(chooser().lblShowTips.Visible);
    });
}

TEST_F(ChooserTipsTest, LinksAreOrangeUnderThePointerAndBlueBesideThem) {
    constexpr std::int32_t orange = 33023, blue = 16711680;
    openChooser(run, [&](ScriptedUser& she) {
        frmEmail& f = chooser();
        EXPECT_EQ(f.lblChangeFolder.ForeColor, blue);
        EXPECT_EQ(f.lblShowTips.ForeColor, blue);
        she.Click(chooserName, u"lblChangeFolder");
        for (const std::u16string_view beside : {u"picLorvane", u"Label2"}) {
            she.Hover(chooserName, u"lblChangeFolder");
            EXPECT_EQ(f.lblChangeFolder.ForeColor, orange);
            she.Hover(chooserName, u"lblShowTips");
            EXPECT_EQ(f.lblShowTips.ForeColor, orange);
            she.Hover(chooserName, beside);
            EXPECT_EQ(f.lblChangeFolder.ForeColor, blue);
            EXPECT_EQ(f.lblShowTips.ForeColor, orange) << "only the form itself sets it back";
            she.Hover(chooserName);
            EXPECT_EQ(f.lblShowTips.ForeColor, blue);
        }
        she.Hover(chooserName, u"lblChangeFolder");
        she.Hover(chooserName);
        EXPECT_EQ(f.lblChangeFolder.ForeColor, blue);
    });
}

}  // namespace
}  // namespace lorvane::support
