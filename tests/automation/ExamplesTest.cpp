#include <gtest/gtest.h>

#include "automation/ServeProcess.h"

/// The programs of examples/, run against the built program.
namespace lorvane::automation::test {
namespace {

class Examples : public testing::Test {
protected:
    std::filesystem::path store() const { return place.path() / "store"; }
    Printed run(const std::string& script, std::vector<std::string> arguments) const {
        for (const std::string& word : {std::string(LORVANE_PROGRAM), std::string("--store"), store().string(), std::string("--now"),
                                        std::string("2028-01-10T09:00"), std::string("serve")})
            arguments.push_back(word);
        return runExample(script, arguments);
    }
    std::filesystem::path file(const std::string& name, std::string_view content) const {
        const std::filesystem::path path = place.path() / name;
        std::filesystem::create_directories(path.parent_path());
        mailstore::test::writeBytes(path, {content.begin(), content.end()});
        return path;
    }
    mailstore::test::TempFolder place;
};

TEST_F(Examples, TheChooserIsDrivenAsAPersonWould) {
    const Printed printed = run("chooser.py", {"Quote (Sample)"});
    EXPECT_EQ(printed.status, 0) << printed.text;
    EXPECT_TRUE(printed.text.starts_with("Dear John")) << printed.text;
    const Printed none = run("chooser.py", {"No such template"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.text, "there is no template 'No such template'\n");
}

TEST_F(Examples, AReceivedMailIsAnsweredWithATemplateAboveItsText) {
    std::size_t answers = 0;
    for (const auto& [type, text] : {std::pair("text/plain", "How much is it?\r\n"), {"text/html", "<html><body>How <b>much</b> is it?</body></html>"}}) {
        const auto mail = file("received.eml", std::string("From: Jane Sender <jane@example.com>\r\nTo: user@localhost\r\nSubject: A question\r\n") +
                                                   "Date: Mon, 10 Jan 2028 08:00:00 +0000\r\nMIME-Version: 1.0\r\nContent-Type: " + type + "\r\n\r\n" + text);
        Printed printed = run("answer_received.py", {mail.string(), "Quote (Sample)"});
        EXPECT_EQ(printed.status, 0) << printed.text;
        std::erase(printed.text, '\r');
        EXPECT_TRUE(printed.text.starts_with("To: Jane Sender\nSubject: RE: A question\n\nDear Jane")) << printed.text;
        const std::size_t quoted = printed.text.find(
            "-----Original Message-----\n"
            "From: Jane Sender [mailto:jane@example.com]\n"
            "Sent: Monday, January 10, 2028 8:00:00 AM\n"
            "To: user@localhost\nSubject: A question\n\nHow much is it?");
        EXPECT_NE(quoted, std::string::npos) << printed.text;
        EXPECT_EQ(printed.text.find("[FirstName]"), std::string::npos);
        EXPECT_EQ(itemCount(store(), u"Drafts"), ++answers);
    }
}

TEST_F(Examples, AFolderOfHtmlFilesBecomesTemplatesListedByCategory) {
    file("Sales/Offer.html", "<html><body><p>Dear [FirstName]</p></body></html>");
    file("Sales/Thanks.html", "<html><body><p>Thank you, [FirstName] \xE2\x98\x83</p></body></html>");
    file("Sales/notes.txt", "no template");
    const Printed made = run("import_html.py", {(place.path() / "Sales").string()});
    EXPECT_EQ(made.status, 0) << made.text;
    EXPECT_EQ(made.text, "2 templates\n");
    EXPECT_EQ(itemCount(store(), u"Lorvane"), 5U);
    EXPECT_EQ(itemCount(store(), u"Drafts"), 0U);
    const Printed listed = run("list_by_category.py", {});
    EXPECT_EQ(listed.status, 0) << listed.text;
    EXPECT_NE(listed.text.find("Sales\n  Offer\n  Thanks\n"), std::string::npos) << listed.text;
    const Printed inserted = run("chooser.py", {"Thanks"});
    EXPECT_TRUE(inserted.text.starts_with("Thank you, John \xE2\x98\x83")) << inserted.text;
}

}  // namespace
}  // namespace lorvane::automation::test
