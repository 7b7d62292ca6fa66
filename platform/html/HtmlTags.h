#pragma once

#include <cstdint>
#include <string_view>

/// What an element means for the visible text.
namespace lorvane::html {

enum class TagRole : std::uint8_t {
    Inline,        ///< nothing
    Block,         ///< an edge at its start and end
    Rule,          ///< an edge, and no content (`hr`)
    Break,         ///< a line end (`br`)
    Row,           ///< `tr`
    Cell,          ///< `td`, `th`
    Preformatted,  ///< a block that keeps its blanks
    TextBox,       ///< keeps its blanks, without edges (`textarea`)
    Hidden         ///< it and all that it holds is nothing
};

/// The role by the number that the parser gives a tag.
TagRole roleOfTag(int gumboTag) noexcept;
/// The role by name, in any case.
TagRole roleOfName(std::u16string_view name) noexcept;

/// How the characters in an element are written.
enum class Content : std::uint8_t {
    Markup,     ///< tags and entities
    Entities,   ///< entities only (`textarea`)
    Verbatim,   ///< neither (`xmp`)
    EverBehind  ///< neither, to the end of the source (`plaintext`)
};
Content contentOfTag(int gumboTag) noexcept;
Content contentOfName(std::u16string_view name) noexcept;

/// True for elements that have no content and no end tag.
bool isVoidName(std::u16string_view name) noexcept;

}  // namespace lorvane::html
