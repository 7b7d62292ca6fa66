#include "contract/HostFixture.h"

/// Rich text: `RTFBody`, which only the wrapper has.
namespace lorvane::contract {

class RichText : public EachStore {
protected:
    MailItem richItem(std::u16string_view source) {
        const MailItem item = host().newItem();
        put(makeSafeMailItem(item), u"RTFBody", source);
        return item;
    }
    static std::u16string rtfOf(const MailItem& item) { return text(makeSafeMailItem(item), u"RTFBody"); }
};
INSTANTIATE_EACH_STORE(RichText);

TEST_P(RichText, IsKeptToTheUnitOverSaveAndRestart) {
    const std::u16string source =
        u"{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\r\n\\pard\\f0\\fs20 Dear {\\b  John},\\par\n\\u8364? {\\*\\unknown x}\\par\r\n}\r\n ";
    const MailItem item = richItem(source);
    EXPECT_EQ(rtfOf(item), source);
    item.Save();
    const auto pair = identityOf(item);
    host().restart();
    const MailItem found = host().session().GetItemFromID(pair.first, pair.second);
    EXPECT_EQ(rtfOf(found), source);
    EXPECT_EQ(found.BodyFormat(), body_format::RichText);
}

TEST_P(RichText, BodyIsItsText) {
    EXPECT_EQ(richItem(rtf(u"a\\par b\\tab c")).Body(), u"a\r\nb\tc");
    EXPECT_EQ(richItem(rtf(u"\\{a\\} \\\\ {\\i b}{\\b c}")).Body(), u"{a} \\ bc");
    EXPECT_EQ(richItem(rtf(u"\\u8364? \\u-10179?\\u-8704?")).Body(), u"\x20AC \xD83D\xDE00");
    EXPECT_EQ(richItem(rtf(u"a{\\*\\hidden b}c")).Body(), u"ac");
}

TEST_P(RichText, IsWrittenAndReadThroughAPostsWrapperToo) {
    const MailItem post = host().newItem(u"IPM.Post");
    put(makeSafePostItem(post), u"RTFBody", rtf(u"Dear {\\b John}"));
    EXPECT_EQ(text(makeSafePostItem(post), u"RTFBody"), rtf(u"Dear {\\b John}"));
    EXPECT_EQ(post.Body(), u"Dear John");
    EXPECT_EQ(post.BodyFormat(), body_format::RichText);
    EXPECT_EQ(host().open(post).EditorType(), editor_type::RichText);
}

TEST_P(RichText, WrittenBodiesAreReadBack) {
    const std::u16string odd = u"A {b} \\c & <d> \x00E9\x4E2D\xD83D\xDE00\ttab\r\n\r\n  Bye  ";
    const MailItem item = richItem(rtf(u"Dear {\\b John}"));
    item.Body(odd);
    item.Save();
    EXPECT_EQ(host().again(item).Body(), odd);
    EXPECT_EQ(host().again(item).BodyFormat(), body_format::RichText);
    EXPECT_NE(rtfOf(host().again(item)), u"");
}

TEST_P(RichText, OfAPlainOrHtmlItemIsNone) {
    EXPECT_EQ(rtfOf(host().newItem()), u"");
    EXPECT_EQ(rtfOf(host().plainItem(u"{\\rtf1 Dear John}")), u"");
    EXPECT_EQ(rtfOf(host().htmlItem(u"Dear John")), u"");
    const MailItem item = richItem(rtf(u"Dear John"));
    item.HTMLBody(html(u"Dear John"));
    EXPECT_EQ(rtfOf(item), u"");
}

TEST_P(RichText, IsTheTextOfATaskThatWasGivenABody) {
    const MailItem task = host().newItem(u"IPM.Task");
    task.Body(u"Dear John");
    EXPECT_EQ(text(makeSafePostItem(task), u"RTFBody").rfind(u"{\\rtf", 0), 0u);
    put(makeSafePostItem(task), u"RTFBody", rtf(u"Dear {\\b Jane}"));
    EXPECT_EQ(task.Body(), u"Dear Jane");
    task.Save();
    EXPECT_EQ(host().again(task).Body(), u"Dear Jane");
}

TEST_P(RichText, WrittenOnAnOpenItemReloadsItsWindow) {
    const Inspector inspector = host().open(host().plainItem(u"Dear John"));
    person().focus(inspector, Field::Body, -1);
    person().type(u"given up");
    put(makeSafeMailItem(inspector.CurrentItem()), u"RTFBody", rtf(u"Dear {\\b Jane}\\par Bye"));
    EXPECT_EQ(person().shown(inspector, Field::Body), u"Dear Jane\r\nBye");
    EXPECT_EQ(inspector.EditorType(), editor_type::RichText);
    inspector.CurrentItem().Save();
    EXPECT_EQ(rtfOf(inspector.CurrentItem()), rtf(u"Dear {\\b Jane}\\par Bye"));
}

TEST_P(RichText, OpenedAndClosedIsAsItWas) {
    const std::u16string source = u"{\\rtf1\\ansi Dear {\\b John}\\par\r\n {\\*\\unknown x}}";
    const MailItem item = richItem(source);
    host().open(item).Close(olSave);
    EXPECT_EQ(rtfOf(host().again(item)), source);
}

TEST_P(RichText, KeepsItsFormatsWhereSomethingIsTyped) {
    const Inspector inspector = host().open(richItem(rtf(u"Dear {\\b John}\\par Bye")));
    person().focus(inspector, Field::Body, 5);
    person().type(u"old ");
    makeSafeMailItem(inspector.CurrentItem()).Save();
    EXPECT_EQ(inspector.CurrentItem().Body(), u"Dear old John\r\nBye");
    EXPECT_NE(rtfOf(inspector.CurrentItem()).find(u"{\\b John}"), std::u16string::npos);
}

TEST_P(RichText, IsTheSameOnEveryVersion) {
    for (const char16_t* version : {u"9.0.0.2711", u"10.0.0.6515", u"11.0.0.5510", u"12.0.0.4518"}) {
        RunningHost running(GetParam(), {.version = version});
        const MailItem item = running.newItem();
        const SafeMailItem safe = makeSafeMailItem(item);
        put(safe, u"RTFBody", rtf(u"Dear {\\b John}"));
        EXPECT_EQ(text(safe, u"RTFBody"), rtf(u"Dear {\\b John}"));
        EXPECT_EQ(safe.BodyFormat(), body_format::RichText);
        EXPECT_EQ(item.Body(), u"Dear John");
        EXPECT_EQ(item.HTMLBody(), u"");
    }
}

TEST_P(RichText, IsNoMemberOfTheBareItem) {
    const MailItem item = richItem(rtf(u"Dear John"));
    EXPECT_HOST_ERROR(runtime_error::NoSuchMember, put(item, u"RTFBody", rtf(u"Dear Jane")));
    EXPECT_EQ(item.Body(), u"Dear John");
}

}  // namespace lorvane::contract
