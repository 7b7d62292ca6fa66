#include "contract/HostFixture.h"

namespace lorvane::contract {

class RecipientList : public OneHost {
protected:
    void knowJohn() { person().addPerson({.name = u"John Public", .address = u"john@example.com"}); }
};

TEST_F(RecipientList, AnAddedRecipientIsTheLastAndGoesTo) {
    const MailItem item = host().newItem();
    addRecipient(item, u"jane@example.com");
    addRecipient(item, u"john@example.com");
    ASSERT_EQ(item.Recipients().Count(), 2);
    EXPECT_EQ(item.Recipients().Item(2).Name(), u"john@example.com");
    EXPECT_EQ(item.Recipients().Item(2).Type(), olTo);
}

TEST_F(RecipientList, AnAddedRecipientIsNotResolved) {
    knowJohn();
    EXPECT_FALSE(addRecipient(host().newItem(), u"John Public").Resolved());
}

TEST_F(RecipientList, ResolveAllFindsNamesInTheAddressBook) {
    knowJohn();
    const MailItem item = host().newItem();
    addRecipient(item, u"john public");
    EXPECT_TRUE(item.Recipients().ResolveAll());
    const Recipient recipient = item.Recipients().Item(1);
    EXPECT_TRUE(recipient.Resolved());
    EXPECT_EQ(recipient.Name(), u"John Public");
    EXPECT_EQ(text(recipient, u"Address"), u"john@example.com");
}

TEST_F(RecipientList, ResolveAllIsFalseWhileOneIsUnknown) {
    knowJohn();
    const MailItem item = host().newItem();
    addRecipient(item, u"Nobody Known");
    addRecipient(item, u"John Public");
    EXPECT_FALSE(item.Recipients().ResolveAll());
    EXPECT_FALSE(item.Recipients().Item(1).Resolved());
    EXPECT_TRUE(item.Recipients().Item(2).Resolved());
}

TEST_F(RecipientList, PlainAddressesResolveToThemselves) {
    const MailItem item = host().newItem();
    addRecipient(item, u"someone@example.org");
    EXPECT_TRUE(item.Recipients().ResolveAll());
    const Recipient recipient = item.Recipients().Item(1);
    EXPECT_EQ(recipient.Name(), u"someone@example.org");
    EXPECT_EQ(text(recipient, u"Address"), u"someone@example.org");
    EXPECT_EQ(recipient.AddressEntry().Address(), u"someone@example.org");
}

TEST_F(RecipientList, ResolveAllOfNoneIsTrue) {
    EXPECT_TRUE(host().newItem().Recipients().ResolveAll());
}

TEST_F(RecipientList, WrittenAddressFieldsBecomeRecipients) {
    const MailItem item = host().newItem();
    item.put(Member::To, u"john@example.com; jane@example.com");
    item.put(Member::CC, u"joe@example.com");
    item.put(Member::BCC, u"secret@example.com");
    ASSERT_EQ(item.Recipients().Count(), 4);
    EXPECT_EQ(item.Recipients().Item(1).Name(), u"john@example.com");
    EXPECT_EQ(item.Recipients().Item(1).Type(), 1);
    EXPECT_EQ(item.Recipients().Item(3).Type(), 2);
    EXPECT_EQ(item.Recipients().Item(4).Type(), 3);
}

TEST_F(RecipientList, AddressFieldsReadTheNamesOfTheirType) {
    knowJohn();
    const MailItem item = host().newItem();
    addRecipient(item, u"John Public");
    addRecipient(item, u"jane@example.com");
    put(addRecipient(item, u"joe@example.com"), u"Type", 2);
    item.Recipients().ResolveAll();
    EXPECT_EQ(item.To(), u"John Public; jane@example.com");
    EXPECT_EQ(item.CC(), u"joe@example.com");
    EXPECT_EQ(item.BCC(), u"");
}

TEST_F(RecipientList, NumbersOutsideAreAnError) {
    EXPECT_NE(errorOf([&] { host().newItem().Recipients().Item(0); }).number(), 0);
    EXPECT_NE(errorOf([&] { host().newItem().Recipients().Item(1); }).number(), 0);
}

TEST_F(RecipientList, SurviveASave) {
    knowJohn();
    const MailItem item = host().newItem();
    addRecipient(item, u"John Public");
    item.Recipients().ResolveAll();
    item.Save();
    const Recipients found = host().again(item).Recipients();
    ASSERT_EQ(found.Count(), 1);
    EXPECT_TRUE(found.Item(1).Resolved());
    EXPECT_EQ(found.Item(1).AddressEntry().Address(), u"john@example.com");
}

TEST_F(RecipientList, ChangesReachTheStoreOnSaveOnly) {
    const MailItem item = host().savedItem(u"Offer");
    addRecipient(item, u"john@example.com");
    EXPECT_EQ(host().again(item).Recipients().Count(), 0);
    item.Save();
    EXPECT_EQ(host().again(item).Recipients().Count(), 1);
}

}  // namespace lorvane::contract
