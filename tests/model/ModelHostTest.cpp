#include "model/ModelHost.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "host/Outlook.h"
#include "host/Redemption.h"
#include "host/TextFunctions.h"
#include "mailstore/MemoryStore.h"
#include "model/Driver.h"
#include "model/ModelMembers.h"

namespace lorvane::model {
namespace {

using host::Member;
using host::Variant;

/// Counts what it is told, and may act on it.
struct Listener final : host::EventSink {
    std::vector<Member> heard;
    std::function<void(Member, host::Args)> onHeard;
    void onEvent(Member event, host::Args args) override {
        heard.push_back(event);
        if (onHeard) onHeard(event, args);
    }
};

class ModelHostTest : public ::testing::Test {
protected:
    static HostOptions options(screen::Desktop& desktop, PasteContent& clipboard) {
        HostOptions made(desktop);
        made.defaultStore = mailstore::makeMemoryStore(u"Personal Folders", 2);
        made.clipboardContent = [&clipboard] { return clipboard; };
        return made;
    }

    void restart(const std::function<void(HostOptions&)>& change) {
        HostOptions changed = options(desktop, clipboard);
        change(changed);
        model = std::make_unique<ModelHost>(std::move(changed));
    }

    host::Application application() const { return host::Application(model->application()); }
    host::NameSpace session() const { return application().GetNamespace(u"MAPI"); }
    Driver driver() const { return Driver(*model); }
    host::SafeMailItem wrapped(const host::Object& item) const {
        host::SafeMailItem safe(model->machine().call(Member::CreateObject, {u"qz7mredemption.qz7msafemailitem"}).toObject());
        safe.Item(item);
        return safe;
    }
    host::MailItem savedMail(std::u16string_view subject, std::u16string_view html) const {
        host::MailItem mail = application().CreateItem(0);
        mail.Subject(subject);
        mail.HTMLBody(html);
        mail.Save();
        return mail;
    }
    void type(std::u16string_view keys) { desktop.sendKeys(keys); }

    static std::int32_t errorOf(const std::function<void()>& act) {
        try {
            act();
        } catch (const host::HostError& error) {
            return error.number();
        }
        return 0;
    }

