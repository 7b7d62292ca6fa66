#include <gtest/gtest.h>

#include "FoldersRig.h"
#include "instruments/Decorator.h"
#include "mailstore/MemoryStore.h"
#include "store/Categories.h"
#include "store/TemplateList.h"
#include "store/frmProgress.h"

/// The walk over the template folders that fills the tables.
namespace lorvane::store {
namespace {

using namespace host;
using namespace support;

Names column(const Recordset& table, std::u16string_view field) {
    Names values;
    if (!table || table.RecordCount() == 0) return values;
    for (table.MoveFirst(); !table.EndOfFile(); table.MoveNext()) values.push_back(table.Fields(field).text());
    return values;
}
Names privateSubjects() {
    return column(templateTables().rsPrivateTemplates, u"strSubject");
}
Names sharedSubjects() {
    return column(templateTables().rsSharedTemplates, u"strSubject");
}
Names privateCategories() {
    return column(templateTables().rsPrivateCategories, u"strCategory");
}

class TemplateListTest : public testing::Test {
protected:
    void load(bool withShared = true) { LoadTemplateList(mine, withShared ? team : MAPIFolder(), nullptr, false); }
    TestRun run;
    MAPIFolder mine = run.templatesFolder();
    MAPIFolder team = run.addFolder(run.addStore(u"Team"), u"Templates");
};

TEST_F(TemplateListTest, KeepsIdentitySubjectAndCategoriesInTheFoldersOrder) {
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"), u"Sales, Letters");
    run.addTemplate(u"Answer", plain(u"Text"));
    load();
    const Recordset table = templateTables().rsPrivateTemplates;
    EXPECT_EQ(privateSubjects(), (Names{u"Offer", u"Answer"}));
    EXPECT_EQ(column(table, u"strEntryID")[0], offer.EntryID());
    EXPECT_EQ(column(table, u"strStoreID")[0], mine.StoreID());
    EXPECT_EQ(column(table, u"strCategories"), (Names{u"Sales, Letters", u""}));
    EXPECT_EQ(privateCategories(), (Names{u"Sales", u"Letters"}));
}

TEST_F(TemplateListTest, AnEmptySubjectIsNoSubject) {
    run.addTemplate(u"", plain(u"Text"));
    load();
    EXPECT_EQ(privateSubjects(), Names{u"NO SUBJECT"});
}

TEST_F(TemplateListTest, ASubjectBeyondTheFieldsSizeIsToldAsUnreadable) {
    run.addTemplate(std::u16string(1000, u'x'), plain(u"Text"));
    run.addTemplate(std::u16string(1001, u'x'), plain(u"Text"));
    load();
    EXPECT_EQ(privateSubjects(), (Names{std::u16string(1000, u'x'), u"[Subject could not be read. It may be corrupted]"}));
}

TEST_F(TemplateListTest, PostsAreCachedAndDerivedClassesAreNot) {
    addPost(run, mine, u"Post", u"Notices");
    addPost(run, mine, u"Signed", u"Secret", u"IPM.Note.SMIME", item_class::Mail);
    addPost(run, mine, u"Lower", u"Lower", u"ipm.note", item_class::Mail);
    addPost(run, mine, u"Meeting", u"Calendar", u"IPM.Appointment", item_class::Appointment);
    load();
    EXPECT_EQ(privateSubjects(), Names{u"Post"});
    EXPECT_EQ(privateCategories(), Names{u"Notices"});
}

TEST_F(TemplateListTest, SharedTablesAreFilledWithSharingOnOnly) {
    run.addTemplate(u"Mine", plain(u"Text"));
    run.addTemplate(team, u"Ours", plain(u"Text"), u"Team");
    load();
    EXPECT_FALSE(templateTables().rsSharedTemplates);
    EXPECT_FALSE(templateTables().rsSharedCategories);
    useShared(run, team);
    load();
    EXPECT_EQ(sharedSubjects(), Names{u"Ours"}) << "without a suffix: that is the list's";
    EXPECT_EQ(column(templateTables().rsSharedCategories, u"strCategory"), Names{u"Team"});
}

TEST_F(TemplateListTest, AnEmptyPrivateFolderGivesAnOpenTableAndLeavesItsCategories) {
    const MailItem only = run.addTemplate(u"Mine", plain(u"Text"), u"Sales");
    load();
    run.driver().purge(only);
    useShared(run, team);
    run.addTemplate(team, u"Ours", plain(u"Text"));
    load();
    ASSERT_TRUE(templateTables().rsPrivateTemplates);
    EXPECT_EQ(templateTables().rsPrivateTemplates.RecordCount(), 0);
    EXPECT_EQ(privateCategories(), Names{u"Sales"});
    EXPECT_EQ(sharedSubjects(), Names{u"Ours"});
}

TEST_F(TemplateListTest, WithoutAPrivateFolderItsTablesStayAsTheyWere) {
    run.addTemplate(u"Mine", plain(u"Text"));
    load();
    useShared(run, team);
    LoadTemplateList(MAPIFolder(), team, nullptr, false);
    EXPECT_EQ(privateSubjects(), Names{u"Mine"});
    ASSERT_TRUE(templateTables().rsSharedTemplates);
}

TEST_F(TemplateListTest, ARefusedPrivateFolderShowsItsMessageAndTheSharedOneIsLoaded) {
    run.addTemplate(u"Mine", plain(u"Text"));
    useShared(run, team);
    run.addTemplate(team, u"Ours", plain(u"Text"));
    run.driver().setRights(mine, model::FolderRights::None);
    load();
    EXPECT_FALSE(templateTables().rsPrivateTemplates);
    EXPECT_EQ(sharedSubjects(), Names{u"Ours"});
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"No Permission - Lorvane");
    EXPECT_EQ(run.lastBox().style, 16);
    const std::u16string front = u"You do not have permission to access the private folder. Please select another folder.\r\n\r\nDescription: (";
    EXPECT_EQ(run.lastBox().text.substr(0, front.size()), front);
    EXPECT_GT(run.lastBox().text.size(), front.size() + 1) << "the host's description";
    EXPECT_EQ(run.lastBox().text.back(), u')');
}

TEST_F(TemplateListTest, ARefusedSharedFolderShowsItsMessageOnce) {
    run.addTemplate(u"Mine", plain(u"Text"));
    useShared(run, team);
    run.driver().setRights(team, model::FolderRights::None);
    load();
    EXPECT_EQ(privateSubjects(), Names{u"Mine"});
    EXPECT_FALSE(templateTables().rsSharedTemplates);
    ASSERT_EQ(run.boxes().size(), 1U) << "the second look at the folder is silent";
    EXPECT_EQ(run.lastBox().title, u"No Permission - Lorvane");
    EXPECT_EQ(run.lastBox().style, 16);
    const std::u16string front =
        u"You do not have permission to access the shared folder. Please select another folder from the Lorvane Settings screen.\r\n\r\nDescription: (";
    EXPECT_EQ(run.lastBox().text.substr(0, front.size()), front);
}

TEST_F(TemplateListTest, WithoutPrivateItemsARefusedSharedFolderIsSilent) {
    useShared(run, team);
    run.driver().setRights(team, model::FolderRights::None);
    load();
    EXPECT_TRUE(run.boxes().empty());
    EXPECT_FALSE(templateTables().rsSharedTemplates);
}

TEST_F(TemplateListTest, AMissingSessionIsMadeByTheWalk) {
    run.addTemplate(u"Mine", plain(u"Text"));
    run.apartment().gRdoSession = {};
    load();
    EXPECT_EQ(privateSubjects(), Names{u"Mine"});
    EXPECT_TRUE(run.apartment().gRdoSession);
}

TEST(TemplateListFaultTest, AnItemThatFailsOnTheWayLeavesNoRowAndTheNextOneFollows) {
    for (const std::u16string_view member : {u"MessageClass", u"EntryID", u"Parent", u"Subject", u"Categories"}) {
        SCOPED_TRACE(toUtf8(member));
        TestRun run({.instruments = true});
        run.addTemplate(u"First", plain(u"Text"));
        run.addTemplate(u"Second", plain(u"Text"));
        const MAPIFolder folder = run.templatesFolder();
        run.faults().failNth(u"RDOMail", member, 1, host_failure::Failed);
        LoadTemplateList(folder, {}, nullptr, false);
        EXPECT_EQ(privateSubjects(), Names{u"Second"});
        EXPECT_TRUE(run.boxes().empty());
    }
}

TEST(TemplateListFaultTest, AnErrorOfTheWalkItselfShowsTheStandardBox) {
    TestRun run({.instruments = true});
    run.addTemplate(u"First", plain(u"Text"));
    const MAPIFolder folder = run.templatesFolder();
    run.faults().failNth(u"RDOSession", u"GetFolderFromID", 1, host_failure::Failed, u"Out of reach");
    LoadTemplateList(folder, {}, nullptr, false);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"basGlobals.LoadTemplateList - Lorvane");
    EXPECT_EQ(run.lastBox().text, u"Error -2147467259: Out of reach");
}

