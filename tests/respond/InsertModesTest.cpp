#include <gtest/gtest.h>

#include <ostream>

#include "InsertRig.h"
#include "instruments/Decorator.h"

/// The insert buttons of a chooser that is there for a new mail or an answer: the window steps aside, and nothing goes into the open item.
namespace lorvane::support {
namespace {

using namespace host;

/// Looks at what there is when a command cleans up behind itself.
class CleanupWatch final : public instruments::Tap {
public:
    explicit CleanupWatch(std::function<void()> look) : look_(std::move(look)) {}
    Variant onUse(const instruments::Use& use, const std::function<Variant()>& proceed) override {
        if (use.object.className() == u"MAPIUtils") look_();
        return proceed();
    }

private:
    std::function<void()> look_;
};

struct Mode {
    std::string_view name;
    std::int32_t replyKind;  ///< 0 for a new mail
    std::u16string_view button;
};

void PrintTo(const Mode& mode, std::ostream* stream) {
    *stream << mode.name;
}

class InsertModesTest : public testing::TestWithParam<Mode> {
protected:
    InsertModesTest() {
        run.addTemplate(u"Bold", html(document(u"<B>Dear</B> [FirstName]")));
        run.setSetting(u"LogTemplate", u"True");
        run.setSetting(u"TemplatesLogFilePath", logPath());
    }
    static std::u16string logPath() { return apartment().machine.files().GetFolderPath(5) + u"\\log.csv"; }
    void setMode(respond::frmEmail& form) {
        form.NewMailUsingTempl = GetParam().replyKind == 0;
        form.ReplyUsingTempl = GetParam().replyKind != 0;
        form.ReplyKind = GetParam().replyKind;
        form.AnsweredMail = answered;
    }
    void open(Act act) {
        openChooserAs(
            run, [this](respond::frmEmail& form) { setMode(form); }, std::move(act));
    }
    TestRun run{{.instruments = true}};
    MailItem answered = run.receivedMail(u"Question", plain(u"Text"));
};

INSTANTIATE_TEST_SUITE_P(Modes, InsertModesTest,
                         testing::Values(Mode{"new mail, text", 0, insertText}, Mode{"new mail, format", 0, insertWithFormat},
                                         Mode{"reply, text", 1, insertText}, Mode{"reply, format", 1, insertWithFormat},
                                         Mode{"reply to all, text", 2, insertText}, Mode{"forward, format", 3, insertWithFormat}));

TEST_P(InsertModesTest, TheOpenItemIsLeftAlone) {
    const Inspector mail = openDraft(run, html(document(u"Text")), 0);
    run.type(u"x");
    const std::u16string saved = savedSourceOf(run, mail);
    run.clipboard().clear();
    open([&](ScriptedUser& she) {
        run.recorder().clear();
        she.Click(chooserName, GetParam().button);
    });
    EXPECT_TRUE(allKeys(run).empty());
    EXPECT_EQ(timesCalled(run, u"Application", u"ActiveInspector"), 0U) << "it is not even asked for";
    EXPECT_EQ(timesCalled(run, u"MailItem", u"Save") + timesCalled(run, u"SafeMailItem", u"Save"), 0U);
    EXPECT_EQ(savedSourceOf(run, mail), saved);
    EXPECT_FALSE(run.clipboardText());
    EXPECT_FALSE(run.clipboardHtml());
    EXPECT_TRUE(run.boxes().empty());
}

TEST_P(InsertModesTest, AnOpenItemIsNotNeeded) {
    open([&](ScriptedUser& she) { she.Click(chooserName, GetParam().button); });
    EXPECT_FALSE(isChooserOpen());
    EXPECT_TRUE(run.boxes().empty());
}

TEST_P(InsertModesTest, TheUseIsLogged) {
    open([&](ScriptedUser& she) { she.Click(chooserName, GetParam().button); });
    EXPECT_NE(apartment().machine.files().ReadText(logPath()).find(u",\"Bold\","), std::u16string::npos);
}

TEST_P(InsertModesTest, TheWindowHidesThenTheRoutineAnswersThenTheWindowGoes) {
    std::size_t looks = 0;
    const auto watch = std::make_shared<CleanupWatch>([&] {
        ++looks;
        EXPECT_FALSE(chooser().isVisible());
        // No answer was made, so that none is the window's current item.
        EXPECT_EQ(static_cast<bool>(chooser().AnsweredMail), GetParam().replyKind == 0);
    });
    run.apartment().machine = Machine(instruments::decorated(run.apartment().machine, watch));
    open([&](ScriptedUser& she) {
        run.recorder().clear();
        she.Click(chooserName, GetParam().button);
    });
    EXPECT_EQ(looks, 1U);
    std::vector<std::string> order;
    for (const std::string& line : run.recorder().lines())
        if (line.find("Screen.") != std::string::npos || line.find("MAPIUtils.") != std::string::npos) order.push_back(line);
    EXPECT_EQ(order, (std::vector<std::string>{"call Screen.Hide frmEmail", "call MAPIUtils.Cleanup", "call Screen.Unload frmEmail"}));
    EXPECT_FALSE(isChooserOpen());
}

TEST_P(InsertModesTest, WithoutAChoiceTheWindowStaysAsInAnyMode) {
    open([&](ScriptedUser& she) {
        chooser().lstEmails.ListIndex = -1;
        she.Click(chooserName, GetParam().button);
        EXPECT_TRUE(chooser().isVisible());
    });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().text, u"Please select an item from the list first.");
}

}  // namespace
}  // namespace lorvane::support
