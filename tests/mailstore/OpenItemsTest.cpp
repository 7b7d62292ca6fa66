#include <gtest/gtest.h>
#include <sqlite3.h>

#include "mailstore/OtherProgram.h"
#include "mailstore/Records.h"
#include "mailstore/SqliteStore.h"
#include "mailstore/StoreContent.h"
#include "mailstore/TempFolder.h"

/// A text that a program types into an open item for a moment does not stay where the program is killed.
namespace lorvane::mailstore::test {
namespace {

using Texts = std::vector<std::u16string>;
using Stand = OtherProgram::Stand;

constexpr std::u16string_view mark = u"Asdw34r2";

ItemRecord draft(std::u16string body) {
    ItemRecord record = mail(u"Offer", std::move(body));
    record.properties[tags::MessageFlags] = message_flags::Read | message_flags::Unsent;
    return record;
}

std::u16string marked(std::u16string_view front, std::u16string_view behind = u"") {
    return std::u16string(front) + std::u16string(mark) + std::u16string(behind);
}

class OpenItems : public testing::Test {
protected:
    static SqliteOptions withMarks() {
        SqliteOptions options;
        options.typedMarks = {std::u16string(mark)};
        return options;
    }
    SqliteFile open() const { return SqliteFile(file_, withMarks()); }
    static std::u16string inboxId(const MailStore& store) { return store.wellKnownFolder(6)->entryId; }

    /// Saves it as an item that stands open, in a program that is killed then. `change` is what it saves afterwards.
    void killedOver(const ItemRecord& record, const std::function<void(ItemRecord&)>& change) const {
        killedBehind([&] {
            // Never closed: the program has no end of its own.
            auto* const store = open().mailStore().release();
            auto* const note = new std::unique_ptr<OpenNote>;
            ItemRecord item = withHead(record, store->saveOpenItem(inboxId(*store), record, *note));
            change(item);
            store->saveOpenItem(u"", item, *note);
        });
    }

    /// The one item there is, without opening the store as the program does.
    ItemRecord onlyItem() const {
        const std::vector<PlacedItem> items = itemsOf(*SqliteFile(file_).mailStore());
        EXPECT_EQ(items.size(), 1u);
        return items.empty() ? ItemRecord() : items[0].record;
    }

    std::int64_t rows() const { return number("SELECT count(*) FROM open_items"); }
    std::int64_t number(const char* sql) const {
        sqlite3* connection = nullptr;
        sqlite3_stmt* statement = nullptr;
        EXPECT_EQ(sqlite3_open(file_.c_str(), &connection), SQLITE_OK);
        EXPECT_EQ(sqlite3_prepare_v2(connection, sql, -1, &statement, nullptr), SQLITE_OK) << sqlite3_errmsg(connection);
        const std::int64_t value = sqlite3_step(statement) == SQLITE_ROW ? sqlite3_column_int64(statement, 0) : 0;
        sqlite3_finalize(statement);
        sqlite3_close(connection);
        return value;
    }

