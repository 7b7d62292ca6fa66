#include <gtest/gtest.h>

#include "services/ServicesRig.h"
#include "services/SurfacePath.h"

namespace lorvane::services::test {
namespace {

namespace fs = std::filesystem;

ServiceOptions optionsIn(const fs::path& root) {
    ServiceOptions options;
    options.places.temporaryRoot = root;
    return options;
}

class TempPathTest : public testing::Test {
protected:
    bool isEmpty() const { return fs::is_empty(root.path()); }

    mailstore::test::TempFolder root;
};

TEST_F(TempPathTest, TheFolderIsMadeOnFirstUseAndGoesWithTheRun) {
    {
        const Services services(optionsIn(root.path()));
        const host::Files files(services.files);
        EXPECT_TRUE(isEmpty());

        const std::u16string path = files.GetTempPath();
        EXPECT_EQ(path.back(), u'\\');
        EXPECT_EQ(files.GetTempPath(), path);
        EXPECT_EQ(systemPath(path).parent_path().parent_path(), root.path());
        files.CreateFolder(path + u"Lorvane");
        files.WriteText(path + u"Lorvane\\picture.gif", u"1");
        EXPECT_FALSE(isEmpty());
    }
    EXPECT_TRUE(isEmpty());
}

TEST_F(TempPathTest, NobodyElseCanLookIntoIt) {
    const Services services(optionsIn(root.path()));
    const fs::path folder = systemPath(host::Files(services.files).GetTempPath());
    EXPECT_EQ(fs::status(folder).permissions(), fs::perms(0700));
}

TEST_F(TempPathTest, TwoRunsHaveTwoFolders) {
    const Services one(optionsIn(root.path()));
    const Services other(optionsIn(root.path()));
    EXPECT_NE(host::Files(one.files).GetTempPath(), host::Files(other.files).GetTempPath());
}

TEST_F(TempPathTest, AFolderThatSomebodyTookAwayIsMadeAnew) {
    const Services services(optionsIn(root.path()));
    const host::Files files(services.files);
    fs::remove_all(systemPath(files.GetTempPath()));
    EXPECT_TRUE(files.FolderExists(files.GetTempPath()));
}

TEST_F(TempPathTest, WhereNoneCanBeMadeThereIsNone) {
    const Services services(optionsIn(root.file("missing")));
    EXPECT_EQ(host::Files(services.files).GetTempPath(), u"");
}

TEST_F(TempPathTest, TheSystemsPlaceIsTakenUnlessTheRunSaysElse) {
    const VariableScope system("TMPDIR", root.path().c_str());
    const Services services(optionsIn({}));
    EXPECT_EQ(systemPath(host::Files(services.files).GetTempPath()).parent_path().parent_path(), root.path());
}

TEST_F(TempPathTest, AWrongSystemPlaceIsNoPlace) {
    const VariableScope system("TMPDIR", root.file("missing").c_str());
    const Services services(optionsIn({}));
    EXPECT_EQ(host::Files(services.files).GetTempPath(), u"");
}

}  // namespace
}  // namespace lorvane::services::test
