#include "screen/ControlKeys.h"

#include <algorithm>
#include <optional>

#include "host/TextFunctions.h"
#include "screen/ControlActions.h"
#include "screen/Keyboard.h"

namespace lorvane::screen {

namespace {

using host::Control;
using host::ControlKind;
using Key = KeyStroke::Key;

constexpr std::int32_t shiftMask = 1, controlMask = 2, altMask = 4;
constexpr std::int32_t firstFunctionCode = 112;
constexpr std::int32_t foreignCode = 231;  // a character that no key of the layout gives
constexpr std::int32_t linesOfPage = 10;

struct PressedKey {
    std::int32_t code = 0, shift = 0;
};

PressedKey codeOfCharacter(char16_t unit) noexcept {
    const std::int32_t key = vkKeyScan(unit);
    constexpr std::int32_t codeMask = 0xFF;
    return key < 0 || (key & WithControl) != 0 ? PressedKey{foreignCode, 0} : PressedKey{key & codeMask, (key & WithShift) != 0 ? shiftMask : 0};
}

PressedKey keyOf(const KeyStroke& stroke) noexcept {
    PressedKey key;
    switch (stroke.key) {
        case Key::Character:
            key = codeOfCharacter(stroke.character);
            break;
        case Key::Backspace:
            key.code = 8;
            break;
        case Key::Tab:
            key.code = 9;
            break;
        case Key::Enter:
            key.code = 13;
            break;
        case Key::Escape:
            key.code = 27;
            break;
        case Key::PageUp:
            key.code = 33;
            break;
        case Key::PageDown:
            key.code = 34;
            break;
        case Key::End:
            key.code = 35;
            break;
        case Key::Home:
            key.code = 36;
            break;
        case Key::Left:
            key.code = 37;
            break;
        case Key::Up:
            key.code = 38;
            break;
        case Key::Right:
            key.code = 39;
            break;
        case Key::Down:
            key.code = 40;
            break;
        case Key::Insert:
            key.code = 45;
            break;
        case Key::Delete:
            key.code = 46;
            break;
        case Key::Function:
            key.code = firstFunctionCode + stroke.function - 1;
            break;
    }
    key.shift |= (stroke.shift ? shiftMask : 0) | (stroke.control ? controlMask : 0) | (stroke.alt ? altMask : 0);
    return key;
}

/// The character a key gives, for KeyPress; none for a key that only moves or acts.
std::optional<std::int32_t> characterOf(const KeyStroke& stroke) noexcept {
    if (stroke.alt) return std::nullopt;
    switch (stroke.key) {
        case Key::Backspace:
            return 8;
        case Key::Enter:
            return 13;
        case Key::Escape:
            return 27;
        case Key::Character:
            break;
        default:
            return std::nullopt;
    }
    if (!stroke.control) return stroke.shift ? host::upperUnit(stroke.character) : stroke.character;
    const char16_t upper = host::upperUnit(stroke.character);
    return upper >= u'A' && upper <= u'Z' ? std::optional<std::int32_t>(upper - u'A' + 1) : std::nullopt;
}

/// The text and caret of a text box or combo box.
struct TextField {
    host::Property<std::u16string>& text;
    host::Property<std::int32_t>& selStart;
    host::Property<std::int32_t>& selLength;
    const host::Event<>& change;
    host::Property<std::int32_t>* listIndex;

