#include <gtest/gtest.h>

#include "mime/Messages.h"
#include "mime/MimeTree.h"

/// Records that were read from a message: what was not changed keeps its bytes.
namespace lorvane::mime {
namespace {

using mailstore::BodyKind;
using mailstore::ItemRecord;
using testing::crlf;
using testing::file;
using testing::picture;
using testing::read;
using testing::write;

void setBody(ItemRecord& item, BodyKind kind, std::u16string body) {
    item.bodyKind = kind;
    item.body = std::move(body);
    item.bodyChanged = true;
}

std::string replaced(std::string text, std::string_view sought, std::string_view replacement) {
    const std::size_t at = text.find(sought);
    EXPECT_NE(at, std::string::npos) << sought;
    return at == std::string::npos ? text : text.replace(at, sought.size(), replacement);
}

bool has(std::string_view text, std::string_view sought) {
    return text.find(sought) != std::string_view::npos;
}

const std::string plainDraft = crlf(
    "X-Odd:  kept \nFrom: Own Name <own@x.example>\nSubject: old\nTo: a@b.example\nX-Unsent: 1\nDate: Mon, 10 Jan 2028 08:00:00 +0000\nMessage-ID: <7@x>\n"
    "X-Last: also\n\nold text\n");

const std::string rootPicture = "--r\nContent-Type: image/png; name=p.png\nContent-ID: <p>\nX-Part: odd\nContent-Transfer-Encoding: base64\n\niVBO\nRw==\n";
const std::string richDraft = crlf(
    "From: own@x.example\nX-Unsent: 1\nDate: Mon, 10 Jan 2028 08:00:00 +0000\nMessage-ID: <7@x>\nMIME-Version: 1.0\nContent-Type: multipart/mixed; "
    "boundary=m\n\nfront\n"
    "--m\nContent-Type: multipart/alternative; boundary=a\n\n--a\nX-T: 1\n\nold\n--a\nContent-Type: multipart/related; boundary=r\n\n--r\nContent-Type: "
    "text/html\nX-H: 2\n\n<b>old</b><img src=cid:p>\n" +
    rootPicture +
    "--r--\n\n--a--\n--m\nContent-Type: application/x-odd; name=one\n\n 1 \n--m  \nContent-Type: application/x-odd; name=two\n\n 2 \n--m--\nback\n");

TEST(Original, AnUnchangedRecordIsTheOriginal) {
    for (const std::string& message : {plainDraft, richDraft, std::string("From : a@b\n__\n x\nTo: c@d\n\nbody without end")})
        EXPECT_EQ(write(read(message)), message);
}

TEST(Original, ABodyWrittenWithWhatItWasIsNoChange) {
    ItemRecord item = read(plainDraft);
    item.bodyChanged = true;
    EXPECT_EQ(write(item), plainDraft);
}

TEST(Original, ABodyThatIsNotMarkedAsChangedStays) {
    ItemRecord item = read(plainDraft);
    item.body = u"other";
    EXPECT_EQ(write(item), plainDraft);
}

TEST(Original, AChangedSubjectIsWrittenInItsPlace) {
    ItemRecord item = read(plainDraft);
    item.head.subject = u"new";
    EXPECT_EQ(write(item), replaced(plainDraft, "Subject: old", "Subject: new"));
    item.head.subject.clear();
    EXPECT_EQ(write(item), replaced(plainDraft, "Subject: old\r\n", ""));
}

TEST(Original, SeveralSubjectsBecomeOneOnceItChanges) {
    ItemRecord item = read(replaced(plainDraft, "X-Last", "Subject: second\r\nX-Last"));
    EXPECT_EQ(item.head.subject, u"old");
    item.head.subject = u"new";
    EXPECT_EQ(write(item), replaced(plainDraft, "Subject: old", "Subject: new"));
}

TEST(Original, ChangedRecipientsAreWrittenInTheirPlaceAndNewKindsBehind) {
    ItemRecord item = read(plainDraft);
    item.recipients.push_back({u"Copy", u"c@b.example", u"SMTP", 2, true});
    EXPECT_EQ(write(item), replaced(plainDraft, "X-Last: also\r\n", "X-Last: also\r\nCc: Copy <c@b.example>\r\n"));
    item.recipients.erase(item.recipients.begin());
    EXPECT_EQ(write(item), replaced(replaced(plainDraft, "X-Last: also\r\n", "X-Last: also\r\nCc: Copy <c@b.example>\r\n"), "To: a@b.example\r\n", ""));
}

TEST(Original, ChangedCategoriesReplaceBothFields) {
    ItemRecord item = read(replaced(plainDraft, "X-Last", "X-Keywords: Blue\r\nX-Last"));
    EXPECT_EQ(item.head.categories, u"Blue");
    item.head.categories = u"Red, Green";
    EXPECT_EQ(write(item), replaced(plainDraft, "X-Last: also\r\n", "X-Last: also\r\nKeywords: Red, Green\r\n"));
}

TEST(Original, ADraftKeepsItsFromUnlessTheAccountIsGiven) {
    ItemRecord item = read(plainDraft);
    item.head.subject = u"new";
    EXPECT_TRUE(has(write(item), "From: Own Name <own@x.example>\r\n"));
    WriteOptions options = testing::options();
    options.fromGiven = true;
    const host::Bytes bytes = writeMessage(read(plainDraft), options);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), replaced(plainDraft, "From: Own Name <own@x.example>", "From: Ann Account <ann@example.org>"));
}

