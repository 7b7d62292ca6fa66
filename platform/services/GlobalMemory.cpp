#include "services/GlobalMemory.h"

#include <algorithm>
#include <new>
#include <utility>

#include "host/HostError.h"

namespace lorvane::services {

namespace {

constexpr std::int64_t lowest = 0x10000;
constexpr std::int64_t alignment = 16;  // leaves the low bits of a handle free to tell the two kinds

std::int64_t aligned(std::int64_t address) noexcept {
    return (address + alignment - 1) / alignment * alignment;
}

/// Blocks never touch, so that a write beyond the end of one does not fall into the next.
std::int64_t behind(std::int64_t address, std::int64_t size) noexcept {
    return aligned(address + size + 1);
}

}  // namespace

/// Behind the last block for as long as there is room, since a handle used after its end is then found out; else the first gap.
std::int64_t GlobalMemory::freeAddress(std::int64_t size) const noexcept {
    if (const std::int64_t start = std::max(next_, lowest); start + size <= behindLast_) return start;
    std::int64_t start = lowest;
    for (const auto& [address, block] : blocks_) {
        if (behind(start, size) <= address) return start;
        start = behind(address, static_cast<std::int64_t>(block.bytes.size()));
    }
    return start + size <= behindLast_ ? start : 0;
}

std::int32_t GlobalMemory::allocate(std::int32_t flags, std::int32_t size) {
    const std::int64_t address = size < 0 ? 0 : freeAddress(size);
    if (address == 0) return 0;
    const bool isMovable = (flags & movable) != 0;
    try {
        blocks_.emplace(address, Block{host::Bytes(static_cast<std::size_t>(size)), isMovable, 0});
    } catch (const std::bad_alloc&) {
        return 0;
    }
    next_ = std::max(next_, behind(address, size));
    return static_cast<std::int32_t>(address) + (isMovable ? movable : 0);
}

GlobalMemory::Blocks::iterator GlobalMemory::find(std::int32_t handle) noexcept {
    const bool isMovable = handle % alignment == movable;
    const auto found = blocks_.find(isMovable ? handle - movable : handle);
    return found != blocks_.end() && found->second.isMovable == isMovable ? found : blocks_.end();
}

std::int32_t GlobalMemory::lock(std::int32_t handle) noexcept {
    const auto found = find(handle);
    if (found == blocks_.end() || found->second.bytes.empty()) return 0;
    ++found->second.locks;
    return static_cast<std::int32_t>(found->first);
}

void GlobalMemory::unlock(std::int32_t handle) noexcept {
    const auto found = find(handle);
    if (found != blocks_.end() && found->second.locks > 0) --found->second.locks;
}

void GlobalMemory::write(std::int32_t address, const host::Bytes& bytes) {
    if (bytes.empty()) return;
    auto found = blocks_.upper_bound(address);
    if (found != blocks_.begin()) {
        Block& block = (--found)->second;
        const std::int64_t offset = address - found->first;
        const bool reachable = !block.isMovable || block.locks > 0;
        if (reachable && offset + static_cast<std::int64_t>(bytes.size()) <= static_cast<std::int64_t>(block.bytes.size())) {
            std::ranges::copy(bytes, block.bytes.begin() + offset);
            return;
        }
    }
    throw host::HostError(host::runtime_error::InvalidProcedureCall, u"RtlMoveMemory reaches beyond a block of memory.");
}

std::optional<host::Bytes> GlobalMemory::take(std::int32_t handle) {
    const auto found = find(handle);
    if (found == blocks_.end()) return std::nullopt;
    host::Bytes bytes = std::move(found->second.bytes);
    blocks_.erase(found);
    return bytes;
}

}  // namespace lorvane::services
