#include "contract/HostFixture.h"

namespace lorvane::contract {

class Versions : public OneHost {};

TEST_F(Versions, ElevenIsTheRunsUnlessToldOtherwise) {
    const std::u16string version = host().application().Version();
    EXPECT_EQ(version.substr(0, version.find(u'.')), u"11");
}

TEST_F(Versions, TheVersionIsDottedTextOfMajorAndBuild) {
    for (const char16_t* version : {u"9.0.0.2711", u"10.0.0.6515", u"11.0.0.5510", u"12.0.0.4518"}) {
        RunningHost running(hostWays().front(), {.version = version});
        EXPECT_EQ(running.application().Version(), version);
    }
}

TEST_F(Versions, TheBareItemLacksBodyFormatOnNine) {
    start({.version = u"9.0.0.2711"});
    const MailItem item = host().htmlItem(u"Dear John");
    EXPECT_HOST_ERROR(runtime_error::NoSuchMember, item.BodyFormat());
    EXPECT_HOST_ERROR(runtime_error::NoSuchMember, item.put(Member::BodyFormat, body_format::Plain));
    EXPECT_HOST_ERROR(runtime_error::NoSuchMember, host().newItem(u"IPM.Post").BodyFormat());
}

TEST_F(Versions, TheBareItemHasBodyFormatFromTenOn) {
    for (const char16_t* version : {u"10.0.0.6515", u"11.0.0.5510", u"12.0.0.4518"}) {
        RunningHost running(hostWays().front(), {.version = version});
        EXPECT_EQ(running.htmlItem(u"Dear John").BodyFormat(), body_format::Html);
    }
}

TEST_F(Versions, TheWrapperAnswersBodyFormatOnEveryVersion) {
    for (const char16_t* version : {u"9.0.0.2711", u"10.0.0.6515", u"11.0.0.5510", u"12.0.0.4518"}) {
        RunningHost running(hostWays().front(), {.version = version});
        EXPECT_EQ(makeSafeMailItem(running.htmlItem(u"Dear John")).BodyFormat(), body_format::Html);
        EXPECT_EQ(makeSafeMailItem(running.plainItem(u"Dear John")).BodyFormat(), body_format::Plain);
    }
}

TEST_F(Versions, TheRestOfAnItemIsTheSameOnNine) {
    start({.version = u"9.0.0.2711"});
    const MailItem item = host().htmlItem(u"<b>Dear John</b>");
    EXPECT_EQ(item.Body(), u"Dear John");
    EXPECT_EQ(host().open(item).EditorType(), editor_type::Html);
}

}  // namespace lorvane::contract
