#include <gtest/gtest.h>

#include "Routes.h"

/// Which way a template's text travels: by the open item's editor, the button, the template's text and the host's version.
namespace lorvane::support {
namespace {

using namespace host;

class InsertRoutesTest : public testing::TestWithParam<std::tuple<std::u16string_view, Route>> {};

TEST_P(InsertRoutesTest, IsTakenAndTheTextStandsAtTheCaret) {
    const auto& [version, route] = GetParam();
    TestRun run(atVersion(version));
    usePrivately(run, run.templatesFolder());
    addAnyTemplate(run, u"Offer", route.offer);
    const Inspector mail = openAnyDraft(run, route.item, 1);
    run.recorder().clear();
    useTemplate(run, u"Offer", route.button);

    EXPECT_EQ(run.bodyShown(mail), u"aDear Johnb");
    EXPECT_EQ(run.record(mail.CurrentItem()).bodyKind, route.item.kind);
    EXPECT_EQ(savedSourceOf(run, mail), sourceOf(run, mail));
    EXPECT_EQ(allKeys(run), Subjects{std::u16string(route.way == Way::Clipboard ? u"^v" : caretMarker)});
    EXPECT_EQ(run.clipboardText(), route.way == Way::Clipboard ? std::optional<std::u16string>(u"Dear John") : std::nullopt);
    EXPECT_EQ(run.clipboardHtml().has_value(), route.way != Way::Clipboard);
    if (route.way == Way::HtmlSplice) {
        EXPECT_EQ(sourceOf(run, mail), document(u"a<B>Dear</B> Johnb"));
    }
    EXPECT_FALSE(isChooserOpen());
    EXPECT_TRUE(run.boxes().empty());
}

INSTANTIATE_TEST_SUITE_P(Versions, InsertRoutesTest,
                         testing::Combine(testing::Values(u"9.0.0.6627", u"10.0.0.4608", u"10.0.0.6515", u"11.0.0.5510", u"12.0.0.4518"),
                                          testing::ValuesIn(routes)));

}  // namespace
}  // namespace lorvane::support
