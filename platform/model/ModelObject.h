#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "host/Object.h"
#include "host/Variant.h"

namespace lorvane::model {

class HostCore;

/// What all objects of the model host share: `get` and `call` are one use of a member, unknown ones are error 438.
class ModelObject : public host::Dispatch {
public:
    explicit ModelObject(std::shared_ptr<HostCore> core) noexcept : core_(std::move(core)) {}

    host::Variant get(host::Member member, host::Args args) final { return use(member, args); }
    host::Variant call(host::Member member, host::Args args) final { return use(member, args); }
    void put(host::Member member, const host::Variant& value, host::Args args) override;
    std::optional<host::Member> memberNamed(std::u16string_view name) const override;
    std::u16string_view memberText(host::Member member) const noexcept override;

    HostCore& core() const noexcept { return *core_; }
    const std::shared_ptr<HostCore>& sharedCore() const noexcept { return core_; }

protected:
    virtual host::Variant use(host::Member member, host::Args args) = 0;
    [[noreturn]] void raiseUnknown(host::Member member) const;

private:
    std::shared_ptr<HostCore> core_;
};

/// A position in a collection from an argument counted from 1; raises the host's index error outside 1 to `count`.
std::size_t indexFrom(const host::Variant& index, std::size_t count);

}  // namespace lorvane::model
