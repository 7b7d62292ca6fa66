#include <gtest/gtest.h>

#include "mailstore/MemoryStore.h"
#include "services/ServicesRig.h"

namespace lorvane::services::test {
namespace {

TEST(Settings, AValueThatIsNotThereIsTheDefault) {
    const Rig rig;
    EXPECT_EQ(rig.settings.GetSetting(u"Lorvane", u"Options", u"Mode", u"NOT FOUND"), u"NOT FOUND");
    EXPECT_EQ(rig.settings.GetSetting(u"Lorvane", u"Options", u"Mode"), u"");
    rig.settings.SaveSetting(u"Lorvane", u"Options", u"Mode", u"");
    EXPECT_EQ(rig.settings.GetSetting(u"Lorvane", u"Options", u"Mode", u"NOT FOUND"), u"");
    EXPECT_EQ(rig.services.settings.call(host::Member::GetSetting, {u"Lorvane", u"Options", u"None"}), host::Variant(u""));
}

TEST(Settings, AValueIsKeptInTheStoreOfTheRun) {
    const std::shared_ptr<mailstore::SettingsStore> store = mailstore::makeMemorySettings();
    ServiceOptions options;
    options.settings = store;
    const Rig rig(std::move(options));
    rig.settings.SaveSetting(u"Lorvane", u"Options", u"Mode", u"1");
    EXPECT_EQ(rig.settings.GetSetting(u"LORVANE", u"options", u"mode"), u"1");
    EXPECT_EQ(store->find(u"Lorvane", u"Options", u"Mode"), u"1");
}

TEST(Settings, NumbersAndTruthsAreKeptAsTheirText) {
    const Rig rig;
    rig.services.settings.call(host::Member::SaveSetting, {u"Lorvane", u"Options", u"On", true});
    EXPECT_EQ(rig.settings.GetSetting(u"Lorvane", u"Options", u"On"), u"True");
    EXPECT_EQ(errorOf([&] { rig.services.settings.call(host::Member::SaveSetting, {u"Lorvane", u"Options", u"On"}); }), 449);
}

}  // namespace
}  // namespace lorvane::services::test
