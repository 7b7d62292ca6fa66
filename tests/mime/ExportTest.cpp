#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>

#include "host/TextFunctions.h"
#include "html/HtmlText.h"
#include "mime/Messages.h"

/// What we export is read by another program, Python's email package, to the same.
namespace lorvane::mime {
namespace {

using mailstore::BodyKind;
using mailstore::ItemRecord;
using testing::draft;
using testing::file;
using testing::picture;

std::string hex(std::string_view bytes) {
    std::string out;
    for (const char c : bytes) {
        std::array<char, 3> pair{};
        std::snprintf(pair.data(), pair.size(), "%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
        out += pair.data();
    }
    return out.empty() ? "-" : out;
}

std::string hex(std::u16string_view text) {
    return hex(host::toUtf8(text));
}

std::string line(std::string_view name, std::initializer_list<std::string> words) {
    std::string out(name);
    for (const std::string& word : words) out += " " + word;
    return out + "\n";
}

/// What the script should find in the message of a draft.
std::string expectedOf(const ItemRecord& item) {
    std::string out = line("subject", {hex(item.head.subject)}) + line("unsent", {hex("1")}) + line("date", {hex("2028-01-10T09:00:00+01:00")});
    out += line("from", {hex("Ann Account"), hex("ann@example.org")});
    static constexpr std::array<std::string_view, 3> kinds = {"to", "cc", "bcc"};
    for (std::int32_t type = 1; type <= 3; ++type)
        for (const auto& recipient : item.recipients)
            if (recipient.type == type) out += line(kinds[static_cast<std::size_t>(type - 1)], {hex(recipient.name), hex(recipient.address)});
    const bool html = item.bodyKind == BodyKind::Html;
    out += line("plain", {hex(html ? html::visibleText(item.body) : item.body)});
    if (html) out += line("html", {hex(item.body)});
    for (const bool related : {true, false})
        for (const auto& attachment : item.attachments)
            if (attachment.inlinePicture == related)
                out += line("attachment", {hex(attachment.fileName), hex(attachment.mimeType), hex(attachment.contentId),
                                           hex(related ? "inline" : "attachment"), hex(testing::dataOf(attachment))});
    return out;
}

class Export : public ::testing::Test {
protected:
    Export() : folder_(std::filesystem::temp_directory_path() / ("lorvane_export_" + std::to_string(::getpid()))) {
        std::filesystem::create_directories(folder_);
    }
    ~Export() override { std::filesystem::remove_all(folder_); }

    void add(const ItemRecord& item) { add(testing::write(item), expectedOf(item)); }
    void add(const std::string& message, const std::string& expected) {
        const std::string path = (folder_ / (std::to_string(++count_) + ".eml")).string();
        std::ofstream(path, std::ios::binary) << message;
        std::ofstream(path + ".expected", std::ios::binary) << expected;
        files_ += " " + path;
    }

    void check() {
        const std::string command = "python3 " LORVANE_SOURCE_DIR "/tests/mime/export_check.py" + files_ + " 2>&1";
        std::FILE* pipe = ::popen(command.c_str(), "r");
        ASSERT_TRUE(pipe);
        std::string output;
        std::array<char, 4096> buffer;
        while (const std::size_t size = std::fread(buffer.data(), 1, buffer.size(), pipe)) output.append(buffer.data(), size);
        const int status = ::pclose(pipe);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << output;
    }

private:
    std::filesystem::path folder_;
    std::string files_;
    int count_ = 0;
};

TEST_F(Export, PlainHtmlPicturesAndFilesReadTheSame) {
    add(draft(BodyKind::Plain, u"Dear John,\r\n\r\nthis is a caf\u00E9.\r\n"));
    add(draft(BodyKind::Plain, u"lone\rcarriage\nreturn and no end 🎉"));
    add(draft(BodyKind::Plain, u""));
    add(draft(BodyKind::Html, u"<HTML><BODY>Dear <B>John</B>,<BR>\r\nyours \uD55C</BODY></HTML>"));
    ItemRecord item = draft(BodyKind::Html, u"<HTML><BODY><IMG SRC=\"cid:logo@1\">\rx\n</BODY></HTML>");
    item.attachments = {picture(u"logo.png", u"logo@1", std::string("\x89PNG\0\r\n", 7)),
                        file(u"Größe und mehr, sehr lang und länger als eine Zeile.txt", u"text/plain", "a\nb\r\nc\r"),
                        file(u"empty.bin", u"application/octet-stream", "")};
    add(item);
    check();
}

TEST_F(Export, HeadersReadTheSame) {
    ItemRecord item = draft(BodyKind::Plain, u"x");
    item.head.subject = u"Grüße an alle: 한국말로 하는 것 und noch viel mehr, damit es über die Zeile geht 🎉";
    item.recipients = {{u"Public, \"John\"", u"john@example.com", u"SMTP", 1, true},
                       {u"plain@example.com", u"plain@example.com", u"SMTP", 1, true},
                       {u"Jürgen Müller-Lüdenscheidt", u"j@example.com", u"SMTP", 2, true},
                       {u"Hidden (one)", u"h@example.com", u"SMTP", 3, true}};
    for (int i = 0; i < 30; ++i) item.recipients.push_back({u"Some Body", u"body" + host::decimal(i) + u"@mail.example", u"SMTP", 2, true});
    add(item);
    item.head.subject = u"two  blanks, a =?utf-8?q?look-alike?= and a long tail of plain words that has to be folded somewhere in here";
    add(item);
    check();
}

TEST_F(Export, ManyTextsReadTheSame) {
    std::mt19937 random(5);
    static const std::u16string scraps[] = {
        u"a", u" ", u"\t", u"\r\n", u"\r", u"\n", u"From ", u"\r\nFrom x", u".\r\n", u"--", u"=", u"\u00E9", u"\uD55C", u"🎉", std::u16string(90, u'x')};
    for (int round = 0; round < 60; ++round) {
        std::u16string text;
        for (int i = 0; i < 40; ++i) text += scraps[std::uniform_int_distribution<std::size_t>(0, std::size(scraps) - 1)(random)];
        add(draft(round % 2 ? BodyKind::Plain : BodyKind::Html, text));
    }
    check();
}

TEST_F(Export, AChangedOriginalReadsTheSame) {
    ItemRecord first = draft(BodyKind::Html, u"<HTML><BODY>old <IMG SRC=\"cid:p\"></BODY></HTML>");
    first.attachments = {picture(u"p.png", u"p", "png"), file(u"f.txt", u"text/plain", "file")};
    ItemRecord item = testing::read(testing::write(first));
    item.head.subject = u"changed ä";
    item.body = u"<HTML><BODY>new \uD55C <IMG SRC=\"cid:p\"><IMG SRC=\"cid:q\"></BODY></HTML>";
    item.bodyChanged = true;
    item.attachments.push_back(picture(u"q.png", u"q", "more"));
    item.attachments.push_back(file(u"g.bin", u"application/x-g", "added"));
    add(item);
    check();
}

}  // namespace
}  // namespace lorvane::mime
