#include "mime/AnswerFields.h"

#include <gtest/gtest.h>

#include "host/TextFunctions.h"
#include "mime/ContentIds.h"
#include "mime/HeaderWriter.h"
#include "mime/Messages.h"
#include "mime/MimeTree.h"

namespace lorvane::mime {
namespace {

using mailstore::BodyKind;
using mailstore::ItemRecord;
namespace tags = mailstore::tags;

using Ids = std::vector<std::string>;

AnswerFields fieldsOf(std::string_view header) {
    return answerFieldsOf(testing::read("Subject: x\r\n" + std::string(header) + "\r\n\r\ntext\r\n"));
}

TEST(MessageIds, AreReadFromWhateverStandsBetween) {
    EXPECT_EQ(decodeMessageIds(""), Ids{});
    EXPECT_EQ(decodeMessageIds("<a@x>"), Ids{"<a@x>"});
    EXPECT_EQ(decodeMessageIds(" <a@x> <b@x>,<c@x>\t<d>"), (Ids{"<a@x>", "<b@x>", "<c@x>", "<d>"}));
    EXPECT_EQ(decodeMessageIds("Your message of \"Mon\" <a@x> (Jane (or) <j@x> \\) <k@x>)"), Ids{"<a@x>"});
}

TEST(MessageIds, ThatCouldNotStandInAFieldAreNone) {
    for (const char* value : {"a@x", "<>", "<a@x", "<a b@x>", "<a\x01@x>", "<caf\xC3\xA9@x>", "<", "a@x>", "(<a@x>", "\\<a@x>"})
        EXPECT_EQ(decodeMessageIds(value), Ids{}) << value;
    EXPECT_EQ(decodeMessageIds("<a@x <b@x>"), Ids{"<b@x>"});
    EXPECT_EQ(decodeMessageIds("<" + std::string(2000, 'a') + "> <b@x>"), Ids{"<b@x>"});
}

TEST(MessageIds, AreWrittenOneAPieceAndFolded) {
    EXPECT_EQ(messageIdsField("References", {}, "\r\n"), "");
    EXPECT_EQ(messageIdsField("In-Reply-To", {"<a@x>"}, "\r\n"), "In-Reply-To: <a@x>\r\n");
    const std::string first = "<" + std::string(40, 'a') + "@x>", second = "<" + std::string(40, 'b') + "@x>";
    EXPECT_EQ(messageIdsField("References", {first, second}, "\r\n"), "References: " + first + "\r\n " + second + "\r\n");
    const std::string longest = "<" + std::string(890, 'a') + ">";
    EXPECT_EQ(messageIdsField("References", {longest}, "\r\n"), "References: " + longest + "\r\n") << "never cut, never encoded";
}

TEST(AnswerFields, ComeFromTheMessageAsItCame) {
    const AnswerFields fields = fieldsOf("Message-ID: <c@x>\r\nReferences: <a@x>\r\n\t<b@x>\r\nReply-To: Sales <s@x>, j@x\r\nreply-to: k@x");
    EXPECT_EQ(fields.inReplyTo, Ids{"<c@x>"});
    EXPECT_EQ(fields.references, (Ids{"<a@x>", "<b@x>", "<c@x>"}));
    EXPECT_EQ(fields.replyTo, (std::vector<Mailbox>{{u"Sales", u"s@x"}, {u"", u"j@x"}, {u"", u"k@x"}}));
}

TEST(AnswerFields, NameNoMessageTwice) {
    EXPECT_EQ(fieldsOf("Message-ID: <a@x>\r\nReferences: <a@x> <b@x>").references, (Ids{"<b@x>", "<a@x>"}));
}

TEST(AnswerFields, ComeFromThePropertiesOfAnItemThatWasMadeHere) {
    ItemRecord item = testing::draft(BodyKind::Plain, u"x");
    EXPECT_TRUE(answerFieldsOf(item).references.empty());
    item.properties[tags::InternetMessageId] = std::u16string(u"<b@x>");
    item.properties[tags::InReplyToId] = std::u16string(u"<a@x>");
    EXPECT_EQ(answerFieldsOf(item).inReplyTo, Ids{"<b@x>"});
    EXPECT_EQ(answerFieldsOf(item).references, (Ids{"<a@x>", "<b@x>"}));
    item.properties[tags::InternetMessageId] = std::int32_t{1};
    EXPECT_EQ(answerFieldsOf(item).inReplyTo, Ids{});
}

TEST(AnswerFields, OfAnOriginalThatCannotBeReadAreTheItemsOwn) {
    ItemRecord item = testing::draft(BodyKind::Plain, u"x");
    item.original = std::make_shared<const host::Bytes>(host::Bytes{0, 1, 2});
    item.properties[tags::InternetMessageId] = std::u16string(u"<b@x>");
    EXPECT_EQ(answerFieldsOf(item).inReplyTo, Ids{"<b@x>"});
}

TEST(AnswerFields, AreWrittenAndReadBackAsTheNextAnswersOwn) {
    ItemRecord answer = testing::draft(BodyKind::Html, u"<HTML><BODY>Hello</BODY></HTML>");
    answer.properties[tags::InReplyToId] = std::u16string(u"<b@x>");
    answer.properties[tags::InternetReferences] = std::u16string(u"<a@x> <b@x>\r\nX-Injected: yes");
    const std::string message = testing::write(answer);
    const auto root = parseMessage(message);
    EXPECT_EQ(root->value("In-Reply-To"), "<b@x>");
    EXPECT_EQ(root->value("References"), "<a@x> <b@x>");
    EXPECT_EQ(root->value("X-Injected"), "");
    const AnswerFields next = answerFieldsOf(testing::read(message));
    EXPECT_EQ(next.inReplyTo, Ids{root->value("Message-ID")});
    EXPECT_EQ(next.references, (Ids{"<a@x>", "<b@x>", root->value("Message-ID")}));
}

TEST(AnswerFields, AreNotWrittenWhereThereAreNone) {
    const auto root = parseMessage(testing::write(testing::draft(BodyKind::Plain, u"x")));
    EXPECT_EQ(root->find("In-Reply-To"), nullptr);
    EXPECT_EQ(root->find("References"), nullptr);
}

TEST(AnswerFields, OfADraftFromAFileStayAsTheyCame) {
    const std::string file = "X-Unsent: 1\r\nSubject: RE: x\r\nIn-Reply-To:  <b@x>\r\nReferences: <a@x>\r\n\t<b@x>\r\n\r\nHello\r\n";
    ItemRecord item = testing::read(file);
    item.body = u"Hello John";
    item.bodyChanged = true;
    const std::string message = testing::write(item);
    EXPECT_NE(message.find("In-Reply-To:  <b@x>\r\nReferences: <a@x>\r\n\t<b@x>\r\n"), std::string::npos);
}

TEST(ContentIds, AreFoundInWhateverForm) {
    using Found = std::set<std::u16string>;
    EXPECT_EQ(referencedContentIds(u"<img src=\"CID:Logo@1\"><td style=\"x: url(cid:back%40Ground)\"> cid:' cid:"), (Found{u"logo@1", u"back@ground", u""}));
    EXPECT_EQ(referencedContentIds(u"<p>none</p>"), Found{});
}

// Replying to real mails asks no more of them than reading them did.
TEST(AnswerFields, OfEveryRealMailGiveFieldsThatReadBack) {
    for (const auto& [name, message] : testing::corpus()) {
        ItemRecord item;
        item.original = std::make_shared<const host::Bytes>(message.begin(), message.end());
        const AnswerFields fields = answerFieldsOf(item);
        const std::string written = messageIdsField("References", fields.references, "\r\n");
        EXPECT_EQ(decodeMessageIds(HeaderField{"", written}.value()), fields.references) << name;
        if (!fields.inReplyTo.empty()) {
            EXPECT_EQ(fields.references.back(), fields.inReplyTo.front()) << name;
        }
    }
}

}  // namespace
}  // namespace lorvane::mime
