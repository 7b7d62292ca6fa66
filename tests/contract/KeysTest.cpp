#include "contract/HostFixture.h"

/// Keystrokes go to the focused window's caret.
namespace lorvane::contract {

class Keys : public OneHost {
protected:
    Inspector openPlain(std::u16string_view body) {
        const Inspector inspector = host().open(host().plainItem(body));
        person().focus(inspector, Field::Body, -1);
        return inspector;
    }
    std::u16string bodyAfter(std::u16string_view keys) {
        const Inspector inspector = openPlain(u"");
        host().sendKeys(keys);
        return person().shown(inspector, Field::Body);
    }
};

TEST_F(Keys, GoToTheWindowInFront) {
    const Inspector first = openPlain(u""), second = openPlain(u"");
    host().sendKeys(u"x");
    EXPECT_EQ(person().shown(first, Field::Body), u"");
    EXPECT_EQ(person().shown(second, Field::Body), u"x");
    first.Activate();
    host().sendKeys(u"y");
    EXPECT_EQ(person().shown(first, Field::Body), u"y");
    EXPECT_EQ(person().shown(second, Field::Body), u"x");
}

TEST_F(Keys, AreLostWhereNoWindowIsOpen) {
    host();
    EXPECT_NO_THROW(host().sendKeys(u"x"));
}

TEST_F(Keys, DoNotReachAnInspectorBehindAnExplorer) {
    const Inspector inspector = openPlain(u"");
    person().openExplorer();
    host().sendKeys(u"x");
    EXPECT_EQ(person().shown(inspector, Field::Body), u"");
}

TEST_F(Keys, DoNotReachAHiddenInspector) {
    const MailItem item = host().plainItem(u"a");
    const Inspector hidden = item.GetInspector();
    host().sendKeys(u"x");
    item.Save();
    EXPECT_EQ(item.Body(), u"a");
}

TEST_F(Keys, PlainCharactersAreThemselves) {
    EXPECT_EQ(bodyAfter(u"Dear John, 100 <\x20AC>"), u"Dear John, 100 <\x20AC>");
}

TEST_F(Keys, TheMarkerIsTypedAsItStands) {
    EXPECT_EQ(bodyAfter(u"Asdw34r2wjkytui983jnd2m"), u"Asdw34r2wjkytui983jnd2m");
}

TEST_F(Keys, BracesMakeSpecialCharactersLiteral) {
    EXPECT_EQ(bodyAfter(u"{+}{^}{%}{~}{(}{)}{[}{]}{{}{}}"), u"+^%~()[]{}");
}

TEST_F(Keys, RepeatByANumberInBraces) {
    EXPECT_EQ(bodyAfter(u"{h 3}"), u"hhh");
    EXPECT_EQ(bodyAfter(u"abcdef{BACKSPACE 4}"), u"ab");
    EXPECT_EQ(bodyAfter(u"abc{BS}{bksp}"), u"a");
}

TEST_F(Keys, TildeAndEnterAreLineEnds) {
    EXPECT_EQ(bodyAfter(u"a~b{ENTER}c"), u"a\r\nb\r\nc");
}

TEST_F(Keys, ArrowsHomeAndEndMoveTheCaret) {
    EXPECT_EQ(bodyAfter(u"ac{LEFT}b"), u"abc");
    EXPECT_EQ(bodyAfter(u"bc{HOME}a{END}d"), u"abcd");
    EXPECT_EQ(bodyAfter(u"abc{LEFT 2}{DELETE}"), u"ac");
    EXPECT_EQ(bodyAfter(u"ab{LEFT 2}{RIGHT}x"), u"axb");
}

TEST_F(Keys, BrokenTextsAreError5AndSendNothing) {
    const Inspector inspector = openPlain(u"a");
    for (const char16_t* keys : {u"x{BACKSPCE}", u"x{", u"x}", u"x(", u"x+", u"x{BACKSPACE  2}"}) {
        EXPECT_HOST_ERROR(runtime_error::InvalidProcedureCall, host().sendKeys(keys));
    }
    EXPECT_EQ(person().shown(inspector, Field::Body), u"a");
}

TEST_F(Keys, TabGoesFromFieldToFieldAndShiftTabBack) {
    const Inspector inspector = person().newMail();
    person().focus(inspector, Field::Subject, 0);
    host().sendKeys(u"{TAB}");
    EXPECT_EQ(person().focusedField(inspector), Field::Body);
    host().sendKeys(u"+{TAB}");
    EXPECT_EQ(person().focusedField(inspector), Field::Subject);
    host().sendKeys(u"+{TAB}");
    EXPECT_EQ(person().focusedField(inspector), Field::Bcc);
}

TEST_F(Keys, EnterInAOneLineFieldMakesNoLineEnd) {
    const Inspector inspector = person().newMail();
    person().focus(inspector, Field::Subject, 0);
    host().sendKeys(u"Of{ENTER}fer");
    EXPECT_EQ(person().shown(inspector, Field::Subject).find(u'\r'), std::u16string::npos);
}

TEST_F(Keys, BackspacesInTheSubjectTakeBackWhatWasTypedThere) {
    const Inspector inspector = person().newMail();
    person().focus(inspector, Field::Subject, 0);
    person().type(u"Offer");
    host().sendKeys(u"Asdw34r2wjkytui983jnd2m{BACKSPACE 23}");
    EXPECT_EQ(person().shown(inspector, Field::Subject), u"Offer");
}

TEST_F(Keys, KeysThatGoDownOneByOneTypeAtTheCaret) {
    const Inspector inspector = openPlain(u"Dear ");
    const Object screen = host().machine().screen();
    constexpr std::int32_t shiftKey = 0x10, up = 2, withShift = 0x100;
    const auto press = [&](std::int32_t key, std::int32_t flags) { call(screen, u"keybd_event", {key, call(screen, u"MapVirtualKey", {key, 0}), flags}); };
    for (const char16_t character : std::u16string_view(u"[FullName]")) {
        const std::int32_t code = call(screen, u"VkKeyScan", {std::u16string(1, character)}).toInt32();
        if ((code & withShift) != 0) press(shiftKey, 0);
        press(code & 0xFF, 0);
        press(code & 0xFF, up);
        if ((code & withShift) != 0) press(shiftKey, up);
    }
    EXPECT_EQ(person().shown(inspector, Field::Body), u"Dear [FullName]");
}

}  // namespace lorvane::contract
