#include "automation/Handles.h"

#include <gtest/gtest.h>

#include "automation/Records.h"
#include "automation/Rpc.h"

namespace lorvane::automation {
namespace {

host::Object anObject() {
    return host::makeObject<host::Record>(std::vector<host::Record::Field>{});
}

TEST(Handles, TheSameObjectHasTheSameNumberWhileItIsHeld) {
    Handles handles;
    const host::Object one = anObject(), two = anObject();
    EXPECT_EQ(handles.numberOf(one), 1);
    EXPECT_EQ(handles.numberOf(two), 2);
    EXPECT_EQ(handles.numberOf(one), 1);
    EXPECT_EQ(handles.at(2), two);
    handles.release(1);
    EXPECT_EQ(handles.numberOf(one), 3) << "no number is used again";
    EXPECT_EQ(handles.at(3), one);
}

TEST(Handles, ANumberThatWasNeverGivenOrIsReleasedIsToldSo) {
    Handles handles;
    handles.numberOf(anObject());
    handles.release(1);
    const auto told = [&](Handles::Number number) -> std::string {
        try {
            handles.at(number);
            return "found";
        } catch (const RpcError& error) {
            EXPECT_EQ(error.code(), rpc_code::InvalidParams);
            return error.what();
        }
    };
    EXPECT_EQ(told(1), "there is no object 1 any more: it was released");
    EXPECT_EQ(told(2), "there is no object 2");
    EXPECT_EQ(told(0), "there is no object 0");
    EXPECT_EQ(told(-1), "there is no object -1");
    EXPECT_THROW(handles.release(1), RpcError);
}

/// An object that tells of itself.
class Source final : public host::Dispatch {
public:
    std::u16string_view className() const noexcept override { return u"Source"; }
    host::Variant get(host::Member, host::Args) override { return {}; }
    void put(host::Member, const host::Variant&, host::Args) override {}
    host::Variant call(host::Member, host::Args) override { return {}; }
    host::Subscription advise(std::weak_ptr<host::EventSink> sink) override { return events.advise(std::move(sink)); }
    host::EventSource events;
};

TEST(Handles, EventsComeOnceAndEndWithTheRelease) {
    Handles handles;
    const host::Object object = host::makeObject<Source>();
    auto& source = *host::implementation<Source>(object);
    std::vector<std::u16string> heard;
    const auto hear = [&](Handles::Number, std::u16string_view event, host::Args) { heard.emplace_back(event); };
    const Handles::Number number = handles.numberOf(object);
    handles.advise(number, hear);
    handles.advise(number, hear);
    source.events.raise(host::Member::Close);
    EXPECT_EQ(heard, std::vector<std::u16string>{u"Close"});
    handles.release(number);
    source.events.raise(host::Member::Close);
    EXPECT_EQ(heard.size(), 1U);
    EXPECT_FALSE(source.events.hasSinks());
    EXPECT_THROW(handles.advise(handles.numberOf(anObject()), hear), host::HostError) << "a record has no events";
}

}  // namespace
}  // namespace lorvane::automation
