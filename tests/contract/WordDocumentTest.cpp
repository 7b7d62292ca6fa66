#include "contract/WordFixture.h"

/// `Range` of a Word document: the text of the whole body, and what becomes of the item.
namespace lorvane::contract {

class WordDocument : public WordRun {};
INSTANTIATE_EACH_STORE(WordDocument);

TEST_P(WordDocument, RangeReadsTheVisibleTextOfEachKindWithCrlf) {
    EXPECT_EQ(textOf(host().open(host().htmlItem(u"<p>Dear <b>John</b></p><p>A &amp; B<br>Bye</p>")).WordEditor()), u"Dear John\r\nA & B\r\nBye");
    EXPECT_EQ(textOf(host().open(host().plainItem(u"a\r\nb\nc")).WordEditor()), u"a\r\nb\r\nc");
    EXPECT_EQ(textOf(host().open(richItem(u"Dear {\\b John}\\par Bye")).WordEditor()), u"Dear John\r\nBye");
}

TEST_P(WordDocument, RangeIsReadOrCalled) {
    const Object document = host().open(host().plainItem(u"Dear John")).WordEditor();
    EXPECT_EQ(text(get(document, u"Range").toObject(), u"Text"), u"Dear John");
    EXPECT_EQ(text(call(document, u"Range").toObject(), u"Text"), u"Dear John");
}

TEST_P(WordDocument, RangeReadsWhatIsTypedAndNotCommitted) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>Dear</p>"), -1);
    person().type(u" John");
    EXPECT_EQ(textOf(inspector.WordEditor()), u"Dear John");
    EXPECT_EQ(inspector.CurrentItem().Body(), u"Dear");
}

TEST_P(WordDocument, RangeHoldsNothingOfTheOtherFields) {
    const Inspector inspector = openAt(host().htmlItem(u"Dear John"), 0);
    person().focus(inspector, Field::Subject, 0);
    person().type(u"Offer");
    EXPECT_EQ(textOf(inspector.WordEditor()), u"Dear John");
}

TEST_P(WordDocument, ReadingLeavesTheItemAsItIs) {
    const std::u16string source = u"<html>\n<BODY  bgcolor = red >a\n<P>b</html>";
    const MailItem item = host().newItem();
    item.HTMLBody(source);
    const Inspector inspector = hidden(item);
    textOf(inspector.WordEditor());
    EXPECT_TRUE(truth(item, u"Saved"));
    inspector.Close(olSave);
    EXPECT_EQ(host().again(item).HTMLBody(), source);
}

TEST_P(WordDocument, WrittenWhatItReadsItChangesNothing) {
    const std::u16string source =
        u"<!-- x --><HTML>\n<head><title>T</title></head><BODY bgcolor = red>\n <P>one&nbsp; two\r\n<B>three</b><br>four &bogus;\n</html>";
    const MailItem item = host().newItem();
    item.HTMLBody(source);
    const Inspector inspector = openAt(item, 5);
    writeText(inspector.WordEditor(), textOf(inspector.WordEditor()));
    EXPECT_TRUE(truth(inspector.CurrentItem(), u"Saved"));
    EXPECT_EQ(person().caret(inspector), 5u);
    EXPECT_EQ(saved(inspector).HTMLBody(), source);
    inspector.Close(olSave);
    EXPECT_EQ(host().again(item).HTMLBody(), source);
}

TEST_P(WordDocument, WrittenWhatItReadsItChangesNothingInPlainAndRichItems) {
    const MailItem plain = host().plainItem(u"a\nb\rc\r\nd"), rich = richItem(u"Dear {\\b John}\\par\r\nBye");
    for (const MailItem& item : {plain, rich}) {
        const Inspector inspector = hidden(item);
        writeText(inspector.WordEditor(), textOf(inspector.WordEditor()));
        EXPECT_TRUE(truth(item, u"Saved"));
        inspector.Close(olSave);
    }
    EXPECT_EQ(host().again(plain).Body(), u"a\nb\rc\r\nd");
    EXPECT_EQ(text(makeSafeMailItem(host().again(rich)), u"RTFBody"), rtf(u"Dear {\\b John}\\par\r\nBye"));
}

TEST_P(WordDocument, WrittenWhatItReadsItKeepsAReceivedMailsBytes) {
    const Bytes message = bytes("Subject: Question\r\n\r\n<p>Hello</p>");
    const MailItem item = person().receive({.subject = u"Question", .html = u"<p>Hello</p>", .original = message});
    const Inspector inspector = item.GetInspector();
    writeText(inspector.WordEditor(), textOf(inspector.WordEditor()));
    inspector.Close(olSave);
    EXPECT_EQ(person().original(host().again(item)), message);
}

TEST_P(WordDocument, WrittenWhatItReadsItKeepsWhatIsTypedAndWhereTheCaretStands) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>one <b>three</b></p>"), 4);
    person().type(u"two ");
    writeText(inspector.WordEditor(), u"one two three");
    EXPECT_EQ(inspector.CurrentItem().Body(), u"one three");
    EXPECT_EQ(person().caret(inspector), 8u);
    person().type(u"X");
    EXPECT_EQ(saved(inspector).HTMLBody(), html(u"<p>one two X<b>three</b></p>"));
}

