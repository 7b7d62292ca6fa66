#include <gtest/gtest.h>

#include <sqlite3.h>
#include <algorithm>

#include <future>

#include "cli/Program.h"
#include "mailstore/SqliteStore.h"

/// The store under the commands: what is wrong with it, and others who use it.
namespace lorvane::cli::test {
namespace {

using Words = Program::Words;

void expectLeftAlone(const Program& lorvane, const std::string& words) {
    const auto file = lorvane.store() / "store.sqlite";
    const std::string before = textOf(file);
    for (const Words& command : {Words{"templates"}, Words{"insert", "--template", "Quote (Sample)"}, Words{"settings", "set", "A", "B"}}) {
        const Ended ended = lorvane(command);
        EXPECT_EQ(ended.status, 3) << ended;
        EXPECT_EQ(ended.out, "") << ended;
        EXPECT_NE(ended.err.find(words), std::string::npos) << ended;
        EXPECT_NE(ended.err.find(file.string()), std::string::npos) << "the line names the file: " << ended;
    }
    EXPECT_TRUE(textOf(file) == before) << "the file was changed";
}

TEST(Store, ThatIsNoneIsLeftAlone) {
    const Program lorvane;
    std::filesystem::create_directories(lorvane.store());
    mailstore::test::writeBytes(lorvane.store() / "store.sqlite", host::Bytes(5000, 'x'));
    expectLeftAlone(lorvane, "is not a store of Lorvane, or it is damaged");
}

TEST(Store, ThatIsDamagedIsLeftAlone) {
    const Program lorvane;
    lorvane.done({"templates"});
    auto bytes = mailstore::test::readBytes(lorvane.store() / "store.sqlite");
    ASSERT_GT(bytes.size(), 8192u);
    std::fill(bytes.begin() + 4096, bytes.end() - 2048, std::uint8_t{0xA5});
    mailstore::test::writeBytes(lorvane.store() / "store.sqlite", bytes);
    expectLeftAlone(lorvane, "damaged");
}

TEST(Store, OfANewerVersionIsLeftAlone) {
    const Program lorvane;
    lorvane.done({"templates"});
    sqlite3* connection = nullptr;
    ASSERT_EQ(sqlite3_open((lorvane.store() / "store.sqlite").c_str(), &connection), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(connection, "PRAGMA user_version = 9999", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(connection);
    expectLeftAlone(lorvane, "newer version");
}

TEST(Store, ThatCannotBeMadeIsAFault) {
    const Program lorvane;
    lorvane.file("file", "");
    const Ended ended = lorvane.bare({"--store", "file", "templates"});
    EXPECT_EQ(ended.status, 3) << ended;
    EXPECT_NE(ended.err.find("cannot make the folder"), std::string::npos) << ended;
}

TEST(Store, MayBeReadWhileAnotherProgramHasItOpenAndWrites) {
    const Program lorvane;
    const std::string list = lorvane.done({"templates"});
    const mailstore::SqliteFile other(lorvane.store() / "store.sqlite");
    const auto store = other.mailStore();
    EXPECT_EQ(lorvane.done({"templates"}), list);
    mailstore::ItemRecord record;
    record.head.subject = u"From next door";
    constexpr std::int32_t drafts = 16;
    store->saveItem(store->wellKnownFolder(drafts)->entryId, record);
    EXPECT_EQ(lorvane.done({"templates"}), list);
    EXPECT_EQ(lorvane.drafts().size(), 1u);
}

TEST(Store, SeveralCommandsAtOnceAllSucceed) {
    const Program lorvane;
    const Words words = {"insert", "--template", "Quote (Sample)", "--to", "John <john@example.com>"};
    const std::string message = lorvane.done(words);
    std::vector<std::future<Ended>> running;
    for (int i = 0; i < 6; ++i) running.push_back(std::async(std::launch::async, [&] { return lorvane(words); }));
    for (auto& run : running) EXPECT_EQ(run.get(), (Ended{0, message, ""}));
    EXPECT_EQ(lorvane.itemCount(), 3u);
}

TEST(Store, IsReadableByItsOwnerAlone) {
    const Program lorvane;
    lorvane.done({"templates"});
    EXPECT_EQ(std::filesystem::status(lorvane.store() / "store.sqlite").permissions(), std::filesystem::perms(0600));
}

}  // namespace
}  // namespace lorvane::cli::test
