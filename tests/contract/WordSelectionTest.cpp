#include "contract/WordFixture.h"

/// Word's selection: it is in the body, wherever the keyboard's caret is.
namespace lorvane::contract {

class WordSelection : public WordRun {};
INSTANTIATE_EACH_STORE(WordSelection);

TEST_P(WordSelection, TypesAtTheCaretOfTheBody) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>one <b>three</b></p>"), 4);
    typeText(inspector.WordEditor(), u"two ");
    EXPECT_EQ(person().shown(inspector, Field::Body), u"one two three");
    EXPECT_EQ(saved(inspector).HTMLBody(), html(u"<p>one two <b>three</b></p>"));
}

TEST_P(WordSelection, TypesEscapedAndWithBreaksIntoHtml) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>ad</p>"), 1);
    typeText(inspector.WordEditor(), u"<b> &\r\nc");
    EXPECT_EQ(saved(inspector).HTMLBody(), html(u"<p>a&lt;b&gt; &amp;<BR>cd</p>"));
}

TEST_P(WordSelection, TypesTextIntoPlainAndRichItems) {
    for (const MailItem& item : {host().plainItem(u"ad"), richItem(u"ad")}) {
        const std::int32_t kind = item.BodyFormat();
        const Inspector inspector = openAt(item, 1);
        typeText(inspector.WordEditor(), u"<b> {x}\\\r\nc");
        EXPECT_EQ(saved(inspector).Body(), u"a<b> {x}\\\r\ncd");
        EXPECT_EQ(inspector.CurrentItem().BodyFormat(), kind);
    }
}

TEST_P(WordSelection, TypesIntoNewMailsOfEachKind) {
    for (const Editor kind : {Editor::Plain, Editor::Html, Editor::Rich}) {
        RunningHost running(GetParam(), {.editor = Editor::Word, .wordKind = kind});
        const Inspector inspector = running.person().newMail();
        typeText(inspector.WordEditor(), u"Dear <John>\r\nBye");
        EXPECT_EQ(saved(inspector).Body(), u"Dear <John>\r\nBye");
        EXPECT_EQ(inspector.CurrentItem().BodyFormat(), static_cast<std::int32_t>(kind));
    }
}

TEST_P(WordSelection, TakesTheTextAsANamedArgument) {
    const Inspector inspector = openAt(host().plainItem(u"ad"), 1);
    selectionOf(inspector.WordEditor()).call(Member::TypeText, {Argument::named(Member::Text, Variant(u"bc"))});
    EXPECT_EQ(textOf(inspector.WordEditor()), u"abcd");
}

TEST_P(WordSelection, TypesOverWhatIsSelected) {
    for (const MailItem& item : {host().htmlItem(u"one <b>two</b> three"), host().plainItem(u"one two three"), richItem(u"one {\\b two} three")}) {
        const Inspector inspector = openAt(item, 0);
        person().select(inspector, 4, 3);
        EXPECT_EQ(text(selectionOf(inspector.WordEditor()), u"Text"), u"two");
        typeText(inspector.WordEditor(), u"2 & <3>");
        EXPECT_EQ(saved(inspector).Body(), u"one 2 & <3> three");
    }
}

TEST_P(WordSelection, TextReadsALineEndAsCrlf) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>one</p><p>two</p>"), 0);
    person().select(inspector, 2, 3);
    EXPECT_EQ(text(selectionOf(inspector.WordEditor()), u"Text"), u"e\r\nt");
}

TEST_P(WordSelection, TextOfACaretIsEmpty) {
    const Inspector inspector = openAt(host().plainItem(u"abc"), 1);
    EXPECT_EQ(text(selectionOf(inspector.WordEditor()), u"Text"), u"");
}

TEST_P(WordSelection, LeavesTheCaretBehindWhatWasTyped) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>ad</p>"), 1);
    typeText(inspector.WordEditor(), u"b");
    EXPECT_EQ(person().caret(inspector), 2u);
    typeText(inspector.WordEditor(), u"c");
    person().type(u"X");
    EXPECT_EQ(person().shown(inspector, Field::Body), u"abcXd");
    host().sendKeys(u"{BACKSPACE 2}");
    EXPECT_EQ(saved(inspector).HTMLBody(), html(u"<p>abd</p>"));
}

TEST_P(WordSelection, StaysInTheBodyWhereTheKeyboardIsElsewhere) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>ad</p>"), 1);
    person().focus(inspector, Field::Subject, 0);
    typeText(inspector.WordEditor(), u"b");
    person().setClipboard({.htmlFormat = htmlBlock("<i>c</i>")});
    pasteAtSelection(inspector.WordEditor());
    EXPECT_EQ(person().focusedField(inspector), Field::Subject);
    person().type(u"Offer");
    EXPECT_EQ(person().shown(inspector, Field::Subject), u"Offer");
    EXPECT_EQ(saved(inspector).HTMLBody(), html(u"<p>ab<i>c</i>d</p>"));
    EXPECT_EQ(inspector.CurrentItem().Subject(), u"Offer");
}

