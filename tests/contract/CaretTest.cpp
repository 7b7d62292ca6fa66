#include "contract/HostFixture.h"

/// Where a caret stands in the source of an open item, and what typing does there.
namespace lorvane::contract {

class Caret : public OneHost {
protected:
    /// The committed source of an HTML mail with `body`, after `keys` (in the grammar of SendKeys) were sent with the caret at `position`.
    std::u16string after(std::u16string_view source, std::int32_t position, std::u16string_view keys) {
        const MailItem item = host().newItem();
        item.HTMLBody(source);
        const Inspector inspector = host().open(item);
        person().focus(inspector, Field::Body, position);
        host().sendKeys(keys);
        inspector.CurrentItem().Save();
        std::u16string result = inspector.CurrentItem().HTMLBody();
        inspector.Close(olDiscard);
        return result;
    }
    std::u16string plainAfter(std::u16string_view source, std::int32_t position, std::u16string_view keys) {
        const Inspector inspector = host().open(host().plainItem(source));
        person().focus(inspector, Field::Body, position);
        host().sendKeys(keys);
        inspector.CurrentItem().Save();
        std::u16string result = inspector.CurrentItem().Body();
        inspector.Close(olDiscard);
        return result;
    }
};

TEST_F(Caret, IsInOneFieldAtOnePlace) {
    const Inspector inspector = host().open(host().plainItem(u"abcdef"));
    person().focus(inspector, Field::Body, 3);
    EXPECT_EQ(person().focusedField(inspector), Field::Body);
    EXPECT_EQ(person().caret(inspector), 3u);
    person().focus(inspector, Field::Subject, -1);
    EXPECT_EQ(person().focusedField(inspector), Field::Subject);
}

TEST_F(Caret, CountsUnitsOfTheVisibleText) {
    EXPECT_EQ(plainAfter(u"\xD83D\xDE00z", 2, u"X"), u"\xD83D\xDE00Xz");
    EXPECT_EQ(after(html(u"&#x1F600;&amp;z"), 3, u"X"), html(u"&#x1F600;&amp;Xz"));
}

TEST_F(Caret, CountsALineEndAsOne) {
    EXPECT_EQ(plainAfter(u"a\r\nb", 2, u"X"), u"a\r\nXb");
    EXPECT_EQ(plainAfter(u"a\r\nb", 1, u"X"), u"aX\r\nb");
}

TEST_F(Caret, MinusOneIsTheEnd) {
    EXPECT_EQ(plainAfter(u"abc", -1, u"X"), u"abcX");
    EXPECT_EQ(after(html(u"<p>abc</p>"), -1, u"X"), html(u"<p>abcX</p>"));
}

TEST_F(Caret, StandsBehindTheCharacterBeforeItInTheTextThatHoldsIt) {
    EXPECT_EQ(after(html(u"<b>ab</b>cd"), 2, u"X"), html(u"<b>abX</b>cd"));
    EXPECT_EQ(after(html(u"ab<b>cd</b>"), 2, u"X"), html(u"abX<b>cd</b>"));
    EXPECT_EQ(after(html(u"<i>a</i><b>b</b>"), 1, u"X"), html(u"<i>aX</i><b>b</b>"));
}

TEST_F(Caret, PositionZeroStandsInFrontOfTheFirstVisibleCharacter) {
    EXPECT_EQ(after(html(u"<div> <p><b>ab</b></p></div>"), 0, u"X"), html(u"<div> <p><b>Xab</b></p></div>"));
    EXPECT_EQ(after(html(u"&amp;"), 0, u"X"), html(u"X&amp;"));
}

TEST_F(Caret, InAnEmptyDocumentItStandsDirectlyBehindTheBodysTag) {
    EXPECT_EQ(after(html(u""), 0, u"X"), html(u"X"));
    EXPECT_EQ(after(u"<html><body class=\"a>b\"><p></p></body></html>", 0, u"X"), u"<html><body class=\"a>b\">X<p></p></body></html>");
}

TEST_F(Caret, BehindALineEndOfMarkupItStandsInFrontOfTheNextCharacterOfThatLine) {
    EXPECT_EQ(after(html(u"a<br><b>c</b>"), 2, u"X"), html(u"a<br><b>Xc</b>"));
    EXPECT_EQ(after(html(u"<p>a</p><p>b</p>"), 2, u"X"), html(u"<p>a</p><p>Xb</p>"));
}

TEST_F(Caret, BehindATabOfMarkupItStandsInFrontOfTheNextCharacter) {
    EXPECT_EQ(after(html(u"<table><tr><td>a</td><td><i>b</i></td></tr></table>"), 2, u"X"), html(u"<table><tr><td>a</td><td><i>Xb</i></td></tr></table>"));
}

TEST_F(Caret, OnAnEmptyLineItStandsDirectlyBehindTheBreakThatMadeIt) {
    EXPECT_EQ(after(html(u"a<br><br>b"), 2, u"X"), html(u"a<br>X<br>b"));
}

TEST_F(Caret, OnAnEmptyLineItStandsDirectlyBehindTheStartTagThatMadeIt) {
    EXPECT_EQ(after(html(u"<p>a</p><p><br></p><p>b</p>"), 2, u"X"), html(u"<p>a</p><p>X<br></p><p>b</p>"));
}

TEST_F(Caret, InFrontOfALineEndItStandsBehindTheCharacter) {
    EXPECT_EQ(after(html(u"<p>a</p><p>b</p>"), 1, u"X"), html(u"<p>aX</p><p>b</p>"));
}

TEST_F(Caret, TypedTextIsEscaped) {
    EXPECT_EQ(after(html(u"ab"), 1, u"<&>\""), html(u"a&lt;&amp;&gt;\"b"));
}

TEST_F(Caret, EverythingElseOfTheSourceStaysToTheUnit) {
    const std::u16string head = u"<!-- x --><HTML>\n<head><style>p{}</style></head>\r<BODY bgcolor = red>\n\n <P>one  \t two",
                         tail = u" three<BR/>\n<img src='cid:a@b'>&nbsp;&bogus; <b>four</P></i>\n</BODY>\n</HTML>\n ";
    EXPECT_EQ(after(head + tail, 7, u"X"), head + u"X" + tail);
}

TEST_F(Caret, BlanksTypedAtTheEndOfALineAreShown) {
    const MailItem item = host().htmlItem(u"<p>a</p>");
    const Inspector inspector = host().open(item);
    person().focus(inspector, Field::Body, -1);
    person().type(u"b c");
    EXPECT_EQ(person().shown(inspector, Field::Body), u"ab c");
}

TEST_F(Caret, LineEndsTypedIntoHtmlAreBreaks) {
    EXPECT_EQ(after(html(u"ab"), 1, u"{ENTER}"), html(u"a<BR>b"));
    EXPECT_EQ(after(html(u"ab"), 1, u"x~y"), html(u"ax<BR>yb"));
}

TEST_F(Caret, LineEndsTypedIntoPlainTextAreCrlf) {
    EXPECT_EQ(plainAfter(u"ab", 1, u"{ENTER}"), u"a\r\nb");
}

TEST_F(Caret, BackspaceTakesTheCharacterBeforeIt) {
    EXPECT_EQ(plainAfter(u"abc", 2, u"{BACKSPACE}"), u"ac");
    EXPECT_EQ(after(html(u"<b>ab</b>c"), 2, u"{BACKSPACE}"), html(u"<b>a</b>c"));
}

TEST_F(Caret, BackspaceTakesAnEntityAsOneCharacter) {
    EXPECT_EQ(after(html(u"a&amp;b"), 2, u"{BACKSPACE}"), html(u"ab"));
    EXPECT_EQ(after(html(u"a&nbsp;b"), 2, u"{BACKSPACE}"), html(u"ab"));
}

TEST_F(Caret, BackspaceTakesALineEndAsOneCharacter) {
    EXPECT_EQ(plainAfter(u"a\r\nb", 2, u"{BACKSPACE}"), u"ab");
    EXPECT_EQ(after(html(u"a<br>b"), 2, u"{BACKSPACE}"), html(u"ab"));
}

TEST_F(Caret, BackspaceAtTheStartOfAFieldTakesNothing) {
    EXPECT_EQ(plainAfter(u"abc", 0, u"{BACKSPACE 3}"), u"abc");
    EXPECT_EQ(after(html(u"<p>abc</p>"), 0, u"{BACKSPACE 3}"), html(u"<p>abc</p>"));
}

TEST_F(Caret, BackspaceTakesBackWhatWasTyped) {
    const std::u16string marker = u"Asdw34r2wjkytui983jnd2m";
    EXPECT_EQ(after(html(u"<p>ab</p>"), 1, marker + u"{BACKSPACE 23}"), html(u"<p>ab</p>"));
    EXPECT_EQ(after(html(u""), 0, marker + u"{BACKSPACE 23}"), html(u""));
    EXPECT_EQ(after(html(u"a<br><br>b"), 2, marker + u"{BACKSPACE 23}"), html(u"a<br><br>b"));
}

TEST_F(Caret, MovesOnWithWhatIsTyped) {
    EXPECT_EQ(plainAfter(u"ad", 1, u"bc"), u"abcd");
    const Inspector inspector = host().open(host().plainItem(u"ad"));
    person().focus(inspector, Field::Body, 1);
    person().type(u"bc");
    EXPECT_EQ(person().caret(inspector), 3u);
}

class Selection : public OneHost {
protected:
    Object safe(const Inspector& inspector) { return makeSafeInspector(inspector); }
};

TEST_F(Selection, SelTextReadsItsVisibleText) {
    const Inspector inspector = host().open(host().htmlItem(u"<p>one <b>two</b></p><p>three</p>"));
    person().focus(inspector, Field::Body, 0);
    person().select(inspector, 4, 3);
    EXPECT_EQ(text(safe(inspector), u"SelText"), u"two");
}

TEST_F(Selection, SelTextReadsALineEndAsCrlf) {
    const Inspector marked = host().open(host().htmlItem(u"a<br>b"));
    person().focus(marked, Field::Body, 0);
    person().select(marked, 0, 3);
    EXPECT_EQ(text(safe(marked), u"SelText"), u"a\r\nb");
    const Inspector plain = host().open(host().plainItem(u"a\r\nb"));
    person().focus(plain, Field::Body, 0);
    person().select(plain, 1, 2);
    EXPECT_EQ(text(safe(plain), u"SelText"), u"\r\nb");
}

TEST_F(Selection, SelTextOfACaretIsEmpty) {
    const Inspector inspector = host().open(host().plainItem(u"abc"));
    person().focus(inspector, Field::Body, 1);
    EXPECT_EQ(text(safe(inspector), u"SelText"), u"");
}

TEST_F(Selection, SelTextWritesTextInItsPlace) {
    const Inspector inspector = host().open(host().htmlItem(u"one <b>two</b> three"));
    person().focus(inspector, Field::Body, 0);
    person().select(inspector, 4, 3);
    put(safe(inspector), u"SelText", u"2 & <3>");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().Body(), u"one 2 & <3> three");
}

