#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>

#include "automation/ServeProcess.h"

/// The built program's door from outside: how it begins, how it ends, and what a client may do to it.
namespace lorvane::automation::test {
namespace {

const std::vector<std::string> fixedTime = {"--now", "2028-01-10T09:00"};

TEST(Serve, OnStandardInputAndOutputItEndsWithTheInput) {
    ServeProcess door(fixedTime);
    EXPECT_EQ(door.ask("root", {{"name", "Application"}})["$obj"], 1);
    EXPECT_EQ(door.ask("get", {{"obj", 1}, {"member", "Version"}}), "11.0.0.5510");
    door.endInput();
    EXPECT_EQ(door.read(), nullptr) << "nothing but messages";
    EXPECT_EQ(door.wait(), 0);
    EXPECT_EQ(itemCount(door.store(), u"Lorvane"), 3U) << "the samples were made by the add-in";
}

TEST(Serve, ATerminationEndsItAlsoWithABoxUp) {
    for (const int number : {SIGTERM, SIGINT}) {
        ServeProcess door(fixedTime);
        door.ask("root", {{"name", "Modules"}});
        door.send("call", {{"obj", 1}, {"member", "MsgBox"}, {"args", {"Sure?", 4}}});
        EXPECT_EQ(door.read()["method"], "messageBox");
        door.signal(number);
        EXPECT_EQ(door.wait(), 0);
    }
}

TEST(Serve, AClientThatGoesAwayInTheMiddleOfALineWithAWindowUpLeavesAWholeStore) {
    ServeProcess door(fixedTime);
    door.ask("root", {{"name", "Forms"}});
    door.ask("root", {{"name", "User"}});
    door.ask("call", {{"obj", 2}, {"member", "NewMail"}});
    door.ask("get", {{"obj", 1}, {"member", "frmEmail"}});
    door.send("call", {{"obj", 4}, {"member", "Show"}, {"args", {1}}});
    EXPECT_EQ(door.read()["params"]["window"], "frmEmail");
    door.write(R"({"jsonrpc":"2.0","id":9,"method":"ro)");
    door.endInput();
    EXPECT_EQ(door.read()["error"]["code"], -32700);
    EXPECT_EQ(door.read()["id"], 5) << "the window was closed, and the command ended";
    EXPECT_EQ(door.wait(), 0);
    EXPECT_EQ(itemCount(door.store(), u"Lorvane"), 3U);
    EXPECT_EQ(itemCount(door.store(), u"Drafts"), 0U);
}

TEST(Serve, AClientThatGoesAwayBehindItsClickOnABarClosesWhatTheClickOpened) {
    ServeProcess door(fixedTime);
    door.ask("root", {{"name", "User"}});
    door.ask("call", {{"obj", 1}, {"member", "NewMail"}});
    door.send("call", {{"obj", 1}, {"member", "ClickBar"}, {"args", {{{"$obj", 2}}, "Lorvane/Lorvane"}}});
    while (door.read()["params"]["window"] != "frmEmail") {
    }
    door.endInput();
    EXPECT_EQ(door.read()["id"], 3) << "the window was closed, and the command of the click ended";
    EXPECT_EQ(door.read(), nullptr);
    EXPECT_EQ(door.wait(), 0);
    EXPECT_EQ(itemCount(door.store(), u"Lorvane"), 3U);
    EXPECT_EQ(itemCount(door.store(), u"Drafts"), 0U);
}

TEST(Serve, AClientThatNoLongerReadsIsGoneToo) {
    ServeProcess door(fixedTime);
    door.ask("root", {{"name", "Application"}});
    // Far more answers than a pipe holds; they are never read.
    std::string requests;
    for (int i = 0; i < 200; ++i)
        requests += R"({"jsonrpc":"2.0","id":1,"method":"get","params":{"obj":1,"member":"Version"}})"
                    "\n";
    door.write(requests);
    door.signal(SIGTERM);
    EXPECT_EQ(door.wait(), 0);
}

TEST(Serve, LinesBeyondTheLimitAreToldAndSkipped) {
    ServeProcess door(fixedTime);
    const std::string part(1 << 20, 'x');
    door.write("\"");
    for (int i = 0; i < 65; ++i) door.write(part);
    door.write("\"\n");
    EXPECT_EQ(door.read()["error"]["code"], -32600);
    door.write(std::string(100'000, '[') + "\n");
    EXPECT_EQ(door.read()["error"]["code"], -32600);
    door.write("\xFF\xFE\n");
    EXPECT_EQ(door.read()["error"]["code"], -32700);
    EXPECT_EQ(door.ask("root", {{"name", "User"}})["class"], "User");
}

TEST(Serve, WithoutNowTheClockIsTheMachinesAndTimersRunByThemselves) {
    ServeProcess door({});
    door.ask("root", {{"name", "User"}});
    EXPECT_EQ(door.ask("call", {{"obj", 1}, {"member", "Advance"}, {"args", {1}}})["error"]["data"]["number"], 5);
    EXPECT_EQ(door.ask("call", {{"obj", 1}, {"member", "SetClock"}, {"args", {"2028-01-10"}}})["error"]["data"]["number"], 5);
    door.ask("root", {{"name", "Forms"}});
    door.ask("get", {{"obj", 2}, {"member", "frmEmail"}});
    door.ask("call", {{"obj", 3}, {"member", "Show"}});
    EXPECT_EQ(door.ask("get", {{"obj", 3}, {"member", "lstEmails"}})["$obj"], 4);
    EXPECT_EQ(door.ask("get", {{"obj", 4}, {"member", "ListCount"}}), 3);
    door.ask("call", {{"obj", 1}, {"member", "Type"}, {"args", {"frmEmail", "txtSearch", "no such template"}}});
    // The search begins by a timer: asked again and again, the list is empty some time.
    while (door.ask("get", {{"obj", 4}, {"member", "Visible"}}) != false) {
    }
    EXPECT_EQ(door.ask("get", {{"obj", 4}, {"member", "ListCount"}}), 0);
}

TEST(Serve, FromVersionTwelveOnTheBoxAtConnectionIsTheClients) {
    ServeProcess door({"--now", "2028-01-10T09:00", "--host-version", "12.0.0.4518"});
    const Json box = door.read();
    EXPECT_EQ(box["method"], "messageBox");
    EXPECT_EQ(door.ask("root", {{"name", "User"}})["class"], "User") << "the door serves while the box is up";
    EXPECT_EQ(door.ask("call", {{"obj", 1}, {"member", "Answer"}, {"args", {7}}}), nullptr);
    EXPECT_EQ(door.ask("root", {{"name", "Globals"}})["class"], "Globals");
    EXPECT_EQ(door.ask("get", {{"obj", 2}, {"member", "gOutlook"}}), nullptr) << "passive";
    door.endInput();
    EXPECT_EQ(door.wait(), 0);
}

TEST(Serve, ASocketServesOneClientAfterTheOtherAndIsForItsOwnerAlone) {
    const mailstore::test::TempFolder place;
    const std::filesystem::path socket = place.path() / "door";
    ServeProcess door({"--now", "2028-01-10T09:00", "--socket", socket.string()});
    EXPECT_EQ(door.errorLine(), "lorvane: serving at " + socket.string());
    struct stat found {};
    ASSERT_EQ(::stat(socket.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 0777U, 0600U);
    {
        const auto first = connectTo(socket);
        EXPECT_EQ(askOver(*first, "root", {{"name", "Modules"}})["$obj"], 1);
        first->write(R"({"jsonrpc":"2.0","id":2,"method":"call","params":{"obj":1,"member":"MsgBox","args":["Sure?",4]}})"
                     "\n");
        EXPECT_EQ(Json::parse(first->read())["method"], "messageBox");
    }
    const auto second = connectTo(socket);
    EXPECT_EQ(askOver(*second, "get", {{"obj", 1}, {"member", "TextInsert"}})["error"]["code"], -32602) << "the first one's objects are let go";
    const Json user = askOver(*second, "root", {{"name", "User"}});
    const Json boxes = askOver(*second, "call", {{"obj", user["$obj"]}, {"member", "Boxes"}});
    EXPECT_EQ(boxes.back()["answer"], 7) << "nobody was there to answer";
    door.signal(SIGTERM);
    EXPECT_EQ(second->read(), "");
    EXPECT_EQ(door.wait(), 0);
    EXPECT_FALSE(std::filesystem::exists(socket));
}

TEST(Serve, TheLogHasTheActsOfTheClientsUserAmongTheHostCalls) {
    const mailstore::test::TempFolder place;
    const std::filesystem::path log = place.path() / "log";
    ServeProcess door({"--now", "2028-01-10T09:00", "--log", log.string()});
    door.ask("root", {{"name", "Forms"}});
    door.ask("root", {{"name", "User"}});
    door.ask("get", {{"obj", 1}, {"member", "frmEmail"}});
    door.ask("call", {{"obj", 3}, {"member", "Show"}});
    door.ask("call", {{"obj", 2}, {"member", "CloseWindow"}, {"args", {"frmEmail"}}});
    door.ask("call", {{"obj", 2}, {"member", "NewMail"}});
    door.ask("call", {{"obj", 2}, {"member", "ClickBar"}, {"args", {{{"$obj", 4}}, "Lorvane/Insert m-Field/Date"}}});
    door.endInput();
    EXPECT_EQ(door.wait(), 0);
    const auto bytes = mailstore::test::readBytes(log);
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_NE(text.find("act CloseWindow frmEmail\n"), std::string::npos);
    EXPECT_NE(text.find("call Screen.Show"), std::string::npos);
    const std::size_t clicked = text.find("act ClickBar Lorvane/Insert m-Field/Date\n");
    ASSERT_NE(clicked, std::string::npos);
    EXPECT_NE(text.find("call Screen.keybd_event", clicked), std::string::npos) << "what came of the click stands behind it";
}

TEST(Serve, ASocketThatCannotBeMadeIsAFault) {
    const mailstore::test::TempFolder place;
    ServeProcess door({"--now", "2028-01-10T09:00", "--socket", (place.path() / "missing" / "door").string()});
    EXPECT_NE(door.errorLine().find("cannot listen"), std::string::npos);
    EXPECT_EQ(door.wait(), 3);
}

}  // namespace
}  // namespace lorvane::automation::test
