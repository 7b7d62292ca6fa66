#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace lorvane::recordset {

/// The number of a row in its table: rows are numbered from 0 in insertion order and keep their number for good.
using RowId = std::uint32_t;

/// A set of rows, one bit each.
class RowBits {
public:
    explicit RowBits(std::size_t rows = 0) : words_((rows + 63) / 64) {}

    void set(RowId row) noexcept { words_[row / 64] |= std::uint64_t{1} << (row % 64); }
    void clear(RowId row) noexcept { words_[row / 64] &= ~(std::uint64_t{1} << (row % 64)); }
    bool test(RowId row) const noexcept { return (words_[row / 64] >> (row % 64)) & 1; }
    void grow(std::size_t rows) { words_.resize((rows + 63) / 64); }

    RowBits& operator&=(const RowBits& other) noexcept {
        for (std::size_t i = 0; i < words_.size(); ++i) words_[i] &= other.words_[i];
        return *this;
    }
    RowBits& operator|=(const RowBits& other) noexcept {
        for (std::size_t i = 0; i < words_.size(); ++i) words_[i] |= other.words_[i];
        return *this;
    }

    std::size_t count() const noexcept {
        std::size_t total = 0;
        for (const std::uint64_t word : words_) total += static_cast<std::size_t>(std::popcount(word));
        return total;
    }

    /// Calls `visit(row)` for each row of the set, in ascending order.
    template <class F>
    void forEach(F&& visit) const {
        for (std::size_t i = 0; i < words_.size(); ++i) {
            for (std::uint64_t word = words_[i]; word != 0; word &= word - 1)
                visit(static_cast<RowId>(i * 64 + static_cast<std::size_t>(std::countr_zero(word))));
        }
    }

    const std::vector<std::uint64_t>& words() const noexcept { return words_; }

private:
    std::vector<std::uint64_t> words_;
};

}  // namespace lorvane::recordset
