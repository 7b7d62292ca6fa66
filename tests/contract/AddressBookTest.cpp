#include "contract/HostFixture.h"

namespace lorvane::contract {

class AddressBookEntry : public OneHost {
protected:
    MailItem mailTo(std::u16string_view name) {
        const MailItem item = host().newItem();
        addRecipient(item, name);
        item.Recipients().ResolveAll();
        return item;
    }
    AddressEntry entryOf(const MailItem& item) { return makeSafeMailItem(item).Recipients().Item(1).AddressEntry(); }
};

TEST_F(AddressBookEntry, HasTheFiveNameFields) {
    person().addPerson({.name = u"Dr John Q Public Jr",
                        .address = u"john@example.com",
                        .prefix = u"Dr",
                        .given = u"John",
                        .middle = u"Q",
                        .surname = u"Public",
                        .generation = u"Jr"});
    const AddressEntry entry = entryOf(mailTo(u"Dr John Q Public Jr"));
    EXPECT_EQ(entry.Fields(0x3A45001E).toText(), u"Dr");
    EXPECT_EQ(entry.Fields(0x3A06001E).toText(), u"John");
    EXPECT_EQ(entry.Fields(0x3A44001E).toText(), u"Q");
    EXPECT_EQ(entry.Fields(0x3A11001E).toText(), u"Public");
    EXPECT_EQ(entry.Fields(0x3A05001E).toText(), u"Jr");
}

TEST_F(AddressBookEntry, FieldsAreReadByEitherTextType) {
    person().addPerson({.name = u"John Public", .address = u"john@example.com", .given = u"John"});
    const AddressEntry entry = entryOf(mailTo(u"John Public"));
    EXPECT_EQ(entry.Fields(0x3A06001E), entry.Fields(0x3A06001F));
}

TEST_F(AddressBookEntry, AFieldThatIsNotThereReadsAsEmptyText) {
    person().addPerson({.name = u"John Public", .address = u"john@example.com"});
    EXPECT_EQ(entryOf(mailTo(u"John Public")).Fields(0x3A06001E).toText(), u"");
    EXPECT_TRUE(entryOf(mailTo(u"John Public")).Fields(0x3A17001E).isEmpty());
}

TEST_F(AddressBookEntry, OfAPlainAddressHasNoNameFields) {
    const AddressEntry entry = entryOf(mailTo(u"someone@example.org"));
    EXPECT_EQ(entry.Fields(0x3A06001E).toText(), u"");
    EXPECT_EQ(entry.SMTPAddress(), u"someone@example.org");
}

TEST_F(AddressBookEntry, IsFoundByAddressToo) {
    person().addPerson({.name = u"John Public", .address = u"john@example.com", .given = u"John"});
    EXPECT_EQ(entryOf(mailTo(u"JOHN@example.com")).Fields(0x3A06001E).toText(), u"John");
}

TEST_F(AddressBookEntry, OfADirectoryPersonHasProxiesAndAnSmtpAddress) {
    person().addPerson({.name = u"John Public",
                        .address = u"/o=Example/cn=john",
                        .type = u"EX",
                        .proxies = {u"smtp:old@example.com", u"SMTP:john@example.com", u"X400:c=de"}});
    const AddressEntry entry = entryOf(mailTo(u"John Public"));
    EXPECT_EQ(entry.Address(), u"/o=Example/cn=john");
    EXPECT_EQ(entry.SMTPAddress(), u"john@example.com");
    const Variant proxies = entry.Fields(0x800F101E);
    ASSERT_EQ(proxies.kind(), Variant::Kind::Array);
    ASSERT_EQ(proxies.toArray().items.size(), 3u);
    EXPECT_EQ(proxies.toArray().items[0].toText(), u"smtp:old@example.com");
    EXPECT_EQ(proxies.toArray().items[1].toText(), u"SMTP:john@example.com");
}

TEST_F(AddressBookEntry, OfAnUnresolvedRecipientIsNothing) {
    const MailItem item = host().newItem();
    addRecipient(item, u"Nobody Known");
    EXPECT_FALSE(makeSafeMailItem(item).Recipients().Item(1).AddressEntry());
}

TEST_F(AddressBookEntry, ANameThatTwoPersonsHaveDoesNotResolve) {
    person().addPerson({.name = u"John Public", .address = u"john@example.com"});
    person().addPerson({.name = u"John Public", .address = u"john@example.org"});
    const MailItem item = host().newItem();
    addRecipient(item, u"John Public");
    EXPECT_FALSE(item.Recipients().ResolveAll());
}

}  // namespace lorvane::contract
