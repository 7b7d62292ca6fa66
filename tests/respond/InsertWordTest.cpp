#include <gtest/gtest.h>

#include <algorithm>

#include "Routes.h"
#include "respond/TextInsert.h"

/// Insertion into items that Word edits.
namespace lorvane::support {
namespace {

using namespace host;
using mailstore::BodyKind;

constexpr std::u16string_view pasteKeys = u"^v";

class WordRoutesTest : public testing::TestWithParam<std::tuple<std::u16string_view, Route>> {
protected:
    bool belowTwelve() const { return Val(std::get<0>(GetParam())) < 12; }
    /// Below 12 Word takes formatted text by a paste.
    Way way() const {
        const Way own = std::get<1>(GetParam()).way;
        return own == Way::HtmlSplice && belowTwelve() ? Way::WordPaste : own;
    }
    /// Below 12 a letter is typed and taken away; then what the way takes.
    Subjects expectedKeys() const {
        Subjects keys;
        if (belowTwelve()) keys = {u"I", u"{BACKSPACE}"};
        if (way() == Way::Clipboard) keys.emplace_back(pasteKeys);
        if (way() == Way::HtmlSplice || way() == Way::PlainSplice) keys.emplace_back(caretMarker);
        return keys;
    }
};

TEST_P(WordRoutesTest, IsTakenAndTheTextStandsAtTheCaret) {
    const auto& [version, route] = GetParam();
    TestRun run(atVersion(version, model::EditorKind::Word));
    usePrivately(run, run.templatesFolder());
    addAnyTemplate(run, u"Offer", route.offer);
    const Inspector mail = openAnyDraft(run, route.item, 1);
    run.recorder().clear();
    useTemplate(run, u"Offer", route.button);

    EXPECT_EQ(allKeys(run), expectedKeys());
    EXPECT_EQ(timesCalled(run, u"Selection", u"Paste"), way() == Way::WordPaste ? 1U : 0U);
    EXPECT_EQ(run.bodyShown(mail), u"aDear Johnb");
    EXPECT_EQ(run.record(mail.CurrentItem()).bodyKind, route.item.kind);
    EXPECT_EQ(savedSourceOf(run, mail), sourceOf(run, mail));
    EXPECT_EQ(run.clipboardText(), way() == Way::Clipboard ? std::optional<std::u16string>(u"Dear John") : std::nullopt);
    EXPECT_EQ(run.clipboardHtml().has_value(), way() != Way::Clipboard);
    if (route.way == Way::WordPaste) {
        EXPECT_EQ(sourceOf(run, mail), document(u"a<B>Dear</B> Johnb"));
    }
    EXPECT_FALSE(isChooserOpen());
    EXPECT_TRUE(run.boxes().empty());
}

INSTANTIATE_TEST_SUITE_P(Versions, WordRoutesTest,
                         testing::Combine(testing::Values(u"9.0.0.6627", u"10.0.0.4608", u"10.0.0.6515", u"11.0.0.5510", u"12.0.0.4518"),
                                          testing::ValuesIn(routes)));

/// The look at the caret, with a mail that Word edits.
class WordMailTest : public testing::Test {
protected:
    explicit WordMailTest(RunOptions options = atVersion(u"11.0.0.5510", model::EditorKind::Word)) : run(std::move(options)) {
        const MailItem bold = run.addTemplate(u"Bold", html(document(u"<B>Dear</B> [FirstName]")));
        run.attach(bold, "prices.txt", {1});
        bold.Save();
    }
    TestRun run;
};

TEST_F(WordMailTest, AttachmentsComeBeforeThePasteAndTheMailIsSavedBehindIt) {
    const Inspector mail = openAnyDraft(run, htmlItem, 1);
    run.recorder().clear();
    useTemplate(run, u"Bold", insertWithFormat);
    EXPECT_EQ(attachmentNames(run, mail.CurrentItem()), Subjects{u"prices.txt"});
    EXPECT_TRUE(localFiles().empty());
    EXPECT_EQ(savedSourceOf(run, mail), document(u"a<B>Dear</B> Johnb"));
    const auto& calls = run.recorder().calls();
    const auto firstOf = [&](std::u16string_view className, std::u16string_view member) {
        return std::ranges::find_if(calls, [&](const auto& call) { return call.className == className && call.member == member; }) - calls.begin();
    };
    EXPECT_LT(firstOf(u"Files", u"DeleteFile"), firstOf(u"Connect", u"PasteRangeToEmail"));
    EXPECT_LT(firstOf(u"Connect", u"PasteRangeToEmail"), firstOf(u"Selection", u"Paste"));
    ASSERT_LT(firstOf(u"Selection", u"Paste"), static_cast<std::ptrdiff_t>(calls.size()));
    const auto& paste = calls[static_cast<std::size_t>(firstOf(u"Selection", u"Paste"))];
    ASSERT_EQ(paste.arguments.size(), 1U);
    EXPECT_EQ(paste.arguments[0], Variant(std::int16_t{0}));
}

TEST_F(WordMailTest, AgainAndAgainInOneMail) {
    const Inspector mail = openAnyDraft(run, htmlItem, 1);
    for (int turn = 0; turn < 3; ++turn) useTemplate(run, u"Bold", insertWithFormat);
    EXPECT_EQ(run.bodyShown(mail), u"aDear JohnDear JohnDear Johnb");
}

TEST_F(WordMailTest, ANewMailTakesItOnceTheCaretIsInTheBody) {
    const Inspector mail = run.newMail({u"John Public <john@example.com>"});
    run.focus(mail, model::EditorFieldName::Body);
    useTemplate(run, u"Bold", insertWithFormat);
    EXPECT_EQ(sourceOf(run, mail), document(u"<B>Dear</B> John"));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(WordMailTest, APasteThatFailsIsToldByItsOwnBoxAndTheCommandGoesOn) {
    const Inspector mail = openAnyDraft(run, htmlItem, 1);
    run.faults().failNth(u"Selection", u"Paste", 1, host_failure::Failed, u"The clipboard is empty");
    useTemplate(run, u"Bold", insertWithFormat);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox(), (screen::ScriptedUser::BoxRecord{u"PasteRangeToEmail - Lorvane", u"Error -2147467259: The clipboard is empty", 16, 1}));
    EXPECT_EQ(run.bodyShown(mail), u"ab");
    EXPECT_FALSE(isChooserOpen());
}

TEST_F(WordMailTest, AMailThatIsSlowToTakeTheLetterIsPumpedForOnce) {
    run.driver().setCommitDelay(1);
    const Inspector mail = openAnyDraft(run, htmlItem, 1);
    run.focus(mail, model::EditorFieldName::Subject, -1);
    openChooser(run, [](ScriptedUser& she) {
        const auto before = she.pumpCount();
        she.Click(chooserName, insertWithFormat);
        EXPECT_EQ(she.pumpCount() - before, 3U);
    });
    EXPECT_EQ(run.bodyShown(mail), u"ab");
    EXPECT_EQ(run.record(mail.CurrentItem()).head.subject, u"About us");
}

class WordCaretElsewhereTest : public testing::TestWithParam<std::tuple<std::u16string_view, model::EditorFieldName, std::u16string_view, BodyKind>> {};

TEST_P(WordCaretElsewhereTest, TheLetterIsTakenAwayAndNothingIsInsertedInSilence) {
    const auto& [version, field, button, kind] = GetParam();
    TestRun run(atVersion(version, model::EditorKind::Word));
    const MailItem bold = run.addTemplate(u"Bold", html(document(u"<B>Dear</B> [FirstName]")));
    run.attach(bold, "prices.txt", {1});
    bold.Save();
    const Inspector mail = openAnyDraft(run, kind == BodyKind::Plain ? plainItem : kind == BodyKind::Html ? htmlItem : richItem, 1);
    const mailstore::ItemRecord before = run.record(mail.CurrentItem());
    run.focus(mail, field, -1);
    run.clipboard().replaceText(u"from before");
    run.recorder().clear();
    useTemplate(run, u"Bold", button);

    EXPECT_EQ(allKeys(run), (Subjects{u"I", u"{BACKSPACE}"}));
    const mailstore::ItemRecord after = run.record(mail.CurrentItem());
    EXPECT_EQ(after.body, before.body);
    EXPECT_EQ(after.head.subject, before.head.subject);
    ASSERT_EQ(after.recipients.size(), 1U);
    EXPECT_EQ(after.recipients[0].name, u"John Public");
    EXPECT_TRUE(after.attachments.empty()) << "nothing was copied yet";
    EXPECT_FALSE(run.clipboardText()) << "it was emptied before";
    EXPECT_FALSE(isChooserOpen());
    EXPECT_TRUE(run.boxes().empty());
}

INSTANTIATE_TEST_SUITE_P(Fields, WordCaretElsewhereTest,
                         testing::Combine(testing::Values(u"9.0.0.6627", u"11.0.0.5510"),
                                          testing::Values(model::EditorFieldName::To, model::EditorFieldName::Cc, model::EditorFieldName::Bcc,
                                                          model::EditorFieldName::Subject),
                                          testing::Values(insertText, insertWithFormat), testing::Values(BodyKind::Plain, BodyKind::Html, BodyKind::Rich)));

TEST(WordTwelveTest, WithoutALookAtTheCaretTheMarkerShowsThatItIsElsewhere) {
    TestRun run(atVersion(u"12.0.0.4518", model::EditorKind::Word));
    usePrivately(run, run.templatesFolder());
    run.addTemplate(u"Bold", html(document(u"<B>Dear</B>")));
    const Inspector mail = openAnyDraft(run, htmlItem, 1);
    run.focus(mail, model::EditorFieldName::Subject, -1);
    run.recorder().clear();
    useTemplate(run, u"Bold", insertWithFormat);
    EXPECT_EQ(keysSent(run, u"I"), 0U);
    EXPECT_EQ(keysSent(run, u"{BACKSPACE}"), 23U);
    EXPECT_EQ(run.record(mail.CurrentItem()).head.subject, u"About us");
    EXPECT_EQ(run.bodyShown(mail), u"ab");
}

/// On the guarded builds of version 10 Word is reached through a safe wrapper alone.
TEST(WordGuardTest, TheSafeInspectorIsUsedFromBuild6515OfVersion10OnOnly) {
    for (const std::u16string_view version : {u"9.0.0.6627", u"10.0.0.6514", u"10.0.0.6515", u"10.0.0.6820", u"11.0.0.6515"}) {
        TestRun run(atVersion(version, model::EditorKind::Word));
        run.addTemplate(u"Bold", html(document(u"<B>Dear</B>")));
        openAnyDraft(run, htmlItem, 1);
        run.recorder().clear();
        useTemplate(run, u"Bold", insertWithFormat);
        const bool guarded = version == u"10.0.0.6515" || version == u"10.0.0.6820";
        EXPECT_EQ(timesCalled(run, u"SafeInspector", u"WordEditor"), guarded ? 1U : 0U) << toUtf8(version);
        EXPECT_EQ(timesCalled(run, u"Inspector", u"WordEditor"), guarded ? 0U : 1U) << toUtf8(version);
        EXPECT_TRUE(run.boxes().empty());
    }
}

TEST_F(WordMailTest, APostIsNotProbedAndTakesTheHtmlByTheMarker) {
    const Inspector post = openOther(run, postKind, htmlItem, 1);
    run.recorder().clear();
    useTemplate(run, u"Bold", insertWithFormat);
    EXPECT_EQ(allKeys(run), Subjects{std::u16string(caretMarker)});
    EXPECT_EQ(sourceOf(run, post), document(u"a<B>Dear</B> [FirstName]b"));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(WordMailTest, PostsGoByTheirBodyFormat) {
    const Inspector plainPost = openOther(run, postKind, plainItem, 1);
    useTemplate(run, u"Bold", insertWithFormat);
    EXPECT_EQ(run.bodyShown(plainPost), u"aDear [FirstName]b");
    EXPECT_EQ(keysSent(run, pasteKeys), 1U);
    const Inspector richPost = openOther(run, postKind, richItem, 1);
    useTemplate(run, u"Bold", insertText);
    EXPECT_EQ(run.bodyShown(richPost), u"aDear [FirstName]b");
    EXPECT_EQ(keysSent(run, caretMarker), 1U);
}

TEST_F(WordMailTest, ATaskIsRichAndTakesWhatIsPasted) {
    for (const OtherKind& kind : {taskKind, appointmentKind}) {
        const Inspector task = openOther(run, kind, plain(u"ab"), 1);
        run.recorder().clear();
        useTemplate(run, u"Bold", insertWithFormat);
        EXPECT_EQ(allKeys(run), Subjects{std::u16string(pasteKeys)});
        EXPECT_EQ(run.bodyShown(task), u"aDear [FirstName]b");
    }
}

/// A plain mail in Word, handed to the routine for tasks and appointments.
class PlainWordTest : public testing::TestWithParam<std::u16string_view> {
protected:
    TestRun run{atVersion(GetParam(), model::EditorKind::Word)};
};

INSTANTIATE_TEST_SUITE_P(Versions, PlainWordTest, testing::Values(u"9.0.0.6627", u"10.0.0.4608", u"10.0.0.6515", u"11.0.0.5510"));

TEST_P(PlainWordTest, OnlyAPlainMailIsOne) {
    EXPECT_TRUE(respond::PlainTextInWord(openAnyDraft(run, plainItem, 0).CurrentItem()));
    EXPECT_FALSE(respond::PlainTextInWord(openAnyDraft(run, htmlItem, 0).CurrentItem()));
    EXPECT_FALSE(respond::PlainTextInWord(openAnyDraft(run, richItem, 0).CurrentItem()));
    EXPECT_FALSE(respond::PlainTextInWord(openOther(run, postKind, plainItem).CurrentItem()));
    EXPECT_FALSE(respond::PlainTextInWord(openOther(run, taskKind, plainItem).CurrentItem()));
}

TEST_P(PlainWordTest, TheTextIsTypedAtWordsSelection) {
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Dear [FirstName],\r\n[Date]"));
    const Inspector mail = openAnyDraft(run, plainItem, 1);
    run.recorder().clear();
    respond::InsertMail_TaskAppnt(mail.CurrentItem(), offer);
    EXPECT_EQ(run.bodyShown(mail), u"aDear John,\r\n10-Jan-2028b");
    EXPECT_TRUE(allKeys(run).empty());
    EXPECT_FALSE(run.clipboardText());
    const std::string log = run.recorder().text();
    EXPECT_NE(log.find("call Machine.CreateObject \"qz7mredemption.qz7msafemailitem\"\ncall Application.ActiveInspector\nput SafeMailItem.Item Inspector\n"
                       "get SafeMailItem.WordEditor\n"),
              std::string::npos);
    EXPECT_NE(log.find("call Selection.TypeText Text:=\"Dear John,\\r\\n10-Jan-2028\""), std::string::npos);
}

TEST_P(PlainWordTest, AnyOtherMailIsPastedInto) {
    const MailItem offer = run.addTemplate(u"Offer", html(document(u"<B>Dear</B> [FirstName]")));
    const Inspector mail = openAnyDraft(run, htmlItem, 1);
    respond::InsertMail_TaskAppnt(mail.CurrentItem(), offer);
    EXPECT_EQ(sourceOf(run, mail), document(u"a<B>Dear</B> Johnb"));
    EXPECT_EQ(allKeys(run), Subjects{std::u16string(pasteKeys)});
}

}  // namespace
}  // namespace lorvane::support
