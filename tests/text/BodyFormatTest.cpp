#include "text/BodyFormat.h"

#include <gtest/gtest.h>

#include "support/TestRun.h"

namespace lorvane::text {
namespace {

using support::RunOptions;
using support::TestRun;

/// The last version below, and the first one of, the hosts whose editor is Word.
RunOptions version11() {
    return {.connected = false};
}
RunOptions version12() {
    return {.version = u"12.0.0.4518", .connected = false};
}

TEST(BodyFormatTest, Below12PlainTextStaysAsItIs) {
    TestRun run(version11());
    EXPECT_EQ(ConvertPlainTextToHtml(u"a\r\n\r\nb & <c>"), u"a\r\n\r\nb & <c>");
    EXPECT_EQ(SetParagraphSpacing(u"<p>a\r\nb"), u"<p>a\r\nb");
}

TEST(BodyFormatTest, From12OnEachLineIsAParagraphOfTheEditorsClass) {
    TestRun run(version12());
    EXPECT_EQ(ConvertPlainTextToHtml(u"a\r\nb"), u"<p>a</P><P class=MsoNormal>b</p>");
    EXPECT_EQ(ConvertPlainTextToHtml(u""), u"<p></p>");
}

TEST(BodyFormatTest, From12OnAnEmptyLineKeepsItsHeight) {
    TestRun run(version12());
    EXPECT_EQ(ConvertPlainTextToHtml(u"a\r\n\r\nb"), u"<p>a</P><P class=MsoNormal><o:p>&nbsp;</o:p></P><P class=MsoNormal>b</p>");
    EXPECT_EQ(ConvertPlainTextToHtml(u"\r\n\r\n\r\n"),
              u"<p></P><P class=MsoNormal><o:p>&nbsp;</o:p></P><P class=MsoNormal><o:p>&nbsp;</o:p></P><P class=MsoNormal></p>");
    EXPECT_EQ(ConvertPlainTextToHtml(u"<p CLASS=msonormal></p>"), u"<p><P class=MsoNormal><o:p>&nbsp;</o:p></P></p>") << "found in any case";
}

TEST(BodyFormatTest, From12OnNothingIsEscaped) {
    TestRun run(version12());
    EXPECT_EQ(ConvertPlainTextToHtml(u"a & <b>\n\r"), u"<p>a & <b>\n\r</p>");
}

TEST(BodyFormatTest, From12OnParagraphsGetTheEditorsClass) {
    TestRun run(version12());
    EXPECT_EQ(SetParagraphSpacing(u"<p>a</p><P>b</P><p >c"), u"<p class=MsoNormal>a</p><p class=MsoNormal>b</P><p >c");
    EXPECT_EQ(SetParagraphSpacing(u"a\r\nb"), u"a</p><p class=MsoNormal>b");
}

TEST(BodyFormatTest, TheArgumentStaysAsItWas) {
    TestRun run(version12());
    const std::u16string text = u"<p>a\r\nb";
    ConvertPlainTextToHtml(text);
    SetParagraphSpacing(text);
    GetHtmlFromBody(text);
    RemoveSpecChars(text);
    EXPECT_EQ(text, u"<p>a\r\nb");
}

TEST(BodyFormatTest, TheOlderFormPutsABreakForEachCarriageReturn) {
    EXPECT_EQ(GetHtmlFromBody(u"a\r\nb\rc"), u"<HTML><BODY>a<BR>\nb<BR>c</BODY></HTML>");
    EXPECT_EQ(GetHtmlFromBody(u""), u"<HTML><BODY></BODY></HTML>");
}

TEST(BodyFormatTest, TheOlderFormLeavesLineFeedsAlone) {
    EXPECT_EQ(GetHtmlFromBody(u"a\nb"), u"<HTML><BODY>a\nb</BODY></HTML>");
}

TEST(BodyFormatTest, FileNamesLoseWhatTheyCannotHold) {
    EXPECT_EQ(RemoveSpecChars(u"a\\b/c:d*e?f\"g<h>i|j"), u"abcdefghij");
    EXPECT_EQ(RemoveSpecChars(u"::::a::::"), u"a");
    EXPECT_EQ(RemoveSpecChars(u"\\/:*?\"<>|"), u"");
    EXPECT_EQ(RemoveSpecChars(u"Offer (1) - \u00E4.txt"), u"Offer (1) - \u00E4.txt");
}

}  // namespace
}  // namespace lorvane::text
