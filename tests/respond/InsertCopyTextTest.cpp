#include <gtest/gtest.h>

#include <map>

#include "InsertRig.h"

/// What is copied from templates whose editor or kind is none that an item of the stand-alone host has by itself.
namespace lorvane::support {
namespace {

using namespace host;
using respond::InsertionRoute;

/// An object with some of its members answering otherwise.
class Altered final : public Dispatch {
public:
    Altered(Object object, std::map<Member, Variant> answers) : object_(std::move(object)), answers_(std::move(answers)) {}
    std::u16string_view className() const noexcept override { return u"Altered"; }
    Variant get(Member member, Args) override {
        const auto found = answers_.find(member);
        return found == answers_.end() ? object_.get(member) : found->second;
    }
    void put(Member member, const Variant& value, Args) override { object_.put(member, value); }
    Variant call(Member member, Args args) override { return get(member, args); }

private:
    Object object_;
    std::map<Member, Variant> answers_;
};

/// A template's safe wrapper, altered.
SafeMailItem altered(const MailItem& item, std::map<Member, Variant> answers) {
    return SafeMailItem(makeObject<Altered>(makeSafeMailItem(item), std::move(answers)));
}

/// The same, with the item edited by this kind of editor.
SafeMailItem editedBy(std::int32_t editorType, const MailItem& item, std::map<Member, Variant> answers = {}) {
    answers.emplace(Member::GetInspector, makeObject<Altered>(Object(), std::map<Member, Variant>{{Member::EditorType, Variant(editorType)}}));
    return altered(item, std::move(answers));
}

constexpr std::u16string_view boldResult = u"<B>Dear</B> John";

class AlteredTemplateTest : public testing::TestWithParam<std::u16string_view> {
protected:
    AlteredTemplateTest() : run(atVersion(GetParam())) {}
    bool belowTwelve() const { return Val(GetParam()) < 12; }
    CopiedText copy(const SafeMailItem& item, std::int32_t format, bool withFormat = true) { return copyText(run, item, format, withFormat, target); }
    void expectText(const CopiedText& copied) {
        EXPECT_EQ(copied.route, InsertionRoute::ClipboardText);
        EXPECT_EQ(copied.html, u"");
        EXPECT_EQ(run.clipboardText(), u"Dear John\r\nYours");
        EXPECT_FALSE(run.clipboardHtml());
    }
    void expectHtml(const CopiedText& copied, InsertionRoute route, std::u16string_view fragment) {
        EXPECT_EQ(copied.route, route);
        EXPECT_EQ(copied.html, fragment);
        EXPECT_FALSE(run.clipboardText());
        EXPECT_TRUE(run.clipboardHtml());
    }
    void expectNothing(const CopiedText& copied) {
        EXPECT_EQ(copied.route, InsertionRoute::ClipboardText);
        EXPECT_EQ(copied.html, u"");
        EXPECT_FALSE(run.clipboardText());
        EXPECT_FALSE(run.clipboardHtml());
    }
    TestRun run;
    MailItem bold = run.addTemplate(u"Bold", html(document(u"<B>Dear</B> [FirstName]")));
    MailItem text = run.addTemplate(u"Text", plain(u"Dear [FirstName]\r\nYours"));
    Object target = makeSafeMailItem(run.draft(u"Draft", plain(u""), {u"John Public <john@example.com>"}));
    /// The text's own body with an HTML body beside it.
    std::map<Member, Variant> withHtml{{Member::HTMLBody, Variant(document(u"<I>not this</I>"))}};
};

INSTANTIATE_TEST_SUITE_P(Versions, AlteredTemplateTest, testing::Values(u"9.0.0.6627", u"10.0.0.4608", u"11.0.0.5510", u"12.0.0.4518"));

TEST_P(AlteredTemplateTest, APlainOneWithAnHtmlBodyIsMadeHtmlFromItsText) {
    // Version 9 takes the kind from the item's own window, the others from its body format.
    const CopiedText copied = copy(altered(text, withHtml), body_format::Html);
    expectHtml(copied, InsertionRoute::HtmlReady, belowTwelve() ? u"Dear John<BR>\nYours" : u"<p>Dear John</P><P class=MsoNormal>Yours</p>");
}

TEST_P(AlteredTemplateTest, OneEditedInWordGivesItsHtmlToHtmlMails) {
    expectHtml(copy(editedBy(editor_type::Word, bold), body_format::Html), InsertionRoute::HtmlReady, boldResult);
}

TEST_P(AlteredTemplateTest, APlainOneEditedInWordGoesAsTextBelowTwelve) {
    const CopiedText copied = copy(editedBy(editor_type::Word, text, withHtml), body_format::Html);
    if (belowTwelve())
        expectText(copied);
    else
        expectHtml(copied, InsertionRoute::HtmlReady, u"<p>Dear John</P><P class=MsoNormal>Yours</p>");
}

TEST_P(AlteredTemplateTest, ARichOneEditedInWordGoesAsTextBelowTwelve) {
    std::map<Member, Variant> answers = withHtml;
    answers.emplace(Member::BodyFormat, Variant(body_format::RichText));
    const CopiedText copied = copy(editedBy(editor_type::Word, text, answers), body_format::Html);
    if (belowTwelve())
        expectText(copied);
    else
        EXPECT_EQ(copied.route, InsertionRoute::HtmlReady);
}

TEST_P(AlteredTemplateTest, WithoutTheFormatTheEditorOfTheTemplateDoesNotMatter) {
    expectText(copy(editedBy(editor_type::Word, text, withHtml), body_format::Html, false));
}

TEST_P(AlteredTemplateTest, ForRichMailsOneEditedInWordGoesByItsBodyFormat) {
    expectText(copy(editedBy(editor_type::Word, text), body_format::RichText));
    expectHtml(copy(editedBy(editor_type::Word, bold), body_format::RichText), InsertionRoute::PlainSplice, boldResult);
}

TEST_P(AlteredTemplateTest, ForRichMailsTheEditorsKindCountsWhereItIsNotWord) {
    expectText(copy(editedBy(editor_type::Text, text, withHtml), body_format::RichText));
    for (const std::int32_t kind : {editor_type::Html, editor_type::RichText})
        for (const bool withFormat : {false, true})
            expectHtml(copy(editedBy(kind, bold), body_format::RichText, withFormat), InsertionRoute::PlainSplice, boldResult);
}

TEST_P(AlteredTemplateTest, ForRichMailsAnyOtherKindIsNotCopied) {
    for (const std::int32_t kind : {0, 5, 7}) expectNothing(copy(editedBy(kind, bold), body_format::RichText));
    expectNothing(copy(editedBy(editor_type::Word, bold, {{Member::BodyFormat, Variant(body_format::Unspecified)}}), body_format::RichText));
}

TEST_P(AlteredTemplateTest, WithoutATargetNothingIsReplacedOnAnyWay) {
    target = Object();
    copy(makeSafeMailItem(text), body_format::Plain);
    EXPECT_EQ(run.clipboardText(), u"Dear [FirstName]\r\nYours");
    EXPECT_EQ(copy(makeSafeMailItem(bold), body_format::Html).html, u"<B>Dear</B> [FirstName]");
    EXPECT_EQ(copy(makeSafeMailItem(bold), body_format::RichText).html, u"<B>Dear</B> [FirstName]");
}

}  // namespace
}  // namespace lorvane::support
