#include "host/HostError.h"

#include <gtest/gtest.h>

namespace lorvane::host {
namespace {

TEST(HostError, GivesTheStandardTextOfARunTimeNumber) {
    EXPECT_EQ(HostError(5).description(), u"Invalid procedure call or argument");
    EXPECT_EQ(HostError(6).description(), u"Overflow");
    EXPECT_EQ(HostError(9).description(), u"Subscript out of range");
    EXPECT_EQ(HostError(13).description(), u"Type mismatch");
    EXPECT_EQ(HostError(53).description(), u"File not found");
    EXPECT_EQ(HostError(91).description(), u"Object variable or With block variable not set");
    EXPECT_EQ(HostError(94).description(), u"Invalid use of Null");
    EXPECT_EQ(HostError(438).description(), u"Object doesn't support this property or method");
    EXPECT_EQ(HostError(3021).number(), 3021);
    EXPECT_TRUE(HostError(3021).description().starts_with(u"Either BOF or EOF is True"));
}

TEST(HostError, HasATextForNumbersNobodyKnows) {
    EXPECT_EQ(HostError(-2147000000).description(), u"Automation error");
    EXPECT_EQ(HostError(31337).description(), u"Application-defined or object-defined error");
}

TEST(HostError, KeepsTheGivenDescription) {
    const HostError error(13, u"Grö\u00DFe");
    EXPECT_EQ(error.number(), 13);
    EXPECT_EQ(error.description(), u"Grö\u00DFe");
}

TEST(HostError, SaysNumberAndDescriptionInUtf8) {
    EXPECT_STREQ(HostError(13).what(), "13: Type mismatch");
    EXPECT_STREQ(HostError(5, u"Maß").what(), "5: Ma\xC3\x9F");
}

TEST(HostError, FailuresOfTheHostAreNegative) {
    EXPECT_EQ(host_failure::NotFound, -2147221233);
    EXPECT_EQ(host_failure::AccessDenied, -2147024891);
    EXPECT_NE(HostError(host_failure::NotFound).description(), HostError(-2147000000).description());
}

}  // namespace
}  // namespace lorvane::host
