#pragma once

#include <optional>
#include <string_view>

#include "host/Object.h"
#include "host/Variant.h"

namespace lorvane::services {

/// What all services share: members by one table of T, `rows()`, in which each is a method of T. Reading and calling a member is one use; anything else is
/// error 438, assigning always.
template <class T>
class ServiceObject : public host::Dispatch {
public:
    /// One member and what it does.
    struct Row {
        host::Member member;
        host::Variant (T::*use)(host::Args args);
    };

    host::Variant get(host::Member member, host::Args args) final { return use(member, args); }
    host::Variant call(host::Member member, host::Args args) final { return use(member, args); }
    void put(host::Member member, const host::Variant&, host::Args) final { host::raiseNoSuchMember(className(), member); }

    std::optional<host::Member> memberNamed(std::u16string_view name) const final {
        const auto member = host::findMember(name);
        return member && find(*member) ? member : std::nullopt;
    }

private:
    static const Row* find(host::Member member) noexcept {
        for (const Row& row : T::rows()) {
            if (row.member == member) return &row;
        }
        return nullptr;
    }

    host::Variant use(host::Member member, host::Args args) {
        const Row* row = find(member);
        if (!row) host::raiseNoSuchMember(className(), member);
        return (static_cast<T&>(*this).*row->use)(args);
    }
};

/// A text argument that must be there.
inline std::u16string textAt(host::Args args, std::size_t index) {
    return host::requiredArgument(args, index).toText();
}

/// A number that must be there.
inline std::int32_t numberAt(host::Args args, std::size_t index) {
    return host::requiredArgument(args, index).toInt32();
}

}  // namespace lorvane::services
