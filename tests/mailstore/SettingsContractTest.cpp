#include <gtest/gtest.h>

#include "mailstore/Records.h"
#include "mailstore/StoreUnderTest.h"

namespace lorvane::mailstore::test {
namespace {

class SettingsContract : public testing::TestWithParam<StoreWay> {
protected:
    SettingsContract() : kept_(GetParam().make(u"Personal Folders", 2)) {}
    SettingsStore& settings() { return kept_->settings(); }
    std::vector<std::u16string> lines() {
        std::vector<std::u16string> lines;
        for (const SettingsStore::Entry& entry : settings().list())
            lines.push_back(entry.application + u"/" + entry.section + u"/" + entry.key + u"=" + entry.value);
        return lines;
    }
    std::unique_ptr<StoreUnderTest> kept_;
};

TEST_P(SettingsContract, AnAbsentValueIsNoEmptyValue) {
    EXPECT_FALSE(settings().find(u"app", u"section", u"Key"));
    settings().save(u"app", u"section", u"Key", u"");
    EXPECT_EQ(settings().find(u"app", u"section", u"Key"), u"");
    EXPECT_FALSE(settings().find(u"app", u"section", u"Other"));
    EXPECT_FALSE(settings().find(u"app", u"sectionKey", u""));
}

TEST_P(SettingsContract, NamesCompareWithoutRegardToCaseAndKeepTheirFirstSpelling) {
    settings().save(u"App", u"Section", u"ÄKey", u"one");
    settings().save(u"APP", u"section", u"äKEY", u"two");
    EXPECT_EQ(settings().find(u"app", u"SECTION", u"Äkey"), u"two");
    EXPECT_EQ(lines(), std::vector<std::u16string>{u"App/Section/ÄKey=two"});
}

TEST_P(SettingsContract, ARemovedValueIsAbsentAndRemovingAnAbsentOneIsNoError) {
    settings().save(u"app", u"s", u"a", u"1");
    settings().save(u"app", u"s", u"b", u"2");
    settings().remove(u"APP", u"S", u"A");
    settings().remove(u"app", u"s", u"never");
    EXPECT_EQ(lines(), std::vector<std::u16string>{u"app/s/b=2"});
}

TEST_P(SettingsContract, ValuesKeepEveryUnit) {
    const std::u16string value(u"a\0\xD800\xDFFF\xDFFF\r\n", 7);
    settings().save(u"app", u"s", value, value);
    EXPECT_EQ(settings().find(u"app", u"s", value), value);
    EXPECT_EQ(settings().list().at(0).key, value);
}

TEST_P(SettingsContract, TheListIsOrderedByApplicationSectionAndKey) {
    settings().save(u"b", u"a", u"a", u"6");
    settings().save(u"a", u"b", u"a", u"5");
    settings().save(u"a", u"a", u"\x0100", u"4");
    settings().save(u"A", u"a", u"c", u"3");
    settings().save(u"a", u"a", u"B", u"2");
    settings().save(u"a", u"a", u"a", u"1");
    EXPECT_EQ(lines(), (std::vector<std::u16string>{u"a/a/a=1", u"a/a/B=2", u"A/a/c=3", u"a/a/\x0100=4", u"a/b/a=5", u"b/a/a=6"}));
}

TEST_P(SettingsContract, SettingsLeaveTheStoreAlone) {
    const std::size_t folders = kept_->store().childFolders(kept_->store().rootFolder().entryId).size();
    settings().save(u"a", u"b", u"c", u"d");
    EXPECT_EQ(kept_->store().childFolders(kept_->store().rootFolder().entryId).size(), folders);
    EXPECT_EQ(settings().find(u"a", u"b", u"c"), u"d");
}

INSTANTIATE_TEST_SUITE_P(, SettingsContract, testing::ValuesIn(storeWays()), [](const auto& way) { return way.param.name; });

}  // namespace
}  // namespace lorvane::mailstore::test
