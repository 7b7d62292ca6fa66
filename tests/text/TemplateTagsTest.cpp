#include "text/TemplateTags.h"

#include <gtest/gtest.h>

#include "host/Redemption.h"
#include "host/TextFunctions.h"
#include "support/TestRun.h"

namespace lorvane::text {
namespace {

using namespace host;
using support::RunOptions;
using support::TestRun;
using Lines = std::vector<std::string>;

constexpr std::u16string_view allTags = u"[FullName]|[FirstName]|[Date]";

class TemplateTagsTest : public testing::Test {
protected:
    explicit TemplateTagsTest(RunOptions options = {}) : run(std::move(options)) {
        run.addContact({.name = u"John Public",
                        .address = u"john@example.com",
                        .prefix = u"Dr",
                        .given = u"John",
                        .middle = u"Q",
                        .surname = u"Public",
                        .generation = u"Jr"});
        run.addContact({.name = u"Jane Doe", .address = u"jane@example.com", .given = u"Jane", .surname = u"Doe"});
    }

    /// The safe wrapper around a saved mail to these.
    SafeMailItem mailTo(std::initializer_list<std::u16string_view> to) { return makeSafeMailItem(run.draft(u"Subject", support::plain(u""), to)); }

    /// `allTags` with what the tags become, by the recipients of `item`.
    std::u16string byRecipient(const Object& item, std::u16string_view source = sourceRecipient) {
        std::u16string text(allTags);
        ReplaceTemplateTag(text, item, source);
        return text;
    }

    /// The same, with `item` as the mail being answered and `answer` as the answer being built.
    std::u16string bySender(const Object& item, const Object& answer, bool noRecipient = false) {
        std::u16string text(allTags);
        ReplaceTemplateTag(text, item, u"", noRecipient, answer);
        return text;
    }