TEST_P(WordSelection, IsInTheBodyOfANewMailThatWaitsForItsAddressee) {
    const Inspector inspector = person().newMail();
    person().focus(inspector, Field::To, 0);
    typeText(inspector.WordEditor(), u"Dear John");
    EXPECT_EQ(person().shown(inspector, Field::To), u"");
    EXPECT_EQ(person().shown(inspector, Field::Body), u"Dear John");
}

TEST_P(WordSelection, WhatItTypesReachesTheItemOnSaveOnly) {
    const Inspector inspector = openAt(host().htmlItem(u"a"), -1);
    typeText(inspector.WordEditor(), u"b");
    EXPECT_EQ(inspector.CurrentItem().Body(), u"a");
    EXPECT_EQ(textOf(inspector.WordEditor()), u"ab");
    EXPECT_EQ(saved(inspector).Body(), u"ab");
}

TEST_P(WordSelection, WhatItTypesAndPastesIsDelayedLikeTyping) {
    start({.commitDelay = 1});
    const Inspector inspector = openAt(host().htmlItem(u"a"), -1);
    typeText(inspector.WordEditor(), u"b");
    EXPECT_EQ(saved(inspector).Body(), u"a");
    host().pump();
    person().setClipboard({.text = u"c"});
    pasteAtSelection(inspector.WordEditor());
    EXPECT_EQ(saved(inspector).Body(), u"ab");
    host().pump();
    EXPECT_EQ(saved(inspector).Body(), u"abc");
}

TEST_P(WordSelection, KeepsTheSourceBehindItWhenTheBodyIsWritten) {
    for (const Field focused : {Field::Body, Field::Subject}) {
        const Inspector inspector = openAt(host().htmlItem(u"<p>one three</p><p>four</p>"), 4);
        person().focus(inspector, focused, focused == Field::Body ? 4 : 0);
        inspector.CurrentItem().HTMLBody(html(u"<p>one <b>two</b> three</p><p>four</p>"));
        typeText(inspector.WordEditor(), u"X");
        EXPECT_EQ(saved(inspector).HTMLBody(), html(u"<p>one <b>two</b> Xthree</p><p>four</p>"));
    }
}

TEST_P(WordSelection, NeedsATextToType) {
    const Inspector inspector = openAt(host().plainItem(u"a"), 0);
    EXPECT_NE(errorOf([&] { call(selectionOf(inspector.WordEditor()), u"TypeText"); }).number(), 0);
    EXPECT_EQ(textOf(inspector.WordEditor()), u"a");
}

TEST_P(WordSelection, TypesIntoAHiddenDocument) {
    const MailItem item = host().htmlItem(u"Dear John");
    const Inspector inspector = hidden(item);
    call(rangeOf(inspector.WordEditor()), u"Select");
    typeText(inspector.WordEditor(), u"Dear <Jane>");
    person().setClipboard({.htmlFormat = htmlBlock("<b>!</b>")});
    pasteAtSelection(inspector.WordEditor());
    EXPECT_EQ(inspector.CurrentItem().Body(), u"Dear John");
    inspector.Close(olSave);
    EXPECT_EQ(host().again(item).Body(), u"Dear <Jane>!");
    EXPECT_NE(host().again(item).HTMLBody().find(u"<b>!</b>"), std::u16string::npos);
}

class WordPaste : public WordRun {};
INSTANTIATE_EACH_STORE(WordPaste);

TEST_P(WordPaste, IntoHtmlTakesTheFragmentAsItIs) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>one three</p>"), 4);
    person().setClipboard({.text = u"not this", .htmlFormat = htmlBlock("<B>two</b>\r\n&nbsp;&bogus; \xC3\xA9")});
    pasteAtSelection(inspector.WordEditor());
    EXPECT_EQ(saved(inspector).HTMLBody(), html(u"<p>one <B>two</b>\r\n&nbsp;&bogus; \x00E9three</p>"));
}

TEST_P(WordPaste, IntoHtmlElseTakesTheTextEscaped) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>ad</p>"), 1);
    person().setClipboard({.text = u"<b> &\r\nc"});
    pasteAtSelection(inspector.WordEditor());
    EXPECT_EQ(saved(inspector).HTMLBody(), html(u"<p>a&lt;b&gt; &amp;<BR>\r\ncd</p>"));
}

