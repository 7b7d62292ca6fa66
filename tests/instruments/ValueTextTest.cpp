#include "instruments/ValueText.h"

#include <gtest/gtest.h>

#include "instruments/FakeItem.h"

namespace lorvane::instruments::test {
namespace {

using host::Variant;

TEST(ValueText, EachKindHasItsForm) {
    EXPECT_EQ(valueText(Variant()), u"Empty");
    EXPECT_EQ(valueText(Variant::null()), u"Null");
    EXPECT_EQ(valueText(Variant::missing()), u"Missing");
    EXPECT_EQ(valueText(true), u"True");
    EXPECT_EQ(valueText(std::int16_t{-3}), u"-3");
    EXPECT_EQ(valueText(924), u"924");
    EXPECT_EQ(valueText(0.5), u"0.5");
    EXPECT_EQ(valueText(host::DateTime{46762.375}), u"#2028-01-10T09:00:00#");
    EXPECT_EQ(valueText(host::Object()), u"Nothing");
    EXPECT_EQ(valueText(host::makeObject<FakeItem>(u"MailItem")), u"MailItem");
    EXPECT_EQ(valueText(host::Bytes{1, 2, 3}), u"bytes(3)");
    EXPECT_EQ(valueText(host::Array{0, {1, u"a", host::Array{}}}), u"[1, \"a\", []]");
}

TEST(ValueText, ATextStaysOnOneLineAndCanBeToldFromWhatStandsAround) {
    EXPECT_EQ(valueText(u"a \"b\"\r\n\tc\\n\x01\x7F"), u"\"a \"\"b\"\"\\r\\n\\tc\\\\n\\x01\\x7f\"");
}

TEST(ValueText, LongValuesAreCutWithTheirLength) {
    EXPECT_EQ(valueText(std::u16string(80, u'x')), u"\"" + std::u16string(80, u'x') + u"\"");
    EXPECT_EQ(valueText(std::u16string(1234, u'x')), u"\"" + std::u16string(80, u'x') + u"…\"(1234)");
    EXPECT_EQ(valueText(host::Array{0, std::vector<Variant>(12, 1)}), u"[1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1]");
    EXPECT_EQ(valueText(host::Array{0, std::vector<Variant>(13, 1)}), u"[1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, …](13)");
}

}  // namespace
}  // namespace lorvane::instruments::test