TEST(Original, AReceivedMessageKeepsItsSenderEvenSo) {
    WriteOptions options = testing::options();
    options.fromGiven = true;
    const std::string message = "From: a@b\r\nSubject: s\r\n\r\nx";
    const host::Bytes bytes = writeMessage(read(message), options);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), message);
}

TEST(Original, ASentDraftLosesItsMark) {
    ItemRecord item = read(plainDraft);
    item.properties[mailstore::tags::MessageFlags] = 0;
    EXPECT_EQ(write(item), replaced(plainDraft, "X-Unsent: 1\r\n", ""));
}

TEST(Original, FieldsThatGoOutAreAddedOnceSomethingChanges) {
    const std::string bare = "X-Unsent: 1\r\nSubject: old\r\n\r\ntext";
    EXPECT_EQ(write(read(bare)), bare);
    ItemRecord item = read(bare);
    item.head.subject = u"new";
    EXPECT_EQ(write(item),
              "X-Unsent: 1\r\nSubject: new\r\nFrom: Ann Account <ann@example.org>\r\nDate: Mon, 10 Jan 2028 09:00:00 +0100\r\nMessage-ID: "
              "<1@lorvane.example>\r\n\r\ntext");
}

TEST(Original, LineEndsOfTheOriginalAreUsed) {
    ItemRecord item = read("From: a@b\nDate: Mon, 10 Jan 2028 08:00:00 +0000\nMessage-ID: <7@x>\nSubject: old\n\ntext\n");
    item.head.subject = u"new";
    setBody(item, BodyKind::Plain, u"one\r\ntwo");
    item.attachments.push_back(file(u"a.bin", u"application/x-a", "data"));
    const std::string message = write(item);
    EXPECT_FALSE(has(message, "\r"));
    EXPECT_EQ(read(message).body, u"one\r\ntwo");
}

TEST(Original, AChangedPlainBodyIsWrittenInItsPart) {
    ItemRecord item = read(plainDraft);
    setBody(item, BodyKind::Plain, u"new text of the caf\u00E9");
    EXPECT_EQ(write(item), replaced(plainDraft, "X-Last: also\r\n\r\nold text\r\n",
                                    "X-Last: also\r\nContent-Type: text/plain; charset=\"utf-8\"\r\nContent-Transfer-Encoding: "
                                    "quoted-printable\r\nMIME-Version: 1.0\r\n\r\nnew text of the caf=C3=A9=\r\n"));
}

TEST(Original, AChangedHtmlBodyRenewsBothRenditionsAndNothingElse) {
    ItemRecord item = read(richDraft);
    EXPECT_EQ(item.body, u"<b>old</b><img src=cid:p>");
    setBody(item, BodyKind::Html, u"<b>new</b><img src=cid:p>");
    std::string expected = replaced(richDraft, "X-T: 1\r\n\r\nold",
                                    "X-T: 1\r\nContent-Type: text/plain; charset=\"utf-8\"\r\nContent-Transfer-Encoding: quoted-printable\r\n\r\nnew");
    expected =
        replaced(expected, "Content-Type: text/html\r\nX-H: 2\r\n\r\n<b>old</b><img src=cid:p>",
                 "Content-Type: text/html; charset=\"utf-8\"\r\nX-H: 2\r\nContent-Transfer-Encoding: quoted-printable\r\n\r\n<b>new</b><img src=3Dcid:p>");
    EXPECT_EQ(write(item), expected);
}

