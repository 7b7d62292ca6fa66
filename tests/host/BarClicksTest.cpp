#include <gtest/gtest.h>

#include <algorithm>

#include "host/BarsRig.h"

/// What a person's click on each of the add-in's buttons and menu entries does.
namespace lorvane::support {
namespace {

using namespace host;

constexpr std::u16string_view toolbarPopup = u"Standard/Lorvane", menuPopup = u"Menu Bar/Tools/Meravix/Lorvane";

const std::vector<ClickRow> explorerClicks = {
    {u"Standard/Lorvane/Templates", chooserToCopy},
    {u"Standard/Lorvane/Create Template", "blank template"},
    {u"Standard/Lorvane/New Email using Template", chooserForNewMail},
    {u"Standard/Lorvane/Reply using Template", "replyToSelection 1"},
    {u"Standard/Lorvane/Reply To All using Template", "replyToSelection 2"},
    {u"Standard/Lorvane/Forward using Template", "replyToSelection 3"},
    {u"Standard/Lorvane/Settings", "showSettings"},
    {u"Standard/Lorvane/Support", "writeSupportMail"},
    {u"Standard/Lorvane/Help", "openManual 1000"},
    {u"Standard/Lorvane/Tutorial", "openTutorial"},
    {u"Standard/Lorvane/About Lorvane", "showAbout"},
    {u"Menu Bar/Tools/Meravix/Lorvane/Settings...", "showSettings"},
    {u"Menu Bar/Tools/Meravix/Lorvane/Templates...", chooserToCopy},
    {u"Menu Bar/Tools/Meravix/Lorvane/Support", "writeSupportMail"},
    {u"Menu Bar/Tools/Meravix/Lorvane/Help", "openManual 1000"},
    {u"Menu Bar/Tools/Meravix/Lorvane/Tutorial", "openTutorial"},
    {u"Menu Bar/Tools/Meravix/Lorvane/About Lorvane", "showAbout"},
};
const std::vector<ClickRow> explorerProcessClicks = {
    {u"Standard/Lorvane/Create New Action Process", "showProcessWizard 1"},           {u"Standard/Lorvane/Reply using Process", "showProcessWizard 2"},
    {u"Standard/Lorvane/Reply To All using Process", "showProcessWizard 3"},          {u"Standard/Lorvane/Forward using Process", "showProcessWizard 4"},
    {u"Menu Bar/Tools/Meravix/Lorvane/Process Templates...", "showProcessTemplates"},
};

const std::vector<ClickRow> writtenMailClicks = {
    {u"Lorvane/Lorvane", chooserToInsert},
    {u"Lorvane/Save Template", "saveActiveItemAsTemplate"},
    {u"Lorvane/Create Template", "template of the selection"},
    {u"Lorvane/Help", "openTutorialPage"},
};

const std::vector<ClickRow> readMailClicks = {
    {u"Lorvane/Save Template", "saveActiveItemAsTemplate"},           {u"Lorvane/Create Template", "template of the selection"},
    {u"Lorvane/Respond/Reply using Template", "replyToOpenMail 1"},   {u"Lorvane/Respond/Reply To All using Template", "replyToOpenMail 2"},
    {u"Lorvane/Respond/Forward using Template", "replyToOpenMail 3"}, {u"Lorvane/Help", "openTutorialPage"},
};
const std::vector<ClickRow> readMailProcessClicks = {
    {u"Lorvane/Respond/Reply using Process", "showProcessWizard 5"},
    {u"Lorvane/Respond/Reply To All using Process", "showProcessWizard 6"},
    {u"Lorvane/Respond/Forward using Process", "showProcessWizard 7"},
};

/// The rows of this configuration.
std::vector<ClickRow> rowsOf(std::vector<ClickRow> rows, const std::vector<ClickRow>& ofProcesses) {
    if (ProcessFeatureEnabled) rows.insert(rows.end(), ofProcesses.begin(), ofProcesses.end());
    return rows;
}

/// The tables leave out none of the buttons that a person sees.
void expectSamePaths(Captions paths, std::vector<ClickRow> rows, const Captions& others = {}) {
    Captions inTable = pathsOf(rows);
    inTable.insert(inTable.end(), others.begin(), others.end());
    std::ranges::sort(paths);
    std::ranges::sort(inTable);
    EXPECT_EQ(paths, inTable);
}

TEST(BarClicksTest, EachEntryOfAnExplorerDoesItsOneThing) {
    TestRun run;
    const Object explorer = theExplorer(run);
    const std::vector<ClickRow> rows = rowsOf(explorerClicks, explorerProcessClicks);
    Captions paths;
    for (const std::u16string_view popup : {toolbarPopup, menuPopup})
        appendPaths(paths, std::u16string(popup), controlAt(run, explorer, popup)->controls, true);
    expectSamePaths(paths, rows);
    const auto told = recordCommands();
    expectClicks(run, told, explorer, rows);
}

TEST(BarClicksTest, EachButtonOfAMailThatIsWrittenDoesItsOneThing) {
    TestRun run;
    const Object mail = run.newMail();
    Captions paths;
    appendPaths(paths, u"Lorvane", barOf(run, mail, u"Lorvane")->controls, true);
    expectSamePaths(paths, writtenMailClicks, {u"Lorvane/Insert m-Field/Full Name", u"Lorvane/Insert m-Field/First Name", u"Lorvane/Insert m-Field/Date"});
    const auto told = recordCommands();
    expectClicks(run, told, mail, writtenMailClicks);
}

TEST(BarClicksTest, EachButtonOfAMailThatIsReadDoesItsOneThing) {
    TestRun run;
    const Inspector mail = openReceived(run);
    const std::vector<ClickRow> rows = rowsOf(readMailClicks, readMailProcessClicks);
    Captions paths;
    appendPaths(paths, u"Lorvane", barOf(run, mail, u"Lorvane")->controls, true);
    expectSamePaths(paths, rows);
    const auto told = recordCommands();
    expectClicks(run, told, mail, rows);
    EXPECT_TRUE(told->mail == mail.CurrentItem());
}

TEST(BarClicksTest, APostAndATaskOpenTheChooserToo) {
    for (const OtherKind& kind : {postKind, taskKind}) {
        TestRun run;
        const Object window = openSaved(run, kind);
        const auto told = recordCommands();
        expectClicks(run, told, window, {{u"Lorvane/Lorvane", chooserToInsert}, {u"Lorvane/Help", "openTutorialPage"}});
    }
}

TEST(BarClicksTest, EachExplorerHearsItsOwnClicksOnce) {
    TestRun run;
    const Object first = theExplorer(run), second = run.driver().openExplorer();
    const auto told = recordCommands();
    for (const Object& explorer : {second, first}) {
        run.driver().clickBar(explorer, u"Standard/Lorvane/Settings");
        EXPECT_EQ(told->take(), Lines{"showSettings"});
    }
}

TEST(BarClicksTest, TheChooserIsUsedForItsPurposeEachTimeAnew) {
    TestRun run;
    const Object explorer = theExplorer(run), mail = run.newMail();
    const auto told = recordCommands();
    expectClicks(run, told, explorer, {{u"Standard/Lorvane/Templates", chooserToCopy}});
    expectClicks(run, told, mail, {{u"Lorvane/Lorvane", chooserToInsert}});
    expectClicks(run, told, explorer, {{u"Standard/Lorvane/New Email using Template", chooserForNewMail}, {u"Standard/Lorvane/Templates", chooserToCopy}});
}

TEST(BarClicksTest, WhatIsNotThereYetDoesNothing) {
    TestRun run;
    const Object explorer = theExplorer(run), mail = run.newMail();
    for (const ClickRow& row : explorerClicks)
        if (!row.told.starts_with("chooser")) run.driver().clickBar(explorer, row.path);
    for (const ClickRow& row : writtenMailClicks)
        if (!row.told.starts_with("chooser")) run.driver().clickBar(mail, row.path);
    EXPECT_TRUE(run.boxes().empty());
    EXPECT_EQ(run.application().Inspectors().Count(), 1);
}

TEST(BarClicksTest, AnErrorOfWhatAClickDoesStaysInIt) {
    TestRun run;
    bool ran = false;
    laterCommands().showSettings = [&ran] {
        ran = true;
        throw HostError(host_failure::Failed);
    };
    laterCommands().saveActiveItemAsTemplate = laterCommands().showSettings;
    const Object mail = run.newMail();
    for (const auto& [window, path] : {std::pair(theExplorer(run), u"Standard/Lorvane/Settings"), std::pair(mail, u"Lorvane/Save Template")}) {
        ran = false;
        EXPECT_NO_THROW(run.driver().clickBar(window, path));
        EXPECT_TRUE(ran);
    }
    EXPECT_TRUE(run.boxes().empty());
}

TEST(BarClicksTest, NothingIsHeardBehindTheDisconnection) {
    TestRun run;
    const Object explorer = theExplorer(run), mail = run.newMail();
    const auto told = recordCommands();
    run.disconnect();
    told->take();
    run.driver().clickBar(explorer, u"Standard/Lorvane/Settings");
    run.driver().clickBar(mail, u"Lorvane/Help");
    EXPECT_EQ(told->lines, Lines{});
}

TEST(BarClicksTest, AClickMayCloseItsOwnWindow) {
    TestRun run;
    const auto told = recordCommands();
    const Inspector mail = openReceived(run);
    laterCommands().openTutorialPage = [&] { mail.Close(olDiscard); };
    run.driver().clickBar(mail, u"Lorvane/Help");
    EXPECT_EQ(inspectorWraps().gInspectorWraps.Count(), 0);
    const Object explorer = run.driver().openExplorer();
    laterCommands().showSettings = [&] { explorer.call(Member::Close); };
    run.driver().clickBar(explorer, u"Standard/Lorvane/Settings");
    EXPECT_EQ(explorerWraps().gExplorerWraps.Count(), 1);
}

// The tags, typed at the caret.

TEST(MergeFieldTest, EachIsTypedAtTheCaretOfTheBody) {
    for (const auto editor : {model::EditorKind::Plain, model::EditorKind::Html, model::EditorKind::Rich}) {
        TestRun run({.editor = editor});
        const Inspector mail = run.newMail();
        run.focus(mail, model::EditorFieldName::Body);
        run.type(u"Dear ,");
        run.focus(mail, model::EditorFieldName::Body, 5);
        run.driver().clickBar(mail, u"Lorvane/Insert m-Field/Full Name");
        EXPECT_EQ(run.bodyShown(mail), u"Dear [FullName],");
        run.driver().clickBar(mail, u"Lorvane/Insert m-Field/First Name");
        EXPECT_EQ(run.bodyShown(mail), u"Dear [FullName][FirstName],");
        run.driver().clickBar(mail, u"Lorvane/Insert m-Field/Date");
        EXPECT_EQ(run.bodyShown(mail), u"Dear [FullName][FirstName][Date],");
    }
}

TEST(MergeFieldTest, EachIsTypedAtTheCaretOfTheSubject) {
    TestRun run;
    const Inspector mail = run.newMail();
    run.focus(mail, model::EditorFieldName::Subject, 0);
    run.type(u"For ");
    for (const char16_t* const path : {u"Lorvane/Insert m-Field/Full Name", u"Lorvane/Insert m-Field/First Name", u"Lorvane/Insert m-Field/Date"})
        run.driver().clickBar(mail, path);
    EXPECT_EQ(run.driver().visibleText(mail, model::EditorFieldName::Subject), u"For [FullName][FirstName][Date]");
    EXPECT_EQ(run.bodyShown(mail), u"");
}

TEST(MergeFieldTest, GoesToTheWindowThatWasClicked) {
    TestRun run;
    const Inspector first = run.newMail(), second = run.newMail();
    for (const Inspector& mail : {first, second}) run.focus(mail, model::EditorFieldName::Body, 0);
    run.driver().clickBar(first, u"Lorvane/Insert m-Field/Date");
    EXPECT_EQ(run.bodyShown(first), u"[Date]");
    EXPECT_EQ(run.bodyShown(second), u"");
}

TEST(MergeFieldTest, TakesThePlaceOfWhatIsSelected) {
    TestRun run;
    const Inspector mail = openAnyDraft(run, plain(u"Dear NAME,"), 0);
    run.driver().select(mail, 5, 4);
    run.driver().clickBar(mail, u"Lorvane/Insert m-Field/First Name");
    EXPECT_EQ(run.bodyShown(mail), u"Dear [FirstName],");
}

/// The strokes of keys, as `keybd_event` got them.
struct Stroke {
    std::int32_t key, scanCode, flags;
    bool operator==(const Stroke&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Stroke& stroke) {
    return out << stroke.key << '/' << stroke.scanCode << '/' << stroke.flags;
}

TEST(MergeFieldTest, KeysGoDownAndUpOneByOneWithShiftAroundCapitals) {
    TestRun run({.instruments = true});
    const Inspector mail = run.newMail();
    run.focus(mail, model::EditorFieldName::Body, 0);
    run.recorder().clear();
    run.driver().clickBar(mail, u"Lorvane/Insert m-Field/Date");
    std::vector<Stroke> strokes;
    for (const auto& call : run.recorder().calls())
        if (call.member == u"keybd_event") strokes.push_back({call.arguments[0].toInt32(), call.arguments[1].toInt32(), call.arguments[2].toInt32()});
    constexpr Stroke shiftDown{16, 42, 0}, shiftUp{16, 42, 2};
    const std::vector<Stroke> expected = {{219, 26, 0}, {219, 26, 2}, shiftDown,   {68, 32, 0}, {68, 32, 2}, shiftUp,      {65, 30, 0},
                                          {65, 30, 2},  {84, 20, 0},  {84, 20, 2}, {69, 18, 0}, {69, 18, 2}, {221, 27, 0}, {221, 27, 2}};
    EXPECT_EQ(strokes, expected);
}

TEST(MergeFieldTest, AKeyThatCannotBePressedEndsItInSilence) {
    TestRun run({.instruments = true});
    const Inspector mail = run.newMail();
    run.focus(mail, model::EditorFieldName::Body, 0);
    run.faults().failNth(u"Screen", u"VkKeyScan", 1, host_failure::Failed);
    EXPECT_NO_THROW(run.driver().clickBar(mail, u"Lorvane/Insert m-Field/Date"));
    EXPECT_EQ(run.bodyShown(mail), u"");
    EXPECT_TRUE(run.boxes().empty());
}

}  // namespace
}  // namespace lorvane::support