    std::size_t start() const { return std::min(static_cast<std::size_t>(std::max(selStart.get(), 0)), text.get().size()); }
    std::size_t length() const { return std::min(static_cast<std::size_t>(std::max(selLength.get(), 0)), text.get().size() - start()); }
    void select(std::size_t from, std::size_t units) {
        selStart.setQuietly(static_cast<std::int32_t>(from));
        selLength.setQuietly(static_cast<std::int32_t>(units));
    }
    void replace(std::size_t from, std::size_t units, std::u16string_view with) {
        std::u16string changed = text.get();
        changed.replace(from, units, with);
        // The caret stands behind what was typed before Change is heard, so the value is set without the event, which would put it to the start.
        if (listIndex) listIndex->setQuietly(-1);
        text.setQuietly(std::move(changed));
        select(from + with.size(), 0);
        change();
    }
};

std::optional<TextField> fieldOf(Control* control) {
    if (control && control->kind() == ControlKind::TextBox) {
        auto& box = static_cast<host::TextBox&>(*control);
        return TextField{box.Text, box.SelStart, box.SelLength, box.Change, nullptr};
    }
    if (control && control->kind() == ControlKind::ComboBox) {
        auto& box = static_cast<host::ComboBox&>(*control);
        return TextField{box.Text, box.SelStart, box.SelLength, box.Change, &box.ListIndex};
    }
    return std::nullopt;
}

/// A pair of surrogates, and CR LF, are one step of the caret.
bool isPairAt(const std::u16string& text, std::size_t at) {
    if (at == 0 || at >= text.size()) return false;
    return ((text[at - 1] & 0xFC00) == 0xD800 && (text[at] & 0xFC00) == 0xDC00) || (text[at - 1] == u'\r' && text[at] == u'\n');
}
std::size_t placeBefore(const std::u16string& text, std::size_t at) {
    return at == 0 ? 0 : at - (isPairAt(text, at - 1) ? 2 : 1);
}
std::size_t placeAfter(const std::u16string& text, std::size_t at) {
    return at >= text.size() ? text.size() : at + (isPairAt(text, at + 1) ? 2 : 1);
}

void eraseBackwards(TextField& field) {
    const std::size_t start = field.start(), length = field.length();
    if (length > 0) return field.replace(start, length, u"");
    const std::size_t before = placeBefore(field.text.get(), start);
    if (before != start) field.replace(before, start - before, u"");
}

void eraseForwards(TextField& field) {
    const std::size_t start = field.start(), length = field.length();
    if (length > 0) return field.replace(start, length, u"");
    const std::size_t after = placeAfter(field.text.get(), start);
    if (after != start) field.replace(start, after - start, u"");
}

void enterCharacter(TextField& field, std::int32_t character) {
    constexpr std::int32_t backspace = 8, firstPrintable = 32;
    if (character == backspace) return eraseBackwards(field);
    if (character < firstPrintable || character > 0xFFFF) return;
    const char16_t unit = static_cast<char16_t>(character);
    field.replace(field.start(), field.length(), std::u16string_view(&unit, 1));
}

/// Arrows, Home and End. A box keeps no side of its selection that moves, so with shift it grows to the side of the key and never shrinks.
void moveCaret(TextField& field, const KeyStroke& stroke) {
    const std::u16string& text = field.text.get();
    const std::size_t start = field.start(), end = start + field.length();
    std::size_t place = start;
    switch (stroke.key) {
        case Key::Left:
            place = stroke.shift || start == end ? placeBefore(text, start) : start;
            break;
        case Key::Right:
            place = stroke.shift || start == end ? placeAfter(text, end) : end;
            break;
        case Key::Home:
            place = 0;
            break;
        case Key::End:
            place = text.size();
            break;
        default:
            return;
    }
    if (!stroke.shift) return field.select(place, 0);
    const std::size_t from = std::min(start, place);
    field.select(from, std::max(end, place) - from);
}

host::TextBox* focusedTextBox(const host::Form& form) {
    Control* focus = form.focus();
    return focus && isUp(*focus) && focus->kind() == ControlKind::TextBox ? static_cast<host::TextBox*>(focus) : nullptr;
}

std::optional<TextField> focusedField(const host::Form& form) {
    Control* focus = form.focus();
    return focus && isUp(*focus) ? fieldOf(focus) : std::nullopt;
}

/// Each step asks for the focus anew: a handler may have moved it, and then the rest of the key goes there.
void pressInField(host::Form& form, const KeyStroke& stroke) {
    const PressedKey key = keyOf(stroke);
    std::int32_t code = key.code;
    if (host::TextBox* box = focusedTextBox(form)) box->KeyDown(code, key.shift);
    if (code != 0) {
        if (auto character = characterOf(stroke)) {
            if (host::TextBox* box = focusedTextBox(form)) box->KeyPress(*character);
            auto field = focusedField(form);
            if (field && *character != 0) enterCharacter(*field, *character);
        } else if (auto field = focusedField(form)) {
            if (stroke.key == Key::Delete)
                eraseForwards(*field);
            else
                moveCaret(*field, stroke);
        }
    }
    std::int32_t released = key.code;
    if (host::TextBox* box = focusedTextBox(form)) box->KeyUp(released, key.shift);
}

/// The line an arrow key goes to from `index` of `count`; none where the key moves nothing.
std::optional<std::int32_t> lineFor(Key key, std::int32_t index, std::int32_t count) {
    std::int32_t line = index;
    switch (key) {
        case Key::Up:
            line = index - 1;
            break;
        case Key::Down:
            line = index + 1;
            break;
        case Key::PageUp:
            line = index - linesOfPage;
            break;
        case Key::PageDown:
            line = index + linesOfPage;
            break;
        case Key::Home:
            line = 0;
            break;
        case Key::End:
            line = count - 1;
            break;
        default:
            return std::nullopt;
    }
    line = std::clamp(line, 0, std::max(count - 1, 0));
    return line == index || count == 0 ? std::nullopt : std::optional(line);
}

template <class Chooser>
bool chooseByKey(Chooser& chooser, Key key) {
    const auto line = lineFor(key, chooser.ListIndex, chooser.ListCount());
    if (line) chooser.ListIndex = *line;
    return line.has_value();
}

void pressInControl(Control& control, const KeyStroke& stroke) {
    const bool blank = stroke.isPlain() && stroke.character == u' ';
    switch (control.kind()) {
        case ControlKind::Button:
            if (blank || stroke.key == Key::Enter) clickControl(control);
            return;
        case ControlKind::Option:
        case ControlKind::CheckBox:
            if (blank) clickControl(control);
            return;
        case ControlKind::ListBox:
            chooseByKey(static_cast<host::ListBox&>(control), stroke.key);
            return;
        case ControlKind::ComboBox:
            if (stroke.key == Key::Up || stroke.key == Key::Down) {
                chooseByKey(static_cast<host::ComboBox&>(control), stroke.key);
                return;
            }
            [[fallthrough]];
        default:
            pressInField(control.form(), stroke);
    }
}

/// The first button that answers to a key of the whole window.
Control* buttonFor(const host::Form& form, Key key) {
    for (Control* control : form.controls()) {
        if (control->kind() != ControlKind::Button || !control->isReachable()) continue;
        const auto& button = static_cast<const host::Button&>(*control);
        if (key == Key::Enter ? button.Default : button.Cancel) return control;
    }
    return nullptr;
}

/// The letter behind "&" in a caption; 0 where there is none.
char16_t accessKey(const std::u16string& caption) {
    for (std::size_t at = caption.find(u'&'); at != std::u16string::npos && at + 1 < caption.size(); at = caption.find(u'&', at + 2))
        if (caption[at + 1] != u'&') return host::foldUnit(caption[at + 1]);
    return 0;
}

void pressAccessKey(host::Form& form, char16_t unit) {
    const auto& controls = form.controls();
    for (auto at = controls.begin(); at != controls.end(); ++at) {
        Control& control = **at;
        if (control.kind() == ControlKind::Menu || !control.isReachable() || accessKey(control.Caption) != host::foldUnit(unit)) continue;
        if (control.kind() != ControlKind::Label && control.kind() != ControlKind::Panel) return clickControl(control);
        const auto labelled = std::find_if(at, controls.end(), [](const Control* next) { return takesFocus(*next) && next->isReachable(); });
        if (labelled != controls.end()) (*labelled)->SetFocus();
        return;
    }
}

}  // namespace

void pressKey(host::Form& form, const KeyStroke& stroke) {
    const host::Object alive(&form);
    if (!form.isVisible()) return;
    if (stroke.key == Key::Tab && !stroke.control && !stroke.alt) return moveFocus(form, stroke.shift);
    if (stroke.key == Key::Character && stroke.alt) return pressAccessKey(form, stroke.character);
    Control* focus = form.focus();
    const bool onButton = focus && focus->kind() == ControlKind::Button && focus->isReachable();
    if (stroke.key == Key::Escape || (stroke.key == Key::Enter && !onButton))
        if (Control* button = buttonFor(form, stroke.key)) return clickControl(*button);
    if (focus && focus->isReachable()) pressInControl(*focus, stroke);
}

void moveFocus(host::Form& form, bool back) {
    std::vector<Control*> stops;
    for (Control* control : form.controls())
        if (control == form.focus() || (takesFocus(*control) && control->isReachable())) stops.push_back(control);
    if (stops.empty()) return;
    const auto at = std::find(stops.begin(), stops.end(), form.focus());
    Control* next = nullptr;
    if (at == stops.end())
        next = back ? stops.back() : stops.front();
    else if (back)
        next = at == stops.begin() ? stops.back() : *(at - 1);
    else
        next = at + 1 == stops.end() ? stops.front() : *(at + 1);
    if (next->isReachable()) next->SetFocus();
}

}  // namespace lorvane::screen
