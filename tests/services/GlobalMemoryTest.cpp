#include "services/GlobalMemory.h"

#include <gtest/gtest.h>

#include <limits>

#include "services/ServicesRig.h"

namespace lorvane::services::test {
namespace {

using host::Bytes;

class GlobalMemoryTest : public testing::Test {
protected:
    GlobalMemory memory;
};

TEST_F(GlobalMemoryTest, ABlockIsWrittenByAddressAndReadsAsZeroElsewhere) {
    const std::int32_t handle = memory.allocate(0, 4);
    const std::int32_t address = memory.lock(handle);
    EXPECT_EQ(address, handle) << "a block that stays in place is its address";
    memory.write(address + 1, {7, 8});
    EXPECT_EQ(memory.take(handle), (Bytes{0, 7, 8, 0}));
}

TEST_F(GlobalMemoryTest, WritingBeyondABlockIsAnErrorAndWritesNothing) {
    const std::int32_t handle = memory.allocate(0, 4);
    memory.allocate(0, 16);
    EXPECT_EQ(errorOf([&] { memory.write(handle, Bytes(5, 1)); }), 5);
    EXPECT_EQ(errorOf([&] { memory.write(handle + 4, {1}); }), 5);
    EXPECT_EQ(errorOf([&] { memory.write(handle - 1, {1}); }), 5);
    EXPECT_EQ(errorOf([&] { memory.write(0, {1}); }), 5);
    EXPECT_EQ(errorOf([&] { memory.write(-5, {1}); }), 5);
    EXPECT_EQ(errorOf([&] { memory.write(0, {}); }), 0) << "nothing to write reaches nowhere";
    EXPECT_EQ(memory.take(handle), Bytes(4));
}

TEST_F(GlobalMemoryTest, AMovableBlockHasAnAddressOnlyWhileItIsLocked) {
    const std::int32_t handle = memory.allocate(GlobalMemory::movable, 4);
    const std::int32_t address = memory.lock(handle);
    EXPECT_NE(address, 0);
    EXPECT_NE(address, handle);
    EXPECT_EQ(memory.lock(handle), address);
    memory.unlock(handle);
    memory.write(address, {1});
    memory.unlock(handle);
    EXPECT_EQ(errorOf([&] { memory.write(address, {2}); }), 5);
    EXPECT_EQ(memory.lock(address), 0) << "its address is not its handle";
    EXPECT_EQ(memory.take(handle), (Bytes{1, 0, 0, 0}));
}

TEST_F(GlobalMemoryTest, AnUnknownHandleIsNothing) {
    const std::int32_t handle = memory.allocate(0, 4);
    EXPECT_TRUE(memory.take(handle));
    for (const std::int32_t unknown : {handle, handle + 2, 0, -14, 1}) {
        EXPECT_EQ(memory.lock(unknown), 0);
        EXPECT_EQ(memory.take(unknown), std::nullopt);
        memory.unlock(unknown);
    }
    EXPECT_EQ(errorOf([&] { memory.write(handle, {1}); }), 5);
}

TEST_F(GlobalMemoryTest, ABlockWithoutAByteHasNoAddress) {
    const std::int32_t handle = memory.allocate(0, 0);
    EXPECT_NE(handle, 0);
    EXPECT_EQ(memory.lock(handle), 0);
    EXPECT_EQ(memory.take(handle), Bytes());
}

TEST_F(GlobalMemoryTest, WhereThereIsNoRoomThereIsNoBlock) {
    EXPECT_EQ(memory.allocate(0, -1), 0);
    EXPECT_EQ(memory.allocate(0, std::numeric_limits<std::int32_t>::max()), 0);
}

TEST(SmallMemory, RoomThatWasGivenBackIsUsedAgain) {
    GlobalMemory memory(0x11000);
    constexpr std::int32_t half = 0x800;
    const std::int32_t kept = memory.allocate(0, 16);
    memory.write(kept, Bytes(16, 9));
    for (int i = 0; i < 20; ++i) {
        const std::int32_t handle = memory.allocate(0, half);
        ASSERT_NE(handle, 0) << i;
        EXPECT_EQ(memory.allocate(0, half), 0) << "there is room for one";
        memory.write(handle + half - 1, {1});
        ASSERT_EQ(memory.take(handle)->back(), 1);
    }
    EXPECT_EQ(memory.take(kept), Bytes(16, 9));
}

TEST(SmallMemory, AGapBetweenBlocksIsFound) {
    GlobalMemory memory(0x100E0);
    const std::int32_t first = memory.allocate(0, 60);
    const std::int32_t gap = memory.allocate(0, 60);
    const std::int32_t last = memory.allocate(0, 60);
    ASSERT_TRUE(memory.take(gap));
    EXPECT_EQ(memory.allocate(0, 100), 0);
    const std::int32_t found = memory.allocate(GlobalMemory::movable, 50);
    EXPECT_EQ(found, gap + GlobalMemory::movable);
    for (const std::int32_t handle : {first, found, last}) EXPECT_TRUE(memory.take(handle));
}

}  // namespace
}  // namespace lorvane::services::test
