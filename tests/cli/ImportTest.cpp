#include <gtest/gtest.h>

#include <algorithm>

#include "cli/Program.h"
#include "host/TextFunctions.h"

/// `import`.
namespace lorvane::cli::test {
namespace {

namespace tags = mailstore::tags;

constexpr const char* mail = "From: Jane <jane@example.com>\r\nTo: a@example.com\r\nSubject: Hello\r\nDate: Mon, 10 Jan 2028 08:00:00 +0000\r\n\r\nText\r\n";

TEST(Import, AMessageBecomesATemplateAndKeepsItsData) {
    const Program lorvane;
    lorvane.file("hello.eml", mail);
    const Ended ended = lorvane({"import", "hello.eml"});
    EXPECT_EQ(ended, (Ended{0, "", "lorvane: 1 of 1 messages imported\n"}));
    const auto made = lorvane.templates().back();
    EXPECT_EQ(made.head.subject, u"Hello");
    EXPECT_EQ(std::get<std::u16string>(made.properties.at(tags::SenderAddress)), u"jane@example.com");
    EXPECT_EQ(std::get<std::u16string>(made.properties.at(tags::ReceivedByName)), u"Lorvane User");
    EXPECT_EQ(made.properties.count(tags::ClientSubmitTime), 1u);
    EXPECT_NE(lorvane.done({"insert", "--template", "Hello"}).find("\r\n\r\nText"), std::string::npos);
}

TEST(Import, AFolderOfMessagesInTheOrderOfTheirNames) {
    const Program lorvane;
    std::filesystem::create_directories(lorvane.folder() / "in here" / "deeper.eml");
    for (const char* name : {"in here/b.eml", "in here/a.EML", "in here/notes.txt"}) lorvane.file(name, "Subject: " + std::string(name) + "\r\n\r\ntext");
    EXPECT_EQ(lorvane({"import", "in here"}).err, "lorvane: 2 of 2 messages imported\n");
    const auto made = lorvane.templates();
    ASSERT_EQ(made.size(), 5u);
    EXPECT_EQ(made[3].head.subject, u"in here/a.EML");
    EXPECT_EQ(made[4].head.subject, u"in here/b.eml");
}

TEST(Import, FromStandardInput) {
    const Program lorvane;
    EXPECT_EQ(lorvane({"import", "-"}, {.input = mail}).status, 0);
    EXPECT_EQ(lorvane.templates().size(), 4u);
}

TEST(Import, WhatCannotBeTakenIsToldAndTheRestComesIn) {
    const Program lorvane;
    lorvane.file("a.eml", mail);
    lorvane.file("long.eml", "Subject: " + std::string(601, 'x') + "\r\n\r\ntext");
    lorvane.file("noise.eml", std::string("\0\1\2\3", 4));
    lorvane.file("z.eml", mail);
    const Ended ended = lorvane({"import", "a.eml", "long.eml", "noise.eml", "missing.eml", "z.eml"});
    EXPECT_EQ(ended.status, 1) << ended;
    EXPECT_EQ(ended.out, "");
    for (const char* line : {"lorvane: long.eml: left out, its subject has over 600 characters\n", "lorvane: noise.eml: The file is not a mail",
                             "lorvane: cannot read missing.eml: No such file or directory\n", "lorvane: 2 of 5 messages imported\n"})
        EXPECT_NE(ended.err.find(line), std::string::npos) << ended;
    EXPECT_EQ(lorvane.templates().size(), 5u);
    EXPECT_EQ(lorvane.done({"templates", "--search", "hello"}), "Hello\nHello\n");
}

TEST(Import, AMessageOfTheMailHostsOwnFormatIsNotTakenForMail) {
    const Program lorvane;
    const Ended ended = lorvane({"import", (dataFolder() / "msg" / "strangeDate.msg").string()});
    EXPECT_EQ(ended.status, 1) << ended;
    EXPECT_NE(ended.err.find("strangeDate.msg: The file is not a mail"), std::string::npos) << ended;
}

TEST(Import, IntoAFolderByItsPath) {
    const Program lorvane;
    lorvane.file("hello.eml", mail);
    EXPECT_EQ(lorvane({"import", "--folder", "\\Personal Folders\\Meravix Settings\\Lorvane", "hello.eml"}).status, 0);
    EXPECT_EQ(lorvane({"import", "--folder", "\\Personal Folders\\Inbox", "hello.eml"}).status, 0);
    EXPECT_EQ(lorvane.templates().size(), 4u);
    EXPECT_EQ(lorvane.itemsIn("Inbox").size(), 1u);
    for (const char* path : {"\\Personal Folders\\No such", "\\No such\\Inbox", "\\", "Inbox"}) {
        const Ended ended = lorvane({"import", "--folder", path, "hello.eml"});
        EXPECT_EQ(ended, (Ended{1, "", "lorvane: there is no folder " + std::string(path) + "\n"}));
    }
}

TEST(Import, AFolderWithoutMessagesIsRefused) {
    const Program lorvane;
    std::filesystem::create_directories(lorvane.folder() / "empty");
    const Ended ended = lorvane({"import", "empty"});
    EXPECT_EQ(ended, (Ended{1, "", "lorvane: there are no messages (.eml, mbox) in the folder empty\n"}));
}

}  // namespace
}  // namespace lorvane::cli::test
