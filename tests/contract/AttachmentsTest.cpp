#include <algorithm>

#include "contract/HostFixture.h"

namespace lorvane::contract {

namespace tag {
constexpr std::int32_t ContentId = 0x3712001E, MimeType = 0x370E001E, Hidden = 0x7FFE000B, Flags = 0x7FFD0003;
}

class AttachmentList : public EachStore {
protected:
    const Bytes picture = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0xFF};

    MailItem itemWithPicture() {
        const MailItem item = host().savedItem(u"Offer");
        item.Attachments().Add(person().writeFile("logo.png", picture), 1, 1, u"logo.png");
        item.Save();
        return item;
    }
    /// An item whose picture has a content id and a type, as a template's has.
    MailItem itemWithShownPicture() {
        const MailItem item = itemWithPicture();
        const Attachment attachment = makeSafeMailItem(item).Attachments().Item(1);
        attachment.setFields(tag::ContentId, u"logo@example");
        attachment.setFields(tag::MimeType, u"image/png");
        item.Save();
        return item;
    }
};
INSTANTIATE_EACH_STORE(AttachmentList);

TEST_P(AttachmentList, AddTakesTheFileByValueUnderItsDisplayName) {
    const MailItem item = host().newItem();
    const Attachment added = item.Attachments().Add(person().writeFile("logo.png", picture), 1, 1, u"Our logo.png");
    EXPECT_EQ(added.DisplayName(), u"Our logo.png");
    EXPECT_EQ(added.FileName(), u"logo.png");
    EXPECT_EQ(number(added, u"Type"), 1);
    EXPECT_EQ(item.Attachments().Count(), 1);
}

TEST_P(AttachmentList, AreCountedFromOneInTheOrderTheyCame) {
    const MailItem item = host().newItem();
    item.Attachments().Add(person().writeFile("a.txt", bytes("a")), 1, 1, u"a.txt");
    item.Attachments().Add(person().writeFile("b.txt", bytes("b")), 1, 2, u"b.txt");
    EXPECT_EQ(item.Attachments().Item(1).FileName(), u"a.txt");
    EXPECT_EQ(item.Attachments().Item(2).FileName(), u"b.txt");
    EXPECT_NE(errorOf([&] { item.Attachments().Item(0); }).number(), 0);
    EXPECT_NE(errorOf([&] { item.Attachments().Item(3); }).number(), 0);
}

TEST_P(AttachmentList, AFileThatIsNotThereIsAnError) {
    EXPECT_NE(errorOf([&] { host().newItem().Attachments().Add(u"\\nowhere\\at\\all.png", 1, 1, u"all.png"); }).number(), 0);
}

TEST_P(AttachmentList, SaveAsFileWritesTheSameBytes) {
    const MailItem item = itemWithPicture();
    const std::u16string path = person().path("out.png");
    item.Attachments().Item(1).SaveAsFile(path);
    EXPECT_EQ(person().readFile(path), picture);
}

TEST_P(AttachmentList, SaveAsFileIntoNowhereIsAnError) {
    const MailItem item = itemWithPicture();
    EXPECT_NE(errorOf([&] { item.Attachments().Item(1).SaveAsFile(u"\\nowhere\\at\\all\\out.png"); }).number(), 0);
}

TEST_P(AttachmentList, TheItemHasItsOwnCopyOfTheFile) {
    const MailItem item = itemWithPicture();
    person().writeFile("logo.png", bytes("something else"));
    const std::u16string path = person().path("out.png");
    item.Attachments().Item(1).SaveAsFile(path);
    EXPECT_EQ(person().readFile(path), picture);
}

TEST_P(AttachmentList, ReachTheStoreOnSaveOnly) {
    const MailItem item = host().savedItem(u"Offer");
    item.Attachments().Add(person().writeFile("logo.png", picture), 1, 1, u"logo.png");
    EXPECT_EQ(host().again(item).Attachments().Count(), 0);
    item.Save();
    EXPECT_EQ(host().again(item).Attachments().Count(), 1);
}

TEST_P(AttachmentList, AFileOfItsOwnHasNoContentId) {
    const MailItem item = itemWithPicture();
    EXPECT_EQ(makeSafeMailItem(item).Attachments().Item(1).Fields(tag::ContentId).toText(), u"");
}

TEST_P(AttachmentList, RawPropertiesAreWrittenAndRead) {
    const MailItem item = itemWithPicture();
    const Attachment attachment = makeSafeMailItem(item).Attachments().Item(1);
    attachment.setFields(tag::ContentId, u"logo@example");
    attachment.setFields(tag::Hidden, true);
    attachment.setFields(tag::Flags, 8);
    EXPECT_EQ(attachment.Fields(tag::ContentId).toText(), u"logo@example");
    EXPECT_TRUE(attachment.Fields(tag::Hidden).toBoolean());
    EXPECT_EQ(attachment.Fields(tag::Flags).toInt32(), 8);
    EXPECT_TRUE(attachment.Fields(0x3701001E).isEmpty()) << "a property that is not there";
}