    TempFolder folder_;
    std::filesystem::path file_ = folder_.file("mail.lorvane");
};

TEST_F(OpenItems, AMarkThatAKilledProgramLeftIsTakenOutOnOpeningAndTold) {
    killedOver(draft(u"Dear Mary"), [](ItemRecord& item) { item.body = marked(u"Dear ", u"Mary"); });
    EXPECT_EQ(onlyItem().body, marked(u"Dear ", u"Mary")) << "a program that knows no marks leaves it";
    {
        const SqliteFile file = open();
        EXPECT_EQ(file.mending().subjects, Texts{u"Offer"});
        EXPECT_TRUE(file.mending().failures.empty());
        const ItemRecord item = onlyItem();
        EXPECT_EQ(item.body, u"Dear Mary");
        EXPECT_TRUE(item.bodyChanged);
        EXPECT_EQ(item.head.version, 3u) << "another program that has it open is told";
    }
    EXPECT_EQ(rows(), 0);
    EXPECT_TRUE(open().mending().subjects.empty()) << "once is enough";
}

TEST_F(OpenItems, ItIsTakenOutOfTheSubjectAndTheRecipientsToo) {
    ItemRecord record = draft(u"Text");
    record.recipients = {{u"Mary Major", u"mary@example.com", u"SMTP", 1, true}};
    killedOver(record, [](ItemRecord& item) {
        item.head.subject = marked(u"Off", u"er");
        item.recipients = {{marked(u"Mary Major"), u"", u"", 1, false}, {std::u16string(mark), u"", u"", 2, false}};
    });
    EXPECT_EQ(open().mending().subjects, Texts{u"Offer"});
    const ItemRecord item = onlyItem();
    EXPECT_EQ(item.head.subject, u"Offer");
    EXPECT_EQ(item.recipients, record.recipients) << "with the address of its first opening";
    EXPECT_FALSE(item.bodyChanged);
}

TEST_F(OpenItems, EverythingElseOfTheItemStaysToTheByte) {
    std::mt19937 source(11);
    ItemRecord record = randomRecord(source);
    record.properties[tags::MessageFlags] = message_flags::Unsent;
    record.attachments.resize(1);
    record.attachments[0].data = std::make_shared<const Bytes>(randomBytes(source, 20'000));
    killedOver(record, [](ItemRecord& item) { item.body += mark; });
    EXPECT_EQ(open().mending().subjects.size(), 1u);
    ItemRecord expected = record;
    expected.bodyChanged = true;
    const ItemRecord item = onlyItem();
    expected.head.entryId = item.head.entryId;
    expected.head.version = 3;
    EXPECT_EQ(item, expected);
}

TEST_F(OpenItems, AnItemThatARunningProgramHasOpenIsNeverTouched) {
    OtherProgram other([&](const OtherProgram::Pause& pause) {
        const auto store = open().mailStore();
        std::unique_ptr<OpenNote> note;
        const ItemRecord record = draft(marked(u"Dear "));
        ItemRecord item = withHead(record, store->saveOpenItem(inboxId(*store), record, note));
        pause();
        item.body += u"Mary";
        store->saveOpenItem(u"", item, note);
        pause();
    });
    ASSERT_EQ(other.goOn(), Stand::Paused);
    EXPECT_TRUE(open().mending().subjects.empty());
    EXPECT_EQ(onlyItem().body, marked(u"Dear "));
    ASSERT_EQ(other.goOn(), Stand::Paused) << "its next save is no conflict";
    other.kill();
    EXPECT_EQ(open().mending().subjects, Texts{u"Offer"});
    EXPECT_EQ(onlyItem().body, u"Dear Mary");
}

TEST_F(OpenItems, AMarkStaysAsLongAsOneOfTwoProgramsThatHaveTheItemOpenRuns) {
    std::u16string id;
    {
        const auto store = open().mailStore();
        id = store->saveItem(inboxId(*store), draft(u"Dear ")).entryId;
    }
    OtherProgram reader([&](const OtherProgram::Pause& pause) {
        const auto store = open().mailStore();
        const auto note = store->noteOpen(id);
        pause();
    });
    ASSERT_EQ(reader.goOn(), Stand::Paused);
    killedBehind([&] {
        auto* const store = open().mailStore().release();
        auto* const note = new std::unique_ptr<OpenNote>(store->noteOpen(id));
        ItemRecord item = store->loadItem(id);
        item.body += mark;
        store->saveOpenItem(u"", item, *note);
    });
    EXPECT_TRUE(open().mending().subjects.empty());
    EXPECT_EQ(onlyItem().body, marked(u"Dear "));
    EXPECT_EQ(reader.goOn(), Stand::Ended) << "closes the item, which holds the mark of the other";
    EXPECT_EQ(open().mending().subjects, Texts{u"Offer"});
    EXPECT_EQ(onlyItem().body, u"Dear ");
}

TEST_F(OpenItems, AnItemThatWasClosedIsNotLookedAt) {
    OtherProgram other([&](const OtherProgram::Pause& pause) {
        const auto store = open().mailStore();
        std::unique_ptr<OpenNote> note;
        const ItemRecord record = draft(u"Dear ");
        ItemRecord item = withHead(record, store->saveOpenItem(inboxId(*store), record, note));
        note.reset();
        item.body = marked(u"As wanted: ");
        store->saveItem(u"", item);
        pause();
    });
    ASSERT_EQ(other.goOn(), Stand::Paused);
    EXPECT_EQ(rows(), 0);
    other.kill();
    EXPECT_TRUE(open().mending().subjects.empty());
    EXPECT_EQ(onlyItem().body, marked(u"As wanted: "));
}

TEST_F(OpenItems, AnItemThatIsClosedWithAMarkInItIsMendedWhenItsProgramHasEnded) {
    OtherProgram other([&](const OtherProgram::Pause& pause) {
        {
            const auto store = open().mailStore();
            std::unique_ptr<OpenNote> note;
            store->saveOpenItem(inboxId(*store), draft(marked(u"Dear ")), note);
        }
        pause();
    });
    ASSERT_EQ(other.goOn(), Stand::Paused);
    EXPECT_TRUE(open().mending().subjects.empty());
    EXPECT_EQ(other.goOn(), Stand::Ended);
    EXPECT_EQ(open().mending().subjects, Texts{u"Offer"});
    EXPECT_EQ(onlyItem().body, u"Dear ");
}

TEST_F(OpenItems, WhatWasSentMeanwhileStaysAsItWasSent) {
    killedOver(draft(u"Dear "), [](ItemRecord& item) {
        item.body += mark;
        item.properties[tags::MessageFlags] = message_flags::Read;
    });
    EXPECT_TRUE(open().mending().subjects.empty());
    EXPECT_EQ(onlyItem().body, marked(u"Dear "));
    EXPECT_EQ(rows(), 0);
}

TEST_F(OpenItems, AnItemThatWasMovedIsFoundWhereItLies) {
    killedBehind([&] {
        auto* const store = open().mailStore().release();
        auto* const note = new std::unique_ptr<OpenNote>;
        const ItemHead head = store->saveOpenItem(inboxId(*store), draft(marked(u"Dear ")), *note);
        store->moveItem(head.entryId, store->wellKnownFolder(16)->entryId);
    });
    EXPECT_EQ(open().mending().subjects, Texts{u"Offer"});
    EXPECT_EQ(onlyItem().body, u"Dear ");
}

TEST_F(OpenItems, AnItemThatIsGoneTakesItsNoteAlongAndClosingItIsNoError) {
    const auto store = open().mailStore();
    std::unique_ptr<OpenNote> note;
    const ItemHead head = store->saveOpenItem(inboxId(*store), draft(u"x"), note);
    EXPECT_EQ(rows(), 1);
    store->removeItem(head.entryId);
    EXPECT_EQ(rows(), 0);
    const ItemHead next = store->saveItem(inboxId(*store), draft(u"y"));
    auto noteOfNext = store->noteOpen(next.entryId);
    note.reset();
    EXPECT_EQ(rows(), 1) << "the note of the next item is another";
    noteOfNext.reset();
    EXPECT_EQ(rows(), 0);
}

TEST_F(OpenItems, AProgramOfTheSameNumberThatStartedLaterIsAnother) {
    const auto store = open().mailStore();
    std::unique_ptr<OpenNote> note;
    store->saveOpenItem(inboxId(*store), draft(marked(u"Dear ")), note);
    EXPECT_TRUE(open().mending().subjects.empty());
    number("UPDATE open_items SET started = started - 1");
    EXPECT_EQ(open().mending().subjects, Texts{u"Offer"});
}

TEST_F(OpenItems, OnlyTheFirstSaveOfAnOpeningMakesANote) {
    const auto store = open().mailStore();
    std::unique_ptr<OpenNote> note;
    ItemRecord item = draft(u"one");
    for (int i = 0; i < 3; ++i) item.head = store->saveOpenItem(inboxId(*store), item, note);
    EXPECT_EQ(rows(), 1);
    const auto second = store->noteOpen(item.head.entryId);
    EXPECT_EQ(rows(), 2) << "another window of its own";
}

TEST_F(OpenItems, ANoteIsNoChangeToThoseWhoListItems) {
    const auto store = open().mailStore();
    const ItemHead head = store->saveItem(inboxId(*store), draft(u"x"));
    const std::uint64_t count = store->changeCount();
    store->noteOpen(head.entryId).reset();
    EXPECT_EQ(store->changeCount(), count);
    EXPECT_EQ(numberOf([&] { store->noteOpen(u"0123"); }), host::host_failure::NotFound);
}

TEST_F(OpenItems, ASaveThatFailsMakesNoNote) {
    const auto store = open().mailStore();
    std::unique_ptr<OpenNote> note;
    ItemRecord item = draft(u"x");
    item.head = store->saveItem(inboxId(*store), item);
    item.head.version = 7;
    EXPECT_EQ(numberOf([&] { store->saveOpenItem(u"", item, note); }), host::host_failure::ObjectChanged);
    EXPECT_FALSE(note);
    EXPECT_EQ(rows(), 0);
}

TEST_F(OpenItems, AnItemThatCannotBeReadIsToldAndHoldsUpNeitherTheOpeningNorTheOthers) {
    killedOver(draft(u"Dear "), [](ItemRecord& item) { item.body += mark; });
    number("UPDATE bodies SET kind = 9");
    killedOver(draft(u"Hello "), [](ItemRecord& item) { item.body += mark; });
    const SqliteFile file = open();
    EXPECT_EQ(file.mending().subjects, Texts{u"Offer"});
    ASSERT_EQ(file.mending().failures.size(), 1u);
    EXPECT_NE(file.mending().failures[0].description().find(u"damaged"), std::u16string::npos);
    EXPECT_EQ(rows(), 1) << "the next opening tries again";
    number("UPDATE bodies SET kind = 1");
    EXPECT_EQ(open().mending().subjects, Texts{u"Offer"});
}

TEST_F(OpenItems, WithAnotherWriterAtWorkTheOpeningTellsAndTheNextOneMends) {
    OtherProgram writer([&](const OtherProgram::Pause& pause) {
        pause();
        sqlite3* connection = nullptr;
        sqlite3_open(file_.c_str(), &connection);
        sqlite3_exec(connection, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
        pause();
    });
    ASSERT_EQ(writer.goOn(), Stand::Paused);
    killedOver(draft(u"Dear "), [](ItemRecord& item) { item.body += mark; });
    ASSERT_EQ(writer.goOn(), Stand::Paused);
    SqliteOptions impatient = withMarks();
    impatient.busyTimeoutMs = 0;
    {
        const SqliteFile file(file_, impatient);
        EXPECT_TRUE(file.mending().subjects.empty());
        ASSERT_EQ(file.mending().failures.size(), 1u);
        EXPECT_NE(file.mending().failures[0].description().find(u"in use by another program"), std::u16string::npos);
    }
    writer.kill();
    EXPECT_EQ(open().mending().subjects, Texts{u"Offer"});
}

}  // namespace
}  // namespace lorvane::mailstore::test
