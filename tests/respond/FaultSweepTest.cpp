#include "support/FaultSweep.h"

#include <gtest/gtest.h>

#include "InsertRig.h"
#include "host/Guards.h"
#include "store/FoldersRig.h"

/// Each host call of a command fails once: nothing escapes, no window stays, and the items hold nothing but what the steps save.
namespace lorvane::support {
namespace {

using namespace host;

constexpr std::u16string_view boldSource = u"<HTML><BODY><B>Dear</B> [FirstName]</BODY></HTML>";

std::u16string bodyWith(std::u16string_view inserted) {
    return u"<HTML><BODY><P>Hello " + std::u16string(inserted) + u"<I>there</I></P></BODY></HTML>";
}

/// An open mail, and the chooser over it with a template chosen.
std::unique_ptr<TestRun> openOver(std::u16string_view subject, model::EditorFieldName field = model::EditorFieldName::Body) {
    auto run = std::make_unique<TestRun>(RunOptions{.instruments = true});
    const MailItem bold = run->addTemplate(u"Bold", html(boldSource), u"Sales");
    run->attach(bold, "logo.png", {1, 2});
    giveContentId(bold, u"logo@somewhere");
    bold.Save();
    run->addTemplate(u"Plain", plain(u"Dear [FirstName]"), u"Letters");
    run->addTemplate(u"Third", plain(u"Text"));
    const Inspector mail = openDraft(*run, html(bodyWith(u"")), 6);
    if (field != model::EditorFieldName::Body) run->focus(mail, field, -1);
    chooser().Show(false);
    selectSubject(run->user(), subject);
    return run;
}

bool startsWith(std::u16string_view text, std::u16string_view front) {
    return text.substr(0, front.size()) == front;
}

/// The only draft there is, as it was saved or typed.
mailstore::ItemRecord draftOf(const TestRun& run) {
    const Items items = run.folder(default_folder::Drafts).Items();
    EXPECT_EQ(items.Count(), 1);
    return run.record(items.Item(1));
}

void expectTemplatesUntouched(const TestRun& run) {
    const Items items = run.templatesFolder().Items();
    ASSERT_EQ(items.Count(), 3);
    EXPECT_EQ(items.Item(1).HTMLBody(), boldSource);
    EXPECT_EQ(attachmentNames(run, items.Item(1)), Subjects{u"logo.png"});
    EXPECT_EQ(items.Item(2).Body(), u"Dear [FirstName]");
}

/// The chooser was over the mail before and is gone behind every attempt.
constexpr auto chooserGone = [](std::size_t before, std::size_t after) { return after == before - 1; };

FaultSweep insertion(std::u16string_view subject, std::u16string_view button, std::vector<std::u16string> bodies) {
    FaultSweep sweep;
    sweep.begin = [subject] { return openOver(subject); };
    sweep.command = [button](TestRun& run) { run.user().Click(chooserName, button); };
    sweep.windowsFit = chooserGone;
    sweep.check = [bodies](TestRun& run, const SweptFault&) {
        const mailstore::ItemRecord draft = draftOf(run);
        EXPECT_NE(std::ranges::find(bodies, draft.body), bodies.end()) << toUtf8(draft.body);
        EXPECT_EQ(draft.head.subject, u"About us");
        EXPECT_EQ(draft.recipients.size(), 1U);
        EXPECT_LE(draft.attachments.size(), 1U);
        expectTemplatesUntouched(run);
        EXPECT_LE(run.boxes().size(), 3U);
    };
    return sweep;
}

TEST(FaultSweepTest, InsertWithFormat) {
    sweepFaults(
        insertion(u"Bold", insertWithFormat, {bodyWith(u""), bodyWith(caretMarker), bodyWith(u"<B>Dear</B> John"), bodyWith(u"<B>Dear</B> [FirstName]")}));
}

TEST(FaultSweepTest, InsertText) {
    sweepFaults(insertion(u"Plain", insertText, {bodyWith(u""), bodyWith(u"Dear John"), bodyWith(u"Dear [FirstName]")}));
}

TEST(FaultSweepTest, InsertWithFormatWhileTheCaretIsInTheSubject) {
    FaultSweep sweep = insertion(u"Bold", insertWithFormat, {bodyWith(u"")});
    sweep.begin = [] { return openOver(u"Bold", model::EditorFieldName::Subject); };
    sweep.check = [](TestRun& run, const SweptFault&) {
        const mailstore::ItemRecord draft = draftOf(run);
        EXPECT_EQ(draft.body, bodyWith(u""));
        const std::u16string withMarker = u"About us" + std::u16string(caretMarker);
        EXPECT_TRUE(startsWith(withMarker, draft.head.subject) && startsWith(draft.head.subject, u"About us")) << toUtf8(draft.head.subject);
        expectTemplatesUntouched(run);
    };
    sweepFaults(sweep);
}

TEST(FaultSweepTest, UpdateEmailList) {
    FaultSweep sweep;
    sweep.begin = [] { return openOver(u"Bold"); };
    sweep.command = [](TestRun&) { chooser().UpdateEmailList(); };
    sweep.check = [](TestRun& run, const SweptFault&) {
        EXPECT_LE(run.boxes().size(), 2U);
        EXPECT_EQ(chooser().UpdateEmailList(), respond::ListResult::Filled) << "the next run is whole again";
        EXPECT_EQ(listed(), (Subjects{u"Bold", u"Plain", u"Third"}));
    };
    sweepFaults(sweep);
}

TEST(FaultSweepTest, Search) {
    FaultSweep sweep;
    sweep.begin = [] {
        auto run = openOver(u"Bold");
        run->user().Select(chooserName, u"cmbCategories", 2);
        run->user().Type(chooserName, u"txtSearch", u"bo");
        return run;
    };
    sweep.command = [](TestRun& run) { run.user().Advance(1000); };
    sweep.check = [](TestRun& run, const SweptFault&) {
        for (const auto& box : run.boxes()) EXPECT_EQ(box.style, 16);
        EXPECT_EQ(chooser().UpdateEmailList(), respond::ListResult::Filled);
        EXPECT_EQ(listed(), Subjects{u"Bold"});
    };
    sweepFaults(sweep);
}

TEST(FaultSweepTest, OpeningTheChooser) {
    FaultSweep sweep;
    sweep.begin = [] {
        auto run = std::make_unique<TestRun>(RunOptions{.instruments = true});
        run->addTemplate(u"Mine", plain(u"Text"), u"Sales");
        run->addTemplate(shareFolder(*run), u"Ours", plain(u"Text"));
        return run;
    };
    // Nobody acts: the screen closes the window. What fails before there is one is the opener's, who has a guard.
    sweep.command = [](TestRun&) { withErrorBox(u"opener", [] { chooser().Show(true); }); };
    sweep.check = [](TestRun& run, const SweptFault& fault) {
        const auto openersBox = [](const auto& box) { return box.title == u"opener - Lorvane"; };
        EXPECT_TRUE(fault.isOf(u"Screen") || fault.isOf(u"Machine") || std::ranges::none_of(run.boxes(), openersBox));
        if (!isChooserOpen() || !chooser().isVisible()) {
            openChooser(run, [](ScriptedUser&) { EXPECT_EQ(listed(), (Subjects{u"Mine", u"Ours (Shared)"})) << "the next opening is whole again"; });
        }
    };
    sweepFaults(sweep);
}

TEST(FaultSweepTest, Connecting) {
    FaultSweep sweep;
    sweep.begin = [] { return std::make_unique<TestRun>(RunOptions{.connected = false, .samples = true, .instruments = true}); };
    sweep.command = [](TestRun& run) { run.connect(); };
    sweep.check = [](TestRun& run, const SweptFault&) {
        EXPECT_TRUE(run.boxes().empty()) << "each failing step costs only itself";
        EXPECT_LE(run.templatesFolder().Items().Count(), 3);
        EXPECT_LE(run.folder(default_folder::Drafts).Items().Count(), 1) << "a sample that was saved and not moved";
        run.disconnect();
        run.connect();
        EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), run.templatesFolder().EntryID()) << "the next connection is whole again";
        EXPECT_TRUE(run.apartment().gRdoSession);
    };
    sweepFaults(sweep);
}