TEST(Original, AddedAttachmentsStandBehindTheOthers) {
    ItemRecord item = read(richDraft);
    item.attachments.push_back(file(u"new.bin", u"application/x-new", "new data"));
    EXPECT_EQ(
        write(item),
        replaced(
            richDraft, "\r\n--m--\r\n",
            "\r\n--m\r\nContent-Type: application/x-new\r\nContent-Transfer-Encoding: base64\r\nContent-Disposition: attachment; filename=\"new.bin\"\r\n\r\n"
            "bmV3IGRhdGE=\r\n--m--\r\n"));
}

TEST(Original, AddedPicturesStandWithTheHtml) {
    ItemRecord item = read(richDraft);
    item.attachments.push_back(picture(u"q.png", u"q", "q"));
    EXPECT_EQ(write(item), replaced(richDraft, "\r\n--r--\r\n",
                                    "\r\n--r\r\nContent-Type: image/png\r\nContent-Transfer-Encoding: base64\r\nContent-Disposition: inline; "
                                    "filename=\"q.png\"\r\nContent-ID: <q>\r\n\r\ncQ==\r\n"
                                    "--r--\r\n"));
}

TEST(Original, ARemovedAttachmentLeavesWithItsBoundary) {
    ItemRecord item = read(richDraft);
    ASSERT_EQ(item.attachments.size(), 3u);
    item.attachments.erase(item.attachments.begin() + 1);
    EXPECT_EQ(write(item), replaced(richDraft, "\r\n--m\r\nContent-Type: application/x-odd; name=one\r\n\r\n 1 ", ""));
}

TEST(Original, EqualAttachmentsAreToldApartByTheirOrder) {
    const std::string message = crlf(
        "From: a@b\nDate: Mon, 10 Jan 2028 08:00:00 +0000\nMessage-ID: <7@x>\nMIME-Version: 1.0\nContent-Type: multipart/mixed; "
        "boundary=m\n\n--m\n\nx\n--m\nContent-Type: a/b; name=n\n\nsame\n"
        "--m\nX-Second: 1\nContent-Type: a/b; name=n\n\nsame\n--m--\n");
    ItemRecord item = read(message);
    ASSERT_EQ(item.attachments.size(), 2u);
    item.attachments.pop_back();
    EXPECT_EQ(write(item), replaced(message, "\r\n--m\r\nX-Second: 1\r\nContent-Type: a/b; name=n\r\n\r\nsame", ""));
}

TEST(Original, AMessageOfOneTextIsWrappedForAnAttachment) {
    ItemRecord item = read(plainDraft);
    item.attachments.push_back(file(u"a.bin", u"application/x-a", "data"));
    const std::string message = write(item);
    EXPECT_TRUE(has(message, "X-Odd:  kept \r\n"));
    EXPECT_TRUE(has(message, "\r\n\r\nold text\r\n\r\n--=_lorvane_"));
    const ItemRecord back = read(message);
    EXPECT_EQ(back.body, u"old text\r\n");
    EXPECT_EQ(testing::dataOf(back.attachments.at(0)), "data");
}

TEST(Original, TheFieldsOfTheContentMoveIntoAWrappedPart) {
    ItemRecord item =
        read(crlf("From: a@b\nContent-Type: text/html; charset=koi8-r\nX-Mine: 1\nContent-Transfer-Encoding: 8bit\nContent-Language: ru\n\n\xD0\n"));
    item.attachments.push_back(file(u"a.bin", u"application/x-a", "data"));
    const std::string message = write(item);
    EXPECT_TRUE(has(message, "\r\nContent-Type: text/html; charset=koi8-r\r\nContent-Transfer-Encoding: 8bit\r\nContent-Language: ru\r\n\r\n\xD0\r\n"))
        << message;
    EXPECT_EQ(read(message).body, u"п\r\n");
}

