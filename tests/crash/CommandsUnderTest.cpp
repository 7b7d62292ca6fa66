#include "crash/CommandsUnderTest.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "host/TextFunctions.h"

namespace lorvane::crash {

namespace {

using Words = Program::Words;
using cli::test::draft;

constexpr std::string_view htmlDraft = "<HTML><BODY><P>Hello <I>there</I></P></BODY></HTML>";

std::string roundText(std::uint32_t round) {
    return "Round " + std::to_string(round);
}

/// An insertion; nothing in it differs from round to round.
CommandUnderTest insertion(std::string name, Words words, int status = 0) {
    return {std::move(name), status, [words](const Program&, std::uint32_t) { return words; }};
}

/// The subject of a template that `template add` made in some round, made now where there is none.
std::string someTemplate(const Program& program, std::uint32_t round) {
    for (const mailstore::ItemRecord& record : program.templates()) {
        if (record.head.subject.starts_with(u"Round ") && record.head.categories == u"Rounds") return host::toUtf8(record.head.subject);
    }
    program.done({"template", "add", "--subject", roundText(round), "--category", "Rounds", "--html", "letter.html", "--attach", "picture.png"});
    return roundText(round);
}

Words addTemplate(const Program&, std::uint32_t round) {
    return {"template", "add", "--subject", roundText(round), "--category", "Rounds", "--html", "letter.html", "--attach", "picture.png"};
}

Words deleteTemplate(const Program& program, std::uint32_t round) {
    return {"template", "delete", someTemplate(program, round)};
}

Words editTemplate(const Program& program, std::uint32_t round) {
    program.file("edited.txt", roundText(round));
    return {"template", "edit", "Edited", "--text", "edited.txt", "--category", roundText(round)};
}

Words import(const Program& program, std::uint32_t round) {
    std::filesystem::remove_all(program.folder() / "letters");
    std::filesystem::create_directories(program.folder() / "letters");
    for (const char* number : {"1", "2", "3"}) {
        program.file(std::string("letters/") + number + ".eml",
                     std::string("Subject: Letter ") + number + " of " + roundText(round) + "\r\nContent-Type: text/html\r\n\r\n" + std::string(htmlDraft));
    }
    return {"import", "letters"};
}

Words addMessage(const Program& program, std::uint32_t round) {
    program.file("message.eml", draft(roundText(round)));
    return {"template", "add", "--eml", "message.eml", "--subject", "Message of " + roundText(round), "--category", "Messages", "--attach", "terms.txt"};
}

}  // namespace

void prepareStore(const Program& program) {
    program.file("letter.html", "<B>Dear</B> [FirstName], see <IMG SRC=\"picture.png\">");
    program.file("picture.png", std::string(6000, 'p'));
    program.file("terms.txt", "Terms");
    program.file("draft.eml", draft(htmlDraft, "Content-Type: text/html\r\n"));
    program.addText("Plain", "Dear [FirstName]");
    program.addText("Edited", "Round 0");
    program.done({"template", "add", "--subject", "Letter", "--html", "letter.html", "--attach", "picture.png", "--attach", "terms.txt"});
    program.done(editTemplate(program, 0));  // a template that was edited before
    program.done({"settings", "set", "Rounds", "Begun"});
}

const std::vector<CommandUnderTest>& commandsUnderTest() {
    static const std::vector<CommandUnderTest> commands = {
        insertion("insert text", {"insert", "--template", "Plain", "--to", "John Public <john@example.com>", "--out", "out.eml"}),
        insertion("insert with format", {"insert", "--template", "Letter", "--with-format", "--into", "draft.eml", "--caret", "body:6", "--out", "out.eml"}),
        insertion("insert and keep", {"insert", "--template", "Letter", "--with-format", "--to", "Mary Major <mary@example.com>", "--keep"}),
        insertion("insert into rich text", {"--editor", "rich", "insert", "--template", "Letter", "--with-format", "--to", "Mary Major <mary@example.com>"}),
        insertion("insert with Word", {"--editor", "word", "insert", "--template", "Letter", "--with-format", "--into", "draft.eml", "--out", "out.eml"}),
        insertion("insert with the caret in the subject", {"insert", "--template", "Letter", "--with-format", "--into", "draft.eml", "--caret", "subject"}, 1),
        {"template add", 0, addTemplate},
        {"template add from a message", 0, addMessage},
        {"template edit", 0, editTemplate},
        {"template delete", 0, deleteTemplate},
        {"import", 0, import},
    };
    return commands;
}

std::string withoutRound(std::string text) {
    constexpr std::string_view front = "Round ";
    for (std::size_t at = 0; (at = text.find(front, at)) != std::string::npos;) {
        at += front.size();
        const std::size_t end = std::min(text.find_first_not_of("0123456789", at), text.size());
        text.replace(at, end - at, "@");
    }
    return text;
}

}  // namespace lorvane::crash
