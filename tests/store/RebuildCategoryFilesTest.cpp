#include <gtest/gtest.h>

#include "FoldersRig.h"
#include "store/CategoryFiles.h"
#include "store/frmProgress.h"

/// The way of a save window that found no usable file.
namespace lorvane::store {
namespace {

using namespace host;
using namespace support;

class RebuildTest : public testing::Test {
protected:
    explicit RebuildTest(RunOptions options = {}) : run(std::move(options)) {
        usePrivately(run, run.templatesFolder());
        run.addTemplate(u"Mine", plain(u"Text"), u"Sales, Letters");
        run.addTemplate(team, u"Ours", plain(u"Text"), u"Team");
    }
    void rebuild(Scope scope) { RebuildCategoryFiles(scope, privateFolder, sharedFolder); }
    /// The names in a file; none where it does not load.
    static Names namesIn(const std::u16string& path) {
        const Recordset table = makeRecordset();
        return LoadRSFromFile(table, path) ? categoriesIn(table) : Names{};
    }
    TestRun run;
    MAPIFolder team = run.addFolder(run.addStore(u"Team"), u"Templates");
    MAPIFolder privateFolder, sharedFolder;
};

TEST_F(RebuildTest, WalksTheFoldersBehindTheProgressWindowAndWritesTheFiles) {
    rebuild(Scope::Private);
    EXPECT_EQ(privateFolder.EntryID(), run.templatesFolder().EntryID());
    EXPECT_FALSE(sharedFolder);
    EXPECT_TRUE(StorageFoldersExist());
    EXPECT_EQ(namesIn(privateCategoriesPath()), (Names{u"Sales", u"Letters"}));
    EXPECT_FALSE(apartment().machine.files().FileExists(sharedCategoriesPath()));
    EXPECT_EQ(apartment().forms.find<frmProgress>(), nullptr);
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(RebuildTest, EachScopeWalksItsFoldersAndGivesBothBack) {
    useShared(run, team);
    struct Case {
        Scope scope;
        bool walksPrivate, walksShared;
    };
    for (const Case& turn : {Case{Scope::All, true, true}, Case{Scope::Private, true, false}, Case{Scope::Shared, false, true}}) {
        templateTables() = {};
        rebuild(turn.scope);
        EXPECT_EQ(privateFolder.EntryID(), run.templatesFolder().EntryID());
        EXPECT_EQ(sharedFolder.EntryID(), team.EntryID());
        EXPECT_EQ(static_cast<bool>(templateTables().rsPrivateTemplates), turn.walksPrivate);
        EXPECT_EQ(static_cast<bool>(templateTables().rsSharedTemplates), turn.walksShared);
    }
    EXPECT_EQ(namesIn(privateCategoriesPath()), (Names{u"Sales", u"Letters"}));
    EXPECT_EQ(namesIn(sharedCategoriesPath()), Names{u"Team"});
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(RebuildTest, TheTemplateTablesAreClearedAndThePrivateFolderIsTheCurrentOne) {
    useShared(run, team);
    templateTables().rsPrivateTemplates = newTemplateTable();
    apartment().TemplatesFolder = team;
    rebuild(Scope::Shared);
    EXPECT_FALSE(templateTables().rsPrivateTemplates);
    EXPECT_EQ(apartment().TemplatesFolder.EntryID(), run.templatesFolder().EntryID());
}

TEST_F(RebuildTest, ADamagedFileIsReplaced) {
    ASSERT_TRUE(qz7mCreateStorageFolders());
    apartment().machine.files().WriteText(privateCategoriesPath(), u"<xml");
    rebuild(Scope::Private);
    EXPECT_EQ(namesIn(privateCategoriesPath()), (Names{u"Sales", u"Letters"}));
}

TEST_F(RebuildTest, ALostSharedFolderIsToldAndThePrivateOneIsWritten) {
    useShared(run, team);
    run.driver().removeStore(u"Team");
    rebuild(Scope::All);
    EXPECT_FALSE(sharedFolder);
    EXPECT_EQ(namesIn(privateCategoriesPath()), (Names{u"Sales", u"Letters"}));
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"Shared Templates Folder Not Found - Lorvane");
}

TEST_F(RebuildTest, AMissingSharedKeyLeavesTheSharedFolderOut) {
    useShared(run, team);
    run.setSetting(u"SharedFolderEntryid", u"");
    rebuild(Scope::All);
    EXPECT_FALSE(sharedFolder);
    EXPECT_FALSE(templateTables().rsSharedTemplates);
    EXPECT_TRUE(run.boxes().empty()) << "no folder was chosen, so none is lost";
}

TEST_F(RebuildTest, APrivateFolderThatCannotBeResolvedIsTheCallersError) {
    run.setSetting(u"LastFolderEntryid", u"00AA");
    EXPECT_THROW(rebuild(Scope::Private), HostError);
    EXPECT_FALSE(apartment().machine.files().FileExists(privateCategoriesPath()));
}

class RebuildFaultTest : public RebuildTest {
protected:
    RebuildFaultTest() : RebuildTest({.instruments = true}) {}
};

TEST_F(RebuildFaultTest, WhereTheFoldersCannotBeVerifiedNothingIsWalkedOrWritten) {
    apartment().TemplatesFolder = {};
    // The four folder keys and the sharing switch are read before; the next reading is that of the verification.
    run.faults().failNth(u"Settings", u"GetSetting", 6, host_failure::Failed);
    rebuild(Scope::Private);
    EXPECT_EQ(run.faults().failures(), 1U);
    EXPECT_TRUE(privateFolder);
    EXPECT_FALSE(apartment().TemplatesFolder);
    EXPECT_FALSE(templateTables().rsPrivateTemplates);
    EXPECT_FALSE(StorageFoldersExist());
    EXPECT_TRUE(run.boxes().empty());
}

}  // namespace
}  // namespace lorvane::store
