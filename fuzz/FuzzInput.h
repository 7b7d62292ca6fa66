#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include "host/TextFunctions.h"

/// What the fuzzers make of the bytes they get, and how a find is told.
namespace lorvane::fuzz {

/// The bytes of one run, taken from the front.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

    std::uint8_t byte() {
        if (rest_.empty()) return 0;
        const std::uint8_t value = rest_.front();
        rest_ = rest_.subspan(1);
        return value;
    }
    std::size_t below(std::size_t limit) { return limit == 0 ? 0 : (std::size_t{byte()} << 8 | byte()) % limit; }
    bool isEmpty() const noexcept { return rest_.empty(); }
    std::span<const std::uint8_t> bytes() const noexcept { return rest_; }
    std::string_view utf8() const noexcept { return {reinterpret_cast<const char*>(rest_.data()), rest_.size()}; }

    /// What is left, as text.
    std::u16string text() const { return host::fromUtf8(utf8()); }
    /// The next `most` bytes at the most, as text.
    std::u16string text(std::size_t most) {
        const std::size_t length = below(most + 1) < rest_.size() ? below(most + 1) : rest_.size();
        const std::string_view taken = utf8().substr(0, length);
        rest_ = rest_.subspan(taken.size());
        return host::fromUtf8(taken);
    }

private:
    std::span<const std::uint8_t> rest_;
};

/// Ends the run as a find where something does not hold that must hold for any input.
inline void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

}  // namespace lorvane::fuzz
