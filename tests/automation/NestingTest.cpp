#include <gtest/gtest.h>

#include "automation/DoorRig.h"

/// Requests inside others: what waits for the user, how deep that goes, and a client that goes away meanwhile.
namespace lorvane::automation::test {
namespace {

/// A door whose handle 1 is the user and 2 the modules.
class NestingTest : public testing::Test {
protected:
    NestingTest() {
        door.ask("root", {{"name", "User"}});
        door.ask("root", {{"name", "Modules"}});
    }
    int user(const std::string& member, Json args, bool early = false) {
        return door.ask("call", {{"obj", 1}, {"member", member}, {"args", std::move(args)}}, early);
    }
    int box() { return door.ask("call", {{"obj", 2}, {"member", "MsgBox"}, {"args", {"Sure?", 4}}}); }
    /// The ids of the answers, in their order.
    std::vector<int> order() {
        std::vector<int> ids;
        for (const Json& message : door.sent())
            if (message.contains("id")) ids.push_back(message["id"]);
        return ids;
    }

    DoorRig door;
};

TEST_F(NestingTest, CommandsEndLastInFirstOut) {
    const int outer = box(), inner = box(), first = user("Answer", {7}), second = user("Answer", {6});
    door.serve();
    EXPECT_EQ(order(), (std::vector<int>{1, 2, first, inner, second, outer}));
    EXPECT_EQ(door.answerTo(inner)["result"], 7);
    EXPECT_EQ(door.answerTo(outer)["result"], 6);
}

TEST_F(NestingTest, RequestsInsideEachOtherEndAtALimitAndAllAreAnsweredStill) {
    constexpr int opened = 40;
    std::vector<int> boxes;
    for (int i = 0; i < opened; ++i) boxes.push_back(box());
    const int answered = user("Answer", {6});
    door.serve();
    const auto limit = static_cast<std::size_t>(RemoteUser::deepestRequest);
    EXPECT_EQ(door.answerTo(boxes[limit - 1])["error"]["data"]["number"], RemoteUser::outOfStack);
    EXPECT_EQ(door.answerTo(boxes.back())["error"]["data"]["number"], RemoteUser::outOfStack);
    EXPECT_EQ(door.answerTo(answered), nullptr);
    EXPECT_EQ(door.answerTo(boxes[limit - 2])["result"], 6) << "the deepest one that came up was answered";
    EXPECT_EQ(door.answerTo(boxes[0])["result"], 7) << "the client went, and the others got the careful answer";
    EXPECT_EQ(order().size(), static_cast<std::size_t>(opened) + 3);
}

TEST_F(NestingTest, AClientThatGoesAwayClosesItsWindowAsTheTitleBarWould) {
    const int forms = door.ask("root", {{"name", "Forms"}});
    const int chooser = door.ask("get", {{"obj", 3}, {"member", "frmEmail"}});
    const int shown = door.ask("call", {{"obj", 4}, {"member", "Show"}, {"args", {1}}});
    door.serve();
    EXPECT_EQ(door.answerTo(forms)["class"], "Forms");
    EXPECT_EQ(door.answerTo(chooser)["class"], "frmEmail");
    EXPECT_EQ(door.answerTo(shown), nullptr) << "the command ended";
    EXPECT_EQ(door.windows().find(u"frmEmail"), nullptr);
    EXPECT_EQ(host::apartment().forms.find(u"frmEmail"), nullptr) << "unloaded, not hidden alone";
}

TEST_F(NestingTest, AlsoAWindowThatIsNotModal) {
    door.ask("root", {{"name", "Forms"}});
    door.ask("get", {{"obj", 3}, {"member", "frmEmail"}});
    const int shown = door.ask("call", {{"obj", 4}, {"member", "Show"}});
    const int windows = user("Windows", Json::array());
    door.serve();
    EXPECT_EQ(door.answerTo(shown), nullptr);
    EXPECT_EQ(door.answerTo(windows).back()["name"], "frmEmail");
    EXPECT_EQ(door.windows().find(u"frmEmail"), nullptr);
}

TEST_F(NestingTest, InsideAnEventPumpRequestsAreServedWhileAWindowTakesInput) {
    door.ask("root", {{"name", "Forms"}});
    door.ask("get", {{"obj", 3}, {"member", "frmEmail"}});
    const int show = door.ask("call", {{"obj", 4}, {"member", "Show"}, {"args", {1}}});
    // The list is filled anew a while after the last key, with an event pump at each row.
    const int fill = user("Type", {"frmEmail", "txtSearch", "s"});
    const int wait = user("Advance", {2000});
    const int during = user("Windows", Json::array(), true);
    const int close = user("CloseWindow", {"frmEmail"}, true);
    door.serve();
    EXPECT_EQ(order(), (std::vector<int>{1, 2, 3, 4, fill, during, close, wait, show}));
}

TEST_F(NestingTest, WhileAWindowLoadsTheyWait) {
    door.ask("root", {{"name", "Forms"}});
    const int load = door.ask("get", {{"obj", 3}, {"member", "frmEmail"}});
    const int behind = user("Windows", Json::array(), true);
    door.serve();
    EXPECT_EQ(order(), (std::vector<int>{1, 2, 3, load, behind}));
}

}  // namespace
}  // namespace lorvane::automation::test
