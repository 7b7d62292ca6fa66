#include "screen/Keyboard.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace lorvane::screen {

namespace {

using Key = KeyStroke::Key;

/// A key with a sign on it: its code, its place on the keyboard, and what it types without and with shift.
struct SignKey {
    std::int32_t code, scan;
    char16_t plain, shifted;
};

constexpr SignKey signKeys[] = {
    {48, 11, u'0', u')'},   {49, 2, u'1', u'!'},   {50, 3, u'2', u'@'},    {51, 4, u'3', u'#'},   {52, 5, u'4', u'$'},   {53, 6, u'5', u'%'},
    {54, 7, u'6', u'^'},    {55, 8, u'7', u'&'},   {56, 9, u'8', u'*'},    {57, 10, u'9', u'('},  {186, 39, u';', u':'}, {187, 13, u'=', u'+'},
    {188, 51, u',', u'<'},  {189, 12, u'-', u'_'}, {190, 52, u'.', u'>'},  {191, 53, u'/', u'?'}, {192, 41, u'`', u'~'}, {219, 26, u'[', u'{'},
    {220, 43, u'\\', u'|'}, {221, 27, u']', u'}'}, {222, 40, u'\'', u'"'}, {32, 57, u' ', u' '},  {65, 30, u'a', u'A'},  {66, 48, u'b', u'B'},
    {67, 46, u'c', u'C'},   {68, 32, u'd', u'D'},  {69, 18, u'e', u'E'},   {70, 33, u'f', u'F'},  {71, 34, u'g', u'G'},  {72, 35, u'h', u'H'},
    {73, 23, u'i', u'I'},   {74, 36, u'j', u'J'},  {75, 37, u'k', u'K'},   {76, 38, u'l', u'L'},  {77, 50, u'm', u'M'},  {78, 49, u'n', u'N'},
    {79, 24, u'o', u'O'},   {80, 25, u'p', u'P'},  {81, 16, u'q', u'Q'},   {82, 19, u'r', u'R'},  {83, 31, u's', u'S'},  {84, 20, u't', u'T'},
    {85, 22, u'u', u'U'},   {86, 47, u'v', u'V'},  {87, 17, u'w', u'W'},   {88, 45, u'x', u'X'},  {89, 21, u'y', u'Y'},  {90, 44, u'z', u'Z'},
};

/// A key that acts: its code, its place, and the character it stands for in a text; 0 for none.
struct NamedKey {
    std::int32_t code, scan;
    Key key;
    char16_t character = 0;
};

constexpr NamedKey namedKeys[] = {
    {8, 14, Key::Backspace, u'\b'}, {9, 15, Key::Tab, u'\t'}, {13, 28, Key::Enter, u'\r'}, {27, 1, Key::Escape, 27}, {33, 73, Key::PageUp},
    {34, 81, Key::PageDown},        {35, 79, Key::End},       {36, 71, Key::Home},         {37, 75, Key::Left},      {38, 72, Key::Up},
    {39, 77, Key::Right},           {40, 80, Key::Down},      {45, 82, Key::Insert},       {46, 83, Key::Delete},
};

constexpr std::int32_t firstFunctionCode = 112, functionKeys = 16;

struct Place {
    std::int32_t code, scan;
};
constexpr Place heldKeys[] = {{ShiftCode, 42}, {ControlCode, 29}, {AltCode, 56}};

/// Every key that has a place.
constexpr auto places = [] {
    std::array<Place, std::size(signKeys) + std::size(namedKeys) + std::size(heldKeys) + 12> all{};
    auto next = all.begin();
    for (const SignKey& key : signKeys) *next++ = {key.code, key.scan};
    for (const NamedKey& key : namedKeys) *next++ = {key.code, key.scan};
    for (const Place& key : heldKeys) *next++ = key;
    constexpr std::int32_t firstFunctionScan = 59, laterFunctionScan = 87;  // F11 and F12 came later
    for (std::int32_t number = 0; number < 12; ++number)
        *next++ = {firstFunctionCode + number, number < 10 ? firstFunctionScan + number : laterFunctionScan + number - 10};
    return all;
}();

const SignKey* signKeyOf(std::int32_t code) noexcept {
    const auto* key = std::ranges::find(signKeys, code, &SignKey::code);
    return key == std::end(signKeys) ? nullptr : key;
}

std::int32_t characterOf(std::int32_t code) noexcept {
    if (const SignKey* key = signKeyOf(code)) {
        // The surface of a letter's key shows the capital.
        const bool isLetter = key->plain >= u'a' && key->plain <= u'z';
        return isLetter ? key->shifted : key->plain;
    }
    const auto* key = std::ranges::find(namedKeys, code, &NamedKey::code);
    return key == std::end(namedKeys) ? 0 : key->character;
}

}  // namespace

std::int32_t vkKeyScan(char16_t character) noexcept {
    for (const SignKey& key : signKeys) {
        if (key.plain == character) return key.code;
        if (key.shifted == character) return key.code | WithShift;
    }
    for (const NamedKey& key : namedKeys)
        if (key.character == character && character != 0) return key.code;
    constexpr std::int32_t enter = 13;
    return character == u'\n' ? enter | WithControl : -1;
}

std::int32_t mapVirtualKey(std::int32_t code, std::int32_t type) noexcept {
    constexpr std::int32_t toScan = 0, fromScan = 1, toCharacter = 2;
    if (type == toScan) {
        const auto* place = std::ranges::find(places, code, &Place::code);
        return place == places.end() ? 0 : place->scan;
    }
    if (type == fromScan) {
        const auto* place = std::ranges::find(places, code, &Place::scan);
        return place == places.end() ? 0 : place->code;
    }
    return type == toCharacter ? characterOf(code) : 0;
}

bool* Keyboard::modifier(std::int32_t code) noexcept {
    // The left and the right key of a pair have codes of their own beside the common one.
    constexpr std::int32_t leftShift = 160, rightAlt = 165;
    if (code >= leftShift && code <= rightAlt) code = ShiftCode + (code - leftShift) / 2;
    switch (code) {
        case ShiftCode:
            return &shift_;
        case ControlCode:
            return &control_;
        case AltCode:
            return &alt_;
        default:
            return nullptr;
    }
}

std::optional<KeyStroke> Keyboard::press(std::int32_t code) noexcept {
    if (bool* held = modifier(code)) {
        *held = true;
        return std::nullopt;
    }
    KeyStroke stroke;
    stroke.shift = shift_;
    stroke.control = control_;
    stroke.alt = alt_;
    if (const SignKey* sign = signKeyOf(code)) {
        const bool types = !control_ && !alt_;
        stroke.character = types && shift_ ? sign->shifted : sign->plain;
        if (types) stroke.shift = false;
        return stroke;
    }
    if (const auto* named = std::ranges::find(namedKeys, code, &NamedKey::code); named != std::end(namedKeys)) {
        stroke.key = named->key;
        return stroke;
    }
    if (code < firstFunctionCode || code >= firstFunctionCode + functionKeys) return std::nullopt;
    stroke.key = Key::Function;
    stroke.function = code - firstFunctionCode + 1;
    return stroke;
}

void Keyboard::release(std::int32_t code) noexcept {
    if (bool* held = modifier(code)) *held = false;
}

}  // namespace lorvane::screen
