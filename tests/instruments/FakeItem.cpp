#include "instruments/FakeItem.h"

#include "host/TextFunctions.h"

namespace lorvane::instruments::test {

using host::Member;
using host::Object;
using host::Variant;

std::optional<Member> FakeItem::memberNamed(std::u16string_view name) const {
    return host::equalsIgnoreCase(name, u"Secret") ? secret : host::findMember(name);
}

std::u16string_view FakeItem::memberText(Member member) const noexcept {
    return member == secret ? u"Secret" : host::memberName(member);
}

void FakeItem::see(const Variant& value) {
    if (value.kind() == Variant::Kind::Object) seen.push_back(value.toObject());
    if (value.kind() == Variant::Kind::Array) {
        for (const Variant& item : value.toArray().items) see(item);
    }
}

void FakeItem::letGo() {
    seen.clear();
    added.clear();
    subject = u"";
    if (auto* inner = host::implementation<FakeItem>(child)) inner->letGo();
}

Variant FakeItem::use(Member member, host::Args args) {
    for (const host::Argument& argument : args) see(argument.value());
    if (member == secret) return u"kept";
    switch (member) {
        case Member::Subject:
            return subject;
        case Member::Inspector:
            return child;
        case Member::Parent:
            return parent;
        case Member::Items:
            return host::Array{1, {child, host::Array{0, {child, u"between", Object()}}}};
        case Member::MAPIOBJECT:
            return argumentAt(args, 0);
        case Member::Add:
            added.push_back(host::requiredArgument(args, 0).toObject());
            return added.back();
        case Member::Move:
            // What it was given comes back exchanged; the third is left alone, and then it fails where it is told to.
            args[0].assign(child);
            args[1].assign(args[1].value().toInt32() + 1);
            if (args.size() > 3) throw host::HostError(host::host_failure::AccessDenied);
            return {};
        default:
            host::raiseNoSuchMember(className(), member);
    }
}

Variant FakeItem::get(Member member, host::Args args) {
    return use(member, args);
}

Variant FakeItem::call(Member member, host::Args args) {
    return use(member, args);
}

void FakeItem::put(Member member, const Variant& value, host::Args args) {
    for (const host::Argument& argument : args) see(argument.value());
    see(value);
    if (member != Member::Subject) host::raiseNoSuchMember(className(), member);
    subject = value;
}

}  // namespace lorvane::instruments::test
