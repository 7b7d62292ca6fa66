#include "model/HeadIndex.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace lorvane::model {
namespace {

std::shared_ptr<const FolderHeads> listOf(std::u16string folderId, const std::vector<std::u16string>& entryIds) {
    auto list = std::make_shared<FolderHeads>();
    list->folderId = std::move(folderId);
    for (const auto& entryId : entryIds) list->items.emplace_back().entryId = entryId;
    return list;
}

TEST(HeadIndex, FindsNothingInNoList) {
    HeadIndex index;
    EXPECT_FALSE(index.find(u"A"));
    index.add(listOf(u"F", {}));
    EXPECT_FALSE(index.find(u"A"));
    EXPECT_FALSE(index.find(u""));
}

TEST(HeadIndex, OfTwoHeadsWithOneIdentityTheLaterCounts) {
    HeadIndex index;
    index.add(listOf(u"F", {u"A", u"B"}));
    index.add(listOf(u"G", {u"B"}));
    EXPECT_EQ(index.find(u"A").folderId(), u"F");
    EXPECT_EQ(index.find(u"B").folderId(), u"G");
    EXPECT_EQ(index.find(u"B").index, 0u);
}

TEST(HeadIndex, AHeadOutlivesTheIndexWithItsList) {
    ListedHead found;
    {
        HeadIndex index;
        index.add(listOf(u"F", {u"A", u"B"}));
        found = index.find(u"B");
        index.clear();
        EXPECT_FALSE(index.find(u"B"));
    }
    EXPECT_EQ(found.head().entryId, u"B");
}

TEST(HeadIndex, FindsWhatAMapFinds) {
    std::mt19937 source(11);
    HeadIndex index;
    std::map<std::u16string, std::pair<std::u16string, std::size_t>> model;
    const auto randomId = [&] {
        std::u16string id;
        for (auto units = source() % 6; units > 0; --units) id += static_cast<char16_t>(u'0' + source() % 8);
        return id;
    };
    for (int round = 0; round < 40; ++round) {
        if (round % 13 == 12) {
            index.clear();
            model.clear();
        }
        std::vector<std::u16string> ids(source() % 300);
        for (auto& id : ids) id = randomId();
        const std::u16string folder = u"F" + std::u16string(1, static_cast<char16_t>(u'a' + round));
        index.add(listOf(folder, ids));
        for (std::size_t i = 0; i < ids.size(); ++i) model[ids[i]] = {folder, i};
        for (int probe = 0; probe < 500; ++probe) {
            const std::u16string id = randomId();
            const auto known = model.find(id);
            const ListedHead found = index.find(id);
            ASSERT_EQ(static_cast<bool>(found), known != model.end());
            if (!found) continue;
            EXPECT_EQ(found.head().entryId, id);
            EXPECT_EQ(found.folderId(), known->second.first);
            EXPECT_EQ(found.index, known->second.second);
        }
    }
}

}  // namespace
}  // namespace lorvane::model
