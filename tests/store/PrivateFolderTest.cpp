#include <gtest/gtest.h>

#include "FoldersRig.h"

/// How the private templates folder is found at connection, or made.
namespace lorvane::store {
namespace {

using namespace host;
using namespace support;

void expectKeysOf(const TestRun& run, const MAPIFolder& folder) {
    EXPECT_EQ(run.setting(u"LastFolderStoreid"), folder.StoreID());
    EXPECT_EQ(run.setting(u"LastFolderEntryid"), folder.EntryID());
    EXPECT_EQ(run.setting(u"LastFolderName"), GetFolderPath(folder));
}

TEST(PrivateFolderTest, FirstRunMakesBothFoldersAndThreeSamplesInOrder) {
    TestRun run({.samples = true});
    const MAPIFolder folder = run.templatesFolder();
    EXPECT_EQ(subjectsIn(folder), (Names{u"Follow Up to Phone Call (Sample)", u"Quote (Sample)", u"Request for Quote (Sample)"}));
    EXPECT_EQ(GetFolderPath(folder), defaultPath);
    expectKeysOf(run, folder);
    EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), folder.EntryID());
    EXPECT_TRUE(run.boxes().empty());
}

TEST(PrivateFolderTest, SamplesHoldTheirParagraphsWithAnEmptyLineBetween) {
    TestRun run({.samples = true});
    const Items items = run.templatesFolder().Items();
    EXPECT_EQ(items.Item(1).Body(),
              u"Dear [FirstName]\r\n\r\nI am writing with regard to our phone conversation on [Date].\r\n\r\n"
              u"Should you require further information with regard to any of the ideas discussed, please contact me at your convenience.\r\n\r\n"
              u"[Enter your company name and details in TEMPLATE]");
    EXPECT_EQ(
        items.Item(2).Body(),
        u"Dear [FirstName]\r\n\r\nProject: [Enter Project Name Here]\r\n\r\n"
        u"Thank you for this opportunity to be of service to your organization. Further to our meeting, please find following our quotation for the above "
        u"project.\r\n\r\n"
        u"The full cost of the project shall be [Cost]. The estimated time frame to complete the project is [Timeframe].\r\n\r\n"
        u"Further details of the project are as follows.\r\n\r\n[Enter Details Here]\r\n\r\n"
        u"We look forward to working with you in the near future.\r\n\r\n[Enter your company name and details in TEMPLATE]");
    EXPECT_EQ(items.Item(3).Body(),
              u"Dear [FirstName]\r\n\r\nCould you please supply a quotation for the following items.\r\n\r\n[List items here]\r\n\r\n"
              u"Your urgent attention to the above will be greatly appreciated.\r\n\r\nYours faithfully\r\n\r\n"
              u"[Enter your company name and details in TEMPLATE]");
}

TEST(PrivateFolderTest, SamplesAreMovedAndLeaveNothingInDrafts) {
    TestRun run({.samples = true});
    EXPECT_EQ(run.folder(default_folder::Drafts).Items().Count(), 0);
}

TEST(PrivateFolderTest, OuterFolderAloneGetsTheInnerOneWithSamples) {
    TestRun run({.connected = false, .samples = true});
    const MAPIFolder outer = run.addFolder(topFolder(run), u"Meravix Settings");
    run.connect();
    ASSERT_EQ(outer.Folders().Count(), 1);
    EXPECT_EQ(outer.Folders().Item(1).Name(), u"Lorvane");
    EXPECT_EQ(outer.Folders().Item(1).Items().Count(), 3);
}

TEST(PrivateFolderTest, BothFoldersThereGiveNoSamplesButNewKeys) {
    TestRun run({.connected = false});
    run.setSetting(u"LastFolderEntryid", u"00AA");
    run.setSetting(u"LastFolderStoreid", u"00BB");
    run.setSetting(u"LastFolderName", u"\\Elsewhere");
    run.connect();
    EXPECT_EQ(run.templatesFolder().Items().Count(), 0);
    expectKeysOf(run, run.templatesFolder());
    EXPECT_TRUE(run.boxes().empty());
}

