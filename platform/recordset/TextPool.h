#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "host/Variant.h"

namespace lorvane::recordset {

/// Texts that stay where they are as long as anybody has the pool: cells of several tables, and values that were handed out, share them.
///
/// Texts are only added. They lie in chunks of which most have one size, so that a place is found from a number of 32 bits.
class TextPool final : public host::TextKeeper {
public:
    TextPool();

    /// Where the text was put; empty where there is no room for one more.
    std::optional<std::uint32_t> add(std::u16string_view text);

    const char16_t* at(std::uint32_t offset) const noexcept { return chunks_[offset >> chunkBits] + (offset & (chunkUnits - 1)); }
    /// UTF-16 units of all texts.
    std::size_t size() const noexcept { return size_; }

    /// Longest text, in units.
    static constexpr std::size_t longest = (std::size_t{1} << 28) - 1;

    /// The number that values carry: where the text is, and in its upper half the length with `marks`, four bits of the caller's.
    static std::uint64_t numberOf(std::uint32_t offset, std::size_t length, std::uint32_t marks) noexcept {
        return std::uint64_t{length} << 36 | std::uint64_t{marks} << 32 | offset;
    }
    std::u16string_view keptText(std::uint64_t number) const noexcept override {
        return {at(static_cast<std::uint32_t>(number)), static_cast<std::size_t>(number >> 36)};
    }

private:
    static constexpr std::size_t chunkBits = 18;
    static constexpr std::size_t chunkUnits = std::size_t{1} << chunkBits;

    bool makeRoom(std::size_t units);

    std::vector<const char16_t*> chunks_;  // by number; a chunk that is larger than others has several numbers in turn
    std::vector<std::unique_ptr<char16_t[]>> owned_;
    char16_t* free_ = nullptr;  // in the last chunk
    std::size_t room_ = 0;      // units there
    std::size_t next_ = 0;      // the offset of `free_`
    std::size_t size_ = 0;
};

}  // namespace lorvane::recordset
