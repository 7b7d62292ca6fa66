#include "model/ModelHostRig.h"

/// Items of the model host: identities, kinds, what a class has.
namespace lorvane::model {
namespace {

class ModelItemsTest : public ModelHostTest {};

TEST_F(ModelItemsTest, NewMailHasNoIdentityUntilItIsSavedIntoDrafts) {
    host::MailItem mail = application().CreateItem(0);
    EXPECT_EQ(mail.EntryID(), u"");
    EXPECT_EQ(mail.Class(), 43);
    EXPECT_EQ(mail.BodyFormat(), 0);
    mail.Save();
    EXPECT_NE(mail.EntryID(), u"");
    EXPECT_EQ(mail.Parent().EntryID(), session().GetDefaultFolder(16).EntryID());
    EXPECT_EQ(session().GetItemFromID(mail.EntryID(), mail.Parent().StoreID()).EntryID(), mail.EntryID());
}

TEST_F(ModelItemsTest, MovedItemIsAnotherAndTheOldObjectErrors) {
    host::MailItem mail = savedMail(u"A", u"<p>x</p>");
    const std::u16string before = mail.EntryID();
    const std::u16string store = mail.Parent().StoreID();
    host::MailItem moved = mail.Move(session().GetDefaultFolder(6));
    EXPECT_NE(moved.EntryID(), before);
    EXPECT_EQ(moved.HTMLBody(), u"<p>x</p>");
    EXPECT_EQ(errorNumberOf([&] { mail.Subject(); }), host::host_failure::ObjectDeleted);
    EXPECT_LT(errorNumberOf([&] { session().GetItemFromID(before, store); }), 0);
}

TEST_F(ModelItemsTest, DeletedItemErrorsOnEveryMember) {
    host::MailItem mail = savedMail(u"A", u"");
    mail.Delete();
    for (const Member member : {Member::Subject, Member::EntryID, Member::Class, Member::Save, Member::Delete, Member::Parent, Member::Recipients}) {
        EXPECT_EQ(errorNumberOf([&] { mail.call(member); }), host::host_failure::ObjectDeleted);
    }
    EXPECT_EQ(session().GetDefaultFolder(16).Items().Count(), 0);
    EXPECT_EQ(session().GetDefaultFolder(3).Items().Count(), 1);
}

TEST_F(ModelItemsTest, ItemOpenedTwiceSeesWhatTheOtherSaved) {
    host::MailItem mail = savedMail(u"A", u"");
    host::MailItem again = session().GetItemFromID(mail.EntryID(), mail.Parent().StoreID());
    EXPECT_EQ(again.Subject(), u"A");
    wrapped(mail).Subject(u"B");
    EXPECT_EQ(mail.Subject(), u"B");
    EXPECT_EQ(again.Subject(), u"A");
    mail.Save();
    EXPECT_EQ(again.Subject(), u"B");
    mail.Subject(u"C");
    again.Subject(u"D");
    again.Save();
    EXPECT_EQ(mail.Subject(), u"C");
    EXPECT_EQ(errorNumberOf([&] { mail.Save(); }), host::host_failure::ObjectChanged);
    again.Delete();
    EXPECT_EQ(errorNumberOf([&] { (void)mail.Subject(); }), host::host_failure::ObjectDeleted);
}

TEST_F(ModelItemsTest, OpenItemIsTheOneThatItsIdentityGives) {
    host::MailItem mail = savedMail(u"A", u"");
    host::Inspector inspector(driver().openItem(mail.EntryID(), mail.Parent().StoreID()));
    EXPECT_EQ(session().GetItemFromID(mail.EntryID(), mail.Parent().StoreID()), inspector.CurrentItem());
    EXPECT_EQ(mail.GetInspector(), inspector);
    EXPECT_EQ(driver().openItem(mail.EntryID(), mail.Parent().StoreID()), inspector);
    mail.Subject(u"B");
    mail.Save();
    EXPECT_EQ(driver().visibleText(inspector, EditorFieldName::Subject), u"B");
    type(u"typed");
    mail.Subject(u"C");
    mail.Save();
    EXPECT_EQ(driver().visibleText(inspector, EditorFieldName::Body), u"typed");
    EXPECT_EQ(errorNumberOf([&] { inspector.Close(0); }), host::host_failure::ObjectChanged);
    EXPECT_EQ(application().Inspectors().Count(), 1);
}

TEST_F(ModelItemsTest, MembersThatAClassLacksAreNamedInTheError) {
    host::MailItem task = application().CreateItem(3);
    try {
        (void)task.To();
        FAIL();
    } catch (const host::HostError& error) {
        EXPECT_EQ(error.number(), 438);
        EXPECT_NE(error.description().find(u"TaskItem.To"), std::u16string::npos);
    }
    EXPECT_EQ(errorNumberOf([&] { application().CreateItem(0).get(member::RTFBody); }), 438);
    EXPECT_EQ(wrapped(application().CreateItem(0)).getText(member::RTFBody), u"");
    EXPECT_FALSE(task.dispatch()->memberNamed(u"NoSuchThing"));
    EXPECT_EQ(task.dispatch()->memberNamed(u"reminderset"), member::ReminderSet);
}

TEST_F(ModelItemsTest, PostsAreSentOnBehalfOfSomebodyToo) {
    host::MailItem post = application().CreateItem(6);
    post.put(Member::SentOnBehalfOfName, u"Jane Sender");
    EXPECT_EQ(post.getText(Member::SentOnBehalfOfName), u"Jane Sender");
    EXPECT_EQ(errorNumberOf([&] { application().CreateItem(3).get(Member::SentOnBehalfOfName); }), host::runtime_error::NoSuchMember);
}

TEST_F(ModelItemsTest, BodyFormatCameWithVersionTen) {
    restart([](HostOptions& changed) { changed.version = u"9.0.0.2711"; });
    host::MailItem mail = application().CreateItem(0);
    EXPECT_EQ(errorNumberOf([&] { (void)mail.BodyFormat(); }), 438);
    EXPECT_EQ(wrapped(mail).BodyFormat(), 0);
}

TEST_F(ModelItemsTest, KindsFollowWhatIsWritten) {
    host::MailItem mail = application().CreateItem(0);
    mail.Body(u"a\r\nb");
    EXPECT_EQ(mail.BodyFormat(), 1);
    EXPECT_EQ(mail.HTMLBody(), u"");
    mail.HTMLBody(u"");
    EXPECT_EQ(mail.BodyFormat(), 1);
    mail.put(Member::BodyFormat, 2);
    EXPECT_EQ(mail.HTMLBody(), u"<HTML><BODY>a<BR>\r\nb</BODY></HTML>");
    mail.Body(u"<c>");
    EXPECT_EQ(mail.HTMLBody(), u"<HTML><BODY>&lt;c&gt;</BODY></HTML>");
    wrapped(mail).put(Member::BodyFormat, 3);
    EXPECT_EQ(mail.Body(), u"<c>");
    EXPECT_EQ(mail.GetInspector().EditorType(), 3);
}

TEST_F(ModelItemsTest, FileOfAnAttachmentComesBackWithItsContentId) {
    const auto folder = std::filesystem::temp_directory_path() / "lorvane-model-test";
    std::filesystem::create_directories(folder);
    const auto picture = folder / "picture.png";
    std::ofstream(picture, std::ios::binary) << "pixels";
    std::u16string path = host::fromUtf8(picture.string());
    for (char16_t& unit : path) unit = unit == u'/' ? u'\\' : unit;

    host::MailItem from = application().CreateItem(0);
    from.Attachments().Add(path, 1, 1, u"picture.png");
    host::Attachment safe = wrapped(from).Attachments().Item(1);
    safe.setFields(0x3712001E, u"logo@here");
    safe.SaveAsFile(path);
    host::MailItem to = application().CreateItem(0);
    EXPECT_EQ(to.Attachments().Add(path, 1, 1, u"Logo").DisplayName(), u"Logo");
    EXPECT_EQ(wrapped(to).Attachments().Item(1).Fields(0x3712001E).toText(), u"logo@here");
    EXPECT_EQ(wrapped(to).Attachments().Item(1).FileName(), u"picture.png");
    EXPECT_EQ(errorNumberOf([&] { (void)to.Attachments().Item(1).Fields(0x3712001E); }), 438);

    std::ofstream(picture, std::ios::binary) << "other pixels";
    EXPECT_TRUE(wrapped(to).Attachments().Item(1).Fields(0x7FFE000B).isEmpty());
    to.Attachments().Add(path, 1, 2, u"Other");
    EXPECT_TRUE(wrapped(to).Attachments().Item(2).Fields(0x3712001E).isEmpty());
    std::filesystem::remove_all(folder);
    EXPECT_LT(errorNumberOf([&] { to.Attachments().Add(path, 1, 2, u"Gone"); }), 0);
}

TEST_F(ModelItemsTest, ReceivedMailIsSentAndHasASender) {
    mailstore::ItemRecord record;
    record.head.subject = u"Hi";
    record.properties = {
        {mailstore::tags::SenderName, u"Jane"}, {mailstore::tags::SenderAddress, u"jane@example.com"}, {mailstore::tags::SenderAddressType, u"SMTP"}};
    host::MailItem mail(driver().receive(record));
    EXPECT_TRUE(mail.Sent());
    EXPECT_EQ(mail.SenderName(), u"Jane");
    EXPECT_EQ(wrapped(mail).Fields(0x0040001E).toText(), u"Lorvane User");
    EXPECT_EQ(wrapped(mail).Sender().Address(), u"jane@example.com");
    EXPECT_FALSE(wrapped(application().CreateItem(0)).Sender());
    EXPECT_TRUE(wrapped(application().CreateItem(0)).Fields(0x0040001E).isEmpty());
}

TEST_F(ModelItemsTest, NamedPropertiesAreTheSameInEveryRun) {
    host::SafeMailItem safe = wrapped(application().CreateItem(0));
    const std::int32_t id = safe.GetIDsFromNames(u"{00062008-0000-0000-C000-000000000046}", 0x8514);
    EXPECT_EQ(static_cast<std::uint32_t>(id), 0x85140000u);
    safe.setFields(id | 0x000B, true);
    safe.Save();
    EXPECT_TRUE(safe.Fields(id | 0x000B).toBoolean());
    EXPECT_EQ(errorNumberOf([&] { safe.setFields(id | 0x0003, u"no number"); }), 13);
}

TEST_F(ModelItemsTest, ItemsAreSortedByAProperty) {
    savedMail(u"b", u"");
    savedMail(u"C", u"");
    savedMail(u"a", u"");
    const host::Items items = session().GetDefaultFolder(16).Items();
    EXPECT_EQ(items.Item(1).Subject(), u"b");
    items.call(Member::Sort, {u"[Subject]"});
    EXPECT_EQ(items.Item(1).Subject(), u"a");
    EXPECT_EQ(items.Item(3).Subject(), u"C");
    items.call(Member::Sort, {u"Body", true});
    EXPECT_EQ(items.Count(), 3);
    EXPECT_LT(errorNumberOf([&] { items.Item(4); }), 0);
}

}  // namespace
}  // namespace lorvane::model
