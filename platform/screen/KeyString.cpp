#include "screen/KeyString.h"

#include <optional>
#include <string>

#include "host/HostError.h"
#include "host/TextFunctions.h"

namespace lorvane::screen {

namespace {

using Key = KeyStroke::Key;

struct KeyName {
    std::u16string_view name;
    Key key;
};

constexpr KeyName keyNames[] = {
    {u"BACKSPACE", Key::Backspace}, {u"BS", Key::Backspace},  {u"BKSP", Key::Backspace}, {u"DELETE", Key::Delete}, {u"DEL", Key::Delete},
    {u"ENTER", Key::Enter},         {u"TAB", Key::Tab},       {u"ESC", Key::Escape},     {u"HOME", Key::Home},     {u"END", Key::End},
    {u"LEFT", Key::Left},           {u"RIGHT", Key::Right},   {u"UP", Key::Up},          {u"DOWN", Key::Down},     {u"PGUP", Key::PageUp},
    {u"PGDN", Key::PageDown},       {u"INSERT", Key::Insert}, {u"INS", Key::Insert},
};

constexpr int lastFunctionKey = 16;
constexpr int mostRepeats = 32767;

struct Modifiers {
    bool shift = false, control = false, alt = false;
    bool any() const noexcept { return shift || control || alt; }
};

[[noreturn]] void raiseBroken(std::u16string_view keys, std::u16string_view why) {
    throw host::HostError(host::runtime_error::InvalidProcedureCall, std::u16string(u"The keys \"").append(keys).append(u"\" cannot be sent: ").append(why));
}

bool isDigit(char16_t unit) noexcept {
    return unit >= u'0' && unit <= u'9';
}
bool isSurrogatePair(std::u16string_view text) noexcept {
    return text.size() == 2 && (text[0] & 0xFC00) == 0xD800 && (text[1] & 0xFC00) == 0xDC00;
}

/// The number of a text of digits alone, none above `most`.
std::optional<int> numberOf(std::u16string_view digits, int most) noexcept {
    int number = 0;
    for (const char16_t unit : digits) {
        if (!isDigit(unit)) return std::nullopt;
        number = number * 10 + (unit - u'0');
        if (number > most) return std::nullopt;
    }
    return digits.empty() ? std::nullopt : std::optional(number);
}

KeyStroke characterKey(char16_t unit) {
    KeyStroke stroke;
    if (unit == u'\r' || unit == u'\n')
        stroke.key = Key::Enter;
    else if (unit == u'\t')
        stroke.key = Key::Tab;
    else
        stroke.character = unit;
    return stroke;
}

/// The strokes of one name in braces; empty where there is no such key.
std::vector<KeyStroke> namedKey(std::u16string_view name) {
    if (name.size() == 1 || isSurrogatePair(name)) {
        std::vector<KeyStroke> strokes;
        for (const char16_t unit : name) strokes.push_back(characterKey(unit));
        return strokes;
    }
    KeyStroke stroke;
    for (const KeyName& row : keyNames) {
        if (!host::equalsIgnoreCase(row.name, name)) continue;
        stroke.key = row.key;
        return {stroke};
    }
    if (name.size() > 1 && host::foldUnit(name[0]) == u'f' && name[1] != u'0') {
        const auto number = numberOf(name.substr(1), lastFunctionKey);
        if (!number) return {};
        stroke.key = Key::Function;
        stroke.function = *number;
        return {stroke};
    }
    return {};
}

class Parser {
public:
    explicit Parser(std::u16string_view keys) : keys_(keys) {}

    std::vector<KeyStroke> parse() {
        while (at_ < keys_.size()) step();
        if (!groups_.empty()) raiseBroken(keys_, u"a parenthesis is not closed.");
        if (next_.any()) raiseBroken(keys_, u"a modifier stands at the end.");
        return std::move(strokes_);
    }

private:
    void step() {
        const char16_t unit = keys_[at_++];
        switch (unit) {
            case u'+':
                next_.shift = true;
                break;
            case u'^':
                next_.control = true;
                break;
            case u'%':
                next_.alt = true;
                break;
            case u'~':
                add(characterKey(u'\r'));
                break;
            case u'(':
                groups_.push_back(held_);
                held_ = held();
                next_ = {};
                break;
            case u')':
                if (groups_.empty()) raiseBroken(keys_, u"a parenthesis is closed that was not opened.");
                if (next_.any()) raiseBroken(keys_, u"a modifier stands at the end of a group.");
                held_ = groups_.back();
                groups_.pop_back();
                break;
            case u'{':
                brace();
                break;
            case u'}':
                raiseBroken(keys_, u"a brace is closed that was not opened.");
            case u'\r':
                if (at_ < keys_.size() && keys_[at_] == u'\n') ++at_;
                add(characterKey(unit));
                break;
            default:
                add(characterKey(unit));
        }
    }

    void brace() {
        // The first unit always belongs to the name: "{}}" is a brace, "{ 3}" has no name but a blank.
        const std::size_t end = keys_.find(u'}', at_ + 1);
        if (end == std::u16string_view::npos) raiseBroken(keys_, u"a brace is not closed.");
        const std::u16string_view content = keys_.substr(at_, end - at_);
        at_ = end + 1;
        const std::size_t blank = content.find(u' ', 1);
        int repeats = 1;
        if (blank != std::u16string_view::npos) {
            const auto number = numberOf(content.substr(blank + 1), mostRepeats);
            if (!number) raiseBroken(keys_, u"what follows the blank is not how often a key is pressed.");
            repeats = *number;
        }
        const std::vector<KeyStroke> named = namedKey(content.substr(0, blank));
        if (named.empty()) raiseBroken(keys_, std::u16string(u"there is no key \"").append(content.substr(0, blank)).append(u"\"."));
        const Modifiers modifiers = held();
        for (; repeats > 0; --repeats)
            for (const KeyStroke& stroke : named) add(stroke, modifiers);
        next_ = {};
    }

    Modifiers held() const noexcept { return {held_.shift || next_.shift, held_.control || next_.control, held_.alt || next_.alt}; }

    void add(KeyStroke stroke) {
        add(stroke, held());
        next_ = {};
    }

    void add(KeyStroke stroke, const Modifiers& modifiers) {
        stroke.shift = modifiers.shift;
        stroke.control = modifiers.control;
        stroke.alt = modifiers.alt;
        strokes_.push_back(stroke);
    }

    std::u16string_view keys_;
    std::size_t at_ = 0;
    Modifiers held_, next_;  // for the group that is open, and for the next key alone
    std::vector<Modifiers> groups_;
    std::vector<KeyStroke> strokes_;
};

}  // namespace

std::vector<KeyStroke> parseKeys(std::u16string_view keys) {
    return Parser(keys).parse();
}

std::vector<KeyStroke> keysOfText(std::u16string_view text) {
    std::vector<KeyStroke> strokes;
    strokes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'\n' && i > 0 && text[i - 1] == u'\r') continue;
        strokes.push_back(characterKey(text[i]));
    }
    return strokes;
}

std::size_t endOfRun(const std::vector<KeyStroke>& strokes, std::size_t begin) noexcept {
    std::size_t end = begin;
    while (end < strokes.size() && (strokes[begin].isPlain() ? strokes[end].isPlain() : strokes[end] == strokes[begin])) ++end;
    return end;
}

}  // namespace lorvane::screen
