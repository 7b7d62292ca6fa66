#include "contract/HostFixture.h"

/// What a refused right does to a folder of templates: nothing is half done, and the refused item stays usable.
namespace lorvane::contract {

class TemplateFolderRights : public EachStore {
protected:
    static constexpr std::u16string_view subjects[] = {u"Offer", u"Order", u"Reminder"};

    void SetUp() override {
        start({.furtherStores = {{u"Team"}}});
        folders_ = {host().inbox().Folders().Add(u"Templates"), host().storeRoot(u"Team").Folders().Add(u"Templates")};
        for (const MAPIFolder& folder : folders_) {
            for (const std::u16string_view subject : subjects) newTemplate(folder, subject).Save();
        }
    }
    static MailItem newTemplate(const MAPIFolder& folder, std::u16string_view subject) {
        const MailItem item(call(folder.Items(), u"Add", {u"IPM.Note"}).toObject());
        item.Subject(subject);
        return item;
    }
    /// The folder in the user's own store and the one in the team's.
    const std::vector<MAPIFolder>& folders() const { return folders_; }

    void expectUnchanged(const MAPIFolder& folder) {
        person().setRights(folder, Rights::All);
        ASSERT_EQ(folder.Items().Count(), static_cast<std::int32_t>(std::size(subjects)));
        for (std::int32_t i = 1; i <= folder.Items().Count(); ++i) EXPECT_EQ(folder.Items().Item(i).Subject(), subjects[i - 1]);
    }

private:
    std::vector<MAPIFolder> folders_;  // end before the host, which the base owns
};
INSTANTIATE_EACH_STORE(TemplateFolderRights);

TEST_P(TemplateFolderRights, WithoutReadingNothingIsCountedWalkedOrTakenByItsIdentity) {
    for (const MAPIFolder& folder : folders()) {
        std::vector<HostUnderTest::Identity> identities;
        for (std::int32_t i = 1; i <= folder.Items().Count(); ++i) identities.push_back(identityOf(folder.Items().Item(i)));
        person().setRights(folder, Rights::None);
        EXPECT_HOST_ERROR(host_failure::AccessDenied, folder.Items().Count());
        for (std::int32_t i = 1; i <= 3; ++i) EXPECT_NEGATIVE_ERROR(folder.Items().Item(i));
        for (const auto& [entry, store] : identities) EXPECT_NEGATIVE_ERROR(host().session().GetItemFromID(entry, store).Body());
        EXPECT_EQ(folder.Name(), u"Templates") << "the folder itself is there";
        expectUnchanged(folder);
    }
}

TEST_P(TemplateFolderRights, WithoutReadingAnItemTakenBeforeIsNotSavedMovedOrDeleted) {
    for (const MAPIFolder& folder : folders()) {
        const MailItem item = folder.Items().Item(1);
        person().setRights(folder, Rights::None);
        EXPECT_NEGATIVE_ERROR((item.Subject(u"Changed"), item.Save()));
        EXPECT_NEGATIVE_ERROR(item.Move(host().folder(default_folder::Drafts)));
        EXPECT_NEGATIVE_ERROR(item.Delete());
        EXPECT_EQ(host().folder(default_folder::Drafts).Items().Count(), 0);
        EXPECT_EQ(host().folder(default_folder::DeletedItems).Items().Count(), 0);
        person().setRights(folder, Rights::All);
        EXPECT_EQ(host().again(item).Subject(), u"Offer");
    }
}

TEST_P(TemplateFolderRights, ReadingWalksAllAndTakesEachByItsIdentity) {
    for (const MAPIFolder& folder : folders()) {
        person().setRights(folder, Rights::Read);
        ASSERT_EQ(folder.Items().Count(), 3);
        for (std::int32_t i = 1; i <= 3; ++i) {
            const MailItem item = folder.Items().Item(i);
            EXPECT_EQ(item.Subject(), subjects[i - 1]);
            EXPECT_EQ(host().again(item).Subject(), subjects[i - 1]);
            EXPECT_EQ(makeSafeMailItem(item).Body(), u"");
        }
        EXPECT_NEGATIVE_ERROR(folder.Items().Item(4));
    }
}

TEST_P(TemplateFolderRights, ReadingAndAddingRefuseToSaveKnownOnes) {
    for (const Rights rights : {Rights::Read, Rights::Add}) {
        for (const MAPIFolder& folder : folders()) {
            person().setRights(folder, rights);
            const MailItem bare = folder.Items().Item(1), wrapped = folder.Items().Item(2);
            bare.Body(u"Changed");
            EXPECT_HOST_ERROR(host_failure::AccessDenied, bare.Save());
            EXPECT_EQ(bare.Body(), u"Changed") << "what was written stays on the object";
            const SafeMailItem safe = makeSafeMailItem(wrapped);
            safe.HTMLBody(html(u"Changed"));
            EXPECT_HOST_ERROR(host_failure::AccessDenied, safe.Save());
            EXPECT_EQ(host().session().GetItemFromID(bare.EntryID(), folder.StoreID()).Body(), u"");
            EXPECT_EQ(host().session().GetItemFromID(wrapped.EntryID(), folder.StoreID()).Body(), u"");
            expectUnchanged(folder);
        }
    }
}

TEST_P(TemplateFolderRights, ReadingAndAddingRefuseToMoveKnownOnesAway) {
    const MAPIFolder drafts = host().folder(default_folder::Drafts);
    for (const Rights rights : {Rights::Read, Rights::Add}) {
        for (const MAPIFolder& folder : folders()) {
            person().setRights(folder, rights);
            const MailItem item = folder.Items().Item(1);
            EXPECT_HOST_ERROR(host_failure::AccessDenied, item.Move(drafts));
            EXPECT_HOST_ERROR(host_failure::AccessDenied, makeSafeMailItem(item).Move(drafts));
            EXPECT_EQ(drafts.Items().Count(), 0) << "no half of it";
            EXPECT_EQ(item.Subject(), u"Offer");
            EXPECT_EQ(item.Parent().EntryID(), folder.EntryID());
            expectUnchanged(folder);
        }
    }
}

TEST_P(TemplateFolderRights, ReadingAndAddingRefuseToDeleteKnownOnes) {
    for (const Rights rights : {Rights::Read, Rights::Add}) {
        for (const MAPIFolder& folder : folders()) {
            person().setRights(folder, rights);
            const MailItem item = folder.Items().Item(2);
            EXPECT_HOST_ERROR(host_failure::AccessDenied, item.Delete());
            EXPECT_EQ(item.Subject(), u"Order");
            EXPECT_EQ(host().folder(default_folder::DeletedItems).Items().Count(), 0);
            expectUnchanged(folder);
        }
    }
}

TEST_P(TemplateFolderRights, AddingLetsNewOnesInAndOthersMoveIn) {
    for (const MAPIFolder& folder : folders()) {
        person().setRights(folder, Rights::Add);
        EXPECT_NO_THROW(newTemplate(folder, u"Second offer").Save());
        const MailItem moved = host().savedItem(u"Invitation").Move(folder);
        EXPECT_EQ(moved.Subject(), u"Invitation");
        EXPECT_EQ(moved.Parent().EntryID(), folder.EntryID());
        EXPECT_EQ(host().again(moved).Subject(), u"Invitation");
        ASSERT_EQ(folder.Items().Count(), 5);
        EXPECT_EQ(folder.Items().Item(5).Subject(), u"Invitation");
    }
}

TEST_P(TemplateFolderRights, ReadingAndNoneLetNothingIn) {
    for (const Rights rights : {Rights::None, Rights::Read}) {
        for (const MAPIFolder& folder : folders()) {
            person().setRights(folder, rights);
            EXPECT_NEGATIVE_ERROR(newTemplate(folder, u"Second offer").Save());
            const MailItem draft = host().savedItem(u"Invitation");
            EXPECT_HOST_ERROR(host_failure::AccessDenied, draft.Move(folder));
            EXPECT_EQ(host().again(draft).Subject(), u"Invitation");
            expectUnchanged(folder);
        }
    }
}

TEST_P(TemplateFolderRights, GivenBackEverythingWorksAgain) {
    for (const MAPIFolder& folder : folders()) {
        const MailItem item = folder.Items().Item(1);
        person().setRights(folder, Rights::Read);
        item.Subject(u"Changed");
        EXPECT_HOST_ERROR(host_failure::AccessDenied, item.Save());
        person().setRights(folder, Rights::All);
        EXPECT_NO_THROW(item.Save());
        EXPECT_EQ(host().again(item).Subject(), u"Changed");
        EXPECT_NO_THROW(folder.Items().Item(3).Delete());
        EXPECT_EQ(folder.Items().Count(), 2);
    }
}

TEST_P(TemplateFolderRights, AreEachFoldersOwn) {
    person().setRights(folders()[0], Rights::None);
    EXPECT_EQ(folders()[1].Items().Count(), 3);
    EXPECT_NO_THROW(host().inbox().Items().Count());
}

TEST_P(TemplateFolderRights, HoldForTheDirectSessionsWalk) {
    const Object session = host().machine().CreateObject(u"qz7mRedemption.qz7mRDOSession");
    put(session, u"MAPIOBJECT", get(host().application().Session(), u"MAPIOBJECT"));
    for (const MAPIFolder& folder : folders()) {
        const auto walk = [&] { return RDOSession(session).GetFolderFromID(folder.EntryID(), folder.StoreID()).Items(); };
        person().setRights(folder, Rights::Read);
        EXPECT_EQ(walk().Count(), 3);
        EXPECT_EQ(walk().Item(3).Subject(), u"Reminder");
        person().setRights(folder, Rights::None);
        EXPECT_NEGATIVE_ERROR(walk().Count());
        EXPECT_NEGATIVE_ERROR(walk().Item(1));
    }
}

}  // namespace lorvane::contract
