#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lorvane::html {

/// A UTF-16 source as UTF-8 for the parser, with the way back from byte offsets to unit offsets.
///
/// A lone surrogate becomes U+FFFD, one unit for one, so that no offset moves.
class Utf8Source {
public:
    explicit Utf8Source(std::u16string_view source);

    const std::string& bytes() const noexcept { return bytes_; }
    /// The unit at which the character with this byte starts. `byteOffset` starts a character or is the end.
    std::size_t unitOffset(std::size_t byteOffset) const;

private:
    struct Mark {
        std::size_t byte;
        std::size_t unit;
    };

    std::string bytes_;
    std::vector<Mark> marks_;  ///< one each few hundred bytes; none where bytes and units are the same
};

}  // namespace lorvane::html
