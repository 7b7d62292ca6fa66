#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/BuildSwitches.h"
#include "host/WindowCommands.h"
#include "host/basExplCol.h"
#include "host/basOutlInsp.h"
#include "respond/ChooserRig.h"
#include "respond/FurtherWindows.h"
#include "respond/InsertRig.h"
#include "support/Bars.h"
#include "support/GoldenText.h"

/// Windows of every kind with the add-in's bars in them, and what the clicks on the bars come to.
namespace lorvane::support {

inline constexpr std::u16string_view guardedVersion = u"10.0.0.6515";
inline constexpr std::u16string_view supportedVersions[] = {u"9.0.0.6627", u"10.0.0.4608", guardedVersion, u"11.0.0.5510"};

/// A run for each of the versions with each of the host's own editors.
inline std::vector<RunOptions> runsWithOwnEditors() {
    std::vector<RunOptions> runs;
    for (const std::u16string_view version : supportedVersions)
        for (const auto editor : {model::EditorKind::Plain, model::EditorKind::Html, model::EditorKind::Rich})
            runs.push_back({.version = std::u16string(version), .editor = editor});
    return runs;
}
inline RunOptions wordRun(std::u16string_view version) {
    return {.version = std::u16string(version), .editor = model::EditorKind::Word};
}
/// Those where Word edits and gives its document to everybody.
inline std::vector<RunOptions> runsWithWord() {
    return {wordRun(u"9.0.0.6627"), wordRun(u"10.0.0.4608"), wordRun(u"11.0.0.5510")};
}

// Windows.

/// An item as it lies in a folder, sent where it is a mail or a post.
inline host::MailItem savedItem(const TestRun& run, const OtherKind& kind, std::int32_t folder = host::default_folder::Inbox,
                                std::u16string_view mileage = u"") {
    mailstore::ItemRecord record;
    record.head.itemClass = kind.itemClass;
    record.head.messageClass = kind.messageClass;
    record.head.subject = u"About us";
    record.bodyKind = mailstore::BodyKind::Plain;
    record.body = u"Dear John";
    record.properties[mailstore::tags::Mileage] = std::u16string(mileage);
    return host::MailItem(run.seen(run.driver().import(std::move(record), run.folder(folder))));
}
inline constexpr OtherKind mailKind{host::item_class::Mail, u"IPM.Note"}, contactKind{host::item_class::Contact, u"IPM.Contact"},
    noteKind{host::item_class::Note, u"IPM.StickyNote"};

inline host::Inspector openSaved(const TestRun& run, const OtherKind& kind) {
    return run.openMail(savedItem(run, kind));
}
inline host::Inspector openReceived(const TestRun& run) {
    return run.openMail(run.receivedMail(u"Request", html(document(u"Dear John"))));
}
inline host::Inspector openSent(const TestRun& run) {
    return run.openMail(savedItem(run, mailKind, host::default_folder::SentMail));
}
/// A post that is being written.
inline host::Inspector newPost(const TestRun& run) {
    const host::MailItem post(run.folder(host::default_folder::Inbox).Items().call(host::Member::Add, {u"IPM.Post"}).toObject());
    post.Display();
    return post.GetInspector();
}

using Opener = std::function<host::Object(TestRun&)>;
inline const Opener theExplorer = [](TestRun& run) { return run.application().ActiveExplorer(); };
inline const Opener aNewMail = [](TestRun& run) { return run.newMail(); };

/// What the golden file of a tree that has process buttons is called.
inline std::string byConfiguration(const std::string& name) {
    return name + (host::ProcessFeatureEnabled ? "-processes" : "");
}

/// Every one of the runs gives the window the bars of the golden file.
inline void expectBars(const std::string& golden, const std::vector<RunOptions>& runs, const Opener& open) {
    for (const RunOptions& options : runs) {
        SCOPED_TRACE(host::toUtf8(options.version) + ", editor " + std::to_string(static_cast<int>(options.editor)));
        TestRun run(options);
        const host::Object window = open(run);
        expectGolden("host/golden/" + golden + ".bars", barLines(run, window));
        EXPECT_TRUE(run.boxes().empty());
    }
}

// Wrappers.

inline std::shared_ptr<host::clsInspWrap> inspectorWrap(std::u16string_view key = u"0") {
    return host::inspectorWraps().gInspectorWraps.Item(key);
}
inline std::shared_ptr<host::ExplorerWrap> explorerWrap(std::u16string_view key = u"0") {
    return host::explorerWraps().gExplorerWraps.Item(key);
}

// Clicks.

using Lines = std::vector<std::string>;

/// What the clicks of a run asked for.
struct Told {
    Lines lines;
    host::Object mail;  ///< of the last answer to an open mail

