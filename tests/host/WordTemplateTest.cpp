#include "host/WordTemplate.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <utility>

#include "WindowRig.h"
#include "host/CommandBars.h"
#include "host/Redemption.h"
#include "host/TextFunctions.h"

/// The template beside items that Word edits: found, added, switched on, and marked as saved.
namespace lorvane::host {
namespace {

using namespace support;

constexpr std::u16string_view bareVersion = u"11.0.0.5510", guardedVersion = u"10.0.0.6515";

class WordWindow : public testing::TestWithParam<std::u16string_view> {
protected:
    explicit WordWindow(std::u16string_view version = GetParam())
        : run({.version = std::u16string(version), .editor = model::EditorKind::Word, .instruments = true}) {}

    /// Word behind a window, without instruments.
    static Object wordOf(const Inspector& inspector) {
        const Inspector own(instruments::stripped(inspector));
        const Object document = IsGuardedOutlook10() ? instruments::stripped(makeSafeInspector(own).WordEditor()) : own.WordEditor();
        return document.getObject(Member::Application);
    }
    static Object addIn(const Inspector& inspector) { return wordOf(inspector).getObject(Member::AddIns, {u"\\Lorvane.dot"}); }
    static Object templateOf(const Inspector& inspector) { return wordOf(inspector).getObject(Member::Templates, {u"\\Lorvane.dot"}); }
    static bool isInstalled(const Inspector& inspector) { return addIn(inspector).getBoolean(Member::Installed); }
    static bool isSaved(const Inspector& inspector) { return templateOf(inspector).getBoolean(Member::Saved); }

    std::vector<std::string> linesWith(std::string_view part) {
        std::vector<std::string> lines;
        for (const std::string& line : run.recorder().lines())
            if (line.find(part) != std::string::npos) lines.push_back(line);
        return lines;
    }
    std::size_t lookUps() { return headsIn(run, {"get Application.AddIns"}).size(); }

