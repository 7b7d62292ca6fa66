#include <gtest/gtest.h>

#include "automation/DoorRig.h"
#include "mailstore/MemoryStore.h"

/// `Fail` on a live session: each host call of an insertion fails once, and the session goes on.
namespace lorvane::automation::test {
namespace {

constexpr std::int32_t privateStoreKind = 2;
constexpr std::int32_t failed = host::host_failure::Failed;

/// An insertion through the door. The requests are the same each time, so the ids are too.
struct Insertion {
    explicit Insertion(std::size_t failingUse) {
        door.ask("root", {{"name", "User"}});
        door.ask("root", {{"name", "Forms"}});
        call(1, "NewMail");  // 3
        call(1, "Focus", Json::array({{{"$obj", 3}}, "Body", 0}));
        door.ask("get", {{"obj", 2}, {"member", "frmEmail"}});  // 4
        call(1, "ClearCalls");
        if (failingUse > 0) call(1, "Fail", {"", "", failingUse, failed, "made to fail"});
        show = call(4, "Show", {1});
        call(1, "Select", {"frmEmail", "lstEmails", 0});
        call(1, "Click", Json::array({"frmEmail", "cmdInsert"}));
        // Whatever happened, boxes are answered and the window closed.
        for (int i = 0; i < 4; ++i) call(1, "Answer", {1});
        call(1, "CloseWindow", {"frmEmail"});
        for (int i = 0; i < 2; ++i) call(1, "Answer", {1});
        call(1, "ClearFails");
        calls = call(1, "Calls");
        windows = call(1, "Windows");
        door.serve();
    }
    int call(int object, const std::string& member, Json args = Json::array()) {
        return door.ask("call", {{"obj", object}, {"member", member}, {"args", std::move(args)}});
    }

    DoorRig door;
    int show = 0, calls = 0, windows = 0;
};

TEST(FaultSweep, EachHostCallOfAnInsertionMayFail) {
    const Insertion whole(0);
    const Json calls = whole.door.answerTo(whole.calls);
    ASSERT_TRUE(calls.is_array());
    ASSERT_GT(calls.size(), 50U);
    const std::size_t answers = whole.door.sent().size();
    ASSERT_GT(answers, 10U);
    const mailstore::MailStore& store = whole.door.store();
    const auto drafts = store.itemCount(store.wellKnownFolder(16)->entryId);
    constexpr std::size_t bound = 150;
    for (std::size_t n = 1; n <= std::min(calls.size(), bound); ++n) {
        SCOPED_TRACE("use " + std::to_string(n) + ": " + calls[n - 1].dump());
        const Insertion insertion(n);
        EXPECT_TRUE(insertion.door.answerTo(insertion.show).is_null() || insertion.door.answerTo(insertion.show).contains("error"));
        for (const Json& window : insertion.door.answerTo(insertion.windows)) EXPECT_EQ(window["name"], "") << "nothing of the add-in is left up";
        std::size_t failures = 0;
        for (const Json& call : insertion.door.answerTo(insertion.calls)) failures += call.contains("error") ? 1 : 0;
        EXPECT_GE(failures, 1U) << "the fault never struck";
        const mailstore::MailStore& kept = insertion.door.store();
        EXPECT_LE(kept.itemCount(kept.wellKnownFolder(16)->entryId), drafts) << "no item was left that an insertion does not leave";
        EXPECT_EQ(kept.itemCount(kept.wellKnownFolder(6)->entryId), 0U);
    }
}

}  // namespace
}  // namespace lorvane::automation::test
