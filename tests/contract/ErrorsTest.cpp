#include "contract/HostFixture.h"

namespace lorvane::contract {

class Errors : public EachStore {};
INSTANTIATE_EACH_STORE(Errors);

TEST_P(Errors, AMissingMemberIs438AndNamesClassAndMember) {
    const HostError onContact = errorOf([&] { host().newItem(u"IPM.Contact").Recipients(); });
    EXPECT_EQ(onContact.number(), runtime_error::NoSuchMember);
    EXPECT_NE(onContact.description().find(u"ContactItem"), std::u16string::npos);
    EXPECT_NE(onContact.description().find(u"Recipients"), std::u16string::npos);
    const HostError onApplication = errorOf([&] { host().application().get(Member::Subject); });
    EXPECT_EQ(onApplication.number(), runtime_error::NoSuchMember);
    EXPECT_NE(onApplication.description().find(u"Application"), std::u16string::npos);
    EXPECT_NE(onApplication.description().find(u"Subject"), std::u16string::npos);
}

TEST_P(Errors, AMissingMemberIs438ToReadWriteAndCall) {
    const MAPIFolder inbox = host().inbox();
    EXPECT_HOST_ERROR(runtime_error::NoSuchMember, inbox.get(Member::Subject));
    EXPECT_HOST_ERROR(runtime_error::NoSuchMember, inbox.put(Member::Subject, u"x"));
    EXPECT_HOST_ERROR(runtime_error::NoSuchMember, inbox.call(Member::ResolveAll));
}

TEST_P(Errors, WritingAMemberThatIsOnlyReadIsAnErrorAndChangesNothing) {
    const MailItem item = host().savedItem(u"Offer");
    const std::u16string before = item.EntryID();
    EXPECT_NE(errorOf([&] { item.put(Member::EntryID, u"00"); }).number(), 0);
    EXPECT_EQ(item.EntryID(), before);
}

TEST_P(Errors, MembersAreFoundByNameInAnyCase) {
    const MailItem item = host().savedItem(u"Offer");
    EXPECT_EQ(text(item, u"subject"), u"Offer");
    EXPECT_EQ(text(item, u"SUBJECT"), u"Offer");
    EXPECT_EQ(text(item, u"mileage"), u"");
}

TEST_P(Errors, NothingIsError91) {
    EXPECT_HOST_ERROR(runtime_error::ObjectNotSet, host().application().ActiveInspector().CurrentItem());
}

TEST_P(Errors, ANamespaceHasOneLiteralName) {
    EXPECT_TRUE(host().application().GetNamespace(u"MAPI"));
    EXPECT_NE(errorOf([&] { host().application().GetNamespace(u"IMAP"); }).number(), 0);
}

TEST_P(Errors, ADeletedItemsObjectFailsOnEveryMember) {
    const MailItem item = host().savedItem(u"Offer");
    const MAPIFolder junk = host().folder(default_folder::Junk);
    item.Delete();
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, item.Subject());
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, item.Subject(u"x"));
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, item.EntryID());
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, item.Class());
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, item.Parent());
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, item.Recipients());
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, item.Attachments());
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, item.GetInspector());
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, item.Save());
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, item.Display());
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, item.Delete());
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, item.Move(junk));
}

TEST_P(Errors, AMovedItemsOldObjectFails) {
    const MailItem item = host().savedItem(u"Offer");
    item.Move(host().folder(default_folder::Junk));
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, item.Subject());
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, item.Save());
}

TEST_P(Errors, AWrapperOfADeletedItemFailsToo) {
    const MailItem item = host().savedItem(u"Offer");
    const SafeMailItem safe = makeSafeMailItem(item);
    item.Delete();
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, safe.Subject());
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, safe.Fields(0x0040001E));
    EXPECT_HOST_ERROR(host_failure::ObjectDeleted, safe.Save());
}

TEST_P(Errors, ThePartsOfADeletedItemFailToo) {
    const MailItem item = host().newItem();
    addRecipient(item, u"john@example.com");
    item.Save();
    const Recipients recipients = item.Recipients();
    item.Delete();
    EXPECT_NEGATIVE_ERROR(recipients.Item(1).Name());
}

TEST_P(Errors, AnItemDeletedUnderTheProgramFailsOnSave) {
    const MailItem item = host().savedItem(u"Offer");
    person().removeItemFromOutside(identityOf(item));
    item.Subject(u"Second offer");
    EXPECT_NEGATIVE_ERROR(item.Save());
}

TEST_P(Errors, TheLaterOfTwoSavesIsTold) {
    const MailItem item = host().savedItem(u"Offer");
    person().renameItemFromOutside(identityOf(item), u"Changed elsewhere");
    item.Subject(u"Second offer");
    EXPECT_HOST_ERROR(host_failure::ObjectChanged, item.Save());
    EXPECT_EQ(host().again(item).Subject(), u"Changed elsewhere");
}

TEST_P(Errors, ASecondObjectOfAnItemIsToldToo) {
    const MailItem item = host().savedItem(u"Offer");
    const MailItem second = host().again(item);
    item.Subject(u"First change");
    item.Save();
    second.Subject(u"Second change");
    try {
        second.Save();
        EXPECT_EQ(item.Subject(), u"Second change") << "two handles on one live item share what is written";
    } catch (const HostError& error) {
        EXPECT_EQ(error.number(), host_failure::ObjectChanged);
        EXPECT_EQ(host().again(item).Subject(), u"First change");
    }
}

TEST_P(Errors, AClosedInspectorFails) {
    const Inspector inspector = person().newMail();
    inspector.Close(olDiscard);
    EXPECT_NE(errorOf([&] { inspector.CurrentItem().Subject(); }).number(), 0);
}

TEST_P(Errors, AStoreThatWasClosedTakesItsItemsAlong) {
    start({.furtherStores = {{u"Team"}}});
    const MailItem item = host().savedItem(u"Offer").Move(host().storeRoot(u"Team").Folders().Add(u"Shared"));
    person().removeStore(u"Team");
    EXPECT_NEGATIVE_ERROR((item.Subject(u"Second offer"), item.Save()));
}

TEST_P(Errors, AnArgumentThatIsNoObjectIsError13) {
    EXPECT_HOST_ERROR(runtime_error::TypeMismatch, host().savedItem(u"Offer").call(Member::Move, {u"Junk"}));
}

TEST_P(Errors, ARefusedSaveLeavesWhatWasWrittenOnTheObject) {
    const MailItem item = host().savedItem(u"Offer");
    person().renameItemFromOutside(identityOf(item), u"Changed elsewhere");
    item.Body(u"Dear John");
    EXPECT_HOST_ERROR(host_failure::ObjectChanged, item.Save());
    EXPECT_EQ(item.Body(), u"Dear John");
    EXPECT_EQ(host().again(item).Body(), u"");
}

TEST_P(Errors, AnItemDeletedUnderTheProgramIsAnErrorToReadAfresh) {
    const MailItem item = host().savedItem(u"Offer");
    const Items items = item.Parent().Items();
    ASSERT_EQ(items.Count(), 1);
    person().removeItemFromOutside(identityOf(item));
    EXPECT_NE(errorOf([&] { items.Item(1); }).number(), 0);
}

}  // namespace lorvane::contract
