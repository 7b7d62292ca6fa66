#include "host/Redemption.h"
#include "host/WindowRig.h"
#include "store/FoldersRig.h"
#include "support/FaultSweep.h"

/// Each host call of connecting and disconnecting fails once: each failing step costs only itself, and the next connection is whole.
namespace lorvane::support {
namespace {

using namespace host;

class ConnectionSweep : public SweepTest {};
SWEEP_CALLS(ConnectionSweep);

/// What differs from a connection that is swept on both stores does not reach them.
class ConnectionInMemorySweep : public SweepTest {};
INSTANTIATE_TEST_SUITE_P(Calls, ConnectionInMemorySweep,
                         testing::Values(SweptTurns{StoreKind::Memory, FaultKind::Error, 1}, SweptTurns{StoreKind::Memory, FaultKind::LostObject, 1}),
                         [](const auto& turns) { return nameOf(turns.param); });

/// A sample on its way: saved into Drafts, and not moved.
bool isSample(const PlacedItem& item) {
    return item.folder == u"\\Personal Folders\\Drafts" && item.record.head.subject.ends_with(u" (Sample)") &&
           item.record.body.starts_with(u"Dear [FirstName]");
}

/// The Explorer is served: it has one wrapper, and a click on the toolbar's popup and one on the menu reach it.
void expectServed(TestRun& run) {
    EXPECT_EQ(explorerKeys().size(), 1U);
    int clicks = 0;
    laterCommands().showAbout = [&] { ++clicks; };
    for (const std::u16string_view path : {u"Standard/Lorvane/About Lorvane", u"Menu Bar/Tools/Meravix/Lorvane/About Lorvane"})
        run.driver().clickBar(firstExplorer(run), path);
    laterCommands().showAbout = nullptr;
    EXPECT_EQ(clicks, 2);
}

/// The host can close its window, and nothing of the add-in is left on it.
void expectItCloses(TestRun& run) {
    const Object explorer = firstExplorer(run);
    closeWindow(explorer);
    EXPECT_EQ(ownApplication(run).Explorers().Count(), 0);
    EXPECT_FALSE(run.apartment().gOutlook);
    EXPECT_FALSE(isHeard(explorer));
    EXPECT_EQ(explorerKeys(), Keys());
}

const NamedBox noToolbar{u"Lorvane", u"Std toolbar not found", msgbox::Plain};

FaultSweep connecting(std::u16string_view version, bool samples) {
    FaultSweep sweep;
    sweep.options.version = version;
    sweep.options.connected = false;
    sweep.options.samples = samples;
    sweep.command = [](TestRun& run) { run.connect(); };
    sweep.mayLeaveNew = isSample;
    sweep.boxes = {noToolbar};
    sweep.check = [samples](TestRun& run, const SweptFault&) {
        const std::size_t templates = subjectsIn(run.templatesFolder()).size();
        EXPECT_LE(templates, samples ? 3U : 0U);
        run.disconnect();
        EXPECT_FALSE(run.apartment().gOutlook);
        run.connect();
        EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), run.templatesFolder().EntryID()) << "the next connection is whole again";
        EXPECT_TRUE(run.apartment().gRdoSession);
        EXPECT_EQ(run.setting(u"LastFolderEntryid"), run.templatesFolder().EntryID());
        EXPECT_EQ(subjectsIn(run.templatesFolder()).size(), templates) << "samples are made with the folder only";
        expectServed(run);
        expectItCloses(run);
    };
    return sweep;
}

TEST_P(ConnectionSweep, TheFirstConnection) {
    run(connecting(u"11.0.0.5510", true));
}

TEST_P(ConnectionSweep, ALaterConnection) {
    FaultSweep sweep = connecting(u"11.0.0.5510", false);
    sweep.prepare = [](TestRun& run) { usePrivately(run, run.templatesFolder()); };
    run(sweep);
}

TEST_P(ConnectionInMemorySweep, AtVersion9) {
    run(connecting(u"9.0.0.6627", true));
}

// A version that cannot be read is none that is refused: the connection goes on, and finds all that it makes there already.
TEST_P(ConnectionSweep, AtARefusedVersion) {
    FaultSweep sweep;
    sweep.options.version = u"12.0.0.4518";
    sweep.options.connected = false;
    sweep.prepare = [](TestRun& run) { usePrivately(run, run.templatesFolder()); };
    sweep.command = [](TestRun& run) { run.connect(); };
    sweep.boxes = {{u"Please Download Software for Correct Version of Outlook!", u"You have installed a version of Lorvane that only works with",
                    msgbox::QuestionInformation},
                   noToolbar};
    sweep.check = [](TestRun& run, const SweptFault&) {
        run.disconnect();
        EXPECT_EQ(explorerKeys(), Keys());
        EXPECT_FALSE(isHeard(firstExplorer(run)));
        EXPECT_FALSE(run.apartment().gOutlook);
    };
    run(sweep);
}

TEST_P(ConnectionSweep, Disconnecting) {
    FaultSweep sweep;
    sweep.prepare = [](TestRun& run) { run.addTemplate(u"Offer", plain(u"Text")); };
    // A window that stands open is taken down with the add-in.
    sweep.open = [](TestRun& run) { run.apartment().forms.useNamed(u"frmEmail")->Show(false); };
    sweep.command = [](TestRun& run) { run.disconnect(); };
    sweep.windowsFit = [](std::size_t before, std::size_t after) { return after == before - 1; };
    sweep.check = [](TestRun& run, const SweptFault&) {
        EXPECT_FALSE(run.apartment().gOutlook);
        EXPECT_FALSE(run.apartment().gRdoSession);
        EXPECT_FALSE(run.apartment().TemplatesFolder);
        EXPECT_EQ(explorerKeys(), Keys());
        EXPECT_FALSE(isHeard(firstExplorer(run)));
        run.connect();
        EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), run.templatesFolder().EntryID()) << "the next connection is whole again";
        expectServed(run);
        expectItCloses(run);
    };
    run(sweep);
}

}  // namespace
}  // namespace lorvane::support
