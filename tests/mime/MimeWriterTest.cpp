#include "mime/MimeWriter.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "mime/Messages.h"

namespace lorvane::mime {
namespace {

using mailstore::BodyKind;
using mailstore::ItemRecord;
using testing::draft;
using testing::file;
using testing::picture;
using testing::read;
using testing::write;
namespace tags = mailstore::tags;

std::size_t count(std::string_view text, std::string_view sought) {
    std::size_t found = 0;
    for (std::size_t at = text.find(sought); at != std::string_view::npos; at = text.find(sought, at + 1)) ++found;
    return found;
}

bool has(std::string_view text, std::string_view sought) {
    return text.find(sought) != std::string_view::npos;
}

/// Compares with the file of that name; LORVANE_REWRITE_GOLDENS writes it.
void expectGolden(const std::string& name, const std::string& message) {
    const std::string path = LORVANE_SOURCE_DIR "/tests/mime/golden/" + name + ".eml";
    if (std::getenv("LORVANE_REWRITE_GOLDENS")) std::ofstream(path, std::ios::binary) << message;
    EXPECT_EQ(message, testing::readFile(path)) << name;
}

ItemRecord withPictureAndFile() {
    ItemRecord item = draft(BodyKind::Html, u"<HTML><BODY>Dear John,<BR>\r\n<IMG SRC=\"cid:logo@1\"> see caf\u00E9.</BODY></HTML>");
    item.attachments = {picture(u"logo.png", u"logo@1", "\x89PNG data"), file(u"Größe.txt", u"text/plain", "file data")};
    return item;
}

TEST(MimeWriter, GoldenPlainDraft) {
    expectGolden("plain_draft", write(draft(BodyKind::Plain, u"Dear John,\r\n\r\nthis is a caf\u00E9.\r\n")));
}

TEST(MimeWriter, GoldenHtmlDraft) {
    expectGolden("html_draft", write(draft(BodyKind::Html, u"<HTML><BODY>Dear <B>John</B>,<BR>\r\nyours</BODY></HTML>")));
}

TEST(MimeWriter, GoldenPictureAndFile) {
    expectGolden("picture_and_file", write(withPictureAndFile()));
}

TEST(MimeWriter, GoldenRichText) {
    WriteOptions options = testing::options();
    options.richText = [](std::u16string_view rtf) { return std::u16string(rtf == u"{\\rtf1 Hello}" ? u"Hello" : u"?"); };
    const host::Bytes bytes = writeMessage(draft(BodyKind::Rich, u"{\\rtf1 Hello}"), options);
    expectGolden("rich_text", {bytes.begin(), bytes.end()});
}

TEST(MimeWriter, GoldenEveryHeaderField) {
    ItemRecord item = draft(BodyKind::Plain, u"x");
    item.head.subject = u"Grüße an alle, die sich für die 한국말로 하는 것 und den Rest der Welt interessieren";
    item.head.categories = u"Red, Grün";
    item.recipients = {{u"Public, John", u"john@example.com", u"SMTP", 1, true},
                       {u"plain@example.com", u"plain@example.com", u"SMTP", 1, true},
                       {u"Jürgen", u"j@example.com", u"SMTP", 2, true},
                       {u"Hidden", u"h@example.com", u"SMTP", 3, true},
                       {u"Unresolved", u"", u"", 1, false},
                       {u"Exchange User", u"/o=Org/cn=User", u"EX", 1, true}};
    expectGolden("every_field", write(item));
}

TEST(MimeWriter, TheSameRecordGivesTheSameBytes) {
    EXPECT_EQ(write(withPictureAndFile()), write(withPictureAndFile()));
}

TEST(MimeWriter, LinesEndInCrLfAndAreShort) {
    ItemRecord item = withPictureAndFile();
    item.body += std::u16string(5000, u'x');
    item.head.subject = std::u16string(3000, u's');
    item.recipients[0].name = std::u16string(3000, u'n');
    item.attachments[1].fileName = std::u16string(3000, u'f') + u".txt";
    const std::string message = write(item);
    std::size_t line = 0;
    for (std::size_t i = 0; i < message.size(); ++i) {
        if (message[i] == '\n') {
            ASSERT_TRUE(i > 0 && message[i - 1] == '\r');
            line = 0;
        } else {
            ASSERT_LE(++line, 998u);
        }
    }
    EXPECT_TRUE(message.ends_with("\r\n"));
}

TEST(MimeWriter, ADraftIsMarkedAndAReceivedItemIsNot) {
    EXPECT_TRUE(has(write(draft(BodyKind::Plain, u"x")), "\r\nX-Unsent: 1\r\n"));
    ItemRecord received = draft(BodyKind::Plain, u"x");
    received.properties = {{tags::MessageFlags, 0},
                           {tags::ReceivedByName, std::u16string(u"Ann")},
                           {tags::SenderName, std::u16string(u"Mary Smith")},
                           {tags::SenderAddress, std::u16string(u"mary@x.example")},
                           {tags::ClientSubmitTime, host::DateTime{46000.5}},
                           {tags::InternetMessageId, std::u16string(u"<their@id>")}};
    const std::string message = write(received);
    EXPECT_FALSE(has(message, "X-Unsent"));
    EXPECT_TRUE(message.starts_with("From: Mary Smith <mary@x.example>\r\n"));
    EXPECT_TRUE(has(message, "\r\nDate: Tue, 9 Dec 2025 12:00:00 +0100\r\n")) << message;
    EXPECT_TRUE(has(message, "\r\nMessage-ID: <their@id>\r\n"));
}

TEST(MimeWriter, TheCallerCanSayThatItIsUnsent) {
    WriteOptions options = testing::options();
    options.unsent = false;
    const host::Bytes bytes = writeMessage(draft(BodyKind::Plain, u"x"), options);
    EXPECT_FALSE(has({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, "X-Unsent"));
}

TEST(MimeWriter, ANewItemWithoutFlagsIsADraft) {
    ItemRecord item;
    item.body = u"x";
    EXPECT_TRUE(has(write(item), "X-Unsent: 1"));
}

TEST(MimeWriter, WithoutAGeneratorTheIdFollowsFromTheContent) {
    WriteOptions options;
    const auto id = [&](const ItemRecord& item) {
        const host::Bytes bytes = writeMessage(item, options);
        return testing::text(read({reinterpret_cast<const char*>(bytes.data()), bytes.size()}), tags::InternetMessageId);
    };
    EXPECT_EQ(id(draft(BodyKind::Plain, u"x")), id(draft(BodyKind::Plain, u"x")));
    EXPECT_NE(id(draft(BodyKind::Plain, u"x")), id(draft(BodyKind::Plain, u"y")));
}

TEST(MimeWriter, TheIdGeneratorIsAskedOnce) {
    int asked = 0;
    WriteOptions options = testing::options();
    options.newMessageId = [&] { return "<" + std::to_string(++asked) + "@x>"; };
    writeMessage(withPictureAndFile(), options);
    EXPECT_EQ(asked, 1);
}

TEST(MimeWriter, APlainItemIsOneTextPart) {
    const std::string message = write(draft(BodyKind::Plain, u"a\rb\nc\r\nend"));
    EXPECT_FALSE(has(message, "multipart"));
    EXPECT_TRUE(message.ends_with("\r\n\r\na=0Db=0Ac\r\nend=\r\n"));
}

TEST(MimeWriter, Base64IsChosenWhereItIsShorter) {
    EXPECT_TRUE(has(write(draft(BodyKind::Plain, u"한국말로 하는 것")), "Content-Transfer-Encoding: base64"));
    EXPECT_TRUE(has(write(draft(BodyKind::Plain, u"plain words")), "Content-Transfer-Encoding: quoted-printable"));
}

TEST(MimeWriter, NothingEndsAHeaderFieldFromWithin) {
    ItemRecord item = withPictureAndFile();
    const std::u16string evil = u"x\r\nBcc: evil@x.example\r\n\r\nbody";
    item.head.subject = item.head.categories = evil;
    item.recipients = {{evil, u"a@b.example", u"SMTP", 1, true}, {u"A", evil, u"SMTP", 2, true}};
    item.attachments[0].contentId = item.attachments[0].mimeType = item.attachments[1].fileName = item.attachments[1].mimeType = evil;
    const std::string message = write(item);
    EXPECT_EQ(count(message, "\nBcc"), 0u) << message;
    const ItemRecord back = read(message);
    EXPECT_EQ(back.head.subject, evil);
    EXPECT_EQ(back.attachments.at(1).mimeType, u"application/octet-stream");
    EXPECT_EQ(back.attachments.at(1).displayName, back.attachments.at(1).fileName);
}

TEST(MimeWriter, ALoneSurrogateBecomesTheReplacementCharacter) {
    EXPECT_EQ(read(write(draft(BodyKind::Plain, u"a\xD83Cz"))).body, u"a\uFFFDz");
}

TEST(MimeWriter, APictureOfAPlainItemIsAnAttachmentThatKeepsItsId) {
    ItemRecord item = draft(BodyKind::Plain, u"x");
    item.attachments = {picture(u"p.png", u"p", "png")};
    const ItemRecord back = read(write(item));
    EXPECT_FALSE(back.attachments.at(0).inlinePicture);
    EXPECT_EQ(back.attachments.at(0).contentId, u"p");
}

TEST(MimeWriter, EmbeddedMessagesGoOutAsTheyAreWhereMailAllowsIt) {
    ItemRecord item = draft(BodyKind::Plain, u"x");
    item.attachments = {file(u"in.eml", u"message/rfc822", "From: a@b\r\n\r\nbody"), file(u"lf.eml", u"message/rfc822", "From: a@b\n\nbody")};
    item.attachments[0].type = item.attachments[1].type = 5;
    const std::string message = write(item);
    EXPECT_TRUE(has(message, "\r\nFrom: a@b\r\n\r\nbody\r\n--"));
    const ItemRecord back = read(message);
    EXPECT_EQ(back.attachments.at(0).type, 5);
    EXPECT_EQ(testing::dataOf(back.attachments[0]), "From: a@b\r\n\r\nbody");
    EXPECT_EQ(testing::dataOf(back.attachments.at(1)), "From: a@b\n\nbody");
    EXPECT_EQ(back.attachments[1].mimeType, u"application/octet-stream");
}

TEST(MimeWriter, ABoundaryNeverStandsInAPart) {
    ItemRecord item = draft(BodyKind::Plain, u"x");
    item.attachments = {file(u"in.eml", u"message/rfc822", "From: a@b\r\n\r\nbody")};
    const std::string first = write(item);
    const std::string boundary = first.substr(first.find("=_lorvane_"), 26);
    item.attachments[0] = file(u"in.eml", u"message/rfc822", "From: a@b\r\n\r\n--" + boundary + "\r\n");
    EXPECT_EQ(testing::dataOf(read(write(item)).attachments.at(0)), "From: a@b\r\n\r\n--" + boundary + "\r\n");
}

}  // namespace
}  // namespace lorvane::mime
