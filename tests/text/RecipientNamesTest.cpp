#include "text/RecipientNames.h"

#include <gtest/gtest.h>

#include "host/Redemption.h"
#include "support/TestRun.h"

namespace lorvane::text {
namespace {

using namespace host;
using support::Person;
using support::plain;
using support::TestRun;
using Lines = std::vector<std::string>;
using Box = screen::ScriptedUser::BoxRecord;

std::u16string withoutCompany(std::u16string name) {
    return RemoveDisplayCompany(name);
}

TEST(DisplayNameTest, LosesTheCompanyInParentheses) {
    EXPECT_EQ(withoutCompany(u"John Public (Acme)"), u"John Public");
    EXPECT_EQ(withoutCompany(u"Public, John (Acme)"), u"Public, John");
    EXPECT_EQ(withoutCompany(u"John (Jack) Public (Acme)"), u"John (Jack) Public");
    EXPECT_EQ(withoutCompany(u"John Public (Acme) Jr"), u"John Public") << "whatever is behind the last parenthesis goes too";
    EXPECT_EQ(withoutCompany(u"John Public(Acme)"), u"John Publi") << "the unit in front of it is taken for a blank";
}

TEST(DisplayNameTest, WithoutAClosingParenthesisIsOnlyTrimmed) {
    EXPECT_EQ(withoutCompany(u" John (Public "), u"John (Public");
    EXPECT_EQ(withoutCompany(u""), u"");
}

TEST(DisplayNameTest, WithAClosingParenthesisAloneLosesItsLastUnit) {
    EXPECT_EQ(withoutCompany(u"John) Public"), u"John) Publi");
    EXPECT_EQ(withoutCompany(u")"), u"");
    EXPECT_EQ(withoutCompany(u"(A)"), u"");
}

TEST(DisplayNameTest, TheNameWithoutCompanyStaysInTheArgument) {
    std::u16string name = u" John Public (Acme)";
    EXPECT_EQ(RemoveDisplayCompany(name), u"John Public");
    EXPECT_EQ(name, u"John Public");
}

TEST(DisplayNameTest, LosesAnAddressInParentheses) {
    EXPECT_EQ(StripDisplayEmail(u"John Public (john@example.com)"), u"John Public");
    EXPECT_EQ(StripDisplayEmail(u"John (john@example.com) Public"), u"John   Public") << "a blank stands for it";
    EXPECT_EQ(StripDisplayEmail(u"(john@example.com)"), u"");
}

TEST(DisplayNameTest, KeepsAnAddressThatIsNotInParentheses) {
    EXPECT_EQ(StripDisplayEmail(u"john@example.com"), u"john@example.com");
    EXPECT_EQ(StripDisplayEmail(u"John Public (Acme)"), u"John Public (Acme)");
    EXPECT_EQ(StripDisplayEmail(u"John (Acme) john@example.com"), u"John (Acme) john@example.com") << "the at sign stands behind the parentheses";
}

TEST(DisplayNameTest, AnAddressWithAnOpeningParenthesisAloneLosesAllBehindIt) {
    EXPECT_EQ(StripDisplayEmail(u"John Public (john@example.com"), u"John Public");
}

TEST(DisplayNameTest, LosesTheAddressBooksMarkInAnyCase) {
    EXPECT_EQ(StripDisplayEmail(u"John Public (E-mail)"), u"John Public");
    EXPECT_EQ(StripDisplayEmail(u"John Public (E-MAIL)"), u"John Public");
    EXPECT_EQ(StripDisplayEmail(u"John Public (e-Mail) Jr"), u"John Public  Jr") << "the blank in front goes with it and another one stands for it";
    EXPECT_EQ(StripDisplayEmail(u"(E-mail)"), u"");
    EXPECT_EQ(StripDisplayEmail(u"John Public (E-ma\u0131l)"), u"John Public") << "upper case makes one letter of both";
}

TEST(DisplayNameTest, OfNothingIsNothing) {
    EXPECT_EQ(StripDisplayEmail(u""), u"");
    EXPECT_EQ(GetFirstName(u""), u"");
    EXPECT_EQ(GetLastName(u""), u"");
}

TEST(DisplayNameTest, FirstAndLastNameByComma) {
    EXPECT_EQ(GetFirstName(u"Public, John"), u"John");
    EXPECT_EQ(GetLastName(u"Public, John"), u"Public");
    EXPECT_EQ(GetFirstName(u"Public, John Q, Jr"), u"John Q, Jr");
    EXPECT_EQ(GetLastName(u"Public, John Q, Jr"), u"Public");
    EXPECT_EQ(GetFirstName(u"Public,"), u"");
    EXPECT_EQ(GetLastName(u",John"), u"");
}

TEST(DisplayNameTest, FirstAndLastNameByBlank) {
    EXPECT_EQ(GetFirstName(u"John Q Public"), u"John");
    EXPECT_EQ(GetLastName(u"John Q Public"), u"Public");
    EXPECT_EQ(GetFirstName(u"John"), u"John");
    EXPECT_EQ(GetLastName(u"John"), u"");
}

class RecipientNamesTest : public testing::Test {
protected:
    explicit RecipientNamesTest(support::RunOptions options = {.connected = false}) : run(std::move(options)) {}

