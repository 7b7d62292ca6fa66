#include "services/ServiceObject.h"

#include <gtest/gtest.h>

#include "services/ServicesRig.h"

namespace lorvane::services::test {
namespace {

using host::Member;

TEST(ServiceObject, EachServiceHasItsClassAndItsMembersByName) {
    const Rig rig;
    const Services& all = rig.services;
    const std::pair<const host::Object*, std::pair<std::u16string_view, std::u16string_view>> rows[] = {
        {&all.files, {u"Files", u"readtext"}},
        {&all.settings, {u"Settings", u"GETSETTING"}},
        {&all.clock, {u"Clock", u"Now"}},
        {&all.environment, {u"Environment", u"variable"}},
        {&all.clipboard, {u"Clipboard", u"settext"}},
        {&all.region, {u"Region", u"ToAnsi"}},
        {&all.shell, {u"Shell", u"ShellExecute"}},
    };
    for (const auto& [object, names] : rows) {
        EXPECT_EQ(object->dispatch()->className(), names.first);
        EXPECT_TRUE(object->dispatch()->memberNamed(names.second));
        EXPECT_FALSE(object->dispatch()->memberNamed(u"Subject")) << "a member of the surface that this object has not";
        EXPECT_FALSE(object->dispatch()->memberNamed(u"NoSuchName"));
        EXPECT_EQ(errorOf([&] { object->get(Member::Subject); }), 438);
        EXPECT_EQ(errorOf([&] { object->put(Member::Subject, u"x"); }), 438);
        EXPECT_EQ(errorOf([&] { (void)object->advise({}); }), 438);
    }
}

TEST(ServiceObject, ReadingAndCallingAMemberIsOneUse) {
    const Rig rig;
    EXPECT_EQ(rig.services.region.get(Member::LocaleName), rig.services.region.call(Member::LocaleName));
}

TEST(ServiceObject, AMissingArgumentIs449) {
    const Rig rig;
    EXPECT_EQ(errorOf([&] { rig.services.files.call(Member::ReadText); }), 449);
    EXPECT_EQ(errorOf([&] { rig.services.clipboard.call(Member::SetText); }), 449);
}

}  // namespace
}  // namespace lorvane::services::test
