#include "mime/MimeTree.h"

#include <gtest/gtest.h>

#include <random>

#include "host/HostError.h"
#include "mime/Messages.h"

namespace lorvane::mime {
namespace {

using testing::crlf;
using testing::refusal;

const std::string nested = crlf(
    "From: a@b.example\nContent-Type: multipart/mixed; boundary=outer\n\npreamble\n"
    "--outer\nContent-Type: multipart/alternative; boundary=outer_alt\n\n--outer_alt\n\nplain\n--outer_alt\nContent-Type: "
    "text/html\n\n<p>\n--outer_alt--\nbetween\n"
    "--outer  \nContent-Type: image/png\n\npng\n--outer--\nepilogue\n");

TEST(MimeTree, SplitsNestedMultipartsByTheirOwnBoundaries) {
    const auto root = parseMessage(nested);
    ASSERT_EQ(root->children.size(), 2u);
    EXPECT_EQ(root->content, "preamble");
    EXPECT_EQ(root->closing, "\r\n--outer--\r\nepilogue\r\n");
    const Entity& alternative = *root->children[0];
    EXPECT_EQ(alternative.type, "multipart/alternative");
    ASSERT_EQ(alternative.children.size(), 2u);
    EXPECT_EQ(alternative.children[0]->content, "plain");
    EXPECT_EQ(alternative.children[0]->type, "text/plain");
    EXPECT_EQ(alternative.children[1]->content, "<p>");
    EXPECT_EQ(alternative.closing, "\r\n--outer_alt--\r\nbetween");
    EXPECT_EQ(root->children[1]->content, "png");
    EXPECT_EQ(root->children[1]->parent, root.get());
}

TEST(MimeTree, GivesBackEveryRealMailToTheByte) {
    for (const auto& [name, bytes] : testing::corpus()) EXPECT_EQ(serialize(*parseMessage(bytes)), bytes) << name;
}

TEST(MimeTree, GivesBackDamagedMailToTheByte) {
    std::mt19937 random(20280110);
    const auto below = [&](std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random); };
    static constexpr std::string_view scraps[] = {"\r\n", "\n", "--outer", "--", ":", " ", "\t", "\r", "\r\n\r\n", "--outer_alt--"};
    int read = 0;
    for (int round = 0; round < 2000; ++round) {
        std::string bytes = nested;
        for (std::size_t edit = 0; edit < 4; ++edit) {
            const std::size_t at = below(bytes.size());
            if (below(2) == 0)
                bytes.insert(at, scraps[below(std::size(scraps))]);
            else
                bytes.erase(at, 1 + below(8));
        }
        try {
            EXPECT_EQ(serialize(*parseMessage(bytes)), bytes);
            ++read;
        } catch (const host::HostError&) {
        }
    }
    EXPECT_GT(read, 1500);
}

TEST(MimeTree, ToleratesAMissingEndAndAMailboxLine) {
    const auto root = parseMessage("From me Mon May  2 16:07:05 2005\nTo: x@y.example\nContent-Type: multipart/mixed; boundary=b\n\n--b\n\none\n--b\n\ntwo\n");
    EXPECT_EQ(root->preface, "From me Mon May  2 16:07:05 2005\n");
    ASSERT_EQ(root->children.size(), 2u);
    EXPECT_EQ(root->children[1]->content, "two\n");
    EXPECT_EQ(root->closing, "");
}

TEST(MimeTree, KnowsAFieldWithBlanksInFrontOfItsColon) {
    const auto root = parseMessage("From  : a@b.example\nSubject\t: s\n\nbody");
    EXPECT_EQ(root->value("from"), "a@b.example");
    EXPECT_EQ(root->value("SUBJECT"), "s");
    EXPECT_EQ(root->content, "body");
}

TEST(MimeTree, TakesALineWithoutColonInsideTheHeaderForABrokenFold) {
    EXPECT_EQ(parseMessage("To: Mary\nSmith\n <m@x.example>\nSubject: s\n\nb")->value("To"), "MarySmith <m@x.example>");
}

TEST(MimeTree, BeginsTheContentAtALineThatEndsTheHeaderWithoutABlankOne) {
    const auto root = parseMessage("Subject: s\nHello there,\nthis is text.\n");
    ASSERT_EQ(root->fields.size(), 1u);
    EXPECT_EQ(root->content, "Hello there,\nthis is text.\n");
}

TEST(MimeTree, CountsTheFirstOfSeveralFields) {
    EXPECT_EQ(parseMessage("Content-Type: text/html\nContent-Type: text/plain\n\n")->type, "text/html");
}

TEST(MimeTree, PartsOfADigestAreMessagesUnlessTheySayElse) {
    const auto root =
        parseMessage("From: a@b\nContent-Type: multipart/digest; boundary=b\n\n--b\n\nFrom: c@d\n\nx\n--b\nContent-Type: text/plain\n\ny\n--b--\n");
    EXPECT_EQ(root->children.at(0)->type, "message/rfc822");
    EXPECT_EQ(root->children.at(1)->type, "text/plain");
}

TEST(MimeTree, RefusesWhatIsNoMail) {
    EXPECT_EQ(refusal(""), "The file is empty.");
    EXPECT_EQ(refusal("\r\n \r\n"), "The file is empty.");
    EXPECT_EQ(refusal("Hello world\n"), "The file is not a mail: it does not begin with the header fields of one.");
    EXPECT_EQ(refusal("key: value\nother: value\n\ntext"), "The file is not a mail: it does not begin with the header fields of one.");
    EXPECT_EQ(refusal(std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16)), "The file is not a mail: it does not begin with the header fields of one.");
    EXPECT_EQ(refusal(std::string("From: a\0b\nTo: c\n\n", 17)), "The file is not a mail: its header holds binary data.");
}

TEST(MimeTree, RefusesPartsThatNestTooDeep) {
    const auto nest = [](std::size_t depth) {
        std::string message = "From: a@b\n";
        for (std::size_t i = 0; i < depth; ++i)
            message += "Content-Type: multipart/mixed; boundary=b" + std::to_string(i) + "x\n\n--b" + std::to_string(i) + "x\n";
        return message + "\nend\n";
    };
    EXPECT_EQ(refusal(nest(MaximumDepth + 1)), "The message nests its parts more than 50 deep.");
    EXPECT_EQ(testing::read(nest(MaximumDepth)).body, u"end\r\n");
}

TEST(MimeTree, RefusesTooManyParts) {
    std::string message = "From: a@b\nContent-Type: multipart/mixed; boundary=b\n\n";
    for (std::size_t i = 0; i <= MaximumParts; ++i) message += "--b\n\nx\n";
    EXPECT_EQ(refusal(message), "The message has more than 5000 parts.");
}

}  // namespace
}  // namespace lorvane::mime