    TestRun run;
};

TEST_F(TemplateTagsTest, NamesComeFromTheRecipient) {
    EXPECT_EQ(byRecipient(mailTo({u"John Public"})), u"Dr John Q Public Jr|John|10-Jan-2028");
}

TEST_F(TemplateTagsTest, ChangesTheTextInPlaceAndGivesTheSame) {
    std::u16string text = u"Dear [FirstName]";
    EXPECT_EQ(ReplaceTemplateTag(text, mailTo({u"John Public"}), sourceRecipient), u"Dear John");
    EXPECT_EQ(text, u"Dear John");
}

TEST_F(TemplateTagsTest, TagsAndSourceAreFoundInAnyCase) {
    std::u16string text = u"[fullname] [FIRSTNAME] [date] [DATE]";
    ReplaceTemplateTag(text, mailTo({u"Jane Doe"}), u"recipient");
    EXPECT_EQ(text, u"Jane Doe Jane 10-Jan-2028 10-Jan-2028");
}

TEST_F(TemplateTagsTest, EveryTagOfATextIsReplaced) {
    std::u16string text = u"[FirstName][FirstName]<b>[FirstName]</b>";
    ReplaceTemplateTag(text, mailTo({u"Jane Doe"}), sourceRecipient);
    EXPECT_EQ(text, u"JaneJane<b>Jane</b>");
}

TEST_F(TemplateTagsTest, WithoutAnItemOnlyTheDateIsReplaced) {
    EXPECT_EQ(byRecipient({}), u"[FullName]|[FirstName]|10-Jan-2028");
    EXPECT_EQ(bySender({}, {}), u"[FullName]|[FirstName]|10-Jan-2028");
}

TEST_F(TemplateTagsTest, ProofingMarkupIsTakenOutFirst) {
    std::u16string text = u"Dear [<span class=SpellE>FullName</span>], as of our conversation on [<span lang=EN-US>Date</span>]";
    ReplaceTemplateTag(text, mailTo({u"Jane Doe"}), sourceRecipient);
    EXPECT_EQ(text, u"Dear Jane Doe, as of our conversation on 10-Jan-2028");

    text = u"[<span lang=EN-US>Date</span>]";
    ReplaceTemplateTag(text, {});
    EXPECT_EQ(text, u"10-Jan-2028");
}

TEST_F(TemplateTagsTest, WithoutRecipientsTheNameTagsStay) {
    EXPECT_EQ(byRecipient(mailTo({})), u"[FullName]|[FirstName]|10-Jan-2028");
}

TEST_F(TemplateTagsTest, UnresolvedRecipientsDoNotCount) {
    EXPECT_EQ(byRecipient(mailTo({u"Nobody Known"})), u"[FullName]|[FirstName]|10-Jan-2028");
    EXPECT_EQ(byRecipient(mailTo({u"Nobody Known", u"Jane Doe"})), u"Jane Doe|Jane|10-Jan-2028");
}

TEST_F(TemplateTagsTest, CcAndBccRecipientsDoNotCount) {
    const MailItem mail = run.draft(u"Subject", support::plain(u""));
    constexpr std::int32_t cc = 2;
    constexpr std::int32_t bcc = 3;
    run.addRecipient(mail, u"John Public", cc);
    run.addRecipient(mail, u"John Public", bcc);
    EXPECT_EQ(byRecipient(makeSafeMailItem(mail)), u"[FullName]|[FirstName]|10-Jan-2028");
    run.addRecipient(mail, u"Jane Doe");
    EXPECT_EQ(byRecipient(makeSafeMailItem(mail)), u"Jane Doe|Jane|10-Jan-2028");
}

TEST_F(TemplateTagsTest, OnlyTheFirstOfSeveralRecipientsCounts) {
    EXPECT_EQ(byRecipient(mailTo({u"Jane Doe", u"John Public"})), u"Jane Doe|Jane|10-Jan-2028");
}

TEST_F(TemplateTagsTest, ADisplayNameServesWhereTheBookIsEmpty) {
    EXPECT_EQ(byRecipient(mailTo({u"\"Roe, Richard\" <richard@example.org>"})), u"Roe, Richard|Richard|10-Jan-2028");
}

TEST_F(TemplateTagsTest, AnAnswerTakesTheEntryOfItsRecipientAndTheNameOfTheEarlierSender) {
    const MailItem received = run.receivedMail(u"Question", support::plain(u""), u"Roe, Richard (Acme)", u"richard@example.org");
    EXPECT_EQ(bySender(received, mailTo({u"unknown@example.org"})), u"Roe, Richard|Richard|10-Jan-2028");
    // The entry's own fields win over the sender's name.
    EXPECT_EQ(bySender(received, mailTo({u"Jane Doe"})), u"Jane Doe|Jane|10-Jan-2028");
}

TEST_F(TemplateTagsTest, AnAnswerToNobodyKeepsTheNameTags) {
    const MailItem received = run.receivedMail(u"Question", support::plain(u""), u"Richard Roe");
    EXPECT_EQ(bySender(received, mailTo({})), u"[FullName]|[FirstName]|10-Jan-2028");
    EXPECT_EQ(bySender(received, mailTo({u"Nobody Known"})), u"[FullName]|[FirstName]|10-Jan-2028");
    EXPECT_EQ(bySender(received, mailTo({u"Jane Doe"}), true), u"[FullName]|[FirstName]|10-Jan-2028");
    EXPECT_EQ(bySender(received, {}, true), u"[FullName]|[FirstName]|10-Jan-2028") << "no answer is asked for where there is no recipient";
}

TEST_F(TemplateTagsTest, TheDateIsThatOfTheMachineAtTheMoment) {
    std::u16string text = u"[Date]";
    run.setNow(u"2028-03-05T23:59:59");
    EXPECT_EQ(ReplaceTemplateTag(text, {}), u"05-Mar-2028");
}

TEST_F(TemplateTagsTest, ReplaceTagIsTheSameForShortAndLongValues) {
    for (const std::u16string_view value : {u"", u"J", u"[Dat]", u"[Dots]", u"[date]", u"somebody else"}) {
        for (const std::u16string_view source : {u"", u"[", u"[Date]", u"[Date][DATE]", u"a [date] b [Date] c", u"[[Date]] [Dat [Date]", u"no tag"}) {
            std::u16string text(source);
            const std::u16string& given = ReplaceTag(text, u"[Date]", value);
            EXPECT_EQ(&given, &text);
            EXPECT_EQ(text, host::Replace(source, u"[Date]", value, host::Compare::IgnoreCase)) << host::toUtf8(source) << " with " << host::toUtf8(value);
        }
    }
}

TEST_F(TemplateTagsTest, ReplaceTagPutsInWhatItIsGiven) {
    std::u16string text = u"[date][Date] [dates] [Date";
    EXPECT_EQ(ReplaceTag(text, u"[Date]", u"[Date]!"), u"[Date]![Date]! [dates] [Date");
    EXPECT_EQ(text, u"[Date]![Date]! [dates] [Date");
    EXPECT_EQ(ReplaceTag(text, u"[Date]", u""), u"!! [dates] [Date");
}

TEST_F(TemplateTagsTest, NoBoxIsShownInAnyOfThese) {
    byRecipient({});
    byRecipient(mailTo({}));
    byRecipient(mailTo({u"Nobody Known"}));
    EXPECT_TRUE(run.boxes().empty());
}

class GermanTagsTest : public TemplateTagsTest {
protected:
    GermanTagsTest() : TemplateTagsTest({.now = u"2028-05-01T10:00", .locale = u"de-DE"}) {}
};

TEST_F(GermanTagsTest, TheMonthIsInTheUsersLanguage) {
    std::u16string text = u"[Date]";
    run.setNow(u"2028-12-24T10:00");
    EXPECT_EQ(ReplaceTemplateTag(text, {}), u"24-Dez-2028");
}

class TagCallsTest : public TemplateTagsTest {
protected:
    TagCallsTest() : TemplateTagsTest({.connected = false, .instruments = true}) {}
};

TEST_F(TagCallsTest, ByRecipientTheHostIsAskedInThisOrder) {
    const SafeMailItem mail = mailTo({u"Nobody Known", u"Jane Doe", u"John Public"});
    run.recorder().clear();
    run.recorder().leaveOut(u"Machine");
    run.recorder().leaveOut(u"Region");
    byRecipient(mail);
    EXPECT_EQ(run.recorder().lines(), (Lines{
                                          "call Clock.Now",
                                          "get SafeMailItem.Recipients",
                                          "call Recipients.ResolveAll",
                                          "get SafeMailItem.Recipients",
                                          "get Recipients.Count",
                                          "get SafeMailItem.Recipients",
                                          "get Recipients.Count",
                                          "call Recipients.Item 1",
                                          "get Recipient.Type",
                                          "get Recipient.Resolved",
                                          "call Recipients.Item 2",
                                          "get Recipient.Type",
                                          "get Recipient.Resolved",
                                          "get Recipient.AddressEntry",
                                          "get Recipient.Name",
                                          "get AddressEntry.Fields 973471774",
                                          "get AddressEntry.Fields 974192670",
                                          "get AddressEntry.Fields 977600542",
                                          "get AddressEntry.Fields 973471774",
                                          "get AddressEntry.Fields 977535006",
                                          "get AddressEntry.Fields 974192670",
                                          "get AddressEntry.Fields 973406238",
                                      }));
}

TEST_F(TagCallsTest, ForAnAnswerBothItemsAreAskedInThisOrder) {
    const MailItem received(run.receivedMail(u"Question", support::plain(u""), u"Richard Roe"));
    const SafeMailItem answer = mailTo({u"unknown@example.org"});
    run.recorder().clear();
    run.recorder().leaveOut(u"Machine");
    run.recorder().leaveOut(u"Region");
    run.recorder().leaveOut(u"AddressEntry");
    bySender(received, answer);
    EXPECT_EQ(run.recorder().lines(), (Lines{"call Clock.Now", "get SafeMailItem.Recipients", "call Recipients.ResolveAll", "get SafeMailItem.Recipients",
                                             "get Recipients.Count", "get SafeMailItem.Recipients", "get Recipients.Count", "call Recipients.Item 1",
                                             "get Recipient.Type", "get Recipient.Resolved", "get Recipient.AddressEntry", "get MailItem.SenderName"}));
    run.recorder().clear();
    bySender(received, answer, true);
    EXPECT_EQ(run.recorder().lines(), (Lines{"call Clock.Now"}));
}

TEST_F(TagCallsTest, AFailingHostIsTheCallersConcern) {
    const SafeMailItem mail = mailTo({u"Jane Doe"});
    run.faults().failNth(u"Recipients", u"ResolveAll", 1, host_failure::Failed);
    EXPECT_THROW(byRecipient(mail), HostError);
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(TagCallsTest, AFailingNameShowsABoxAndTheTagsStay) {
    const SafeMailItem mail = mailTo({u"Jane Doe"});
    run.faults().failNth(u"AddressEntry", u"Fields", 1, host_failure::AccessDenied, u"Denied");
    EXPECT_EQ(byRecipient(mail), u"[FullName]|[FirstName]|10-Jan-2028");
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox(), (screen::ScriptedUser::BoxRecord{u"basGlobals.GetFullName - Lorvane", u"Error -2147024891: Denied", 16, 1}));
}

}  // namespace
}  // namespace lorvane::text
