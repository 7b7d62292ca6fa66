#include "contract/HostFixture.h"

/// The helper that reaches guarded properties.
namespace lorvane::contract {

class Wrapper : public EachStore {
protected:
    MailItem received(std::u16string_view senderType = u"SMTP") {
        return person().receive({.subject = u"Question",
                                 .plain = u"Hello",
                                 .senderName = u"Jane Public",
                                 .senderAddress = senderType == u"SMTP" ? u"jane@example.com" : u"/o=Example/cn=jane",
                                 .senderAddressType = std::u16string(senderType)});
    }
};
INSTANTIATE_EACH_STORE(Wrapper);

TEST_P(Wrapper, ProgIdsAreMadeInAnyCase) {
    for (const char16_t* progId : {u"qz7mRedemption.qz7mSafeMailItem", u"qz7mredemption.qz7msafemailitem", u"QZ7MREDEMPTION.QZ7MSAFEPOSTITEM",
                                   u"qz7mRedemption.qz7mSafeInspector", u"qz7mRedemption.qz7mMAPIUtils", u"qz7mRedemption.qz7mRDOSession"}) {
        EXPECT_TRUE(host().machine().CreateObject(progId));
    }
}

TEST_P(Wrapper, UnknownProgIdsAreError429) {
    EXPECT_HOST_ERROR(runtime_error::CannotCreateObject, host().machine().CreateObject(u"qz7mRedemption.NoSuchThing"));
    EXPECT_HOST_ERROR(runtime_error::CannotCreateObject, host().machine().CreateObject(u""));
}

TEST_P(Wrapper, CleanupMayRunAtAnyTime) {
    host();
    EXPECT_NO_THROW(SafeMapiCleanup());
    const SafeMailItem safe = makeSafeMailItem(host().savedItem(u"Offer"));
    EXPECT_NO_THROW(SafeMapiCleanup());
    EXPECT_EQ(safe.Subject(), u"Offer");
}

TEST_P(Wrapper, GivesTheItemItWraps) {
    const MailItem item = host().savedItem(u"Offer");
    EXPECT_EQ(makeSafeMailItem(item).Item(), item);
}

TEST_P(Wrapper, WithoutAnItemEveryReadIsAnError) {
    const Object safe = host().machine().CreateObject(u"qz7mRedemption.qz7mSafeMailItem");
    EXPECT_NE(errorOf([&] { safe.get(Member::Subject); }).number(), 0);
}

TEST_P(Wrapper, IsUsedLikeTheMail) {
    const MailItem item = host().htmlItem(u"<b>Dear John</b>");
    item.Subject(u"Offer");
    item.Categories(u"Sales");
    addRecipient(item, u"john@example.com");
    const SafeMailItem safe = makeSafeMailItem(item);
    EXPECT_EQ(safe.Class(), item_class::Mail);
    EXPECT_EQ(safe.MessageClass(), u"IPM.Note");
    EXPECT_EQ(safe.Subject(), u"Offer");
    EXPECT_EQ(safe.Categories(), u"Sales");
    EXPECT_EQ(safe.Body(), u"Dear John");
    EXPECT_EQ(safe.HTMLBody(), html(u"<b>Dear John</b>"));
    EXPECT_EQ(safe.BodyFormat(), body_format::Html);
    EXPECT_EQ(safe.Recipients().Count(), 1);
    EXPECT_EQ(safe.Attachments().Count(), 0);
    EXPECT_FALSE(safe.Sent());
}

TEST_P(Wrapper, WritesThroughToTheItem) {
    const MailItem item = host().savedItem(u"Offer");
    const SafeMailItem safe = makeSafeMailItem(item);
    safe.Subject(u"Second offer");
    safe.HTMLBody(html(u"<b>Dear John</b>"));
    EXPECT_EQ(item.Subject(), u"Second offer");
    EXPECT_EQ(item.HTMLBody(), html(u"<b>Dear John</b>"));
    safe.Save();
    EXPECT_EQ(host().again(item).Subject(), u"Second offer");
}

TEST_P(Wrapper, ShowsWhatTheItemBecame) {
    const MailItem item = host().savedItem(u"Offer");
    const SafeMailItem safe = makeSafeMailItem(item);
    item.Subject(u"Second offer");
    EXPECT_EQ(safe.Subject(), u"Second offer");
}

TEST_P(Wrapper, CanBeSetOnAnotherItem) {
    const SafeMailItem safe = makeSafeMailItem(host().savedItem(u"First"));
    safe.Item(host().savedItem(u"Second"));
    EXPECT_EQ(safe.Subject(), u"Second");
}

TEST_P(Wrapper, OfAPostHasRecipientsWithNoneInIt) {
    const MailItem post = host().newItem(u"IPM.Post");
    EXPECT_EQ(makeSafePostItem(post).Recipients().Count(), 0);
    EXPECT_EQ(makeSafePostItem(post).Class(), item_class::Post);
}

TEST_P(Wrapper, OfATaskIsMadeWithAPostsWrapper) {
    const MailItem task = host().newItem(u"IPM.Task");
    task.Body(u"Dear John");
    const SafeMailItem safe = makeSafePostItem(task);
    EXPECT_EQ(safe.Class(), item_class::Task);
    EXPECT_EQ(safe.Body(), u"Dear John");
    EXPECT_EQ(safe.Recipients().Count(), 0);
    EXPECT_TRUE(safe.Recipients().ResolveAll());
}

TEST_P(Wrapper, OfAnAppointmentHasItsRecipients) {
    const MailItem appointment = host().application().CreateItem(olAppointmentItem);
    addRecipient(appointment, u"john@example.com");
    EXPECT_EQ(makeSafePostItem(appointment).Recipients().Count(), 1);
}

TEST_P(Wrapper, MovesAndCopiesTheItem) {
    const MailItem item = host().savedItem(u"Offer");
    const MailItem copy(call(makeSafeMailItem(item), u"Copy").toObject());
    EXPECT_EQ(copy.Subject(), u"Offer");
    const MailItem moved = makeSafeMailItem(item).Move(host().folder(default_folder::Junk));
    EXPECT_EQ(moved.Parent().EntryID(), host().folder(default_folder::Junk).EntryID());
}

TEST_P(Wrapper, GivesTheItemsInspector) {
    const MailItem item = host().plainItem(u"Dear John");
    item.Save();
    EXPECT_EQ(makeSafeMailItem(item).GetInspector().EditorType(), editor_type::Text);
}

TEST_P(Wrapper, ReadsRawPropertiesAsEmptyWhereTheyAreNotThere) {
    const SafeMailItem safe = makeSafeMailItem(host().savedItem(u"Offer"));
    EXPECT_TRUE(safe.Fields(0x0040001E).isEmpty());
    EXPECT_TRUE(safe.Fields(0x800A000B).isEmpty());
}

TEST_P(Wrapper, WritesRawPropertiesThatLastOverSaveAndRestart) {
    const MailItem item = host().savedItem(u"Offer");
    const SafeMailItem safe = makeSafeMailItem(item);
    safe.setFields(0x800A000B, true);
    safe.setFields(0x10F4000B, false);
    safe.setFields(0x65E0001E, u"text \xD83D\xDE00 \xD800");
    safe.setFields(0x65E10003, -5);
    safe.Save();
    const auto pair = identityOf(item);
    host().restart();
    const SafeMailItem found = makeSafeMailItem(host().session().GetItemFromID(pair.first, pair.second));
    EXPECT_TRUE(found.Fields(0x800A000B).toBoolean());
    EXPECT_FALSE(found.Fields(0x10F4000B).toBoolean());
    EXPECT_EQ(found.Fields(0x10F4000B).kind(), Variant::Kind::Boolean);
    EXPECT_EQ(found.Fields(0x65E0001E).toText(), u"text \xD83D\xDE00 \xD800");
    EXPECT_EQ(found.Fields(0x65E0001F).toText(), u"text \xD83D\xDE00 \xD800");
    EXPECT_EQ(found.Fields(0x65E10003).toInt32(), -5);
}

TEST_P(Wrapper, ReadsTheSubjectAsARawPropertyToo) {
    EXPECT_EQ(makeSafeMailItem(host().savedItem(u"Offer")).Fields(0x0037001E).toText(), u"Offer");
}

TEST_P(Wrapper, NamedPropertiesHaveOneNumberForOneName) {
    const SafeMailItem safe = makeSafeMailItem(host().savedItem(u"Offer"));
    constexpr std::u16string_view common = u"{00062008-0000-0000-C000-000000000046}", other = u"{00062004-0000-0000-C000-000000000046}";
    const std::int32_t id = safe.GetIDsFromNames(common, 0x8514);
    EXPECT_EQ(safe.GetIDsFromNames(common, 0x8514), id);
    EXPECT_NE(safe.GetIDsFromNames(common, 0x8515), id);
    EXPECT_NE(safe.GetIDsFromNames(other, 0x8514), id);
    EXPECT_EQ(id & 0xFFFF, 0) << "the type is put there";
}

TEST_P(Wrapper, NamedPropertiesLastOverSaveAndRestart) {
    constexpr std::u16string_view common = u"{00062008-0000-0000-C000-000000000046}";
    const MailItem item = host().savedItem(u"Offer");
    const SafeMailItem safe = makeSafeMailItem(item);
    safe.setFields(safe.GetIDsFromNames(common, 0x8514) | 11, true);
    safe.Save();
    const auto pair = identityOf(item);
    host().restart();
    const SafeMailItem found = makeSafeMailItem(host().session().GetItemFromID(pair.first, pair.second));
    EXPECT_TRUE(found.Fields(found.GetIDsFromNames(common, 0x8514) | 11).toBoolean());
    EXPECT_TRUE(found.Fields(found.GetIDsFromNames(common, 0x8515) | 11).isEmpty());
}

TEST_P(Wrapper, SenderHasTheAddressOfAnSmtpSender) {
    const SafeMailItem safe = makeSafeMailItem(received());
    EXPECT_EQ(safe.Fields(0x0C1E001E).toText(), u"SMTP");
    ASSERT_TRUE(safe.Sender());
    EXPECT_EQ(safe.Sender().Address(), u"jane@example.com");
}

TEST_P(Wrapper, SenderOfADirectoryPersonHasTheProxyAddresses) {
    person().addPerson(
        {.name = u"Jane Public", .address = u"/o=Example/cn=jane", .type = u"EX", .proxies = {u"SMTP:jane@example.com", u"smtp:old@example.com"}});
    const SafeMailItem safe = makeSafeMailItem(received(u"EX"));
    EXPECT_EQ(safe.Fields(0x0C1E001E).toText(), u"EX");
    const Variant proxies = safe.Sender().Fields(0x800F101E);
    ASSERT_EQ(proxies.kind(), Variant::Kind::Array);
    ASSERT_EQ(proxies.toArray().items.size(), 2u);
    EXPECT_EQ(proxies.toArray().items[1].toText(), u"smtp:old@example.com");
}

TEST_P(Wrapper, ReceivedMarksSurviveARestart) {
    const auto pair = identityOf(received());
    host().restart();
    const MailItem found = host().session().GetItemFromID(pair.first, pair.second);
    EXPECT_TRUE(found.Sent());
    EXPECT_TRUE(truth(found, u"UnRead"));
    EXPECT_NE(makeSafeMailItem(found).Fields(0x0040001E).toText(), u"");
    EXPECT_EQ(makeSafeMailItem(found).Sender().Address(), u"jane@example.com");
}

class DirectSession : public EachStore {
protected:
    Object session() {
        const Object made = host().machine().CreateObject(u"qz7mRedemption.qz7mRDOSession");
        put(made, u"MAPIOBJECT", get(host().application().Session(), u"MAPIOBJECT"));
        return made;
    }
};
INSTANTIATE_EACH_STORE(DirectSession);

TEST_P(DirectSession, IsNotLoggedOnBefore) {
    EXPECT_FALSE(truth(host().machine().CreateObject(u"qz7mRedemption.qz7mRDOSession"), u"LoggedOn"));
}

TEST_P(DirectSession, SharesTheHostsLogon) {
    EXPECT_TRUE(truth(session(), u"LoggedOn"));
}

TEST_P(DirectSession, LogsOnByItself) {
    const Object made = host().machine().CreateObject(u"qz7mRedemption.qz7mRDOSession");
    made.call(Member::Logon);
    EXPECT_TRUE(truth(made, u"LoggedOn"));
}

TEST_P(DirectSession, WithoutALogonAFolderIsAnError) {
    const RDOSession made(host().machine().CreateObject(u"qz7mRedemption.qz7mRDOSession"));
    EXPECT_NE(errorOf([&] { made.GetFolderFromID(host().inbox().EntryID(), host().inbox().StoreID()); }).number(), 0);
}

TEST_P(DirectSession, GivesTheFolderAndItsItemsInTheOrderTheyCome) {
    for (const char16_t* subject : {u"b", u"a"}) host().savedItem(subject);
    const MAPIFolder drafts = host().folder(default_folder::Drafts);
    const MAPIFolder folder = RDOSession(session()).GetFolderFromID(drafts.EntryID(), drafts.StoreID());
    EXPECT_EQ(folder.Name(), drafts.Name());
    ASSERT_EQ(folder.Items().Count(), 2);
    EXPECT_EQ(folder.Items().Item(1).Subject(), u"b");
    EXPECT_EQ(folder.Items().Item(1).EntryID(), drafts.Items().Item(1).EntryID());
    EXPECT_EQ(folder.Items().Item(1).MessageClass(), u"IPM.Note");
    EXPECT_EQ(folder.Items().Item(2).Categories(), u"");
}

TEST_P(DirectSession, AnUnknownFolderIsANegativeError) {
    EXPECT_NEGATIVE_ERROR(RDOSession(session()).GetFolderFromID(u"00000000DEADBEEF", host().inbox().StoreID()));
}

TEST_P(DirectSession, ListsTheStoresWithTheirKinds) {
    start({.furtherStores = {{u"Team"}}});
    const Object stores = object(session(), u"Stores");
    ASSERT_EQ(number(stores, u"Count"), 2);
    const Object first = call(stores, u"Item", {1}).toObject();
    EXPECT_EQ(number(first, u"StoreKind"), store_kind::PrivateFile);
    EXPECT_EQ(number(call(stores, u"Item", {2}).toObject(), u"StoreKind"), store_kind::PublicFolders);
    EXPECT_GT(MAPIFolder(object(first, u"IPMRootFolder")).Folders().Count(), 0);
}

TEST_P(DirectSession, GivesDefaultFolders) {
    const MAPIFolder inbox(call(session(), u"GetDefaultFolder", {default_folder::Inbox}).toObject());
    EXPECT_EQ(inbox.EntryID(), host().inbox().EntryID());
}

}  // namespace lorvane::contract
