#include "recordset/Stream.h"

#include "recordset/RowsetBuilder.h"

namespace lorvane::recordset {
namespace {

std::int32_t positionOf(const Object& stream) {
    return stream.getNumber(Member::Position);
}

// ---- the stream itself

TEST(Stream, GivesBackTheTextThatWasWritten) {
    const Object stream = makeStream();
    stream.call(Member::Open);
    stream.call(Member::WriteText, {u"Work\r\n"});
    stream.call(Member::WriteText, {u"Home"});
    EXPECT_EQ(stream.call(Member::ReadText), Variant(u""));
    stream.put(Member::Position, 0);
    EXPECT_EQ(stream.call(Member::ReadText), Variant(u"Work\r\nHome"));
    EXPECT_EQ(stream.call(Member::ReadText), Variant(u""));
}

TEST(Stream, CountsBytesWithTheMarkInFront) {
    const Object stream = makeStream();
    stream.call(Member::Open);
    EXPECT_EQ(positionOf(stream), 0);
    EXPECT_EQ(getNamed(stream, u"Size"), Variant(0));
    EXPECT_EQ(getNamed(stream, u"EOS"), Variant(true));
    stream.call(Member::WriteText, {u"abc"});
    EXPECT_EQ(positionOf(stream), 8);
    EXPECT_EQ(getNamed(stream, u"Size"), Variant(8));
    stream.put(Member::Position, 4);
    EXPECT_EQ(getNamed(stream, u"EOS"), Variant(false));
    EXPECT_EQ(stream.call(Member::ReadText), Variant(u"bc"));
}

TEST(Stream, WritingInFrontOfTheEndReplaces) {
    const Object stream = streamWith(u"abcdef");
    stream.call(Member::WriteText, {u"XY"});
    EXPECT_EQ(positionOf(stream), 6);
    stream.put(Member::Position, 0);
    EXPECT_EQ(stream.call(Member::ReadText), Variant(u"XYcdef"));
    stream.put(Member::Position, 6);
    callNamed(stream, u"SetEOS");
    stream.put(Member::Position, 0);
    EXPECT_EQ(stream.call(Member::ReadText), Variant(u"XY"));
}

TEST(Stream, ReadsSomeUnitsOrALine) {
    const Object stream = streamWith(u"one\r\ntwo\r\nthree");
    EXPECT_EQ(stream.call(Member::ReadText, {2}), Variant(u"on"));
    EXPECT_EQ(stream.call(Member::ReadText, {-2}), Variant(u"e"));
    EXPECT_EQ(stream.call(Member::ReadText, {-2}), Variant(u"two"));
    EXPECT_EQ(stream.call(Member::ReadText, {-2}), Variant(u"three"));
    EXPECT_EQ(errorOf([&] { stream.call(Member::ReadText, {-3}); }), error::BadArgument);
}

TEST(Stream, WritesALineWhereAsked) {
    const Object stream = makeStream();
    stream.call(Member::Open);
    stream.call(Member::WriteText, {u"a", 1});
    EXPECT_EQ(errorOf([&] { stream.call(Member::WriteText, {u"a", 2}); }), error::BadArgument);
    stream.put(Member::Position, 0);
    EXPECT_EQ(stream.call(Member::ReadText), Variant(u"a\r\n"));
}

TEST(Stream, PositionsOutsideAreRefused) {
    const Object stream = streamWith(u"ab");
    for (const std::int32_t position : {-1, 1, 8, 1'000'000'000}) EXPECT_EQ(errorOf([&] { stream.put(Member::Position, position); }), error::BadArgument);
    EXPECT_EQ(positionOf(stream), 0);
}

TEST(Stream, IsUsedOnlyWhileOpen) {
    const Object stream = makeStream();
    EXPECT_EQ(getNamed(stream, u"State"), Variant(0));
    EXPECT_EQ(errorOf([&] { stream.call(Member::ReadText); }), error::Closed);
    EXPECT_EQ(errorOf([&] { stream.call(Member::WriteText, {u"a"}); }), error::Closed);
    EXPECT_EQ(errorOf([&] { stream.put(Member::Position, 0); }), error::Closed);
    EXPECT_EQ(errorOf([&] { stream.call(Member::Close); }), error::Closed);
    stream.call(Member::Open);
    EXPECT_EQ(getNamed(stream, u"State"), Variant(1));
    EXPECT_EQ(errorOf([&] { stream.call(Member::Open); }), error::Open);
    stream.call(Member::WriteText, {u"a"});
    stream.call(Member::Close);
    stream.call(Member::Open);
    EXPECT_EQ(getNamed(stream, u"Size"), Variant(0));
    EXPECT_EQ(errorOf([&] { makeStream().call(Member::Open, {u"C:\\file.txt"}); }), error::NotSupported);
    EXPECT_EQ(errorOf([&] { stream.get(Member::Subject); }), host::runtime_error::NoSuchMember);
}

// ---- a recordset's way through it

Object categories(std::initializer_list<std::u16string_view> names) {
    Object recordset = openedWith({u"strCategory"});
    for (const std::u16string_view name : names) addRow(recordset, u"strCategory", name);
    return recordset;
}

TEST(SavedRecordset, OpensTheStreamAndIsReadAgain) {
    const Object saved = categories({u"Work", u"", u"R&D <\"x\">", u"it's"});
    const std::u16string text = savedText(saved);
    EXPECT_TRUE(text.starts_with(u"<xml xmlns:s="));
    EXPECT_TRUE(text.ends_with(u"</xml>"));
    const Object opened = openedOn(text + u"\r\n");
    EXPECT_EQ(walk(opened, u"strCategory"), (Texts{u"Work", u"", u"R&D <\"x\">", u"it's"}));
    EXPECT_EQ(getNamed(opened, u"State"), Variant(1));
}

TEST(SavedRecordset, StandsOnItsFirstRowAfterwards) {
    const Object saved = categories({u"a", u"b"});
    savedText(saved);
    EXPECT_EQ(position(saved), 1);
    EXPECT_NE(savedText(categories({})), u"");
}

TEST(SavedRecordset, IsWrittenWithTheLinesOfAStream) {
    EXPECT_NE(
        savedText(categories({})).find(u"<s:datatype dt:type='string' rs:dbtype='str' dt:maxLength='1000'\r\n\t\t\t rs:precision='0' rs:maybenull='false'/>"),
        std::u16string::npos)
        << host::toUtf8(savedText(categories({})));
}

TEST(SavedRecordset, KeepsStatesOverTheStream) {
    const Object opened = openedOn(rowsetOf(nullableFields,
                                            u"<z:row ID='1' TXT='a'/><rs:insert><z:row ID='2'/></rs:insert>"
                                            u"<rs:update><rs:original><z:row ID='3'/></rs:original><z:row TXT='c'/></rs:update>"));
    const Object again = openedOn(savedText(opened));
    std::vector<Variant> states;
    for (; !atEnd(again); again.call(Member::MoveNext)) states.push_back(getNamed(again, u"Status"));
    EXPECT_EQ(states, (std::vector<Variant>{8, 1, 2}));
}

TEST(SavedRecordset, IsSavedOnlyAsXmlToAStreamWhileOpen) {
    const Object recordset = closedWith({u"strCategory"});
    EXPECT_EQ(errorOf([&] { recordset.call(Member::Save, {makeStream(), 1}); }), error::Closed);
    recordset.call(Member::Open);
    EXPECT_EQ(errorOf([&] { recordset.call(Member::Save, {u"C:\\file.xml", 1}); }), error::NotSupported);
    EXPECT_EQ(errorOf([&] { recordset.call(Member::Save, {makeStream()}); }), error::NotSupported);
    EXPECT_EQ(errorOf([&] { recordset.call(Member::Save, {makeStream(), 0}); }), error::NotSupported);
    EXPECT_EQ(errorOf([&] { recordset.call(Member::Save, {recordset, 1}); }), error::NotSupported);
}

TEST(OpenedRecordset, ReadsFromThePositionOn) {
    const Object stream = streamWith(u"xx" + rowsetOf(categoryField, u"<z:row strCategory='a'/>"));
    stream.put(Member::Position, 6);
    const Object recordset = makeRecordset(Collation::of(u"en-US"));
    recordset.call(Member::Open, {stream});
    EXPECT_EQ(walk(recordset, u"strCategory"), Texts{u"a"});
    // Nothing is left behind the end.
    EXPECT_EQ(errorOf([&] { makeRecordset(Collation::of(u"en-US")).call(Member::Open, {stream}); }), error::NotARowset);
}

TEST(OpenedRecordset, StaysClosedAndUsableWhereTheTextBreaksOff) {
    const std::u16string whole = rowsetOf(categoryField, u"\t<rs:insert>\r\n\t\t<z:row strCategory='Work'/>\r\n\t</rs:insert>\r\n");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const Object recordset = makeRecordset(Collation::of(u"en-US"));
        ASSERT_EQ(errorOf([&] { recordset.call(Member::Open, {streamWith(whole.substr(0, length))}); }), error::NotARowset) << length;
        ASSERT_EQ(errorOf([&] { recordset.get(Member::RecordCount); }), error::Closed);
        if (length % 50 != 0) continue;
        appendField(recordset, u"strCategory", 200, 1000);
        recordset.call(Member::Open);
        addRow(recordset, u"strCategory", u"Home");
        EXPECT_EQ(recordCount(recordset), 1);
    }
}

TEST(OpenedRecordset, TakesAStreamAloneThatIsOpen) {
    const Object recordset = makeRecordset(Collation::of(u"en-US"));
    const Object stream = streamWith(rowsetOf(categoryField, u""));
    EXPECT_EQ(errorOf([&] { recordset.call(Member::Open, {stream, u"connection"}); }), error::BadArgument);
    EXPECT_EQ(errorOf([&] { recordset.call(Member::Open, {makeStream()}); }), error::Closed);
    EXPECT_EQ(errorOf([&] { recordset.call(Member::Open, {Object()}); }), error::BadArgument);
    EXPECT_EQ(errorOf([&] { recordset.call(Member::Open, {recordset}); }), error::BadArgument);
    recordset.call(Member::Open, {stream});
    EXPECT_EQ(errorOf([&] { recordset.call(Member::Open, {stream}); }), error::Open);
}

TEST(OpenedRecordset, IsEditedFilteredAndSortedLikeAnyOther) {
    const Object recordset = openedOn(rowsetOf(categoryField, u"<z:row strCategory='b'/><z:row strCategory='a'/>"));
    addRow(recordset, u"strCategory", u"c");
    recordset.put(Member::Sort, u"strCategory DESC");
    EXPECT_EQ(walk(recordset, u"strCategory"), (Texts{u"c", u"b", u"a"}));
    recordset.put(Member::Filter, u"strCategory = 'A'");
    EXPECT_EQ(recordCount(recordset), 1);
    EXPECT_EQ(errorOf([&] { assign(recordset, u"strCategory", std::u16string(1001, u'x')); }), error::MultipleStep);
}

TEST(OpenedRecordset, AFieldHeldOverFromMoreFieldsIsNotFound) {
    const Object recordset = openedWith({u"A", u"B", u"C"});
    const Object held = field(recordset, u"C");
    recordset.call(Member::Close);
    recordset.call(Member::Open, {streamWith(rowsetOf(categoryField, u"<z:row strCategory='a'/>"))});
    EXPECT_EQ(text(recordset, u"strCategory"), u"a");
    EXPECT_EQ(errorOf([&] { held.get(Member::Value); }), error::ItemNotFound);
    EXPECT_EQ(errorOf([&] { held.get(Member::Name); }), error::ItemNotFound);
}

}  // namespace
}  // namespace lorvane::recordset
