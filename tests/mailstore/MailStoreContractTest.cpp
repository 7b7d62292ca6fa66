#include <gtest/gtest.h>

#include <set>

#include "mailstore/Records.h"
#include "mailstore/StoreUnderTest.h"

namespace lorvane::mailstore::test {
namespace {

namespace failure = host::host_failure;
using Texts = std::vector<std::u16string>;

class MailStoreContract : public testing::TestWithParam<StoreWay> {
protected:
    MailStoreContract() : kept_(GetParam().make(u"Personal Folders", 2)) {}

    MailStore& store() { return kept_->store(); }
    FolderRecord inbox() { return store().wellKnownFolder(6).value(); }
    std::u16string inboxId() { return inbox().entryId; }
    std::u16string rootId() { return store().rootFolder().entryId; }
    FolderRecord addFolder(std::u16string_view parent, std::u16string name) {
        FolderRecord folder;
        folder.name = std::move(name);
        return store().addFolder(parent, folder);
    }

    /// What must be refused as unknown: no identity at all, one of another store, one that nothing has.
    Texts unknownIds() {
        const auto other = GetParam().make(u"Other", 2);
        std::u16string nobodys = inboxId();
        nobodys.replace(nobodys.size() - 4, 4, u"7FFF");
        return {u"", u"00", u"no identity", other->store().rootFolder().entryId, nobodys};
    }

