#include "host/Member.h"

#include <gtest/gtest.h>

#include "host/TextFunctions.h"

namespace lorvane::host {
namespace {

TEST(Member, IsFoundByNameInAnyCase) {
    EXPECT_EQ(findMember(u"FolderExists"), Member::FolderExists);
    EXPECT_EQ(findMember(u"folderexists"), Member::FolderExists);
    EXPECT_EQ(findMember(u"FOLDEREXISTS"), Member::FolderExists);
}

TEST(Member, WhoseNameIsAMacroElsewhereIsFoundByTheHostsName) {
    EXPECT_EQ(findMember(u"EOF"), Member::EndOfFile);
    EXPECT_EQ(memberName(Member::EndOfFile), u"EOF");
    EXPECT_EQ(findMember(u"EndOfFile"), std::nullopt);
}

TEST(Member, EveryRowIsFoundByItsOwnNameUpperAndLowerCased) {
    for (std::uint16_t number = 1; number < static_cast<std::uint16_t>(Member::Count_); ++number) {
        const Member member{number};
        const std::u16string_view name = memberName(member);
        EXPECT_EQ(findMember(name), member) << toUtf8(name);
        EXPECT_EQ(findMember(UCase(name)), member) << toUtf8(name);
        EXPECT_EQ(findMember(LCase(name)), member) << toUtf8(name);
    }
}

TEST(Member, UnknownNamesAreNotFound) {
    EXPECT_EQ(findMember(u""), std::nullopt);
    EXPECT_EQ(findMember(u"?"), std::nullopt);
    EXPECT_EQ(findMember(u"FolderExist"), std::nullopt);
    EXPECT_EQ(findMember(u"FolderExistsNot"), std::nullopt);
    EXPECT_EQ(findMember(u"zzzz"), std::nullopt);
    EXPECT_EQ(findMember(u"\u212Aill"), std::nullopt);
}

TEST(Member, NumbersOutsideTheTableHaveNoName) {
    EXPECT_EQ(memberName(Member::None), u"?");
    EXPECT_EQ(memberName(Member{platformMembers}), u"?");
    EXPECT_EQ(memberName(Member{windowMembers + 3}), u"?");
    EXPECT_LT(static_cast<std::uint16_t>(Member::Count_), platformMembers);
}

}  // namespace
}  // namespace lorvane::host
