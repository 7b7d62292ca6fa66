#include "host/Variant.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <memory>

#include "host/TextFunctions.h"

namespace lorvane::host {
namespace {

class Thing : public Dispatch {
public:
    Variant get(Member member, Args) override { raiseNoSuchMember(className(), member); }
    void put(Member member, const Variant&, Args) override { raiseNoSuchMember(className(), member); }
    Variant call(Member member, Args) override { raiseNoSuchMember(className(), member); }
    std::u16string_view className() const noexcept override { return u"Thing"; }
};

std::int32_t numberOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const HostError& error) {
        return error.number();
    }
    return 0;
}

TEST(Variant, KnowsItsKind) {
    EXPECT_EQ(Variant().kind(), Variant::Kind::Empty);
    EXPECT_EQ(Variant::null().kind(), Variant::Kind::Null);
    EXPECT_EQ(Variant::missing().kind(), Variant::Kind::Missing);
    EXPECT_EQ(Variant(true).kind(), Variant::Kind::Boolean);
    EXPECT_EQ(Variant(std::int16_t{1}).kind(), Variant::Kind::Int16);
    EXPECT_EQ(Variant(1).kind(), Variant::Kind::Int32);
    EXPECT_EQ(Variant(1.0).kind(), Variant::Kind::Double);
    EXPECT_EQ(Variant(DateTime{1}).kind(), Variant::Kind::Date);
    EXPECT_EQ(Variant(u"x").kind(), Variant::Kind::Text);
    EXPECT_EQ(Variant(Object()).kind(), Variant::Kind::Object);
    EXPECT_EQ(Variant(Array{}).kind(), Variant::Kind::Array);
    EXPECT_EQ(Variant(Bytes{1}).kind(), Variant::Kind::Bytes);
}

TEST(Variant, BecomesText) {
    EXPECT_EQ(Variant().toText(), u"");
    EXPECT_EQ(Variant(true).toText(), u"True");
    EXPECT_EQ(Variant(false).toText(), u"False");
    EXPECT_EQ(Variant(std::int16_t{-32768}).toText(), u"-32768");
    EXPECT_EQ(Variant(std::numeric_limits<std::int32_t>::min()).toText(), u"-2147483648");
    EXPECT_EQ(Variant(DateTime{33996.711377314816}).toText(), u"1/27/1993 5:04:23 PM");
    EXPECT_EQ(Variant(u"as it is").toText(), u"as it is");
}

TEST(Variant, WritesDoublesShort) {
    const std::pair<double, std::u16string_view> cases[] = {
        {0, u"0"},
        {-0.0, u"0"},
        {1, u"1"},
        {-2.5, u"-2.5"},
        {0.1, u"0.1"},
        {0.1 + 0.2, u"0.3"},
        {1.0 / 3, u"0.333333333333333"},
        {2.0 / 3, u"0.666666666666667"},
        {1234567.891, u"1234567.891"},
        {100, u"100"},
        {123456789012345, u"123456789012345"},
        {999999999999999, u"999999999999999"},
        {1e15, u"1E+15"},
        {1.5e300, u"1.5E+300"},
        {-1e-5, u"-0.00001"},
        {1e-15, u"0.000000000000001"},
        {1e-16, u"1E-16"},
        {1.2345e-14, u"1.2345E-14"},
    };
    for (const auto& [value, text] : cases) EXPECT_EQ(Variant(value).toText(), text) << value;
}

TEST(Variant, BecomesANumber) {
    EXPECT_EQ(Variant().toInt32(), 0);
    EXPECT_EQ(Variant(true).toInt32(), -1);
    EXPECT_EQ(Variant(true).toInt16(), -1);
    EXPECT_EQ(Variant(false).toDouble(), 0);
    EXPECT_EQ(Variant(u" -12 ").toInt32(), -12);
    EXPECT_EQ(Variant(u"1,234.5").toDouble(), 1234.5);
    EXPECT_EQ(Variant(DateTime{1.5}).toDouble(), 1.5);
    EXPECT_EQ(Variant(u"&H10").toInt32(), 16);
}

