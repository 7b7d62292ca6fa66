#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "WindowRig.h"
#include "host/TextFunctions.h"
#include "support/ErrorOf.h"

/// The wrappers of the host's Explorers, from the window's opening to its close event.
namespace lorvane::host {
namespace {

using namespace support;

class ExplorerWrappers : public testing::Test {
protected:
    static WrapperCollection<ExplorerWrap>& wraps() { return explorerWraps().gExplorerWraps; }
    static std::shared_ptr<ExplorerWrap> wrapper(std::u16string_view key) { return wraps().Item(key); }
    TestRun run{{.instruments = true}};
    Object first = firstExplorer(run);
};

TEST_F(ExplorerWrappers, EachExplorerHasOne) {
    const Object second = run.driver().openExplorer();
    EXPECT_EQ(explorerKeys(), (Keys{0, 1}));
    EXPECT_EQ(wrapper(u"0")->Explorer(), first);
    EXPECT_EQ(wrapper(u"1")->Explorer(), second);
}

TEST_F(ExplorerWrappers, KeysAreNotUsedAgain) {
    for (int turn = 0; turn < 2; ++turn) closeWindow(run.driver().openExplorer());
    run.driver().openExplorer();
    EXPECT_EQ(explorerKeys(), (Keys{0, 3}));
}

/// Runs something in the middle of a window's close event.
struct Watcher final : EventSink {
    std::function<void()> atClose;
    void onEvent(Member event, Args) override {
        if (event == Member::Close) atClose();
    }
};

TEST_F(ExplorerWrappers, OneEndsInsideItsOwnCloseEvent) {
    const Object second = run.driver().openExplorer();
    const std::weak_ptr<ExplorerWrap> watched = wrapper(u"1");
    const auto watcher = std::make_shared<Watcher>();
    Keys inside{-1};
    watcher->atClose = [&] {
        inside = explorerKeys();
        EXPECT_FALSE(watched.lock()->Explorer());
    };
    const Subscription connection = second.advise(watcher);
    closeWindow(second);
    EXPECT_EQ(inside, Keys{0});
    EXPECT_TRUE(watched.expired());
}

TEST_F(ExplorerWrappers, NothingIsHeardOfAClosedWindow) {
    const Object second = run.driver().openExplorer();
    ASSERT_TRUE(isHeard(second));
    closeWindow(second);
    EXPECT_FALSE(isHeard(second));
    EXPECT_TRUE(isHeard(first));
}

TEST_F(ExplorerWrappers, ButtonsReachTheWindowThatIsLeft) {
    int shown = 0;
    laterCommands().showAbout = [&] { ++shown; };
    const Object second = run.driver().openExplorer();
    closeWindow(first);
    run.driver().clickBar(second, u"Standard/Lorvane/About Lorvane");
    EXPECT_EQ(shown, 1);
}

TEST_F(ExplorerWrappers, SelectingAndActivatingHaveNoEffect) {
    const MailItem mail = run.draft(u"Draft", plain(u"Text"));
    const Object second = run.driver().openExplorer();
    run.recorder().clear();
    run.driver().selectItems(first, {{mail.EntryID(), mail.Parent().StoreID()}});
    const std::size_t afterSelection = run.recorder().lines().size();
    first.call(Member::Display);
    EXPECT_EQ(run.recorder().lines().size(), afterSelection);
    EXPECT_EQ(explorerKeys(), (Keys{0, 1}));
}

TEST_F(ExplorerWrappers, KillingLetsTheCallersReferenceGo) {
    auto mine = wrapper(u"0");
    KillExpl(0, mine);
    EXPECT_FALSE(mine);
    EXPECT_EQ(explorerKeys(), Keys());
}

TEST_F(ExplorerWrappers, KillingAnotherWrapperIsAnErrorAndTheEntryStays) {
    auto other = std::make_shared<ExplorerWrap>();
    const HostError error = errorOf([&] { KillExpl(0, other); });
    EXPECT_EQ(error.number(), 1);
    EXPECT_EQ(error.description(), u"Unexpected Error in KillExpl");
    EXPECT_TRUE(other);
    EXPECT_EQ(explorerKeys(), Keys{0});
}

TEST_F(ExplorerWrappers, KillingUnderAKeyThatIsNotThereIsAnError) {
    auto mine = wrapper(u"0");
    EXPECT_EQ(errorOf([&] { KillExpl(7, mine); }).number(), 5);
    EXPECT_TRUE(mine);
}

TEST_F(ExplorerWrappers, AWindowClosesThoughAnotherWrapperStandsUnderItsKey) {
    const auto mine = wrapper(u"0"), other = std::make_shared<ExplorerWrap>();
    wraps().Remove(u"0");
    wraps().Add(other, u"0");
    run.newMail();
    closeWindow(first);
    EXPECT_EQ(wrapper(u"0"), other) << "the stale entry stays";
    EXPECT_FALSE(mine->Explorer());
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ExplorerWrappers, TheLastKeyIsKept) {
    constexpr std::int16_t last = std::numeric_limits<std::int16_t>::max();
    explorerWraps().gExplorerKey = last;
    const Object second = run.driver().openExplorer();
    EXPECT_EQ(explorerKeys(), (Keys{0, last}));
    EXPECT_EQ(explorerWraps().gExplorerKey, last);
    EXPECT_EQ(errorOf([&] { AddExpl(run.seen(first)); }).number(), 457) << "the key is in use";
    closeWindow(second);
    EXPECT_EQ(errorOf([&] { AddExpl(run.seen(first)); }).number(), 6) << "behind everything else";
    EXPECT_EQ(explorerKeys(), (Keys{0, last}));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ExplorerWrappers, ComeAnewAfterTheLastOnesWereLetGo) {
    baseClass(run).UnInitHandler();
    AddExpl(run.seen(first));
    EXPECT_EQ(explorerKeys(), Keys{1});
}

TEST_F(ExplorerWrappers, AFailureInTheMiddleTakesNothingBack) {
    run.faults().failNth(u"Explorer", u"CommandBars", 1, host_failure::Failed);
    run.faults().failNth(u"Explorer", u"CommandBars", 2, host_failure::Failed);
    const Object second = run.driver().openExplorer();
    EXPECT_EQ(explorerKeys(), (Keys{0, 1}));
    EXPECT_EQ(run.lastBox().text, u"Std toolbar not found");
    closeWindow(second);
    EXPECT_EQ(explorerKeys(), Keys{0});
}

TEST_F(ExplorerWrappers, AWindowMayCloseWhileItsBarsAreBuilt) {
    run.faults().failNth(u"Explorer", u"CommandBars", 1, host_failure::Failed);
    run.user().onBox([&](const auto&) { closeWindow(firstExplorer(run)); });
    const Object second = run.driver().openExplorer();
    EXPECT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.application().Explorers().Count(), 1);
    EXPECT_EQ(explorerKeys(), Keys{0});
    EXPECT_FALSE(isHeard(second));
}

/// A window that may outlive its Explorer.
template <const auto& title>
struct Outliving final : Form {
    static constexpr std::u16string_view formName = title;
    Outliving() : Form(formName, u"") {}
};
constexpr std::u16string_view selectEmail = u"frmSelectEmail", openDeleteEvents = u"frmOpenDeleteEvents", settingsWindow = u"frmSettings";

class OutlivingWindows : public ExplorerWrappers {
protected:
    OutlivingWindows() {
        Forms& forms = run.apartment().forms;
        forms.use<Outliving<selectEmail>>();
        forms.use<Outliving<openDeleteEvents>>();
        forms.use<Outliving<settingsWindow>>();
    }
    static int up() {
        int count = 0;
        for (const std::u16string_view name : {selectEmail, openDeleteEvents})
            if (apartment().forms.find(name)) ++count;
        return count;
    }
};

TEST_F(OutlivingWindows, GoWithTheLastWrapper) {
    const Object second = run.driver().openExplorer();
    closeWindow(first);
    EXPECT_EQ(up(), 2);
    closeWindow(second);
    EXPECT_EQ(up(), 0);
    EXPECT_TRUE(run.apartment().forms.find(settingsWindow));
}

TEST_F(OutlivingWindows, StayWhileAStaleEntryDoes) {
    wraps().Remove(u"0");
    wraps().Add(std::make_shared<ExplorerWrap>(), u"0");
    run.newMail();
    closeWindow(first);
    EXPECT_EQ(up(), 2);
}

TEST_F(OutlivingWindows, GoThoughAnInspectorIsOpen) {
    run.newMail();
    closeWindow(first);
    EXPECT_EQ(up(), 0);
}

}  // namespace
}  // namespace lorvane::host
