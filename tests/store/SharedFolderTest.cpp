#include <gtest/gtest.h>

#include "FoldersRig.h"
#include "host/Form.h"
#include "instruments/Decorator.h"

/// Sharing, stored paths, and where a save window points.
namespace lorvane::store {
namespace {

using namespace host;
using namespace support;

TEST(SharingTest, IsOnForTrueInAnyCaseOnly) {
    TestRun run;
    EXPECT_FALSE(SharingEnabled());
    for (const std::u16string_view on : {u"True", u"TRUE", u"true"}) {
        run.setSetting(u"SharedTemplates", on);
        EXPECT_TRUE(SharingEnabled());
    }
    for (const std::u16string_view off : {u"", u"False", u"-1", u" True", u"True "}) {
        run.setSetting(u"SharedTemplates", off);
        EXPECT_FALSE(SharingEnabled());
    }
}

class VerifyFoldersTest : public testing::Test {
protected:
    TestRun run;
    MAPIFolder privateFolder = run.templatesFolder();
};

TEST_F(VerifyFoldersTest, WritesTheNewPathOfARenamedPrivateFolder) {
    rename(privateFolder, u"Letters");
    MAPIFolder none;
    EXPECT_TRUE(VerifyFolders(privateFolder, none));
    EXPECT_EQ(run.setting(u"LastFolderName"), u"\\Personal Folders\\Meravix Settings\\Letters");
    EXPECT_TRUE(CheckTemplateFolder()) << "the next connection accepts it";
}

TEST_F(VerifyFoldersTest, LeavesTheKeyAloneWithoutAPrivateFolder) {
    run.setSetting(u"LastFolderName", u"\\Elsewhere");
    MAPIFolder none;
    EXPECT_TRUE(VerifyFolders(MAPIFolder(), none));
    EXPECT_EQ(run.setting(u"LastFolderName"), u"\\Elsewhere");
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(VerifyFoldersTest, WritesTheNewPathOfARenamedSharedFolder) {
    MAPIFolder shared = run.addFolder(run.addStore(u"Team"), u"Templates");
    useShared(run, shared);
    rename(shared, u"Texts");
    EXPECT_TRUE(VerifyFolders(privateFolder, shared));
    EXPECT_EQ(run.setting(u"SharedTemplFldrPath"), u"\\Team\\Texts");
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(VerifyFoldersTest, TellsOfALostSharedFolderAndEmptiesItsPath) {
    run.setSetting(u"SharedTemplates", u"True");
    run.setSetting(u"SharedFolderEntryid", u"00AA");
    run.setSetting(u"SharedTemplFldrPath", u"\\Team\\Templates");
    MAPIFolder none;
    EXPECT_TRUE(VerifyFolders(privateFolder, none));
    EXPECT_FALSE(none);
    EXPECT_EQ(run.setting(u"SharedTemplFldrPath"), u"");
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"Shared Templates Folder Not Found - Lorvane");
    EXPECT_EQ(run.lastBox().style, 48);
    EXPECT_EQ(run.lastBox().text,
              u"Unable to locate your SHARED templates folder.\r\n\r\nThe most likely reason for this are:\r\n"
              u"1. You are currently not connected to your network or\r\n2. The shared templates folder has been deleted or moved\r\n\r\n"
              u"Please go to Inbox > Tolvenar menu > Lorvane > Settings and select your Shared templates folder.");
}

TEST_F(VerifyFoldersTest, IsSilentWhereNoSharedFolderWasChosen) {
    run.setSetting(u"SharedTemplates", u"True");
    run.setSetting(u"SharedTemplFldrPath", u"\\Left\\Over");
    MAPIFolder none;
    EXPECT_TRUE(VerifyFolders(privateFolder, none));
    EXPECT_TRUE(run.boxes().empty());
    EXPECT_EQ(run.setting(u"SharedTemplFldrPath"), u"\\Left\\Over");
}

TEST_F(VerifyFoldersTest, LooksAtNoSharedFolderWithoutSharing) {
    run.setSetting(u"SharedFolderEntryid", u"00AA");
    MAPIFolder none;
    EXPECT_TRUE(VerifyFolders(privateFolder, none));
    EXPECT_TRUE(run.boxes().empty());
}

TEST(VerifyFoldersFaultTest, AFaultOfItsOwnGivesFalseInSilence) {
    TestRun run({.instruments = true});
    const MAPIFolder folder = run.templatesFolder();
    run.faults().failNth(u"Settings", u"GetSetting", 1, host_failure::Failed);
    MAPIFolder none;
    EXPECT_FALSE(VerifyFolders(folder, none));
    EXPECT_TRUE(run.boxes().empty());
}

/// A window with what a save window offers.
class SaveWindow final : public Form {
public:
    static constexpr std::u16string_view formName = u"SaveWindow";
    SaveWindow() : Form(formName, u""), optPrivate(*this, u"optPrivate", u""), optShared(*this, u"optShared", u""), cmbSubFolder(*this, u"cmbSubFolder") {}
    OptionButton optPrivate, optShared;
    ComboBox cmbSubFolder;
};

class SaveOptionsTest : public testing::Test {
protected:
    SaveOptionsTest() { useShared(run, shared); }
    void decideFor(const MailItem& item) { SetPrivateSharedOptions(window().optPrivate, window().optShared, item); }
    SaveWindow& window() { return *implementation<SaveWindow>(window_); }
    MailItem inDrafts() { return run.draft(u"Draft", plain(u"")); }

    TestRun run;
    MAPIFolder shared = run.addFolder(run.addStore(u"Team"), u"Templates");
    Object window_ = makeObject<SaveWindow>();
};

TEST_F(SaveOptionsTest, WithoutSharingThePrivateFolderIsAllThereIs) {
    run.setSetting(u"SharedTemplates", u"False");
    run.setSetting(u"SaveTemplateDefault", u"2");
    decideFor(inDrafts());
    EXPECT_TRUE(window().optPrivate.Value);
    EXPECT_FALSE(window().optShared.Enabled);
}

TEST_F(SaveOptionsTest, TheDefaultIsPrivate) {
    decideFor(inDrafts());
    EXPECT_TRUE(window().optPrivate.Value);
    EXPECT_TRUE(window().optShared.Enabled);
}

TEST_F(SaveOptionsTest, TwoMeansShared) {
    run.setSetting(u"SaveTemplateDefault", u"2");
    decideFor(inDrafts());
    EXPECT_TRUE(window().optShared.Value);
}

TEST_F(SaveOptionsTest, AnItemOfThePrivateFolderOverridesTheDefault) {
    run.setSetting(u"SaveTemplateDefault", u"2");
    decideFor(run.addTemplate(u"Offer", plain(u"")));
    EXPECT_TRUE(window().optPrivate.Value);
    EXPECT_FALSE(window().optShared.Value);
}

TEST_F(SaveOptionsTest, AnItemOfTheSharedFolderOverridesTheDefault) {
    decideFor(run.addTemplate(shared, u"Offer", plain(u"")));
    EXPECT_TRUE(window().optShared.Value);
}

TEST_F(SaveOptionsTest, TheSharedTestIsTheLaterOne) {
    run.setSetting(u"LastFolderEntryid", shared.EntryID());
    decideFor(run.addTemplate(shared, u"Offer", plain(u"")));
    EXPECT_TRUE(window().optShared.Value);
}

TEST_F(SaveOptionsTest, WithoutAChosenSharedFolderItsOptionIsDisabled) {
    run.setSetting(u"SharedFolderEntryid", u"  ");
    run.setSetting(u"SaveTemplateDefault", u"2");
    decideFor(inDrafts());
    EXPECT_TRUE(window().optPrivate.Value);
    EXPECT_FALSE(window().optShared.Enabled);
}

class SubFoldersTest : public SaveOptionsTest {
protected:
    void addFolderOfType(std::u16string_view name, std::int32_t type) { main.Folders().call(Member::Add, {name, type}); }
    std::u16string lineOf(std::u16string_view name) { return MakeSubFolderEntry(run.addFolder(main, name)); }
    MAPIFolder main = run.templatesFolder();
};

TEST_F(SubFoldersTest, LineIsThePaddedNameAndTheIdentity) {
    const MAPIFolder folder = run.addFolder(main, u"Sales");
    const std::u16string line = MakeSubFolderEntry(folder);
    EXPECT_EQ(line.substr(0, 250), u"Sales" + std::u16string(245, u' '));
    EXPECT_EQ(line.substr(250), folder.EntryID());
    EXPECT_EQ(GetSubFolderEntryId(line), folder.EntryID());
}

TEST_F(SubFoldersTest, ANameOf250CharactersFitsAndALongerOneFails) {
    const MAPIFolder folder = run.addFolder(main, u"x");
    rename(folder, std::u16string(250, u'x'));
    EXPECT_EQ(MakeSubFolderEntry(folder), std::u16string(250, u'x') + folder.EntryID());
    rename(folder, std::u16string(251, u'x'));
    try {
        MakeSubFolderEntry(folder);
        ADD_FAILURE() << "no error";
    } catch (const HostError& error) {
        EXPECT_EQ(error.number(), 5);
    }
}

TEST_F(SubFoldersTest, OffersFoldersOfMailsAndPostsBehindAnEmptyLine) {
    run.addFolder(main, u"Sales");
    addFolderOfType(u"Meetings", 9);
    run.addFolder(main, u"Support");
    ComboBox& combo = window().cmbSubFolder;
    combo.AddItem(u"old");
    LoadSubFolders(main, combo);
    ASSERT_EQ(combo.ListCount(), 3);
    EXPECT_EQ(combo.List(0), u"");
    EXPECT_EQ(combo.List(1), lineOf(u"Sales"));
    EXPECT_EQ(combo.List(2), lineOf(u"Support"));
    EXPECT_EQ(combo.ListIndex, 0);
}

TEST_F(SubFoldersTest, ChoosesTheLastUsedLineByItsWholeText) {
    run.addFolder(main, u"Sales");
    run.addFolder(main, u"Support");
    run.setSetting(u"LastSubFolderName", Trim(lineOf(u"Support")));
    LoadSubFolders(main, window().cmbSubFolder);
    EXPECT_EQ(window().cmbSubFolder.ListIndex, 2);
}

TEST_F(SubFoldersTest, ANameAloneMatchesNoLine) {
    run.addFolder(main, u"Sales");
    run.setSetting(u"LastSubFolderName", u"Sales");
    LoadSubFolders(main, window().cmbSubFolder);
    EXPECT_EQ(window().cmbSubFolder.ListIndex, 0);
}

}  // namespace
}  // namespace lorvane::store