TEST_P(WordDocument, WrittenElseItReplacesTheWholeContentInTheItemsKind) {
    const MailItem marked = host().newItem();
    marked.HTMLBody(u"<html><head><title>T</title></head><body class='x'><p>Dear <b>John</b></p></body></html>");
    const MailItem plain = host().plainItem(u"Dear John"), rich = richItem(u"Dear {\\b John}");
    for (const MailItem& item : {marked, plain, rich}) {
        const Inspector inspector = host().open(item);
        writeText(inspector.WordEditor(), u"A & {B} <c>\\d\r\nBye");
        EXPECT_EQ(textOf(inspector.WordEditor()), u"A & {B} <c>\\d\r\nBye");
        EXPECT_EQ(person().shown(inspector, Field::Body), u"A & {B} <c>\\d\r\nBye");
        EXPECT_EQ(saved(inspector).Body(), u"A & {B} <c>\\d\r\nBye");
    }
    EXPECT_EQ(host().again(marked).HTMLBody(), html(u"A &amp; {B} &lt;c&gt;\\d<BR>\r\nBye"));
    EXPECT_EQ(host().again(plain).BodyFormat(), body_format::Plain);
    EXPECT_EQ(host().again(rich).BodyFormat(), body_format::RichText);
}

TEST_P(WordDocument, WrittenEmptyItHasNoContent) {
    const MailItem marked = host().htmlItem(u"<p>Dear John</p>"), plain = host().plainItem(u"Dear John");
    for (const MailItem& item : {marked, plain}) {
        const Inspector inspector = host().open(item);
        writeText(inspector.WordEditor(), u"");
        EXPECT_EQ(textOf(inspector.WordEditor()), u"");
        EXPECT_EQ(saved(inspector).Body(), u"");
    }
    EXPECT_EQ(host().again(marked).HTMLBody(), emptyHtml);
    EXPECT_EQ(host().again(plain).BodyFormat(), body_format::Plain);
}

TEST_P(WordDocument, WrittenIntoANewMailItHasTheKindOfTheRun) {
    for (const Editor kind : {Editor::Plain, Editor::Html, Editor::Rich}) {
        RunningHost running(GetParam(), {.editor = Editor::Word, .wordKind = kind});
        const Inspector inspector = running.person().newMail();
        writeText(inspector.WordEditor(), u"Dear <John>");
        EXPECT_EQ(saved(inspector).BodyFormat(), static_cast<std::int32_t>(kind));
        EXPECT_EQ(inspector.CurrentItem().Body(), u"Dear <John>");
    }
}

TEST_P(WordDocument, WrittenItReachesTheItemOnSaveOnly) {
    for (const bool shown : {true, false}) {
        const MailItem item = host().htmlItem(u"Dear John");
        const Inspector inspector = shown ? host().open(item) : hidden(item);
        writeText(inspector.WordEditor(), u"Dear Jane");
        host().pump(100);
        EXPECT_EQ(inspector.CurrentItem().Body(), u"Dear John");
        EXPECT_EQ(inspector.CurrentItem().HTMLBody(), html(u"Dear John"));
        EXPECT_EQ(host().again(item).Body(), u"Dear John");
        inspector.CurrentItem().Save();
        EXPECT_EQ(inspector.CurrentItem().HTMLBody(), html(u"Dear Jane"));
        EXPECT_EQ(host().again(item).Body(), u"Dear Jane");
        inspector.Close(olDiscard);
    }
}

TEST_P(WordDocument, WrittenItReachesTheItemOnAWrappersSaveToo) {
    const MailItem item = host().htmlItem(u"Dear John");
    const Inspector inspector = hidden(item);
    writeText(inspector.WordEditor(), u"Dear Jane");
    const SafeMailItem safe = makeSafeMailItem(item);
    EXPECT_EQ(safe.Body(), u"Dear John");
    safe.Save();
    EXPECT_EQ(safe.Body(), u"Dear Jane");
}

TEST_P(WordDocument, WhatIsWrittenIsDelayedLikeTyping) {
    start({.commitDelay = 2});
    for (const bool shown : {true, false}) {
        const MailItem item = host().htmlItem(u"Dear John");
        const Inspector inspector = shown ? host().open(item) : hidden(item);
        writeText(inspector.WordEditor(), u"Dear Jane");
        EXPECT_EQ(saved(inspector).Body(), u"Dear John");
        host().pump();
        EXPECT_EQ(saved(inspector).Body(), u"Dear John");
        host().pump();
        EXPECT_EQ(saved(inspector).Body(), u"Dear Jane");
        inspector.Close(olDiscard);
    }
}

TEST_P(WordDocument, CloseWithSaveCommitsAllAndSaves) {
    start({.commitDelay = 50});
    std::vector<HostUnderTest::Identity> items;
    for (const bool shown : {true, false}) {
        const MailItem item = host().htmlItem(u"Dear John");
        const Inspector inspector = shown ? host().open(item) : hidden(item);
        writeText(inspector.WordEditor(), u"Dear Jane");
        inspector.Close(olSave);
        items.push_back(identityOf(item));
    }
    host().restart();
    for (const auto& [entry, store] : items) EXPECT_EQ(host().session().GetItemFromID(entry, store).HTMLBody(), html(u"Dear Jane"));
}

