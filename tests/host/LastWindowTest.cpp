#include <gtest/gtest.h>

#include "WindowRig.h"

/// When the last window closes, the add-in lets go of the host, so that the host can end.
namespace lorvane::host {
namespace {

using namespace support;

class LastWindow : public testing::Test {
protected:
    bool holdsTheHost() { return static_cast<bool>(run.apartment().gOutlook); }
    TestRun run;
    Object explorer = firstExplorer(run);
};

TEST_F(LastWindow, AnExplorerAloneEndsIt) {
    const std::weak_ptr<ExplorerWrap> wrapper = explorerWraps().gExplorerWraps.Item(u"0");
    closeWindow(explorer);
    EXPECT_FALSE(holdsTheHost());
    EXPECT_FALSE(run.apartment().TemplatesFolder);
    EXPECT_TRUE(wrapper.expired());
    EXPECT_FALSE(isHeard(explorer));
}

TEST_F(LastWindow, TheConnectionsExplorerBesideAnotherDoesNotEndIt) {
    const Object second = run.driver().openExplorer();
    closeWindow(explorer);
    EXPECT_TRUE(holdsTheHost());
    // Of the others nobody hears that they were the last.
    closeWindow(second);
    EXPECT_TRUE(holdsTheHost());
    EXPECT_EQ(explorerKeys(), Keys());
}

TEST_F(LastWindow, BesideAnInspectorAllStaysAndTheInspectorEndsIt) {
    const Inspector mail = run.newMail();
    const std::weak_ptr<clsInspWrap> wrapper = inspectorWraps().gInspectorWraps.Item(u"0");
    closeWindow(explorer);
    EXPECT_TRUE(holdsTheHost());
    EXPECT_TRUE(run.apartment().TemplatesFolder);
    EXPECT_EQ(inspectorKeys(), Keys{0});
    EXPECT_FALSE(wrapper.expired());
    closeWindow(mail);
    EXPECT_FALSE(holdsTheHost());
    EXPECT_FALSE(run.apartment().TemplatesFolder);
    EXPECT_EQ(inspectorKeys(), Keys());
    EXPECT_TRUE(wrapper.expired());
    EXPECT_FALSE(isHeard(mail));
}

TEST_F(LastWindow, AnInspectorBesideAnExplorerDoesNotEndIt) {
    closeWindow(run.newMail());
    EXPECT_TRUE(holdsTheHost());
    closeWindow(explorer);
    EXPECT_FALSE(holdsTheHost());
}

TEST_F(LastWindow, OnlyTheNewestInspectorEndsIt) {
    const Inspector older = run.newMail(), newest = run.newMail();
    closeWindow(explorer);
    closeWindow(older);
    EXPECT_TRUE(holdsTheHost());
    closeWindow(newest);
    EXPECT_FALSE(holdsTheHost());
}

TEST_F(LastWindow, TheNewestInspectorBesideAnotherDoesNotEndIt) {
    const Inspector older = run.newMail(), newest = run.newMail();
    closeWindow(explorer);
    closeWindow(newest);
    EXPECT_TRUE(holdsTheHost());
    // Of the older one nobody hears that it was the last.
    closeWindow(older);
    EXPECT_TRUE(holdsTheHost());
    EXPECT_EQ(inspectorKeys(), Keys());
}

TEST_F(LastWindow, AWindowWithoutAWrapperEndsItToo) {
    const Inspector contact = openItem(run, contactKind);
    closeWindow(explorer);
    EXPECT_TRUE(holdsTheHost());
    closeWindow(contact);
    EXPECT_FALSE(holdsTheHost());
}

TEST_F(LastWindow, AStickyNoteDoesNotTakeTheInspectorsPlace) {
    const Inspector mail = run.newMail(), note = openItem(run, noteKind);
    EXPECT_FALSE(isHeard(note));
    closeWindow(explorer);
    closeWindow(note);
    EXPECT_TRUE(holdsTheHost());
    closeWindow(mail);
    EXPECT_FALSE(holdsTheHost());
}

TEST_F(LastWindow, AContactDoesTakeIt) {
    const Inspector mail = run.newMail(), contact = openItem(run, contactKind);
    EXPECT_TRUE(isHeard(contact));
    closeWindow(explorer);
    closeWindow(contact);
    EXPECT_TRUE(holdsTheHost());
    closeWindow(mail);
    EXPECT_TRUE(holdsTheHost());
}

TEST_F(LastWindow, NothingIsWrappedBehindIt) {
    closeWindow(explorer);
    const Object later = run.driver().openExplorer();
    const Inspector mail = run.newMail();
    EXPECT_FALSE(isHeard(later));
    EXPECT_FALSE(isHeard(mail));
    EXPECT_EQ(explorerKeys(), Keys());
    EXPECT_EQ(inspectorKeys(), Keys());
}

TEST(LastWindowFailures, ACountThatCannotBeReadEndsNothing) {
    for (const std::u16string_view member : {u"Explorers", u"Inspectors"}) {
        TestRun run({.instruments = true});
        const Object explorer = firstExplorer(run);
        run.faults().failNth(u"Application", member, 1, host_failure::Failed);
        closeWindow(explorer);
        EXPECT_EQ(run.faults().failures(), 1U);
        EXPECT_TRUE(run.apartment().gOutlook);
        EXPECT_EQ(explorerKeys(), Keys()) << "the wrapper goes all the same";
        EXPECT_TRUE(run.boxes().empty());
    }
}

TEST(LastWindowLater, AnExplorerThatOpenedBehindTheConnectionDoesNotEndIt) {
    TestRun run({.explorer = false});
    closeWindow(run.driver().openExplorer());
    EXPECT_TRUE(run.apartment().gOutlook);
    EXPECT_EQ(explorerKeys(), Keys());
}

}  // namespace
}  // namespace lorvane::host
