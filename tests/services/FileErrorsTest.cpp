#include "services/FileErrors.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace lorvane::services {
namespace {

TEST(FileErrors, EachFailureOfTheSystemHasItsRunTimeNumber) {
    EXPECT_EQ(fileErrorNumber(ENOENT, "/a"), 53);
    EXPECT_EQ(fileErrorNumber(ENOENT, "a"), 53);
    EXPECT_EQ(fileErrorNumber(ENOENT, "/no/such/folder/a"), 76);
    EXPECT_EQ(fileErrorNumber(ENOTDIR, "/a"), 76);
    EXPECT_EQ(fileErrorNumber(ELOOP, "/a"), 76);
    for (const int failure : {EACCES, EPERM, EROFS, EISDIR, EEXIST, EBUSY, ETXTBSY, ENXIO}) EXPECT_EQ(fileErrorNumber(failure, "/a"), 75) << failure;
    for (const int failure : {ENOSPC, EDQUOT, EFBIG}) EXPECT_EQ(fileErrorNumber(failure, "/a"), 61) << failure;
    EXPECT_EQ(fileErrorNumber(ENAMETOOLONG, "/a"), 52);
    EXPECT_EQ(fileErrorNumber(EIO, "/a"), 57);
    EXPECT_EQ(fileErrorNumber(EMFILE, "/a"), 67);
}

}  // namespace
}  // namespace lorvane::services
