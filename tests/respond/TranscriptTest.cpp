#include <gtest/gtest.h>

#include "InsertRig.h"
#include "mailstore/ItemRecord.h"
#include "support/GoldenText.h"

/// The order of host calls, as goldens: opening, listing, and each way of inserting.
namespace lorvane::support {
namespace {

using namespace host;

class TranscriptTest : public testing::Test {
protected:
    explicit TranscriptTest(RunOptions options = {.instruments = true}) : run(std::move(options)) {}

    void SetUp() override {
        const MailItem bold = run.addTemplate(u"Bold", html(u"<HTML><BODY><B>Dear</B> [FirstName]</BODY></HTML>"), u"Sales");
        run.attach(bold, "logo.png", {1, 2});
        bold.Save();
        run.addTemplate(u"Plain", plain(u"Dear [FirstName]"));
        run.addTemplate(u"Third", plain(u"Text"));
        constexpr std::int32_t applicationData = 26;
        const Files files = apartment().machine.files();
        folders_ = {{toUtf8(files.GetTempPath()), "<temp>"}, {toUtf8(files.GetFolderPath(applicationData)), "<data>"}};
    }
    /// From now on, without what stands behind every text and setting: locale, clock, the services' getters.
    void leaveOutMachine() {
        for (const std::u16string_view service : {u"Screen", u"Files", u"Settings", u"Clock", u"Environment", u"Clipboard", u"Region"})
            run.recorder().leaveOut(u"Machine", service);
        for (const std::u16string_view service : {u"Region", u"Clock", u"Environment"}) run.recorder().leaveOut(service);
    }
    void expectLog(std::string_view name) { expectGolden(std::filesystem::path("respond/golden") / name, comparableLog(run.recorder().text(), folders_)); }
    void expectInsertion(std::u16string_view subject, std::u16string_view button, std::string_view golden) {
        leaveOutMachine();
        openChooser(run, [&](ScriptedUser& she) {
            selectSubject(she, subject);
            run.recorder().clear();
            she.Click(chooserName, button);
            expectLog(golden);
        });
    }
    void openOther(std::int32_t itemClass, std::u16string_view messageClass, const BodyText& body) {
        mailstore::ItemRecord record;
        record.head.itemClass = itemClass;
        record.head.messageClass = messageClass;
        record.bodyKind = body.kind;
        record.body = body.source;
        const Inspector inspector = run.openMail(MailItem(run.driver().import(std::move(record), run.folder(default_folder::Inbox))));
        run.focus(inspector, model::EditorFieldName::Body);
    }
    TestRun run;

private:
    std::vector<NamedFolder> folders_;
};

TEST_F(TranscriptTest, OpeningTheChooser) {
    run.recorder().clear();
    openChooser(run, [&](ScriptedUser&) { expectLog("opening.log"); });
}

TEST_F(TranscriptTest, ListingThreeRows) {
    openChooser(run, [&](ScriptedUser&) {
        run.recorder().clear();
        chooser().UpdateEmailList();
        expectLog("three-row-listing.log");
    });
}

TEST_F(TranscriptTest, TextIntoAnHtmlMail) {
    openDraft(run, html(document(u"ab")), 1);
    expectInsertion(u"Bold", insertText, "insert-text.log");
}

TEST_F(TranscriptTest, HtmlIntoAnHtmlMail) {
    openDraft(run, html(document(u"ab")), 1);
    expectInsertion(u"Bold", insertWithFormat, "insert-html.log");
}

TEST_F(TranscriptTest, HtmlWithTheCaretInTheSubject) {
    run.focus(openDraft(run, html(document(u"ab")), 1), model::EditorFieldName::Subject);
    expectInsertion(u"Bold", insertWithFormat, "insert-html-caret-in-subject.log");
}

TEST_F(TranscriptTest, AReceivedMail) {
    run.openMail(run.receivedMail(u"Question", plain(u"Text")));
    expectInsertion(u"Plain", insertText, "insert-refused.log");
}

TEST_F(TranscriptTest, HtmlIntoAPost) {
    openOther(item_class::Post, u"IPM.Post", html(document(u"ab")));
    expectInsertion(u"Bold", insertWithFormat, "insert-html-into-post.log");
}

TEST_F(TranscriptTest, TextIntoAPost) {
    openOther(item_class::Post, u"IPM.Post", plain(u"ab"));
    expectInsertion(u"Bold", insertText, "insert-text-into-post.log");
}

TEST_F(TranscriptTest, TextIntoATask) {
    openOther(item_class::Task, u"IPM.Task", plain(u"ab"));
    expectInsertion(u"Bold", insertText, "insert-text-into-task.log");
}

TEST_F(TranscriptTest, HtmlIntoATask) {
    openOther(item_class::Task, u"IPM.Task", plain(u"ab"));
    expectInsertion(u"Bold", insertWithFormat, "insert-html-into-task.log");
}

class RichTranscriptTest : public TranscriptTest {
protected:
    RichTranscriptTest() : TranscriptTest({.editor = model::EditorKind::Rich, .instruments = true}) {}
};

TEST_F(RichTranscriptTest, AFormattedTemplateIntoARichMail) {
    run.focus(run.newMail({u"John Public <john@example.com>"}), model::EditorFieldName::Body);
    expectInsertion(u"Bold", insertText, "insert-into-rich.log");
}

}  // namespace
}  // namespace lorvane::support
