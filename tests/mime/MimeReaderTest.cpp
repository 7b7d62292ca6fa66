#include "mime/MimeReader.h"

#include <gtest/gtest.h>

#include "host/TextFunctions.h"
#include "mime/Messages.h"

namespace lorvane::mime {
namespace {

using mailstore::BodyKind;
using mailstore::ItemRecord;
using testing::crlf;
using testing::dataOf;
using testing::read;
using testing::text;
namespace tags = mailstore::tags;

const std::string simple =
    crlf("From: Mary Smith <mary@x.example>\nTo: ann@y.example\nSubject: Hello\nDate: Mon, 10 Jan 2028 08:00:00 +0000\nMessage-ID: <1@x>\n\nText\n");

TEST(MimeReader, EveryMessageIsReceivedUnlessItSaysElse) {
    const ItemRecord item = read(simple);
    EXPECT_EQ(testing::flags(item) & mailstore::message_flags::Unsent, 0);
    EXPECT_EQ(text(item, tags::ReceivedByName), u"Ann Account");
    EXPECT_EQ(text(item, tags::SenderName), u"Mary Smith");
    EXPECT_EQ(text(item, tags::SenderAddress), u"mary@x.example");
    EXPECT_EQ(text(item, tags::SenderAddressType), u"SMTP");
    EXPECT_EQ(text(item, tags::InternetMessageId), u"<1@x>");
    EXPECT_EQ(item.head.subject, u"Hello");
    EXPECT_EQ(item.body, u"Text\r\n");
    EXPECT_EQ(item.bodyKind, BodyKind::Plain);
    EXPECT_FALSE(item.bodyChanged);
    EXPECT_EQ(item.head.entryId, u"");
    ASSERT_TRUE(item.original);
    EXPECT_EQ(std::string(item.original->begin(), item.original->end()), simple);
}

TEST(MimeReader, ADraftHasNoSenderNoReceivedByNameAndNoTimes) {
    const ItemRecord item = read("X-Unsent: 1\r\n" + simple);
    EXPECT_EQ(testing::flags(item), mailstore::message_flags::Unsent);
    for (const std::uint32_t tag : {tags::ReceivedByName, tags::SenderName, tags::SenderAddress, tags::SenderAddressType, tags::SentOnBehalfOfName,
                                    tags::ClientSubmitTime, tags::DeliveryTime})
        EXPECT_FALSE(item.properties.contains(tag)) << std::hex << tag;
}

TEST(MimeReader, XUnsentOfAnotherValueIsNoDraft) {
    EXPECT_EQ(text(read("X-Unsent: 0\r\n" + simple), tags::ReceivedByName), u"Ann Account");
}

TEST(MimeReader, TheAddressStandsInForAnAccountWithoutName) {
    ReadOptions options;
    options.accountName.clear();
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(simple.data());
    EXPECT_EQ(text(readMessage({bytes, simple.size()}, options), tags::ReceivedByName), u"user@localhost");
}

TEST(MimeReader, TimesAreLocal) {
    const ItemRecord item =
        read("Received: from a by b; Mon, 10 Jan 2028 10:30:00 +0000\r\nReceived: from c by a; Mon, 10 Jan 2028 09:00:00 +0000\r\n" + simple);
    EXPECT_DOUBLE_EQ(testing::date(item, tags::ClientSubmitTime), 46762.0 + 10.0 / 24);
    EXPECT_DOUBLE_EQ(testing::date(item, tags::DeliveryTime), 46762.0 + 12.5 / 24);
}

TEST(MimeReader, TheDeliveryTimeFallsBackToTheDateAndThenToNow) {
    EXPECT_DOUBLE_EQ(testing::date(read(simple), tags::DeliveryTime), 46762.0 + 10.0 / 24);
    EXPECT_DOUBLE_EQ(testing::date(read("Received: by me; nonsense\r\n" + simple), tags::DeliveryTime), 46762.0 + 10.0 / 24);
    const std::string undated = "From: a@b\r\n\r\nx";
    EXPECT_FALSE(read(undated).properties.contains(tags::DeliveryTime));
    ReadOptions options;
    options.now = host::DateTime{5.5};
    const ItemRecord item = readMessage({reinterpret_cast<const std::uint8_t*>(undated.data()), undated.size()}, options);
    EXPECT_DOUBLE_EQ(testing::date(item, tags::DeliveryTime), 5.5);
    EXPECT_FALSE(item.properties.contains(tags::ClientSubmitTime));
}

TEST(MimeReader, RecipientsKeepKindAndOrder) {
    const ItemRecord item = read("From: a@b\r\nTo: One <1@x>, G: 2@x, \"Three, T\" <3@x>;\r\nCc: 4@x\r\nBcc: 5@x\r\nTo: 6@x\r\n\r\n");
    ASSERT_EQ(item.recipients.size(), 6u);
    EXPECT_EQ(item.recipients[0], (mailstore::RecipientRecord{u"One", u"1@x", u"SMTP", 1, true}));
    EXPECT_EQ(item.recipients[1], (mailstore::RecipientRecord{u"2@x", u"2@x", u"SMTP", 1, true}));
    EXPECT_EQ(item.recipients[2].name, u"Three, T");
    EXPECT_EQ(item.recipients[3].address, u"6@x");
    EXPECT_EQ(item.recipients[4].type, 2);
    EXPECT_EQ(item.recipients[5].type, 3);
}

TEST(MimeReader, AGroupWithoutMembersIsAnUnresolvedRecipientOfADraftOnly) {
    EXPECT_TRUE(read("From: a@b\r\nTo: Undisclosed recipients:;\r\n\r\n").recipients.empty());
    const ItemRecord item = read("X-Unsent: 1\r\nTo: John:;\r\n\r\n");
    ASSERT_EQ(item.recipients.size(), 1u);
    EXPECT_EQ(item.recipients[0], (mailstore::RecipientRecord{u"John", u"", u"", 1, false}));
}

TEST(MimeReader, AReceivedMessageAlwaysHasASender) {
    EXPECT_EQ(text(read("Sender: s@x\r\nSubject: x\r\n\r\n"), tags::SenderAddress), u"s@x");
    EXPECT_EQ(text(read("From: nobody at all\r\n\r\n"), tags::SenderName), u"nobody at all");
    EXPECT_EQ(text(read("Subject: x\r\n\r\n"), tags::SenderName), u"Unknown");
    EXPECT_EQ(text(read("Subject: x\r\n\r\n"), tags::SenderAddressType), u"SMTP");
}

TEST(MimeReader, KeywordsAreCategories) {
    EXPECT_EQ(read("From: a@b\r\nKeywords: Red, =?utf-8?q?Gr=C3=BCn?=\r\n\r\n").head.categories, u"Red, Grün");
    EXPECT_EQ(read("From: a@b\r\nKeywords: A\r\nKeywords: B\r\nX-Keywords: C\r\n\r\n").head.categories, u"A, B");
    EXPECT_EQ(read("From: a@b\r\nX-Keywords: C\r\n\r\n").head.categories, u"C");
}

std::string multipart(std::string_view kind, std::string_view parts, std::string_view header = "") {
    return crlf("From: a@b\n" + std::string(header) + "Content-Type: multipart/" + std::string(kind) + "; boundary=b\n\n" + std::string(parts) + "--b--\n");
}

TEST(MimeReader, HtmlIsPreferredAmongAlternatives) {
    const ItemRecord item = read(multipart("alternative", "--b\n\nplain\n--b\nContent-Type: text/html\n\n<p>x</p>\n--b\nContent-Type: text/enriched\n\nx\n"));
    EXPECT_EQ(item.bodyKind, BodyKind::Html);
    EXPECT_EQ(item.body, u"<p>x</p>");
    EXPECT_TRUE(item.attachments.empty());
}

TEST(MimeReader, RichTextIsPreferredToPlain) {
    const ItemRecord item = read(multipart("alternative", "--b\n\nplain\n--b\nContent-Type: text/rtf\n\n{\\rtf1 x}\n"));
    EXPECT_EQ(item.bodyKind, BodyKind::Rich);
    EXPECT_EQ(item.body, u"{\\rtf1 x}");
}

TEST(MimeReader, PlainIsPreferredToEnriched) {
    const ItemRecord item = read(multipart("alternative", "--b\n\nplain\n--b\nContent-Type: text/enriched\n\n<bold>x</bold>\n"));
    EXPECT_EQ(item.bodyKind, BodyKind::Plain);
    EXPECT_EQ(item.body, u"plain");
    EXPECT_TRUE(item.attachments.empty());
}

TEST(MimeReader, EnrichedTextAloneLosesItsMarkup) {
    EXPECT_EQ(read("From: a@b\r\nContent-Type: text/enriched\r\n\r\n<bold>A</bold> <<b>\r\nfold\r\n\r\nline").body, u"A <b> fold\r\nline");
}

TEST(MimeReader, AnAlternativeThatIsNoTextIsAnAttachment) {
    const ItemRecord item = read(multipart("alternative", "--b\n\nplain\n--b\nContent-Type: text/calendar; name=m.ics\n\nBEGIN:VCALENDAR\n"));
    EXPECT_EQ(item.body, u"plain");
    ASSERT_EQ(item.attachments.size(), 1u);
    EXPECT_EQ(item.attachments[0].fileName, u"m.ics");
}

TEST(MimeReader, ASecondTextIsAnAttachment) {
    const ItemRecord item = read(multipart("mixed", "--b\n\nbody\n--b\nContent-Type: text/html\n\n<p>footer</p>\n"));
    EXPECT_EQ(item.body, u"body");
    ASSERT_EQ(item.attachments.size(), 1u);
    EXPECT_EQ(item.attachments[0].fileName, u"ATT00001.htm");
    EXPECT_EQ(dataOf(item.attachments[0]), "<p>footer</p>");
}

TEST(MimeReader, TextMarkedAsAttachmentIsNoBody) {
    const ItemRecord item =
        read(multipart("mixed", "--b\nContent-Disposition: attachment; filename=a.txt\n\nA\n--b\nContent-Type: text/plain; name=b.txt\n\nB\n--b\n\nbody\n"));
    EXPECT_EQ(item.body, u"body");
    ASSERT_EQ(item.attachments.size(), 2u);
    EXPECT_EQ(item.attachments[1].fileName, u"b.txt");
}

TEST(MimeReader, InlineTextWithANameIsABody) {
    EXPECT_EQ(read(multipart("mixed", "--b\nContent-Disposition: inline; filename=a.txt\n\nA\n")).body, u"A");
}

TEST(MimeReader, RelatedPartsWithAContentIdAreInlinePictures) {
    const ItemRecord item = read(multipart(
        "related",
        "--b\nContent-Type: text/html\n\n<img src='cid:p1'>\n--b\nContent-Type: image/png; name=p.png\nContent-ID: <p1>\nContent-Transfer-Encoding: base64\n\n"
        "iVBORw==\n--b\nContent-Type: image/gif\n\nGIF\n"));
    ASSERT_EQ(item.attachments.size(), 2u);
    EXPECT_EQ(item.attachments[0].fileName, u"p.png");
    EXPECT_EQ(item.attachments[0].contentId, u"p1");
    EXPECT_EQ(item.attachments[0].mimeType, u"image/png");
    EXPECT_EQ(item.attachments[0].type, 1);
    EXPECT_TRUE(item.attachments[0].inlinePicture);
    EXPECT_EQ(dataOf(item.attachments[0]), "\x89PNG");
    EXPECT_FALSE(item.attachments[1].inlinePicture);
    EXPECT_EQ(item.attachments[1].fileName, u"ATT00001.gif");
}

TEST(MimeReader, TheStartParameterNamesTheRootOfRelatedParts) {
    const ItemRecord item =
        read(crlf("From: a@b\nContent-Type: multipart/related; start=\"<r>\"; boundary=b\n\n--b\nContent-Type: image/png\nContent-ID: "
                  "<p>\n\npng\n--b\nContent-Type: text/html\n"
                  "Content-ID: <r>\n\n<p>\n--b--\n"));
    EXPECT_EQ(item.body, u"<p>");
    EXPECT_TRUE(item.attachments.at(0).inlinePicture);
}

TEST(MimeReader, AMixedInlinePartIsAnInlinePictureWhereTheHtmlRefersToIt) {
    const auto item = read(multipart(
        "mixed",
        "--b\nContent-Type: text/html\n\n<img src=\"CID:a%40b\">\n--b\nContent-Type: image/png\nContent-Disposition: inline\nContent-ID: <a@b>\n\n1\n"
        "--b\nContent-Type: image/png\nContent-Disposition: inline\nContent-ID: <other>\n\n2\n--b\nContent-Type: image/png\nContent-ID: <a@b>\n\n3\n"));
    ASSERT_EQ(item.attachments.size(), 3u);
    EXPECT_TRUE(item.attachments[0].inlinePicture);
    EXPECT_FALSE(item.attachments[1].inlinePicture);
    EXPECT_FALSE(item.attachments[2].inlinePicture);
}

TEST(MimeReader, EmbeddedMessagesAreItemsWithAnEmlName) {
    const auto item = read(multipart(
        "mixed",
        "--b\n\nx\n--b\nContent-Type: message/rfc822\n\nFrom: c@d\nSubject: in\n\ny\n--b\nContent-Type: message/rfc822; name=Letter\n\nFrom: e@f\n\n"));
    ASSERT_EQ(item.attachments.size(), 2u);
    EXPECT_EQ(item.attachments[0].type, 5);
    EXPECT_EQ(item.attachments[0].fileName, u"ATT00001.eml");
    EXPECT_EQ(dataOf(item.attachments[0]), "From: c@d\r\nSubject: in\r\n\r\ny");
    EXPECT_EQ(item.attachments[1].fileName, u"Letter.eml");
}

TEST(MimeReader, FileNamesLoseTheirPathOnly) {
    const auto name = [](std::string_view disposition) {
        return read(multipart("mixed", "--b\n\nx\n--b\nContent-Type: image/png\nContent-Disposition: attachment; " + std::string(disposition) + "\n\ny\n"))
            .attachments.at(0)
            .fileName;
    };
    EXPECT_EQ(name("filename*=utf-8''..%2F..%2Fetc%2Fpasswd"), u"passwd");
    EXPECT_EQ(name("filename*=utf-8''C%3A%5Cdocs%5Ca%20b%3F.txt"), u"a b?.txt");
    EXPECT_EQ(name("filename=\"..\""), u"ATT00001.png");
    EXPECT_EQ(name("filename=\"a:b*c.txt\""), u"a:b*c.txt");
}

TEST(MimeReader, TheDispositionsNameWins) {
    EXPECT_EQ(read(multipart("mixed", "--b\n\nx\n--b\nContent-Type: image/png; name=n.png\nContent-Disposition: attachment; filename=f.png\n\ny\n"))
                  .attachments.at(0)
                  .fileName,
              u"f.png");
}

TEST(MimeReader, AMessageThatIsOneAttachmentHasAnEmptyPlainBody) {
    const ItemRecord item = read("From: a@b\r\nContent-Type: image/png; name=x.png\r\n\r\npng");
    EXPECT_EQ(item.bodyKind, BodyKind::Plain);
    EXPECT_EQ(item.body, u"");
    EXPECT_EQ(dataOf(item.attachments.at(0)), "png");
}

TEST(MimeReader, AMultipartWithoutPartsShowsItsText) {
    EXPECT_EQ(read("From: a@b\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\njust text\r\n").body, u"just text\r\n");
    EXPECT_EQ(read("From: a@b\r\nContent-Type: multipart/mixed\r\n\r\njust text\r\n").body, u"just text\r\n");
}

TEST(MimeReader, HtmlWithoutACharsetParameterMayNameItInItsMarkup) {
    EXPECT_EQ(read("From: a@b\r\nContent-Type: text/html\r\n\r\n<meta charset=\"koi8-r\">\xD0").body, u"<meta charset=\"koi8-r\">п");
}

TEST(MimeReader, ASoftBreakAtTheEndKeepsTheLineEndOut) {
    EXPECT_EQ(read("From: a@b\r\nContent-Transfer-Encoding: quoted-printable\r\n\r\nabc=\r\n").body, u"abc");
}

TEST(MimeReader, ManyPartsAreReadInOneSweep) {
    std::string parts;
    for (int i = 0; i < 2000; ++i) parts += "--b\nContent-Type: image/png\n\nx\n";
    EXPECT_EQ(read(multipart("mixed", parts)).attachments.size(), 2000u);
}

}  // namespace
}  // namespace lorvane::mime
