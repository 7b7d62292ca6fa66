#include "host/Property.h"

#include "host/TextFunctions.h"

namespace lorvane::host {

PropertyBase::PropertyBase(PropertyOwner& owner, std::u16string_view name) : owner_(owner), name_(name) {
    owner.properties_.push_back(this);
}

PropertyBase* PropertyOwner::property(std::u16string_view name) const noexcept {
    for (PropertyBase* candidate : properties_)
        if (equalsIgnoreCase(candidate->name(), name)) return candidate;
    return nullptr;
}

std::optional<Member> PropertyOwner::memberByName(std::u16string_view name) const noexcept {
    std::size_t number = windowMembers;
    for (const PropertyBase* candidate : properties_) {
        if (equalsIgnoreCase(candidate->name(), name)) return static_cast<Member>(number);
        ++number;
    }
    for (const auto& [methodName, method] : methods_) {
        if (equalsIgnoreCase(methodName, name)) return static_cast<Member>(number);
        ++number;
    }
    return std::nullopt;
}

std::u16string_view PropertyOwner::nameOfMember(Member member) const noexcept {
    const std::size_t index = static_cast<std::size_t>(member) - windowMembers;
    if (static_cast<std::size_t>(member) < windowMembers || index >= properties_.size() + methods_.size()) return memberName(member);
    return index < properties_.size() ? properties_[index]->name() : methods_[index - properties_.size()].first;
}

Variant PropertyOwner::getMember(Member member, Args args, std::u16string_view className) {
    const std::size_t index = static_cast<std::size_t>(member) - windowMembers;
    if (static_cast<std::size_t>(member) < windowMembers) raiseNoSuchMember(className, member);
    if (index < properties_.size()) return properties_[index]->read();
    return callMember(member, args, className);
}

void PropertyOwner::putMember(Member member, const Variant& value, std::u16string_view className) {
    const std::size_t index = static_cast<std::size_t>(member) - windowMembers;
    if (static_cast<std::size_t>(member) < windowMembers || index >= properties_.size()) raiseNoSuchMember(className, member);
    properties_[index]->write(value);
}

Variant PropertyOwner::callMember(Member member, Args args, std::u16string_view className) {
    const std::size_t index = static_cast<std::size_t>(member) - windowMembers;
    if (static_cast<std::size_t>(member) < windowMembers || index >= properties_.size() + methods_.size()) raiseNoSuchMember(className, member);
    if (index < properties_.size()) return properties_[index]->read();
    return methods_[index - properties_.size()].second(args);
}

void PropertyOwner::addMethod(std::u16string_view name, Method method) {
    methods_.emplace_back(name, std::move(method));
}

}  // namespace lorvane::host
