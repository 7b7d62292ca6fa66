#include <gtest/gtest.h>

#include "FoldersRig.h"
#include "store/TemplateList.h"
#include "store/basSearch.h"

/// Rows of the tables on their way into the list: copying, searching, the list's lines.
namespace lorvane::store {
namespace {

using namespace host;
using namespace support;

struct Row {
    std::u16string_view subject, categories;
};

Recordset tableOf(std::initializer_list<Row> rows) {
    const Recordset table = newTemplateTable();
    std::int32_t number = 0;
    for (const Row& row : rows) {
        table.AddNew();
        table.Fields(u"strEntryID").Value(u"ENTRY" + decimal(++number));
        table.Fields(u"strStoreID").Value(u"STORE");
        table.Fields(u"strSubject").Value(row.subject);
        table.Fields(u"strCategories").Value(row.categories);
        table.Update();
    }
    return table;
}

Names column(const Recordset& table, std::u16string_view field) {
    Names values;
    if (table.RecordCount() == 0) return values;
    for (table.MoveFirst(); !table.EndOfFile(); table.MoveNext()) values.push_back(table.Fields(field).text());
    return values;
}

TEST(CopyTemplatesTest, CopiesAllFieldsAndEndsOnTheFirstRow) {
    TestRun run;
    const Recordset source = tableOf({{u"B", u"Sales"}, {u"A", u""}});
    const Recordset target = newTemplateTable();
    CopyTemplateRecords(source, target, false);
    EXPECT_EQ(target.AbsolutePosition(), 1);
    EXPECT_EQ(column(target, u"strEntryID"), (Names{u"ENTRY1", u"ENTRY2"}));
    EXPECT_EQ(column(target, u"strStoreID"), (Names{u"STORE", u"STORE"}));
    EXPECT_EQ(column(target, u"strSubject"), (Names{u"B", u"A"}));
    EXPECT_EQ(column(target, u"strCategories"), (Names{u"Sales", u""}));
}

TEST(CopyTemplatesTest, TheSuffixStandsBehindEachSubject) {
    TestRun run;
    const Recordset target = tableOf({{u"Mine", u""}});
    CopyTemplateRecords(tableOf({{u"Ours", u""}, {u"NO SUBJECT", u""}}), target, true);
    EXPECT_EQ(column(target, u"strSubject"), (Names{u"Mine", u"Ours (Shared)", u"NO SUBJECT (Shared)"}));
}

TEST(CopyTemplatesTest, NoRowsAndNoTableCopyNothing) {
    TestRun run;
    const Recordset target = newTemplateTable();
    EXPECT_NO_THROW(CopyTemplateRecords(newTemplateTable(), target, true));
    EXPECT_NO_THROW(CopyTemplateRecords(Recordset(), target, true));
    EXPECT_EQ(target.RecordCount(), 0);
}

TEST(ListLineTest, TheSubjectIsPaddedTo600AndThePositionFollows) {
    const std::u16string line = MakeListEntry(u"Offer", 12).text();
    EXPECT_EQ(line, u"Offer" + std::u16string(595, u' ') + u"12");
    EXPECT_EQ(GetListId(line), 12);
}

TEST(ListLineTest, ASubjectOf600FitsAndOneOf601IsError5) {
    EXPECT_EQ(MakeListEntry(std::u16string(600, u'x'), 7).text(), std::u16string(600, u'x') + u"7");
    try {
        MakeListEntry(std::u16string(601, u'x'), 7);
        ADD_FAILURE() << "no error";
    } catch (const HostError& error) {
        EXPECT_EQ(error.number(), 5);
    }
}

TEST(ListLineTest, PositionsAre32Bit) {
    EXPECT_EQ(GetListId(MakeListEntry(u"x", 70000).text()), 70000);
}

class SearchTest : public testing::Test {
protected:
    Names found(std::u16string_view text) { return column(FilterEmailSubject(table, u"strSubject", text), u"strSubject"); }
    Names found(std::u16string_view text, std::u16string_view category) { return column(FilterEmailSubjectAndCategory(table, text, category), u"strSubject"); }
    TestRun run;
    Recordset table = tableOf({{u"It's an offer", u"Sales, Support"}, {u"50% off", u"Sales"}, {u"Offer two (Shared)", u""}, {u"a*b", u"Jane's"}});
};

TEST_F(SearchTest, MatchesAnywhereInTheSubjectInAnyCase) {
    EXPECT_EQ(found(u"offer"), (Names{u"It's an offer", u"Offer two (Shared)"}));
    EXPECT_EQ(found(u"OFF"), (Names{u"It's an offer", u"50% off", u"Offer two (Shared)"}));
    EXPECT_EQ(found(u"nothing"), Names{});
}

TEST_F(SearchTest, ASingleQuoteIsFound) {
    EXPECT_EQ(found(u"it's"), Names{u"It's an offer"});
}

TEST_F(SearchTest, StarsAndPercentSignsInsideAreOrdinary) {
    EXPECT_EQ(found(u"a*b"), Names{u"a*b"});
    EXPECT_EQ(found(u"50%"), Names{u"50% off"});
    EXPECT_EQ(found(u"5*off"), Names{});
}

TEST_F(SearchTest, BlanksInsideStay) {
    EXPECT_EQ(found(u"offer two"), Names{u"Offer two (Shared)"});
    EXPECT_EQ(found(u"offer  two"), Names{});
}

TEST_F(SearchTest, TheTableItselfStaysAsItIs) {
    table.AbsolutePosition(3);
    found(u"offer");
    table.AbsolutePosition(3);
    found(u"", u"Sales");
    EXPECT_EQ(table.AbsolutePosition(), 3);
    EXPECT_EQ(table.RecordCount(), 4);
}

TEST_F(SearchTest, CategoryAndTextBothHaveToHold) {
    EXPECT_EQ(found(u"", u"Sales"), (Names{u"It's an offer", u"50% off"}));
    EXPECT_EQ(found(u"offer", u"Sales"), Names{u"It's an offer"});
    EXPECT_EQ(found(u"offer", u"Letters"), Names{});
    EXPECT_EQ(found(u"nothing", u"Sales"), Names{});
}

TEST_F(SearchTest, TheResultOfACategoryHasAllFields) {
    const Recordset result = FilterEmailSubjectAndCategory(table, u"", u"support");
    EXPECT_EQ(column(result, u"strEntryID"), Names{u"ENTRY1"});
    EXPECT_EQ(column(result, u"strStoreID"), Names{u"STORE"});
    EXPECT_EQ(column(result, u"strCategories"), Names{u"Sales, Support"});
}

TEST_F(SearchTest, ACategoryWithAQuoteNeverMatchesItsTemplates) {
    EXPECT_EQ(found(u"", u"Jane's"), Names{});
}

TEST_F(SearchTest, ATextTheFilterRejectsShowsTheBox) {
    EXPECT_FALSE(FilterEmailSubject(table, u"noSuchField", u"x"));
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"FilterEmailSubject - Lorvane");
    EXPECT_EQ(run.lastBox().text.substr(0, 6), u"Error ");
    EXPECT_EQ(run.lastBox().style, 16);
}

TEST(SearchFaultTest, BothSearchesShareTheBoxesTitle) {
    TestRun run({.instruments = true});
    const Recordset table = tableOf({{u"x", u"Sales"}});
    run.faults().failNth(u"Recordset", u"Clone", 1, 3001, u"Refused");
    EXPECT_FALSE(FilterEmailSubjectAndCategory(table, u"x", u"Sales"));
    EXPECT_EQ(run.lastBox().title, u"FilterEmailSubject - Lorvane");
    EXPECT_EQ(run.lastBox().text, u"Error 3001: Refused");
}

TEST(CategoryInListTextTest, NamesAreTrimmedAndCaseIsIgnored) {
    EXPECT_TRUE(CategoryInTemplateCategories(u"SUPPORT", u"Sales, Support"));
    EXPECT_TRUE(CategoryInTemplateCategories(u"sales", u"Sales, Support"));
    EXPECT_FALSE(CategoryInTemplateCategories(u"Sale", u"Sales, Support"));
    EXPECT_FALSE(CategoryInTemplateCategories(u" Support", u"Sales, Support")) << "the category itself is not trimmed";
    EXPECT_FALSE(CategoryInTemplateCategories(u"Sales", u""));
    EXPECT_TRUE(CategoryInTemplateCategories(u"", u"")) << "an empty list is one empty piece";
    EXPECT_TRUE(CategoryInTemplateCategories(u"", u"a,,b"));
}

}  // namespace
}  // namespace lorvane::store
