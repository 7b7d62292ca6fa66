#include <gtest/gtest.h>

#include <algorithm>

#include "mailstore/FaultyDisk.h"
#include "mailstore/KilledAtEachWrite.h"
#include "mailstore/OtherProgram.h"
#include "mailstore/Records.h"
#include "mailstore/SqliteStore.h"
#include "mailstore/StoreContent.h"
#include "mailstore/TempFolder.h"

/// Each write to the disk fails once, or meets the program's end: what was acknowledged is there, and nothing half done.
namespace lorvane::mailstore::test {
namespace {

namespace fs = std::filesystem;

constexpr std::u16string_view mark = u"Asdw34r2";

SqliteOptions storeOptions() {
    SqliteOptions options;
    options.storeId = StoreId{1};
    options.typedMarks = {std::u16string(mark)};
    return options;
}

ItemRecord draft(std::u16string subject, std::u16string body) {
    ItemRecord record = mail(std::move(subject), std::move(body));
    record.properties[tags::MessageFlags] = message_flags::Unsent;
    return record;
}

/// What a program does with a store, one acknowledged step after the other.
class Work {
public:
    explicit Work(const SqliteFile& file) : file_(file), store_(file.mailStore()) {}

    static constexpr std::size_t steps = 9;
    void step(std::size_t number) {
        switch (number) {
            case 0: {
                ItemRecord record = draft(u"new", std::u16string(200, u'n'));
                record.attachments.resize(1);
                record.attachments[0].data = std::make_shared<const Bytes>(Bytes(9'000, 0x5A));
                opened_ = withHead(record, store_->saveOpenItem(folder(16), record, note_));
                return;
            }
            case 1:
                opened_.body += mark;
                opened_.head = store_->saveOpenItem(u"", opened_, note_);
                return;
            case 2:
                opened_.body = u"as wanted";
                opened_.head = store_->saveOpenItem(u"", opened_, note_);
                return;
            case 3:
                note_.reset();
                return;
            case 4: {
                ItemRecord known = store_->loadItem(store_->itemHeads(folder(6)).front().entryId);
                known.head.subject = u"known, changed";
                store_->saveItem(u"", known);
                return;
            }
            case 5:
                store_->moveItem(opened_.head.entryId, folder(6));
                return;
            case 6: {
                FolderRecord made;
                made.name = u"Templates";
                store_->addFolder(folder(6), made);
                return;
            }
            case 7:
                store_->removeItem(store_->itemHeads(folder(6)).at(1).entryId);
                return;
            default:
                file_.settings()->save(u"app", u"section", u"key", u"value");
        }
    }

private:
    std::u16string folder(std::int32_t number) const { return store_->wellKnownFolder(number)->entryId; }

    const SqliteFile& file_;
    std::unique_ptr<MailStore> store_;
    std::unique_ptr<OpenNote> note_;
    ItemRecord opened_;
};

/// How the store stands before the first step and behind each.
using States = std::vector<StoreContent>;

class SqliteFault : public testing::Test {
protected:
    /// A closed store with a few items in it.
    void SetUp() override {
        {
            std::mt19937 source(3);
            const auto store = SqliteFile(file_, storeOptions()).mailStore();
            for (int i = 0; i < 3; ++i) store->saveItem(store->wellKnownFolder(6)->entryId, randomRecord(source));
        }
        begun_ = readBytes(file_);
    }

    void beginAnew() const {
        for (const char* ending : {"-wal", "-shm", "-journal"}) fs::remove(file_.string() + ending);
        writeBytes(file_, begun_);
    }

    States undisturbed() const {
        beginAnew();
        const SqliteFile file(file_, storeOptions());
        States states = {contentOf(file)};
        Work work(file);
        for (std::size_t step = 0; step < Work::steps; ++step) {
            work.step(step);
            states.push_back(contentOf(file));
        }
        return states;
    }

    /// What a program finds afterwards that knows no marks.
    StoreContent found() const {
        const SqliteFile file(file_);
        file.check();
        return contentOf(file);
    }

    /// How far the work came with this write failing; the error it met.
    struct Broken {
        std::size_t done = 0;
        std::optional<host::HostError> error;
    };
    Broken workWith(FaultyDisk& disk, std::size_t write, DiskFault fault) const {
        Broken broken;
        disk.failAt(write, fault);
        broken.error = errorOf([&] {
            const SqliteFile file(file_, storeOptions());
            Work work(file);
            for (; broken.done < Work::steps; ++broken.done) work.step(broken.done);
        });
        return broken;
    }

    static bool contains(const host::HostError& error, std::u16string_view words) { return error.description().find(words) != std::u16string::npos; }

    /// Sweeps over all writes of the work.
    void sweep(DiskFault fault, const std::vector<std::u16string_view>& sentences) {
        const States states = undisturbed();
        for (std::size_t write = 1;; ++write) {
            SCOPED_TRACE(write);
            beginAnew();
            FaultyDisk disk;
            const Broken broken = workWith(disk, write, fault);
            const bool failed = disk.hasFailed();
            disk.heal();
            if (!failed) {
                EXPECT_FALSE(broken.error);
                ASSERT_GT(write, 60u) << "the work writes more than that";
                return;
            }
            if (broken.error) {
                EXPECT_EQ(broken.error->number(), host::host_failure::Failed);
                EXPECT_TRUE(std::ranges::any_of(sentences, [&](std::u16string_view words) { return contains(*broken.error, words); })) << broken.error->what();
                EXPECT_TRUE(contains(*broken.error, u"mail.lorvane")) << broken.error->what();
            }
            const StoreContent now = found();
            const bool theStepCameThrough = broken.error && now == states[broken.done + 1];
            EXPECT_TRUE(now == states[broken.done] || theStepCameThrough) << testing::PrintToString(now);
            if (HasFailure()) return;
        }
    }

    TempFolder folder_;
    fs::path file_ = folder_.file("mail.lorvane");
    Bytes begun_;
};

TEST_F(SqliteFault, AFullDiskAtAnyWriteIsToldAndWhatWasSavedIsWhole) {
    sweep(DiskFault::Full, {u"The disk is full"});
}

TEST_F(SqliteFault, AnyWriteThatFailsOnceIsToldAndWhatWasSavedIsWhole) {
    sweep(DiskFault::WriteError, {u"could not be read or written", u"cannot be opened"});
}

TEST_F(SqliteFault, ADiskThatBreaksAtAnyWriteIsToldAndWhatWasSavedIsWhole) {
    sweep(DiskFault::BrokenForGood, {u"could not be read or written", u"cannot be opened"});
}

TEST_F(SqliteFault, AStoreGoesOnInTheSameProgramOnceThereIsRoomAgain) {
    for (std::size_t write = 1; write < 80; write += 7) {
        beginAnew();
        FaultyDisk disk;
        const SqliteFile file(file_, storeOptions());
        Work work(file);
        disk.failAt(write, DiskFault::Full);
        const auto error = errorOf([&] {
            for (std::size_t step = 0; step < Work::steps; ++step) work.step(step);
        });
        ASSERT_TRUE(error) << write;
        disk.heal();
        const auto store = file.mailStore();
        const ItemHead head = store->saveItem(store->wellKnownFolder(6)->entryId, mail(u"later"));
        file.check();
        EXPECT_EQ(store->findItem(head.entryId)->subject, u"later");
        EXPECT_EQ(SqliteFile(file_).mailStore()->findItem(head.entryId)->subject, u"later");
    }
}

TEST_F(SqliteFault, AProgramKilledAtAnyWriteLosesNothingThatWasAcknowledged) {
    const States states = undisturbed();
    KilledAtEachWrite killed;
    killed.begin = [&] { beginAnew(); };
    killed.act = [&](const auto& acknowledge) {
        const SqliteFile file(file_, storeOptions());
        Work work(file);
        for (std::size_t step = 0; step < Work::steps; ++step) {
            work.step(step);
            acknowledge();
        }
    };
    killed.check = [&](std::size_t done) {
        const StoreContent now = found();
        EXPECT_TRUE(now == states[done] || (done < Work::steps && now == states[done + 1])) << done << testing::PrintToString(now);
    };
    EXPECT_GT(killed.sweep(), 60u);
}

TEST_F(SqliteFault, AProgramKilledAtAnyWriteOfTheFirstStartLeavesAFileThatBecomesAStore) {
    const fs::path first = folder_.file("first.lorvane");
    KilledAtEachWrite killed;
    killed.begin = [&] {
        for (const char* ending : {"", "-wal", "-shm", "-journal"}) fs::remove(first.string() + ending);
    };
    killed.act = [&](const auto&) { const SqliteFile file(first, storeOptions()); };
    killed.check = [&](std::size_t) {
        const SqliteFile file(first, storeOptions());
        file.check();
        EXPECT_EQ(contentOf(file).folders.size(), 10u);
        const auto store = file.mailStore();
        EXPECT_NO_THROW(store->saveItem(store->wellKnownFolder(6)->entryId, mail(u"x")));
    };
    EXPECT_GT(killed.sweep(), 10u);
}

TEST_F(SqliteFault, AProgramKilledAtAnyWriteOfTheMendingLeavesTheMarkOrNone) {
    beginAnew();
    killedBehind([&] {
        auto* const store = SqliteFile(file_, storeOptions()).mailStore().release();
        for (const char16_t* subject : {u"one", u"two"}) {
            auto* const note = new std::unique_ptr<OpenNote>;
            store->saveOpenItem(store->wellKnownFolder(16)->entryId, draft(subject, u"Dear " + std::u16string(mark) + u"Mary"), *note);
        }
    });
    const auto bodies = [&] {
        std::vector<std::u16string> list;
        const auto store = SqliteFile(file_).mailStore();
        for (const ItemHead& head : store->itemHeads(store->wellKnownFolder(16)->entryId)) list.push_back(store->loadItem(head.entryId).body);
        return list;
    };
    const std::u16string with = u"Dear " + std::u16string(mark) + u"Mary", without = u"Dear Mary";
    ASSERT_EQ(bodies(), (std::vector{with, with}));
    begun_ = readBytes(file_);  // reading closed it, which brought everything into the file

    KilledAtEachWrite killed;
    killed.begin = [&] { beginAnew(); };
    killed.act = [&](const auto&) { const SqliteFile file(file_, storeOptions()); };
    killed.check = [&](std::size_t) {
        const auto left = bodies();
        EXPECT_TRUE(left == std::vector({with, with}) || left == std::vector({without, with}) || left == std::vector({without, without}));
        const SqliteFile next(file_, storeOptions());
        EXPECT_EQ(next.mending().subjects.size(), static_cast<std::size_t>(std::ranges::count(left, with)));
        EXPECT_EQ(bodies(), (std::vector{without, without}));
    };
    EXPECT_GT(killed.sweep(), 10u);
}

}  // namespace
}  // namespace lorvane::mailstore::test