TEST_F(Selection, SelTextAtACaretInserts) {
    const Inspector inspector = host().open(host().plainItem(u"ad"));
    person().focus(inspector, Field::Body, 1);
    put(safe(inspector), u"SelText", u"bc");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().Body(), u"abcd");
}

TEST_F(Selection, IsReplacedByTyping) {
    const Inspector inspector = host().open(host().plainItem(u"one two three"));
    person().focus(inspector, Field::Body, 0);
    person().select(inspector, 4, 3);
    person().type(u"2");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().Body(), u"one 2 three");
}

TEST_F(Selection, IsTakenByBackspaceAsAWhole) {
    const Inspector inspector = host().open(host().plainItem(u"one two three"));
    person().focus(inspector, Field::Body, 0);
    person().select(inspector, 3, 4);
    host().sendKeys(u"{BACKSPACE}");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().Body(), u"one three");
}

class RichCaret : public OneHost {
protected:
    Inspector openRich(std::u16string_view run) {
        const MailItem item = host().newItem();
        put(makeSafeMailItem(item), u"RTFBody", rtf(run));
        return host().open(item);
    }
};

TEST_F(RichCaret, CountsTheVisibleText) {
    const Inspector inspector = openRich(u"{\\b ab}\\par cd");
    person().focus(inspector, Field::Body, 4);
    person().type(u"X");
    EXPECT_EQ(person().shown(inspector, Field::Body), u"ab\r\ncXd");
}

TEST_F(RichCaret, TakesBackWhatWasTyped) {
    const Inspector inspector = openRich(u"{\\b ab}");
    person().focus(inspector, Field::Body, 1);
    host().sendKeys(u"Asdw34r2wjkytui983jnd2m{BACKSPACE 23}");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().Body(), u"ab");
}

TEST_F(RichCaret, KeepsTheTextBehindItWhenTheBodyIsWritten) {
    const Inspector inspector = openRich(u"one three");
    person().focus(inspector, Field::Body, 4);
    inspector.CurrentItem().Body(u"one two three");
    person().type(u"X");
    EXPECT_EQ(person().shown(inspector, Field::Body), u"one two Xthree");
}

}  // namespace lorvane::contract