TEST(Original, AnHtmlMessageBecomesAlternativesWhenItsTextChanges) {
    ItemRecord item = read(crlf("From: a@b\nContent-Type: text/html\nContent-Length: 12\n\n<b>old</b>\n"));
    setBody(item, BodyKind::Html, u"<b>new</b>");
    const std::string message = write(item);
    EXPECT_FALSE(has(message, "Content-Length"));
    const auto root = parseMessage(message);
    ASSERT_EQ(root->type, "multipart/alternative");
    EXPECT_EQ(root->children.at(0)->content, "new");
    EXPECT_EQ(root->children.at(1)->content, "<b>new</b>");
}

TEST(Original, APictureForALoneHtmlTextIsRelatedToIt) {
    ItemRecord item = read(crlf("From: a@b\nContent-Type: text/html\n\n<img src=cid:q>\n"));
    item.attachments.push_back(picture(u"q.png", u"q", "q"));
    const ItemRecord back = read(write(item));
    EXPECT_EQ(back.body, u"<img src=cid:q>\r\n");
    EXPECT_TRUE(back.attachments.at(0).inlinePicture);
}

TEST(Original, ARelatedPartTellsTheNewTypeOfItsFirst) {
    ItemRecord item =
        read(crlf("From: a@b\nContent-Type: multipart/related; type=\"text/html\"; boundary=r\n\n--r\nContent-Type: text/html\n\n<img src=cid:p>\n") +
             crlf(rootPicture) + "--r--\r\n");
    setBody(item, BodyKind::Html, u"<p>new</p><img src=cid:p>");
    const std::string message = write(item);
    EXPECT_TRUE(has(message, "type=\"multipart/alternative\""));
    EXPECT_TRUE(has(message, crlf(rootPicture)));
    const ItemRecord back = read(message);
    EXPECT_EQ(back.body, u"<p>new</p><img src=cid:p>");
    EXPECT_TRUE(back.attachments.at(0).inlinePicture);
}

TEST(Original, AnotherKindOfTextPutsTheMessageTogetherAnewFromItsOwnParts) {
    ItemRecord item = read(richDraft);
    setBody(item, BodyKind::Plain, u"only text");
    const std::string message = write(item);
    EXPECT_TRUE(has(message, "Content-Type: application/x-odd; name=one\r\n\r\n 1 \r\n--"));
    EXPECT_TRUE(has(message, "\r\nX-Part: odd\r\nContent-Transfer-Encoding: base64\r\n\r\niVBO\r\nRw==\r\n--"));
    EXPECT_FALSE(has(message, "old"));
    const ItemRecord back = read(message);
    EXPECT_EQ(back.bodyKind, BodyKind::Plain);
    EXPECT_EQ(back.body, u"only text");
    ASSERT_EQ(back.attachments.size(), 3u);
    EXPECT_EQ(back.attachments[0].contentId, u"p");
}

TEST(Original, AMessageOfOneAttachmentCanGetAText) {
    ItemRecord item =
        read(crlf("From: a@b\nContent-Type: image/png; name=x.png\nContent-Disposition: attachment\nContent-Transfer-Encoding: base64\n\niVBO\nRw==\n"));
    setBody(item, BodyKind::Plain, u"hello");
    const std::string message = write(item);
    const ItemRecord back = read(message);
    EXPECT_EQ(back.body, u"hello");
    EXPECT_EQ(testing::dataOf(back.attachments.at(0)), "\x89PNG");
    EXPECT_TRUE(has(message, "\r\n\r\niVBO\r\nRw==\r\n"));
}

TEST(Original, TheLastAttachmentCanLeaveAMessageWithoutText) {
    for (const std::string message : {"From: a@b\r\nContent-Type: image/png; name=x.png\r\n\r\npng",
                                      "From: a@b\r\nContent-Type: multipart/mixed; boundary=m\r\n\r\n--m\r\nContent-Type: a/b\r\n\r\nx\r\n--m--\r\n"}) {
        ItemRecord item = read(message);
        item.attachments.clear();
        const ItemRecord back = read(write(item));
        EXPECT_TRUE(back.attachments.empty()) << message;
        EXPECT_EQ(back.body, u"");
    }
}

