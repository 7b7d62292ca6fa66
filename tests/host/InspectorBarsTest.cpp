#include <gtest/gtest.h>

#include "host/BarsRig.h"

/// The bar "Lorvane" of an open item.
namespace lorvane::support {
namespace {

using namespace host;

constexpr std::u16string_view bar = u"Lorvane";

/// How many buttons the processes put behind the first one.
constexpr std::size_t processButtons = 3;
std::size_t behindProcesses(std::size_t place) {
    return ProcessFeatureEnabled ? place + processButtons : place;
}

std::u16string tagOf(const TestRun& run, const Object& window, std::u16string_view caption) {
    const auto control = controlAt(run, window, u"Lorvane/" + std::u16string(caption));
    return control ? control->tag : std::u16string(u"not there");
}

bool isVisible(const TestRun& run, const Object& window, std::u16string_view caption) {
    const auto control = controlAt(run, window, u"Lorvane/" + std::u16string(caption));
    return control && control->visible;
}

/// Two windows on one mail, each with an object of its own for it.
struct TwoWindows {
    explicit TwoWindows(const TestRun& run, const MailItem& mail) {
        const MailItem again = run.session().GetItemFromID(mail.EntryID(), mail.Parent().StoreID());
        first = mail.GetInspector();
        second = again.GetInspector();
        first.Display();
        second.Display();
    }
    Inspector first, second;
};

// The whole trees. Runs that must give the same bars are compared with one file.

TEST(InspectorBarsTest, ANewMailInEachOfTheHostsEditors) {
    expectBars(byConfiguration("new-mail"), runsWithOwnEditors(), aNewMail);
}

TEST(InspectorBarsTest, ASavedDraftHasTheBarOfANewMail) {
    for (const BodyText& text : {plain(u"Dear John"), html(document(u"Dear John")), rich(u"Dear John")})
        expectBars(byConfiguration("new-mail"), runsWithOwnEditors(), [&](TestRun& run) { return openAnyDraft(run, text, 0); });
}

TEST(InspectorBarsTest, AReceivedMail) {
    expectBars(byConfiguration("read-mail"), runsWithOwnEditors(), [](TestRun& run) { return openReceived(run); });
}

TEST(InspectorBarsTest, ASentMailHasTheBarOfAReceivedOne) {
    expectBars(byConfiguration("read-mail"), runsWithOwnEditors(), [](TestRun& run) { return openSent(run); });
}

TEST(InspectorBarsTest, APostWhetherWrittenOrRead) {
    expectBars(byConfiguration("post"), runsWithOwnEditors(), [](TestRun& run) { return newPost(run); });
    expectBars(byConfiguration("post"), runsWithOwnEditors(), [](TestRun& run) { return openSaved(run, postKind); });
}

TEST(InspectorBarsTest, ATask) {
    expectBars(byConfiguration("task"), runsWithOwnEditors(), [](TestRun& run) { return openSaved(run, taskKind); });
    expectBars(byConfiguration("task"), runsWithWord(), [](TestRun& run) { return openSaved(run, taskKind); });
}

TEST(InspectorBarsTest, AnAppointment) {
    expectBars(byConfiguration("appointment"), runsWithOwnEditors(), [](TestRun& run) { return openSaved(run, appointmentKind); });
    expectBars(byConfiguration("appointment"), runsWithWord(), [](TestRun& run) { return openSaved(run, appointmentKind); });
}

// From here on the configurations do not differ.

TEST(InspectorBarsTest, AContactAndANoteHaveTheHostsOwnBarsAlone) {
    for (const OtherKind& kind : {contactKind, noteKind}) {
        expectBars("host-alone", runsWithOwnEditors(), [&](TestRun& run) { return openSaved(run, kind); });
        expectBars("host-alone", runsWithWord(), [&](TestRun& run) { return openSaved(run, kind); });
        expectBars("host-alone", {wordRun(guardedVersion)}, [&](TestRun& run) { return openSaved(run, kind); });
    }
}

TEST(WordBarsTest, AMailThatIsWrittenHasNoRespond) {
    expectBars("word-new-mail", runsWithWord(), aNewMail);
}

TEST(WordBarsTest, AMailThatIsReadHasRespond) {
    expectBars("word-read-mail", runsWithWord(), [](TestRun& run) { return openReceived(run); });
    expectBars("word-read-mail", runsWithWord(), [](TestRun& run) { return openSent(run); });
}

TEST(WordBarsTest, APostHasNeitherSaveTemplateNorMergeFields) {
    expectBars("word-new-post", runsWithWord(), [](TestRun& run) { return newPost(run); });
}

TEST(WordBarsTest, APostThatIsReadHasRespondLikeAMail) {
    TestRun run(wordRun(u"11.0.0.5510"));
    const Object post = openSaved(run, postKind);
    EXPECT_EQ(captionsSeen(run, post, bar), (Captions{u"Lo&rvane", u"Create Template", u"&Respond", u"Help"}));
}

TEST(WordBarsTest, AGuardedHostGivesNoDocumentSoRespondStaysAsTheTemplateHasIt) {
    for (const Opener& open : {aNewMail, Opener([](TestRun& run) { return openReceived(run); }), Opener([](TestRun& run) { return openSent(run); })})
        expectBars("word-read-mail", {wordRun(guardedVersion)}, open);
    TestRun run(wordRun(guardedVersion));
    const Object post = newPost(run);
    EXPECT_EQ(captionsSeen(run, post, bar), (Captions{u"Lo&rvane", u"Create Template", u"&Respond", u"Help"}));
}

TEST(WordBarsTest, OnlyTheTemplatesBarIsAdjustedAndNothingAdded) {
    for (const std::u16string_view version : supportedVersions) {
        RunOptions options = wordRun(version);
        options.instruments = true;
        TestRun run(options);
        run.recorder().clear();
        run.newMail();
        newPost(run);
        EXPECT_EQ(timesCalled(run, u"CommandBarControls", u"Add"), 0U);
        EXPECT_EQ(timesCalled(run, u"CommandBars", u"Add"), 0U);
        EXPECT_EQ(run.recorder().text().find("CommandBarButton.Tag"), std::string::npos);
        EXPECT_NE(run.recorder().text().find("put CommandBarPopup.Visible"), std::string::npos);
        EXPECT_FALSE(inspectorWrap()->CBB_Insp_File);
    }
}

TEST(WordBarsTest, TheTemplatesBarIsMadeReadyForAPostAndForAMailAlike) {
    TestRun run(wordRun(u"11.0.0.5510"));
    const Inspector post = newPost(run), mail = run.newMail();
    const auto turnRound = [&](const Object& window, bool visible) {
        const CommandBarControls controls = commandBarsOf(window).Item(bar).Controls();
        for (const char16_t* const caption : {u"Save Template", u"Insert m-Field"}) controls.Item(caption).Visible(visible);
    };
    turnRound(post, true);
    turnRound(mail, false);
    for (const char16_t* const key : {u"0", u"1"}) inspectorWrap(key)->InitButton();
    for (const char16_t* const caption : {u"Save Template", u"Insert m-Field"}) {
        EXPECT_FALSE(isVisible(run, post, caption));
        EXPECT_TRUE(isVisible(run, mail, caption));
    }
}

TEST(WordBarsTest, AnItemWhoseClassCannotBeReadCountsAsNoPost) {
    RunOptions options = wordRun(u"11.0.0.5510");
    options.instruments = true;
    TestRun run(options);
    const Object post = newPost(run);
    run.faults().failNth(u"PostItem", u"Class", 1, host_failure::Failed);
    inspectorWrap()->InitButton();
    EXPECT_EQ(run.faults().failures(), 1U);
    for (const char16_t* const caption : {u"Save Template", u"Insert m-Field"}) EXPECT_TRUE(isVisible(run, post, caption));
}

TEST(WordBarsTest, AControlThatTheTemplateLacksCostsItselfAlone) {
    TestRun run(wordRun(u"11.0.0.5510"));
    const Object post = newPost(run);
    const CommandBarControls controls = commandBarsOf(post).Item(bar).Controls();
    controls.Item(u"Save Template").Delete();
    controls.Item(u"Insert m-Field").Visible(true);
    inspectorWrap()->InitButton();
    EXPECT_FALSE(isVisible(run, post, u"Insert m-Field"));
    EXPECT_TRUE(run.boxes().empty());
}

TEST(WordBarsTest, AWindowThatDoesNotTellItsEditorIsTakenForOneOfTheHosts) {
    for (const char16_t* const member : {u"IsWordMail", u"EditorType"}) {
        RunOptions options = wordRun(u"11.0.0.5510");
        options.instruments = true;
        TestRun run(options);
        run.faults().failNth(u"Inspector", member, 1, host_failure::Failed);
        const Object mail = run.newMail();
        EXPECT_EQ(run.faults().failures(), 1U);
        EXPECT_TRUE(inspectorWrap()->CBB_Insp_save_sel) << toUtf8(member);
        EXPECT_TRUE(run.boxes().empty());
    }
}

// What is seen in each kind of window.

TEST(ShownButtonsTest, AReceivedMailShowsRespondAndNoLorvane) {
    TestRun run;
    const Object mail = openReceived(run);
    EXPECT_EQ(captionsSeen(run, mail, bar), (Captions{u"Save Te&mplate", u"Create &Template", u"&Respond", u"&Help"}));
}

TEST(ShownButtonsTest, ANewMailShowsMergeFieldsAndNoRespond) {
    TestRun run;
    const Object mail = run.newMail();
    EXPECT_EQ(captionsSeen(run, mail, bar), (Captions{u"Lo&rvane", u"Save Te&mplate", u"Create &Template", u"Insert m-Fiel&d", u"&Help"}));
}

TEST(ShownButtonsTest, ATaskShowsOnlyLorvaneAndHelp) {
    TestRun run;
    const Object task = openSaved(run, taskKind);
    EXPECT_EQ(captionsSeen(run, task, bar), (Captions{u"Lo&rvane", u"&Help"}));
}

TEST(ShownButtonsTest, APostHidesSaveTemplateAndRespond) {
    TestRun run;
    const Object post = openSaved(run, postKind);
    EXPECT_EQ(captionsSeen(run, post, bar), (Captions{u"Lo&rvane", u"Create &Template", u"&Help"}));
}

TEST(ShownButtonsTest, AMailThatCannotBeAskedCountsAsWritten) {
    TestRun run({.instruments = true});
    const Inspector mail = openReceived(run);
    for (const char16_t* const member : {u"Fields", u"Sent"}) run.faults().failNth(u"SafeMailItem", member, 1, host_failure::Failed);
    inspectorWrap()->InitButton();
    EXPECT_EQ(run.faults().failures(), 2U);
    EXPECT_TRUE(isVisible(run, mail, u"Insert m-Field"));
    EXPECT_FALSE(isVisible(run, mail, u"Respond"));
}

// Building again, and with failures.

TEST(InspectorBarsTest, BuildingTwiceAddsNothing) {
    const std::vector<Opener> windows = {aNewMail, [](TestRun& run) { return openReceived(run); }, [](TestRun& run) { return openSaved(run, postKind); },
                                         [](TestRun& run) { return openSaved(run, taskKind); }, [](TestRun& run) { return openSaved(run, appointmentKind); }};
    for (const Opener& open : windows) {
        TestRun run;
        const Object window = open(run);
        const std::string before = barLines(run, window);
        inspectorWrap()->InitButton();
        EXPECT_EQ(barLines(run, window), before);
    }
}

TEST(InspectorBarsTest, TheBarOfAnotherAddInIsUsedWithWhatItHas) {
    TestRun run({.connected = false});
    const Inspector mail = run.newMail();
    const CommandBar shared = commandBarsOf(mail).addTemporary(bar, msoBarTop);
    shared.Controls().Add({}).Caption(u"Brindle");
    AddInsp(mail);
    EXPECT_EQ(captionsSeen(run, mail, bar), (Captions{u"Brindle", u"Lo&rvane", u"Save Te&mplate", u"Create &Template", u"Insert m-Fiel&d", u"&Help"}));
}

/// Each button that the bar needs, by its place among the controls made.
TEST(InspectorBarsTest, TheBuildEndsAtANeededButtonThatCannotBeMade) {
    const Captions processes = ProcessFeatureEnabled ? Captions{u"Create Email", u"Reschedule", u"Related Items"} : Captions{};
    Captions expected;
    for (const auto& [place, caption] :
         {std::pair(std::size_t{1}, u"Lo&rvane"), std::pair(behindProcesses(2), u"Save Te&mplate"), std::pair(behindProcesses(3), u"Create &Template")}) {
        TestRun run({.instruments = true});
        run.faults().failNth(u"CommandBarControls", u"Add", place, host_failure::Failed);
        const Object mail = run.newMail();
        EXPECT_EQ(captionsOf(run, mail, bar), expected) << toUtf8(caption);
        EXPECT_FALSE(barOf(run, mail, bar)->visible) << "nothing is shown of a bar that was not finished";
        EXPECT_TRUE(run.boxes().empty());
        expected.push_back(caption);
        if (expected.size() == 1) expected.insert(expected.end(), processes.begin(), processes.end());
    }
}

TEST(InspectorBarsTest, AnyOtherControlThatCannotBeMadeIsJustNotThere) {
    const Captions all = [] {
        TestRun run;
        return captionsOf(run, run.newMail(), bar);
    }();
    for (const auto& [place, caption] : {std::pair(behindProcesses(4), u"&Respond"), std::pair(behindProcesses(12), u"&Help")}) {
        // The items of a popup that is not there are not made either.
        const std::size_t itemsLess = caption == std::u16string_view(u"&Respond") || !ProcessFeatureEnabled ? 0 : processButtons;
        TestRun run({.instruments = true});
        run.faults().failNth(u"CommandBarControls", u"Add", place + itemsLess, host_failure::Failed);
        const Object mail = run.newMail();
        Captions expected = all;
        std::erase(expected, caption);
        EXPECT_EQ(captionsOf(run, mail, bar), expected);
        EXPECT_TRUE(barOf(run, mail, bar)->visible);
        EXPECT_TRUE(isVisible(run, mail, u"Insert m-Field"));
        EXPECT_TRUE(run.boxes().empty());
    }
}

TEST(InspectorBarsTest, WithoutABarNothingIsThereAndNothingShown) {
    TestRun run({.instruments = true});
    run.faults().failNth(u"CommandBars", u"Add", 1, host_failure::Failed);
    const Object mail = run.newMail();
    EXPECT_FALSE(barOf(run, mail, bar));
    EXPECT_FALSE(inspectorWrap()->CBB_Insp_File);
    EXPECT_TRUE(run.boxes().empty());
}

TEST(InspectorBarsTest, AHostOf12GetsNoBarAndOneOf13Does) {
    for (const auto& [version, isBuilt] : {std::pair(u"11.0.0.5510", true), std::pair(u"12.0.0.4518", false), std::pair(u"13.0.0.1", true)}) {
        TestRun run({.version = version, .connected = false});
        const Inspector mail = run.newMail();
        AddInsp(mail);
        EXPECT_EQ(barOf(run, mail, bar).has_value(), isBuilt) << toUtf8(version);
    }
}

// Several windows.

TEST(SecondInspectorTest, HasTagsWithItsOwnKey) {
    TestRun run;
    const TwoWindows windows(run, run.receivedMail(u"Request", plain(u"Dear John")));
    ASSERT_FALSE(windows.first == windows.second);
    for (const auto& [caption, prefix] : {std::pair(u"Lorvane", u"Lorvane"), std::pair(u"Save Template", u"Save Template"),
                                          std::pair(u"Create Template", u"Create Template"), std::pair(u"Help", u"Help")}) {
        EXPECT_EQ(tagOf(run, windows.first, caption), std::u16string(prefix) + u"0");
        EXPECT_EQ(tagOf(run, windows.second, caption), std::u16string(prefix) + u"1");
    }
}

TEST(SecondInspectorTest, ClicksReachTheRightWrapperAlone) {
    TestRun run;
    const TwoWindows windows(run, run.receivedMail(u"Request", plain(u"Dear John")));
    const auto told = recordCommands();
    for (const Inspector& window : {windows.second, windows.first}) {
        run.driver().clickBar(window, u"Lorvane/Respond/Reply using Template");
        EXPECT_EQ(told->take(), Lines{"replyToOpenMail 1"});
        EXPECT_TRUE(told->mail == window.CurrentItem());
    }
    EXPECT_FALSE(windows.first.CurrentItem() == windows.second.CurrentItem());
}

TEST(SecondInspectorTest, KeepsItsButtonsWhenTheFirstCloses) {
    TestRun run;
    const TwoWindows windows(run, run.receivedMail(u"Request", plain(u"Dear John")));
    const auto told = recordCommands();
    windows.first.Close(olDiscard);
    run.driver().clickBar(windows.second, u"Lorvane/Respond/Forward using Template");
    EXPECT_EQ(told->lines, Lines{"replyToOpenMail 3"});
    EXPECT_TRUE(told->mail == windows.second.CurrentItem());
}

TEST(SecondInspectorTest, AnotherMailHasTagsWithItsOwnKeyToo) {
    TestRun run;
    const Object first = run.newMail(), second = run.newMail();
    EXPECT_EQ(tagOf(run, first, u"Lorvane"), u"Lorvane0");
    EXPECT_EQ(tagOf(run, second, u"Lorvane"), u"Lorvane1");
}

// The maker's other add-in.

TEST(RemoveInspButtonsTest, TakesTheOtherAddInsThreeButtonsOfThisKeyAndNothingElse) {
    TestRun run;
    const Object mail = run.newMail();
    const std::string before = barLines(run, mail);
    const auto add = [&](std::u16string_view tag, bool visible = true) {
        const CommandBarControl button = commandBarsOf(mail).Item(bar).Controls().Add({});
        button.Tag(tag);
        button.Caption(tag);
        button.Visible(visible);
    };
    for (const char16_t* const kept : {u"Brindle-Case1", u"Brindle-Case", u"Lorvane Help 0", u"Send & Brindle0"}) add(kept);
    const std::string kept = barLines(run, mail);
    add(u"Brindle-Case0");
    add(u"Send && Brindle0", false);
    add(u"Lorvane Help0");
    ASSERT_NE(barLines(run, mail), kept);
    inspectorWrap()->RemoveInspButtons();
    EXPECT_EQ(barLines(run, mail), kept);
    EXPECT_NE(kept, before);
    inspectorWrap()->RemoveInspButtons();
    EXPECT_EQ(barLines(run, mail), kept);
}

TEST(RemoveInspButtonsTest, AButtonThatCannotBeFoundCostsNoOther) {
    TestRun run({.instruments = true});
    const Object mail = run.newMail();
    for (const char16_t* const tag : {u"Brindle-Case0", u"Lorvane Help0"}) {
        const CommandBarControl button = commandBarsOf(mail).Item(bar).Controls().Add({});
        button.Tag(tag);
        button.Caption(tag);
    }
    run.faults().failNth(u"CommandBars", u"FindControl", 1, host_failure::Failed);
    inspectorWrap()->RemoveInspButtons();
    EXPECT_TRUE(controlAt(run, mail, u"Lorvane/Brindle-Case0"));
    EXPECT_FALSE(controlAt(run, mail, u"Lorvane/Lorvane Help0"));
    EXPECT_TRUE(run.boxes().empty());
}

}  // namespace
}  // namespace lorvane::support
