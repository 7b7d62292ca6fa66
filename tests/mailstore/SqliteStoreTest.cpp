#include "mailstore/SqliteStore.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include "mailstore/Records.h"
#include "mailstore/TempFolder.h"

namespace lorvane::mailstore::test {
namespace {

namespace failure = host::host_failure;

class SqliteStore : public testing::Test {
protected:
    std::unique_ptr<MailStore> open(const SqliteOptions& options = {}) const { return SqliteFile(file_, options).mailStore(); }
    static std::u16string inboxId(const MailStore& store) { return store.wellKnownFolder(6)->entryId; }

    TempFolder folder_;
    std::filesystem::path file_ = folder_.file("Grüße.lorvane");
};

TEST_F(SqliteStore, EverythingSurvivesARestart) {
    std::mt19937 source(4711);
    std::vector<ItemRecord> saved;
    std::u16string storeId, folderId;
    {
        const auto store = open();
        storeId = store->storeId();
        FolderRecord folder;
        folder.name = u"\xDC00 Vorlagen";
        folderId = store->addFolder(inboxId(*store), folder).entryId;
        for (int i = 0; i < 100; ++i) {
            ItemRecord record = randomRecord(source);
            if (i == 50) record.attachments.resize(1), record.attachments[0].data = std::make_shared<const Bytes>(randomBytes(source, 1u << 20));
            saved.push_back(withHead(record, store->saveItem(folderId, record)));
        }
    }
    const auto store = open();
    EXPECT_EQ(store->storeId(), storeId);
    EXPECT_EQ(store->findFolder(folderId)->name, u"\xDC00 Vorlagen");
    ASSERT_EQ(store->itemCount(folderId), saved.size());
    for (const ItemRecord& record : saved) EXPECT_EQ(store->loadItem(record.head.entryId), record);
}

TEST_F(SqliteStore, ANewStoreTakesNameKindAndIdFromTheOptionsAndAKnownOneKeepsItsOwn) {
    SqliteOptions options;
    options.storeName = u"Team";
    options.storeKind = 5;
    options.storeId = StoreId{0xAB, 1, 2, 3, 4, 5, 6, 7};
    EXPECT_EQ(open(options)->storeId(), u"AB010203040506070000000000000000");
    const auto store = open();
    EXPECT_EQ(store->storeId(), u"AB010203040506070000000000000000");
    EXPECT_EQ(store->name(), u"Team");
    EXPECT_EQ(store->kind(), 5);
    EXPECT_EQ(store->rootFolder().entryId, u"AB010203040506070000000000000001");
}

TEST_F(SqliteStore, WithAGivenIdEveryRunGivesTheSameIdentities) {
    SqliteOptions options;
    options.storeId = StoreId{1};
    const auto identities = [&](const char* name) {
        const auto store = SqliteFile(folder_.file(name), options).mailStore();
        const ItemHead first = store->saveItem(inboxId(*store), mail(u"a"));
        return std::vector{first.entryId, store->moveItem(first.entryId, store->wellKnownFolder(16)->entryId)};
    };
    EXPECT_EQ(identities("one"), identities("two"));
}

TEST_F(SqliteStore, TheIdentityOfTheLastItemIsNotGivenAgainInALaterRun) {
    std::u16string gone;
    {
        const auto store = open();
        gone = store->saveItem(inboxId(*store), mail(u"x")).entryId;
        store->removeItem(gone);
    }
    const auto store = open();
    EXPECT_NE(store->saveItem(inboxId(*store), mail(u"y")).entryId, gone);
}

TEST_F(SqliteStore, OfTwoProgramsTheLaterSaveIsTold) {
    const auto mine = open();
    const auto theirs = open();
    const ItemHead head = mine->saveItem(inboxId(*mine), mail(u"first"));
    ItemRecord atMine = mine->loadItem(head.entryId);
    ItemRecord atTheirs = theirs->loadItem(head.entryId);
    atTheirs.head.subject = u"theirs";
    theirs->saveItem(u"", atTheirs);
    atMine.head.subject = u"mine";
    EXPECT_EQ(numberOf([&] { mine->saveItem(u"", atMine); }), failure::ObjectChanged);
    EXPECT_EQ(mine->findItem(head.entryId)->subject, u"theirs");
    ItemRecord again = mine->loadItem(head.entryId);
    again.head.subject = u"mine, knowing theirs";
    EXPECT_EQ(mine->saveItem(u"", again).version, 3u);
}

TEST_F(SqliteStore, TheChangeCountTellsTheWritesOfAnotherProgramOnce) {
    const auto mine = open();
    const auto theirs = open();
    const std::uint64_t before = mine->changeCount();
    EXPECT_EQ(mine->changeCount(), before);
    const ItemHead head = theirs->saveItem(inboxId(*theirs), mail(u"x"));
    const std::uint64_t after = mine->changeCount();
    EXPECT_GT(after, before);
    EXPECT_EQ(mine->changeCount(), after);
    theirs->loadItem(head.entryId);
    EXPECT_EQ(mine->changeCount(), after);
}

TEST_F(SqliteStore, StoreAndSettingsOutliveTheFileObjectAndShareTheFile) {
    {
        const SqliteFile file(file_);
        file.settings()->save(u"app", u"s", u"k", u"value");
    }
    const auto settings = SqliteFile(file_).settings();
    const auto store = open();
    EXPECT_EQ(settings->find(u"app", u"s", u"k"), u"value");
    EXPECT_EQ(store->name(), u"Personal Folders");
}

TEST_F(SqliteStore, ANewFileIsItsOwnersAlone) {
    const auto store = open();
    store->saveItem(inboxId(*store), mail(u"x"));
    for (const char* ending : {"", "-wal", "-shm"}) {
        struct stat about {};
        ASSERT_EQ(::stat((file_.string() + ending).c_str(), &about), 0) << ending;
        EXPECT_EQ(about.st_mode & 0777, 0600u) << ending;
    }
}

TEST_F(SqliteStore, AnEmptyFileBecomesANewStore) {
    writeBytes(file_, {});
    EXPECT_EQ(open()->name(), u"Personal Folders");
}

TEST_F(SqliteStore, AFileBehindALinkIsTheSameStore) {
    const std::filesystem::path link = folder_.file("link");
    std::filesystem::create_symlink(file_, link);
    const auto store = open();
    const ItemHead head = store->saveItem(inboxId(*store), mail(u"x"));
    const auto same = SqliteFile(link).mailStore();
    EXPECT_EQ(same->findItem(head.entryId), head);
    same->removeItem(head.entryId);
    EXPECT_EQ(store->itemCount(inboxId(*store)), 0u);
}

TEST_F(SqliteStore, AClosedStoreIsOneFile) {
    {
        const auto store = open();
        store->saveItem(inboxId(*store), mail(u"x"));
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 1);
    EXPECT_NO_THROW(SqliteFile(file_).check());
}

/// The bytes of all pages of a table.
std::int64_t sizeOfTable(sqlite3* connection, const char* table) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(connection, "SELECT sum(pgsize) FROM dbstat WHERE name = ?", -1, &statement, nullptr);
    sqlite3_bind_text(statement, 1, table, -1, SQLITE_STATIC);
    const std::int64_t size = sqlite3_step(statement) == SQLITE_ROW ? sqlite3_column_int64(statement, 0) : -1;
    sqlite3_finalize(statement);
    return size;
}

TEST_F(SqliteStore, TheTableThatListsReadHoldsNoBodies) {
    {
        const auto store = open();
        ItemRecord record = mail(u"subject", std::u16string(500'000, u'x'));
        record.attachments.resize(1);
        record.attachments[0].data = std::make_shared<const Bytes>(500'000);
        record.original = record.attachments[0].data;
        record.properties[0x10000102] = Bytes(500'000);
        for (int i = 0; i < 3; ++i) store->saveItem(inboxId(*store), record);
    }
    sqlite3* connection = nullptr;
    ASSERT_EQ(sqlite3_open(file_.c_str(), &connection), SQLITE_OK);
    EXPECT_GT(sizeOfTable(connection, "bodies"), 3'000'000);
    EXPECT_GT(sizeOfTable(connection, "items"), 0);
    EXPECT_LE(sizeOfTable(connection, "items"), 8192);
    sqlite3_close(connection);
}

TEST_F(SqliteStore, ASaveThatChangesTheSubjectWritesNoBodyOrAttachmentAgain) {
    const auto store = open();
    ItemRecord record = mail(u"subject", std::u16string(500'000, u'x'));
    record.attachments.resize(1);
    record.attachments[0].data = std::make_shared<const Bytes>(1u << 20);
    record.head = store->saveItem(inboxId(*store), record);
    const auto wal = file_.string() + "-wal";
    sqlite3* connection = nullptr;
    ASSERT_EQ(sqlite3_open(file_.c_str(), &connection), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(connection, "SELECT 1 FROM sqlite_schema; PRAGMA wal_checkpoint(TRUNCATE)", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(connection);
    ASSERT_EQ(std::filesystem::file_size(wal), 0u);
    record.head.subject = u"new";
    store->saveItem(u"", record);
    EXPECT_LT(std::filesystem::file_size(wal), 40'000u);
    EXPECT_GT(std::filesystem::file_size(wal), 0u);
}

}  // namespace
}  // namespace lorvane::mailstore::test
