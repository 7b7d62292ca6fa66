#include "host/Connect.h"
#include "host/basGlobals.h"
#include "instruments/Decorator.h"
#include "respond/InsertRig.h"
#include "respond/modTemplateLog.h"
#include "store/CategoryFiles.h"
#include "store/FoldersRig.h"
#include "store/frmProgress.h"
#include "support/FaultSweep.h"

/// Each host call of the routines that other programs call by name fails once.
namespace lorvane::support {
namespace {

using namespace host;

class RoutineSweep : public SweepTest {};
SWEEP_CALLS(RoutineSweep);

/// The add-in's own object, as another instance reaches it.
Object byName() {
    return makeObject<Connect>();
}

Inspector openFirst(const TestRun& run, std::int32_t folder) {
    return run.openMail(run.folder(folder).Items().Item(1));
}

/// The only item of a folder, looked for without the instruments.
MailItem onlyItemOf(const MAPIFolder& folder) {
    return MailItem(MAPIFolder(instruments::stripped(folder)).Items().Item(1));
}

constexpr std::u16string_view offerSource = u"<HTML><BODY><B>Dear</B> [FirstName]</BODY></HTML>";

/// A template, and a mail to John in a Word editor.
FaultSweep overWord(std::u16string_view version) {
    FaultSweep sweep;
    sweep.options.editor = model::EditorKind::Word;
    sweep.options.version = version;
    sweep.prepare = [](TestRun& run) {
        run.addTemplate(u"Offer", html(offerSource));
        run.draft(u"About us", html(document(u"ab")), {u"John Public <john@example.com>"});
    };
    return sweep;
}

/// With an error in the middle the hidden window of the template goes without saving.
FaultSweep copyingRange(std::u16string_view version) {
    FaultSweep sweep = overWord(version);
    sweep.command = [](TestRun& run) {
        const MailItem offer = onlyItemOf(run.templatesFolder());
        const Object target = makeSafeMailItem(run.seen(onlyItemOf(run.folder(default_folder::Drafts))));
        byName().call(Member::CopyRangeToClipBoard,
                      {Variant(offer.EntryID()), Variant(offer.Parent().StoreID()), Variant(target), Variant(1), Variant(u"Recipient"), Variant(Object())});
    };
    sweep.raises = true;
    sweep.boxes = {errorBox(u"basGlobals.GetFullName")};
    sweep.check = [](TestRun& run, const SweptFault&) {
        EXPECT_EQ(run.record(run.templatesFolder().Items().Item(1)).body, offerSource) << "also what is not saved";
    };
    return sweep;
}

TEST_P(RoutineSweep, CopyRangeToClipBoard) {
    run(copyingRange(u"11.0.0.5510"));
}
TEST_P(RoutineSweep, CopyRangeToClipBoardAtTheGuardedVersion) {
    run(copyingRange(u"10.0.0.6515"));
}

FaultSweep pastingRange(std::u16string_view version) {
    FaultSweep sweep = overWord(version);
    sweep.open = [](TestRun& run) {
        run.focus(openFirst(run, default_folder::Drafts), model::EditorFieldName::Body, 1);
        run.clipboard().replaceText(u"text");
    };
    sweep.command = [](TestRun&) { byName().call(Member::PasteRangeToEmail); };
    sweep.boxes = {errorBox(u"PasteRangeToEmail")};
    sweep.check = [](TestRun& run, const SweptFault&) {
        const std::u16string shown = run.bodyShown(Inspector(run.application().ActiveInspector()));
        EXPECT_TRUE(shown == u"ab" || shown == u"atextb") << toUtf8(shown);
    };
    return sweep;
}

TEST_P(RoutineSweep, PasteRangeToEmail) {
    run(pastingRange(u"11.0.0.5510"));
}
TEST_P(RoutineSweep, PasteRangeToEmailAtTheGuardedVersion) {
    run(pastingRange(u"10.0.0.6515"));
}

TEST_P(RoutineSweep, TheSharedStateGivenAndTaken) {
    FaultSweep sweep;
    sweep.prepare = [](TestRun& run) { usePrivately(run, run.templatesFolder()); };
    sweep.command = [](TestRun& run) {
        // What arrives is used, since handing it on costs no call of the host.
        Variant folder{Object()}, nameSpace, application;
        const Object other = byName();
        other.call(Member::WordEditorVariablesGet, {Argument::byReference(folder), Argument::byReference(nameSpace), Argument::byReference(application)});
        other.call(Member::WordEditorVariablesSet, {folder, nameSpace, application});
        MAPIFolder(folder.toObject()).EntryID();
        run.apartment().gNameSpace.GetDefaultFolder(default_folder::Inbox);
        run.apartment().gOutlook.Version();
    };
    sweep.raises = true;
    sweep.check = [](TestRun& run, const SweptFault&) {
        EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), run.templatesFolder().EntryID());
        EXPECT_TRUE(run.apartment().gNameSpace);
        EXPECT_TRUE(run.apartment().gOutlook);
    };
    run(sweep);
}

