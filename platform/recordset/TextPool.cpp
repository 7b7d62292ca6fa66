#include "recordset/TextPool.h"

#include <algorithm>

namespace lorvane::recordset {

namespace {

constexpr char16_t nothing[1] = {};

constexpr std::size_t firstUnits = 512;  // a table of a few rows needs no more

}  // namespace

// The first number is that of the empty text, which needs no chunk.
TextPool::TextPool() : chunks_{nothing} {}

std::optional<std::uint32_t> TextPool::add(std::u16string_view text) {
    if (text.empty()) return 0;
    if (text.size() > room_ && !makeRoom(text.size())) return std::nullopt;
    std::ranges::copy(text, free_);
    const auto offset = static_cast<std::uint32_t>(next_);
    free_ += text.size();
    next_ += text.size();
    room_ -= text.size();
    size_ += text.size();
    return offset;
}

bool TextPool::makeRoom(std::size_t units) {
    const std::size_t capacity = std::max(units, std::clamp(size_, firstUnits, chunkUnits));
    const std::size_t numbers = (capacity + chunkUnits - 1) / chunkUnits;
    constexpr std::size_t mostNumbers = (std::size_t{1} << 32) / chunkUnits;
    if (numbers > mostNumbers - chunks_.size()) return false;
    owned_.push_back(std::make_unique_for_overwrite<char16_t[]>(capacity));
    free_ = owned_.back().get();
    room_ = capacity;
    next_ = chunks_.size() * chunkUnits;
    for (std::size_t i = 0; i < numbers; ++i) chunks_.push_back(free_ + i * chunkUnits);
    return true;
}

}  // namespace lorvane::recordset
