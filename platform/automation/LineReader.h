#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "automation/Transport.h"

namespace lorvane::automation {

/// The longest line that is taken, in bytes: a mail of the usual size limits fits in as base64.
inline constexpr std::size_t longestLine = 64U << 20;

/// Cuts bytes into lines. A line ends with LF or CR LF; the last one also with the input.
class LineReader {
public:
    explicit LineReader(std::size_t limit = longestLine) noexcept : limit_(limit) {}

    void feed(std::string_view bytes);
    void finish();
    /// The next line that is whole, or that there was one too long.
    std::optional<Transport::Received> next();

private:
    void take(std::string_view part);
    void endLine();

    std::size_t limit_;
    std::string line_;
    bool tooLong_ = false;
    std::deque<Transport::Received> ready_;
};

}  // namespace lorvane::automation