TEST(Variant, RoundsHalfToEven) {
    EXPECT_EQ(Variant(0.5).toInt32(), 0);
    EXPECT_EQ(Variant(1.5).toInt32(), 2);
    EXPECT_EQ(Variant(2.5).toInt32(), 2);
    EXPECT_EQ(Variant(-0.5).toInt32(), 0);
    EXPECT_EQ(Variant(-1.5).toInt32(), -2);
    EXPECT_EQ(Variant(-2.5).toInt32(), -2);
    EXPECT_EQ(Variant(u"2.5").toInt16(), 2);
    EXPECT_EQ(Variant(2.5000001).toInt32(), 3);
}

TEST(Variant, OutOfRangeIsError6) {
    EXPECT_EQ(Variant(32767.4).toInt16(), 32767);
    EXPECT_EQ(numberOf([] { Variant(32767.5).toInt16(); }), 6);
    EXPECT_EQ(numberOf([] { Variant(32768).toInt16(); }), 6);
    EXPECT_EQ(Variant(-32768.5).toInt16(), -32768);
    EXPECT_EQ(numberOf([] { Variant(2147483647.5).toInt32(); }), 6);
    EXPECT_EQ(Variant(-2147483648.5).toInt32(), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(numberOf([] { Variant(std::numeric_limits<double>::quiet_NaN()).toInt32(); }), 6);
    EXPECT_EQ(numberOf([] { Variant(std::numeric_limits<double>::infinity()).toInt32(); }), 6);
    EXPECT_EQ(numberOf([] { Variant(3e6).toDate(); }), 6);
    EXPECT_EQ(numberOf([] { Variant(u"1e400").toDouble(); }), 6);
}

TEST(Variant, WhatIsNoNumberIsError13) {
    EXPECT_EQ(numberOf([] { Variant(u"").toInt32(); }), 13);
    EXPECT_EQ(numberOf([] { Variant(u"twelve").toInt32(); }), 13);
    EXPECT_EQ(numberOf([] { Variant(u"12 kg").toDouble(); }), 13);
    EXPECT_EQ(numberOf([] { Variant(makeObject<Thing>()).toInt32(); }), 13);
    EXPECT_EQ(numberOf([] { Variant(Array{}).toText(); }), 13);
    EXPECT_EQ(numberOf([] { Variant(Bytes{}).toDouble(); }), 13);
    EXPECT_EQ(numberOf([] { Variant::missing().toInt32(); }), 13);
    EXPECT_EQ(numberOf([] { Variant::missing().toText(); }), 13);
}

TEST(Variant, TheTextOfAFieldThatIsNotThereIsEmpty) {
    EXPECT_EQ(fieldText(Variant::null()), u"");
    EXPECT_EQ(fieldText(Variant()), u"");
    EXPECT_EQ(fieldText(Variant(u"text")), u"text");
    EXPECT_EQ(fieldText(Variant(7)), u"7");
    EXPECT_THROW(fieldText(Variant(Object())), HostError);
}

TEST(Variant, NullCannotBeConverted) {
    EXPECT_EQ(numberOf([] { Variant::null().toText(); }), 94);
    EXPECT_EQ(numberOf([] { Variant::null().toInt16(); }), 94);
    EXPECT_EQ(numberOf([] { Variant::null().toInt32(); }), 94);
    EXPECT_EQ(numberOf([] { Variant::null().toDouble(); }), 94);
    EXPECT_EQ(numberOf([] { Variant::null().toBoolean(); }), 94);
    EXPECT_EQ(numberOf([] { Variant::null().toDate(); }), 94);
}

TEST(Variant, BecomesABoolean) {
    EXPECT_FALSE(Variant().toBoolean());
    EXPECT_TRUE(Variant(2).toBoolean());
    EXPECT_TRUE(Variant(0.25).toBoolean());
    EXPECT_TRUE(Variant(u"TRUE").toBoolean());
    EXPECT_FALSE(Variant(u"false").toBoolean());
    EXPECT_TRUE(Variant(u"-1").toBoolean());
    EXPECT_FALSE(Variant(u"0").toBoolean());
    EXPECT_EQ(numberOf([] { Variant(u"yes").toBoolean(); }), 13);
    EXPECT_EQ(numberOf([] { Variant(u"").toBoolean(); }), 13);
}

TEST(Variant, BecomesADate) {
    EXPECT_EQ(Variant(2).toDate(), DateTime{2});
    EXPECT_EQ(Variant(true).toDate(), DateTime{-1});
    EXPECT_EQ(Variant(u"1/27/1993").toDate(), DateTime{33996});
    EXPECT_EQ(Variant(u"1993-01-27T12:00:00").toDate(), DateTime{33996.5});
    EXPECT_EQ(Variant(Variant(DateTime{33996.5}).toText()).toDate(), DateTime{33996.5});
    EXPECT_EQ(numberOf([] { Variant(u"tomorrow").toDate(); }), 13);
}

TEST(Variant, HandsOutObjectsArraysBytesAndTextOnly) {
    const Object thing = makeObject<Thing>();
    EXPECT_EQ(Variant(thing).toObject(), thing);
    EXPECT_FALSE(Variant().toObject());
    EXPECT_EQ(numberOf([] { Variant(1).toObject(); }), 13);
    EXPECT_EQ(numberOf([] { Variant::null().toObject(); }), 13);
    EXPECT_EQ(Variant(Array{1, {u"a", 2}}).toArray().items[1].toInt32(), 2);
    EXPECT_EQ(Variant(Array{1, {}}).toArray().lower, 1);
    EXPECT_EQ(numberOf([] { Variant().toArray(); }), 13);
    EXPECT_EQ(Variant(Bytes{7, 8}).toBytes(), (Bytes{7, 8}));
    EXPECT_EQ(numberOf([] { Variant(u"x").toBytes(); }), 13);
    EXPECT_EQ(Variant(u"x").text(), u"x");
    EXPECT_EQ(numberOf([] { static_cast<void>(Variant().text()); }), 13);
    EXPECT_EQ(Variant(u"x").textView(), u"x");
    EXPECT_EQ(numberOf([] { static_cast<void>(Variant(1).textView()); }), 13);
}

TEST(Variant, IsEqualByKindAndValue) {
    const Object thing = makeObject<Thing>();
    EXPECT_EQ(Variant(1), Variant(1));
    EXPECT_NE(Variant(1), Variant(1.0));
    EXPECT_NE(Variant(), Variant::null());
    EXPECT_EQ(Variant::missing(), Variant::missing());
    EXPECT_EQ(Variant(u"a"), Variant(std::u16string(u"a")));
    EXPECT_NE(Variant(u"a"), Variant(u"A"));
    EXPECT_EQ(Variant(thing), Variant(thing));
    EXPECT_NE(Variant(thing), Variant(makeObject<Thing>()));
    EXPECT_EQ(Variant(Array{1, {u"a"}}), Variant(Array{1, {u"a"}}));
    EXPECT_NE(Variant(Array{1, {u"a"}}), Variant(Array{0, {u"a"}}));
    EXPECT_EQ(Variant(Bytes{1}), Variant(Bytes{1}));
    EXPECT_NE(Variant(Bytes{1}), Variant(Bytes{2}));
}

/// Keeps a few texts by their numbers, and tells when it goes.
class Keeper : public TextKeeper {
public:
    explicit Keeper(bool& isGone) : isGone_(isGone) {}
    ~Keeper() override { isGone_ = true; }
    std::u16string_view keptText(std::uint64_t number) const noexcept override { return texts_[number]; }

private:
    static constexpr std::u16string_view texts_[] = {u"12.5", u"True", u"a text", u"2027-03-04"};
    bool& isGone_;
};

TEST(Variant, AKeptTextIsATextLikeAnyOther) {
    bool isGone = false;
    const auto keeper = std::make_shared<Keeper>(isGone);
    const auto kept = [&keeper](std::uint64_t number) { return Variant(KeptText{keeper, number}); };
    EXPECT_EQ(kept(2).kind(), Variant::Kind::Text);
    EXPECT_FALSE(kept(2).isEmpty());
    EXPECT_EQ(kept(0).toDouble(), 12.5);
    EXPECT_EQ(kept(0).toInt32(), 12);
    EXPECT_TRUE(kept(1).toBoolean());
    EXPECT_EQ(kept(2).toText(), u"a text");
    EXPECT_EQ(kept(2).textView(), u"a text");
    EXPECT_EQ(kept(3).toDate(), Variant(u"2027-03-04").toDate());
    EXPECT_EQ(kept(2), Variant(u"a text"));
    EXPECT_EQ(Variant(u"a text"), kept(2));
    EXPECT_EQ(kept(2), kept(2));
    EXPECT_NE(kept(2), kept(1));
    EXPECT_NE(kept(0), Variant(12.5));
    EXPECT_EQ(numberOf([&] { kept(2).toInt32(); }), 13);
    EXPECT_EQ(numberOf([&] { kept(2).toArray(); }), 13);
}

TEST(Variant, HoldsTheKeeperUntilTheTextIsItsOwn) {
    bool isGone = false;
    const Variant first{KeptText{std::make_shared<Keeper>(isGone), 2}};
    EXPECT_EQ(Variant(u"own").keptText(), nullptr);
    EXPECT_EQ(first.textView(), u"a text");
    ASSERT_NE(first.keptText(), nullptr);
    {
        const Variant second = first;
        EXPECT_EQ(first.text(), u"a text");
        EXPECT_EQ(first.keptText(), nullptr);
        EXPECT_FALSE(isGone);
        EXPECT_EQ(second, first);
    }
    EXPECT_TRUE(isGone);
    EXPECT_EQ(first.text(), u"a text");
}

TEST(Variant, KeepsLoneSurrogates) {
    const std::u16string lone{u'a', char16_t{0xD800}, u'b'};
    EXPECT_EQ(Variant(lone).toText(), lone);
}

TEST(Argument, IsReadByPositionAndByName) {
    const std::vector<Argument> given{Argument(u"first"), Argument(Variant::missing()), Argument::named(Member::Text, u"named")};
    EXPECT_EQ(argumentAt(given, 0).toText(), u"first");
    EXPECT_TRUE(argumentAt(given, 1).isMissing());
    EXPECT_TRUE(argumentAt(given, 2).isMissing()) << "a named argument has no position";
    EXPECT_TRUE(argumentAt(given, 9).isMissing());
    EXPECT_EQ(argumentNamed(given, Member::Text, 0).toText(), u"named");
    EXPECT_EQ(argumentNamed(given, Member::Value, 0).toText(), u"first");
    EXPECT_EQ(requiredArgument(given, 0).toText(), u"first");
    EXPECT_EQ(numberOf([&] { requiredArgument(given, 1); }), 449);
    EXPECT_EQ(numberOf([&] { requiredArgument(given, 3); }), 449);
}

TEST(Argument, ByReferenceReadsAndWritesTheCallersVariable) {
    Variant variable = 1;
    const Argument argument = Argument::byReference(variable);
    EXPECT_TRUE(argument.isByReference());
    EXPECT_EQ(argument.reference(), &variable);
    argument.assign(5);
    EXPECT_EQ(variable, Variant(5));
    variable = u"later";
    EXPECT_EQ(argument.value().toText(), u"later");
}

TEST(Argument, ByValueIsNotWritten) {
    const Argument argument(1);
    argument.assign(5);
    EXPECT_FALSE(argument.isByReference());
    EXPECT_EQ(argument.value(), Variant(1));
}

}  // namespace
}  // namespace lorvane::host
