#include "contract/Bars.h"

/// Command bars as a program uses them, and as a person sees and clicks them.
namespace lorvane::contract {

namespace {

constexpr std::int32_t noMember = 438, invalidCall = 5;

}  // namespace

class CommandBars : public OneHost {
protected:
    Object explorer() {
        if (!explorer_) explorer_ = person().openExplorer();
        return explorer_;
    }
    Object standard() { return bar(explorer(), u"Standard"); }
    ShownBar shownBar(const Object& window, std::u16string_view name) {
        for (const ShownBar& one : person().bars(window))
            if (one.name == name) return one;
        ADD_FAILURE() << "the bar is not there";
        return {};
    }
    Names captions(const Object& window, std::u16string_view name) { return names(shownBar(window, name).controls, &ShownControl::caption); }

private:
    Object explorer_;
};

TEST_F(CommandBars, AnExplorerHasAMenuBarAndAToolbar) {
    EXPECT_EQ(names(person().bars(explorer()), &ShownBar::name), (Names{u"Menu Bar", u"Standard"}));
    EXPECT_EQ(captions(explorer(), u"Menu Bar"), (Names{u"&File", u"&Edit", u"&View", u"&Go", u"&Tools", u"&Actions", u"&Help"}));
    EXPECT_FALSE(shownBar(explorer(), u"Standard").controls.empty());
    EXPECT_EQ(number(object(explorer(), u"CommandBars"), u"Count"), 2);
}

TEST_F(CommandBars, AnInspectorHasItsOwn) {
    const Inspector inspector = person().newMail();
    EXPECT_EQ(names(person().bars(inspector), &ShownBar::name), (Names{u"Menu Bar", u"Standard"}));
    EXPECT_NE(bar(inspector, u"Standard"), standard());
}

TEST_F(CommandBars, BarsAreFoundByNameInAnyCase) {
    EXPECT_EQ(bar(explorer(), u"menu BAR"), bar(explorer(), u"Menu Bar"));
    EXPECT_EQ(object(explorer(), u"CommandBars", {u"Standard"}), standard());
    EXPECT_EQ(text(standard(), u"Name"), u"Standard");
}

TEST_F(CommandBars, ABarThatIsAbsentIsAnError) {
    EXPECT_NEGATIVE_ERROR(bar(explorer(), u"Lorvane"));
}

TEST_F(CommandBars, ControlsAreFoundByCaptionWithoutItsMarkAndByPlace) {
    const Object menu = bar(explorer(), u"Menu Bar");
    EXPECT_EQ(text(control(menu, u"Help"), u"Caption"), u"&Help");
    EXPECT_EQ(text(control(menu, u"&tools"), u"Caption"), u"&Tools");
    EXPECT_EQ(call(controlsOf(menu), u"Item", {5}).toObject(), control(menu, u"&Tools"));
    EXPECT_EQ(number(control(menu, u"Help"), u"Index"), number(controlsOf(menu), u"Count"));
}

TEST_F(CommandBars, AControlThatIsAbsentIsAnError) {
    const Object menu = bar(explorer(), u"Menu Bar");
    EXPECT_NEGATIVE_ERROR(control(menu, u"Tool"));
    EXPECT_NEGATIVE_ERROR(control(menu, u"Toolset"));
    EXPECT_NEGATIVE_ERROR(call(controlsOf(menu), u"Item", {8}));
    EXPECT_NEGATIVE_ERROR(call(controlsOf(menu), u"Item", {0}));
}

TEST_F(CommandBars, CaptionsAreOfTheHostsLanguage) {
    HostSetup german;
    german.toolsCaption = u"E&xtras";
    german.helpCaption = u"&?";
    start(german);
    const Object menu = bar(explorer(), u"Menu Bar");
    EXPECT_NEGATIVE_ERROR(control(menu, u"&Tools"));
    EXPECT_NEGATIVE_ERROR(control(menu, u"Help"));
    EXPECT_EQ(text(control(menu, u"Extras"), u"Caption"), u"E&xtras");
}

TEST_F(CommandBars, AnExplorerHasNoMenuBarUntilItIsDisplayed) {
    const Connected explorers(host().application().Explorers());
    bool before = true, after = false;
    explorers.listener->reactions[u"NewExplorer"] = [&](Args args) {
        const Object made = argumentAt(args, 0).toObject();
        const auto hasMenuBar = [&] { return std::ranges::count(names(person().bars(made), &ShownBar::name), u"Menu Bar") == 1; };
        EXPECT_NEGATIVE_ERROR(bar(made, u"Menu Bar"));
        EXPECT_TRUE(bar(made, u"Standard"));
        before = hasMenuBar();
        made.call(Member::Display);
        after = hasMenuBar();
    };
    explorer();
    EXPECT_FALSE(before);
    EXPECT_TRUE(after);
}

TEST_F(CommandBars, TheMenuBarComesWithTheDisplayByThePersonToo) {
    const Connected explorers(host().application().Explorers());
    Object bars;
    explorers.listener->reactions[u"NewExplorer"] = [&](Args args) { bars = object(argumentAt(args, 0).toObject(), u"CommandBars"); };
    explorer();
    EXPECT_EQ(call(bars, u"Item", {u"Menu Bar"}).toObject(), bar(explorer(), u"Menu Bar"));
    EXPECT_EQ(names(person().bars(explorer()), &ShownBar::name).front(), u"Menu Bar");
}

TEST_F(CommandBars, AProgramAddsABarThatIsHiddenAtFirst) {
    const Inspector inspector = person().newMail();
    const Object bars = object(inspector, u"CommandBars");
    const Object made = call(bars, u"Add", {u"Lorvane", 1, Variant::missing(), true}).toObject();
    EXPECT_FALSE(truth(made, u"Visible"));
    EXPECT_EQ(made, bar(inspector, u"Lorvane"));
    put(made, u"Visible", true);
    const ShownBar shown = shownBar(inspector, u"Lorvane");
    EXPECT_TRUE(shown.visible);
    EXPECT_EQ(shown.position, 1);
    EXPECT_NEGATIVE_ERROR(call(bars, u"Add", {u"LORVANE", 1, Variant::missing(), true}));
}

TEST_F(CommandBars, ControlsAreAddedAtTheEndOrInFrontOfOne) {
    const Object menu = bar(explorer(), u"Menu Bar");
    const std::int32_t before = number(control(menu, u"Help"), u"Index");
    const Object controls = controlsOf(menu);
    const Object made = call(controls, u"Add",
                             {Argument::named(Member::Type, popup), Argument::named(memberOf(controls, u"Temporary"), true),
                              Argument::named(memberOf(controls, u"Before"), before)})
                            .toObject();
    put(made, u"Caption", u"Added");
    added(menu, button, u"Last");
    EXPECT_EQ(captions(explorer(), u"Menu Bar"), (Names{u"&File", u"&Edit", u"&View", u"&Go", u"&Tools", u"&Actions", u"Added", u"&Help", u"Last"}));
    EXPECT_EQ(number(made, u"Index"), before);
    EXPECT_EQ(number(control(menu, u"Help"), u"Index"), before + 1);
    EXPECT_NEGATIVE_ERROR(call(controls, u"Add", {Argument::named(memberOf(controls, u"Before"), 20)}));
    EXPECT_NEGATIVE_ERROR(call(controls, u"Add", {Argument::named(Member::Type, 4)}));
}

TEST_F(CommandBars, AMissingBeforeIsTheEnd) {
    const Object controls = controlsOf(standard());
    const Object made = call(controls, u"Add", {Argument::named(memberOf(controls, u"Before"), Variant::missing())}).toObject();
    EXPECT_EQ(number(made, u"Index"), number(controls, u"Count"));
    EXPECT_EQ(number(made, u"Type"), button);
}

TEST_F(CommandBars, WhatIsWrittenIsReadAndSeen) {
    const Object controls = controlsOf(standard());
    const Object made = call(controls, u"Add",
                             {Argument::named(Member::Type, button), Argument::named(memberOf(controls, u"Parameter"), u"tag0"),
                              Argument::named(memberOf(controls, u"Temporary"), true)})
                            .toObject();
    EXPECT_EQ(text(made, u"Parameter"), u"tag0");
    for (const auto& [name, value] : std::initializer_list<std::pair<const char16_t*, const char16_t*>>{
             {u"Caption", u"Lo&rvane"}, {u"Tag", u"Lorvane0"}, {u"TooltipText", u"Lorvane in mail"}, {u"OnAction", u"<!Lorvane.Connect>"}}) {
        put(made, name, value);
        EXPECT_EQ(text(made, name), value);
    }
    for (const auto& [name, value] : std::initializer_list<std::pair<const char16_t*, std::int32_t>>{{u"FaceId", 1679}, {u"Style", 3}, {u"Priority", 1}}) {
        put(made, name, value);
        EXPECT_EQ(number(made, name), value);
    }
    for (const char16_t* name : {u"BeginGroup", u"Enabled", u"Visible"}) {
        for (const bool value : {false, true}) {
            put(made, name, value);
            EXPECT_EQ(truth(made, name), value);
        }
    }
    put(made, u"Enabled", false);
    const ShownControl shown = shownBar(explorer(), u"Standard").controls.back();
    EXPECT_EQ(shown.type, button);
    EXPECT_EQ(shown.id, 1);
    EXPECT_EQ(shown.caption, u"Lo&rvane");
    EXPECT_EQ(shown.tag, u"Lorvane0");
    EXPECT_EQ(shown.tooltip, u"Lorvane in mail");
    EXPECT_EQ(shown.faceId, 1679);
    EXPECT_EQ(shown.style, 3);
    EXPECT_TRUE(shown.beginGroup && shown.visible && shown.temporary);
    EXPECT_FALSE(shown.enabled);
}

TEST_F(CommandBars, APopupOpensABarOfItsOwn) {
    const Object outer = added(standard(), popup, u"Meravix"), inner = added(outer, popup, u"Lo&rvane");
    const Object first = added(inner, button, u"Settings...");
    EXPECT_EQ(control(object(inner, u"CommandBar"), u"Settings..."), first);
    EXPECT_EQ(control(control(outer, u"lorvane"), u"settings..."), first);
    EXPECT_EQ(number(controlsOf(inner), u"Count"), 1);
    const ShownControl shown = shownBar(explorer(), u"Standard").controls.back();
    ASSERT_EQ(shown.controls.size(), 1u);
    EXPECT_EQ(names(shown.controls.front().controls, &ShownControl::caption), Names{u"Settings..."});
}

TEST_F(CommandBars, ButtonsHaveAFaceAndPopupsAMenu) {
    const Object one = added(standard(), button, u"One"), menu = added(standard(), popup, u"Menu");
    EXPECT_HOST_ERROR(noMember, get(one, u"Controls"));
    EXPECT_HOST_ERROR(noMember, get(one, u"CommandBar"));
    EXPECT_HOST_ERROR(noMember, put(menu, u"FaceId", 1));
    EXPECT_HOST_ERROR(noMember, get(menu, u"Style"));
    EXPECT_HOST_ERROR(noMember, Connected{menu});
}

TEST_F(CommandBars, AControlThatIsReachedTwiceIsOne) {
    const Object one = added(standard(), button, u"One");
    EXPECT_EQ(control(standard(), u"One"), one);
    EXPECT_EQ(controlsOf(standard()), controlsOf(standard()));
    EXPECT_EQ(object(explorer(), u"CommandBars"), object(explorer(), u"CommandBars"));
}

TEST_F(CommandBars, FindControlFindsByTagInPopupsToo) {
    const Object menu = added(standard(), popup, u"Menu"), inside = added(menu, button, u"Inside");
    put(inside, u"Tag", u"Lorvane7");
    const Object bars = object(explorer(), u"CommandBars");
    EXPECT_EQ(found(bars, u"Lorvane7"), inside);
    EXPECT_FALSE(found(bars, u"Lorvane"));
    EXPECT_FALSE(found(standard(), u"Lorvane7"));
    EXPECT_EQ(found(object(menu, u"CommandBar"), u"Lorvane7"), inside);
}

TEST_F(CommandBars, FindControlPassesHiddenOnesWhereItIsToldTo) {
    const Object one = added(standard(), button, u"One");
    put(one, u"Tag", u"Lorvane7");
    const Object bars = object(explorer(), u"CommandBars");
    const auto visible = [&](bool only) {
        return call(bars, u"FindControl", {Argument::named(memberOf(bars, u"Tag"), u"Lorvane7"), Argument::named(memberOf(bars, u"Visible"), only)}).toObject();
    };
    EXPECT_TRUE(visible(true));
    put(one, u"Visible", false);
    EXPECT_FALSE(visible(true));
    EXPECT_TRUE(visible(false));
    put(one, u"Visible", true);
    put(standard(), u"Visible", false);
    EXPECT_FALSE(visible(true));
}

TEST_F(CommandBars, ADeletedControlFailsOnEveryMember) {
    const Object menu = added(standard(), popup, u"Menu"), inside = added(menu, button, u"Inside");
    const std::int32_t count = number(controlsOf(standard()), u"Count");
    menu.call(Member::Delete);
    EXPECT_EQ(number(controlsOf(standard()), u"Count"), count - 1);
    for (const Object& gone : {menu, inside}) {
        EXPECT_NEGATIVE_ERROR(text(gone, u"Caption"));
        EXPECT_NEGATIVE_ERROR(put(gone, u"Visible", true));
        EXPECT_NEGATIVE_ERROR(gone.call(Member::Delete));
    }
    EXPECT_NEGATIVE_ERROR(controlsOf(menu));
    EXPECT_NEGATIVE_ERROR(Connected{inside});
}

TEST_F(CommandBars, AClickIsToldToItsButtonAlone) {
    const Object second = person().openExplorer();
    const Object here = added(standard(), button, u"Lorvane"), there = added(bar(second, u"Standard"), button, u"Lorvane");
    for (const Object& one : {here, there}) put(one, u"Tag", u"Lorvane0");
    const Connected hereClicks(here), thereClicks(there);
    std::vector<Object> given;
    bool byReference = false;
    hereClicks.listener->reactions[u"Click"] = [&](Args args) {
        given.push_back(argumentAt(args, 0).toObject());
        byReference = args.size() == 2 && args[1].isByReference() && !args[1].value().toBoolean();
    };
    person().clickBar(explorer(), u"standard/LORVANE");
    EXPECT_EQ(given, std::vector<Object>{here});
    EXPECT_TRUE(byReference);
    EXPECT_TRUE(thereClicks.listener->log.empty());
}

TEST_F(CommandBars, AClickGoesThroughPopups) {
    const Object inside = added(added(standard(), popup, u"Lo&rvane"), button, u"&Reply using Template");
    const Connected clicks(inside);
    person().clickBar(explorer(), u"Standard/Lorvane/Reply using Template");
    EXPECT_EQ(clicks.listener->count(u"Click"), 1u);
    EXPECT_NO_THROW(person().clickBar(explorer(), u"Standard/Lorvane"));
    EXPECT_EQ(clicks.listener->count(u"Click"), 1u);
}

TEST_F(CommandBars, WhatAPersonCannotReachIsNotClicked) {
    const Object menu = added(standard(), popup, u"Menu"), inside = added(menu, button, u"Inside");
    const Connected clicks(inside);
    const auto refused = [&](std::u16string_view path) {
        const HostError error = errorOf([&] { person().clickBar(explorer(), path); });
        return error.number() == invalidCall && !error.description().empty();
    };
    EXPECT_TRUE(refused(u"Standard/Menu/Outside"));
    EXPECT_TRUE(refused(u"Standard/Inside"));
    EXPECT_TRUE(refused(u"Lorvane/Menu/Inside"));
    EXPECT_TRUE(refused(u"Standard"));
    EXPECT_TRUE(refused(u"Standard/Menu/Inside/More"));
    for (const Object& off : {inside, menu}) {
        for (const char16_t* switchName : {u"Enabled", u"Visible"}) {
            put(off, switchName, false);
            EXPECT_TRUE(refused(u"Standard/Menu/Inside"));
            put(off, switchName, true);
        }
    }
    put(standard(), u"Visible", false);
    EXPECT_TRUE(refused(u"Standard/Menu/Inside"));
    EXPECT_TRUE(clicks.listener->log.empty());
}

TEST_F(CommandBars, AClickBringsItsWindowToTheFront) {
    const Object one = added(standard(), button, u"One");
    const Connected clicks(one);
    const Object other = person().openExplorer();
    Object active;
    clicks.listener->reactions[u"Click"] = [&](Args) { active = host().application().ActiveExplorer(); };
    person().clickBar(explorer(), u"Standard/One");
    EXPECT_EQ(active, explorer());
    EXPECT_NE(active, other);
}

TEST_F(CommandBars, AButtonMayDeleteItselfInItsClick) {
    const Object one = added(standard(), button, u"One");
    const Connected clicks(one);
    clicks.listener->reactions[u"Click"] = [&](Args args) { argumentAt(args, 0).toObject().call(Member::Delete); };
    person().clickBar(explorer(), u"Standard/One");
    EXPECT_NEGATIVE_ERROR(text(one, u"Caption"));
}

TEST_F(CommandBars, TheyLiveUntilTheWindowsCloseEventHasRun) {
    const Object one = added(standard(), button, u"One"), bars = object(explorer(), u"CommandBars");
    const Connected events(explorer());
    std::u16string inEvent;
    events.listener->reactions[u"Close"] = [&](Args) { inEvent = text(one, u"Caption"); };
    call(explorer(), u"Close");
    EXPECT_EQ(inEvent, u"One");
    EXPECT_NEGATIVE_ERROR(text(one, u"Caption"));
    EXPECT_NEGATIVE_ERROR(number(bars, u"Count"));
    EXPECT_NEGATIVE_ERROR(get(explorer(), u"CommandBars"));
}

class BarsOfARun : public EachStore {};
INSTANTIATE_EACH_STORE(BarsOfARun);

TEST_P(BarsOfARun, TemporaryOnesAreNotThereInTheNext) {
    const auto count = [this] { return number(controlsOf(bar(person().openExplorer(), u"Standard")), u"Count"); };
    std::int32_t before = 0;
    {
        const Object explorer = person().openExplorer();
        before = number(controlsOf(bar(explorer, u"Standard")), u"Count");
        added(bar(explorer, u"Standard"), button, u"Lorvane");
    }
    host().restart();
    EXPECT_EQ(count(), before);
}

}  // namespace lorvane::contract
