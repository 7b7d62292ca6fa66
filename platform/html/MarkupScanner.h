#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "html/HtmlTags.h"
#include "html/TextMap.h"

namespace lorvane::html {

/// A piece of HTML source.
struct MarkupToken {
    enum class Kind { Text, StartTag, EndTag, Other };  // Other: comments, doctypes and what else shows nothing
    Kind kind = Kind::Text;
    SourceRange range;
    std::u16string_view name;           ///< of a tag, as written
    Content content = Content::Markup;  ///< of a text
    std::size_t attributes = 0;
    bool selfClosing = false;
};

/// Cuts HTML source into texts and tags, in linear time whatever it holds; it knows nothing of which tag closes which.
class MarkupScanner {
public:
    explicit MarkupScanner(std::u16string_view source) : source_(source) {}
    /// The next piece, none at the end.
    std::optional<MarkupToken> next();

private:
    MarkupToken verbatimText();

    std::u16string_view source_;
    std::size_t offset_ = 0;
    std::u16string_view rawName_;  // the element whose text, up to its end tag, is no markup
};

/// The end of the tag, comment or doctype that starts with the "<" at `offset`; `offset` itself where that "<" is text.
std::size_t markupEnd(std::u16string_view source, std::size_t offset);
/// True where an offset lies inside a tag, a comment or the like.
bool liesInMarkup(std::u16string_view source, std::size_t offset);

}  // namespace lorvane::html