TEST(Original, MultipartsThatLoseTheirLastPartLeaveToo) {
    ItemRecord item = read(crlf(
        "From: a@b\nDate: Mon, 10 Jan 2028 08:00:00 +0000\nMessage-ID: <7@x>\nMIME-Version: 1.0\nContent-Type: multipart/mixed; boundary=m\n\n--m\n\ntext\n"
        "--m\nContent-Type: multipart/mixed; boundary=n\n\n--n\nContent-Type: a/b\n\nx\n--n--\n--m--\n"));
    item.attachments.clear();
    EXPECT_EQ(write(item), crlf("From: a@b\nDate: Mon, 10 Jan 2028 08:00:00 +0000\nMessage-ID: <7@x>\nMIME-Version: 1.0\nContent-Type: multipart/mixed; "
                                "boundary=m\n\n--m\n\ntext\n--m--\n"));
}

TEST(Original, OtherRenditionsLeaveWhenTheTextChanges) {
    ItemRecord item =
        read(crlf("From: a@b\nContent-Type: multipart/alternative; boundary=m\n\n--m\n\nold\n--m\nContent-Type: text/enriched\n\n<bold>old</bold>\n--m--\n"));
    setBody(item, BodyKind::Plain, u"new");
    const std::string message = write(item);
    EXPECT_FALSE(has(message, "old"));
    EXPECT_EQ(read(message).body, u"new");
}

TEST(Original, TextThatLooksLikeABoundaryStaysText) {
    ItemRecord item = read(richDraft);
    setBody(item, BodyKind::Html, u"<p>\r\n--a\r\n--m--\r\n--r\r\n</p>");
    const ItemRecord back = read(write(item));
    EXPECT_EQ(back.body, item.body);
    EXPECT_EQ(back.attachments.size(), 3u);
}

TEST(Original, AnEmbeddedMessageThatHoldsABoundaryOfTheOriginalIsEncoded) {
    ItemRecord item = read(richDraft);
    item.attachments.push_back(file(u"x.eml", u"message/rfc822", "From: a@b\r\n\r\n--m\r\n"));
    EXPECT_EQ(testing::dataOf(read(write(item)).attachments.back()), "From: a@b\r\n\r\n--m\r\n");
}

TEST(Original, AMessageThatWasCutOffGetsAnEndOnceAPartIsAdded) {
    ItemRecord item = read(crlf("From: a@b\nContent-Type: multipart/mixed; boundary=m\n\n--m\n\ntext"));
    item.attachments.push_back(file(u"a.bin", u"application/x-a", "data"));
    const ItemRecord back = read(write(item));
    EXPECT_EQ(back.body, u"text");
    EXPECT_EQ(testing::dataOf(back.attachments.at(0)), "data");
}

TEST(Original, APartWithNothingInItTakesAnotherBody) {
    const std::string start = crlf("Content-Type: multipart/alternative; boundary=b\n\n--b\n");
    for (const std::string_view rest : {"--b\r\nContent-Type: text/html", "--b\r\nContent-Type: text/html\r\n\r\n<b>old</b>\r\n--b--\r\n", "--b--\r\n"}) {
        ItemRecord item = read(start + std::string(rest));
        setBody(item, BodyKind::Html, u"<b>other</b>");
        const ItemRecord again = read(write(item));
        EXPECT_EQ(again.body, u"<b>other</b>") << rest;
        EXPECT_TRUE(again.attachments.empty()) << rest;
    }
}

TEST(Original, AFoldWithoutItsBlankStaysAFoldWhenTheFieldBehindItGoes) {
    for (const std::string_view last : {"Content-Type: text/plain", "Content-Type: text/plain\r\n", "Content-Type: text/plain\r\n\r\nold\r\n"}) {
        ItemRecord item = read("Content-Type: text/plain\r\nSubject: one\r\ntwo\r\n" + std::string(last));
        setBody(item, BodyKind::Plain, u"other");
        const ItemRecord again = read(write(item));
        EXPECT_EQ(again.body, u"other") << last;
        EXPECT_EQ(again.head.subject, u"one two") << last;
    }
}

TEST(Original, AMessageThatWasCutOffBehindABoundaryTakesAnotherBody) {
    for (const std::string_view start : {"", "\r\nin front\r\n"}) {
        ItemRecord item = read("Content-Type: multipart/mixed; boundary=b\r\n" + std::string(start) + "--b");
        setBody(item, BodyKind::Html, u"<b>other</b>");
        const ItemRecord again = read(write(item));
        EXPECT_EQ(again.body, u"<b>other</b>");
        EXPECT_TRUE(again.attachments.empty());
    }
}

}  // namespace
}  // namespace lorvane::mime
