#include <gtest/gtest.h>

#include <sqlite3.h>
#include <algorithm>

#include "cli/Program.h"
#include "mailstore/LargestFile.h"
#include "mailstore/SqliteStore.h"

/// `store check` and `store backup`.
namespace lorvane::cli::test {
namespace {

namespace fs = std::filesystem;
using Words = Program::Words;

class StoreUpkeep : public testing::Test {
protected:
    StoreUpkeep() { lorvane.done({"templates"}); }

    void run(const std::string& sql) const {
        sqlite3* connection = nullptr;
        ASSERT_EQ(sqlite3_open(file.c_str(), &connection), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(connection);
        sqlite3_close(connection);
    }
    /// The files of the store's folder with their content.
    std::map<std::string, std::string> storeFiles() const {
        std::map<std::string, std::string> files;
        for (const auto& entry : fs::directory_iterator(lorvane.store()))
            if (entry.is_regular_file()) files[entry.path().filename().string()] = textOf(entry.path());
        return files;
    }
    /// A check that finds something wrong and changes nothing.
    void expectWrong(const std::string& words) const {
        const auto before = storeFiles();
        const Ended ended = lorvane({"store", "check"});
        EXPECT_EQ(ended.status, 3) << ended;
        EXPECT_EQ(ended.out, "");
        EXPECT_NE(ended.err.find(words), std::string::npos) << ended;
        EXPECT_NE(ended.err.find(file.string()), std::string::npos) << "the line names the file: " << ended;
        EXPECT_TRUE(storeFiles() == before) << "the store was changed";
    }

    Program lorvane;
    fs::path file = lorvane.store() / "store.sqlite";
};

TEST_F(StoreUpkeep, ASoundStoreIsToldAsSuchAndLeftAsItIs) {
    const auto before = storeFiles();
    const std::string line = file.string() + ": sound; 12 folders, 3 items\n";
    EXPECT_EQ(lorvane({"store", "check"}), (Ended{0, line, ""}));
    EXPECT_EQ(lorvane.bare({"store", "check", file.string()}), (Ended{0, line, ""}));
    EXPECT_EQ(lorvane.bare({"store", "check", lorvane.store().string()}), (Ended{0, line, ""})) << "or the folder that it lies in";
    EXPECT_TRUE(storeFiles() == before);
    EXPECT_FALSE(fs::exists(lorvane.home() / ".local")) << "no store of its own is made for looking at another one";
}

TEST_F(StoreUpkeep, NoHostIsStartedForIt) {
    EXPECT_EQ(lorvane({"store", "check", "--host-version", "12"}).status, 0);
    EXPECT_EQ(lorvane({"store", "backup", "copy.sqlite", "--host-version", "12"}), (Ended{0, "", ""}));
}

TEST_F(StoreUpkeep, AStoreThatIsNotThereIsToldAndNotMade) {
    const Program empty;
    const Ended ended = empty({"store", "check"});
    EXPECT_EQ(ended.status, 3) << ended;
    EXPECT_NE(ended.err.find("There is no store \"" + (empty.store() / "store.sqlite").string()), std::string::npos) << ended;
    EXPECT_EQ(empty({"store", "backup", "copy.sqlite"}).status, 3);
    EXPECT_FALSE(fs::exists(empty.store()));
    EXPECT_FALSE(fs::exists(empty.folder() / "copy.sqlite"));
}

TEST_F(StoreUpkeep, WhatIsNoStoreIsTold) {
    lorvane.file("notes.txt", "From the desk");
    const Ended ended = lorvane({"store", "check", "notes.txt"});
    EXPECT_EQ(ended.status, 3) << ended;
    EXPECT_NE(ended.err.find("\"notes.txt\" is not a store of Lorvane, or it is damaged."), std::string::npos) << ended;
    EXPECT_EQ(lorvane.content("notes.txt"), "From the desk");
}

TEST_F(StoreUpkeep, DamageIsFound) {
    auto bytes = mailstore::test::readBytes(file);
    ASSERT_GT(bytes.size(), 8192u);
    std::fill(bytes.begin() + 4096, bytes.end() - 2048, std::uint8_t{0xA5});
    mailstore::test::writeBytes(file, bytes);
    expectWrong("is damaged");
    const Ended ended = lorvane({"store", "backup", "copy.sqlite"});
    EXPECT_EQ(ended.status, 3) << ended;
    EXPECT_NE(ended.err.find("is damaged"), std::string::npos) << ended;
    EXPECT_TRUE(fs::is_empty(lorvane.folder())) << "half a copy";
}

TEST_F(StoreUpkeep, AnItemThatCannotBeReadIsNamed) {
    run("UPDATE details SET properties = x'0105' WHERE item = 2");
    expectWrong("\"Quote (Sample)\" cannot be read.");
}

TEST_F(StoreUpkeep, AVersionThatIsNotThisProgramsIsTold) {
    run("PRAGMA user_version = 9999");
    expectWrong("newer version");
    run("PRAGMA user_version = 1");
    const Ended older = lorvane({"store", "check"});
    EXPECT_EQ(older.status, 0) << older;
    EXPECT_NE(older.out.find(": sound; of version 1, which the next command that opens it brings to "), std::string::npos) << older;
}

TEST_F(StoreUpkeep, AStoreThatAnotherProgramHasOpenIsCheckedAndCopiedAsItWasSaved) {
    const mailstore::SqliteFile other(file);
    const auto store = other.mailStore();
    constexpr std::int32_t drafts = 16;
    mailstore::ItemRecord record;
    record.head.subject = u"From next door";
    store->saveItem(store->wellKnownFolder(drafts)->entryId, record);
    EXPECT_NE(lorvane.done({"store", "check"}).find("12 folders, 4 items"), std::string::npos);
    lorvane.done({"store", "backup", "copy.sqlite"});
    store->saveItem(store->wellKnownFolder(drafts)->entryId, record);
    EXPECT_EQ(lorvane.done({"store", "check", "copy.sqlite"}), "copy.sqlite: sound; 12 folders, 4 items\n");
    EXPECT_NE(lorvane.done({"store", "check"}).find("12 folders, 5 items"), std::string::npos);
}

TEST_F(StoreUpkeep, AStoreThatAnotherProgramKeepsToItselfIsTold) {
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "PRAGMA locking_mode = EXCLUSIVE; BEGIN IMMEDIATE; CREATE TABLE t (a); COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    // Reading the file here would take the lock away, which is this process's.
    const Ended ended = lorvane({"store", "check"});
    sqlite3_close(other);
    EXPECT_EQ(ended.status, 3) << ended;
    EXPECT_EQ(ended.out, "");
    EXPECT_NE(ended.err.find("in use by another program"), std::string::npos) << ended;
}

TEST_F(StoreUpkeep, ACopyTakesTheStoresPlace) {
    lorvane.addText("Kept", "text");
    lorvane.done({"settings", "set", "ShowTips", "False"});
    const std::string list = lorvane.done({"templates", "--json"});
    lorvane.done({"store", "backup", "copy of 2028 #1?.sqlite"});
    const fs::path copy = lorvane.folder() / "copy of 2028 #1?.sqlite";
    EXPECT_EQ(fs::status(copy).permissions(), fs::perms(0600));
    EXPECT_EQ(std::distance(fs::directory_iterator(lorvane.folder()), {}), 1) << "one file";
    lorvane.done({"template", "delete", "Kept"});
    ASSERT_NE(lorvane.done({"templates", "--json"}), list);
    fs::copy_file(copy, file, fs::copy_options::overwrite_existing);
    EXPECT_EQ(lorvane.done({"templates", "--json"}), list);
    EXPECT_EQ(lorvane.done({"settings", "get", "ShowTips"}), "False\n");
}

TEST_F(StoreUpkeep, ACopyReplacesNothing) {
    lorvane.file("mine.txt", "mine");
    fs::create_directory(lorvane.folder() / "folder");
    fs::create_symlink("nowhere", lorvane.folder() / "link");
    for (const std::string name : {"mine.txt", "folder", "link", "/dev/null"})
        EXPECT_EQ(lorvane({"store", "backup", name}), (Ended{1, "", "lorvane: " + name + " is there already; a copy replaces nothing\n"}));
    EXPECT_EQ(lorvane.content("mine.txt"), "mine");
    EXPECT_EQ(lorvane({"store", "backup", file.string()}).status, 1) << "least of all the store";
}

TEST_F(StoreUpkeep, APlaceThatCannotBeWrittenIsAFault) {
    const auto before = storeFiles();
    for (const std::string name : {"no/such/folder.sqlite", "/proc/copy.sqlite"}) {
        const Ended ended = lorvane({"store", "backup", name});
        EXPECT_EQ(ended.status, 3) << ended;
        EXPECT_NE(ended.err.find("The copy \"" + name + "\" cannot be made: "), std::string::npos) << ended;
    }
    EXPECT_TRUE(storeFiles() == before);
}

TEST_F(StoreUpkeep, ADiskThatIsFullLeavesNoHalfCopy) {
    const mailstore::test::LargestFile limit(40'000);
    ASSERT_GT(fs::file_size(file), 40'000u);
    const Ended ended = lorvane({"store", "backup", "copy.sqlite"});
    EXPECT_EQ(ended.status, 3) << ended;
    EXPECT_NE(ended.err.find("disk is full"), std::string::npos) << ended;
    EXPECT_TRUE(fs::is_empty(lorvane.folder()));
}

TEST_F(StoreUpkeep, AResultThatCannotBeWrittenIsAFault) {
    const Ended ended = lorvane({"store", "check"}, {.outTo = "/dev/full"});
    EXPECT_EQ(ended.status, 3) << ended;
    EXPECT_NE(ended.err.find("cannot write standard output"), std::string::npos) << ended;
}

}  // namespace
}  // namespace lorvane::cli::test
