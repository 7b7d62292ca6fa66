#include "recordset/Table.h"

#include <gtest/gtest.h>

#include <random>

#include "RecordsetBuilder.h"
#include "recordset/Errors.h"

namespace lorvane::recordset {
namespace {

Table textTable() {
    return Table(
        {completed({u"a", data_type::VarChar, 1000, field_attribute::IsNullable}), completed({u"b", data_type::Integer, 0, field_attribute::IsNullable})});
}

RowId add(Table& table, const Variant& a, const Variant& b = Variant(), RowState state = RowState::New) {
    return table.append(std::vector<Variant>{a, b}, state);
}

void assignFirst(Table& table, RowId row, const Variant& value) {
    table.change(row, std::vector<std::optional<Variant>>{value, std::nullopt});
}

TEST(Table, TellsEmptyNullAndTheEmptyTextApart) {
    Table table = textTable();
    add(table, Variant());
    add(table, Variant::null(), Variant::null());
    add(table, u"", std::int32_t{0});
    EXPECT_TRUE(table.value(0, 0).isEmpty());
    EXPECT_TRUE(table.value(0, 1).isEmpty());
    EXPECT_TRUE(table.value(1, 0).isNull());
    EXPECT_TRUE(table.value(1, 1).isNull());
    EXPECT_EQ(table.value(2, 0), Variant(u""));
    EXPECT_EQ(table.cellState(2, 0), CellState::Value);
}

TEST(Table, RowsWithTheSameTextAreChangedEachByItself) {
    Table table = textTable();
    std::mt19937 source(7);
    const std::u16string shared(40, u's');
    std::vector<std::u16string> texts;
    for (int i = 0; i < 3000; ++i) {
        texts.push_back(source() % 8 == 0 ? std::u16string(source() % 60, u'o') : shared);
        add(table, texts.back());
    }
    // Enough of them that the texts nobody has any more are let go several times.
    for (int i = 0; i < 20000; ++i) {
        const RowId row = static_cast<RowId>(source() % 3000);
        texts[row] = source() % 2 == 0 ? shared : std::u16string(source() % 60, static_cast<char16_t>(u'a' + source() % 26));
        assignFirst(table, row, texts[row]);
        if (i % 1000 != 0) continue;
        for (RowId each = 0; each < 3000; ++each) ASSERT_EQ(table.value(each, 0), Variant(texts[each])) << i << " at " << each;
    }
    for (RowId each = 0; each < 3000; ++each) ASSERT_EQ(table.value(each, 0), Variant(texts[each])) << each;
}

TEST(Table, FieldsAreFoundInAnyCase) {
    const Table table({{u"strEntryID", data_type::VarChar, 1000}});
    EXPECT_EQ(table.findField(u"STRENTRYid"), 0u);
    EXPECT_FALSE(table.findField(u"strEntry"));
}

TEST(Table, RowsGoThroughTheirStates) {
    Table table = textTable();
    const RowId fresh = add(table, u"new");
    const RowId settled = add(table, u"old", std::int32_t{7}, RowState::Unmodified);
    const RowId gone = add(table, u"gone", std::int32_t{8}, RowState::Unmodified);
    assignFirst(table, fresh, u"newer");
    assignFirst(table, settled, u"changed");
    assignFirst(table, settled, u"changed again");
    table.remove(gone);
    EXPECT_EQ(table.state(fresh), RowState::New);
    EXPECT_EQ(table.state(settled), RowState::Modified);
    EXPECT_EQ(table.state(gone), RowState::Deleted);
    EXPECT_EQ(table.original(fresh), nullptr);
    EXPECT_EQ(table.original(settled)->values, (std::vector<Variant>{u"old", std::int32_t{7}}));
    EXPECT_EQ(table.original(settled)->assigned, (std::vector<bool>{true, false}));
    EXPECT_EQ(table.original(gone)->values, (std::vector<Variant>{u"gone", std::int32_t{8}}));
    EXPECT_EQ(table.value(gone, 0), Variant(u"gone"));
    EXPECT_EQ(table.liveCount(), 2u);
}

TEST(Table, CountsAndFindsRowsThatAreNotDeleted) {
    Table table = textTable();
    std::mt19937 random(7);
    std::vector<bool> live;
    for (int i = 0; i < 10000; ++i) {
        add(table, u"x");
        live.push_back(true);
    }
    for (int i = 0; i < 7000; ++i) {
        const auto row = static_cast<RowId>(random() % live.size());
        table.remove(row);
        live[row] = false;
    }
    std::size_t before = 0;
    std::optional<RowId> last;
    for (RowId row = 0; row < live.size(); ++row) {
        ASSERT_EQ(table.liveBefore(row), before);
        if (live[row]) {
            ASSERT_EQ(table.liveAt(before), row);
            ASSERT_EQ(table.liveFrom(last ? *last + std::size_t{1} : 0), row);
            ++before;
            last = row;
        }
        ASSERT_EQ(table.liveUpTo(row), last);
    }
    EXPECT_FALSE(table.liveFrom(*last + std::size_t{1}));
    EXPECT_EQ(table.liveCount(), before);
}

TEST(Table, TextOutlivesManyChanges) {
    Table table = textTable();
    for (int i = 0; i < 300; ++i) add(table, u"start");
    for (int round = 0; round < 30; ++round) {
        for (RowId row = 0; row < 300; ++row) {
            if (row % 3 != 0) assignFirst(table, row, std::u16string(static_cast<std::size_t>(round * 7 + 1), static_cast<char16_t>(u'a' + row % 26)));
        }
    }
    for (RowId row = 0; row < 300; ++row) {
        const std::u16string expected = row % 3 == 0 ? std::u16string(u"start") : std::u16string(29 * 7 + 1, static_cast<char16_t>(u'a' + row % 26));
        ASSERT_EQ(table.value(row, 0), Variant(expected));
    }
}

TEST(Table, FoundTextFollowsChangesOfItsRow) {
    TextColumn column;
    for (int i = 0; i < 3000; ++i) column.append(CellState::Value, u"Some Text " + host::decimal(i));
    const auto found = [&](std::u16string_view folded) {
        RowBits rows(column.size());
        column.findContaining(folded, rows);
        return rows.count();
    };
    EXPECT_EQ(found(u"text 2999"), 1u);
    EXPECT_EQ(found(u"grö"), 0u);
    column.assign(5, CellState::Value, u"GRÖSSE");
    column.assign(2999, CellState::Null, {});
    column.append(CellState::Value, u"ΣΕΛΑΣ – größe");
    EXPECT_EQ(found(u"grö"), 2u);
    EXPECT_EQ(found(u"text 2999"), 0u);
    EXPECT_EQ(found(u"\u03C3\u03B5\u03BB"), 1u);
    EXPECT_EQ(found(u"text 5"), 110u);  // 50 to 59 and 500 to 599: "5" itself is gone
    EXPECT_EQ(found(u"9some"), 0u);     // never from one row into the next
    EXPECT_EQ(found(u""), 3000u);
}

TEST(Table, ObserversHearOfEachRow) {
    struct Ear : Table::Observer {
        void rowChanging() override { ++announced; }
        void rowChanged(RowId row) noexcept override { heard.push_back(row); }
        std::vector<RowId> heard;
        int announced = 0;
    } ear;
    Table table = textTable();
    table.observe(ear);
    add(table, u"x");
    add(table, u"y");
    assignFirst(table, 0, u"z");
    table.remove(1);
    table.remove(1);
    table.forget(ear);
    add(table, u"unheard");
    EXPECT_EQ(ear.heard, (std::vector<RowId>{0, 1, 0, 1}));
    EXPECT_EQ(ear.announced, 4);
}

TEST(Table, TheKeptOrderIsMadeAnewWhenItsFieldChanges) {
    const auto collation = Collation::of(u"en-US");
    Table table = textTable();
    add(table, u"b", std::int32_t{1});
    add(table, Variant::null(), std::int32_t{1});
    add(table, u"a", std::int32_t{1});
    EXPECT_EQ(table.orderOf(0, *collation).rows, (std::vector<RowId>{2, 0}));
    table.change(0, std::vector<std::optional<Variant>>{std::nullopt, Variant(std::int32_t{2})});
    EXPECT_TRUE(table.hasOrderOf(0, *collation));
    assignFirst(table, 0, u"A");
    EXPECT_FALSE(table.hasOrderOf(0, *collation));
    EXPECT_EQ(table.orderOf(0, *collation).rows, (std::vector<RowId>{0, 2}));
    add(table, u"0");
    EXPECT_EQ(table.orderOf(0, *collation).rows, (std::vector<RowId>{3, 0, 2}));
}

}  // namespace
}  // namespace lorvane::recordset