    Lines take() { return std::exchange(lines, {}); }
};

/// Puts a routine that writes itself down in the place of each command of the add-in's further windows.
inline std::shared_ptr<Told> recordCommands() {
    auto told = std::make_shared<Told>();
    const auto plainly = [told](std::string line) { return [told, line] { told->lines.push_back(line); }; };
    const auto numbered = [told](std::string line) {
        return [told, line](std::int32_t number) { told->lines.push_back(line + " " + std::to_string(number)); };
    };
    host::LaterCommands& later = host::laterCommands();
    later.replyToSelection = numbered("replyToSelection");
    later.replyToOpenMail = [told](std::int32_t kind, const host::Object& mail) {
        told->lines.push_back("replyToOpenMail " + std::to_string(kind));
        told->mail = mail;
    };
    later.createTemplateFromSelection = [told](bool blank) { told->lines.push_back(blank ? "blank template" : "template of the selection"); };
    later.saveActiveItemAsTemplate = plainly("saveActiveItemAsTemplate");
    later.showSettings = plainly("showSettings");
    later.showAbout = plainly("showAbout");
    later.writeSupportMail = plainly("writeSupportMail");
    later.openTutorial = plainly("openTutorial");
    later.openTutorialPage = plainly("openTutorialPage");
    later.showProcessTemplates = plainly("showProcessTemplates");
    later.showProcessWizard = numbered("showProcessWizard");
    later.createLinkedEmail = [told](std::u16string_view entryId, std::u16string_view storeId) {
        told->lines.push_back("createLinkedEmail " + host::toUtf8(entryId) + " " + host::toUtf8(storeId));
    };
    later.rescheduleProcess = plainly("rescheduleProcess");
    later.showRelatedItems = plainly("showRelatedItems");
    respond::furtherWindows().openManual = numbered("openManual");
    return told;
}

inline constexpr std::string_view chooserToInsert = "chooser", chooserToCopy = "chooser DisableInsert", chooserForNewMail = "chooser NewMailUsingTempl";

/// The user closes the chooser that comes up next; the mode it came up in is told.
inline void expectChooser(TestRun& run, const std::shared_ptr<Told>& told) {
    run.user().then([told](ScriptedUser& she) {
        std::string line = "chooser";
        if (chooser().DisableInsert) line += " DisableInsert";
        if (chooser().NewMailUsingTempl) line += " NewMailUsingTempl";
        if (chooser().ReplyUsingTempl) line += " ReplyUsingTempl";
        told->lines.push_back(line);
        she.CloseWindow(chooserName);
    });
}

/// An entry of a bar, and the one thing that a click on it does.
struct ClickRow {
    std::u16string_view path;
    std::string_view told;
};

/// Clicks each entry: it does what its row tells and nothing else.
inline void expectClicks(TestRun& run, const std::shared_ptr<Told>& told, const host::Object& window, const std::vector<ClickRow>& rows) {
    for (const ClickRow& row : rows) {
        SCOPED_TRACE(host::toUtf8(row.path));
        if (row.told.starts_with("chooser")) expectChooser(run, told);
        run.driver().clickBar(window, row.path);
        EXPECT_EQ(told->take(), Lines{std::string(row.told)});
        EXPECT_FALSE(isChooserOpen());
    }
    EXPECT_TRUE(run.user().leftUp().empty());
    EXPECT_TRUE(run.boxes().empty());
}

inline Captions pathsOf(const std::vector<ClickRow>& rows) {
    Captions paths;
    for (const ClickRow& row : rows) paths.emplace_back(row.path);
    return paths;
}

}  // namespace lorvane::support
