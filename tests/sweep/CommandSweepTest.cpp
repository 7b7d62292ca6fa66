#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "CommandTurns.h"
#include "host/TextFunctions.h"
#include "respond/TextInsert.h"

/// Each host call of each command of the program fails once.
namespace lorvane::sweep {
namespace {

using namespace cli;
using support::FaultKind;
using support::PlacedItem;
using Files = SweptCommand::Files;

std::string nameOfFault(const testing::TestParamInfo<FaultKind>& info) {
    return info.param == FaultKind::Error ? "SqliteError" : "SqliteLostObject";
}

class CommandSweep : public testing::TestWithParam<FaultKind> {
protected:
    void run(const SweptCommand& command, From from = From::Connected) { sweepCommand(command, GetParam(), 1, from); }
};
INSTANTIATE_TEST_SUITE_P(EachCall, CommandSweep, testing::Values(FaultKind::Error, FaultKind::LostObject), nameOfFault);

/// Commands over the chooser, which all open it with the same calls: these are swept whole by `templates`, and with them the connection.
class ChooserCommandSweep : public testing::TestWithParam<FaultKind> {
protected:
    void run(const SweptCommand& command) { sweepCommand(command, GetParam(), 3); }
};
INSTANTIATE_TEST_SUITE_P(EveryThirdCall, ChooserCommandSweep, testing::Values(FaultKind::Error, FaultKind::LostObject), nameOfFault);

constexpr std::string_view draftHead =
    "From: Lorvane User <user@localhost>\r\nTo: John Public <john@example.com>\r\nSubject: About us\r\nX-Unsent: 1\r\n"
    "MIME-Version: 1.0\r\n";
constexpr std::string_view htmlDraft = "Content-Type: text/html; charset=utf-8\r\n\r\n<html><body><p>Hello <i>there</i></p></body></html>\r\n";

/// The samples, two templates with a text, and message files.
void prepare(const RunOptions& run, const Files& files) {
    TemplateContent bold;
    bold.subject = "Bold";
    bold.categories = "Sales, Letters";
    bold.html = file(files, "bold.html", "<html><body><b>Dear</b> [FirstName]</body></html>");
    bold.attach = {file(files, "terms.txt", "Terms")};
    ASSERT_EQ(runTemplateAdd(run, bold), ExitStatus::Done);
    TemplateContent text;
    text.subject = "Plain";
    text.text = file(files, "plain.txt", "Dear [FirstName]");
    ASSERT_EQ(runTemplateAdd(run, text), ExitStatus::Done);
    file(files, "draft.eml", std::string(draftHead) + std::string(htmlDraft));
    file(files, "other.txt", "Something else");
    SettingsOptions setting;
    setting.key = "LogTemplate";
    setting.value = "False";
    ASSERT_EQ(runSettingsSet(run, setting), ExitStatus::Done);
}

SweptCommand swept(std::function<ExitStatus(const RunOptions&, const Files&)> command) {
    SweptCommand swept;
    swept.prepare = prepare;
    swept.command = std::move(command);
    // What an opening of the chooser writes for itself: a walk that broke off knows fewer names.
    swept.files = {"store/application-data/Tolvenar", "store/application-data/Tolvenar/Lorvane", "store/application-data/Tolvenar/Lorvane/Private.xml"};
    return swept;
}

InsertOptions insertion(const std::string& subject, bool withFormat) {
    InsertOptions options;
    options.name.subject = subject;
    options.withFormat = withFormat;
    return options;
}

TEST_P(ChooserCommandSweep, InsertTextIntoANewMail) {
    run(swept([](const RunOptions& run, const Files& files) {
        InsertOptions options = insertion("Plain", false);
        options.to = {"John Public <john@example.com>"};
        options.out = (files / "out.eml").string();
        return runInsert(run, options);
    }));
}

TEST_P(ChooserCommandSweep, InsertWithFormatIntoADraft) {
    run(swept([](const RunOptions& run, const Files& files) {
        InsertOptions options = insertion("Bold", true);
        options.into = (files / "draft.eml").string();
        options.caret = "body:6";
        options.out = (files / "out.eml").string();
        return runInsert(run, options);
    }));
}

TEST_P(ChooserCommandSweep, InsertWithWord) {
    SweptCommand command = swept([](const RunOptions& run, const Files& files) {
        InsertOptions options = insertion("Bold", true);
        options.into = (files / "draft.eml").string();
        return runInsert(run, options);
    });
    command.adjust = [](RunOptions& run) { run.editor = "word"; };
    run(command);
}

TEST_P(ChooserCommandSweep, InsertWithTheCaretInTheSubject) {
    SweptCommand command = swept([](const RunOptions& run, const Files& files) {
        InsertOptions options = insertion("Bold", true);
        options.into = (files / "draft.eml").string();
        options.caret = "subject";
        return runInsert(run, options);
    });
    command.status = ExitStatus::Refused;
    run(command);
}

// The mail that is to stay does so however the insertion ends, as its steps saved it.
TEST_P(ChooserCommandSweep, InsertAndKeep) {
    SweptCommand command = swept([](const RunOptions& run, const Files&) {
        InsertOptions options = insertion("Bold", true);
        options.to = {"John Public <john@example.com>"};
        options.keep = true;
        return runInsert(run, options);
    });
    command.mayLeaveNew = [](const PlacedItem& item) {
        return item.folder == u"\\Personal Folders\\Drafts" && item.record.head.subject.empty() && item.record.attachments.size() <= 1 &&
               item.record.recipients.size() == 1;
    };
    run(command);
}

// The walk through the folder skips an item that fails, in silence, and stores a text for a subject that it cannot store.
TEST_P(CommandSweep, Templates) {
    SweptCommand command = swept([](const RunOptions& run, const Files&) { return runTemplates(run, {}); });
    command.mayAlsoGive = [](const Ended& ended) {
        const std::set<std::string> lines = {"Bold",           "Follow Up to Phone Call (Sample)", "Plain",
                                             "Quote (Sample)", "Request for Quote (Sample)",       "[Subject could not be read. It may be corrupted]"};
        std::istringstream out(ended.out);
        for (std::string line, last; std::getline(out, line); last = line)
            if (!lines.contains(line) || line == last) return false;
        return true;
    };
    run(command, From::FirstCall);
}

TEST_P(ChooserCommandSweep, TemplatesSearched) {
    SweptCommand command = swept([](const RunOptions& run, const Files&) {
        TemplatesOptions options;
        options.search = "bo";
        options.category = "Letters";
        options.json = true;
        return runTemplates(run, options);
    });
    command.mayAlsoGive = [](const Ended& ended) { return ended.out == "[]\n"; };
    run(command);
}

TEST_P(CommandSweep, TemplateAdd) {
    run(swept([](const RunOptions& run, const Files& files) {
        TemplateContent content;
        content.subject = "New";
        content.categories = "Sales";
        content.html = (files / "bold.html").string();
        content.attach = {(files / "terms.txt").string()};
        return runTemplateAdd(run, content);
    }));
}

TEST_P(CommandSweep, TemplateAddFromAMessage) {
    run(swept([](const RunOptions& run, const Files& files) {
        TemplateContent content;
        content.subject = "New";
        content.eml = (files / "draft.eml").string();
        return runTemplateAdd(run, content);
    }));
}

TEST_P(ChooserCommandSweep, TemplateShow) {
    run(swept([](const RunOptions& run, const Files&) {
        TemplateShowOptions options;
        options.name.subject = "Bold";
        return runTemplateShow(run, options);
    }));
}

TEST_P(ChooserCommandSweep, TemplateShowAsJson) {
    run(swept([](const RunOptions& run, const Files&) {
        TemplateShowOptions options;
        options.name.subject = "Bold";
        options.json = true;
        return runTemplateShow(run, options);
    }));
}

TEST_P(ChooserCommandSweep, TemplateEdit) {
    run(swept([](const RunOptions& run, const Files& files) {
        TemplateEditOptions options;
        options.name.subject = "Bold";
        options.content.categories = "Support";
        options.content.text = (files / "other.txt").string();
        options.content.attach = {(files / "other.txt").string()};
        return runTemplateEdit(run, options);
    }));
}

TEST_P(ChooserCommandSweep, TemplateEditFromAMessage) {
    run(swept([](const RunOptions& run, const Files& files) {
        TemplateEditOptions options;
        options.name.subject = "Bold";
        options.content.eml = (files / "draft.eml").string();
        return runTemplateEdit(run, options);
    }));
}

TEST_P(ChooserCommandSweep, TemplateDelete) {
    run(swept([](const RunOptions& run, const Files&) { return runTemplateDelete(run, {"Bold", ""}); }));
}

TEST_P(CommandSweep, Import) {
    run(swept([](const RunOptions& run, const Files& files) {
        ImportOptions options;
        options.sources = {(files / "draft.eml").string()};
        return runImport(run, options);
    }));
}

TEST_P(CommandSweep, ImportIntoAFolder) {
    run(swept([](const RunOptions& run, const Files& files) {
        ImportOptions options;
        options.folder = "\\Personal Folders\\Inbox";
        options.sources = {(files / "draft.eml").string()};
        return runImport(run, options);
    }));
}

TEST_P(CommandSweep, SettingsGet) {
    run(swept([](const RunOptions& run, const Files&) {
        SettingsOptions options;
        options.key = "LogTemplate";
        return runSettingsGet(run, options);
    }));
}

TEST_P(CommandSweep, SettingsSet) {
    run(swept([](const RunOptions& run, const Files&) {
            SettingsOptions options;
            options.key = "LogTemplate";
            options.value = "True";
            return runSettingsSet(run, options);
        }),
        From::FirstCall);
}

TEST_P(CommandSweep, SettingsList) {
    run(swept([](const RunOptions& run, const Files&) { return runSettingsList(run, {}); }));
}

}  // namespace
}  // namespace lorvane::sweep
