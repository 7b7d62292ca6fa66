#include <gtest/gtest.h>
#include <sys/stat.h>

#include "host/TextFunctions.h"
#include "services/ServicesRig.h"

namespace lorvane::services::test {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::u16string>;

class FilesTest : public testing::Test, protected Rig {};

TEST_F(FilesTest, TextIsWrittenAndReadInTheCodePage) {
    files.WriteText(path(u"log.csv"), u"Grüße für 5 €\r\n");
    EXPECT_EQ(contentOf(folder.file("log.csv")),
              "Gr\xFC\xDF"
              "e f\xFCr 5 \x80\r\n");
    EXPECT_EQ(files.ReadText(path(u"log.csv")), u"Grüße für 5 €\r\n");
}

TEST_F(FilesTest, WhatThePageLacksIsAQuestionMarkAUnit) {
    files.WriteText(path(u"a"), u"Łódź \U0001F600");
    EXPECT_EQ(contentOf(folder.file("a")),
              "?\xF3"
              "d? ??");
}

TEST_F(FilesTest, WritingReplacesAndAppendingMakesOrGoesOn) {
    files.WriteText(path(u"a"), u"a long line");
    files.WriteText(path(u"a"), u"new");
    EXPECT_EQ(contentOf(folder.file("a")), "new");
    files.AppendText(path(u"a"), u" end");
    EXPECT_EQ(contentOf(folder.file("a")), "new end");
    files.AppendText(path(u"b"), u"first");
    EXPECT_EQ(contentOf(folder.file("b")), "first");
}

TEST_F(FilesTest, NothingIsAddedOrLeftOutOfAText) {
    const std::u16string text(u"\0a\r\r\n\n\x1A", 7);
    files.WriteText(path(u"a"), text);
    EXPECT_EQ(files.ReadText(path(u"a")), text);
    files.WriteText(path(u"a"), u"");
    EXPECT_EQ(files.ReadText(path(u"a")), u"");
}

TEST_F(FilesTest, ATextLongerThanOneReadComesWhole) {
    const std::u16string text(200001, u'x');
    files.WriteText(path(u"a"), text);
    EXPECT_EQ(files.ReadText(path(u"a")), text);
}

TEST_F(FilesTest, BothMarksPartFolders) {
    fs::create_directory(folder.file("sub"));
    files.WriteText(path(u"sub\\a"), u"1");
    EXPECT_TRUE(files.FileExists(path(u"sub/a")));
    EXPECT_TRUE(files.FileExists(path(u"nowhere\\..\\sub\\a")));
    EXPECT_TRUE(files.FolderExists(path(u"sub\\")));
}

TEST_F(FilesTest, NamesAreUtf8InTheFileSystem) {
    files.WriteText(path(u"Grüße 😀.txt"), u"1");
    EXPECT_TRUE(
        fs::exists(folder.file("Gr\xC3\xBC\xC3\x9F"
                               "e \xF0\x9F\x98\x80.txt")));
}

TEST_F(FilesTest, AFolderIsNoFileAndAFileNoFolder) {
    fs::create_directory(folder.file("sub"));
    fill(folder.file("a"), "");
    EXPECT_TRUE(files.FolderExists(path(u"sub")));
    EXPECT_FALSE(files.FileExists(path(u"sub")));
    EXPECT_TRUE(files.FileExists(path(u"a")));
    EXPECT_FALSE(files.FolderExists(path(u"a")));
}

TEST_F(FilesTest, WhatCannotBeAPathDoesNotExist) {
    for (const std::u16string& name : {std::u16string(), std::u16string(u"a\0b", 3), std::u16string(5000, u'a'), path(u"no\\such")}) {
        EXPECT_FALSE(files.FileExists(name));
        EXPECT_FALSE(files.FolderExists(name));
    }
}

TEST_F(FilesTest, AMissingFileIs53AndAMissingFolder76) {
    EXPECT_EQ(errorOf([&] { files.ReadText(path(u"a")); }), 53);
    EXPECT_EQ(errorOf([&] { files.DeleteFile(path(u"a")); }), 53);
    EXPECT_EQ(errorOf([&] { files.ReadText(path(u"no\\a")); }), 76);
    EXPECT_EQ(errorOf([&] { files.DeleteFile(path(u"no\\a")); }), 76);
    EXPECT_EQ(errorOf([&] { files.WriteText(path(u"no\\a"), u""); }), 76);
    EXPECT_EQ(errorOf([&] { files.AppendText(path(u"no\\a"), u""); }), 76);
    EXPECT_EQ(errorOf([&] { files.CreateFolder(path(u"no\\sub")); }), 76);
    EXPECT_EQ(errorOf([&] { files.ListFiles(path(u"no")); }), 76);
}

TEST_F(FilesTest, AFileInPlaceOfAFolderIs76) {
    fill(folder.file("a"), "");
    EXPECT_EQ(errorOf([&] { files.ReadText(path(u"a\\b")); }), 76);
    EXPECT_EQ(errorOf([&] { files.CreateFolder(path(u"a\\b")); }), 76);
    EXPECT_EQ(errorOf([&] { files.ListFiles(path(u"a")); }), 76);
}

TEST_F(FilesTest, AFolderInPlaceOfAFileIs75) {
    fs::create_directory(folder.file("sub"));
    EXPECT_EQ(errorOf([&] { files.ReadText(path(u"sub")); }), 75);
    EXPECT_EQ(errorOf([&] { files.WriteText(path(u"sub"), u""); }), 75);
    EXPECT_EQ(errorOf([&] { files.AppendText(path(u"sub"), u""); }), 75);
    EXPECT_EQ(errorOf([&] { files.DeleteFile(path(u"sub")); }), 75);
    EXPECT_EQ(errorOf([&] { files.CreateFolder(path(u"sub")); }), 75);
}

TEST_F(FilesTest, WithoutTheRightsItIs75AndNothingChanges) {
    fill(folder.file("a"), "kept");
    fs::permissions(folder.file("a"), fs::perms(0444));
    fs::permissions(folder.path(), fs::perms(0555));
    {
        const OrdinaryUserScope ordinary;
        EXPECT_EQ(errorOf([&] { files.WriteText(path(u"a"), u"x"); }), 75);
        EXPECT_EQ(errorOf([&] { files.AppendText(path(u"a"), u"x"); }), 75);
        EXPECT_EQ(errorOf([&] { files.WriteText(path(u"b"), u"x"); }), 75);
        EXPECT_EQ(errorOf([&] { files.CreateFolder(path(u"sub")); }), 75);
        EXPECT_EQ(errorOf([&] { files.DeleteFile(path(u"a")); }), 75);
        EXPECT_EQ(files.ReadText(path(u"a")), u"kept");
    }
    fs::permissions(folder.path(), fs::perms(0755));
}

TEST_F(FilesTest, AFullDiskIs61) {
    EXPECT_EQ(errorOf([&] { files.WriteText(u"\\dev\\full", u"x"); }), 61);
}

TEST_F(FilesTest, WhatIsNoFileIsNotRead) {
    ASSERT_EQ(::mkfifo(folder.file("pipe").c_str(), 0600), 0);
    EXPECT_EQ(errorOf([&] { files.ReadText(path(u"pipe")); }), 75);
    EXPECT_EQ(errorOf([&] { files.AppendText(path(u"pipe"), u"x"); }), 75);
}

TEST_F(FilesTest, AnEmptyPathIs75AndOneWithAZero52) {
    EXPECT_EQ(errorOf([&] { files.ReadText(u""); }), 75);
    EXPECT_EQ(errorOf([&] { files.WriteText(std::u16string(u"a\0b", 3), u""); }), 52);
    EXPECT_EQ(errorOf([&] { files.WriteText(path(std::u16string(300, u'a')), u""); }), 52);
}

TEST_F(FilesTest, DeletingTakesTheFile) {
    fill(folder.file("a"), "1");
    files.DeleteFile(path(u"a"));
    EXPECT_FALSE(fs::exists(folder.file("a")));
}

TEST_F(FilesTest, AFolderIsMade) {
    files.CreateFolder(path(u"Tolvenar"));
    files.CreateFolder(path(u"Tolvenar\\Lorvane"));
    EXPECT_TRUE(fs::is_directory(folder.file("Tolvenar") / "Lorvane"));
}

TEST_F(FilesTest, TheFilesOfAFolderAreListedByNameWithoutItsFolders) {
    fs::create_directory(folder.file("sub"));
    for (const char* name : {"b.txt", "a.txt", "C.txt", ".hidden", "odd\\name", "no\xFFtext"}) fill(folder.file(name), "1");
    EXPECT_EQ(files.ListFiles(path(u"")), (Names{u".hidden", u"C.txt", u"a.txt", u"b.txt"})) << "a name that the surface cannot write is left out";
    EXPECT_EQ(files.ListFiles(path(u"sub")), Names{});
}

TEST_F(FilesTest, DocumentsAndApplicationDataComeFromTheRunAndAreThere) {
    EXPECT_EQ(files.GetFolderPath(5), path(u"Documents"));
    EXPECT_EQ(files.GetFolderPath(26), path(u"Roaming"));
    EXPECT_TRUE(files.FolderExists(path(u"Roaming")));
    EXPECT_EQ(errorOf([&] { files.GetFolderPath(7); }), 5);
}

TEST(FilePlaces, AFolderThatTheRunDoesNotNameIs76) {
    EXPECT_EQ(errorOf([] { host::Files(Services(ServiceOptions{}).files).GetFolderPath(26); }), 76);
}

TEST(FilePlaces, AFolderGivenWithAMarkAtItsEndIsGivenWithout) {
    const mailstore::test::TempFolder folder;
    ServiceOptions options;
    options.places.documents = folder.path() / "";
    EXPECT_TRUE(host::Files(Services(std::move(options)).files).GetFolderPath(5).ends_with(host::fromUtf8(folder.path().filename().native())));
}

}  // namespace
}  // namespace lorvane::services::test
