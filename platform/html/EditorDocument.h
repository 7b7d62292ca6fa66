#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "html/RtfText.h"
#include "html/TextMap.h"

namespace lorvane::html {

/// How a text field keeps its text; the numbers are those of an item's body format.
enum class TextKind { Plain = 1, Html = 2, Rich = 3 };

/// What a source of a kind shows, line ends as CRLF; plain text stays as it is.
std::u16string textOfSource(TextKind kind, std::u16string_view source);
/// A text as the source of a kind.
std::u16string sourceOfText(TextKind kind, std::u16string_view text);
/// The source of a new document: "<HTML><BODY></BODY></HTML>" for HTML.
std::u16string emptySource(TextKind kind);

/// One text field of an open window, with its caret: what a person does to it changes the source at that place and nowhere else.
///
/// Positions count UTF-16 units of the visible text, a line end counting as one. The caret remembers its place in the source, so that a run of typing, and
/// taking it back, needs no reading of the source at all.
class EditorDocument {
public:
    enum class Lines { Many, One };
    static constexpr std::size_t End = static_cast<std::size_t>(-1);

    /// An empty document of a kind.
    explicit EditorDocument(TextKind kind, Lines lines = Lines::Many) : EditorDocument(kind, emptySource(kind), lines) {}
    /// The caret stands at position 0.
    EditorDocument(TextKind kind, std::u16string source, Lines lines = Lines::Many);

    TextKind kind() const noexcept { return kind_; }
    const std::u16string& source() const noexcept { return source_; }
    /// Grows with each change of the source.
    std::uint64_t revision() const noexcept { return revision_; }
    std::u16string visible() const;  ///< line ends as CRLF
    std::size_t length() const;      ///< in positions

    std::size_t caret() const;  ///< the end of the selection where there is one
    std::size_t selectionStart() const;
    std::size_t selectionLength() const noexcept { return selectionLength_; }
    /// Behind the end is the end.
    void setCaret(std::size_t position);
    /// Both are cut to the text.
    void select(std::size_t start, std::size_t length);
    void selectAll() { select(0, End); }
    std::u16string selectedText() const;  ///< line ends as CRLF

    /// Types over the selection. HTML: escaped, line ends "<BR>". A field of one line takes the text up to its first line end.
    void typeText(std::u16string_view text);
    /// Puts text in the place of the selection; the caret stands behind it.
    void replaceSelection(std::u16string_view text);
    /// What the clipboard holds: the fragment of its HTML and its text. Into HTML goes the fragment as it is, else the text with line ends "<BR>" CRLF;
    /// elsewhere the text, else what the fragment shows.
    void paste(const std::optional<std::u16string>& fragmentHtml, const std::optional<std::u16string>& text);
    void cut() { deleteSelection(); }
    /// Takes the selection, else the character in front of the caret. A line end that block edges made goes with their tags, unless that would change the text
    /// elsewhere.
    void backspace();
    void del();    ///< the selection, else the character behind the caret
    void enter();  ///< a line end; nothing in a field of one line
    void left();
    void right();
    void home();  ///< to the start of the line
    void end();   ///< to the end of the line

    /// Loads another source. The caret keeps the source behind it where both end alike up to it or beyond, else its visible position.
    void setSource(std::u16string source) { setSource(kind_, std::move(source)); }
    void setSource(TextKind kind, std::u16string source);

    /// Bytes of rich text are decoded by this.
    void setByteDecoder(ByteDecoder decoder);

private:
    const TextMap& map() const;
    std::size_t caretOffset() const;
    void insert(std::u16string_view text, std::u16string_view lineEnd);
    void insertSource(std::u16string_view text);
    void deleteSelection();
    void deletePositions(std::size_t from, std::size_t to);
    bool joinBlocks(std::size_t from, std::size_t to, const Removal& removal);
    void erase(const std::vector<SourceRange>& ranges, std::size_t caret);
    void sourceChanged(std::size_t caretOffset);
    TextMap mapOf(TextKind kind, std::u16string_view source) const;
    bool isSoundPlace(std::size_t offset) const;
    std::u16string_view cutToField(std::u16string_view text) const;

    TextKind kind_;
    Lines lines_;
    std::u16string source_;
    std::uint64_t revision_ = 0;
    ByteDecoder decoder_;
    mutable std::shared_ptr<const TextMap> map_;       ///< of the source, once somebody asked
    mutable std::optional<std::size_t> position_ = 0;  ///< of the caret or the selection's start; unknown while only its place in the source is
    mutable std::optional<std::size_t> sourceOffset_;  ///< of the caret
    std::size_t selectionLength_ = 0;
    std::vector<std::size_t> typed_;  ///< source lengths of the characters typed in front of the caret, the last at the back
};

}  // namespace lorvane::html
