#include <set>

#include "contract/HostFixture.h"

namespace lorvane::contract {

class FolderTree : public EachStore {};
INSTANTIATE_EACH_STORE(FolderTree);

TEST_P(FolderTree, TheTopLevelFoldersAreOneForEachOpenStore) {
    start({.furtherStores = {{u"Team"}, {u"Archive", store_kind::PrivateFile}}});
    const Folders top(object(host().session(), u"Folders"));
    ASSERT_EQ(top.Count(), 3);
    EXPECT_EQ(top.Item(1).Name(), u"Personal Folders");
    EXPECT_EQ(top.Item(2).Name(), u"Team");
    EXPECT_EQ(top.Item(3).Name(), u"Archive");
}

TEST_P(FolderTree, EachStoreHasItsOwnStoreIdentity) {
    start({.furtherStores = {{u"Team"}}});
    EXPECT_NE(host().storeRoot(u"Team").StoreID(), host().inbox().StoreID());
}

TEST_P(FolderTree, AStoreCanComeAndGoWhileTheHostRuns) {
    host();
    person().addStore({u"Team"});
    const auto pair = identityOf(host().storeRoot(u"Team").Folders().Add(u"Shared"));
    EXPECT_EQ(host().session().GetFolderFromID(pair.first, pair.second).Name(), u"Shared");
    person().removeStore(u"Team");
    EXPECT_EQ(Folders(object(host().session(), u"Folders")).Count(), 1);
    EXPECT_NEGATIVE_ERROR(host().session().GetFolderFromID(pair.first, pair.second));
}

TEST_P(FolderTree, TheDefaultFoldersAreThere) {
    using namespace default_folder;
    std::set<std::u16string> identities;
    for (const std::int32_t each : {DeletedItems, Outbox, SentMail, Inbox, Calendar, Drafts, Junk}) identities.insert(host().folder(each).EntryID());
    EXPECT_EQ(identities.size(), 7u);
}

TEST_P(FolderTree, ADefaultFolderThatDoesNotExistIsAnError) {
    EXPECT_NE(errorOf([&] { host().folder(4711); }).number(), 0);
}

TEST_P(FolderTree, DefaultFoldersLieUnderTheTopOfTheirStore) {
    const MAPIFolder top(host().inbox().Parent());
    EXPECT_EQ(top.Name(), u"Personal Folders");
    EXPECT_EQ(MAPIFolder(host().folder(default_folder::Drafts).Parent()).EntryID(), top.EntryID());
}

TEST_P(FolderTree, TheWalkUpParentEndsWithAnErrorAtTheTop) {
    const MAPIFolder above(MAPIFolder(host().inbox().Parent()).Parent());
    EXPECT_NE(errorOf([&] { above.Name(); }).number(), 0);
}

TEST_P(FolderTree, TypeAndClassTellMailFoldersFromTheRest) {
    EXPECT_EQ(host().inbox().DefaultItemType(), 0);
    EXPECT_EQ(text(host().inbox(), u"DefaultMessageClass"), u"IPM.Note");
    EXPECT_EQ(host().folder(default_folder::Calendar).DefaultItemType(), 1);
    EXPECT_EQ(text(host().folder(default_folder::Calendar), u"DefaultMessageClass"), u"IPM.Appointment");
}

TEST_P(FolderTree, AnAddedFolderIsFoundByNumberAndByName) {
    const Folders folders = host().inbox().Folders();
    const std::int32_t before = folders.Count();
    folders.Add(u"Offers");
    EXPECT_EQ(host().inbox().Folders().Count(), before + 1);
    EXPECT_EQ(folders.Item(before + 1).Name(), u"Offers");
    EXPECT_EQ(MAPIFolder(folders.call(Member::Item, {u"Offers"}).toObject()).EntryID(), folders.Item(before + 1).EntryID());
}

TEST_P(FolderTree, AnAddedFolderHasTheTypeOfItsParent) {
    EXPECT_EQ(host().inbox().Folders().Add(u"Offers").DefaultItemType(), 0);
    EXPECT_EQ(host().folder(default_folder::Calendar).Folders().Add(u"Plans").DefaultItemType(), 1);
}

TEST_P(FolderTree, AnAddedFolderKnowsItsParent) {
    const MAPIFolder folder = host().inbox().Folders().Add(u"Offers");
    EXPECT_EQ(MAPIFolder(folder.Parent()).EntryID(), host().inbox().EntryID());
    EXPECT_EQ(folder.StoreID(), host().inbox().StoreID());
}

TEST_P(FolderTree, AFolderOfANameThatIsThereIsAnError) {
    host().inbox().Folders().Add(u"Offers");
    EXPECT_NE(errorOf([&] { host().inbox().Folders().Add(u"Offers"); }).number(), 0);
}

TEST_P(FolderTree, AFolderThatIsNotThereIsAnErrorByNumberAndByName) {
    const Folders folders = host().inbox().Folders();
    EXPECT_NE(errorOf([&] { folders.Item(0); }).number(), 0);
    EXPECT_NE(errorOf([&] { folders.Item(folders.Count() + 1); }).number(), 0);
    EXPECT_NE(errorOf([&] { folders.call(Member::Item, {u"Nowhere"}); }).number(), 0);
}

TEST_P(FolderTree, FoldersAndTheirNestingSurviveARestart) {
    host().inbox().Folders().Add(u"Settings").Folders().Add(u"Templates");
    host().restart();
    const MAPIFolder outer = host().inbox().Folders().Item(1);
    EXPECT_EQ(outer.Name(), u"Settings");
    ASSERT_EQ(outer.Folders().Count(), 1);
    EXPECT_EQ(outer.Folders().Item(1).Name(), u"Templates");
}

TEST_P(FolderTree, ARemovedFoldersObjectFails) {
    const MAPIFolder folder = host().inbox().Folders().Add(u"Offers");
    person().removeFolderFromOutside(identityOf(folder));
    EXPECT_NEGATIVE_ERROR(folder.Items().Count());
}

class FolderItems : public EachStore {};
INSTANTIATE_EACH_STORE(FolderItems);

TEST_P(FolderItems, AreCountedFromOneInTheOrderTheyCame) {
    for (const char16_t* subject : {u"b", u"c", u"a"}) host().savedItem(subject).Move(host().folder(default_folder::Junk));
    const Items items = host().folder(default_folder::Junk).Items();
    ASSERT_EQ(items.Count(), 3);
    EXPECT_EQ(items.Item(1).Subject(), u"b");
    EXPECT_EQ(items.Item(2).Subject(), u"c");
    EXPECT_EQ(items.Item(3).Subject(), u"a");
}

TEST_P(FolderItems, OutsideTheirNumberAreAnError) {
    EXPECT_NE(errorOf([&] { host().inbox().Items().Item(0); }).number(), 0);
    EXPECT_NE(errorOf([&] { host().inbox().Items().Item(1); }).number(), 0);
}

TEST_P(FolderItems, AnAddedOneIsNewInThatFolder) {
    const MAPIFolder junk = host().folder(default_folder::Junk);
    const MailItem item(call(junk.Items(), u"Add", {u"IPM.Note"}).toObject());
    EXPECT_EQ(item.EntryID(), u"");
    EXPECT_EQ(item.Class(), item_class::Mail);
    EXPECT_EQ(junk.Items().Count(), 0);
    item.Save();
    ASSERT_EQ(junk.Items().Count(), 1);
    EXPECT_EQ(item.Parent().EntryID(), junk.EntryID());
    EXPECT_EQ(junk.Items().Item(1).EntryID(), item.EntryID());
}

TEST_P(FolderItems, ANewMailIsSavedIntoDrafts) {
    const MailItem item = host().newItem();
    item.Save();
    EXPECT_EQ(item.Parent().EntryID(), host().folder(default_folder::Drafts).EntryID());
    EXPECT_EQ(host().folder(default_folder::Drafts).Items().Count(), 1);
}

TEST_P(FolderItems, SortOrdersTheCollectionByAProperty) {
    const MAPIFolder junk = host().folder(default_folder::Junk);
    for (const char16_t* subject : {u"b", u"c", u"a"}) host().savedItem(subject).Move(junk);
    const Items items = junk.Items();
    call(items, u"Sort", {u"Subject"});
    EXPECT_EQ(items.Item(1).Subject(), u"a");
    EXPECT_EQ(items.Item(2).Subject(), u"b");
    EXPECT_EQ(items.Item(3).Subject(), u"c");
}

TEST_P(FolderItems, MovingTakesTheItemOutOfItsFolder) {
    const MailItem item = host().savedItem(u"Offer");
    const MAPIFolder from = item.Parent();
    item.Move(host().folder(default_folder::Junk));
    EXPECT_EQ(from.Items().Count(), 0);
    EXPECT_EQ(host().folder(default_folder::Junk).Items().Count(), 1);
}

TEST_P(FolderItems, MovingIntoAnotherStoreTakesEverythingAlong) {
    start({.furtherStores = {{u"Team"}}});
    const MAPIFolder shared = host().storeRoot(u"Team").Folders().Add(u"Shared");
    const MailItem item = host().htmlItem(u"<b>Dear John</b>");
    item.Subject(u"Offer");
    item.Categories(u"Sales,Orders");
    item.Save();
    const MailItem moved = item.Move(shared);
    EXPECT_EQ(moved.Parent().StoreID(), shared.StoreID());
    const MailItem found = host().session().GetItemFromID(moved.EntryID(), shared.StoreID());
    EXPECT_EQ(found.HTMLBody(), html(u"<b>Dear John</b>"));
    EXPECT_EQ(found.Categories(), u"Sales,Orders");
    EXPECT_EQ(host().folder(default_folder::Drafts).Items().Count(), 0);
}

TEST_P(FolderItems, ADeletedOneLeavesItsFolder) {
    const MailItem item = host().savedItem(u"Offer");
    const MAPIFolder drafts = item.Parent();
    item.Delete();
    EXPECT_EQ(drafts.Items().Count(), 0);
    EXPECT_EQ(host().folder(default_folder::DeletedItems).Items().Count(), 1);
}

TEST_P(FolderItems, ShowWhatAnotherProgramDidInBetween) {
    const MailItem item = host().savedItem(u"Offer");
    const MAPIFolder drafts = item.Parent();
    ASSERT_EQ(drafts.Items().Count(), 1);
    person().removeItemFromOutside(identityOf(item));
    EXPECT_EQ(drafts.Items().Count(), 0);
}

}  // namespace lorvane::contract