    screen::Desktop desktop;
    PasteContent clipboard;
    std::unique_ptr<ModelHost> model = std::make_unique<ModelHost>(options(desktop, clipboard));
};

TEST_F(ModelHostTest, NewMailHasNoIdentityUntilItIsSavedIntoDrafts) {
    host::MailItem mail = application().CreateItem(0);
    EXPECT_EQ(mail.EntryID(), u"");
    EXPECT_EQ(mail.Class(), 43);
    EXPECT_EQ(mail.BodyFormat(), 0);
    mail.Save();
    EXPECT_NE(mail.EntryID(), u"");
    EXPECT_EQ(mail.Parent().EntryID(), session().GetDefaultFolder(16).EntryID());
    EXPECT_EQ(session().GetItemFromID(mail.EntryID(), mail.Parent().StoreID()).EntryID(), mail.EntryID());
}

TEST_F(ModelHostTest, MovedItemIsAnotherAndTheOldObjectErrors) {
    host::MailItem mail = savedMail(u"A", u"<p>x</p>");
    const std::u16string before = mail.EntryID();
    const std::u16string store = mail.Parent().StoreID();
    host::MailItem moved = mail.Move(session().GetDefaultFolder(6));
    EXPECT_NE(moved.EntryID(), before);
    EXPECT_EQ(moved.HTMLBody(), u"<p>x</p>");
    EXPECT_EQ(errorOf([&] { mail.Subject(); }), host::host_failure::ObjectDeleted);
    EXPECT_LT(errorOf([&] { session().GetItemFromID(before, store); }), 0);
}

TEST_F(ModelHostTest, DeletedItemErrorsOnEveryMember) {
    host::MailItem mail = savedMail(u"A", u"");
    mail.Delete();
    for (const Member member : {Member::Subject, Member::EntryID, Member::Class, Member::Save, Member::Delete, Member::Parent, Member::Recipients}) {
        EXPECT_EQ(errorOf([&] { mail.call(member); }), host::host_failure::ObjectDeleted);
    }
    EXPECT_EQ(session().GetDefaultFolder(16).Items().Count(), 0);
    EXPECT_EQ(session().GetDefaultFolder(3).Items().Count(), 1);
}

TEST_F(ModelHostTest, ItemOpenedTwiceSeesWhatTheOtherSaved) {
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
    EXPECT_EQ(errorOf([&] { mail.Save(); }), host::host_failure::ObjectChanged);
    again.Delete();
    EXPECT_EQ(errorOf([&] { (void)mail.Subject(); }), host::host_failure::ObjectDeleted);
}

TEST_F(ModelHostTest, OpenItemIsTheOneThatItsIdentityGives) {
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
    EXPECT_EQ(errorOf([&] { inspector.Close(0); }), host::host_failure::ObjectChanged);
    EXPECT_EQ(application().Inspectors().Count(), 1);
}

TEST_F(ModelHostTest, TypedTextReachesTheItemWithSaveOnly) {
    host::Inspector inspector(driver().newMail());
    host::MailItem mail = inspector.CurrentItem();
    EXPECT_EQ(inspector.EditorType(), 2);
    driver().focus(inspector, EditorFieldName::Body, 0);
    type(u"Hello{ENTER}you");
    EXPECT_EQ(mail.HTMLBody(), u"");
    wrapped(mail).Save();
    EXPECT_EQ(mail.HTMLBody(), u"<HTML><BODY>Hello<BR>you</BODY></HTML>");
    EXPECT_EQ(mail.Body(), u"Hello\r\nyou");
    EXPECT_EQ(mail.BodyFormat(), 2);
}

TEST_F(ModelHostTest, CommitIsDelayedByTheRunsPumps) {
    driver().setCommitDelay(2);
    host::Inspector inspector(driver().newMail());
    host::MailItem mail = inspector.CurrentItem();
    driver().focus(inspector, EditorFieldName::Body, 0);
    type(u"x");
    mail.Save();
    EXPECT_EQ(mail.Body(), u"");
    desktop.pump();
    mail.Save();
    EXPECT_EQ(mail.Body(), u"");
    desktop.pump();
    mail.Save();
    EXPECT_EQ(mail.Body(), u"x");
}

TEST_F(ModelHostTest, WrittenBodyReloadsTheEditorAndKeepsTheCaretBehindIt) {
    host::Inspector inspector(driver().newMail());
    host::MailItem mail = inspector.CurrentItem();
    driver().focus(inspector, EditorFieldName::Body, 0);
    type(u"beforeMARKafter");
    driver().focus(inspector, EditorFieldName::Body, 10);
    mail.Save();
    mail.HTMLBody(host::Replace(mail.HTMLBody(), u"MARK", u"<b>inserted</b>"));
    type(u"!");
    mail.Save();
    EXPECT_EQ(mail.HTMLBody(), u"<HTML><BODY>before<b>inserted</b>!after</BODY></HTML>");
}

TEST_F(ModelHostTest, CaretGoesBackThroughTheFields) {
    host::Inspector inspector(driver().newMail());
    host::MailItem mail = inspector.CurrentItem();
    EXPECT_EQ(driver().focusedField(inspector), EditorFieldName::To);
    driver().focus(inspector, EditorFieldName::Body, 0);
    type(u"+{TAB}subject+{TAB}b@x.org+{TAB}+{TAB}John Public <john@example.com>; a@x.org");
    mail.Save();
    EXPECT_EQ(mail.Subject(), u"subject");
    EXPECT_EQ(mail.BCC(), u"b@x.org");
    EXPECT_EQ(mail.To(), u"John Public; a@x.org");
    EXPECT_TRUE(mail.Recipients().ResolveAll());
    EXPECT_EQ(mail.Recipients().Item(1).AddressEntry().Address(), u"john@example.com");
}

TEST_F(ModelHostTest, EditTakenBackGivesTheRecipientBack) {
    host::MailItem mail = application().CreateItem(0);
    mail.Recipients().call(Member::Add, {u"John Public <john@example.com>"});
    EXPECT_TRUE(mail.Recipients().ResolveAll());
    mail.Display();
    host::Inspector inspector = application().ActiveInspector();
    driver().focus(inspector, EditorFieldName::To, 4);
    type(u"zz");
    mail.Save();
    EXPECT_FALSE(mail.Recipients().Item(1).Resolved());
    type(u"{BACKSPACE 2}");
    mail.Save();
    EXPECT_TRUE(mail.Recipients().Item(1).Resolved());
}

TEST_F(ModelHostTest, SaveOfAnOpenMailLeavesRecipientsAloneWhateverTheirNames) {
    mailstore::ItemRecord record;
    record.recipients = {{u"Public; John \"Q\"", u"john@example.com", u"SMTP", 1, true}, {u"", u"a@x.org", u"SMTP", 1, true}};
    host::MailItem mail(driver().import(record, session().GetDefaultFolder(16)));
    mail.Display();
    mail.Save();
    EXPECT_TRUE(mail.get(member::Saved).toBoolean());
    EXPECT_EQ(mail.Recipients().Count(), 2);
    driver().focus(application().ActiveInspector(), EditorFieldName::To, Driver::AtEnd);
    type(u"; b@x.org");
    mail.Save();
    EXPECT_EQ(mail.To(), u"Public; John \"Q\"; a@x.org; b@x.org");
    EXPECT_EQ(mail.Recipients().Count(), 3);
    EXPECT_TRUE(mail.Recipients().Item(2).Resolved());
}

TEST_F(ModelHostTest, FolderSwitchMayBeRefused) {
    const host::Object explorer = driver().openExplorer();
    auto listener = std::make_shared<Listener>();
    listener->onHeard = [](Member event, host::Args args) {
        if (event == member::BeforeFolderSwitch) args[1].assign(true);
    };
    host::Subscription window = explorer.advise(listener);
    explorer.put(member::CurrentFolder, session().GetDefaultFolder(16));
    EXPECT_EQ(explorer.getObject(member::CurrentFolder).getText(Member::Name), u"Inbox");
    window.reset();
    explorer.put(member::CurrentFolder, session().GetDefaultFolder(16));
    EXPECT_EQ(explorer.getObject(member::CurrentFolder).getText(Member::Name), u"Drafts");
    EXPECT_EQ(application().ActiveExplorer(), explorer);
}

TEST_F(ModelHostTest, SelectedItemsAreThoseThatStillAre) {
    host::MailItem mail = savedMail(u"A", u"");
    const host::Object explorer = driver().openExplorer();
    driver().selectItems(explorer, {{mail.EntryID(), mail.Parent().StoreID()}});
    const host::Object selection = explorer.getObject(Member::Selection);
    EXPECT_EQ(selection.getNumber(Member::Count), 1);
    EXPECT_EQ(host::MailItem(selection.call(Member::Item, {1}).toObject()).Subject(), u"A");
    mail.Delete();
    EXPECT_EQ(explorer.getObject(Member::Selection).getNumber(Member::Count), 0);
}

TEST_F(ModelHostTest, DiscardedWindowDropsWhatWasNotSaved) {
    host::MailItem mail = savedMail(u"A", u"<p>x</p>");
    mail.Display();
    driver().focus(application().ActiveInspector(), EditorFieldName::Body, Driver::AtEnd);
    type(u"typed");
    mail.Subject(u"B");
    application().ActiveInspector().Close(1);
    EXPECT_EQ(mail.Subject(), u"A");
    EXPECT_EQ(mail.HTMLBody(), u"<p>x</p>");
    mail.Display();
    driver().focus(application().ActiveInspector(), EditorFieldName::Body, Driver::AtEnd);
    type(u"typed");
    application().ActiveInspector().Close(0);
    EXPECT_EQ(mail.HTMLBody(), u"<p>xtyped</p>");
}

TEST_F(ModelHostTest, DeletedItemTakesItsWindowAlong) {
    host::Inspector inspector(driver().newMail());
    host::MailItem mail = inspector.CurrentItem();
    mail.Save();
    mail.Delete();
    EXPECT_EQ(application().Inspectors().Count(), 0);
    type(u"lost");
    EXPECT_LT(errorOf([&] { (void)inspector.CurrentItem(); }), 0);
}

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

TEST_F(ModelHostTest, PasteTakesTheFragmentAsItIs) {
    clipboard.text = u"<plain>";
    host::Inspector inspector(driver().newMail());
    driver().focus(inspector, EditorFieldName::Body, 0);
    type(u"^v");
    const std::string block =
        "Version:1.0\r\nStartHTML:0000000105\r\nEndHTML:0000000152\r\nStartFragment:0000000123\r\nEndFragment:0000000132\r\n"
        "<BODY>............<b>\xE4</b>x</BODY>";
    ASSERT_EQ(block.find("<b>"), 123u);
    clipboard.htmlFormat = host::Bytes(block.begin(), block.end());
    type(u"^v");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().HTMLBody(), u"<HTML><BODY>&lt;plain&gt;<b>ä</b>x</BODY></HTML>");
}

TEST_F(ModelHostTest, WindowsCountWhileShownAndTellTheirEvents) {
    auto listener = std::make_shared<Listener>();
    const host::Subscription windows = application().Inspectors().advise(listener);
    host::MailItem mail = savedMail(u"A", u"x");
    host::Inspector inspector = mail.GetInspector();
    EXPECT_EQ(application().Inspectors().Count(), 0);
    EXPECT_FALSE(application().ActiveInspector());
    EXPECT_TRUE(listener->heard.empty());

    auto own = std::make_shared<Listener>();
    std::int32_t countInClose = 0;
    own->onHeard = [&](Member event, host::Args) {
        if (event == Member::Close) countInClose = application().Inspectors().Count();
    };
    const host::Subscription window = inspector.advise(own);
    inspector.Display();
    EXPECT_EQ(listener->heard, std::vector<Member>{model::member::NewInspector});
    EXPECT_EQ(application().ActiveInspector(), inspector);
    inspector.Close(1);
    EXPECT_EQ(countInClose, 1);
    EXPECT_EQ(own->heard, (std::vector<Member>{Member::Activate, Member::Close}));
    EXPECT_EQ(application().Inspectors().Count(), 0);
    EXPECT_FALSE(mail.GetInspector() == inspector);
}

TEST_F(ModelHostTest, ItemMayRefuseToClose) {
    host::Inspector inspector(driver().newMail());
    auto listener = std::make_shared<Listener>();
    listener->onHeard = [](Member event, host::Args args) {
        if (event == Member::Close) args[0].assign(true);
    };
    host::Subscription item = inspector.CurrentItem().advise(listener);
    inspector.Close(1);
    EXPECT_EQ(application().Inspectors().Count(), 1);
    item.reset();
    inspector.Close(1);
    EXPECT_EQ(application().Inspectors().Count(), 0);
}

TEST_F(ModelHostTest, WindowMayEndInItsOwnCloseEvent) {
    host::Inspector inspector(driver().newMail());
    auto listener = std::make_shared<Listener>();
    host::Subscription window = inspector.advise(listener);
    listener->onHeard = [&](Member event, host::Args) {
        if (event != Member::Close) return;
        window.reset();
        inspector = host::Inspector();
    };
    host::Inspector(inspector.dispatch() ? host::Object(inspector.dispatch()) : host::Object()).Close(0);
    EXPECT_EQ(application().Inspectors().Count(), 0);
    EXPECT_EQ(session().GetDefaultFolder(16).Items().Count(), 1);
}

TEST_F(ModelHostTest, RightsRefuseReadingCreatingAndSaving) {
    host::MailItem mail = savedMail(u"A", u"");
    const host::MAPIFolder drafts = session().GetDefaultFolder(16);
    driver().setRights(drafts, FolderRights::Read);
    EXPECT_EQ(drafts.Items().Count(), 1);
    EXPECT_EQ(errorOf([&] { mail.Save(); }), host::host_failure::AccessDenied);
    EXPECT_EQ(errorOf([&] { application().CreateItem(0).Save(); }), host::host_failure::AccessDenied);
    EXPECT_EQ(errorOf([&] { drafts.Items().call(Member::Add, {u"IPM.Note"}); }), host::host_failure::AccessDenied);
    driver().setRights(drafts, FolderRights::Add);
    EXPECT_EQ(errorOf([&] { application().CreateItem(0).Save(); }), 0);
    EXPECT_EQ(errorOf([&] { mail.Delete(); }), host::host_failure::AccessDenied);
    driver().setRights(drafts, FolderRights::None);
    EXPECT_EQ(errorOf([&] { (void)drafts.Items().Count(); }), host::host_failure::AccessDenied);
    EXPECT_EQ(errorOf([&] { session().GetItemFromID(mail.EntryID(), drafts.StoreID()); }), host::host_failure::AccessDenied);
}

TEST_F(ModelHostTest, MembersThatAClassLacksAreNamedInTheError) {
    host::MailItem task = application().CreateItem(3);
    try {
        (void)task.To();
        FAIL();
    } catch (const host::HostError& error) {
        EXPECT_EQ(error.number(), 438);
        EXPECT_NE(error.description().find(u"TaskItem.To"), std::u16string::npos);
    }
    EXPECT_EQ(errorOf([&] { application().CreateItem(0).get(member::RTFBody); }), 438);
    EXPECT_EQ(wrapped(application().CreateItem(0)).getText(member::RTFBody), u"");
    EXPECT_FALSE(task.dispatch()->memberNamed(u"NoSuchThing"));
    EXPECT_EQ(task.dispatch()->memberNamed(u"reminderset"), member::ReminderSet);
}

TEST_F(ModelHostTest, PostsAreSentOnBehalfOfSomebodyToo) {
    host::MailItem post = application().CreateItem(6);
    post.put(Member::SentOnBehalfOfName, u"Jane Sender");
    EXPECT_EQ(post.getText(Member::SentOnBehalfOfName), u"Jane Sender");
    EXPECT_EQ(errorOf([&] { application().CreateItem(3).get(Member::SentOnBehalfOfName); }), host::runtime_error::NoSuchMember);
}

TEST_F(ModelHostTest, BodyFormatCameWithVersionTen) {
    restart([](HostOptions& changed) { changed.version = u"9.0.0.2711"; });
    host::MailItem mail = application().CreateItem(0);
    EXPECT_EQ(errorOf([&] { (void)mail.BodyFormat(); }), 438);
    EXPECT_EQ(wrapped(mail).BodyFormat(), 0);
}

TEST_F(ModelHostTest, KindsFollowWhatIsWritten) {
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

TEST_F(ModelHostTest, FileOfAnAttachmentComesBackWithItsContentId) {
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
    EXPECT_EQ(errorOf([&] { (void)to.Attachments().Item(1).Fields(0x3712001E); }), 438);

    std::ofstream(picture, std::ios::binary) << "other pixels";
    EXPECT_TRUE(wrapped(to).Attachments().Item(1).Fields(0x7FFE000B).isEmpty());
    to.Attachments().Add(path, 1, 2, u"Other");
    EXPECT_TRUE(wrapped(to).Attachments().Item(2).Fields(0x3712001E).isEmpty());
    std::filesystem::remove_all(folder);
    EXPECT_LT(errorOf([&] { to.Attachments().Add(path, 1, 2, u"Gone"); }), 0);
}

TEST_F(ModelHostTest, RdoSessionReadsAFolderByItsHeads) {
    host::MailItem mail = savedMail(u"A", u"x");
    mail.Categories(u"One, Two");
    mail.Save();
    host::RDOSession rdo(model->machine().call(Member::CreateObject, {u"qz7mRedemption.qz7mRDOSession"}).toObject());
    EXPECT_LT(errorOf([&] { rdo.GetFolderFromID(mail.Parent().EntryID(), mail.Parent().StoreID()); }), 0);
    rdo.put(Member::MAPIOBJECT, application().Session().getObject(Member::MAPIOBJECT));
    const host::MAPIFolder folder = rdo.GetFolderFromID(mail.Parent().EntryID(), mail.Parent().StoreID());
    ASSERT_EQ(folder.Items().Count(), 1);
    const host::MailItem row = folder.Items().Item(1);
    EXPECT_EQ(row.EntryID(), mail.EntryID());
    EXPECT_EQ(row.Subject(), u"A");
    EXPECT_EQ(row.Categories(), u"One, Two");
    EXPECT_EQ(row.Parent().StoreID(), mail.Parent().StoreID());
    EXPECT_EQ(errorOf([&] { (void)row.Body(); }), 438);
}

TEST_F(ModelHostTest, FoldersStopAtTheNameSpace) {
    const host::MAPIFolder inbox = session().GetDefaultFolder(6);
    const host::MAPIFolder made = inbox.Folders().Add(u"Templates");
    EXPECT_EQ(made.DefaultItemType(), 0);
    EXPECT_LT(errorOf([&] { inbox.Folders().Add(u"templates"); }), 0);
    EXPECT_LT(errorOf([&] { inbox.Folders().call(Member::Item, {u"None"}); }), 0);
    EXPECT_EQ(host::MAPIFolder(inbox.Folders().call(Member::Item, {u"TEMPLATES"}).toObject()).EntryID(), made.EntryID());
    const host::MAPIFolder root(inbox.Parent());
    EXPECT_EQ(root.Name(), u"Personal Folders");
    EXPECT_EQ(root.Parent(), application().Session());
    EXPECT_EQ(errorOf([&] { host::MAPIFolder(root.Parent()).EntryID(); }), 438);
}

TEST_F(ModelHostTest, StoreThatWasTakenAwayIsNotFound) {
    driver().addStore(mailstore::makeMemoryStore(u"Team", 5));
    const host::MAPIFolder team(application().Session().getObject(Member::Folders).call(Member::Item, {u"Team"}).toObject());
    host::MailItem post(team.Items().call(Member::Add, {u"IPM.Post"}).toObject());
    EXPECT_EQ(post.Class(), 45);
    EXPECT_EQ(wrapped(post).Recipients().Count(), 0);
    EXPECT_EQ(errorOf([&] { (void)post.Recipients(); }), 438);
    post.Save();
    const std::u16string id = post.EntryID();
    const std::u16string store = team.StoreID();
    driver().removeStore(u"team");
    EXPECT_LT(errorOf([&] { session().GetItemFromID(id, store); }), 0);
    EXPECT_LT(errorOf([&] { post.Save(); }), 0);
    EXPECT_LT(errorOf([&] { (void)team.Name(); }), 0);
}

TEST_F(ModelHostTest, ReceivedMailIsSentAndHasASender) {
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

TEST_F(ModelHostTest, NamedPropertiesAreTheSameInEveryRun) {
    host::SafeMailItem safe = wrapped(application().CreateItem(0));
    const std::int32_t id = safe.GetIDsFromNames(u"{00062008-0000-0000-C000-000000000046}", 0x8514);
    EXPECT_EQ(static_cast<std::uint32_t>(id), 0x85140000u);
    safe.setFields(id | 0x000B, true);
    safe.Save();
    EXPECT_TRUE(safe.Fields(id | 0x000B).toBoolean());
    EXPECT_EQ(errorOf([&] { safe.setFields(id | 0x0003, u"no number"); }), 13);
}

TEST_F(ModelHostTest, SelectionOfTheEditorIsReadAndReplaced) {
    host::Inspector inspector(driver().newMail());
    driver().focus(inspector, EditorFieldName::Body, 0);
    type(u"one two");
    driver().select(inspector, 4, 3);
    const host::Object safe = model->machine().call(Member::CreateObject, {u"qz7mRedemption.qz7mSafeInspector"}).toObject();
    safe.put(Member::Item, inspector);
    EXPECT_EQ(safe.getText(member::SelText), u"two");
    safe.put(member::SelText, u"2");
    EXPECT_EQ(safe.getText(Member::Text), u"one 2");
    EXPECT_EQ(inspector.CurrentItem().Body(), u"");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().Body(), u"one 2");
}

TEST_F(ModelHostTest, MachineGivesObjectsByProgIdInAnyCase) {
    const host::Object machine = model->machine();
    EXPECT_EQ(machine.call(Member::CreateObject, {u"outlook.application", u"localhost"}).toObject(), model->application());
    EXPECT_EQ(errorOf([&] { machine.call(Member::CreateObject, {u"No.Such"}); }), 429);
    EXPECT_EQ(errorOf([&] { model->application().call(Member::CreateObject, {u"Lorvane.Connect"}); }), 429);
    model->registerClass(u"Lorvane.Connect", [this] { return model->addInInst(); });
    EXPECT_EQ(model->application().call(Member::CreateObject, {u"lorvane.connect"}).toObject().getText(Member::ProgId), u"Lorvane.Connect");
}

TEST_F(ModelHostTest, ItemsAreSortedByAProperty) {
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
    EXPECT_LT(errorOf([&] { items.Item(4); }), 0);
}

TEST_F(ModelHostTest, AWindowThatIsNotDisplayedHasBarsThatNobodyClicks) {
    host::Inspector inspector(savedMail(u"A", u"").GetInspector());
    ASSERT_FALSE(driver().bars(inspector).empty());
    EXPECT_TRUE(driver().bars(inspector).front().builtIn);
    EXPECT_EQ(errorOf([&] { driver().clickBar(inspector, u"Standard/Save"); }), host::runtime_error::InvalidProcedureCall);
    inspector.Display();
    EXPECT_EQ(errorOf([&] { driver().clickBar(inspector, u"Standard/Save"); }), 0);
    EXPECT_EQ(errorOf([&] { driver().bars(inspector.CurrentItem()); }), host::runtime_error::TypeMismatch);
}

TEST_F(ModelHostTest, AButtonTakesOnlyNumbersThatTheHostHas) {
    const host::Object save = driver().openExplorer().get(member::CommandBars, {u"Standard"}).toObject().getObject(member::Controls, {1});
    for (const auto& [member, number] : std::initializer_list<std::pair<Member, std::int32_t>>{{member::Priority, 8}, {member::Style, 5}, {member::FaceId, -1}})
        EXPECT_EQ(errorOf([&] { save.put(member, number); }), static_cast<std::int32_t>(0x80070057));
}

}  // namespace
}  // namespace lorvane::model