TEST(PrivateFolderTest, FoldersOfLikeNamesAreNotTaken) {
    TestRun run({.connected = false, .samples = true});
    const MAPIFolder like = run.addFolder(topFolder(run), u"Meravix Settings (old)");
    run.addFolder(like, u"Lorvane");
    run.addFolder(run.addFolder(topFolder(run), u"Meravix Settings"), u"Lorvane 2");
    run.connect();
    EXPECT_EQ(GetFolderPath(run.apartment().TemplatesFolder), defaultPath);
    EXPECT_EQ(run.apartment().TemplatesFolder.Items().Count(), 3);
}

TEST(PrivateFolderTest, AFolderOfTheUsersChoiceIsTaken) {
    TestRun run({.connected = false});
    const MAPIFolder chosen = run.addFolder(topFolder(run), u"My Letters");
    usePrivately(run, chosen);
    run.connect();
    EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), chosen.EntryID());
    expectKeysOf(run, chosen);
}

TEST(PrivateFolderTest, RenamedWhileNotRunningIsAbandonedInSilence) {
    TestRun run({.connected = false});
    const MAPIFolder chosen = run.addFolder(topFolder(run), u"My Letters");
    usePrivately(run, chosen);
    rename(chosen, u"Old Letters");
    run.connect();
    EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), run.templatesFolder().EntryID());
    expectKeysOf(run, run.templatesFolder());
    EXPECT_TRUE(run.boxes().empty());
}

TEST(PrivateFolderTest, APathOfAnotherCaseIsAnotherPath) {
    TestRun run;
    run.setSetting(u"LastFolderName", u"\\Personal Folders\\Meravix Settings\\LORVANE");
    EXPECT_FALSE(CheckTemplateFolder());
    EXPECT_FALSE(run.apartment().TemplatesFolder);
}

TEST(PrivateFolderTest, AnUnknownFolderLeavesTheCurrentOne) {
    TestRun run;
    run.setSetting(u"LastFolderEntryid", u"00AA");
    EXPECT_FALSE(CheckTemplateFolder());
    EXPECT_TRUE(run.apartment().TemplatesFolder);
    EXPECT_TRUE(run.boxes().empty());
}

TEST(PrivateFolderTest, ResolvingSetsTheCurrentFolder) {
    TestRun run;
    const MAPIFolder other = run.addFolder(topFolder(run), u"Letters");
    EXPECT_TRUE(ResolveTemplateFolder(other.EntryID(), other.StoreID(), u"\\Personal Folders\\Letters"));
    EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), other.EntryID());
}

TEST(PrivateFolderTest, ResolvingUnderAnotherPathLeavesNothing) {
    TestRun run;
    const MAPIFolder other = run.addFolder(topFolder(run), u"Letters");
    EXPECT_FALSE(ResolveTemplateFolder(other.EntryID(), other.StoreID(), u"\\Personal Folders\\letters"));
    EXPECT_FALSE(run.apartment().TemplatesFolder);
    EXPECT_TRUE(run.boxes().empty());
}

TEST(PrivateFolderTest, ResolvingAnUnknownFolderLeavesNothing) {
    TestRun run;
    EXPECT_FALSE(ResolveTemplateFolder(u"00AA", u"00BB", u""));
    EXPECT_FALSE(run.apartment().TemplatesFolder);
    EXPECT_TRUE(run.boxes().empty());
}

TEST(PrivateFolderTest, ResolvingTakesTheNameSpaceByItself) {
    TestRun run({.connected = false});
    const MAPIFolder folder = run.templatesFolder();
    EXPECT_TRUE(ResolveTemplateFolder(folder.EntryID(), folder.StoreID(), defaultPath));
    EXPECT_TRUE(run.apartment().gNameSpace);
}

TEST(PrivateFolderTest, ExampleIsSavedAndMoved) {
    TestRun run;
    const MAPIFolder target = run.addFolder(topFolder(run), u"Letters");
    TemplateExample(u"Greeting", u"Hello\r\nyou", target);
    ASSERT_EQ(subjectsIn(target), Names{u"Greeting"});
    EXPECT_EQ(target.Items().Item(1).Body(), u"Hello\r\nyou");
}

TEST(PrivateFolderTest, PathOfNothingIsEmpty) {
    TestRun run;
    EXPECT_EQ(GetFolderPath(MAPIFolder()), u"");
    EXPECT_EQ(GetFolderPath(topFolder(run)), u"\\Personal Folders");
}

}  // namespace
}  // namespace lorvane::store
