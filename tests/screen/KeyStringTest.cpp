#include "screen/KeyString.h"

#include <gtest/gtest.h>

#include <string>

#include "host/HostError.h"
#include "host/TextFunctions.h"

namespace lorvane::screen {
namespace {

using Key = KeyStroke::Key;

/// Strokes in short: modifiers as "S-", "C-", "A-", then the character or <number of the key>; F keys as <Fn>.
std::string shown(const std::vector<KeyStroke>& strokes) {
    constexpr const char* names[] = {"",     "Backspace", "Delete", "Enter", "Tab",    "Escape",   "Home",  "End",
                                     "Left", "Right",     "Up",     "Down",  "PageUp", "PageDown", "Insert"};
    std::string text;
    for (const KeyStroke& stroke : strokes) {
        if (stroke.shift) text += "S-";
        if (stroke.control) text += "C-";
        if (stroke.alt) text += "A-";
        if (stroke.key == Key::Character)
            text += host::toUtf8(std::u16string(1, stroke.character));
        else if (stroke.key == Key::Function)
            text += "<F" + std::to_string(stroke.function) + ">";
        else
            text += "<" + std::string(names[static_cast<int>(stroke.key)]) + ">";
    }
    return text;
}

struct Form {
    const char16_t* keys;
    const char* strokes;
};

class KeyGrammar : public testing::TestWithParam<Form> {};

TEST_P(KeyGrammar, Reads) {
    EXPECT_EQ(shown(parseKeys(GetParam().keys)), GetParam().strokes);
}

INSTANTIATE_TEST_SUITE_P(Plain, KeyGrammar,
                         testing::Values(Form{u"", ""}, Form{u"Hello, you", "Hello, you"}, Form{u"äß", "äß"}, Form{u"[x]", "[x]"},
                                         Form{u"a\r\nb\rc\nd\te", "a<Enter>b<Enter>c<Enter>d<Tab>e"}));
INSTANTIATE_TEST_SUITE_P(Modifiers, KeyGrammar,
                         testing::Values(Form{u"^v", "C-v"}, Form{u"+e", "S-e"}, Form{u"%f", "A-f"}, Form{u"^+%x", "S-C-A-x"}, Form{u"++x", "S-x"},
                                         Form{u"+ec", "S-ec"}, Form{u"+(EC)x", "S-ES-Cx"}, Form{u"+(E^(C)D)", "S-ES-C-CS-D"}, Form{u"(ab)", "ab"},
                                         Form{u"+()a", "a"}, Form{u"^~", "C-<Enter>"}, Form{u"+{TAB}", "S-<Tab>"}, Form{u"+(~{F2})", "S-<Enter>S-<F2>"},
                                         Form{u"+{a 2}b", "S-aS-ab"}));
INSTANTIATE_TEST_SUITE_P(Names, KeyGrammar,
                         testing::Values(Form{u"{BACKSPACE}{BS}{BKSP}", "<Backspace><Backspace><Backspace>"}, Form{u"{DELETE}{DEL}", "<Delete><Delete>"},
                                         Form{u"{ENTER}~", "<Enter><Enter>"}, Form{u"{TAB}{ESC}", "<Tab><Escape>"}, Form{u"{HOME}{END}", "<Home><End>"},
                                         Form{u"{LEFT}{RIGHT}{UP}{DOWN}", "<Left><Right><Up><Down>"}, Form{u"{PGUP}{PGDN}", "<PageUp><PageDown>"},
                                         Form{u"{INSERT}{INS}", "<Insert><Insert>"}, Form{u"{F1}{F9}{F10}{F16}", "<F1><F9><F10><F16>"},
                                         Form{u"{backspace}{Enter}{f5}", "<Backspace><Enter><F5>"}));
INSTANTIATE_TEST_SUITE_P(Braces, KeyGrammar,
                         testing::Values(Form{u"{+}{^}{%}{~}{(}{)}", "+^%~()"}, Form{u"{[}{]}", "[]"}, Form{u"{{}{}}", "{}"}, Form{u"{{ 2}{} 2}", "{{}}"},
                                         Form{u"{h 3}", "hhh"}, Form{u"{LEFT 2}", "<Left><Left>"}, Form{u"{BACKSPACE 0}", ""}, Form{u"{ }", " "},
                                         Form{u"{  2}", "  "}, Form{u"^{F 2}", "C-FC-F"}));

class BrokenKeys : public testing::TestWithParam<const char16_t*> {};

TEST_P(BrokenKeys, AreError5) {
    try {
        parseKeys(GetParam());
        FAIL() << "read without an error";
    } catch (const host::HostError& error) {
        EXPECT_EQ(error.number(), 5);
        EXPECT_NE(error.description().find(u"The keys \"" + std::u16string(GetParam()) + u"\" cannot be sent"), std::u16string::npos);
    }
}

INSTANTIATE_TEST_SUITE_P(All, BrokenKeys,
                         testing::Values(u"{BACKSPCE}", u"{ENTER", u"{", u"{}", u"a}", u"{}a}", u"(ab", u"ab)", u"+(a", u"+", u"ab^", u"(a+)", u"{F0}",
                                         u"{F17}", u"{F05}", u"{F1x}", u"{LEFT x}", u"{LEFT 2 }", u"{LEFT  2}", u"{LEFT -1}", u"{LEFT 32768}", u"{LEFT }",
                                         u"{ab}", u"{LEFT 99999999999999999999}"));

TEST(KeyString, RepeatsUpToTheLargestSmallNumber) {
    EXPECT_EQ(parseKeys(u"{BACKSPACE 32767}").size(), 32767U);
}

TEST(KeyString, ACharacterOutsideTheBasicPlaneRepeatsWhole) {
    const auto strokes = parseKeys(u"{\U0001F600 2}");
    ASSERT_EQ(strokes.size(), 4U);
    EXPECT_EQ(strokes[0].character, strokes[2].character);
    EXPECT_EQ(strokes[1].character, 0xDE00);
}

TEST(KeyString, TextIsTypedAsItStands) {
    EXPECT_EQ(shown(keysOfText(u"+{a}\r\n~\n\tz")), "+{a}<Enter>~<Enter><Tab>z");
}

TEST(KeyString, RunsArePlainCharactersOrOneKeyRepeated) {
    const auto strokes = parseKeys(u"ab{BS 3}^v^vc~");
    std::vector<std::size_t> ends;
    for (std::size_t at = 0; at < strokes.size(); at = ends.back()) ends.push_back(endOfRun(strokes, at));
    EXPECT_EQ(ends, (std::vector<std::size_t>{2, 5, 7, 8, 9}));
}

}  // namespace
}  // namespace lorvane::screen