/// The texts that the progress window showed while the walk went on.
class ProgressTest : public testing::Test {
protected:
    Names textsWhileLoading(TestRun& run, const MAPIFolder& mine, const MAPIFolder& team) {
        Names texts;
        auto& progress = run.apartment().forms.use<frmProgress>();
        progress.PrivateFolder = mine;
        progress.SharedFolder = team;
        // Each step begins with a look at the item: that is where the window is read.
        struct Watch final : instruments::Tap {
            explicit Watch(Names& to) : texts(to) {}
            Variant onUse(const instruments::Use& use, const std::function<Variant()>& proceed) override {
                if (use.member == Member::Item && use.object.className() == u"RDOItems")
                    if (const auto* window = apartment().forms.find<frmProgress>()) texts.push_back(window->lblStatus.Caption);
                return proceed();
            }
            Names& texts;
        };
        run.apartment().gRdoSession = instruments::decorated(run.apartment().gRdoSession, std::make_shared<Watch>(texts));
        progress.Show(true);
        return texts;
    }
};

TEST_F(ProgressTest, TellsCounterAndTotalOverBothFolders) {
    TestRun run;
    const MAPIFolder team = run.addFolder(run.addStore(u"Team"), u"Templates");
    useShared(run, team);
    run.addTemplate(u"One", plain(u"Text"));
    addPost(run, run.templatesFolder(), u"Signed", u"", u"IPM.Note.SMIME", item_class::Mail);
    run.addTemplate(u"Two", plain(u"Text"));
    run.addTemplate(team, u"Three", plain(u"Text"));
    EXPECT_EQ(textsWhileLoading(run, run.templatesFolder(), team),
              (Names{u"Loading E-mails ...1 of 4 ...", u"Loading E-mails ...2 of 4 ...", u"Loading E-mails ...2 of 4 ...", u"Loading E-mails ...3 of 4 ..."}));
}

