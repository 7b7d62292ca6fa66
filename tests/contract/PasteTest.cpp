#include "contract/HostFixture.h"

namespace lorvane::contract {

class Paste : public OneHost {
protected:
    Inspector openHtml(std::u16string_view body, std::int32_t position) {
        const Inspector inspector = host().open(host().htmlItem(body));
        person().focus(inspector, Field::Body, position);
        return inspector;
    }
    Inspector openPlain(std::u16string_view body, std::int32_t position) {
        const Inspector inspector = host().open(host().plainItem(body));
        person().focus(inspector, Field::Body, position);
        return inspector;
    }
    std::u16string htmlAfterPaste(const Inspector& inspector) {
        host().sendKeys(u"^v");
        inspector.CurrentItem().Save();
        return inspector.CurrentItem().HTMLBody();
    }
    std::u16string bodyAfterPaste(const Inspector& inspector) {
        host().sendKeys(u"^v");
        inspector.CurrentItem().Save();
        return inspector.CurrentItem().Body();
    }
};

TEST_F(Paste, IntoHtmlTakesTheFragmentAsItIs) {
    const Inspector inspector = openHtml(u"<p>one three</p>", 4);
    person().setClipboard({.text = u"not this", .htmlFormat = htmlBlock("<B>two</b>\r\n&nbsp;&bogus; \xC3\xA9")});
    EXPECT_EQ(htmlAfterPaste(inspector), html(u"<p>one <B>two</b>\r\n&nbsp;&bogus; \x00E9three</p>"));
}

TEST_F(Paste, IntoHtmlFindsTheFragmentByItsOffsets) {
    const Inspector inspector = openHtml(u"", 0);
    std::string block = htmlBlock("<b>two</b>");
    for (const char* comment : {"<!--StartFragment-->", "<!--EndFragment-->"}) {
        const std::string text = comment;
        block.replace(block.find(text), text.size(), std::string(text.size(), ' '));
    }
    person().setClipboard({.htmlFormat = block});
    EXPECT_EQ(htmlAfterPaste(inspector), html(u"<b>two</b>"));
}

TEST_F(Paste, IntoHtmlElseTakesTheTextEscaped) {
    const Inspector inspector = openHtml(u"<p>ad</p>", 1);
    person().setClipboard({.text = u"<b> &\r\nc"});
    EXPECT_EQ(htmlAfterPaste(inspector), html(u"<p>a&lt;b&gt; &amp;<BR>\r\ncd</p>"));
}

TEST_F(Paste, IntoPlainTakesTheText) {
    const Inspector inspector = openPlain(u"ad", 1);
    person().setClipboard({.text = u"b\r\nc", .htmlFormat = htmlBlock("<b>not this</b>")});
    EXPECT_EQ(bodyAfterPaste(inspector), u"ab\r\ncd");
}

TEST_F(Paste, IntoPlainElseTakesTheVisibleTextOfTheFragment) {
    const Inspector inspector = openPlain(u"ad", 1);
    person().setClipboard({.htmlFormat = htmlBlock("<p>b <b>&amp;</b></p><p>c</p>")});
    EXPECT_EQ(bodyAfterPaste(inspector), u"ab &\r\ncd");
}

TEST_F(Paste, IntoRichTakesTheText) {
    const MailItem item = host().newItem();
    put(makeSafeMailItem(item), u"RTFBody", rtf(u"ad"));
    const Inspector inspector = host().open(item);
    person().focus(inspector, Field::Body, 1);
    person().setClipboard({.text = u"b {x}\r\nc", .htmlFormat = htmlBlock("<b>not this</b>")});
    EXPECT_EQ(bodyAfterPaste(inspector), u"ab {x}\r\ncd");
}

TEST_F(Paste, IntoATaskTakesTheText) {
    const MailItem task = host().newItem(u"IPM.Task");
    const Inspector inspector = host().open(task);
    person().focus(inspector, Field::Body, 0);
    person().setClipboard({.text = u"Dear John", .htmlFormat = htmlBlock("<b>not this</b>")});
    EXPECT_EQ(bodyAfterPaste(inspector), u"Dear John");
}

TEST_F(Paste, IntoAddressFieldsTakesTheTextElseTheVisibleText) {
    const Inspector inspector = person().newMail();
    person().focus(inspector, Field::To, 0);
    person().setClipboard({.text = u"john@example.com", .htmlFormat = htmlBlock("<b>not this</b>")});
    host().sendKeys(u"^v");
    EXPECT_EQ(person().shown(inspector, Field::To), u"john@example.com");
    person().focus(inspector, Field::Cc, 0);
    person().setClipboard({.htmlFormat = htmlBlock("<b>jane@example.com</b>")});
    host().sendKeys(u"^v");
    EXPECT_EQ(person().shown(inspector, Field::Cc), u"jane@example.com");
}

TEST_F(Paste, IntoAOneLineFieldGoesUpToTheFirstLineEnd) {
    const Inspector inspector = person().newMail();
    person().focus(inspector, Field::Subject, 0);
    person().setClipboard({.text = u"Offer\r\nDear John"});
    host().sendKeys(u"^v");
    EXPECT_EQ(person().shown(inspector, Field::Subject), u"Offer");
}

TEST_F(Paste, LeavesTheCaretBehindWhatWasPasted) {
    const Inspector marked = openHtml(u"<p>ad</p>", 1);
    person().setClipboard({.htmlFormat = htmlBlock("<b>b</b>")});
    host().sendKeys(u"^v");
    person().type(u"X");
    EXPECT_EQ(person().shown(marked, Field::Body), u"abXd");
    const Inspector plain = openPlain(u"ad", 1);
    person().setClipboard({.text = u"bb"});
    host().sendKeys(u"^v");
    person().type(u"X");
    EXPECT_EQ(person().shown(plain, Field::Body), u"abbXd");
}

TEST_F(Paste, ReplacesTheSelection) {
    const Inspector inspector = openPlain(u"one two three", 0);
    person().select(inspector, 4, 3);
    person().setClipboard({.text = u"2"});
    EXPECT_EQ(bodyAfterPaste(inspector), u"one 2 three");
}

TEST_F(Paste, OfNothingChangesNothing) {
    const Inspector inspector = openHtml(u"<p>ad</p>", 1);
    person().setClipboard({});
    EXPECT_EQ(htmlAfterPaste(inspector), html(u"<p>ad</p>"));
}

TEST_F(Paste, ReachesThePropertiesOnSaveOnly) {
    const Inspector inspector = openPlain(u"a", -1);
    person().setClipboard({.text = u"b"});
    host().sendKeys(u"^v");
    EXPECT_EQ(inspector.CurrentItem().Body(), u"a");
}

TEST_F(Paste, IsDelayedLikeTyping) {
    start({.commitDelay = 1});
    const Inspector inspector = openPlain(u"a", -1);
    person().setClipboard({.text = u"b"});
    EXPECT_EQ(bodyAfterPaste(inspector), u"a");
    host().pump();
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().Body(), u"ab");
}

