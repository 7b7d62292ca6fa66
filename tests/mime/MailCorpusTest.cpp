#include <gtest/gtest.h>

#include <random>

#include "host/HostError.h"
#include "host/TextFunctions.h"
#include "mime/Messages.h"
#include "mime/MimeLayout.h"

/// Real mails, most of them odd.
namespace lorvane::mime {
namespace {

using mailstore::BodyKind;
using mailstore::ItemRecord;
using testing::corpus;
using testing::read;
using testing::text;
using testing::write;
namespace tags = mailstore::tags;

ItemRecord mail(const std::string& name) {
    return read(corpus().at(name + ".eml"));
}

TEST(MailCorpus, IsThere) {
    EXPECT_EQ(corpus().size(), 51u);
}

TEST(MailCorpus, EveryMailIsReadAsReceived) {
    for (const auto& [name, bytes] : corpus()) {
        const ItemRecord item = read(bytes);
        EXPECT_EQ(text(item, tags::ReceivedByName), u"Ann Account") << name;
        EXPECT_EQ(text(item, tags::SenderAddressType), u"SMTP") << name;
        EXPECT_NE(text(item, tags::SenderAddress), u"") << name;
        EXPECT_FALSE(item.recipients.empty()) << name;
        EXPECT_NE(item.bodyKind, BodyKind::None) << name;
        EXPECT_EQ(testing::flags(item) & mailstore::message_flags::Unsent, 0) << name;
    }
}

TEST(MailCorpus, EveryUnchangedMailIsWrittenBackToTheByte) {
    for (const auto& [name, bytes] : corpus()) EXPECT_EQ(write(read(bytes)), bytes) << name;
}

/// The header fields and parts that a change of body and attachments must leave alone, as they stand in the message.
std::vector<std::string> keptPieces(const std::string& bytes) {
    const auto root = parseMessage(bytes);
    const MessageLayout layout = layoutOf(*root);
    std::vector<std::string> pieces;
    for (const HeaderField& field : root->fields)
        if (!startsWithAscii(field.name, "Content-") && field.name != "Lines") pieces.push_back(field.raw);
    for (const AttachmentPart& part : layout.attachments) {
        pieces.push_back(part.entity->content);
        for (const HeaderField& field : part.entity->fields)
            if (part.entity->parent || startsWithAscii(field.name, "Content-")) pieces.push_back(field.raw);
    }
    return pieces;
}

TEST(MailCorpus, AChangedBodyAndANewAttachmentLeaveEverythingElse) {
    for (const BodyKind kind : {BodyKind::Plain, BodyKind::Html}) {
        for (const auto& [name, bytes] : corpus()) {
            ItemRecord item = read(bytes);
            const std::size_t attachments = item.attachments.size();
            item.bodyKind = kind;
            item.body = u"A new text\rwith\nodd ends \r\n--x 한";
            item.bodyChanged = true;
            item.attachments.push_back(testing::file(u"ad\u00E9d.bin", u"application/x-added", std::string("a\0b\r\n", 5)));
            const std::string message = write(item);
            for (const std::string& piece : keptPieces(bytes)) EXPECT_NE(message.find(piece), std::string::npos) << name << ": " << piece;
            const ItemRecord back = read(message);
            EXPECT_EQ(back.bodyKind, kind) << name;
            EXPECT_EQ(back.body, item.body) << name;
            EXPECT_EQ(back.head.subject, item.head.subject) << name;
            EXPECT_EQ(back.recipients, item.recipients) << name;
            ASSERT_EQ(back.attachments.size(), attachments + 1) << name;
            for (std::size_t i = 0; i <= attachments; ++i) {
                EXPECT_EQ(back.attachments[i].fileName, item.attachments[i].fileName) << name;
                EXPECT_EQ(*back.attachments[i].data, *item.attachments[i].data) << name;
                EXPECT_EQ(back.attachments[i].contentId, item.attachments[i].contentId) << name;
            }
        }
    }
}

TEST(MailCorpus, ANewAttachmentLeavesTheBodyPartsToo) {
    for (const auto& [name, bytes] : corpus()) {
        ItemRecord item = read(bytes);
        item.attachments.push_back(testing::file(u"a.bin", u"application/x-added", "data"));
        const std::string message = write(item);
        for (const std::string& piece : keptPieces(bytes)) EXPECT_NE(message.find(piece), std::string::npos) << name << ": " << piece;
        const auto root = parseMessage(bytes);
        const Entity* body = layoutOf(*root).body;
        EXPECT_NE(message.find(body ? body->content : std::string()), std::string::npos) << name;
        const ItemRecord back = read(message);
        EXPECT_EQ(back.body, item.body) << name;
        EXPECT_EQ(back.attachments.size(), item.attachments.size()) << name;
    }
}

TEST(MailCorpus, WithoutItsOriginalEveryMailIsWrittenAnewAndReadsTheSame) {
    for (const auto& [name, bytes] : corpus()) {
        ItemRecord item = read(bytes);
        item.original.reset();
        const ItemRecord back = read(write(item));
        EXPECT_EQ(back.head.subject, item.head.subject) << name;
        EXPECT_EQ(back.body, item.body) << name;
        EXPECT_EQ(back.recipients, item.recipients) << name;
        EXPECT_EQ(text(back, tags::SenderName), text(item, tags::SenderName)) << name;
        EXPECT_EQ(text(back, tags::SenderAddress), text(item, tags::SenderAddress)) << name;
        ASSERT_EQ(back.attachments.size(), item.attachments.size()) << name;
        for (std::size_t i = 0; i < item.attachments.size(); ++i) {
            EXPECT_EQ(back.attachments[i].fileName, item.attachments[i].fileName) << name;
            EXPECT_EQ(*back.attachments[i].data, *item.attachments[i].data) << name;
        }
    }
}

TEST(MailCorpus, DamagedMailsAreReadOrRefusedAndTakeChanges) {
    std::mt19937 random(31);
    const auto below = [&](std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random); };
    for (const auto& [name, bytes] : corpus()) {
        for (int round = 0; round < 10; ++round) {
            std::string damaged = bytes;
            for (int edit = 0; edit < 6; ++edit) {
                const std::size_t at = below(damaged.size());
                if (below(2) == 0)
                    damaged[at] = static_cast<char>(below(256));
                else
                    damaged.erase(at, below(60));
            }
            try {
                ItemRecord item = read(damaged);
                EXPECT_EQ(write(item), damaged) << name;
                item.attachments.push_back(testing::file(u"a.bin", u"application/x-added", "data"));
                item.body = u"new";
                item.bodyChanged = true;
                const ItemRecord back = read(write(item));
                EXPECT_EQ(back.body, u"new") << name;
                EXPECT_EQ(back.attachments.size(), item.attachments.size()) << name;
            } catch (const host::HostError& error) {
                EXPECT_EQ(error.number(), host::host_failure::Failed) << name;
            }
        }
    }
}

TEST(MailCorpus, SubjectInManyWords) {
    const ItemRecord item = mail("error_emails__bad_subject");
    EXPECT_EQ(item.head.subject, u"MySurvey.com:  You have a survey waiting!  91123105");
    EXPECT_EQ(text(item, tags::SenderName), u"MySurvey.com & Carol Adams");
    EXPECT_TRUE(item.body.starts_with(u"<center>\r\nhello world\r\n</center>"));
}

TEST(MailCorpus, KoreanText) {
    const ItemRecord item = mail("plain_emails__raw_email");
    EXPECT_EQ(item.head.subject, u"NOTE: 한국말로 하는 것");
    EXPECT_EQ(item.body, u"대부분의 마찬가지로, 우리는 하나님을 믿습니다.\r\n\r\n제 이름은 Jamis입니다.");
}

TEST(MailCorpus, JapaneseTextAndFileName) {
    EXPECT_TRUE(mail("multi_charset__japanese_shift_jis").body.starts_with(u"あいうえお\r\n\r\nこのメールはテスト用のメールです。\r\n"));
    const ItemRecord item = mail("multi_charset__japanese_attachment");
    EXPECT_EQ(item.attachments.at(0).fileName, u"てすと.txt");
    EXPECT_EQ(host::fromUtf8(testing::dataOf(item.attachments[0])), u"this is a test\nこれわてすと");
}

TEST(MailCorpus, InlinePictureAndEmbeddedMessage) {
    const ItemRecord item = mail("attachment_emails__attachment_message_rfc822_inline_image");
    EXPECT_EQ(item.body, u"<html><body><img src=\"cid:emedfeb92f-a786-4718-a446-98db8afb53fb@kronos\" /></body></html>\r\n");
    ASSERT_EQ(item.attachments.size(), 2u);
    EXPECT_EQ(item.attachments[0].fileName, u"img.png");
    EXPECT_EQ(item.attachments[0].contentId, u"emedfeb92f-a786-4718-a446-98db8afb53fb@kronos");
    EXPECT_TRUE(item.attachments[0].inlinePicture);
    EXPECT_EQ(item.attachments[0].data->size(), 370u);
    EXPECT_EQ(item.attachments[1].fileName, u"Testmail.eml");
    EXPECT_EQ(item.attachments[1].type, 5);
}

TEST(MailCorpus, RawSymbolsInTheSubjectAndAPdf) {
    const ItemRecord item = mail("attachment_emails__attachment_pdf_lf");
    EXPECT_EQ(item.head.subject, u"Another PDF with 🎉 Unicode chars in it 🍿");
    ASSERT_EQ(item.attachments.size(), 1u);
    EXPECT_EQ(item.attachments[0].fileName, u"broken.pdf");
    EXPECT_TRUE(testing::dataOf(item.attachments[0]).starts_with("%PDF-1.4"));
    EXPECT_TRUE(item.body.ends_with(u"going wrong here.\r\n"));
}

TEST(MailCorpus, FileNamesInOddForms) {
    EXPECT_EQ(mail("attachment_emails__attachment_nonascii_filename").attachments.at(0).fileName, u"ciële.txt");
    EXPECT_EQ(mail("attachment_emails__attachment_with_unquoted_name").attachments.at(0).fileName, u"This is a test.txt");
    EXPECT_EQ(mail("plain_emails__raw_email8").attachments.at(0).fileName, u"01 Quien Te Dij\uFFFDat. Pitbull.mp3");
}

TEST(MailCorpus, AMessageThatIsOneAttachment) {
    const ItemRecord item = mail("attachment_emails__attachment_only_email");
    EXPECT_EQ(item.body, u"");
    EXPECT_EQ(item.attachments.at(0).fileName, u"blah.gz");
    EXPECT_EQ(item.attachments[0].data->size(), 288u);
}

TEST(MailCorpus, ABounceHasItsReportAndTheReturnedMail) {
    const ItemRecord item = mail("multipart_report_emails__multi_address_bounce1");
    EXPECT_EQ(text(item, tags::SenderName), u"Mail Delivery System");
    ASSERT_EQ(item.attachments.size(), 2u);
    EXPECT_EQ(item.attachments[0].mimeType, u"message/delivery-status");
    EXPECT_EQ(item.attachments[0].fileName, u"ATT00001.txt");
    EXPECT_EQ(item.attachments[1].fileName, u"ATT00002.eml");
}

TEST(MailCorpus, SignedMailHasItsTextItsPictureAndItsSignature) {
    const ItemRecord item = mail("mime_emails__raw_email_with_nested_attachment");
    EXPECT_EQ(item.body, u"Here is a test of an attachment via email.\r\n\r\n- Jamis\r\n\r\n");
    ASSERT_EQ(item.attachments.size(), 2u);
    EXPECT_EQ(item.attachments[0].fileName, u"truncated.png");
    EXPECT_EQ(item.attachments[1].fileName, u"smime.p7s");
}

TEST(MailCorpus, TheFirstOfSeveralContentTypesAndSubjectsCounts) {
    EXPECT_EQ(mail("error_emails__multiple_content_types").body, u"<p>foo</p>\r\n");
    EXPECT_EQ(mail("mime_emails__raw_email_with_binary_encoded").head.subject, u"Testing outlook");
}

TEST(MailCorpus, EncodedLineEndsOfAFax) {
    const ItemRecord item = mail("plain_emails__raw_email_quoted_with_0d0a");
    EXPECT_TRUE(item.body.starts_with(
        u"A fax has arrived from remote ID ''.\r\n------------------------------------------------------------\r\nTime: 3/9/2006 3:50:52 PM\r\n"));
}

TEST(MailCorpus, GroupsCommentsAndObsoleteBlanks) {
    const ItemRecord group = mail("rfc2822__example10");
    ASSERT_EQ(group.recipients.size(), 3u);
    EXPECT_EQ(group.recipients[0], (mailstore::RecipientRecord{u"Chris Jones", u"c@public.example", u"SMTP", 1, true}));
    EXPECT_EQ(text(group, tags::SenderName), u"Pete");
    const ItemRecord obsolete = mail("rfc2822__example13");
    EXPECT_EQ(text(obsolete, tags::SenderAddress), u"jdoe@machine.example");
    EXPECT_EQ(obsolete.recipients.at(0).address, u"mary@example.net");
    EXPECT_EQ(obsolete.head.subject, u"Saying Hello");
    EXPECT_DOUBLE_EQ(testing::date(obsolete, tags::ClientSubmitTime), testing::date(mail("rfc2822__example01"), tags::ClientSubmitTime));
}

TEST(MailCorpus, ADateThatIsNoneLeavesTheTimeOfReceipt) {
    const ItemRecord item = mail("error_emails__bad_date_header2");
    EXPECT_FALSE(item.properties.contains(tags::ClientSubmitTime));
    EXPECT_NEAR(testing::date(item, tags::DeliveryTime), 40527.374, 0.001);
}

}  // namespace
}  // namespace lorvane::mime
