#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace lorvane::host {

/// A text that does not store its longest run of blanks: list lines are a few words, hundreds of blanks and a key.
///
/// `text()` gives exactly what it was made from.
class PaddedText {
public:
    PaddedText() = default;
    explicit PaddedText(std::u16string_view text);
    /// `head`, then blanks, then `tail`.
    PaddedText(std::u16string_view head, std::size_t blanks, std::u16string_view tail);

    std::u16string text() const;
    std::size_t length() const noexcept { return rest_.size() + blanks_; }
    bool operator==(const PaddedText& other) const;

private:
    std::u16string rest_;   // the text without the run
    std::uint32_t at_ = 0;  // where the run stood
    std::uint32_t blanks_ = 0;
};

}  // namespace lorvane::host
