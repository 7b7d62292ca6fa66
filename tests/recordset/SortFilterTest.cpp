#include <gtest/gtest.h>

#include <algorithm>

#include "RecordsetBuilder.h"
#include "recordset/Errors.h"

namespace lorvane::recordset {
namespace {

void filter(const Object& recordset, std::u16string_view criteria) {
    recordset.put(Member::Filter, criteria);
}
void sort(const Object& recordset, std::u16string_view order) {
    recordset.put(Member::Sort, order);
}

// ---- filters

TEST(Filter, LikeFoldsUnitByUnit) {
    const Object recordset = subjects({u"GRÖSSE", u"GRÖẞE", u"größe", u"Grosse", u"gro\u0308sse"}, u"de-DE");
    filter(recordset, u"strSubject LIKE '*grö*'");
    EXPECT_EQ(walk(recordset), (Texts{u"GRÖSSE", u"GRÖẞE", u"größe"}));
    filter(recordset, u"strSubject LIKE '*größe*'");
    EXPECT_EQ(walk(recordset), (Texts{u"GRÖẞE", u"größe"}));
    filter(recordset, u"strSubject = 'GRÖẞE'");
    EXPECT_EQ(walk(recordset), (Texts{u"GRÖẞE", u"größe"}));
    filter(recordset, u"strSubject <> 'GRÖẞE'");
    EXPECT_EQ(walk(recordset), (Texts{u"GRÖSSE", u"Grosse", u"gro\u0308sse"}));
}

TEST(Filter, QuotesAreDoubledAndWildcardsInsideAreOrdinary) {
    const Object recordset = subjects({u"What it's about", u"100% sure", u"2*3 = 6", u"(Shared)", u"plain"});
    filter(recordset, u"strSubject LIKE '*it''s*'");
    EXPECT_EQ(walk(recordset), (Texts{u"What it's about"}));
    filter(recordset, u"strSubject LIKE '*0% s*'");
    EXPECT_EQ(walk(recordset), (Texts{u"100% sure"}));
    filter(recordset, u"strSubject LIKE '***'");
    EXPECT_EQ(walk(recordset), (Texts{u"2*3 = 6"}));
    filter(recordset, u"strSubject LIKE '*%*'");
    EXPECT_EQ(walk(recordset), (Texts{u"100% sure"}));
    filter(recordset, u"strSubject LIKE '*(shared)*'");
    EXPECT_EQ(walk(recordset), (Texts{u"(Shared)"}));
}

TEST(Filter, GoesToTheFirstRowWhenSetAndWhenTakenAway) {
    const Object recordset = subjects({u"a1", u"b1", u"a2", u"b2"});
    recordset.call(Member::MoveNext);
    filter(recordset, u"strSubject LIKE 'b*'");
    EXPECT_EQ(text(recordset, u"strSubject"), u"b1");
    EXPECT_EQ(position(recordset), 1);
    recordset.call(Member::MoveNext);
    EXPECT_EQ(position(recordset), 2);
    filter(recordset, u"");
    EXPECT_EQ(text(recordset, u"strSubject"), u"a1");
    filter(recordset, u"strSubject = 'b2'");
    recordset.put(Member::Filter, std::int32_t{0});
    EXPECT_EQ(recordCount(recordset), 4);
    EXPECT_EQ(text(recordset, u"strSubject"), u"a1");
}

TEST(Filter, ThatNothingMeetsIsAtBothEnds) {
    const Object recordset = subjects({u"a", u"b"});
    filter(recordset, u"strSubject = 'c'");
    EXPECT_TRUE(atStart(recordset));
    EXPECT_TRUE(atEnd(recordset));
    EXPECT_EQ(recordCount(recordset), 0);
    EXPECT_EQ(position(recordset), -1);
    EXPECT_EQ(errorOf([&] { recordset.call(Member::MoveFirst); }), error::NoCurrentRecord);
}

TEST(Filter, ThatCannotBeReadLeavesTheOneBefore) {
    const Object recordset = subjects({u"a", u"b"});
    filter(recordset, u"strSubject = 'b'");
    EXPECT_EQ(errorOf([&] { filter(recordset, u"strSubject LIKE '*b'"); }), error::BadArgument);
    EXPECT_EQ(errorOf([&] { filter(recordset, u"nobody = 'b'"); }), error::BadArgument);
    EXPECT_EQ(walk(recordset), (Texts{u"b"}));
    EXPECT_EQ(errorOf([&] { recordset.put(Member::Filter, std::int32_t{1}); }), error::NotSupported);
    EXPECT_EQ(errorOf([&] { recordset.put(Member::Filter, std::int32_t{9}); }), error::BadArgument);
}

TEST(Filter, ARowThatIsAddedStaysOnlyIfItMatches) {
    const Object recordset = subjects({u"a1", u"b1"});
    filter(recordset, u"strSubject LIKE 'a*'");
    addRow(recordset, u"strSubject", u"a2");
    EXPECT_EQ(recordCount(recordset), 2);
    EXPECT_EQ(text(recordset, u"strSubject"), u"a2");
    EXPECT_EQ(position(recordset), 2);
    addRow(recordset, u"strSubject", u"c");
    EXPECT_EQ(recordCount(recordset), 2);
    EXPECT_TRUE(atEnd(recordset));
    filter(recordset, u"");
    EXPECT_EQ(walk(recordset), (Texts{u"a1", u"b1", u"a2", u"c"}));
}

TEST(Filter, ARowThatNoLongerMatchesLeavesAtOnceAndTheNextIsCurrent) {
    const Object recordset = subjects({u"a1", u"a2", u"a3"});
    filter(recordset, u"strSubject LIKE 'a*'");
    assign(recordset, u"strSubject", u"b");
    EXPECT_EQ(recordCount(recordset), 3);
    recordset.call(Member::Update);
    EXPECT_EQ(recordCount(recordset), 2);
    EXPECT_EQ(text(recordset, u"strSubject"), u"a2");
    recordset.call(Member::MoveNext);
    EXPECT_EQ(text(recordset, u"strSubject"), u"a3");
    assign(recordset, u"strSubject", u"b");
    recordset.call(Member::Update);
    EXPECT_TRUE(atEnd(recordset));
}

TEST(Filter, RowsComeAndGoAsAnotherCloneChangesThem) {
    const Object recordset = subjects({u"a1", u"a2", u"b"});
    const Object filtered = recordset.call(Member::Clone).toObject();
    filter(filtered, u"strSubject LIKE 'a*'");
    EXPECT_EQ(recordCount(filtered), 2);
    assign(recordset, u"strSubject", u"b1");
    recordset.call(Member::Update);
    EXPECT_EQ(recordCount(filtered), 1);
    EXPECT_EQ(position(filtered), -1);
    EXPECT_EQ(text(filtered, u"strSubject"), u"b1");  // the row stays current until a move
    filtered.call(Member::MoveNext);
    EXPECT_EQ(text(filtered, u"strSubject"), u"a2");
    callNamed(recordset, u"MoveLast");
    assign(recordset, u"strSubject", u"a9");
    recordset.call(Member::MoveFirst);
    EXPECT_EQ(walk(filtered), (Texts{u"a2", u"a9"}));
}

TEST(Filter, NullAndNeverAssignedCellsMeetNoClause) {
    const Object recordset = makeRecordset(Collation::of(u"en-US"));
    recordset.getObject(Member::Fields).call(Member::Append, {u"a", std::int32_t{200}, std::int32_t{10}, std::int32_t{0x20}});
    recordset.call(Member::Open);
    addRow(recordset, u"a", Variant::null());
    recordset.call(Member::AddNew);
    recordset.call(Member::Update);
    addRow(recordset, u"a", u"");
    for (const std::u16string_view criteria : {u"a = ''", u"a LIKE '*'", u"a LIKE '**'", u"a < 'x'", u"a <> 'x'"}) {
        filter(recordset, criteria);
        EXPECT_EQ(recordCount(recordset), 1) << host::toUtf8(criteria);
    }
}

TEST(Filter, CommitsTheRowInEdit) {
    const Object recordset = subjects({u"a", u"b"});
    assign(recordset, u"strSubject", u"b");
    filter(recordset, u"strSubject = 'b'");
    EXPECT_EQ(recordCount(recordset), 2);
}

TEST(Filter, FindsInTextsOfBothWidthsAcrossManyRows) {
    const Object recordset = openedWith({u"strSubject"});
    for (int i = 0; i < 5000; ++i) {
        std::u16string subject = u"Subject Number " + host::decimal(i);
        if (i >= 2000 && i < 2100) subject += u" – Übergrößenträger €";
        addRow(recordset, u"strSubject", subject);
    }
    filter(recordset, u"strSubject LIKE '*ÜBERGRÖẞEN*'");
    EXPECT_EQ(recordCount(recordset), 100);
    filter(recordset, u"strSubject LIKE '*€*'");
    EXPECT_EQ(recordCount(recordset), 100);
    filter(recordset, u"strSubject LIKE '*NUMBER 20*'");
    EXPECT_EQ(recordCount(recordset), 111);
    filter(recordset, u"strSubject LIKE '*subject*'");
    EXPECT_EQ(recordCount(recordset), 5000);
}

// ---- sorts

TEST(Sort, FollowsTheCollationAndKeepsTheOrderOfEqualTexts) {
    const Object recordset = openedWith({u"strSubject", u"id"});
    const std::u16string_view rows[] = {u"b", u"B", u"ä", u"a", u"A", u"b", u"Z", u"az"};
    std::int32_t id = 0;
    for (const std::u16string_view subject : rows) {
        recordset.call(Member::AddNew);
        assign(recordset, u"strSubject", subject);
        assign(recordset, u"id", ++id);
        recordset.call(Member::Update);
    }
    sort(recordset, u"strSubject");
    EXPECT_EQ(walk(recordset, u"id"), (Texts{u"4", u"5", u"3", u"8", u"1", u"2", u"6", u"7"}));
    sort(recordset, u"strSubject DESC");
    EXPECT_EQ(walk(recordset, u"id"), (Texts{u"7", u"1", u"2", u"6", u"8", u"3", u"4", u"5"}));
    sort(recordset, u"");
    EXPECT_EQ(walk(recordset, u"id"), (Texts{u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8"}));
}

TEST(Sort, GoesToTheFirstRowAndPositionsFollowIt) {
    const Object recordset = subjects({u"c", u"a", u"b"});
    sort(recordset, u"strSubject");
    EXPECT_EQ(text(recordset, u"strSubject"), u"a");
    EXPECT_EQ(position(recordset), 1);
    recordset.put(Member::AbsolutePosition, std::int32_t{3});
    EXPECT_EQ(text(recordset, u"strSubject"), u"c");
    EXPECT_EQ(recordset.getText(Member::Sort), u"strSubject");
}

TEST(Sort, TakesSeveralFieldsAndDirections) {
    const Object recordset = openedWith({u"a", u"Full Text"});
    const std::u16string_view rows[][2] = {{u"x", u"1"}, {u"y", u"1"}, {u"X", u"2"}, {u"Y", u"2"}, {u"x", u"3"}};
    for (const auto& row : rows) {
        recordset.call(Member::AddNew);
        assign(recordset, u"a", row[0]);
        assign(recordset, u"Full Text", row[1]);
        recordset.call(Member::Update);
    }
    sort(recordset, u"a ASC, [Full Text] DESC");
    EXPECT_EQ(walk(recordset, u"Full Text"), (Texts{u"3", u"2", u"1", u"2", u"1"}));
    sort(recordset, u"A desc,Full Text");
    EXPECT_EQ(walk(recordset, u"Full Text"), (Texts{u"1", u"2", u"1", u"2", u"3"}));
}

TEST(Sort, NumbersAndDatesByTheirValue) {
    const Object recordset = makeRecordset(Collation::of(u"en-US"));
    appendField(recordset, u"n", 3, 0);
    appendField(recordset, u"d", 7, 0);
    recordset.call(Member::Open);
    for (const std::int32_t n : {10, 9, -3, 100}) {
        recordset.call(Member::AddNew);
        assign(recordset, u"n", n);
        assign(recordset, u"d", host::DateTime{-static_cast<double>(n)});
        recordset.call(Member::Update);
    }
    sort(recordset, u"n");
    EXPECT_EQ(walk(recordset, u"n"), (Texts{u"-3", u"9", u"10", u"100"}));
    sort(recordset, u"d");
    EXPECT_EQ(walk(recordset, u"n"), (Texts{u"100", u"10", u"9", u"-3"}));
}

TEST(Sort, BlankCellsComeFirstAscendingAndLastDescending) {
    const Object recordset = openedWith({u"a", u"id"});
    for (std::int32_t id = 1; id <= 4; ++id) {
        recordset.call(Member::AddNew);
        if (id % 2 == 0) assign(recordset, u"a", id == 2 ? u"x" : u"");
        assign(recordset, u"id", id);
        recordset.call(Member::Update);
    }
    sort(recordset, u"a");
    EXPECT_EQ(walk(recordset, u"id"), (Texts{u"1", u"3", u"4", u"2"}));
    sort(recordset, u"a DESC");
    EXPECT_EQ(walk(recordset, u"id"), (Texts{u"2", u"4", u"1", u"3"}));
}

TEST(Sort, ThatCannotBeReadLeavesTheOneBefore) {
    const Object recordset = subjects({u"b", u"a"});
    sort(recordset, u"strSubject");
    EXPECT_EQ(errorOf([&] { sort(recordset, u"nobody"); }), error::ItemNotFound);
    EXPECT_EQ(errorOf([&] { sort(recordset, u"strSubject,"); }), error::BadArgument);
    EXPECT_EQ(errorOf([&] { sort(recordset, u"strSubject UP"); }), error::ItemNotFound);
    EXPECT_EQ(walk(recordset), (Texts{u"a", u"b"}));
}

TEST(Sort, MayBeSetBeforeOpening) {
    const Object recordset = closedWith({u"strSubject"});
    sort(recordset, u"strSubject");
    recordset.call(Member::Open);
    addRow(recordset, u"strSubject", u"b");
    addRow(recordset, u"strSubject", u"a");
    EXPECT_EQ(walk(recordset), (Texts{u"a", u"b"}));
}

TEST(Sort, ARowThatIsAddedTakesItsPlaceBehindItsEquals) {
    const Object recordset = subjects({u"c", u"a"});
    sort(recordset, u"strSubject");
    addRow(recordset, u"strSubject", u"b");
    EXPECT_EQ(position(recordset), 2);
    addRow(recordset, u"strSubject", u"A");
    EXPECT_EQ(position(recordset), 2);
    recordset.call(Member::MoveNext);
    EXPECT_EQ(text(recordset, u"strSubject"), u"b");
    EXPECT_EQ(walk(recordset), (Texts{u"a", u"A", u"b", u"c"}));
}

TEST(Sort, ARowThatIsChangedMovesAndStaysCurrent) {
    const Object recordset = subjects({u"a", u"b", u"c"});
    sort(recordset, u"strSubject");
    assign(recordset, u"strSubject", u"x");
    recordset.call(Member::Update);
    EXPECT_EQ(text(recordset, u"strSubject"), u"x");
    EXPECT_EQ(position(recordset), 3);
    recordset.call(Member::MoveNext);
    EXPECT_TRUE(atEnd(recordset));
}

TEST(Sort, ADeletedRowKeepsItsPlaceForTheNextMove) {
    const Object recordset = subjects({u"c", u"a", u"b"});
    sort(recordset, u"strSubject");
    recordset.call(Member::MoveNext);
    recordset.call(Member::Delete);
    EXPECT_EQ(position(recordset), -1);
    recordset.call(Member::MoveNext);
    EXPECT_EQ(text(recordset, u"strSubject"), u"c");
    EXPECT_EQ(position(recordset), 2);
}

TEST(Sort, OfFilteredRowsIsThatOfAllRowsLessTheOthers) {
    const Object recordset = openedWith({u"strSubject"});
    for (int i = 0; i < 3000; ++i) addRow(recordset, u"strSubject", host::decimal((i * 7919) % 3001) + (i % 5 == 0 ? u" é" : u" e"));
    const auto sorted = [&](const Object& table, std::u16string_view criteria) {
        filter(table, criteria);
        sort(table, u"strSubject");
        return walk(table);
    };
    const Object clone = recordset.call(Member::Clone).toObject();
    const Texts all = sorted(clone, u"");
    EXPECT_EQ(all.size(), 3000u);
    EXPECT_TRUE(std::ranges::is_sorted(all, [](const auto& a, const auto& b) { return Collation::of(u"en-US")->compare(a, b) < 0; }));
    for (const std::u16string_view letter : {u" e", u"7", u"99", u"1234"}) {
        // Each with and without the whole order at hand.
        const std::u16string criteria = std::u16string(u"strSubject LIKE '*").append(letter).append(u"*'");
        Texts expected;
        std::ranges::copy_if(all, std::back_inserter(expected), [&](const std::u16string& each) { return each.find(letter) != std::u16string::npos; });
        EXPECT_EQ(sorted(clone, criteria), expected);
        assign(recordset, u"strSubject", text(recordset, u"strSubject"));
        recordset.call(Member::Update);
        EXPECT_EQ(sorted(recordset.call(Member::Clone).toObject(), criteria), expected);
    }
}

}  // namespace
}  // namespace lorvane::recordset
