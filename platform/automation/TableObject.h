#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "host/Object.h"
#include "host/Variant.h"

namespace lorvane::automation {

/// An object of the door itself: its members are the rows of a table, got or called alike. Any other member is error 438, as where the add-in uses such an
/// object that a client handed it for one of the host's.
class TableObject : public host::Dispatch {
public:
    std::optional<host::Member> memberNamed(std::u16string_view name) const final;
    std::u16string_view memberText(host::Member member) const noexcept final;
    host::Variant get(host::Member member, host::Args args) final;
    void put(host::Member member, const host::Variant& value, host::Args args) final;
    host::Variant call(host::Member member, host::Args args) final { return get(member, args); }

    /// How the parameters of a member are called, in the form of `host::Routine::parameters`.
    std::u16string_view parametersOf(host::Member member) const { return parametersAt(rowOf(member)); }
    /// Whether a call answers with the arguments as they stand afterwards without being asked to.
    bool givesArgumentsBack(host::Member member) const { return givesArgumentsBackAt(rowOf(member)); }

protected:
    virtual std::size_t rowCount() const noexcept = 0;
    virtual std::u16string_view nameAt(std::size_t row) const noexcept = 0;
    virtual std::u16string_view parametersAt(std::size_t) const { return {}; }
    virtual bool givesArgumentsBackAt(std::size_t) const { return false; }
    virtual host::Variant runAt(std::size_t row, host::Args args) = 0;
    /// False for a row that cannot be written.
    virtual bool writeAt(std::size_t, const host::Variant&) { return false; }
    /// The row that a name means; the first of that name in any case, unless told otherwise.
    virtual std::optional<std::size_t> find(std::u16string_view name) const;

private:
    std::size_t rowOf(host::Member member) const;  // error 438 for a member that is no row
    [[noreturn]] void raiseUnknown(host::Member member) const;
};

}  // namespace lorvane::automation
