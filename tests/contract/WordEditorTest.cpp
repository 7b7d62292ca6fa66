#include "contract/WordFixture.h"

/// Which windows Word edits, and how its document is reached.
namespace lorvane::contract {

class WordWindow : public WordRun {};
INSTANTIATE_EACH_STORE(WordWindow);

TEST_P(WordWindow, MailsAndPostsAreEditedInWordWhateverTheirKind) {
    for (const char16_t* messageClass : {u"IPM.Note", u"IPM.Post"}) {
        const MailItem plain = host().newItem(messageClass), marked = host().newItem(messageClass), rich = host().newItem(messageClass);
        plain.Body(u"Dear John");
        marked.HTMLBody(html(u"<b>Dear John</b>"));
        put(makeSafePostItem(rich), u"RTFBody", rtf(u"Dear John"));
        for (const MailItem& item : {plain, marked, rich}) {
            const Inspector inspector = host().open(item);
            EXPECT_EQ(inspector.EditorType(), editor_type::Word);
            EXPECT_TRUE(truth(inspector, u"IsWordMail"));
            ASSERT_TRUE(inspector.WordEditor());
            EXPECT_EQ(textOf(inspector.WordEditor()), u"Dear John");
        }
    }
}

TEST_P(WordWindow, NewMailsAndPostsAreEditedInWord) {
    for (const Inspector& inspector : {person().newMail(), host().newItem(u"IPM.Post").GetInspector()}) {
        EXPECT_EQ(inspector.EditorType(), editor_type::Word);
        EXPECT_TRUE(truth(inspector, u"IsWordMail"));
        EXPECT_EQ(textOf(inspector.WordEditor()), u"");
    }
}

TEST_P(WordWindow, TasksAppointmentsAndContactsAreNot) {
    for (const char16_t* messageClass : {u"IPM.Task", u"IPM.Appointment", u"IPM.Contact"}) {
        const MailItem item = host().newItem(messageClass);
        item.Body(u"Dear John");
        const Inspector inspector = host().open(item);
        EXPECT_EQ(inspector.EditorType(), editor_type::RichText);
        EXPECT_FALSE(truth(inspector, u"IsWordMail"));
        EXPECT_FALSE(inspector.WordEditor());
        EXPECT_FALSE(makeSafeInspector(inspector).WordEditor());
    }
}

TEST_P(WordWindow, OtherRunsHaveNone) {
    for (const Editor run : {Editor::Plain, Editor::Html, Editor::Rich}) {
        RunningHost running(GetParam(), {.editor = run});
        for (const Inspector& inspector : {running.person().newMail(), running.newItem(u"IPM.Post").GetInspector()}) {
            EXPECT_FALSE(truth(inspector, u"IsWordMail"));
            EXPECT_FALSE(inspector.WordEditor());
            EXPECT_FALSE(makeSafeInspector(inspector).WordEditor());
        }
    }
}

TEST_P(WordWindow, TheKindOfAnItemWithTextStaysItsOwn) {
    const MailItem plain = host().plainItem(u"a"), marked = host().htmlItem(u"a"), rich = richItem(u"a");
    for (const auto& [item, kind] : {std::pair(plain, body_format::Plain), std::pair(marked, body_format::Html), std::pair(rich, body_format::RichText)}) {
        const Inspector inspector = openAt(item, -1);
        person().type(u"<b>");
        EXPECT_EQ(saved(inspector).BodyFormat(), kind);
        EXPECT_EQ(inspector.CurrentItem().Body(), u"a<b>");
        EXPECT_EQ(inspector.EditorType(), editor_type::Word);
    }
    EXPECT_EQ(plain.HTMLBody(), u"");
    EXPECT_EQ(marked.HTMLBody(), html(u"a&lt;b&gt;"));
    EXPECT_EQ(rich.HTMLBody(), u"");
}

TEST_P(WordWindow, NewTextIsHtml) {
    const Inspector inspector = person().newMail();
    EXPECT_EQ(saved(inspector).BodyFormat(), body_format::Html);
    EXPECT_EQ(inspector.CurrentItem().HTMLBody(), emptyHtml);
    person().focus(inspector, Field::Body, 0);
    person().type(u"Dear John");
    EXPECT_EQ(saved(inspector).HTMLBody(), html(u"Dear John"));
}

TEST_P(WordWindow, NewTextHasTheKindOfTheRun) {
    for (const Editor kind : {Editor::Plain, Editor::Html, Editor::Rich}) {
        RunningHost running(GetParam(), {.editor = Editor::Word, .wordKind = kind});
        const auto number = static_cast<std::int32_t>(kind);
        const Inspector mail = running.person().newMail(), post = running.newItem(u"IPM.Post").GetInspector();
        post.Display();
        for (const Inspector& inspector : {mail, post}) {
            inspector.Activate();
            EXPECT_EQ(inspector.EditorType(), editor_type::Word);
            running.person().focus(inspector, Field::Body, 0);
            running.person().type(u"Dear John");
            EXPECT_EQ(saved(inspector).BodyFormat(), number);
            EXPECT_EQ(inspector.CurrentItem().Body(), u"Dear John");
        }
    }
}

TEST_P(WordWindow, ASavedNewMailHasTheKindOfTheRunBeforeAnythingIsTyped) {
    for (const Editor kind : {Editor::Plain, Editor::Html, Editor::Rich}) {
        RunningHost running(GetParam(), {.editor = Editor::Word, .wordKind = kind});
        EXPECT_EQ(makeSafeMailItem(saved(running.person().newMail())).BodyFormat(), static_cast<std::int32_t>(kind));
    }
}

TEST_P(WordWindow, TheKindOfAnotherEditorsRunIsNotWords) {
    RunningHost running(GetParam(), {.editor = Editor::Html, .wordKind = Editor::Plain});
    EXPECT_EQ(saved(running.person().newMail()).BodyFormat(), body_format::Html);
}

TEST_P(WordWindow, OnNineTheWrapperTellsTheKind) {
    for (const Editor kind : {Editor::Plain, Editor::Html, Editor::Rich}) {
        RunningHost running(GetParam(), {.version = u"9.0.0.2711", .editor = Editor::Word, .wordKind = kind});
        const MailItem item = saved(running.person().newMail());
        EXPECT_HOST_ERROR(runtime_error::NoSuchMember, item.BodyFormat());
        EXPECT_EQ(makeSafeMailItem(item).BodyFormat(), static_cast<std::int32_t>(kind));
    }
}

TEST_P(WordWindow, HasOneDocument) {
    const Inspector inspector = host().open(host().htmlItem(u"Dear John"));
    const Object document = inspector.WordEditor();
    EXPECT_EQ(inspector.WordEditor(), document);
    EXPECT_EQ(inspector.CurrentItem().GetInspector().WordEditor(), document);
    EXPECT_EQ(host().application().ActiveInspector().WordEditor(), document);
    EXPECT_EQ(makeSafeInspector(inspector).WordEditor(), document);
}

TEST_P(WordWindow, HasADocumentOfItsOwn) {
    const Inspector first = host().open(host().plainItem(u"First")), second = host().open(host().plainItem(u"Second"));
    EXPECT_FALSE(first.WordEditor() == second.WordEditor());
    EXPECT_EQ(textOf(first.WordEditor()), u"First");
    EXPECT_EQ(textOf(second.WordEditor()), u"Second");
    writeText(first.WordEditor(), u"Changed");
    EXPECT_EQ(textOf(second.WordEditor()), u"Second");
    EXPECT_EQ(person().shown(second, Field::Body), u"Second");
}

TEST_P(WordWindow, HasADocumentThoughItIsHidden) {
    const Inspector inspector = hidden(host().htmlItem(u"<p>Dear</p><p>John</p>"));
    EXPECT_EQ(inspector.EditorType(), editor_type::Word);
    EXPECT_EQ(textOf(inspector.WordEditor()), u"Dear\r\nJohn");
    EXPECT_EQ(inspector.WordEditor(), inspector.WordEditor());
    EXPECT_FALSE(host().application().ActiveInspector()) << "the window stays hidden";
}

TEST_P(WordWindow, OfANewMailHasADocumentThoughItIsHidden) {
    const Inspector inspector = host().newItem().GetInspector();
    EXPECT_EQ(textOf(inspector.WordEditor()), u"");
    EXPECT_FALSE(host().application().ActiveInspector());
}

TEST_P(WordWindow, KeepsItsDocumentWhenItIsShown) {
    const Inspector inspector = hidden(host().htmlItem(u"Dear John"));
    const Object document = inspector.WordEditor();
    writeText(document, u"Dear Jane");
    inspector.Display();
    EXPECT_EQ(inspector.WordEditor(), document);
    EXPECT_EQ(person().shown(inspector, Field::Body), u"Dear Jane");
    EXPECT_EQ(inspector.CurrentItem().Body(), u"Dear John");
}

TEST_P(WordWindow, IsHeldByItsDocument) {
    const MailItem item = host().htmlItem(u"Dear John");
    const Object document = hidden(item).WordEditor();
    writeText(document, u"Dear Jane");
    EXPECT_EQ(textOf(document), u"Dear Jane");
    EXPECT_EQ(item.GetInspector().WordEditor(), document);
    item.GetInspector().Close(olSave);
    EXPECT_EQ(host().again(item).Body(), u"Dear Jane");
}

TEST_P(WordWindow, OnceClosedItsDocumentFails) {
    for (const bool shown : {true, false}) {
        const MailItem item = host().htmlItem(u"Dear John");
        const Inspector inspector = shown ? host().open(item) : hidden(item);
        const Object document = inspector.WordEditor(), range = rangeOf(document);
        inspector.Close(olDiscard);
        EXPECT_NE(errorOf([&] { textOf(document); }).number(), 0);
        EXPECT_NE(errorOf([&] { writeText(document, u"Dear Jane"); }).number(), 0);
        EXPECT_NE(errorOf([&] { text(range, u"Text"); }).number(), 0);
        EXPECT_NE(errorOf([&] { inspector.WordEditor(); }).number(), 0);
        EXPECT_EQ(host().again(item).Body(), u"Dear John");
    }
}

TEST_P(WordWindow, OfADeletedItemHasNoDocument) {
    const MailItem item = host().htmlItem(u"Dear John");
    const Object document = host().open(item).WordEditor();
    item.Delete();
    EXPECT_NE(errorOf([&] { textOf(document); }).number(), 0);
    EXPECT_NE(errorOf([&] { typeText(document, u"x"); }).number(), 0);
}

TEST_P(WordWindow, OpenedAgainShowsWhatWasSaved) {
    const MailItem item = host().htmlItem(u"Dear John");
    const Inspector first = host().open(item);
    writeText(first.WordEditor(), u"Dear Jane");
    first.Close(olSave);
    EXPECT_EQ(textOf(host().open(host().again(item)).WordEditor()), u"Dear Jane");
}

TEST_P(WordWindow, ItsObjectsFailOnUnknownMembersWith438) {
    const Inspector inspector = host().open(host().htmlItem(u"Dear John"));
    const Object document = inspector.WordEditor(), word = wordOf(document);
    call(object(word, u"AddIns"), u"Add", {person().writeFile("Letters.dot", bytes("x"))});
    const Object objects[] = {document,
                              rangeOf(document),
                              word,
                              selectionOf(document),
                              object(word, u"AddIns"),
                              object(word, u"AddIns", {person().path("Letters.dot")}),
                              object(word, u"Templates", {u"\\Lorvane.dot"})};
    for (const Object& each : objects) {
        EXPECT_HOST_ERROR(runtime_error::NoSuchMember, each.get(Member::Subject));
        EXPECT_HOST_ERROR(runtime_error::NoSuchMember, each.put(Member::Subject, u"x"));
        EXPECT_HOST_ERROR(runtime_error::NoSuchMember, each.call(Member::ResolveAll));
        EXPECT_NE(errorOf([&] { each.get(Member::Subject); }).description().find(u"Subject"), std::u16string::npos) << "it names the member";
    }
}

/// Builds of version 10 that let nobody near the document but the helper.
class GuardedWord : public EachStore {
protected:
    static constexpr std::int32_t aborted = -2147467260;
};
INSTANTIATE_EACH_STORE(GuardedWord);

TEST_P(GuardedWord, RefusesTheBareWindowsDocument) {
    for (const char16_t* version : {u"10.0.0.6515", u"10.0.0.6516", u"10.0.0.10000", u"10.0.6515"}) {
        RunningHost running(GetParam(), {.version = version, .editor = Editor::Word});
        const Inspector inspector = running.open(running.htmlItem(u"Dear John"));
        EXPECT_HOST_ERROR(aborted, inspector.WordEditor());
        EXPECT_EQ(inspector.EditorType(), editor_type::Word);
        EXPECT_TRUE(truth(inspector, u"IsWordMail"));
        const MailItem second = running.savedItem(u"Offer");
        EXPECT_HOST_ERROR(aborted, second.GetInspector().WordEditor());
    }
}

TEST_P(GuardedWord, IsReachedThroughTheHelper) {
    for (const char16_t* version : {u"10.0.0.6515", u"10.0.0.10000"}) {
        RunningHost running(GetParam(), {.version = version, .editor = Editor::Word});
        const Inspector inspector = running.open(running.htmlItem(u"Dear John"));
        const Object document = makeSafeInspector(inspector).WordEditor();
        ASSERT_TRUE(document);
        EXPECT_EQ(makeSafeInspector(inspector).WordEditor(), document);
        writeText(document, u"Dear Jane");
        selectionOf(document).call(Member::TypeText, {u"!"});
        EXPECT_NE(textOf(document).find(u"!"), std::u16string::npos);
        EXPECT_NO_THROW(get(object(wordOf(document), u"AddIns"), u"Count"));
    }
}

TEST_P(GuardedWord, IsReachedThroughAnItemsWrapperToo) {
    for (const char16_t* version : {u"9.0.0.2711", u"10.0.0.6514", u"10.0.0.6515", u"11.0.0.5510"}) {
        RunningHost running(GetParam(), {.version = version, .editor = Editor::Word});
        const Inspector inspector = running.open(running.htmlItem(u"Dear John"));
        const Object wrapper = running.machine().CreateObject(u"qz7mredemption.qz7msafemailitem");
        wrapper.put(Member::Item, inspector);
        EXPECT_EQ(wrapper.getObject(Member::WordEditor), makeSafeInspector(inspector).WordEditor());
    }
}

TEST_P(GuardedWord, OtherBuildsAndVersionsGiveItBothWays) {
    for (const char16_t* version : {u"9.0.0.6515", u"9.0.0.2711", u"10.0.0.6514", u"10.0.0.999", u"11.0.0.6515", u"11.0.0.8000", u"12.0.0.6515"}) {
        RunningHost running(GetParam(), {.version = version, .editor = Editor::Word});
        const Inspector inspector = running.open(running.htmlItem(u"Dear John"));
        ASSERT_TRUE(inspector.WordEditor());
        EXPECT_EQ(inspector.WordEditor(), makeSafeInspector(inspector).WordEditor());
        EXPECT_EQ(textOf(inspector.WordEditor()), u"Dear John");
    }
}

TEST_P(GuardedWord, GivesTheDocumentOfAHiddenWindowThroughTheHelper) {
    RunningHost running(GetParam(), {.version = u"10.0.0.6515", .editor = Editor::Word});
    const MailItem item = running.htmlItem(u"Dear <b>John</b>");
    item.Save();
    const SafeInspector safe = makeSafeInspector(makeSafeMailItem(item).GetInspector());
    EXPECT_EQ(textOf(safe.WordEditor()), u"Dear John");
    writeText(safe.WordEditor(), u"Dear Jane");
    safe.Close(olSave);
    EXPECT_EQ(running.again(item).Body(), u"Dear Jane");
}

}  // namespace lorvane::contract
