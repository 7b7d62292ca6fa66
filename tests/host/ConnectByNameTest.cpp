#include <gtest/gtest.h>

#include "host/Connect.h"
#include "host/basGlobals.h"
#include "respond/InsertRig.h"

/// The clipboard pair of the connection class, as other instances of the add-in reach it: through the host, by name.
namespace lorvane::support {
namespace {

using namespace host;

/// The add-in's own object, as the host hands it out.
Object fromHost(const TestRun& run) {
    return run.application().CreateObject(u"Lorvane.Connect");
}

RunOptions wordAt(std::u16string_view version) {
    return atVersion(version, model::EditorKind::Word);
}

class CopyRangeTest : public testing::TestWithParam<std::u16string_view> {
protected:
    /// Arguments as a macro gives them; those at the end may be left out.
    void copy(std::initializer_list<Variant> more = {}) {
        std::vector<Argument> args = {Variant(offer.EntryID()), Variant(offer.Parent().StoreID())};
        args.insert(args.end(), more.begin(), more.end());
        const Object connect = fromHost(run);
        run.recorder().clear();
        connect.dispatch()->call(Member::CopyRangeToClipBoard, args);
    }
    /// A mail to these, in the wrapper that gives its recipients' names.
    SafeMailItem mailTo(std::initializer_list<std::u16string_view> to) { return makeSafeMailItem(run.draft(u"Re: Question", plain(u""), to)); }
    std::string log() { return run.recorder().text(); }
    TestRun run{wordAt(GetParam())};
    MailItem offer = run.addTemplate(u"Offer", html(document(u"<B>Dear</B> [FirstName], [Date]")));
};

INSTANTIATE_TEST_SUITE_P(Versions, CopyRangeTest, testing::Values(u"9.0.0.6627", u"10.0.0.6515", u"11.0.0.5510"));

TEST_P(CopyRangeTest, WithoutATargetTheTemplateIsCopiedAsItStands) {
    run.clipboard().replaceText(u"from before");
    copy();
    EXPECT_EQ(run.clipboardText(), u"Dear [FirstName], [Date]");
    ASSERT_TRUE(run.clipboardHtml());
    EXPECT_NE(run.clipboardHtml()->find(u"<B>Dear</B> [FirstName], [Date]"), std::u16string::npos) << "with its formatting";
    EXPECT_NE(log().find("call SafeInspector.Close 0\n"), std::string::npos);
    EXPECT_EQ(run.store().loadItem(offer.EntryID()).body, document(u"<B>Dear</B> [FirstName], [Date]"));
}

TEST_P(CopyRangeTest, NothingAndNothingGivenAreTheSame) {
    copy({Variant(Object()), Variant(1), Variant(u""), Variant(Object())});
    EXPECT_EQ(run.clipboardText(), u"Dear [FirstName], [Date]");
    EXPECT_NE(log().find("call SafeInspector.Close 0\n"), std::string::npos);
}

TEST_P(CopyRangeTest, ARecipientModeTakesTheNamesFromTheTarget) {
    copy({Variant(Object(mailTo({u"John Public <john@example.com>"}))), Variant(1), Variant(u"Recipient"), Variant(Object())});
    EXPECT_EQ(run.clipboardText(), u"Dear John, 10-Jan-2028");
    EXPECT_TRUE(run.boxes().empty());
    EXPECT_NE(log().find("call SafeInspector.Close 1\n"), std::string::npos);
}

TEST_P(CopyRangeTest, TheTemplateStaysAsItWas) {
    copy({Variant(Object(mailTo({u"John Public <john@example.com>"}))), Variant(1), Variant(u"Recipient"), Variant(Object())});
    EXPECT_EQ(run.store().loadItem(offer.EntryID()).body, document(u"<B>Dear</B> [FirstName], [Date]"));
    EXPECT_EQ(run.record(run.templatesFolder().Items().Item(1)).body, document(u"<B>Dear</B> [FirstName], [Date]"));
}

TEST_P(CopyRangeTest, AForwardTakesTheNamesFromTheMailThatItComesFrom) {
    const SafeMailItem source = mailTo({u"Anna Smith <anna@example.com>"});
    copy({Variant(Object(mailTo({u"John Public <john@example.com>"}))), Variant(3), Variant(u""), Variant(Object(source))});
    EXPECT_EQ(run.clipboardText(), u"Dear Anna, 10-Jan-2028");
}

TEST_P(CopyRangeTest, AForwardOfAMailToNobodyKeepsTheNames) {
    const SafeMailItem source = mailTo({});
    copy({Variant(Object(mailTo({u"John Public <john@example.com>"}))), Variant(3), Variant(u""), Variant(Object(source))});
    EXPECT_EQ(run.clipboardText(), u"Dear [FirstName], 10-Jan-2028");
}

TEST_P(CopyRangeTest, WithoutAModeNoAnswerNamesAnybody) {
    const SafeMailItem source = mailTo({u"Anna Smith <anna@example.com>"});
    copy({Variant(Object(mailTo({u"John Public <john@example.com>"}))), Variant(1), Variant(u""), Variant(Object(source))});
    EXPECT_EQ(run.clipboardText(), u"Dear [FirstName], 10-Jan-2028");
}

TEST_P(CopyRangeTest, TheStepsComeInTheirOrder) {
    copy({Variant(Object(mailTo({u"John Public <john@example.com>"}))), Variant(1), Variant(u"Recipient"), Variant(Object())});
    std::vector<std::string> order;
    for (const auto& call : run.recorder().calls()) {
        for (const std::u16string_view className : {u"Clipboard", u"SafeInspector", u"Document", u"Range"})
            if (call.className == className) order.push_back(toUtf8(call.className + u"." + call.member));
    }
    EXPECT_EQ(order, (std::vector<std::string>{"Clipboard.Clear", "SafeInspector.Item", "SafeInspector.WordEditor", "Document.Range", "Range.Text",
                                               "Document.Range", "Range.Text", "Range.Select", "Range.Copy", "SafeInspector.Close"}));
}

TEST_P(CopyRangeTest, ConnectsByItself) {
    const Object connect = fromHost(run);
    run.apartment().gOutlook = {};
    run.apartment().gNameSpace = {};
    connect.call(Member::CopyRangeToClipBoard, {Variant(offer.EntryID()), Variant(offer.Parent().StoreID())});
    EXPECT_TRUE(run.apartment().gOutlook);
    EXPECT_TRUE(run.apartment().gNameSpace);
}

TEST_P(CopyRangeTest, ATemplateThatIsGoneIsTheCallersConcern) {
    run.clipboard().replaceText(u"from before");
    EXPECT_THROW(fromHost(run).call(Member::CopyRangeToClipBoard, {Variant(u"00AA"), Variant(u"00BB")}), HostError);
    EXPECT_FALSE(run.clipboardText()) << "the clipboard was cleared first";
    EXPECT_TRUE(run.boxes().empty());
}

TEST(CopyRangeArgumentsTest, BothIdentitiesAreNeeded) {
    TestRun run;
    try {
        fromHost(run).call(Member::CopyRangeToClipBoard, {Variant(u"00AA")});
        ADD_FAILURE() << "no error";
    } catch (const HostError& error) {
        EXPECT_EQ(error.number(), runtime_error::ArgumentNotOptional);
    }
}

TEST(CopyRangeArgumentsTest, WithoutWordTheErrorIsTheCallersConcern) {
    TestRun run;
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    try {
        fromHost(run).call(Member::CopyRangeToClipBoard, {Variant(offer.EntryID()), Variant(offer.Parent().StoreID())});
        ADD_FAILURE() << "no error";
    } catch (const HostError& error) {
        EXPECT_EQ(error.number(), runtime_error::ObjectNotSet);
    }
}

/// Pasting at Word's selection in the active window.
class PasteRangeTest : public testing::TestWithParam<std::u16string_view> {
protected:
    bool isGuarded() const { return GetParam() == u"10.0.0.6515"; }
    std::vector<std::string> wordCalls() {
        std::vector<std::string> lines;
        for (const std::string& line : run.recorder().lines())
            if (line.find("Version") == std::string::npos && line.find("Machine.Screen") == std::string::npos) lines.push_back(line);
        return lines;
    }
    TestRun run{wordAt(GetParam())};
};

INSTANTIATE_TEST_SUITE_P(Versions, PasteRangeTest, testing::Values(u"9.0.0.6627", u"10.0.0.4608", u"10.0.0.6515", u"11.0.0.5510"));

TEST_P(PasteRangeTest, TheClipboardLandsAtWordsSelection) {
    const Inspector mail = openAnyDraft(run, html(document(u"ab")), 1);
    run.clipboard().replaceText(u"<new>");
    const Object connect = fromHost(run);
    run.recorder().clear();
    connect.call(Member::PasteRangeToEmail);
    const std::vector<std::string> calls = wordCalls();
    EXPECT_EQ(sourceOf(run, mail), document(u"a&lt;new&gt;b"));
    using Lines = std::vector<std::string>;
    const Lines guarded = {"call Connect.PasteRangeToEmail",
                           "call Application.ActiveInspector",
                           "call Machine.CreateObject \"qz7mRedemption.qz7mSafeInspector\"",
                           "put SafeInspector.Item Inspector",
                           "get SafeInspector.WordEditor",
                           "get Document.Application",
                           "get Application.Selection",
                           "call Selection.Paste 0"};
    const Lines bare = {"call Connect.PasteRangeToEmail", "call Application.ActiveInspector", "get Inspector.WordEditor",
                        "get Document.Application",       "get Application.Selection",        "call Selection.Paste 0"};
    EXPECT_EQ(calls, isGuarded() ? guarded : bare);
    EXPECT_TRUE(run.boxes().empty());
}

TEST_P(PasteRangeTest, WhereverTheCaretOfTheHostIs) {
    const Inspector mail = openAnyDraft(run, html(document(u"ab")), 1);
    run.focus(mail, model::EditorFieldName::Subject, -1);
    run.clipboard().replaceText(u"new");
    fromHost(run).call(Member::PasteRangeToEmail);
    EXPECT_EQ(run.bodyShown(mail), u"anewb");
    EXPECT_EQ(run.record(mail.CurrentItem()).head.subject, u"About us");
}

TEST_P(PasteRangeTest, ConnectsByItself) {
    const Inspector mail = openAnyDraft(run, html(document(u"ab")), 1);
    run.clipboard().replaceText(u"new");
    const Object connect = fromHost(run);
    run.apartment().gOutlook = {};
    run.apartment().gNameSpace = {};
    connect.call(Member::PasteRangeToEmail);
    EXPECT_TRUE(run.apartment().gOutlook);
    EXPECT_TRUE(run.apartment().gNameSpace);
    EXPECT_EQ(run.bodyShown(mail), u"anewb");
}

TEST_P(PasteRangeTest, AnErrorShowsItsBox) {
    openAnyDraft(run, html(document(u"ab")), 1);
    run.faults().failNth(u"Selection", u"Paste", 1, 4605, u"This method or property is not available");
    fromHost(run).call(Member::PasteRangeToEmail);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox(), (screen::ScriptedUser::BoxRecord{u"PasteRangeToEmail - Lorvane", u"Error 4605: This method or property is not available", 16, 1}));
}

TEST_P(PasteRangeTest, WithoutAnOpenItemTheErrorShowsItsBox) {
    fromHost(run).call(Member::PasteRangeToEmail);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"PasteRangeToEmail - Lorvane");
    EXPECT_EQ(run.lastBox().style, 16);
}

TEST(PasteRangeWithoutWordTest, TheErrorShowsItsBox) {
    TestRun run;
    const Inspector mail = openAnyDraft(run, html(document(u"ab")), 1);
    run.clipboard().replaceText(u"new");
    fromHost(run).call(Member::PasteRangeToEmail);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox(),
              (screen::ScriptedUser::BoxRecord{u"PasteRangeToEmail - Lorvane", u"Error 91: Object variable or With block variable not set", 16, 1}));
    EXPECT_EQ(run.bodyShown(mail), u"ab");
}

}  // namespace
}  // namespace lorvane::support
