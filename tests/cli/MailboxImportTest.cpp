#include <gtest/gtest.h>

#include <algorithm>

#include "cli/Program.h"
#include "host/TextFunctions.h"
#include "mailstore/LargestFile.h"

/// `import` of mailbox files.
namespace lorvane::cli::test {
namespace {

namespace tags = mailstore::tags;

std::string mailWith(const std::string& subject, const std::string& text = "Text\n") {
    return "From: Jane <jane@example.com>\nTo: a@example.com\nSubject: " + subject + "\nDate: Mon, 10 Jan 2028 08:00:00 +0000\n\n" + text;
}

std::string mailbox(const std::vector<std::string>& mails) {
    std::string all;
    for (const std::string& mail : mails) all += "From jane@example.com Mon Jan 10 08:00:00 2028\n" + mail + "\n";
    return all;
}

std::string withCrlf(const std::string& text) {
    return host::toUtf8(host::Replace(host::fromUtf8(text), u"\n", u"\r\n"));
}

/// The subjects of the templates beside the samples, in the order in which they came.
std::vector<std::u16string> subjects(const Program& lorvane) {
    std::vector<std::u16string> all;
    for (const auto& item : lorvane.templates())
        if (!item.head.subject.ends_with(u"(Sample)")) all.push_back(item.head.subject);
    return all;
}

using Subjects = std::vector<std::u16string>;

TEST(MailboxImport, EachMessageComesInInItsOrderAsAFileOfItsOwnWould) {
    const Program lorvane;
    lorvane.file("box", mailbox({mailWith("Zwei", "one\n\n>From here\n>>From there\n"), mailWith("Eins"), mailWith("Drei")}));
    EXPECT_EQ(lorvane({"import", "box"}), (Ended{0, "", "lorvane: 3 of 3 messages imported\n"}));
    EXPECT_EQ(subjects(lorvane), (Subjects{u"Zwei", u"Eins", u"Drei"}));
    lorvane.file("alone.eml", mailWith("Zwei", "one\n\nFrom here\n>From there\n"));
    lorvane.done({"import", "alone.eml"});
    auto mails = lorvane.templates();
    auto fromBox = mails[3], alone = mails[6];
    fromBox.head.entryId = alone.head.entryId;
    EXPECT_EQ(fromBox, alone);
    EXPECT_EQ(std::get<std::u16string>(fromBox.properties.at(tags::SenderAddress)), u"jane@example.com");
    EXPECT_NE(lorvane.done({"template", "show", "Zwei", "--id", host::toUtf8(mails[3].head.entryId)}).find("\n\nFrom here\n>From there\n"), std::string::npos);
}

TEST(MailboxImport, LineEndsOfEitherKind) {
    const Program lorvane;
    lorvane.file("crlf.mbox", withCrlf(mailbox({mailWith("One"), mailWith("Two")})));
    EXPECT_EQ(lorvane({"import", "crlf.mbox"}).err, "lorvane: 2 of 2 messages imported\n");
    EXPECT_EQ(subjects(lorvane), (Subjects{u"One", u"Two"}));
    EXPECT_EQ(lorvane.templates().back().body, u"Text\r\n");
}

TEST(MailboxImport, FromStandardInput) {
    const Program lorvane;
    EXPECT_EQ(lorvane({"import", "-"}, {.input = mailbox({mailWith("One"), mailWith("Two")})}).status, 0);
    EXPECT_EQ(subjects(lorvane), (Subjects{u"One", u"Two"}));
}

TEST(MailboxImport, TheFirstLineTellsAMailboxWhateverItsName) {
    const Program lorvane;
    lorvane.file("box.eml", mailbox({mailWith("One"), mailWith("Two")}));
    lorvane.file("single.mbox", mailWith("Three"));
    lorvane.file("old.eml", "From : Jane <jane@example.com>\nSubject: Four\n\nFrom here\n");
    EXPECT_EQ(lorvane({"import", "box.eml", "single.mbox", "old.eml"}).err, "lorvane: 4 of 4 messages imported\n");
    EXPECT_EQ(subjects(lorvane), (Subjects{u"One", u"Two", u"Three", u"Four"}));
    EXPECT_EQ(lorvane.templates().back().body, u"From here\r\n") << "a message alone keeps its lines";
}

TEST(MailboxImport, WhatIsNoMessageIsToldByItsNumberAndTheRestComesIn) {
    const Program lorvane;
    lorvane.file("box", mailbox({mailWith("One"), "", "no header at all\n", mailWith(std::string(601, 'x')), std::string("A\0: b\n\n", 7), mailWith("Six")}));
    const Ended ended = lorvane({"import", "box"});
    EXPECT_EQ(ended.status, 1) << ended;
    EXPECT_EQ(ended.out, "");
    for (const char* line : {"lorvane: box, message 2: The file is empty.\n", "lorvane: box, message 3: The file is not a mail",
                             "lorvane: box, message 4: left out, its subject has over 600 characters\n", "lorvane: box, message 5: The file is not a mail",
                             "lorvane: 2 of 6 messages imported\n"})
        EXPECT_NE(ended.err.find(line), std::string::npos) << ended;
    EXPECT_EQ(subjects(lorvane), (Subjects{u"One", u"Six"}));
}

TEST(MailboxImport, AFolderOfBothKinds) {
    const Program lorvane;
    std::filesystem::create_directory(lorvane.folder() / "in");
    lorvane.file("in/c.eml", mailWith("C"));
    lorvane.file("in/b.MBOX", mailbox({mailWith("B1"), mailWith("B2")}));
    lorvane.file("in/Archive", mailbox({mailWith("A1"), mailWith("A2")}));
    lorvane.file("in/Archive.index", "not mail");
    lorvane.file("in/notes.txt", "Subject: not taken\n\ntext");
    lorvane.file("in/empty", "");
    EXPECT_EQ(lorvane({"import", "in"}).err, "lorvane: 5 of 5 messages imported\n");
    EXPECT_EQ(subjects(lorvane), (Subjects{u"A1", u"A2", u"B1", u"B2", u"C"}));
}

TEST(MailboxImport, IntoAFolderByItsPath) {
    const Program lorvane;
    lorvane.file("box", mailbox({mailWith("One"), mailWith("Two")}));
    EXPECT_EQ(lorvane({"import", "--folder", "\\Personal Folders\\Inbox", "box"}).status, 0);
    EXPECT_EQ(lorvane.itemsIn("Inbox").size(), 2u);
    EXPECT_EQ(subjects(lorvane), Subjects());
}

TEST(MailboxImport, AFaultOfTheStoreKeepsWhatCameInBefore) {
    const Program lorvane;
    lorvane.file("box", mailbox({mailWith("One"), mailWith("Two", std::string(3'000'000, 'x') + "\n"), mailWith("Three")}));
    lorvane.done({"templates"});
    const Ended ended = [&] {
        const mailstore::test::LargestFile limit(1'000'000);
        return lorvane({"import", "box"});
    }();
    EXPECT_EQ(ended.status, 3) << ended;
    EXPECT_NE(ended.err.find("disk is full"), std::string::npos) << ended;
    EXPECT_EQ(subjects(lorvane), (Subjects{u"One"}));
}

TEST(MailboxImport, RealMailsInOneFileComeInAsTheyDoAlone) {
    const Program alone, together;
    std::string box;
    std::size_t count = 0;
    for (const auto& mail : realMails()) {
        std::string text = textOf(mail);
        if (text.starts_with("From ") && !text.starts_with("From  :")) text.erase(0, text.find('\n') + 1);
        if (text.empty() || text.back() != '\n') text += '\n';
        if (text.starts_with("From ") || text.find("\nFrom ") != std::string::npos || text.find("\n>From ") != std::string::npos) continue;
        alone.file("mail.eml", text);
        EXPECT_EQ(alone({"import", "mail.eml"}).status, 0) << mail;
        box += "From x@example.com Mon Jan 10 08:00:00 2028\n" + text + "\n";
        ++count;
    }
    ASSERT_GT(count, 40u);
    together.file("box", box);
    EXPECT_EQ(together({"import", "box"}).status, 0);
    auto expected = alone.templates(), found = together.templates();
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t index = 0; index < found.size(); ++index) {
        found[index].head.entryId = expected[index].head.entryId;
        EXPECT_TRUE(found[index] == expected[index]) << host::toUtf8(expected[index].head.subject);
    }
}

}  // namespace
}  // namespace lorvane::cli::test
