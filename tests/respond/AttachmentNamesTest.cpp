#include <gtest/gtest.h>

#include "InsertRig.h"
#include "respond/basAttachments.h"

/// The helpers for names and paths of attachments.
namespace lorvane::respond {
namespace {

using namespace host;
using namespace support;

TEST(AttachmentNamesTest, APathHasFewerThan260Characters) {
    EXPECT_TRUE(VerifyWindowsPathLlimit(std::u16string(259, u'x')));
    EXPECT_FALSE(VerifyWindowsPathLlimit(std::u16string(260, u'x')));
    EXPECT_TRUE(VerifyWindowsPathLlimit(u""));
}

TEST(AttachmentNamesTest, ANumberGoesInFrontOfTheEnding) {
    EXPECT_EQ(MakeDuplicateFileName(u"picture.gif", 1), u"picture1.gif");
    EXPECT_EQ(MakeDuplicateFileName(u"archive.tar.gz", 12), u"archive.tar12.gz");
    EXPECT_EQ(MakeDuplicateFileName(u"README", 0), u"README0");
    EXPECT_EQ(MakeDuplicateFileName(u".profile", 3), u"3.profile");
    EXPECT_EQ(MakeDuplicateFileName(u"end.", 3), u"end3.");
}

TEST(AttachmentNamesTest, TextIsReversed) {
    EXPECT_EQ(ReverseString(u"abc"), u"cba");
    EXPECT_EQ(ReverseString(u""), u"");
}

TEST(AttachmentNamesTest, TwoMarksOfAddressesAreReplaced) {
    EXPECT_EQ(RemoveSpecialCharFromFilename(u"a%20b#c%20"), u"a b_c ");
    EXPECT_EQ(RemoveSpecialCharFromFilename(u"100%2"), u"100%2");
}

TEST(AttachmentNamesTest, TheFirstFreeNameCountsFromZero) {
    TestRun run;
    const std::u16string path = run.writeFile("a.txt", {1});
    const std::u16string folder = path.substr(0, path.size() - 5);
    EXPECT_EQ(GetAttachmentName(folder + u"b.txt"), folder + u"b.txt");
    EXPECT_EQ(GetAttachmentName(path), folder + u"a0.txt");
    run.writeFile("a0.txt", {1});
    run.writeFile("a1.txt", {1});
    EXPECT_EQ(GetAttachmentName(path), folder + u"a2.txt");
}

TEST(AttachmentNamesTest, TheLocalFolderIsMadeOnce) {
    TestRun run;
    EXPECT_TRUE(CreateStorageFolders());
    EXPECT_TRUE(CreateStorageFolders());
    EXPECT_TRUE(apartment().machine.files().FolderExists(GetTempFolder() + u"Tolvenar\\Lorvane"));
}

TEST(AttachmentNamesTest, TheTemporaryFolderEndsInABackslash) {
    TestRun run;
    EXPECT_EQ(GetTempFolder().back(), u'\\');
    EXPECT_TRUE(apartment().machine.files().FolderExists(GetTempFolder()));
}

TEST(AttachmentNamesTest, EmptyingNoFolderOrOneThatIsNotThereDoesNothing) {
    TestRun run;
    RemoveAttachmentsFromTemp(u"");
    RemoveAttachmentsFromTemp(u"   ");
    RemoveAttachmentsFromTemp(GetTempFolder() + u"Nowhere");
    EXPECT_TRUE(run.boxes().empty());
}

class UniqueNameTest : public testing::Test {
protected:
    std::u16string unique(std::u16string_view name) { return GetUniqueAttachmentName(name, u"", makeSafeMailItem(offer), target, html); }
    void attach(const MailItem& item, std::string_view name) {
        run.attach(item, name, {1});
        item.Save();
    }
    TestRun run;
    MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    MailItem target = run.draft(u"Draft", plain(u"Text"));
    std::u16string html = u"see A.txt";
};

TEST_F(UniqueNameTest, AFreeNameStays) {
    attach(offer, "a.txt");
    EXPECT_EQ(unique(u"a.txt"), u"a.txt");
    EXPECT_EQ(html, u"see a.txt") << "every occurrence is written as the name is";
}

TEST_F(UniqueNameTest, TheTargetsNamesCountInAnyCase) {
    attach(target, "A.TXT");
    EXPECT_EQ(unique(u"a.txt"), u"a_1.txt");
    EXPECT_EQ(html, u"see a_1.txt");
}

TEST_F(UniqueNameTest, APartOfANameIsNoName) {
    attach(target, "aa.txt");
    attach(target, "a.txt.bak");
    EXPECT_EQ(unique(u"a.txt"), u"a.txt");
}

TEST_F(UniqueNameTest, OneOfTheTemplatesOwnNamesIsNoClashButTwoAre) {
    attach(offer, "a.txt");
    EXPECT_EQ(unique(u"a.txt"), u"a.txt");
    attach(offer, "A.TXT");
    EXPECT_EQ(unique(u"a.txt"), u"a_1.txt");
}

TEST_F(UniqueNameTest, ANameThatTheTemplateHasOnceIsFreeForAnother) {
    attach(offer, "a.txt");
    attach(offer, "a.txt");
    attach(offer, "a_1.txt");
    EXPECT_EQ(unique(u"a.txt"), u"a_1.txt") << "once in the template is no clash";
}

TEST_F(UniqueNameTest, TheLastPointSplitsTheName) {
    attach(target, "archive.tar.gz");
    EXPECT_EQ(unique(u"archive.tar.gz"), u"archive.tar_1.gz");
}

TEST_F(UniqueNameTest, ANameWithoutAPointGetsTheNumberAtItsEnd) {
    attach(target, "README");
    attach(target, "README_1");
    EXPECT_EQ(unique(u"README"), u"README_1_2");
}

TEST_F(UniqueNameTest, TheNumberGrowsWithTheName) {
    attach(target, "a.txt");
    attach(target, "a_1.txt");
    EXPECT_EQ(unique(u"a.txt"), u"a_1_2.txt");
}

TEST(AttachedFromTemplateTest, NothingIsKnownBeforeACopy) {
    TestRun run;
    std::u16string contentId = u"untouched";
    EXPECT_FALSE(IsAttachedFromTemplate(u"a.png", contentId));
    EXPECT_EQ(contentId, u"untouched");
}

TEST(AttachedFromTemplateTest, ACopyWithAContentIdIsKnownByItsNameInAnyCase) {
    TestRun run;
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    run.attach(offer, "a.png", {1});
    giveContentId(offer, u"id-1");
    run.attach(offer, "b.png", {1});
    offer.Save();
    std::u16string html, contentId;
    CopyAttachments(offer, run.draft(u"Draft", plain(u"Text")), html);
    EXPECT_TRUE(IsAttachedFromTemplate(u" A.PNG ", contentId));
    EXPECT_EQ(contentId, u"id-1");
    EXPECT_FALSE(IsAttachedFromTemplate(u"b.png", contentId));
    CopyAttachments(run.addTemplate(u"Other", plain(u"Text")), run.draft(u"Draft", plain(u"Text")), html);
    EXPECT_FALSE(IsAttachedFromTemplate(u"a.png", contentId)) << "each copy starts anew";
}

}  // namespace
}  // namespace lorvane::respond
