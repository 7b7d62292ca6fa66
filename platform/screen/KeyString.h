#pragma once

#include <string_view>
#include <vector>

namespace lorvane::screen {

/// One key as it reaches a window: a character, or a named key, with the modifiers held.
struct KeyStroke {
    enum class Key { Character, Backspace, Delete, Enter, Tab, Escape, Home, End, Left, Right, Up, Down, PageUp, PageDown, Insert, Function };
    Key key = Key::Character;
    char16_t character = 0;  ///< for Character: as it was written, so that `+a` is an "a" with shift held
    int function = 0;        ///< 1 to 16 for Function
    bool shift = false, control = false, alt = false;
    bool operator==(const KeyStroke&) const = default;

    bool isPlain() const noexcept { return key == Key::Character && !shift && !control && !alt; }
};

/// Parses the grammar of `SendKeys`; error 5 for a broken text (unknown name, unbalanced brace, a modifier without a key).
///
/// A character is its own key; `+`, `^`, `%` hold shift, control, alt for the next key or for a group in parentheses; `~` and line ends are Enter.
/// In braces stand the names of keys in any case (`{BACKSPACE}`, `{F5}`), characters that mean something else (`{+}`, `{{}`, `{}}`), and either
/// with a blank and how often (`{LEFT 4}`, `{h 10}`, 0 to 32767).
///
///     parseKeys(u"^v{ENTER}")   // control and "v", Enter
std::vector<KeyStroke> parseKeys(std::u16string_view keys);

/// The strokes that type a text as it stands: no character means anything else. CR LF, CR and LF are Enter, a tab is Tab.
std::vector<KeyStroke> keysOfText(std::u16string_view text);

/// The end of the run that begins at `begin`: plain characters that follow each other, or the same key again and again.
std::size_t endOfRun(const std::vector<KeyStroke>& strokes, std::size_t begin) noexcept;

}  // namespace lorvane::screen
