#include "AttachmentsRig.h"

/// A template's attachments on their way into the item.
namespace lorvane::support {
namespace {

using namespace host;
using namespace respond;

TEST_F(AttachmentsTest, WithoutAttachmentsTheResultIsEmptyAndNoFolderIsMade) {
    EXPECT_EQ(copy(u"<p>"), u"");
    EXPECT_EQ(html_, u"<p>");
    EXPECT_FALSE(apartment().machine.files().FolderExists(folder()));
    for (const std::int32_t tag : itemTags) EXPECT_FALSE(itemField(tag).toBoolean());
}

TEST_F(AttachmentsTest, EachGoesThroughAFileInTheLocalFolder) {
    attach(offer, "one.txt");
    attach(offer, "two.bin");
    EXPECT_EQ(copy(), folder());
    EXPECT_EQ(attachmentNames(run, target), (Subjects{u"one.txt", u"two.bin"}));
    EXPECT_EQ(localFiles().size(), 2U);
    RemoveAttachmentsFromTemp(folder());
    EXPECT_TRUE(localFiles().empty());
    EXPECT_TRUE(apartment().machine.files().FolderExists(folder())) << "the folder itself stays";
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(AttachmentsTest, ANameThatTheTargetHasIsChangedInTheHtmlToo) {
    attach(target, "report.pdf");
    attach(offer, "report.pdf");
    copy(u"<img src=\"REPORT.pdf\"> report.pdf");
    EXPECT_EQ(attachmentNames(run, target), (Subjects{u"report.pdf", u"report_1.pdf"}));
    EXPECT_EQ(html_, u"<img src=\"report_1.pdf\"> report_1.pdf");
}

TEST_F(AttachmentsTest, TwoOfOneNameAreBothChanged) {
    attach(offer, "a.txt");
    attach(offer, "a.txt");
    copy();
    EXPECT_EQ(attachmentNames(run, target), (Subjects{u"a_1.txt", u"a_1_2.txt"}));
}

TEST_F(AttachmentsTest, ThreeOfOneNameGrowOn) {
    for (int turn = 0; turn < 3; ++turn) attach(offer, "a.txt");
    copy();
    EXPECT_EQ(attachmentNames(run, target), (Subjects{u"a_1.txt", u"a_1_2.txt", u"a_1_2_3.txt"}));
}

TEST_F(AttachmentsTest, ANameWithoutAnEndingIsNumberedAtItsEnd) {
    attach(target, "README");
    attach(offer, "README");
    copy();
    EXPECT_EQ(attachmentNames(run, target), (Subjects{u"README", u"README_1"}));
}

TEST_F(AttachmentsTest, ThePercentBlankAndTheNumberSignAreReplaced) {
    attach(offer, "my%20plan #2.txt");
    copy();
    EXPECT_EQ(attachmentNames(run, target), Subjects{u"my plan _2.txt"});
    EXPECT_EQ(run.record(target).attachments[0].displayName, u"my plan _2.txt");
}

TEST_F(AttachmentsTest, AFileLeftFromBeforeIsNotOverwritten) {
    const Files files = apartment().machine.files();
    ASSERT_TRUE(CreateStorageFolders());
    files.WriteText(folder() + u"\\a.txt", u"kept");
    attach(offer, "a.txt");
    copy();
    EXPECT_EQ(files.ReadText(folder() + u"\\a.txt"), u"kept");
    EXPECT_TRUE(files.FileExists(folder() + u"\\a0.txt"));
    EXPECT_EQ(run.record(target).attachments[0].displayName, u"a.txt");
}

TEST_F(AttachmentsTest, APathThatIsTooLongIsLeftOutSilently) {
    const std::size_t room = 259 - folder().size() - 1;
    attach(offer, std::string(room - 4, 'f') + ".txt");
    attach(offer, std::string(room - 3, 'l') + ".txt");
    attach(offer, "z.txt");
    copy();
    EXPECT_EQ(attachmentNames(run, target), (Subjects{std::u16string(room - 4, u'f') + u".txt", u"z.txt"}));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(AttachmentsTest, CharactersThatNoFileNameHoldsAreTakenOut) {
    attach(offer, "a:b*c?d\"e<f>g|h.txt");
    copy();
    EXPECT_EQ(attachmentNames(run, target), Subjects{u"abcdefgh.txt"});
    EXPECT_EQ(localFiles(), Subjects{u"abcdefgh.txt"});
}

TEST_F(AttachmentsTest, TheNumberComesBeforeTheCleaning) {
    attach(target, "plan #1.txt");
    attach(offer, "plan #1.txt");
    copy(u"see plan #1.txt");
    EXPECT_EQ(attachmentNames(run, target), (Subjects{u"plan #1.txt", u"plan _1_1.txt"}));
    EXPECT_EQ(html_, u"see plan #1_1.txt");
}

TEST_F(AttachmentsTest, APostTakesThemToo) {
    attach(offer, "one.txt");
    const MailItem post = addPost(run, run.folder(default_folder::Inbox), u"Post");
    std::u16string html;
    EXPECT_EQ(CopyAttachments(offer, post, html), folder());
    EXPECT_EQ(attachmentNames(run, post), Subjects{u"one.txt"});
}

TEST_F(AttachmentsTest, TheyAreSavedWithTheTarget) {
    attach(offer, "one.txt");
    copy();
    const MailItem again = run.session().GetItemFromID(target.EntryID(), target.Parent().StoreID());
    ASSERT_EQ(again.Attachments().Count(), 1);
    EXPECT_EQ(again.Attachments().Item(1).FileName(), u"one.txt");
}

TEST_F(AttachmentsTest, AFolderInTheLocalFolderStays) {
    attach(offer, "one.txt");
    copy();
    const Files files = apartment().machine.files();
    files.CreateFolder(folder() + u"\\below");
    RemoveAttachmentsFromTemp(folder());
    EXPECT_TRUE(localFiles().empty());
    EXPECT_TRUE(files.FolderExists(folder() + u"\\below"));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(AttachmentsTest, AFileInTheLocalFoldersPlaceEndsTheCopyingInSilence) {
    attach(offer, "one.txt");
    const Files files = apartment().machine.files();
    files.WriteText(GetTempFolder() + u"Tolvenar", u"in the way");
    EXPECT_FALSE(CreateStorageFolders());
    RemoveAttachmentsFromTemp(copy());
    EXPECT_TRUE(attachmentNames(run, target).empty());
    EXPECT_TRUE(run.boxes().empty());
    EXPECT_EQ(files.ReadText(GetTempFolder() + u"Tolvenar"), u"in the way");
}

TEST_F(AttachmentsTest, ItemsMarksFromBeforeAreTakenBackButTheNamedOneStays) {
    const SafeMailItem safe = makeSafeMailItem(target);
    for (const std::int32_t tag : itemTags) safe.setFields(tag, true);
    safe.setFields(embeddedOnlyTag, true);
    safe.Save();
    copy();
    for (const std::int32_t tag : itemTags) EXPECT_FALSE(itemField(tag).toBoolean());
    EXPECT_TRUE(itemField(embeddedOnlyTag).toBoolean());
}

TEST_F(AttachmentsTest, BelowTwelveReferencesAndPropertiesStay) {
    attach(offer, "logo.png", u"logo@somewhere");
    copy(u"<img src=\"cid:logo@somewhere\">");
    EXPECT_EQ(html_, u"<img src=\"cid:logo@somewhere\">");
    EXPECT_EQ(fieldOf(1, contentIdTag).toText(), u"logo@somewhere") << "as the host copied it";
    EXPECT_TRUE(fieldOf(1, hiddenTag).isEmpty());
    EXPECT_TRUE(fieldOf(1, flagsTag).isEmpty());
    for (const std::int32_t tag : itemTags) EXPECT_FALSE(itemField(tag).toBoolean());
    EXPECT_TRUE(itemField(embeddedOnlyTag).isEmpty());
}

TEST_F(AttachmentsTest, AHostThatRefusesTheAttachmentsIsToldByABox) {
    attach(offer, "one.txt");
    run.driver().setRights(run.folder(default_folder::Drafts), model::FolderRights::Read);
    const std::u16string result = copy();
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"Copy Attachments - Lorvane");
    EXPECT_EQ(run.lastBox().style, 16);
    RemoveAttachmentsFromTemp(result);
    EXPECT_TRUE(localFiles().empty()) << "what was written is taken away all the same";
}

TEST(AttachmentFaultTest, AFileThatCannotBeTakenAwayIsToldAndTheRoutineGoesOn) {
    TestRun run({.instruments = true});
    ASSERT_TRUE(CreateStorageFolders());
    const std::u16string folder = GetTempFolder() + u"Tolvenar\\Lorvane";
    apartment().machine.files().WriteText(folder + u"\\a.txt", u"x");
    run.faults().failNth(u"Files", u"DeleteFile", 1, runtime_error::PathFileAccess);
    RemoveAttachmentsFromTemp(folder);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"basAttachments.RemoveAttachmentsFromTemp - Lorvane");
    EXPECT_EQ(run.lastBox().text.substr(0, 9), u"Error 75:");
}

TEST(AttachmentFaultTest, AFolderThatCannotBeMadeEndsTheCopyingInSilence) {
    TestRun run({.instruments = true});
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    run.attach(offer, "one.txt", {1});
    offer.Save();
    const MailItem target = run.draft(u"Draft", plain(u"Text"));
    run.faults().failNth(u"Files", u"CreateFolder", 1, runtime_error::PathFileAccess);
    std::u16string html;
    CopyAttachments(offer, target, html);
    EXPECT_TRUE(attachmentNames(run, target).empty());
    EXPECT_TRUE(run.boxes().empty());
}

TEST(AttachmentFaultTest, AFolderThatGoesInBetweenEndsTheFunctionWithWhatWasCopied) {
    TestRun run({.version = u"12.0.0.4518", .connected = false, .instruments = true});
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    for (const char* name : {"one.png", "two.png"}) {
        run.attach(offer, name, {1});
        giveContentId(offer, fromUtf8(name));
    }
    offer.Save();
    const MailItem target = run.draft(u"Draft", plain(u"Text"));
    // Two folders are looked for at each attachment.
    run.faults().failNth(u"Files", u"FolderExists", 3, runtime_error::PathFileAccess);
    std::u16string html = u"<p>text</p>";
    RemoveAttachmentsFromTemp(CopyAttachments(offer, target, html));
    EXPECT_EQ(attachmentNames(run, target), Subjects{u"one.png"});
    EXPECT_EQ(html, u"<p>text</p>") << "references are not looked at any more";
    EXPECT_TRUE(makeSafeMailItem(target).Fields(itemTags[0]).isEmpty());
    EXPECT_TRUE(localFiles().empty());
    EXPECT_TRUE(run.boxes().empty());
}

TEST(AttachmentFaultTest, AnErrorInBetweenIsToldAndWhatWasCopiedStays) {
    TestRun run({.instruments = true});
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    for (const char* name : {"one.txt", "two.txt"}) run.attach(offer, name, {1});
    offer.Save();
    const MailItem target = run.draft(u"Draft", plain(u"Text"));
    run.faults().failNth(u"Attachment", u"SaveAsFile", 2, host_failure::Failed, u"Out of luck");
    std::u16string html;
    RemoveAttachmentsFromTemp(CopyAttachments(offer, target, html));
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox(), (screen::ScriptedUser::BoxRecord{u"Copy Attachments - Lorvane", u"Error -2147467259: Out of luck", 16, 1}));
    EXPECT_EQ(attachmentNames(run, target), Subjects{u"one.txt"});
    EXPECT_TRUE(localFiles().empty());
}

TEST(AttachmentCallsTest, EachIsAddedByValueAtItsPlaceAndTheTargetIsSavedBehindIt) {
    TestRun run({.instruments = true});
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    run.attach(offer, "one.txt", {1});
    run.attach(offer, "two.txt", {2});
    offer.Save();
    const MailItem target = run.draft(u"Draft", plain(u"Text"));
    run.recorder().clear();
    std::u16string html;
    CopyAttachments(offer, target, html);
    std::vector<std::u16string> order;
    for (const auto& call : run.recorder().calls()) {
        if (call.className == u"Attachments" && call.member == u"Add") {
            EXPECT_EQ(call.arguments[1].toInt32(), 1);
            order.push_back(u"add " + decimal(call.arguments[2].toInt32()) + u" " + call.arguments[3].toText());
        } else if (call.member == u"SaveAsFile" || call.member == u"Save") {
            order.push_back(call.className + u"." + call.member);
        }
    }
    EXPECT_EQ(order, (std::vector<std::u16string>{u"Attachment.SaveAsFile", u"add 1 one.txt", u"MailItem.Save", u"Attachment.SaveAsFile", u"add 2 two.txt",
                                                  u"MailItem.Save", u"MailItem.Save", u"SafeMailItem.Save", u"MailItem.Save"}));
}

}  // namespace
}  // namespace lorvane::support
