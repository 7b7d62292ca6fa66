#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "html/TextMap.h"

/// Splicing text into a source and taking pieces out of it, with the rest kept to the unit.
namespace lorvane::html {

/// Text as it goes into a source.
struct EncodedText {
    std::u16string source;
    std::vector<std::size_t> lengths;  ///< of the source of each character, in order; what leads the first belongs to it
};

/// Text for HTML source at `offset`: escaped, each line end as `lineEnd`. Where the first character would make markup of what stands in front of it (a bare
/// "<", an entity without ";"), that character is written as a number.
EncodedText encodeForHtml(std::u16string_view source, std::size_t offset, std::u16string_view text, std::u16string_view lineEnd);
/// Text for RTF source at `offset`, parted from a control word in front of it.
EncodedText encodeForRtf(std::u16string_view source, std::size_t offset, std::u16string_view text);
/// Text for a plain source.
EncodedText encodePlain(std::u16string_view text);

/// A source with ranges taken out, in any order and overlapping as they may.
class Erasure {
public:
    Erasure(std::u16string_view source, std::vector<SourceRange> ranges);

    const std::u16string& result() const noexcept { return result_; }
    std::u16string take() noexcept { return std::move(result_); }
    /// Where a place of the old source is now.
    std::size_t moved(std::size_t offset) const;

private:
    std::vector<SourceRange> ranges_;  ///< in order, apart
    std::u16string result_;
};

/// After a piece of HTML was taken out in front of `offset`: escapes a bare "<" or "&" that would make markup of what now follows it. Returns the new offset.
std::size_t keepApartInHtml(std::u16string& source, std::size_t offset);

/// True where `offset` lies inside an entity.
bool splitsReference(std::u16string_view source, std::size_t offset);

}  // namespace lorvane::html