TEST_P(WordPaste, IntoPlainAndRichTakesTheText) {
    for (const MailItem& item : {host().plainItem(u"ad"), richItem(u"ad")}) {
        const std::int32_t kind = item.BodyFormat();
        const Inspector inspector = openAt(item, 1);
        person().setClipboard({.text = u"b {x}\r\nc", .htmlFormat = htmlBlock("<b>not this</b>")});
        pasteAtSelection(inspector.WordEditor());
        EXPECT_EQ(saved(inspector).Body(), u"ab {x}\r\ncd");
        EXPECT_EQ(inspector.CurrentItem().BodyFormat(), kind);
    }
}

TEST_P(WordPaste, IntoPlainAndRichElseTakesTheVisibleTextOfTheFragment) {
    for (const MailItem& item : {host().plainItem(u"ad"), richItem(u"ad")}) {
        const Inspector inspector = openAt(item, 1);
        person().setClipboard({.htmlFormat = htmlBlock("<p>b <b>&amp;</b></p><p>c</p>")});
        pasteAtSelection(inspector.WordEditor());
        EXPECT_EQ(saved(inspector).Body(), u"ab &\r\ncd");
    }
}

TEST_P(WordPaste, ByTheKeyboardIsTheSame) {
    const Clipping clipping{.text = u"B", .htmlFormat = htmlBlock("<b>two</b>")};
    const Inspector marked = openAt(host().htmlItem(u"<p>ad</p>"), 1);
    person().setClipboard(clipping);
    host().sendKeys(u"^v");
    EXPECT_EQ(saved(marked).HTMLBody(), html(u"<p>a<b>two</b>d</p>"));
    for (const MailItem& item : {host().plainItem(u"ad"), richItem(u"ad")}) {
        const Inspector inspector = openAt(item, 1);
        host().sendKeys(u"^v");
        EXPECT_EQ(saved(inspector).Body(), u"aBd");
    }
}

TEST_P(WordPaste, ByTheKeyboardGoesToTheFocusedField) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>ad</p>"), 1);
    person().focus(inspector, Field::Subject, 0);
    person().setClipboard({.text = u"Offer\r\nDear John", .htmlFormat = htmlBlock("<b>two</b>")});
    host().sendKeys(u"^v");
    EXPECT_EQ(person().shown(inspector, Field::Subject), u"Offer");
    EXPECT_EQ(textOf(inspector.WordEditor()), u"ad");
}

TEST_P(WordPaste, FindsTheFragmentThatTheHtmlWriterLeaves) {
    // The writer's block: the comment stands directly behind an unclosed tag, offsets count characters.
    const std::string before = "<HTML><BODY bgcolor=red<!--StartFragment -->", fragment = "<b>two</b>", after = "<!--EndFragment --></BODY></HTML>";
    constexpr std::size_t header = 105;
    const auto digits = [](std::size_t offset) {
        const std::string plain = std::to_string(offset);
        return std::string(10 - plain.size(), '0') + plain;
    };
    const std::size_t start = header + before.size(), end = start + fragment.size();
    const std::string head = "Version:1.0\r\nStartHTML:" + digits(header) + "\r\nEndHTML:" + digits(end + after.size()) + "\r\nStartFragment:" + digits(start) +
                             "\r\nEndFragment:" + digits(end) + "\r\n";
    ASSERT_EQ(head.size(), header);
    const Inspector inspector = openAt(host().htmlItem(u"<p>ad</p>"), 1);
    person().setClipboard({.htmlFormat = head + before + fragment + after + std::string(10, '\0')});
    pasteAtSelection(inspector.WordEditor());
    EXPECT_EQ(saved(inspector).HTMLBody(), html(u"<p>a<b>two</b>d</p>"));
}

TEST_P(WordPaste, TakesANumberOrNone) {
    const Inspector inspector = openAt(host().plainItem(u""), 0);
    person().setClipboard({.text = u"b"});
    call(selectionOf(inspector.WordEditor()), u"Paste");
    call(selectionOf(inspector.WordEditor()), u"Paste", {std::int16_t{0}});
    EXPECT_EQ(textOf(inspector.WordEditor()), u"bb");
}

TEST_P(WordPaste, LeavesTheCaretBehindWhatWasPasted) {
    const Inspector marked = openAt(host().htmlItem(u"<p>ad</p>"), 1);
    person().setClipboard({.text = u"bb", .htmlFormat = htmlBlock("<b>b</b>")});
    pasteAtSelection(marked.WordEditor());
    person().type(u"X");
    EXPECT_EQ(person().shown(marked, Field::Body), u"abXd");
    const Inspector plain = openAt(host().plainItem(u"ad"), 1);
    pasteAtSelection(plain.WordEditor());
    EXPECT_EQ(person().caret(plain), 3u);
    typeText(plain.WordEditor(), u"X");
    EXPECT_EQ(person().shown(plain, Field::Body), u"abbXd");
}