    TestRun run;
};

INSTANTIATE_TEST_SUITE_P(Versions, WordWindow, testing::Values(bareVersion, guardedVersion, u"9.0.0.6627", u"10.0.0.6514"));

TEST_P(WordWindow, HasTheTemplateSwitchedOn) {
    run.recorder().clear();
    const Inspector mail = run.newMail();
    EXPECT_TRUE(isInstalled(mail));
    const auto bars = run.driver().bars(mail);
    const auto bar = std::ranges::find(bars, u"Lorvane", &model::BarTree::name);
    ASSERT_NE(bar, bars.end());
    EXPECT_FALSE(bar->temporary) << "it is the template's own";
    EXPECT_TRUE(run.boxes().empty());
}

TEST_P(WordWindow, FindsItInTheAddInsOwnFolder) {
    run.recorder().clear();
    run.newMail();
    const std::vector<std::string> sought = linesWith("get Application.AddIns");
    ASSERT_FALSE(sought.empty());
    for (const std::string& line : sought) EXPECT_NE(line.find("\\\\program\\\\Lorvane.dot\""), std::string::npos) << line;
    EXPECT_EQ(linesWith("call AddIns.Add"), std::vector<std::string>());
}

TEST_P(WordWindow, SwitchesItOnWhereItIsOffOnly) {
    const Inspector first = run.newMail();
    run.recorder().clear();
    run.newMail();
    EXPECT_FALSE(linesWith("get AddIn.Installed").empty());
    EXPECT_EQ(linesWith("put AddIn.Installed"), std::vector<std::string>());
    addIn(first).put(Member::Installed, false);
    run.recorder().clear();
    const Inspector third = run.newMail();
    EXPECT_EQ(linesWith("put AddIn.Installed"), std::vector<std::string>{"put AddIn.Installed True"});
    EXPECT_TRUE(isInstalled(third));
}

TEST_P(WordWindow, LooksForItAgainAtTheFirstActivationOfAGuardedHostOnly) {
    run.recorder().clear();
    const Inspector mail = run.newMail();
    EXPECT_EQ(lookUps(), GetParam() == guardedVersion ? 2U : 1U);
    firstExplorer(run).call(Member::Display);
    run.recorder().clear();
    instruments::stripped(mail).call(Member::Activate);
    EXPECT_EQ(lookUps(), 0U);
}

TEST_P(WordWindow, IsReachedByTheSafeWrapperOnAGuardedHostOnly) {
    run.recorder().clear();
    AddWordTemplate(run.newMail(), wordTemplate);
    EXPECT_EQ(linesWith("qz7mSafeInspector").empty(), GetParam() != guardedVersion);
    EXPECT_EQ(linesWith("get SafeInspector.WordEditor").empty(), GetParam() != guardedVersion);
}

TEST_P(WordWindow, MarksTheTemplateAsSavedAtEachActivation) {
    const Inspector mail = run.newMail();
    EXPECT_TRUE(isSaved(mail));
    templateOf(mail).put(Member::Saved, false);
    firstExplorer(run).call(Member::Display);
    EXPECT_FALSE(isSaved(mail));
    instruments::stripped(mail).call(Member::Activate);
    EXPECT_TRUE(isSaved(mail));
}

TEST_P(WordWindow, MarksTheTemplateAsSavedBeforeItCloses) {
    const Inspector first = run.newMail(), second = run.newMail();
    templateOf(second).put(Member::Saved, false);
    run.recorder().clear();
    closeWindow(second);
    EXPECT_EQ(linesWith("put Template.Saved"), std::vector<std::string>(2, "put Template.Saved True")) << "at its close, and at the other's activation";
    EXPECT_EQ(inspectorKeys(), Keys{0});
    EXPECT_TRUE(isSaved(first));
}

/// Whether the popup for answers shows; none where it is not there.
std::optional<bool> respondShown(const TestRun& run, const Inspector& inspector) {
    for (const model::BarTree& bar : run.driver().bars(inspector)) {
        if (bar.name != u"Lorvane") continue;
        const auto popup = std::ranges::find(bar.controls, u"&Respond", &model::ControlTree::caption);
        if (popup != bar.controls.end()) return popup->visible;
    }
    return std::nullopt;
}

class BareWordWindow : public WordWindow {
protected:
    Object wordEditorControl(const Inspector& inspector) {
        return commandBarsOf(Inspector(instruments::stripped(inspector)).WordEditor()).Item(u"Lorvane").Controls().Item(u"&Respond");
    }
};
INSTANTIATE_TEST_SUITE_P(Versions, BareWordWindow, testing::Values(bareVersion, u"9.0.0.6627", u"10.0.0.6514"));

TEST_P(BareWordWindow, OffersAnswersForWhatIsReadOnly) {
    EXPECT_EQ(respondShown(run, run.newMail()), false);
    EXPECT_EQ(respondShown(run, run.openMail(run.receivedMail(u"Question", plain(u"Text")))), true);
}

TEST_P(BareWordWindow, DecidesAnewAtEachActivation) {
    const Inspector received = run.openMail(run.receivedMail(u"Question", plain(u"Text")));
    CommandBarControl(wordEditorControl(received)).Visible(false);
    firstExplorer(run).call(Member::Display);
    instruments::stripped(received).call(Member::Activate);
    EXPECT_EQ(respondShown(run, received), true);
}

TEST(GuardedWordWindow, DoesNotReachItsPopup) {
    TestRun run({.version = std::u16string(guardedVersion), .editor = model::EditorKind::Word});
    EXPECT_EQ(respondShown(run, run.newMail()), true) << "as the template has it";
}

TEST(WindowWithoutWord, NeverTouchesTheTemplate) {
    TestRun run({.editor = model::EditorKind::Html, .instruments = true});
    run.recorder().clear();
    closeWindow(run.newMail());
    for (const std::string& line : run.recorder().lines()) EXPECT_EQ(line.find("WordEditor"), std::string::npos) << line;
}

/// How the template is found where Word does not know it by its path.
class UnknownTemplate : public WordWindow {
protected:
    UnknownTemplate() : WordWindow(bareVersion) {
        addIn(mail).put(Member::Installed, false);
        run.recorder().clear();
        run.faults().clear();
        // Word finds its one template by any path that ends in its name; this once it does not.
        run.faults().failNth(u"Application", u"AddIns", 1, host_failure::Failed);
    }
    std::u16string writeTemplate() { return run.writeFile("program/Lorvane.dot", Bytes{1}); }

