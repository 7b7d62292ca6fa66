#include <gtest/gtest.h>
#include <sqlite3.h>

#include "mailstore/OtherProgram.h"
#include "mailstore/Records.h"
#include "mailstore/SqliteDatabase.h"
#include "mailstore/SqliteStore.h"
#include "mailstore/TempFolder.h"

namespace lorvane::mailstore::test {
namespace {

class ChangeCount : public testing::Test {
protected:
    std::unique_ptr<MailStore> open() const { return SqliteFile(file_).mailStore(); }
    static std::u16string inboxId(const MailStore& store) { return store.wellKnownFolder(6)->entryId; }
    static void save(MailStore& store, std::u16string_view subject) { store.saveItem(inboxId(store), mail(std::u16string(subject))); }

    TempFolder folder_;
    std::filesystem::path file_ = folder_.file("mail.lorvane");
};

TEST_F(ChangeCount, EachCommitOfAnotherProcessIsToldByTheNextCall) {
    OtherProgram other([this](const OtherProgram::Pause& pause) {
        const auto theirs = open();
        for (int i = 0; i < 5; ++i) {
            pause();
            save(*theirs, u"theirs");
        }
    });
    ASSERT_EQ(other.goOn(), OtherProgram::Stand::Paused);
    const auto mine = open();
    for (std::size_t saved = 1; saved <= 5; ++saved) {
        const std::uint64_t before = mine->changeCount();
        EXPECT_EQ(mine->changeCount(), before);
        other.goOn();
        EXPECT_GT(mine->changeCount(), before) << saved;
        EXPECT_EQ(mine->itemCount(inboxId(*mine)), saved);
    }
}

TEST_F(ChangeCount, ACommitOfAProcessThatIsKilledBehindItIsTold) {
    OtherProgram other([this](const OtherProgram::Pause& pause) {
        const auto theirs = open();
        pause();
        save(*theirs, u"theirs");
        pause();
    });
    other.goOn();
    const auto mine = open();
    const std::uint64_t before = mine->changeCount();
    other.goOn();
    other.kill();
    EXPECT_GT(mine->changeCount(), before);
    EXPECT_EQ(mine->itemCount(inboxId(*mine)), 1u);
}

TEST_F(ChangeCount, CommitsAreToldAfterTheLogWasTakenIntoTheFileAndBegunAnew) {
    const auto mine = open();
    const auto theirs = open();
    SqliteDatabase upkeep(file_, 0);
    for (int i = 0; i < 4; ++i) {
        save(*theirs, u"theirs");
        std::uint64_t before = mine->changeCount();
        upkeep.number("PRAGMA wal_checkpoint(TRUNCATE)");
        save(*theirs, u"theirs again");
        EXPECT_GT(mine->changeCount(), before) << i;
        before = mine->changeCount();
        save(*mine, u"mine");
        EXPECT_GT(mine->changeCount(), before) << i;
        EXPECT_EQ(mine->itemCount(inboxId(*mine)), 3u * static_cast<std::size_t>(i + 1));
    }
}

TEST_F(ChangeCount, SavesOfTwoInTurnAreToldToBoth) {
    const std::unique_ptr<MailStore> stores[] = {open(), open()};
    std::uint64_t counts[] = {stores[0]->changeCount(), stores[1]->changeCount()};
    for (int turn = 0; turn < 20; ++turn) {
        save(*stores[turn % 3 == 0], u"x");
        for (int i = 0; i < 2; ++i) {
            const std::uint64_t before = std::exchange(counts[i], stores[i]->changeCount());
            EXPECT_GT(counts[i], before) << turn << " at " << i;
            EXPECT_EQ(stores[i]->changeCount(), counts[i]);
        }
    }
}

TEST_F(ChangeCount, AStoreWithoutALogTellsTheCommitsOfOthersToo) {
    SqliteDatabase mine(file_, 0), theirs(file_, 0);
    mine.execute("CREATE TABLE t (a)");
    ASSERT_EQ(mine.word("PRAGMA journal_mode"), "delete");
    mine.changeCount();
    for (int i = 0; i < 3; ++i) {
        const std::uint64_t before = mine.changeCount();
        EXPECT_EQ(mine.changeCount(), before);
        theirs.execute("INSERT INTO t VALUES (1)");
        EXPECT_GT(mine.changeCount(), before);
    }
}

}  // namespace
}  // namespace lorvane::mailstore::test
