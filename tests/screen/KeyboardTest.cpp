#include "screen/Keyboard.h"

#include <gtest/gtest.h>

#include <string>

namespace lorvane::screen {
namespace {

using Key = KeyStroke::Key;

TEST(Keyboard, LettersAndDigitsHaveTheCodesOfTheirCapitals) {
    EXPECT_EQ(vkKeyScan(u'a'), 0x41);
    EXPECT_EQ(vkKeyScan(u'Z'), 0x5A | WithShift);
    EXPECT_EQ(vkKeyScan(u'7'), 0x37);
    EXPECT_EQ(vkKeyScan(u'&'), 0x37 | WithShift);
    EXPECT_EQ(vkKeyScan(u' '), 0x20);
    EXPECT_EQ(vkKeyScan(u'\r'), 0x0D);
}

TEST(Keyboard, SignsLieAsOnTheUsLayout) {
    EXPECT_EQ(vkKeyScan(u'['), 0xDB);
    EXPECT_EQ(vkKeyScan(u']'), 0xDD);
    EXPECT_EQ(vkKeyScan(u'{'), 0xDB | WithShift);
    EXPECT_EQ(vkKeyScan(u'_'), 0xBD | WithShift);
    EXPECT_EQ(vkKeyScan(u'"'), 0xDE | WithShift);
}

TEST(Keyboard, NoKeyHasOtherCharacters) {
    for (const char16_t character : {u'\u00E9', u'\u20AC', u'\0', char16_t{0xD83D}}) EXPECT_EQ(vkKeyScan(character), -1);
}

TEST(Keyboard, EveryCharacterOfAsciiIsTypedAsItself) {
    for (char16_t character = u' '; character <= u'~'; ++character) {
        Keyboard keyboard;
        const std::int32_t key = vkKeyScan(character);
        ASSERT_GE(key, 0);
        if ((key & WithShift) != 0) keyboard.press(ShiftCode);
        const auto stroke = keyboard.press(key & 0xFF);
        ASSERT_TRUE(stroke);
        EXPECT_EQ(stroke->character, character);
        EXPECT_TRUE(stroke->isPlain());
    }
}

TEST(Keyboard, ScanCodesLeadBack) {
    EXPECT_EQ(mapVirtualKey(0x41, 0), 0x1E);
    EXPECT_EQ(mapVirtualKey(0xDB, 0), 0x1A);
    EXPECT_EQ(mapVirtualKey(ShiftCode, 0), 0x2A);
    for (char16_t character = u' '; character <= u'~'; ++character) {
        const std::int32_t code = vkKeyScan(character) & 0xFF;
        EXPECT_EQ(mapVirtualKey(mapVirtualKey(code, 0), 1), code);
    }
    EXPECT_EQ(mapVirtualKey(0xFF, 0), 0);
    EXPECT_EQ(mapVirtualKey(0xFF, 1), 0);
}

TEST(Keyboard, AKeyTypesACharacterOfItsOwn) {
    EXPECT_EQ(mapVirtualKey(0x41, 2), u'A');
    EXPECT_EQ(mapVirtualKey(0xDB, 2), u'[');
    EXPECT_EQ(mapVirtualKey(0x25, 2), 0);
    EXPECT_EQ(mapVirtualKey(0x41, 9), 0);
}

TEST(Keyboard, HeldKeysEndWhereTheyAreReleased) {
    Keyboard keyboard;
    keyboard.press(ShiftCode);
    EXPECT_EQ(keyboard.press(0x41)->character, u'A');
    keyboard.release(0x41);
    EXPECT_EQ(keyboard.press(0x42)->character, u'B');
    keyboard.release(ShiftCode);
    EXPECT_EQ(keyboard.press(0x42)->character, u'b');
}

TEST(Keyboard, WithControlOrAltNothingIsTyped) {
    Keyboard keyboard;
    keyboard.press(ControlCode);
    keyboard.press(ShiftCode);
    const auto stroke = keyboard.press(0x56);
    ASSERT_TRUE(stroke);
    EXPECT_EQ(*stroke, (KeyStroke{Key::Character, u'v', 0, true, true, false}));
    keyboard.release(ControlCode);
    keyboard.release(ShiftCode);
    constexpr std::int32_t rightAlt = 0xA5;
    keyboard.press(rightAlt);
    EXPECT_TRUE(keyboard.press(0x46)->alt);
}

TEST(Keyboard, NamedKeysArriveAsSuch) {
    Keyboard keyboard;
    EXPECT_EQ(keyboard.press(0x0D)->key, Key::Enter);
    EXPECT_EQ(keyboard.press(0x25)->key, Key::Left);
    keyboard.press(ShiftCode);
    EXPECT_EQ(*keyboard.press(0x09), (KeyStroke{Key::Tab, 0, 0, true, false, false}));
    EXPECT_EQ(keyboard.press(0x74)->function, 5);
    EXPECT_FALSE(keyboard.press(0xFF));
}

}  // namespace
}  // namespace lorvane::screen
