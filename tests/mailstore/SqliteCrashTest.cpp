#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "mailstore/OtherProgram.h"
#include "mailstore/Records.h"
#include "mailstore/SqliteStore.h"
#include "mailstore/TempFolder.h"

namespace lorvane::mailstore::test {
namespace {

namespace fs = std::filesystem;

class SqliteCrash : public testing::Test {
protected:
    /// What a crash at this moment would leave: copies of the file and its log, taken while the store is open.
    fs::path leftBehind(std::size_t logBytes = SIZE_MAX) const {
        const fs::path copy = folder_.file("copy.lorvane");
        writeBytes(copy, readBytes(file_));
        Bytes log = readBytes(folder_.file("mail.lorvane-wal"));
        log.resize(std::min(log.size(), logBytes));
        writeBytes(folder_.file("copy.lorvane-wal"), log);
        fs::remove(folder_.file("copy.lorvane-shm"));
        return copy;
    }

    TempFolder folder_;
    fs::path file_ = folder_.file("mail.lorvane");
};

TEST_F(SqliteCrash, TheLastSaveThatReturnedIsThere) {
    std::mt19937 source(5);
    const auto store = SqliteFile(file_).mailStore();
    const std::u16string inbox = store->wellKnownFolder(6)->entryId;
    ItemHead head;
    for (int i = 0; i < 10; ++i) {
        const ItemRecord record = withHead(randomRecord(source), head);
        head = store->saveItem(inbox, record);
        const auto found = SqliteFile(leftBehind()).mailStore();
        EXPECT_EQ(found->loadItem(head.entryId), withHead(record, head));
    }
}

TEST_F(SqliteCrash, ALogThatBreaksOffAnywhereLeavesOneWholeSavedState) {
    std::mt19937 source(6);
    const auto store = SqliteFile(file_).mailStore();
    const std::u16string inbox = store->wellKnownFolder(6)->entryId;
    std::vector<ItemRecord> states;
    std::vector<std::size_t> logSizes;
    ItemHead head;
    for (int i = 0; i < 5; ++i) {
        ItemRecord record = withHead(randomRecord(source), head);
        head = store->saveItem(inbox, record);
        states.push_back(withHead(record, head));
        logSizes.push_back(fs::file_size(folder_.file("mail.lorvane-wal")));
    }
    for (std::size_t cut = 0; cut <= logSizes.back(); cut += 2503) {
        const auto found = SqliteFile(leftBehind(cut)).mailStore();
        const std::vector<ItemHead> heads = found->itemHeads(inbox);
        std::size_t whole = 0;
        while (whole < states.size() && logSizes[whole] <= cut) ++whole;
        ASSERT_EQ(heads.size(), whole == 0 ? 0u : 1u) << cut;
        if (whole == 0) continue;
        EXPECT_EQ(found->loadItem(heads[0].entryId), states[whole - 1]) << cut;
    }
}

TEST_F(SqliteCrash, AProgramThatIsKilledWhileItSavesLosesNothingThatReturned) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const auto store = SqliteFile(file_).mailStore();
        const std::u16string inbox = store->wellKnownFolder(6)->entryId;
        ItemHead head;
        for (;;) {
            const auto number = static_cast<std::uint32_t>(head.version) + 1;
            head = store->saveItem(inbox, withHead(mail(u"x", std::u16string(number, u'x')), head));
            if (::write(ends[1], &number, sizeof number) != sizeof number) ::_exit(1);
        }
    }
    ::close(ends[1]);
    std::uint32_t returned = 0;
    while (returned < 200 && ::read(ends[0], &returned, sizeof returned) == sizeof returned) {
    }
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    while (::read(ends[0], &returned, sizeof returned) == sizeof returned) {
    }
    ::close(ends[0]);
    ASSERT_GE(returned, 200u);

    const auto store = SqliteFile(file_).mailStore();
    const std::vector<ItemHead> heads = store->itemHeads(store->wellKnownFolder(6)->entryId);
    ASSERT_EQ(heads.size(), 1u);
    // The save that the kill met may or may not have reached the disk.
    EXPECT_GE(heads[0].version, returned);
    EXPECT_LE(heads[0].version, returned + 1);
    EXPECT_EQ(store->loadItem(heads[0].entryId).body.size(), heads[0].version);
}

/// Where a program has the file open twice, what closes the one must not let go the locks of the other: another program that closes the store would take itself
/// for the last one and throw the log away.
TEST_F(SqliteCrash, AProgramThatOpensTheFileASecondTimeKeepsItsHoldOnIt) {
    OtherProgram other([&](const OtherProgram::Pause& pause) {
        const auto items = [&] {
            const auto store = SqliteFile(file_).mailStore();
            return store->itemCount(store->wellKnownFolder(6)->entryId);
        };
        const std::size_t before = items();
        pause();
        if (before != 0 || items() != 1) ::_exit(1);
    });
    const auto store = SqliteFile(file_).mailStore();
    const SqliteFile second(file_);
    ASSERT_EQ(other.goOn(), OtherProgram::Stand::Paused);
    store->saveItem(store->wellKnownFolder(6)->entryId, mail(u"x"));
    EXPECT_EQ(other.goOn(), OtherProgram::Stand::Ended) << "the save is not to be found";
}

}  // namespace
}  // namespace lorvane::mailstore::test