/// A sample on its way: saved into Drafts, and not moved.
bool isSampleInDrafts(const PlacedItem& item) {
    return item.folder == u"\\Personal Folders\\Drafts" && item.record.head.subject.ends_with(u" (Sample)");
}

FaultSweep ofFirstRun(std::function<void(TestRun&)> command) {
    FaultSweep sweep;
    sweep.options.connected = false;
    sweep.options.samples = true;
    sweep.open = [](TestRun&) { ensureNameSpace(); };
    sweep.command = std::move(command);
    sweep.mayLeaveNew = isSampleInDrafts;
    sweep.raises = true;
    return sweep;
}

TEST_P(RoutineSweep, CreateLorvaneFolder) {
    FaultSweep sweep = ofFirstRun([](TestRun&) { byName().call(Member::CreateLorvaneFolder); });
    sweep.check = [](TestRun& run, const SweptFault&) {
        byName().call(Member::CreateLorvaneFolder);
        EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), run.templatesFolder().EntryID());
        EXPECT_EQ(run.setting(u"LastFolderEntryid"), run.templatesFolder().EntryID());
    };
    run(sweep);
}

TEST_P(RoutineSweep, CreateMapiFolder) {
    FaultSweep sweep = ofFirstRun([](TestRun&) { byName().call(Member::CreateMapiFolder); });
    sweep.check = [](TestRun& run, const SweptFault&) {
        byName().call(Member::CreateMapiFolder);
        EXPECT_EQ(run.setting(u"LastFolderName"), defaultPath);
    };
    run(sweep);
}

TEST_P(RoutineSweep, ExampleTemplatesCreate) {
    FaultSweep sweep = ofFirstRun([](TestRun& run) { byName().call(Member::ExampleTemplatesCreate, {Variant(Object(run.templatesFolder()))}); });
    sweep.prepare = [](TestRun& run) { run.templatesFolder(); };
    sweep.check = [](TestRun& run, const SweptFault&) {
        // They come in their order, and the first that fails is the last.
        const Names made = subjectsIn(run.templatesFolder());
        const Names all = {u"Follow Up to Phone Call (Sample)", u"Quote (Sample)", u"Request for Quote (Sample)"};
        ASSERT_LE(made.size(), all.size());
        EXPECT_TRUE(std::equal(made.begin(), made.end(), all.begin()));
        EXPECT_LE(subjectsIn(run.folder(default_folder::Drafts)).size(), 1U);
    };
    run(sweep);
}

TEST_P(RoutineSweep, InitializeRDOSession) {
    FaultSweep sweep;
    sweep.command = [](TestRun&) { InitializeRDOSession(); };
    sweep.check = [](TestRun& run, const SweptFault&) {
        EXPECT_TRUE(run.apartment().gRdoSession);
        InitializeRDOSession();
        EXPECT_EQ(RDOSession(run.apartment().gRdoSession).GetFolderFromID(run.templatesFolder().EntryID(), run.templatesFolder().StoreID()).Name(), u"Lorvane");
    };
    run(sweep);
}

