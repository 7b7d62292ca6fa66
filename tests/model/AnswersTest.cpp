#include <cstring>

#include "mime/MimeReader.h"
#include "mime/MimeTree.h"
#include "mime/MimeWriter.h"
#include "model/ModelHostRig.h"
#include "model/QuotedText.h"
#include "services/CodePage.h"
#include "services/Region.h"

namespace lorvane::model {

using mailstore::BodyKind;
using mailstore::ItemRecord;

constexpr const char* messageWithPicture =
    "From: =?utf-8?q?J=C3=BCrgen?= Sender <jane@example.com>\r\nTo: user@localhost, John Public <john@example.com>\r\nSubject: A question\r\n"
    "Date: Mon, 10 Jan 2028 09:00:00 +0000\r\nMessage-ID: <b@example.com>\r\nIn-Reply-To: <a@example.com>\r\nMIME-Version: 1.0\r\n"
    "Content-Type: multipart/mixed; boundary=m\r\n\r\n"
    "--m\r\nContent-Type: multipart/related; boundary=r\r\n\r\n"
    "--r\r\nContent-Type: text/html; charset=utf-8\r\n\r\n<html><body><p>How <img src=\"cid:logo@1\"> much?</p></body></html>\r\n"
    "--r\r\nContent-Type: image/png; name=logo.png\r\nContent-ID: <logo@1>\r\nContent-Transfer-Encoding: base64\r\n\r\nUE5H\r\n--r--\r\n"
    "--m\r\nContent-Type: application/pdf; name=offer.pdf\r\nContent-Disposition: attachment\r\n\r\npdf\r\n--m--\r\n";

class ModelAnswersTest : public ModelHostTest {
protected:
    host::MailItem receive(std::string_view message) const {
        mime::ReadOptions options;
        options.zoneOffset = [](std::int64_t) { return 0; };
        const host::Bytes bytes(message.begin(), message.end());
        return host::MailItem(driver().receive(mime::readMessage(bytes, options)));
    }
    static host::MailItem answer(const host::Object& item, Member member) { return host::MailItem(item.call(member).toObject()); }
    /// An answer as it would go out, read as its receiver reads it.
    std::string written(const host::Object& item) const {
        const host::Bytes bytes = mime::writeMessage(driver().record(item));
        return {bytes.begin(), bytes.end()};
    }
    std::int32_t drafts() const { return session().GetDefaultFolder(16).Items().Count(); }
};

TEST_F(ModelAnswersTest, ARepliesMessageStandsInTheThreadAndShowsThePicture) {
    const std::string message = written(answer(receive(messageWithPicture), member::ReplyAll));
    const auto root = mime::parseMessage(message);
    EXPECT_EQ(root->value("In-Reply-To"), "<b@example.com>");
    EXPECT_EQ(root->value("References"), "<a@example.com> <b@example.com>");
    EXPECT_EQ(root->value("X-Unsent"), "1");
    const ItemRecord read = mime::readMessage(host::Bytes(message.begin(), message.end()));
    EXPECT_EQ(read.head.subject, u"RE: A question");
    ASSERT_EQ(read.recipients.size(), 2U);
    EXPECT_EQ(read.recipients[0], (mailstore::RecipientRecord{u"Jürgen Sender", u"jane@example.com", u"SMTP", 1, true}));
    EXPECT_EQ(read.recipients[1], (mailstore::RecipientRecord{u"John Public", u"john@example.com", u"SMTP", 1, true}));
    ASSERT_EQ(read.attachments.size(), 1U);
    EXPECT_EQ(read.attachments[0].contentId, u"logo@1");
    EXPECT_TRUE(read.attachments[0].inlinePicture);
    EXPECT_EQ(*read.attachments[0].data, (host::Bytes{'P', 'N', 'G'}));
    EXPECT_TRUE(
        read.body.starts_with(u"<html><body><BR>\r\n<BR>\r\n-----Original Message-----<BR>\r\nFrom: Jürgen Sender [mailto:jane@example.com]<BR>\r\n"
                              u"Sent: Monday, January 10, 2028 9:00:00 AM<BR>\r\nTo: user@localhost; John Public<BR>\r\n"));
    EXPECT_TRUE(read.body.ends_with(u"<BR>\r\n<p>How <img src=\"cid:logo@1\"> much?</p></body></html>"));
}

TEST_F(ModelAnswersTest, AForwardsMessageHasAllAttachmentsAndNoThread) {
    const host::MailItem forward = answer(receive(messageWithPicture), member::Forward);
    forward.Save();
    const ItemRecord sent = driver().record(forward),
                     came = mime::readMessage(host::Bytes(messageWithPicture, messageWithPicture + std::strlen(messageWithPicture)));
    EXPECT_EQ(sent.attachments, came.attachments);
    const auto root = mime::parseMessage(written(forward));
    EXPECT_EQ(root->find("In-Reply-To"), nullptr);
    EXPECT_EQ(root->find("References"), nullptr);
    EXPECT_EQ(root->find("To"), nullptr);
}

TEST_F(ModelAnswersTest, TheAnsweredItemIsTheSameRecordAfterwards) {
    const host::MailItem mail = receive(messageWithPicture);
    const ItemRecord before = driver().record(mail);
    for (const Member member : {Member::Reply, member::ReplyAll, member::Forward}) {
        const host::MailItem answered = answer(mail, member);
        answered.HTMLBody(u"<p>changed</p>");
        answered.Save();
    }
    EXPECT_EQ(driver().record(mail), before);
    const host::MailItem again = session().GetItemFromID(mail.EntryID(), mail.Parent().StoreID());
    EXPECT_EQ(driver().record(again), before);
    EXPECT_EQ(drafts(), 3);
}

TEST_F(ModelAnswersTest, TheDateIsWrittenAsTheRegionDoes) {
    restart([](HostOptions& changed) {
        changed.services.region = host::makeObject<services::Region>(u"de-DE", std::make_shared<const services::CodePage>("windows-1252"));
    });
    EXPECT_NE(answer(receive(messageWithPicture), Member::Reply).Body().find(u"\r\nSent: Montag, 10. Januar 2028 09:00:00\r\n"), std::u16string::npos);
}

TEST_F(ModelAnswersTest, ADateThatNoCalendarHasIsLeftOut) {
    const host::MailItem mail = receive("From: jane@example.com\r\nSubject: x\r\n\r\ny\r\n");
    wrapped(mail).setFields(0x00390040, host::DateTime{-999999.0});
    EXPECT_EQ(answer(mail, Member::Reply).Body(),
              u"\r\n\r\n-----Original Message-----\r\nFrom: jane@example.com [mailto:jane@example.com]\r\nTo: \r\nSubject: x\r\n\r\ny\r\n");
}

/// A service that is gone.
struct LostRegion final : host::Dispatch {
    Variant get(Member, host::Args) override { throw host::HostError(host::host_failure::Failed); }
    void put(Member, const Variant&, host::Args) override { throw host::HostError(host::host_failure::Failed); }
    Variant call(Member, host::Args) override { throw host::HostError(host::host_failure::Failed); }
    std::u16string_view className() const noexcept override { return u"Region"; }
};

TEST_F(ModelAnswersTest, OneThatFailsOnTheWayLeavesNothing) {
    restart([](HostOptions& changed) { changed.services.region = host::makeObject<LostRegion>(); });
    const host::MailItem mail = receive(messageWithPicture);
    const ItemRecord before = driver().record(mail);
    for (const Member member : {Member::Reply, member::ReplyAll, member::Forward})
        EXPECT_EQ(errorNumberOf([&] { (void)answer(mail, member); }), host::host_failure::Failed);
    EXPECT_EQ(drafts(), 0);
    EXPECT_EQ(driver().record(mail), before);
}

TEST(QuotedText, NamesAndAddressesThatAreMissingAreLeftOut) {
    EXPECT_EQ(quotedBlock({}), u"\r\n\r\n-----Original Message-----\r\nTo: \r\nSubject: \r\n\r\n");
    EXPECT_EQ(quotedBlock({.senderAddress = u"j@x", .cc = u"Ann", .subject = u"s"}),
              u"\r\n\r\n-----Original Message-----\r\nFrom: j@x [mailto:j@x]\r\nTo: \r\nCc: Ann\r\nSubject: s\r\n\r\n");
}

TEST(QuotedText, GoesInFrontOfTextThatStandsBeforeTheBodyTag) {
    EXPECT_EQ(quotedSource(BodyKind::Html, u"<p>a</p><body>b", u"x<\r\n"), u"x&lt;<BR>\r\n<p>a</p><body>b");
    EXPECT_EQ(quotedSource(BodyKind::Html, u"<style>a</style> <body>b", u"x"), u"<style>a</style> <body>xb");
    EXPECT_EQ(quotedSource(BodyKind::Html, u"<script>\"<body>\"</script><body>b", u"x"), u"<script>\"<body>\"</script><body>xb");
}

}  // namespace lorvane::model
