#include "contract/HostFixture.h"

/// Rights that can refuse reading, creating or saving.
namespace lorvane::contract {

class Permissions : public EachStore {
protected:
    static constexpr std::u16string_view team = u"Team";
    void SetUp() override {
        start({.furtherStores = {{std::u16string(team)}}});
        folder_ = host().storeRoot(team).Folders().Add(u"Shared");
        item_ = host().savedItem(u"Offer").Move(folder_);
    }
    MAPIFolder shared() { return folder_; }
    MailItem sharedItem() { return item_; }

private:
    // They end before the host, which the base owns.
    MAPIFolder folder_;
    MailItem item_;
};
INSTANTIATE_EACH_STORE(Permissions);

TEST_P(Permissions, AllIsWhatAFolderBeginsWith) {
    const MailItem item = sharedItem();
    item.Subject(u"Second offer");
    EXPECT_NO_THROW(item.Save());
    EXPECT_EQ(shared().Items().Count(), 1);
}

TEST_P(Permissions, NoneRefusesCounting) {
    person().setRights(shared(), Rights::None);
    EXPECT_HOST_ERROR(host_failure::AccessDenied, shared().Items().Count());
}

TEST_P(Permissions, NoneRefusesReadingItems) {
    const auto pair = identityOf(sharedItem());
    person().setRights(shared(), Rights::None);
    EXPECT_NEGATIVE_ERROR(shared().Items().Item(1));
    EXPECT_NEGATIVE_ERROR(host().session().GetItemFromID(pair.first, pair.second).Subject());
}

TEST_P(Permissions, NoneRefusesCreatingAndMovingInto) {
    person().setRights(shared(), Rights::None);
    EXPECT_NEGATIVE_ERROR(call(shared().Items(), u"Add", {u"IPM.Note"}).toObject().call(Member::Save));
    EXPECT_NEGATIVE_ERROR(host().savedItem(u"Another").Move(shared()));
}

TEST_P(Permissions, ReadLetsItemsBeRead) {
    const auto pair = identityOf(sharedItem());
    person().setRights(shared(), Rights::Read);
    EXPECT_EQ(shared().Items().Count(), 1);
    EXPECT_EQ(shared().Items().Item(1).Subject(), u"Offer");
    EXPECT_EQ(host().session().GetItemFromID(pair.first, pair.second).Subject(), u"Offer");
}

TEST_P(Permissions, ReadRefusesSaving) {
    person().setRights(shared(), Rights::Read);
    const MailItem item = shared().Items().Item(1);
    item.Subject(u"Second offer");
    EXPECT_HOST_ERROR(host_failure::AccessDenied, item.Save());
    EXPECT_EQ(shared().Items().Item(1).Subject(), u"Offer");
}

TEST_P(Permissions, ReadRefusesDeleting) {
    person().setRights(shared(), Rights::Read);
    EXPECT_HOST_ERROR(host_failure::AccessDenied, shared().Items().Item(1).Delete());
    EXPECT_EQ(shared().Items().Count(), 1);
}

TEST_P(Permissions, ReadRefusesCreatingAndMovingInto) {
    person().setRights(shared(), Rights::Read);
    const MailItem another = host().savedItem(u"Another");
    EXPECT_HOST_ERROR(host_failure::AccessDenied, call(shared().Items(), u"Add", {u"IPM.Note"}).toObject().call(Member::Save));
    EXPECT_HOST_ERROR(host_failure::AccessDenied, another.Move(shared()));
    EXPECT_EQ(shared().Items().Count(), 1);
    EXPECT_EQ(another.Subject(), u"Another") << "a refused move leaves the item as it was";
    EXPECT_NO_THROW(another.Save());
}

TEST_P(Permissions, AddLetsItemsBeCreatedButKnownOnesOnlyRead) {
    person().setRights(shared(), Rights::Add);
    const MailItem added(call(shared().Items(), u"Add", {u"IPM.Note"}).toObject());
    added.Subject(u"Another");
    EXPECT_NO_THROW(added.Save());
    EXPECT_EQ(shared().Items().Count(), 2);
    const MailItem known = shared().Items().Item(1);
    known.Subject(u"Second offer");
    EXPECT_HOST_ERROR(host_failure::AccessDenied, known.Save());
}

TEST_P(Permissions, OfAStoresTopHoldForItsFolders) {
    person().setRights(host().storeRoot(team), Rights::Read);
    const MailItem item = shared().Items().Item(1);
    item.Subject(u"Second offer");
    EXPECT_HOST_ERROR(host_failure::AccessDenied, item.Save());
}

TEST_P(Permissions, HoldForTheDirectSessionToo) {
    const auto pair = identityOf(shared());
    person().setRights(shared(), Rights::None);
    const RDOSession session(host().machine().CreateObject(u"qz7mRedemption.qz7mRDOSession"));
    put(session, u"MAPIOBJECT", get(host().application().Session(), u"MAPIOBJECT"));
    EXPECT_NEGATIVE_ERROR(session.GetFolderFromID(pair.first, pair.second).Items().Count());
}

TEST_P(Permissions, RefuseNothingInOtherStores) {
    person().setRights(shared(), Rights::None);
    EXPECT_NO_THROW(host().savedItem(u"Another"));
}

}  // namespace lorvane::contract
