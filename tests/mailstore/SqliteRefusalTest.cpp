#include <gtest/gtest.h>
#include <sqlite3.h>

#include "mailstore/Records.h"
#include "mailstore/SqliteStore.h"
#include "mailstore/TempFolder.h"

namespace lorvane::mailstore::test {
namespace {

namespace fs = std::filesystem;
namespace failure = host::host_failure;

/// Another program on the file, which knows nothing of stores.
class PlainConnection {
public:
    explicit PlainConnection(const fs::path& file) { EXPECT_EQ(sqlite3_open(file.c_str(), &connection_), SQLITE_OK); }
    PlainConnection(const PlainConnection&) = delete;
    PlainConnection& operator=(const PlainConnection&) = delete;
    ~PlainConnection() { sqlite3_close(connection_); }
    void run(const char* sql) { EXPECT_EQ(sqlite3_exec(connection_, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(connection_); }
    sqlite3* get() const noexcept { return connection_; }

private:
    sqlite3* connection_ = nullptr;
};

class SqliteRefusal : public testing::Test {
protected:
    /// A sound store with a few dozen mails.
    void makeStore() {
        const auto store = SqliteFile(file_).mailStore();
        const std::u16string inbox = store->wellKnownFolder(6)->entryId;
        for (int i = 0; i < 40; ++i) store->saveItem(inbox, mail(u"subject", std::u16string(3000, u'x')));
    }

    void expectRefused(std::u16string_view words, const SqliteOptions& options = {}) {
        const bool existed = fs::exists(file_);
        const Bytes before = existed ? readBytes(file_) : Bytes();
        const auto error = errorOf([&] { SqliteFile(file_, options); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->number(), failure::Failed);
        EXPECT_NE(error->description().find(words), std::u16string::npos) << error->what();
        EXPECT_NE(error->description().find(u"mail.lorvane"), std::u16string::npos) << error->what();
        EXPECT_EQ(fs::exists(file_), existed);
        if (existed) {
            EXPECT_TRUE(readBytes(file_) == before) << "the file was changed";
        }
    }

    void expectNothingBeside() { EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), {}), 1); }

