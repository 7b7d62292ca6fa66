#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "contract/Listeners.h"

/// Short ways to bars and controls, by name.
namespace lorvane::contract {

inline constexpr std::int32_t button = 1, popup = 10;

inline Member memberOf(const Object& object, std::u16string_view name) {
    return *object.dispatch()->memberNamed(name);
}

inline Object bar(const Object& window, std::u16string_view name) {
    return call(object(window, u"CommandBars"), u"Item", {name}).toObject();
}

inline Object controlsOf(const Object& barOrPopup) {
    return object(barOrPopup, u"Controls");
}

inline Object control(const Object& barOrPopup, std::u16string_view caption) {
    return object(barOrPopup, u"Controls", {caption});
}

/// A temporary control at the end.
inline Object added(const Object& barOrPopup, std::int32_t type, std::u16string_view caption) {
    const Object controls = controlsOf(barOrPopup);
    const Object made = call(controls, u"Add", {Argument::named(Member::Type, type), Argument::named(memberOf(controls, u"Temporary"), true)}).toObject();
    put(made, u"Caption", caption);
    return made;
}

inline Object found(const Object& barOrBars, std::u16string_view tag) {
    return call(barOrBars, u"FindControl", {Argument::named(memberOf(barOrBars, u"Tag"), Variant(tag))}).toObject();
}

template <class Shown>
std::vector<std::u16string> names(const std::vector<Shown>& shown, std::u16string Shown::*name) {
    std::vector<std::u16string> texts;
    for (const Shown& one : shown) texts.push_back(one.*name);
    return texts;
}

using Names = std::vector<std::u16string>;

}  // namespace lorvane::contract
