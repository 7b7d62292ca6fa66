#include "model/ModelObject.h"

#include "model/Failures.h"
#include "model/ModelMembers.h"

namespace lorvane::model {

void ModelObject::put(host::Member member, const host::Variant&, host::Args) {
    raiseUnknown(member);
}

std::optional<host::Member> ModelObject::memberNamed(std::u16string_view name) const {
    return findModelMember(name);
}

std::u16string_view ModelObject::memberText(host::Member member) const noexcept {
    return modelMemberName(member);
}

void ModelObject::raiseUnknown(host::Member member) const {
    raiseNoMember(className(), member);
}

std::size_t indexFrom(const host::Variant& index, std::size_t count) {
    const std::int32_t number = index.toInt32();
    if (number < 1 || static_cast<std::size_t>(number) > count) raiseBadIndex();
    return static_cast<std::size_t>(number) - 1;
}

}  // namespace lorvane::model
