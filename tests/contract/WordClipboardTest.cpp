#include "contract/WordFixture.h"

/// `Range.Copy`: the body's formatted content on the clipboard.
namespace lorvane::contract {

namespace {

/// The number behind a key of the block's header.
std::size_t offsetIn(const std::string& block, const std::string& key) {
    const std::size_t at = block.find(key);
    EXPECT_NE(at, std::string::npos) << key;
    return at == std::string::npos ? 0 : static_cast<std::size_t>(std::stoul(block.substr(at + key.size())));
}

/// The fragment where the block's offsets say.
std::string fragmentOf(const std::string& block) {
    const std::size_t start = offsetIn(block, "StartFragment:"), end = offsetIn(block, "EndFragment:");
    EXPECT_LE(start, end);
    EXPECT_LE(end, block.size());
    return start <= end && end <= block.size() ? block.substr(start, end - start) : std::string();
}

}  // namespace

class WordCopy : public WordRun {
protected:
    /// What lies on the clipboard after a document's whole range was copied.
    Clipping copied(const Inspector& inspector) {
        call(rangeOf(inspector.WordEditor()), u"Copy");
        return person().clipboard();
    }
};
INSTANTIATE_EACH_STORE(WordCopy);

TEST_P(WordCopy, PutsTheTextOnTheClipboard) {
    EXPECT_EQ(copied(host().open(host().htmlItem(u"<p>Dear <b>John</b></p><p>A &amp; B</p>"))).text, u"Dear John\r\nA & B");
    EXPECT_EQ(copied(host().open(host().plainItem(u"Dear John\r\nBye"))).text, u"Dear John\r\nBye");
    EXPECT_EQ(copied(host().open(richItem(u"Dear {\\b John}\\par Bye"))).text, u"Dear John\r\nBye");
}

TEST_P(WordCopy, OfAnHtmlDocumentPutsTheBodysSourceBesideIt) {
    const MailItem item = host().newItem();
    item.HTMLBody(u"<html><head><title>T</title></head>\r\n<body class=\"a>b\">\n<P>Dear <B>J\x00F6rg</b> \x20AC&nbsp;&bogus;<br>\r\n</body>\n</html>");
    const Clipping clipping = copied(host().open(item));
    ASSERT_TRUE(clipping.htmlFormat);
    EXPECT_EQ(fragmentOf(*clipping.htmlFormat), "\n<P>Dear <B>J\xC3\xB6rg</b> \xE2\x82\xAC&nbsp;&bogus;<br>\r\n");
}

TEST_P(WordCopy, WritesABlockWithAWholeHeader) {
    const Clipping clipping = copied(host().open(host().htmlItem(u"<b>Dear John</b>")));
    ASSERT_TRUE(clipping.htmlFormat);
    const std::string& block = *clipping.htmlFormat;
    EXPECT_EQ(block.rfind("Version:", 0), 0u);
    const std::size_t start = offsetIn(block, "StartHTML:"), end = offsetIn(block, "EndHTML:");
    EXPECT_LE(start, offsetIn(block, "StartFragment:"));
    EXPECT_GE(end, offsetIn(block, "EndFragment:"));
    EXPECT_LE(end, block.size());
}

TEST_P(WordCopy, OfAPlainOrRichDocumentPutsTheTextAlone) {
    for (const MailItem& item : {host().plainItem(u"Dear John"), richItem(u"Dear {\\b John}")}) {
        person().setClipboard({.text = u"old", .htmlFormat = htmlBlock("<b>old</b>")});
        const Clipping clipping = copied(host().open(item));
        EXPECT_EQ(clipping.text, u"Dear John");
        EXPECT_FALSE(clipping.htmlFormat) << "all that lay there is replaced";
    }
}

TEST_P(WordCopy, HoldsWhatIsTypedAndNotCommitted) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>Dear</p>"), -1);
    person().type(u" John");
    const Clipping clipping = copied(inspector);
    EXPECT_EQ(clipping.text, textOf(inspector.WordEditor()));
    ASSERT_TRUE(clipping.htmlFormat);
    EXPECT_NE(fragmentOf(*clipping.htmlFormat).find("John"), std::string::npos);
}

TEST_P(WordCopy, HoldsTheWholeBodyWhateverIsSelected) {
    const Inspector inspector = openAt(host().htmlItem(u"<p>one <b>two</b></p>"), 0);
    person().select(inspector, 4, 3);
    const Clipping clipping = copied(inspector);
    EXPECT_EQ(clipping.text, u"one two");
    ASSERT_TRUE(clipping.htmlFormat);
    EXPECT_EQ(fragmentOf(*clipping.htmlFormat), "<p>one <b>two</b></p>");
}

TEST_P(WordCopy, LeavesTheItemAsItIs) {
    const MailItem item = host().htmlItem(u"<p>one <b>two</b></p>");
    const Inspector inspector = hidden(item);
    call(rangeOf(inspector.WordEditor()), u"Select");
    copied(inspector);
    EXPECT_TRUE(truth(item, u"Saved"));
    inspector.Close(olSave);
    EXPECT_EQ(host().again(item).HTMLBody(), html(u"<p>one <b>two</b></p>"));
}

TEST_P(WordCopy, GivesAnotherHtmlBodyTheSameFormattedContent) {
    const std::u16string source = u"<P>Dear <B>J\x00F6rg</b> \x4E2D\xD83D\xDE00&nbsp;&amp;</p>\r\n<ul><li>a<li>b</ul>";
    copied(hidden(host().htmlItem(source)));
    const Inspector bySelection = openAt(host().htmlItem(u""), 0);
    pasteAtSelection(bySelection.WordEditor());
    EXPECT_EQ(saved(bySelection).HTMLBody(), html(source));
    const Inspector byKeys = openAt(host().htmlItem(u"<i>a</i>"), -1);
    host().sendKeys(u"^v");
    EXPECT_EQ(saved(byKeys).HTMLBody(), html(u"<i>a" + source + u"</i>"));
}