TEST_P(AttachmentList, TextPropertiesAreFoundByEitherType) {
    const MailItem item = itemWithPicture();
    const Attachment attachment = makeSafeMailItem(item).Attachments().Item(1);
    attachment.setFields(0x3712001F, u"logo@example");
    EXPECT_EQ(attachment.Fields(0x3712001E).toText(), u"logo@example");
}

TEST_P(AttachmentList, RawPropertiesSurviveSaveAndRestart) {
    const MailItem item = itemWithShownPicture();
    const Attachment attachment = makeSafeMailItem(item).Attachments().Item(1);
    attachment.setFields(tag::Hidden, true);
    attachment.setFields(tag::Flags, 8);
    item.Save();
    const auto pair = identityOf(item);
    host().restart();
    const MailItem found = host().session().GetItemFromID(pair.first, pair.second);
    const Attachment kept = makeSafeMailItem(found).Attachments().Item(1);
    EXPECT_EQ(kept.Fields(tag::ContentId).toText(), u"logo@example");
    EXPECT_EQ(kept.Fields(tag::MimeType).toText(), u"image/png");
    EXPECT_TRUE(kept.Fields(tag::Hidden).toBoolean());
    EXPECT_EQ(kept.Fields(tag::Flags).toInt32(), 8);
}

TEST_P(AttachmentList, AddOfASavedAttachmentHasTheContentIdAndTheTypeOfItsSource) {
    const MailItem source = itemWithShownPicture();
    const std::u16string path = person().path("copy.png");
    source.Attachments().Item(1).SaveAsFile(path);
    const MailItem target = host().savedItem(u"Reply");
    target.Attachments().Add(path, 1, 1, u"copy.png");
    target.Save();
    const Attachment copied = makeSafeMailItem(host().again(target)).Attachments().Item(1);
    EXPECT_EQ(copied.Fields(tag::ContentId).toText(), u"logo@example");
    EXPECT_EQ(copied.Fields(tag::MimeType).toText(), u"image/png");
}

TEST_P(AttachmentList, AFileThatWasWrittenOverSinceIsAFileOfItsOwn) {
    const MailItem source = itemWithShownPicture();
    const std::u16string path = person().path("copy.png");
    source.Attachments().Item(1).SaveAsFile(path);
    person().writeFile("copy.png", bytes("something else"));
    const MailItem target = host().savedItem(u"Reply");
    target.Attachments().Add(path, 1, 1, u"copy.png");
    EXPECT_EQ(makeSafeMailItem(target).Attachments().Item(1).Fields(tag::ContentId).toText(), u"");
}

TEST_P(AttachmentList, AWrapperAddsToTheItem) {
    const MailItem item = host().savedItem(u"Offer");
    makeSafeMailItem(item).Attachments().Add(person().writeFile("logo.png", picture), 1, 1, u"logo.png");
    EXPECT_EQ(item.Attachments().Count(), 1);
}

TEST_P(AttachmentList, TwoOfOneFileNameStayTwo) {
    const MailItem item = host().newItem();
    const std::u16string path = person().writeFile("logo.png", picture);
    item.Attachments().Add(path, 1, 1, u"logo.png");
    item.Attachments().Add(path, 1, 2, u"logo.png");
    item.Save();
    EXPECT_EQ(host().again(item).Attachments().Count(), 2);
}

TEST_P(AttachmentList, AnEmptyFileIsAnAttachmentToo) {
    const MailItem item = host().newItem();
    item.Attachments().Add(person().writeFile("empty.txt", {}), 1, 1, u"empty.txt");
    item.Save();
    const std::u16string path = person().path("out.txt");
    host().again(item).Attachments().Item(1).SaveAsFile(path);
    EXPECT_EQ(person().readFile(path), Bytes{});
}

TEST_P(AttachmentList, AFileOfAnEarlierRunIsAFileOfItsOwn) {
    const std::u16string path = person().path("copy.png");
    itemWithShownPicture().Attachments().Item(1).SaveAsFile(path);
    host().restart();
    const MailItem target = host().savedItem(u"Reply");
    target.Attachments().Add(path, 1, 1, u"copy.png");
    EXPECT_EQ(makeSafeMailItem(target).Attachments().Item(1).Fields(tag::ContentId).toText(), u"");
}

TEST_P(AttachmentList, PathsAreTakenWithEitherSlash) {
    std::u16string path = person().writeFile("logo.png", picture);
    std::ranges::replace(path, u'\\', u'/');
    const MailItem item = host().newItem();
    item.Attachments().Add(path, 1, 1, u"logo.png");
    EXPECT_EQ(item.Attachments().Item(1).FileName(), u"logo.png");
}

}  // namespace lorvane::contract
