#pragma once

#include <string>
#include <string_view>

#include "html/TextMap.h"

namespace lorvane::html {

/// HTML source with a view of what it shows.
///
/// A position stands behind the character before it, in the text that holds that character; position 0 stands in front of the first visible character, or
/// directly behind the body's tag where there is none. Behind a line end or tab that markup made, it stands in front of the next visible character of that
/// line; on an empty line directly behind the `br` or start tag that made it.
class HtmlDocument {
public:
    explicit HtmlDocument(std::u16string source);

    const std::u16string& source() const noexcept { return source_; }
    const TextMap& map() const noexcept { return map_; }

    std::u16string visible() const { return map_.text(); }         ///< line ends as CRLF
    std::size_t length() const noexcept { return map_.length(); }  ///< in positions
    std::size_t sourceOffsetAt(std::size_t position) const { return map_.sourceOffsetAt(position); }
    std::size_t positionAt(std::size_t sourceOffset) const { return map_.positionAt(sourceOffset); }
    CharacterRange characterRangeBefore(std::size_t position) const { return map_.characterRangeBefore(position); }
    SourceRange sourceBefore(std::size_t position) const { return map_.sourceBefore(position); }

private:
    std::u16string source_;
    TextMap map_;
};

}  // namespace lorvane::html
