#include "host/Record.h"

#include <algorithm>

#include "host/TextFunctions.h"

namespace lorvane::host {

const Variant* Record::find(std::u16string_view name) const noexcept {
    const auto field = std::ranges::find_if(fields_, [&](const Field& candidate) { return equalsIgnoreCase(candidate.first, name); });
    return field == fields_.end() ? nullptr : &field->second;
}

std::optional<Member> Record::memberNamed(std::u16string_view name) const {
    const auto field = std::ranges::find_if(fields_, [&](const Field& candidate) { return equalsIgnoreCase(candidate.first, name); });
    if (field == fields_.end()) return std::nullopt;
    return static_cast<Member>(windowMembers + (field - fields_.begin()));
}

std::u16string_view Record::memberText(Member member) const noexcept {
    const std::size_t index = static_cast<std::size_t>(member) - windowMembers;
    return index < fields_.size() ? std::u16string_view(fields_[index].first) : memberName(member);
}

Variant Record::get(Member member, Args) {
    return fields_[indexOf(member)].second;
}

void Record::put(Member member, const Variant& value, Args) {
    fields_[indexOf(member)].second = value;
}

std::size_t Record::indexOf(Member member) const {
    const std::size_t index = static_cast<std::size_t>(member) - windowMembers;
    if (index >= fields_.size()) raiseNoSuchMember(className(), member);
    return index;
}

}  // namespace lorvane::host
