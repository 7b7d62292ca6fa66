#include "model/ModelHostRig.h"

/// Stores, folders, people and helpers of the model host.
namespace lorvane::model {
namespace {

TEST_F(ModelHostTest, ContactGivesItsNamesToTheAddressEntry) {
    Contact contact;
    contact.name = u"Dr John Public";
    contact.address = u"/o=org/cn=john";
    contact.type = u"EX";
    contact.given = u"John";
    contact.surname = u"Public";
    contact.proxies = {u"smtp:second@example.com", u"SMTP:john@example.com"};
    driver().addContact(contact);
    host::MailItem mail = application().CreateItem(0);
    mail.put(Member::To, u"dr john public; nobody");
    EXPECT_FALSE(mail.Recipients().ResolveAll());
    const host::AddressEntry entry = wrapped(mail).Recipients().Item(1).AddressEntry();
    EXPECT_EQ(entry.Fields(0x3A06001E).toText(), u"John");
    EXPECT_EQ(entry.Fields(0x3A11001F).toText(), u"Public");
    EXPECT_TRUE(entry.Fields(0x3A44001E).isEmpty());
    EXPECT_EQ(entry.Fields(static_cast<std::int32_t>(0x800F101E)).toArray().items.size(), 2u);
    EXPECT_EQ(entry.SMTPAddress(), u"john@example.com");
    EXPECT_FALSE(mail.Recipients().Item(2).AddressEntry());
}

TEST_F(ModelHostTest, RightsRefuseReadingCreatingAndSaving) {
    host::MailItem mail = savedMail(u"A", u"");
    const host::MAPIFolder drafts = session().GetDefaultFolder(16);
    driver().setRights(drafts, FolderRights::Read);
    EXPECT_EQ(drafts.Items().Count(), 1);
    EXPECT_EQ(errorNumberOf([&] { mail.Save(); }), host::host_failure::AccessDenied);
    EXPECT_EQ(errorNumberOf([&] { application().CreateItem(0).Save(); }), host::host_failure::AccessDenied);
    EXPECT_EQ(errorNumberOf([&] { drafts.Items().call(Member::Add, {u"IPM.Note"}); }), host::host_failure::AccessDenied);
    driver().setRights(drafts, FolderRights::Add);
    EXPECT_EQ(errorNumberOf([&] { application().CreateItem(0).Save(); }), 0);
    EXPECT_EQ(errorNumberOf([&] { mail.Delete(); }), host::host_failure::AccessDenied);
    driver().setRights(drafts, FolderRights::None);
    EXPECT_EQ(errorNumberOf([&] { (void)drafts.Items().Count(); }), host::host_failure::AccessDenied);
    EXPECT_EQ(errorNumberOf([&] { session().GetItemFromID(mail.EntryID(), drafts.StoreID()); }), host::host_failure::AccessDenied);
}

TEST_F(ModelHostTest, RdoSessionReadsAFolderByItsHeads) {
    host::MailItem mail = savedMail(u"A", u"x");
    mail.Categories(u"One, Two");
    mail.Save();
    host::RDOSession rdo(model->machine().call(Member::CreateObject, {u"qz7mRedemption.qz7mRDOSession"}).toObject());
    EXPECT_LT(errorNumberOf([&] { rdo.GetFolderFromID(mail.Parent().EntryID(), mail.Parent().StoreID()); }), 0);
    rdo.put(Member::MAPIOBJECT, application().Session().getObject(Member::MAPIOBJECT));
    const host::MAPIFolder folder = rdo.GetFolderFromID(mail.Parent().EntryID(), mail.Parent().StoreID());
    ASSERT_EQ(folder.Items().Count(), 1);
    const host::MailItem row = folder.Items().Item(1);
    EXPECT_EQ(row.EntryID(), mail.EntryID());
    EXPECT_EQ(row.Subject(), u"A");
    EXPECT_EQ(row.Categories(), u"One, Two");
    EXPECT_EQ(row.Parent().StoreID(), mail.Parent().StoreID());
    EXPECT_EQ(errorNumberOf([&] { (void)row.Body(); }), 438);
}

TEST_F(ModelHostTest, FoldersStopAtTheNameSpace) {
    const host::MAPIFolder inbox = session().GetDefaultFolder(6);
    const host::MAPIFolder made = inbox.Folders().Add(u"Templates");
    EXPECT_EQ(made.DefaultItemType(), 0);
    EXPECT_LT(errorNumberOf([&] { inbox.Folders().Add(u"templates"); }), 0);
    EXPECT_LT(errorNumberOf([&] { inbox.Folders().call(Member::Item, {u"None"}); }), 0);
    EXPECT_EQ(host::MAPIFolder(inbox.Folders().call(Member::Item, {u"TEMPLATES"}).toObject()).EntryID(), made.EntryID());
    const host::MAPIFolder root(inbox.Parent());
    EXPECT_EQ(root.Name(), u"Personal Folders");
    EXPECT_EQ(root.Parent(), application().Session());
    EXPECT_EQ(errorNumberOf([&] { host::MAPIFolder(root.Parent()).EntryID(); }), 438);
}

TEST_F(ModelHostTest, StoreThatWasTakenAwayIsNotFound) {
    driver().addStore(mailstore::makeMemoryStore(u"Team", 5));
    const host::MAPIFolder team(application().Session().getObject(Member::Folders).call(Member::Item, {u"Team"}).toObject());
    host::MailItem post(team.Items().call(Member::Add, {u"IPM.Post"}).toObject());
    EXPECT_EQ(post.Class(), 45);
    EXPECT_EQ(wrapped(post).Recipients().Count(), 0);
    EXPECT_EQ(errorNumberOf([&] { (void)post.Recipients(); }), 438);
    post.Save();
    const std::u16string id = post.EntryID();
    const std::u16string store = team.StoreID();
    driver().removeStore(u"team");
    EXPECT_LT(errorNumberOf([&] { session().GetItemFromID(id, store); }), 0);
    EXPECT_LT(errorNumberOf([&] { post.Save(); }), 0);
    EXPECT_LT(errorNumberOf([&] { (void)team.Name(); }), 0);
}

TEST_F(ModelHostTest, MachineGivesObjectsByProgIdInAnyCase) {
    const host::Object machine = model->machine();
    EXPECT_EQ(machine.call(Member::CreateObject, {u"outlook.application", u"localhost"}).toObject(), model->application());
    EXPECT_EQ(errorNumberOf([&] { machine.call(Member::CreateObject, {u"No.Such"}); }), 429);
    EXPECT_EQ(errorNumberOf([&] { model->application().call(Member::CreateObject, {u"Lorvane.Connect"}); }), 429);
    model->registerClass(u"Lorvane.Connect", [this] { return model->addInInst(); });
    EXPECT_EQ(model->application().call(Member::CreateObject, {u"lorvane.connect"}).toObject().getText(Member::ProgId), u"Lorvane.Connect");
}

}  // namespace
}  // namespace lorvane::model
