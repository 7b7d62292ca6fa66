#include "services/SurfacePath.h"

#include <gtest/gtest.h>

namespace lorvane::services {
namespace {

TEST(SurfacePath, IsTheRealPathWithItsMarksTurnedRound) {
    EXPECT_EQ(surfacePath("/home/ann/Grüße"), u"\\home\\ann\\Grüße");
    EXPECT_EQ(systemPath(u"\\home\\ann\\Grüße"), "/home/ann/Grüße");
    EXPECT_EQ(systemPath(u"\\home/ann\\.\\..\\bob"), "/home/bob");
}

TEST(SurfacePath, ThereIsNoneForANameThatItCouldNotTurnBack) {
    EXPECT_EQ(surfacePath("/tmp/a\\b"), std::nullopt);
    EXPECT_EQ(surfacePath("/tmp/\xFF"), std::nullopt);
}

}  // namespace
}  // namespace lorvane::services
