#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "host/Object.h"

namespace lorvane::services {

/// Blocks of memory as the platform hands them out: by handle, with addresses of 32 bits. New blocks read as zero.
class GlobalMemory {
public:
    static constexpr std::int32_t movable = 2;  ///< a flag of `allocate`: the block has no address while it is not locked

    /// Addresses end in front of `behindLast`: there is no more room than that.
    explicit GlobalMemory(std::int32_t behindLast = 0x7FFF0000) noexcept : behindLast_(behindLast) {}

    /// The handle of a new block; that of a block that stays in place is its address. 0 for a negative size and where there is no room.
    std::int32_t allocate(std::int32_t flags, std::int32_t size);
    /// The block's address; 0 for an unknown handle or a block without a byte. Locks of a movable block are counted.
    std::int32_t lock(std::int32_t handle) noexcept;
    void unlock(std::int32_t handle) noexcept;
    /// Writes at an address. Error 5 where that reaches beyond one block, or into a movable one that is not locked; nothing is written then.
    void write(std::int32_t address, const host::Bytes& bytes);
    /// Takes the block out: its handle and address mean nothing afterwards. None for an unknown handle.
    std::optional<host::Bytes> take(std::int32_t handle);

private:
    struct Block {
        host::Bytes bytes;
        bool isMovable = false;
        std::int32_t locks = 0;
    };
    using Blocks = std::map<std::int64_t, Block>;  // by address

    Blocks::iterator find(std::int32_t handle) noexcept;
    std::int64_t freeAddress(std::int64_t size) const noexcept;

    Blocks blocks_;
    std::int64_t behindLast_;
    std::int64_t next_ = 0;
};

}  // namespace lorvane::services