TEST_P(WordDocument, CloseWithDiscardDrops) {
    for (const bool shown : {true, false}) {
        const MailItem item = host().htmlItem(u"<b>Dear John</b>");
        const Inspector inspector = shown ? host().open(item) : hidden(item);
        writeText(inspector.WordEditor(), u"Dear Jane");
        inspector.Close(olDiscard);
        EXPECT_EQ(host().again(item).HTMLBody(), html(u"<b>Dear John</b>"));
    }
}

TEST_P(WordDocument, CloseThroughTheHelperDoesTheSame) {
    for (const std::int32_t mode : {olSave, olDiscard}) {
        const MailItem item = host().htmlItem(u"<b>Dear John</b>");
        const SafeInspector safe = makeSafeInspector(hidden(item));
        writeText(safe.WordEditor(), u"Dear Jane");
        safe.Close(mode);
        EXPECT_EQ(host().again(item).HTMLBody(), mode == olSave ? html(u"Dear Jane") : html(u"<b>Dear John</b>"));
    }
}

TEST_P(WordDocument, CloseWithSaveOfAHiddenWindowSavesANewMail) {
    const MailItem item = host().newItem();
    const Inspector inspector = item.GetInspector();
    writeText(inspector.WordEditor(), u"Dear John");
    inspector.Close(olSave);
    ASSERT_NE(item.EntryID(), u"");
    EXPECT_EQ(host().again(item).HTMLBody(), html(u"Dear John"));
}

TEST_P(WordDocument, WritingABodyPropertyReloadsIt) {
    for (const bool shown : {true, false}) {
        const MailItem item = host().htmlItem(u"Dear John");
        const Inspector inspector = shown ? host().open(item) : hidden(item);
        const Object document = inspector.WordEditor();
        writeText(document, u"given up");
        inspector.CurrentItem().HTMLBody(html(u"<p>Dear</p><p>Jane</p>"));
        EXPECT_EQ(textOf(document), u"Dear\r\nJane");
        EXPECT_EQ(inspector.WordEditor(), document);
        EXPECT_EQ(saved(inspector).HTMLBody(), html(u"<p>Dear</p><p>Jane</p>"));
        inspector.Close(olDiscard);
    }
}

TEST_P(WordDocument, WritingABodyPropertyStartsItsHistoryAnew) {
    start({.commitDelay = 5});
    const MailItem item = host().htmlItem(u"Dear John");
    const Inspector inspector = hidden(item);
    writeText(inspector.WordEditor(), u"given up");
    inspector.CurrentItem().Body(u"written");
    EXPECT_EQ(saved(inspector).Body(), u"written");
    host().pump(10);
    EXPECT_EQ(saved(inspector).Body(), u"written");
}

TEST_P(WordDocument, WhatIsWrittenToTheItemMeanwhileStays) {
    for (const bool shown : {true, false}) {
        const MailItem item = host().htmlItem(u"Dear John");
        const Inspector inspector = shown ? host().open(item) : hidden(item);
        writeText(inspector.WordEditor(), u"Dear Jane");
        inspector.CurrentItem().Subject(u"Offer");
        addRecipient(inspector.CurrentItem(), u"jane@example.com");
        EXPECT_EQ(textOf(inspector.WordEditor()), u"Dear Jane");
        inspector.Close(olSave);
        const MailItem found = host().again(item);
        EXPECT_EQ(found.Subject(), u"Offer");
        EXPECT_EQ(found.To(), u"jane@example.com");
        EXPECT_EQ(found.Body(), u"Dear Jane");
    }
}

TEST_P(WordDocument, OfAReceivedMailIsThereToo) {
    const MailItem item = person().receive({.subject = u"Question", .html = u"<p>Hello</p>"});
    EXPECT_EQ(item.GetInspector().EditorType(), editor_type::Word);
    EXPECT_EQ(textOf(item.GetInspector().WordEditor()), u"Hello");
}

TEST_P(WordDocument, SelectTakesTheWholeBody) {
    for (const bool shown : {true, false}) {
        const MailItem item = host().htmlItem(u"<p>Dear <b>John</b></p><p>Bye</p>");
        const Inspector inspector = shown ? openAt(item, 2) : hidden(item);
        const Object document = inspector.WordEditor();
        call(rangeOf(document), u"Select");
        EXPECT_EQ(text(selectionOf(document), u"Text"), u"Dear John\r\nBye");
        typeText(document, u"X");
        EXPECT_EQ(textOf(document), u"X");
        inspector.Close(olDiscard);
    }
}

TEST_P(WordDocument, KeysDoNotReachAHiddenOne) {
    const MailItem item = host().htmlItem(u"Dear John");
    const Object document = hidden(item).WordEditor();
    host().sendKeys(u"x");
    EXPECT_EQ(textOf(document), u"Dear John");
}

}  // namespace lorvane::contract