TEST(FaultSweepTest, ChangingTheScope) {
    FaultSweep sweep;
    sweep.begin = [] {
        auto run = std::make_unique<TestRun>(RunOptions{.instruments = true});
        run->setSetting(u"LoadTemplateDefault", u"1");
        run->addTemplate(u"Mine", plain(u"Text"), u"Sales");
        run->addTemplate(shareFolder(*run), u"Ours", plain(u"Text"));
        chooser().Show(false);
        return run;
    };
    sweep.command = [](TestRun& run) { run.user().Click(chooserName, u"optShared"); };
    sweep.check = [](TestRun& run, const SweptFault&) {
        for (const auto& box : run.boxes()) EXPECT_EQ(box.style, 16) << toUtf8(box.text);
        run.user().CloseWindow(chooserName);
        openChooser(run, [](ScriptedUser&) { EXPECT_EQ(listed(), Subjects{u"Mine"}) << "the next opening is whole again"; });
    };
    sweepFaults(sweep);
}

class HandlerSweep : public testing::TestWithParam<std::u16string_view> {};

TEST_P(HandlerSweep, LeavesWholeItems) {
    FaultSweep sweep;
    sweep.begin = [] {
        auto run = openOver(u"Third");
        run->user().answerWith([](const screen::BoxShown& box) { return box.style == msgbox::Question ? std::optional(msgbox::Yes) : std::nullopt; });
        return run;
    };
    sweep.command = [](TestRun& run) { run.user().Click(chooserName, GetParam()); };
    // The chooser stays, or goes; where it goes, another window may come.
    sweep.windowsFit = [](std::size_t before, std::size_t after) { return after == before || after == before - 1; };
    sweep.check = [](TestRun& run, const SweptFault&) {
        for (const auto& box : run.boxes()) EXPECT_TRUE(box.style == 16 || box.style == 36) << toUtf8(box.text);
        const Names subjects = subjectsIn(run.templatesFolder());
        EXPECT_TRUE(subjects == (Names{u"Bold", u"Plain", u"Third"}) || (GetParam() == u"cmdDelete" && subjects == (Names{u"Bold", u"Plain"})));
    };
    sweepFaults(sweep);
}

INSTANTIATE_TEST_SUITE_P(Buttons, HandlerSweep, testing::Values(u"cmdNew", u"cmdEdit", u"cmdDelete", u"cmdCopyToClipBoard", u"cmdCopyHTMLToClipB", u"lblHide"));

}  // namespace
}  // namespace lorvane::support