    std::unique_ptr<StoreUnderTest> kept_;
};

TEST_P(MailStoreContract, ANewPrivateStoreHasTheDefaultFoldersInItsRoot) {
    EXPECT_EQ(store().name(), u"Personal Folders");
    EXPECT_EQ(store().kind(), 2);
    const FolderRecord root = store().rootFolder();
    EXPECT_EQ(root.name, u"Personal Folders");
    EXPECT_EQ(root.parentId, u"");
    EXPECT_EQ(names(store().childFolders(root.entryId)),
              (Texts{u"Deleted Items", u"Outbox", u"Sent Items", u"Inbox", u"Drafts", u"Junk E-mail", u"Calendar", u"Contacts", u"Tasks"}));
    const std::vector<std::tuple<std::int32_t, std::u16string, std::int32_t, std::u16string>> expected{
        {3, u"Deleted Items", 0, u"IPM.Note"},   {4, u"Outbox", 0, u"IPM.Note"},       {5, u"Sent Items", 0, u"IPM.Note"},
        {6, u"Inbox", 0, u"IPM.Note"},           {16, u"Drafts", 0, u"IPM.Note"},      {23, u"Junk E-mail", 0, u"IPM.Note"},
        {9, u"Calendar", 1, u"IPM.Appointment"}, {10, u"Contacts", 2, u"IPM.Contact"}, {13, u"Tasks", 3, u"IPM.Task"}};
    for (const auto& [number, name, type, messageClass] : expected) {
        const FolderRecord folder = store().wellKnownFolder(number).value();
        EXPECT_EQ(folder.name, name);
        EXPECT_EQ(folder.wellKnown, number);
        EXPECT_EQ(folder.defaultItemType, type);
        EXPECT_EQ(folder.defaultMessageClass, messageClass);
        EXPECT_EQ(folder.parentId, root.entryId);
    }
    EXPECT_FALSE(store().wellKnownFolder(0));
    EXPECT_FALSE(store().wellKnownFolder(99));
}

TEST_P(MailStoreContract, ASharedStoreStartsWithItsRootAlone) {
    const auto shared = GetParam().make(u"Team", 5);
    EXPECT_EQ(shared->store().kind(), 5);
    const FolderRecord root = shared->store().rootFolder();
    EXPECT_EQ(root.name, u"Team");
    EXPECT_TRUE(shared->store().childFolders(root.entryId).empty());
    EXPECT_FALSE(shared->store().wellKnownFolder(6));
}

TEST_P(MailStoreContract, IdentitiesAreUpperCaseHexadecimalAndNoTwoStoresShareOne) {
    const auto other = GetParam().make(u"Other", 2);
    std::set<std::u16string> seen{store().storeId(), other->store().storeId()};
    EXPECT_EQ(seen.size(), 2u);
    for (MailStore* each : {&store(), &other->store()}) {
        std::vector<FolderRecord> folders = each->childFolders(each->rootFolder().entryId);
        folders.push_back(each->rootFolder());
        for (const FolderRecord& folder : folders) {
            EXPECT_TRUE(seen.insert(folder.entryId).second);
            EXPECT_EQ(folder.entryId.size() % 2, 0u);
            EXPECT_EQ(folder.entryId.find_first_not_of(u"0123456789ABCDEF"), std::u16string::npos);
        }
    }
}

TEST_P(MailStoreContract, AFolderKeepsWhatItWasMadeWith) {
    FolderRecord folder;
    folder.name = std::u16string(u"a\0b\xD800", 4);
    folder.defaultItemType = 6;
    folder.defaultMessageClass = u"IPM.Post";
    folder.wellKnown = 77;
    const FolderRecord made = store().addFolder(inboxId(), folder);
    folder.entryId = made.entryId;
    folder.parentId = inboxId();
    EXPECT_EQ(made, folder);
    EXPECT_EQ(store().findFolder(made.entryId), made);
    EXPECT_EQ(store().wellKnownFolder(77), made);
    EXPECT_EQ(store().childFolders(inboxId()), std::vector{made});
}

TEST_P(MailStoreContract, TwoFoldersOfOneNameCannotLieSideBySide) {
    const FolderRecord first = addFolder(rootId(), u"Größe");
    for (const char16_t* name : {u"Größe", u"GRÖßE", u"inbox"}) {
        EXPECT_EQ(numberOf([&] { addFolder(rootId(), name); }), failure::Failed);
    }
    EXPECT_EQ(addFolder(first.entryId, u"Größe").parentId, first.entryId);
    const FolderRecord second = addFolder(rootId(), u"Second");
    const auto refused = errorOf([&] { store().renameFolder(second.entryId, u"grösse"); });
    EXPECT_FALSE(refused) << "one letter is not two";
    EXPECT_EQ(numberOf([&] { store().renameFolder(second.entryId, u"grÖße"); }), failure::Failed);
    EXPECT_EQ(store().findFolder(second.entryId)->name, u"grösse");
}

TEST_P(MailStoreContract, ARenameKeepsTheIdentityAndMayChangeTheCaseOfTheOwnName) {
    const FolderRecord folder = addFolder(rootId(), u"Templates");
    store().renameFolder(folder.entryId, u"TEMPLATES");
    EXPECT_EQ(store().findFolder(folder.entryId)->name, u"TEMPLATES");
    store().renameFolder(rootId(), u"Top");
    EXPECT_EQ(store().rootFolder().name, u"Top");
}

TEST_P(MailStoreContract, ARemovedFolderTakesEverythingInItAlong) {
    const FolderRecord outer = addFolder(rootId(), u"Outer");
    const FolderRecord inner = addFolder(outer.entryId, u"Inner");
    const ItemHead inOuter = store().saveItem(outer.entryId, mail(u"outer"));
    const ItemHead inInner = store().saveItem(inner.entryId, mail(u"inner"));
    const ItemHead beside = store().saveItem(inboxId(), mail(u"beside"));
    store().removeFolder(outer.entryId);
    EXPECT_FALSE(store().findFolder(outer.entryId));
    EXPECT_FALSE(store().findFolder(inner.entryId));
    EXPECT_FALSE(store().findItem(inOuter.entryId));
    EXPECT_FALSE(store().findItem(inInner.entryId));
    EXPECT_EQ(numberOf([&] { store().loadItem(inInner.entryId); }), failure::NotFound);
    EXPECT_EQ(store().findItem(beside.entryId), beside);
    EXPECT_NE(addFolder(rootId(), u"Outer").entryId, outer.entryId);
}

TEST_P(MailStoreContract, TheRootStays) {
    EXPECT_EQ(numberOf([&] { store().removeFolder(rootId()); }), failure::AccessDenied);
    EXPECT_EQ(store().childFolders(rootId()).size(), 9u);
}

TEST_P(MailStoreContract, AnItemComesBackInEqualUnitsAndBytes) {
    std::mt19937 source(20280110);
    std::vector<ItemRecord> saved;
    for (int i = 0; i < 40; ++i) {
        const ItemRecord record = randomRecord(source);
        saved.push_back(withHead(record, store().saveItem(inboxId(), record)));
    }
    std::vector<ItemHead> heads;
    for (const ItemRecord& record : saved) {
        EXPECT_EQ(store().loadItem(record.head.entryId), record);
        heads.push_back(record.head);
    }
    EXPECT_EQ(store().itemHeads(inboxId()), heads);
}

TEST_P(MailStoreContract, EmptyContentAndNoContentStayApart) {
    ItemRecord record = mail(u"");
    record.original = std::make_shared<const Bytes>();
    record.attachments.resize(2);
    record.attachments[0].data = std::make_shared<const Bytes>();
    record.properties[tags::SenderName] = std::u16string();
    record.properties[tags::ProxyAddresses] = Texts{};
    record.properties[0x00010102] = Bytes();
    record.userProperties[u""] = u"";
    const ItemRecord loaded = store().loadItem(store().saveItem(inboxId(), record).entryId);
    ASSERT_TRUE(loaded.original);
    EXPECT_TRUE(loaded.original->empty());
    ASSERT_EQ(loaded.attachments.size(), 2u);
    ASSERT_TRUE(loaded.attachments[0].data);
    EXPECT_TRUE(loaded.attachments[0].data->empty());
    EXPECT_FALSE(loaded.attachments[1].data);
    EXPECT_EQ(loaded.properties, record.properties);
    EXPECT_EQ(loaded.userProperties, record.userProperties);
    EXPECT_FALSE(store().loadItem(store().saveItem(inboxId(), mail(u"")).entryId).original);
}

TEST_P(MailStoreContract, ALargeAttachmentAndBodyComeBack) {
    std::mt19937 source(1);
    ItemRecord record = mail(u"large", std::u16string(700'000, u'\xDC00'));
    record.attachments.resize(2);
    for (AttachmentRecord& attachment : record.attachments) attachment.data = std::make_shared<const Bytes>(randomBytes(source, 1u << 20));
    record.original = std::make_shared<const Bytes>(randomBytes(source, 3u << 20));
    const ItemHead head = store().saveItem(inboxId(), record);
    EXPECT_EQ(store().loadItem(head.entryId), withHead(record, head));
}

TEST_P(MailStoreContract, EachSaveMakesANewVersionOfTheSameItem) {
    const ItemHead first = store().saveItem(inboxId(), mail(u"one"));
    EXPECT_EQ(first.version, 1u);
    ItemRecord item = store().loadItem(first.entryId);
    item.head.subject = u"two";
    item.head.categories = u"A, B";
    const ItemHead second = store().saveItem(inboxId(), item);
    EXPECT_EQ(second.version, 2u);
    EXPECT_EQ(second.entryId, first.entryId);
    EXPECT_EQ(second.categories, u"A, B");
    EXPECT_EQ(store().findItem(first.entryId), second);
    EXPECT_EQ(store().itemCount(inboxId()), 1u);
}

TEST_P(MailStoreContract, ASaveReplacesEveryPartOfTheItem) {
    std::mt19937 source(7);
    ItemHead head = store().saveItem(inboxId(), randomRecord(source));
    for (int i = 0; i < 30; ++i) {
        const ItemRecord record = withHead(randomRecord(source), head);
        head = store().saveItem(inboxId(), record);
        EXPECT_EQ(store().loadItem(head.entryId), withHead(record, head));
    }
    const ItemRecord bare = withHead(ItemRecord(), head);
    head = store().saveItem(inboxId(), bare);
    EXPECT_EQ(store().loadItem(head.entryId), withHead(bare, head));
}

TEST_P(MailStoreContract, ASaveThatLostAgainstALaterOneIsTold) {
    const ItemHead head = store().saveItem(inboxId(), mail(u"first"));
    const ItemRecord mine = store().loadItem(head.entryId);
    ItemRecord theirs = mine;
    theirs.head.subject = u"theirs";
    const ItemHead later = store().saveItem(inboxId(), theirs);
    EXPECT_EQ(numberOf([&] { store().saveItem(inboxId(), mine); }), failure::ObjectChanged);
    EXPECT_EQ(failure::ObjectChanged, static_cast<std::int32_t>(0x80040109));
    EXPECT_EQ(store().loadItem(head.entryId), withHead(theirs, later));
}

TEST_P(MailStoreContract, AKnownItemIsSavedWhereItIsWhateverTheFolder) {
    const ItemHead head = store().saveItem(inboxId(), mail(u"here"));
    store().saveItem(store().wellKnownFolder(16)->entryId, store().loadItem(head.entryId));
    EXPECT_EQ(store().folderOfItem(head.entryId), inboxId());
    EXPECT_EQ(store().itemCount(store().wellKnownFolder(16)->entryId), 0u);
}

TEST_P(MailStoreContract, ItemsStandInTheOrderInWhichTheyEnteredTheFolder) {
    const std::u16string drafts = store().wellKnownFolder(16)->entryId;
    const ItemHead a = store().saveItem(inboxId(), mail(u"a"));
    store().saveItem(inboxId(), mail(u"b"));
    const ItemHead c = store().saveItem(drafts, mail(u"c"));
    store().saveItem(inboxId(), mail(u"d"));
    store().saveItem(inboxId(), withHead(mail(u""), a));
    store().moveItem(c.entryId, inboxId());
    EXPECT_EQ(subjects(store().itemHeads(inboxId())), (Texts{u"a", u"b", u"d", u"c"}));
    store().moveItem(a.entryId, inboxId());
    EXPECT_EQ(subjects(store().itemHeads(inboxId())), (Texts{u"b", u"d", u"c", u"a"}));
    EXPECT_TRUE(store().itemHeads(drafts).empty());
}

TEST_P(MailStoreContract, AMovedItemHasANewIdentityAndAllItHad) {
    std::mt19937 source(99);
    const std::u16string drafts = store().wellKnownFolder(16)->entryId;
    const ItemRecord record = randomRecord(source);
    const ItemHead old = store().saveItem(inboxId(), record);
    const std::u16string moved = store().moveItem(old.entryId, drafts);
    EXPECT_NE(moved, old.entryId);
    EXPECT_EQ(numberOf([&] { store().loadItem(old.entryId); }), failure::NotFound);
    EXPECT_EQ(numberOf([&] { store().saveItem(inboxId(), withHead(record, old)); }), failure::NotFound);
    EXPECT_FALSE(store().findItem(old.entryId));
    EXPECT_EQ(store().folderOfItem(moved), drafts);
    ItemHead expected = old;
    expected.entryId = moved;
    EXPECT_EQ(store().loadItem(moved), withHead(record, expected));
    EXPECT_EQ(store().saveItem(drafts, store().loadItem(moved)).version, old.version + 1);
}

TEST_P(MailStoreContract, ARemovedItemIsGoneAndItsIdentityNeverComesBack) {
    const ItemHead gone = store().saveItem(inboxId(), mail(u"gone"));
    store().removeItem(gone.entryId);
    EXPECT_FALSE(store().findItem(gone.entryId));
    EXPECT_EQ(store().itemCount(inboxId()), 0u);
    EXPECT_EQ(numberOf([&] { store().removeItem(gone.entryId); }), failure::NotFound);
    EXPECT_EQ(numberOf([&] { store().saveItem(inboxId(), withHead(mail(u"again"), gone)); }), failure::NotFound);
    EXPECT_NE(store().saveItem(inboxId(), mail(u"new")).entryId, gone.entryId);
}

TEST_P(MailStoreContract, UnknownIdentitiesAreToldAsNotFound) {
    const ItemHead item = store().saveItem(inboxId(), mail(u"x"));
    for (const std::u16string& id : unknownIds()) {
        EXPECT_FALSE(store().findFolder(id));
        EXPECT_FALSE(store().findItem(id));
        EXPECT_EQ(numberOf([&] { store().childFolders(id); }), failure::NotFound);
        EXPECT_EQ(numberOf([&] { addFolder(id, u"New"); }), failure::NotFound);
        EXPECT_EQ(numberOf([&] { store().renameFolder(id, u"New"); }), failure::NotFound);
        EXPECT_EQ(numberOf([&] { store().removeFolder(id); }), failure::NotFound);
        EXPECT_EQ(numberOf([&] { store().itemCount(id); }), failure::NotFound);
        EXPECT_EQ(numberOf([&] { store().itemHeads(id); }), failure::NotFound);
        EXPECT_EQ(numberOf([&] { store().folderOfItem(id); }), failure::NotFound);
        EXPECT_EQ(numberOf([&] { store().loadItem(id); }), failure::NotFound);
        EXPECT_EQ(numberOf([&] { store().saveItem(id, mail(u"x")); }), failure::NotFound);
        EXPECT_EQ(numberOf([&] { store().moveItem(id, inboxId()); }), failure::NotFound);
        EXPECT_EQ(numberOf([&] { store().moveItem(item.entryId, id); }), failure::NotFound);
        EXPECT_EQ(numberOf([&] { store().removeItem(id); }), failure::NotFound);
    }
    EXPECT_EQ(store().itemHeads(inboxId()), std::vector{item});
    EXPECT_EQ(numberOf([&] { store().loadItem(inboxId()); }), failure::NotFound) << "a folder is no item";
    EXPECT_EQ(numberOf([&] { store().itemHeads(item.entryId); }), failure::NotFound) << "an item is no folder";
}

TEST_P(MailStoreContract, IdentitiesAreUnderstoodInEitherCase) {
    const ItemHead head = store().saveItem(inboxId(), mail(u"x"));
    std::u16string lower = head.entryId;
    for (char16_t& unit : lower) unit = unit >= u'A' && unit <= u'F' ? static_cast<char16_t>(unit + 32) : unit;
    EXPECT_EQ(store().findItem(lower), head);
    EXPECT_EQ(store().loadItem(lower).head.entryId, head.entryId);
    ItemRecord again = store().loadItem(lower);
    again.head.entryId = lower;
    EXPECT_EQ(store().saveItem(inboxId(), again).entryId, head.entryId);
}

class ChangeCountContract : public MailStoreContract {};

TEST_P(ChangeCountContract, GoesUpWithEachChangeAndStandsStillOtherwise) {
    MailStore& same = store();
    std::uint64_t count = same.changeCount();
    const auto changes = [&](const auto& action) {
        action();
        const std::uint64_t before = std::exchange(count, same.changeCount());
        return count > before;
    };
    const std::u16string inboxId = same.wellKnownFolder(6)->entryId;
    FolderRecord folder;
    folder.name = u"New";
    std::u16string item;
    EXPECT_FALSE(changes([&] { same.itemHeads(inboxId); }));
    EXPECT_TRUE(changes([&] { folder = same.addFolder(inboxId, folder); }));
    EXPECT_TRUE(changes([&] { same.renameFolder(folder.entryId, u"Newer"); }));
    EXPECT_TRUE(changes([&] { item = same.saveItem(inboxId, mail(u"x")).entryId; }));
    EXPECT_TRUE(changes([&] { same.saveItem(inboxId, same.loadItem(item)); }));
    EXPECT_TRUE(changes([&] { item = same.moveItem(item, folder.entryId); }));
    EXPECT_FALSE(changes([&] { same.loadItem(item); }));
    EXPECT_FALSE(changes([&] { same.findFolder(inboxId); }));
    EXPECT_FALSE(changes([&] { numberOf([&] { same.removeItem(u""); }); }));
    EXPECT_TRUE(changes([&] { same.removeItem(item); }));
    EXPECT_TRUE(changes([&] { same.removeFolder(folder.entryId); }));
}

INSTANTIATE_TEST_SUITE_P(, MailStoreContract, testing::ValuesIn(storeWays()), [](const auto& way) { return way.param.name; });
INSTANTIATE_TEST_SUITE_P(, ChangeCountContract, testing::ValuesIn(lastingWays()), [](const auto& way) { return way.param.name; });

}  // namespace
}  // namespace lorvane::mailstore::test
