#include "host/WindowRig.h"
#include "support/FaultSweep.h"

/// Each host call of a window's opening and closing fails once: the window can be closed all the same, its wrapper goes with it, and the next window is whole.
namespace lorvane::support {
namespace {

using namespace host;

class WindowSweep : public SweepTest {};

// Nothing of this reaches a store, so that one kind is enough.
INSTANTIATE_TEST_SUITE_P(Calls, WindowSweep,
                         testing::Values(SweptTurns{StoreKind::Memory, FaultKind::Error, 1}, SweptTurns{StoreKind::Memory, FaultKind::LostObject, 1}),
                         [](const auto& turns) { return nameOf(turns.param); });

bool oneMore(std::size_t before, std::size_t after) {
    return after == before + 1;
}
bool oneLess(std::size_t before, std::size_t after) {
    return after + 1 == before;
}

Object activeInspector(const TestRun& run) {
    return ownApplication(run).ActiveInspector();
}

/// The window of the mail that the add-in serves, with each of the buttons that it needs.
void expectWhole(const TestRun& run, const Inspector& mail) {
    int clicks = 0;
    laterCommands().openTutorialPage = [&] { ++clicks; };
    run.driver().clickBar(mail, u"Lorvane/Help");
    laterCommands().openTutorialPage = nullptr;
    EXPECT_EQ(clicks, 1);
}

/// Closes what is open; the next Inspector is whole.
void closeAndGoOn(TestRun& run, bool wordEdited) {
    const Object opened = activeInspector(run);
    ASSERT_TRUE(opened) << "the host opens its windows whatever the add-in does";
    std::vector<std::weak_ptr<clsInspWrap>> wrappers;
    for (const auto& wrapper : inspectorWraps().gInspectorWraps.all()) wrappers.emplace_back(wrapper);
    closeWindow(opened);
    EXPECT_EQ(ownApplication(run).Inspectors().Count(), 0);
    EXPECT_EQ(inspectorKeys(), Keys());
    for (const auto& wrapper : wrappers) EXPECT_TRUE(wrapper.expired());
    const Inspector next = run.newMail();
    EXPECT_EQ(inspectorKeys().size(), 1U);
    if (!wordEdited) expectWhole(run, next);
    closeWindow(next);
    EXPECT_EQ(inspectorKeys(), Keys());
}

FaultSweep opening(std::function<void(TestRun&)> command, RunOptions options = {}) {
    FaultSweep sweep;
    sweep.options = std::move(options);
    sweep.command = std::move(command);
    sweep.windowsFit = oneMore;
    sweep.boxes = {newInspectorBox};
    sweep.check = [wordEdited = sweep.options.editor == model::EditorKind::Word](TestRun& run, const SweptFault&) { closeAndGoOn(run, wordEdited); };
    return sweep;
}

RunOptions wordAt(std::u16string_view version) {
    return {.version = std::u16string(version), .editor = model::EditorKind::Word};
}

/// The one item in the Inbox is opened.
FaultSweep openingTheOneItem(std::function<void(TestRun&)> prepare) {
    FaultSweep sweep =
        opening([](TestRun& run) { run.openMail(ownApplication(run).GetNamespace(u"MAPI").GetDefaultFolder(default_folder::Inbox).Items().Item(1)); });
    sweep.prepare = std::move(prepare);
    return sweep;
}

TEST_P(WindowSweep, OpeningANewMail) {
    run(opening([](TestRun& run) { run.newMail(); }));
}

TEST_P(WindowSweep, OpeningAReceivedMail) {
    run(openingTheOneItem([](TestRun& run) { run.receivedMail(u"Question", plain(u"Text")); }));
}

FaultSweep openingOf(const ItemKind& kind) {
    return openingTheOneItem([kind](TestRun& run) { addItem(run, kind); });
}

TEST_P(WindowSweep, OpeningAPost) {
    run(openingOf(postKind));
}

TEST_P(WindowSweep, OpeningATask) {
    run(openingOf(taskKind));
}

TEST_P(WindowSweep, OpeningAContact) {
    run(openingOf(contactKind));
}

TEST_P(WindowSweep, OpeningAWordMail) {
    run(opening([](TestRun& run) { run.newMail(); }, wordAt(u"11.0.0.5510")));
}

TEST_P(WindowSweep, OpeningAWordMailOnAGuardedHost) {
    run(opening([](TestRun& run) { run.newMail(); }, wordAt(u"10.0.0.6515")));
}

/// The host goes on behind windows that closed: the add-in can be unloaded, and the next connection is whole.
void connectAgain(TestRun& run) {
    EXPECT_EQ(explorerKeys(), Keys());
    EXPECT_EQ(inspectorKeys(), Keys());
    run.disconnect();
    EXPECT_FALSE(run.apartment().gOutlook);
    if (!ownApplication(run).ActiveExplorer()) run.driver().openExplorer();
    run.connect();
    EXPECT_EQ(explorerKeys().size(), 1U);
    EXPECT_TRUE(run.apartment().TemplatesFolder);
    const Inspector mail = run.newMail();
    expectWhole(run, mail);
    closeWindow(mail);
}

TEST_P(WindowSweep, OpeningAnExplorer) {
    FaultSweep sweep;
    sweep.command = [](TestRun& run) { run.driver().openExplorer(); };
    sweep.windowsFit = oneMore;
    sweep.boxes = {{u"Lorvane", u"Std toolbar not found", msgbox::Plain}};
    sweep.check = [](TestRun& run, const SweptFault&) {
        EXPECT_LE(explorerKeys().size(), 2U);
        const std::size_t explorers = static_cast<std::size_t>(ownApplication(run).Explorers().Count());
        EXPECT_EQ(explorers, 2U);
        while (const Object explorer = ownApplication(run).ActiveExplorer()) closeWindow(explorer);
        connectAgain(run);
    };
    run(sweep);
}

TEST_P(WindowSweep, ClosingTheLastExplorer) {
    FaultSweep sweep;
    sweep.command = [](TestRun& run) { closeWindow(firstExplorer(run)); };
    sweep.windowsFit = oneLess;
    sweep.check = [](TestRun& run, const SweptFault&) {
        EXPECT_EQ(ownApplication(run).Explorers().Count(), 0);
        connectAgain(run);
    };
    run(sweep);
}

TEST_P(WindowSweep, ClosingTheLastInspector) {
    FaultSweep sweep;
    sweep.open = [](TestRun& run) {
        run.newMail();
        closeWindow(firstExplorer(run));
    };
    sweep.command = [](TestRun& run) { closeWindow(activeInspector(run)); };
    sweep.windowsFit = oneLess;
    sweep.check = [](TestRun& run, const SweptFault&) {
        EXPECT_EQ(ownApplication(run).Inspectors().Count(), 0);
        connectAgain(run);
    };
    run(sweep);
}

FaultSweep closingAWordMail(std::u16string_view version) {
    FaultSweep sweep;
    sweep.options = wordAt(version);
    sweep.open = [](TestRun& run) { run.newMail(); };
    sweep.command = [](TestRun& run) { closeWindow(activeInspector(run)); };
    sweep.windowsFit = oneLess;
    sweep.check = [](TestRun& run, const SweptFault&) {
        EXPECT_EQ(ownApplication(run).Inspectors().Count(), 0);
        EXPECT_EQ(inspectorKeys(), Keys());
        closeWindow(run.newMail());
        EXPECT_EQ(inspectorKeys(), Keys());
    };
    return sweep;
}

TEST_P(WindowSweep, ClosingAWordMail) {
    run(closingAWordMail(u"11.0.0.5510"));
}

TEST_P(WindowSweep, ClosingAWordMailOnAGuardedHost) {
    run(closingAWordMail(u"10.0.0.6515"));
}

TEST_P(WindowSweep, DisconnectingWithWindowsOpen) {
    FaultSweep sweep;
    sweep.open = [](TestRun& run) {
        run.driver().openExplorer();
        run.newMail();
    };
    sweep.command = [](TestRun& run) { run.disconnect(); };
    sweep.check = [](TestRun& run, const SweptFault&) {
        closeWindow(activeInspector(run));
        EXPECT_TRUE(run.boxes().empty());
        connectAgain(run);
    };
    run(sweep);
}

}  // namespace
}  // namespace lorvane::support
