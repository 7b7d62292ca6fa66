#include "screen/MessageBox.h"

#include "ScreenRig.h"
#include "host/Services.h"

namespace lorvane::screen {
namespace {

using namespace host::msgbox;

TEST(MessageBoxButtons, FollowTheLowBitsOfTheStyle) {
    const auto buttons = [](std::int32_t style) {
        std::vector<std::int32_t> result;
        for (std::int32_t button = 0; button < 12; ++button)
            if (hasButton(style, button)) result.push_back(button);
        return result;
    };
    using Buttons = std::vector<std::int32_t>;
    for (const std::int32_t style : {Plain, Critical, Exclamation, Information}) EXPECT_EQ(buttons(style), (Buttons{Ok})) << style;
    EXPECT_EQ(buttons(1 + 48), (Buttons{Ok, Cancel}));
    EXPECT_EQ(buttons(3), (Buttons{Cancel, Yes, No}));
    EXPECT_EQ(buttons(Question), (Buttons{Yes, No}));
    EXPECT_EQ(buttons(QuestionInformation), (Buttons{Yes, No}));
}

TEST(MessageBoxButtons, TheCarefulAnswerDoesLeast) {
    EXPECT_EQ(carefulAnswer(Critical), Ok);
    EXPECT_EQ(carefulAnswer(1), Cancel);
    EXPECT_EQ(carefulAnswer(3), No);
    EXPECT_EQ(carefulAnswer(Question), No);
}

class BoxTest : public ScreenTest {};

TEST_F(BoxTest, AnswersLaidReadyComeFirstThenThePolicyThenTheCarefulOne) {
    user.AnswerNext({Yes, Cancel});
    EXPECT_EQ(screen().MsgBox(u"Delete?", Question, u"Confirm"), Yes);
    EXPECT_EQ(screen().MsgBox(u"Save?", 3, u""), Cancel);
    EXPECT_EQ(screen().MsgBox(u"Delete?", Question, u""), No);
    user.answerWith([](const BoxShown&) { return Yes; });
    EXPECT_EQ(screen().MsgBox(u"Delete?", Question, u""), Yes);
    EXPECT_EQ(screen().MsgBox(u"Done.", Information, u""), Ok);
    ASSERT_EQ(user.Boxes().size(), 5U);
    EXPECT_EQ(user.Boxes()[0], (ScriptedUser::BoxRecord{u"Confirm", u"Delete?", Question, Yes}));
    EXPECT_EQ(user.Boxes()[4].answer, Ok);
}

TEST_F(BoxTest, AnAnswerTheBoxDoesNotHaveIsAMistakeOfTheScript) {
    user.onFailure({});
    user.AnswerNext({Yes});
    EXPECT_EQ(screen().MsgBox(u"Done.", Information, u"Report"), Ok);
    ASSERT_EQ(user.failures().size(), 1U);
    EXPECT_EQ(user.failures()[0].description(), u"The message box \"Report\" has no button 6.");
}

TEST_F(BoxTest, EachBoxIsTold) {
    std::vector<std::u16string> told;
    user.onBox([&](const ScriptedUser::BoxRecord& box) { told.push_back(box.title + u": " + box.text); });
    screen().MsgBox(u"One", Plain, u"T");
    EXPECT_EQ(told, (std::vector<std::u16string>{u"T: One"}));
}

TEST_F(BoxTest, ABoxHasTheKeysAndCoversEveryWindow) {
    frmSample& form = sample();
    form.Show(false);
    const std::int32_t before = screen().GetForegroundWindow();
    std::u16string refused;
    user.answerWith([&](const BoxShown&) -> std::optional<std::int32_t> {
        EXPECT_NE(screen().GetForegroundWindow(), before);
        screen().SendKeys(u"lost", true);
        refused = refusal([&] { user.Click(u"frmSample", u"cmdOK"); });
        EXPECT_EQ(user.Windows().back(), (WindowList::Row{u"MsgBox", u"Title", true}));
        return std::nullopt;
    });
    screen().MsgBox(u"Text", Plain, u"Title");
    EXPECT_EQ(refused, u"The window \"frmSample\" is covered by the message box \"Title\".");
    EXPECT_EQ(form.txtSearch.Text.get(), u"");
    EXPECT_EQ(screen().GetForegroundWindow(), before);
}

TEST_F(BoxTest, KeysForACoveredWindowAreLostAlsoWhereItIsBroughtToTheFront) {
    frmSample& form = sample();
    form.Show(false);
    const std::int32_t window = screen().GetForegroundWindow();
    user.answerWith([&](const BoxShown&) -> std::optional<std::int32_t> {
        screen().SetForegroundWindow(window);
        screen().SendKeys(u"lost", true);
        return std::nullopt;
    });
    screen().MsgBox(u"Text", Plain, u"Title");
    EXPECT_EQ(form.txtSearch.Text.get(), u"");
}

TEST_F(BoxTest, BoxesOverBoxesEndLastInFirstOut) {
    std::vector<std::u16string> order;
    user.onBox([&](const ScriptedUser::BoxRecord& box) { order.push_back(box.title); });
    user.answerWith([&](const BoxShown& box) -> std::optional<std::int32_t> {
        if (box.title == u"outer") screen().MsgBox(u"", Plain, u"inner");
        return std::nullopt;
    });
    screen().MsgBox(u"", Plain, u"outer");
    EXPECT_EQ(order, (std::vector<std::u16string>{u"inner", u"outer"}));
    EXPECT_EQ(screen().GetForegroundWindow(), 0);
}

}  // namespace
}  // namespace lorvane::screen