TEST_P(WordCopy, GivesPlainAndRichBodiesTheText) {
    copied(hidden(host().htmlItem(u"<p>Dear <b>John</b></p><p>Bye</p>")));
    for (const MailItem& item : {host().plainItem(u""), richItem(u"")}) {
        const Inspector inspector = openAt(item, 0);
        pasteAtSelection(inspector.WordEditor());
        EXPECT_EQ(saved(inspector).Body(), u"Dear John\r\nBye");
    }
}

TEST_P(WordCopy, OfAnHtmlTextWithoutABodysTagIsTheWholeOfIt) {
    const MailItem item = host().newItem();
    item.HTMLBody(u"<p>Dear <b>John</b></p>");
    copied(hidden(item));
    const Inspector inspector = openAt(host().htmlItem(u""), 0);
    pasteAtSelection(inspector.WordEditor());
    EXPECT_EQ(saved(inspector).HTMLBody(), html(u"<p>Dear <b>John</b></p>"));
}

/// The steps by which a template's formatted text is brought to the clipboard.
class WordTemplateSteps : public WordRun {
protected:
    /// Writes the template's text with `from` replaced by `to`, copies it and closes the window in `closeMode`.
    void copyTemplate(const MailItem& item, std::u16string_view from, std::u16string_view to, std::int32_t closeMode) {
        host().machine().clipboard().Clear();
        const SafeInspector safe = makeSafeInspector(makeSafeMailItem(item).GetInspector());
        const Object document = safe.WordEditor();
        std::u16string body = textOf(document);
        if (const std::size_t at = body.find(from); at != std::u16string::npos) body.replace(at, from.size(), to);
        const Object range = rangeOf(document);
        range.put(Member::Text, Variant(body));
        range.call(Member::Select);
        range.call(Member::Copy);
        safe.Close(closeMode);
    }
    MailItem savedTemplate(std::u16string_view body) {
        const MailItem item = host().htmlItem(body);
        item.Subject(u"Offer");
        item.Save();
        return item;
    }
};
INSTANTIATE_EACH_STORE(WordTemplateSteps);

TEST_P(WordTemplateSteps, WithNothingToReplaceKeepTheFormats) {
    const MailItem item = savedTemplate(u"<p>Dear <b>customer</b></p>");
    copyTemplate(item, u"[FirstName]", u"Jane", olSave);
    const Clipping clipping = person().clipboard();
    EXPECT_EQ(clipping.text, u"Dear customer");
    ASSERT_TRUE(clipping.htmlFormat);
    EXPECT_EQ(fragmentOf(*clipping.htmlFormat), "<p>Dear <b>customer</b></p>");
    EXPECT_EQ(host().again(item).HTMLBody(), html(u"<p>Dear <b>customer</b></p>"));
}

TEST_P(WordTemplateSteps, WithATagReplacedGiveItsTextAndLeaveTheTemplateAlone) {
    const MailItem item = savedTemplate(u"<p>Dear <b>[FirstName]</b></p><p>A &amp; B</p>");
    copyTemplate(item, u"[FirstName]", u"Jane", olDiscard);
    const Clipping clipping = person().clipboard();
    EXPECT_EQ(clipping.text, u"Dear Jane\r\nA & B");
    ASSERT_TRUE(clipping.htmlFormat);
    EXPECT_EQ(fragmentOf(*clipping.htmlFormat), "Dear Jane<BR>\r\nA &amp; B");
    EXPECT_EQ(host().again(item).HTMLBody(), html(u"<p>Dear <b>[FirstName]</b></p><p>A &amp; B</p>"));
    EXPECT_FALSE(host().application().ActiveInspector());
}

TEST_P(WordTemplateSteps, PasteIntoTheOpenMail) {
    const MailItem item = savedTemplate(u"<p>Dear <b>customer</b></p>");
    const Inspector inspector = openAt(host().htmlItem(u"<i>Bye</i>"), 0);
    copyTemplate(item, u"[FirstName]", u"Jane", olSave);
    EXPECT_EQ(host().application().ActiveInspector(), inspector);
    pasteAtSelection(inspector.WordEditor());
    EXPECT_EQ(saved(inspector).HTMLBody(), html(u"<i><p>Dear <b>customer</b></p>Bye</i>"));
}

TEST_P(WordTemplateSteps, WorkOnAGuardedHost) {
    start({.version = u"10.0.0.6515"});
    const MailItem item = savedTemplate(u"<p>Dear <b>[FirstName]</b></p>");
    copyTemplate(item, u"[FirstName]", u"Jane", olDiscard);
    EXPECT_EQ(person().clipboard().text, u"Dear Jane");
    EXPECT_EQ(host().again(item).HTMLBody(), html(u"<p>Dear <b>[FirstName]</b></p>"));
}

TEST_P(WordTemplateSteps, OfAPlainTemplateGiveTheTextAlone) {
    const MailItem item = host().plainItem(u"Dear [FirstName]\r\nBye");
    item.Save();
    copyTemplate(item, u"[FirstName]", u"Jane", olDiscard);
    EXPECT_EQ(person().clipboard().text, u"Dear Jane\r\nBye");
    EXPECT_FALSE(person().clipboard().htmlFormat);
    EXPECT_EQ(host().again(item).Body(), u"Dear [FirstName]\r\nBye");
}

}  // namespace lorvane::contract
