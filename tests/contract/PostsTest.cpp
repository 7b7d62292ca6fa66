#include "contract/HostFixture.h"

/// Posts as open items: mails without an addressee.
namespace lorvane::contract {

class Posts : public EachStore {
protected:
    MailItem newPost() { return host().newItem(u"IPM.Post"); }
    /// The shown window of an HTML post, with the caret at a place of its body.
    Inspector openAt(std::u16string_view body, std::int32_t position) {
        const MailItem post = newPost();
        post.HTMLBody(html(body));
        const Inspector inspector = host().open(post);
        person().focus(inspector, Field::Body, position);
        return inspector;
    }
};
INSTANTIATE_EACH_STORE(Posts);

TEST_P(Posts, WithTextOpenInTheEditorOfTheirKind) {
    for (const Editor run : {Editor::Plain, Editor::Html, Editor::Rich}) {
        RunningHost running(GetParam(), {.editor = run});
        const MailItem plain = running.newItem(u"IPM.Post"), marked = running.newItem(u"IPM.Post"), rich = running.newItem(u"IPM.Post");
        plain.Body(u"Dear John");
        marked.HTMLBody(html(u"Dear John"));
        put(makeSafePostItem(rich), u"RTFBody", rtf(u"Dear John"));
        EXPECT_EQ(running.open(plain).EditorType(), editor_type::Text);
        EXPECT_EQ(running.open(marked).EditorType(), editor_type::Html);
        EXPECT_EQ(running.open(rich).EditorType(), editor_type::RichText);
    }
}

TEST_P(Posts, NewOnesOpenInTheRunsEditorAndGetItsKind) {
    for (const Editor run : {Editor::Plain, Editor::Html, Editor::Rich}) {
        RunningHost running(GetParam(), {.editor = run});
        const Inspector inspector = running.newItem(u"IPM.Post").GetInspector();
        EXPECT_EQ(inspector.EditorType(), static_cast<std::int32_t>(run));
        inspector.Display();
        running.person().focus(inspector, Field::Body, 0);
        running.person().type(u"Dear John");
        makeSafePostItem(inspector.CurrentItem()).Save();
        EXPECT_EQ(inspector.CurrentItem().BodyFormat(), static_cast<std::int32_t>(run));
        EXPECT_EQ(inspector.CurrentItem().Body(), u"Dear John");
    }
}

TEST_P(Posts, HaveRecipientsOfWhichThereAreNoneOnTheWrapperAlone) {
    const MailItem post = newPost();
    post.Body(u"Dear John");
    post.Save();
    for (const MailItem& each : {post, host().again(post)}) {
        for (const SafeMailItem& safe : {makeSafePostItem(each), makeSafeMailItem(each)}) {
            EXPECT_EQ(safe.Recipients().Count(), 0);
            EXPECT_TRUE(safe.Recipients().ResolveAll());
            EXPECT_NE(errorOf([&] { safe.Recipients().Item(1); }).number(), 0);
        }
        EXPECT_HOST_ERROR(runtime_error::NoSuchMember, each.Recipients());
    }
}

TEST_P(Posts, TellTheirKindThroughTheWrapperOnEveryVersion) {
    for (const char16_t* version : {u"9.0.0.2711", u"10.0.0.6515", u"11.0.0.5510", u"12.0.0.4518"}) {
        RunningHost running(GetParam(), {.version = version});
        const MailItem plain = running.newItem(u"IPM.Post"), marked = running.newItem(u"IPM.Post"), rich = running.newItem(u"IPM.Post");
        EXPECT_EQ(makeSafePostItem(plain).BodyFormat(), body_format::Unspecified);
        plain.Body(u"Dear John");
        marked.HTMLBody(html(u"Dear John"));
        put(makeSafePostItem(rich), u"RTFBody", rtf(u"Dear John"));
        EXPECT_EQ(makeSafePostItem(plain).BodyFormat(), body_format::Plain);
        EXPECT_EQ(makeSafePostItem(marked).BodyFormat(), body_format::Html);
        EXPECT_EQ(makeSafePostItem(rich).BodyFormat(), body_format::RichText);
    }
}

TEST_P(Posts, TakeASpliceAtTheMarker) {
    const Inspector inspector = openAt(u"<p>one three</p>", 4);
    host().sendKeys(u"MARK");
    const SafeMailItem safe = makeSafePostItem(inspector.CurrentItem());
    EXPECT_EQ(safe.HTMLBody(), html(u"<p>one three</p>"));
    safe.Save();
    std::u16string body = safe.HTMLBody();
    ASSERT_EQ(body, html(u"<p>one MARKthree</p>"));
    body.replace(body.find(u"MARK"), 4, u"<b>two</b> ");
    safe.HTMLBody(body);
    EXPECT_EQ(person().shown(inspector, Field::Body), u"one two three");
    person().type(u"X");
    safe.Save();
    EXPECT_EQ(host().again(inspector.CurrentItem()).HTMLBody(), html(u"<p>one <b>two</b> Xthree</p>"));
}

TEST_P(Posts, TakeWhatIsPasted) {
    const Inspector inspector = openAt(u"<p>ad</p>", 1);
    person().setClipboard({.text = u"not this", .htmlFormat = htmlBlock("<b>b</b>")});
    host().sendKeys(u"^v");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().HTMLBody(), html(u"<p>a<b>b</b>d</p>"));
}

TEST_P(Posts, AreReadAndWrittenAtTheSelection) {
    const Inspector inspector = openAt(u"one two three", 0);
    person().select(inspector, 4, 3);
    EXPECT_EQ(text(makeSafeInspector(inspector), u"SelText"), u"two");
    put(makeSafeInspector(inspector), u"SelText", u"2");
    EXPECT_EQ(person().shown(inspector, Field::Body), u"one 2 three");
}

TEST_P(Posts, CloseAsMailsDo) {
    const Inspector first = openAt(u"a", -1);
    const MailItem post = first.CurrentItem();
    person().type(u"b");
    first.Close(olDiscard);
    EXPECT_EQ(host().again(post).Body(), u"a");
    const Inspector second = host().open(host().again(post));
    person().focus(second, Field::Body, -1);
    person().type(u"b");
    person().focus(second, Field::Subject, 0);
    person().type(u"Offer");
    second.Close(olSave);
    EXPECT_EQ(host().again(post).Body(), u"ab");
    EXPECT_EQ(host().again(post).Subject(), u"Offer");
}

TEST_P(Posts, AreNeitherReceivedNorSent) {
    const SafeMailItem safe = makeSafePostItem(newPost());
    EXPECT_TRUE(safe.Fields(0x0040001E).isEmpty());
    EXPECT_FALSE(safe.Sent());
}

}  // namespace lorvane::contract
