#pragma once

#include <cstdint>
#include <optional>

#include "screen/KeyString.h"

/// The keyboard as programs see it: keys by their virtual-key codes, in the US layout.
namespace lorvane::screen {

/// Virtual-key codes of the keys that change others.
inline constexpr std::int32_t ShiftCode = 16, ControlCode = 17, AltCode = 18;
/// What `vkKeyScan` adds to a code for the keys to hold.
inline constexpr std::int32_t WithShift = 0x100, WithControl = 0x200;

/// The key that types a character: its code in the low byte, the keys to hold in the byte above it; -1 where no key has the character.
std::int32_t vkKeyScan(char16_t character) noexcept;

/// Translates between the numbers of a key: type 0 code to scan code, 1 scan code to code, 2 code to the character it types without shift; 0 for none.
std::int32_t mapVirtualKey(std::int32_t code, std::int32_t type) noexcept;

/// Makes key strokes of keys that go down and up one by one, and knows which are held meanwhile.
class Keyboard {
public:
    /// A key by its code. What reaches a window is told when a key goes down that is not held for others; the character is the one that the layout gives
    /// with shift, so that shift and "a" arrive as a plain "A".
    std::optional<KeyStroke> press(std::int32_t code) noexcept;
    void release(std::int32_t code) noexcept;

private:
    bool* modifier(std::int32_t code) noexcept;
    bool shift_ = false, control_ = false, alt_ = false;
};

}  // namespace lorvane::screen
