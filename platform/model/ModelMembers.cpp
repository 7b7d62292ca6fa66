#include "model/ModelMembers.h"

#include "host/TextFunctions.h"

namespace lorvane::model {

namespace {

constexpr std::u16string_view names[] = {
#define LORVANE_MODEL_MEMBER(id) u"" #id,
#include "model/ModelMembers.def"
};

}  // namespace

std::optional<host::Member> findModelMember(std::u16string_view name) noexcept {
    if (const auto found = host::findMember(name)) return found;
    for (std::size_t row = 0; row < std::size(names); ++row) {
        if (host::equalsIgnoreCase(names[row], name)) return static_cast<host::Member>(detail::firstModelMember + row);
    }
    return std::nullopt;
}

std::u16string_view modelMemberName(host::Member number) noexcept {
    const std::size_t index = memberIndex(number);
    if (index < static_cast<std::size_t>(host::Member::Count_) || index == memberIndexCount) return host::memberName(number);
    return names[index - static_cast<std::size_t>(host::Member::Count_)];
}

}  // namespace lorvane::model
