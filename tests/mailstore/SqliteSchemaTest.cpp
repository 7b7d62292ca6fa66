#include "mailstore/SqliteSchema.h"

#include <gtest/gtest.h>

#include "mailstore/Records.h"
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
