#include <gtest/gtest.h>

#include "InsertRig.h"
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
    void expectInsertionAs(const std::function<void(respond::frmEmail&)>& prepare, std::string_view golden) {
        leaveOutMachine();
        openChooserAs(run, prepare, [&](ScriptedUser& she) {
            run.recorder().clear();
            she.Click(chooserName, insertText);
            expectLog(golden);
        });
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
    openOther(run, postKind, html(document(u"ab")));
    expectInsertion(u"Bold", insertWithFormat, "insert-html-into-post.log");
}

TEST_F(TranscriptTest, TextIntoAPost) {
    openOther(run, postKind, plain(u"ab"));
    expectInsertion(u"Bold", insertText, "insert-text-into-post.log");
}

TEST_F(TranscriptTest, ARichPost) {
    openOther(run, postKind, rich(u"ab"));
    expectInsertion(u"Bold", insertText, "insert-into-rich-post.log");
}

TEST_F(TranscriptTest, HtmlWithTheCaretInThePostsSubject) {
    run.focus(openOther(run, postKind, html(document(u"ab"))), model::EditorFieldName::Subject);
    expectInsertion(u"Bold", insertWithFormat, "insert-html-caret-in-posts-subject.log");
}

TEST_F(TranscriptTest, TextIntoAnAppointment) {
    openOther(run, appointmentKind, plain(u"ab"), 0, {johnPublic()});
    expectInsertion(u"Bold", insertText, "insert-text-into-appointment.log");
}

TEST_F(TranscriptTest, AContact) {
    openOther(run, {item_class::Contact, u"IPM.Contact"}, plain(u"ab"));
    expectInsertion(u"Plain", insertText, "insert-into-contact.log");
}

TEST_F(TranscriptTest, TextIntoATask) {
    openOther(run, taskKind, plain(u"ab"));
    expectInsertion(u"Bold", insertText, "insert-text-into-task.log");
}

TEST_F(TranscriptTest, HtmlIntoATask) {
    openOther(run, taskKind, plain(u"ab"));
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

/// The two modes in which nothing goes into an open item.
TEST_F(TranscriptTest, TheModeForANewMail) {
    expectInsertionAs([](respond::frmEmail& form) { form.NewMailUsingTempl = true; }, "insert-new-mail-mode.log");
}

TEST_F(TranscriptTest, TheModeForAnAnswer) {
    expectInsertionAs(
        [](respond::frmEmail& form) {
            form.ReplyUsingTempl = true;
            form.ReplyKind = 1;
        },
        "insert-reply-mode.log");
}

class WordTranscriptTest : public TranscriptTest {
protected:
    explicit WordTranscriptTest(std::u16string_view version = u"11.0.0.5510") : TranscriptTest(atVersion(version, model::EditorKind::Word)) {}
};

TEST_F(WordTranscriptTest, HtmlIntoAWordMail) {
    openAnyDraft(run, html(document(u"ab")), 1);
    expectInsertion(u"Bold", insertWithFormat, "insert-html-into-word.log");
}

TEST_F(WordTranscriptTest, TextIntoAWordMail) {
    openAnyDraft(run, html(document(u"ab")), 1);
    expectInsertion(u"Bold", insertText, "insert-text-into-word.log");
}

TEST_F(WordTranscriptTest, ARichWordMail) {
    openAnyDraft(run, rich(u"ab"), 1);
    expectInsertion(u"Bold", insertText, "insert-into-rich-word.log");
}

TEST_F(WordTranscriptTest, WithTheCaretInTheSubject) {
    run.focus(openAnyDraft(run, html(document(u"ab")), 1), model::EditorFieldName::Subject);
    expectInsertion(u"Bold", insertWithFormat, "insert-caret-not-in-word.log");
}

class GuardedWordTranscriptTest : public WordTranscriptTest {
protected:
    GuardedWordTranscriptTest() : WordTranscriptTest(u"10.0.0.6515") {}
};

TEST_F(GuardedWordTranscriptTest, HtmlIntoAWordMail) {
    openAnyDraft(run, html(document(u"ab")), 1);
    expectInsertion(u"Bold", insertWithFormat, "insert-html-into-guarded-word.log");
}

}  // namespace
}  // namespace lorvane::support
