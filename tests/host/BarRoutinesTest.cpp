#include "host/modCommandBarCode.h"

#include <gtest/gtest.h>

#include "host/BarsRig.h"

/// The five routines that make controls, on a bar of their own.
namespace lorvane::support {
namespace {

using namespace host;

class BarRoutinesTest : public testing::Test {
protected:
    BarRoutinesTest() { commandBarsOf(window).addTemporary(u"Own", msoBarTop); }

    CommandBar bar() { return commandBarsOf(window).Item(u"Own"); }
    CommandBarControl popup() { return bar().Controls().Item(u"Menu"); }
    CommandBarControl addPopup() { return ExplorerMenuPopUpAdd(bar(), u"&Menu", u"", false); }
    std::string lines() {
        std::string text;
        appendControls(text, barOf(run, window, u"Own")->controls, 0);
        return text;
    }
    Captions captions() { return captionsOf(run, window, u"Own"); }

    TestRun run{{.connected = false, .instruments = true}};
    Object window = run.newMail();
};

constexpr InspControl button{u"Save Te&mplate", u"Save Template7", u"Save mail as template", 3037, true};

TEST_F(BarRoutinesTest, APopupHasCaptionTooltipGroupAndPriority) {
    for (const auto add : {&ExplorerMenuPopUpAdd, &AddInspPopup}) {
        const CommandBarControl made = add(bar(), u"&Respond", u"Respond to email", true, std::nullopt);
        EXPECT_EQ(lines(), "popup \"&Respond\" id=1 tooltip=\"Respond to email\" priority=1 begins-group enabled visible temporary\n");
        EXPECT_EQ(made, bar().Controls().Item(u"Respond"));
        made.Delete();
    }
}

TEST_F(BarRoutinesTest, APopupStandsInFrontOfTheOneItIsToldOf) {
    for (const auto add : {&ExplorerMenuPopUpAdd, &AddInspPopup}) {
        add(bar(), u"Last", u"", false, std::nullopt);
        add(bar(), u"First", u"", false, 1);
        EXPECT_EQ(captions(), (Captions{u"First", u"Last"}));
        for (const char16_t* const caption : {u"First", u"Last"}) bar().Controls().Item(caption).Delete();
    }
}

TEST_F(BarRoutinesTest, AMenuEntryHasCaptionStyleFaceAndGroup) {
    const CommandBarControl made = ExplorerMenuControlAdd(addPopup(), u"&Help", true, std::nullopt, 926, 3);
    EXPECT_EQ(lines(),
              "popup \"&Menu\" id=1 priority=1 enabled visible temporary\n"
              "  button \"&Help\" id=1 style=3 face=926 priority=3 begins-group enabled visible temporary\n");
    EXPECT_EQ(made, popup().Controls().Item(u"Help"));
    ExplorerMenuControlAdd(popup(), u"Settings", false, 1, 0, 0);
    EXPECT_EQ(captionsOf(controlAt(run, window, u"Own/Menu")->controls), (Captions{u"Settings", u"&Help"}));
}

TEST_F(BarRoutinesTest, APopupItemHasCaptionAndGroup) {
    const CommandBarControl made = AddPopupItem(addPopup(), u"Da&te");
    EXPECT_EQ(lines(),
              "popup \"&Menu\" id=1 priority=1 enabled visible temporary\n"
              "  button \"Da&te\" id=1 style=0 face=0 priority=3 enabled visible temporary\n");
    EXPECT_EQ(made, popup().Controls().Item(u"Date"));
    AddPopupItem(popup(), u"F&ull Name", 1, true);
    EXPECT_EQ(captionsOf(controlAt(run, window, u"Own/Menu")->controls), (Captions{u"F&ull Name", u"Da&te"}));
    EXPECT_TRUE(controlAt(run, window, u"Own/Menu/Full Name")->beginGroup);
}

TEST_F(BarRoutinesTest, AnItemsButtonHasAllOfItsProperties) {
    const CommandBarControl made = AddInspControl(u"Lorvane.Connect", bar(), button);
    EXPECT_EQ(lines(),
              "button \"Save Te&mplate\" id=1 tag=\"Save Template7\" parameter=\"Save Template7\" tooltip=\"Save mail as template\""
              " action=\"<!Lorvane.Connect>\" style=3 face=3037 priority=3 begins-group enabled visible temporary\n");
    EXPECT_EQ(made, bar().Controls().Item(u"Save Template"));
}

TEST_F(BarRoutinesTest, AnItemsButtonOfCaptionAloneGetsNoFace) {
    InspControl wanted = button;
    wanted.style = button_style::Caption;
    wanted.enabled = false;
    AddInspControl(u"Lorvane.Connect", bar(), wanted);
    const auto shown = controlAt(run, window, u"Own/Save Template");
    EXPECT_EQ(shown->faceId, 0);
    EXPECT_EQ(shown->style, 2);
    EXPECT_FALSE(shown->enabled);
}

TEST_F(BarRoutinesTest, EachAddsNothingTheSecondTime) {
    const auto addAll = [&] {
        addPopup();
        AddInspPopup(bar(), u"&Respond", u"Respond to email", true);
        AddInspControl(u"Lorvane.Connect", bar(), button);
        ExplorerMenuControlAdd(popup(), u"&Help", true, std::nullopt, 926, 3);
        AddPopupItem(popup(), u"Da&te");
    };
    addAll();
    const std::string once = lines();
    addAll();
    EXPECT_EQ(lines(), once);
    EXPECT_EQ(captions(), (Captions{u"&Menu", u"&Respond", u"Save Te&mplate"}));
}

TEST_F(BarRoutinesTest, OfWhatIsThereOnlyMenuEntriesAndItemsAreShownAgain) {
    addPopup();
    const CommandBarControl respond = AddInspPopup(bar(), u"&Respond", u"", true), save = AddInspControl(u"Lorvane.Connect", bar(), button),
                            help = ExplorerMenuControlAdd(popup(), u"&Help", false, std::nullopt, 926, 3), date = AddPopupItem(popup(), u"Da&te");
    for (const CommandBarControl& control : {popup(), respond, save, help, date}) control.Visible(false);
    addPopup();
    AddInspPopup(bar(), u"&Respond", u"", true);
    AddInspControl(u"Lorvane.Connect", bar(), button);
    ExplorerMenuControlAdd(popup(), u"&Help", true, std::nullopt, 59, 0);
    AddPopupItem(popup(), u"Da&te", std::nullopt, true);
    for (const char16_t* const hidden : {u"Own/Menu", u"Own/Respond", u"Own/Save Template"}) EXPECT_FALSE(controlAt(run, window, hidden)->visible);
    EXPECT_EQ(controlLine(*controlAt(run, window, u"Own/Menu/Help")), "button \"&Help\" id=1 style=3 face=926 priority=3 enabled visible temporary");
    EXPECT_EQ(controlLine(*controlAt(run, window, u"Own/Menu/Date")), "button \"Da&te\" id=1 style=0 face=0 priority=3 enabled visible temporary");
}

TEST_F(BarRoutinesTest, EachPropertyThatFailsCostsItselfAlone) {
    AddInspControl(u"Lorvane.Connect", bar(), button);
    const auto whole = controlAt(run, window, u"Own/Save Template");
    const std::string withoutFault = controlLine(*whole);
    for (const char16_t* const member : {u"Caption", u"Tag", u"Style", u"FaceId", u"TooltipText", u"BeginGroup", u"OnAction"}) {
        bar().Controls().Item(u"Save Template").Delete();
        run.faults().failNth(u"CommandBarButton", member, 1, host_failure::Failed);
        AddInspControl(u"Lorvane.Connect", bar(), button);
        model::ControlTree made = barOf(run, window, u"Own")->controls.front();
        EXPECT_NE(controlLine(made), withoutFault) << toUtf8(member);
        std::size_t different = 0;
        for (auto text : {&model::ControlTree::caption, &model::ControlTree::tag, &model::ControlTree::tooltip, &model::ControlTree::onAction})
            if (made.*text != (*whole).*text) ++different;
        for (auto number : {&model::ControlTree::style, &model::ControlTree::faceId, &model::ControlTree::priority})
            if (made.*number != (*whole).*number) ++different;
        if (made.beginGroup != whole->beginGroup) ++different;
        EXPECT_EQ(different, 1U) << toUtf8(member);
        commandBarsOf(window).Item(u"Own").Controls().call(Member::Item, {1}).toObject().put(Member::Caption, button.caption);
    }
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(BarRoutinesTest, WhatCannotBeMadeIsNothing) {
    addPopup();
    const auto failing = [&](const auto& routine) {
        run.faults().failNth(u"CommandBarControls", u"Add", 1, host_failure::Failed);
        const CommandBarControl made = routine();
        EXPECT_FALSE(made);
    };
    const std::string before = lines();
    failing([&] { return ExplorerMenuPopUpAdd(bar(), u"One", u"", false); });
    failing([&] { return AddInspPopup(bar(), u"Two", u"", false); });
    failing([&] { return AddInspControl(u"Lorvane.Connect", bar(), button); });
    failing([&] { return ExplorerMenuControlAdd(popup(), u"Three", false, std::nullopt, 0, 0); });
    failing([&] { return AddPopupItem(popup(), u"Four"); });
    EXPECT_EQ(lines(), before);
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(BarRoutinesTest, WithoutABarNothingIsMadeAndNothingShown) {
    EXPECT_FALSE(ExplorerMenuPopUpAdd(CommandBar(), u"One", u"", false));
    EXPECT_FALSE(AddInspPopup(CommandBar(), u"Two", u"", false));
    EXPECT_FALSE(AddInspControl(u"Lorvane.Connect", CommandBar(), button));
    EXPECT_FALSE(ExplorerMenuControlAdd(CommandBarControl(), u"Three", false, std::nullopt, 0, 0));
    EXPECT_FALSE(AddPopupItem(CommandBarControl(), u"Four"));
    EXPECT_TRUE(run.boxes().empty());
}

}  // namespace
}  // namespace lorvane::support
