#include "contract/HostFixture.h"

namespace lorvane::contract {

class ItemKinds : public OneHost {};

TEST_F(ItemKinds, EachHasItsClassAndMessageClass) {
    struct Row {
        const char16_t* messageClass;
        std::int32_t itemClass;
    };
    for (const Row& row : {Row{u"IPM.Note", item_class::Mail}, Row{u"IPM.Post", item_class::Post}, Row{u"IPM.Appointment", item_class::Appointment},
                           Row{u"IPM.Contact", item_class::Contact}, Row{u"IPM.Task", item_class::Task}}) {
        const MailItem item = host().newItem(row.messageClass);
        EXPECT_EQ(item.Class(), row.itemClass);
        EXPECT_EQ(item.MessageClass(), row.messageClass);
    }
}

TEST_F(ItemKinds, CreateItemMakesMailsAndAppointments) {
    EXPECT_EQ(host().application().CreateItem(olMailItem).Class(), item_class::Mail);
    EXPECT_EQ(host().application().CreateItem(olAppointmentItem).Class(), item_class::Appointment);
}

TEST_F(ItemKinds, CreateItemMakesNewUnsavedItems) {
    const MailItem item = host().newItem();
    EXPECT_EQ(item.EntryID(), u"");
    EXPECT_FALSE(item.Sent());
    EXPECT_EQ(host().folder(default_folder::Drafts).Items().Count(), 0);
}

TEST_F(ItemKinds, AllHaveSubjectBodyCategoriesAndMileage) {
    for (const char16_t* messageClass : {u"IPM.Note", u"IPM.Post", u"IPM.Appointment", u"IPM.Contact", u"IPM.Task"}) {
        const MailItem item = host().newItem(messageClass);
        item.Subject(u"Offer");
        item.Body(u"Dear John");
        item.Categories(u"Sales,Orders");
        put(item, u"Mileage", u"ITCreateEmail=1");
        item.Save();
        const MailItem found = host().again(item);
        EXPECT_EQ(found.Subject(), u"Offer");
        EXPECT_EQ(found.Body(), u"Dear John");
        EXPECT_EQ(found.Categories(), u"Sales,Orders");
        EXPECT_EQ(text(found, u"Mileage"), u"ITCreateEmail=1");
    }
}

TEST_F(ItemKinds, NewOnesHaveEmptyTexts) {
    const MailItem item = host().newItem();
    EXPECT_EQ(item.Subject(), u"");
    EXPECT_EQ(item.Body(), u"");
    EXPECT_EQ(item.Categories(), u"");
    EXPECT_EQ(text(item, u"Mileage"), u"");
    EXPECT_EQ(item.To(), u"");
    EXPECT_EQ(item.CC(), u"");
    EXPECT_EQ(item.BCC(), u"");
    EXPECT_EQ(item.SentOnBehalfOfName(), u"");
    EXPECT_EQ(item.SenderName(), u"");
}

TEST_F(ItemKinds, OnlyMailsAndPostsHaveHtmlBodies) {
    EXPECT_EQ(host().newItem(u"IPM.Post").HTMLBody(), u"");
    for (const char16_t* messageClass : {u"IPM.Appointment", u"IPM.Contact", u"IPM.Task"}) {
        const MailItem item = host().newItem(messageClass);
        EXPECT_HOST_ERROR(runtime_error::NoSuchMember, item.HTMLBody());
        EXPECT_HOST_ERROR(runtime_error::NoSuchMember, item.HTMLBody(u"<p>Dear John</p>"));
        EXPECT_HOST_ERROR(runtime_error::NoSuchMember, item.BodyFormat());
    }
}

TEST_F(ItemKinds, MailsAppointmentsAndTasksHaveRecipients) {
    for (const char16_t* messageClass : {u"IPM.Note", u"IPM.Appointment", u"IPM.Task"}) EXPECT_EQ(host().newItem(messageClass).Recipients().Count(), 0);
    for (const char16_t* messageClass : {u"IPM.Post", u"IPM.Contact"}) {
        EXPECT_HOST_ERROR(runtime_error::NoSuchMember, host().newItem(messageClass).Recipients());
    }
}

TEST_F(ItemKinds, MailsPostsAndAppointmentsHaveAttachments) {
    for (const char16_t* messageClass : {u"IPM.Note", u"IPM.Post", u"IPM.Appointment"}) EXPECT_EQ(host().newItem(messageClass).Attachments().Count(), 0);
}

TEST_F(ItemKinds, OnlyMailsHaveAddressFields) {
    for (const char16_t* messageClass : {u"IPM.Post", u"IPM.Task"}) EXPECT_HOST_ERROR(runtime_error::NoSuchMember, host().newItem(messageClass).To());
}

TEST_F(ItemKinds, AppointmentsHaveTimesAndReminders) {
    const MailItem item = host().application().CreateItem(olAppointmentItem);
    put(item, u"Start", DateTime{46000.5});
    put(item, u"End", DateTime{46000.75});
    put(item, u"AllDayEvent", false);
    put(item, u"ReminderSet", true);
    put(item, u"ReminderMinutesBeforeStart", 30);
    item.Save();
    const MailItem found = host().again(item);
    EXPECT_EQ(get(found, u"Start"), Variant(DateTime{46000.5}));
    EXPECT_EQ(get(found, u"End"), Variant(DateTime{46000.75}));
    EXPECT_FALSE(truth(found, u"AllDayEvent"));
    EXPECT_TRUE(truth(found, u"ReminderSet"));
    EXPECT_EQ(number(found, u"ReminderMinutesBeforeStart"), 30);
    EXPECT_EQ(found.Parent().EntryID(), host().folder(default_folder::Calendar).EntryID());
}

TEST_F(ItemKinds, OnlyAppointmentsHaveTimes) {
    EXPECT_HOST_ERROR(runtime_error::NoSuchMember, get(host().newItem(), u"Start"));
    EXPECT_HOST_ERROR(runtime_error::NoSuchMember, get(host().newItem(), u"AllDayEvent"));
}

TEST_F(ItemKinds, MailsHaveUserProperties) {
    const MailItem item = host().newItem();
    const Object properties = object(item, u"UserProperties");
    call(properties, u"Add", {u"ITAppointmentEntryID", 1, true});
    put(call(properties, u"Item", {u"ITAppointmentEntryID"}).toObject(), u"Value", u"00AA");
    item.Save();
    const Object found = call(object(host().again(item), u"UserProperties"), u"Item", {u"ITAppointmentEntryID"}).toObject();
    EXPECT_EQ(text(found, u"Value"), u"00AA");
}

TEST_F(ItemKinds, AnUnsavedChangeIsNotYetWithTheSavedItem) {
    const MailItem item = host().savedItem(u"Offer");
    item.Subject(u"Another");
    EXPECT_EQ(host().again(item).Subject(), u"Offer");
    item.Save();
    EXPECT_EQ(host().again(item).Subject(), u"Another");
}

TEST_F(ItemKinds, SavedTellsWhetherAnythingIsUnsaved) {
    const MailItem item = host().savedItem(u"Offer");
    EXPECT_TRUE(truth(item, u"Saved"));
    item.Subject(u"Another");
    EXPECT_FALSE(truth(item, u"Saved"));
    item.Save();
    EXPECT_TRUE(truth(item, u"Saved"));
}

class ReceivedMail : public OneHost {};

TEST_F(ReceivedMail, IsSentUnreadAndLiesInTheInbox) {
    const MailItem item = person().receive({.subject = u"Question", .plain = u"Hello"});
    EXPECT_EQ(item.Subject(), u"Question");
    EXPECT_TRUE(item.Sent());
    EXPECT_TRUE(truth(item, u"UnRead"));
    EXPECT_EQ(item.Parent().EntryID(), host().inbox().EntryID());
    EXPECT_EQ(host().inbox().Items().Count(), 1);
}

TEST_F(ReceivedMail, HasASenderAndItsType) {
    const MailItem item = person().receive({.subject = u"Question", .plain = u"Hello", .senderName = u"Jane Public", .senderAddress = u"jane@example.com"});
    EXPECT_EQ(item.SenderName(), u"Jane Public");
    EXPECT_EQ(makeSafeMailItem(item).Fields(0x0C1E001E).toText(), u"SMTP");
}

TEST_F(ReceivedMail, HasAReceivedByName) {
    const MailItem item = person().receive({.subject = u"Question", .plain = u"Hello"});
    EXPECT_NE(makeSafeMailItem(item).Fields(0x0040001E).toText(), u"");
}

TEST_F(ReceivedMail, ADraftHasNeitherReceivedByNameNorSender) {
    const MailItem item = host().savedItem(u"Offer");
    const SafeMailItem safe = makeSafeMailItem(item);
    EXPECT_TRUE(safe.Fields(0x0040001E).isEmpty());
    EXPECT_TRUE(safe.Fields(0x0C1E001E).isEmpty());
    EXPECT_FALSE(safe.Sender());
    EXPECT_EQ(item.SenderName(), u"");
    EXPECT_FALSE(item.Sent());
}

TEST_F(ReceivedMail, KeepsItsOwnBytesUntilItIsChanged) {
    const Bytes message = bytes("Subject: Question\r\n\r\nHello");
    const MailItem item = person().receive({.subject = u"Question", .plain = u"Hello", .original = message});
    EXPECT_EQ(person().original(item), message);
    item.Save();
    EXPECT_EQ(person().original(host().again(item)), message) << "a save that changes nothing is no change";
}

class GuardedProperties : public OneHost {};

TEST_F(GuardedProperties, AreReachedThroughTheWrapperOnly) {
    const MailItem item = host().savedItem(u"Offer");
    item.Attachments().Add(person().writeFile("a.txt", bytes("a")), 1, 1, u"a.txt");
    EXPECT_HOST_ERROR(runtime_error::NoSuchMember, item.get(Member::Fields, {0x0040001E}));
    EXPECT_HOST_ERROR(runtime_error::NoSuchMember, item.get(Member::Sender));
    EXPECT_HOST_ERROR(runtime_error::NoSuchMember, get(item, u"RTFBody"));
    EXPECT_HOST_ERROR(runtime_error::NoSuchMember, item.Attachments().Item(1).Fields(0x3712001E));
}

TEST_F(GuardedProperties, OfAnAddressEntryAreReachedThroughTheWrapperOnly) {
    const MailItem item = host().newItem();
    addRecipient(item, u"john@example.com");
    item.Recipients().ResolveAll();
    EXPECT_HOST_ERROR(runtime_error::NoSuchMember, item.Recipients().Item(1).AddressEntry().Fields(0x3A06001E));
}

class MailReadings : public OneHost {};

TEST_F(MailReadings, SizeGrowsWithTheContent) {
    const MailItem small = host().plainItem(u"a"), large = host().plainItem(std::u16string(10000, u'a'));
    small.Save();
    large.Save();
    EXPECT_GT(number(large, u"Size"), number(small, u"Size"));
}

TEST_F(MailReadings, APostHasThemToo) {
    const MailItem post = host().newItem(u"IPM.Post");
    EXPECT_FALSE(post.Sent());
    EXPECT_EQ(post.SenderName(), u"");
    EXPECT_NO_THROW(number(post, u"Size"));
    EXPECT_NO_THROW(truth(post, u"UnRead"));
}

TEST_F(MailReadings, AReceivedMailHasItsTimes) {
    const MailItem item = person().receive({.subject = u"Question", .plain = u"Hello"});
    EXPECT_EQ(get(item, u"ReceivedTime").kind(), Variant::Kind::Date);
    EXPECT_EQ(get(item, u"SentOn").kind(), Variant::Kind::Date);
}

}  // namespace lorvane::contract
