#include "mailstore/SqliteSchema.h"

#include <gtest/gtest.h>

#include "mailstore/Records.h"
#include "mailstore/StoreContent.h"
#include "mailstore/TempFolder.h"

namespace lorvane::mailstore::test {
namespace {

class SqliteSchema : public testing::Test {
protected:
    std::shared_ptr<SqliteDatabase> open() const { return openStoreFile(file_, {}); }
    std::vector<SchemaStep> stepsAnd(std::initializer_list<SchemaStep> further) const {
        std::vector<SchemaStep> steps(schemaSteps().begin(), schemaSteps().end());
        steps.insert(steps.end(), further);
        return steps;
    }

    TempFolder folder_;
    std::filesystem::path file_ = folder_.file("mail.lorvane");
    const std::int64_t version_ = static_cast<std::int64_t>(schemaSteps().size());
};

TEST_F(SqliteSchema, ANewFileIsMarkedAndHasThisVersion) {
    const auto database = open();
    EXPECT_EQ(database->number("PRAGMA application_id"), 0x4C52564E);
    EXPECT_EQ(database->number("PRAGMA user_version"), version_);
    EXPECT_EQ(database->word("PRAGMA journal_mode"), "wal");
    EXPECT_EQ(database->number("PRAGMA synchronous"), 2);
    EXPECT_EQ(database->number("PRAGMA foreign_keys"), 1);
}

TEST_F(SqliteSchema, AFileOfTheFirstVersionIsBroughtForwardAndKeepsWhatItHolds) {
    std::mt19937 source(8);
    {
        const auto store = SqliteFile(file_).mailStore();
        for (int i = 0; i < 5; ++i) store->saveItem(store->wellKnownFolder(6)->entryId, randomRecord(source));
    }
    const StoreContent before = contentOf(SqliteFile(file_));
    // All that the second version added.
    open()->execute("DROP TABLE open_items; PRAGMA user_version = 1");
    const SqliteFile file(file_);
    EXPECT_EQ(contentOf(file), before);
    EXPECT_TRUE(file.mailStore()->noteOpen(before.items.front().record.head.entryId));
    EXPECT_EQ(open()->number("PRAGMA user_version"), version_);
}

TEST_F(SqliteSchema, TheFirstStepMakesTheFirstVersion) {
    SqliteDatabase database(file_, 0);
    migrate(database, schemaSteps().first(1));
    EXPECT_EQ(database.number("PRAGMA user_version"), 1);
    EXPECT_EQ(database.number("SELECT count(*) FROM sqlite_schema WHERE name = 'open_items'"), 0);
    migrate(database, schemaSteps().first(2));
    EXPECT_EQ(database.number("SELECT count(*) FROM sqlite_schema WHERE name = 'open_items'"), 1);
}

TEST_F(SqliteSchema, FurtherStepsBringAFileForwardAndKeepWhatItHolds) {
    const auto database = open();
    const auto steps = stepsAnd({{"ALTER TABLE items ADD COLUMN size INTEGER NOT NULL DEFAULT 5"}, {"UPDATE folders SET well_known = well_known + 100"}});
    migrate(*database, steps);
    EXPECT_EQ(database->number("PRAGMA user_version"), version_ + 2);
    EXPECT_EQ(database->number("SELECT count(*) FROM pragma_table_info('items') WHERE name = 'size'"), 1);
    EXPECT_EQ(database->number("SELECT count(*) FROM folders WHERE well_known = 106"), 1);
    migrate(*database, steps);
    EXPECT_EQ(database->number("SELECT count(*) FROM folders WHERE well_known = 106"), 1) << "a step that ran runs no more";
}

TEST_F(SqliteSchema, AStepThatFailsTakesBackThoseBeforeIt) {
    const auto database = open();
    const auto steps = stepsAnd({{"DELETE FROM folders WHERE well_known = 6"}, {"INSERT INTO nowhere VALUES (1)"}});
    EXPECT_EQ(numberOf([&] { migrate(*database, steps); }), host::host_failure::Failed);
    EXPECT_EQ(database->number("PRAGMA user_version"), version_);
    EXPECT_EQ(database->number("SELECT count(*) FROM folders WHERE well_known = 6"), 1);
}

}  // namespace
}  // namespace lorvane::mailstore::test