TEST_F(ProgressTest, WithAnEmptyPrivateFolderTheSharedCountIsTheTotal) {
    TestRun run;
    const MAPIFolder team = run.addFolder(run.addStore(u"Team"), u"Templates");
    useShared(run, team);
    run.addTemplate(team, u"One", plain(u"Text"));
    run.addTemplate(team, u"Two", plain(u"Text"));
    EXPECT_EQ(textsWhileLoading(run, run.templatesFolder(), team), (Names{u"Loading E-mails ...1 of 2 ...", u"Loading E-mails ...2 of 2 ..."}));
}

TEST_F(ProgressTest, IsGoneOnReturnAndTheBarGrewWithTheCounter) {
    TestRun run;
    run.addTemplate(u"One", plain(u"Text"));
    run.addTemplate(u"Two", plain(u"Text"));
    auto& progress = run.apartment().forms.use<frmProgress>();
    const Object keep(&progress);
    progress.lbl1bar.Width = 1080;
    progress.PrivateFolder = run.templatesFolder();
    progress.Show(true);
    EXPECT_EQ(progress.lbl1progressbar.Width, 1000) << "counter 2 of 2, over the bar's width less 80";
    EXPECT_EQ(run.apartment().forms.find<frmProgress>(), nullptr);
    EXPECT_FALSE(progress.PrivateFolder);
    EXPECT_TRUE(run.user().leftUp().empty());
    EXPECT_EQ(run.apartment().forms.find(u"frmEmail"), nullptr) << "no chooser is loaded for its list";
    EXPECT_TRUE(run.boxes().empty());
}

TEST(TemplateCounterTest, StandsStillAtItsLimitWhileRowsGoOn) {
    constexpr int items = 32769;
    TestRun run;
    const std::shared_ptr<mailstore::MailStore> store = mailstore::makeMemoryStore(u"Archive", 3);
    const mailstore::FolderRecord folder = store->addFolder(store->rootFolder().entryId, {.entryId = u"", .parentId = u"", .name = u"Many"});
    mailstore::ItemRecord record;
    record.head.subject = u"Letter";
    record.head.categories = u"Sales";
    for (int item = 0; item < items; ++item) store->saveItem(folder.entryId, record);
    run.driver().addStore(store);

    auto& progress = run.apartment().forms.use<frmProgress>();
    const Object keep(&progress);
    progress.PrivateFolder = run.session().GetFolderFromID(folder.entryId, store->storeId());
    progress.Show(true);
    EXPECT_EQ(templateTables().rsPrivateTemplates.RecordCount(), items);
    EXPECT_EQ(privateCategories(), Names{u"Sales"});
    EXPECT_EQ(progress.lblStatus.Caption.get(), u"Loading E-mails ...32767 of 32769 ...");
    EXPECT_EQ(run.lastBox().text, u"");
}

}  // namespace
}  // namespace lorvane::store
