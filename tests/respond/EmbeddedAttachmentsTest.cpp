#include "AttachmentsRig.h"

/// A template's pictures keep showing in the HTML that they came with.
namespace lorvane::support {
namespace {

using namespace host;
using namespace respond;

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

TEST_F(EmbeddedAttachmentsTest, TheNamedPropertyIsSetToo) {
    attach(offer, "logo.png", u"logo1");
    copy(u"<img src=\"cid:logo1\">");
    const SafeMailItem again = makeSafeMailItem(run.session().GetItemFromID(target.EntryID(), target.Parent().StoreID()));
    const std::int32_t named = again.GetIDsFromNames(u"{00062008-0000-0000-C000-000000000046}", 0x8514);
    EXPECT_TRUE(again.Fields(named | 11).toBoolean());
    EXPECT_EQ(named | 11, embeddedOnlyTag);
    for (const std::int32_t tag : itemTags) EXPECT_TRUE(again.Fields(tag).toBoolean()) << "saved";
    EXPECT_EQ(again.Attachments().Item(1).Fields(contentIdTag).toText(), u"logo.png");
    EXPECT_TRUE(again.Attachments().Item(1).Fields(hiddenTag).toBoolean());
    EXPECT_EQ(again.Attachments().Item(1).Fields(flagsTag).toInt32(), 8);
}

TEST_F(EmbeddedAttachmentsTest, EachPictureKeepsItsOwnReference) {
    attach(offer, "one.png", u"a@x");
    attach(offer, "two.png", u"b@x");
    copy(u"<img src=\"cid:b@x\"><img src=\"cid:a@x\">");
    EXPECT_EQ(html_, u"<img src=\"cid:two.png\"><img src=\"cid:one.png\">");
}

TEST_F(EmbeddedAttachmentsTest, AReferenceRunsToTheNextQuoteOrTheEnd) {
    attach(offer, "logo.png", u"logo1");
    copy(u"<img src=cid:logo1@somewhere>");
    EXPECT_EQ(html_, u"<img src=cid:logo.png");
}

TEST_F(EmbeddedAttachmentsTest, AReferenceThatDiffersInLettersCaseOnlyStays) {
    attach(offer, "logo.png", u"LOGO.PNG");
    copy(u"<img src=\"CID:LOGO.png\">");
    EXPECT_EQ(html_, u"<img src=\"CID:logo.png\">") << "the name was written as the attachment has it, the rest is the same";
}

TEST_F(EmbeddedAttachmentsTest, ANumberedNameIsItsContentId) {
    attach(target, "logo.png");
    attach(offer, "logo.png", u"logo1");
    copy(u"<img src=\"cid:logo1\">");
    EXPECT_EQ(html_, u"<img src=\"cid:logo_1.png\">");
    EXPECT_EQ(fieldOf(2, contentIdTag).toText(), u"logo_1.png");
    EXPECT_TRUE(fieldOf(1, hiddenTag).isEmpty()) << "the target's own one is left alone";
}

TEST_F(EmbeddedAttachmentsTest, OneEmbeddedAndOneNotAreNotAllEmbedded) {
    attach(offer, "logo.png", u"logo1");
    attach(offer, "prices.txt");
    copy(u"<img src=\"cid:logo1\">");
    for (const std::int32_t tag : itemTags) EXPECT_FALSE(itemField(tag).toBoolean());
    EXPECT_TRUE(itemField(embeddedOnlyTag).isEmpty()) << "the named one is left alone";
    EXPECT_TRUE(fieldOf(1, hiddenTag).toBoolean());
    EXPECT_TRUE(fieldOf(2, hiddenTag).isEmpty());
}

TEST_F(EmbeddedAttachmentsTest, ATargetsOwnAttachmentWithoutAnyOfTheTemplateIsNotEmbedded) {
    attach(target, "own.txt");
    copy();
    for (const std::int32_t tag : itemTags) EXPECT_FALSE(itemField(tag).toBoolean());
}

TEST(EmbeddedFaultTest, AMarkThatCannotBeSetIsSkipped) {
    TestRun run({.version = u"12.0.0.4518", .connected = false, .instruments = true});
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    run.attach(offer, "logo.png", {1});
    giveContentId(offer, u"logo1");
    offer.Save();
    const MailItem target = run.draft(u"Draft", plain(u"Text"));
    // The template's content id is read twice before.
    run.faults().failNth(u"Attachment", u"Fields", 4, host_failure::AccessDenied);
    std::u16string html = u"<img src=\"cid:logo1\">";
    CopyAttachments(offer, target, html);
    const Attachment copied = makeSafeMailItem(target).Attachments().Item(1);
    EXPECT_EQ(copied.Fields(contentIdTag).toText(), u"logo.png");
    EXPECT_TRUE(copied.Fields(hiddenTag).isEmpty()) << "this one failed";
    EXPECT_EQ(copied.Fields(flagsTag).toInt32(), 8);
    EXPECT_TRUE(run.boxes().empty());
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
