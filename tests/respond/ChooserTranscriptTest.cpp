#include <gtest/gtest.h>

#include "ChooserRig.h"
#include "respond/FurtherWindows.h"
#include "store/FoldersRig.h"
#include "support/GoldenText.h"

/// The order of host calls behind the chooser's buttons, as goldens; without the cells of the tables.
namespace lorvane::support {
namespace {

using namespace host;

/// Without what the add-in does for a window of the host that the chooser's last call opens.
std::string untilAWindowOpens(const std::string& log) {
    constexpr std::string_view display = "call MailItem.Display\n";
    const std::size_t at = log.find(display);
    return at == std::string::npos ? log : log.substr(0, at + display.size());
}

class ChooserTranscriptTest : public testing::Test {
protected:
    void SetUp() override {
        run.addTemplate(u"Alpha", html(u"<HTML><BODY><B>First</B></BODY></HTML>"), u"Sales");
        run.addTemplate(u"Beta", plain(u"Second"));
        constexpr std::int32_t applicationData = 26;
        folders_ = {{toUtf8(apartment().machine.files().GetFolderPath(applicationData)), "<data>"}};
        for (const std::u16string_view service : {u"Screen", u"Files", u"Settings", u"Clock", u"Environment", u"Clipboard", u"Region"})
            run.recorder().leaveOut(u"Machine", service);
        for (const std::u16string_view rest : {u"Region", u"Clock", u"Environment", u"Field", u"Fields"}) run.recorder().leaveOut(rest);
        for (const std::u16string_view member : {u"Fields", u"EOF"}) run.recorder().leaveOut(u"Recordset", member);
    }
    /// What an act on the second line does, to the end of its handler.
    void expectCalls(std::string_view golden, const Act& act) {
        openChooser(run, [&](ScriptedUser& she) {
            she.Select(chooserName, u"lstEmails", 1);
            run.recorder().clear();
            act(she);
            expectGolden(std::filesystem::path("respond/golden") / golden, untilAWindowOpens(comparableLog(run.recorder().text(), folders_)));
        });
    }
    void expectClick(std::string_view golden, std::u16string_view button) {
        expectCalls(golden, [button](ScriptedUser& she) { she.Click(chooserName, button); });
    }
    TestRun run{{.instruments = true}};

private:
    std::vector<NamedFolder> folders_;
};

TEST_F(ChooserTranscriptTest, Delete) {
    run.user().AnswerNext({msgbox::Yes});
    expectClick("chooser-delete.log", u"cmdDelete");
}

TEST_F(ChooserTranscriptTest, DeleteThatIsNotConfirmed) {
    expectClick("chooser-delete-refused.log", u"cmdDelete");
}

TEST_F(ChooserTranscriptTest, NewGoesBehindTheChoosersEnd) {
    expectClick("chooser-new.log", u"cmdNew");
}

TEST_F(ChooserTranscriptTest, EditGoesBehindTheChoosersEnd) {
    expectClick("chooser-edit.log", u"cmdEdit");
}

TEST_F(ChooserTranscriptTest, TextIsLoggedWhenItIsCopied) {
    expectClick("chooser-copy-text.log", u"cmdCopyToClipBoard");
}

TEST_F(ChooserTranscriptTest, HtmlIsLoggedWhenItIsCopied) {
    expectClick("chooser-copy-html.log", u"cmdCopyHTMLToClipB");
}

TEST_F(ChooserTranscriptTest, Preview) {
    expectCalls("chooser-preview.log", [](ScriptedUser& she) { she.Select(chooserName, u"lstEmails", 0); });
}

TEST_F(ChooserTranscriptTest, Category) {
    expectCalls("chooser-category.log", [](ScriptedUser& she) { she.Select(chooserName, u"cmbCategories", 1); });
}

TEST_F(ChooserTranscriptTest, Categorize) {
    respond::furtherWindows().categorizeTemplate = [this](const MailItem& item) {
        run.recorder().note(item.Subject() == u"Beta" ? u"the save window, over Beta" : u"the save window, over another");
        return true;
    };
    expectClick("chooser-categorize.log", u"cmdCategorize");
}

TEST_F(ChooserTranscriptTest, AnotherFolder) {
    const MAPIFolder letters = run.addFolder(topFolder(run), u"Letters");
    run.addTemplate(letters, u"Gamma", plain(u"Third"));
    respond::furtherWindows().pickFolder = [this, id = letters.EntryID()] {
        run.recorder().note(u"the picker");
        return id;
    };
    expectCalls("chooser-pick-folder.log", [](ScriptedUser& she) {
        she.Click(chooserName, u"lblChangeFolder");
        she.Click(chooserName, u"cmdPickfolder");
    });
}

}  // namespace
}  // namespace lorvane::support
