#include "recordset/Recordset.h"

#include <gtest/gtest.h>

#include "RecordsetBuilder.h"
#include "recordset/Errors.h"

namespace lorvane::recordset {
namespace {

// ---- fields and opening

TEST(Recordset, FieldsAreAppendedAndThenKnown) {
    const Object recordset = makeRecordset(Collation::of(u"en-US"));
    appendField(recordset, u"strEntryID", 200, 1000);
    appendField(recordset, u"app_start_date", 7, 1000);
    const Object fields = recordset.getObject(Member::Fields);
    EXPECT_EQ(fields.getNumber(Member::Count), 2);
    const Object first = fields.getObject(Member::Item, {std::int32_t{0}});
    EXPECT_EQ(first.getText(Member::Name), u"strEntryID");
    EXPECT_EQ(first.getNumber(Member::Type), 200);
    EXPECT_EQ(getNamed(first, u"DefinedSize"), Variant(std::int32_t{1000}));
    EXPECT_EQ(fields.getObject(Member::Item, {u"APP_START_DATE"}).getNumber(Member::Type), 7);
    EXPECT_EQ(recordset.dispatch()->className(), u"Recordset");
    EXPECT_EQ(fields.dispatch()->className(), u"Fields");
    EXPECT_EQ(first.dispatch()->className(), u"Field");
}

TEST(Recordset, FieldsCannotBeAppendedTwiceOrWithoutSense) {
    const Object recordset = closedWith({u"strCategory"});
    EXPECT_EQ(errorOf([&] { appendField(recordset, u"STRCATEGORY", 200, 1000); }), error::AlreadyInCollection);
    EXPECT_EQ(errorOf([&] { appendField(recordset, u"", 200, 1000); }), error::BadArgument);
    EXPECT_EQ(errorOf([&] { appendField(recordset, u"x", 4242, 1000); }), error::BadArgument);
    EXPECT_EQ(errorOf([&] { appendField(recordset, u"x", 200, -1); }), error::BadArgument);
    recordset.call(Member::Open);
    EXPECT_EQ(errorOf([&] { appendField(recordset, u"more", 200, 1000); }), error::IllegalOperation);
}

TEST(Recordset, OpensOnceAndNotWithoutFields) {
    const Object bare = makeRecordset(Collation::of(u"en-US"));
    EXPECT_EQ(errorOf([&] { bare.call(Member::Open); }), error::InvalidConnection);
    const Object recordset = openedWith({u"strCategory"});
    EXPECT_EQ(errorOf([&] { recordset.call(Member::Open); }), error::Open);
    EXPECT_EQ(errorOf([&] { closedWith({u"a"}).call(Member::Open, {u"SELECT * FROM t"}); }), error::InvalidConnection);
}

TEST(Recordset, AClosedOneAnswersOnlyWhatNeedsNoRows) {
    const Object recordset = closedWith({u"strCategory"});
    EXPECT_EQ(getNamed(recordset, u"State"), Variant(std::int32_t{0}));
    for (const Member member : {Member::RecordCount, Member::EndOfFile, Member::AbsolutePosition, Member::Filter})
        EXPECT_EQ(errorOf([&] { recordset.get(member); }), error::Closed);
    for (const Member member :
         {Member::AddNew, Member::Update, Member::Delete, Member::MoveFirst, Member::MoveNext, Member::Clone, Member::CancelUpdate, Member::Close})
        EXPECT_EQ(errorOf([&] { recordset.call(member); }), error::Closed);
    EXPECT_EQ(errorOf([&] { recordset.put(Member::Filter, u"strCategory = 'x'"); }), error::Closed);
    EXPECT_EQ(errorOf([&] { text(recordset, u"strCategory"); }), error::Closed);
}

TEST(Recordset, CloseDropsTheRowsAndKeepsTheFields) {
    const Object recordset = subjects({u"a"});
    const Object clone = recordset.call(Member::Clone).toObject();
    recordset.call(Member::Close);
    EXPECT_EQ(errorOf([&] { recordCount(recordset); }), error::Closed);
    EXPECT_EQ(recordCount(clone), 1);
    recordset.call(Member::Open);
    EXPECT_EQ(recordCount(recordset), 0);
    recordset.call(Member::AddNew);
    EXPECT_EQ(errorOf([&] { recordset.call(Member::Close); }), error::IllegalOperation);
}

TEST(Recordset, FieldsAreFoundByNameInAnyCaseAndByNumberFromZero) {
    const Object recordset = openedWith({u"strEntryID", u"strStoreID"});
    addRow(recordset, u"strEntryID", u"7");
    EXPECT_EQ(text(recordset, u"strentryid"), u"7");
    EXPECT_EQ(recordset.getObject(Member::Fields, {std::int32_t{0}}).getText(Member::Value), u"7");
    EXPECT_EQ(errorOf([&] { field(recordset, u"strEntry"); }), error::ItemNotFound);
    EXPECT_EQ(errorOf([&] { recordset.get(Member::Fields, {std::int32_t{2}}); }), error::ItemNotFound);
    EXPECT_EQ(errorOf([&] { recordset.get(Member::Fields, {std::int32_t{-1}}); }), error::ItemNotFound);
}

TEST(Recordset, OneFieldIsOneObjectAndOutlivesTheHandleOnItsRecordset) {
    Object kept;
    {
        const Object recordset = subjects({u"a"});
        kept = field(recordset, u"strSubject");
        EXPECT_EQ(kept, field(recordset, u"STRSUBJECT"));
        EXPECT_EQ(recordset.getObject(Member::Fields), recordset.getObject(Member::Fields));
    }
    EXPECT_EQ(kept.getText(Member::Value), u"a");
}

TEST(Recordset, UnknownMembersAreErrors) {
    const Object recordset = subjects({u"a"});
    EXPECT_EQ(errorOf([&] { recordset.get(Member::Subject); }), host::runtime_error::NoSuchMember);
    EXPECT_EQ(errorOf([&] { recordset.put(Member::RecordCount, std::int32_t{1}); }), host::runtime_error::NoSuchMember);
    EXPECT_EQ(errorOf([&] { recordset.get(Member::AddNew); }), host::runtime_error::NoSuchMember);
    EXPECT_EQ(errorOf([&] { field(recordset, u"strSubject").put(Member::Name, u"x"); }), host::runtime_error::NoSuchMember);
    EXPECT_FALSE(recordset.dispatch()->memberNamed(u"NoSuchThing"));
}

// ---- walking

TEST(Recordset, AnEmptyTableIsAtBothEndsAndCannotBeWalked) {
    const Object recordset = subjects({});
    EXPECT_TRUE(atStart(recordset));
    EXPECT_TRUE(atEnd(recordset));
    EXPECT_EQ(position(recordset), -1);
    EXPECT_EQ(recordCount(recordset), 0);
    for (const Member member : {Member::MoveFirst, Member::MoveNext, Member::Delete, Member::Update})
        EXPECT_EQ(errorOf([&] { recordset.call(member); }), error::NoCurrentRecord);
    for (const std::u16string_view name : {u"MovePrevious", u"MoveLast"}) EXPECT_EQ(errorOf([&] { callNamed(recordset, name); }), error::NoCurrentRecord);
    EXPECT_EQ(errorOf([&] { text(recordset, u"strSubject"); }), error::NoCurrentRecord);
    EXPECT_EQ(errorOf([&] { assign(recordset, u"strSubject", u"x"); }), error::NoCurrentRecord);
    EXPECT_EQ(errorOf([&] { recordset.put(Member::AbsolutePosition, std::int32_t{1}); }), error::NoCurrentRecord);
}

TEST(Recordset, RowsAreWalkedInTheOrderOfTheirAdding) {
    EXPECT_EQ(walk(subjects({u"c", u"a", u"b"})), (Texts{u"c", u"a", u"b"}));
}

TEST(Recordset, BeyondTheLastRowThereIsNothingToReadOrMoveTo) {
    const Object recordset = subjects({u"a", u"b"});
    recordset.call(Member::MoveNext);
    EXPECT_FALSE(atEnd(recordset));
    recordset.call(Member::MoveNext);
    EXPECT_TRUE(atEnd(recordset));
    EXPECT_FALSE(atStart(recordset));
    EXPECT_EQ(position(recordset), -3);
    EXPECT_EQ(errorOf([&] { text(recordset, u"strSubject"); }), error::NoCurrentRecord);
    EXPECT_EQ(errorOf([&] { recordset.call(Member::MoveNext); }), error::NoCurrentRecord);
    callNamed(recordset, u"MovePrevious");
    EXPECT_EQ(text(recordset, u"strSubject"), u"b");
    EXPECT_EQ(position(recordset), 2);
}

TEST(Recordset, InFrontOfTheFirstRowLikewise) {
    const Object recordset = subjects({u"a", u"b"});
    callNamed(recordset, u"MovePrevious");
    EXPECT_TRUE(atStart(recordset));
    EXPECT_FALSE(atEnd(recordset));
    EXPECT_EQ(position(recordset), -2);
    EXPECT_EQ(errorOf([&] { callNamed(recordset, u"MovePrevious"); }), error::NoCurrentRecord);
    recordset.call(Member::MoveNext);
    EXPECT_EQ(text(recordset, u"strSubject"), u"a");
    callNamed(recordset, u"MoveLast");
    EXPECT_EQ(text(recordset, u"strSubject"), u"b");
}

TEST(Recordset, APositionIsSetFromOneToTheCount) {
    const Object recordset = subjects({u"a", u"b", u"c"});
    recordset.put(Member::AbsolutePosition, std::int32_t{3});
    EXPECT_EQ(text(recordset, u"strSubject"), u"c");
    recordset.put(Member::AbsolutePosition, u"2");
    EXPECT_EQ(text(recordset, u"strSubject"), u"b");
    for (const std::int32_t outside : {0, -1, -2, -3, 4}) EXPECT_EQ(errorOf([&] { recordset.put(Member::AbsolutePosition, outside); }), error::BadArgument);
    EXPECT_EQ(position(recordset), 2);
}

TEST(Recordset, PositionsGoBeyond16Bits) {
    const Object recordset = openedWith({u"strSubject"});
    for (std::int32_t i = 1; i <= 70000; ++i) addRow(recordset, u"strSubject", i);
    EXPECT_EQ(recordCount(recordset), 70000);
    recordset.put(Member::AbsolutePosition, std::int32_t{69999});
    EXPECT_EQ(text(recordset, u"strSubject"), u"69999");
    recordset.put(Member::Filter, u"strSubject LIKE '*'");
    recordset.put(Member::AbsolutePosition, std::int32_t{69998});
    EXPECT_EQ(text(recordset, u"strSubject"), u"69998");
    EXPECT_EQ(position(recordset), 69998);
}

TEST(Recordset, AFieldThatIsKeptShowsTheRowMovedTo) {
    const Object recordset = subjects({u"a", u"b"});
    const Object kept = field(recordset, u"strSubject");
    EXPECT_EQ(kept.getText(Member::Value), u"a");
    recordset.call(Member::MoveNext);
    EXPECT_EQ(kept.getText(Member::Value), u"b");
    kept.put(Member::Value, u"B");
    recordset.call(Member::Update);
    EXPECT_EQ(walk(recordset), (Texts{u"a", u"B"}));
}

// ---- adding and changing

TEST(Recordset, AnAddedRowIsCurrentAndCountsFromItsUpdate) {
    const Object recordset = subjects({u"a"});
    recordset.call(Member::AddNew);
    EXPECT_FALSE(atEnd(recordset));
    EXPECT_FALSE(atStart(recordset));
    EXPECT_EQ(recordCount(recordset), 1);
    EXPECT_EQ(position(recordset), -1);
    EXPECT_EQ(getNamed(recordset, u"EditMode"), Variant(std::int32_t{2}));
    EXPECT_TRUE(field(recordset, u"strSubject").get(Member::Value).isEmpty());
    assign(recordset, u"strSubject", u"b");
    EXPECT_EQ(text(recordset, u"strSubject"), u"b");
    recordset.call(Member::Update);
    EXPECT_EQ(recordCount(recordset), 2);
    EXPECT_EQ(position(recordset), 2);
    EXPECT_EQ(getNamed(recordset, u"EditMode"), Variant(std::int32_t{0}));
    EXPECT_EQ(getNamed(recordset, u"Status"), Variant(std::int32_t{1}));
    recordset.call(Member::MoveNext);
    EXPECT_TRUE(atEnd(recordset));
}

TEST(Recordset, AddingAgainOrMovingCommitsTheRowInEdit) {
    const Object recordset = subjects({});
    recordset.call(Member::AddNew);
    assign(recordset, u"strSubject", u"a");
    recordset.call(Member::AddNew);
    assign(recordset, u"strSubject", u"b");
    recordset.call(Member::MoveFirst);
    assign(recordset, u"strSubject", u"A");
    recordset.call(Member::MoveNext);
    assign(recordset, u"strSubject", u"B");
    recordset.put(Member::AbsolutePosition, std::int32_t{1});
    EXPECT_EQ(walk(recordset), (Texts{u"A", u"B"}));
}

TEST(Recordset, CancelUpdateTakesAnAddedRowBack) {
    const Object recordset = subjects({u"a", u"b"});
    recordset.call(Member::AddNew);
    assign(recordset, u"strSubject", u"c");
    recordset.call(Member::CancelUpdate);
    EXPECT_EQ(text(recordset, u"strSubject"), u"a");
    assign(recordset, u"strSubject", u"changed");
    recordset.call(Member::CancelUpdate);
    recordset.call(Member::CancelUpdate);
    EXPECT_EQ(walk(recordset), (Texts{u"a", u"b"}));
}

TEST(Recordset, DeletingARowThatIsBeingAddedLeavesNoTrace) {
    const Object recordset = subjects({u"a"});
    recordset.call(Member::AddNew);
    assign(recordset, u"strSubject", u"b");
    recordset.call(Member::Delete);
    EXPECT_EQ(walk(recordset), (Texts{u"a"}));
}

TEST(Recordset, ChangesAreSeenByTheEditorAtOnceAndByOthersFromTheUpdate) {
    const Object recordset = subjects({u"a"});
    const Object clone = recordset.call(Member::Clone).toObject();
    assign(recordset, u"strSubject", u"b");
    EXPECT_EQ(text(recordset, u"strSubject"), u"b");
    EXPECT_EQ(text(clone, u"strSubject"), u"a");
    recordset.call(Member::Update);
    EXPECT_EQ(text(clone, u"strSubject"), u"b");
}

TEST(Recordset, SizesCountUnitsAndATooLongValueIsRefusedWhenAssigned) {
    const Object recordset = openedWith({u"strSubject"});
    recordset.call(Member::AddNew);
    for (const std::size_t length : {600, 601, 1000}) {
        assign(recordset, u"strSubject", std::u16string(length, u'ü'));
        EXPECT_EQ(text(recordset, u"strSubject").size(), length);
    }
    try {
        assign(recordset, u"strSubject", std::u16string(1001, u'x'));
        FAIL() << "1001 units were taken";
    } catch (const host::HostError& failure) {
        EXPECT_EQ(failure.number(), -2147217887);
        EXPECT_EQ(failure.description(), u"Multiple-step operation generated errors. Check each status value.");
    }
    EXPECT_EQ(text(recordset, u"strSubject"), std::u16string(1000, u'ü'));
    std::u16string pairs;
    for (int i = 0; i < 500; ++i) pairs += u"\U0001F600";
    assign(recordset, u"strSubject", pairs);
    EXPECT_EQ(errorOf([&] { assign(recordset, u"strSubject", pairs + u"x"); }), error::MultipleStep);
    assign(recordset, u"strSubject", u"[Subject could not be read. It may be corrupted]");
    recordset.call(Member::Update);
    EXPECT_EQ(walk(recordset), (Texts{u"[Subject could not be read. It may be corrupted]"}));
}

TEST(Recordset, ValuesOfOtherKindsAreConvertedToTheField) {
    const Object recordset = makeRecordset(Collation::of(u"en-US"));
    appendField(recordset, u"arrIndex", 200, 1000);
    appendField(recordset, u"app_start_date", 7, 1000);
    recordset.call(Member::Open);
    recordset.call(Member::AddNew);
    assign(recordset, u"arrIndex", std::int32_t{12});
    assign(recordset, u"app_start_date", host::DateTime{46762.375});
    recordset.call(Member::Update);
    EXPECT_EQ(field(recordset, u"arrIndex").get(Member::Value), Variant(u"12"));
    EXPECT_EQ(field(recordset, u"app_start_date").get(Member::Value), Variant(host::DateTime{46762.375}));
    EXPECT_EQ(errorOf([&] { assign(recordset, u"app_start_date", u"never"); }), error::WrongValueType);
    EXPECT_EQ(getNamed(recordset, u"EditMode"), Variant(std::int32_t{0}));
}

// ---- deleting

TEST(Recordset, ADeletedRowStaysCurrentUntilAMove) {
    const Object recordset = subjects({u"a", u"b", u"c"});
    recordset.call(Member::MoveNext);
    recordset.call(Member::Delete);
    recordset.call(Member::Update);
    EXPECT_FALSE(atEnd(recordset));
    EXPECT_EQ(recordCount(recordset), 2);
    EXPECT_EQ(position(recordset), -1);
    EXPECT_EQ(getNamed(recordset, u"Status"), Variant(std::int32_t{4}));
    EXPECT_EQ(errorOf([&] { text(recordset, u"strSubject"); }), error::NoCurrentRecord);
    EXPECT_EQ(errorOf([&] { recordset.call(Member::Delete); }), error::NoCurrentRecord);
    recordset.call(Member::MoveNext);
    EXPECT_EQ(text(recordset, u"strSubject"), u"c");
    EXPECT_EQ(position(recordset), 2);
}

TEST(Recordset, DeletingTheOnlyRowLeavesBothEndsFalseUntilAMove) {
    const Object recordset = subjects({u"a"});
    recordset.call(Member::Delete);
    EXPECT_FALSE(atStart(recordset));
    EXPECT_FALSE(atEnd(recordset));
    recordset.call(Member::MoveNext);
    EXPECT_TRUE(atStart(recordset));
    EXPECT_TRUE(atEnd(recordset));
    EXPECT_EQ(position(recordset), -1);
}

TEST(Recordset, AWalkThatDeletesSkipsNothing) {
    const Object recordset = subjects({u"1", u"2", u"3", u"4", u"5", u"6"});
    Texts seen;
    for (; !atEnd(recordset); recordset.call(Member::MoveNext)) {
        seen.push_back(text(recordset, u"strSubject"));
        if (seen.size() % 2 == 0 || seen.size() == 3) {
            recordset.call(Member::Delete);
            recordset.call(Member::Update);
        }
    }
    EXPECT_EQ(seen, (Texts{u"1", u"2", u"3", u"4", u"5", u"6"}));
    EXPECT_EQ(walk(recordset), (Texts{u"1", u"5"}));
    callNamed(recordset, u"MovePrevious");
    EXPECT_EQ(text(recordset, u"strSubject"), u"5");
    callNamed(recordset, u"MovePrevious");
    EXPECT_EQ(text(recordset, u"strSubject"), u"1");
}

// ---- clones

TEST(Recordset, ACloneSharesRowsAndHasItsOwnPlaceSortAndFilter) {
    const Object recordset = subjects({u"b", u"a", u"c"});
    recordset.put(Member::Sort, u"strSubject DESC");
    recordset.put(Member::Filter, u"strSubject > 'a'");
    recordset.call(Member::MoveNext);
    const Object clone = recordset.call(Member::Clone).toObject();
    EXPECT_EQ(text(clone, u"strSubject"), u"b");
    EXPECT_EQ(clone.getText(Member::Sort), u"");
    EXPECT_EQ(clone.get(Member::Filter), Variant(std::int32_t{0}));
    EXPECT_EQ(walk(clone), (Texts{u"b", u"a", u"c"}));
    EXPECT_EQ(position(recordset), 2);
    clone.put(Member::Filter, u"strSubject = 'A'");
    EXPECT_EQ(recordCount(clone), 1);
    EXPECT_EQ(recordCount(recordset), 2);
    EXPECT_EQ(recordset.getText(Member::Sort), u"strSubject DESC");
    EXPECT_EQ(recordset.getText(Member::Filter), u"strSubject > 'a'");
}

TEST(Recordset, RowsAddedOrDeletedThroughOneCloneAreSeenInTheOther) {
    const Object recordset = subjects({u"a", u"b"});
    const Object clone = recordset.call(Member::Clone).toObject();
    addRow(clone, u"strSubject", u"c");
    EXPECT_EQ(recordCount(recordset), 3);
    EXPECT_EQ(position(recordset), 1);
    clone.call(Member::MoveFirst);
    clone.call(Member::Delete);
    EXPECT_EQ(errorOf([&] { text(recordset, u"strSubject"); }), error::NoCurrentRecord);
    recordset.call(Member::MoveNext);
    EXPECT_EQ(text(recordset, u"strSubject"), u"b");
    EXPECT_EQ(position(recordset), 1);
}

TEST(Recordset, ARowInEditThatAnotherCloneDeletesIsNotCommitted) {
    const Object recordset = subjects({u"a", u"b"});
    const Object clone = recordset.call(Member::Clone).toObject();
    assign(recordset, u"strSubject", u"x");
    clone.call(Member::Delete);
    EXPECT_EQ(errorOf([&] { recordset.call(Member::Update); }), error::NoCurrentRecord);
    EXPECT_EQ(walk(recordset), (Texts{u"b"}));
}

TEST(Recordset, ACloneOutlivesItsOrigin) {
    Object clone;
    {
        const Object recordset = subjects({u"a"});
        clone = recordset.call(Member::Clone).toObject();
    }
    EXPECT_EQ(walk(clone), (Texts{u"a"}));
}

}  // namespace
}  // namespace lorvane::recordset
