#include "mailstore/EntryIds.h"

#include <gtest/gtest.h>

#include <limits>

namespace lorvane::mailstore {
namespace {

constexpr StoreId Store{0xAB, 0xCD, 0xEF, 0x01, 0x02, 0x03, 0x04, 0x05, 9, 9, 9, 9, 9, 9, 9, 0xFF};

TEST(EntryIds, AreHalfTheStoresIdAndTheNumber) {
    EXPECT_EQ(toHexadecimal(Store),
              u"ABCDEF01020304050909090909090"
              u"9FF");
    EXPECT_EQ(EntryIds(Store).format(1), u"ABCDEF01020304050000000000000001");
    EXPECT_EQ(EntryIds(Store).format(0x1F2E3D4C5B6A7988), u"ABCDEF01020304051F2E3D4C5B6A7988");
}

TEST(EntryIds, AreReadBackInEitherCase) {
    const EntryIds ids(Store);
    for (const std::int64_t number : {std::int64_t{0}, std::int64_t{1}, std::int64_t{0xABCDEF}, std::numeric_limits<std::int64_t>::max()}) {
        EXPECT_EQ(ids.parse(ids.format(number)), number);
    }
    EXPECT_EQ(ids.parse(u"abcdef010203040500000000000000fF"), 255);
}

TEST(EntryIds, OfAnotherShapeOrStoreAreNone) {
    const EntryIds ids(Store);
    for (const char16_t* text : {u"", u"ABCDEF0102030405", u"ABCDEF010203040500000000000000001", u"ABCDEF0102030405000000000000000G",
                                 u"ABCDEF01020304060000000000000001", u"ABCDEF01020304058000000000000000", u"ABCDEF0102030405 000000000000001"}) {
        EXPECT_FALSE(ids.parse(text));
    }
}

TEST(EntryIds, RandomStoreIdsDiffer) {
    EXPECT_NE(randomStoreId(), randomStoreId());
}

}  // namespace
}  // namespace lorvane::mailstore