    TempFolder folder_;
    fs::path file_ = folder_.file("mail.lorvane");
};

TEST_F(SqliteRefusal, AFileOfANewerVersion) {
    makeStore();
    PlainConnection(file_).run("PRAGMA user_version = 9999");
    expectRefused(u"newer version");
    expectNothingBeside();
}

TEST_F(SqliteRefusal, AFileWhoseNewerVersionStandsInWhatACrashLeftBesideIt) {
    makeStore();
    const fs::path wal = folder_.file("mail.lorvane-wal");
    Bytes left;
    Bytes main;
    {
        PlainConnection other(file_);
        other.run("PRAGMA user_version = 9999");
        main = readBytes(file_);
        left = readBytes(wal);
    }
    writeBytes(file_, main);
    writeBytes(wal, left);
    expectRefused(u"newer version");
    EXPECT_TRUE(readBytes(wal) == left);
}

TEST_F(SqliteRefusal, AFileThatIsNoDatabase) {
    for (const Bytes& content : {Bytes{'h', 'e', 'l', 'l', 'o'}, Bytes(5000, 0), Bytes(100, 0xFF)}) {
        writeBytes(file_, content);
        expectRefused(u"not a store of Lorvane");
        expectNothingBeside();
    }
}

TEST_F(SqliteRefusal, ADatabaseOfAnotherProgram) {
    PlainConnection(file_).run("CREATE TABLE t (a); PRAGMA application_id = 7");
    expectRefused(u"not a store of Lorvane");
    fs::remove(file_);
    PlainConnection(file_).run("CREATE TABLE t (a)");
    expectRefused(u"not a store of Lorvane");
    expectNothingBeside();
}

TEST_F(SqliteRefusal, AFileThatBreaksOff) {
    makeStore();
    Bytes bytes = readBytes(file_);
    bytes.resize(bytes.size() / 2);
    writeBytes(file_, bytes);
    expectRefused(u"damaged");
    bytes.resize(120);
    writeBytes(file_, bytes);
    expectRefused(u"damaged");
}

TEST_F(SqliteRefusal, AFileWithAnyOneOfItsPagesOverwritten) {
    makeStore();
    const Bytes sound = readBytes(file_);
    constexpr std::size_t page = 4096;
    ASSERT_GT(sound.size(), 20 * page);
    // The head of a page tells what it holds; page 1 has the file's own head in front of it.
    for (std::size_t start = page; start + page <= sound.size(); start += page) {
        Bytes bytes = sound;
        std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(start), 64, std::uint8_t{0xEE});
        writeBytes(file_, bytes);
        expectRefused(u"damaged");
    }
}

TEST_F(SqliteRefusal, DamageInALargeFileIsToldWhereItIsRead) {
    makeStore();
    Bytes bytes = readBytes(file_);
    std::fill(bytes.begin() + 30 * 4096, bytes.end(), std::uint8_t{0xEE});
    writeBytes(file_, bytes);
    SqliteOptions large;
    large.checkUpToBytes = 0;
    const SqliteFile file(file_, large);
    const auto store = file.mailStore();
    const auto error = errorOf([&] {
        for (const ItemHead& head : store->itemHeads(store->wellKnownFolder(6)->entryId)) store->loadItem(head.entryId);
    });
    ASSERT_TRUE(error);
    EXPECT_NE(error->description().find(u"damaged"), std::u16string::npos) << error->what();
    EXPECT_EQ(numberOf([&] { file.check(); }), failure::Failed);
}

TEST_F(SqliteRefusal, DamagedPropertiesOfOneItemAreToldOnLoadingIt) {
    std::u16string id;
    {
        const auto store = SqliteFile(file_).mailStore();
        id = store->saveItem(store->wellKnownFolder(6)->entryId, mail(u"x")).entryId;
    }
    PlainConnection(file_).run("UPDATE details SET properties = x'0105'");
    const auto store = SqliteFile(file_).mailStore();
    const auto error = errorOf([&] { store->loadItem(id); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), failure::Failed);
    EXPECT_NE(error->description().find(u"mail.lorvane"), std::u16string::npos);
    PlainConnection(file_).run("UPDATE details SET properties = x'0100000000'; UPDATE bodies SET text = x'00'");
    EXPECT_EQ(numberOf([&] { store->loadItem(id); }), failure::Failed);
    PlainConnection(file_).run("UPDATE bodies SET text = 'text'");
    EXPECT_EQ(numberOf([&] { store->loadItem(id); }), failure::Failed);
    PlainConnection(file_).run("UPDATE bodies SET text = x'', kind = 9");
    EXPECT_EQ(numberOf([&] { store->loadItem(id); }), failure::Failed);
    PlainConnection(file_).run("DELETE FROM bodies");
    EXPECT_EQ(numberOf([&] { store->loadItem(id); }), failure::Failed);
}

TEST_F(SqliteRefusal, AFileOnANetworkDriveAndNoNewOneIsMadeThere) {
    SqliteOptions network;
    std::vector<fs::path> asked;
    network.fileSystem = [&](const fs::path& path) {
        asked.push_back(path);
        return FileSystemKind{0x6969, ""};
    };
    expectRefused(u"network drive", network);
    makeStore();
    expectRefused(u"network drive", network);
    expectNothingBeside();
    EXPECT_EQ(asked, (std::vector<fs::path>{folder_.path(), file_}));
}

TEST_F(SqliteRefusal, AFolderThatIsNotThere) {
    file_ = folder_.file("absent") / "mail.lorvane";
    expectRefused(u"cannot be opened");
}

TEST_F(SqliteRefusal, ASaveWhileAnotherWriterHoldsTheFileAndItWorksAfterwards) {
    SqliteOptions impatient;
    impatient.busyTimeoutMs = 0;
    const SqliteFile file(file_, impatient);
    const auto store = file.mailStore();
    const std::u16string inbox = store->wellKnownFolder(6)->entryId;
    const ItemHead kept = store->saveItem(inbox, mail(u"kept"));
    PlainConnection other(file_);
    other.run("BEGIN IMMEDIATE");
    const std::uint64_t count = store->changeCount();
    for (int i = 0; i < 3; ++i) {
        const auto error = errorOf([&] { store->saveItem(inbox, mail(u"lost")); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->number(), failure::Failed);
        EXPECT_NE(error->description().find(u"in use by another program"), std::u16string::npos) << error->what();
        EXPECT_NE(error->description().find(u"mail.lorvane"), std::u16string::npos);
    }
    EXPECT_EQ(numberOf([&] { file.settings()->save(u"a", u"b", u"c", u"d"); }), failure::Failed);
    EXPECT_EQ(store->changeCount(), count);
    EXPECT_EQ(store->itemHeads(inbox), std::vector{kept}) << "reading goes on";
    other.run("COMMIT");
    store->saveItem(inbox, mail(u"later"));
    EXPECT_EQ(store->itemCount(inbox), 2u);
}

TEST_F(SqliteRefusal, AFileThatAnotherProgramHasForItselfAlone) {
    makeStore();
    PlainConnection other(file_);
    other.run("PRAGMA locking_mode = EXCLUSIVE; BEGIN IMMEDIATE; CREATE TABLE t (a); COMMIT");
    SqliteOptions impatient;
    impatient.busyTimeoutMs = 0;
    expectRefused(u"in use by another program", impatient);
}

}  // namespace
}  // namespace lorvane::mailstore::test