    Inspector mail = run.newMail();
};

TEST_F(UnknownTemplate, IsFoundByTheFilesNameWithoutItsExtension) {
    writeTemplate();
    wordOf(mail).getObject(Member::AddIns).call(Member::Add, {u"C:\\Elsewhere\\Lorvane"});
    wordOf(mail).getObject(Member::AddIns, {u"Lorvane"}).put(Member::Installed, false);
    AddWordTemplate(mail, wordTemplate);
    const std::vector<std::string> sought = linesWith("get Application.AddIns");
    EXPECT_EQ(sought, std::vector<std::string>{"get Application.AddIns \"Lorvane\""}) << "behind the one that failed";
    EXPECT_EQ(linesWith("call AddIns.Add"), std::vector<std::string>());
    EXPECT_TRUE(wordOf(mail).getObject(Member::AddIns, {u"Lorvane"}).getBoolean(Member::Installed));
    EXPECT_FALSE(isInstalled(mail));
}

TEST_F(UnknownTemplate, IsAdded) {
    const std::u16string path = writeTemplate();
    AddWordTemplate(mail, wordTemplate);
    ASSERT_EQ(linesWith("call AddIns.Add").size(), 1U);
    EXPECT_NE(linesWith("call AddIns.Add")[0].find("program\\\\Lorvane.dot\""), std::string::npos);
    EXPECT_TRUE(wordOf(mail).getObject(Member::AddIns, {path}).getBoolean(Member::Installed));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(UnknownTemplate, ThatCannotBeAddedShowsWhy) {
    writeTemplate();
    run.faults().failNth(u"AddIns", u"Add", 1, host_failure::Failed, u"Word cannot open this document template.");
    AddWordTemplate(mail, wordTemplate);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().text, u"Word cannot open this document template.");
    EXPECT_EQ(run.lastBox().style, 0);
    EXPECT_EQ(run.lastBox().title, u"Lorvane");
    EXPECT_FALSE(isInstalled(mail));
}

TEST_F(UnknownTemplate, WithoutAFileIsLeftAlone) {
    AddWordTemplate(mail, wordTemplate);
    EXPECT_EQ(run.faults().failures(), 1U);
    EXPECT_EQ(lookUps(), 0U) << "nothing behind the one that failed";
    EXPECT_EQ(linesWith("call AddIns.Add"), std::vector<std::string>());
    EXPECT_FALSE(isInstalled(mail));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(UnknownTemplate, OfANameWithoutAnExtensionIsAddedAtOnce) {
    run.writeFile("program/dot", Bytes{1});
    AddWordTemplate(mail, u"\\dot");
    EXPECT_EQ(linesWith("get Application.AddIns"), std::vector<std::string>{"get Application.AddIns"}) << "only the list that it is added to";
    EXPECT_EQ(linesWith("call AddIns.Add").size(), 1U);
    AddWordTemplate(mail, u"");
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(UnknownTemplate, ThatCannotBeMarkedAsSavedShowsNothing) {
    run.faults().failNth(u"Template", u"Saved", 1, host_failure::Failed);
    EXPECT_NO_THROW(SetWordTemplateSaved(mail, wordTemplate));
    EXPECT_NO_THROW(SetWordTemplateSaved(mail, u"\\Other.dot"));
    EXPECT_NO_THROW(SetWordTemplateSaved(Object(), wordTemplate));
    EXPECT_NO_THROW(AddWordTemplate(Object(), wordTemplate));
    EXPECT_TRUE(run.boxes().empty());
}

/// A box over Word while its window opens; it does not stop the host.
class WordTemplateBox : public testing::Test {
protected:
    WordTemplateBox() {
        run.writeFile("program/Lorvane.dot", Bytes{1});
        run.faults().failNth(u"Application", u"AddIns", 1, host_failure::Failed);
        run.faults().failNth(u"AddIns", u"Add", 1, host_failure::Failed, u"Word is busy.");
    }
    void behindIt(std::function<void()> act) {
        run.user().onBox([act = std::move(act), done = false](const auto&) mutable {
            if (!std::exchange(done, true)) act();
        });
    }
    TestRun run{{.editor = model::EditorKind::Word, .instruments = true}};
};

TEST_F(WordTemplateBox, AnotherWindowMayOpenBehindIt) {
    behindIt([&] { openItem(run, contactKind); });
    const Inspector mail = run.newMail();
    EXPECT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(inspectorKeys(), Keys{0});
    EXPECT_EQ(baseClass(run).objCurMailItem(), mail.CurrentItem()) << "the item of the window that this is about";
}

TEST_F(WordTemplateBox, TheAddInMayBeUnloadedBehindIt) {
    behindIt([&] { run.disconnect(); });
    const Inspector mail = run.newMail();
    EXPECT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(inspectorKeys(), Keys());
    EXPECT_FALSE(isHeard(mail));
    EXPECT_FALSE(run.apartment().gOutlook);
}

}  // namespace
}  // namespace lorvane::host
