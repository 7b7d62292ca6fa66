#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lorvane::recordset {

struct RowsetName {
    std::u16string_view prefix;  // "" where there is none
    std::u16string_view local;
};

/// Same prefix and same name, in any case.
bool isSameName(const RowsetName& a, const RowsetName& b) noexcept;

struct RowsetAttribute {
    RowsetName name;
    std::u16string_view value;  ///< with its references resolved and every other unit as it stands
};

/// The elements of a rowset's text, one by one.
///
/// It is no general XML parser. Values keep raw line ends, tabs and control characters, which such a parser turns into blanks or refuses. References are
/// numeric or the five named ones. A document type, a CDATA section and text between elements are refused, and so is whatever goes beyond the limits; every
/// refusal is `error::NotARowset` with a sentence that names the line. Nothing is looked up anywhere, and the work is linear in the text.
class RowsetTokenizer {
public:
    static constexpr std::size_t longestText = std::size_t{1} << 27;  ///< UTF-16 units
    static constexpr std::size_t deepest = 32;
    static constexpr std::size_t mostAttributes = 8192;  ///< of one element
    static constexpr std::size_t longestName = 1024;

    /// The text must outlive the tokenizer. One U+FEFF at its start is passed over.
    explicit RowsetTokenizer(std::u16string_view text);

    enum class Token : std::uint8_t { Start, End, Finished };

    /// An element that closes itself gives its end too. `Finished` comes once the root has ended and nothing but blanks and comments follows it.
    Token next();

    /// Of the element that started or ended last; valid until the next call of `next`. An end has no attributes.
    const RowsetName& name() const noexcept { return name_; }
    std::span<const RowsetAttribute> attributes() const noexcept { return attributes_; }

    [[noreturn]] void refuse(std::u16string_view reason) const;

private:
    bool startsHere(std::u16string_view sought) const noexcept { return text_.substr(at_, sought.size()) == sought; }
    bool atEnd() const noexcept { return at_ == text_.size(); }
    void passBlanks() noexcept;
    void passBehind(std::u16string_view mark);
    void passMarkup();
    RowsetName readName();
    Token readStart();
    Token readEnd();
    void readAttribute();
    void readValue(char16_t quote);
    void readReference();
    Token close();

    std::u16string_view text_;
    std::size_t at_ = 0;
    RowsetName name_;
    std::vector<RowsetName> open_;
    bool closesItself_ = false;
    bool rootSeen_ = false;
    std::vector<RowsetAttribute> attributes_;
    std::u16string values_;  // those of the element that had references; never longer than its capacity, so that views of it stay good
};

/// The text of a rowset file: UTF-8 with or without its mark, UTF-16 of either order with one. Raises `error::NotARowset` for bytes that are none of these.
std::u16string rowsetTextFrom(std::span<const std::uint8_t> bytes);

}  // namespace lorvane::recordset
