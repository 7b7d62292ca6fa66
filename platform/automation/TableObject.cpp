#include "automation/TableObject.h"

#include <string>

#include "host/HostError.h"
#include "host/Routines.h"
#include "host/TextFunctions.h"

namespace lorvane::automation {

using host::Member;

namespace {

/// Beyond every table for a member of the surface's own numbers.
std::size_t indexOf(Member member) noexcept {
    return static_cast<std::size_t>(member) - host::windowMembers;
}

}  // namespace

std::optional<Member> TableObject::memberNamed(std::u16string_view name) const {
    const auto row = find(name);
    return row ? std::optional(static_cast<Member>(host::windowMembers + *row)) : std::nullopt;
}

std::optional<std::size_t> TableObject::find(std::u16string_view name) const {
    for (std::size_t row = 0; row < rowCount(); ++row)
        if (host::equalsIgnoreCase(nameAt(row), name)) return row;
    return std::nullopt;
}

std::u16string_view TableObject::memberText(Member member) const noexcept {
    return indexOf(member) < rowCount() ? nameAt(indexOf(member)) : host::memberName(member);
}

host::Variant TableObject::get(Member member, host::Args args) {
    const std::size_t row = rowOf(member);
    host::requireArguments(parametersAt(row), args);
    return runAt(row, args);
}

void TableObject::put(Member member, const host::Variant& value, host::Args args) {
    const std::size_t row = rowOf(member);
    host::requireArguments({}, args);
    if (!writeAt(row, value)) raiseUnknown(member);
}

std::size_t TableObject::rowOf(Member member) const {
    if (indexOf(member) >= rowCount()) raiseUnknown(member);
    return indexOf(member);
}

void TableObject::raiseUnknown(Member member) const {
    std::u16string text = u"Object doesn't support this property or method: ";
    text.append(className()).append(u".").append(memberText(member));
    throw host::HostError(host::runtime_error::NoSuchMember, std::move(text));
}

}  // namespace lorvane::automation
