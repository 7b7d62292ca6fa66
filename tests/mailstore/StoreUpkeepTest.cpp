#include "mailstore/StoreUpkeep.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <map>
#include <string>

#include "mailstore/LargestFile.h"
#include "mailstore/Records.h"
#include "mailstore/SqliteStore.h"
#include "mailstore/TempFolder.h"

/// Looking at a store and copying it, whoever else has it open; neither changes it.
namespace lorvane::mailstore::test {
namespace {

namespace fs = std::filesystem;

class StoreUpkeep : public testing::Test {
protected:
    void SetUp() override { addMails(file_, 40); }

    static void addMails(const fs::path& file, int count) {
        const auto store = SqliteFile(file).mailStore();
        const std::u16string inbox = store->wellKnownFolder(6)->entryId;
        for (int i = 0; i < count; ++i) store->saveItem(inbox, mail(u"subject", std::u16string(3000, u'x')));
    }

    static void run(const fs::path& file, const std::string& sql) {
        sqlite3* connection = nullptr;
        EXPECT_EQ(sqlite3_open(file.c_str(), &connection), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(connection);
        sqlite3_close(connection);
    }

    /// Every file of the folder with its bytes; an index is coordination between programs, and its bytes are not the store's.
    std::map<std::string, Bytes> allFiles() const {
        std::map<std::string, Bytes> files;
        for (const auto& entry : fs::directory_iterator(folder_.path())) {
            if (!entry.is_regular_file()) continue;
            const std::string name = entry.path().filename().string();
            files[name] = name.ends_with("-shm") ? Bytes() : readBytes(entry.path());
        }
        return files;
    }

    std::u16string refusal() const {
        const auto error = errorOf([&] { checkStore(file_, options_); });
        return error ? error->description() : u"";
    }
    std::u16string refusedCopy() const {
        const auto before = allFiles();
        const auto error = errorOf([&] { backUpStore(file_, target_, options_); });
        EXPECT_EQ(allFiles(), before) << "the copy left something, or the store was changed";
        return error ? error->description() : u"";
    }

    static testing::AssertionResult tells(const std::u16string& text, std::u16string_view words, std::u16string_view file = u"mail.lorvane") {
        if (text.find(words) != std::u16string::npos && text.find(file) != std::u16string::npos) return testing::AssertionSuccess();
        return testing::AssertionFailure() << host::HostError(0, text).what();
    }

    TempFolder folder_;
    fs::path file_ = folder_.file("mail.lorvane");
    fs::path target_ = folder_.file("copy.lorvane");
    SqliteOptions options_;
};

TEST_F(StoreUpkeep, ASoundStoreIsReadWholeAndNothingIsWritten) {
    const auto before = allFiles();
    const StoreFindings findings = checkStore(file_);
    EXPECT_EQ(findings.faults, std::vector<std::u16string>());
    EXPECT_EQ(findings.items, 40u);
    EXPECT_GT(findings.folders, 5u);
    EXPECT_GE(findings.version, 1);
    EXPECT_EQ(findings.version, findings.currentVersion);
    EXPECT_EQ(allFiles(), before);
}

TEST_F(StoreUpkeep, AFileOfAnyNameIsFound) {
    const fs::path odd = folder_.path() / "50% of #1? ü&x=y.lorvane";
    fs::rename(file_, odd);
    EXPECT_EQ(checkStore(odd).items, 40u);
    backUpStore(odd, folder_.path() / "copy of 50% #1?.lorvane");
    EXPECT_EQ(checkStore(folder_.path() / "copy of 50% #1?.lorvane").items, 40u);
}

TEST_F(StoreUpkeep, WhatAnotherProgramHasSavedCounts) {
    const SqliteFile other(file_);
    const auto store = other.mailStore();
    const std::u16string inbox = store->wellKnownFolder(6)->entryId;
    store->saveItem(inbox, mail(u"late"));
    const auto before = allFiles();
    ASSERT_GT(before.at("mail.lorvane-wal").size(), 0u);
    EXPECT_EQ(checkStore(file_).items, 41u);
    EXPECT_EQ(allFiles(), before);
    store->saveItem(inbox, mail(u"later"));
    EXPECT_EQ(checkStore(file_).items, 42u) << "the other program goes on";
}

TEST_F(StoreUpkeep, ACheckIsNotHinderedByAWriterInTheMiddleOfAChange) {
    options_.busyTimeoutMs = 0;
    sqlite3* writer = nullptr;
    ASSERT_EQ(sqlite3_open(file_.c_str(), &writer), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(writer, "BEGIN IMMEDIATE; DELETE FROM items", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_EQ(checkStore(file_, options_).items, 40u);
    backUpStore(file_, target_, options_);
    EXPECT_EQ(checkStore(target_).items, 40u);
    sqlite3_close(writer);
}

class LeftByACrash : public StoreUpkeep, public testing::WithParamInterface<bool> {
protected:
    /// A store with a save that is in its log alone, with the log's index or without.
    fs::path leave() const {
        const fs::path left = folder_.path() / "left";
        fs::create_directory(left);
        const SqliteFile other(file_);
        const auto store = other.mailStore();
        store->saveItem(store->wellKnownFolder(6)->entryId, mail(u"late"));
        for (const char* ending : {"", "-wal", "-shm"}) {
            const fs::path from = folder_.file((std::string("mail.lorvane") + ending).c_str());
            if (GetParam() || std::string(ending) != "-shm") fs::copy_file(from, left / from.filename());
        }
        return left / "mail.lorvane";
    }
};

TEST_P(LeftByACrash, TheSavesOfTheLogCountAndItStaysWhereItIs) {
    const fs::path store = leave();
    const Bytes log = readBytes(store.string() + "-wal");
    const Bytes main = readBytes(store);
    EXPECT_EQ(checkStore(store).items, 41u);
    EXPECT_TRUE(readBytes(store.string() + "-wal") == log);
    EXPECT_TRUE(readBytes(store) == main);
    EXPECT_EQ(fs::exists(store.string() + "-shm"), GetParam());
    backUpStore(store, target_);
    EXPECT_EQ(checkStore(target_).items, 41u);
}

TEST_P(LeftByACrash, ALogThatWasJustBegunHoldsNothing) {
    const fs::path store = leave();
    fs::resize_file(store.string() + "-wal", 32);
    EXPECT_EQ(checkStore(store).items, 40u);
    EXPECT_EQ(fs::file_size(store.string() + "-wal"), 32u);
    backUpStore(store, target_);
    EXPECT_EQ(checkStore(target_).items, 40u);
}

INSTANTIATE_TEST_SUITE_P(WithAndWithoutTheIndex, LeftByACrash, testing::Bool());

TEST_F(StoreUpkeep, WhatIsNoStoreIsRefused) {
    EXPECT_TRUE(tells((fs::remove(file_), refusal()), u"There is no store"));
    EXPECT_TRUE(tells(refusedCopy(), u"There is no store"));
    writeBytes(file_, {});
    EXPECT_TRUE(tells(refusal(), u"is empty"));
    EXPECT_TRUE(tells(refusedCopy(), u"is empty"));
    writeBytes(file_, Bytes(5000, 'x'));
    EXPECT_TRUE(tells(refusal(), u"is not a store of Lorvane"));
    EXPECT_TRUE(tells(refusedCopy(), u"is not a store of Lorvane"));
    fs::remove(file_);
    run(file_, "CREATE TABLE t (a)");
    EXPECT_TRUE(tells(refusal(), u"is not a store of Lorvane"));
    fs::remove(file_);
    fs::create_directory(file_);
    EXPECT_TRUE(tells(refusal(), u"is no file"));
    fs::remove(file_);
    EXPECT_EQ(allFiles(), (std::map<std::string, Bytes>()));
}

TEST_F(StoreUpkeep, ANewerVersionIsRefusedAndAnOlderOneIsTold) {
    run(file_, "PRAGMA user_version = 9999");
    EXPECT_TRUE(tells(refusal(), u"newer version"));
    EXPECT_TRUE(tells(refusedCopy(), u"newer version"));
    run(file_, "PRAGMA user_version = 1");
    const auto before = allFiles();
    const StoreFindings findings = checkStore(file_);
    EXPECT_EQ(findings.faults, std::vector<std::u16string>());
    EXPECT_EQ(findings.version, 1);
    EXPECT_GT(findings.currentVersion, 1);
    EXPECT_EQ(allFiles(), before) << "looking at it brings it to no other version";
}

TEST_F(StoreUpkeep, ANetworkDriveIsRefusedForTheStoreAndFineForTheCopy) {
    const fs::path drive = folder_.path();
    options_.fileSystem = [&](const fs::path& path) { return FileSystemKind{path == file_ || path == drive ? 0x6969u : 0xEF53u, ""}; };
    EXPECT_TRUE(tells(refusal(), u"network drive"));
    EXPECT_TRUE(tells(refusedCopy(), u"network drive"));
    options_.fileSystem = [&](const fs::path& path) { return FileSystemKind{path == file_ ? 0xEF53u : 0x6969u, ""}; };
    EXPECT_FALSE(errorOf([&] { backUpStore(file_, target_, options_); }));
}

TEST_F(StoreUpkeep, AStoreThatAnotherProgramKeepsToItselfIsRefused) {
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(file_.c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "PRAGMA locking_mode = EXCLUSIVE; BEGIN IMMEDIATE; DELETE FROM settings; COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    options_.busyTimeoutMs = 0;
    EXPECT_TRUE(tells(refusal(), u"in use by another program"));
    EXPECT_TRUE(tells(refusedCopy(), u"in use by another program"));
    sqlite3_close(other);
    EXPECT_EQ(refusal(), u"");
}

TEST_F(StoreUpkeep, EachPageThatIsOverwrittenIsFound) {
    const Bytes sound = readBytes(file_);
    constexpr std::size_t page = 4096;
    ASSERT_GT(sound.size(), 20 * page);
    for (std::size_t start = page; start + page <= sound.size(); start += page) {
        Bytes bytes = sound;
        std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(start), 64, std::uint8_t{0xEE});
        writeBytes(file_, bytes);
        std::u16string told = refusal();
        if (told.empty()) told = checkStore(file_).faults.at(0);
        EXPECT_TRUE(tells(told, u"damaged")) << start;
        EXPECT_TRUE(readBytes(file_) == bytes);
        if (start % (20 * page) == page) {
            EXPECT_TRUE(tells(refusedCopy(), u"damaged")) << start;
        }
    }
}

TEST_F(StoreUpkeep, AFileThatBreaksOffIsFound) {
    Bytes bytes = readBytes(file_);
    for (const std::size_t size : {bytes.size() / 2, std::size_t{120}}) {
        bytes.resize(size);
        writeBytes(file_, bytes);
        std::u16string told = refusal();
        if (told.empty()) told = checkStore(file_).faults.at(0);
        EXPECT_TRUE(tells(told, u"damaged")) << size;
    }
}

TEST_F(StoreUpkeep, AnItemThatCannotBeReadIsNamedAndTheOthersAreCounted) {
    std::u16string id;
    {
        const auto store = SqliteFile(file_).mailStore();
        id = store->saveItem(store->wellKnownFolder(6)->entryId, mail(u"Of no use")).entryId;
    }
    run(file_, "UPDATE details SET properties = x'0105' WHERE item = 41");
    const StoreFindings findings = checkStore(file_);
    ASSERT_EQ(findings.faults.size(), 1u);
    EXPECT_TRUE(tells(findings.faults[0], u"The item " + id + u" \"Of no use\" cannot be read."));
    EXPECT_EQ(findings.items, 40u);
    EXPECT_FALSE(errorOf([&] { backUpStore(file_, target_); })) << "what can be kept is kept";
}

TEST_F(StoreUpkeep, ARowThatBelongsToNothingIsFound) {
    run(file_, "PRAGMA foreign_keys = OFF; DELETE FROM items WHERE item = 7");
    const StoreFindings findings = checkStore(file_);
    ASSERT_FALSE(findings.faults.empty());
    EXPECT_TRUE(tells(findings.faults[0], u"belongs to nothing"));
}

TEST_F(StoreUpkeep, ACopyIsAStoreOfItsOwnInOneFile) {
    const SqliteFile other(file_);
    const auto store = other.mailStore();
    const std::u16string inbox = store->wellKnownFolder(6)->entryId;
    store->saveItem(inbox, mail(u"in the log"));
    backUpStore(file_, target_);
    store->saveItem(inbox, mail(u"after the copy"));
    EXPECT_FALSE(fs::exists(folder_.file("copy.lorvane-wal")));
    EXPECT_EQ(fs::status(target_).permissions(), fs::perms(0600));
    const auto copied = SqliteFile(target_).mailStore();
    EXPECT_EQ(copied->storeId(), store->storeId());
    EXPECT_EQ(copied->itemCount(inbox), 41u);
    copied->saveItem(inbox, mail(u"in the copy"));
    EXPECT_EQ(store->itemCount(inbox), 42u);
    std::vector<std::string> present;
    for (const auto& [name, bytes] : allFiles()) present.push_back(name);
    EXPECT_EQ(present,
              (std::vector<std::string>{"copy.lorvane", "copy.lorvane-shm", "copy.lorvane-wal", "mail.lorvane", "mail.lorvane-shm", "mail.lorvane-wal"}));
}

TEST_F(StoreUpkeep, WhatIsThereIsNeverReplaced) {
    writeBytes(target_, {'m', 'i', 'n', 'e'});
    EXPECT_TRUE(tells(refusedCopy(), u"File exists", u"copy.lorvane"));
    fs::remove(target_);
    fs::create_symlink(folder_.path() / "nowhere", target_);
    EXPECT_TRUE(tells(refusedCopy(), u"File exists", u"copy.lorvane"));
    fs::remove(target_);
    fs::create_directory(target_);
    EXPECT_TRUE(tells(refusedCopy(), u"File exists", u"copy.lorvane"));
}

TEST_F(StoreUpkeep, APlaceThatCannotBeWrittenIsRefused) {
    target_ = folder_.path() / "no" / "such" / "copy.lorvane";
    EXPECT_TRUE(tells(refusedCopy(), u"No such file or directory", u"copy.lorvane"));
    target_ = "/proc/copy.lorvane";
    EXPECT_TRUE(tells(refusedCopy(), u"cannot be made", u"copy.lorvane"));
}

TEST_F(StoreUpkeep, ACopyThatFindsNoRoomLeavesNothing) {
    // The store's own index needs the least of these.
    for (const rlim_t room : {rlim_t{40'000}, rlim_t{100'000}}) {
        std::u16string told;
        {
            const LargestFile limit(room);
            const auto error = errorOf([&] { backUpStore(file_, target_); });
            told = error ? error->description() : u"";
        }
        EXPECT_TRUE(tells(told, u"disk is full", u"copy.lorvane")) << room;
        EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), {}), 1) << room;
    }
}

}  // namespace
}  // namespace lorvane::mailstore::test
