#include "contract/HostFixture.h"

/// Everything an item has survives a restart of the host, in equal code units and bytes.
namespace lorvane::contract {

class Durability : public EachStore {
protected:
    /// The item as a host started anew has it.
    MailItem restarted(const MailItem& item) {
        const auto pair = identityOf(item);
        host().restart();
        return host().session().GetItemFromID(pair.first, pair.second);
    }
    const std::u16string odd = u"a\rb\nc\r\nd\te\x0301 \xD800 \xDC00\xD83D\xDE00\x00AD\xFEFF\x4E2D\x0001 '\"\\  ";
};
INSTANTIATE_EACH_STORE(Durability);

TEST_P(Durability, OfPlainText) {
    const MailItem item = host().plainItem(odd);
    item.Save();
    const MailItem found = restarted(item);
    EXPECT_EQ(found.Body(), odd);
    EXPECT_EQ(found.BodyFormat(), body_format::Plain);
}

TEST_P(Durability, OfHtml) {
    const MailItem item = host().newItem();
    item.HTMLBody(u"<html>\n<BODY >" + odd + u"&bogus;</p>");
    item.Save();
    const MailItem found = restarted(item);
    EXPECT_EQ(found.HTMLBody(), u"<html>\n<BODY >" + odd + u"&bogus;</p>");
    EXPECT_EQ(found.BodyFormat(), body_format::Html);
}

TEST_P(Durability, OfRichText) {
    const MailItem item = host().newItem();
    put(makeSafeMailItem(item), u"RTFBody", rtf(u"Dear {\\b John}\\par\r\nBye\\'e9"));
    item.Save();
    const MailItem found = restarted(item);
    EXPECT_EQ(text(makeSafeMailItem(found), u"RTFBody"), rtf(u"Dear {\\b John}\\par\r\nBye\\'e9"));
    EXPECT_EQ(found.BodyFormat(), body_format::RichText);
}

TEST_P(Durability, OfNoTextAtAll) {
    EXPECT_EQ(restarted(host().savedItem(u"Offer")).BodyFormat(), body_format::Unspecified);
}

TEST_P(Durability, OfSubjectCategoriesAndMileage) {
    const MailItem item = host().newItem();
    item.Subject(odd);
    item.Categories(u"Sales,\x00C4ngste, Orders ");
    put(item, u"Mileage", u"ITCreateEmail=1;\xD800");
    item.Save();
    const MailItem found = restarted(item);
    EXPECT_EQ(found.Subject(), odd);
    EXPECT_EQ(found.Categories(), u"Sales,\x00C4ngste, Orders ");
    EXPECT_EQ(text(found, u"Mileage"), u"ITCreateEmail=1;\xD800");
}

TEST_P(Durability, OfLongText) {
    std::u16string body;
    for (int line = 0; line < 20000; ++line) body += u"A line of the letter.\r\n";
    const MailItem item = host().plainItem(body);
    item.Save();
    EXPECT_EQ(restarted(item).Body(), body);
}

TEST_P(Durability, OfRecipients) {
    person().addPerson({.name = u"John Public", .address = u"john@example.com"});
    const MailItem item = host().newItem();
    addRecipient(item, u"John Public");
    put(addRecipient(item, u"jane@example.com"), u"Type", 2);
    item.Recipients().ResolveAll();
    addRecipient(item, u"Nobody Known");
    item.Save();
    const MailItem found = restarted(item);
    ASSERT_EQ(found.Recipients().Count(), 3);
    EXPECT_EQ(found.Recipients().Item(1).Name(), u"John Public");
    EXPECT_TRUE(found.Recipients().Item(1).Resolved());
    EXPECT_EQ(text(found.Recipients().Item(1), u"Address"), u"john@example.com");
    EXPECT_EQ(found.Recipients().Item(2).Type(), 2);
    EXPECT_EQ(found.Recipients().Item(3).Name(), u"Nobody Known");
    EXPECT_FALSE(found.Recipients().Item(3).Resolved());
    EXPECT_EQ(found.To(), u"John Public; Nobody Known");
    EXPECT_EQ(found.CC(), u"jane@example.com");
}

TEST_P(Durability, OfAttachments) {
    Bytes every;
    for (int value = 0; value < 256; ++value) every.push_back(static_cast<std::uint8_t>(value));
    const MailItem item = host().newItem();
    item.Attachments().Add(person().writeFile("every.bin", every), 1, 1, u"Every \x00E9.bin");
    item.Attachments().Add(person().writeFile("empty.txt", {}), 1, 2, u"empty.txt");
    item.Save();
    const MailItem found = restarted(item);
    ASSERT_EQ(found.Attachments().Count(), 2);
    EXPECT_EQ(found.Attachments().Item(1).FileName(), u"every.bin");
    EXPECT_EQ(found.Attachments().Item(1).DisplayName(), u"Every \x00E9.bin");
    const std::u16string out = person().path("out.bin");
    found.Attachments().Item(1).SaveAsFile(out);
    EXPECT_EQ(person().readFile(out), every);
}

TEST_P(Durability, OfUserProperties) {
    const MailItem item = host().newItem();
    for (const char16_t* name : {u"ITAppointmentEntryID", u"ITAppointmentStoreID"}) {
        const Object added = call(object(item, u"UserProperties"), u"Add", {name, 1, true}).toObject();
        put(added, u"Value", odd + name);
    }
    item.Save();
    const Object found = object(restarted(item), u"UserProperties");
    EXPECT_EQ(number(found, u"Count"), 2);
    for (const char16_t* name : {u"ITAppointmentEntryID", u"ITAppointmentStoreID"})
        EXPECT_EQ(text(call(found, u"Item", {name}).toObject(), u"Value"), odd + name);
}

TEST_P(Durability, OfSentAndReceivedMarks) {
    const MailItem item = person().receive({.subject = u"Question", .html = html(u"<b>Hello</b>"), .senderName = u"Jane Public"});
    const std::u16string receivedBy = makeSafeMailItem(item).Fields(0x0040001E).toText();
    const MailItem found = restarted(item);
    EXPECT_TRUE(found.Sent());
    EXPECT_EQ(found.SenderName(), u"Jane Public");
    EXPECT_EQ(found.HTMLBody(), html(u"<b>Hello</b>"));
    EXPECT_EQ(makeSafeMailItem(found).Fields(0x0040001E).toText(), receivedBy);
    EXPECT_EQ(makeSafeMailItem(found).Fields(0x0C1E001E).toText(), u"SMTP");
}

TEST_P(Durability, OfADraftsOwnMarks) {
    const MailItem found = restarted(host().savedItem(u"Offer"));
    EXPECT_FALSE(found.Sent());
    EXPECT_TRUE(makeSafeMailItem(found).Fields(0x0040001E).isEmpty());
}

TEST_P(Durability, OfTheMessagesOwnBytes) {
    const Bytes message = bytes("Subject: Question\r\n\r\nHello \xFF\x00 there");
    const MailItem item = person().receive({.subject = u"Question", .plain = u"Hello", .original = message});
    EXPECT_EQ(person().original(restarted(item)), message);
}

TEST_P(Durability, OfAppointments) {
    const MailItem item = host().application().CreateItem(olAppointmentItem);
    item.Subject(u"Meeting");
    put(item, u"Start", DateTime{46000.0 + 1.0 / 3});
    put(item, u"AllDayEvent", true);
    item.Save();
    const MailItem found = restarted(item);
    EXPECT_EQ(found.Class(), item_class::Appointment);
    EXPECT_EQ(get(found, u"Start"), Variant(DateTime{46000.0 + 1.0 / 3}));
    EXPECT_TRUE(truth(found, u"AllDayEvent"));
}

TEST_P(Durability, OfEachItemsClassFolderAndOrder) {
    const MAPIFolder junk = host().folder(default_folder::Junk);
    for (const char16_t* messageClass : {u"IPM.Post", u"IPM.Note", u"IPM.Contact", u"IPM.Task"})
        MailItem(call(junk.Items(), u"Add", {messageClass}).toObject()).Save();
    host().restart();
    const Items items = host().folder(default_folder::Junk).Items();
    ASSERT_EQ(items.Count(), 4);
    EXPECT_EQ(items.Item(1).Class(), item_class::Post);
    EXPECT_EQ(items.Item(2).MessageClass(), u"IPM.Note");
    EXPECT_EQ(items.Item(3).Class(), item_class::Contact);
    EXPECT_EQ(items.Item(4).Class(), item_class::Task);
}

TEST_P(Durability, OfWhatWasNotSavedThereIsNone) {
    const MailItem item = host().savedItem(u"Offer");
    item.Subject(u"Never saved");
    const MailItem never = host().newItem();
    never.Subject(u"Never saved");
    const MailItem found = restarted(item);
    EXPECT_EQ(found.Subject(), u"Offer");
    EXPECT_EQ(host().folder(default_folder::Drafts).Items().Count(), 1);
}

TEST_P(Durability, OfOpenWindowsWhatWasTypedIsNotCommitted) {
    const MailItem item = host().plainItem(u"Dear ");
    const Inspector inspector = host().open(item);
    person().focus(inspector, Field::Body, -1);
    person().type(u"John");
    EXPECT_EQ(restarted(item).Body(), u"Dear ");
}

TEST_P(Durability, OfSettingsAndClockTheMachineAnswers) {
    host().machine().settings().SaveSetting(u"kelvorn", u"section", u"Key", u"value");
    EXPECT_EQ(host().machine().settings().GetSetting(u"kelvorn", u"section", u"Key"), u"value");
    person().setNow(DateTime{47000.25});
    EXPECT_EQ(host().machine().clock().Now(), DateTime{47000.25});
}

}  // namespace lorvane::contract