TEST_P(RoutineSweep, RebuildCategoryFiles) {
    FaultSweep sweep;
    sweep.team = true;
    sweep.prepare = [](TestRun& run) {
        usePrivately(run, run.templatesFolder());
        run.addTemplate(u"Mine", plain(u"Text"), u"Sales, Letters");
        run.addTemplate(teamFolder(run), u"Ours", plain(u"Text"), u"Team");
        useShared(run, teamFolder(run));
    };
    sweep.command = [](TestRun&) {
        MAPIFolder privateFolder, sharedFolder;
        store::RebuildCategoryFiles(store::Scope::All, privateFolder, sharedFolder);
    };
    sweep.raises = true;
    sweep.files = {"data/Tolvenar/Lorvane/Private.xml", "data/Tolvenar/Lorvane/Shared.xml"};  // a walk that broke off knows fewer names
    sweep.errorBoxes = 2;                                                                     // one for each of the two files
    sweep.lossBoxes = 3;
    // The path is written before the folder turns out to be lost.
    sweep.maySet = [](std::u16string_view key, std::u16string_view value) { return isCutPath(key, value) || (key == u"SharedTemplFldrPath" && value.empty()); };
    sweep.boxes = {errorBox(u"basGlobals.LoadTemplateList"),
                   errorBox(u"basGlobals.AddCategoriesToList"),
                   errorBox(u"basGlobals.CategoryInList"),
                   errorBox(u"basGlobals.SaveRSToFile"),
                   {u"No Permission - Lorvane", u"You do not have permission to access the private folder.", msgbox::Critical},
                   {u"No Permission - Lorvane", u"You do not have permission to access the shared folder.", msgbox::Critical},
                   {u"Shared Templates Folder Not Found - Lorvane", u"Unable to locate your SHARED templates folder.", msgbox::Exclamation}};
    sweep.check = [](TestRun& run, const SweptFault&) {
        if (auto* const left = run.apartment().forms.find<store::frmProgress>()) left->unload();
        MAPIFolder privateFolder, sharedFolder;
        store::RebuildCategoryFiles(store::Scope::All, privateFolder, sharedFolder);
        for (const auto& [path, names] :
             {std::pair(store::privateCategoriesPath(), Names{u"Sales", u"Letters"}), {store::sharedCategoriesPath(), Names{u"Team"}}}) {
            const Recordset table = makeRecordset();
            ASSERT_TRUE(store::LoadRSFromFile(table, path)) << toUtf8(path);
            EXPECT_EQ(categoriesIn(table), names) << "the next time is whole again";
        }
    };
    run(sweep);
}

TEST_P(RoutineSweep, TemplateLogRecord) {
    FaultSweep sweep;
    sweep.prepare = [](TestRun& run) { run.addTemplate(u"Offer", plain(u"Text")); };
    sweep.open = [](TestRun& run) {
        run.setSetting(u"LogTemplate", u"True");
        run.setSetting(u"TemplatesLogFilePath", Files(run.services().files).GetFolderPath(5) + u"\\log.csv");
    };
    sweep.command = [](TestRun& run) {
        const MailItem offer = onlyItemOf(run.templatesFolder());
        respond::TemplateLogRecord(offer.EntryID(), run.store().storeId());
    };
    sweep.files = {"documents/log.csv"};
    sweep.boxes = {errorBox(u"modTemplateLog.TemplateLogRecord"),
                   {u"Unable to create the file - Lorvane", u"Unable to create or write to the file log.csv", msgbox::Exclamation}};
    sweep.check = [](TestRun& run, const SweptFault&) {
        const std::u16string header = u"User Name,Date,Time,Template Name,Template EntryID,Template StoreID\r\n";
        const Files files(run.services().files);
        const std::u16string path = files.GetFolderPath(5) + u"\\log.csv";
        const std::u16string log = files.FileExists(path) ? files.ReadText(path) : std::u16string();
        EXPECT_TRUE(log.empty() || log == u"test\r\n" || log == header || (log.starts_with(header + u"jpublic,1/10/2028,") && log.ends_with(u"\r\n")))
            << toUtf8(log);
    };
    run(sweep);
}

}  // namespace
}  // namespace lorvane::support