TEST_P(WordPaste, ReplacesWhatIsSelected) {
    const Inspector marked = openAt(host().htmlItem(u"<p>one two three</p>"), 0);
    person().select(marked, 4, 3);
    person().setClipboard({.text = u"2", .htmlFormat = htmlBlock("<b>2</b>")});
    pasteAtSelection(marked.WordEditor());
    EXPECT_EQ(saved(marked).HTMLBody(), html(u"<p>one <b>2</b> three</p>"));
    const Inspector plain = openAt(host().plainItem(u"one two three"), 0);
    person().select(plain, 4, 3);
    pasteAtSelection(plain.WordEditor());
    EXPECT_EQ(saved(plain).Body(), u"one 2 three");
}

TEST_P(WordPaste, OfNothingChangesNothing) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>ad</p>"), 1);
    person().setClipboard({});
    pasteAtSelection(inspector.WordEditor());
    EXPECT_EQ(saved(inspector).HTMLBody(), html(u"<p>ad</p>"));
}

TEST_P(WordPaste, ReachesTheItemOnSaveOnly) {
    const Inspector inspector = openAt(host().htmlItem(u"a"), -1);
    person().setClipboard({.text = u"b"});
    pasteAtSelection(inspector.WordEditor());
    EXPECT_EQ(inspector.CurrentItem().Body(), u"a");
    EXPECT_EQ(person().shown(inspector, Field::Body), u"ab");
}

TEST_P(WordPaste, OfARangeReplacesItsContent) {
    const Inspector plain = host().open(host().plainItem(u"Dear John"));
    person().setClipboard({.text = u"A\r\nB", .htmlFormat = htmlBlock("<b>C</b>")});
    call(rangeOf(plain.WordEditor()), u"Paste");
    EXPECT_EQ(saved(plain).Body(), u"A\r\nB");
    const Inspector marked = host().open(host().htmlItem(u"<p>Dear John</p>"));
    call(rangeOf(marked.WordEditor()), u"Paste");
    EXPECT_EQ(textOf(marked.WordEditor()), u"C");
    EXPECT_NE(saved(marked).HTMLBody().find(u"<b>C</b>"), std::u16string::npos);
}

TEST_P(WordPaste, GoesWhereTheCaretProbeStood) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>one three</p>"), 4);
    const SafeMailItem safe = makeSafeMailItem(saved(inspector));
    host().sendKeys(u"I");
    safe.Save();
    EXPECT_EQ(safe.Body(), u"one Ithree");
    host().sendKeys(u"{BACKSPACE}");
    person().setClipboard({.htmlFormat = htmlBlock("<b>two</b> ")});
    pasteAtSelection(inspector.WordEditor());
    safe.Save();
    EXPECT_EQ(safe.HTMLBody(), html(u"<p>one <b>two</b> three</p>"));
}

class WordSafeInspector : public WordRun {};
INSTANTIATE_EACH_STORE(WordSafeInspector);

TEST_P(WordSafeInspector, SelTextReadsWhatIsSelected) {
    for (const MailItem& item :
         {host().htmlItem(u"<p>one <b>two</b></p><p>three</p>"), host().plainItem(u"one two\r\nthree"), richItem(u"one two\\par three")}) {
        const Inspector inspector = openAt(item, 0);
        EXPECT_EQ(text(makeSafeInspector(inspector), u"SelText"), u"");
        person().select(inspector, 4, 6);
        EXPECT_EQ(text(makeSafeInspector(inspector), u"SelText"), u"two\r\nth");
    }
}

TEST_P(WordSafeInspector, SelTextWritesTextInItsPlace) {
    for (const MailItem& item : {host().htmlItem(u"one <b>two</b> three"), host().plainItem(u"one two three"), richItem(u"one two three")}) {
        const Inspector inspector = openAt(item, 0);
        person().select(inspector, 4, 3);
        put(makeSafeInspector(inspector), u"SelText", u"2 & <3>");
        EXPECT_EQ(inspector.CurrentItem().Body(), u"one two three");
        EXPECT_EQ(textOf(inspector.WordEditor()), u"one 2 & <3> three");
        EXPECT_EQ(saved(inspector).Body(), u"one 2 & <3> three");
    }
}

TEST_P(WordSafeInspector, SelTextAtACaretInserts) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>ad</p>"), 1);
    put(makeSafeInspector(inspector), u"SelText", u"bc");
    EXPECT_EQ(saved(inspector).HTMLBody(), html(u"<p>abcd</p>"));
}

TEST_P(WordSafeInspector, TextReadsTheWholeBody) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>Dear <b>John</b></p><p>Bye</p>"), -1);
    person().type(u"!");
    EXPECT_EQ(text(makeSafeInspector(inspector), u"Text"), u"Dear John\r\nBye!");
}

}  // namespace lorvane::contract