class ClipboardFormats : public OneHost {
protected:
    host::Clipboard clipboard() { return host().machine().clipboard(); }
    /// The platform's own steps for one block.
    void setBlock(const std::string& block) {
        const host::Clipboard board = clipboard();
        const std::int32_t format = board.RegisterClipboardFormat(u"HTML Format");
        ASSERT_TRUE(board.OpenClipboard());
        const std::int32_t handle = board.GlobalAlloc(0x42, static_cast<std::int32_t>(block.size()));
        board.RtlMoveMemory(board.GlobalLock(handle), bytes(block));
        board.GlobalUnlock(handle);
        board.EmptyClipboard();
        board.SetClipboardData(format, handle);
        board.CloseClipboard();
    }
};

TEST_F(ClipboardFormats, SetTextReplacesAll) {
    host();
    person().setClipboard({.text = u"old", .htmlFormat = htmlBlock("<b>old</b>")});
    clipboard().SetText(u"new");
    EXPECT_EQ(person().clipboard().text, u"new");
    EXPECT_FALSE(person().clipboard().htmlFormat);
}

TEST_F(ClipboardFormats, ClearingReplacesAll) {
    host();
    person().setClipboard({.text = u"old", .htmlFormat = htmlBlock("<b>old</b>")});
    clipboard().Clear();
    EXPECT_FALSE(person().clipboard().text);
    EXPECT_FALSE(person().clipboard().htmlFormat);
}

TEST_F(ClipboardFormats, TheHtmlWritersStepsLeaveHtmlFormatAlone) {
    host();
    person().setClipboard({.text = u"old"});
    setBlock(htmlBlock("<b>two</b>"));
    EXPECT_FALSE(person().clipboard().text);
    ASSERT_TRUE(person().clipboard().htmlFormat);
    EXPECT_NE(person().clipboard().htmlFormat->find("<b>two</b>"), std::string::npos);
}

TEST_F(ClipboardFormats, WhatTheStepsWroteIsPasted) {
    setBlock(htmlBlock("<b>two</b>"));
    const Inspector inspector = host().open(host().htmlItem(u"<p>one </p>"));
    person().focus(inspector, Field::Body, -1);
    host().sendKeys(u"^v");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().Body(), u"onetwo");
}

TEST_F(ClipboardFormats, TextWithOddUnitsIsPastedToTheUnit) {
    clipboard().SetText(u"\x00E9\xD83D\xDE00\x4E2D");
    const Inspector inspector = host().open(host().plainItem(u""));
    person().focus(inspector, Field::Body, 0);
    host().sendKeys(u"^v");
    EXPECT_EQ(person().shown(inspector, Field::Body), u"\x00E9\xD83D\xDE00\x4E2D");
}

}  // namespace lorvane::contract
