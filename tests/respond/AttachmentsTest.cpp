#include <gtest/gtest.h>

#include "InsertRig.h"
#include "respond/basAttachments.h"

/// A template's attachments on their way into the item.
namespace lorvane::support {
namespace {

using namespace host;
using namespace respond;

constexpr std::int32_t contentIdTag = 0x3712001E, hiddenTag = 0x7FFE000B, flagsTag = 0x7FFD0003;
constexpr std::int32_t itemTags[] = {static_cast<std::int32_t>(0x800A000B), 0x10F4000B};

class AttachmentsTest : public testing::Test {
protected:
    explicit AttachmentsTest(std::u16string_view version = u"11.0.0.5510") : run({.version = std::u16string(version), .connected = false}) {}
    void attach(const MailItem& item, std::string_view name, std::u16string_view contentId = u"") {
        run.attach(item, name, Bytes{1, 2, 3});
        if (!contentId.empty()) giveContentId(item, contentId);
        item.Save();
    }
    std::u16string copy(std::u16string html = u"") {
        html_ = std::move(html);
        return CopyAttachments(offer, target, html_);
    }
    Variant fieldOf(std::int32_t index, std::int32_t tag) { return makeSafeMailItem(target).Attachments().Item(index).Fields(tag); }
    Variant itemField(std::int32_t tag) { return makeSafeMailItem(target).Fields(tag); }
    std::u16string folder() { return GetTempFolder() + u"Tolvenar\\Lorvane"; }

    TestRun run;
    MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    MailItem target = run.draft(u"Draft", plain(u"Text"));
    std::u16string html_;
};

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

TEST_F(AttachmentsTest, BelowTwelveReferencesAndPropertiesStay) {
    attach(offer, "logo.png", u"logo@somewhere");
    copy(u"<img src=\"cid:logo@somewhere\">");
    EXPECT_EQ(html_, u"<img src=\"cid:logo@somewhere\">");
    EXPECT_EQ(fieldOf(1, contentIdTag).toText(), u"logo@somewhere") << "as the host copied it";
    EXPECT_TRUE(fieldOf(1, hiddenTag).isNull() || !fieldOf(1, hiddenTag).toBoolean());
    for (const std::int32_t tag : itemTags) EXPECT_FALSE(itemField(tag).toBoolean());
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

/// From version 12 on; such a host is reached by calling the routines.
class EmbeddedAttachmentsTest : public AttachmentsTest {
protected:
    EmbeddedAttachmentsTest() : AttachmentsTest(u"12.0.0.4518") {}
};

TEST_F(EmbeddedAttachmentsTest, AReferenceBecomesTheFileNameAndTheAttachmentIsMarked) {
    attach(offer, "logo.png", u"part1.logo@somewhere");
    copy(u"<img src=\"CID:part1.logo@elsewhere\" alt=\"x\">");
    EXPECT_EQ(html_, u"<img src=\"cid:logo.png\" alt=\"x\">");
    EXPECT_EQ(fieldOf(1, contentIdTag).toText(), u"logo.png");
    EXPECT_TRUE(fieldOf(1, hiddenTag).toBoolean());
    EXPECT_EQ(fieldOf(1, flagsTag).toInt32(), 8);
    for (const std::int32_t tag : itemTags) EXPECT_TRUE(itemField(tag).toBoolean()) << "all of them are embedded";
}

TEST_F(EmbeddedAttachmentsTest, AContentIdWithoutAnAtIsLookedForWhole) {
    attach(offer, "logo.png", u"logo1");
    copy(u"<img src=\"cid:logo1\"><img src=\"cid:logo1\">");
    EXPECT_EQ(html_, u"<img src=\"cid:logo.png\"><img src=\"cid:logo.png\">");
}

TEST_F(EmbeddedAttachmentsTest, TheFileNameIsLookedForWhereTheContentIdIsNot) {
    attach(offer, "logo.png", u"other@somewhere");
    copy(u"<img src=\"cid:logo.png@01C6\">");
    EXPECT_EQ(html_, u"<img src=\"cid:logo.png\">");
}

TEST_F(EmbeddedAttachmentsTest, APictureThatTheHtmlDoesNotMentionEmptiesItWhereItComesFirst) {
    attach(offer, "logo.png", u"logo1");
    copy(u"<p>no picture</p>");
    EXPECT_EQ(html_, u"");
}

TEST_F(EmbeddedAttachmentsTest, BehindARewrittenReferenceItDoesNoHarm) {
    attach(offer, "logo.png", u"logo1");
    attach(offer, "other.png", u"other1");
    copy(u"<img src=\"cid:logo1\">");
    EXPECT_EQ(html_, u"<img src=\"cid:logo.png\">");
}

TEST_F(EmbeddedAttachmentsTest, AnAttachmentOfTheTargetsOwnMakesTheItemsMarksFalse) {
    attach(target, "own.txt");
    attach(offer, "logo.png", u"logo1");
    copy(u"<img src=\"cid:logo1\">");
    for (const std::int32_t tag : itemTags) EXPECT_FALSE(itemField(tag).toBoolean());
    EXPECT_TRUE(fieldOf(2, hiddenTag).toBoolean());
}

TEST_F(EmbeddedAttachmentsTest, AnAttachmentWithoutAContentIdIsNotEmbedded) {
    attach(offer, "prices.txt");
    copy(u"<p>text</p>");
    EXPECT_EQ(html_, u"<p>text</p>");
    for (const std::int32_t tag : itemTags) EXPECT_FALSE(itemField(tag).toBoolean());
}

TEST_F(EmbeddedAttachmentsTest, NoAttachmentsAtAllCountAsAll) {
    copy();
    for (const std::int32_t tag : itemTags) EXPECT_TRUE(itemField(tag).toBoolean());
}

}  // namespace
}  // namespace lorvane::support
