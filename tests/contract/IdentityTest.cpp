#include <algorithm>

#include "contract/HostFixture.h"

namespace lorvane::contract {

namespace {

bool isHexadecimal(std::u16string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char16_t unit) {
        return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F') || (unit >= u'a' && unit <= u'f');
    });
}

}  // namespace

class Identity : public EachStore {};
INSTANTIATE_EACH_STORE(Identity);

TEST_P(Identity, IsEmptyUntilTheFirstSave) {
    const MailItem item = host().newItem();
    item.Subject(u"Offer");
    EXPECT_EQ(item.EntryID(), u"");
    item.Save();
    EXPECT_NE(item.EntryID(), u"");
}

TEST_P(Identity, IsHexadecimalText) {
    const MailItem item = host().savedItem(u"Offer");
    EXPECT_TRUE(isHexadecimal(item.EntryID()));
}

TEST_P(Identity, StaysTheSameOverFurtherSaves) {
    const MailItem item = host().savedItem(u"Offer");
    const std::u16string before = item.EntryID();
    item.Subject(u"Second offer");
    item.Save();
    EXPECT_EQ(item.EntryID(), before);
}

TEST_P(Identity, DiffersFromItemToItem) {
    EXPECT_NE(host().savedItem(u"Offer").EntryID(), host().savedItem(u"Offer").EntryID());
}

TEST_P(Identity, StoreIdentityComesFromTheParentFolder) {
    const MailItem item = host().savedItem(u"Offer");
    EXPECT_TRUE(isHexadecimal(item.Parent().StoreID()));
    EXPECT_EQ(item.Parent().StoreID(), host().inbox().StoreID());
}

TEST_P(Identity, ThePairResolvesToTheItem) {
    const MailItem item = host().savedItem(u"Offer");
    const MailItem found = host().session().GetItemFromID(item.EntryID(), item.Parent().StoreID());
    EXPECT_EQ(found.Subject(), u"Offer");
    EXPECT_EQ(found.EntryID(), item.EntryID());
}

TEST_P(Identity, ThePairResolvesAfterARestart) {
    const MailItem item = host().savedItem(u"Offer");
    const auto pair = identityOf(item);
    host().restart();
    EXPECT_EQ(host().session().GetItemFromID(pair.first, pair.second).Subject(), u"Offer");
}

TEST_P(Identity, AFolderPairResolvesToTheFolder) {
    const MAPIFolder made = host().inbox().Folders().Add(u"Offers");
    const MAPIFolder found = host().session().GetFolderFromID(made.EntryID(), made.StoreID());
    EXPECT_EQ(found.Name(), u"Offers");
    EXPECT_EQ(found.EntryID(), made.EntryID());
}

TEST_P(Identity, AFolderPairResolvesAfterARestart) {
    const auto pair = identityOf(host().inbox().Folders().Add(u"Offers"));
    host().restart();
    EXPECT_EQ(host().session().GetFolderFromID(pair.first, pair.second).Name(), u"Offers");
}

TEST_P(Identity, AFolderKeepsItThroughARenameFromOutside) {
    const auto pair = identityOf(host().inbox().Folders().Add(u"Offers"));
    person().renameFolderFromOutside(pair, u"Quotes");
    EXPECT_EQ(host().session().GetFolderFromID(pair.first, pair.second).Name(), u"Quotes");
}

TEST_P(Identity, AMovedItemHasANewOne) {
    const MailItem item = host().savedItem(u"Offer");
    const std::u16string before = item.EntryID();
    const MailItem moved = item.Move(host().folder(default_folder::Drafts));
    EXPECT_NE(moved.EntryID(), u"");
    EXPECT_NE(moved.EntryID(), before);
    EXPECT_EQ(moved.Subject(), u"Offer");
    EXPECT_EQ(moved.Parent().EntryID(), host().folder(default_folder::Drafts).EntryID());
}

TEST_P(Identity, AMovedItemIsNotFoundByItsFormerOne) {
    const MailItem item = host().savedItem(u"Offer");
    const auto before = identityOf(item);
    item.Move(host().folder(default_folder::Drafts));
    EXPECT_NEGATIVE_ERROR(host().session().GetItemFromID(before.first, before.second));
}

TEST_P(Identity, UnknownItemsAndFoldersAreNegativeErrors) {
    const std::u16string store = host().inbox().StoreID();
    EXPECT_NEGATIVE_ERROR(host().session().GetItemFromID(u"00000000DEADBEEF", store));
    EXPECT_NEGATIVE_ERROR(host().session().GetFolderFromID(u"00000000DEADBEEF", store));
}

TEST_P(Identity, EmptyAndBrokenOnesAreNegativeErrors) {
    const std::u16string store = host().inbox().StoreID();
    EXPECT_NEGATIVE_ERROR(host().session().GetItemFromID(u"", store));
    EXPECT_NEGATIVE_ERROR(host().session().GetItemFromID(u"", u""));
    EXPECT_NEGATIVE_ERROR(host().session().GetItemFromID(u"no such thing", store));
    EXPECT_NEGATIVE_ERROR(host().session().GetFolderFromID(u"", store));
    EXPECT_NEGATIVE_ERROR(host().session().GetFolderFromID(u"", u""));
}

TEST_P(Identity, AStoreThatIsNotOpenIsANegativeError) {
    const MailItem item = host().savedItem(u"Offer");
    EXPECT_NEGATIVE_ERROR(host().session().GetItemFromID(item.EntryID(), u"00000000DEADBEEF"));
    EXPECT_NEGATIVE_ERROR(host().session().GetFolderFromID(host().inbox().EntryID(), u"00000000DEADBEEF"));
}

TEST_P(Identity, ARemovedItemIsANegativeError) {
    const auto pair = identityOf(host().savedItem(u"Offer"));
    person().removeItemFromOutside(pair);
    EXPECT_NEGATIVE_ERROR(host().session().GetItemFromID(pair.first, pair.second));
}

TEST_P(Identity, ARemovedFolderIsANegativeError) {
    const auto pair = identityOf(host().inbox().Folders().Add(u"Offers"));
    person().removeFolderFromOutside(pair);
    EXPECT_NEGATIVE_ERROR(host().session().GetFolderFromID(pair.first, pair.second));
}

TEST_P(Identity, AnItemOfARemovedFolderIsANegativeError) {
    const MAPIFolder folder = host().inbox().Folders().Add(u"Offers");
    const MailItem item = host().savedItem(u"Offer").Move(folder);
    const auto pair = identityOf(item);
    person().removeFolderFromOutside(identityOf(folder));
    EXPECT_NEGATIVE_ERROR(host().session().GetItemFromID(pair.first, pair.second));
}

TEST_P(Identity, ACopyIsAnotherItemOfTheSameContent) {
    const MailItem item = host().htmlItem(u"<b>Dear John</b>");
    item.Subject(u"Offer");
    item.Categories(u"Sales");
    item.Save();
    const MailItem copy(call(item, u"Copy").toObject());
    copy.Save();
    EXPECT_NE(copy.EntryID(), item.EntryID());
    EXPECT_EQ(copy.Subject(), u"Offer");
    EXPECT_EQ(copy.HTMLBody(), html(u"<b>Dear John</b>"));
    EXPECT_EQ(copy.Categories(), u"Sales");
    copy.Subject(u"Another");
    EXPECT_EQ(item.Subject(), u"Offer");
}

}  // namespace lorvane::contract
