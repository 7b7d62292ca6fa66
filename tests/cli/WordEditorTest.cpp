#include <gtest/gtest.h>

#include "cli/Program.h"

/// `insert` with Word as the editor of all mails: the text comes by the clipboard into the same place.
namespace lorvane::cli::test {
namespace {

using Words = Program::Words;

constexpr const char* versions[] = {"9", "10", "10.0.0.6515", "11"};
constexpr const char* bold = "<html><head><title>t</title></head><body class=\"mine\"><p>Dear <b>[FirstName]</b> &amp; all</p></body></html>";

class WordEditor : public testing::TestWithParam<const char*> {
protected:
    WordEditor() { lorvane.addHtml("Bold", bold); }

    Words with(Words words, const char* editor) const {
        words.insert(words.begin(), {"insert", "--editor", editor, "--host-version", GetParam()});
        return words;
    }
    /// The message of the HTML editor, which Word's must be.
    void expectTheSame(const Words& words) const {
        const std::string message = lorvane.done(with(words, "html"));
        EXPECT_EQ(lorvane.done(with(words, "word")), message);
    }

    Program lorvane;
};

INSTANTIATE_TEST_SUITE_P(Hosts, WordEditor, testing::ValuesIn(versions));

TEST_P(WordEditor, WithFormatIntoANewMail) {
    const std::string message = lorvane.done(with({"--template", "Bold", "--with-format", "--to", "John Public <john@example.com>"}, "word"));
    EXPECT_NE(message.find("<p>Dear <b>John</b> &amp; all</p>"), std::string::npos) << message;
    expectTheSame({"--template", "Bold", "--with-format", "--to", "John Public <john@example.com>"});
}

TEST_P(WordEditor, WithFormatIntoADraftAtAPlaceOfItsText) {
    lorvane.file("draft.eml", draft("<html><body><p>one</p><p>two</p></body></html>\r\n", "MIME-Version: 1.0\r\nContent-Type: text/html; charset=utf-8\r\n"));
    for (const char* caret : {"body", "body:2", "body:4", "body:-1"})
        expectTheSame({"--template", "Bold", "--with-format", "--into", "draft.eml", "--caret", caret});
}

TEST_P(WordEditor, TextOnly) {
    expectTheSame({"--template", "Bold", "--to", "John Public <john@example.com>"});
    expectTheSame({"--template", "Quote (Sample)", "--to", "John Public <john@example.com>"});
    lorvane.file("plain.eml", draft("one\r\ntwo\r\n"));
    for (const char* caret : {"body", "body:4", "body:-1"}) expectTheSame({"--template", "Bold", "--into", "plain.eml", "--caret", caret});
}

TEST_P(WordEditor, APlainDraftGetsTheTextAlone) {
    lorvane.file("plain.eml", draft("one\r\ntwo\r\n"));
    expectTheSame({"--template", "Bold", "--with-format", "--into", "plain.eml", "--caret", "body:4"});
}

TEST_P(WordEditor, PicturesAndFilesComeAlong) {
    lorvane.file("list.txt", "one, two");
    lorvane.done({"template", "add", "--subject", "Files", "--html", "-", "--attach", "list.txt"}, {.input = bold});
    expectTheSame({"--template", "Files", "--with-format"});
    expectTheSame({"--template", "Files"});
}

TEST_P(WordEditor, WithTheCaretInTheSubjectNothingIsInserted) {
    const std::size_t items = lorvane.itemCount();
    lorvane.file("draft.eml", draft("<html><body>text</body></html>", "MIME-Version: 1.0\r\nContent-Type: text/html\r\n"));
    lorvane.file("out.eml", "as it was");
    for (Words words :
         {Words{"--template", "Bold", "--with-format"}, Words{"--template", "Bold"}, Words{"--template", "Bold", "--with-format", "--into", "draft.eml"}}) {
        words.insert(words.end(), {"--caret", "subject", "--out", "out.eml"});
        const Ended ended = lorvane(with(words, "word"));
        EXPECT_EQ(ended, (Ended{1, "", "lorvane: nothing was inserted: the caret was not in the body, or there was no text\n"}));
        EXPECT_EQ(lorvane.content("out.eml"), "as it was");
    }
    EXPECT_EQ(lorvane.itemCount(), items);
}

TEST_P(WordEditor, AReceivedMailIsRefused) {
    lorvane.file("received.eml", "From: Jane <jane@example.com>\r\nSubject: Hello\r\n\r\nHello\r\n");
    EXPECT_EQ(lorvane(with({"--template", "Bold", "--with-format", "--into", "received.eml"}, "word")), (Ended{1, "", std::string(receivedRefusal)}));
}

TEST_P(WordEditor, TemplatesAreEditedInItToo) {
    lorvane.done({"template", "edit", "Bold", "--html", "-", "--editor", "word", "--host-version", GetParam()},
                 {.input = "<html><body><i>new</i></body></html>"});
    EXPECT_EQ(lorvane.templates().back().body, u"<html><body><i>new</i></body></html>");
}

}  // namespace
}  // namespace lorvane::cli::test