    struct Names {
        std::u16string full, first;
        bool operator==(const Names&) const = default;
    };

    /// An entry of the address book with these fields.
    AddressEntry entry(const Person& fields = {}) {
        Person contact = fields;
        contact.name = u"entry " + std::u16string(1, nextEntry_);
        contact.address = std::u16string(1, nextEntry_++) + u"@example.com";
        run.addContact(contact);
        const MailItem mail = run.draft(u"Subject", plain(u""), {contact.name});
        mail.Recipients().ResolveAll();
        return makeSafeMailItem(mail).Recipients().Item(1).AddressEntry();
    }

    /// Both names of an entry with these fields and a display name.
    Names names(const Person& fields, std::u16string_view displayName) {
        Names found;
        GetFullName(entry(fields), displayName, found.full, found.first);
        return found;
    }

    /// Both names where the book knows nothing.
    Names names(std::u16string_view displayName) { return names({}, displayName); }

    TestRun run;

private:
    char16_t nextEntry_ = u'a';
};

TEST_F(RecipientNamesTest, TheFieldsMakeTheFullName) {
    EXPECT_EQ(names({.prefix = u"Dr", .given = u"John", .middle = u"Q", .surname = u"Public", .generation = u"Jr"}, u"JP"),
              (Names{u"Dr John Q Public Jr", u"John"}));
    EXPECT_EQ(names({.given = u"John", .surname = u"Public"}, u"JP"), (Names{u"John Public", u"John"}));
    EXPECT_EQ(names({.prefix = u" Dr ", .given = u" John ", .surname = u" Public "}, u"JP"), (Names{u"Dr  John  Public", u"John"}))
        << "only what stands so far is trimmed";
    EXPECT_EQ(names({.given = u"John"}, u"JP"), (Names{u"John", u"John"}));
    EXPECT_EQ(names({.surname = u"Public"}, u"JP"), (Names{u"Public", u""}));
}

TEST_F(RecipientNamesTest, TheDisplayNameServesWhereTheFieldsAreEmpty) {
    EXPECT_EQ(names(u"John Public"), (Names{u"John Public", u"John"}));
    EXPECT_EQ(names(u"Public, John"), (Names{u"Public, John", u"John"})) << "the full name keeps its shape";
    EXPECT_EQ(names(u"Public, John (Acme)"), (Names{u"Public, John", u"John"}));
    EXPECT_EQ(names(u"John Public (john@example.com)"), (Names{u"John Public", u"John"}));
    EXPECT_EQ(names(u"John Public (E-mail)"), (Names{u"John Public", u"John"}));
    EXPECT_EQ(names(u""), (Names{u"", u""}));
}

TEST_F(RecipientNamesTest, FieldsLoseCompanyAndAddressToo) {
    EXPECT_EQ(names({.surname = u"Public (Acme)"}, u"JP"), (Names{u"Public", u""}));
}

TEST_F(RecipientNamesTest, QuotesAroundTheNameFallAway) {
    EXPECT_EQ(names(u"'john@example.com'"), (Names{u"john@example.com", u"john@example.com"}));
    EXPECT_EQ(names(u"'John Public'"), (Names{u"John Public", u"John"}));
    EXPECT_EQ(names(u"'John' Public"), (Names{u"'John' Public", u"'John'"}));
    EXPECT_EQ(names(u"''"), (Names{u"", u""}));
    EXPECT_EQ(names(u"'"), (Names{u"", u""}));
}

TEST_F(RecipientNamesTest, ForTheFirstNameTheNameIsCleanedOnceMore) {
    EXPECT_EQ(names(u"a)b"), (Names{u"a)", u"a"})) << "each cleaning takes one unit";
    EXPECT_EQ(names(u"'Public, John (Acme)'"), (Names{u"'Public, John", u"John"})) << "the company takes the closing quote along";
}

TEST_F(RecipientNamesTest, AnEmptyFullNameIsMadeOfFirstAndLast) {
    EXPECT_EQ(names({.given = u"(Acme)"}, u""), (Names{u"(Acme)", u"(Acme)"}));
    EXPECT_EQ(names({.given = u"'", .surname = u""}, u""), (Names{u"'", u"'"}));
}

class SenderTest : public RecipientNamesTest {};

TEST_F(SenderTest, AnSmtpSendersAddressIsItsOwn) {
    EXPECT_EQ(SenderEmail(run.receivedMail(u"Question", plain(u""), u"Jane", u"jane@example.com")), u"jane@example.com");
    EXPECT_EQ(SenderEmail(run.receivedMail(u"Question", plain(u""), u"Jane", u"jane@example.com", u"smtp")), u"jane@example.com");
}

TEST_F(SenderTest, ADirectorySendersLastSmtpEntryWins) {
    run.addContact({.name = u"Jane Doe",
                    .address = u"/o=Example/cn=jane",
                    .type = u"EX",
                    .proxies = {u"SMTP:jane@example.com", u"X400:c=de", u"smtp:old@example.com", u"SMT:x"}});
    EXPECT_EQ(SenderEmail(run.receivedMail(u"Question", plain(u""), u"Jane Doe", u"/o=Example/cn=jane", u"EX")), u"old@example.com");
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(SenderTest, AnotherKindOfAddressAndNoSenderGiveNothing) {
    EXPECT_EQ(SenderEmail(run.receivedMail(u"Question", plain(u""), u"Jane", u"+1 555", u"FAX")), u"");
    EXPECT_EQ(SenderEmail(run.draft(u"Offer", plain(u""))), u"");
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(SenderTest, ReceivedAndSentMails) {
    const MailItem received = run.receivedMail(u"Question", plain(u""));
    const MailItem draft = run.draft(u"Offer", plain(u""));
    EXPECT_TRUE(IsReceivedMail(received));
    EXPECT_TRUE(IsSentMail(received));
    EXPECT_FALSE(IsReceivedMail(draft));
    EXPECT_FALSE(IsSentMail(draft));
}

TEST_F(SenderTest, AnErrorInTheseTestsIsAFalse) {
    EXPECT_FALSE(IsReceivedMail({}));
    EXPECT_FALSE(IsSentMail({}));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(SenderTest, ARecipientIsFoundByItsAddress) {
    const MailItem mail = run.draft(u"Offer", plain(u""), {u"Nobody Known", u"Jane Doe <jane@example.com>", u"john@example.com"});
    mail.Recipients().ResolveAll();
    EXPECT_TRUE(EmailAlreadyRecipt(mail, u"JOHN@example.com"));
    EXPECT_TRUE(EmailAlreadyRecipt(mail, u"jane@example.com"));
    EXPECT_FALSE(EmailAlreadyRecipt(mail, u"jim@example.com"));
    EXPECT_FALSE(EmailAlreadyRecipt(run.draft(u"Offer", plain(u"")), u"john@example.com"));
}

class NameCallsTest : public RecipientNamesTest {
protected:
    NameCallsTest() : RecipientNamesTest({.connected = false, .instruments = true}) {}
};

TEST_F(NameCallsTest, TheFieldsAreReadInThisOrder) {
    const AddressEntry john = entry({.given = u"John", .surname = u"Public"});
    run.recorder().clear();
    std::u16string full;
    std::u16string first;
    GetFullName(john, u"", full, first);
    EXPECT_EQ(run.recorder().lines(), (Lines{"get AddressEntry.Fields 973471774", "get AddressEntry.Fields 974192670", "get AddressEntry.Fields 977600542",
                                             "get AddressEntry.Fields 973471774", "get AddressEntry.Fields 977535006", "get AddressEntry.Fields 974192670",
                                             "get AddressEntry.Fields 973406238"}));
}

TEST_F(NameCallsTest, AFailureShowsTheStandardBoxAndLeavesTheNames) {
    const AddressEntry john = entry({.given = u"John"});
    std::u16string full = u"before";
    std::u16string first = u"before";
    run.faults().failNth(u"AddressEntry", u"Fields", 7, host_failure::AccessDenied, u"Denied");
    GetFullName(john, u"", full, first);
    EXPECT_EQ(full, u"before");
    EXPECT_EQ(first, u"before");
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox(), (Box{u"basGlobals.GetFullName - Lorvane", u"Error -2147024891: Denied", 16, 1}));
}

TEST_F(NameCallsTest, ASenderThatCannotBeReadShowsItsBox) {
    const MailItem received = run.receivedMail(u"Question", plain(u""));
    for (const std::u16string_view member : {u"Fields", u"Sender"}) {
        run.faults().failNth(u"SafeMailItem", member, 1, host_failure::Failed);
        EXPECT_EQ(SenderEmail(received), u"");
        EXPECT_EQ(run.lastBox(), (Box{u"Invalid E-mail Address", u"E-mail address cannot be resolved. Please check e-mail address.", 48, 1}));
    }
    EXPECT_EQ(run.boxes().size(), 2U);
}

TEST_F(NameCallsTest, TheSenderIsReadBetweenTwoCleanUps) {
    const MailItem received = run.receivedMail(u"Question", plain(u""));
    const auto between = [&](std::initializer_list<std::string> uses) {
        Lines lines{"call Machine.CreateObject \"qz7mRedemption.qz7mMAPIUtils\"", "call MAPIUtils.Cleanup",
                    "call Machine.CreateObject \"qz7mRedemption.qz7mSafeMailItem\"", "put SafeMailItem.Item MailItem"};
        lines.insert(lines.end(), uses);
        lines.insert(lines.end(), {lines[0], lines[1]});
        return lines;
    };
    run.recorder().clear();
    SenderEmail(received);
    EXPECT_EQ(run.recorder().lines(), between({"get SafeMailItem.Fields 203292702", "get SafeMailItem.Sender", "get AddressEntry.Address"}));
    run.recorder().clear();
    IsReceivedMail(received);
    EXPECT_EQ(run.recorder().lines(), between({"get SafeMailItem.Fields 4194334"}));
    run.recorder().clear();
    IsSentMail(received);
    EXPECT_EQ(run.recorder().lines(), between({"get SafeMailItem.Sent"}));
}

}  // namespace
}  // namespace lorvane::text
