#include <gtest/gtest.h>

#include <deque>

#include "ChooserRig.h"
#include "mailstore/MemoryStore.h"
#include "respond/FurtherWindows.h"
#include "store/CategoryFiles.h"
#include "store/FoldersRig.h"

/// Another private folder by the folder picker.
namespace lorvane::support {
namespace {

using namespace host;

class ChooserPickFolderTest : public testing::Test {
protected:
    explicit ChooserPickFolderTest(RunOptions options = {}) : run(std::move(options)) {
        respond::furtherWindows().pickFolder = [this] {
            ++shown;
            if (picks.empty()) return std::u16string();
            std::u16string picked = picks.front();
            picks.pop_front();
            return picked;
        };
        run.addTemplate(u"Old", plain(u"Text"));
    }
    static void clickPick(ScriptedUser& she) {
        if (!chooser().picTemplatesFldr.Visible) she.Click(chooserName, u"lblChangeFolder");
        she.Click(chooserName, u"cmdPickfolder");
    }
    MAPIFolder folderWith(std::u16string_view name, std::initializer_list<std::u16string_view> subjects) {
        const MAPIFolder folder = run.addFolder(topFolder(run), name);
        for (const std::u16string_view subject : subjects) run.addTemplate(folder, subject, plain(u"Text"), u"New");
        return folder;
    }
    /// A folder in a store of its own; 0 is for mails, 1 appointments, 2 contacts, 3 tasks, 4 journal, 5 notes, 6 posts.
    MAPIFolder folderOfType(std::u16string_view name, std::int32_t type) {
        const std::shared_ptr<mailstore::MailStore> store = mailstore::makeMemoryStore(u"Archive of " + std::u16string(name), 3);
        mailstore::FolderRecord record;
        record.name = name;
        record.defaultItemType = type;
        const std::u16string entryId = store->addFolder(store->rootFolder().entryId, record).entryId;
        run.driver().addStore(store);
        return run.session().GetFolderFromID(entryId, store->storeId());
    }
    std::deque<std::u16string> picks;
    int shown = 0;
    TestRun run;
};

TEST_F(ChooserPickFolderTest, ItsTemplatesAreListed) {
    picks = {folderWith(u"Letters", {u"B new", u"A new"}).EntryID()};
    openChooser(run, [](ScriptedUser& she) {
        clickPick(she);
        EXPECT_EQ(chooser().txtFolder.Text.get(), u"Letters");
        EXPECT_EQ(listed(), (Subjects{u"A new", u"B new"}));
        EXPECT_TRUE(chooser().lstEmails.Visible);
        EXPECT_FALSE(chooser().picBlankBkGrnd.Visible);
        selectSubject(she, u"B new");
        EXPECT_EQ(chooser().txtSubject.Text.get(), u"B new");
    });
    EXPECT_EQ(shown, 1);
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserPickFolderTest, AFolderOfAnotherStoreIsFoundByItsIdentityAlone) {
    const MAPIFolder folder = run.addFolder(run.addStore(u"Archive"), u"Letters");
    run.addTemplate(folder, u"Far", plain(u"Text"));
    picks = {folder.EntryID()};
    openChooser(run, [](ScriptedUser& she) {
        clickPick(she);
        EXPECT_EQ(listed(), Subjects{u"Far"});
    });
}

TEST_F(ChooserPickFolderTest, ACancelledPickerChangesNothing) {
    openChooser(run, [](ScriptedUser& she) {
        const Recordset table = store::templateTables().rsPrivateTemplates;
        clickPick(she);
        EXPECT_EQ(chooser().txtFolder.Text.get(), u"");
        EXPECT_EQ(listed(), Subjects{u"Old"});
        EXPECT_EQ(store::templateTables().rsPrivateTemplates, table);
    });
    EXPECT_EQ(shown, 1);
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserPickFolderTest, WithoutAPickerItIsAsIfTheUserCancelled) {
    respond::furtherWindows().pickFolder = {};
    openChooser(run, [](ScriptedUser& she) {
        clickPick(she);
        EXPECT_EQ(listed(), Subjects{u"Old"});
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserPickFolderTest, AFolderThatMayNotBeReadIsToldAndThePickerComesAgain) {
    const MAPIFolder closed = folderWith(u"Closed", {u"Secret"});
    picks = {closed.EntryID(), folderWith(u"Letters", {u"New"}).EntryID()};
    run.driver().setRights(closed, model::FolderRights::None);
    std::u16string description;
    try {
        closed.Items().Count();
        FAIL() << "the folder can be read";
    } catch (const HostError& error) {
        description = error.description();
    }
    openChooser(run, [](ScriptedUser& she) {
        clickPick(she);
        EXPECT_EQ(listed(), Subjects{u"New"});
        EXPECT_EQ(chooser().txtFolder.Text.get(), u"Letters");
    });
    EXPECT_EQ(shown, 2);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"No Permission - Lorvane");
    EXPECT_EQ(run.lastBox().text, u"You do not have permission to access this folder. Please select another folder.\r\nDescription: (" + description + u")");
    EXPECT_EQ(run.lastBox().style, 16);
}

TEST_F(ChooserPickFolderTest, CancellingBehindARefusedFolderChangesNothing) {
    const MAPIFolder closed = folderWith(u"Closed", {u"Secret"});
    picks = {closed.EntryID()};
    run.driver().setRights(closed, model::FolderRights::None);
    openChooser(run, [](ScriptedUser& she) {
        clickPick(she);
        EXPECT_EQ(listed(), Subjects{u"Old"});
        EXPECT_EQ(chooser().txtFolder.Text.get(), u"");
    });
    EXPECT_EQ(shown, 2);
    EXPECT_EQ(run.boxes().size(), 1U);
}

TEST_F(ChooserPickFolderTest, AFolderWithoutMailsIsRefusedAndTheOldOneStays) {
    for (const std::int32_t type : {1, 2, 3, 4, 5}) {
        picks = {folderOfType(u"Type " + decimal(type), type).EntryID()};
        openChooser(run, [](ScriptedUser& she) {
            clickPick(she);
            EXPECT_EQ(listed(), Subjects{u"Old"});
            EXPECT_EQ(chooser().txtFolder.Text.get(), u"");
        });
        EXPECT_EQ(run.lastBox().text, u"This folder does not contain mail items");
        EXPECT_EQ(run.lastBox().title, u"Lorvane");
        EXPECT_EQ(run.lastBox().style, 64);
    }
    EXPECT_EQ(run.boxes().size(), 5U);
}

TEST_F(ChooserPickFolderTest, AFolderOfPostsIsTaken) {
    const MAPIFolder posts = folderOfType(u"Notices", 6);
    run.addTemplate(posts, u"Mail among posts", plain(u"Text"));
    picks = {posts.EntryID()};
    openChooser(run, [](ScriptedUser& she) {
        clickPick(she);
        EXPECT_EQ(listed(), Subjects{u"Mail among posts"});
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserPickFolderTest, AnEmptyFolderSaysSoByWhetherThereIsASearchText) {
    const std::u16string empty = folderWith(u"Empty", {}).EntryID();
    struct Case {
        std::u16string_view search, text;
    };
    for (const Case& turn : {Case{u"", u"No templates were found in the selected folder."}, Case{u"  ", u"No templates were found in the selected folder."},
                             Case{u"old", u"No matching templates were found in the selected folder."}}) {
        picks = {empty};
        openChooser(run, [&](ScriptedUser& she) {
            chooser().txtSearch.Text = std::u16string(turn.search);
            clickPick(she);
            EXPECT_EQ(listed(), Subjects{});
            EXPECT_FALSE(chooser().lstEmails.Visible);
            EXPECT_TRUE(chooser().lblNoEmails.Visible);
            EXPECT_FALSE(chooser().lblSearching.Visible);
            EXPECT_EQ(chooser().lblNoEmails.Caption.get(), turn.text);
            EXPECT_EQ(chooser().txtSubject.Text.get(), u"Select a template from the list to preview");
        });
    }
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserPickFolderTest, TheSearchNarrowsTheNewFolderToo) {
    picks = {folderWith(u"Letters", {u"Offer", u"Answer"}).EntryID()};
    openChooser(run, [](ScriptedUser& she) {
        chooser().txtSearch.Text = u"off";
        clickPick(she);
        EXPECT_EQ(listed(), Subjects{u"Offer"});
    });
}

TEST_F(ChooserPickFolderTest, TheSettingsFollowOnceSomethingIsDoneWithIt) {
    const MAPIFolder letters = folderWith(u"Letters", {u"New"});
    picks = {letters.EntryID()};
    const std::u16string before = run.setting(u"LastFolderEntryid");
    openChooser(run, [&](ScriptedUser& she) {
        clickPick(she);
        EXPECT_EQ(run.setting(u"LastFolderEntryid"), before);
        EXPECT_NE(run.apartment().TemplatesFolder.EntryID(), letters.EntryID());
        she.Click(chooserName, u"cmdNew");
    });
    EXPECT_EQ(run.setting(u"LastFolderEntryid"), letters.EntryID());
    EXPECT_EQ(run.setting(u"LastFolderStoreid"), letters.StoreID());
    EXPECT_EQ(run.setting(u"LastFolderName"), u"\\Personal Folders\\Letters");
    EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), letters.EntryID());
}

TEST_F(ChooserPickFolderTest, WithoutAPrivateFolderThePickerGivesOne) {
    run.apartment().TemplatesFolder = {};
    run.setSetting(u"LastFolderEntryid", u"00AA");
    picks = {folderWith(u"Letters", {u"New"}).EntryID()};
    openChooser(run, [](ScriptedUser& she) {
        EXPECT_EQ(listed(), Subjects{});
        clickPick(she);
        EXPECT_EQ(listed(), Subjects{u"New"});
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserPickFolderTest, TheTablesAreRebuiltAndTheFilesAreNot) {
    picks = {folderWith(u"Letters", {u"One", u"Two"}).EntryID()};
    openChooser(run, [](ScriptedUser& she) {
        const std::u16string file = store::ReadFile(store::privateCategoriesPath());
        clickPick(she);
        EXPECT_EQ(store::templateTables().rsPrivateTemplates.RecordCount(), 2);
        EXPECT_EQ(store::templateTables().rsPrivateCategories.Fields(u"strCategory").text(), u"New");
        EXPECT_EQ(store::ReadFile(store::privateCategoriesPath()), file);
    });
}

TEST_F(ChooserPickFolderTest, AnUnknownIdentityShowsTheStandardBox) {
    picks = {u"00AA"};
    openChooser(run, [](ScriptedUser& she) {
        clickPick(she);
        EXPECT_EQ(listed(), Subjects{u"Old"});
    });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"frmEmail.cmdPickfolder_Click - Lorvane");
}

TEST_F(ChooserPickFolderTest, TheHostIsConnectedWhereItIsNot) {
    picks = {folderWith(u"Letters", {u"New"}).EntryID()};
    openChooser(run, [&](ScriptedUser& she) {
        run.apartment().gOutlook = {};
        clickPick(she);
        EXPECT_TRUE(run.apartment().gOutlook);
        EXPECT_EQ(listed(), Subjects{u"New"});
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserPickFolderTest, MeanwhileTheSearchingStateIsShown) {
    picks = {folderWith(u"Letters", {u"New"}).EntryID()};
    openChooser(run, [](ScriptedUser& she) {
        chooser().txtSearch.Text = u"new";
        she.atPump(1, [](ScriptedUser&) {
            EXPECT_TRUE(chooser().lblSearching.Visible);
            EXPECT_TRUE(chooser().picBlankBkGrnd.Visible);
            EXPECT_FALSE(chooser().lblNoEmails.Visible);
            EXPECT_FALSE(chooser().lstEmails.Visible);
        });
        clickPick(she);
    });
}

}  // namespace
}  // namespace lorvane::support
