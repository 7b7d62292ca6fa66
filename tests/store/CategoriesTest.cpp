#include <gtest/gtest.h>

#include "FoldersRig.h"
#include "host/Form.h"
#include "store/Categories.h"
#include "store/basSearch.h"

/// The distinct category names and the combo that offers them.
namespace lorvane::store {
namespace {

using namespace host;
using namespace support;

class AddCategoriesTest : public testing::Test {
protected:
    void add(std::u16string_view text) { AddCategoriesToList(text, table); }
    TestRun run;
    Recordset table = newCategoryTable();
};

TEST_F(AddCategoriesTest, NamesArePartedByCommasAndTrimmed) {
    add(u"Sales, Support ,  Letters");
    EXPECT_EQ(categoriesIn(table), (Names{u"Sales", u"Support", u"Letters"}));
}

TEST_F(AddCategoriesTest, ANameIsThereOnce) {
    add(u"Sales,Support");
    add(u"Support,Sales,Letters");
    EXPECT_EQ(categoriesIn(table), (Names{u"Sales", u"Support", u"Letters"}));
}

TEST_F(AddCategoriesTest, TheTablesFilterComparesWithoutCase) {
    add(u"Sales,SALES,sales");
    EXPECT_EQ(categoriesIn(table), Names{u"Sales"});
}

TEST_F(AddCategoriesTest, BlanksAloneAddNothing) {
    add(u"");
    add(u"   ");
    EXPECT_EQ(table.RecordCount(), 0);
}

TEST_F(AddCategoriesTest, AnEmptyPieceIsANameLikeAnyOther) {
    add(u"a,,b");
    EXPECT_EQ(categoriesIn(table), (Names{u"a", u"", u"b"}));
    add(u"c,");
    EXPECT_EQ(categoriesIn(table), (Names{u"a", u"", u"b", u"c"}));
}

TEST_F(AddCategoriesTest, ASemicolonPartsNothing) {
    add(u"Sales;Support");
    EXPECT_EQ(categoriesIn(table), Names{u"Sales;Support"});
}

TEST_F(AddCategoriesTest, AQuoteInANameIsFoundAgain) {
    add(u"Jane's,Jane's");
    EXPECT_EQ(categoriesIn(table), Names{u"Jane's"});
    EXPECT_TRUE(CategoryInList(table, u"strCategory", u"Jane's"));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(AddCategoriesTest, LookingLeavesTheTablesOwnRowAndFilter) {
    add(u"a,b,c");
    table.AbsolutePosition(2);
    EXPECT_TRUE(CategoryInList(table, u"strcategory", u"C"));
    EXPECT_FALSE(CategoryInList(table, u"strCategory", u"d"));
    EXPECT_EQ(table.AbsolutePosition(), 2);
    EXPECT_EQ(table.RecordCount(), 3);
}

/// The three routines that compare names by now, each in its own way.
TEST(CategoryComparisonTest, TheTablesFilterIgnoresCaseAndTrimsNothing) {
    TestRun run;
    const Recordset table = categoryTable({u"Sales", u" Padded ", u""});
    EXPECT_TRUE(CategoryInList(table, u"strCategory", u"Sales"));
    EXPECT_TRUE(CategoryInList(table, u"strCategory", u"SALES"));
    EXPECT_FALSE(CategoryInList(table, u"strCategory", u" Sales"));
    EXPECT_FALSE(CategoryInList(table, u"strCategory", u"Padded"));
    EXPECT_TRUE(CategoryInList(table, u"strCategory", u" padded "));
    EXPECT_FALSE(CategoryInList(table, u"strCategory", u"Sale"));
    EXPECT_FALSE(CategoryInList(table, u"strCategory", u"S*")) << "no pattern";
    EXPECT_TRUE(CategoryInList(table, u"strCategory", u""));
    EXPECT_FALSE(CategoryInList(newCategoryTable(), u"strCategory", u""));
    EXPECT_TRUE(run.boxes().empty());
}

TEST(CategoryComparisonTest, AnItemsListIgnoresCaseAndTrimsItsOwnNamesOnly) {
    EXPECT_TRUE(CategoryInTemplateCategories(u"SALES", u"Letters,  Sales "));
    EXPECT_TRUE(CategoryInTemplateCategories(u"sales", u"SALES"));
    EXPECT_FALSE(CategoryInTemplateCategories(u" Sales", u"Letters,  Sales "));
    EXPECT_FALSE(CategoryInTemplateCategories(u"Sales", u"Sales Team"));
}

TEST(AddCategoriesFaultTest, AnErrorShowsTheStandardBoxAndLeavesTheTableAsFarAsItGot) {
    TestRun run({.instruments = true});
    const Recordset table = newCategoryTable();
    run.faults().failNth(u"Recordset", u"AddNew", 2, host_failure::Failed, u"No more rows");
    AddCategoriesToList(u"a,b,c", table);
    EXPECT_EQ(categoriesIn(table), Names{u"a"});
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"basGlobals.AddCategoriesToList - Lorvane");
    EXPECT_EQ(run.lastBox().text, u"Error -2147467259: No more rows");
    EXPECT_EQ(run.lastBox().style, 16);
}

TEST(AddCategoriesFaultTest, AFilterThatFailsShowsTheBoxOfItsRoutineAndCountsAsNotThere) {
    TestRun run({.instruments = true});
    const Recordset table = categoryTable({u"a"});
    run.faults().failNth(u"Recordset", u"Filter", 1, 3001, u"Arguments are wrong");
    EXPECT_FALSE(CategoryInList(table, u"strCategory", u"a"));
    EXPECT_EQ(run.lastBox().title, u"basGlobals.CategoryInList - Lorvane");
    EXPECT_EQ(run.lastBox().text, u"Error 3001: Arguments are wrong");
}

/// A window with a combo.
class ComboWindow final : public Form {
public:
    ComboWindow() : Form(u"ComboWindow", u""), cmbCategories(*this, u"cmbCategories") {}
    ComboBox cmbCategories;
};

class LoadCategoriesTest : public testing::Test {
protected:
    Names load(const Recordset& privateTable, const Recordset& sharedTable, Scope scope) {
        ComboBox& combo = implementation<ComboWindow>(window_)->cmbCategories;
        combo.AddItem(u"from before");
        LoadCategories(combo, privateTable, sharedTable, scope);
        Names lines;
        for (std::int32_t line = 0; line < combo.ListCount(); ++line) lines.push_back(combo.List(line));
        return lines;
    }
    TestRun run;
    Object window_ = makeObject<ComboWindow>();
};

TEST_F(LoadCategoriesTest, OneEmptyLineThenTheNamesInOrder) {
    EXPECT_EQ(load(categoryTable({u"Support", u"Letters", u"Sales"}), {}, Scope::Private), (Names{u"", u"Letters", u"Sales", u"Support"}));
}

TEST_F(LoadCategoriesTest, AnEmptyNameIsShownOnlyAsTheFirstLine) {
    EXPECT_EQ(load(categoryTable({u"a", u"", u"b"}), {}, Scope::Private), (Names{u"", u"a", u"b"}));
}

TEST_F(LoadCategoriesTest, SharedScopeOffersNothingOfThePrivateFolder) {
    EXPECT_EQ(load(categoryTable({u"Mine"}), categoryTable({u"Ours"}), Scope::Shared), (Names{u"", u"Ours"}));
    EXPECT_EQ(load(categoryTable({u"Mine"}), categoryTable({u"Ours"}), Scope::Private), (Names{u"", u"Mine"}));
}

TEST_F(LoadCategoriesTest, AllMergesBothWithoutDoubles) {
    EXPECT_EQ(load(categoryTable({u"Sales", u"", u"Mine"}), categoryTable({u"SALES", u"Ours", u""}), Scope::All), (Names{u"", u"Mine", u"Ours", u"Sales"}));
}

TEST_F(LoadCategoriesTest, AllWithoutAPrivateTableIsTheSharedOne) {
    EXPECT_EQ(load({}, categoryTable({u"Ours"}), Scope::All), (Names{u"", u"Ours"}));
}

TEST_F(LoadCategoriesTest, AllWithoutASharedTableIsThePrivateOne) {
    EXPECT_EQ(load(categoryTable({u"Mine"}), {}, Scope::All), (Names{u"", u"Mine"}));
}

TEST_F(LoadCategoriesTest, NothingLoadedLeavesTheEmptyLine) {
    for (const Scope scope : {Scope::All, Scope::Private, Scope::Shared}) EXPECT_EQ(load({}, {}, scope), Names{u""});
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(LoadCategoriesTest, TheTablesAreNeitherSortedNorMoved) {
    const Recordset privateTable = categoryTable({u"b", u"a"});
    load(privateTable, {}, Scope::Private);
    EXPECT_EQ(categoriesIn(privateTable), (Names{u"b", u"a"}));
}

TEST_F(LoadCategoriesTest, NamesAreTrimmedOnTheirWay) {
    EXPECT_EQ(load(categoryTable({u" b ", u"a"}), {}, Scope::All), (Names{u"", u"a", u"b"}));
    EXPECT_EQ(load(categoryTable({u" b ", u"a"}), categoryTable({u"B"}), Scope::All), (Names{u"", u"a", u"b"}));
    const Names lines = load({}, categoryTable({u"b  "}), Scope::Shared);
    EXPECT_EQ(lines, (Names{u"", u"b"}));
}

TEST_F(LoadCategoriesTest, ATableOfOtherFieldsShowsTheStandardBox) {
    const Recordset other = makeRecordset();
    other.appendField(u"strOther", adVarChar, 1000);
    other.Open();
    other.AddNew();
    other.Fields(u"strOther").Value(u"x");
    other.Update();
    EXPECT_EQ(load(other, {}, Scope::Private), Names{u""});
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"basGlobals.LoadCategories - Lorvane");
    EXPECT_EQ(run.lastBox().style, 16);
    EXPECT_TRUE(run.lastBox().text.starts_with(u"Error 3")) << toUtf8(run.lastBox().text);
}

TEST_F(LoadCategoriesTest, TheOrderIsThatOfTheLocale) {
    EXPECT_EQ(load(categoryTable({u"zeta", u"Änderung", u"alpha", u"Beta"}), {}, Scope::Private), (Names{u"", u"alpha", u"Änderung", u"Beta", u"zeta"}));
}

}  // namespace
}  // namespace lorvane::store
