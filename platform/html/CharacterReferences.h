#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace lorvane::html {

/// What the text behind an "&" is.
struct CharacterReference {
    std::size_t length = 0;    ///< units of source with the "&"; 0 where the "&" stands for itself
    std::u16string character;  ///< one or two code points
};

/// Reads entities by the parser's own table, and remembers those it met.
class CharacterReferences {
public:
    /// The entity at `offset`, where an "&" stands, as in text (not as in an attribute).
    CharacterReference at(std::u16string_view source, std::size_t offset);

private:
    CharacterReference lookUp(std::u16string_view run);

    std::unordered_map<std::u16string, CharacterReference> known_;
};

}  // namespace lorvane::html
